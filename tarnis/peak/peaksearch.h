// Peak search in a series of samples: runs past a threshold are widened to segments, and each segment is fitted with a
// Gaussian on a constant background. A plain value class: construct it, call exec() once, destroy it. Runs on the
// caller's thread.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QList>

/// A search over one series. Index mode: the abscissa of sample i is i, and indices start..end-1 are searched. x mode,
/// selected by a non-empty x: the samples have abscissae, and the complete series is searched.
class TARNIS_EXPORT PeakSearch {
public:
    /// One peak: N * exp(-0.5 * (t - center)^2 / sigma^2) + offset. Its width at half maximum is 2.35482 * sigma.
    struct Gaussian {
        double N = 0.0; ///< height above offset at center
        double center = 0.0; ///< index mode: fractional sample index; x mode: on the x axis
        double sigma = 0.0; ///< standard deviation, unit of center
        double offset = 0.0; ///< constant background
        int start = 0; ///< index mode: index of the first element of points; not written in x mode
        QList<double> points; ///< the fitted data: samples in index mode, abscissae in x mode
    };

    QList<double> x; ///< abscissae; empty in index mode
    QList<double> y; ///< samples
    int start = 0; ///< first index of the search; not used in x mode
    int end = 0; ///< one past the last index of the search; not used in x mode
    double threshold = 0.0; ///< level of the search, unit of the samples
    int width = 0; ///< minimum number of samples past the threshold for a peak
    bool peak = true; ///< true: past the threshold means >= (peaks); false: <= (dips)

    /// Index mode. Indices outside the series are never searched.
    PeakSearch(QList<double> const& y, int start, int end, double threshold, int width, bool peak);
    /// Index mode, threshold 0.0, width 0, peaks.
    PeakSearch(QList<double> const& y, int start, int end);
    /// x mode. x must not be empty; if the lengths differ, the shorter one is used.
    PeakSearch(QList<double> const& x, QList<double> const& y, double threshold, int width, bool peak);

    /// Runs the search. Returns one Gaussian for each peak whose fit succeeds, in the order of the peaks' first samples
    /// past the threshold. Segments may overlap. A run that does not end within the range is not a peak.
    QList<PeakSearch::Gaussian> exec();
    /// Fits one Gaussian to the complete series from the starting values in init, without bounds. False: out is
    /// unchanged.
    bool exec(PeakSearch::Gaussian const& init, PeakSearch::Gaussian& out);

    /// Bounded fit of the segment y whose first sample has index start; uses threshold. N >= max(y) - threshold, center
    /// in the middle half, sigma >= a quarter of the segment, 0 <= offset <= threshold. A fit that converges below the
    /// data with zero offset is repeated with N >= 0.95 * max(y); if that fails, out contains the first result and the
    /// function returns false.
    bool fit(int start, QList<double> const& y, QList<double> const& w, PeakSearch::Gaussian& out);
    /// Unbounded fit of samples y with indices from start on. w is passed on but not used.
    bool fit(int start, QList<double> const& y, QList<double> const& w, PeakSearch::Gaussian const& init,
        PeakSearch::Gaussian& out);
    /// Unbounded fit of samples y at abscissae x. out.start is unchanged.
    bool fit(
        QList<double> const& x, QList<double> const& y, PeakSearch::Gaussian const& init, PeakSearch::Gaussian& out);

    /// Fits a single peak that fills the list, from its half-height points. The last sample is not fitted. False with
    /// fewer than five samples.
    static bool peakSearch(QList<double> const& y, PeakSearch::Gaussian& out);
    /// As above, with abscissae. The last sample is fitted but not considered for the maximum. False with fewer than
    /// four samples.
    static bool peakSearch(QList<double> const& x, QList<double> const& y, PeakSearch::Gaussian& out);
};
