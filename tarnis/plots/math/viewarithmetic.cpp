#include "tarnis/plots/math/viewarithmetic_p.h"

#include "tarnis/plots/math/axisticks_p.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace tarnis {

namespace {

constexpr double zoomPerNotch = 1.2;
constexpr double maxSpanOfData = 1.2;
constexpr double eighthsPerNotch = 120.0;
// Ends beyond this could overflow in sums and differences. No count or channel is that large.
constexpr double largestEnd = 1e300;
// A span of fewer representable numbers would show the resolution of double instead of data.
constexpr double fewestNumbers = 1024.0;

// Decades beyond this are not representable.
constexpr double maxDecades = 300.0;

bool isUsable(double low, double high, AxisScale scale)
{
    const double end = scale == AxisScale::Log ? maxDecades : largestEnd;
    return std::abs(low) <= end && std::abs(high) <= end && low != high; // false for NaN
}

double smallestSpan(double low, double high, const ViewLimits& limits)
{
    return std::max(limits.minSpan, fewestNumbers * DBL_EPSILON * std::max(std::abs(low), std::abs(high)));
}

double largestSpan(const ViewLimits& limits)
{
    const double data = limits.data ? std::abs(limits.data->max - limits.data->min) : 0.0;
    return data > 0.0 && std::isfinite(data) ? std::max(data * maxSpanOfData, limits.minSpan) : largestEnd;
}

/// Restores the exact value of an end that has not moved; so 0 stays 0 on a log axis.
AxisRange backToValues(AxisRange range, AxisScale scale, double low, double high, double newLow, double newHigh)
{
    return { newLow == low ? range.min : fromAxis(newLow, scale),
        newHigh == high ? range.max : fromAxis(newHigh, scale) };
}

/// The divisor of a range, limited so that the span stays within the limits and never jumps to one.
double limitedFactor(double span, double factor, double smallest, double largest)
{
    if (factor > 1.0)
        return span <= smallest ? 1.0 : std::min(factor, span / smallest);
    return span >= largest ? 1.0 : std::max(factor, span / largest);
}

} // namespace

double toAxis(double value, AxisScale scale)
{
    return scale == AxisScale::Log ? floorLog10(value) : value;
}

double fromAxis(double position, AxisScale scale)
{
    return scale == AxisScale::Log ? std::pow(10.0, position) : position;
}

double shareOf(double value, AxisRange range, AxisScale scale)
{
    const double low = toAxis(range.min, scale);
    const double high = toAxis(range.max, scale);
    return low != high ? (toAxis(value, scale) - low) / (high - low) : 0.5;
}

AxisRange zoomedView(AxisRange range, AxisScale scale, ZoomAnchor anchor, double notches, const ViewLimits& limits)
{
    const double low = toAxis(range.min, scale);
    const double high = toAxis(range.max, scale);
    if (!isUsable(low, high, scale) || !std::isfinite(notches) || !std::isfinite(anchor.share))
        return range;
    const double factor = limitedFactor(
        std::abs(high - low), std::pow(zoomPerNotch, notches), smallestSpan(low, high, limits), largestSpan(limits));
    if (factor == 1.0)
        return range;
    const double still = anchor.keepsMin ? low : low + (high - low) * anchor.share;
    const double newLow = anchor.keepsMin ? low : still - (still - low) / factor;
    const double newHigh = still + (high - still) / factor;
    const AxisRange zoomed = backToValues(range, scale, low, high, newLow, newHigh);
    // The direction cannot change: differences, quotients and sums are rounded monotonically.
    return isUsable(newLow, newHigh, scale) && zoomed.min != zoomed.max ? zoomed : range;
}

AxisRange pannedView(AxisRange range, AxisScale scale, double share, const ViewLimits& limits)
{
    const double low = toAxis(range.min, scale);
    const double high = toAxis(range.max, scale);
    if (!isUsable(low, high, scale) || !std::isfinite(share))
        return range;
    double shift = (high - low) * share;
    if (limits.data) {
        const auto [first, last] = std::minmax(limits.data->min, limits.data->max);
        const double middle = low + (high - low) / 2.0;
        // A view that is already outside may move back, but not further out.
        shift = std::clamp(shift, std::min(first - middle, 0.0), std::max(last - middle, 0.0));
    }
    if (shift == 0.0 || !std::isfinite(shift))
        return range;
    const double newLow = low + shift;
    const double newHigh = high + shift;
    const AxisRange panned = backToValues(range, scale, low, high, newLow, newHigh);
    return isUsable(newLow, newHigh, scale) && panned.min != panned.max ? panned : range;
}

AxisRange ZoomSteps::add(int eighths, const ViewLimits& limits)
{
    const double notches = static_cast<double>(m_eighths + eighths) / eighthsPerNotch;
    const AxisRange wanted = zoomedView(m_start, m_scale, m_anchor, notches, ViewLimits());
    const AxisRange zoomed = zoomedView(m_start, m_scale, m_anchor, notches, limits);
    if (wanted == zoomed) {
        m_eighths += eighths;
        m_shown = zoomed;
    } else { // at a limit, a new sequence begins
        m_shown = zoomedView(m_shown, m_scale, m_anchor, eighths / eighthsPerNotch, limits);
        m_start = m_shown;
        m_eighths = 0;
    }
    return m_shown;
}

bool ZoomSteps::continues(AxisRange shown, AxisScale scale, ZoomAnchor anchor) const
{
    return shown == m_shown && scale == m_scale && anchor.share == m_anchor.share
        && anchor.keepsMin == m_anchor.keepsMin;
}

} // namespace tarnis
