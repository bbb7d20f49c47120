// The variables of the solver and their bounds: the free parameters, except that the background is varied by its values
// at the ends of the range. With these bounded to be non-negative, no bin of a line can become negative, as Poisson
// statistics require.
#include "tarnis/analysis/fitstart_p.h"

#include "tarnis/analysis/special_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis::analysis {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::SpectrumFit", text);
}

struct Bounds {
    double lower = -infinity;
    double upper = infinity;
};

Bounds widthBounds(const FitProblem& problem, int index)
{
    const double bin = problem.meanWidth();
    const double range = problem.upper() - problem.lower();
    if (problem.model().widthMode == WidthMode::Calibrated)
        return { 0.2, 5.0 };
    const Bounds length { 0.2 * bin, std::max(range, 0.4 * bin) };
    switch (problem.model().shape) {
    case PeakShape::Gaussian:
    case PeakShape::Lorentzian:
        return length;
    case PeakShape::PseudoVoigt:
        return index == 0 ? Bounds { 0.4 * bin, std::max(2.0 * range, bin) } : Bounds { 0.0, 1.0 };
    case PeakShape::Voigt:
        return index == 0 ? length : Bounds { 1e-3 * bin, length.upper };
    case PeakShape::TailLeft:
    case PeakShape::TailRight:
        return index == 0 ? length : Bounds { 0.02 * bin, length.upper };
    case PeakShape::BackToBack:
        return index == 0 ? length : Bounds { 1.0 / length.upper, 50.0 / bin };
    case PeakShape::Hypermet:
        return index == 0 ? length : index == 1 ? Bounds { 0.2 * bin, length.upper } : Bounds { 0.0, 0.999 };
    }
    return {};
}

std::vector<Bounds> boundsOf(const FitProblem& problem, bool mayBeNegative)
{
    const FitLayout& layout = problem.layout();
    const double range = problem.upper() - problem.lower();
    std::vector<Bounds> bounds(static_cast<std::size_t>(layout.count));
    for (int k = 0; k < layout.peaks; ++k) {
        const auto i = static_cast<std::size_t>(k);
        if (!problem.model().allowDips)
            bounds[static_cast<std::size_t>(layout.area[i])].lower = 0.0;
        bounds[static_cast<std::size_t>(layout.centre[i])] = { problem.lower(), problem.upper() };
        for (int w = 0; w < layout.widths; ++w)
            bounds[static_cast<std::size_t>(layout.width[i][static_cast<std::size_t>(w)])] = widthBounds(problem, w);
    }
    if (layout.step >= 0)
        bounds[static_cast<std::size_t>(layout.step)] = { 0.0, 10.0 / problem.meanWidth() };
    const auto b = static_cast<std::size_t>(layout.background);
    const FitBackground background = problem.model().background;
    if (!mayBeNegative && (background == FitBackground::Constant || background == FitBackground::Exponential))
        bounds[b].lower = 0.0;
    if (background == FitBackground::Exponential)
        bounds[b + 1] = { -200.0 / range, 200.0 / range };
    return bounds;
}

bool isBackground(const FitLayout& layout, int parameter)
{
    return parameter >= layout.background;
}

class VariableBuilder {
public:
    VariableBuilder(const FitProblem& problem, std::vector<double> values, bool mayBeNegative)
        : m_problem(problem)
        , m_layout(problem.layout())
        , m_names(problem.names())
        , m_values(std::move(values))
        , m_bounds(boundsOf(problem, mayBeNegative))
        , m_mayBeNegative(mayBeNegative)
        , m_variable(m_names.size(), -1)
    {
    }

    VariableMap build(QString& fault);

private:
    int indexOf(const QString& name) const
    {
        const auto found = std::find(m_names.begin(), m_names.end(), name);
        return found == m_names.end() ? -1 : static_cast<int>(found - m_names.begin());
    }
    bool isCentre(int parameter) const
    {
        const auto end = m_layout.centre.begin() + m_layout.peaks;
        return std::find(m_layout.centre.begin(), end, parameter) != end;
    }
    QString apply(const FitConstraint& constraint);
    QString checkTie(const FitConstraint& constraint) const;
    bool useNodes() const;
    void raiseBackground();
    void addNodes(VariableMap& map) const;

