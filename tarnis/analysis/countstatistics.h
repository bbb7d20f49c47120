/** @file
 * Intervals, limits and tests of counts. Pure functions, re-entrant. */
#pragma once

#include <tarnis/tarnis_export.h>

namespace tarnis {

/// The probability within one standard deviation of a normal distribution.
inline constexpr double oneSigmaCoverage = 0.682689492137085897;

/// A closed interval of counts.
struct CountInterval {
    double lower = 0.0; ///< lower end
    double upper = 0.0; ///< upper end
};

/// The exact central interval of a Poisson mean for an observed number of counts (F. Garwood, Biometrika 28 (1936)
/// 437). Both ends are NaN unless counts >= 0 and 0 < coverage < 1.
TARNIS_EXPORT CountInterval poissonInterval(double counts, double coverage = oneSigmaCoverage);

/// The exact one-sided upper limit of a Poisson mean for an observed number of counts: 3.00 for 0 counts. NaN unless
/// counts >= 0 and 0 < confidence < 1.
TARNIS_EXPORT double poissonUpperLimit(double counts, double confidence = 0.95);

/// The probability that at least `inside` of `inside + outside` counts are in a region, if each count is there with the
/// given probability: the exact test of "no peak" (J. Przyborowski, H. Wilenski, Biometrika 31 (1940) 313). 1 if
/// `inside` is 0; NaN for negative or non-finite arguments.
TARNIS_EXPORT double excessProbability(double inside, double outside, double probabilityInside);

/// Signed significance of `inside` counts in a region against `outside` in a background region, in standard deviations
/// (T. Li, Y. Ma, ApJ 272 (1983) 317, equation 17). alpha: size of the region divided by that of the background region.
/// Negative for a deficit, 0 without any counts; NaN for negative or non-finite arguments and unless alpha > 0.
TARNIS_EXPORT double liMaSignificance(double inside, double outside, double alpha);

/// Currie's critical level and detection limit for 5 % false alarms and 5 % misses (L. Currie, Anal. Chem. 40 (1968)
/// 586), in counts.
struct CurrieLevels {
    double critical = 0.0; ///< a net area above it counts as a peak
    double detection = 0.0; ///< a true net area that counts as a peak in 95 % of all measurements
};

/// Both levels for a background and its variance.
TARNIS_EXPORT CurrieLevels currieLevels(double background, double backgroundVariance);

} // namespace tarnis
