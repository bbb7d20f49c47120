#include "mghproblems.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace tarnis::testing {

namespace {

using In = std::span<const double>;
using Out = std::span<double>;

double square(double v)
{
    return v * v;
}

void rosenbrock(In x, Out r)
{
    for (std::size_t i = 0; i + 1 < x.size(); i += 2) {
        r[i] = 10 * (x[i + 1] - x[i] * x[i]);
        r[i + 1] = 1 - x[i];
    }
}

void freudensteinRoth(In x, Out r)
{
    r[0] = -13 + x[0] + ((5 - x[1]) * x[1] - 2) * x[1];
    r[1] = -29 + x[0] + ((x[1] + 1) * x[1] - 14) * x[1];
}

void powellBadlyScaled(In x, Out r)
{
    r[0] = 1e4 * x[0] * x[1] - 1;
    r[1] = std::exp(-x[0]) + std::exp(-x[1]) - 1.0001;
}

void brownBadlyScaled(In x, Out r)
{
    r[0] = x[0] - 1e6;
    r[1] = x[1] - 2e-6;
    r[2] = x[0] * x[1] - 2;
}

void beale(In x, Out r)
{
    constexpr std::array y { 1.5, 2.25, 2.625 };
    for (std::size_t i = 0; i < 3; ++i)
        r[i] = y[i] - x[0] * (1 - std::pow(x[1], double(i + 1)));
}

void jennrichSampson(In x, Out r)
{
    for (std::size_t i = 0; i < r.size(); ++i) {
        const double k = double(i + 1);
        r[i] = 2 + 2 * k - (std::exp(k * x[0]) + std::exp(k * x[1]));
    }
}

void helicalValley(In x, Out r)
{
    double theta = std::atan(x[1] / x[0]) / (2 * std::numbers::pi);
    if (x[0] < 0)
        theta += 0.5;
    r[0] = 10 * (x[2] - 10 * theta);
    r[1] = 10 * (std::hypot(x[0], x[1]) - 1);
    r[2] = x[2];
}

void bard(In x, Out r)
{
    constexpr std::array y { .14, .18, .22, .25, .29, .32, .35, .39, .37, .58, .73, .96, 1.34, 2.10, 4.39 };
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double u = double(i + 1);
        const double v = 16 - u;
        r[i] = y[i] - (x[0] + u / (v * x[1] + std::min(u, v) * x[2]));
    }
}

void gaussian(In x, Out r)
{
    constexpr std::array y { .0009, .0044, .0175, .0540, .1295, .2420, .3521, .3989 };
    for (std::size_t i = 0; i < 15; ++i) {
        const double t = (8 - double(i + 1)) / 2;
        r[i] = x[0] * std::exp(-x[1] * square(t - x[2]) / 2) - y[std::min(i, 14 - i)];
    }
}

void meyer(In x, Out r)
{
    constexpr std::array y { 34780., 28610., 23650., 19630., 16370., 13720., 11540., 9744., 8261., 7030., 6005., 5147.,
        4427., 3820., 3307., 2872. };
    for (std::size_t i = 0; i < y.size(); ++i)
        r[i] = x[0] * std::exp(x[1] / (45 + 5 * double(i + 1) + x[2])) - y[i];
}

void gulf(In x, Out r)
{
    for (std::size_t i = 0; i < r.size(); ++i) {
        const double t = double(i + 1) / 100;
        const double y = 25 + std::pow(-50 * std::log(t), 2.0 / 3.0);
        r[i] = std::exp(-std::pow(std::fabs(y - x[1]), x[2]) / x[0]) - t;
    }
}

void box3d(In x, Out r)
{
    for (std::size_t i = 0; i < r.size(); ++i) {
        const double t = 0.1 * double(i + 1);
        r[i] = std::exp(-t * x[0]) - std::exp(-t * x[1]) - x[2] * (std::exp(-t) - std::exp(-10 * t));
    }
}

