// Runs of samples past a threshold, extended to both sides.
#include "tarnis/peak/peaksearch_p.h"

namespace tarnis {

namespace {

// An extension ends at a sample that is not above zero. This includes NaN, so that extensions among NaNs stay short.
bool endsWalk(double sample)
{
    return !(sample > 0.0);
}

// Extends downhill from the run's first sample. If this reaches the start of the range, the position is the start of
// the run.
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

// Extends downhill from the first sample after the run, which always belongs to the segment.
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
