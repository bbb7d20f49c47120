#include "tarnis/plots/raster/curvecoverage_p.h"

#include "tarnis/plots/math/sampleextremes_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarnis {

namespace {

constexpr int strips = 4; // strips per pixel column
constexpr float fillOpacity = 0.45F;
constexpr double gapFrom = 8.0; // bin width in pixels from which columns are drawn with gaps
constexpr double gapShare = 0.08; // fraction of a bin on each side
constexpr int tileColumns = 16; // a cache line of pixels; the loops over a row of a tile are vectorised

struct Extremes {
    double low = 0.0;
    double high = 0.0;
    bool any = false;
};

/// The extremes of the samples, ignoring NaN.
Extremes extremesOfNumbers(const SampleRun& samples, int begin, int end)
{
    if (end - begin > 4) {
        const SampleExtremes quick = extremesOf(samples.from(begin), end - begin);
        if (quick.finite)
            return { quick.low, quick.high, true };
    }
    Extremes result { std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), false };
    for (int i = begin; i < end; ++i) {
        if (std::isnan(samples[i]))
            continue;
        result.low = std::min(result.low, samples[i]);
        result.high = std::max(result.high, samples[i]);
        result.any = true;
    }
    return result;
}

/// As std::floor(), which is a function call without SSE4.1. Positions beyond any picture are clamped.
int floorOf(double position)
{
    const double limited = std::clamp(position, -1e9, 1e9);
    const int towardsZero = static_cast<int>(limited);
    return towardsZero - (limited < towardsZero ? 1 : 0);
}

} // namespace

double SmoothRows::at(double value) const
{
    if (isLog && !(value > 0.0))
        return std::isnan(value) ? value : std::copysign(limit, pixelsPerUnit);
    const double row = bottom - ((isLog ? std::log10(value) : value) - minimum) * pixelsPerUnit;
    return std::isnan(row) ? row : std::clamp(row, -limit, limit);
}

/// The bins in the order of the strips, from left to right.
struct CurveCoverage::Bins {
    const SmoothColumns& columns;
    int count;
    int first;
    bool isReversed;

    Bins(const SmoothColumns& from, SampleRange range)
        : columns(from)
        , count(range.end - range.begin)
        , first(range.begin)
        , isReversed(from.edge(range.end) < from.edge(range.begin))
    {
    }
    int index(int i) const { return isReversed ? first + count - 1 - i : first + i; }
    /// Left edge of the i-th bin from the left, in strips.
    double edge(double i) const { return strips * columns.edge(isReversed ? first + count - i : first + i); }
    double middle(int i) const { return edge(i + 0.5); }
    /// One past the last bin, starting at i, whose position() is within the strip.
    template <typename Position> int endOfStrip(int i, int strip, const Position& position) const
    {
        int end = i + 1;
        if (!columns.function) {
            const double guess = (strip + 1 - position(i)) / (strips * std::abs(columns.pixelsPerBin));
            if (guess > 2.0)
                end = i + static_cast<int>(std::min<double>(guess - 1.0, count - i));
        }
        while (end < count && position(end) < strip + 1.0)
            ++end;
        return end;
    }
    Extremes extremes(const SampleRun& samples, int begin, int end) const
    {
        return isReversed ? extremesOfNumbers(samples, index(end - 1), index(begin) + 1)
                          : extremesOfNumbers(samples, index(begin), index(end - 1) + 1);
    }
};

void CurveCoverage::begin(QSize size)
{
    if (m_image.size() != size)
        m_image = QImage(size, QImage::Format_ARGB32_Premultiplied);
    m_image.fill(0U);
    m_width = m_image.width();
    m_height = m_image.height();
    const auto tiles = static_cast<std::size_t>((m_width + tileColumns - 1) / tileColumns);
    m_slopes.resize(tiles * tileSize()); // all 0: each curve restores them
    m_tiles.assign(tiles, Tile { m_height, -1 });
}

std::size_t CurveCoverage::tileSize() const
{
    return std::size_t(m_height + 2) * tileColumns;
}

