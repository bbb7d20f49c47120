#include "tarnis/formats/formats.h"

#include "tarnis/formats/csv.h"
#include "tarnis/formats/formatmodule_p.h"
#include "tarnis/formats/npy.h"
#include "tarnis/formats/spe.h"
#include "tarnis/foundation/files.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Formats)
};

QString unknownName()
{
    return Texts::tr("the name does not end in .csv, .npy, .spe or .h5: rename the file");
}

EncodeResult encodeHdf5(const Dataset& data)
{
    const FormatModule module = loadHdf5Module();
    EncodeResult result { .bytes = {}, .error = module.error };
    if (module.encode != nullptr)
        module.encode(data, result);
    return result;
}

DatasetResult decodeHdf5(QByteArrayView bytes)
{
    const FormatModule module = loadHdf5Module();
    DatasetResult result { .data = {}, .error = module.error };
    if (module.decode != nullptr)
        module.decode(bytes, result);
    return result;
}

} // namespace

std::optional<FileFormat> formatOfName(const QString& path)
{
    const QString end = QFileInfo(path).suffix().toLower();
    if (end == u"csv" || end == u"txt" || end == u"tsv" || end == u"dat")
        return FileFormat::Csv;
    if (end == u"npy")
        return FileFormat::Npy;
    if (end == u"spe")
        return FileFormat::Spe;
    if (end == u"h5" || end == u"hdf5" || end == u"nxs")
        return FileFormat::Hdf5;
    return std::nullopt;
}

EncodeResult encodeDataset(const Dataset& data, FileFormat format)
{
    if (!isConsistent(data))
        return { .bytes = {}, .error = Texts::tr("there are no values to write") };
    switch (format) {
    case FileFormat::Csv:
        return { .bytes = encodeCsv(data), .error = {} };
    case FileFormat::Npy:
        return { .bytes = encodeNpy(data), .error = {} };
    case FileFormat::Hdf5:
        return encodeHdf5(data);
    case FileFormat::Spe:
        break;
    }
    EncodeResult result { .bytes = encodeSpe(data), .error = {} };
    if (result.bytes.isEmpty())
        result.error = Texts::tr("a .spe file has one spectrum of counts over channel numbers: choose another format");
    return result;
}

DatasetResult decodeDataset(QByteArrayView bytes, FileFormat format)
{
    switch (format) {
    case FileFormat::Csv:
        return decodeCsv(bytes);
    case FileFormat::Npy:
        return decodeNpy(bytes);
    case FileFormat::Spe:
        return decodeSpe(bytes);
    case FileFormat::Hdf5:
        break;
    }
    return decodeHdf5(bytes);
}

QString writeDataset(const QString& path, const Dataset& data)
{
    const std::optional<FileFormat> format = formatOfName(path);
    if (!format)
        return unknownName();
    const EncodeResult result = encodeDataset(data, *format);
    return result.error.isEmpty() ? writeFile(path, result.bytes) : result.error;
}

DatasetResult readDataset(const QString& path)
{
    const std::optional<FileFormat> format = formatOfName(path);
    if (!format)
        return { .data = {}, .error = unknownName() };
    const FileContent content = readFile(path);
    if (!content.error.isEmpty())
        return { .data = {}, .error = content.error };
    DatasetResult result = decodeDataset(content.bytes, *format);
    if (result.error.isEmpty() && result.data.title.isEmpty())
        result.data.title = QFileInfo(path).fileName();
    return result;
}

} // namespace tarnis
