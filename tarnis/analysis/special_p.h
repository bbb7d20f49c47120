// Special functions of the fits and the tests of counts. Pure, re-entrant.
#pragma once

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
/// The same for n numbers that are not negative, in the same place.
void scaledErfcs(double* a, std::size_t n);
/// Replaces n numbers by their exponentials, with errors of at most 1.5 units of the last digit.
void exponentials(double* x, std::size_t n);
/// Sum of the products a[i] b[i], in several partial sums, which the compiler vectorises.
double dot(const double* a, const double* b, std::size_t n);
/// A function of a complex argument with its first and second derivative.
struct FaddeevaValues {
    std::complex<double> value;
    std::complex<double> slope;
    std::complex<double> curvature;
};
/// Faddeeva function exp(-u^2) erfc(-iu) for Im u >= 0, to about 1e-14.
FaddeevaValues faddeeva(std::complex<double> u);

/// Half the Poisson deviance for |s| <= nearRatio, where s = (m - y)/(m + y). There m - y + y ln(y/m) cancels near m =
/// y. With ln(m/y) = 2 artanh(s) = 2 s + 2 s^3/3 + 2 s^5/5 + ... and m - y - 2 y s = (m - y) s nothing cancels, and
/// there is no call of a logarithm.
inline constexpr double nearRatio = 0.17;
inline double nearHalfDeviance(double y, double difference, double s)
{
    const double z = s * s;
    const double high = 2.0 / 13 + z * (2.0 / 15 + z * (2.0 / 17 + z * (2.0 / 19 + z * (2.0 / 21))));
    const double low = 2.0 / 3 + z * (2.0 / 5 + z * (2.0 / 7 + z * (2.0 / 9 + z * (2.0 / 11))));
    return s * (difference - y * z * (low + z * z * z * (z * z) * high));
}
/// Half the Poisson deviance as below, for m - y = difference where this is known to more digits than m and y.
inline double halfDeviance(double y, double m, double difference)
{
    if (y <= 0.0)
        return m;
    const double s = difference / (m + y);
    return std::fabs(s) > nearRatio ? difference - y * std::log(m / y) : nearHalfDeviance(y, difference, s);
}
/// m - y + y ln(y/m) for y >= 0, m > 0: half the Poisson deviance. Accurate to rounding also near m = y.
inline double halfDeviance(double y, double m)
{
    return halfDeviance(y, m, m - y);
}
/// Sum of the Poisson deviances 2 (m - y + y ln(y/m)) of n bins, y >= 0. NaN if an m is negative, or 0 where y is not.
double sumOfDeviances(const double* y, const double* m, std::size_t n);
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
