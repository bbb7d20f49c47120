// Searches for the peaks of a multiplet.
#pragma once

#include "tarnis/analysis/spectrumfit.h"

#include <vector>

namespace tarnis::analysis {

/// Starting positions for the peaks of wanted.model in its range. Peaks are added one by one, where the previous fit is
/// most below the contents or by splitting a peak, whichever fits better. Fewer than requested if the range is too
/// short.
std::vector<double> searchedPositions(const BinnedData& data, const FitResult& wanted);

/// The fit with one more peak, added or split, whichever has the lower statistic.
FitResult fitOneMore(const BinnedData& data, const FitResult& fit);

/// Whether the contents justify the fit with more peaks.
bool isJustified(const FitResult& more, const FitResult& fewer);

} // namespace tarnis::analysis
