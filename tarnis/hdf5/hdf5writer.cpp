#include "tarnis/hdf5/nexusfile.h"

#include "tarnis/hdf5/hdf5handle_p.h"

#include <QCoreApplication>

#include <array>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Hdf5)
};

using hdf5::Handle;

/// Builds the file in memory. After the first failure, later calls do nothing.
class Writer {
public:
    Writer()
        : m_access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose)
        , m_file(open(), H5Fclose)
    {
        m_good = m_file.isValid();
    }

    Handle group(hid_t parent, const char* name, const char* type)
    {
        Handle group(H5Gcreate2(parent, name, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT), H5Gclose);
        check(group.isValid());
        attribute(group, "NX_class", QLatin1String(type));
        return group;
    }
    void attribute(hid_t object, const char* name, const QString& text)
    {
        const QByteArray bytes = text.toUtf8();
        const Handle type = textType(bytes.size());
        const Handle space(H5Screate(H5S_SCALAR), H5Sclose);
        const Handle attribute(H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
        check(attribute.isValid() && H5Awrite(attribute, type, bytes.constData()) >= 0);
    }
    /// A list of texts, padded to one length.
    void attribute(hid_t object, const char* name, const QStringList& list)
    {
        qsizetype length = 1;
        for (const QString& text : list)
            length = std::max(length, text.toUtf8().size());
        QByteArray bytes;
        for (const QString& text : list)
            bytes += text.toUtf8().leftJustified(length, '\0');
        const Handle type = textType(length);
        const hsize_t count = static_cast<hsize_t>(list.size());
        const Handle space(H5Screate_simple(1, &count, nullptr), H5Sclose);
        const Handle attribute(H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
        check(attribute.isValid() && H5Awrite(attribute, type, bytes.constData()) >= 0);
    }
    void attribute(hid_t object, const char* name, qint64 number)
    {
        const Handle space(H5Screate(H5S_SCALAR), H5Sclose);
        const Handle attribute(H5Acreate2(object, name, H5T_STD_I64LE, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
        check(attribute.isValid() && H5Awrite(attribute, H5T_NATIVE_INT64, &number) >= 0);
    }
    void text(hid_t parent, const char* name, const QString& value)
    {
        const QByteArray bytes = value.toUtf8();
        const Handle type = textType(bytes.size());
        const Handle space(H5Screate(H5S_SCALAR), H5Sclose);
        const Handle dataset(H5Dcreate2(parent, name, type, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT), H5Dclose);
        check(dataset.isValid() && H5Dwrite(dataset, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, bytes.constData()) >= 0);
    }
    /// Numbers with their name and unit.
    Handle numbers(hid_t parent, const char* name, const std::vector<double>& values, const std::vector<hsize_t>& shape,
        const QString& longName, const QString& unit)
    {
        const Handle space(H5Screate_simple(static_cast<int>(shape.size()), shape.data(), nullptr), H5Sclose);
        Handle dataset(
            H5Dcreate2(parent, name, H5T_IEEE_F64LE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT), H5Dclose);
        check(dataset.isValid()
            && H5Dwrite(dataset, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()) >= 0);
        if (!longName.isEmpty())
            attribute(dataset, "long_name", longName);
        if (!unit.isEmpty())
            attribute(dataset, "units", unit);
        return dataset;
    }

    hid_t file() const { return m_file; }
    bool isGood() const { return m_good; }

    /// The bytes of the file. All objects in it must be closed.
    QByteArray finish()
    {
        QByteArray bytes;
        check(H5Fflush(m_file, H5F_SCOPE_GLOBAL) >= 0);
        const ssize_t size = m_good ? H5Fget_file_image(m_file, nullptr, 0) : -1;
        check(size > 0);
        if (!m_good)
            return {};
        bytes.resize(size);
        check(H5Fget_file_image(m_file, bytes.data(), static_cast<std::size_t>(size)) == size);
        return m_good ? bytes : QByteArray();
    }

private:
    hid_t open() const
    {
        constexpr std::size_t growth = std::size_t { 1 } << 20;
        const hbool_t onDisk = 0;
        H5Pset_fapl_core(m_access, growth, onDisk);
        return H5Fcreate("tarnis.h5", H5F_ACC_TRUNC, H5P_DEFAULT, m_access);
    }
    Handle textType(qsizetype bytes)
    {
        Handle type(H5Tcopy(H5T_C_S1), H5Tclose);
        check(type.isValid() && H5Tset_size(type, static_cast<std::size_t>(std::max<qsizetype>(bytes, 1))) >= 0
            && H5Tset_cset(type, H5T_CSET_UTF8) >= 0);
        H5Tset_strpad(type, H5T_STR_NULLPAD);
        return type;
    }
    void check(bool good) { m_good = m_good && good; }

    Handle m_access;
    Handle m_file;
    bool m_good = false;
};

std::vector<hsize_t> shapeOf(const Dataset& data)
{
    const auto rows = static_cast<hsize_t>(data.rows);
    const auto columns = static_cast<hsize_t>(data.columns);
    const bool single = data.kind == Dataset::Kind::Curves && data.rows == 1;
    return single ? std::vector { columns } : std::vector { rows, columns };
}

void writeAxis(Writer& writer, hid_t group, const char* name, const DataAxis& axis, qsizetype bins)
{
    // Readers use indices if there is no axis, so the edges of numbered bins are written too.
    const std::vector<double> values = axis.values.empty() ? edgesOf(axis, bins) : axis.values;
    writer.numbers(group, name, values, { values.size() }, axis.name, axis.unit);
}

void writeData(Writer& writer, hid_t entry, const Dataset& data)
{
    const Handle group = writer.group(entry, "data", "NXdata");
    const std::vector<hsize_t> shape = shapeOf(data);
    const bool map = data.kind == Dataset::Kind::Map;
    writer.attribute(group, "signal", QStringLiteral("counts"));
    QStringList axes { QStringLiteral("x") };
    if (shape.size() == 2)
        axes.prepend(map ? QStringLiteral("y") : QStringLiteral("."));
    writer.attribute(group, "axes", axes);
    writer.attribute(group, "x_indices", qint64(shape.size()) - 1);
    if (map)
        writer.attribute(group, "y_indices", qint64(0));
    writer.text(group, "title", data.title);
    // A count is its own unit, and readers show what they find.
    const QString counts = QStringLiteral("counts");
    const QString unit = data.unit.isEmpty() && data.name == counts ? counts : data.unit;
    writer.numbers(group, "counts", data.values, shape, data.name, unit);
    if (!data.errors.empty())
        writer.numbers(group, "counts_errors", data.errors, shape, {}, unit);
    writeAxis(writer, group, "x", data.x, data.columns);
    if (map)
        writeAxis(writer, group, "y", data.y, data.rows);
    if (!data.rowNames.isEmpty())
        writer.attribute(group, "curves", data.rowNames);
}

void writeEntry(Writer& writer, const Dataset& data)
{
    writer.attribute(writer.file(), "default", QStringLiteral("entry"));
    writer.attribute(writer.file(), "creator", QStringLiteral("Tarnis"));
    const Handle entry = writer.group(writer.file(), "entry", "NXentry");
    writer.attribute(entry, "default", QStringLiteral("data"));
    writer.text(entry, "title", data.title);
    if (!data.source.isEmpty())
        writer.text(entry, "source", data.source);
    if (data.time.isValid())
        writer.text(entry, "snapshot_time", data.time.toUTC().toString(Qt::ISODateWithMs));
    if (data.liveTime != 0.0)
        writer.numbers(entry, "live_time", { data.liveTime }, { 1 }, {}, QStringLiteral("s"));
    if (data.realTime != 0.0)
        writer.numbers(entry, "real_time", { data.realTime }, { 1 }, {}, QStringLiteral("s"));
    if (!data.calibration.empty())
        writer.numbers(entry, "calibration", data.calibration, { data.calibration.size() }, {}, data.calibrationUnit);
    writeData(writer, entry, data);
}

} // namespace

EncodeResult encodeHdf5(const Dataset& data)
{
    if (!isConsistent(data))
        return { .bytes = {}, .error = Texts::tr("there are no values to write") };
    const hdf5::Quiet quiet;
    Writer writer;
    writeEntry(writer, data);
    EncodeResult result { .bytes = writer.finish(), .error = {} };
    if (result.bytes.isEmpty())
        result.error = Texts::tr("the HDF5 library could not build the file: there may not be enough memory");
    return result;
}

} // namespace tarnis
