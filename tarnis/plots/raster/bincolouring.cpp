#include "tarnis/plots/raster/bincolouring_p.h"

#include "tarnis/plots/math/floatcomparison_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int tableSize = 1 << 16;
constexpr QRgb unknownPixel = 1; // neither opaque nor noPixel
constexpr int blendedAtOnce = 1 << 15;

/// Table index of an integer count, or of the entry that stays unknown.
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

void copyOver(QRgb* line, const QRgb* pixels, int count)
{
    if (hasAvx2()) {
        copyOverWide(line, pixels, count);
        return;
    }
    for (int i = 0; i < count; ++i)
        line[i] = pixels[i] == BinColouring::noPixel ? line[i] : pixels[i];
}

int listPixels(const QRgb* pixels, int count, QRgb pixel, int* places)
{
    if (hasAvx2())
        return listWide(pixels, count, pixel, places);
    int found = 0;
    for (int i = 0; i < count; ++i) {
        places[found] = i;
        found += static_cast<int>(pixels[i] == pixel);
    }
    return found;
}

void BinColouring::setScale(const ColourScale& scale)
{
    m_blendedValues = 0;
    if (!m_table.empty() && m_scale == scale)
        return;
    m_scale = scale;
    m_table.assign(tableSize + 1, unknownPixel);
}

void BinColouring::convert(const double* values, int count, QRgb* pixels)
{
    convertAt(values, nullptr, count, pixels);
}

void BinColouring::convertGroups(const double* values, const int* first, const int* groups, int count, QRgb* pixels)
{
    reserve(count);
    const int base = first[0];
    const int all = first[count] - base;
    if (groups == nullptr && m_blendedValues <= 0 && all < 2 * count) {
        // Contiguous values are looked up faster, even if some are never visible.
        m_row.resize(static_cast<std::size_t>(first[count])); // indices as in the row itself
        convertAt(values + base, nullptr, all, m_row.data() + base);
        const QRgb* row = m_row.data();
        for (int i = 0; i < count; ++i)
            pixels[i] = row[first[i]];
        fillEmptyGroups(first, groups, count, pixels, [row](const int* columns, int left, QRgb* found) {
            for (int k = 0; k < left; ++k)
                found[k] = row[columns[k]];
        });
        return;
    }
    if (groups != nullptr) {
        for (int i = 0; i < count; ++i)
            m_columns[static_cast<std::size_t>(i)] = first[groups[i]];
    }
    convertAt(values, groups != nullptr ? m_columns.data() : first, count, pixels);
    fillEmptyGroups(first, groups, count, pixels,
        [this, values](const int* columns, int left, QRgb* found) { convertAt(values, columns, left, found); });
}

/// Processes the further columns of groups without a pixel, one column of all groups at a time. Empty bins are random,
/// so the remaining groups are listed without a branch.
template <typename Find>
void BinColouring::fillEmptyGroups(const int* first, const int* groups, int count, QRgb* pixels, const Find& find)
{
    int* columns = m_columns.data();
    int* places = m_places.data();
    int* ends = m_ends.data();
    QRgb* found = m_found.data();
    const int empty = listPixels(pixels, count, noPixel, places);
    int left = 0;
    for (int k = 0; k < empty; ++k) {
        const int place = places[k];
        const int group = groups != nullptr ? groups[place] : place;
        columns[left] = first[group] + 1;
        places[left] = place;
        ends[left] = first[group + 1];
        left += static_cast<int>(first[group + 1] - first[group] > 1);
    }
    while (left > 0) {
        find(columns, left, found);
        int still = 0;
        for (int k = 0; k < left; ++k) {
            const QRgb pixel = found[k];
            pixels[places[k]] = pixel;
            const int column = columns[k] + 1;
            columns[still] = column;
            places[still] = places[k];
            ends[still] = ends[k];
            still += static_cast<int>((pixel == noPixel) & (column < ends[k]));
        }
        left = still;
    }
}

/// Converts values[columns[i]], or values[i] if `columns` is null.
void BinColouring::convertAt(const double* values, const int* columns, int count, QRgb* pixels)
{
    if (m_blendedValues > 0) {
        m_blendedValues -= count;
        blend(values, columns, count, pixels);
    } else if (lookUp(values, columns, count, pixels)) {
        resolve(values, columns, count, pixels);
    }
}

void BinColouring::blend(const double* values, const int* columns, int count, QRgb* pixels)
{
    if (columns != nullptr) {
        m_picked.resize(std::max(m_picked.size(), static_cast<std::size_t>(count)));
        for (int i = 0; i < count; ++i)
            m_picked[static_cast<std::size_t>(i)] = values[columns[i]];
        values = m_picked.data();
    }
    m_scale.pixels(values, count, pixels);
    if (hasAvx2()) {
        clearSmallWide(values, count, DBL_EPSILON, pixels);
        return;
    }
    for (int i = 0; i < count; ++i)
        pixels[i] = isEmpty(values[i]) ? noPixel : pixels[i];
}

/// True if some pixels are not known yet.
bool BinColouring::lookUp(const double* values, const int* columns, int count, QRgb* pixels) const
{
    const QRgb* table = m_table.data();
    if (hasAvx2())
        return lookUpWide(values, columns, count, table, tableSize, unknownPixel, pixels);
    unsigned int unknown = 0;
    for (int i = 0; i < count; ++i) {
        pixels[i] = table[tableIndex(values[columns != nullptr ? columns[i] : i])];
        unknown |= static_cast<unsigned int>(pixels[i] == unknownPixel);
    }
    return unknown != 0;
}

/// Blends the values that lookUp() did not find; integer counts are stored in the table.
void BinColouring::resolve(const double* values, const int* columns, int count, QRgb* pixels)
{
    int outside = 0;
    for (int i = 0; i < count; ++i) {
        if (pixels[i] != unknownPixel)
            continue;
        const double value = values[columns != nullptr ? columns[i] : i];
        const int index = tableIndex(value);
        pixels[i] = isEmpty(value) ? noPixel : m_scale.pixel(value);
        if (index < tableSize)
            m_table[static_cast<std::size_t>(index)] = pixels[i];
        else
            ++outside;
    }
    // With many fractions or large counts, the table lookup does not pay.
    if (outside > count / 4)
        m_blendedValues = blendedAtOnce;
}

void BinColouring::reserve(int count)
{
    const auto size = static_cast<std::size_t>(count);
    if (m_columns.size() >= size)
        return;
    m_columns.resize(size);
    m_places.resize(size + placesBeyond);
    m_ends.resize(size);
    m_found.resize(size);
}

} // namespace tarnis
