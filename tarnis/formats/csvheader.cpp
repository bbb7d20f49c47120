#include "tarnis/formats/csvheader_p.h"

#include "tarnis/formats/numbertext_p.h"

#include <QCoreApplication>

#include <algorithm>

namespace tarnis {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(tarnis::Csv)
};

/// Escapes line feeds and backslashes with a backslash.
QByteArray onOneLine(const QString& text)
{
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\r', QStringLiteral("\\r"));
    return escaped.toUtf8();
}

QString unescaped(QByteArrayView text)
{
    QByteArray plain;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        ++i;
        plain += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i];
    }
    return QString::fromUtf8(plain);
}

void addText(QByteArray& header, const char* key, const QString& text)
{
    if (!text.isEmpty())
        header += QByteArray("# ") + key + ": " + onOneLine(text) + '\n';
}

void addNumbers(QByteArray& header, const char* key, const std::vector<double>& values)
{
    if (!values.empty())
        header += QByteArray("# ") + key + ": " + numberList(values) + '\n';
}

/// The values of an axis in the header, unless its columns hold them.
void addAxis(QByteArray& header, const QByteArray& letter, const DataAxis& axis, qsizetype bins, bool hasColumns)
{
    addText(header, letter.constData(), axis.name);
    addText(header, (letter + " unit").constData(), axis.unit);
    const bool edges = static_cast<qsizetype>(axis.values.size()) == bins + 1;
    if (edges && areUniformEdges(axis.values))
        addNumbers(header, (letter + " edges").constData(), { axis.values.front(), axis.values.back() });
    else if (!hasColumns)
        addNumbers(header, (letter + (edges ? " edges" : " centres")).constData(), axis.values);
}

QByteArray csvQuoted(const QString& name)
{
    QByteArray text = onOneLine(name);
    if (!text.contains(',') && !text.contains('"') && text == text.trimmed())
        return text;
    return '"' + text.replace('"', "\"\"") + '"';
}

QByteArray withUnit(const QString& name, const QString& unit)
{
    return csvQuoted(unit.isEmpty() ? name : QStringLiteral("%1 [%2]").arg(name, unit));
}

QByteArray axisColumnNames(const DataAxis& axis, const QString& letter, AxisColumns columns)
{
    const QString name = axis.name.isEmpty() ? letter : axis.name;
    switch (columns) {
    case AxisColumns::Bin:
        return "bin";
    case AxisColumns::Centre:
        return withUnit(name, axis.unit);
    case AxisColumns::Edges:
        return withUnit(name + QStringLiteral(" low"), axis.unit) + ','
            + withUnit(name + QStringLiteral(" high"), axis.unit);
    }
    return {};
}

/// Names of the curves, then of their errors. All columns of a map share one name.
QByteArray columnNames(const Dataset& data)
{
    const bool map = data.kind == Dataset::Kind::Map;
    const DataAxis& axis = map ? data.y : data.x;
    QByteArray names = axisColumnNames(
        axis, map ? QStringLiteral("y") : QStringLiteral("x"), axisColumnsOf(axis, map ? data.rows : data.columns));
    if (map)
        return names + ',' + csvQuoted(data.name) + (data.errors.empty() ? "" : ",error");
    for (qsizetype row = 0; row < data.rows; ++row)
        names += ',' + csvQuoted(data.rowNames.value(row, data.name));
    for (qsizetype row = 0; row < data.rows && !data.errors.empty(); ++row)
        names += ',' + csvQuoted(data.rowNames.value(row, data.name) + QStringLiteral(" error"));
    return names;
}

const char* nameOf(AxisColumns columns)
{
    return columns == AxisColumns::Bin ? "bin" : columns == AxisColumns::Centre ? "centre" : "low, high";
}

} // namespace

AxisColumns axisColumnsOf(const DataAxis& axis, qsizetype bins)
{
    if (axis.values.empty())
        return AxisColumns::Bin;
    const bool edges = static_cast<qsizetype>(axis.values.size()) == bins + 1;
    return edges && !areUniformEdges(axis.values) ? AxisColumns::Edges : AxisColumns::Centre;
}

QByteArray encodeCsvHeader(const Dataset& data)
{
    const bool map = data.kind == Dataset::Kind::Map;
    QByteArray header = csvMarker.toByteArray() + '\n';
    header += map ? "# kind: map\n" : "# kind: curves\n";
    addText(header, "title", data.title);
    addText(header, "source", data.source);
    if (data.time.isValid())
        addText(header, "time", data.time.toUTC().toString(Qt::ISODateWithMs));
    if (data.liveTime != 0.0)
        addNumbers(header, "live time", { data.liveTime });
    if (data.realTime != 0.0)
        addNumbers(header, "real time", { data.realTime });
    addNumbers(header, "calibration", data.calibration);
    addText(header, "calibration unit", data.calibrationUnit);
    addAxis(header, "x", data.x, data.columns, !map);
    if (map)
        addAxis(header, "y", data.y, data.rows, true);
    addText(header, "values", data.name);
    addText(header, "values unit", data.unit);
    if (!data.errors.empty())
        header += "# errors: behind the values\n";
    if (!data.rowNames.isEmpty() && map)
        addText(header, "rows", data.rowNames.join(u'\n'));
    const AxisColumns columns = map ? axisColumnsOf(data.y, data.rows) : axisColumnsOf(data.x, data.columns);
    header += QByteArray("# ") + (map ? "y" : "x") + " column: " + nameOf(columns) + '\n';
    if (!data.rowNames.isEmpty() && !map)
        header += "# named: yes\n";
    return header + "# columns: " + columnNames(data) + '\n';
}

