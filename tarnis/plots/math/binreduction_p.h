// Reduces bins of a map that share a pixel to one value. Pure functions without a painter.
#pragma once

#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"

namespace tarnis {

/// The value shown in a pixel where several bins begin.
enum class BinReduction {
    First, ///< the first non-zero bin of the last row that has one, as the map is painted
    Maximum, ///< the largest finite bin
    Sum, ///< sum of the finite bins
    Mean ///< mean of the finite bins, including empty ones
};

/// True if visible bins share pixels.
bool hasSharedPixels(const BinGeometry& view);

/// The rows with the reduced value in the first column of the last row of each group that shares a pixel, and 0 in its
/// other bins. Painted like ordinary rows, they show the reduced values. Invisible bins are 0. A group without a finite
/// bin is 0.
BinRows reducedBins(const BinRows& rows, const BinGeometry& view, BinReduction reduction);

/// The largest finite bin, at least 0.
double largestBin(const BinRows& rows);

} // namespace tarnis
