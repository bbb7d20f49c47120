// Which bins of a map are visible and where they stand on the screen. Values in, pixels out; no painter.
#pragma once

#include <QRect>

namespace tarnis {

/// Cuts the fraction off. Positions far outside of any widget, and those that are not numbers, are cut to a limit that
/// leaves a paint engine room to reckon with.
int limitedPixel(double position);

/// One axis of a map. Bins count from 0 at `initMin`.
struct BinAxis {
    double min = 0.0; ///< visible range, axis units
    double max = 0.0;
    double initMin = 0.0;
    bool manual = false; ///< `step` counts, else `resolution`
    double step = 0.0; ///< axis units per bin
    unsigned int resolution = 1; ///< pixel sizes are multiplied by it; the bins to visit stay the same
};

/// The bins of one axis that are visited.
struct BinSpan {
    double pixels = 0.0; ///< per bin; negative or not finite for a reversed or empty range
    double low = 0.0; ///< visible bounds as bin numbers
    double high = 0.0;
    int first = 0;
    int end = 0; ///< excluded; from 0 to the number of bins, possibly below `first`
};

/// `bins` is the number of bins of the axis, `pixels` its length on the screen. A bound that is not a number counts as
/// lying below bin 0.
BinSpan visibleBins(const BinAxis& axis, int pixels, qsizetype bins);

/// Where the bins stand, by limitedPixel(). Row 0 is at the bottom.
struct BinView {
    QRect rect; ///< the plot rectangle
    BinSpan x;
    BinSpan y;

    /// True if bins are painted as bars, else as vertical lines one pixel wide.
    bool paintsBars() const { return x.pixels > 1.0; }

    /// Leftmost pixel of a column.
    int left(int column) const;
    /// Highest and lowest pixel of a row as lines paint it, both included.
    int lineTop(int row) const;
    int lineBottom(int row) const;
    /// The rectangle of a bin as bars paint it; a pen adds one pixel to the right of it and below.
    QRect bar(int row, int column) const;
};

} // namespace tarnis