    const FitProblem& m_problem;
    const FitLayout& m_layout;
    const std::vector<QString>& m_names;
    std::vector<double> m_values;
    std::vector<Bounds> m_bounds;
    bool m_mayBeNegative;
    bool m_backgroundIsConstrained = false;
    std::vector<int> m_variable; ///< variable of each parameter; -1: fixed, tied or determined by nodes
};

QString VariableBuilder::checkTie(const FitConstraint& constraint) const
{
    const int target = indexOf(constraint.tiedTo);
    if (target < 0)
        return sentence(
            QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The parameter %1 is tied to %2, which the model does not have."))
            .arg(constraint.name, constraint.tiedTo);
    for (const FitConstraint& other : m_problem.model().constraints) {
        if (other.name == constraint.tiedTo && !other.tiedTo.isEmpty())
            return sentence(
                QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                    "The parameter %1 is tied to %2, which is tied itself. Tie both to the same parameter."))
                .arg(constraint.name, constraint.tiedTo);
    }
    if (constraint.tiedTo == constraint.name || !std::isfinite(constraint.factor) || !std::isfinite(constraint.offset))
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                            "The tie of the parameter %1 needs another parameter and a finite factor and offset."))
            .arg(constraint.name);
    return {};
}

// Applies a constraint. Returns the error, if any.
QString VariableBuilder::apply(const FitConstraint& constraint)
{
    const int index = indexOf(constraint.name);
    if (index < 0)
        return sentence(
            QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The model has no parameter %1. Its parameters are: %2."))
            .arg(constraint.name, QStringList(m_names.begin(), m_names.end()).join(QStringLiteral(", ")));
    if (constraint.fixed && !constraint.start)
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The fixed parameter %1 needs a value."))
            .arg(constraint.name);
    Bounds& bounds = m_bounds[static_cast<std::size_t>(index)];
    if (constraint.lower)
        bounds.lower = *constraint.lower;
    if (constraint.upper)
        bounds.upper = *constraint.upper;
    if (!(bounds.lower < bounds.upper))
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                            "The lower bound of %1, %2, is not below its upper bound, %3. Change one of them."))
            .arg(constraint.name)
            .arg(bounds.lower)
            .arg(bounds.upper);
    if (constraint.start) {
        if (!std::isfinite(*constraint.start))
            return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The value of %1 is not a finite number."))
                .arg(constraint.name);
        const bool isWidth = index < m_layout.background && bounds.lower > 0.0;
        if (constraint.fixed && isWidth && !(*constraint.start > 0.0))
            return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The parameter %1 must be positive."))
                .arg(constraint.name);
        m_values[static_cast<std::size_t>(index)] = *constraint.start;
    }
    const bool restricts = constraint.fixed || constraint.lower || constraint.upper || !constraint.tiedTo.isEmpty();
    const int target = constraint.tiedTo.isEmpty() ? -1 : indexOf(constraint.tiedTo);
    m_backgroundIsConstrained =
        m_backgroundIsConstrained || (restricts && (isBackground(m_layout, index) || isBackground(m_layout, target)));
    return constraint.tiedTo.isEmpty() ? QString() : checkTie(constraint);
}

bool VariableBuilder::useNodes() const
{
    const FitBackground background = m_problem.model().background;
    return !m_backgroundIsConstrained && !m_mayBeNegative
        && (background == FitBackground::Linear || background == FitBackground::Quadratic);
}

// The slope of the contents can make a background of a given height negative at an end of the range, where a likelihood
// is then undefined. The solver finds the way back only from a start that is defined.
void VariableBuilder::raiseBackground()
{
    constexpr double minPart = 0.05; // of the middle, at the ends
    const FitBackground background = m_problem.model().background;
    if (m_mayBeNegative || (background != FitBackground::Linear && background != FitBackground::Quadratic))
        return;
    double* const b = m_values.data() + m_layout.background;
    const double half = 0.5 * (m_problem.upper() - m_problem.lower());
    double factor = 1.0;
    for (const double u : { -half, half }) {
        const double change = backgroundDensity(background, b, u) - b[0];
        if (b[0] > 0.0 && b[0] + change < minPart * b[0])
            factor = std::min(factor, (1.0 - minPart) * b[0] / -change);
    }
    for (int k = 1; k < m_layout.backgrounds; ++k) {
        const int parameter = m_layout.background + k;
        const QString& name = m_names[static_cast<std::size_t>(parameter)];
        const auto& constraints = m_problem.model().constraints;
        const bool isGiven = std::any_of(constraints.begin(), constraints.end(),
            [&](const FitConstraint& constraint) { return constraint.name == name && constraint.start; });
        if (!isGiven)
            b[k] *= factor;
    }
}

