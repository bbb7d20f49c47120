// The drawing of a curve's samples: lines that join them, columns, crosses. Consecutive samples in the same pixel
// column are merged if that covers exactly the pixels of one drawing call per sample; this requires opaque colours.
#pragma once

#include "tarnis/plots/math/curvescale_p.h"

#include <QLine>
#include <QList>
#include <QPoint>
#include <QRect>

namespace tarnis {

/// Consecutive samples, starting at index `firstIndex`. Not owned.
struct SampleRun {
    const double* values = nullptr;
    int firstIndex = 0;

    const double* from(int index) const { return values + (index - firstIndex); }
    double operator[](int index) const { return *from(index); }
};

/// What may be merged.
struct Merging {
    bool columns = false; ///< samples of one pixel column whose drawing is within `area`
    bool joins = false; ///< also, a line to the next column is omitted if the vertical lines of both cover it
    QRect area { QPoint(-pixelLimit, -pixelLimit), QPoint(pixelLimit, pixelLimit) };
};

/// A sample on the screen.
struct CurvePoint {
    QPoint pixel;
    bool zero = false; ///< the value counts as 0
};

/// Joins points by lines. Two zeros, and two points on one pixel, are not joined.
class CurveLines {
public:
    explicit CurveLines(const Merging& merging)
        : m_merging(merging)
    {
    }

    /// The next sample.
    void append(CurvePoint point);

    /// The next samples, at least one, all of one pixel column: the first and the last of them, and the highest and the
    /// lowest row. All that count as 0 must be on one row. Returns false and does nothing if they may not be merged.
    bool appendColumn(CurvePoint first, CurvePoint last, int topRow, int bottomRow);

    QList<QLine> lines; ///< the result so far

private:
    /// Rows of a vertical line; empty unless top is above bottom.
    struct Rows {
        int top = 0;
        int bottom = 0;
        bool covers(int row1, int row2) const;
    };
    void join(CurvePoint to, Rows rowsAtTo);
    bool isWithinColumns(QPoint to, Rows rowsAtTo) const;

    Merging m_merging;
    CurvePoint m_previous;
    Rows m_previousRows;
    bool m_hasPrevious = false;
};

/// Lines from sample to sample. `range` must be within the samples. Scale is SampleScale or FunctionScale.
template <typename Scale>
QList<QLine> joinSamples(
    const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y, const Merging& merging);

/// Columns of a chart: their width, and the fractional row of their lower ends.
struct ColumnShape {
    double pixelsPerSample = 0.0;
    double baseRow = 0.0;
    QRect rect(int column, int row) const;
};

/// A rectangle for each sample above 0, for QPainter::drawRects with pen and brush of one colour.
template <typename Scale>
QList<QRect> columnsOfSamples(const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y,
    const ColumnShape& shape, const Merging& merging);

/// The two lines of a cross at each sample.
template <typename Scale>
QList<QLine> crossesOfSamples(
    const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y, const Merging& merging);

} // namespace tarnis
