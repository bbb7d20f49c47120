#include "tarnis/hdf5/nexusfile.h"

#include "tarnis/hdf5/hdf5handle_p.h"

#include <QCoreApplication>
#include <QtEndian>

#include <array>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Hdf5)
};

using hdf5::Handle;

constexpr std::size_t maxTextBytes = std::size_t { 1 } << 20;

/// Reads a text stored as one or several strings of fixed or variable length.
template <typename Read> QStringList textsOf(hid_t type, hid_t space, const Read& read)
{
    const hssize_t count = H5Sget_simple_extent_npoints(space);
    if (H5Tget_class(type) != H5T_STRING || count <= 0 || count > 10000)
        return {};
    QStringList texts;
    if (H5Tis_variable_str(type) > 0) {
        std::vector<char*> strings(static_cast<std::size_t>(count), nullptr);
        const Handle memory(H5Tcopy(H5T_C_S1), H5Tclose);
        H5Tset_size(memory, H5T_VARIABLE);
        H5Tset_cset(memory, H5Tget_cset(type));
        if (read(memory, strings.data()) >= 0) {
            for (const char* const text : strings)
                texts += QString::fromUtf8(text);
            H5Dvlen_reclaim(memory, space, H5P_DEFAULT, strings.data());
        }
        return texts;
    }
    const std::size_t size = H5Tget_size(type);
    if (size == 0 || size > maxTextBytes / static_cast<std::size_t>(count))
        return {};
    QByteArray bytes(static_cast<qsizetype>(size) * count, '\0');
    if (read(type, bytes.data()) < 0)
        return {};
    for (hssize_t i = 0; i < count; ++i) {
        const QByteArray text = bytes.mid(static_cast<qsizetype>(size) * i, static_cast<qsizetype>(size));
        texts += QString::fromUtf8(text.constData(), static_cast<qsizetype>(qstrnlen(text.constData(), size)));
    }
    return texts;
}

QStringList textAttributes(hid_t object, const char* name)
{
    if (H5Aexists(object, name) <= 0)
        return {};
    const Handle attribute(H5Aopen(object, name, H5P_DEFAULT), H5Aclose);
    const Handle type(H5Aget_type(attribute), H5Tclose);
    const Handle space(H5Aget_space(attribute), H5Sclose);
    if (!attribute.isValid() || !type.isValid() || !space.isValid())
        return {};
    return textsOf(type, space, [&](hid_t memory, void* buffer) { return H5Aread(attribute, memory, buffer); });
}

QString textAttribute(hid_t object, const char* name)
{
    return textAttributes(object, name).value(0);
}

/// Whether a link with this name leads to an object of this type.
bool holds(hid_t group, const char* name, H5I_type_t kind)
{
    if (*name == '\0' || H5Lexists(group, name, H5P_DEFAULT) <= 0 || H5Oexists_by_name(group, name, H5P_DEFAULT) <= 0)
        return false;
    const Handle object(H5Oopen(group, name, H5P_DEFAULT), H5Oclose);
    return object.isValid() && H5Iget_type(object) == kind;
}

QString textDataset(hid_t group, const char* name)
{
    if (!holds(group, name, H5I_DATASET))
        return {};
    const Handle dataset(H5Dopen2(group, name, H5P_DEFAULT), H5Dclose);
    const Handle type(H5Dget_type(dataset), H5Tclose);
    const Handle space(H5Dget_space(dataset), H5Sclose);
    if (!dataset.isValid() || !type.isValid() || !space.isValid())
        return {};
    return textsOf(type, space, [&](hid_t memory, void* buffer) {
        return H5Dread(dataset, memory, H5S_ALL, H5S_ALL, H5P_DEFAULT, buffer);
    }).value(0);
}

/// Numbers with their shape; the shape is empty if they cannot be read.
struct Numbers {
    std::vector<double> values;
    std::vector<hsize_t> shape;
    QString name;
    QString unit;
    QString error;
};

