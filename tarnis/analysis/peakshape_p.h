// Bin contents of peaks.
#pragma once

#include "tarnis/analysis/peakshape.h"

#include <cstddef>
#include <vector>

namespace tarnis::analysis {

int widthCount(PeakShape shape);

/// Distribution function below the centre, distribution function minus 1 above it, which is accurate in both tails.
/// Derivatives are those of the distribution function. Not for PeakShape::Voigt.
PeakDensity signedTail(PeakShape shape, double x, double centre, const double* widths);
PeakDensity density(PeakShape shape, double x, double centre, const double* widths);

/// Contents of bins for a peak of unit area, and their derivatives. Arrays have one double for each bin. value null:
/// already known; byCentre null: no derivatives.
struct PeakColumns {
    double* value;
    double* byCentre;
    std::array<double*, maxWidthParameters> byWidth;
};

/// Scratch of integratePeak(), kept between calls for one peak over the same edges. What a Gaussian's contents and
/// their derivatives share is computed once.
struct PeakScratch {
    /// At each edge, of the centre and the sigma below. See gaussians(). @{
    std::vector<double> tail;
    std::vector<double> density;
    /// @}
    double centre = 0.0;
    double sigma = 0.0;
};

/// Integrals over the bins between neighbouring edges.
void integratePeak(PeakShape shape, std::span<const double> edges, double centre, const double* widths,
    const PeakColumns& columns, PeakScratch& scratch);
/// Density at each bin's centre times its width.
void samplePeak(
    PeakShape shape, std::span<const double> edges, double centre, const double* widths, const PeakColumns& columns);

} // namespace tarnis::analysis
