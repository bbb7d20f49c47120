#include "tarnis/plots/raster/bincolouring_avx2_p.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#ifdef TARNIS_AVX2
#include <immintrin.h>
#endif

namespace tarnis {

#ifdef TARNIS_AVX2

namespace {

constexpr int lanes = 4;

/// For each lane, the column entry of its range. `pick` contains both halves of each entry's index.
TARNIS_AVX2 inline __m256d entryOf(const ScaleRanges::Column& column, __m256i pick)
{
    return _mm256_castps_pd(_mm256_permutevar8x32_ps(_mm256_castpd_ps(_mm256_loadu_pd(column.data())), pick));
}

/// Converts masks of 64 bits per lane to 32 bits per lane.
TARNIS_AVX2 inline __m128i narrowed(__m256d mask)
{
    const __m256i evenHalves = _mm256_setr_epi32(0, 2, 4, 6, 0, 2, 4, 6);
    return _mm256_castsi256_si128(_mm256_permutevar8x32_epi32(_mm256_castpd_si256(mask), evenHalves));
}

/// Four values to pixels, by the steps and in the order of ColourScale::pixel().
TARNIS_AVX2 inline __m128i blendLanes(const ScaleRanges& ranges, __m256d value)
{
    const __m256d low = _mm256_set1_pd(ranges.low);
    const __m256d high = _mm256_set1_pd(ranges.high);
    const __m256d isBelow = _mm256_cmp_pd(value, low, _CMP_LT_OQ);
    const __m256d isAbove = _mm256_cmp_pd(value, high, _CMP_GT_OQ);
    const __m256d inside = _mm256_blendv_pd(_mm256_blendv_pd(value, high, isAbove), low, isBelow);

    __m256i range = _mm256_setzero_si256();
    for (std::size_t i = 1; i < ranges.base.size(); ++i) {
        const __m256d reaches = _mm256_cmp_pd(inside, _mm256_set1_pd(ranges.base[i]), _CMP_GE_OQ);
        range = _mm256_sub_epi64(range, _mm256_castpd_si256(reaches));
    }
    const __m256i lowerHalf = _mm256_slli_epi64(range, 1);
    const __m256i pick =
        _mm256_or_si256(_mm256_or_si256(lowerHalf, _mm256_slli_epi64(lowerHalf, 32)), _mm256_set1_epi64x(1LL << 32));

    const __m256d isNumber = _mm256_cmp_pd(inside, inside, _CMP_ORD_Q);
    const __m256d ratio = _mm256_div_pd(_mm256_sub_pd(inside, entryOf(ranges.base, pick)), entryOf(ranges.width, pick));
    const __m256d t = _mm256_and_pd(ratio, isNumber);
    const __m256d rest = _mm256_sub_pd(_mm256_set1_pd(1.0), t);
    __m128i pixel = _mm_set1_epi32(0xff);
    for (std::size_t channel = 0; channel < ranges.upper.size(); ++channel) {
        const __m256d blend = _mm256_add_pd(_mm256_mul_pd(entryOf(ranges.upper[channel], pick), t),
            _mm256_mul_pd(entryOf(ranges.lower[channel], pick), rest));
        pixel = _mm_or_si128(_mm_slli_epi32(pixel, 8), _mm256_cvttpd_epi32(blend));
    }
    const auto everywhere = [](QRgb colour) { return _mm_set1_epi32(static_cast<int>(colour)); };
    pixel = _mm_blendv_epi8(everywhere(ranges.undefinedPixel), pixel, narrowed(isNumber));
    pixel = _mm_blendv_epi8(pixel, everywhere(ranges.highPixel), narrowed(isAbove));
    return _mm_blendv_epi8(pixel, everywhere(ranges.lowPixel), narrowed(isBelow));
}

TARNIS_AVX2 inline __m256i loadWide(const void* from)
{
    return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}

/// For each subset of eight lanes, given as bits, the lanes of the subset in ascending order, followed by arbitrary
/// ones.
constexpr std::array<std::array<std::uint8_t, 8>, 256> chosenLanes()
{
    std::array<std::array<std::uint8_t, 8>, 256> table {};
    for (unsigned int set = 0; set < table.size(); ++set) {
        std::size_t next = 0;
        for (std::uint8_t lane = 0; lane < 8; ++lane) {
            if ((set >> lane & 1U) != 0)
                table[set][next++] = lane;
        }
    }
    return table;
}
constexpr auto laneOrders = chosenLanes();

/// Table indices of four values; `size` for anything but an integer count below `size`. Negative numbers are large as
/// unsigned.
TARNIS_AVX2 inline __m128i tablePlaces(__m256d value, __m128i size)
{
    const __m128i whole = _mm256_cvttpd_epi32(value);
    const __m256d isFraction = _mm256_cmp_pd(_mm256_cvtepi32_pd(whole), value, _CMP_NEQ_UQ);
    return _mm_min_epu32(_mm_or_si128(whole, narrowed(isFraction)), size);
}

/// Loads four values, contiguous or by column index.
template <bool fromColumns> TARNIS_AVX2 inline __m256d loadLanes(const double* values, const int* columns, int i)
{
    if constexpr (!fromColumns)
        return _mm256_loadu_pd(values + i);
    return _mm256_setr_pd(values[columns[i]], values[columns[i + 1]], values[columns[i + 2]], values[columns[i + 3]]);
}

template <bool fromColumns>
TARNIS_AVX2 bool lookUpLanes(
    const double* values, const int* columns, int count, const QRgb* table, int size, QRgb unknown, QRgb* pixels)
{
    const __m128i outside = _mm_set1_epi32(size);
    alignas(16) std::array<int, lanes> places {};
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        const __m128i place = tablePlaces(loadLanes<fromColumns>(values, columns, i), outside);
        // Four loads are faster than a gather.
        _mm_store_si128(reinterpret_cast<__m128i*>(places.data()), place);
        for (int k = 0; k < lanes; ++k)
            pixels[i + k] = table[places[static_cast<std::size_t>(k)]];
    }
    for (; i < count; ++i) {
        const __m128i place = tablePlaces(_mm256_set1_pd(values[fromColumns ? columns[i] : i]), outside);
        pixels[i] = table[_mm_cvtsi128_si32(place)];
    }
    unsigned int found = 0;
    for (i = 0; i < count; ++i)
        found |= static_cast<unsigned int>(pixels[i] == unknown);
    return found != 0;
}

} // namespace

