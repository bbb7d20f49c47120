#include "histogram.h"

#include <tarnis/client/histogramreply.h>

#include <QDateTime>
#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace cli {

namespace {

/// The words "key=value" of a line of the server's list; a word without "=" belongs to the previous value.
using Properties = QHash<QString, QString>;

Properties propertiesOf(const QString& text)
{
    Properties properties;
    QString key;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        const qsizetype equals = word.indexOf(u'=');
        if (equals > 0) {
            key = word.left(equals);
            properties.insert(key, word.mid(equals + 1));
        } else if (!key.isEmpty()) {
            properties[key] += u' ' + word;
        }
    }
    return properties;
}

/// The properties of a histogram from the server's list; empty if it is not listed, or the server has no list.
Result<Properties> findInList(Server& server, const QString& name)
{
    const Result<tarnis::Reply> reply = server.ask(QStringLiteral("hists"));
    if (!reply.isOk() && reply.failure().code != Refused)
        return reply.failure();
    if (!reply.isOk())
        return Properties();
    for (const QString& line : reply.value().text().split(u'\n')) {
        if (line.startsWith(name + u':'))
            return propertiesOf(line.mid(name.size() + 1));
    }
    return Properties();
}

tarnis::HistogramAxis axisOf(const Properties& properties, const QString& letter)
{
    return { .min = properties.value("min" + letter).toDouble(),
        .max = properties.value("max" + letter).toDouble(),
        .bins = properties.value("bins" + letter).toInt() };
}

tarnis::DataAxis dataAxis(const tarnis::HistogramAxis& axis, const Properties& properties, const QString& letter)
{
    tarnis::DataAxis result {
        .name = properties.value("label" + letter), .unit = properties.value("unit" + letter), .values = {}
    };
    const bool counted = axis.min == 0.0 && axis.max == static_cast<double>(axis.bins);
    if (!counted)
        result.values = tarnis::uniformEdges(axis.min, axis.max, axis.bins);
    return result;
}

void describe(tarnis::Dataset& data, const QString& name, const QString& address, const QString& text)
{
    static const QRegularExpression run(QStringLiteral("run (\\S+?),"));
    static const QRegularExpression live(QStringLiteral("live ([0-9.]+) s"));
    const QString number = run.match(text).captured(1);
    data.title = name;
    data.source = number.isEmpty() ? address : QStringLiteral("%1, run %2").arg(address, number);
    data.time = QDateTime::currentDateTimeUtc();
    data.liveTime = live.match(text).captured(1).toDouble();
}

tarnis::Dataset datasetOf(const tarnis::HistogramReply& reply, const Properties& properties, int firstRow)
{
    tarnis::Dataset data;
    const bool map = reply.kind == tarnis::HistogramFormat::Kind::Map;
    data.kind = map ? tarnis::Dataset::Kind::Map : tarnis::Dataset::Kind::Curves;
    data.rows = reply.rows.size();
    data.columns = reply.x.bins;
    data.x = dataAxis(reply.x, properties, map ? QStringLiteral("x") : QString());
    if (map)
        data.y = dataAxis(reply.y, properties, QStringLiteral("y"));
    data.values.reserve(static_cast<std::size_t>(data.rows * data.columns));
    for (const QList<double>& row : reply.rows)
        data.values.insert(data.values.end(), row.begin(), row.end());
    for (qsizetype row = 0; row < data.rows && !map && data.rows > 1; ++row)
        data.rowNames += QStringLiteral("row %1").arg(row + firstRow);
    return data;
}

tarnis::HistogramFormat formatOf(const QString& command, const Properties& properties, bool map)
{
    tarnis::HistogramFormat format = tarnis::HistogramFormat::ofCommand(command);
    // Nothing is drawn while the reply is read, and its size is limited: more rows and values than for a live plot.
    format.maxRows = format.maxMapRows = qsizetype(1) << 16;
    format.maxValues = qsizetype(1) << 27;
    format.x = axisOf(properties, map ? QStringLiteral("x") : QString());
    if (map)
        format.y = axisOf(properties, QStringLiteral("y"));
    return format;
}

} // namespace

Result<tarnis::Dataset> fetchHistogram(Server& server, const QString& name, std::optional<Range<int>> rows)
{
    const Result<Properties> properties = findInList(server, name);
    if (!properties.isOk())
        return properties.failure();
    const bool map = properties.value().value("kind") == u"2d";
    if (map && rows)
        return Failure { .code = WrongUsage,
            .text = QStringLiteral("'%1' is a map: --rows is for 1D histograms").arg(name) };
    QString command = (map ? QStringLiteral("hist2d ") : QStringLiteral("hist1d ")) + name;
    if (rows)
        command += QStringLiteral(" %1 %2").arg(rows->first).arg(rows->last);
    const Result<tarnis::Reply> reply = server.askBinary(command);
    if (!reply.isOk())
        return reply.failure();
    const tarnis::HistogramReply histogram = tarnis::HistogramReply::parse(
        reply.value().data, reply.value().binaryText, formatOf(command, properties.value(), map));
    if (!histogram.isOk() || histogram.rows.isEmpty() || histogram.x.bins == 0) {
        const QString reason = histogram.isOk() ? QStringLiteral("it holds no values") : histogram.reason;
        return Failure { .code = NoConnection,
            .text =
                QStringLiteral("the reply to '%1' from %2 cannot be used: %3").arg(command, server.address(), reason) };
    }
    tarnis::Dataset data = datasetOf(histogram, properties.value(), rows ? rows->first : 0);
    describe(data, name, server.address(), histogram.text);
    return data;
}

Result<std::optional<Range<int>>> rowsOption(const Arguments& arguments)
{
    if (!arguments.has("rows"))
        return std::optional<Range<int>>();
    const QStringList ends = arguments.value("rows").split(u':');
    bool firstValid = false;
    bool lastValid = false;
    const Range<int> rows { .first = ends.first().toInt(&firstValid), .last = ends.last().toInt(&lastValid) };
    if (ends.size() <= 2 && firstValid && lastValid && rows.first >= 0 && rows.last >= rows.first)
        return std::optional(rows);
    return Failure { .code = WrongUsage,
        .text = QStringLiteral("--rows '%1' is not a range of rows: give the first and the last one, as 0:3")
                    .arg(arguments.value("rows")) };
}

} // namespace cli
