// The search for segments, separate from their fit.
#pragma once

#include <QList>

#include <vector>

namespace tarnis {

/// The criterion by which a run of samples is a peak.
struct PeakCriterion {
    double threshold;
    int width; ///< minimum number of samples past the threshold
    bool peak; ///< past the threshold means: true >=, false <=

    bool isPast(double sample) const { return peak ? sample >= threshold : sample <= threshold; }
};

/// One run past the threshold, extended to both sides.
struct PeakSegment {
    qsizetype first; ///< first sample of the segment
    qsizetype last; ///< one past its last sample
    qsizetype pos; ///< position of the first sample in an index-mode fit: the start of the run instead of `first` if
                   ///< the extension to the left reached the start of the range
};

/// The segments among samples begin..end-1, in the order of their runs; 0 <= begin, end <= y.size(). Segments may
/// overlap. Runs of fewer than width samples and runs that do not end within the range are ignored.
std::vector<PeakSegment> findPeakSegments(
    const QList<double>& y, qsizetype begin, qsizetype end, const PeakCriterion& criterion);

} // namespace tarnis
