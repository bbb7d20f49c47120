#include "tarnis/tools/base/plotcurves_p.h"

#include "tarnis/plots/curvenames.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plotstyling_p.h"
#include "tarnis/tools/base/plotlabel_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

QList<ShownCurve> curvesIn(const MultiVectorGraphWidget& plot, bool isEnabled)
{
    const QList<Series>& series = PlotAccess::series(plot);
    const auto type = PlotAccess::addType(plot);
    const int groupSize = PlotAccess::groupSize(plot);
    const QList<SummedCurve> curves = curvesOf(series, type, groupSize);
    QList<ShownCurve> shown;
    for (qsizetype i = 0; i < curves.size(); ++i) {
        const SummedCurve& curve = curves.at(i);
        if (curve.enable != isEnabled || curve.records.isEmpty() || lengthOf(series, curve) == 0)
            continue;
        const bool isSeries = type == AddType::AddNone || (type == AddType::AddEachGroup && groupSize == 1);
        const QString given = isSeries ? seriesName(plot, static_cast<int>(i)) : QString();
        const int place = static_cast<int>(i);
        const QString name = given.isEmpty() ? QString::number(place + plot.m_firstNumber) : given;
        ShownCurve entry { name, shownCurveColour(plot, place, curve.colour), {}, name, place };
        for (const int record : curve.records)
            entry.parts.append(series.at(record).values);
        shown.append(entry);
    }
    if (shown.size() == 1)
        shown.first().name.clear();
    return shown;
}

/// `binAt` returns the bin under a value, or -1; `edgesOf` the edges of a bin.
template <typename BinAt, typename EdgesOf>
BinsInView binsBetween(AxisRange range, qsizetype count, const BinAt& binAt, const EdgesOf& edgesOf)
{
    const double low = std::min(range.min, range.max);
    const double high = std::max(range.min, range.max);
    if (count == 0 || !(low <= high))
        return {};
    // The bins of an axis that falls, such as that of a cut along Y, are in the opposite order.
    const bool isFalling = edgesOf(0).max < edgesOf(0).min;
    const qsizetype lowest = isFalling ? count - 1 : 0;
    const double lowEnd = isFalling ? edgesOf(lowest).max : edgesOf(lowest).min;
    qsizetype first = binAt(low);
    qsizetype last = binAt(high);
    if (first < 0) {
        if (!(low <= lowEnd))
            return {}; // beyond the highest bin
        first = lowest;
    }
    if (last < 0) {
        if (high <= lowEnd)
            return {};
        last = count - 1 - lowest;
    }
    return { std::min(first, last), std::max(first, last) };
}

} // namespace

std::optional<double> ShownCurve::at(qsizetype index) const
{
    if (index < 0 || index >= size())
        return std::nullopt;
    double sum = 0.0;
    for (const QList<double>& part : parts) {
        if (index < part.size())
            sum += part.at(index);
    }
    return sum;
}

QList<ShownCurve> shownCurves(const XYGraphWidget& plot)
{
    if (const auto* curves = qobject_cast<const MultiVectorGraphWidget*>(&plot))
        return curvesIn(*curves, true);
    const auto* curve = qobject_cast<const VectorGraphWidget*>(&plot);
    if (curve == nullptr || PlotAccess::samples(*curve).isEmpty())
        return {};
    return { { {}, shownCurveColour(plot, 0, Qt::white), { PlotAccess::samples(*curve) } } };
}

QList<ShownCurve> hiddenCurves(const XYGraphWidget& plot)
{
    const auto* const curves = qobject_cast<const MultiVectorGraphWidget*>(&plot);
    return curves != nullptr ? curvesIn(*curves, false) : QList<ShownCurve>();
}

const SampleBlocks* blocksOf(XYGraphWidget& plot, const ShownCurve& curve)
{
    return curve.parts.size() == 1 ? PlotHooks::of(plot).blocks().of(curve.parts.constFirst()) : nullptr;
}

bool isSameData(const QList<ShownCurve>& a, const QList<ShownCurve>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const ShownCurve& left, const ShownCurve& right) {
        return left.colour == right.colour && left.name == right.name
            && std::equal(left.parts.begin(), left.parts.end(), right.parts.begin(), right.parts.end(),
                [](const QList<double>& x, const QList<double>& y) {
                    return x.constData() == y.constData() && x.size() == y.size();
                });
    });
}

BinPositions::BinPositions(const PlotMapping& mapping, BinsInView bins)
    : m_mapping(mapping)
    , m_first(bins.first)
{
    const qsizetype count = bins.last - bins.first;
    if (count < 1)
        return;
    m_begin = position(bins.first);
    m_step = (position(bins.last) - m_begin) / static_cast<double>(count);
    constexpr int probes = 8;
    constexpr double tolerance = 1e-3; // pixels
    m_isEven = true;
    for (int i = 1; i < probes; ++i) {
        const qsizetype bin = bins.first + count * i / probes;
        const double even = m_begin + m_step * static_cast<double>(bin - bins.first);
        m_isEven = m_isEven && std::abs(position(bin) - even) < tolerance;
    }
}

double BinPositions::position(qsizetype bin) const
{
    return limitedCoordinate(m_mapping.columnOf(middleOf(m_mapping.columnEdges(bin))));
}

BinsInView columnsInView(const PlotMapping& mapping)
{
    return columnsBetween(mapping, mapping.x());
}

BinsInView columnsBetween(const PlotMapping& mapping, AxisRange x)
{
    return binsBetween(
        x, mapping.columns(), [&](double value) { return mapping.columnAt(value); },
        [&](qsizetype bin) { return mapping.columnEdges(bin); });
}

BinsInView rowsBetween(const PlotMapping& mapping, AxisRange y)
{
    return binsBetween(
        y, mapping.rows(), [&](double value) { return mapping.rowAt(value); },
        [&](qsizetype bin) { return mapping.rowEdges(bin); });
}

} // namespace tarnis
