#include "tarnis/plots/plotmapping.h"

#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/curvescale_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotpixmap_p.h"
#include "tarnis/plots/plotstyling_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

bool isUsable(AxisRange range, bool isLog)
{
    const AxisScale scale = isLog ? AxisScale::Log : AxisScale::Linear;
    const double span = toAxis(range.max, scale) - toAxis(range.min, scale);
    return std::isfinite(span) && span != 0.0;
}

} // namespace

/// Reads a plot's axes, by the rules of each plot class.
struct PlotMapping::Reader {
    /// As they are painted, bins of an axis that is not manual are as wide as the resolution, and bin `min` begins at
    /// the lower end.
    static Bins bins(
        AxisRange visible, bool manual, double origin, double step, unsigned int resolution, qsizetype count)
    {
        if (manual)
            return { origin, step, count };
        return { visible.min - visible.min * resolution, static_cast<double>(resolution), count };
    }

    static void read(PlotMapping& mapping, const VectorGraphWidget& plot)
    {
        const qsizetype count = PlotAccess::samples(plot).size();
        const AxisRange initial = PlotAccess::initialX(plot);
        const double step = (initial.max - initial.min) / static_cast<double>(std::max<qsizetype>(count, 1));
        mapping.m_binsX = bins(mapping.m_x, PlotAccess::isManualX(plot), initial.min, step, 1, count);
    }

    static void read(PlotMapping& mapping, const MultiVectorGraphWidget& plot)
    {
        const QList<Series>& series = PlotAccess::series(plot);
        const AxisRange initial = PlotAccess::initialX(plot);
        const unsigned int resolution = PlotAccess::resolution(plot);
        // The plot scales all series by the length of the first one.
        const qsizetype spread = series.isEmpty() ? 0 : series.constFirst().values.size();
        const qsizetype count = longestSeries(series);
        if (PlotAccess::positionToX(plot) != nullptr) {
            mapping.m_positionToX = { PlotAccess::positionToX(plot), nullptr };
            mapping.m_xToPosition = { PlotAccess::xToPosition(plot), nullptr };
            const double start = mapping.m_xToPosition.function != nullptr ? mapping.m_xToPosition(initial.min) : 0.0;
            mapping.m_binsX = { basePosition(start, resolution), static_cast<double>(resolution), count };
            return;
        }
        const double step = (initial.max - initial.min) / static_cast<double>(std::max<qsizetype>(spread, 1));
        mapping.m_binsX = bins(mapping.m_x, PlotAccess::isManualX(plot), initial.min, step, resolution, count);
    }

    static void read(PlotMapping& mapping, const XY2DGraphWidget& map)
    {
        const QList<QList<double>>& rows = PlotAccess::rows(map);
        const auto x = PlotAccess::mapAxisX(map);
        const auto y = PlotAccess::mapAxisY(map);
        mapping.m_logY = false; // bins are painted at equal distances
        mapping.m_binsX = bins(mapping.m_x, PlotAccess::isManualX(map), PlotAccess::initialX(map).min, x.step,
            x.resolution, rows.isEmpty() ? 0 : rows.constFirst().size());
        mapping.m_binsY = bins(
            mapping.m_y, PlotAccess::isManualY(map), PlotAccess::initialY(map).min, y.step, y.resolution, rows.size());
    }
};

PlotMapping PlotMapping::of(const XYGraphWidget& plot)
{
    PlotMapping mapping;
    mapping.m_rect = PlotAccess::plotRect(plot);
    mapping.m_x = PlotAccess::x(plot);
    mapping.m_y = PlotAccess::y(plot);
    mapping.m_logY = PlotAccess::isLogY(plot);
    mapping.m_zeroAtLowEnd = stylingOf(&plot) != nullptr;
    mapping.m_tick = { PlotAccess::tickFunction(plot), PlotAccess::tickData(plot) };
    mapping.m_hasTick = PlotAccess::hasTickFunction(plot);
    if (plot.m_doubleBuffered && isTurned(plot.m_rotation)) { // only the cached picture is rotated
        mapping.m_rotation = isQuarterTurn(plot.m_rotation) ? 90 : -90;
        mapping.m_turn = mapping.m_rotation == 90 ? QPointF(plot.width(), 0.0) : QPointF(0.0, plot.height());
    }
    if (const auto* map = qobject_cast<const XY2DGraphWidget*>(&plot))
        Reader::read(mapping, *map);
    else if (const auto* curves = qobject_cast<const MultiVectorGraphWidget*>(&plot))
        Reader::read(mapping, *curves);
    else if (const auto* curve = qobject_cast<const VectorGraphWidget*>(&plot))
        Reader::read(mapping, *curve);
    return mapping;
}

bool PlotMapping::isValid() const
{
    return m_rect.width() > 0 && m_rect.height() > 0 && isUsable(m_x, false) && isUsable(m_y, m_logY);
}

