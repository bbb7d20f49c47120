// Maps between pixels of a plot rectangle and values, and computes how the mouse tools change a range. Widths and
// heights count both edges (right - left + 1). All functions are linear, also for a log axis.
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

/// Pixel of a value; not finite if a range is empty.
QPointF pixelAt(const QPointF& value, const PlotRanges& ranges, const QRect& graph);

/// Values at the outer edges of a rectangle of pixels, not limited to the graph.
PlotRanges valuesOf(const QRect& pixels, const PlotRanges& ranges, const QRect& graph);

/// Zooms in by one step about the point `before` pixels from the lower end and `after` pixels from the upper end, of
/// `size` pixels. The range is unchanged if its upper end would not be above the lower one, so a reversed axis never
/// changes.
AxisRange zoomedIn(AxisRange range, int before, int after, int size);

/// Zooms out by one step; the upper end moves by a fraction of the range that already has the new lower end.
AxisRange zoomedOut(AxisRange range, int before, int after, int size);

/// Zooms both axes in or out by one step about a pixel of the graph.
PlotRanges zoomedInAt(const QPoint& point, const PlotRanges& ranges, const QRect& graph);
PlotRanges zoomedOutAt(const QPoint& point, const PlotRanges& ranges, const QRect& graph);

/// Shifts both ranges so that the plot follows the pointer from one pixel to another.
PlotRanges movedAlong(const QPoint& from, const QPoint& to, PlotRanges ranges, const QRect& graph);

/// The extent in values of `pixels` of `size`.
double spanOf(int pixels, AxisRange range, int size);

} // namespace tarnis
