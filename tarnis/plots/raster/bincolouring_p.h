// Converts bins to pixels. Pure functions on arrays.
#pragma once

#include "tarnis/plots/raster/colourscale_p.h"

#include <QList>

#include <vector>

namespace tarnis {

/// True if a bin counts as 0 within the plot tolerance and is not painted. By that rule, infinite bins do too.
bool isEmptyBin(double value);

/// Writes the indices of all occurrences of a pixel, in ascending order, and returns their number. `places` must have
/// space for `count` + placesBeyond entries.
int listPixels(const QRgb* pixels, int count, QRgb pixel, int* places);
constexpr int placesBeyond = 8;

/// Pixels of bins on a colour scale. Integer counts are looked up in a table, which is filled as they occur and kept as
/// long as the scale; other values are blended.
class BinColouring {
public:
    static constexpr QRgb noPixel = 0; ///< pixel of an empty bin; all others are opaque

    void setScale(const ColourScale& scale);

    /// Writes a pixel for each of `count` values.
    void convert(const double* values, int count, QRgb* pixels);

    /// Writes a pixel for each of `count` groups of adjacent values. Group g begins at first[g] and ends where the next
    /// one begins; its first non-empty bin is shown. The groups are those listed in `groups`, or the groups 0, 1, 2 and
    /// so on if that is null.
    void convertGroups(const double* values, const int* first, const int* groups, int count, QRgb* pixels);

private:
    void convertAt(const double* values, const int* columns, int count, QRgb* pixels);
    template <typename Find>
    void fillEmptyGroups(const int* first, const int* groups, int count, QRgb* pixels, const Find& find);
    void blend(const double* values, const int* columns, int count, QRgb* pixels);
    bool lookUp(const double* values, const int* columns, int count, QRgb* pixels) const;
    void resolve(const double* values, const int* columns, int count, QRgb* pixels);
    void reserve(int count);

    ColourScale m_scale;
    std::vector<QRgb> m_table; ///< pixels by integer count; the entry after the last one stays unknown
    int m_blendedValues = 0; ///< number of further values that are blended without a table lookup
    // Working space of one row
    std::vector<double> m_picked; ///< values from columns
    std::vector<int> m_columns; ///< next column of each group that is still without a pixel
    std::vector<int> m_places; ///< pixel index of these groups
    std::vector<int> m_ends; ///< end column of these groups
    std::vector<QRgb> m_found;
    std::vector<QRgb> m_row; ///< all columns of a row
};

/// Copies pixels over those of a line, except where they are noPixel.
void copyOver(QRgb* line, const QRgb* pixels, int count);

} // namespace tarnis
