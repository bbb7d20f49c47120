#include "tarnis/plots/math/projection_p.h"

#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/csvtext_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

constexpr int edgeReach = 4;
constexpr int pointArm = 2; // of a cross, to each side

bool isNear(int a, int b)
{
    return qAbs(a - b) <= edgeReach;
}

/// Pixels per unit of an axis.
double scaleOf(AxisRange visible, int pixels)
{
    const double span = visible.max - visible.min;
    return span > 0.0 ? pixels / span : 0.0;
}

int countOf(qsizetype bins)
{
    return static_cast<int>(std::min<qsizetype>(bins, std::numeric_limits<int>::max()));
}

/// Adds the columns `first` to `end` of the rows of `span` to `sums`; rows that are too short end early.
void addRows(const BinRows& rows, int firstRow, int endRow, int first, int end, QList<double>& sums)
{
    double* sum = sums.data();
    for (int row = firstRow; row < endRow; ++row) {
        const QList<double>& values = rows.at(row);
        const int rowEnd = std::min(end, countOf(values.size()));
        for (int column = first; column < rowEnd; ++column)
            sum[column - first] += values.at(column);
    }
}

double sumOfRow(const QList<double>& values, int first, int end)
{
    double sum = 0.0;
    const int rowEnd = std::min(end, countOf(values.size()));
    for (int column = first; column < rowEnd; ++column)
        sum += values.at(column);
    return sum;
}

/// Stores the sum of one bin of the shown axis.
void enter(CutSums& sums, qsizetype entry, double sum, bool isInside, CutContent content)
{
    sums.total += sum;
    sums.peak = std::max(sums.peak, sum);
    if (isInside)
        sums.inside += sum;
    if (isInside || content == CutContent::Everything)
        sums.values[entry] = sum;
}

CutSums emptySums(const CutSpan& span)
{
    CutSums sums;
    const int count = std::max(span.end - span.first, 0);
    sums.values.resize(count, 0.0);
    sums.index.resize(count, 0.0);
    return sums;
}

} // namespace

CutEdge edgeAt(const QRect& cut, const QPoint& point)
{
    if (isNear(cut.left(), point.x()))
        return MinXEdge;
    if (isNear(cut.right(), point.x()))
        return MaxXEdge;
    if (isNear(cut.top(), point.y()))
        return MaxYEdge;
    if (isNear(cut.bottom(), point.y()))
        return MinYEdge;
    return NoEdge;
}

QRect cutPixels(AxisRange cutX, AxisRange cutY, AxisRange visibleX, AxisRange visibleY, const QRect& graph)
{
    const double scaleX = scaleOf(visibleX, graph.width());
    const double scaleY = scaleOf(visibleY, graph.height());
    const int left = limitedPixel((cutX.min - visibleX.min) * scaleX + graph.left());
    const int top = limitedPixel((visibleY.max - cutY.max) * scaleY + graph.top());
    const int width = limitedPixel((cutX.max - cutX.min) * scaleX);
    const int height = limitedPixel((cutY.max - cutY.min) * scaleY);
    return { QPoint(left, top), QPoint(left + width - 1, top + height - 1) };
}

AxisRange snappedToBins(AxisRange range, const BinAxis& axis, qsizetype bins)
{
    const int first = std::max(roundToInt(std::floor((range.min - axis.initMin) / axis.step)), 0);
    const int end = std::min(roundToInt(std::ceil((range.max - axis.initMin) / axis.step)), countOf(bins));
    return { first * axis.step + axis.initMin, end * axis.step + axis.initMin };
}

AxisRange roundedToBins(AxisRange range, qsizetype bins)
{
    const double lower = std::min(range.min, range.max);
    const double upper = std::min(static_cast<double>(bins), std::max(range.min, range.max));
    return { lower < 0.0 ? 0.0 : std::round(lower), std::round(upper) };
}

