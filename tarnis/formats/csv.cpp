#include "tarnis/formats/csv.h"

#include "tarnis/formats/csvheader_p.h"
#include "tarnis/formats/numbertext_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>
#include <utility>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Csv)
};

constexpr qsizetype likelyBytesPerNumber = 8;

/// Writes the first columns of a line, which hold its position on an axis.
class AxisWriter {
public:
    AxisWriter(const DataAxis& axis, qsizetype bins)
        : m_columns(axisColumnsOf(axis, bins))
        , m_values(m_columns == AxisColumns::Centre ? centresOf(axis, bins) : axis.values)
    {
    }
    void append(QByteArray& text, qsizetype bin) const
    {
        const auto index = static_cast<std::size_t>(bin);
        if (m_columns == AxisColumns::Bin) {
            appendNumber(text, static_cast<double>(bin));
            return;
        }
        appendNumber(text, m_values[index]);
        if (m_columns == AxisColumns::Edges) {
            text += ',';
            appendNumber(text, m_values[index + 1]);
        }
    }

private:
    AxisColumns m_columns;
    std::vector<double> m_values;
};

void appendCurves(QByteArray& text, const Dataset& data)
{
    const AxisWriter axis(data.x, data.columns);
    const auto appendRows = [&](const std::vector<double>& values, qsizetype column) {
        for (qsizetype row = 0; row < data.rows && !values.empty(); ++row) {
            text += ',';
            appendNumber(text, values[static_cast<std::size_t>(row * data.columns + column)]);
        }
    };
    for (qsizetype column = 0; column < data.columns; ++column) {
        axis.append(text, column);
        appendRows(data.values, column);
        appendRows(data.errors, column);
        text += '\n';
    }
}

void appendMap(QByteArray& text, const Dataset& data)
{
    const AxisWriter axis(data.y, data.rows);
    const auto appendRow = [&](const std::vector<double>& values, qsizetype row) {
        for (qsizetype column = 0; column < data.columns && !values.empty(); ++column) {
            text += ',';
            appendNumber(text, values[static_cast<std::size_t>(row * data.columns + column)]);
        }
    };
    for (qsizetype row = 0; row < data.rows; ++row) {
        axis.append(text, row);
        appendRow(data.values, row);
        appendRow(data.errors, row);
        text += '\n';
    }
}

} // namespace

QByteArray encodeCsv(const Dataset& data)
{
    if (!isConsistent(data))
        return {};
    QByteArray text = encodeCsvHeader(data);
    text.reserve(text.size() + static_cast<qsizetype>(data.values.size() + data.errors.size()) * likelyBytesPerNumber);
    if (data.kind == Dataset::Kind::Map)
        appendMap(text, data);
    else
        appendCurves(text, data);
    return text;
}

namespace {

/// The numbers of a table, and the column names above them.
struct Table {
    CsvHeader header;
    QStringList names; ///< of a first line that is not a comment; may be empty
    std::vector<double> cells; ///< line after line
    qsizetype lines = 0;
    qsizetype fields = 0; ///< in each line
};

/// A digit, possibly after a sign or a point, and only characters of numbers.
bool isMeantAsNumber(const QByteArray& field)
{
    static const QByteArray parts = "0123456789.+-eExX";
    const bool isMadeOfParts =
        std::all_of(field.begin(), field.end(), [](char character) { return parts.contains(character); });
    const bool hasDigit =
        std::any_of(field.begin(), field.end(), [](char character) { return character >= '0' && character <= '9'; });
    return isMadeOfParts && hasDigit && QByteArrayView("0123456789.+-").contains(field.front());
}

class TableReader {
public:
    explicit TableReader(QByteArrayView text)
        : m_lines(text.startsWith("\xEF\xBB\xBF") ? text.sliced(3) : text)
    {
    }

    QString read(Table& table)
    {
        while (const std::optional<QByteArrayView> line = m_lines.next()) {
            QString error;
            if (line->startsWith('#'))
                error = table.lines == 0 ? readCsvComment(table.header, *line) : QString();
            else if (!line->trimmed().isEmpty())
                error = readLine(table, *line);
            if (!error.isEmpty())
                return Texts::tr("line %1: %2").arg(m_lines.number()).arg(error);
        }
        if (table.lines == 0)
            return Texts::tr("it has no numbers: it must have one column of counts, or x and counts");
        return {};
    }

private:
    QString readLine(Table& table, QByteArrayView line)
    {
        const qsizetype comment = line.indexOf('#');
        if (comment >= 0 && (m_separator != 0 || !line.first(comment).contains('"')))
            line = line.first(comment);
        line = line.trimmed();
        if (line.isEmpty())
            return {};
        if (m_separator == 0) {
            m_separator = csvSeparator(line);
            if (!isNumeric(line)) {
                for (const QByteArray& name : csvFields(line, m_separator))
                    table.names += QString::fromUtf8(name.trimmed());
                return {};
            }
        }
        return readNumbers(table, line);
    }