void powellSingular(In x, Out r)
{
    for (std::size_t i = 0; i + 3 < x.size(); i += 4) {
        r[i] = x[i] + 10 * x[i + 1];
        r[i + 1] = std::sqrt(5.0) * (x[i + 2] - x[i + 3]);
        r[i + 2] = square(x[i + 1] - 2 * x[i + 2]);
        r[i + 3] = std::sqrt(10.0) * square(x[i] - x[i + 3]);
    }
}

void wood(In x, Out r)
{
    r[0] = 10 * (x[1] - x[0] * x[0]);
    r[1] = 1 - x[0];
    r[2] = std::sqrt(90.0) * (x[3] - x[2] * x[2]);
    r[3] = 1 - x[2];
    r[4] = std::sqrt(10.0) * (x[1] + x[3] - 2);
    r[5] = (x[1] - x[3]) / std::sqrt(10.0);
}

void kowalikOsborne(In x, Out r)
{
    constexpr std::array y { .1957, .1947, .1735, .1600, .0844, .0627, .0456, .0342, .0323, .0235, .0246 };
    constexpr std::array u { 4., 2., 1., .5, .25, .167, .125, .1, .0833, .0714, .0625 };
    for (std::size_t i = 0; i < y.size(); ++i)
        r[i] = y[i] - x[0] * (u[i] * u[i] + u[i] * x[1]) / (u[i] * u[i] + u[i] * x[2] + x[3]);
}

void brownDennis(In x, Out r)
{
    for (std::size_t i = 0; i < r.size(); ++i) {
        const double t = double(i + 1) / 5;
        r[i] = square(x[0] + t * x[1] - std::exp(t)) + square(x[2] + x[3] * std::sin(t) - std::cos(t));
    }
}

void osborne1(In x, Out r)
{
    constexpr std::array y { .844, .908, .932, .936, .925, .908, .881, .850, .818, .784, .751, .718, .685, .658, .628,
        .603, .580, .558, .538, .522, .506, .490, .478, .467, .457, .448, .438, .431, .424, .420, .414, .411, .406 };
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double t = 10 * double(i);
        r[i] = y[i] - (x[0] + x[1] * std::exp(-t * x[3]) + x[2] * std::exp(-t * x[4]));
    }
}

void biggsExp6(In x, Out r)
{
    for (std::size_t i = 0; i < r.size(); ++i) {
        const double t = 0.1 * double(i + 1);
        const double y = std::exp(-t) - 5 * std::exp(-10 * t) + 3 * std::exp(-4 * t);
        r[i] = x[2] * std::exp(-t * x[0]) - x[3] * std::exp(-t * x[1]) + x[5] * std::exp(-t * x[4]) - y;
    }
}

void osborne2(In x, Out r)
{
    constexpr std::array y { 1.366, 1.191, 1.112, 1.013, .991, .885, .831, .847, .786, .725, .746, .679, .608, .655,
        .616, .606, .602, .626, .651, .724, .649, .649, .694, .644, .624, .661, .612, .558, .533, .495, .500, .423,
        .395, .375, .372, .391, .396, .405, .428, .429, .523, .562, .607, .653, .672, .708, .633, .668, .645, .632,
        .591, .559, .597, .625, .739, .710, .729, .720, .636, .581, .428, .292, .162, .098, .054 };
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double t = double(i) / 10;
        r[i] = y[i]
            - (x[0] * std::exp(-t * x[4]) + x[1] * std::exp(-square(t - x[8]) * x[5])
                + x[2] * std::exp(-square(t - x[9]) * x[6]) + x[3] * std::exp(-square(t - x[10]) * x[7]));
    }
}

void watson(In x, Out r)
{
    for (std::size_t i = 0; i < 29; ++i) {
        const double t = double(i + 1) / 29;
        double slope = 0;
        double value = 0;
        double power = 1;
        for (std::size_t j = 0; j < x.size(); ++j) {
            value += x[j] * power;
            if (j + 1 < x.size())
                slope += double(j + 1) * x[j + 1] * power;
            power *= t;
        }
        r[i] = slope - value * value - 1;
    }
    r[29] = x[0];
    r[30] = x[1] - x[0] * x[0] - 1;
}

