// Arithmetic of an axis: tick values, rounded maxima, positions of ticks and grid lines. Pure functions. The order of
// the floating-point operations is fixed, so that round ranges are on whole pixels.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QList>
#include <QRect>

namespace tarnis {

/// log10(x) for x above 0, else 0: the floor of every logarithm on a Y axis.
double floorLog10(double x);

/// Round values from `a` to `b` with a step of 1, 2 or 5 times a power of ten, the largest below a quarter of the
/// range; descending if a is above b. If `decimal` is 0, no step is below 1; otherwise none is below 0.001. `decimal`
/// receives the number of decimals of a step below 1. Never empty; a NaN end yields one NaN.
QList<double> calcTicks(double a, double b, int& decimal);

/// Rounds a maximum up to a multiple of a step of the same rule, which may be below 1 here. `ticks` receives the number
/// of steps, at least 4. 0 stays 0; negative and non-finite values yield NaN.
double adjustAxis(double value, unsigned int& ticks);

/// The first of 1, 10, 100 and so on that is not below `value`; 1 for NaN.
double adjustLogAxis(double value);

/// Ticks of an axis in plot order, both ends of the range included, and the distance of the inner ones.
struct AxisTicks {
    QList<double> values;
    double step = 0.0; ///< 0 on a log axis and if there is only one inner tick
};

/// Adds the ends of the range to the ticks of calcTicks(), unless they are ticks already.
AxisTicks linearTicks(QList<double> inner, AxisRange range);

/// The ends of the range and the powers of ten between them. A minimum that is a power of ten is listed twice.
AxisTicks logTicks(AxisRange range);

/// Pixels from the lower end of an axis of that length to a value. Multiplies before it divides, so that round values
/// of a round range are on whole pixels. Not finite where the range is empty.
double pixelsFromMin(double value, AxisRange range, int length);

/// Pixel column of a value. Undefined positions (an empty range) are far outside.
int columnOf(double value, AxisRange x, const QRect& graph);

/// Pixel row of a value; the bottom of the graph if the range is empty.
int rowOf(double value, AxisRange y, bool logScale, const QRect& graph);

/// Columns of the vertical grid lines, strictly inside the graph: one on each inner tick, one halfway to the next, and
/// one half a step before the first inner tick.
QList<int> gridColumns(const AxisTicks& ticks, AxisRange x, const QRect& graph);

/// Rows of the horizontal grid lines, by the same rule; a log axis has no half lines.
QList<int> gridRows(const AxisTicks& ticks, AxisRange y, bool logScale, const QRect& graph);

} // namespace tarnis
