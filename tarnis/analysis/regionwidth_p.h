// Widths of a peak by interpolation.
#pragma once

#include "tarnis/analysis/regionstatistics.h"

#include <span>

namespace tarnis::analysis {

/// Width at a fraction of the net content of bin `top`, the highest one. x: centres relative to the origin. trusted:
/// the peak is high and significant enough for a width to be shown.
InterpolatedWidth interpolatedWidth(std::span<const double> x, std::span<const double> net, std::size_t top,
    double fraction, double origin, bool trusted);

} // namespace tarnis::analysis
