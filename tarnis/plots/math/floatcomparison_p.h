// Numbers as the plots treat them: when two count as equal, and how a real number becomes a pixel or a whole number
// without undefined behaviour.
#pragma once

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace tarnis {

/// How far apart equal numbers may be: DBL_EPSILON times the larger magnitude, or DBL_EPSILON if that is at most 1.
inline double plotTolerance(double a, double b)
{
    const double larger = std::max(std::fabs(a), std::fabs(b));
    return larger > 1.0 ? DBL_EPSILON * larger : DBL_EPSILON;
}

/// The plot tolerance, by its formula to the letter: NaN equals nothing, an infinity equals everything but itself.
inline bool plotEqual(double a, double b)
{
    return std::fabs(a - b) <= plotTolerance(a, b);
}

/// Pixels beyond this are far outside of any widget; sums of a few of them still fit into an int.
constexpr int pixelLimit = 1 << 30;

/// Cuts the fraction off. Values beyond the limit are cut to it, NaN becomes its negative: never in sight.
inline int truncateToPixel(double value)
{
    if (!(value > -pixelLimit))
        return -pixelLimit;
    return value < pixelLimit ? static_cast<int>(value) : pixelLimit;
}

/// Rounds to the nearest integer, halves away from zero. Values beyond int are cut to its ends, NaN becomes the lowest.
inline int roundToInt(double value)
{
    if (!(value > std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return value < std::numeric_limits<int>::max() ? static_cast<int>(std::round(value))
                                                   : std::numeric_limits<int>::max();
}

} // namespace tarnis
