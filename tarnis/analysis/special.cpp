// Normal, Poisson, gamma and binomial distributions, and the moments of the Poisson deviance.
#include "tarnis/analysis/special_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace tarnis::analysis {

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

// Error of Stirling's formula for ln n!, after C. Loader, "Fast and accurate computation of binomial probabilities"
// (2000): avoids the cancellation in a difference of two lgamma() of large counts.
double stirlingError(double n)
{
    if (n < 16.0)
        return std::lgamma(n + 1.0) - (n + 0.5) * std::log(n) + n - std::log(sqrtTwoPi);
    const double square = 1.0 / (n * n);
    return (1.0 / 12 - square * (1.0 / 360 - square * (1.0 / 1260 - square * (1.0 / 1680 - square / 1188)))) / n;
}

double binomialProbability(double k, double n, double p)
{
    if (k <= 0.0)
        return std::exp(n * std::log1p(-p));
    if (k >= n)
        return std::exp(n * std::log(p));
    const double exponent = stirlingError(n) - stirlingError(k) - stirlingError(n - k) - halfDeviance(k, n * p)
        - halfDeviance(n - k, n * (1.0 - p));
    return std::exp(exponent) * std::sqrt(n / (2.0 * pi * k * (n - k)));
}

// A continued fraction by Lentz's method needs a number instead of 0 in its denominators.
double notZero(double value)
{
    return std::fabs(value) < 1e-300 ? 1e-300 : value;
}

// Convergents of a continued fraction 1/(1 + c1/(1 + c2/(1 + ...))) by Wallis's recurrence. The division of Lentz's
// method would be needed for each term, and each would wait for the one before it.
struct Convergents {
    double above = 1.0;
    double below = 1.0;
    double aboveBefore = 0.0;
    double belowBefore = 1.0;

    void add(double coefficient)
    {
        aboveBefore = std::exchange(above, above + coefficient * aboveBefore);
        belowBefore = std::exchange(below, below + coefficient * belowBefore);
    }
    bool hasConverged() const
    {
        const double now = above * belowBefore;
        return std::fabs(now - aboveBefore * below) <= 4.0 * epsilon * std::fabs(now);
    }
    // With large counts the terms become smaller by up to nine digits in a step.
    void rescale()
    {
        const double size = std::fabs(below);
        if (size > 1e-100 && size < 1e100)
            return;
        const double scale = 1.0 / notZero(below);
        for (double* const term : { &above, &below, &aboveBefore, &belowBefore })
            *term *= scale;
    }
};

// Continued fraction of the incomplete beta function (Abramowitz, Stegun 26.5.8), for x < (a + 1)/(a + b + 2).
double betaFraction(double a, double b, double x)
{
    Convergents convergents;
    convergents.add(-(a + b) * x / (a + 1.0));
    const int terms = 200 + static_cast<int>(8.0 * std::sqrt(std::min(1e10, a + b)));
    for (int i = 1; i < terms; ++i) {
        convergents.add(i * (b - i) * x / ((a + 2.0 * i - 1.0) * (a + 2.0 * i)));
        convergents.add(-(a + i) * (a + b + i) * x / ((a + 2.0 * i) * (a + 2.0 * i + 1.0)));
        if (convergents.hasConverged())
            break;
        convergents.rescale();
    }
    return convergents.above / convergents.below;
}

double gammaSeries(double a, double x)
{
    double term = 1.0;
    double sum = 1.0;
    const int terms = 200 + static_cast<int>(20.0 * std::sqrt(std::min(1e12, a)));
    for (int n = 1; n < terms && term > epsilon * sum; ++n) {
        term *= x / (a + n);
        sum += term;
    }
    return sum * poissonProbability(a, x);
}

// Q(a, x) for x > a + 1 (Abramowitz, Stegun 6.5.31).
double gammaFraction(double a, double x)
{
    double b = x + 1.0 - a;
    double c = 1e300;
    double d = 1.0 / b;
    double h = d;
    const int terms = 200 + static_cast<int>(20.0 * std::sqrt(std::min(1e12, a)));
    for (int i = 1; i < terms; ++i) {
        const double numerator = -i * (i - a);
        b += 2.0;
        d = 1.0 / notZero(numerator * d + b);
        c = notZero(b + numerator / c);
        h *= d * c;
        if (std::fabs(d * c - 1.0) < epsilon)
            break;
    }
    return h * a * poissonProbability(a, x);
}

// Quantile of the gamma distribution by the expansion of Goldberg and Levine, Ann. Math. Stat. 17 (1946) 216, for
// chi squared with 2a degrees of freedom. Its error falls as 1/a^2.
double gammaQuantileExpansion(double a, double z)
{
    const double nu = 2.0 * a;
    const double root = std::sqrt(nu);
    const double z2 = z * z;
    const double chi2 = nu + root * z * sqrtTwo + 2.0 / 3.0 * (z2 - 1.0) + (z2 - 7.0) * z / (9.0 * sqrtTwo * root)
        - (6.0 * z2 * z2 + 14.0 * z2 - 32.0) / (405.0 * nu)
        + ((9.0 * z2 + 256.0) * z2 - 433.0) * z / (4860.0 * sqrtTwo * nu * root);
    return 0.5 * chi2;
}

constexpr double seriesFrom = 25.0;
constexpr int largestCount = 80;

