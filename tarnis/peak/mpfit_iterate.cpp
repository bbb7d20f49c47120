// The main loop: MINPACK-1, routine LMDIF (More, Garbow, Hillstrom 1980), with the bounds of mpfit_bounds.cpp.
// Comments mark the differences from LMDIF.
#include "tarnis/peak/mpfit_p.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace tarnis::fitter {

namespace {

constexpr double acceptanceRatio = 0.0001;

} // namespace

int Fit::evaluate(const double* xfree, double* residuals, double** dvec)
{
    std::copy_n(m_problem.xall, m_problem.npar, m_xfull);
    for (int j = 0; j < m_nfree; ++j)
        m_xfull[m_ifree[j]] = xfree[j];
    if (m_nfev < INT_MAX)
        ++m_nfev;
    return m_problem.funct(m_problem.m, m_problem.npar, m_xfull, residuals, dvec, m_problem.privateData);
}

int Fit::iterate()
{
    if (evaluate(m_x, m_fvec, nullptr) < 0) {
        m_abandoned = true;
        return MP_STOPPED;
    }
    m_fnorm = enorm(m_problem.m, m_fvec);
    m_orignorm = m_fnorm * m_fnorm;
    for (;;) {
        if (const std::optional<int> status = linearise())
            return *status;
        do {
            if (const std::optional<int> status = tryStep())
                return *status;
        } while (m_ratio < acceptanceRatio);
    }
}

// Jacobian, its factors and the gradient at the current point.
std::optional<int> Fit::linearise()
{
    if (!jacobian()) {
        m_abandoned = true;
        return MP_STOPPED;
    }
    holdColumnsAtBounds();
    factorise();
    if (m_problem.config.nofinitecheck && !factorIsFinite()) {
        m_abandoned = true;
        return MP_NOT_FINITE;
    }
    if (m_iter == 1)
        scaleFirst();
    m_gnorm = scaledGradient();
    if (m_gnorm <= m_problem.config.gtol)
        return MP_CONVERGED_GTOL;
    if (!m_problem.config.douserscale) {
        for (int j = 0; j < m_nfree; ++j)
            m_diag[j] = std::max(m_diag[j], m_acnorm[j]);
    }
    return std::nullopt;
}

// Stores the complete R in the upper triangle of fjac, and computes qtf.
void Fit::factorise()
{
    const int m = m_problem.m;
    std::copy_n(m_fvec, m, m_wa4);
    qrfac(m, m_nfree, m_fjac.get(), m_ipvt, m_rdiag, m_acnorm, m_wa3, m_wa4);
    for (int j = 0; j < m_nfree; ++j) {
        column(j)[j] = m_rdiag[j];
        m_qtf[j] = m_wa4[j];
    }
}

// A non-finite element of the Jacobian propagates to the triangle.
bool Fit::factorIsFinite() const
{
    for (int j = 0; j < m_nfree; ++j) {
        const double* c = column(j);
        if (!std::all_of(c, c + j + 1, [](double r) { return std::isfinite(r); }))
            return false;
    }
    return true;
}

// The scale of the first iteration: column norms, or 1 if a column is zero or the caller sets the scale.
void Fit::scaleFirst()
{
    for (int j = 0; j < m_nfree; ++j) {
        const bool usesNorm = !m_problem.config.douserscale && m_acnorm[j] != 0.0;
        m_diag[j] = usesNorm ? m_acnorm[j] : 1.0;
        m_wa3[j] = m_diag[j] * m_x[j];
    }
    m_xnorm = enorm(m_nfree, m_wa3);
    m_delta = m_problem.config.stepfactor * m_xnorm;
    if (m_delta == 0.0)
        m_delta = m_problem.config.stepfactor;
}

// Largest cosine between fvec and a column of the Jacobian.
double Fit::scaledGradient() const
{
    double gnorm = 0.0;
    if (m_fnorm == 0.0)
        return gnorm;
    for (int j = 0; j < m_nfree; ++j) {
        const double norm = m_acnorm[m_ipvt[j]];
        if (norm == 0.0)
            continue;
        const double* c = column(j);
        double sum = 0.0;
        for (int i = 0; i <= j; ++i)
            sum += c[i] * (m_qtf[i] / m_fnorm);
        const double cosine = std::fabs(sum / norm);
        if (std::isnan(cosine))
            return cosine; // must not be mistaken for an orthogonal column
        gnorm = std::max(gnorm, cosine);
    }
    return gnorm;
}

