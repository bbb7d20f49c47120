// The search for segments, apart from their fit.
#pragma once

#include <QList>

#include <vector>

namespace tarnis {

/// What makes a run of samples a peak.
struct PeakCriterion {
    double threshold;
    int width; ///< least number of samples past the threshold
    bool peak; ///< past the threshold: true >=, false <=

    bool isPast(double sample) const { return peak ? sample >= threshold : sample <= threshold; }
};

/// One run past the threshold, widened by its two walks.
struct PeakSegment {
    qsizetype first; ///< first sample of the segment
    qsizetype last; ///< one past its last sample
    qsizetype pos; ///< where the fit in index mode takes the first sample to be: the start of the run instead of
                   ///< `first` if the walk to the left reached the start of the range
};

/// The segments among samples begin..end-1, in the order of their runs; 0 <= begin, end <= y.size(). Segments may
/// overlap. A run of fewer than width samples and one that is open at the end give none.
std::vector<PeakSegment> findPeakSegments(
    const QList<double>& y, qsizetype begin, qsizetype end, const PeakCriterion& criterion);

} // namespace tarnis
