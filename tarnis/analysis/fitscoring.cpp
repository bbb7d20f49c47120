// Fisher scoring: steps by the expected information, whose length is also the distance to the minimum in errors.
#include "tarnis/analysis/fitsolver_p.h"

#include "tarnis/analysis/special_p.h"
#include "tarnis/foundation/avx2_p.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace tarnis::analysis {

namespace {

// Distances from the minimum, in squared errors: below the first, scoring ends; above the second, the fit has not
// converged.
constexpr double stillDistance = 1e-14;
constexpr double convergedDistance = 1e-6;
// Far from a good fit scoring converges slowly, by a constant factor for each step.
constexpr int maxScoringSteps = 60;
// Of full steps without mpfit(): their number, where they end, and the fall of the statistic in units of the predicted
// one.
constexpr int maxFullSteps = 8;
constexpr double nearDistance = 1e-2;
constexpr double minFall = 0.75;
constexpr double maxFall = 1.4;

} // namespace

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
    const std::vector<const double*>& derivatives = columns();
    m_information.matrix.resize(n * n);
    m_information.gradient.resize(n);
    m_factors.assign(1, m_pulls.data());
    m_factors.insert(m_factors.end(), derivatives.begin(), derivatives.end());
    m_products.resize(n + 1);
    for (std::size_t j = 0; j < n; ++j) {
        weightedDots(m_weights.data(), derivatives[j], m_factors.data(), j + 2, m_problem.bins(), m_products.data());
        m_information.gradient[j] = m_products[0];
        for (std::size_t k = 0; k <= j; ++k)
            m_information.matrix[j * n + k] = m_information.matrix[k * n + j] = m_products[k + 1];
    }
    return m_information;
}

// Weights of the bins in the information, and half the derivatives of the statistic by their contents over the weights.
void FitSolver::weighBins()
{
    const std::span<const double> y = m_problem.contents();
    const std::span<const double> variance = m_problem.variances();
    const std::span<const double> model = m_problem.values();
    m_weights.resize(y.size());
    m_pulls.resize(y.size());
    const auto run = [&, weights = m_weights.data(), pulls = m_pulls.data()](auto weightOf, auto pullOf) {
        runWide([=] {
            for (std::size_t i = 0; i < y.size(); ++i) {
                weights[i] = weightOf(i);
                pulls[i] = pullOf(i);
            }
        });
    };
    // Far from a peak without background the model is too small for its inverse. Such a bin has no part in the
    // information, as the squares of its derivatives are smaller still.
    constexpr double smallest = std::numeric_limits<double>::min();
    const auto inverse = [=](std::size_t i) {
        const double all = 1.0 / model[i]; // unconditional, so the compiler vectorises it
        return model[i] >= smallest ? all : 0.0;
    };
    const auto difference = [=](std::size_t i) { return model[i] - y[i]; };
    switch (m_statistic) {
    case FitStatistic::Cash:
        run(inverse, difference);
        break;
    case FitStatistic::Pearson:
        run(inverse, [=](std::size_t i) { return 0.5 * (model[i] - y[i] * inverse(i) * y[i]); });
        break;
    case FitStatistic::Neyman:
        run([=](std::size_t i) { return 1.0 / (variance.empty() ? std::max(y[i], 1.0) : variance[i]); }, difference);
        break;
    case FitStatistic::Unweighted:
        run([](std::size_t) { return 1.0; }, difference);
        break;
    }
}

