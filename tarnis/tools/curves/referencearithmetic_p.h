// Comparing a bin with its reference, and the axis of the comparison. Numbers in and out.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QList>

#include <vector>

namespace tarnis {

enum class Comparison { Difference, Ratio, Significance };

/// A compared bin; NaN where it is not defined. The error is one standard deviation.
struct ComparedBin {
    double value = 0.0;
    double error = 0.0;
};

/// Compares a live bin with `norm` times that of the reference. Errors are those of counts, and NaN for what is no
/// count. If the live counts contain those of the reference (`isContained`, norm 1), only the counts since are
/// independent: their number is the variance.
ComparedBin comparedBin(Comparison comparison, double live, double reference, double norm, bool isContained);

/// True if no bin is below that of the reference, and at least one is above: the counts went on.
bool isContinuation(const QList<double>& live, const QList<double>& reference);

/// An axis about the value that means no difference, 1 for a ratio and 0 otherwise, that holds the finite values: its
/// half width is 1, 2 or 5 times a power of ten; that of a ratio begins at 0 at the least. One value in twenty may
/// be outside, so that a single bin does not flatten all others.
AxisRange comparisonAxis(Comparison comparison, std::vector<double> values);

} // namespace tarnis
