// The search for peaks with one width or many.
#pragma once

#include "tarnis/analysis/peaktable.h"

#include <span>
#include <vector>

namespace tarnis::analysis {

/// Significance of the second difference at each bin; sigmas in bins, one for each.
std::vector<double> searchSignificance(std::span<const double> y, const std::vector<double>& sigmas);
/// Local maxima above a threshold.
std::vector<std::size_t> maximaAbove(const std::vector<double>& values, double threshold);
/// Whether the bins are fit for a search; clips the range.
bool canBeSearched(const BinnedData& data, std::size_t& first, std::size_t& last);
/// The calibrated width at a bin, in bins.
double sigmaInBins(const BinnedData& data, const WidthCalibration& widths, std::size_t i);

} // namespace tarnis::analysis
