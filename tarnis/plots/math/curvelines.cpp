#include "tarnis/plots/math/curvelines_p.h"

#include "tarnis/plots/math/sampleextremes_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tarnis {

namespace {

constexpr int maxLinesAtFirst = 1024;

/// The distance of two pixels may exceed the range of int.
qint64 distance(int a, int b)
{
    return std::abs(qint64(a) - b);
}

bool countsAsZero(double value)
{
    return plotEqual(value, 0.0);
}

template <typename Scale>
void joinEverySample(
    CurveLines& curve, const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y)
{
    for (int i = range.begin; i < range.end; ++i) {
        const double value = samples[i];
        curve.append({ QPoint(x.pixel(i), y.pixel(value)), countsAsZero(value) });
    }
}

// All samples of [begin, end) are in one column.
void joinColumn(CurveLines& curve, const SampleRun& samples, int begin, int end, int column, const ValueScale& y)
{
    const auto point = [&](int index) {
        const double value = samples[index];
        return CurvePoint { QPoint(column, y.pixel(value)), countsAsZero(value) };
    };
    if (end - begin == 1)
        return curve.append(point(begin));
    const bool logScale = y.kind() == ValueScale::Kind::Log;
    const double* run = samples.from(begin);
    const SampleExtremes extremes = logScale ? logExtremesOf(run, end - begin) : extremesOf(run, end - begin);
    // On a log axis a tiny value counts as 0 but is far below it, so it matters that lines between zeros are not drawn.
    if (extremes.finite && !(logScale && extremes.low <= DBL_EPSILON)) {
        const CurvePoint first = point(begin);
        const CurvePoint last = point(end - 1);
        // Fast path: on a smooth curve the ends are the extremes.
        const auto rowOf = [&](double value) {
            return value == samples[begin]  ? first.pixel.y()
                : value == samples[end - 1] ? last.pixel.y()
                                            : y.pixel(value);
        };
        if (curve.appendColumn(first, last, rowOf(extremes.high), rowOf(extremes.low)))
            return;
    }
    for (int i = begin; i < end; ++i)
        curve.append(point(i));
}

// Records which rows of the current pixel column contain a cross.
class CrossRows {
public:
    /// False if the pixel already contains one. Rows far outside of a screen are not recorded.
    bool insert(int column, int row)
    {
        if (column != m_column || m_mark == 0) {
            m_column = column;
            ++m_mark;
        }
        if (row < 0 || row >= rowCount)
            return true;
        int& mark = m_marks[static_cast<std::size_t>(row)];
        if (mark == m_mark)
            return false;
        mark = m_mark;
        return true;
    }

private:
    static constexpr int rowCount = 4096;
    std::vector<int> m_marks = std::vector<int>(rowCount);
    int m_column = 0;
    int m_mark = 0;
};

bool rowsFollowValues(const ValueScale& y)
{
    return y.isMonotone() && (y.kind() == ValueScale::Kind::Log || y.zeroesShareARow());
}

// The tallest of the columns of [begin, end), which hides the others if none extends below the base row. Returns false
// and appends nothing if that is not certain.
bool appendTallest(QList<QRect>& rects, const SampleRun& samples, int begin, int end, int column, const ValueScale& y,
    const ColumnShape& shape, const Merging& merging)
{
    const double* run = samples.from(begin);
    const SampleExtremes extremes = extremesOf(run, end - begin);
    if (!extremes.finite)
        return false;
    if (extremes.high <= 0.0)
        return true;
    const double lowest = lowestAbove(0.0, run, end - begin, extremes.high);
    const QRect tallest = shape.rect(column, y.pixel(extremes.high));
    if (!(y.pixel(lowest) <= shape.baseRow) || !merging.area.contains(tallest.topLeft())
        || !merging.area.contains(tallest.bottomRight()))
        return false;
    rects.append(tallest);
    return true;
}

} // namespace

bool CurveLines::Rows::covers(int row1, int row2) const
{
    return top < bottom && top <= row1 && row1 <= bottom && top <= row2 && row2 <= bottom;
}

void CurveLines::append(CurvePoint point)
{
    join(point, Rows());
    m_previous = point;
    m_previousRows = Rows();
    m_hasPrevious = true;
}

bool CurveLines::appendColumn(CurvePoint first, CurvePoint last, int topRow, int bottomRow)
{
    if (!m_merging.area.contains(first.pixel.x(), topRow) || !m_merging.area.contains(first.pixel.x(), bottomRow))
        return false;
    const Rows rows { topRow, bottomRow };
    join(first, rows);
    if (topRow < bottomRow)
        lines.append(QLine(last.pixel.x(), topRow, last.pixel.x(), bottomRow));
    m_previous = last;
    m_previousRows = rows;
    m_hasPrevious = true;
    return true;
}

