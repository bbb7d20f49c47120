// Groups the series of a plot into curves, and computes their sums. Works on the plot's records, without a widget.
#pragma once

#include "tarnis/plots/math/curvescale_p.h"
#include "tarnis/plots/multivectorgraphwidget.h"

#include <QColor>
#include <QList>

#include <memory>

namespace tarnis {

using Series = MultiVectorGraphWidget::Data;
using AddType = MultiVectorGraphWidget::AddType;

/// The eight colours of the first records; sums use them cyclically.
QColor rotationColour(int number);

/// A curve: the records that are summed, in this order, and how it is drawn. Its length is that of the first record.
struct SummedCurve {
    QList<int> records;
    QColor colour = Qt::white;
    bool enable = true;
};

/// The curves of a plot, including hidden ones. `groupSize` is at least 1.
QList<SummedCurve> curvesOf(const QList<Series>& series, AddType type, int groupSize);

/// One curve per group. As long as the curve of a group has no samples, each record of the group, even an empty one,
/// restarts it with the next colour and its `enable`.
QList<SummedCurve> curvesByGroup(const QList<Series>& series, int groupSize);

/// One curve per position, `groupSize` in total, started by the same rule; colour and `enable` are those of the record
/// with that number.
QList<SummedCurve> curvesByPosition(const QList<Series>& series, int groupSize);

/// One curve of all records, or of the enabled ones, in the colour of the first one, or white.
SummedCurve curveOfAll(const QList<Series>& series, bool enabledOnly);

/// Writes a trace for each record of the curve whose length differs from the first.
void traceDifferentLengths(const QList<Series>& series, const SummedCurve& curve);

/// The sums of the curve's records over `range`, which must be within the first record. Shorter records contribute only
/// their samples; a different length is traced.
std::unique_ptr<double[]> sumsOf(const QList<Series>& series, const SummedCurve& curve, SampleRange range);

/// All sums of the curve; shares the samples if the curve has one record.
QList<double> wholeSums(const QList<Series>& series, const SummedCurve& curve);

/// Samples of the first record of the curve: the length of the curve.
qsizetype lengthOf(const QList<Series>& series, const SummedCurve& curve);

/// The largest number of samples of any record, including hidden ones.
qsizetype longestSeries(const QList<Series>& series);

/// Number of records with samples.
int filledSeries(const QList<Series>& series);

/// An upper bound of the curves of this type, from the largest value of each group; at least 0.
double maxOfCurves(const QList<Series>& series, const QList<double>& maxValues, AddType type, int groupSize);

/// The largest value, 0 if there are none. NaN is ignored.
double largestOf(const QList<double>& values);

/// The lower end of an automatic log axis: 1, or the smallest sample above 0 of all records if that is less. Samples
/// that count as 0 are ignored.
double lowestForLogAxis(const QList<Series>& series);

} // namespace tarnis