TARNIS_AVX2 void blendWide(const ScaleRanges& ranges, const double* values, int count, QRgb* pixels)
{
    int i = 0;
    for (; i + lanes <= count; i += lanes)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i), blendLanes(ranges, _mm256_loadu_pd(values + i)));
    if (i == count)
        return;
    alignas(32) std::array<double, lanes> rest {};
    alignas(16) std::array<QRgb, lanes> restPixels {};
    std::copy_n(values + i, count - i, rest.begin());
    _mm_store_si128(reinterpret_cast<__m128i*>(restPixels.data()), blendLanes(ranges, _mm256_load_pd(rest.data())));
    std::copy_n(restPixels.begin(), count - i, pixels + i);
}

TARNIS_AVX2 void pickWide(const TableRange& range, const double* values, int count, QRgb* pixels)
{
    const __m256d low = _mm256_set1_pd(range.low);
    const __m256d width = _mm256_set1_pd(range.width);
    const __m256d size = _mm256_set1_pd(range.size);
    const __m256d last = _mm256_set1_pd(range.size - 1);
    alignas(32) std::array<double, lanes> rest {};
    alignas(16) std::array<int, lanes> places {};
    alignas(16) std::array<QRgb, lanes> picked {};
    for (int i = 0; i < count; i += lanes) {
        const int here = std::min(lanes, count - i);
        const double* from = values + i;
        if (here < lanes)
            from = std::copy_n(from, here, rest.begin()) - here;
        const __m256d t = _mm256_div_pd(_mm256_sub_pd(_mm256_loadu_pd(from), low), width);
        const __m256d isNumber = _mm256_cmp_pd(t, t, _CMP_ORD_Q);
        // max and min return their second operand where the first is not a number.
        const __m256d step = _mm256_min_pd(_mm256_max_pd(_mm256_mul_pd(t, size), _mm256_setzero_pd()), last);
        _mm_store_si128(reinterpret_cast<__m128i*>(places.data()), _mm256_cvttpd_epi32(step));
        for (std::size_t k = 0; k < lanes; ++k)
            picked[k] = range.table[places[k]];
        const __m128i undefined = _mm_set1_epi32(static_cast<int>(ScaleRanges::undefinedPixel));
        const __m128i found = _mm_load_si128(reinterpret_cast<const __m128i*>(picked.data()));
        _mm_store_si128(
            reinterpret_cast<__m128i*>(picked.data()), _mm_blendv_epi8(undefined, found, narrowed(isNumber)));
        std::copy_n(picked.begin(), here, pixels + i);
    }
}

