// Rows of bins turned into pixels, and the search for the least positive bin. Plain arrays in and out.
#pragma once

#include "tarnis/plots/colorscale_p.h"

#include <QList>

#include <vector>

namespace tarnis {

using BinRows = QList<QList<double>>;

/// True if a bin counts as 0 within the plot tolerance and is not painted. By that rule an infinite one does too.
bool isEmptyBin(double value);

/// The smallest bin that is above 0 beyond the plot tolerance; 1.0 if none is smaller than that.
double smallestPositiveBin(const BinRows& rows);

/// Pixels of bins on a colour scale. Whole counts are looked up in a table that fills as they occur and stays for as
/// long as the scale does; other values are blended one by one.
class BinPixels {
public:
    static constexpr QRgb noPixel = 0; ///< of an empty bin; all others are opaque

    void setScale(const ColorScale& scale);

    /// Writes a pixel for each of `count` values.
    void convert(const double* values, int count, QRgb* pixels);

    /// Writes a pixel for each of `count` groups of neighbouring values: group i begins at first[i] and ends where the
    /// next one begins. Its first bin that is not empty is shown.
    void convertGroups(const double* values, const int* first, int count, QRgb* pixels);

private:
    QRgb blend(double value) const;
    QRgb lookUp(double value);
    QRgb resolve(double value, int index);
    void reserve(int count);

    ColorScale m_scale;
    std::vector<QRgb> m_table; ///< by whole count; the entry behind the last one stays unknown
    int m_blendedRows = 0; ///< so many rows more are blended without a look into the table
    // Working space of one row
    std::vector<int> m_index;
    std::vector<double> m_firstValue;
};

} // namespace tarnis
