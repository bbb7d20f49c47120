// Float comparison of the plots, and conversion to pixels and integers without undefined behaviour.
#pragma once

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace tarnis {

/// Tolerance of plotEqual(): DBL_EPSILON times the larger magnitude, or DBL_EPSILON if that is at most 1.
inline double plotTolerance(double a, double b)
{
    const double larger = std::max(std::fabs(a), std::fabs(b));
    return larger > 1.0 ? DBL_EPSILON * larger : DBL_EPSILON;
}

/// Compares exactly by the formula of the plot tolerance: NaN equals nothing, an infinity equals everything but itself.
inline bool plotEqual(double a, double b)
{
    return std::fabs(a - b) <= plotTolerance(a, b);
}

/// Pixels beyond this are far outside of any widget; sums of a few of them fit into an int.
constexpr int pixelLimit = 1 << 30;

/// Truncates the fraction. Values beyond the limit are clamped to it; NaN becomes the negative limit, which is never
/// visible.
inline int truncateToPixel(double value)
{
    if (!(value > -pixelLimit))
        return -pixelLimit;
    return value < pixelLimit ? static_cast<int>(value) : pixelLimit;
}

/// Rounds to the nearest integer, halves away from zero. Values beyond int are clamped to its range; NaN becomes the
/// lowest int.
inline int roundToInt(double value)
{
    if (!(value > std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return value < std::numeric_limits<int>::max() ? static_cast<int>(std::round(value))
                                                   : std::numeric_limits<int>::max();
}

} // namespace tarnis
