/** @file
 * Numbers of a region of a spectrum: gross and net area, centroid, widths, and whether there is a peak at all. Pure
 * functions, re-entrant. Formulae and sources: docs/analysis.md. */
#pragma once

#include <tarnis/analysis/binneddata.h>
#include <tarnis/analysis/countstatistics.h>
#include <tarnis/tarnis_export.h>

#include <QString>

#include <cstddef>
#include <limits>

namespace tarnis {

/// Options of region statistics.
struct RegionOptions {
    int sideBins = 3; ///< number of background bins next to each end of the region; 0: no net quantities
    /// Bins that are split by the limits count with the fraction inside, assuming constant density within a bin. Tests
    /// and intervals of counts are then NaN.
    bool partialBins = false;
    double liveTime = noNumber; ///< live time of the measurement in seconds, for the rates
    /// The exact interval and limit of a sum are computed up to this many counts; they cost more than everything else.
    double intervalsUpTo = std::numeric_limits<double>::infinity();
};

/// A width by linear interpolation at a fraction of the highest net content, searched outwards from it. Differs from a
/// fitted width: a Gaussian appears 1 to 2 % wider at sigma = 3 bins, 2 to 3 % at 2, 8 to 13 % at 1.
struct InterpolatedWidth {
    double left = noNumber; ///< left crossing
    double right = noNumber; ///< right crossing
    double width = noNumber; ///< distance of the crossings
    double outer = noNumber; ///< the same, searched inwards from both ends of the region
    bool unique = false; ///< both searches agree; otherwise the width is dominated by noise and must not be shown
    double shown = noNumber; ///< width if it is unique, the net area significant and the top 25 net counts or more
};

/// Statistics of a region. Positions are in units of the axis, contents in counts. A number that does not exist is NaN.
struct TARNIS_EXPORT RegionStatistics {
    QString fault; ///< why there are no results, for the user; empty on success
    QString note; ///< a remark for the user, for example about a missing side; usually empty

    /// @{ First and last bin, counted from 0, and the limits of the region: those bins' outer edges for whole bins.
    std::size_t first = 0;
    std::size_t last = 0;
    double lower = noNumber;
    double upper = noNumber;
    /// @}
    double bins = 0.0; ///< number of bins; with partial bins the sum of the fractions

    /// @{ Gross quantities of the contents y: sum, mean content, largest content (largest density for unequal bins) and
    /// the centre of the first bin that has it, with standard errors. Contents that are neither counts nor have
    /// variances have no errors.
    double sum = noNumber;
    double sumError = noNumber;
    CountInterval sumInterval { noNumber, noNumber }; ///< exact central 68.27 % interval; show it below 10 counts
    double sumUpperLimit = noNumber; ///< exact one-sided 95 % limit; the result to show if the sum is 0
    double mean = noNumber;
    double meanError = noNumber;
    double maximum = noNumber;
    double maximumError = noNumber;
    std::size_t maximumBin = 0;
    double maximumPosition = noNumber;
    /// @}

    /// @{ Moments of the contents: sum x y / sum y, its variance (divided by the sum), the variance less that of the
    /// bin width (Sheppard), and the square roots. NaN for no counts.
    double centroid = noNumber;
    double centroidError = noNumber;
    double variance = noNumber;
    double varianceError = noNumber;
    double varianceSheppard = noNumber;
    double rms = noNumber;
    double rmsSheppard = noNumber;
    /// @}

    bool hasNet = false; ///< there is at least one side group; otherwise the rest is NaN
    /// @{ Sums, numbers of bins and mean contents of the side groups.
    double leftSum = noNumber;
    double rightSum = noNumber;
    int leftBins = 0;
    int rightBins = 0;
    double backgroundLeft = noNumber;
    double backgroundRight = noNumber;
    /// @}

    /// @{ The line through the side groups, summed over the region, and what is above it.
    double background = noNumber;
    double backgroundError = noNumber;
    double net = noNumber;
    double netError = noNumber;
    /// @}

    /// @{ Is there something? Currie's levels and the answer by them, the exact test and its answer (which decides),
    /// and the significance of Li and Ma.
    double criticalLevel = noNumber;
    double detectionLimit = noNumber;
    bool aboveCriticalLevel = false;
    double excessProbability = noNumber;
    bool significant = false;
    double liMa = noNumber;
    /// @}

    /// @{ Moments of the net contents. To be shown only if the net area is significant: otherwise the centroid can lie
    /// outside of the region. NaN unless the net area is positive.
    double netCentroid = noNumber;
    double netCentroidError = noNumber;
    double netVariance = noNumber;
    double netVarianceError = noNumber;
    /// @}

    double netMaximum = noNumber; ///< highest net content
    std::size_t netMaximumBin = 0; ///< first bin with this content
    InterpolatedWidth fwhm; ///< at half of netMaximum
    InterpolatedWidth fwtm; ///< at a tenth

    /// @{ Gross and net counts per second of live time; NaN without a live time.
    double rate = noNumber;
    double rateError = noNumber;
    double netRate = noNumber;
    double netRateError = noNumber;
    /// @}
};

/// Statistics of the bins first to last, both inclusive.
TARNIS_EXPORT RegionStatistics regionStatisticsOfBins(
    const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, const RegionOptions& options = {});

/// Statistics from lower to upper on the axis: of the bins whose centre is in [lower, upper), or with
/// RegionOptions::partialBins of all bins that the interval covers at least in part.
TARNIS_EXPORT RegionStatistics regionStatistics(
    const BinnedData& data, double lower, double upper, const RegionOptions& options = {});

} // namespace tarnis
