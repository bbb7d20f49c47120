// Options and the ranges of automatic axes. The rest of the class: _frame (frame and texts), _axes (ticks and grid),
// _curves, _bar.
#include "tarnis/tools/style/stylepainter_p.h"

#include "tarnis/plots/math/sampleblocks_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/errorbars.h"
#include "tarnis/tools/referencecurves.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

/// Smallest and largest finite sample; on a logarithmic axis the smallest above 0.
AxisRange extremesOfCurves(XYGraphWidget& plot, const QList<StyledCurve>& curves, bool isLog)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    AxisRange range { infinity, -infinity };
    for (const StyledCurve& curve : curves) {
        const SampleRun samples = curve.run();
        const int count = curve.range.end - curve.range.begin;
        if (count <= 0)
            continue;
        const double* const values = samples.from(curve.range.begin);
        if (isLog)
            range.min = lowestAbove(0.0, values, count, range.min);
        const SampleBlocks* const blocks =
            curve.sums == nullptr ? PlotHooks::of(plot).blocks().of(curve.values) : nullptr;
        const SampleExtremes quick =
            blocks != nullptr ? blocks->extremes(curve.range.begin, curve.range.end) : extremesOf(values, count);
        if (quick.finite && std::isfinite(quick.low) && std::isfinite(quick.high)) {
            range.min = isLog ? range.min : std::min(range.min, quick.low);
            range.max = std::max(range.max, quick.high);
            continue;
        }
        for (int i = 0; i < count; ++i) {
            if (!std::isfinite(values[i]))
                continue;
            range.min = isLog ? range.min : std::min(range.min, values[i]);
            range.max = std::max(range.max, values[i]);
        }
    }
    return range;
}

/// The reference curves of the plot; null without the tool.
const ReferenceCurves* referencesOf(const XYGraphWidget& plot)
{
    return plot.findChild<const ReferenceCurves*>(QString(), Qt::FindDirectChildrenOnly);
}

/// Widens the range by the reference curves over the visible bins.
void includeReferences(AxisRange& range, const XYGraphWidget& plot, const QList<StyledCurve>& curves, bool isLog)
{
    const ReferenceCurves* const references = referencesOf(plot);
    if (references == nullptr || references->current() < 0)
        return;
    const SampleRange visible = curves.constFirst().range;
    const auto [low, high] = references->extremes(visible.begin, visible.end - 1, isLog);
    range = { std::min(range.min, low), std::max(range.max, high) };
}

/// The error bars that the plot shows; null without any.
const ErrorBars* shownBars(const XYGraphWidget& plot)
{
    const QList<InteractiveTool*> tools = InteractiveTool::toolsOf(plot);
    for (const InteractiveTool* const tool : tools) {
        if (const auto* const bars = qobject_cast<const ErrorBars*>(tool); bars != nullptr && bars->isOn())
            return bars;
    }
    return nullptr;
}

int methodOf(const ErrorBars* bars)
{
    return bars != nullptr ? static_cast<int>(bars->method()) : -1;
}

/// The highest end of the bars. It is that of the largest count; other values have no bar.
double topOfBars(XYGraphWidget& plot, const ErrorBars& bars, const QList<StyledCurve>& curves)
{
    double largest = -1.0;
    double top = 0.0;
    for (const StyledCurve& curve : curves) {
        const SampleRun samples = curve.run();
        const auto [begin, end] = curve.range;
        const SampleBlocks* const blocks =
            curve.sums == nullptr && begin < end ? PlotHooks::of(plot).blocks().of(curve.values) : nullptr;
        if (blocks != nullptr && blocks->areIntegerCounts(begin, end) && blocks->extremes(begin, end).finite) {
            largest = std::max(largest, blocks->extremes(begin, end).high);
            top = std::max(top, ErrorBars::interval(bars.method(), largest).second);
            continue;
        }
        for (int i = curve.range.begin; i < curve.range.end; ++i) {
            if (!(samples[i] > largest))
                continue;
            const double upper = ErrorBars::interval(bars.method(), samples[i]).second;
            if (!std::isfinite(upper))
                continue;
            largest = samples[i];
            top = upper;
        }
    }
    return top;
}

