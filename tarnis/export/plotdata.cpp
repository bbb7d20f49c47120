#include "tarnis/export/plotdata_p.h"

#include "tarnis/plots/curvenames_p.h"
#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/vectorgraphwidget.h"
#include "tarnis/plots/xy2dgraphwidget.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

/// "Time [us]" and "Time (us)" as name and unit.
DataAxis namedAxis(const QString& text)
{
    DataAxis axis { .name = text.trimmed(), .unit = {}, .values = {} };
    for (const auto& [open, close] : { std::pair(u'[', u']'), std::pair(u'(', u')') }) {
        const qsizetype begin = axis.name.lastIndexOf(open);
        if (begin > 0 && axis.name.endsWith(close)) {
            axis.unit = axis.name.mid(begin + 1).chopped(1).trimmed();
            axis.name = axis.name.left(begin).trimmed();
        }
    }
    return axis;
}

/// Edges of bins of `width` from `low`, or empty for bins numbered from 0.
std::vector<double> binEdges(double low, double high, qsizetype bins)
{
    if (bins == 0 || (low == 0.0 && high == static_cast<double>(bins)) || !std::isfinite(low) || !std::isfinite(high))
        return {};
    return uniformEdges(low, high, bins);
}

/// Edges of the bins of a manual X axis, which share its initial range.
std::vector<double> manualEdges(const XYGraphWidget& plot, qsizetype bins)
{
    const AxisRange initial = PlotAccess::initialX(plot);
    return binEdges(initial.min, initial.max, bins);
}

/// Appends a curve that may be shorter than the others; the remaining values are missing.
void appendCurve(Dataset& data, const QList<double>& samples)
{
    const qsizetype present = std::min(samples.size(), data.columns);
    data.values.insert(data.values.end(), samples.begin(), samples.begin() + present);
    data.values.insert(
        data.values.end(), static_cast<std::size_t>(data.columns - present), std::numeric_limits<double>::quiet_NaN());
    ++data.rows;
}

void readValueName(Dataset& data, const QString& text)
{
    const DataAxis axis = namedAxis(text);
    if (!axis.name.isEmpty())
        data.name = axis.name;
    data.unit = axis.unit;
}

Dataset spectrumOf(VectorGraphWidget& plot)
{
    Dataset data;
    const QList<double>& samples = PlotAccess::samples(plot);
    data.columns = samples.size();
    data.x = namedAxis(plot.getNameX());
    if (PlotAccess::isManualX(plot))
        data.x.values = manualEdges(plot, data.columns);
    appendCurve(data, samples);
    readValueName(data, plot.getNameY());
    return data;
}

QString curveName(const MultiVectorGraphWidget& plot, AddType type, const SummedCurve& curve, int number)
{
    const SeriesTexts texts = seriesTextsOf(plot);
    const int groupSize = std::max(plot.m_groupSize, 1);
    const int record = curve.records.value(0, number);
    QString given = texts.names.value(record);
    if (!given.isEmpty() && (type == AddType::AddNone || (type == AddType::AddEachGroup && groupSize == 1)))
        return given;
    switch (type) {
    case AddType::AddNone:
        return recordName(texts, record / groupSize, record % groupSize);
    case AddType::AddEachGroup:
        return numberedName(texts.group, record / groupSize + texts.firstNumber);
    case AddType::AddEachPosition:
        return numberedName(texts.item, record % groupSize);
    case AddType::AddAll:
        break;
    }
    return QStringLiteral("All");
}

void readSeriesAxis(Dataset& data, MultiVectorGraphWidget& plot)
{
    data.x = namedAxis(plot.getNameX());
    const double resolution = PlotAccess::resolution(plot);
    const auto plotX = PlotAccess::positionToX(plot);
    if (plotX != nullptr) {
        for (qsizetype i = 0; i < data.columns; ++i)
            data.x.values.push_back(plotX(resolution * static_cast<double>(i), nullptr));
    } else if (PlotAccess::isManualX(plot)) {
        data.x.values = manualEdges(plot, data.columns);
    } else {
        data.x.values = binEdges(0.0, resolution * static_cast<double>(data.columns), data.columns);
    }
}

Dataset curvesOf(MultiVectorGraphWidget& plot)
{
    Dataset data;
    const QList<Series>& series = PlotAccess::series(plot);
    const AddType type = PlotAccess::addType(plot);
    QList<QList<double>> samples;
    QStringList names;
    int number = 0;
    for (const SummedCurve& curve : tarnis::curvesOf(series, type, std::max(plot.m_groupSize, 1))) {
        const QList<double> sums = wholeSums(series, curve);
        if (curve.enable && !sums.isEmpty()) {
            samples += sums;
            names += curveName(plot, type, curve, number);
            data.columns = std::max(data.columns, sums.size());
        }
        ++number;
    }
    for (const QList<double>& curve : std::as_const(samples))
        appendCurve(data, curve);
    if (names.size() > 1)
        data.rowNames = names;
    readSeriesAxis(data, plot);
    readValueName(data, plot.getNameY());
    return data;
}

