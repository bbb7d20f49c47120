// The visible bins of a map and their positions on the screen. Pure functions without a painter.
#pragma once

#include <QRect>

namespace tarnis {

/// Truncates the fraction. Positions far outside of any widget, and NaN, are clamped to a limit that prevents overflow
/// in a paint engine.
int limitedPixel(double position);

/// One axis of a map. Bin 0 begins at `initMin`.
struct BinAxis {
    double min = 0.0; ///< visible range, axis units
    double max = 0.0;
    double initMin = 0.0;
    bool manual = false; ///< true: `step` is the bin width, else `resolution`
    double step = 0.0; ///< axis units per bin
    unsigned int resolution = 1; ///< factor of the pixel sizes; does not affect which bins are visited
};

/// The bins of one axis that are visited.
struct BinSpan {
    double pixels = 0.0; ///< pixels per bin; negative or not finite for a reversed or empty range
    double low = 0.0; ///< visible bounds as bin numbers
    double high = 0.0;
    int first = 0;
    int end = 0; ///< exclusive; from 0 to the number of bins, possibly below `first`
};

/// `bins` is the number of bins of the axis, `pixels` its length on the screen. A NaN bound counts as below bin 0.
BinSpan visibleBins(const BinAxis& axis, int pixels, qsizetype bins);

/// Pixel positions of the bins, by limitedPixel(). Row 0 is at the bottom.
struct BinGeometry {
    QRect rect; ///< the plot rectangle
    BinSpan x;
    BinSpan y;

    /// True if bins are painted as bars, else as vertical lines one pixel wide.
    bool paintsBars() const { return x.pixels > 1.0; }

    /// Leftmost pixel of a column.
    int left(int column) const;
    /// First and last pixel of a row when painted as lines, both inclusive.
    int lineTop(int row) const;
    int lineBottom(int row) const;
    /// The rectangle of a bin when painted as a bar; a pen adds one pixel to the right and below.
    QRect bar(int row, int column) const;
};

} // namespace tarnis
