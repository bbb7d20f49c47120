#include "fitrunners.h"

#include <cminpack.h>

#include <cmath>

namespace tarnis::testing {

namespace {

struct Recorder {
    const LeastSquaresProblem& problem;
    std::vector<std::vector<double>> calls;

    void evaluate(int m, int n, const double* x, double* fvec)
    {
        calls.emplace_back(x, x + n);
        problem.residuals({ x, std::size_t(n) }, { fvec, std::size_t(m) });
    }
};

int mpfitResiduals(int m, int npar, double* x, double* fvec, double**, void* data)
{
    static_cast<Recorder*>(data)->evaluate(m, npar, x, fvec);
    return 0;
}

int lmdifResiduals(void* data, int m, int n, const double* x, double* fvec, int)
{
    static_cast<Recorder*>(data)->evaluate(m, n, x, fvec);
    return 0;
}

// Sum of squares at x, and the errors from the diagonal of the covariance.
void complete(FitReport& report, const LeastSquaresProblem& problem)
{
    std::vector<double> r(std::size_t(problem.m));
    problem.residuals(report.x, r);
    for (const double residual : r)
        report.sumOfSquares += residual * residual;
    const double freedom = double(r.size()) - double(report.x.size());
    for (double& error : report.error)
        error *= freedom > 0.0 ? std::sqrt(report.sumOfSquares / freedom) : 0.0;
}

} // namespace

FitReport runMpfit(const LeastSquaresProblem& problem, const FitSettings& settings)
{
    Recorder recorder { problem, {} };
    FitReport report;
    report.x = problem.start;
    report.error.resize(report.x.size());
    mp_config config {};
    config.ftol = config.xtol = config.gtol = settings.tolerance;
    config.epsfcn = settings.epsfcn;
    config.maxiter = settings.maxiter;
    config.maxfev = settings.maxfev;
    mp_result result {};
    result.xerror = report.error.data();
    report.status =
        mpfit(mpfitResiduals, problem.m, int(report.x.size()), report.x.data(), nullptr, &config, &recorder, &result);
    report.nfev = result.nfev;
    report.calls = std::move(recorder.calls);
    complete(report, problem);
    return report;
}

FitReport runLmdif(const LeastSquaresProblem& problem, const FitSettings& settings)
{
    const int n = int(problem.start.size());
    const std::size_t size = problem.start.size();
    const std::size_t m = std::size_t(problem.m);
    Recorder recorder { problem, {} };
    FitReport report;
    report.x = problem.start;
    report.error.resize(size);
    std::vector<double> fvec(m), diag(size), fjac(m * size), qtf(size), wa1(size), wa2(size), wa3(size), wa4(m);
    std::vector<int> ipvt(size);
    report.status = lmdif(lmdifResiduals, &recorder, problem.m, n, report.x.data(), fvec.data(), settings.tolerance,
        settings.tolerance, settings.tolerance, settings.maxfev, lmdifPrecision, diag.data(), 1, 100.0, 0, &report.nfev,
        fjac.data(), problem.m, ipvt.data(), qtf.data(), wa1.data(), wa2.data(), wa3.data(), wa4.data());
    covar(n, fjac.data(), problem.m, ipvt.data(), 1e-14, wa1.data());
    for (std::size_t j = 0; j < size; ++j)
        report.error[j] = std::sqrt(std::max(0.0, fjac[j * m + j]));
    report.calls = std::move(recorder.calls);
    complete(report, problem);
    return report;
}

} // namespace tarnis::testing