void CurveCoverage::add(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows)
{
    if (m_image.isNull() || curve.range.begin >= curve.range.end || qAlpha(curve.colour) == 0)
        return;
    clearSpans();
    switch (curve.shape) {
    case CurveShape::Lines:
        addLines(curve, columns, rows);
        break;
    case CurveShape::Points:
        addPoints(curve, columns, rows);
        return;
    case CurveShape::Columns:
        addColumns(curve, columns, rows);
        cover();
        blend(curve.colour, fillOpacity);
        clearSpans();
        [[fallthrough]];
    case CurveShape::Steps:
        addSteps(curve, columns, rows);
        break;
    }
    thicken(curve.width / 2.0);
    cover();
    blend(curve.colour, 1.0F);
}

// A margin on both sides for thick lines that extend into the image.
constexpr int marginStrips = 16 * strips;

void CurveCoverage::clearSpans()
{
    constexpr float far = std::numeric_limits<float>::max();
    m_spans.assign(std::size_t(m_width) * strips + std::size_t(2 * marginStrips), Span { far, -far });
    m_first = static_cast<int>(m_spans.size());
    m_last = -1;
}

void CurveCoverage::widen(int strip, double a, double b)
{
    const int index = strip + marginStrips;
    if (index < 0 || index >= static_cast<int>(m_spans.size()))
        return;
    Span& span = m_spans[std::size_t(index)];
    span.top = std::min(span.top, static_cast<float>(std::min(a, b)));
    span.bottom = std::max(span.bottom, static_cast<float>(std::max(a, b)));
    m_first = std::min(m_first, index);
    m_last = std::max(m_last, index);
}

/// Covers the strips between the abscissae, which ascend.
void CurveCoverage::joinPoints(double u0, double row0, double u1, double row1)
{
    const double begin = std::max(u0, double(-marginStrips));
    const double end = std::min(u1, double(m_width * strips + marginStrips - 1));
    if (!(begin <= end))
        return;
    const double slope = u1 > u0 ? (row1 - row0) / (u1 - u0) : 0.0;
    const auto rowAt = [&](double u) { return u >= u1 ? row1 : (u <= u0 ? row0 : row0 + (u - u0) * slope); };
    const int last = floorOf(end);
    for (int strip = floorOf(begin); strip <= last; ++strip)
        widen(strip, rowAt(strip), rowAt(strip + 1.0));
}

void CurveCoverage::addLines(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows)
{
    const Bins bins(columns, curve.range);
    const auto position = [&bins](int i) { return bins.middle(i); };
    double previousU = 0.0;
    double previousRow = std::numeric_limits<double>::quiet_NaN();
    for (int i = 0; i < bins.count;) {
        const double u = position(i);
        if (!std::isfinite(u)) {
            ++i;
            continue;
        }
        const int strip = floorOf(u);
        const int end = bins.endOfStrip(i, strip, position);
        const double firstRow = rows.at(curve.samples[bins.index(i)]);
        if (!std::isnan(previousRow) && !std::isnan(firstRow))
            joinPoints(previousU, previousRow, u, firstRow);
        if (const Extremes found = bins.extremes(curve.samples, i, end); found.any)
            widen(strip, rows.at(found.low), rows.at(found.high));
        previousU = position(end - 1);
        previousRow = rows.at(curve.samples[bins.index(end - 1)]);
        i = end;
    }
}

void CurveCoverage::addSteps(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows)
{
    const Bins bins(columns, curve.range);
    const auto position = [&bins](int i) { return bins.edge(i); };
    double previousRow = std::numeric_limits<double>::quiet_NaN();
    for (int i = 0; i < bins.count;) {
        const double u = position(i);
        const double far = bins.edge(i + 1);
        if (!std::isfinite(u) || !std::isfinite(far)) {
            ++i;
            continue;
        }
        const int strip = floorOf(u);
        const int end = bins.endOfStrip(i, strip, position);
        const double firstRow = rows.at(curve.samples[bins.index(i)]);
        if (!std::isnan(previousRow) && !std::isnan(firstRow))
            widen(strip, previousRow, firstRow);
        if (const Extremes found = bins.extremes(curve.samples, i, end); found.any)
            widen(strip, rows.at(found.low), rows.at(found.high));
        const double lastRow = rows.at(curve.samples[bins.index(end - 1)]);
        if (!std::isnan(lastRow))
            joinPoints(position(end - 1), lastRow, bins.edge(end), lastRow);
        previousRow = lastRow;
        i = end;
    }
}

