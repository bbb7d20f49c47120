// Errors from the expected information, and derived quantities.
#include "tarnis/analysis/fitresult_p.h"

#include "tarnis/analysis/special_p.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis::analysis {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// G V G' for the map's G.
std::vector<double> propagated(const VariableMap& map, const std::vector<double>& v)
{
    const std::size_t parameters = map.constant.size();
    const std::size_t variables = map.variables.size();
    std::vector<double> half(parameters * variables, 0.0);
    for (const VariableMap::Term& term : map.terms) {
        for (std::size_t j = 0; j < variables; ++j)
            half[static_cast<std::size_t>(term.parameter) * variables + j] +=
                term.factor * v[static_cast<std::size_t>(term.variable) * variables + j];
    }
    std::vector<double> result(parameters * parameters, 0.0);
    for (const VariableMap::Term& term : map.terms) {
        for (std::size_t i = 0; i < parameters; ++i)
            result[i * parameters + static_cast<std::size_t>(term.parameter)] +=
                half[i * variables + static_cast<std::size_t>(term.variable)] * term.factor;
    }
    return result;
}

// (J'J)^-1 J' diag(variance) J (J'J)^-1 of an unweighted fit, from the inverse of J'J.
std::vector<double> sandwich(FitSolver& solver, const std::vector<double>& inverse)
{
    const std::size_t n = solver.map().variables.size();
    const std::size_t bins = solver.problem().bins();
    const std::vector<const double*>& columns = solver.columns();
    const auto model = solver.problem().values();
    const auto variances = solver.problem().variances();
    std::vector<double> middle(n * n, 0.0);
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t k = 0; k < n; ++k) {
            for (std::size_t i = 0; i < bins; ++i)
                middle[j * n + k] +=
                    columns[j][i] * columns[k][i] * std::max(0.0, variances.empty() ? model[i] : variances[i]);
        }
    }
    std::vector<double> half(n * n, 0.0);
    std::vector<double> result(n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j)
            for (std::size_t k = 0; k < n; ++k)
                half[i * n + j] += inverse[i * n + k] * middle[k * n + j];
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j < n; ++j)
            for (std::size_t k = 0; k < n; ++k)
                result[i * n + j] += half[i * n + k] * inverse[k * n + j];
    return result;
}

double rootOf(double variance)
{
    return variance > 0.0 ? std::sqrt(variance) : none;
}

void describeParameters(FitSolver& solver, const Minimum& minimum, FitResult& result)
{
    const VariableMap& map = solver.map();
    const std::vector<QString>& names = solver.problem().names();
    const std::vector<double> p = map.parameters(minimum.variables);
    result.parameters.resize(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        FitParameter& parameter = result.parameters[i];
        parameter = {};
        parameter.name = names[i];
        parameter.value = p[i];
    }
    for (std::size_t j = 0; j < map.variables.size(); ++j) {
        if (map.variables[j].parameter < 0)
            continue;
        FitParameter& parameter = result.parameters[static_cast<std::size_t>(map.variables[j].parameter)];
        parameter.atLower = solver.isAtLower(minimum.variables, j);
        parameter.atUpper = solver.isAtUpper(minimum.variables, j);
    }
    // A background that is 0 at an end of the range: its parameters can move only to one side.
    for (const VariableMap::Term& term : map.terms) {
        const auto j = static_cast<std::size_t>(term.variable);
        if (map.variables[j].parameter >= 0 || !solver.isAtLower(minimum.variables, j))
            continue;
        FitParameter& parameter = result.parameters[static_cast<std::size_t>(term.parameter)];
        parameter.atLower = parameter.atLower || term.factor > 0.0;
        parameter.atUpper = parameter.atUpper || term.factor < 0.0;
    }
    for (const FitConstraint& constraint : result.model.constraints) {
        for (FitParameter& parameter : result.parameters) {
            if (parameter.name != constraint.name)
                continue;
            parameter.fixed = constraint.fixed;
            parameter.tied = !constraint.fixed && !constraint.tiedTo.isEmpty();
        }
    }
}

void addCorrelation(FitResult& result)
{
    const std::size_t n = result.parameters.size();
    result.correlation.assign(n * n, none);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            const double product = result.covariance[i * n + i] * result.covariance[j * n + j];
            if (product > 0.0)
                result.correlation[i * n + j] =
                    i == j ? 1.0 : std::clamp(result.covariance[i * n + j] / std::sqrt(product), -1.0, 1.0);
        }
    }
}

// A derived quantity under construction, with its gradient by parameter.
class Quantity {
public:
    Quantity(const FitResult& result, double value)
        : m_result(result)
        , m_value(value)
        , m_gradient(result.parameters.size(), 0.0)
    {
    }
    Quantity& by(int parameter, double derivative)
    {
        m_gradient[static_cast<std::size_t>(parameter)] += derivative;
        return *this;
    }
    void addTo(const QString& name, double factor, std::vector<DerivedQuantity>& list) const
    {
        const std::size_t n = m_gradient.size();
        double variance = 0.0;
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j < n; ++j)
                variance += m_gradient[i] * m_gradient[j] * m_result.covariance[i * n + j];
        list.push_back({ name, m_value, factor * rootOf(variance) });
    }