void penalty1(In x, Out r)
{
    double sum = -0.25;
    for (std::size_t i = 0; i < x.size(); ++i) {
        r[i] = std::sqrt(1e-5) * (x[i] - 1);
        sum += x[i] * x[i];
    }
    r[x.size()] = sum;
}

void penalty2(In x, Out r)
{
    const std::size_t n = x.size();
    const double root = std::sqrt(1e-5);
    r[0] = x[0] - 0.2;
    double sum = double(n) * x[0] * x[0] - 1;
    for (std::size_t i = 1; i < n; ++i) {
        const double y = std::exp(double(i + 1) / 10) + std::exp(double(i) / 10);
        r[i] = root * (std::exp(x[i] / 10) + std::exp(x[i - 1] / 10) - y);
        r[n + i - 1] = root * (std::exp(x[i] / 10) - std::exp(-0.1));
        sum += double(n - i) * x[i] * x[i];
    }
    r[2 * n - 1] = sum;
}

void variablyDimensioned(In x, Out r)
{
    const std::size_t n = x.size();
    double sum = 0;
    for (std::size_t i = 0; i < n; ++i) {
        r[i] = x[i] - 1;
        sum += double(i + 1) * (x[i] - 1);
    }
    r[n] = sum;
    r[n + 1] = sum * sum;
}

void trigonometric(In x, Out r)
{
    const double n = double(x.size());
    double cosines = 0;
    for (const double xi : x)
        cosines += std::cos(xi);
    for (std::size_t i = 0; i < x.size(); ++i)
        r[i] = n - cosines + double(i + 1) * (1 - std::cos(x[i])) - std::sin(x[i]);
}

void brownAlmostLinear(In x, Out r)
{
    const double n = double(x.size());
    const double sum = std::accumulate(x.begin(), x.end(), 0.0);
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
        r[i] = x[i] + sum - (n + 1);
    r[x.size() - 1] = std::accumulate(x.begin(), x.end(), 1.0, std::multiplies<> {}) - 1;
}

void discreteBoundaryValue(In x, Out r)
{
    const std::size_t n = x.size();
    const double h = 1 / double(n + 1);
    for (std::size_t i = 0; i < n; ++i) {
        const double before = i > 0 ? x[i - 1] : 0;
        const double after = i + 1 < n ? x[i + 1] : 0;
        r[i] = 2 * x[i] - before - after + h * h * std::pow(x[i] + h * double(i + 1) + 1, 3) / 2;
    }
}

void discreteIntegral(In x, Out r)
{
    const std::size_t n = x.size();
    const double h = 1 / double(n + 1);
    const auto cube = [&](std::size_t j) { return std::pow(x[j] + double(j + 1) * h + 1, 3); };
    for (std::size_t i = 0; i < n; ++i) {
        const double t = double(i + 1) * h;
        double low = 0;
        double high = 0;
        for (std::size_t j = 0; j <= i; ++j)
            low += double(j + 1) * h * cube(j);
        for (std::size_t j = i + 1; j < n; ++j)
            high += (1 - double(j + 1) * h) * cube(j);
        r[i] = x[i] + h * ((1 - t) * low + t * high) / 2;
    }
}

void broydenTridiagonal(In x, Out r)
{
    const std::size_t n = x.size();
    for (std::size_t i = 0; i < n; ++i) {
        const double before = i > 0 ? x[i - 1] : 0;
        const double after = i + 1 < n ? x[i + 1] : 0;
        r[i] = (3 - 2 * x[i]) * x[i] - before - 2 * after + 1;
    }
}