    /// A first line in which no field is a number holds names. One that was meant as a number, as "1e999" or "0x10", is
    /// an error: taken for a name it would be lost.
    bool isNumeric(QByteArrayView line) const
    {
        const QList<QByteArray> fields = csvFields(line, m_separator);
        return std::any_of(fields.begin(), fields.end(),
            [](const QByteArray& field) { return numberOf(field) || isMeantAsNumber(field.trimmed()); });
    }

    QString readNumbers(Table& table, QByteArrayView line)
    {
        qsizetype count = 0;
        bool isLast = false;
        for (QByteArrayView rest = line; !isLast; ++count) {
            const QByteArrayView field = takeField(rest, isLast);
            const std::optional<double> number = field.isEmpty() ? missing : numberOf(field);
            if (!number) {
                return Texts::tr(
                    "field %1: '%2' is not a number: correct it, or begin the line with # if it is a comment")
                    .arg(count + 1)
                    .arg(quoted(field));
            }
            if (static_cast<qsizetype>(table.cells.size()) == maxDatasetValues)
                return Texts::tr("more than %1 numbers: split the file").arg(maxDatasetValues);
            table.cells.push_back(*number);
        }
        if (table.lines > 0 && count != table.fields) {
            return Texts::tr("fields: %1, in the lines before: %2; each line needs the same number of fields")
                .arg(count)
                .arg(table.fields);
        }
        table.fields = count;
        ++table.lines;
        return {};
    }

    /// The next field, without the spaces and quotes around it.
    QByteArrayView takeField(QByteArrayView& rest, bool& isLast) const
    {
        qsizetype length = 0;
        const auto isEnd = [&](char character) {
            return character == m_separator || (m_separator == ' ' && character == '\t');
        };
        while (length < rest.size() && !isEnd(rest[length]))
            ++length;
        QByteArrayView field = rest.first(length).trimmed();
        isLast = length == rest.size();
        if (!isLast)
            rest = m_separator == ' ' ? rest.sliced(length).trimmed() : rest.sliced(length + 1);
        if (field.size() >= 2 && field.startsWith('"') && field.endsWith('"'))
            field = field.sliced(1).chopped(1);
        return field;
    }

