// Bins of a map that share a pixel, reduced to one value. Values in and out; no painter.
#pragma once

#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"

namespace tarnis {

/// What a pixel shows that several bins begin in.
enum class BinReduction {
    First, ///< the first bin of a row that is not 0, of the last such row: as the map is painted
    Maximum, ///< the largest finite bin
    Sum, ///< of the finite bins
    Mean ///< of the finite bins, empty ones included
};

/// True if bins in view share pixels.
bool hasSharedPixels(const BinView& view);

/// The rows with the reduced value in the first column of the last row of each group that shares a pixel, and 0 in its
/// other bins. Painted as any rows they show the reduced values. Bins out of view are 0. A group without a finite bin
/// is 0.
BinRows reducedBins(const BinRows& rows, const BinView& view, BinReduction reduction);

/// The largest finite bin, at least 0.
double largestBin(const BinRows& rows);

} // namespace tarnis
