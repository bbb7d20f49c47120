// Minimum and maximum of a run of samples, limited only by memory bandwidth.
#pragma once

#include <QtGlobal>

namespace tarnis {

/// The extremes of a run of samples.
struct SampleExtremes {
    double low = 0.0;
    double high = 0.0;
    bool finite = true; ///< false if any sample is NaN or infinite; low and high are then meaningless
};

/// Extremes of `count` samples, at least one.
SampleExtremes extremesOf(const double* samples, qsizetype count);

/// As above, with every sample at or below 0 counted as 1, as on a log axis.
SampleExtremes logExtremesOf(const double* samples, qsizetype count);

/// Whether all samples are whole numbers of at least 0, or infinite.
bool areIntegerCounts(const double* samples, qsizetype count);

/// The smallest sample above `bound`, or `start` if none is below that. NaN is ignored.
double lowestAbove(double bound, const double* samples, qsizetype count, double start);

} // namespace tarnis
