#include "tarnis/analysis/countstatistics.h"

#include "tarnis/analysis/special_p.h"

#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
// The one-sided 5 % quantile of the normal distribution.
constexpr double fivePercent = 1.64485362695147271;

bool isCount(double value)
{
    return value >= 0.0 && std::isfinite(value);
}

} // namespace

CountInterval poissonInterval(double counts, double coverage)
{
    if (!isCount(counts) || !(coverage > 0.0 && coverage < 1.0))
        return { none, none };
    const double tail = 0.5 * (1.0 - coverage);
    const double lower = counts > 0.0 ? analysis::gammaPInverse(counts, tail) : 0.0;
    return { lower, analysis::gammaPInverse(counts + 1.0, 1.0 - tail) };
}

double poissonUpperLimit(double counts, double confidence)
{
    if (!isCount(counts) || !(confidence > 0.0 && confidence < 1.0))
        return none;
    return analysis::gammaPInverse(counts + 1.0, confidence);
}

double excessProbability(double inside, double outside, double probabilityInside)
{
    if (!isCount(inside) || !isCount(outside) || !(probabilityInside >= 0.0 && probabilityInside <= 1.0))
        return none;
    return analysis::binomialUpperTail(inside, inside + outside, probabilityInside);
}

double liMaSignificance(double inside, double outside, double alpha)
{
    if (!isCount(inside) || !isCount(outside) || !(alpha > 0.0) || std::isinf(alpha))
        return none;
    const double total = inside + outside;
    if (total == 0.0)
        return 0.0;
    // Equation 17 as half the deviance from the means without a source: the logarithms of the equation cancel for a
    // small excess of many counts.
    const double excess = (inside - alpha * outside) / (1.0 + alpha);
    const double significance = std::sqrt(2.0
        * (analysis::halfDeviance(inside, inside - excess, -excess)
            + analysis::halfDeviance(outside, outside + excess, excess)));
    return inside < alpha * outside ? -significance : significance;
}

CurrieLevels currieLevels(double background, double backgroundVariance)
{
    const double critical = fivePercent * std::sqrt(std::fmax(0.0, background + backgroundVariance));
    return { critical, fivePercent * fivePercent + 2.0 * critical };
}

} // namespace tarnis
