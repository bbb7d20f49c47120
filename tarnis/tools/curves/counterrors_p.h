// Error intervals of counts, quick enough for every bin of a plot. Numbers in and out.
#pragma once

#include "tarnis/analysis/countstatistics.h"

namespace tarnis {

/// True for 0 and whole numbers above it: only these have the errors of counts.
bool isCount(double value);

/// The central interval of 68.27 % of the mean behind a count. Exact up to 1000 counts; beyond them by the
/// approximation of E. Wilson and M. Hilferty (1931), which differs there by less than 1e-4 of the interval's width.
/// NaN at both ends for what is not a count.
CountInterval quickPoissonInterval(double count);

/// count - sqrt(count) to count + sqrt(count); NaN at both ends for what is not a count.
CountInterval squareRootInterval(double count);

} // namespace tarnis
