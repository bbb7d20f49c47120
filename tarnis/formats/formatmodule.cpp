#include "tarnis/formats/formatmodule_p.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Formats)
};

constexpr char libraryName[] = "libtarnis-hdf5.so." TARNIS_SOVERSION;

void* openLibrary()
{
    // The folder of this library, so that a relocated installation and a build folder use their own module.
    Dl_info own {};
    if (dladdr(reinterpret_cast<const void*>(&loadHdf5Module), &own) != 0 && own.dli_fname != nullptr) {
        const QString folder = QFileInfo(QFile::decodeName(own.dli_fname)).absolutePath();
        const QByteArray path = QFile::encodeName(folder) + '/' + libraryName;
        if (void* const library = dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL))
            return library;
    }
    return dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
}

} // namespace

FormatModule loadHdf5Module()
{
    FormatModule module;
    void* const library = openLibrary();
    if (library != nullptr) {
        module.encode = reinterpret_cast<decltype(module.encode)>(dlsym(library, encodeSymbol));
        module.decode = reinterpret_cast<decltype(module.decode)>(dlsym(library, decodeSymbol));
    }
    if (module.encode == nullptr || module.decode == nullptr) {
        module.error =
            Texts::tr("HDF5 files need the library %1, which is not installed: install it or use .csv or .npy")
                .arg(QLatin1String(libraryName));
    }
    return module;
}

} // namespace tarnis
