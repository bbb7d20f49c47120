#include "tarnis/plots/math/axismapping_p.h"

namespace tarnis {
namespace {

constexpr double zoomStep = 0.05; // fraction of the range

} // namespace

QPointF valueAt(const QPointF& pixel, const PlotRanges& ranges, const QRect& graph)
{
    const auto& [x, y] = ranges;
    return { (pixel.x() - graph.left()) / graph.width() * (x.max - x.min) + x.min,
        (graph.bottom() - pixel.y()) / graph.height() * (y.max - y.min) + y.min };
}

QPointF pixelAt(const QPointF& value, const PlotRanges& ranges, const QRect& graph)
{
    const auto& [x, y] = ranges;
    return { graph.width() / (x.max - x.min) * (value.x() - x.min) + graph.left(),
        graph.bottom() - graph.height() / (y.max - y.min) * (value.y() - y.min) };
}

PlotRanges valuesOf(const QRect& pixels, const PlotRanges& ranges, const QRect& graph)
{
    const auto& [x, y] = ranges;
    return { { spanOf(pixels.left() - graph.left(), x, graph.width()) + x.min,
                 x.max - spanOf(graph.right() - pixels.right(), x, graph.width()) },
        { spanOf(graph.bottom() - pixels.bottom(), y, graph.height()) + y.min,
            y.max - spanOf(pixels.top() - graph.top(), y, graph.height()) } };
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