/// A chunked or compressed dataset may announce far more values than its file could hold.
QString checkShape(const Numbers& numbers, hid_t dataset, qsizetype fileBytes)
{
    if (numbers.shape.size() > 2)
        return Texts::tr("'counts' has %1 dimensions: save one or two of them").arg(numbers.shape.size());
    hsize_t count = 1;
    for (const hsize_t length : numbers.shape) {
        if (length == 0)
            return Texts::tr("'counts' is empty: save an array with values");
        if (length > static_cast<hsize_t>(maxDatasetValues) / count)
            return Texts::tr("'counts' has more than %1 values: save a part of it").arg(maxDatasetValues);
        count *= length;
    }
    // The best ratio that deflate reaches is 1032 to 1.
    constexpr hsize_t bestCompression = 1100;
    if (count > 65536 && H5Dget_storage_size(dataset) < count / bestCompression / 8)
        return Texts::tr("'counts' announces more values than the file contains: it is damaged, copy it again");
    return count / bestCompression > static_cast<hsize_t>(fileBytes)
        ? Texts::tr("'counts' announces more values than the file contains: it is damaged, copy it again")
        : QString();
}

Numbers readNumbers(hid_t group, const char* name, qsizetype fileBytes)
{
    Numbers numbers;
    if (!holds(group, name, H5I_DATASET))
        return numbers;
    const Handle dataset(H5Dopen2(group, name, H5P_DEFAULT), H5Dclose);
    const Handle type(H5Dget_type(dataset), H5Tclose);
    const Handle space(H5Dget_space(dataset), H5Sclose);
    const H5T_class_t kind = type.isValid() ? H5Tget_class(type) : H5T_NO_CLASS;
    if (!space.isValid() || (kind != H5T_INTEGER && kind != H5T_FLOAT)) {
        numbers.error = Texts::tr("'%1' does not contain real numbers").arg(QLatin1String(name));
        return numbers;
    }
    const int dimensions = H5Sget_simple_extent_ndims(space);
    std::vector<hsize_t> shape(static_cast<std::size_t>(std::max(dimensions, 0)));
    if (dimensions > 0)
        H5Sget_simple_extent_dims(space, shape.data(), nullptr);
    numbers.shape = dimensions == 0 ? std::vector<hsize_t> { 1 } : shape;
    numbers.error = checkShape(numbers, dataset, fileBytes);
    if (!numbers.error.isEmpty())
        return numbers;
    numbers.values.resize(static_cast<std::size_t>(H5Sget_simple_extent_npoints(space)));
    if (H5Dread(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, numbers.values.data()) < 0)
        numbers.error = Texts::tr("'%1' cannot be read: the file is damaged, copy it again").arg(QLatin1String(name));
    numbers.name = textAttribute(dataset, "long_name");
    numbers.unit = textAttribute(dataset, "units");
    return numbers;
}

/// What H5Literate() looks for: the first member that a test accepts.
struct Search {
    bool (*accepts)(hid_t group, const char* name);
    QByteArray found;
};

extern "C" herr_t tarnisVisitMember(hid_t group, const char* name, const H5L_info_t* /*info*/, void* data)
{
    auto& search = *static_cast<Search*>(data);
    if (!search.accepts(group, name))
        return 0;
    search.found = name;
    return 1; // ends the iteration
}

QByteArray firstMember(hid_t group, bool (*accepts)(hid_t group, const char* name))
{
    Search search { accepts, {} };
    H5Literate(group, H5_INDEX_NAME, H5_ITER_INC, nullptr, tarnisVisitMember, &search);
    return search.found;
}

bool isOfClass(hid_t group, const char* name, const char* nexusClass)
{
    if (!holds(group, name, H5I_GROUP))
        return false;
    const Handle member(H5Gopen2(group, name, H5P_DEFAULT), H5Gclose);
    return member.isValid() && textAttribute(member, "NX_class") == QLatin1String(nexusClass);
}

/// The member that "default" names, else the first one of the class.
QByteArray memberOfClass(hid_t group, const char* nexusClass, bool (*accepts)(hid_t, const char*))
{
    const QByteArray named = textAttribute(group, "default").toUtf8();
    return !named.isEmpty() && isOfClass(group, named.constData(), nexusClass) ? named : firstMember(group, accepts);
}

bool hasNumbers(hid_t group, const char* name)
{
    if (!holds(group, name, H5I_DATASET))
        return false;
    const Handle dataset(H5Dopen2(group, name, H5P_DEFAULT), H5Dclose);
    const Handle type(H5Dget_type(dataset), H5Tclose);
    const H5T_class_t kind = type.isValid() ? H5Tget_class(type) : H5T_NO_CLASS;
    return kind == H5T_INTEGER || kind == H5T_FLOAT;
}