void broydenBanded(In x, Out r)
{
    const std::size_t n = x.size();
    for (std::size_t i = 0; i < n; ++i) {
        double band = 0;
        for (std::size_t j = i > 5 ? i - 5 : 0; j <= std::min(n - 1, i + 1); ++j) {
            if (j != i)
                band += x[j] * (1 + x[j]);
        }
        r[i] = x[i] * (2 + 5 * x[i] * x[i]) + 1 - band;
    }
}

void linearFullRank(In x, Out r)
{
    const double sum = std::accumulate(x.begin(), x.end(), 0.0);
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = (i < x.size() ? x[i] : 0) - 2 * sum / double(r.size()) - 1;
}

void linearRankOne(In x, Out r)
{
    double sum = 0;
    for (std::size_t j = 0; j < x.size(); ++j)
        sum += double(j + 1) * x[j];
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = double(i + 1) * sum - 1;
}

void linearRankOneZeros(In x, Out r)
{
    double sum = 0;
    for (std::size_t j = 1; j + 1 < x.size(); ++j)
        sum += double(j + 1) * x[j];
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = (i == 0 || i + 1 == r.size() ? 0 : double(i) * sum) - 1;
}

void chebyquad(In x, Out r)
{
    std::fill(r.begin(), r.end(), 0.0);
    for (const double xj : x) {
        const double z = 2 * xj - 1;
        double before = 1;
        double t = z;
        for (double& ri : r) {
            ri += t;
            const double next = 2 * z * t - before;
            before = t;
            t = next;
        }
    }
    for (std::size_t i = 0; i < r.size(); ++i) {
        r[i] /= double(x.size());
        if (i % 2 == 1)
            r[i] += 1 / (square(double(i + 1)) - 1);
    }
}

std::vector<double> sequence(std::size_t n, double (*element)(double j, double n))
{
    std::vector<double> values(n);
    for (std::size_t j = 0; j < n; ++j)
        values[j] = element(double(j + 1), double(n));
    return values;
}

std::vector<double> boundaryStart(std::size_t n)
{
    return sequence(n, [](double j, double size) { return j / (size + 1) * (j / (size + 1) - 1); });
}

std::vector<double> equallySpaced(std::size_t n)
{
    return sequence(n, [](double j, double size) { return j / (size + 1); });
}

std::vector<double> alternating(std::size_t n)
{
    return sequence(n, [](double j, double) { return int(j) % 2 == 1 ? -1.2 : 1.0; });
}

std::vector<double> repeated(std::vector<double> four)
{
    four.insert(four.end(), four.begin(), four.begin() + 4);
    return four;
}

} // namespace

