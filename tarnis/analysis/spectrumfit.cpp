// The steps of a fit: checks, starting values, minimum, errors, verdict.
#include "tarnis/analysis/spectrumfit.h"

#include "tarnis/analysis/fitresult_p.h"
#include "tarnis/analysis/fitsearch_p.h"
#include "tarnis/analysis/fitstart_p.h"
#include "tarnis/analysis/special_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

namespace tarnis {

namespace {

using namespace analysis;

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double weakArea = 30.0; // in roots of all counts of the range

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::SpectrumFit", text);
}

QString faultOfRange(const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last)
{
    if (QString fault = data.fault(); !fault.isEmpty())
        return fault;
    if (first < 0 || last < first || last >= static_cast<std::ptrdiff_t>(data.size()))
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The range %1 to %2 is not within the bins 0 to %3."))
            .arg(first)
            .arg(last)
            .arg(data.size() - 1);
    return {};
}

QString faultOfModel(const FitModel& model)
{
    if (model.peaks < 0 || model.peaks > FitModel::maxPeaks)
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "A range can hold 0 to %1 peaks."))
            .arg(FitModel::maxPeaks);
    if (model.peaks == 0 && model.background == FitBackground::None)
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The model is empty. Choose a peak or a background."));
    if (!model.centres.empty() && model.centres.size() != static_cast<std::size_t>(model.peaks))
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "There are %1 positions for %2 peaks."))
            .arg(model.centres.size())
            .arg(model.peaks);
    if (model.widthMode == WidthMode::Calibrated && model.shape != PeakShape::Gaussian)
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "Widths by calibration need Gaussian peaks."));
    if (!std::isfinite(model.widths.a) || !std::isfinite(model.widths.b))
        return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The width calibration is not finite."));
    return {};
}

QString faultOfContents(const BinnedData& part, FitStatistic statistic, std::size_t first)
{
    const auto y = part.contents;
    for (std::size_t i = 0; i < y.size(); ++i) {
        if (!std::isfinite(y[i]) || std::fabs(y[i]) > 1e150)
            return sentence(QT_TRANSLATE_NOOP(
                "tarnis::SpectrumFit", "A content of the range is not a finite number. Choose a range without it."));
    }
    if (std::all_of(y.begin(), y.end(), [](double content) { return content == 0.0; }))
        return sentence(
            QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "All contents of the range are 0. There is nothing to fit."));
    if (statistic == FitStatistic::Cash || statistic == FitStatistic::Pearson) {
        if (!part.variances.empty())
            return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                "The contents are not counts but have variances. Use the statistic neyman or unweighted."));
        if (const QString fault = faultOfCounts(y, first); !fault.isEmpty())
            return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                                "Poisson statistics need counts: %1 Use the statistic unweighted."))
                .arg(fault);
    }
    if (statistic == FitStatistic::Neyman && part.variances.empty()) {
        if (const QString fault = faultOfCounts(y, first); !fault.isEmpty())
            return sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                                "Poisson statistics need counts: %1 Use the statistic unweighted."))
                .arg(fault);
    }
    if (statistic == FitStatistic::Neyman && !part.variances.empty()
        && std::any_of(part.variances.begin(), part.variances.end(), [](double v) { return !(v > 0.0); }))
        return sentence(QT_TRANSLATE_NOOP(
            "tarnis::SpectrumFit", "A variance of the range is 0. Use the statistic unweighted or exclude the bin."));
    return {};
}

// One fit in progress.
class SpectrumFitter {
public:
    SpectrumFitter(
        const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, FitModel model, const FitOptions& options);
    bool isRefused() const { return !m_result.message.isEmpty(); }
    /// Each moves the result out of this object.
    FitResult guess();
    FitResult fit();

private:
    void refuse(const QString& reason)
    {
        m_result.status = FitStatus::Refused;
        m_result.message = reason;
        m_result.reasons = QStringList(reason);
    }
    bool hasFreePositions() const { return m_result.model.centres.empty() && m_result.model.peaks > 1; }
    std::vector<double> givenOrHighest() const;
    std::vector<double> startValues(const std::vector<double>& centres, const FirstWidths& first) const;
    void seedByLikelihood();
    bool minimiseFrom(const std::vector<double>& centres, const FirstWidths& first);
    bool mayHaveOtherTails() const;
    void tryAgain(const std::vector<double>& centres);
    bool looksBad() const;
    void finish();
    void orderPeaks();

    FitResult m_result;
    BinnedData m_data;
    std::unique_ptr<FitProblem> m_problem;
    std::unique_ptr<FitSolver> m_solver;
    Minimum m_minimum;
    std::vector<double> m_seed; ///< parameters of the maximum-likelihood model as starting values; empty: none
};