/// Reads one group and the entry that contains it.
class Reader {
public:
    Reader(Dataset& data, qsizetype fileBytes)
        : m_data(data)
        , m_fileBytes(fileBytes)
    {
    }

    QString readSignal(hid_t group, const QByteArray& signal)
    {
        Numbers numbers = readNumbers(group, signal.constData(), m_fileBytes);
        if (!numbers.error.isEmpty())
            return numbers.error;
        if (numbers.shape.empty())
            return Texts::tr("the group has no dataset '%1': restore the file").arg(QString::fromUtf8(signal));
        m_data.rows = numbers.shape.size() == 2 ? static_cast<qsizetype>(numbers.shape[0]) : 1;
        m_data.columns = static_cast<qsizetype>(numbers.shape.back());
        m_data.kind = numbers.shape.size() == 2 ? Dataset::Kind::Map : Dataset::Kind::Curves;
        m_data.values = std::move(numbers.values);
        m_data.name = numbers.name.isEmpty() ? QString::fromUtf8(signal) : numbers.name;
        m_data.unit = numbers.unit == m_data.name ? QString() : numbers.unit;
        return {};
    }

    QString readGroup(hid_t group)
    {
        QByteArray signal = textAttribute(group, "signal").toUtf8();
        if (signal.isEmpty())
            signal = firstMember(group, hasNumbers);
        if (signal.isEmpty())
            return Texts::tr("the file has no dataset of numbers");
        QString error = readSignal(group, signal);
        if (error.isEmpty())
            error = readErrors(group, signal);
        if (error.isEmpty())
            error = readAxes(group);
        m_data.title = textDataset(group, "title");
        if (m_data.kind == Dataset::Kind::Curves)
            m_data.rowNames = textAttributes(group, "curves");
        if (m_data.rowNames.size() != m_data.rows)
            m_data.rowNames.clear();
        return error;
    }

    void readEntry(hid_t entry)
    {
        if (m_data.title.isEmpty())
            m_data.title = textDataset(entry, "title");
        m_data.source = textDataset(entry, "source");
        const QString snapshot = textDataset(entry, "snapshot_time");
        m_data.time =
            QDateTime::fromString(snapshot.isEmpty() ? textDataset(entry, "start_time") : snapshot, Qt::ISODateWithMs);
        const auto number = [&](const char* name) {
            const Numbers numbers = readNumbers(entry, name, m_fileBytes);
            return numbers.values.size() == 1 ? numbers.values.front() : 0.0;
        };
        m_data.liveTime = number("live_time");
        m_data.realTime = number("real_time");
        Numbers calibration = readNumbers(entry, "calibration", m_fileBytes);
        m_data.calibration = std::move(calibration.values);
        m_data.calibrationUnit = calibration.unit;
    }

private:
    QString readErrors(hid_t group, const QByteArray& signal)
    {
        Numbers errors = readNumbers(group, QByteArray(signal + "_errors").constData(), m_fileBytes);
        if (!errors.error.isEmpty())
            return errors.error;
        if (errors.values.size() == m_data.values.size())
            m_data.errors = std::move(errors.values);
        return {};
    }
    QString readAxes(hid_t group)
    {
        const QStringList axes = textAttributes(group, "axes");
        if (m_data.kind == Dataset::Kind::Map && axes.value(0) == u".")
            m_data.kind = Dataset::Kind::Curves;
        QString error = readAxis(group, axes.value(axes.size() - 1), m_data.x, m_data.columns);
        if (!error.isEmpty() || m_data.kind != Dataset::Kind::Map || axes.size() != 2)
            return error;
        return readAxis(group, axes.front(), m_data.y, m_data.rows);
    }
    QString readAxis(hid_t group, const QString& name, DataAxis& axis, qsizetype bins)
    {
        Numbers numbers = readNumbers(group, name.toUtf8().constData(), m_fileBytes);
        const auto count = static_cast<qsizetype>(numbers.values.size());
        if (numbers.shape.empty())
            return {};
        if (!numbers.error.isEmpty() || (count != bins && count != bins + 1))
            return Texts::tr("the axis '%1' does not fit %2 bins: restore the file").arg(name).arg(bins);
        axis.name = numbers.name;
        axis.unit = numbers.unit;
        if (numbers.values != edgesOf({}, bins))
            axis.values = std::move(numbers.values);
        return {};
    }