std::vector<MghProblem> mghProblems()
{
    const auto ones = [](std::size_t n) { return std::vector<double>(n, 1.0); };
    return {
        { { "1 Rosenbrock", 2, { -1.2, 1 }, rosenbrock }, { 0 } },
        { { "2 Freudenstein and Roth", 2, { 0.5, -2 }, freudensteinRoth }, { 0, 48.9842 } },
        { { "3 Powell badly scaled", 2, { 0, 1 }, powellBadlyScaled }, { 0 } },
        { { "4 Brown badly scaled", 3, { 1, 1 }, brownBadlyScaled }, { 0 } },
        { { "5 Beale", 3, { 1, 1 }, beale }, { 0 } },
        { { "6 Jennrich and Sampson", 10, { 0.3, 0.4 }, jennrichSampson }, { 124.362 } },
        { { "7 Helical valley", 3, { -1, 0, 0 }, helicalValley }, { 0 } },
        { { "8 Bard", 15, { 1, 1, 1 }, bard }, { 8.21487e-3, 17.4286 } },
        { { "9 Gaussian", 15, { 0.4, 1, 0 }, gaussian }, { 1.12793e-8 } },
        { { "10 Meyer", 16, { 0.02, 4000, 250 }, meyer }, { 87.9458 } },
        { { "11 Gulf research and development", 99, { 5, 2.5, 0.15 }, gulf }, { 0 } },
        { { "12 Box three-dimensional", 10, { 0, 10, 20 }, box3d }, { 0 } },
        { { "13 Powell singular", 4, { 3, -1, 0, 1 }, powellSingular }, { 0 } },
        { { "14 Wood", 6, { -3, -1, -3, -1 }, wood }, { 0 } },
        { { "15 Kowalik and Osborne", 11, { .25, .39, .415, .39 }, kowalikOsborne }, { 3.07505e-4, 1.02734e-3 } },
        { { "16 Brown and Dennis", 20, { 25, 5, -5, -1 }, brownDennis }, { 85822.2 } },
        { { "17 Osborne 1", 33, { .5, 1.5, -1, .01, .02 }, osborne1 }, { 5.46489e-5 } },
        { { "18 Biggs EXP6", 13, { 1, 2, 1, 1, 1, 1 }, biggsExp6 }, { 0, 5.65565e-3 } },
        { { "19 Osborne 2", 65, { 1.3, .65, .65, .7, .6, 3, 5, 7, 2, 4.5, 5.5 }, osborne2 }, { 4.01377e-2 } },
        { { "20 Watson, 6 parameters", 31, std::vector<double>(6), watson }, { 2.28767e-3 }, 1e-6 },
        { { "20 Watson, 9 parameters", 31, std::vector<double>(9), watson }, { 1.39976e-6 }, 1e-6 },
        { { "20 Watson, 12 parameters", 31, std::vector<double>(12), watson }, { 4.72238e-10 }, 1e-6 },
        { { "21 extended Rosenbrock", 10, alternating(10), rosenbrock }, { 0 } },
        { { "22 extended Powell singular", 8, repeated({ 3, -1, 0, 1 }), powellSingular }, { 0 } },
        { { "23 penalty I, 4 parameters", 5, sequence(4, [](double j, double) { return j; }), penalty1 },
            { 2.24997e-5 } },
        { { "23 penalty I, 10 parameters", 11, sequence(10, [](double j, double) { return j; }), penalty1 },
            { 7.08765e-5 } },
        { { "24 penalty II, 4 parameters", 8, std::vector<double>(4, 0.5), penalty2 }, { 9.37629e-6 } },
        { { "24 penalty II, 10 parameters", 20, std::vector<double>(10, 0.5), penalty2 }, { 2.93660e-4 } },
        { { "25 variably dimensioned", 12, sequence(10, [](double j, double n) { return 1 - j / n; }),
              variablyDimensioned },
            { 0 } },
        { { "26 trigonometric", 10, std::vector<double>(10, 0.1), trigonometric }, { 0, 2.79506e-5 } },
        { { "27 Brown almost-linear", 10, std::vector<double>(10, 0.5), brownAlmostLinear }, { 0, 1 } },
        { { "28 discrete boundary value", 10, boundaryStart(10), discreteBoundaryValue }, { 0 } },
        { { "29 discrete integral equation", 10, boundaryStart(10), discreteIntegral }, { 0 } },
        { { "30 Broyden tridiagonal", 10, std::vector<double>(10, -1.0), broydenTridiagonal }, { 0 } },
        { { "31 Broyden banded", 10, std::vector<double>(10, -1.0), broydenBanded }, { 0 } },
        { { "32 linear, full rank", 20, ones(10), linearFullRank }, { 10 } },
        { { "33 linear, rank 1", 20, ones(10), linearRankOne }, { 20.0 * 19 / (2 * 41) } },
        { { "34 linear, rank 1 with zero columns and rows", 20, ones(10), linearRankOneZeros },
            { (400.0 + 60 - 6) / (2 * 37) } },
        { { "35 Chebyquad, 8 parameters", 8, equallySpaced(8), chebyquad }, { 3.51687e-3 } },
        { { "35 Chebyquad, 9 parameters", 9, equallySpaced(9), chebyquad }, { 0 } },
        { { "35 Chebyquad, 10 parameters", 10, equallySpaced(10), chebyquad }, { 6.50395e-3, 4.77271e-3 } },
    };
}

} // namespace tarnis::testing
