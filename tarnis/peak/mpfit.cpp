// mpfit(): setup and results of a fit. The other sources: mpfit_iterate.cpp the main loop, mpfit_jacobian.cpp the
// derivatives, mpfit_bounds.cpp the bounds; mpfit_qr.cpp, mpfit_lmpar.cpp, mpfit_covar.cpp, mpfit_enorm.cpp the linear
// algebra.
#include "tarnis/peak/mpfit.h"

#include "tarnis/peak/mpfit_p.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

namespace tarnis::fitter {

namespace {

constexpr mp_config defaultConfig {
    .ftol = 1e-10,
    .xtol = 1e-10,
    .gtol = 1e-10,
    .epsfcn = machineEpsilon,
    .stepfactor = 100.0,
    .covtol = 1e-14,
    .maxiter = 200,
    .maxfev = 0,
    .nprint = 1,
    .douserscale = 0,
    .nofinitecheck = 0,
};

constexpr mp_par automaticParameter {};

// NaN is returned unchanged and rejected by the check of the tolerances.
double positiveOr(double value, double fallback)
{
    return value <= 0.0 ? fallback : value;
}

mp_config withDefaults(const mp_config* given)
{
    if (!given)
        return defaultConfig;
    mp_config config = *given;
    config.ftol = positiveOr(config.ftol, defaultConfig.ftol);
    config.xtol = positiveOr(config.xtol, defaultConfig.xtol);
    config.gtol = positiveOr(config.gtol, defaultConfig.gtol);
    config.epsfcn = positiveOr(config.epsfcn, defaultConfig.epsfcn);
    config.stepfactor = positiveOr(config.stepfactor, defaultConfig.stepfactor);
    config.covtol = positiveOr(config.covtol, defaultConfig.covtol);
    if (config.maxiter < 1)
        config.maxiter = defaultConfig.maxiter;
    if (config.maxfev < 0)
        config.maxfev = defaultConfig.maxfev;
    if (config.nprint < 0)
        config.nprint = defaultConfig.nprint;
    if (config.nofinitecheck < 0)
        config.nofinitecheck = defaultConfig.nofinitecheck;
    return config;
}

bool hasLimit(const mp_par& par)
{
    return par.limited[0] || par.limited[1];
}

bool needsUserColumn(const mp_par& par)
{
    return par.side == 3 || par.deriv_debug;
}

} // namespace

Fit::Fit(const Problem& problem)
    : m_problem(problem)
{
}

const mp_par& Fit::parameter(int j) const
{
    return m_problem.pars ? m_problem.pars[m_ifree[j]] : automaticParameter;
}

int Fit::run(mp_result* result)
{
    if (const int error = setUp(); error != 0)
        return error;
    const int status = iterate();
    if (!m_abandoned)
        finish(status, result);
    return status;
}

// The order of the tests determines which error is reported.
int Fit::setUp()
{
    if (!allocateVectors())
        return MP_NO_MEMORY;
    listFreeParameters();
    if (m_nfree == 0)
        return MP_NO_FREE_PARAMETER;
    if (const int error = checkParameters(); error != 0)
        return error;
    if (!tolerancesArePositive())
        return MP_BAD_TOLERANCE;
    if (m_nfree > m_problem.m)
        return MP_TOO_FEW_RESIDUALS;
    return allocateJacobian() ? 0 : MP_NO_MEMORY;
}

bool Fit::allocateVectors()
{
    const std::size_t m = std::size_t(m_problem.m);
    const std::size_t npar = std::size_t(m_problem.npar);
    double** const byParameter[] = { &m_xfull, &m_x, &m_xnew, &m_step, &m_diag, &m_qtf, &m_acnorm, &m_rdiag, &m_wa3 };
    double** const byResidual[] = { &m_fvec, &m_wa4, &m_wa5 };
    try {
        m_vectors = std::make_unique_for_overwrite<double[]>(std::size(byParameter) * npar + std::size(byResidual) * m);
        m_indices = std::make_unique_for_overwrite<int[]>(2 * npar);
    } catch (const std::bad_alloc&) {
        return false;
    }
    double* next = m_vectors.get();
    for (double** vector : byParameter) {
        *vector = next;
        next += npar;
    }
    for (double** vector : byResidual) {
        *vector = next;
        next += m;
    }
    m_ifree = m_indices.get();
    m_ipvt = m_ifree + npar;
    return true;
}

void Fit::listFreeParameters()
{
    for (int i = 0; i < m_problem.npar; ++i) {
        if (m_problem.pars && m_problem.pars[i].fixed)
            continue;
        m_ifree[m_nfree] = i;
        m_x[m_nfree] = m_problem.xall[i];
        ++m_nfree;
    }
}

// Starting values are checked for fixed parameters too, the order of the bounds only for free ones.
int Fit::checkParameters() const
{
    for (int i = 0; m_problem.pars && i < m_problem.npar; ++i) {
        const mp_par& par = m_problem.pars[i];
        if (par.limited[0] && m_problem.xall[i] < par.limits[0])
            return MP_START_OUTSIDE;
        if (par.limited[1] && m_problem.xall[i] > par.limits[1])
            return MP_START_OUTSIDE;
        if (!par.fixed && par.limited[0] && par.limited[1] && par.limits[0] >= par.limits[1])
            return MP_BOUNDS_CROSSED;
    }
    return 0;
}

bool Fit::tolerancesArePositive() const
{
    const mp_config& config = m_problem.config;
    return config.ftol > 0.0 && config.xtol > 0.0 && config.gtol > 0.0 && config.covtol > 0.0
        && config.stepfactor > 0.0;
}

bool Fit::allocateJacobian()
{
    bool anyUserColumn = false;
    for (int j = 0; j < m_nfree; ++j) {
        const mp_par& par = parameter(j);
        m_anyLimit = m_anyLimit || hasLimit(par);
        m_anyDebug = m_anyDebug || par.deriv_debug;
        anyUserColumn = anyUserColumn || needsUserColumn(par);
    }
    try {
        m_fjac = std::make_unique_for_overwrite<double[]>(std::size_t(m_problem.m) * std::size_t(m_nfree));
        if (anyUserColumn)
            m_dvec = std::make_unique_for_overwrite<double*[]>(std::size_t(m_problem.npar));
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

// The last call sets fvec to the residuals of the result, also after a rejected step.
void Fit::finish(int status, mp_result* result)
{
    if (status > 0 && m_problem.config.nprint > 0)
        evaluate(m_x, m_fvec, nullptr);
    for (int j = 0; j < m_nfree; ++j)
        m_problem.xall[m_ifree[j]] = m_x[j];
    if (!result)
        return;

    const double norm = std::max(m_fnorm, m_fnorm1);
    result->bestnorm = norm * norm;
    result->orignorm = m_orignorm;
    result->niter = m_iter;
    result->nfev = m_nfev;
    result->status = status;
    result->npar = m_problem.npar;
    result->nfree = m_nfree;
    result->npegged = countPegged();
    result->nfunc = m_problem.m;
    if (result->resid)
        std::copy_n(m_fvec, m_problem.m, result->resid);
    if (result->covar || result->xerror)
        writeErrors(*result);
    std::memset(result->version, 0, sizeof result->version);
    std::strcpy(result->version, "1.1");
}

int Fit::countPegged() const
{
    int pegged = 0;
    for (int i = 0; m_problem.pars && i < m_problem.npar; ++i) {
        const mp_par& par = m_problem.pars[i];
        const double x = m_problem.xall[i];
        if ((par.limited[0] && x == par.limits[0]) || (par.limited[1] && x == par.limits[1]))
            ++pegged;
    }
    return pegged;
}

void Fit::writeErrors(mp_result& result)
{
    const std::size_t npar = std::size_t(m_problem.npar);
    covar(m_nfree, m_fjac.get(), m_problem.m, m_ipvt, m_problem.config.covtol, m_wa3);
    if (result.covar) {
        std::fill_n(result.covar, npar * npar, 0.0);
        for (int j = 0; j < m_nfree; ++j) {
            for (int i = 0; i < m_nfree; ++i)
                result.covar[std::size_t(m_ifree[i]) * npar + std::size_t(m_ifree[j])] = column(j)[i];
        }
    }
    if (result.xerror) {
        std::fill_n(result.xerror, npar, 0.0);
        for (int j = 0; j < m_nfree; ++j) {
            const double variance = column(j)[j];
            if (variance > 0.0)
                result.xerror[m_ifree[j]] = std::sqrt(variance);
        }
    }
}

} // namespace tarnis::fitter

int mpfit(mp_func funct, int m, int npar, double* xall, mp_par* pars, mp_config* config, void* private_data,
    mp_result* result)
{
    using namespace tarnis::fitter;
    if (!funct)
        return MP_NO_FUNCTION;
    if (m < 1 || !xall)
        return MP_NO_DATA;
    if (npar < 1)
        return MP_NO_FREE_PARAMETER;
    return Fit({ funct, m, npar, xall, pars, withDefaults(config), private_data }).run(result);
}
