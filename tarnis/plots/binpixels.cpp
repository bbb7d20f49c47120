#include "tarnis/plots/binpixels_p.h"

#include "tarnis/plots/plotnumbers_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int tableSize = 1 << 16;
constexpr QRgb unknownPixel = 1; // neither opaque nor noPixel
constexpr int blendedRowsAtOnce = 15;

/// Place of a whole count in the table, or of the entry that stays unknown.
inline int tableIndex(double value)
{
    double inside = value < tableSize ? value : tableSize;
    inside = inside >= 0.0 ? inside : tableSize;
    const int index = static_cast<int>(inside);
    return static_cast<double>(index) == inside ? index : tableSize;
}

/// plotEqual(value, 0.0), written so that a loop over bins needs no branch.
inline bool isEmpty(double value)
{
    const double magnitude = std::fabs(value);
    return (magnitude <= DBL_EPSILON) | (magnitude == std::numeric_limits<double>::infinity());
}

} // namespace

bool isEmptyBin(double value)
{
    return isEmpty(value);
}

double smallestPositiveBin(const BinRows& rows)
{
    // Eight running minima, since one would wait for itself.
    constexpr qsizetype lanes = 8;
    std::array<double, lanes> least {};
    least.fill(1.0);
    for (const QList<double>& row : rows) {
        const double* values = row.constData();
        const qsizetype count = row.size();
        qsizetype i = 0;
        for (; i + lanes <= count; i += lanes) {
            for (qsizetype lane = 0; lane < lanes; ++lane) {
                const double value = values[i + lane];
                const double candidate = value > DBL_EPSILON ? value : 1.0;
                least[static_cast<std::size_t>(lane)] = candidate < least[static_cast<std::size_t>(lane)]
                    ? candidate
                    : least[static_cast<std::size_t>(lane)];
            }
        }
        for (; i < count; ++i)
            least[0] = values[i] > DBL_EPSILON && values[i] < least[0] ? values[i] : least[0];
    }
    return *std::min_element(least.begin(), least.end());
}

void BinPixels::setScale(const ColorScale& scale)
{
    m_blendedRows = 0;
    if (!m_table.empty() && m_scale == scale)
        return;
    m_scale = scale;
    m_table.assign(tableSize + 1, unknownPixel);
}

void BinPixels::convert(const double* values, int count, QRgb* pixels)
{
    if (m_blendedRows > 0) {
        --m_blendedRows;
        for (int i = 0; i < count; ++i)
            pixels[i] = blend(values[i]);
        return;
    }
    reserve(count);
    int* index = m_index.data();
    for (int i = 0; i < count; ++i)
        index[i] = tableIndex(values[i]);
    const QRgb* table = m_table.data();
    int outside = 0;
    for (int i = 0; i < count; ++i) {
        pixels[i] = table[index[i]];
        if (pixels[i] == unknownPixel) {
            pixels[i] = resolve(values[i], index[i]);
            outside += static_cast<int>(index[i] == tableSize);
        }
    }
    // Many fractions or large counts: the look into the table only costs.
    if (outside > count / 4)
        m_blendedRows = blendedRowsAtOnce;
}

void BinPixels::convertGroups(const double* values, const int* first, int count, QRgb* pixels)
{
    reserve(count);
    double* firstValue = m_firstValue.data();
    for (int i = 0; i < count; ++i)
        firstValue[i] = values[first[i]];
    convert(firstValue, count, pixels);
    // Gaps are listed without a branch, since they lie about at random.
    int* gap = m_index.data();
    int gaps = 0;
    for (int i = 0; i < count; ++i) {
        gap[gaps] = i;
        gaps += static_cast<int>((pixels[i] == noPixel) & (first[i + 1] - first[i] > 1));
    }
    for (int k = 0; k < gaps; ++k) {
        const int i = gap[k];
        for (int column = first[i] + 1; pixels[i] == noPixel && column < first[i + 1]; ++column)
            pixels[i] = lookUp(values[column]);
    }
}

QRgb BinPixels::blend(double value) const
{
    const QRgb pixel = m_scale.pixel(value);
    return isEmpty(value) ? noPixel : pixel;
}

QRgb BinPixels::lookUp(double value)
{
    const int index = tableIndex(value);
    const QRgb pixel = m_table[index];
    return pixel == unknownPixel ? resolve(value, index) : pixel;
}

QRgb BinPixels::resolve(double value, int index)
{
    const QRgb pixel = blend(value);
    if (index < tableSize)
        m_table[index] = pixel;
    return pixel;
}

void BinPixels::reserve(int count)
{
    if (m_index.size() < static_cast<std::size_t>(count)) {
        m_index.resize(count);
        m_firstValue.resize(count);
    }
}

} // namespace tarnis