QRect PlotMapping::frameRect() const
{
    return m_rect;
}

QRect PlotMapping::plotRect() const
{
    if (m_rotation == 0)
        return m_rect;
    // Corners of pixels, not their centres: the right and bottom edges of a QRect are one pixel less.
    const QPointF a = fromFrame(QPointF(m_rect.left(), m_rect.top()));
    const QPointF b = fromFrame(QPointF(m_rect.left() + m_rect.width(), m_rect.top() + m_rect.height()));
    return QRectF(a, b).normalized().toRect();
}

AxisRange PlotMapping::x() const
{
    return m_x;
}

AxisRange PlotMapping::y() const
{
    return m_y;
}

bool PlotMapping::isLogY() const
{
    return m_logY;
}

double PlotMapping::rotation() const
{
    return m_rotation;
}

QPointF PlotMapping::toFrame(const QPointF& pixel) const
{
    switch (m_rotation) {
    case 90:
        return { pixel.y() - m_turn.y(), m_turn.x() - pixel.x() };
    case -90:
        return { m_turn.y() - pixel.y(), pixel.x() - m_turn.x() };
    default:
        return pixel;
    }
}

QPointF PlotMapping::fromFrame(const QPointF& point) const
{
    switch (m_rotation) {
    case 90:
        return { m_turn.x() - point.y(), point.x() + m_turn.y() };
    case -90:
        return { point.y() + m_turn.x(), m_turn.y() - point.x() };
    default:
        return point;
    }
}

// Without a range everything is at the lower end, and a rectangle without extent shows that end.

double PlotMapping::columnOf(double x) const
{
    return m_x.max != m_x.min ? AxisMapping::horizontal(m_x, m_rect).pixelOf(x) : m_rect.left();
}

double PlotMapping::rowOf(double y) const
{
    if (m_logY && m_zeroAtLowEnd && y <= 0.0)
        return m_y.max < m_y.min ? m_rect.top() : m_rect.bottom();
    const AxisScale scale = m_logY ? AxisScale::Log : AxisScale::Linear;
    const bool isEmpty = toAxis(m_y.max, scale) == toAxis(m_y.min, scale);
    return isEmpty ? m_rect.bottom() : AxisMapping::vertical(m_y, m_rect, scale).pixelOf(y);
}

double PlotMapping::xAt(double column) const
{
    return m_rect.width() != 0 ? AxisMapping::horizontal(m_x, m_rect).valueAt(column) : m_x.min;
}

double PlotMapping::yAt(double row) const
{
    const AxisScale scale = m_logY ? AxisScale::Log : AxisScale::Linear;
    if (m_rect.height() == 0)
        return fromAxis(toAxis(m_y.min, scale), scale);
    return AxisMapping::vertical(m_y, m_rect, scale).valueAt(row);
}

QPointF PlotMapping::valueAt(const QPointF& pixel) const
{
    const QPointF point = toFrame(pixel);
    return { xAt(point.x()), yAt(point.y()) };
}

QPointF PlotMapping::pixelOf(const QPointF& value) const
{
    return fromFrame({ columnOf(value.x()), rowOf(value.y()) });
}

double PlotMapping::tickOf(double x) const
{
    return m_tick(x);
}

bool PlotMapping::hasTickFunction() const
{
    return m_hasTick;
}

qsizetype PlotMapping::Bins::at(double value) const
{
    const double bin = std::floor((value - origin) / width);
    return bin >= 0.0 && bin < static_cast<double>(count) ? static_cast<qsizetype>(bin) : -1; // a NaN is outside
}

AxisRange PlotMapping::Bins::edges(qsizetype bin) const
{
    return { origin + static_cast<double>(bin) * width, origin + static_cast<double>(bin + 1) * width };
}

qsizetype PlotMapping::columns() const
{
    return m_binsX.count;
}

qsizetype PlotMapping::columnAt(double x) const
{
    if (m_positionToX.function == nullptr)
        return m_binsX.at(x);
    if (m_xToPosition.function != nullptr)
        return m_binsX.at(m_xToPosition(x));
    // Without an inverse function: searches the last bin that begins at or below x, if the function is increasing.
    qsizetype low = 0;
    qsizetype high = m_binsX.count;
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        if (columnEdges(middle).max <= x)
            low = middle + 1;
        else
            high = middle;
    }
    return low < m_binsX.count && columnEdges(low).min <= x ? low : -1;
}

AxisRange PlotMapping::columnEdges(qsizetype column) const
{
    const AxisRange edges = m_binsX.edges(column);
    return { m_positionToX(edges.min), m_positionToX(edges.max) };
}

qsizetype PlotMapping::rows() const
{
    return m_binsY.count;
}

qsizetype PlotMapping::rowAt(double y) const
{
    return m_binsY.at(y);
}

AxisRange PlotMapping::rowEdges(qsizetype row) const
{
    return m_binsY.edges(row);
}

} // namespace tarnis
