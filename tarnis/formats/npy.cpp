#include "tarnis/formats/npy.h"

#include "tarnis/formats/numbertext_p.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Npy)
};

constexpr QByteArrayView magic("\x93NUMPY", 6);

/// What the dictionary of the header states.
struct NpyHeader {
    QByteArray type; ///< for example "<f8"
    bool fortranOrder = false;
    std::vector<qsizetype> shape;
    bool hasType = false, hasOrder = false, hasShape = false;
};

/// Reads the dictionary, a Python literal with three known keys.
class DictionaryReader {
public:
    explicit DictionaryReader(QByteArrayView text)
        : m_text(text)
    {
    }

    /// False if the text is not such a dictionary; position() is then where the error is.
    bool read(NpyHeader& header)
    {
        if (!take('{'))
            return false;
        while (!take('}')) {
            if (!readEntry(header) || (!take(',') && !isNext('}')))
                return false;
        }
        skipBlanks();
        return m_position == m_text.size() && header.hasType && header.hasOrder && header.hasShape;
    }
    qsizetype position() const { return m_position; }

private:
    bool readEntry(NpyHeader& header)
    {
        const std::optional<QByteArray> key = takeString();
        if (!key || !take(':'))
            return false;
        if (*key == "descr")
            return readType(header);
        if (*key == "fortran_order")
            return readOrder(header);
        return *key == "shape" && readShape(header);
    }
    bool readType(NpyHeader& header)
    {
        if (isNext('[')) { // a structured type, which the caller refuses
            header.hasType = header.hasOrder = header.hasShape = true;
            header.type = "record";
            m_position = m_text.size();
            return false;
        }
        const std::optional<QByteArray> type = takeString();
        header.hasType = type.has_value();
        header.type = type.value_or(QByteArray());
        return header.hasType;
    }
    bool readOrder(NpyHeader& header)
    {
        header.fortranOrder = takeWord("True");
        header.hasOrder = header.fortranOrder || takeWord("False");
        return header.hasOrder;
    }
    bool readShape(NpyHeader& header)
    {
        header.shape.clear();
        if (!take('('))
            return false;
        while (!take(')')) {
            const std::optional<qsizetype> length = takeLength();
            if (!length || header.shape.size() == maxDimensions)
                return false;
            header.shape.push_back(*length);
            if (!take(',') && !isNext(')'))
                return false;
        }
        header.hasShape = true;
        return true;
    }

    void skipBlanks()
    {
        while (m_position < m_text.size() && (m_text[m_position] == ' ' || m_text[m_position] == '\n'))
            ++m_position;
    }
    bool isNext(char character)
    {
        skipBlanks();
        return m_position < m_text.size() && m_text[m_position] == character;
    }
    bool take(char character)
    {
        const bool found = isNext(character);
        m_position += found ? 1 : 0;
        return found;
    }
    bool takeWord(QByteArrayView word)
    {
        skipBlanks();
        const bool found = m_text.sliced(m_position).startsWith(word);
        m_position += found ? word.size() : 0;
        return found;
    }
    std::optional<QByteArray> takeString()
    {
        const char quote = isNext('"') ? '"' : '\'';
        if (!take(quote))
            return std::nullopt;
        const qsizetype end = m_text.indexOf(quote, m_position);
        if (end < 0)
            return std::nullopt;
        const QByteArray text = m_text.sliced(m_position, end - m_position).toByteArray();
        m_position = end + 1;
        return text;
    }
    /// At most 18 digits, which fit into 64 bits.
    std::optional<qsizetype> takeLength()
    {
        skipBlanks();
        qsizetype length = 0;
        int digits = 0;
        for (; m_position < m_text.size() && m_text[m_position] >= '0' && m_text[m_position] <= '9'; ++m_position) {
            if (++digits > 18)
                return std::nullopt;
            length = length * 10 + (m_text[m_position] - '0');
        }
        // Files of Python 2 may write 3L.
        if (digits > 0 && m_position < m_text.size() && m_text[m_position] == 'L')
            ++m_position;
        return digits > 0 ? std::optional(length) : std::nullopt;
    }

    static constexpr std::size_t maxDimensions = 32; // as in NumPy
    QByteArrayView m_text;
    qsizetype m_position = 0;
};

