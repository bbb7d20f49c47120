// The Faddeeva function by modified trapezoidal rules: M. Al Azah, S. N. Chandler-Wilde, "Computation of the complex
// error function using modified trapezoidal rules", SIAM J. Numer. Anal. 59 (2021) 2346. For large |u|, the asymptotic
// series (Abramowitz, Stegun 7.1.23).
#include "tarnis/analysis/special_p.h"

#include <array>
#include <cmath>

namespace tarnis::analysis {

namespace {

using Complex = std::complex<double>;

constexpr int points = 11;
const double step = std::sqrt(pi / (points + 1));
constexpr double farOut = 30.0;

// exp(-t^2) and t^2 at the nodes of the midpoint rule and of the trapezoidal rule.
struct Nodes {
    std::array<double, points + 1> square {};
    std::array<double, points + 1> weight {};
    explicit Nodes(double first)
    {
        for (std::size_t k = 0; k <= points; ++k) {
            const double t = (first + static_cast<double>(k)) * step;
            square[k] = t * t;
            weight[k] = std::exp(-t * t);
        }
    }
};
const Nodes midpoints(0.5);
const Nodes multiples(1.0);

// Sum of weight / (u^2 - square), term by term in real numbers: complex division checks for infinities, which cannot
// occur here, and costs three times as much.
Complex nodeSum(const Nodes& nodes, Complex square)
{
    double real = 0.0;
    double imaginary = 0.0;
    const double b = square.imag();
    for (std::size_t k = 0; k <= points; ++k) {
        const double a = square.real() - nodes.square[k];
        const double scale = nodes.weight[k] / (a * a + b * b);
        real += scale * a;
        imaginary -= scale * b;
    }
    return { real, imaginary };
}

// w = i/sqrt(pi) sum of c_n u^-(2n+1), c_n = (2n-1)!!/2^n, and its derivatives term by term: from w itself they would
// lose as many digits as u^2 has.
FaddeevaValues farSeries(Complex u)
{
    const Complex inverse = 1.0 / u;
    const Complex square = inverse * inverse;
    Complex power = inverse;
    double c = 1.0;
    FaddeevaValues sum;
    for (int n = 0; n < 8; ++n) {
        sum.value += c * power;
        sum.slope -= c * (2.0 * n + 1.0) * power * inverse;
        sum.curvature += c * (2.0 * n + 1.0) * (2.0 * n + 2.0) * power * square;
        power *= square;
        c *= 0.5 * (2.0 * n + 1.0);
    }
    const Complex factor(0.0, 1.0 / std::sqrt(pi));
    return { factor * sum.value, factor * sum.slope, factor * sum.curvature };
}

// For Re u >= 0, Im u >= 0.
Complex firstQuadrant(Complex u)
{
    const Complex factor = Complex(0.0, 2.0 * step / pi) * u;
    const Complex square = u * u;
    if (u.imag() >= std::max(u.real(), pi / step))
        return factor * nodeSum(midpoints, square);
    const double position = u.real() / step;
    const double fraction = position - std::floor(position);
    const Complex gauss = std::exp(-square);
    const Complex turn = std::exp(Complex(2.0 * pi * u.imag() / step, -2.0 * pi * u.real() / step));
    // Uses the rule whose nodes are further away from u: next to a node, the correction and the node's term cancel.
    if (u.imag() < u.real() && fraction >= 0.25 && fraction <= 0.75)
        return 2.0 * gauss / (1.0 - turn) + Complex(0.0, step / pi) / u + factor * nodeSum(multiples, square);
    return 2.0 * gauss / (1.0 + turn) + factor * nodeSum(midpoints, square);
}

FaddeevaValues valuesInFirstQuadrant(Complex u)
{
    if (std::norm(u) > farOut * farOut)
        return farSeries(u);
    FaddeevaValues result;
    result.value = firstQuadrant(u);
    result.slope = -2.0 * u * result.value + Complex(0.0, 2.0 / std::sqrt(pi));
    result.curvature = -2.0 * (result.value + u * result.slope);
    return result;
}

} // namespace

FaddeevaValues faddeeva(Complex u)
{
    if (u.real() >= 0.0)
        return valuesInFirstQuadrant(u);
    // w(-conj u) = conj w(u): odd derivatives change their sign.
    const FaddeevaValues mirrored = valuesInFirstQuadrant(-std::conj(u));
    return { std::conj(mirrored.value), -std::conj(mirrored.slope), std::conj(mirrored.curvature) };
}

} // namespace tarnis::analysis
