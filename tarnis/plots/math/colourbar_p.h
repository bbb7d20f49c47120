// Arithmetic of the colour bar.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"

namespace tarnis {

/// The number of intervals that fit: `wanted`, or as many as have space for a line of text each, at least 1.
int fittingIntervals(int wanted, int barHeight, int lineHeight);

/// Value at mark `mark` of `intervals`, counted from the bottom. On a log scale the marks are at equal distances of the
/// exponent, and an end at or below 0 counts as 1.
double colourBarValue(AxisRange range, bool logScale, int mark, int intervals);

/// As above, at equal distances of the square root; an end below 0 counts as 0.
double squareRootBarValue(AxisRange range, int mark, int intervals);

} // namespace tarnis
