// Formulae of single bins, for numbers and for vectors of numbers. They are always inlined: a copy of its own, compiled
// for AVX2, could be the one that the linker keeps for all processors.
#pragma once

#include <cmath>
#include <cstddef>
#include <utility>

namespace tarnis::analysis {

#define TARNIS_INLINE [[gnu::always_inline]] inline

/// The polynomial with these coefficients, the highest power first. In powers of x^2, as two halves that do not wait
/// for each other, and without a loop, which the compiler would keep.
template <typename Real, std::size_t n, std::size_t... odd>
TARNIS_INLINE Real polynomial(const double (&series)[n], Real x, std::index_sequence<odd...>)
{
    const Real square = x * x;
    Real first = Real {} + series[0];
    Real second = Real {} + series[1];
    ((first = first * square + series[2 * odd + 2], second = second * square + series[2 * odd + 3]), ...);
    return n % 2 == 0 ? first * x + second : (first * square + series[n - 1]) + second * x;
}
template <typename Real, std::size_t n> TARNIS_INLINE Real polynomial(const double (&series)[n], Real x)
{
    return polynomial(series, x, std::make_index_sequence<n / 2 - 1>());
}

/// exp(a^2) erfc(a) for a >= 0, to about 1e-15. A polynomial in t = (a - 3.75)/(a + 3.75) for the product with 1 + 2 a,
/// which is between 1 and 1.3 over the whole range: M. M. Shepherd, J. G. Laframboise, Math. Comp. 36 (1981) 249. The
/// coefficients are those of the Chebyshev series, which was computed with 60 digits and ends where terms fall below
/// 1e-16.
template <typename Real> TARNIS_INLINE Real scaledErfcFormula(Real a)
{
    constexpr double series[] = { -2.6231073471334757612e-9, -1.9551358868985616548e-9, 3.1979266716668042918e-8,
        1.8790823223700481258e-8, -2.4857126248016742872e-7, -5.0844653786873021975e-8, 1.7419821586224815923e-6,
        -9.7926257073035220322e-7, -1.1438048033346893551e-5, 2.238756571491181656e-5, 5.1646529741774161256e-5,
        -2.9015535246077655304e-4, 2.9371437804495802994e-4, 1.7556261651970650726e-3, -9.7465796832652622308e-3,
        2.8362277372111138829e-2, -5.8693398576649338403e-2, 9.2304321164281249882e-2, -1.0880393014244461271e-1,
        8.2276738489995062602e-2, 3.5854154854790256379e-3, -1.4024059858554525625e-1, 1.2375126308378275289 };
    const Real t = 1.0 - 7.5 / (a + 3.75);
    return polynomial(series, t) / (1.0 + 2.0 * a);
}

/// Half the Poisson deviance for |s| <= nearRatio, where s = (m - y)/(m + y). There m - y + y ln(y/m) cancels near m =
/// y. With ln(m/y) = 2 artanh(s) = 2 s + 2 s^3/3 + 2 s^5/5 + ... and m - y - 2 y s = (m - y) s nothing cancels, and
/// there is no call of a logarithm.
inline constexpr double nearRatio = 0.17;
template <typename Real> TARNIS_INLINE Real nearHalfDeviance(Real y, Real difference, Real s)
{
    const Real z = s * s;
    const Real high = 2.0 / 13 + z * (2.0 / 15 + z * (2.0 / 17 + z * (2.0 / 19 + z * (2.0 / 21))));
    const Real low = 2.0 / 3 + z * (2.0 / 5 + z * (2.0 / 7 + z * (2.0 / 9 + z * (2.0 / 11))));
    return s * (difference - y * z * (low + z * z * z * (z * z) * high));
}

/// Half the Poisson deviance as below, for m - y = difference where this is known to more digits than m and y.
TARNIS_INLINE double halfDeviance(double y, double m, double difference)
{
    if (y <= 0.0)
        return m;
    const double s = difference / (m + y);
    return __builtin_fabs(s) > nearRatio ? difference - y * std::log(m / y) : nearHalfDeviance(y, difference, s);
}

/// m - y + y ln(y/m) for y >= 0, m > 0: half the Poisson deviance. Accurate to rounding also near m = y.
TARNIS_INLINE double halfDeviance(double y, double m)
{
    return halfDeviance(y, m, m - y);
}

#undef TARNIS_INLINE

} // namespace tarnis::analysis
