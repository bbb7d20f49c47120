// Bins turned into pixels. Plain arrays in and out.
#pragma once

#include "tarnis/plots/raster/colorscale_p.h"

#include <QList>

#include <vector>

namespace tarnis {

/// True if a bin counts as 0 within the plot tolerance and is not painted. By that rule an infinite one does too.
bool isEmptyBin(double value);

/// Writes the places at which a pixel stands, in ascending order, and gives their number. `places` has room for
/// `count` + placesBeyond entries.
int listPixels(const QRgb* pixels, int count, QRgb pixel, int* places);
constexpr int placesBeyond = 8;

/// Pixels of bins on a colour scale. Integer counts are looked up in a table that fills as they occur and stays for as
/// long as the scale does; other values are blended.
class BinPixels {
public:
    static constexpr QRgb noPixel = 0; ///< of an empty bin; all others are opaque

    void setScale(const ColorScale& scale);

    /// Writes a pixel for each of `count` values.
    void convert(const double* values, int count, QRgb* pixels);

    /// Writes a pixel for each of `count` groups of neighbouring values. Group g begins at first[g] and ends where the
    /// next one begins; its first bin that is not empty is shown. The groups are those listed in `groups`, or the
    /// groups 0, 1, 2 and so on if that is null.
    void convertGroups(const double* values, const int* first, const int* groups, int count, QRgb* pixels);

private:
    void convertAt(const double* values, const int* columns, int count, QRgb* pixels);
    template <typename Find>
    void fillEmptyGroups(const int* first, const int* groups, int count, QRgb* pixels, const Find& find);
    void blend(const double* values, const int* columns, int count, QRgb* pixels);
    bool lookUp(const double* values, const int* columns, int count, QRgb* pixels) const;
    void resolve(const double* values, const int* columns, int count, QRgb* pixels);
    void reserve(int count);

    ColorScale m_scale;
    std::vector<QRgb> m_table; ///< by integer count; the entry behind the last one stays unknown
    int m_blendedValues = 0; ///< so many values more are blended without a look into the table
    // Working space of one row
    std::vector<double> m_picked; ///< values from columns
    std::vector<int> m_columns; ///< to look at next, of the groups that are still without a pixel
    std::vector<int> m_places; ///< of these groups among the pixels
    std::vector<int> m_ends; ///< of these groups
    std::vector<QRgb> m_found;
    std::vector<QRgb> m_row; ///< all columns of a row
};

/// Lays pixels over those of a line, which stays where they are noPixel.
void copyOver(QRgb* line, const QRgb* pixels, int count);

} // namespace tarnis
