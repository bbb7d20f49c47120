#include "fitcase.h"

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace tarnis::testing {

namespace {

int record(int m, int npar, double* x, double* fvec, double** dvec, void* data)
{
    auto& fit = *static_cast<FitCase*>(data);
    FitCase::Call call { { x, x + npar }, {}, 0, 0.0 };
    for (int j = 0; dvec && j < npar; ++j)
        call.columns.push_back(dvec[j] != nullptr);
    call.answer = fit.function(call.x, { fvec, std::size_t(m) }, dvec);
    double sum = 0.0;
    for (int i = 0; i < m; ++i)
        sum += fvec[i] * fvec[i];
    call.norm = std::sqrt(sum);
    fit.calls.push_back(std::move(call));
    return fit.calls.back().answer;
}

} // namespace

FitCase::FitCase(int residuals, std::vector<double> start, Function f)
    : m(residuals)
    , x(std::move(start))
    , function(std::move(f))
    , pars(x.size())
{
}

FitCase& FitCase::bound(std::size_t j, double lower, double upper)
{
    return boundBelow(j, lower).boundAbove(j, upper);
}

FitCase& FitCase::boundBelow(std::size_t j, double lower)
{
    pars[j].limited[0] = 1;
    pars[j].limits[0] = lower;
    return *this;
}

FitCase& FitCase::boundAbove(std::size_t j, double upper)
{
    pars[j].limited[1] = 1;
    pars[j].limits[1] = upper;
    return *this;
}

FitCase& FitCase::hold(std::size_t j)
{
    pars[j].fixed = 1;
    return *this;
}

FitCase& FitCase::side(std::size_t j, int side)
{
    pars[j].side = side;
    return *this;
}

FitCase& FitCase::configure(const std::function<void(mp_config&)>& change)
{
    hasConfig = true;
    change(config);
    return *this;
}

int FitCase::run()
{
    resid.assign(std::size_t(std::max(m, 0)), -77.0);
    xerror.assign(x.size(), -77.0);
    covar.assign(x.size() * x.size(), -77.0);
    result = {};
    result.resid = resid.data();
    result.xerror = xerror.data();
    result.covar = covar.data();
    calls.clear();
    status = mpfit(record, m, int(x.size()), x.data(), pars.empty() ? nullptr : pars.data(),
        hasConfig ? &config : nullptr, this, &result);
    return status;
}

double FitCase::sumOfSquares() const
{
    std::vector<double> r(std::size_t(m), 0.0);
    function(x, r, nullptr);
    double sum = 0.0;
    for (const double residual : r)
        sum += residual * residual;
    return sum;
}

FitCase straightLine(std::vector<double> y, std::vector<double> start)
{
    const int m = int(y.size());
    return { m, std::move(start), [y](std::span<const double> x, std::span<double> r, double** dvec) {
                for (std::size_t i = 0; i < y.size(); ++i) {
                    const double t = double(i);
                    r[i] = y[i] - (x[0] + x[1] * t);
                    if (dvec && dvec[0])
                        dvec[0][i] = -1.0;
                    if (dvec && dvec[1])
                        dvec[1][i] = -t;
                }
                return 0;
            } };
}

FitCase rosenbrockFrom(double x0, double x1)
{
    return { 2, { x0, x1 }, [](std::span<const double> x, std::span<double> r, double** dvec) {
                r[0] = 10.0 * (x[1] - x[0] * x[0]);
                r[1] = 1.0 - x[0];
                if (dvec && dvec[0]) {
                    dvec[0][0] = -20.0 * x[0];
                    dvec[0][1] = -1.0;
                }
                if (dvec && dvec[1]) {
                    dvec[1][0] = 10.0;
                    dvec[1][1] = 0.0;
                }
                return 0;
            } };
}

std::string standardOutputOf(const std::function<void()>& f)
{
    std::FILE* file = std::tmpfile();
    std::fflush(stdout);
    const int before = dup(STDOUT_FILENO);
    dup2(fileno(file), STDOUT_FILENO);
    f();
    std::fflush(stdout);
    dup2(before, STDOUT_FILENO);
    close(before);
    std::rewind(file);
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
        text += char(c);
    std::fclose(file);
    return text;
}

} // namespace tarnis::testing
