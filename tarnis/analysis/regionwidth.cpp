// The outward search is the usual one of multichannel analysers. The inward search from both ends of the region shows
// whether noise dominates.
#include "tarnis/analysis/regionwidth_p.h"

#include <cmath>

namespace tarnis::analysis {

namespace {

// Where the straight line from bin i, above the level, to bin j, at or below it, crosses the level.
double crossing(std::span<const double> x, std::span<const double> net, std::size_t i, std::size_t j, double level)
{
    return x[i] + (x[j] - x[i]) * (net[i] - level) / (net[i] - net[j]);
}

struct Crossings {
    double left = noNumber;
    double right = noNumber;
};

Crossings outwards(std::span<const double> x, std::span<const double> net, std::size_t top, double level)
{
    Crossings result;
    for (std::size_t i = top; i > 0; --i) {
        if (net[i - 1] <= level) {
            result.left = crossing(x, net, i, i - 1, level);
            break;
        }
    }
    for (std::size_t i = top; i + 1 < net.size(); ++i) {
        if (net[i + 1] <= level) {
            result.right = crossing(x, net, i, i + 1, level);
            break;
        }
    }
    return result;
}

// A region whose end is above the level has no crossing there.
Crossings inwards(std::span<const double> x, std::span<const double> net, double level)
{
    Crossings result;
    std::size_t first = 0;
    while (net[first] <= level)
        ++first;
    if (first > 0)
        result.left = crossing(x, net, first, first - 1, level);
    std::size_t last = net.size() - 1;
    while (net[last] <= level)
        --last;
    if (last + 1 < net.size())
        result.right = crossing(x, net, last, last + 1, level);
    return result;
}

} // namespace

InterpolatedWidth interpolatedWidth(std::span<const double> x, std::span<const double> net, std::size_t top,
    double fraction, double origin, bool trusted)
{
    InterpolatedWidth result;
    if (!(net[top] > 0.0))
        return result;
    const double level = fraction * net[top];
    const Crossings near = outwards(x, net, top, level);
    const Crossings far = inwards(x, net, level);
    result.left = origin + near.left;
    result.right = origin + near.right;
    result.width = near.right - near.left;
    result.outer = far.right - far.left;
    result.unique = near.left == far.left && near.right == far.right;
    if (result.unique && trusted)
        result.shown = result.width;
    return result;
}

} // namespace tarnis::analysis