void CurveCoverage::addColumns(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows)
{
    const Bins bins(columns, curve.range);
    const auto position = [&bins](int i) { return bins.edge(i); };
    for (int i = 0; i < bins.count;) {
        const double u = position(i);
        if (!std::isfinite(u) || !std::isfinite(bins.edge(i + 1))) {
            ++i;
            continue;
        }
        const int strip = floorOf(u);
        const int end = bins.endOfStrip(i, strip, position);
        const Extremes found = bins.extremes(curve.samples, i, end);
        if (found.any && end - i > 1)
            widen(strip, std::min(rows.at(found.high), curve.base), std::max(rows.at(found.low), curve.base));
        const double row = rows.at(curve.samples[bins.index(end - 1)]);
        const double left = position(end - 1);
        const double right = bins.edge(end);
        const double gap = right - left >= gapFrom * strips ? (right - left) * gapShare : 0.0;
        if (!std::isnan(row))
            fill(left + gap, right - gap, row, curve.base);
        i = end;
    }
}

/// Covers the strips whose middle is between the abscissae.
void CurveCoverage::fill(double u0, double u1, double a, double b)
{
    const auto stripFrom = [this](double u) {
        return static_cast<int>(
            std::ceil(std::clamp(u, double(-marginStrips), double(m_width * strips + marginStrips)) - 0.5));
    };
    const int begin = stripFrom(u0);
    const int end = stripFrom(u1);
    for (int strip = begin; strip < end; ++strip)
        widen(strip, a, b);
}

/// Draws a round pen along the spans: nearby strips receive the spans, enlarged by the height of the circle at that
/// distance.
void CurveCoverage::thicken(double radius)
{
    if (m_last < m_first)
        return;
    const int reach = std::min(static_cast<int>(std::floor(radius * strips)), marginStrips);
    const int size = static_cast<int>(m_spans.size());
    m_thick = m_spans;
    for (int offset = -reach; offset <= reach; ++offset) {
        const double aside = double(offset) / strips;
        const auto height = static_cast<float>(std::sqrt(std::max(radius * radius - aside * aside, 0.0)));
        const int begin = std::max({ m_first, offset > 0 ? 0 : -offset });
        const int end = std::min(m_last + 1, size - std::max(offset, 0));
        const Span* from = m_spans.data();
        Span* to = m_thick.data() + offset;
        for (int i = begin; i < end; ++i) { // empty spans stay empty: the height is negligible compared with their
                                            // inverted ends
            to[i].top = std::min(to[i].top, from[i].top - height);
            to[i].bottom = std::max(to[i].bottom, from[i].bottom + height);
        }
    }
    m_spans.swap(m_thick);
    m_first = std::max(m_first - reach, 0);
    m_last = std::min(m_last + reach, size - 1);
}

void CurveCoverage::cover()
{
    const int begin = std::max(m_first, marginStrips);
    const int end = std::min(m_last + 1, m_width * strips + marginStrips);
    for (int i = begin; i < end; ++i)
        coverStrip(i - marginStrips, m_spans[std::size_t(i)]);
}

