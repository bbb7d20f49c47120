// The samples of a curve by pixel columns. Numbers in and out.
#pragma once

#include "tarnis/tools/base/plotcurves_p.h"

#include <QList>

namespace tarnis {

class SampleBlocks;

/// Consecutive bins, both ends included, whose middles share a pixel column.
struct ColumnRun {
    int column = 0;
    qsizetype first = 0;
    qsizetype last = 0;

    friend bool operator==(const ColumnRun&, const ColumnRun&) = default;
};

/// The runs of the bins, in their order. All curves of a plot share them.
QList<ColumnRun> columnRuns(const BinPositions& positionOf, BinsInView bins);

/// The samples that share a pixel column.
struct EnvelopeColumn {
    int column = 0;
    double first = 0.0; ///< sample
    double last = 0.0; ///< sample
    double lowest = 0.0;
    double highest = 0.0;

    friend bool operator==(const EnvelopeColumn&, const EnvelopeColumn&) = default;
};

/// Which samples belong to an envelope.
enum class EnvelopeOf {
    Numbers, ///< what is finite
    Counts ///< see isCount()
};

/// An entry for each run that holds such samples; bins beyond the end of the curve are omitted. The result is the same
/// as that of testing every sample. `blocks` are those of a curve of one part, or null.
QList<EnvelopeColumn> envelopeOf(
    const QList<ColumnRun>& runs, const ShownCurve& curve, EnvelopeOf which, const SampleBlocks* blocks = nullptr);

/// Columns that a line connects: [begin, end) of a list of them.
struct ColumnPart {
    qsizetype begin = 0;
    qsizetype end = 0;

    friend bool operator==(const ColumnPart&, const ColumnPart&) = default;
};

/// The parts of a curve between runs without samples, where its line has a gap.
QList<ColumnPart> connectedParts(const QList<ColumnRun>& runs, const QList<EnvelopeColumn>& columns);

/// The mean of the finite samples of each run that has any: the runs of the envelope of numbers.
QList<double> meansOf(const QList<ColumnRun>& runs, const ShownCurve& curve, const SampleBlocks* blocks = nullptr);

} // namespace tarnis
