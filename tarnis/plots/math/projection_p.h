// Arithmetic of the cut through a map: the summed bins, the positions of its edges, and how a drag changes them. Pure
// functions without a widget.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"

#include <QPointF>
#include <QString>

namespace tarnis {

/// The edge that the mouse drags; the values of XY2DGraphWidget::m_cutDragEdge.
enum CutEdge : int { NoEdge = 0, MinXEdge = 1, MaxXEdge = 2, MaxYEdge = 3, MinYEdge = 4 };

/// The edge within 4 pixels of a point; of several, the one with the lowest number.
CutEdge edgeAt(const QRect& cut, const QPoint& point);

/// The cut rectangle in pixels, by truncation; the extent is empty if the visible range does not ascend.
QRect cutPixels(AxisRange cutX, AxisRange cutY, AxisRange visibleX, AxisRange visibleY, const QRect& graph);

/// Widens a range to complete bins. Its lower end is only limited from below, by 0, and its upper end only from above,
/// by the number of bins, so a range beyond the data can become reversed.
AxisRange snappedToBins(AxisRange range, const BinAxis& axis, qsizetype bins);

/// Rounds a range, in either order, to bin numbers: the lower end is at least 0, the upper end at most the number of
/// bins.
AxisRange roundedToBins(AxisRange range, qsizetype bins);

/// Value of an edge that is dropped at a pixel, which is moved into the graph first.
double edgeValue(CutEdge edge, QPoint point, AxisRange visibleX, AxisRange visibleY, const QRect& graph);

/// The corners of a cross on a map, by truncation.
QRect pointPixels(const QPointF& point, AxisRange visibleX, AxisRange visibleY, const QRect& graph);

/// Bins of one axis of a cut. All ends are excluded and can be before their beginnings.
struct CutSpan {
    int first = 0; ///< visible
    int end = 0; ///< not below 0
    int cutFirst = 0; ///< first bin inside the rectangle
    int cutEnd = 0;
    double step = 0.0;
    double initMin = 0.0;

    double valueOf(int bin) const { return bin * step + initMin; }
    bool isInside(int bin) const { return bin >= cutFirst && bin < cutEnd; }
};

CutSpan cutSpan(const BinAxis& axis, AxisRange cut, qsizetype bins);

/// A projection of the visible bins.
struct CutSums {
    QList<double> values;
    QList<double> index; ///< axis value of each entry
    double peak = 0.0; ///< largest sum, at least 0
    double inside = 0.0; ///< total of the sums inside of the rectangle
    double total = 0.0; ///< total of all sums
};

enum class CutContent { Nothing, Everything, InsideOnly };

/// For each visible column, from left to right, the sum over the rows inside of the rectangle.
CutSums sumsByColumn(const BinRows& rows, const CutSpan& x, const CutSpan& y, CutContent content);

/// For each visible row, from the top down, the sum over the columns inside of the rectangle.
CutSums sumsByRow(const BinRows& rows, const CutSpan& x, const CutSpan& y, CutContent content);

/// Sums of the visible bins by column from left to right, and by row from the bottom up.
void sumVisible(
    const BinRows& rows, const CutSpan& x, const CutSpan& y, QList<double>& horizontal, QList<double>& vertical);

/// Screen positions of a plot and its window.
struct ScreenPlace {
    QRect plot;
    int frameRight = 0;
    int frameTop = 0;
};

/// "name from-to" for the summed range.
QString cutLabel(const QString& name, double from, double to);

/// Extent of a cut window beside a plot of that length.
int cutWindowExtent(int plotLength);

} // namespace tarnis