/// Turns a span into changes of coverage: an edge within a row changes this row by the fraction below it and the next
/// one by the rest.
void CurveCoverage::coverStrip(int strip, Span span)
{
    const float top = std::max(span.top, 0.0F);
    const float bottom = std::min(span.bottom, static_cast<float>(m_height));
    if (!(top < bottom))
        return;
    const int topRow = static_cast<int>(top);
    const int bottomRow = static_cast<int>(bottom);
    const int column = strip / strips;
    const auto tile = static_cast<std::size_t>(column / tileColumns);
    float* const slopes = m_slopes.data() + tile * tileSize() + std::size_t(column % tileColumns);
    float* const atTop = slopes + std::size_t(topRow) * tileColumns;
    float* const atBottom = slopes + std::size_t(bottomRow) * tileColumns;
    constexpr float share = 1.0F / strips;
    const float topPart = (static_cast<float>(topRow) + 1.0F - top) * share;
    const float bottomPart = (static_cast<float>(bottomRow) + 1.0F - bottom) * share;
    atTop[0] += topPart;
    atTop[tileColumns] += share - topPart;
    atBottom[0] -= bottomPart;
    atBottom[tileColumns] -= share - bottomPart;
    m_tiles[tile].top = std::min(m_tiles[tile].top, topRow);
    m_tiles[tile].bottom = std::max(m_tiles[tile].bottom, bottomRow);
}

namespace {

#if defined(__SSE2__)

/// Adds the changes of four pixels to the coverage. Returns the shares of the colour, in 1/256.
__m128i nextShares(float* coverage, float* slopes, float opacity)
{
    const __m128 parts = _mm_set1_ps(256.0F * opacity);
    const __m128 sum = _mm_add_ps(_mm_loadu_ps(coverage), _mm_loadu_ps(slopes));
    _mm_storeu_ps(coverage, sum);
    _mm_storeu_ps(slopes, _mm_setzero_ps());
    const __m128 wanted = _mm_add_ps(_mm_mul_ps(sum, parts), _mm_set1_ps(0.5F));
    const __m128 most = _mm_min_ps(parts, _mm_set1_ps(256.0F));
    return _mm_cvttps_epi32(_mm_min_ps(_mm_max_ps(wanted, _mm_setzero_ps()), most));
}

/// The pixels of blendPixels(), in products of 16 bits: those of 32 bits take four times as long.
void blendTile(float* coverage, float* slopes, QRgb* pixels, QRgb colour, float opacity)
{
    const __m128i even = _mm_set1_epi32(0x00ff00ff);
    const __m128i redAndBlue = _mm_and_si128(_mm_set1_epi32(static_cast<int>(colour)), even);
    const __m128i alphaAndGreen = _mm_set1_epi32(static_cast<int>(((colour >> 8) & 0xffU) | 0x00ff0000U));
    for (int x = 0; x < tileColumns; x += 4) {
        const __m128i four = nextShares(coverage + x, slopes + x, opacity);
        const __m128i share = _mm_or_si128(four, _mm_slli_epi32(four, 16));
        const __m128i rest = _mm_sub_epi16(_mm_set1_epi16(256), share);
        auto* const place = reinterpret_cast<__m128i*>(pixels + x);
        const __m128i pixel = _mm_loadu_si128(place);
        const __m128i low = _mm_srli_epi16(
            _mm_add_epi16(_mm_mullo_epi16(_mm_and_si128(pixel, even), rest), _mm_mullo_epi16(redAndBlue, share)), 8);
        const __m128i high = _mm_add_epi16(_mm_mullo_epi16(_mm_and_si128(_mm_srli_epi32(pixel, 8), even), rest),
            _mm_mullo_epi16(alphaAndGreen, share));
        _mm_storeu_si128(place, _mm_or_si128(low, _mm_andnot_si128(even, high)));
    }
}

#endif

/// Adds the changes of a row to the coverage, and blends the colour over the pixels. Two channels at a time, in 1/256,
/// so that the compiler can vectorise.
template <typename Count>
void blendPixels(float* coverage, float* slopes, QRgb* pixels, Count count, QRgb colour, float opacity)
{
    constexpr QRgb even = 0x00ff00ffU;
    const QRgb redAndBlue = colour & even;
    const QRgb alphaAndGreen = ((colour >> 8) & 0xffU) | 0x00ff0000U;
    const float parts = 256.0F * opacity;
    const float most = std::min(parts, 256.0F);
    for (int x = 0; x < count; ++x) {
        const float sum = coverage[x] + slopes[x];
        coverage[x] = sum;
        slopes[x] = 0.0F;
        const float wanted = sum * parts + 0.5F;
        const auto share = static_cast<QRgb>(static_cast<int>(wanted < 0.0F ? 0.0F : (wanted > most ? most : wanted)));
        const QRgb rest = 256U - share;
        const QRgb pixel = pixels[x];
        const QRgb low = ((pixel & even) * rest + redAndBlue * share) >> 8;
        const QRgb high = ((pixel >> 8) & even) * rest + alphaAndGreen * share;
        pixels[x] = (low & even) | (high & ~even);
    }
}

/// A constant number of pixels needs no scalar rest.
void blendRow(float* coverage, float* slopes, QRgb* pixels, int count, QRgb colour, float opacity)
{
#if defined(__SSE2__)
    if (count == tileColumns) {
        blendTile(coverage, slopes, pixels, colour, opacity);
        return;
    }
#endif
    if (count == tileColumns)
        blendPixels(coverage, slopes, pixels, std::integral_constant<int, tileColumns>(), colour, opacity);
    else
        blendPixels(coverage, slopes, pixels, count, colour, opacity);
}

} // namespace

