// Asymmetric errors: the change of a parameter at which the statistic, with all others refitted, has increased by 1.
#include "tarnis/analysis/fitresult_p.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnis::analysis {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double farRise = 4.0;

// The profile of one variable on one side.
class Profile {
public:
    Profile(FitSolver& solver, const Minimum& minimum, const std::vector<double>& covariance, double rise)
        : m_solver(solver)
        , m_minimum(minimum)
        , m_covariance(covariance)
        , m_rise(rise)
    {
    }

    struct Side {
        double distance = none;
        bool atBound = false;
    };
    Side search(std::size_t variable, double direction, double error);
    /// A lower point than the minimum, if one was found.
    const std::optional<Minimum>& lower() const { return m_lower; }

private:
    double risenAt(std::size_t variable, double offset);
    void tryOtherTails(std::size_t variable, const std::vector<char>& held, Minimum& moved);

    FitSolver& m_solver;
    const Minimum& m_minimum;
    const std::vector<double>& m_covariance; ///< covariance of the variables
    double m_rise;
    std::vector<double> m_nearest; ///< the others refitted at the last point of this side; empty: none
    std::optional<Minimum> m_lower;
};

// The increase of the statistic with one variable shifted and held. The others start at the values predicted by the
// covariance.
double Profile::risenAt(std::size_t variable, double offset)
{
    const std::size_t n = m_minimum.variables.size();
    std::vector<char> held(n, 0);
    held[variable] = 1;
    std::vector<double> start = m_minimum.variables;
    const double variance = m_covariance[variable * n + variable];
    for (std::size_t j = 0; j < n; ++j) {
        const SolverVariable& limits = m_solver.map().variables[j];
        if (variance > 0.0)
            start[j] += offset * m_covariance[j * n + variable] / variance;
        start[j] = std::clamp(start[j], limits.lower, limits.upper);
    }
    start[variable] = m_minimum.variables[variable] + offset;
    Minimum moved = m_solver.minimise(start, held);
    const double expected = variance > 0.0 ? offset * offset / variance : none;
    const double risen = moved.value - m_minimum.value;
    // Far from a parabola, as at bounds or in noise, the others may have stopped in another minimum. Far out the
    // prediction itself may have led there.
    const bool isExpected = risen > 0.5 * expected && risen < 1.3 * expected && risen < farRise * m_rise;
    if (!moved.converged || !isExpected) {
        for (const std::vector<double>& other : { m_nearest, m_minimum.variables }) {
            if (other.empty())
                continue;
            start = other;
            start[variable] = m_minimum.variables[variable] + offset;
            Minimum again = m_solver.minimise(start, held);
            if (again.value < moved.value || !std::isfinite(moved.value))
                moved = std::move(again);
        }
    }
    tryOtherTails(variable, held, moved);
    if (std::isfinite(moved.value))
        m_nearest = moved.variables;
    if (moved.value < m_minimum.value - 1e-4 * m_rise && (!m_lower || moved.value < m_lower->value))
        m_lower = moved;
    return moved.value - m_minimum.value - m_rise;
}

// A short tail, a long one and none have minima of their own, which local steps do not leave.
void Profile::tryOtherTails(std::size_t variable, const std::vector<char>& held, Minimum& moved)
{
    struct Tail {
        double length; ///< part of the range
        double ratio;
    };
    const FitProblem& problem = m_solver.problem();
    const double range = problem.upper() - problem.lower();
    for (const Tail tail : { Tail { 0.02, 0.5 }, Tail { 0.1, 0.3 }, Tail { 0.5, 0.5 } }) {
        std::vector<double> start = std::isfinite(moved.value) ? moved.variables : m_minimum.variables;
        start[variable] = moved.variables[variable];
        bool isOther = false;
        for (std::size_t j = 0; j < start.size(); ++j) {
            const int parameter = m_solver.map().variables[j].parameter;
            if (j == variable || parameter < 0)
                continue;
            const QString kind = kindOf(problem.names()[static_cast<std::size_t>(parameter)]);
            if (kind == QLatin1StringView("tau"))
                start[j] = tail.length * range;
            else if (kind == QLatin1StringView("ratio"))
                start[j] = tail.ratio;
            else
                continue;
            isOther = true;
        }
        if (!isOther)
            return;
        Minimum other = m_solver.minimise(start, held);
        if (other.value < moved.value || !std::isfinite(moved.value))
            moved = std::move(other);
    }
}