private:
    const FitResult& m_result;
    double m_value;
    std::vector<double> m_gradient;
};

class DerivedList {
public:
    DerivedList(const FitProblem& problem, FitResult& result)
        : m_problem(problem)
        , m_layout(problem.layout())
        , m_result(result)
    {
        if (result.options.statistic == FitStatistic::Unweighted && result.ndf > 0)
            m_factor = std::sqrt(result.value / result.ndf);
        for (const FitParameter& parameter : result.parameters)
            m_p.push_back(parameter.value);
    }
    void addPeak(int peak);
    void addPairs();
    void addBackground();

private:
    double p(int parameter) const { return m_p[static_cast<std::size_t>(parameter)]; }
    int area(int peak) const { return m_layout.area[static_cast<std::size_t>(peak)]; }
    int centre(int peak) const { return m_layout.centre[static_cast<std::size_t>(peak)]; }
    PeakMeasures measuresAt(int peak) const
    {
        std::array<double, maxWidthParameters> widths {};
        m_problem.widthsOf(peak, m_p.data(), widths.data());
        return peakMeasures(m_problem.model().shape, p(centre(peak)), widths);
    }
    void finish(const Quantity& quantity, const QString& name) { quantity.addTo(name, m_factor, m_result.derived); }

    const FitProblem& m_problem;
    const FitLayout& m_layout;
    FitResult& m_result;
    std::vector<double> m_p;
    double m_factor = 1.0;
};

// Widths and heights of unit area depend only on the width parameters (for calibrated peaks also on the centre).
// Derivatives are central differences, because the bisections are exact to rounding.
void DerivedList::addPeak(int peak)
{
    const QString number = m_layout.peaks > 1 ? QString::number(peak + 1) : QString();
    const PeakMeasures at = measuresAt(peak);
    m_result.peaks.push_back({ p(area(peak)), p(centre(peak)), at });
    Quantity fwhm(m_result, at.fwhm);
    Quantity height(m_result, p(area(peak)) * at.height);
    Quantity resolution(m_result, at.fwhm / p(centre(peak)));
    Quantity top(m_result, at.top);
    Quantity mean(m_result, at.mean);
    height.by(area(peak), at.height);
    top.by(centre(peak), 1.0);
    mean.by(centre(peak), 1.0);
    resolution.by(centre(peak), -at.fwhm / (p(centre(peak)) * p(centre(peak))));
    std::vector<int> parameters(m_layout.width[static_cast<std::size_t>(peak)].begin(),
        m_layout.width[static_cast<std::size_t>(peak)].begin() + m_layout.widths);
    for (const int parameter : parameters) {
        double& value = m_p[static_cast<std::size_t>(parameter)];
        const double kept = value;
        const double step = 1e-4 * std::max(std::fabs(kept), 1e-6);
        value = kept + step;
        const PeakMeasures more = measuresAt(peak);
        value = kept - step;
        const PeakMeasures less = measuresAt(peak);
        value = kept;
        const double byFwhm = (more.fwhm - less.fwhm) / (2.0 * step);
        fwhm.by(parameter, byFwhm);
        resolution.by(parameter, byFwhm / p(centre(peak)));
        height.by(parameter, p(area(peak)) * (more.height - less.height) / (2.0 * step));
        top.by(parameter, (more.top - less.top) / (2.0 * step));
        mean.by(parameter, (more.mean - less.mean) / (2.0 * step));
    }
    if (m_problem.model().shape != PeakShape::PseudoVoigt)
        finish(fwhm, "fwhm"_L1 + number);
    finish(height, "height"_L1 + number);
    if (p(centre(peak)) > 0.0)
        finish(resolution, "resolution"_L1 + number);
    if (at.mean != p(centre(peak))) {
        finish(top, "top"_L1 + number);
        finish(mean, "mean"_L1 + number);
    }
}

void DerivedList::addPairs()
{
    if (m_layout.peaks < 2)
        return;
    double total = 0.0;
    for (int k = 0; k < m_layout.peaks; ++k)
        total += p(area(k));
    Quantity sum(m_result, total);
    for (int k = 0; k < m_layout.peaks; ++k)
        sum.by(area(k), 1.0);
    for (int k = 1; k < m_layout.peaks; ++k) {
        const QString number = m_layout.peaks > 2 ? QString::number(k + 1) : QString();
        finish(Quantity(m_result, p(centre(k)) - p(centre(k - 1))).by(centre(k), 1.0).by(centre(k - 1), -1.0),
            "separation"_L1 + number);
    }
    finish(sum, u"area_total"_s);
    for (int k = 1; k < m_layout.peaks; ++k) {
        const QString number = m_layout.peaks > 2 ? QString::number(k + 1) : QString();
        const double first = p(area(0));
        if (first != 0.0)
            finish(Quantity(m_result, p(area(k)) / first)
                       .by(area(k), 1.0 / first)
                       .by(area(0), -p(area(k)) / (first * first)),
                "area_ratio"_L1 + number);
    }
}

