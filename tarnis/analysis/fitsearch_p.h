// Where the peaks of a multiplet are.
#pragma once

#include "tarnis/analysis/spectrumfit.h"

#include <vector>

namespace tarnis::analysis {

/// Positions for the peaks of wanted.model in its range, one after the other at the place where the last fit is most
/// below the contents, or by splitting a peak, whichever fits better. Fewer than wanted if the range is too short.
std::vector<double> searchedPositions(const BinnedData& data, const FitResult& wanted);

/// The fit with one peak more, a new one or a split of one, whichever is lower.
FitResult fitOneMore(const BinnedData& data, const FitResult& fit);

/// Whether the contents justify the fit with more peaks.
bool isJustified(const FitResult& more, const FitResult& fewer);

} // namespace tarnis::analysis