StyledCurve styledCurve(const QList<Series>& series, const SummedCurve& curve, int number, const CurvePlaces& places)
{
    StyledCurve shown { number, curve.colour, places.visible(lengthOf(series, curve), 1), {}, nullptr };
    if (curve.records.size() > 1)
        shown.sums = sumsOf(series, curve, shown.range);
    else
        shown.values = wholeSums(series, curve); // shared
    return shown;
}

} // namespace

SampleRange CurvePlaces::visible(qsizetype count, int width) const
{
    const auto all = static_cast<int>(std::min<qsizetype>(count, pixelLimit));
    if (!columns.function) {
        const double first = (0.0 - columns.origin) / columns.pixelsPerBin;
        const double last = (width - columns.origin) / columns.pixelsPerBin;
        return wholeSamples(std::min(first, last) - 1.0, std::max(first, last) + 1.0, count);
    }
    // The function is monotone: finds the first bin that ends in the visible range, and the first one that begins
    // beyond it.
    const bool isFalling = columns.edge(all) < columns.edge(0);
    const auto firstWhere = [&](auto isReached) {
        int low = 0;
        int high = all;
        while (low < high) {
            const int middle = low + (high - low) / 2;
            (isReached(middle) ? high : low) = isReached(middle) ? middle : middle + 1;
        }
        return low;
    };
    const int begin =
        firstWhere([&](int i) { return isFalling ? columns.edge(i + 1.0) <= width : columns.edge(i + 1.0) >= 0.0; });
    const int end = firstWhere([&](int i) { return isFalling ? columns.edge(i) < 0.0 : columns.edge(i) > width; });
    return { std::max(begin - 1, 0), std::min(std::max(end, begin) + 1, all) };
}

CurvePlaces curvePlaces(const XYGraphWidget& plot, int width)
{
    const AxisRange x = PlotAccess::x(plot);
    const AxisRange initial = PlotAccess::initialX(plot);
    qsizetype count = 0;
    unsigned int resolution = 1;
    if (const auto* const curves = qobject_cast<const MultiVectorGraphWidget*>(&plot)) {
        const QList<Series>& series = PlotAccess::series(*curves);
        count = series.isEmpty() ? 0 : series.constFirst().values.size();
        resolution = PlotAccess::resolution(*curves);
        if (const auto function = PlotAccess::positionToX(*curves)) {
            const auto inverse = PlotAccess::xToPosition(*curves);
            const double base = basePosition(inverse != nullptr ? inverse(initial.min, nullptr) : 0.0, resolution);
            const double pixels = width / (x.max - x.min);
            return { { 0.0, 1.0, [=](double bin) { // a sample is drawn at its position; its bin extends to both sides
                          return (function(base + resolution * (bin - 0.5), nullptr) - x.min) * pixels;
                      } } };
        }
    } else if (const auto* const curve = qobject_cast<const VectorGraphWidget*>(&plot)) {
        count = PlotAccess::samples(*curve).size();
    }
    const SampleView view = sampleView(x, initial, PlotAccess::isManualX(plot), count, width, resolution);
    return { { -view.first * view.pixelsPerSample, view.pixelsPerSample, {} } };
}

QList<StyledCurve> styledCurves(const XYGraphWidget& plot)
{
    QList<StyledCurve> shown;
    const CurvePlaces places = curvePlaces(plot, 1);
    if (const auto* const single = qobject_cast<const VectorGraphWidget*>(&plot)) {
        const QList<double>& samples = PlotAccess::samples(*single);
        shown.append({ 0, Qt::white, places.visible(samples.size(), 1), samples, nullptr });
    } else if (const auto* const many = qobject_cast<const MultiVectorGraphWidget*>(&plot)) {
        const QList<Series>& series = PlotAccess::series(*many);
        const QList<SummedCurve> curves = curvesOf(series, PlotAccess::addType(*many), PlotAccess::groupSize(*many));
        for (qsizetype i = 0; i < curves.size(); ++i) {
            if (curves.at(i).enable && lengthOf(series, curves.at(i)) > 0)
                shown.append(styledCurve(series, curves.at(i), static_cast<int>(i), places));
        }
    }
    return shown;
}

StylePainter::StylePainter(XYGraphWidget& plot, PlotStyle::Theme theme)
    : m_plot(plot)
{
    options.theme = theme;
}

