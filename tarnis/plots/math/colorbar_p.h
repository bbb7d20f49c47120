// Arithmetic of the colour bar.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"

namespace tarnis {

/// Intervals that fit: `wanted`, or as many as leave a line of text to each, at least 1.
int fittingIntervals(int wanted, int barHeight, int lineHeight);

/// Value at mark `mark` of `intervals`, counted from the bottom. On a log scale the marks are at equal distances of the
/// exponent, and an end at or below 0 counts as 1.
double colorBarValue(AxisRange range, bool logScale, int mark, int intervals);

/// The same at equal distances of the square root; an end below 0 counts as 0.
double squareRootBarValue(AxisRange range, int mark, int intervals);

} // namespace tarnis
