// The Euclidean norm used by the fitter: MINPACK-1, routine ENORM (More, Garbow, Hillstrom 1980).
#include "tarnis/peak/mpfit_p.h"

#include <cmath>

namespace tarnis::fitter {

namespace {

constexpr double rdwarf = 1.8269129289596699e-153; // squares of smaller ones underflow
constexpr double rgiant = 1.3407807799935083e153; // squares of larger ones overflow

// Sum of squares relative to the square of the largest component so far.
struct ScaledSum {
    double sum = 0.0;
    double max = 0.0;

    void add(double xabs)
    {
        if (xabs > max) {
            const double r = max / xabs;
            sum = 1.0 + sum * (r * r);
            max = xabs;
        } else {
            const double r = xabs / max;
            sum += r * r;
        }
    }
};

} // namespace

double enorm(int n, const double* x)
{
    ScaledSum large;
    ScaledSum small;
    double s2 = 0.0;
    const double agiant = rgiant / n;
    for (int i = 0; i < n; ++i) {
        const double xabs = std::fabs(x[i]);
        if (xabs > rdwarf && xabs < agiant)
            s2 += xabs * xabs;
        else if (xabs > rdwarf || std::isnan(xabs))
            large.add(xabs);
        else if (xabs != 0.0)
            small.add(xabs);
    }
    if (large.sum != 0.0)
        return large.max * std::sqrt(large.sum + (s2 / large.max) / large.max);
    if (s2 == 0.0)
        return small.max * std::sqrt(small.sum);
    if (s2 >= small.max)
        return std::sqrt(s2 * (1.0 + (small.max / s2) * (small.max * small.sum)));
    return std::sqrt(small.max * ((s2 / small.max) + (small.max * small.sum)));
}

} // namespace tarnis::fitter