SpectrumFitter::SpectrumFitter(
    const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, FitModel model, const FitOptions& options)
    : m_data(data)
{
    m_result.model = std::move(model);
    m_result.options = options;
    QString fault = faultOfRange(data, first, last);
    if (fault.isEmpty())
        fault = faultOfModel(m_result.model);
    if (!fault.isEmpty()) {
        refuse(fault);
        return;
    }
    m_result.first = static_cast<std::size_t>(first);
    m_result.last = static_cast<std::size_t>(last);
    const BinnedData part = data.part(m_result.first, m_result.last);
    fault = faultOfContents(part, options.statistic, m_result.first);
    if (!fault.isEmpty()) {
        refuse(fault);
        return;
    }
    // All other statistics have required counts already.
    m_result.areCounts = part.variances.empty()
        && (options.statistic != FitStatistic::Unweighted || faultOfCounts(part.contents).isEmpty());
    m_result.points = static_cast<int>(part.size());
    for (const double centre : m_result.model.centres) {
        if (!(centre >= part.edge(0) && centre <= part.edge(part.size()))) {
            refuse(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The position %1 is outside of the range."))
                       .arg(centre));
            return;
        }
    }
    std::sort(m_result.model.centres.begin(), m_result.model.centres.end());
    m_problem = std::make_unique<FitProblem>(data, m_result.first, m_result.last, m_result.model, options.evaluation);
    m_result.reference = m_problem->reference();
}

std::vector<double> SpectrumFitter::givenOrHighest() const
{
    if (m_result.model.peaks == 0)
        return {};
    if (!m_result.model.centres.empty())
        return m_result.model.centres;
    return { highestPosition(*m_problem) };
}

// Individual widths start at the result with one common width: from a rough estimate they would run into the background
// or noise.
std::vector<double> SpectrumFitter::startValues(const std::vector<double>& centres, const FirstWidths& first) const
{
    if (!m_seed.empty() && first.scale == 1.0 && first.tails == FirstTails::Usual)
        return m_seed;
    std::vector<double> values = firstValues(*m_problem, centres, first);
    if (m_result.model.peaks < 2 || m_result.model.widthMode != WidthMode::Own)
        return values;
    FitModel model = m_result.model;
    model.widthMode = WidthMode::Shared;
    model.centres = centres;
    model.constraints.clear();
    FitOptions options = m_result.options;
    options.profileErrors = false;
    options.profileWeakAreas = false;
    const FitResult shared = fitSpectrum(m_data, static_cast<std::ptrdiff_t>(m_result.first),
        static_cast<std::ptrdiff_t>(m_result.last), model, options);
    if (shared.status == FitStatus::Refused)
        return values;
    const FitLayout from(model);
    const FitLayout& to = m_problem->layout();
    const auto copy = [&](int source, int target) {
        values[static_cast<std::size_t>(target)] = shared.parameters[static_cast<std::size_t>(source)].value;
    };
    for (std::size_t k = 0; k < static_cast<std::size_t>(to.peaks); ++k) {
        copy(from.area[k], to.area[k]);
        copy(from.centre[k], to.centre[k]);
        for (std::size_t w = 0; w < static_cast<std::size_t>(to.widths); ++w) {
            copy(from.width[k][w], to.width[k][w]);
            values[static_cast<std::size_t>(to.width[k][w])] *= first.scale;
        }
    }
    for (int b = 0; b < to.backgrounds; ++b)
        copy(from.background + b, to.background + b);
    return values;
}

// The minima of the other statistics are near that of the likelihood; from a rough estimate they would run into the
// noise of few counts.
void SpectrumFitter::seedByLikelihood()
{
    if (!m_result.areCounts || m_result.options.statistic == FitStatistic::Cash)
        return;
    FitOptions options = m_result.options;
    options.statistic = FitStatistic::Cash;
    options.profileErrors = false;
    options.profileWeakAreas = false;
    const FitResult seed = fitSpectrum(m_data, static_cast<std::ptrdiff_t>(m_result.first),
        static_cast<std::ptrdiff_t>(m_result.last), m_result.model, options);
    if (seed.status != FitStatus::Done)
        return;
    for (const FitParameter& parameter : seed.parameters)
        m_seed.push_back(parameter.value);
}

