#include "tarnis/plots/math/axismapping_p.h"

namespace tarnis {
namespace {

constexpr double zoomStep = 0.05; // fraction of the range

} // namespace

AxisMapping::AxisMapping(AxisRange range, AxisScale scale, int origin, int size, bool isUpward)
    : m_range { toAxis(range.min, scale), toAxis(range.max, scale) }
    , m_scale(scale)
    , m_origin(origin)
    , m_size(size)
    , m_isUpward(isUpward)
{
}

AxisMapping AxisMapping::horizontal(AxisRange range, const QRect& graph, AxisScale scale)
{
    return { range, scale, graph.left(), graph.width(), false };
}

AxisMapping AxisMapping::vertical(AxisRange range, const QRect& graph, AxisScale scale)
{
    return { range, scale, graph.bottom(), graph.height(), true };
}

double AxisMapping::pixelOf(double value) const
{
    const double distance = m_size / (m_range.max - m_range.min) * (toAxis(value, m_scale) - m_range.min);
    return m_isUpward ? m_origin - distance : distance + m_origin;
}

double AxisMapping::valueAt(double pixel) const
{
    const double distance = m_isUpward ? m_origin - pixel : pixel - m_origin;
    return fromAxis(distance / m_size * (m_range.max - m_range.min) + m_range.min, m_scale);
}

double AxisMapping::valueAfter(int pixels) const
{
    return spanOf(pixels, m_range, m_size) + m_range.min;
}

double AxisMapping::valueBefore(int pixels) const
{
    return m_range.max - spanOf(pixels, m_range, m_size);
}

QPointF valueAt(const QPointF& pixel, const PlotRanges& ranges, const QRect& graph)
{
    return { AxisMapping::horizontal(ranges.x, graph).valueAt(pixel.x()),
        AxisMapping::vertical(ranges.y, graph).valueAt(pixel.y()) };
}

QPointF pixelAt(const QPointF& value, const PlotRanges& ranges, const QRect& graph)
{
    return { AxisMapping::horizontal(ranges.x, graph).pixelOf(value.x()),
        AxisMapping::vertical(ranges.y, graph).pixelOf(value.y()) };
}

PlotRanges valuesOf(const QRect& pixels, const PlotRanges& ranges, const QRect& graph)
{
    const AxisMapping x = AxisMapping::horizontal(ranges.x, graph);
    const AxisMapping y = AxisMapping::vertical(ranges.y, graph);
    return { { x.valueAfter(pixels.left() - graph.left()), x.valueBefore(graph.right() - pixels.right()) },
        { y.valueAfter(graph.bottom() - pixels.bottom()), y.valueBefore(pixels.top() - graph.top()) } };
}

AxisRange zoomedIn(AxisRange range, int before, int after, int size)
{
    const double step = (range.max - range.min) * zoomStep;
    const AxisRange zoomed { before * step / size + range.min, range.max - after * step / size };
    return zoomed.max > zoomed.min ? zoomed : range;
}

AxisRange zoomedOut(AxisRange range, int before, int after, int size)
{
    range.min -= (range.max - range.min) * zoomStep * before / size;
    range.max += after * (range.max - range.min) * zoomStep / size;
    return range;
}

PlotRanges zoomedInAt(const QPoint& point, const PlotRanges& ranges, const QRect& graph)
{
    return { zoomedIn(ranges.x, point.x() - graph.left(), graph.right() - point.x(), graph.width()),
        zoomedIn(ranges.y, graph.bottom() - point.y(), point.y() - graph.top(), graph.height()) };
}

PlotRanges zoomedOutAt(const QPoint& point, const PlotRanges& ranges, const QRect& graph)
{
    return { zoomedOut(ranges.x, point.x() - graph.left(), graph.right() - point.x(), graph.width()),
        zoomedOut(ranges.y, graph.bottom() - point.y(), point.y() - graph.top(), graph.height()) };
}

PlotRanges movedAlong(const QPoint& from, const QPoint& to, PlotRanges ranges, const QRect& graph)
{
    if (to.x() != from.x()) {
        const double span = spanOf(to.x() - from.x(), ranges.x, graph.width());
        ranges.x.min -= span;
        ranges.x.max -= span;
    }
    if (to.y() != from.y()) {
        const double span = spanOf(to.y() - from.y(), ranges.y, graph.height());
        ranges.y.min += span;
        ranges.y.max += span;
    }
    return ranges;
}

double spanOf(int pixels, AxisRange range, int size)
{
    return (range.max - range.min) * pixels / size;
}

} // namespace tarnis
