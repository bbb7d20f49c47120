// Error intervals of counts, fast enough for every bin of a plot.
#pragma once

#include "tarnis/analysis/countstatistics.h"

namespace tarnis {

/// True for non-negative integers: only these have count errors.
bool isCount(double value);

/// The central 68.27 % interval of the mean for an observed count. Exact up to 1000 counts; beyond them by the
/// approximation of E. Wilson and M. Hilferty (1931), which differs there by less than 1e-4 of the interval's width.
/// NaN at both ends for what is not a count.
CountInterval quickPoissonInterval(double count);

/// count - sqrt(count) to count + sqrt(count); NaN at both ends for what is not a count.
CountInterval squareRootInterval(double count);

} // namespace tarnis