    static constexpr std::optional<double> missing = std::numeric_limits<double>::quiet_NaN();
    LineReader m_lines;
    char m_separator = 0;
};

std::vector<double> columnOf(const Table& table, qsizetype field)
{
    std::vector<double> column(static_cast<std::size_t>(table.lines));
    for (std::size_t line = 0; line < column.size(); ++line)
        column[line] = table.cells[line * static_cast<std::size_t>(table.fields) + static_cast<std::size_t>(field)];
    return column;
}

void appendColumn(std::vector<double>& list, const Table& table, qsizetype field)
{
    const std::vector<double> column = columnOf(table, field);
    list.insert(list.end(), column.begin(), column.end());
}

/// The axis along the lines: from the header if it states the range, else from the first columns.
void fillAxis(DataAxis& axis, bool hasRange, const Table& table)
{
    if (hasRange) {
        axis.values = uniformEdges(axis.values.front(), axis.values.back(), table.lines);
        return;
    }
    if (table.header.axisColumns == AxisColumns::Bin)
        return;
    axis.values = columnOf(table, 0);
    if (table.header.axisColumns == AxisColumns::Edges)
        axis.values.push_back(table.cells[static_cast<std::size_t>((table.lines - 1) * table.fields + 1)]);
}

/// Names of curves as the header gives them; the name of the values is not repeated for each curve.
void fillRowNames(Dataset& data, const CsvHeader& header, qsizetype first)
{
    if (!data.rowNames.isEmpty())
        data.rowNames = header.columns.mid(first, data.rows);
    if (data.rowNames.size() != data.rows)
        data.rowNames.clear();
}

void interpretCurves(const Table& table, Dataset& data, qsizetype first, qsizetype curves)
{
    data.rows = curves;
    data.columns = table.lines;
    for (qsizetype curve = 0; curve < curves; ++curve)
        appendColumn(data.values, table, first + curve);
    for (qsizetype curve = 0; curve < curves && table.header.hasErrors; ++curve)
        appendColumn(data.errors, table, first + curves + curve);
    fillRowNames(data, table.header, first);
    fillAxis(data.x, table.header.hasRangeX, table);
}

void interpretMap(const Table& table, Dataset& data, qsizetype first, qsizetype columns)
{
    data.rows = table.lines;
    data.columns = columns;
    for (qsizetype line = 0; line < table.lines; ++line) {
        const auto begin = table.cells.begin() + line * table.fields + first;
        data.values.insert(data.values.end(), begin, begin + columns);
        if (table.header.hasErrors)
            data.errors.insert(data.errors.end(), begin + columns, begin + columns * 2);
    }
    if (table.header.hasRangeX)
        data.x.values = uniformEdges(data.x.values.front(), data.x.values.back(), columns);
    if (data.rowNames.size() != data.rows)
        data.rowNames.clear();
    fillAxis(data.y, table.header.hasRangeY, table);
}

/// A table with the header of encodeCsv().
QString interpretWithHeader(Table& table, Dataset& data)
{
    data = std::move(table.header.data);
    const qsizetype first = table.header.axisColumns == AxisColumns::Edges ? 2 : 1;
    const qsizetype share = table.header.hasErrors ? 2 : 1;
    const qsizetype fields = table.fields - first;
    if (fields < share || fields % share != 0)
        return Texts::tr("fields in a line: %1, which does not fit the header: restore the file").arg(table.fields);
    if (data.kind == Dataset::Kind::Map)
        interpretMap(table, data, first, fields / share);
    else
        interpretCurves(table, data, first, fields / share);
    if (isConsistent(data))
        return {};
    return Texts::tr("the axes of the header do not fit the table: restore the file");
}

bool risesStrictly(const std::vector<double>& values)
{
    return std::adjacent_find(values.begin(), values.end(), [](double a, double b) { return !(a < b); })
        == values.end();
}

bool isErrorName(const QString& name)
{
    const QString plain = name.trimmed().toLower();
    return plain == u"error" || plain == u"errors" || plain.endsWith(u" error") || plain.endsWith(u"_errors");
}

/// Columns x, value, error, value, error, ... of a table without header.
void interpretColumns(const Table& table, Dataset& data)
{
    data.columns = table.lines;
    data.x.values = columnOf(table, 0);
    data.x.name = table.names.value(0);
    bool allErrors = true;
    for (qsizetype field = 1; field < table.fields; ++field) {
        appendColumn(data.values, table, field);
        data.rowNames += table.names.value(field);
        ++data.rows;
        const bool error = field + 1 < table.fields && isErrorName(table.names.value(field + 1));
        if (error)
            appendColumn(data.errors, table, ++field);
        allErrors = allErrors && error;
    }
    if (!allErrors)
        data.errors.clear();
    if (data.rows == 1 && !data.rowNames.front().isEmpty())
        data.name = data.rowNames.front();
    if (data.rows == 1 || table.names.isEmpty())
        data.rowNames.clear();
}

QString interpretPlain(Table& table, Dataset& data)
{
    if (table.fields == 1) {
        data.rows = 1;
        data.columns = table.lines;
        data.values = std::move(table.cells);
        if (!table.names.isEmpty())
            data.name = table.names.front();
        return {};
    }
    const std::vector<double> x = columnOf(table, 0);
    if (risesStrictly(x)) {
        interpretColumns(table, data);
        return {};
    }
    if (table.fields == 2)
        return Texts::tr("the first of two columns is x and must rise: sort the lines by x");
    data.kind = Dataset::Kind::Map;
    data.rows = table.lines;
    data.columns = table.fields;
    data.values = std::move(table.cells);
    return {};
}

} // namespace

DatasetResult decodeCsv(QByteArrayView text)
{
    Table table;
    QString error = TableReader(text).read(table);
    Dataset data;
    if (error.isEmpty())
        error = table.header.isPresent ? interpretWithHeader(table, data) : interpretPlain(table, data);
    if (!error.isEmpty())
        return { .data = {}, .error = error };
    return { .data = std::move(data), .error = {} };
}

} // namespace tarnis
