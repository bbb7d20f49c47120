// Commands about histograms. hist1d and hist2d always answer in binary form, including errors.
#include "commandtable.h"
#include "histograms.h"
#include "simulation.h"
#include "text.h"

#include <QStringList>

namespace simserver {

namespace {

constexpr qint64 maxPayload = qint64 { 16 } * 1024 * 1024;

QString axisText(const Axis& axis, const QString& suffix)
{
    return QStringLiteral(" bins%1=%2 min%1=%3 max%1=%4 label%1=%5 unit%1=%6")
        .arg(suffix)
        .arg(axis.bins)
        .arg(numberText(axis.min), numberText(axis.max), axis.label, axis.unit);
}

/// Removes the word that begins with `prefix` from the list. Returns the rest of the word, or an empty text.
QString takeOption(QStringList& words, const QString& prefix)
{
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (words[i].startsWith(prefix))
            return words.takeAt(i).mid(prefix.size());
    }
    return {};
}

/// Reads a number of bins that divides that of the axis. Returns the error, if any.
QString readBins(const QString& text, const Axis& axis, int& bins)
{
    bool valid = false;
    bins = text.toInt(&valid);
    if (!valid || bins < 1)
        return QStringLiteral("'%1' is not a number of bins").arg(shown(text));
    if (axis.bins % bins != 0)
        return QStringLiteral("%1 bins do not divide into %2").arg(axis.bins).arg(bins);
    return {};
}

/// The rows requested by a hist1d command.
struct RowRequest {
    int first = 0;
    int last = 0;
    int bins = 0;
    bool pairs = false;
    bool all = false;
};

QString readRow(const QString& word, const Histogram1D& histogram, int& row)
{
    bool valid = false;
    row = word.toInt(&valid);
    if (!valid)
        return QStringLiteral("'%1' is not a row").arg(shown(word));
    if (row < 0 || row >= histogram.rows)
        return QStringLiteral("no row %1: '%2' has rows 0 to %3").arg(row).arg(histogram.name).arg(histogram.rows - 1);
    return {};
}

/// Reads the remaining words: up to two rows, or one with pairs.
QString readRows(const QStringList& words, const Histogram1D& histogram, RowRequest& request)
{
    const qsizetype maxWords = request.pairs ? 1 : 2;
    if (words.size() > maxWords)
        return QStringLiteral("unexpected '%1'").arg(shown(words[maxWords]));
    request.last = request.pairs ? 0 : histogram.rows - 1;
    if (words.isEmpty())
        return {};
    QString error = readRow(words[0], histogram, request.first);
    request.last = request.first;
    if (error.isEmpty() && words.size() == 2)
        error = readRow(words[1], histogram, request.last);
    if (error.isEmpty() && request.last < request.first)
        error = QStringLiteral("the last row is before the first");
    return error;
}

QString parseRowRequest(QStringList words, const Histogram1D& histogram, RowRequest& request)
{
    const QString bins = takeOption(words, QStringLiteral("bins:"));
    request.bins = histogram.axis.bins;
    if (!bins.isNull()) {
        QString error = readBins(bins, histogram.axis, request.bins);
        if (!error.isEmpty())
            return error;
    }
    request.pairs = words.removeAll(QStringLiteral("pairs")) > 0;
    request.all = request.pairs && words.removeAll(QStringLiteral("all")) > 0;
    return readRows(words, histogram, request);
}

/// "OK:" and a line with the content, the live time and the number of events.
QByteArray heading(const QString& what, const Acquisition& run)
{
    return QStringLiteral("OK: %1, run %2, live %3 s, %4 events")
        .arg(what, run.run() < 0 ? QStringLiteral("none") : QString::number(run.run()))
        .arg(run.liveTime(), 0, 'f', 3)
        .arg(run.events())
        .toUtf8();
}

QByteArray axisSuffix(const Axis& axis, int bins)
{
    return QStringLiteral(" (%1 %2 %3)\n").arg(numberText(axis.min), numberText(axis.max)).arg(bins).toUtf8();
}

Reply rowReply(const Histogram1D& histogram, const RowRequest& request, const Acquisition& run)
{
    const qint64 rows = request.last - request.first + 1;
    const qint64 bytes = (request.pairs ? 2 : rows) * request.bins * static_cast<qint64>(sizeof(double));
    if (bytes > maxPayload) {
        return Reply::binaryRefusal(
            QStringLiteral("the reply would be larger than %1 bytes: ask for fewer rows or bins").arg(maxPayload));
    }
    Reply reply;
    QString what;
    if (request.pairs) {
        reply.kind = Reply::Kind::Pairs;
        reply.payload = pairPayload(histogram, request.first, request.bins, request.all);
        what = QStringLiteral("%1 row %2").arg(histogram.name).arg(request.first);
    } else {
        reply.kind = Reply::Kind::Rows;
        reply.payload = rowPayload(histogram, request.first, request.last, request.bins);
        what = QStringLiteral("%1 rows %2 to %3").arg(histogram.name).arg(request.first).arg(request.last);
    }
    reply.text = heading(what, run) + axisSuffix(histogram.axis, request.bins);
    return reply;
}

QString parseMapBins(QStringList& words, const Histogram2D& map, int& xBins, int& yBins)
{
    xBins = map.x.bins;
    yBins = map.y.bins;
    const QString bins = takeOption(words, QStringLiteral("bins:"));
    if (!words.isEmpty())
        return QStringLiteral("unexpected '%1'").arg(shown(words.first()));
    if (bins.isNull())
        return {};
    const qsizetype cross = bins.indexOf(QLatin1Char('x'));
    QString error = readBins(cross < 0 ? bins : bins.left(cross), map.x, xBins);
    if (error.isEmpty())
        error = readBins(cross < 0 ? bins : bins.mid(cross + 1), map.y, yBins);
    return error;
}

} // namespace