// Fits from one set of positions and stores the result if it is lower than the current one. False: the constraints are
// invalid.
bool SpectrumFitter::minimiseFrom(const std::vector<double>& centres, const FirstWidths& first)
{
    QString fault;
    VariableMap map =
        variablesFor(*m_problem, startValues(centres, first), m_result.options.statistic, m_result.areCounts, fault);
    if (fault.isEmpty() && static_cast<int>(map.variables.size()) > m_result.points)
        fault = sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                             "The number of bins of the range, %1, is below the number of free parameters, %2."))
                    .arg(m_result.points)
                    .arg(map.variables.size());
    if (!fault.isEmpty()) {
        refuse(fault);
        return false;
    }
    std::vector<double> start;
    for (const SolverVariable& variable : map.variables)
        start.push_back(variable.start);
    auto solver = std::make_unique<FitSolver>(
        *m_problem, m_result.options.statistic, std::move(map), m_result.options.maxIterations);
    if (m_result.model.peaks > 1) {
        // Areas and background first: peaks with wrong areas would move towards the counts of other peaks.
        std::vector<char> held;
        for (const SolverVariable& variable : solver->map().variables) {
            const QString kind = variable.parameter < 0
                ? QString()
                : kindOf(m_problem->names()[static_cast<std::size_t>(variable.parameter)]);
            held.push_back(variable.parameter >= 0 && variable.parameter < m_problem->layout().background
                && kind != QLatin1StringView("area"));
        }
        const Minimum linear = solver->minimise(start, held);
        if (std::isfinite(linear.value))
            start = linear.variables;
    }
    Minimum minimum = solver->minimise(start);
    const bool better = std::isfinite(minimum.value)
        && (!m_solver || !std::isfinite(m_minimum.value) || minimum.value < m_minimum.value - 1e-9 * m_minimum.value
            || (minimum.converged && !m_minimum.converged && minimum.value <= m_minimum.value));
    if (better || !m_solver) {
        const int calls = m_minimum.calls + minimum.calls;
        m_minimum = std::move(minimum);
        m_minimum.calls = calls;
        m_solver = std::move(solver);
    }
    return true;
}

bool SpectrumFitter::looksBad() const
{
    if (!std::isfinite(m_minimum.value) || !m_minimum.converged)
        return true;
    for (std::size_t j = 0; j < m_minimum.variables.size(); ++j) {
        const bool isPeak = m_solver->map().variables[j].parameter >= 0;
        if (isPeak && (m_solver->isAtLower(m_minimum.variables, j) || m_solver->isAtUpper(m_minimum.variables, j)))
            return true;
    }
    const double ndf = m_result.points - static_cast<double>(m_minimum.variables.size());
    const bool weighted = m_result.options.statistic != FitStatistic::Unweighted;
    return weighted && m_minimum.value > ndf + 4.0 * std::sqrt(2.0 * std::max(1.0, ndf));
}

// Few counts can have one minimum for a short tail and one for a long tail.
bool SpectrumFitter::mayHaveOtherTails() const
{
    const FitLayout& layout = m_problem->layout();
    const bool startsAtOthers = layout.peaks > 1 && m_result.model.widthMode == WidthMode::Own;
    if (layout.widths < 2 || startsAtOthers || !m_result.areCounts || !std::isfinite(m_minimum.value))
        return false;
    const std::vector<double>& parameters = m_solver->parametersAt(m_minimum.variables.data());
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t k = 0; k < static_cast<std::size_t>(layout.peaks); ++k)
        smallest = std::min(smallest, std::fabs(parameters[static_cast<std::size_t>(layout.area[k])]));
    const auto contents = m_problem->contents();
    const double counts = std::accumulate(contents.begin(), contents.end(), 0.0);
    return smallest < weakArea * std::sqrt(counts);
}

// Tries other starting widths if the first ones gave a bad fit, and other tails of weak peaks.
void SpectrumFitter::tryAgain(const std::vector<double>& centres)
{
    for (const double scale : { 0.4, 2.5 }) {
        if (looksBad() && !minimiseFrom(centres, { .scale = scale }))
            return;
    }
    if (!mayHaveOtherTails())
        return;
    for (const FirstTails tails : { FirstTails::Short, FirstTails::Long }) {
        if (!minimiseFrom(centres, { .tails = tails }))
            return;
    }
}

FitResult SpectrumFitter::guess()
{
    if (isRefused())
        return std::move(m_result);
    std::vector<double> centres = givenOrHighest();
    // Without a search the further peaks are spread over the range.
    const double step = (m_problem->upper() - m_problem->lower()) / (m_result.model.peaks + 1);
    if (hasFreePositions()) {
        centres.clear();
        for (int k = 1; k <= m_result.model.peaks; ++k)
            centres.push_back(m_problem->lower() + k * step);
    }
    QString fault;
    const VariableMap map = variablesFor(
        *m_problem, firstValues(*m_problem, centres), m_result.options.statistic, m_result.areCounts, fault);
    if (!fault.isEmpty()) {
        refuse(fault);
        return std::move(m_result);
    }
    Minimum start;
    for (const SolverVariable& variable : map.variables)
        start.variables.push_back(variable.start);
    FitSolver solver(*m_problem, m_result.options.statistic, map, m_result.options.maxIterations);
    m_result.status = FitStatus::NotConverged;
    addErrors(solver, start, m_result);
    for (FitParameter& parameter : m_result.parameters)
        parameter.error = parameter.scaledError = parameter.sandwichError = parameter.shownError = none;
    std::fill(m_result.covariance.begin(), m_result.covariance.end(), 0.0);
    std::fill(m_result.correlation.begin(), m_result.correlation.end(), none);
    addDerived(*m_problem, m_result);
    return std::move(m_result);
}

