// Differences of a bounded fit from LMDIF: columns that would lead out of the box are held, the step is shortened to
// the first bound, and a point next to a bound is moved onto it.
#include "tarnis/peak/mpfit_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis::fitter {

namespace {

constexpr double justBelowOne = 0.9999999999999998;
constexpr double justAboveOne = 1.0000000000000002;

bool sitsOnLower(const mp_par& par, double x)
{
    return par.limited[0] && x == par.limits[0];
}

bool sitsOnUpper(const mp_par& par, double x)
{
    return par.limited[1] && x == par.limits[1];
}

// Values from here on count as being on the upper bound.
double upperTestValue(double ulim)
{
    if (ulim == 0.0)
        return -machineEpsilon;
    return ulim * (ulim > 0.0 ? justBelowOne : justAboveOne);
}

double lowerTestValue(double llim)
{
    if (llim == 0.0)
        return machineEpsilon;
    return llim * (llim > 0.0 ? justAboveOne : justBelowOne);
}

double snapped(const mp_par& par, double x)
{
    if (par.limited[1] && x >= upperTestValue(par.limits[1]))
        return par.limits[1];
    if (par.limited[0] && x <= lowerTestValue(par.limits[0]))
        return par.limits[0];
    return x;
}

// The fraction of the component that stays inside the bounds, at most 1.
double partInside(const mp_par& par, double x, double step)
{
    double alpha = 1.0;
    if (std::fabs(step) <= machineEpsilon)
        return alpha;
    if (par.limited[0] && x + step < par.limits[0])
        alpha = std::min(alpha, (par.limits[0] - x) / step);
    if (par.limited[1] && x + step > par.limits[1])
        alpha = std::min(alpha, (par.limits[1] - x) / step);
    return alpha;
}

// The end point of one component of a step that was shortened by alpha. The component that determined alpha ends on its
// bound: x + alpha * step equals the bound except for rounding, which grows with x and often exceeds the test values
// above. A value a few bits inside would shorten the next step to nothing, and the fit would stop without progress.
double landed(const mp_par& par, double x, double wholeStep, double alpha, double xnew)
{
    if (alpha < 1.0 && partInside(par, x, wholeStep) == alpha)
        return wholeStep < 0.0 ? par.limits[0] : par.limits[1];
    return snapped(par, xnew);
}

} // namespace

// Zeroes the column of a parameter on a bound whose descent direction leads outwards.
void Fit::holdColumnsAtBounds()
{
    for (int j = 0; m_anyLimit && j < m_nfree; ++j) {
        const mp_par& par = parameter(j);
        const bool onLower = sitsOnLower(par, m_x[j]);
        const bool onUpper = sitsOnUpper(par, m_x[j]);
        if (!onLower && !onUpper)
            continue;
        double* c = column(j);
        double sum = 0.0;
        for (int i = 0; i < m_problem.m; ++i)
            sum += m_fvec[i] * c[i];
        if ((onLower && sum > 0.0) || (onUpper && sum < 0.0))
            std::fill_n(c, m_problem.m, 0.0);
    }
}

// Turns lmpar's solution into the step, without the components that lead out of the box. Returns the fraction of it
// that stays inside.
double Fit::keepStepInside()
{
    double alpha = 1.0;
    for (int j = 0; j < m_nfree; ++j) {
        m_step[j] = -m_step[j];
        if (!m_anyLimit)
            continue;
        const mp_par& par = parameter(j);
        if ((m_step[j] < 0.0 && sitsOnLower(par, m_x[j])) || (m_step[j] > 0.0 && sitsOnUpper(par, m_x[j])))
            m_step[j] = 0.0;
        else
            alpha = std::min(alpha, partInside(par, m_x[j], m_step[j]));
    }
    return alpha;
}

void Fit::takeStep(double alpha)
{
    for (int j = 0; j < m_nfree; ++j) {
        const double wholeStep = m_step[j];
        m_step[j] *= alpha;
        m_xnew[j] = m_x[j] + m_step[j];
        if (m_anyLimit)
            m_xnew[j] = landed(parameter(j), m_x[j], wholeStep, alpha, m_xnew[j]);
    }
}

} // namespace tarnis::fitter
