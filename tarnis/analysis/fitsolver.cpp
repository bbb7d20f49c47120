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
// Distances from the minimum, in squared errors: below the first, scoring ends; above the second, the fit has not
// converged.
constexpr double stillDistance = 1e-14;
constexpr double convergedDistance = 1e-6;
// Far from a good fit scoring converges slowly, by a constant factor for each step.
constexpr int maxScoringSteps = 60;

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

bool solveSymmetric(const std::vector<double>& a, const std::vector<char>& held, std::vector<double>* x,
    const std::vector<double>& b, std::vector<double>* inverse)
{
    const std::size_t all = held.size();
    std::vector<std::size_t> free;
    free.reserve(all);
    for (std::size_t j = 0; j < all; ++j) {
        if (!held[j])
            free.push_back(j);
    }
    const std::size_t n = free.size();
    // Scaled to a unit diagonal, then Cholesky: the pivots show how close to singular the matrix is.
    std::vector<double> scale(n);
    std::vector<double> l(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        const double diagonal = a[free[i] * all + free[i]];
        if (!(diagonal > 0.0) || std::isinf(diagonal))
            return false;
        scale[i] = 1.0 / std::sqrt(diagonal);
    }
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = a[free[i] * all + free[j]] * scale[i] * scale[j];
            for (std::size_t k = 0; k < j; ++k)
                sum -= l[i * n + k] * l[j * n + k];
            if (i != j) {
                l[i * n + j] = sum / l[j * n + j];
                continue;
            }
            if (!(sum > 1e-13))
                return false;
            l[i * n + i] = std::sqrt(sum);
        }
    }
    const auto solve = [&](std::vector<double>& v) {
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t k = 0; k < i; ++k)
                v[i] -= l[i * n + k] * v[k];
            v[i] /= l[i * n + i];
        }
        for (std::size_t i = n; i-- > 0;) {
            for (std::size_t k = i + 1; k < n; ++k)
                v[i] -= l[k * n + i] * v[k];
            v[i] /= l[i * n + i];
        }
    };
    std::vector<double> v(n);
    if (x) {
        for (std::size_t i = 0; i < n; ++i)
            v[i] = scale[i] * b[free[i]];
        solve(v);
        x->assign(all, 0.0);
        for (std::size_t i = 0; i < n; ++i)
            (*x)[free[i]] = scale[i] * v[i];
    }
    if (inverse) {
        inverse->assign(all * all, 0.0);
        for (std::size_t j = 0; j < n; ++j) {
            std::fill(v.begin(), v.end(), 0.0);
            v[j] = 1.0;
            solve(v);
            for (std::size_t i = 0; i < n; ++i)
                (*inverse)[free[i] * all + free[j]] = scale[i] * scale[j] * v[i];
        }
    }
    return true;
}

