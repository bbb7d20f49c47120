// The picture of a map composed in memory, pixel for pixel what one drawing call for each bin would leave. No painter.
#pragma once

#include "tarnis/plots/binpixels_p.h"
#include "tarnis/plots/binview_p.h"

#include <vector>

namespace tarnis {

/// Composes the visible bins of a map. Rows are taken from the last to the first and a painted pixel is final, so that
/// what later rows cover is never computed.
class BinRaster {
public:
    /// What has been composed; valid until the next call.
    struct Picture {
        QRect area; ///< relative to the plot rectangle; empty if no bin reaches it
        const QRgb* pixels = nullptr; ///< of the top left corner of `area`; transparent where no bin is painted
        int stride = 0; ///< pixels from one line to the next
        bool isOpaque = false; ///< no pixel is transparent
    };

    /// True for views that compose() is made for: both axes ascend, bins are not larger than some widgets, and the plot
    /// rectangle lies in positive coordinates.
    static bool canCompose(const BinView& view);

    /// `deviceX` is added to X coordinates by the painter: bars that begin left of its device lose a pixel.
    Picture compose(const BinView& view, const BinRows& rows, BinPixels& converter, int deviceX);

private:
    /// Pixel lines of a row, relative to the plot rectangle and clipped to it; empty if `first` is above `last`.
    struct LineSpan {
        int first = 0;
        int last = -1;
        bool showsCorner = false; ///< `last` is the lowest line of a bar that is higher than one pixel
    };
    enum LineState : unsigned char { Untouched, HasGaps, Complete };
    static constexpr int noCorner = -1;

    void planColumns(const BinView& view, int deviceX);
    void planPixels();
    LineSpan linesOf(const BinView& view, int row) const;
    bool isCovered(const LineSpan& lines) const;
    const double* valuesOf(const QList<double>& row, int end);
    void composeRow(const double* values, const LineSpan& lines, BinPixels& converter);
    void spreadGroups();
    bool cornerIsLost() const;
    void paintLine(int y, bool losesCorner);
    Picture picture();

    QRgb* lineAt(int y)
    {
        return m_pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_size.width());
    }

    QSize m_size; ///< of the plot rectangle

    // Columns: those that begin at the same pixel form a group
    std::vector<int> m_firstColumn; ///< of each group, and the end of the last one
    std::vector<int> m_left; ///< first pixel of each group, relative to the plot rectangle
    int m_extent = 0; ///< pixels that a bin covers beyond its first one
    bool m_isSimple = false; ///< neighbouring groups touch or share one pixel
    bool m_oneColumnEach = false;
    int m_corner = noCorner; ///< pixel that a group loses in its lowest line
    std::size_t m_cornerGroup = 0;
    int m_firstPixel = 0; ///< leftmost and rightmost pixel that any group covers
    int m_lastPixel = -1;
    std::vector<int> m_groupOf; ///< of each pixel, from the leftmost one on
    std::vector<int> m_shared; ///< groups whose first pixel is the last one of the group before

    // The row at work
    std::vector<QRgb> m_groupPixels;
    std::vector<QRgb> m_rowPixels;
    std::vector<double> m_paddedRow; ///< a row that is too short, with empty bins behind it

    // The picture
    std::vector<QRgb> m_pixels;
    std::vector<LineState> m_lines;
};

} // namespace tarnis