bool CurveLines::isWithinColumns(QPoint to, Rows rowsAtTo) const
{
    const QPoint from = m_previous.pixel;
    if (!m_merging.joins || distance(to.x(), from.x()) != 1)
        return false;
    const bool isStep = distance(to.y(), from.y()) <= 1; // its ends are all its pixels
    return m_previousRows.covers(from.y(), isStep ? from.y() : to.y())
        && rowsAtTo.covers(isStep ? to.y() : from.y(), to.y());
}

void CurveLines::join(CurvePoint to, Rows rowsAtTo)
{
    const bool nothing = !m_hasPrevious || (m_previous.zero && to.zero) || m_previous.pixel == to.pixel;
    if (!nothing && !isWithinColumns(to.pixel, rowsAtTo))
        lines.append(QLine(m_previous.pixel, to.pixel));
}

template <typename Scale>
QList<QLine> joinSamples(
    const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y, const Merging& merging)
{
    CurveLines curve(merging);
    curve.lines.reserve(std::clamp(range.end - range.begin, 0, maxLinesAtFirst));
    if (!merging.columns || !rowsFollowValues(y)) {
        joinEverySample(curve, samples, range, x, y);
        return curve.lines;
    }
    for (int begin = range.begin; begin < range.end;) {
        const int end = x.endOfColumn(begin, range.end);
        joinColumn(curve, samples, begin, end, x.pixel(begin), y);
        begin = end;
    }
    return curve.lines;
}

// Clamps the edges, not the size: a column that begins far above the screen still ends at the base row.
QRect ColumnShape::rect(int column, int row) const
{
    const auto farEdge = [](int near, double size) {
        return truncateToPixel(near + (std::isnan(size) ? 0.0 : std::trunc(size)) - 1.0);
    };
    // Half the limit, so that width and height are within int too.
    const auto bounded = [](int edge) { return std::clamp(edge, -pixelLimit / 2, pixelLimit / 2); };
    const int left = truncateToPixel(column - pixelsPerSample * 0.5);
    return QRect(QPoint(bounded(left), bounded(row)),
        QPoint(bounded(farEdge(left, pixelsPerSample)), bounded(farEdge(row, baseRow - row))));
}

template <typename Scale>
QList<QRect> columnsOfSamples(const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y,
    const ColumnShape& shape, const Merging& merging)
{
    QList<QRect> rects;
    const bool mayMerge = merging.columns && y.isMonotone();
    for (int begin = range.begin; begin < range.end;) {
        const int column = x.pixel(begin);
        const int end = mayMerge ? x.endOfColumn(begin, range.end) : begin + 1;
        if (end - begin == 1 || !appendTallest(rects, samples, begin, end, column, y, shape, merging)) {
            for (int i = begin; i < end; ++i) {
                if (samples[i] > 0.0)
                    rects.append(shape.rect(column, y.pixel(samples[i])));
            }
        }
        begin = end;
    }
    return rects;
}

template <typename Scale>
QList<QLine> crossesOfSamples(
    const SampleRun& samples, SampleRange range, const Scale& x, const ValueScale& y, const Merging& merging)
{
    QList<QLine> lines;
    CrossRows rows;
    for (int i = range.begin; i < range.end; ++i) {
        const int column = x.pixel(i);
        const int row = y.pixel(samples[i]);
        if (merging.columns && !rows.insert(column, row))
            continue;
        lines.append(QLine(column - 2, row - 2, column + 2, row + 2));
        lines.append(QLine(column + 2, row - 2, column - 2, row + 2));
    }
    return lines;
}

template QList<QLine> joinSamples(const SampleRun&, SampleRange, const SampleScale&, const ValueScale&, const Merging&);
template QList<QLine> joinSamples(
    const SampleRun&, SampleRange, const FunctionScale&, const ValueScale&, const Merging&);
template QList<QRect> columnsOfSamples(
    const SampleRun&, SampleRange, const SampleScale&, const ValueScale&, const ColumnShape&, const Merging&);
template QList<QRect> columnsOfSamples(
    const SampleRun&, SampleRange, const FunctionScale&, const ValueScale&, const ColumnShape&, const Merging&);
template QList<QLine> crossesOfSamples(
    const SampleRun&, SampleRange, const SampleScale&, const ValueScale&, const Merging&);
template QList<QLine> crossesOfSamples(
    const SampleRun&, SampleRange, const FunctionScale&, const ValueScale&, const Merging&);

} // namespace tarnis
