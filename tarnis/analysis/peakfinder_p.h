// The search for peaks with constant or variable width.
#pragma once

#include "tarnis/analysis/peaktable.h"

#include <span>
#include <vector>

namespace tarnis::analysis {

/// Significance of the second difference at each bin; sigmas in bins, one for each.
std::vector<double> searchSignificance(std::span<const double> y, const std::vector<double>& sigmas);
/// About the full width at half maximum, in bins, of the widest peaks that estimateWidths() finds in this many bins.
double widestFwhm(std::size_t bins);
/// Local maxima above a threshold.
std::vector<std::size_t> maximaAbove(const std::vector<double>& values, double threshold);
/// Whether the bins can be searched; clips the range.
bool canBeSearched(const BinnedData& data, std::size_t& first, std::size_t& last);
/// The calibrated width at a bin, in bins.
double sigmaInBins(const BinnedData& data, const WidthCalibration& widths, std::size_t i);

} // namespace tarnis::analysis