template <typename Number> Number swapped(Number value, bool swap)
{
    if constexpr (sizeof(Number) == 1) {
        return value;
    } else if constexpr (std::is_integral_v<Number>) {
        return swap ? qbswap(value) : value;
    } else {
        using Bits = std::conditional_t<sizeof(Number) == 4, quint32, quint64>;
        const Bits bits = std::bit_cast<Bits>(value);
        return std::bit_cast<Number>(swap ? qbswap(bits) : bits);
    }
}

template <typename Number> double valueAt(const char* bytes, bool swap)
{
    Number value;
    std::memcpy(&value, bytes, sizeof value);
    return static_cast<double>(swapped(value, swap));
}

/// IEEE 754 half precision: 1 bit sign, 5 bits exponent, 10 bits fraction.
double halfAt(const char* bytes, bool swap)
{
    quint16 half = 0;
    std::memcpy(&half, bytes, sizeof half);
    half = swapped(half, swap);
    const int exponent = (half >> 10U) & 31U;
    const double fraction = half & 1023U;
    double value = 0.0;
    if (exponent == 31)
        value = fraction == 0.0 ? std::numeric_limits<double>::infinity() : std::numeric_limits<double>::quiet_NaN();
    else
        value = exponent == 0 ? std::ldexp(fraction, -24) : std::ldexp(1024.0 + fraction, exponent - 25);
    return (half & 0x8000U) != 0 ? -value : value;
}

double boolAt(const char* bytes, bool /*swap*/)
{
    return *bytes != 0 ? 1.0 : 0.0;
}

double extendedAt(const char* bytes, bool /*swap*/)
{
    long double value = 0.0L;
    std::memcpy(&value, bytes, sizeof value);
    return static_cast<double>(value);
}

struct NumberType {
    QByteArrayView code; ///< kind and number of bytes
    qsizetype bytes;
    double (*read)(const char* bytes, bool swap);
};

constexpr NumberType numberTypes[] = {
    { "b1", 1, boolAt },
    { "i1", 1, valueAt<qint8> },
    { "i2", 2, valueAt<qint16> },
    { "i4", 4, valueAt<qint32> },
    { "i8", 8, valueAt<qint64> },
    { "u1", 1, valueAt<quint8> },
    { "u2", 2, valueAt<quint16> },
    { "u4", 4, valueAt<quint32> },
    { "u8", 8, valueAt<quint64> },
    { "f2", 2, halfAt },
    { "f4", 4, valueAt<float> },
    { "f8", 8, valueAt<double> },
    { "f16", 16, extendedAt },
};

/// Type and byte order of the elements; a null type if they cannot be read.
std::pair<const NumberType*, bool> numberTypeOf(QByteArrayView descr)
{
    constexpr bool littleHost = QSysInfo::ByteOrder == QSysInfo::LittleEndian;
    bool little = littleHost;
    if (descr.startsWith('<') || descr.startsWith('>'))
        little = descr[0] == '<';
    if (!descr.isEmpty() && QByteArrayView("<>=|").contains(descr[0]))
        descr = descr.sliced(1);
    const bool swap = little != littleHost;
    const auto* const type = std::find_if(
        std::begin(numberTypes), std::end(numberTypes), [&](const NumberType& known) { return known.code == descr; });
    if (type == std::end(numberTypes))
        return { nullptr, false };
    // The 16 bytes are the x86 extended format, which is not portable to other machines or the other byte order.
    if (type->bytes == 16 && (swap || sizeof(long double) != 16 || std::numeric_limits<long double>::digits != 64))
        return { nullptr, false };
    return { type, swap };
}

/// Splits the bytes into the text of the header and the data. Returns an error.
QString splitFile(QByteArrayView bytes, QByteArrayView& header, QByteArrayView& data)
{
    if (!bytes.startsWith(magic) || bytes.size() < 10)
        return Texts::tr("byte 0: it does not begin as an NPY file: save it again with numpy.save()");
    const int version = static_cast<quint8>(bytes[6]);
    if (version < 1 || version > 3)
        return Texts::tr("byte 6: version %1 of the format is not known: save it as version 1 to 3").arg(version);
    const qsizetype lengthBytes = version == 1 ? 2 : 4;
    const qsizetype begin = 8 + lengthBytes;
    if (bytes.size() < begin)
        return Texts::tr("byte %1: the file ends in its header: it is incomplete, copy it again").arg(bytes.size());
    const qsizetype length = version == 1 ? qsizetype(qFromLittleEndian<quint16>(bytes.data() + 8))
                                          : qsizetype(qFromLittleEndian<quint32>(bytes.data() + 8));
    if (length > bytes.size() - begin)
        return Texts::tr("byte %1: the file ends in its header: it is incomplete, copy it again").arg(bytes.size());
    header = bytes.sliced(begin, length);
    data = bytes.sliced(begin + length);
    return {};
}

