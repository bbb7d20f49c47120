// The library's own solver over the residuals of a statistic, followed by steps of Fisher scoring: the solver stops at
// a relative change of the statistic, which for unweighted fits of large contents can be large compared with the
// errors.
#include "tarnis/analysis/fitsolver_p.h"

#include "tarnis/analysis/special_p.h"

#include "tarnis/peak/mpfit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis::analysis {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

inline BinTerm cashTerm(double y, double m)
{
    if (y <= 0.0) {
        const double r = std::sqrt(2.0 * m);
        return { r, m > 0.0 ? 1.0 / r : 0.0 };
    }
    if (!(m > 0.0))
        return { none, none };
    const double r = std::copysign(std::sqrt(2.0 * halfDeviance(y, m)), m - y);
    // At m = y both numerator and denominator of (1 - y/m)/r vanish.
    const double slope = std::fabs(m - y) < 1e-6 * y ? 1.0 / std::sqrt(m) : (m - y) / (m * r);
    return { r, slope };
}

} // namespace

std::vector<double> VariableMap::parameters(const std::vector<double>& values) const
{
    std::vector<double> p = constant;
    for (const Term& term : terms)
        p[static_cast<std::size_t>(term.parameter)] += term.factor * values[static_cast<std::size_t>(term.variable)];
    return p;
}

BinTerm binTerm(FitStatistic statistic, double y, double variance, double m, bool hasVariance)
{
    switch (statistic) {
    case FitStatistic::Cash:
        return m >= 0.0 ? cashTerm(y, m) : BinTerm { none, none };
    case FitStatistic::Pearson: {
        if (m == 0.0 && y == 0.0)
            return { 0.0, 0.0 };
        if (!(m > 0.0))
            return { none, none };
        const double root = std::sqrt(m);
        return { (m - y) / root, (m + y) / (2.0 * m * root) };
    }
    case FitStatistic::Neyman: {
        const double weight = 1.0 / std::sqrt(hasVariance ? variance : std::max(y, 1.0));
        return { (m - y) * weight, weight };
    }
    case FitStatistic::Unweighted:
        break;
    }
    return { m - y, 1.0 };
}

FitSolver::FitSolver(FitProblem& problem, FitStatistic statistic, VariableMap map, int maxIterations)
    : m_problem(problem)
    , m_statistic(statistic)
    , m_map(std::move(map))
    , m_maxIterations(maxIterations)
    , m_p(m_map.constant.size())
    , m_slopes(problem.bins())
    , m_columns(m_map.variables.size())
{
    std::vector<int> terms(m_map.variables.size());
    for (const VariableMap::Term& term : m_map.terms)
        terms[static_cast<std::size_t>(term.variable)] += term.factor == 1.0 ? 1 : 2;
    int sums = 0;
    for (const int count : terms)
        m_sumIndex.push_back(count == 1 ? -1 : sums++);
    m_sums.resize(static_cast<std::size_t>(sums) * problem.bins());
}

const std::vector<double>& FitSolver::parametersAt(const double* variables)
{
    m_p = m_map.constant;
    for (const VariableMap::Term& term : m_map.terms)
        m_p[static_cast<std::size_t>(term.parameter)] += term.factor * variables[term.variable];
    return m_p;
}

int FitSolver::residuals(int, int, double* x, double* fvec, double** dvec, void* self)
{
    return static_cast<FitSolver*>(self)->writeResiduals(x, fvec, dvec);
}

// The statistic is chosen outside of the loop, so that the processor overlaps the work on several bins of the most
// common one.
void FitSolver::writeTerms(std::span<const double> model, double* fvec)
{
    const std::span<const double> y = m_problem.contents();
    const std::span<const double> variance = m_problem.variances();
    const auto run = [&](auto termOf) {
        for (std::size_t i = 0; i < model.size(); ++i) {
            const BinTerm term = termOf(i);
            fvec[i] = term.residual;
            m_slopes[i] = term.slope;
        }
    };
    const bool has = !variance.empty();
    if (m_statistic == FitStatistic::Cash)
        run([&](std::size_t i) { return model[i] >= 0.0 ? cashTerm(y[i], model[i]) : BinTerm { none, none }; });
    else
        run([&](std::size_t i) { return binTerm(m_statistic, y[i], has ? variance[i] : y[i], model[i], has); });
}

