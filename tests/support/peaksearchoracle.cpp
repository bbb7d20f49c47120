#include "support/peaksearchoracle.h"

#include <tarnis/peak/mpfit.h>

#include <cfloat>
#include <cmath>

namespace tarnis::testing {

namespace {

struct Data {
    const double* t; // null: start + i
    const double* y;
    int start;
};

int residuals(int m, int, double* p, double* r, double**, void* priv)
{
    const Data* d = static_cast<const Data*>(priv);
    const double sigma2 = p[2] * p[2];
    for (int i = 0; i < m; ++i) {
        const double t = d->t ? d->t[i] : double(d->start + i);
        r[i] = d->y[i] - p[0] * std::exp((t - p[1]) * (t - p[1]) * -0.5 / sigma2) - p[3];
    }
    return 0;
}

bool boundedFit(const OracleSegment& segment, double threshold, PeakSearch::Gaussian& out, int* calls)
{
    const int n = int(segment.y.size());
    double maxY = 0.0;
    for (int i = 0; i < n; ++i) {
        if (segment.y[i] > maxY)
            maxY = segment.y[i];
    }
    Data data { nullptr, segment.y.constData(), segment.pos };
    double lowerN = maxY - threshold;
    for (int pass = 1;; ++pass) {
        double p[4] = { maxY, segment.pos + 0.5 * n, 0.25 * n, 0.0 };
        mp_par par[4] = {};
        par[0].limited[0] = 1;
        par[0].limits[0] = lowerN;
        par[1].limited[0] = 1;
        par[1].limits[0] = segment.pos + n / 4;
        par[1].limited[1] = 1;
        par[1].limits[1] = segment.pos + 3 * n / 4;
        par[2].limited[0] = 1;
        par[2].limits[0] = n / 4;
        par[3].limited[0] = 1;
        par[3].limits[0] = 0.0;
        par[3].limited[1] = 1;
        par[3].limits[1] = threshold;
        mp_result result = {};
        const int status = mpfit(residuals, n, 4, p, par, nullptr, &data, &result);
        if (calls)
            *calls += result.nfev;
        if (status < 1)
            return false;
        out.N = p[0];
        out.center = p[1];
        out.sigma = p[2];
        out.offset = p[3];
        out.start = segment.pos;
        out.points = segment.y;
        const double larger = std::fabs(out.offset) > 1.0 ? std::fabs(out.offset) : 1.0;
        const bool noOffset = std::fabs(out.offset) <= DBL_EPSILON * larger;
        if (pass == 2 || !noOffset || !(0.95 * maxY > out.N + out.offset))
            return true;
        lowerN = 0.95 * maxY;
    }
}

bool singlePeak(const OracleSegment& segment, PeakSearch::Gaussian& out)
{
    const QList<double>& x = segment.second;
    const QList<double>& y = segment.y;
    const int n = int(y.size());
    if (n < 2)
        return false;
    double maxY = y[0];
    double minY = y[0];
    int maxIndex = 0;
    for (int i = 0; i <= n - 2; ++i) {
        if (y[i] > maxY) {
            maxY = y[i];
            maxIndex = i;
        }
        if (y[i] < minY)
            minY = y[i];
    }
    const double half = (maxY + minY) * 0.5;
    int leftIndex = 0;
    for (int i = maxIndex; i >= 0; --i) {
        if (y[i] < half) {
            leftIndex = i;
            break;
        }
    }
    int rightIndex = n - 2;
    for (int i = maxIndex; i < n - 1; ++i) {
        if (y[i] < half) {
            rightIndex = i;
            break;
        }
    }
    double p[4] = { maxY, (x[rightIndex] + x[leftIndex]) * 0.5, std::fabs(x[rightIndex] - x[leftIndex]) * 0.5, minY };
    Data data { x.constData(), y.constData(), 0 };
    if (mpfit(residuals, n, 4, p, nullptr, nullptr, &data, nullptr) < 1)
        return false;
    out.N = p[0];
    out.center = p[1];
    out.sigma = p[2];
    out.offset = p[3];
    out.points = x;
    return true;
}

bool isPast(double sample, double threshold, bool peak)
{
    return peak ? sample >= threshold : sample <= threshold;
}

} // namespace

QList<OracleSegment> oracleXSegments(
    const QList<double>& x, const QList<double>& y, double threshold, int width, bool peak)
{
    QList<OracleSegment> segments;
    QList<double> curY;
    QList<double> curX;
    bool inPeak = false;
    int count = 0;
    const int size = int(y.size());
    for (int i = 0; i < size; ++i) {
        const bool past = isPast(y[i], threshold, peak);
        if (!inPeak && !past)
            continue;
        if (!inPeak && past) {
            curY.clear();
            curX.clear();
            curY.append(y[i]);
            curX.append(x[i]);
            for (int k = i - 1; k >= 0; --k) {
                if (y[k + 1] < y[k] || y[k] <= 0)
                    break;
                curY.prepend(y[k]);
                curX.prepend(x[k]);
            }
            count = 1;
            inPeak = true;
        } else if (past) {
            curY.append(y[i]);
            curX.append(x[i]);
            ++count;
        } else {
            inPeak = false;
            if (count < width)
                continue;
            curY.append(y[i]);
            curX.append(x[i]);
            for (int j = i + 1; j < size; ++j) {
                if (y[j - 1] < y[j] || y[j] <= 0)
                    break;
                curY.append(y[j]);
                curX.append(x[j]);
            }
            segments.append({ curY, curX, 0 });
        }
    }
    return segments;
}

QList<OracleSegment> oracleIndexSegments(
    const QList<double>& y, int start, int end, double threshold, int width, bool peak)
{
    QList<OracleSegment> segments;
    QList<double> curY;
    QList<double> curW;
    bool inPeak = false;
    int count = 0;
    int pos = 0;
    for (int i = start; i < end; ++i) {
        const bool past = isPast(y[i], threshold, peak);
        if (!inPeak && !past)
            continue;
        if (!inPeak && past) {
            curY.clear();
            curW.clear();
            curY.append(y[i]);
            curW.append(y[i] / threshold);
            pos = i;
            for (int k = i - 1; k >= start; --k) {
                if (y[k + 1] < y[k] || y[k] <= 0) {
                    pos = k + 1;
                    break;
                }
                curY.prepend(y[k]);
                curW.prepend(y[k] / threshold);
            }
            count = 1;
            inPeak = true;
        } else if (past) {
            curY.append(y[i]);
            curW.append(y[i] / threshold);
            ++count;
        } else {
            inPeak = false;
            if (count < width)
                continue;
            curY.append(y[i]);
            curW.append(y[i] / threshold);
            for (int j = i + 1; j < end; ++j) {
                if (y[j - 1] < y[j] || y[j] <= 0)
                    break;
                curY.append(y[j]);
                curW.append(y[j] / threshold);
            }
            segments.append({ curY, curW, pos });
        }
    }
    return segments;
}

QList<PeakSearch::Gaussian> oracleIndexPeaks(
    const QList<double>& y, int start, int end, double threshold, int width, bool peak, int* calls)
{
    QList<PeakSearch::Gaussian> peaks;
    for (const OracleSegment& segment : oracleIndexSegments(y, start, end, threshold, width, peak)) {
        PeakSearch::Gaussian gauss;
        if (boundedFit(segment, threshold, gauss, calls))
            peaks.append(gauss);
    }
    return peaks;
}

QList<PeakSearch::Gaussian> oracleXPeaks(
    const QList<double>& x, const QList<double>& y, double threshold, int width, bool peak)
{
    QList<PeakSearch::Gaussian> peaks;
    for (const OracleSegment& segment : oracleXSegments(x, y, threshold, width, peak)) {
        PeakSearch::Gaussian gauss;
        if (singlePeak(segment, gauss))
            peaks.append(gauss);
    }
    return peaks;
}

} // namespace tarnis::testing
