// The fits of one Gaussian: bounded with computed starting values, and unbounded from given ones.
#include "tarnis/peak/mpfit.h"
#include "tarnis/peak/peaksearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

enum Parameter { N, Center, Sigma, Offset, ParameterCount };

using Parameters = std::array<double, ParameterCount>;

struct IndexSeries {
    int start;
    QList<double> const& y;
    QList<double> const& w; // passed on, not used
};

struct XSeries {
    QList<double> const& x;
    QList<double> const& y;
};

double gaussian(const double* p, double t, double sigma2)
{
    const double distance = t - p[Center];
    return p[N] * std::exp(distance * distance * -0.5 / sigma2);
}

int indexResiduals(int n, int, double* p, double* residual, double**, void* data)
{
    const IndexSeries& series = *static_cast<const IndexSeries*>(data);
    const double sigma2 = p[Sigma] * p[Sigma];
    for (int i = 0; i < n; ++i)
        residual[i] = series.y[i] - gaussian(p, double(series.start) + i, sigma2) - p[Offset];
    return 0;
}

int xResiduals(int n, int, double* p, double* residual, double**, void* data)
{
    const XSeries& series = *static_cast<const XSeries*>(data);
    const double sigma2 = p[Sigma] * p[Sigma];
    for (int i = 0; i < n; ++i)
        residual[i] = series.y[i] - gaussian(p, series.x[i], sigma2) - p[Offset];
    return 0;
}

// A series that is too long for the fitter is refused like an empty one.
int residualCount(qsizetype n)
{
    return n > std::numeric_limits<int>::max() ? 0 : int(n);
}

Parameters parametersOf(PeakSearch::Gaussian const& gauss)
{
    return { gauss.N, gauss.center, gauss.sigma, gauss.offset };
}

void assign(PeakSearch::Gaussian& gauss, const Parameters& p)
{
    gauss.N = p[N];
    gauss.center = p[Center];
    gauss.sigma = p[Sigma];
    gauss.offset = p[Offset];
}

void setLower(mp_par& par, double limit)
{
    par.limited[0] = 1;
    par.limits[0] = limit;
}

void setUpper(mp_par& par, double limit)
{
    par.limited[1] = 1;
    par.limits[1] = limit;
}

bool isZero(double value)
{
    return std::fabs(value) <= std::numeric_limits<double>::epsilon() * std::max(1.0, std::fabs(value));
}

} // namespace

bool PeakSearch::fit(int first, QList<double> const& samples, QList<double> const& w, PeakSearch::Gaussian& out)
{
    IndexSeries series { first, samples, w };
    const int n = residualCount(samples.size());
    double maxY = 0.0;
    for (const double sample : samples)
        maxY = std::max(maxY, sample);

    const double quarter = double(n / 4);
    const Parameters initial { maxY, first + 0.5 * n, 0.25 * n, 0.0 };
    std::array<mp_par, ParameterCount> pars {};
    setLower(pars[N], maxY - threshold);
    setLower(pars[Center], first + quarter);
    setUpper(pars[Center], first + double(3LL * n / 4));
    setLower(pars[Sigma], quarter);
    setLower(pars[Offset], 0.0);
    setUpper(pars[Offset], threshold);

    Parameters errors {};
    mp_result result {};
    result.xerror = errors.data();
    const auto pass = [&] {
        Parameters p = initial;
        if (mpfit(indexResiduals, n, ParameterCount, p.data(), pars.data(), nullptr, &series, &result) < 1)
            return false;
        assign(out, p);
        out.start = first;
        out.points = samples;
        return true;
    };
    if (!pass())
        return false;
    // Converged below the data with zero background: repeat with a lower bound on the height.
    if (!isZero(out.offset) || !(0.95 * maxY > out.N + out.offset))
        return true;
    setLower(pars[N], 0.95 * maxY);
    return pass();
}

bool PeakSearch::fit(int first, QList<double> const& samples, QList<double> const& w, PeakSearch::Gaussian const& init,
    PeakSearch::Gaussian& out)
{
    IndexSeries series { first, samples, w };
    const int n = residualCount(samples.size());
    Parameters p = parametersOf(init);
    std::array<mp_par, ParameterCount> pars {};
    if (mpfit(indexResiduals, n, ParameterCount, p.data(), pars.data(), nullptr, &series, nullptr) < 1)
        return false;
    assign(out, p);
    out.start = first;
    out.points = samples;
    return true;
}

bool PeakSearch::fit(
    QList<double> const& abscissae, QList<double> const& samples, PeakSearch::Gaussian const& init, Gaussian& out)
{
    XSeries series { abscissae, samples };
    const int n = residualCount(std::min(abscissae.size(), samples.size()));
    Parameters p = parametersOf(init);
    std::array<mp_par, ParameterCount> pars {};
    if (mpfit(xResiduals, n, ParameterCount, p.data(), pars.data(), nullptr, &series, nullptr) < 1)
        return false;
    assign(out, p);
    out.points = abscissae;
    return true;
}