QColor StylePainter::curveColour(int number, const QColor& /*given*/) const
{
    return PlotStyle::seriesColour(options.theme, number);
}

void StylePainter::fitAxes()
{
    if (PlotAccess::isAutoX(m_plot) && !PlotAccess::isManualX(m_plot))
        fitX();
    if (!PlotAccess::isAutoY(m_plot) || PlotAccess::isManualY(m_plot))
        m_isFitted = false;
    else if (qobject_cast<const XY2DGraphWidget*>(&m_plot) != nullptr)
        fitRows();
    else
        fitCounts();
}

void StylePainter::fitX()
{
    const AxisRange initial = PlotAccess::initialX(m_plot);
    const bool isMap = qobject_cast<const XY2DGraphWidget*>(&m_plot) != nullptr;
    const qsizetype columns = PlotMapping::of(m_plot).columns();
    if (columns == 0)
        return;
    PlotAccess::fitX(m_plot, initial);
    if (!PlotAccess::isInitialAutoX(m_plot) && !isMap && initial.min != initial.max)
        return;
    const PlotMapping mapping = PlotMapping::of(m_plot);
    const double last = std::max(mapping.columnEdges(0).max, mapping.columnEdges(columns - 1).max);
    if (std::isfinite(last) && last > initial.min)
        PlotAccess::fitX(m_plot, { initial.min, last });
}

/// Fits the rows of a map.
void StylePainter::fitRows()
{
    const AxisRange initial = PlotAccess::initialY(m_plot);
    const qsizetype rows = PlotMapping::of(m_plot).rows();
    if (rows == 0)
        return;
    PlotAccess::fitY(m_plot, initial);
    const double last = PlotMapping::of(m_plot).rowEdges(rows - 1).max;
    if (std::isfinite(last) && last > initial.min)
        PlotAccess::fitY(m_plot, { initial.min, last });
}

StylePainter::FitKey StylePainter::fitKey(const QList<StyledCurve>& curves, int bars) const
{
    FitKey key { PlotAccess::x(m_plot), PlotAccess::isLogY(m_plot), -1, bars, 0, {} };
    if (const ReferenceCurves* const references = referencesOf(m_plot)) {
        constexpr int norms = 3;
        key.references = static_cast<int>(references->names().size()) * norms + static_cast<int>(references->norm());
    }
    if (const auto* const many = qobject_cast<const MultiVectorGraphWidget*>(&m_plot))
        key.type = PlotAccess::addType(*many);
    for (const StyledCurve& curve : curves)
        key.curves.append(curve.number);
    return key;
}

/// Applies hysteresis to the axis while only the data change.
void StylePainter::fitCounts()
{
    const bool isLog = PlotAccess::isLogY(m_plot);
    const ErrorBars* const bars = shownBars(m_plot);
    if (m_isFitted && !m_isStale && m_key.x == PlotAccess::x(m_plot) && m_key.isLog == isLog
        && m_key.bars == methodOf(bars)) {
        PlotAccess::fitY(m_plot, m_fitted); // the plot's own fit may have changed it in between
        return;
    }
    const QList<StyledCurve> curves = styledCurves(m_plot);
    if (curves.isEmpty() || std::all_of(curves.cbegin(), curves.cend(), [](const StyledCurve& curve) {
            return curve.range.begin >= curve.range.end;
        }))
        return; // nothing to fit
    const FitKey key = fitKey(curves, methodOf(bars));
    AxisRange data = extremesOfCurves(m_plot, curves, isLog);
    includeReferences(data, m_plot, curves, isLog);
    if (bars != nullptr)
        data.max = std::max(data.max, topOfBars(m_plot, *bars, curves));
    if (m_isFitted && key == m_key)
        m_fitted = isLog ? calmDecades(m_fitted, data) : calmRange(m_fitted, data);
    else
        m_fitted = isLog ? roomyDecades(data) : roomyRange(data);
    m_isFitted = true;
    m_isStale = false;
    m_key = key;
    PlotAccess::fitY(m_plot, m_fitted);
}

QColor StylePainter::lineOverData() const
{
    return qobject_cast<const XY2DGraphWidget*>(&m_plot) != nullptr ? QColor(Qt::white) : theme().text;
}

} // namespace tarnis