// One step from the current point, which is accepted, rejected, or ends the fit. LMDIF has no test for non-finite
// numbers: its stop tests are never true with them, and the loop would not end.
std::optional<int> Fit::tryStep()
{
    m_par = lmpar(
        m_nfree, m_fjac.get(), m_problem.m, m_ipvt, m_diag, m_qtf, m_delta, m_par, m_step, m_acnorm, m_wa3, m_rdiag);
    const double alpha = keepStepInside();
    takeStep(alpha);
    for (int j = 0; j < m_nfree; ++j)
        m_wa3[j] = m_diag[j] * m_step[j];
    m_pnorm = enorm(m_nfree, m_wa3);
    if (!std::isfinite(m_pnorm) || std::isnan(m_delta) || !std::isfinite(m_xnorm))
        return MP_LIMIT_REACHED;
    if (m_iter == 1)
        m_delta = std::min(m_delta, m_pnorm);

    if (const int answer = evaluate(m_xnew, m_wa4, nullptr); answer < 0)
        return answer;
    m_fnorm1 = enorm(m_problem.m, m_wa4);
    m_actred = -1.0;
    if (0.1 * m_fnorm1 < m_fnorm) {
        const double quotient = m_fnorm1 / m_fnorm;
        m_actred = 1.0 - quotient * quotient;
    }
    predictReduction(alpha);
    m_ratio = m_prered != 0.0 ? m_actred / m_prered : 0.0;
    if (!std::isfinite(m_ratio))
        return MP_LIMIT_REACHED;
    updateStepBound();
    if (m_ratio >= acceptanceRatio)
        accept();
    if (!std::isfinite(m_xnorm))
        return MP_LIMIT_REACHED;
    return stopTest();
}

// The reduction predicted by the linear model, relative to fnorm squared. alpha is applied again although the step is
// already scaled; the bounded iteration is defined this way.
void Fit::predictReduction(double alpha)
{
    for (int j = 0; j < m_nfree; ++j) {
        m_wa3[j] = 0.0;
        const double* c = column(j);
        const double temp = m_step[m_ipvt[j]];
        for (int i = 0; i <= j; ++i)
            m_wa3[i] += c[i] * temp;
    }
    const double temp1 = alpha * enorm(m_nfree, m_wa3) / m_fnorm;
    const double temp2 = std::sqrt(alpha * m_par) * m_pnorm / m_fnorm;
    m_prered = temp1 * temp1 + 2.0 * (temp2 * temp2);
    m_dirder = -(temp1 * temp1 + temp2 * temp2);
}

void Fit::updateStepBound()
{
    if (m_ratio <= 0.25) {
        double temp = m_actred >= 0.0 ? 0.5 : 0.5 * m_dirder / (m_dirder + 0.5 * m_actred);
        if (0.1 * m_fnorm1 >= m_fnorm || temp < 0.1)
            temp = 0.1;
        m_delta = temp * std::min(m_delta, m_pnorm / 0.1);
        m_par /= temp;
    } else if (m_par == 0.0 || m_ratio >= 0.75) {
        m_delta = m_pnorm / 0.5;
        m_par *= 0.5;
    }
}

void Fit::accept()
{
    std::swap(m_x, m_xnew);
    std::swap(m_fvec, m_wa4);
    for (int j = 0; j < m_nfree; ++j)
        m_wa3[j] = m_diag[j] * m_x[j];
    m_xnorm = enorm(m_nfree, m_wa3);
    m_fnorm = m_fnorm1;
    ++m_iter;
}

// Tests convergence first. Of the other tests, a later one overrides an earlier one.
std::optional<int> Fit::stopTest() const
{
    const mp_config& config = m_problem.config;
    const auto reducesLittle = [this](double tol) {
        return std::fabs(m_actred) <= tol && m_prered <= tol && 0.5 * m_ratio <= 1.0;
    };
    const bool ftolReached = reducesLittle(config.ftol);
    const bool xtolReached = m_delta <= config.xtol * m_xnorm;
    if (ftolReached)
        return xtolReached ? MP_CONVERGED_BOTH : MP_CONVERGED_FTOL;
    if (xtolReached)
        return MP_CONVERGED_XTOL;

    std::optional<int> status;
    if ((config.maxfev > 0 && m_nfev >= config.maxfev) || m_iter >= config.maxiter)
        status = MP_LIMIT_REACHED;
    if (reducesLittle(machineEpsilon))
        status = MP_FTOL_TOO_SMALL;
    if (m_delta <= machineEpsilon * m_xnorm)
        status = MP_XTOL_TOO_SMALL;
    if (m_gnorm <= machineEpsilon)
        status = MP_GTOL_TOO_SMALL;
    return status;
}

} // namespace tarnis::fitter
