// The loops of binkernels_p.h. Two sources include this file: one is compiled for AVX2. The compiler vectorises few of
// these loops by itself, so they use its vector types. No standard function may be used that the compiler could emit
// outside of its caller: the linker keeps one copy, which could be the one for AVX2.
#pragma once

#include "tarnis/analysis/binformulae_p.h"
#include "tarnis/analysis/binkernels_p.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace tarnis::analysis {

namespace {

#ifdef __AVX2__
constexpr std::size_t width = 4;
#else
constexpr std::size_t width = 2;
#endif
using Reals = double __attribute__((vector_size(width * sizeof(double))));
using Bits = std::int64_t __attribute__((vector_size(width * sizeof(double))));
using Words = std::uint64_t __attribute__((vector_size(width * sizeof(double))));

/// Sums have four parts for every width, so all processors round alike.
constexpr std::size_t blockSize = 4;
constexpr std::size_t parts = blockSize / width;

inline Reals load(const double* from)
{
    Reals values;
    __builtin_memcpy(&values, from, sizeof(values));
    return values;
}

// The last block of an array can be shorter. It is completed with zeros.
inline Reals load(const double* from, std::size_t size)
{
    if (size == width)
        return load(from);
    Reals values {};
    for (std::size_t k = 0; k < size; ++k)
        values[k] = from[k];
    return values;
}

inline void store(double* to, Reals values, std::size_t size)
{
    if (size == width) {
        __builtin_memcpy(to, &values, sizeof(values));
        return;
    }
    for (std::size_t k = 0; k < size; ++k)
        to[k] = values[k];
}

inline bool isTrueForAll(Bits mask)
{
#if defined(__AVX2__)
    return _mm256_movemask_pd(reinterpret_cast<Reals>(mask)) == 15;
#elif defined(__SSE2__)
    return _mm_movemask_pd(reinterpret_cast<Reals>(mask)) == 3;
#else
    return mask[0] != 0 && mask[1] != 0;
#endif
}

inline double sumOfParts(const Reals* sums)
{
    double lanes[blockSize];
    __builtin_memcpy(lanes, sums, sizeof(lanes));
    return (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
}

// Calls process(i, size) for each block of up to `width` numbers.
template <typename Process> inline void inBlocks(std::size_t n, Process process)
{
    std::size_t i = 0;
    for (; i + width <= n; i += width)
        process(i, width);
    if (i < n)
        process(i, n - i);
}

// exp(x) = 2^k exp(r) with |r| <= ln(2)/2 and the series to r^13. Adding `shift` rounds x/ln(2) to the integer k, which
// is then in the lowest bits.
inline Reals normalExponential(Reals x)
{
    constexpr double shift = 6755399441055744.0; // 1.5 * 2^52
    constexpr double perLog = 1.44269504088896340736;
    constexpr double logHigh = 6.93147180369123816490e-1; // its last 20 bits are 0, so k * logHigh is exact
    constexpr double logLow = 1.90821492927058770002e-10;
    constexpr double series[] = { 1.0 / 6227020800, 1.0 / 479001600, 1.0 / 39916800, 1.0 / 3628800, 1.0 / 362880,
        1.0 / 40320, 1.0 / 5040, 1.0 / 720, 1.0 / 120, 1.0 / 24, 1.0 / 6, 1.0 / 2 };
    const Reals rounded = x * perLog + shift;
    const Reals k = rounded - shift;
    const Reals r = (x - k * logHigh) - k * logLow;
    const Reals mantissa = 1.0 + (r + r * r * polynomial(series, r));
    // Unsigned: outside of its limits the sum overflows, and is not used.
    const Words power = reinterpret_cast<Words>(rounded) << 52;
    return reinterpret_cast<Reals>(reinterpret_cast<Words>(mantissa) + power);
}

inline Reals exponentialOf(Reals x)
{
    constexpr double least = -707.0; // the result has all digits
    constexpr double largest = 700.0;
    constexpr double zero = -750.0; // the result is 0
    Reals values = normalExponential(x);
    const Bits isNormal = (x > least) & (x < largest);
    if (isTrueForAll(isNormal))
        return values;
    for (std::size_t k = 0; k < width; ++k) {
        if (!isNormal[k])
            values[k] = x[k] < zero ? 0.0 : std::exp(x[k]);
    }
    return values;
}

void exponentialsLoop(double* x, std::size_t n)
{
    inBlocks(n, [x](std::size_t i, std::size_t size) { store(x + i, exponentialOf(load(x + i, size)), size); });
}

// The smaller tail is exp(-z^2/2) scaledErfc(|z|/sqrt 2) / 2.
void gaussiansLoop(const double* x, std::size_t n, double centre, double sigma, double* densities, double* tails)
{
    constexpr double perRootOfTwo = 0.70710678118654752440;
    const double inverse = 1.0 / sigma;
    inBlocks(n, [=](std::size_t i, std::size_t size) {
        const Reals z = (load(x + i, size) - centre) * inverse;
        const Reals density = exponentialOf(-0.5 * z * z);
        const Bits sign = reinterpret_cast<Bits>(z) & INT64_MIN;
        const Reals a = reinterpret_cast<Reals>(reinterpret_cast<Bits>(z) ^ sign) * perRootOfTwo;
        const Reals tail = -0.5 * density * scaledErfcFormula(a);
        store(densities + i, density, size);
        store(tails + i, reinterpret_cast<Reals>(reinterpret_cast<Bits>(tail) ^ sign), size);
    });
}

// Up to this many columns at once. Their sums do not wait for each other, and fit into the registers.
constexpr std::size_t maxColumns = 7;

template <std::size_t count>
void dotsOf(const double* weights, const double* a, const double* const* columns, std::size_t n, double* sums)
{
    Reals blocks[count][parts] = {};
    std::size_t i = 0;
    for (; i + blockSize <= n; i += blockSize) {
        for (std::size_t part = 0; part < parts; ++part) {
            const std::size_t at = i + part * width;
            const Reals values = load(weights + at) * load(a + at);
            for (std::size_t k = 0; k < count; ++k)
                blocks[k][part] += values * load(columns[k] + at);
        }
    }
    for (std::size_t k = 0; k < count; ++k) {
        double rest = 0.0;
        for (std::size_t j = i; j < n; ++j)
            rest += weights[j] * a[j] * columns[k][j];
        sums[k] = sumOfParts(blocks[k]) + rest;
    }
}

void weightedDotsLoop(const double* weights, const double* a, const double* const* columns, std::size_t count,
    std::size_t n, double* sums)
{
    using Dots = void (*)(const double*, const double*, const double* const*, std::size_t, double*);
    constexpr Dots loops[maxColumns] = { dotsOf<1>, dotsOf<2>, dotsOf<3>, dotsOf<4>, dotsOf<5>, dotsOf<6>, dotsOf<7> };
    for (; count > maxColumns; count -= maxColumns, columns += maxColumns, sums += maxColumns)
        loops[maxColumns - 1](weights, a, columns, n, sums);
    if (count > 0)
        loops[count - 1](weights, a, columns, n, sums);
}

double farHalfDeviance(double y, double m)
{
    if (m > 0.0 || (m == 0.0 && y == 0.0))
        return halfDeviance(y, m);
    return __builtin_nan("");
}

// The series holds for most bins. Of an m that is not positive, and of an empty bin, the ratio is at least 1.
double sumOfDeviancesLoop(const double* y, const double* m, std::size_t n)
{
    Reals near[parts] = {};
    double far = 0.0;
    std::size_t i = 0;
    for (; i + blockSize <= n; i += blockSize) {
        for (std::size_t part = 0; part < parts; ++part) {
            const double* const contents = y + i + part * width;
            const double* const model = m + i + part * width;
            const Reals difference = load(model) - load(contents);
            const Reals ratio = difference / (load(model) + load(contents));
            const Bits isNear = ratio * ratio <= nearRatio * nearRatio;
            const Reals term = nearHalfDeviance(load(contents), difference, ratio);
            near[part] += reinterpret_cast<Reals>(reinterpret_cast<Bits>(term) & isNear);
            if (isTrueForAll(isNear))
                continue;
            for (std::size_t k = 0; k < width; ++k)
                far += isNear[k] ? 0.0 : farHalfDeviance(contents[k], model[k]);
        }
    }
    for (; i < n; ++i)
        far += farHalfDeviance(y[i], m[i]);
    return 2.0 * (sumOfParts(near) + far);
}

constexpr BinKernels kernels { exponentialsLoop, gaussiansLoop, weightedDotsLoop, sumOfDeviancesLoop };

} // namespace

} // namespace tarnis::analysis
