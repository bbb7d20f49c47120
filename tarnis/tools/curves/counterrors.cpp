#include "tarnis/tools/curves/counterrors_p.h"

#include <array>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr int exactCounts = 1000;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// Cache by count, filled on demand: an upper end of 0 is not computed yet. GUI thread only, like all tools.
std::array<CountInterval, exactCounts + 1> exactIntervals;

double cube(double value)
{
    return value * value * value;
}

} // namespace

bool isCount(double value)
{
    constexpr double largestWhole = 9007199254740992.0; // beyond it every double is an integer
    if (!(value >= 0.0 && value < largestWhole))
        return value >= largestWhole && std::isfinite(value);
    return static_cast<double>(static_cast<long long>(value)) == value;
}

CountInterval quickPoissonInterval(double count)
{
    if (!isCount(count))
        return { nan, nan };
    if (count > exactCounts) {
        const double above = count + 1.0;
        return { count * cube(1.0 - 1.0 / (9.0 * count) - 1.0 / (3.0 * std::sqrt(count))),
            above * cube(1.0 - 1.0 / (9.0 * above) + 1.0 / (3.0 * std::sqrt(above))) };
    }
    CountInterval& interval = exactIntervals[static_cast<std::size_t>(count)];
    if (interval.upper == 0.0)
        interval = poissonInterval(count);
    return interval;
}

CountInterval squareRootInterval(double count)
{
    if (!isCount(count))
        return { nan, nan };
    const double error = std::sqrt(count);
    return { count - error, count + error };
}

} // namespace tarnis