QString readHeader(QByteArrayView text, qsizetype begin, NpyHeader& header)
{
    DictionaryReader reader(text);
    if (reader.read(header) || header.type == "record")
        return {};
    return Texts::tr("byte %1: the header is damaged: save the array again with numpy.save()")
        .arg(begin + reader.position());
}

/// Rows and columns of the array. Returns an error for more than two dimensions and for an array without values.
QString setShape(Dataset& data, const std::vector<qsizetype>& shape)
{
    if (shape.size() > 2) {
        return Texts::tr("the array has %1 dimensions: save one or two of them").arg(shape.size());
    }
    data.kind = shape.size() == 2 ? Dataset::Kind::Map : Dataset::Kind::Curves;
    data.rows = shape.size() == 2 ? shape[0] : 1;
    data.columns = shape.empty() ? 1 : shape.back();
    if (data.rows == 0 || data.columns == 0)
        return Texts::tr("the array is empty: save one with values");
    if (data.rows > maxDatasetValues / data.columns)
        return Texts::tr("the array has more than %1 values: save a part of it").arg(maxDatasetValues);
    return {};
}

void readValues(Dataset& data, QByteArrayView bytes, const NumberType& type, bool swap, bool fortranOrder)
{
    const qsizetype count = data.rows * data.columns;
    data.values.resize(static_cast<std::size_t>(count));
    for (qsizetype row = 0; row < data.rows; ++row) {
        for (qsizetype column = 0; column < data.columns; ++column) {
            const qsizetype place = fortranOrder ? column * data.rows + row : row * data.columns + column;
            data.values[static_cast<std::size_t>(row * data.columns + column)] =
                type.read(bytes.data() + place * type.bytes, swap);
        }
    }
}

QString decode(QByteArrayView bytes, Dataset& data)
{
    QByteArrayView text;
    QByteArrayView content;
    NpyHeader header;
    QString error = splitFile(bytes, text, content);
    if (error.isEmpty())
        error = readHeader(text, text.data() - bytes.data(), header);
    if (!error.isEmpty())
        return error;
    const auto [type, swap] = numberTypeOf(header.type);
    if (type == nullptr) {
        return Texts::tr("the values are of the type '%1': convert them to real numbers, for example float64")
            .arg(quoted(header.type));
    }
    error = setShape(data, header.shape);
    if (!error.isEmpty())
        return error;
    const qsizetype needed = data.rows * data.columns * type->bytes;
    if (content.size() != needed) {
        return Texts::tr(
            "byte %1: the shape needs %2 bytes of values and the file has %3: it is damaged, copy it again")
            .arg(bytes.size() - content.size())
            .arg(needed)
            .arg(content.size());
    }
    readValues(data, content, *type, swap, header.fortranOrder);
    return {};
}

} // namespace

QByteArray encodeNpy(const Dataset& data)
{
    if (!isConsistent(data))
        return {};
    const bool single = data.kind == Dataset::Kind::Curves && data.rows == 1;
    const QByteArray shape = single ? QByteArray::number(data.columns) + ','
                                    : QByteArray::number(data.rows) + ", " + QByteArray::number(data.columns);
    QByteArray header = "{'descr': '<f8', 'fortran_order': False, 'shape': (" + shape + "), }";
    // The values begin at a multiple of 64 bytes, so that the file can be memory-mapped.
    constexpr qsizetype prefix = 10;
    header += QByteArray(63 - (prefix + header.size()) % 64, ' ') + '\n';
    QByteArray bytes = magic.toByteArray() + QByteArrayView("\x01\x00", 2).toByteArray();
    const quint16 length = qToLittleEndian(static_cast<quint16>(header.size()));
    bytes.append(reinterpret_cast<const char*>(&length), sizeof length);
    bytes += header;
    const qsizetype begin = bytes.size();
    bytes.resize(begin + static_cast<qsizetype>(data.values.size() * sizeof(double)));
    qToLittleEndian<quint64>(data.values.data(), static_cast<qsizetype>(data.values.size()), bytes.data() + begin);
    return bytes;
}

DatasetResult decodeNpy(QByteArrayView bytes)
{
    DatasetResult result;
    result.error = decode(bytes, result.data);
    if (!result.error.isEmpty())
        result.data = {};
    return result;
}

} // namespace tarnis
