// Which curves a plot of many series shows, and the sums that they are. Works on the plot's records; no widget.
#pragma once

#include "tarnis/plots/math/curvescale_p.h"
#include "tarnis/plots/multivectorgraphwidget.h"

#include <QColor>
#include <QList>

#include <memory>

namespace tarnis {

using Series = MultiVectorGraphWidget::Data;
using AddType = MultiVectorGraphWidget::AddType;

/// The eight colours of the first records; sums take them in turn.
QColor rotationColor(int number);

/// A curve: the records that add up to it, in this order, and how it is drawn. Its length is that of the first record.
struct SummedCurve {
    QList<int> records;
    QColor color = Qt::white;
    bool enable = true;
};

/// The curves of a plot, hidden ones included. `groupSize` is at least 1.
QList<SummedCurve> curvesOf(const QList<Series>& series, AddType type, int groupSize);

/// One curve a group. A record starts the curve of its group over while that has no samples, takes the next colour and
/// sets `enable`; an empty one does so too.
QList<SummedCurve> curvesByGroup(const QList<Series>& series, int groupSize);

/// One curve a position, `groupSize` in all, started by the same rule; colour and `enable` are those of the record of
/// that number.
QList<SummedCurve> curvesByPosition(const QList<Series>& series, int groupSize);

/// One curve of all records, or of the enabled ones, white until the first gives its colour.
SummedCurve curveOfAll(const QList<Series>& series, bool enabledOnly);

/// Traces each record of the curve whose length is not that of the first.
void traceDifferentLengths(const QList<Series>& series, const SummedCurve& curve);

/// The sums of the curve's records over `range`, which lies within the first of them. Where another is shorter, it adds
/// its length only; a difference of lengths is traced.
std::unique_ptr<double[]> sumsOf(const QList<Series>& series, const SummedCurve& curve, SampleRange range);

/// All sums of the curve; shares the samples of a curve of one record.
QList<double> wholeSums(const QList<Series>& series, const SummedCurve& curve);

/// Samples of the first record of the curve: the length of the curve.
qsizetype lengthOf(const QList<Series>& series, const SummedCurve& curve);

/// The largest number of samples of any record, hidden ones included.
qsizetype longestSeries(const QList<Series>& series);

/// Number of records with samples.
int filledSeries(const QList<Series>& series);

/// An upper bound of what the curves of the type reach, from the largest value of each group; at least 0.
double maxOfCurves(const QList<Series>& series, const QList<double>& maxValues, AddType type, int groupSize);

/// The largest of the values, 0 if there is none. NaN is passed over.
double largestOf(const QList<double>& values);

/// The lower end of an automatic log axis: 1, or the smallest sample above 0 of all records if that is less. Samples
/// that count as 0 are passed over.
double lowestForLogAxis(const QList<Series>& series);

} // namespace tarnis
