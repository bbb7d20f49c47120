// The one place where pixels of a plot rectangle become values and back, and where the mouse tools change a range.
// Widths and heights count both edges (right - left + 1). All functions are linear, also for a log axis.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"

#include <QPointF>
#include <QRect>

namespace tarnis {

/// Ranges of both axes.
struct PlotRanges {
    AxisRange x;
    AxisRange y;
};

/// Value under a pixel; not finite for a graph without width or height.
QPointF valueAt(const QPointF& pixel, const PlotRanges& ranges, const QRect& graph);

/// Pixel of a value; not finite where a range is empty.
QPointF pixelAt(const QPointF& value, const PlotRanges& ranges, const QRect& graph);

/// Values at the outer edges of a rectangle of pixels, not limited to the graph.
PlotRanges valuesOf(const QRect& pixels, const PlotRanges& ranges, const QRect& graph);

/// One step in, about the point `before` pixels from the lower end and `after` from the upper one, of `size` pixels.
/// The range stays as it is if its upper end would not be above the lower one: a reversed axis never changes.
AxisRange zoomedIn(AxisRange range, int before, int after, int size);

/// One step out; the upper end moves by the range that the lower one has already widened.
AxisRange zoomedOut(AxisRange range, int before, int after, int size);

/// Both axes one step in or out about a pixel of the graph.
PlotRanges zoomedInAt(const QPoint& point, const PlotRanges& ranges, const QRect& graph);
PlotRanges zoomedOutAt(const QPoint& point, const PlotRanges& ranges, const QRect& graph);

/// Both ranges shifted so that the plot follows the hand from one pixel to another.
PlotRanges movedAlong(const QPoint& from, const QPoint& to, PlotRanges ranges, const QRect& graph);

/// What `pixels` of `size` are worth.
double spanOf(int pixels, AxisRange range, int size);

} // namespace tarnis
