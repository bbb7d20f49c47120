// The Jacobian: MINPACK-1, routine FDJAC2 (More, Garbow, Hillstrom 1980), with step and side per parameter, analytic
// columns, and the comparison of the two on standard output.
#include "tarnis/peak/mpfit_p.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarnis::fitter {

namespace {

bool isAnalytic(const mp_par& par)
{
    return par.side == 3 && !par.deriv_debug;
}

// Whether a row of the comparison is printed.
bool isReported(const mp_par& par, double user, double numerical)
{
    if (par.deriv_abstol == 0.0 && par.deriv_reltol == 0.0)
        return user != 0.0 || numerical != 0.0;
    return std::fabs(user - numerical) > par.deriv_abstol + std::fabs(user) * par.deriv_reltol;
}

} // namespace

// False if the residual function requests a stop.
bool Fit::jacobian()
{
    if (m_dvec && !userColumns())
        return false;
    if (m_anyDebug) {
        std::printf("FJAC DEBUG BEGIN\n");
        std::printf("#  %10s %10s %10s %10s %10s %10s\n", "IPNT", "FUNC", "DERIV_U", "DERIV_N", "DIFF_ABS", "DIFF_REL");
    }
    std::copy_n(m_x, m_nfree, m_xnew);
    for (int j = 0; j < m_nfree; ++j) {
        if (!isAnalytic(parameter(j)) && !numericalColumn(j))
            return false;
    }
    if (m_anyDebug)
        std::printf("FJAC DEBUG END\n");
    return true;
}

// One call for all columns that the residual function writes; columns that it does not write are zero.
bool Fit::userColumns()
{
    std::fill_n(m_dvec.get(), m_problem.npar, nullptr);
    for (int j = 0; j < m_nfree; ++j) {
        const mp_par& par = parameter(j);
        if (par.side != 3 && !par.deriv_debug)
            continue;
        std::fill_n(column(j), m_problem.m, 0.0);
        m_dvec[std::size_t(m_ifree[j])] = column(j);
    }
    return evaluate(m_x, m_wa4, m_dvec.get()) >= 0;
}

// Signed step of the finite difference for free parameter j.
double Fit::differenceStep(int j) const
{
    const mp_par& par = parameter(j);
    const double x = m_x[j];
    const double epsfcn = m_problem.config.epsfcn;
    const double eps = std::sqrt(epsfcn > machineEpsilon ? epsfcn : machineEpsilon);
    double h = eps * std::fabs(x);
    if (par.step > 0.0)
        h = par.step;
    if (par.relstep > 0.0)
        h = std::fabs(par.relstep * x);
    if (h == 0.0)
        h = eps;
    const bool meetsUpper = par.side == 0 && par.limited[1] && x > par.limits[1] - h;
    return par.side == -1 || meetsUpper ? -h : h;
}

bool Fit::numericalColumn(int j)
{
    const mp_par& par = parameter(j);
    const double h = differenceStep(j);
    const double* base = m_fvec;
    double width = h;
    m_xnew[j] = m_x[j] + h;
    if (evaluate(m_xnew, m_wa4, nullptr) < 0)
        return false;
    if (par.side == 2) {
        m_xnew[j] = m_x[j] - h;
        if (evaluate(m_xnew, m_wa5, nullptr) < 0)
            return false;
        base = m_wa5;
        width = 2.0 * h;
    }
    m_xnew[j] = m_x[j];

    double* const numerical = par.deriv_debug ? m_wa4 : column(j);
    for (int i = 0; i < m_problem.m; ++i)
        numerical[i] = (m_wa4[i] - base[i]) / width;
    if (par.deriv_debug) {
        printComparison(j, column(j), numerical);
        std::copy_n(numerical, m_problem.m, column(j));
    }
    return true;
}

void Fit::printComparison(int j, const double* user, const double* numerical) const
{
    const mp_par& par = parameter(j);
    std::printf("FJAC PARM %d\n", m_ifree[j]);
    for (int i = 0; i < m_problem.m; ++i) {
        if (!isReported(par, user[i], numerical[i]))
            continue;
        const double difference = user[i] - numerical[i];
        const double relative = user[i] == 0.0 ? 0.0 : difference / user[i];
        std::printf(
            "   %10d %10.4g %10.4g %10.4g %10.4g %10.4g\n", i, m_fvec[i], user[i], numerical[i], difference, relative);
    }
}

} // namespace tarnis::fitter