double edgeValue(CutEdge edge, QPoint point, AxisRange visibleX, AxisRange visibleY, const QRect& graph)
{
    const int x = std::max(graph.left(), std::min(point.x(), graph.right()));
    const int y = std::max(graph.top(), std::min(point.y(), graph.bottom()));
    const AxisMapping axisX = AxisMapping::horizontal(visibleX, graph);
    const AxisMapping axisY = AxisMapping::vertical(visibleY, graph);
    switch (edge) {
    case MinXEdge:
        return axisX.valueAfter(x - graph.left());
    case MaxXEdge:
        return axisX.valueBefore(graph.right() - x);
    case MaxYEdge:
        return axisY.valueBefore(y - graph.top());
    default:
        return axisY.valueAfter(graph.bottom() - y);
    }
}

QRect pointPixels(const QPointF& point, AxisRange visibleX, AxisRange visibleY, const QRect& graph)
{
    const double x = graph.left() + pixelsFromMin(point.x(), visibleX, graph.width());
    const double y = graph.bottom() - pixelsFromMin(point.y(), visibleY, graph.height());
    return { QPoint(limitedPixel(x - pointArm), limitedPixel(y - pointArm)),
        QPoint(limitedPixel(x + pointArm), limitedPixel(y + pointArm)) };
}

CutSpan cutSpan(const BinAxis& axis, AxisRange cut, qsizetype bins)
{
    const auto inBins = [&axis](double value) { return axis.manual ? (value - axis.initMin) / axis.step : value; };
    const int count = countOf(bins);
    CutSpan span;
    span.first = std::max(roundToInt(std::floor(inBins(axis.min))), 0);
    span.end = std::max(0, std::min(roundToInt(std::ceil(inBins(axis.max))), count));
    span.cutFirst = std::max(roundToInt(inBins(cut.min)), 0);
    span.cutEnd = std::min(roundToInt(inBins(cut.max)), count);
    span.step = axis.step;
    span.initMin = axis.initMin;
    return span;
}

CutSums sumsByColumn(const BinRows& rows, const CutSpan& x, const CutSpan& y, CutContent content)
{
    CutSums sums = emptySums(x);
    QList<double> columns(sums.values.size(), 0.0);
    if (content != CutContent::Nothing)
        addRows(rows, y.cutFirst, y.cutEnd, x.first, x.end, columns);
    for (int column = x.first; column < x.end; ++column) {
        const int entry = column - x.first;
        sums.index[entry] = x.valueOf(column);
        if (content != CutContent::Nothing)
            enter(sums, entry, columns.at(entry), x.isInside(column), content);
    }
    return sums;
}

CutSums sumsByRow(const BinRows& rows, const CutSpan& x, const CutSpan& y, CutContent content)
{
    CutSums sums = emptySums(y);
    for (int row = y.end - 1; row >= y.first; --row) {
        const int entry = y.end - 1 - row;
        sums.index[entry] = y.valueOf(row);
        if (content != CutContent::Nothing)
            enter(sums, entry, sumOfRow(rows.at(row), x.cutFirst, x.cutEnd), y.isInside(row), content);
    }
    return sums;
}

void sumVisible(
    const BinRows& rows, const CutSpan& x, const CutSpan& y, QList<double>& horizontal, QList<double>& vertical)
{
    horizontal.clear();
    horizontal.resize(std::max(x.end - x.first, 0), 0.0);
    addRows(rows, y.first, y.end, x.first, x.end, horizontal);
    vertical.clear();
    for (int row = y.first; row < y.end; ++row)
        vertical.append(sumOfRow(rows.at(row), x.first, x.end));
}

QString cutLabel(const QString& name, double from, double to)
{
    return QStringLiteral("%1 %2-%3").arg(name, plainNumber(from), plainNumber(to));
}

int cutWindowExtent(int plotLength)
{
    return plotLength > 449 ? plotLength / 3 : 150;
}

} // namespace tarnis
