// Between values and pixels of a plot rectangle, and what the mouse tools do to a range. Widths and heights count both
// edges (right - left + 1).
//
// AxisMapping is the conversion. Hosts compare pictures to the pixel and values to the bit, so where the order of
// operations has always been another one, a second form remains:
//
// - AxisMapping::valueAfter(), valueBefore(), for the rubber band, read-outs, edges of the cut and moving: multiply
//   first, so that the edges of the rectangle are exactly the ends of the range.
// - pixelsFromMin() of axisticks_p.h, for ticks, labels, the grid, and crosses on a map: multiplies before it divides,
//   so that round values are on whole pixels.
// - BinGeometry of bingeometry_p.h, for bins of maps: counts from a fraction of a bin, so that neighbours share edges.
// - SampleScale, FunctionScale, ValueScale of curvescale_p.h, for curves, and PeakScale of peakcurve_p.h, for fitted
//   peaks: pixels per sample and per unit are computed once for each curve, and some values are on the bottom of a
//   logarithmic axis.
// - cutPixels() of projection_p.h, for the lines of the cut: from the upper end down; a range that does not ascend has
//   no extent.
// - colourBarValue() of colourbar_p.h, for the labels of the colour bar: counts whole intervals, not pixels.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/viewarithmetic_p.h"

#include <QPointF>
#include <QRect>

namespace tarnis {

/// Ranges of both axes.
struct PlotRanges {
    AxisRange x;
    AxisRange y;
};

/// One axis on the screen.
class AxisMapping {
public:
    /// An X axis from the left edge of the plot rectangle to its right one.
    static AxisMapping horizontal(AxisRange range, const QRect& graph, AxisScale scale = AxisScale::Linear);
    /// A Y axis from the bottom row of the plot rectangle up.
    static AxisMapping vertical(AxisRange range, const QRect& graph, AxisScale scale = AxisScale::Linear);

    /// Pixel of a value; not finite where the range is empty.
    double pixelOf(double value) const;
    /// Value under a pixel; not finite where the axis has no length.
    double valueAt(double pixel) const;

    /// Value that many whole pixels after the lower end, or before the upper one. Linear axes only. @{
    double valueAfter(int pixels) const;
    double valueBefore(int pixels) const;
    /// @}

private:
    AxisMapping(AxisRange range, AxisScale scale, int origin, int size, bool isUpward);

    AxisRange m_range; // in the coordinate of the axis
    AxisScale m_scale;
    int m_origin; // pixel of the lower end
    int m_size;
    bool m_isUpward;
};

/// Both axes, linear, also for a log axis. Value under a pixel; not finite for a graph without width or height.
QPointF valueAt(const QPointF& pixel, const PlotRanges& ranges, const QRect& graph);

/// The same the other way; not finite where a range is empty.
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