// Powers of 1/m, from E[d^k] = mu_k / m^k with the central moments mu_k of the Poisson distribution, inserted into
// 2m sum over k of (-d)^k / (k (k - 1)). See J. Kaastra, A&A 605 (2017) A51, and M. Bonamente, J. Appl. Stat. 47
// (2020) 2044 for the same quantities as fitted curves.
DevianceMoments momentsBySeries(double m)
{
    constexpr std::array mean { 1.0, 1.0 / 6, 1.0 / 6, 19.0 / 60, 9.0 / 10, 863.0 / 252, 1375.0 / 84, 33953.0 / 360,
        57281.0 / 90 };
    constexpr std::array variance { 2.0, 2.0 / 3, 4.0 / 3, 701.0 / 180, 449.0 / 30, 90329.0 / 1260, 43313.0 / 105,
        209854609.0 / 75600, 101147411.0 / 4725 };
    DevianceMoments sum;
    const double inverse = 1.0 / m;
    for (std::size_t i = mean.size(); i-- > 0;) {
        sum.mean = sum.mean * inverse + mean[i];
        sum.variance = sum.variance * inverse + variance[i];
    }
    return sum;
}

struct CountTable {
    std::array<double, largestCount + 1> yLogY {};
    std::array<double, largestCount + 2> inverse {};
    CountTable()
    {
        for (int y = 1; y <= largestCount + 1; ++y) {
            inverse[static_cast<std::size_t>(y)] = 1.0 / y;
            if (y <= largestCount)
                yLogY[static_cast<std::size_t>(y)] = y * std::log(y);
        }
    }
};

DevianceMoments momentsBySum(double m, const CountTable& table)
{
    DevianceMoments sum;
    const double logMean = std::log(m);
    const int last = std::min(largestCount, static_cast<int>(m + 8.5 * std::sqrt(m) + 10.0));
    double probability = std::exp(-m);
    double square = 0.0;
    for (int y = 0; y <= last; ++y) {
        const auto i = static_cast<std::size_t>(y);
        const double deviance = 2.0 * (m - y + table.yLogY[i] - y * logMean);
        const double weighted = probability * deviance;
        sum.mean += weighted;
        square += weighted * deviance;
        probability *= m * table.inverse[i + 1];
    }
    sum.variance = square - sum.mean * sum.mean;
    return sum;
}

} // namespace

double normalDistribution(double z)
{
    return 0.5 * std::erfc(-z / sqrtTwo);
}

// Starts with Abramowitz, Stegun 26.2.23, then uses Newton's method on the smaller tail.
double normalQuantile(double p)
{
    const double tail = std::min(p, 1.0 - p);
    const double t = std::sqrt(-2.0 * std::log(tail));
    double z = (2.515517 + t * (0.802853 + t * 0.010328)) / (1.0 + t * (1.432788 + t * (0.189269 + t * 0.001308))) - t;
    for (int i = 0; i < 4; ++i) {
        const double step = (normalDistribution(z) - tail) / normalDensity(z);
        z -= step / (1.0 + 0.5 * z * step);
    }
    return p < 0.5 ? z : -z;
}

double scaledErfc(double a)
{
    return a < 0.0 ? std::exp(a * a) * std::erfc(a) : scaledErfcFormula(a);
}

double poissonProbability(double y, double m)
{
    if (m <= 0.0)
        return y == 0.0 ? 1.0 : 0.0;
    if (y <= 0.0)
        return std::exp(-m);
    return std::exp(-stirlingError(y) - halfDeviance(y, m)) / std::sqrt(2.0 * pi * y);
}

double gammaP(double a, double x)
{
    if (x <= 0.0)
        return 0.0;
    return x < a + 1.0 ? gammaSeries(a, x) : 1.0 - gammaFraction(a, x);
}

double gammaPInverse(double a, double p)
{
    const double z = normalQuantile(p);
    double x = gammaQuantileExpansion(a, z);
    if (a > 2000.0 && std::fabs(z) < 5.0)
        return x;
    if (!(x > 0.0))
        x = 0.1 * a;
    double low = 0.0;
    double high = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 60; ++i) {
        const double difference = gammaP(a, x) - p;
        (difference > 0.0 ? high : low) = x;
        const double slope = poissonProbability(a, x) * a / x;
        // Halley's step: the logarithmic derivative of the density is (a - 1)/x - 1.
        const double newton = difference / slope;
        if (std::fabs(newton) <= 1e-14 * x)
            break;
        double next = x - newton / (1.0 - 0.5 * std::min(1.0, newton * ((a - 1.0) / x - 1.0)));
        if (!(next > low && next < high))
            next = std::isfinite(high) ? 0.5 * (low + high) : 2.0 * x;
        x = next;
    }
    return x;
}

double binomialUpperTail(double k, double n, double p)
{
    if (k <= 0.0)
        return 1.0;
    if (k > n || p <= 0.0)
        return 0.0;
    if (p >= 1.0)
        return 1.0;
    // I_p(k, n - k + 1), by the faster converging continued fraction.
    const double a = k;
    const double b = n - k + 1.0;
    if (p < (a + 1.0) / (a + b + 2.0))
        return std::min(1.0, binomialProbability(k, n, p) * (1.0 - p) * betaFraction(a, b, p));
    const double lower = binomialProbability(k - 1.0, n, p) * p * betaFraction(b, a, 1.0 - p);
    return std::clamp(1.0 - lower, 0.0, 1.0);
}

DevianceMoments sumOfDevianceMoments(std::span<const double> means)
{
    std::optional<CountTable> table;
    DevianceMoments sum;
    for (const double m : means) {
        if (!(m > 0.0))
            continue;
        if (m < seriesFrom && !table)
            table.emplace();
        const DevianceMoments one = m < seriesFrom ? momentsBySum(m, *table) : momentsBySeries(m);
        sum.mean += one.mean;
        sum.variance += one.variance;
    }
    return sum;
}

} // namespace tarnis::analysis
