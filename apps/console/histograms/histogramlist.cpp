#include "histograms/histogramlist.h"

#include "windows/window.h"

#include <QMap>

#include <cmath>
#include <optional>

namespace console {

namespace {

constexpr int curveBins = 1024;
constexpr int mapBins = 256;
constexpr int maxRows = 64;

QMap<QString, QString> pairsOf(const QString& text)
{
    QMap<QString, QString> pairs;
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    for (const QString& word : words) {
        const qsizetype equals = word.indexOf(u'=');
        if (equals > 0)
            pairs.insert(word.left(equals), word.mid(equals + 1));
    }
    return pairs;
}

std::optional<HistogramAxis> axisOf(const QMap<QString, QString>& pairs, const QString& suffix)
{
    bool isCount = false;
    bool isMin = false;
    bool isMax = false;
    HistogramAxis axis;
    axis.bins = pairs.value(QStringLiteral("bins") + suffix).toInt(&isCount);
    axis.min = pairs.value(QStringLiteral("min") + suffix).toDouble(&isMin);
    axis.max = pairs.value(QStringLiteral("max") + suffix).toDouble(&isMax);
    axis.label = pairs.value(QStringLiteral("label") + suffix);
    axis.unit = pairs.value(QStringLiteral("unit") + suffix);
    const bool isRange = isMin && isMax && std::isfinite(axis.min) && std::isfinite(axis.max) && axis.min < axis.max;
    return isCount && axis.bins > 0 && isRange ? std::optional(axis) : std::nullopt;
}

std::optional<HistogramInfo> histogramOf(const QString& line)
{
    const qsizetype colon = line.indexOf(u':');
    const QMap<QString, QString> pairs = pairsOf(line.mid(colon + 1));
    const QString kind = pairs.value(QStringLiteral("kind"));
    HistogramInfo histogram;
    histogram.name = line.left(qMax(qsizetype { 0 }, colon)).trimmed();
    histogram.isMap = kind == u"2d";
    if (histogram.name.isEmpty() || histogram.name.contains(u' ') || (kind != u"1d" && kind != u"2d"))
        return std::nullopt;
    const auto x = axisOf(pairs, histogram.isMap ? QStringLiteral("x") : QString());
    const auto y = histogram.isMap ? axisOf(pairs, QStringLiteral("y")) : x;
    histogram.rows = histogram.isMap ? 1 : pairs.value(QStringLiteral("rows"), QStringLiteral("1")).toInt();
    if (!x || !y || histogram.rows < 1)
        return std::nullopt;
    histogram.x = *x;
    histogram.y = histogram.isMap ? *y : HistogramAxis();
    return histogram;
}

} // namespace

QString HistogramAxis::text() const
{
    return unit.isEmpty() || label.isEmpty() ? label : QStringLiteral("%1 [%2]").arg(label, unit);
}

QList<HistogramInfo> histogramsOf(const QString& reply)
{
    QList<HistogramInfo> histograms;
    const QStringList lines = reply.split(u'\n');
    for (const QString& line : lines) {
        if (const auto histogram = histogramOf(line))
            histograms.append(*histogram);
    }
    return histograms;
}

int binsToShow(int bins, int limit)
{
    int shown = qMin(bins, limit);
    while (shown > 1 && bins % shown != 0)
        --shown;
    return shown * 8 < qMin(bins, limit) ? bins : shown;
}

int rowsToShow(const HistogramInfo& histogram)
{
    return qMin(histogram.rows, maxRows);
}

QString titleOf(const HistogramInfo& histogram, const QString& name)
{
    if (histogram.rows <= rowsToShow(histogram))
        return name;
    return Windows::tr("%1, the first %2 of %3 rows").arg(name).arg(rowsToShow(histogram)).arg(histogram.rows);
}

CurvesRequest curvesRequest(const HistogramInfo& histogram)
{
    CurvesRequest request;
    request.title = titleOf(histogram, histogram.name);
    request.xLabel = histogram.x.text();
    request.xMin = histogram.x.min;
    request.xMax = histogram.x.max;
    request.rangeName = histogram.x.label;
    request.rows = histogram.rows;
    request.last = rowsToShow(histogram) - 1;
    if (histogram.rows > 1)
        request.description = Windows::tr("Row");
    request.command = QStringLiteral("hist1d %1 0 %2 bins:%3")
                          .arg(histogram.name)
                          .arg(request.last)
                          .arg(binsToShow(histogram.x.bins, curveBins));
    return request;
}

MapRequest mapRequest(const HistogramInfo& histogram)
{
    MapRequest request;
    request.title = histogram.name;
    request.xLabel = histogram.x.text();
    request.yLabel = histogram.y.text();
    request.bins = binsToShow(histogram.x.bins, mapBins);
    request.yBins = binsToShow(histogram.y.bins, mapBins);
    request.xMin = histogram.x.min;
    request.xMax = histogram.x.max;
    request.yMin = histogram.y.min;
    request.yMax = histogram.y.max;
    request.command = QStringLiteral("hist2d %1 bins:%2x%3").arg(histogram.name).arg(request.bins).arg(request.yBins);
    return request;
}

} // namespace console
