// Spectra made from models.
#pragma once

#include "support/randomcases.h"

#include <tarnis/analysis/peakshape.h>
#include <tarnis/analysis/spectrumfit.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

namespace tarnis::testing {

struct Truth {
    FitModel model;
    std::vector<double> widths { 3.0 };
    std::vector<double> areas { 2000.0 };
    std::vector<double> centres { 50.3 };
    double background = 20.0;
    double slope = 0.05;
};

inline std::vector<double> meansOf(const Truth& truth, int bins)
{
    std::vector<double> means;
    for (int i = 0; i < bins; ++i) {
        double mean = truth.background + truth.slope * (i - 0.5 * (bins - 1));
        for (std::size_t k = 0; k < truth.areas.size(); ++k)
            mean += truth.areas[k] * peakIntegral(truth.model.shape, i - 0.5, i + 0.5, truth.centres[k], truth.widths);
        means.push_back(mean);
    }
    return means;
}

inline std::vector<double> countsOf(const Truth& truth, int bins, Generator& generator)
{
    std::vector<double> counts = meansOf(truth, bins);
    for (double& content : counts)
        content = static_cast<double>(std::poisson_distribution<int>(std::max(0.0, content))(generator));
    return counts;
}

inline BinnedData viewOf(const std::vector<double>& counts)
{
    BinnedData data;
    data.contents = counts;
    return data;
}

inline FitResult fitOf(const std::vector<double>& counts, const FitModel& model = {}, const FitOptions& options = {})
{
    return fitSpectrum(viewOf(counts), 0, static_cast<std::ptrdiff_t>(counts.size()) - 1, model, options);
}

} // namespace tarnis::testing
