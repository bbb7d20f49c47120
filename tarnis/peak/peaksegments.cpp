// Runs of samples past a threshold, widened by a walk to either side.
#include "tarnis/peak/peaksearch_p.h"

namespace tarnis {

namespace {

// A walk ends at a sample that is not above zero; a NaN is one, so that walks among NaNs stay short.
bool endsWalk(double sample)
{
    return !(sample > 0.0);
}

// Walks downhill from the run's first sample. A walk that runs out keeps the run's start as position.
void walkLeft(const QList<double>& y, qsizetype begin, qsizetype runStart, PeakSegment& segment)
{
    segment.first = begin;
    segment.pos = runStart;
    for (qsizetype k = runStart - 1; k >= begin; --k) {
        if (y[k + 1] < y[k] || endsWalk(y[k])) {
            segment.first = k + 1;
            segment.pos = k + 1;
            return;
        }
    }
}

// Walks downhill from the first sample beyond the run, which belongs to the segment whatever its value.
qsizetype walkRight(const QList<double>& y, qsizetype runEnd, qsizetype end)
{
    qsizetype j = runEnd + 1;
    while (j < end && !(y[j - 1] < y[j]) && !endsWalk(y[j]))
        ++j;
    return j;
}

} // namespace

std::vector<PeakSegment> findPeakSegments(
    const QList<double>& y, qsizetype begin, qsizetype end, const PeakCriterion& criterion)
{
    std::vector<PeakSegment> segments;
    bool inPeak = false;
    qsizetype runStart = begin;
    for (qsizetype i = begin; i < end; ++i) {
        const bool past = criterion.isPast(y[i]);
        if (past && !inPeak)
            runStart = i;
        if (inPeak && !past && i - runStart >= criterion.width) {
            PeakSegment segment {};
            walkLeft(y, begin, runStart, segment);
            segment.last = walkRight(y, i, end);
            segments.push_back(segment);
        }
        inPeak = past;
    }
    return segments;
}

} // namespace tarnis