Reply histsCommand(Simulation& simulation, const QString& arguments)
{
    if (!arguments.isEmpty())
        return Reply::refusal(unexpected(arguments));
    QString text;
    const HistogramSet& histograms = simulation.acquisition().histograms();
    for (const Histogram1D& histogram : histograms.all1D()) {
        text += QStringLiteral("%1: kind=1d rows=%2").arg(histogram.name).arg(histogram.rows)
            + axisText(histogram.axis, {}) + QLatin1Char('\n');
    }
    for (const Histogram2D& map : histograms.all2D()) {
        text += map.name + QStringLiteral(": kind=2d") + axisText(map.x, QStringLiteral("x"))
            + axisText(map.y, QStringLiteral("y")) + QLatin1Char('\n');
    }
    return Reply::ok(text.toUtf8());
}

Reply hist1dCommand(Simulation& simulation, const QString& arguments)
{
    QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return Reply::binaryRefusal(QStringLiteral("hist1d needs the name of a histogram; hists lists them"));
    const QString name = words.takeFirst();
    const Histogram1D* const histogram = simulation.acquisition().histograms().find1D(name);
    if (histogram == nullptr)
        return Reply::binaryRefusal(QStringLiteral("no 1D histogram '%1'; hists lists them").arg(shown(name)));
    RowRequest request;
    const QString error = parseRowRequest(words, *histogram, request);
    return error.isEmpty() ? rowReply(*histogram, request, simulation.acquisition()) : Reply::binaryRefusal(error);
}

Reply hist2dCommand(Simulation& simulation, const QString& arguments)
{
    QStringList words = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return Reply::binaryRefusal(QStringLiteral("hist2d needs the name of a map; hists lists them"));
    const QString name = words.takeFirst();
    const Histogram2D* const map = simulation.acquisition().histograms().find2D(name);
    if (map == nullptr)
        return Reply::binaryRefusal(QStringLiteral("no map '%1'; hists lists them").arg(shown(name)));
    int xBins = 0;
    int yBins = 0;
    const QString error = parseMapBins(words, *map, xBins, yBins);
    if (!error.isEmpty())
        return Reply::binaryRefusal(error);
    Reply reply;
    reply.kind = Reply::Kind::Map;
    reply.payload = mapPayload(*map, xBins, yBins);
    reply.text = heading(map->name, simulation.acquisition())
        + QStringLiteral(", exported %1 x %2 y\n").arg(xBins).arg(yBins).toUtf8();
    return reply;
}

} // namespace simserver