// The column of a variable that is a parameter is that of the parameter, without a copy. Sums of columns that the
// problem never changes are computed once.
const std::vector<const double*>& FitSolver::columns()
{
    const std::size_t bins = m_problem.bins();
    m_problem.differentiate();
    if (m_areSumsKnown)
        return m_columns;
    std::fill(m_sums.begin(), m_sums.end(), 0.0);
    m_areSumsKnown = true;
    for (const VariableMap::Term& term : m_map.terms) {
        const auto j = static_cast<std::size_t>(term.variable);
        const std::span<const double> column = m_problem.column(term.parameter);
        if (m_sumIndex[j] < 0) {
            m_columns[j] = column.data();
            continue;
        }
        m_areSumsKnown = m_areSumsKnown && m_problem.isConstant(term.parameter);
        double* const sum = m_sums.data() + static_cast<std::size_t>(m_sumIndex[j]) * bins;
        m_columns[j] = sum;
        for (std::size_t i = 0; i < bins; ++i)
            sum[i] += term.factor * column[i];
    }
    return m_columns;
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

bool FitSolver::covarianceAt(const std::vector<double>& variables, std::vector<double>& covariance)
{
    const Information& information = informationAt(variables);
    const std::size_t n = variables.size();
    std::vector<char> held(n, 0);
    for (std::size_t j = 0; j < n; ++j)
        held[j] = isAtLower(variables, j) || isAtUpper(variables, j) || information.matrix[j * n + j] == 0.0;
    if (!m_factored.factorise(information.matrix, held))
        return false;
    m_factored.invert(covariance);
    return true;
}

// The step of Fisher scoring within the bounds; false if the matrix is singular. A variable on its bound whose gradient
// points inwards can still have a step outwards, by its correlation with others: it is held as well, otherwise no step
// at all would be possible. held: in and out.
bool FitSolver::stepWithin(
    const Minimum& at, const Information& information, std::vector<char>& held, std::vector<double>& step)
{
    const std::size_t n = held.size();
    for (std::size_t j = 0; j < n; ++j) {
        const double g = information.gradient[j];
        // Without an effect on the model, as the slope of an exponential of height 0, there is nothing to move.
        held[j] = held[j] || information.matrix[j * n + j] == 0.0 || (g > 0.0 && isAtLower(at.variables, j))
            || (g < 0.0 && isAtUpper(at.variables, j));
    }
    for (bool again = true; again;) {
        if (!m_factored.factorise(information.matrix, held))
            return false;
        m_factored.solve(information.gradient, step);
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

// The increase of the statistic at a distance of one error.
double FitSolver::squaredError(double value) const
{
    const std::size_t n = m_map.variables.size();
    return m_statistic == FitStatistic::Unweighted && m_problem.bins() > n
        ? std::max(1.0, value / static_cast<double>(m_problem.bins() - n))
        : 1.0;
}

// From good starting values full steps reach the minimum with a third of the work of mpfit(). They are used only while
// the statistic is nearly a parabola: each step stays off the bounds and lowers the statistic by what it predicts.
// Returns true near the minimum, otherwise false with the start restored.
bool FitSolver::approach(Minimum& minimum, const std::vector<char>& held)
{
    const std::size_t n = m_map.variables.size();
    const Minimum start = minimum;
    std::vector<double> step;
    std::vector<double> next(n);
    for (int round = 0; round < std::min(m_maxIterations, maxFullSteps); ++round) {
        const Information& information = informationAt(minimum.variables);
        std::vector<char> still = held.empty() ? std::vector<char>(n, 0) : held;
        if (!stepWithin(minimum, information, still, step))
            break;
        const double predicted = std::inner_product(step.begin(), step.end(), information.gradient.begin(), 0.0);
        if (predicted < nearDistance * squaredError(minimum.value))
            return true;
        bool inside = true;
        for (std::size_t j = 0; j < n; ++j) {
            next[j] = minimum.variables[j] - step[j];
            inside = inside && next[j] >= m_map.variables[j].lower && next[j] <= m_map.variables[j].upper;
        }
        if (!inside)
            break;
        const double value = valueAt(next);
        ++minimum.calls;
        const double fall = minimum.value - value;
        if (!(fall > minFall * predicted && fall < maxFall * predicted))
            break;
        minimum.variables = next;
        minimum.value = value;
    }
    const int calls = minimum.calls;
    minimum = start;
    minimum.calls = calls;
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
        const double scale = squaredError(minimum.value);
        minimum.converged = distance < convergedDistance * scale;
        if (!(distance > stillDistance * scale) || !moveBy(step, minimum))
            return;
    }
}

} // namespace tarnis::analysis