Dataset mapOf(XY2DGraphWidget& plot)
{
    Dataset data;
    data.kind = Dataset::Kind::Map;
    QList<QList<double>> rows;
    plot.getData(rows);
    for (const QList<double>& row : std::as_const(rows))
        data.columns = std::max(data.columns, row.size());
    for (const QList<double>& row : std::as_const(rows))
        appendCurve(data, row);
    data.x = namedAxis(plot.getNameX());
    data.y = namedAxis(plot.getNameY());
    const auto edges = [](bool manual, double low, double step, double resolution, qsizetype bins) {
        return manual ? binEdges(low, low + step * static_cast<double>(bins), bins)
                      : binEdges(0.0, static_cast<double>(bins) * resolution, bins);
    };
    const PlotAccess::MapAxis x = PlotAccess::mapAxisX(plot);
    const PlotAccess::MapAxis y = PlotAccess::mapAxisY(plot);
    data.x.values =
        edges(PlotAccess::isManualX(plot), PlotAccess::initialX(plot).min, x.step, x.resolution, data.columns);
    data.y.values = edges(PlotAccess::isManualY(plot), PlotAccess::initialY(plot).min, y.step, y.resolution, data.rows);
    return data;
}

/// Bins [first, end) of an axis that overlap the range.
struct Bins {
    qsizetype first = 0;
    qsizetype end = 0;
};

Bins binsWithin(const DataAxis& axis, qsizetype bins, AxisRange range)
{
    const auto [low, high] = std::minmax(range.min, range.max);
    const std::vector<double> edges = edgesOf(axis, bins);
    Bins within { bins, 0 };
    for (qsizetype bin = 0; bin < bins; ++bin) {
        const auto [begin, end] =
            std::minmax(edges[static_cast<std::size_t>(bin)], edges[static_cast<std::size_t>(bin) + 1]);
        if (end > low && begin < high) {
            within.first = std::min(within.first, bin);
            within.end = bin + 1;
        }
    }
    return within.first < within.end ? within : Bins {};
}

void crop(DataAxis& axis, qsizetype bins, Bins kept)
{
    if (axis.values.empty() && kept.first == 0)
        return;
    const std::vector<double> edges = edgesOf(axis, bins);
    const bool centres = static_cast<qsizetype>(axis.values.size()) == bins;
    const std::vector<double>& from = centres ? axis.values : edges;
    axis.values = { from.begin() + kept.first, from.begin() + kept.end + (centres ? 0 : 1) };
}

Dataset cropped(const Dataset& whole, Bins columns, Bins rows)
{
    Dataset data = whole;
    data.values.clear();
    for (qsizetype row = rows.first; row < rows.end; ++row) {
        const auto begin = whole.values.begin() + row * whole.columns;
        data.values.insert(data.values.end(), begin + columns.first, begin + columns.end);
    }
    crop(data.x, whole.columns, columns);
    if (whole.kind == Dataset::Kind::Map)
        crop(data.y, whole.rows, rows);
    data.columns = columns.end - columns.first;
    data.rows = rows.end - rows.first;
    return data;
}

Dataset visiblePart(const XYGraphWidget& plot, const Dataset& whole)
{
    const Bins columns = binsWithin(whole.x, whole.columns, PlotAccess::x(plot));
    const Bins rows = whole.kind == Dataset::Kind::Map ? binsWithin(whole.y, whole.rows, PlotAccess::y(plot))
                                                       : Bins { 0, whole.rows };
    return cropped(whole, columns, rows);
}

Dataset partOf(const XYGraphWidget& plot, const Dataset& data, Extent extent)
{
    return extent == Extent::All ? data : visiblePart(plot, data);
}

/// Replaces positions by the values that the labels of the axis show.
void nameBins(DataAxis& axis, qsizetype bins, const XYGraphWidget& plot)
{
    if (axis.values.empty())
        axis.values = edgesOf(axis, bins);
    for (double& value : axis.values)
        value = PlotAccess::namedX(plot, value);
}

} // namespace

Dataset plotData(XYGraphWidget& plot, Extent extent, TableScale scale)
{
    Dataset data;
    if (auto* const single = qobject_cast<VectorGraphWidget*>(&plot))
        data = spectrumOf(*single);
    else if (auto* const many = qobject_cast<MultiVectorGraphWidget*>(&plot))
        data = curvesOf(*many);
    else if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot))
        data = mapOf(*map);
    data.title = PlotAccess::title(plot);
    if (!isConsistent(data))
        return {};
    data = partOf(plot, data, extent);
    if (scale == TableScale::Named && PlotAccess::namesSecondScale(plot) && data.columns > 0)
        nameBins(data.x, data.columns, plot);
    return data;
}

} // namespace tarnis