// The solver usually requests derivatives at the last point, whose slopes are known.
int FitSolver::writeResiduals(const double* variables, double* fvec, double** dvec)
{
    const std::span<const double> model = m_problem.evaluate(parametersAt(variables).data());
    const std::size_t n = m_map.variables.size();
    if (!dvec || !std::equal(m_last.begin(), m_last.end(), variables, variables + n)) {
        m_last.assign(variables, variables + n);
        writeTerms(model, fvec);
    }
    if (!dvec)
        return 0;
    m_problem.differentiate();
    // mpfit() passes columns of zeros.
    for (const VariableMap::Term& term : m_map.terms) {
        double* const target = dvec[term.variable];
        if (!target)
            continue;
        const std::span<const double> column = m_problem.column(term.parameter);
        for (std::size_t i = 0; i < column.size(); ++i)
            target[i] += term.factor * m_slopes[i] * column[i];
    }
    return 0;
}

double FitSolver::valueAt(const std::vector<double>& variables)
{
    if (m_valuedAt == variables)
        return m_value;
    const std::span<const double> model = m_problem.evaluate(parametersAt(variables.data()).data());
    m_valuedAt = variables;
    const std::span<const double> y = m_problem.contents();
    const std::span<const double> variance = m_problem.variances();
    if (m_statistic == FitStatistic::Cash)
        return m_value = sumOfDeviances(y.data(), model.data(), y.size());
    const bool has = !variance.empty();
    m_value = 0.0;
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double residual = binTerm(m_statistic, y[i], has ? variance[i] : y[i], model[i], has).residual;
        m_value += residual * residual;
    }
    return m_value;
}

Minimum FitSolver::minimise(std::vector<double> start, const std::vector<char>& held)
{
    Minimum minimum;
    const std::size_t n = m_map.variables.size();
    std::vector<mp_par> pars(n);
    bool anyFree = false;
    for (std::size_t j = 0; j < n; ++j) {
        const SolverVariable& variable = m_map.variables[j];
        mp_par& par = pars[j];
        par = {};
        par.fixed = !held.empty() && held[j] ? 1 : 0;
        par.limited[0] = std::isfinite(variable.lower) ? 1 : 0;
        par.limited[1] = std::isfinite(variable.upper) ? 1 : 0;
        par.limits[0] = variable.lower;
        par.limits[1] = variable.upper;
        par.side = 3;
        start[j] = std::clamp(start[j], variable.lower, variable.upper);
        anyFree = anyFree || !par.fixed;
    }
    minimum.variables = std::move(start);
    minimum.value = valueAt(minimum.variables);
    if (!std::isfinite(minimum.value))
        return minimum;
    minimum.converged = true;
    if (!anyFree)
        return minimum;
    if (approach(minimum, held)) {
        polish(minimum, held);
        return minimum;
    }
    mp_config config {};
    config.ftol = m_statistic == FitStatistic::Unweighted ? 1e-13 : 1e-10;
    config.stepfactor = 1.0;
    config.maxiter = m_maxIterations;
    config.nprint = 0;
    mp_result result {};
    mpfit(residuals, static_cast<int>(m_problem.bins()), static_cast<int>(n), minimum.variables.data(), pars.data(),
        &config, this, &result);
    minimum.calls += result.nfev;
    for (std::size_t j = 0; j < n; ++j)
        minimum.variables[j] = std::clamp(minimum.variables[j], m_map.variables[j].lower, m_map.variables[j].upper);
    minimum.value = valueAt(minimum.variables);
    if (std::isfinite(minimum.value))
        polish(minimum, held);
    return minimum;
}

} // namespace tarnis::analysis