// b0, b1, b2 from the values at the left end, the right end and, for a parabola, the middle.
void VariableBuilder::addNodes(VariableMap& map) const
{
    const double half = 0.5 * (m_problem.upper() - m_problem.lower());
    const double small = smallDensity(m_problem);
    const int b = m_layout.background;
    const double* const start = m_values.data() + b;
    const FitBackground background = m_problem.model().background;
    const auto add = [&](double u, std::initializer_list<double> factors) {
        const int variable = static_cast<int>(map.variables.size());
        map.variables.push_back({ -1, std::max(small, backgroundDensity(background, start, u)), 0.0, infinity });
        int parameter = b;
        for (const double factor : factors)
            map.terms.push_back({ parameter++, variable, factor });
    };
    if (background == FitBackground::Linear) {
        add(-half, { 0.5, -0.5 / half });
        add(half, { 0.5, 0.5 / half });
        return;
    }
    const double square = 0.5 / (half * half);
    add(-half, { 0.0, -0.5 / half, square });
    add(half, { 0.0, 0.5 / half, square });
    add(0.0, { 1.0, 0.0, -2.0 * square });
}

VariableMap VariableBuilder::build(QString& fault)
{
    VariableMap map;
    const std::vector<FitConstraint>& constraints = m_problem.model().constraints;
    for (const FitConstraint& constraint : constraints) {
        fault = apply(constraint);
        if (!fault.isEmpty())
            return map;
    }
    const bool nodes = useNodes();
    if (!nodes)
        raiseBackground();
    const auto constraintOf = [&](const QString& name) {
        return std::find_if(constraints.begin(), constraints.end(),
            [&](const FitConstraint& c) { return c.name == name && (c.fixed || !c.tiedTo.isEmpty()); });
    };
    map.constant.assign(m_names.size(), 0.0);
    for (std::size_t i = 0; i < m_names.size(); ++i) {
        const int parameter = static_cast<int>(i);
        if (nodes && isBackground(m_layout, parameter))
            continue;
        const auto constraint = constraintOf(m_names[i]);
        if (constraint != constraints.end()) {
            map.constant[i] = constraint->tiedTo.isEmpty() ? m_values[i] : constraint->offset;
            continue;
        }
        // Positions are relative to the middle of the range: the solver bounds its first step by the magnitude of the
        // variables, which at channel 16000 would be no bound.
        const double origin = isCentre(parameter) ? m_problem.reference() : 0.0;
        const Bounds& bounds = m_bounds[i];
        const double start = std::clamp(m_values[i], bounds.lower, bounds.upper) - origin;
        m_variable[i] = static_cast<int>(map.variables.size());
        map.constant[i] = origin;
        map.variables.push_back({ parameter, start, bounds.lower - origin, bounds.upper - origin });
        map.terms.push_back({ parameter, m_variable[i], 1.0 });
    }
    for (const FitConstraint& constraint : constraints) {
        if (constraint.tiedTo.isEmpty() || constraint.fixed)
            continue;
        const int index = indexOf(constraint.name);
        const int target = indexOf(constraint.tiedTo);
        const int variable = m_variable[static_cast<std::size_t>(target)];
        if (variable >= 0)
            map.terms.push_back({ index, variable, constraint.factor });
        map.constant[static_cast<std::size_t>(index)] +=
            constraint.factor * map.constant[static_cast<std::size_t>(target)];
    }
    if (nodes)
        addNodes(map);
    if (map.variables.empty())
        fault = sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "All parameters are fixed. Free at least one."));
    return map;
}

} // namespace

VariableMap variablesFor(
    const FitProblem& problem, std::vector<double> values, FitStatistic statistic, bool areCounts, QString& fault)
{
    // Only subtracted contents can have a negative background, and these exclude Poisson statistics.
    const bool mayBeNegative = !areCounts && statistic != FitStatistic::Cash && statistic != FitStatistic::Pearson;
    return VariableBuilder(problem, std::move(values), mayBeNegative).build(fault);
}

} // namespace tarnis::analysis
