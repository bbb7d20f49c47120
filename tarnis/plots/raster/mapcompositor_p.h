// Composes the picture of a map in memory. The result is pixel-identical to one drawing call for each bin. No painter.
#pragma once

#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/raster/bincolouring_avx2_p.h"
#include "tarnis/plots/raster/bincolouring_p.h"

#include <array>
#include <functional>
#include <vector>

namespace tarnis {

/// Composes the visible bins of a map, one pixel line after the other from the top. Of the rows that cover a line, the
/// last one is on top: where it has a non-empty bin, the rows below it are not evaluated.
class BinRaster {
public:
    /// A line of pixels of the picture, valid until the next one is composed.
    struct Line {
        int y = 0; ///< relative to the plot rectangle, as `x`
        int x = 0; ///< X of the first pixel
        int width = 0;
        const QRgb* pixels = nullptr; ///< transparent if no bin is painted
        bool isOpaque = false; ///< no pixel is transparent
    };
    using Sink = std::function<void(const Line&)>;

    /// True for views that compose() supports: both axes ascend, bins are not huge, and the plot rectangle has
    /// non-negative coordinates.
    static bool canCompose(const BinGeometry& view);

    /// Passes the picture to `sink` line by line from the top; all lines have the same X and width. Lines above and
    /// below all bins are omitted. `deviceX` is the painter's X offset: bars that begin left of its device lose a
    /// pixel.
    void compose(const BinGeometry& view, const BinRows& rows, BinColouring& converter, int deviceX, const Sink& sink);

private:
    /// Pixel lines of a row, relative to the plot rectangle and clipped to it; empty if `first` is above `last`.
    struct LineSpan {
        int first = 0;
        int last = -1;
        bool showsCorner = false; ///< `last` is the lowest line of a bar that is higher than one pixel
        bool isTopSomewhere = false; ///< no later row covers its last line
    };
    /// A row of bins as one line of pixels.
    struct RowLine {
        int row = -1; ///< none
        std::vector<QRgb> pixels; ///< and some space after them
        std::vector<int> gaps; ///< transparent pixels, with some space after them
        int gapCount = 0;
        bool losesCorner = false; ///< loses the corner in its lowest line
    };
    static constexpr int noCorner = -1;

    void planColumns(const BinGeometry& view, int deviceX);
    void planPixels();
    void planSpread();
    void planRows(const BinGeometry& view);
    LineSpan linesOf(const BinGeometry& view, int row) const;
    const double* valuesOf(const QList<double>& row);
    void fetchRow(int row) const;
    RowLine& lineOf(int row);
    void composeRow(int row, RowLine& line);
    void spreadGroups(QRgb* row);
    template <int block> void spreadTouching(QRgb* row) const;
    QRgb* groupPixels() { return m_groupPixels.data() + 1; }
    const QRgb* groupPixels() const { return m_groupPixels.data() + 1; }
    bool cornerIsLost() const;
    Line composeLine(int y, int topRow);
    bool isAlone(int y, int row) const;
    void startLine(int y, int row);
    void fillGaps(int y, int row);
    bool showsLoss(const RowLine& line, int y) const;

    const LineSpan& spanOf(int row) const { return m_rows[static_cast<std::size_t>(row - m_firstRow)]; }

    QSize m_size; ///< size of the plot rectangle
    const BinRows* m_bins = nullptr;
    BinColouring* m_converter = nullptr;

    // Columns: those that begin at the same pixel form a group
    std::vector<int> m_firstColumn; ///< first column of each group, and the end of the last group
    std::vector<int> m_left; ///< first pixel of each group, relative to the plot rectangle
    int m_extent = 0; ///< pixels that a bin covers beyond its first one
    bool m_isSimple = false; ///< neighbouring groups touch or share one pixel
    bool m_isPixelEach = false; ///< group i covers the one pixel i
    bool m_oneColumnEach = false;
    int m_corner = noCorner; ///< pixel that a group loses in its lowest line
    std::size_t m_cornerGroup = 0;
    int m_firstPixel = 0; ///< leftmost and rightmost pixel that any group covers
    int m_width = 0; ///< number of pixels from the leftmost to the rightmost
    std::vector<SpreadBlock> m_spread; ///< for simple columns with AVX2
    std::vector<QRgb> m_shared; ///< all bits set for a group whose first pixel is the last one of the group before

    // Rows
    int m_firstRow = 0;
    std::vector<LineSpan> m_rows; ///< lines of each visible row, from m_firstRow on

    // At work
    std::vector<QRgb> m_groupPixels; ///< pixel of each group, with one entry before and some space after them
    std::vector<double> m_paddedRow; ///< a row that is too short, padded with empty bins
    std::array<RowLine, 4> m_recent; ///< the last composed rows
    std::size_t m_nextRecent = 0;
    std::vector<int> m_gaps; ///< gaps of the current line
    std::vector<QRgb> m_gapPixels;
    std::vector<QRgb> m_line; ///< the current line, if it is composed of several rows
};

} // namespace tarnis
