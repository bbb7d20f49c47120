#include "tarnis/plots/math/sampleextremes_p.h"

#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarnis {

namespace {

template <bool logScale> void widen(SampleExtremes& extremes, double sample)
{
    if constexpr (logScale)
        sample = sample <= 0.0 ? 1.0 : sample;
    extremes.finite = extremes.finite && std::isfinite(sample);
    extremes.low = sample < extremes.low ? sample : extremes.low;
    extremes.high = sample > extremes.high ? sample : extremes.high;
}

#if defined(__SSE2__)

double lowerHalf(__m128d pair)
{
    return _mm_cvtsd_f64(pair);
}

double upperHalf(__m128d pair)
{
    return _mm_cvtsd_f64(_mm_unpackhi_pd(pair, pair));
}

template <bool logScale> __m128d loadPair(const double* samples)
{
    const __m128d pair = _mm_loadu_pd(samples);
    if constexpr (!logScale)
        return pair;
    // NaN does not compare and is kept.
    const __m128d floored = _mm_cmple_pd(pair, _mm_setzero_pd());
    return _mm_or_pd(_mm_andnot_pd(floored, pair), _mm_and_pd(floored, _mm_set1_pd(1.0)));
}

// Four samples per step in two independent chains. Minima would drop NaN, so it is tested separately.
template <bool logScale> SampleExtremes extremes(const double* samples, qsizetype count)
{
    const double start = logScale && samples[0] <= 0.0 ? 1.0 : samples[0];
    __m128d low1 = _mm_set1_pd(start);
    __m128d low2 = low1;
    __m128d high1 = low1;
    __m128d high2 = low1;
    __m128d unordered = _mm_cmpunord_pd(low1, low1);
    qsizetype i = 0;
    for (; i + 4 <= count; i += 4) {
        const __m128d first = loadPair<logScale>(samples + i);
        const __m128d second = loadPair<logScale>(samples + i + 2);
        low1 = _mm_min_pd(low1, first);
        high1 = _mm_max_pd(high1, first);
        low2 = _mm_min_pd(low2, second);
        high2 = _mm_max_pd(high2, second);
        unordered = _mm_or_pd(unordered, _mm_cmpunord_pd(first, second));
    }
    const __m128d low = _mm_min_pd(low1, low2);
    const __m128d high = _mm_max_pd(high1, high2);
    SampleExtremes result { start, start, _mm_movemask_pd(unordered) == 0 };
    for (const double value : { lowerHalf(low), upperHalf(low), lowerHalf(high), upperHalf(high) })
        widen<false>(result, value);
    for (; i < count; ++i)
        widen<logScale>(result, samples[i]);
    return result;
}

#else

template <bool logScale> SampleExtremes extremes(const double* samples, qsizetype count)
{
    const double start = logScale && samples[0] <= 0.0 ? 1.0 : samples[0];
    SampleExtremes result { start, start, true };
    for (qsizetype i = 0; i < count; ++i)
        widen<logScale>(result, samples[i]);
    return result;
}

#endif

} // namespace

SampleExtremes extremesOf(const double* samples, qsizetype count)
{
    return extremes<false>(samples, count);
}

SampleExtremes logExtremesOf(const double* samples, qsizetype count)
{
    return extremes<true>(samples, count);
}

bool areIntegerCounts(const double* samples, qsizetype count)
{
    constexpr double whole = 4503599627370496.0; // 2^52: adding it drops the fraction of what is smaller
    bool all = true;
    qsizetype i = 0;
#if defined(__SSE2__)
    const __m128d wholes = _mm_set1_pd(whole);
    __m128d good = _mm_cmpeq_pd(wholes, wholes);
    for (; i + 2 <= count; i += 2) {
        const __m128d pair = _mm_loadu_pd(samples + i);
        const __m128d rounded = _mm_sub_pd(_mm_add_pd(pair, wholes), wholes);
        const __m128d isWhole = _mm_or_pd(_mm_cmpeq_pd(rounded, pair), _mm_cmpge_pd(pair, wholes));
        good = _mm_and_pd(good, _mm_and_pd(isWhole, _mm_cmpge_pd(pair, _mm_setzero_pd())));
    }
    all = _mm_movemask_pd(good) == 3;
#endif
    for (; i < count; ++i)
        all = all && samples[i] >= 0.0 && (samples[i] >= whole || (samples[i] + whole) - whole == samples[i]);
    return all;
}

double lowestAbove(double bound, const double* samples, qsizetype count, double start)
{
    qsizetype i = 0;
#if defined(__SSE2__)
    const __m128d bounds = _mm_set1_pd(bound);
    const __m128d none = _mm_set1_pd(start);
    __m128d low1 = none;
    __m128d low2 = none;
    const auto counted = [bounds, none](__m128d pair) {
        const __m128d above = _mm_cmpgt_pd(pair, bounds);
        return _mm_or_pd(_mm_and_pd(above, pair), _mm_andnot_pd(above, none));
    };
    for (; i + 4 <= count; i += 4) {
        low1 = _mm_min_pd(low1, counted(_mm_loadu_pd(samples + i)));
        low2 = _mm_min_pd(low2, counted(_mm_loadu_pd(samples + i + 2)));
    }
    const __m128d low = _mm_min_pd(low1, low2);
    start = lowerHalf(low) < upperHalf(low) ? lowerHalf(low) : upperHalf(low);
#endif
    for (; i < count; ++i) {
        if (samples[i] > bound && samples[i] < start)
            start = samples[i];
    }
    return start;
}

} // namespace tarnis