FitSolver::FitSolver(FitProblem& problem, FitStatistic statistic, VariableMap map, int maxIterations)
    : m_problem(problem)
    , m_statistic(statistic)
    , m_map(std::move(map))
    , m_maxIterations(maxIterations)
    , m_p(m_map.constant.size())
    , m_slopes(problem.bins())
{
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

// The statistic is chosen outside of the loop: of the commonest one the bins then overlap in the processor.
void FitSolver::writeTerms(std::span<const double> model, double* fvec)
{
    const std::span<const double> y = m_problem.contents();
    const std::span<const double> variance = m_problem.variances();
    double sum = 0.0;
    const auto run = [&](auto termOf) {
        for (std::size_t i = 0; i < model.size(); ++i) {
            const BinTerm term = termOf(i);
            fvec[i] = term.residual;
            m_slopes[i] = term.slope;
            sum += term.residual * term.residual;
        }
    };
    const bool has = !variance.empty();
    if (m_statistic == FitStatistic::Cash)
        run([&](std::size_t i) { return model[i] >= 0.0 ? cashTerm(y[i], model[i]) : BinTerm { none, none }; });
    else
        run([&](std::size_t i) { return binTerm(m_statistic, y[i], has ? variance[i] : y[i], model[i], has); });
    m_lastValue = sum;
}

// The solver starts at a point whose value is already known, and usually requests derivatives at the last point.
int FitSolver::writeResiduals(const double* variables, double* fvec, double** dvec)
{
    const std::size_t n = m_map.variables.size();
    const bool isLast = std::equal(m_last.begin(), m_last.end(), variables, variables + n);
    if (!isLast || (!dvec && !m_hasResiduals)) {
        const std::span<const double> model = m_problem.evaluate(parametersAt(variables).data());
        m_last.assign(variables, variables + n);
        m_hasResiduals = false;
        writeTerms(model, fvec);
    } else if (!dvec) {
        std::copy(m_residuals.begin(), m_residuals.end(), fvec);
    }
    if (!dvec)
        return 0;
    m_problem.evaluate(parametersAt(variables).data()); // another solver may have moved the problem
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
    if (m_last != variables) {
        m_residuals.resize(m_problem.bins());
        writeResiduals(variables.data(), m_residuals.data(), nullptr);
        m_hasResiduals = true;
    }
    return m_lastValue;
}

// The last step of polish() and the errors of the result need the information at the same point.
const Information& FitSolver::informationAt(const std::vector<double>& variables)
{
    const double value = valueAt(variables);
    m_problem.evaluate(parametersAt(variables.data()).data()); // another solver may have moved the problem
    if (m_informedAt == variables)
        return m_information;
    m_informedAt = variables;
    m_information.value = value;
    weighBins();
    const std::size_t n = m_map.variables.size();
    const std::size_t bins = m_problem.bins();
    const std::vector<double>& columns = jacobian();
    m_information.matrix.resize(n * n);
    m_information.gradient.resize(n);
    for (std::size_t j = 0; j < n; ++j) {
        const double* const cj = columns.data() + j * bins;
        m_information.gradient[j] = dot(m_forces.data(), cj, bins);
        for (std::size_t i = 0; i < bins; ++i)
            m_weighted[i] = m_weights[i] * cj[i];
        for (std::size_t k = 0; k <= j; ++k)
            m_information.matrix[j * n + k] = m_information.matrix[k * n + j] =
                dot(m_weighted.data(), columns.data() + k * bins, bins);
    }
    return m_information;
}

// Weights of the bins in the information and half the derivatives of the statistic by their contents.
void FitSolver::weighBins()
{
    const std::span<const double> y = m_problem.contents();
    const std::span<const double> variance = m_problem.variances();
    const std::span<const double> model = m_problem.values();
    m_weights.resize(y.size());
    m_forces.resize(y.size());
    m_weighted.resize(y.size());
    for (std::size_t i = 0; i < y.size(); ++i) {
        const double m = model[i];
        double weight = 1.0;
        double force = m - y[i];
        switch (m_statistic) {
        case FitStatistic::Cash:
            weight = m > 0.0 ? 1.0 / m : 0.0;
            force = m > 0.0 ? 1.0 - y[i] / m : 1.0;
            break;
        case FitStatistic::Pearson:
            weight = m > 0.0 ? 1.0 / m : 0.0;
            force = m > 0.0 ? 0.5 * (1.0 - y[i] / m * (y[i] / m)) : 0.5;
            break;
        case FitStatistic::Neyman:
            weight = 1.0 / (variance.empty() ? std::max(y[i], 1.0) : variance[i]);
            force *= weight;
            break;
        case FitStatistic::Unweighted:
            break;
        }
        m_weights[i] = weight;
        m_forces[i] = force;
    }
}

const std::vector<double>& FitSolver::jacobian()
{
    const std::size_t bins = m_problem.bins();
    m_jacobian.assign(bins * m_map.variables.size(), 0.0);
    m_problem.differentiate();
    for (const VariableMap::Term& term : m_map.terms) {
        double* const target = m_jacobian.data() + static_cast<std::size_t>(term.variable) * bins;
        const std::span<const double> column = m_problem.column(term.parameter);
        for (std::size_t i = 0; i < bins; ++i)
            target[i] += term.factor * column[i];
    }
    return m_jacobian;
}

bool FitSolver::isAtLower(const std::vector<double>& variables, std::size_t j) const
{
    const SolverVariable& variable = m_map.variables[j];
    return variables[j] - variable.lower <= 1e-9 * std::min(1.0, variable.upper - variable.lower)
        || variables[j] <= variable.lower;
}

bool FitSolver::isAtUpper(const std::vector<double>& variables, std::size_t j) const
{
    const SolverVariable& variable = m_map.variables[j];
    return variable.upper - variables[j] <= 1e-9 * std::min(1.0, variable.upper - variable.lower)
        || variables[j] >= variable.upper;
}

// The step of Fisher scoring within the bounds; false if the matrix is singular. A variable on its bound whose gradient
// points inwards can still have a step outwards, by its correlation with others: it is held as well, otherwise no step
// at all would be possible. held: in and out.
bool FitSolver::stepWithin(
    const Minimum& at, const Information& information, std::vector<char>& held, std::vector<double>& step) const
{
    const std::size_t n = held.size();
    for (std::size_t j = 0; j < n; ++j) {
        const double g = information.gradient[j];
        // Without an effect on the model, as the slope of an exponential of height 0, there is nothing to move.
        held[j] = held[j] || information.matrix[j * n + j] == 0.0 || (g > 0.0 && isAtLower(at.variables, j))
            || (g < 0.0 && isAtUpper(at.variables, j));
    }
    for (bool again = true; again;) {
        if (!solveSymmetric(information.matrix, held, &step, information.gradient, nullptr))
            return false;
        again = false;
        for (std::size_t j = 0; j < n; ++j) {
            const bool leaves =
                (step[j] > 0.0 && isAtLower(at.variables, j)) || (step[j] < 0.0 && isAtUpper(at.variables, j));
            if (!held[j] && leaves)
                held[j] = again = true;
        }
    }
    return true;
}

// Moves against the step, halved until the statistic decreases. False if it does not.
bool FitSolver::moveBy(const std::vector<double>& step, Minimum& minimum)
{
    const std::size_t n = step.size();
    double length = 1.0;
    for (std::size_t j = 0; j < n; ++j) {
        const SolverVariable& variable = m_map.variables[j];
        if (step[j] > 0.0)
            length = std::min(length, (minimum.variables[j] - variable.lower) / step[j]);
        else if (step[j] < 0.0)
            length = std::min(length, (minimum.variables[j] - variable.upper) / step[j]);
    }
    for (int halving = 0; halving < 6; ++halving, length *= 0.5) {
        std::vector<double> next = minimum.variables;
        for (std::size_t j = 0; j < n; ++j)
            next[j] = std::clamp(next[j] - length * step[j], m_map.variables[j].lower, m_map.variables[j].upper);
        const double value = valueAt(next);
        ++minimum.calls;
        // Near the minimum the statistic no longer changes within rounding.
        if (value <= minimum.value * (1.0 + 1e-15)) {
            const bool moved = next != minimum.variables;
            minimum.variables = std::move(next);
            minimum.value = value;
            return moved;
        }
    }
    return false;
}

// Steps of Fisher scoring. They also estimate the distance to the minimum.
void FitSolver::polish(Minimum& minimum, const std::vector<char>& held)
{
    const std::size_t n = m_map.variables.size();
    minimum.converged = false;
    for (int round = 0; round < maxScoringSteps; ++round) {
        const Information& information = informationAt(minimum.variables);
        std::vector<char> still = held.empty() ? std::vector<char>(n, 0) : held;
        std::vector<double> step;
        if (!stepWithin(minimum, information, still, step))
            return;
        double distance = 0.0;
        for (std::size_t j = 0; j < n; ++j)
            distance += step[j] * information.gradient[j];
        const double scale = m_statistic == FitStatistic::Unweighted && m_problem.bins() > n
            ? std::max(1.0, minimum.value / static_cast<double>(m_problem.bins() - n))
            : 1.0;
        minimum.converged = distance < convergedDistance * scale;
        if (!(distance > stillDistance * scale) || !moveBy(step, minimum))
            return;
    }
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
    mp_config config {};
    config.ftol = m_statistic == FitStatistic::Unweighted ? 1e-13 : 1e-10;
    config.stepfactor = 1.0;
    config.maxiter = m_maxIterations;
    config.nprint = 0;
    mp_result result {};
    mpfit(residuals, static_cast<int>(m_problem.bins()), static_cast<int>(n), minimum.variables.data(), pars.data(),
        &config, this, &result);
    minimum.calls = result.nfev;
    for (std::size_t j = 0; j < n; ++j)
        minimum.variables[j] = std::clamp(minimum.variables[j], m_map.variables[j].lower, m_map.variables[j].upper);
    minimum.value = valueAt(minimum.variables);
    if (std::isfinite(minimum.value))
        polish(minimum, held);
    return minimum;
}

} // namespace tarnis::analysis
