// Antialiased curves, drawn in a time proportional to their pixels, not their samples. No painter.
#pragma once

#include "tarnis/plots/math/curvelines_p.h"

#include <QImage>
#include <QRgb>

#include <functional>
#include <vector>

namespace tarnis {

/// How a styled curve joins its samples.
enum class CurveShape {
    Lines, ///< joined middles of the bins
    Steps, ///< the outline of the bins
    Columns, ///< filled down to the base
    Points ///< a disc at the middle of each bin
};

/// Rows of values, in fractions of a pixel. NaN has no row.
struct SmoothRows {
    bool isLog = false;
    double minimum = 0.0; ///< value at the bottom; its logarithm on a logarithmic axis
    double pixelsPerUnit = 0.0; ///< pixels per unit or per decade; negative on a reversed axis
    double bottom = 0.0; ///< row of the minimum
    double limit = 1e6; ///< rows further away are clamped to it

    /// On a logarithmic axis, values at or below 0 are below everything, on a reversed one above it.
    double at(double value) const;
};

/// Columns of bins: bin i extends from edge(i) to edge(i + 1).
struct SmoothColumns {
    double origin = 0.0; ///< left edge of bin 0
    double pixelsPerBin = 1.0; ///< negative on a reversed axis
    std::function<double(double)> function; ///< position by bin number, for bins of different widths; must be monotone

    double edge(double bin) const { return function ? function(bin) : origin + pixelsPerBin * bin; }
};

/// One curve to draw.
struct SmoothCurve {
    SampleRun samples;
    SampleRange range; ///< the range to draw, which `samples` must contain
    CurveShape shape = CurveShape::Lines;
    double width = 1.5; ///< width of the line or diameter of the discs in pixels
    double base = 0.0; ///< row of the lower end of columns
    QRgb colour = 0xff000000;
};

/// Collects curves in an image. Each pixel column is cut into a few strips; in each of them the curve extends exactly
/// from its highest to its lowest row, and the covered fraction of a pixel is the opacity. So no sample is omitted,
/// however many there are in a column, and the order of the samples in a strip does not matter.
class CurveCoverage {
public:
    /// Clears the image to transparent, of that size.
    void begin(QSize size);
    /// Draws over the previous content. NaN samples leave a gap.
    void add(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows);
    /// Premultiplied.
    const QImage& image() const { return m_image; }

private:
    struct Span { // rows of a strip; empty while the top is below the bottom
        float top;
        float bottom;
    };
    struct Tile { // covered rows of a few pixel columns; empty while the bottom is above the top
        int top;
        int bottom;
    };
    struct Bins;
    std::size_t tileSize() const;
    void clearSpans();
    void widen(int strip, double a, double b);
    void joinPoints(double u0, double row0, double u1, double row1);
    void fill(double u0, double u1, double a, double b);
    void addLines(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows);
    void addSteps(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows);
    void addColumns(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows);
    void addPoints(const SmoothCurve& curve, const SmoothColumns& columns, const SmoothRows& rows);
    void thicken(double radius);
    void cover();
    void coverStrip(int strip, Span span);
    void blend(QRgb colour, float opacity);

    QImage m_image;
    int m_width = 0;
    int m_height = 0;
    int m_first = 0; // strips with a span
    int m_last = -1;
    std::vector<Span> m_spans;
    std::vector<Span> m_thick;
    std::vector<Tile> m_tiles;
    std::vector<float> m_slopes; // change of coverage from row to row: tile by tile, in a tile line by line
};

} // namespace tarnis
