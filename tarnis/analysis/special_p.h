// Special functions of the fits and the tests of counts. Pure, re-entrant.
#pragma once

#include "tarnis/analysis/binformulae_p.h"
#include "tarnis/analysis/binkernels_p.h"

#include <cmath>
#include <complex>
#include <cstddef>
#include <span>

namespace tarnis::analysis {

inline constexpr double pi = 3.14159265358979323846;
inline constexpr double sqrtTwo = 1.41421356237309504880;
inline constexpr double sqrtTwoPi = 2.50662827463100050242;
/// FWHM of a Gaussian in units of its standard deviation, 2 sqrt(2 ln 2).
inline constexpr double fwhmPerSigma = 2.35482004503094938202;
/// Full width at a tenth of the maximum, 2 sqrt(2 ln 10).
inline constexpr double fwtmPerSigma = 4.29193205257869376437;

/// Standard normal density.
inline double normalDensity(double z)
{
    return std::exp(-0.5 * z * z) / sqrtTwoPi;
}
/// Standard normal distribution, accurate in the lower tail.
double normalDistribution(double z);
/// Quantile of the standard normal distribution, 0 < p < 1.
double normalQuantile(double p);
/// exp(a^2) erfc(a), to about 1e-15. Overflows to infinity below about -26.
double scaledErfc(double a);
/// A function of a complex argument with its first and second derivative.
struct FaddeevaValues {
    std::complex<double> value;
    std::complex<double> slope;
    std::complex<double> curvature;
};
/// Faddeeva function exp(-u^2) erfc(-iu) for Im u >= 0, to about 1e-14.
FaddeevaValues faddeeva(std::complex<double> u);

/// Probability of y counts at mean m; y >= 0 need not be an integer.
double poissonProbability(double y, double m);
/// Regularised lower incomplete gamma function P(a, x), a > 0.
double gammaP(double a, double x);
/// The x with P(a, x) = p, 0 < p < 1.
double gammaPInverse(double a, double p);
/// Probability of k or more successes in n trials of probability p.
double binomialUpperTail(double k, double n, double p);

/// Mean and variance of the Poisson deviance 2 (m - y + y ln(y/m)).
struct DevianceMoments {
    double mean = 0.0;
    double variance = 0.0;
};
/// Sums of both over bins of the given means, computed by exact sums over the counts, and for means of 25 or more by
/// the series in 1/m. A mean that is not positive is ignored.
DevianceMoments sumOfDevianceMoments(std::span<const double> means);

} // namespace tarnis::analysis
