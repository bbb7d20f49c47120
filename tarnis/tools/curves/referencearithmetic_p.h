// Compares a bin with its reference, and computes the axis of the comparison.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QList>

#include <optional>
#include <vector>

namespace tarnis {

enum class Comparison { Difference, Ratio, Significance };

/// A compared bin; NaN where it is not defined. The error is one standard deviation.
struct ComparedBin {
    double value = 0.0;
    double error = 0.0;
};

/// Compares a live bin with `norm` times that of the reference. Errors are those of counts, or NaN for values that are
/// not counts. If the live counts contain those of the reference (`isContained`), only the counts added since are
/// independent of it: without a norm their number is the variance of the difference.
ComparedBin comparedBin(Comparison comparison, double live, double reference, double norm, bool isContained);

/// The values of comparedBin() for `count` bins one after the other.
void comparedValues(Comparison comparison, const double* live, const double* reference, qsizetype count, double norm,
    bool isContained, double* values);

/// True if no bin is below that of the reference, and at least one is above: the same measurement, continued.
bool isContinuation(const QList<double>& live, const QList<double>& reference);

/// True if a bin is below that of the reference: the data have been cleared, or are those of another measurement. False
/// for different numbers of bins.
bool isBelow(const QList<double>& live, const QList<double>& reference);

/// The axis for the finite values, centred on the value for equality (1 for a ratio, otherwise 0). Its half width is 1,
/// 2 or 5 times a power of ten; the axis of a ratio begins at 0 or above. 5 % of the ratios may be outside, so that a
/// bin with few counts does not dominate the scale; differences are all inside. `shown` is the axis so far: it becomes
/// smaller only when the values leave a fifth of the next smaller one free, so that it does not tremble with live data.
AxisRange comparisonAxis(
    Comparison comparison, std::vector<double> values, const std::optional<AxisRange>& shown = std::nullopt);

} // namespace tarnis