TARNIS_AVX2 void clearSmallWide(const double* values, int count, double least, QRgb* pixels)
{
    const __m256d limit = _mm256_set1_pd(least);
    const __m256d infinity = _mm256_set1_pd(std::numeric_limits<double>::infinity());
    const __m256d sign = _mm256_set1_pd(-0.0);
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        auto* place = reinterpret_cast<__m128i*>(pixels + i);
        const __m256d magnitude = _mm256_andnot_pd(sign, _mm256_loadu_pd(values + i));
        const __m256d isCleared =
            _mm256_or_pd(_mm256_cmp_pd(magnitude, limit, _CMP_LE_OQ), _mm256_cmp_pd(magnitude, infinity, _CMP_EQ_OQ));
        _mm_storeu_si128(place, _mm_andnot_si128(narrowed(isCleared), _mm_loadu_si128(place)));
    }
    for (; i < count; ++i) {
        const double magnitude = std::fabs(values[i]);
        if (magnitude <= least || magnitude == std::numeric_limits<double>::infinity())
            pixels[i] = 0;
    }
}

bool lookUpWide(
    const double* values, const int* columns, int count, const QRgb* table, int size, QRgb unknown, QRgb* pixels)
{
    return columns != nullptr ? lookUpLanes<true>(values, columns, count, table, size, unknown, pixels)
                              : lookUpLanes<false>(values, columns, count, table, size, unknown, pixels);
}

TARNIS_AVX2 int listWide(const QRgb* pixels, int count, QRgb pixel, int* places)
{
    constexpr int wide = 8;
    const __m256i wanted = _mm256_set1_epi32(static_cast<int>(pixel));
    __m256i here = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    int found = 0;
    int i = 0;
    for (; i + wide <= count; i += wide) {
        const __m256i isEqual =
            _mm256_cmpeq_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(pixels + i)), wanted);
        const auto set = static_cast<unsigned int>(_mm256_movemask_ps(_mm256_castsi256_ps(isEqual)));
        const __m256i order =
            _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(laneOrders[set].data())));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(places + found), _mm256_permutevar8x32_epi32(here, order));
        found += std::popcount(set);
        here = _mm256_add_epi32(here, _mm256_set1_epi32(wide));
    }
    for (; i < count; ++i) {
        places[found] = i;
        found += static_cast<int>(pixels[i] == pixel);
    }
    return found;
}

TARNIS_AVX2 void spreadWide(const QRgb* colors, const SpreadBlock* blocks, std::size_t count, QRgb* pixels)
{
    for (std::size_t i = 0; i < count; ++i) {
        const SpreadBlock& block = blocks[i];
        const __m256i place = loadWide(block.place.data());
        const __m256i own = _mm256_permutevar8x32_epi32(loadWide(colors + block.first), place);
        const __m256i before = _mm256_permutevar8x32_epi32(loadWide(colors + block.first - 1), place);
        const __m256i showsBefore =
            _mm256_and_si256(loadWide(block.shared.data()), _mm256_cmpeq_epi32(own, _mm256_setzero_si256()));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(pixels + i * SpreadBlock::width),
            _mm256_or_si256(own, _mm256_and_si256(before, showsBefore)));
    }
}

TARNIS_AVX2 void copyOverWide(QRgb* line, const QRgb* pixels, int count)
{
    constexpr int wide = 8;
    int i = 0;
    for (; i + wide <= count; i += wide) {
        auto* place = reinterpret_cast<__m256i*>(line + i);
        const __m256i over = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pixels + i));
        const __m256i isGap = _mm256_cmpeq_epi32(over, _mm256_setzero_si256());
        _mm256_storeu_si256(place, _mm256_blendv_epi8(over, _mm256_loadu_si256(place), isGap));
    }
    for (; i < count; ++i)
        line[i] = pixels[i] == 0 ? line[i] : pixels[i];
}

#else

void blendWide(const ScaleRanges&, const double*, int, QRgb*)
{
}

void pickWide(const TableRange&, const double*, int, QRgb*)
{
}

void clearSmallWide(const double*, int, double, QRgb*)
{
}

bool lookUpWide(const double*, const int*, int, const QRgb*, int, QRgb, QRgb*)
{
    return false;
}

int listWide(const QRgb*, int, QRgb, int*)
{
    return 0;
}

void spreadWide(const QRgb*, const SpreadBlock*, std::size_t, QRgb*)
{
}

void copyOverWide(QRgb*, const QRgb*, int)
{
}

#endif

} // namespace tarnis