/// Tile by tile, because a curve covers few of the rows between its extremes: the time is that of the covered pixels.
void CurveCoverage::blend(QRgb colour, float opacity)
{
    const float share = opacity * static_cast<float>(qAlpha(colour)) / 255.0F;
    const qsizetype line = m_image.bytesPerLine() / qsizetype(sizeof(QRgb));
    auto* const bits = reinterpret_cast<QRgb*>(m_image.bits());
    for (std::size_t i = 0; i < m_tiles.size(); ++i) {
        Tile& tile = m_tiles[i];
        if (tile.bottom < tile.top)
            continue;
        const int left = static_cast<int>(i) * tileColumns;
        const int columns = std::min(tileColumns, m_width - left);
        std::array<float, tileColumns> coverage {};
        for (int row = tile.top; row <= std::min(tile.bottom + 1, m_height - 1); ++row)
            blendRow(coverage.data(), m_slopes.data() + i * tileSize() + std::size_t(row) * tileColumns,
                bits + row * line + left, columns, colour, share);
        // The remaining changes below the last row.
        std::fill_n(m_slopes.data() + i * tileSize() + std::size_t(m_height) * tileColumns, 2 * tileColumns, 0.0F);
        tile = Tile { m_height, -1 };
    }
}

/// Each disc covers its own strips; one disc for each half pixel that contains any point.
void CurveCoverage::addPoints(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows)
{
    const Bins bins(columns, curve.range);
    const double radius = curve.width / 2.0;
    const int reach = static_cast<int>(std::floor(radius * strips));
    constexpr int fine = 2; // sub-pixel positions in each direction
    std::vector<bool> isTaken(std::size_t(m_width + 2) * std::size_t(m_height + 2) * fine * fine, false);
    for (int i = 0; i < bins.count; ++i) {
        const double row = rows.at(curve.samples[bins.index(i)]);
        const double u = bins.middle(i);
        const double column = u / strips;
        if (!(column >= -1.0 && column < m_width + 1.0 && row >= -1.0 && row < m_height + 1.0))
            continue;
        const auto place =
            (std::size_t((row + 1.0) * fine) * std::size_t(m_width + 2) * fine) + std::size_t((column + 1.0) * fine);
        if (isTaken[place])
            continue;
        isTaken[place] = true;
        const int middle = floorOf(u);
        for (int strip = std::max(middle - reach, 0); strip <= std::min(middle + reach, m_width * strips - 1);
             ++strip) {
            const double aside = (strip + 0.5 - u) / strips;
            const double height = std::sqrt(std::max(radius * radius - aside * aside, 0.0));
            coverStrip(strip, { static_cast<float>(row - height), static_cast<float>(row + height) });
        }
    }
    blend(curve.colour, 1.0F);
}

} // namespace tarnis
