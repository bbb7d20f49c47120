// The reader of HDF5 files on valid files with unexpected content: the input selects groups, attributes and arrays, and
// their types and shapes. Damaged bytes are not tested: version 1.10 of the HDF5 library crashes on some. The reader
// rejects those that are known to make it loop.
#include "formatcheck.h"

#include <tarnis/hdf5/nexusfile.h>

#include <hdf5.h>

#include <array>
#include <vector>

namespace {

/// Decisions from the bytes of the input; 0 after its end.
class Choices {
public:
    Choices(const std::uint8_t* bytes, std::size_t size)
        : m_bytes(bytes)
        , m_left(size)
    {
    }
    unsigned next(unsigned count)
    {
        if (m_left == 0)
            return 0;
        --m_left;
        return *m_bytes++ % count;
    }

private:
    const std::uint8_t* m_bytes;
    std::size_t m_left;
};

void addText(Choices& choices, hid_t object, const char* name)
{
    static constexpr std::array texts { "", "NXentry", "NXdata", "entry", "data", "counts", "x", "y", ".", "title" };
    const unsigned kind = choices.next(4);
    const char* const text = texts.at(choices.next(texts.size()));
    const char* const other = texts.at(choices.next(texts.size()));
    const hsize_t count = 1 + choices.next(3);
    if (kind == 0)
        return;
    const hid_t space = kind == 1 ? H5Screate(H5S_SCALAR) : H5Screate_simple(1, &count, nullptr);
    const hid_t type = H5Tcopy(kind == 3 ? H5T_NATIVE_INT : H5T_C_S1);
    if (kind != 3)
        H5Tset_size(type, H5T_VARIABLE);
    const hid_t attribute = H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT);
    const std::array<const char*, 3> list { text, other, text };
    const std::array<int, 3> numbers { 1, 2, 3 };
    H5Awrite(attribute, type, kind == 3 ? static_cast<const void*>(numbers.data()) : list.data());
    H5Aclose(attribute);
    H5Tclose(type);
    H5Sclose(space);
}

void addArray(Choices& choices, hid_t group, const char* name)
{
    const std::array types { H5T_NATIVE_DOUBLE, H5T_STD_I16BE, H5T_NATIVE_FLOAT, H5T_NATIVE_UINT64, H5T_C_S1 };
    const unsigned present = choices.next(4);
    const hid_t type = types.at(choices.next(types.size()));
    std::array<hsize_t, 3> shape {};
    const unsigned dimensions = choices.next(4);
    for (hsize_t& length : shape)
        length = choices.next(5);
    if (present == 0)
        return;
    const hid_t space =
        dimensions == 0 ? H5Screate(H5S_SCALAR) : H5Screate_simple(static_cast<int>(dimensions), shape.data(), nullptr);
    const hid_t dataset = H5Dcreate2(group, name, type, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    std::vector<double> values(64);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i);
    if (type != H5T_C_S1)
        H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data());
    addText(choices, dataset, "units");
    H5Dclose(dataset);
    H5Sclose(space);
}

void fill(Choices& choices, hid_t group)
{
    for (const char* const name : { "NX_class", "default", "signal", "axes", "curves" })
        addText(choices, group, name);
    for (const char* const name : { "counts", "counts_errors", "x", "y", "title", "calibration", "live_time" })
        addArray(choices, group, name);
}

QByteArray fileOf(Choices& choices)
{
    const hid_t access = H5Pcreate(H5P_FILE_ACCESS);
    H5Pset_fapl_core(access, 65536, 0);
    const hid_t file = H5Fcreate("fuzz.h5", H5F_ACC_TRUNC, H5P_DEFAULT, access);
    fill(choices, file);
    const hid_t entry = H5Gcreate2(file, "entry", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    fill(choices, entry);
    const hid_t data = H5Gcreate2(entry, "data", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    fill(choices, data);
    H5Gclose(data);
    H5Gclose(entry);
    H5Fflush(file, H5F_SCOPE_GLOBAL);
    QByteArray bytes(H5Fget_file_image(file, nullptr, 0), '\0');
    H5Fget_file_image(file, bytes.data(), static_cast<std::size_t>(bytes.size()));
    H5Fclose(file);
    H5Pclose(access);
    return bytes;
}

QByteArray encode(const tarnis::Dataset& data)
{
    return tarnis::encodeHdf5(data).bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    Choices choices(data, size);
    const QByteArray file = fileOf(choices);
    tarnis::fuzzing::checkFormat(reinterpret_cast<const std::uint8_t*>(file.constData()),
        static_cast<std::size_t>(file.size()), tarnis::decodeHdf5, encode);
    return 0;
}
