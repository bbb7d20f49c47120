// The search and the single peak. The fits are in peaksearch_fit.cpp, the segments in peaksegments.cpp.
#include "tarnis/peak/peaksearch.h"

#include "tarnis/foundation/log.h"
#include "tarnis/peak/peaksearch_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Position and half-height extent of a single peak.
struct HalfHeight {
    qsizetype maxIndex = 0;
    qsizetype leftIndex = 0;
    qsizetype rightIndex = 0;
    double maxY = 0.0;
    double minY = 0.0;
};

// The last of the n samples is ignored, unless it is the only one.
HalfHeight halfHeight(const QList<double>& y, qsizetype n)
{
    HalfHeight h;
    h.maxY = y[0];
    h.minY = y[0];
    for (qsizetype i = 1; i < n - 1; ++i) {
        if (y[i] > h.maxY) {
            h.maxY = y[i];
            h.maxIndex = i;
        }
        h.minY = std::min(h.minY, y[i]);
    }
    const double half = (h.maxY + h.minY) * 0.5;
    h.leftIndex = h.maxIndex;
    while (h.leftIndex > 0 && !(y[h.leftIndex] < half))
        --h.leftIndex;
    h.rightIndex = std::min(h.maxIndex, n - 2); // -1 for a single sample
    while (h.rightIndex < n - 2 && !(y[h.rightIndex] < half))
        ++h.rightIndex;
    return h;
}

} // namespace

PeakSearch::PeakSearch(QList<double> const& samples, int first, int last, double level, int minWidth, bool upwards)
    : y(samples)
    , start(first)
    , end(last)
    , threshold(level)
    , width(minWidth)
    , peak(upwards)
{
}

PeakSearch::PeakSearch(QList<double> const& samples, int first, int last)
    : PeakSearch(samples, first, last, 0.0, 0, true)
{
}

PeakSearch::PeakSearch(
    QList<double> const& abscissae, QList<double> const& samples, double level, int minWidth, bool upwards)
    : x(abscissae)
    , y(samples)
    , threshold(level)
    , width(minWidth)
    , peak(upwards)
{
}

QList<PeakSearch::Gaussian> PeakSearch::exec()
{
    const bool hasAbscissae = !x.isEmpty();
    const qsizetype begin = hasAbscissae ? 0 : std::max(start, 0);
    const qsizetype stop = std::min<qsizetype>(hasAbscissae ? x.size() : end, y.size());
    QList<Gaussian> peaks;
    for (const tarnis::PeakSegment& segment : tarnis::findPeakSegments(y, begin, stop, { threshold, width, peak })) {
        const qsizetype length = segment.last - segment.first;
        const QList<double> samples = y.mid(segment.first, length);
        Gaussian gauss;
        bool fitted = false;
        if (hasAbscissae) {
            fitted = peakSearch(x.mid(segment.first, length), samples, gauss);
        } else {
            QList<double> relative = samples;
            for (double& sample : relative)
                sample /= threshold;
            fitted = fit(int(segment.pos), samples, relative, gauss);
        }
        if (fitted)
            peaks.append(gauss);
    }
    return peaks;
}

bool PeakSearch::exec(PeakSearch::Gaussian const& init, PeakSearch::Gaussian& out)
{
    if (!x.isEmpty())
        return fit(x, y, init, out);
    const int begin = std::max(start, 0);
    const qsizetype stop = std::min<qsizetype>(end, y.size());
    const QList<double> samples = y.mid(begin, std::max<qsizetype>(stop - begin, 0));
    return fit(begin, samples, QList<double>(samples.size(), 1.0), init, out);
}

bool PeakSearch::peakSearch(QList<double> const& y, PeakSearch::Gaussian& out)
{
    const qsizetype n = y.size();
    if (n < 1 || n > std::numeric_limits<int>::max())
        return false;
    const HalfHeight h = halfHeight(y, n);
    LOG_DBG("maxIndex=%d leftIndex=%d rightIndex=%d", int(h.maxIndex), int(h.leftIndex), int(h.rightIndex));

    Gaussian init;
    init.N = h.maxY;
    init.offset = h.minY;
    init.center = double(h.leftIndex + h.rightIndex) * 0.5;
    init.sigma = double(h.rightIndex - h.leftIndex) * 0.5;
    if (init.sigma <= 0.0)
        init.sigma = 1.0;
    LOG_DBG("initGauss.N%g offset=%g sigma=%g center=%g", init.N, init.offset, init.sigma, init.center);
    if (!PeakSearch(y, 0, int(n - 1)).exec(init, out))
        return false;
    LOG_DBG("gauss.offset=%g center=%g", out.offset, out.center);
    return true;
}

bool PeakSearch::peakSearch(QList<double> const& x, QList<double> const& y, PeakSearch::Gaussian& out)
{
    const qsizetype n = std::min(x.size(), y.size());
    if (n < 2)
        return false;
    const HalfHeight h = halfHeight(y, n);

    Gaussian init;
    init.N = h.maxY;
    init.offset = h.minY;
    init.center = (x[h.rightIndex] + x[h.leftIndex]) * 0.5;
    init.sigma = std::fabs(x[h.rightIndex] - x[h.leftIndex]) * 0.5;
    LOG_DBG("initGauss.sigma=%g center=%g", init.sigma, init.center);
    if (!PeakSearch(x, y, 20.0, 15, true).exec(init, out))
        return false;
    LOG_DBG("gauss.offset=%g center=%g", out.offset, out.center);
    return true;
}
