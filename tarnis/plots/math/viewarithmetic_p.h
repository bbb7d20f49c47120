// Arithmetic of zooming and panning: pure functions on ranges. A logarithmic axis is zoomed in decades. All functions
// keep the direction of a range, which may run from high to low.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <optional>

namespace tarnis {

enum class AxisScale { Linear, Log };

/// The coordinate in which an axis is linear: the value, or its decimal logarithm (0 for values at or below 0). @{
double toAxis(double value, AxisScale scale);
double fromAxis(double position, AxisScale scale);
/// @}

/// Limits of zooming and moving, in the coordinate of the axis.
struct ViewLimits {
    double minSpan = 0.0; ///< minimum span when zooming in
    std::optional<AxisRange> data; ///< zooming out ends at 1.2 times this range; moving keeps the view's centre inside
                                   ///< it
};

/// The fixed point of a zoom.
struct ZoomAnchor {
    double share = 0.5; ///< position of the pointer, from 0 at `min` to 1 at `max`
    bool keepsMin = false; ///< the lower end is fixed instead
};

/// The range after `notches` of a wheel: 1.2 times smaller for each, larger for negative ones. At a limit the range has
/// exactly the limit's span about the same anchor. A range beyond a limit is not zoomed further, but can always be
/// zoomed back. A non-finite or empty range is returned unchanged.
AxisRange zoomedView(AxisRange range, AxisScale scale, ZoomAnchor anchor, double notches, const ViewLimits& limits);

/// The range moved by `share` of its span: 0.1 moves it up by a tenth.
AxisRange pannedView(AxisRange range, AxisScale scale, double share, const ViewLimits& limits);

/// Position of a value within the range, 0 at `min` and 1 at `max`; 0.5 for a range without extent.
double shareOf(double value, AxisRange range, AxisScale scale);

/// A sequence of wheel steps about one anchor. It is computed from the range at its start, so that equal steps forward
/// and back restore the range exactly.
class ZoomSteps {
public:
    ZoomSteps() = default;
    ZoomSteps(AxisRange start, AxisScale scale, ZoomAnchor anchor)
        : m_start(start)
        , m_shown(start)
        , m_scale(scale)
        , m_anchor(anchor)
    {
    }
    /// Adds steps in eighths of a degree, the unit of wheel events: 120 are a notch. Returns the new range. Steps
    /// beyond a limit are dropped, so that the first step back has an effect.
    AxisRange add(int eighths, const ViewLimits& limits);
    /// True if the shown range is still the one that this sequence returned, and the anchor is unchanged.
    bool continues(AxisRange shown, AxisScale scale, ZoomAnchor anchor) const;

private:
    AxisRange m_start;
    AxisRange m_shown;
    AxisScale m_scale = AxisScale::Linear;
    ZoomAnchor m_anchor;
    long long m_eighths = 0;
};

} // namespace tarnis