namespace {

QString setNumbers(std::vector<double>& list, QByteArrayView value, const QByteArray& key)
{
    const std::optional<std::vector<double>> numbers = numbersOf(value);
    if (!numbers)
        return Texts::tr("'%1' is not a list of numbers: correct '%2'").arg(quoted(value), QString::fromUtf8(key));
    list = *numbers;
    return {};
}

QString setNumber(double& number, QByteArrayView value, const QByteArray& key)
{
    std::vector<double> list;
    const QString error = setNumbers(list, value, key);
    if (error.isEmpty() && !list.empty())
        number = list.front();
    return error;
}

/// "x", "x unit", "x edges", "x centres", "x column", and the same for y.
QString setAxis(CsvHeader& header, const QByteArray& key, QByteArrayView value)
{
    DataAxis& axis = key.startsWith('x') ? header.data.x : header.data.y;
    if (key.size() == 1)
        axis.name = unescaped(value);
    else if (key.endsWith(" unit"))
        axis.unit = unescaped(value);
    else if (key.endsWith(" edges") || key.endsWith(" centres")) {
        const QString error = setNumbers(axis.values, value, key);
        (key.startsWith('x') ? header.hasRangeX : header.hasRangeY) = key.endsWith(" edges") && axis.values.size() == 2;
        return error;
    } else if (key.endsWith(" column"))
        header.axisColumns = value == "bin" ? AxisColumns::Bin
            : value == "centre"             ? AxisColumns::Centre
                                            : AxisColumns::Edges;
    return {};
}

QString setTime(Dataset& data, QByteArrayView value)
{
    data.time = QDateTime::fromString(QString::fromUtf8(value), Qt::ISODateWithMs);
    if (data.time.isValid())
        return {};
    return Texts::tr("'%1' is not a time: write it as 2026-03-10T12:00:00Z").arg(quoted(value));
}

QString setValue(CsvHeader& header, const QByteArray& key, QByteArrayView value)
{
    Dataset& data = header.data;
    if (key == "kind")
        data.kind = value == "map" ? Dataset::Kind::Map : Dataset::Kind::Curves;
    else if (key == "title")
        data.title = unescaped(value);
    else if (key == "source")
        data.source = unescaped(value);
    else if (key == "time")
        return setTime(data, value);
    else if (key == "live time")
        return setNumber(data.liveTime, value, key);
    else if (key == "real time")
        return setNumber(data.realTime, value, key);
    else if (key == "calibration")
        return setNumbers(data.calibration, value, key);
    else if (key == "calibration unit")
        data.calibrationUnit = unescaped(value);
    else if (key == "values")
        data.name = unescaped(value);
    else if (key == "values unit")
        data.unit = unescaped(value);
    else if (key == "errors")
        header.hasErrors = true;
    else if (key == "rows")
        data.rowNames = unescaped(value).split(u'\n');
    else if (key == "named")
        data.rowNames = QStringList { QString() }; // filled from the names of the columns
    else if (key == "columns") {
        for (const QByteArray& name : csvFields(value, ','))
            header.columns += unescaped(name);
    } else if (key == "x" || key.startsWith("x ") || key == "y" || key.startsWith("y "))
        return setAxis(header, key, value);
    return {};
}

} // namespace

QString readCsvComment(CsvHeader& header, QByteArrayView line)
{
    if (line.trimmed() == csvMarker) {
        header.isPresent = true;
        header.data.name.clear();
        return {};
    }
    const qsizetype colon = line.indexOf(':');
    if (!header.isPresent || colon < 0)
        return {};
    const QByteArray key = line.first(colon).sliced(1).trimmed().toByteArray();
    // One space follows the colon; further spaces are part of the text.
    QByteArrayView value = line.sliced(colon + 1);
    if (value.startsWith(' '))
        value = value.sliced(1);
    return setValue(header, key, value);
}

char csvSeparator(QByteArrayView line)
{
    for (const char candidate : { ',', ';', '\t' }) {
        if (line.contains(candidate))
            return candidate;
    }
    return ' ';
}

QList<QByteArray> csvFields(QByteArrayView line, char separator)
{
    QList<QByteArray> fields;
    QByteArray field;
    bool protectedText = false;
    const auto finish = [&] {
        if (separator != ' ' || !field.isEmpty())
            fields += field;
        field.clear();
    };
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char character = line[i];
        if (character == '"' && protectedText && i + 1 < line.size() && line[i + 1] == '"')
            field += line[++i];
        else if (character == '"')
            protectedText = !protectedText;
        else if (!protectedText && (character == separator || (separator == ' ' && character == '\t')))
            finish();
        else
            field += character;
    }
    finish();
    return fields;
}

} // namespace tarnis
