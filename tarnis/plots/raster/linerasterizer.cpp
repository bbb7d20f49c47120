#include "tarnis/plots/raster/linerasterizer_p.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarnis {

namespace {

constexpr int bandWidth = 16;
constexpr qint64 wholePixel = 1 << 16;

/// Along a line's longer side, from `begin` to `end`, the other coordinate rises or falls from `cross` to `crossEnd`
/// in steps with 16 fractional bits, rounded as by the raster engine: half a step ahead where it rises, none where it
/// falls. Calls addRun(cross, first, last) for each run on one coordinate.
template <typename AddRun> void forEachRun(int begin, int end, int cross, int crossEnd, AddRun addRun)
{
    const qint64 slope = begin == end ? 0 : (crossEnd - cross) * wholePixel / (end - begin);
    if (slope == 0)
        return addRun(cross, begin, end);
    const bool rises = slope > 0;
    const qint64 step = rises ? slope : -slope;
    // Remaining length of the line on the current coordinate.
    qint64 room = rises ? wholePixel - 1 - (slope - (slope >> 1)) : 0;
    for (int first = begin; first <= end;) {
        const int last = static_cast<int>(std::min<qint64>(end, begin + room / step));
        addRun(cross, first, last);
        first = last + 1;
        cross += rises ? 1 : -1;
        room += wholePixel;
    }
}

void setBits(quint16* words, int count, quint16 bits)
{
    int i = 0;
#if defined(__SSE2__)
    const __m128i pattern = _mm_set1_epi16(static_cast<short>(bits));
    for (; i + 8 <= count; i += 8) {
        auto* const eight = reinterpret_cast<__m128i*>(words + i);
        _mm_storeu_si128(eight, _mm_or_si128(_mm_loadu_si128(eight), pattern));
    }
#endif
    for (; i < count; ++i)
        words[i] = static_cast<quint16>(words[i] | bits);
}

void writeWord(QRgb* pixels, unsigned int bits, QRgb colour)
{
    for (; bits != 0; bits &= bits - 1)
        pixels[std::countr_zero(bits)] = colour;
}

/// As above, if all pixels of the band are within the image.
void writeWholeWord(QRgb* pixels, unsigned int bits, QRgb colour)
{
#if defined(__SSE2__)
    const __m128i word = _mm_set1_epi32(static_cast<int>(bits));
    const __m128i colors = _mm_set1_epi32(static_cast<int>(colour));
    __m128i places = _mm_setr_epi32(1, 2, 4, 8);
    for (int i = 0; i < bandWidth; i += 4) {
        auto* const four = reinterpret_cast<__m128i*>(pixels + i);
        const __m128i chosen = _mm_cmpeq_epi32(_mm_and_si128(word, places), places);
        const __m128i kept = _mm_andnot_si128(chosen, _mm_loadu_si128(four));
        _mm_storeu_si128(four, _mm_or_si128(_mm_and_si128(chosen, colors), kept));
        places = _mm_slli_epi32(places, 4);
    }
#else
    writeWord(pixels, bits, colour);
#endif
}

} // namespace

void LineRasterizer::Rows::include(int first, int last, int count)
{
    top = bottom < top ? first : std::min(top, first);
    bottom = std::max(bottom, last);
    pixels += count;
}

// Setting single pixels is faster then.
bool LineRasterizer::Rows::areSparse() const
{
    constexpr int fewPixels = 3; // a row
    return pixels < qint64(fewPixels) * (bottom - top + 1);
}

LineRasterizer::LineRasterizer(const QRect& area)
    : m_area(area)
    , m_height(static_cast<std::size_t>(std::max(area.height(), 0)))
{
    const auto bands = static_cast<std::size_t>(std::max(area.width() + bandWidth - 1, 0) / bandWidth);
    m_bits.resize(bands * m_height);
    m_rows.resize(bands);
}

void LineRasterizer::addColumn(int x, int top, int bottom)
{
    if (x < m_area.left() || x > m_area.right())
        return;
    const int first = std::max(top, m_area.top()) - m_area.top();
    const int last = std::min(bottom, m_area.bottom()) - m_area.top();
    if (first > last)
        return;
    const int column = x - m_area.left();
    const int number = column / bandWidth;
    setBits(band(number) + first, last - first + 1, static_cast<quint16>(1U << (column % bandWidth)));
    m_rows[static_cast<std::size_t>(number)].include(first, last, last - first + 1);
}

void LineRasterizer::addRow(int left, int right, int y)
{
    if (y < m_area.top() || y > m_area.bottom())
        return;
    const int first = std::max(left, m_area.left()) - m_area.left();
    const int last = std::min(right, m_area.right()) - m_area.left();
    const int row = y - m_area.top();
    for (int column = first; column <= last;) {
        const int number = column / bandWidth;
        const int place = column % bandWidth;
        const int count = std::min(bandWidth - place, last - column + 1);
        quint16& word = band(number)[row];
        word = static_cast<quint16>(word | (((1U << count) - 1U) << place));
        m_rows[static_cast<std::size_t>(number)].include(row, row, count);
        column += count;
    }
}

void LineRasterizer::addLine(QPoint from, QPoint to)
{
    if (std::abs(to.x() - from.x()) < std::abs(to.y() - from.y())) {
        if (to.y() < from.y())
            std::swap(from, to);
        forEachRun(
            from.y(), to.y(), from.x(), to.x(), [this](int x, int top, int bottom) { addColumn(x, top, bottom); });
    } else {
        if (to.x() < from.x())
            std::swap(from, to);
        forEachRun(from.x(), to.x(), from.y(), to.y(), [this](int y, int left, int right) { addRow(left, right, y); });
    }
}

void LineRasterizer::writeTo(const PixelRows& rows, QRgb colour)
{
    for (std::size_t number = 0; number < m_rows.size(); ++number) {
        const int left = m_area.left() + static_cast<int>(number) * bandWidth;
        const bool whole = left + bandWidth - 1 <= m_area.right();
        quint16* const words = band(static_cast<int>(number));
        const Rows used = std::exchange(m_rows[number], Rows());
        const bool sparse = used.areSparse();
        for (int row = used.top; row <= used.bottom; ++row) {
            const unsigned int bits = std::exchange(words[row], quint16(0));
            if (bits == 0)
                continue;
            QRgb* const pixels = rows.at(left, m_area.top() + row);
            if (whole && !sparse)
                writeWholeWord(pixels, bits, colour);
            else
                writeWord(pixels, bits, colour);
        }
    }
}

} // namespace tarnis