    Dataset& m_data;
    qsizetype m_fileBytes;
};

/// Version 1.10 of the library walks the objects of a string heap by their sizes and loops forever at an object of size
/// zero. The layout is described in section III.E of the HDF5 file format, version 3.0: signature, version, three
/// zeros, size; then objects of two numbers, four zeros, size and content. Object 0 is the free space.
bool isEndlessHeap(QByteArrayView bytes)
{
    constexpr qsizetype header = 16;
    constexpr quint64 alignment = 8;
    const auto sizeAt = [&](qsizetype place) { return qFromLittleEndian<quint64>(bytes.data() + place); };
    if (bytes.size() < header || bytes[4] != 1 || sizeAt(8) > static_cast<quint64>(bytes.size()))
        return false; // the library refuses it
    const auto end = static_cast<qsizetype>(sizeAt(8));
    for (qsizetype place = header; place + header <= end;) {
        const quint64 size = sizeAt(place + 8);
        const quint64 left = static_cast<quint64>(end - place);
        const bool isRest = qFromLittleEndian<quint16>(bytes.data() + place) == 0;
        if (size > left)
            return true;
        const quint64 step = isRest ? size : header + (size + alignment - 1) / alignment * alignment;
        if (step == 0 || step > left)
            return true;
        place += static_cast<qsizetype>(step);
    }
    return false;
}

bool hasEndlessHeap(QByteArrayView bytes)
{
    for (qsizetype place = bytes.indexOf("GCOL"); place >= 0; place = bytes.indexOf("GCOL", place + 1)) {
        if (place % 8 == 0 && isEndlessHeap(bytes.sliced(place)))
            return true;
    }
    return false;
}

QString read(hid_t file, qsizetype fileBytes, Dataset& data)
{
    const auto isEntry = [](hid_t group, const char* name) { return isOfClass(group, name, "NXentry"); };
    const auto isData = [](hid_t group, const char* name) { return isOfClass(group, name, "NXdata"); };
    Reader reader(data, fileBytes);
    const QByteArray entryName = memberOfClass(file, "NXentry", isEntry);
    if (entryName.isEmpty()) {
        const QByteArray only = firstMember(file, hasNumbers);
        return only.isEmpty() ? Texts::tr("the file has no entry of the class NXentry and no dataset of numbers")
                              : reader.readSignal(file, only);
    }
    const Handle entry(H5Gopen2(file, entryName.constData(), H5P_DEFAULT), H5Gclose);
    const QByteArray groupName = memberOfClass(entry, "NXdata", isData);
    if (groupName.isEmpty())
        return Texts::tr("the entry '%1' has no group of the class NXdata").arg(QString::fromUtf8(entryName));
    const Handle group(H5Gopen2(entry, groupName.constData(), H5P_DEFAULT), H5Gclose);
    QString error = reader.readGroup(group);
    reader.readEntry(entry);
    return error;
}

} // namespace

DatasetResult decodeHdf5(QByteArrayView bytes)
{
    const hdf5::Quiet quiet;
    if (hasEndlessHeap(bytes))
        return { .data = {}, .error = Texts::tr("it is not an HDF5 file, or it is incomplete: copy it again") };
    const Handle access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
    constexpr std::size_t growth = std::size_t { 1 } << 16;
    const hbool_t onDisk = 0;
    H5Pset_fapl_core(access, growth, onDisk);
    H5Pset_file_image(access, const_cast<char*>(bytes.data()), static_cast<std::size_t>(bytes.size()));
    const Handle file(bytes.isEmpty() ? H5I_INVALID_HID : H5Fopen("tarnis.h5", H5F_ACC_RDONLY, access), H5Fclose);
    if (!file.isValid())
        return { .data = {}, .error = Texts::tr("it is not an HDF5 file, or it is incomplete: copy it again") };
    DatasetResult result;
    result.error = read(file, bytes.size(), result.data);
    if (result.error.isEmpty() && !isConsistent(result.data))
        result.error = Texts::tr("the axes do not fit the values: restore the file");
    if (!result.error.isEmpty())
        result.data = {};
    return result;
}

} // namespace tarnis
