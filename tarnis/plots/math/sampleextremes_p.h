// Lowest and highest of a run of samples, at the speed of memory.
#pragma once

#include <QtGlobal>

namespace tarnis {

/// What a run of samples spans.
struct SampleExtremes {
    double low = 0.0;
    double high = 0.0;
    bool finite = true; ///< false if any sample is NaN or infinite; low and high mean nothing then
};

/// Extremes of `count` samples, at least one.
SampleExtremes extremesOf(const double* samples, qsizetype count);

/// The same with every sample at or below 0 taken for 1, as a log axis does.
SampleExtremes logExtremesOf(const double* samples, qsizetype count);

/// The smallest sample above `bound`, or `start` if none is below that. NaN is passed over.
double lowestAbove(double bound, const double* samples, qsizetype count, double start);

} // namespace tarnis