FitResult SpectrumFitter::fit()
{
    if (isRefused())
        return std::move(m_result);
    if (hasFreePositions()) {
        m_result.model.centres = searchedPositions(m_data, m_result);
        if (m_result.model.centres.size() != static_cast<std::size_t>(m_result.model.peaks)) {
            refuse(sentence(
                QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The range is too short for %1 peaks. Give their positions."))
                       .arg(m_result.model.peaks));
            return std::move(m_result);
        }
    }
    const std::vector<double> centres = givenOrHighest();
    seedByLikelihood();
    if (!minimiseFrom(centres, {}))
        return std::move(m_result);
    tryAgain(centres);
    if (!std::isfinite(m_minimum.value)) {
        refuse(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
            "The model is 0 or negative at bins that have counts. Choose a background or another range.")));
        return std::move(m_result);
    }
    finish();
    return std::move(m_result);
}

void SpectrumFitter::finish()
{
    addErrors(*m_solver, m_minimum, m_result);
    for (int restart = 0; restart < 3 && addProfiles(*m_solver, m_minimum, m_result); ++restart)
        addErrors(*m_solver, m_minimum, m_result);
    m_result.status = m_minimum.converged ? FitStatus::Done : FitStatus::NotConverged;
    if (!m_minimum.converged)
        m_result.message = sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The fit did not converge."));
    orderPeaks();
    addDerived(*m_problem, m_result);
    addGoodness(*m_problem, m_result);
    addVerdict(*m_problem, m_result);
}

// Sorts peaks that have changed their order. With constraints by name, the names stay with their peaks.
void SpectrumFitter::orderPeaks()
{
    const FitLayout& layout = m_problem->layout();
    const auto count = static_cast<std::size_t>(layout.peaks);
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), std::size_t(0));
    const auto centreOf = [&](std::size_t k) {
        return m_result.parameters[static_cast<std::size_t>(layout.centre[k])].value;
    };
    std::stable_sort(
        order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return centreOf(a) < centreOf(b); });
    const auto namesPeak = [](const QString& name) { return name != kindOf(name) && !name.startsWith(u'b'); };
    const auto& constraints = m_result.model.constraints;
    const bool byName = std::any_of(constraints.begin(), constraints.end(),
        [&](const FitConstraint& c) { return namesPeak(c.name) || namesPeak(c.tiedTo); });
    if (std::is_sorted(order.begin(), order.end()) || byName)
        return;
    const std::size_t n = m_result.parameters.size();
    std::vector<std::size_t> source(n);
    std::iota(source.begin(), source.end(), std::size_t(0));
    for (std::size_t k = 0; k < count; ++k) {
        source[static_cast<std::size_t>(layout.area[k])] = static_cast<std::size_t>(layout.area[order[k]]);
        source[static_cast<std::size_t>(layout.centre[k])] = static_cast<std::size_t>(layout.centre[order[k]]);
        for (std::size_t w = 0; w < static_cast<std::size_t>(layout.widths); ++w)
            source[static_cast<std::size_t>(layout.width[k][w])] = static_cast<std::size_t>(layout.width[order[k]][w]);
    }
    const FitResult old = m_result;
    for (std::size_t i = 0; i < n; ++i) {
        const QString name = old.parameters[i].name;
        m_result.parameters[i] = old.parameters[source[i]];
        m_result.parameters[i].name = name;
        for (std::size_t j = 0; j < n; ++j) {
            m_result.covariance[i * n + j] = old.covariance[source[i] * n + source[j]];
            m_result.correlation[i * n + j] = old.correlation[source[i] * n + source[j]];
        }
    }
}

} // namespace

FitResult guessSpectrumFit(
    const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, const FitModel& model, const FitOptions& options)
{
    return SpectrumFitter(data, first, last, model, options).guess();
}

FitResult fitSpectrum(
    const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, const FitModel& model, const FitOptions& options)
{
    return SpectrumFitter(data, first, last, model, options).fit();
}

} // namespace tarnis