// At the centres of the first and the last bin.
void DerivedList::addBackground()
{
    if (m_layout.backgrounds == 0)
        return;
    const auto edges = m_problem.edges();
    const std::size_t n = m_problem.bins();
    const double* const b = m_p.data() + m_layout.background;
    const FitBackground background = m_problem.model().background;
    const auto add = [&](double u, const QString& name) {
        Quantity quantity(m_result, backgroundDensity(background, b, u));
        const int first = m_layout.background;
        if (background == FitBackground::Exponential) {
            quantity.by(first, std::exp(-b[1] * u)).by(first + 1, -u * b[0] * std::exp(-b[1] * u));
        } else {
            double power = 1.0;
            for (int k = 0; k < m_layout.backgrounds; ++k, power *= u)
                quantity.by(first + k, power);
        }
        finish(quantity, name);
    };
    add(0.5 * (edges[0] + edges[1]) - m_problem.reference(), u"background_at_lo"_s);
    add(0.5 * (edges[n - 1] + edges[n]) - m_problem.reference(), u"background_at_hi"_s);
}

} // namespace

QString kindOf(const QString& parameterName)
{
    QString kind = parameterName;
    while (!kind.isEmpty() && kind.back().isDigit())
        kind.chop(1);
    return kind;
}

void addErrors(FitSolver& solver, const Minimum& minimum, FitResult& result)
{
    describeParameters(solver, minimum, result);
    const std::size_t n = result.parameters.size();
    result.value = solver.informationAt(minimum.variables).value;
    const auto model = solver.problem().values();
    result.calls = minimum.calls;
    result.free = static_cast<int>(solver.map().variables.size());
    result.ndf = result.points - result.free;
    result.modelContents.assign(model.begin(), model.end());
    result.modelSum = 0.0;
    result.dataSum = 0.0;
    result.modelMinimum = model[0];
    for (std::size_t i = 0; i < model.size(); ++i) {
        result.modelSum += model[i];
        result.dataSum += solver.problem().contents()[i];
        result.modelMinimum = std::min(result.modelMinimum, model[i]);
    }
    std::vector<double> inverse;
    const bool regular = solver.covarianceAt(minimum.variables, inverse);
    result.covariance.assign(n * n, 0.0);
    if (regular)
        result.covariance = propagated(solver.map(), inverse);
    std::vector<double> sandwiched;
    const bool unweighted = result.options.statistic == FitStatistic::Unweighted;
    const bool varianceKnown = result.areCounts || !solver.problem().variances().empty();
    if (regular && unweighted && varianceKnown)
        sandwiched = propagated(solver.map(), sandwich(solver, inverse));
    for (std::size_t i = 0; i < n; ++i) {
        FitParameter& parameter = result.parameters[i];
        parameter.error = parameter.fixed ? none : rootOf(result.covariance[i * n + i]);
        parameter.scaledError = result.ndf > 0 ? parameter.error * std::sqrt(result.value / result.ndf) : none;
        parameter.sandwichError = sandwiched.empty() || parameter.fixed ? none : rootOf(sandwiched[i * n + i]);
        parameter.shownError = !unweighted ? parameter.error
            : varianceKnown                ? parameter.sandwichError
                                           : parameter.scaledError;
    }
    addCorrelation(result);
}

void addDerived(const FitProblem& problem, FitResult& result)
{
    result.derived.clear();
    result.peaks.clear();
    DerivedList list(problem, result);
    for (int k = 0; k < problem.layout().peaks; ++k)
        list.addPeak(k);
    list.addPairs();
    list.addBackground();
}

void addGoodness(const FitProblem& problem, FitResult& result)
{
    const FitStatistic statistic = result.options.statistic;
    if (result.ndf > 0 && statistic != FitStatistic::Unweighted)
        result.pValue = result.value > 0.0 ? 1.0 - gammaP(0.5 * result.ndf, 0.5 * result.value) : 1.0;
    const bool weighted = statistic == FitStatistic::Pearson || statistic == FitStatistic::Neyman;
    if (weighted && result.ndf > 0)
        result.goodness = (result.value - result.ndf) / std::sqrt(2.0 * result.ndf);
    if (weighted || !result.areCounts || result.modelMinimum < 0.0)
        return;
    // For an unweighted fit, the Cash statistic of its model is used, which is close to its minimum.
    double value = result.value;
    if (statistic == FitStatistic::Unweighted) {
        value = 0.0;
        for (std::size_t i = 0; i < result.modelContents.size(); ++i) {
            const BinTerm term =
                binTerm(FitStatistic::Cash, problem.contents()[i], 0.0, result.modelContents[i], false);
            value += term.residual * term.residual;
        }
    }
    const DevianceMoments moments = sumOfDevianceMoments(result.modelContents);
    const double expected = moments.mean - result.free;
    const double variance = moments.variance - 2.0 * result.free;
    if (!(variance > 0.0))
        return;
    result.goodness = (value - expected) / std::sqrt(variance);
    if (statistic != FitStatistic::Cash)
        return;
    result.cashExpected = expected;
    result.cashExpectedSd = std::sqrt(variance);
    result.cashZ = result.goodness;
}

} // namespace tarnis::analysis