// Regula falsi on the square root of the increase, which is nearly linear in the distance.
Profile::Side Profile::search(std::size_t variable, double direction, double error)
{
    const SolverVariable& limits = m_solver.map().variables[variable];
    const double at = m_minimum.variables[variable];
    const double room = direction > 0.0 ? limits.upper - at : at - limits.lower;
    if (!(room > 0.0))
        return { 0.0, true };
    m_nearest.clear();
    const auto root = [&](double f) { return std::sqrt(std::max(0.0, f / m_rise + 1.0)) - 1.0; };
    double low = 0.0;
    double fLow = root(-m_rise);
    double high = std::min(error, room);
    double fHigh = 0.0;
    for (int i = 0;; ++i) {
        const double risen = risenAt(variable, direction * high);
        if (!std::isfinite(risen))
            return {};
        fHigh = root(risen);
        if (fHigh >= 0.0)
            break;
        if (high >= room)
            return { room, true };
        if (i == 12)
            return {};
        low = high;
        fLow = fHigh;
        high = std::min(room, high * 1.5);
    }
    int side = 0;
    for (int i = 0; i < 40 && high - low > 1e-6 * high; ++i) {
        double next = low + (high - low) * fLow / (fLow - fHigh);
        if (!(next > low && next < high))
            next = 0.5 * (low + high);
        const double risen = risenAt(variable, direction * next);
        if (!std::isfinite(risen))
            return {};
        const double f = root(risen);
        if (std::fabs(f) < 1e-5)
            return { next, false };
        // The Illinois rule: the function value of an end that is kept twice is halved, otherwise that end would never
        // move.
        if (f > 0.0) {
            high = next;
            fHigh = f;
            fLow *= side > 0 ? 0.5 : 1.0;
            side = 1;
        } else {
            low = next;
            fLow = f;
            fHigh *= side < 0 ? 0.5 : 1.0;
            side = -1;
        }
    }
    return { high, false };
}

bool isWanted(const FitResult& result, const FitParameter& parameter)
{
    const QString kind = kindOf(parameter.name);
    if (kind == QLatin1StringView("b") || kind == QLatin1StringView("step"))
        return false;
    if (result.options.profileErrors)
        return true;
    return result.options.profileWeakAreas && kind == QLatin1StringView("area") && parameter.error > 0.0
        && parameter.value < 10.0 * parameter.error;
}

} // namespace

bool addProfiles(FitSolver& solver, Minimum& minimum, FitResult& result)
{
    const VariableMap& map = solver.map();
    std::vector<double> covariance;
    const bool unweighted = result.options.statistic == FitStatistic::Unweighted;
    const double rise = unweighted && result.ndf > 0 ? std::max(1e-300, result.value / result.ndf) : 1.0;
    for (std::size_t j = 0; j < map.variables.size(); ++j) {
        const int index = map.variables[j].parameter;
        if (index < 0 || !isWanted(result, result.parameters[static_cast<std::size_t>(index)]))
            continue;
        if (covariance.empty() && !solver.covarianceAt(minimum.variables, covariance))
            return false;
        FitParameter& parameter = result.parameters[static_cast<std::size_t>(index)];
        // On a bound there is no error estimate; starts with a small part of the allowed range.
        const SolverVariable& limits = map.variables[j];
        const double scale = parameter.error > 0.0 ? parameter.error * std::sqrt(rise)
                                                   : 1e-3 * std::min(1e3, limits.upper - limits.lower);
        Profile profile(solver, minimum, covariance, rise);
        const Profile::Side below = profile.search(j, -1.0, scale);
        const Profile::Side above = profile.search(j, 1.0, scale);
        if (profile.lower()) {
            minimum = solver.minimise(profile.lower()->variables);
            return true;
        }
        parameter.profile = ProfileError { -below.distance, above.distance, below.atBound, above.atBound };
    }
    return false;
}

} // namespace tarnis::analysis
