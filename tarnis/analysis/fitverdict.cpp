// Reasons to reject a fit, as texts.
#include "tarnis/analysis/fitresult_p.h"

#include "tarnis/analysis/countstatistics.h"
#include "tarnis/analysis/residualtests_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis::analysis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::SpectrumFit", text);
}

constexpr double largestGoodness = 4.0;
// For a correct model, the largest significance over the many peak positions is rarely above 3.5, over the few shapes
// rarely above 3.
constexpr double largestPeak = 4.0;
constexpr double largestBend = 4.0;
constexpr double largestShape = 3.5;
// Of data of the right shape, another one is better by a factor k in likelihood with a probability below 1/k: here e^6.
constexpr double otherShapeBetter = 12.0;
// Where the tests of the shape find less than this, the other shape is not tried.
constexpr double suspiciousShape = 2.5;

class Verdict {
public:
    Verdict(FitProblem& problem, FitResult& result)
        : m_problem(problem)
        , m_layout(problem.layout())
        , m_result(result)
    {
    }
    void judge();

private:
    void against(const QString& reason) { m_result.reasons.append(reason); }
    const FitParameter& parameter(int index) const { return m_result.parameters[static_cast<std::size_t>(index)]; }
    QString placeOfPeak(int peak) const
    {
        return QString::number(parameter(m_layout.centre[static_cast<std::size_t>(peak)]).value, 'g', 6);
    }
    bool isWithoutMeaning(const FitParameter& parameter) const;
    void judgeConvergence();
    void judgeErrors();
    void judgeBounds(const FitParameter& parameter, bool isArea);
    void judgeCorrelations();
    void judgePeak(int peak);
    void judgeExcess(int peak);
    void judgeGoodness();
    void judgeResiduals();
    void judgeOtherShape();

    FitProblem& m_problem;
    const FitLayout& m_layout;
    FitResult& m_result;
};

void Verdict::judgeConvergence()
{
    if (m_result.status == FitStatus::NotConverged)
        against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The fit did not converge.")));
    if (m_result.points < m_result.free + 3)
        against(
            sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                         "The number of bins of the range, %1, is too small for the number of free parameters, %2."))
                .arg(m_result.points)
                .arg(m_result.free));
}

void Verdict::judgeBounds(const FitParameter& parameter, bool isArea)
{
    if (!parameter.fixed && (parameter.atLower || parameter.atUpper))
        against((isArea ? sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The area %1 is at its bound."))
                        : sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The parameter %1 is at its bound.")))
                    .arg(parameter.name));
}

// The length of a tail whose share of the peak is 0.
bool Verdict::isWithoutMeaning(const FitParameter& parameter) const
{
    if (m_problem.model().shape != PeakShape::Hypermet || kindOf(parameter.name) != "tau"_L1)
        return false;
    const int ratio = m_result.indexOf("ratio"_L1 + parameter.name.sliced(3));
    return ratio >= 0 && this->parameter(ratio).value == 0.0;
}

// Only the parameters of the peaks, because the background may be 0.
void Verdict::judgeErrors()
{
    for (int i = 0; i < m_layout.background; ++i) {
        const FitParameter& p = parameter(i);
        const QString kind = kindOf(p.name);
        if (p.fixed || kind == "step"_L1 || isWithoutMeaning(p))
            continue;
        if (p.atLower || p.atUpper) {
            // A vanishing Lorentzian or Gaussian part is a valid result.
            if (kind != "eta"_L1 && kind != "ratio"_L1)
                judgeBounds(p, kind == "area"_L1);
            continue;
        }
        if (!(p.error > 0.0) || std::isinf(p.error))
            against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The parameter %1 has no error.")).arg(p.name));
        if (p.profile && (std::isnan(p.profile->lower) || std::isnan(p.profile->upper)))
            against(
                sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The error of %1 is open to one side.")).arg(p.name));
    }
}

void Verdict::judgeCorrelations()
{
    const std::size_t n = m_result.parameters.size();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = i + 1; j < n; ++j) {
            // Correlations between background terms do not affect the peaks; tied parameters are correlated by
            // definition.
            if (static_cast<int>(i) >= m_layout.background)
                continue;
            if (parameter(static_cast<int>(i)).tied || parameter(static_cast<int>(j)).tied)
                continue;
            const double correlation = m_result.correlation[i * n + j];
            if (std::fabs(correlation) > 0.99)
                against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                                     "%1 and %2 are correlated by %3: the range cannot separate them."))
                            .arg(m_result.parameters[i].name, m_result.parameters[j].name)
                            .arg(correlation, 0, 'f', 4));
        }
    }
}

void Verdict::judgePeak(int peak)
{
    const auto k = static_cast<std::size_t>(peak);
    const FitParameter& area = parameter(m_layout.area[k]);
    const FitParameter& centre = parameter(m_layout.centre[k]);
    if (!area.fixed && area.shownError > 0.0 && std::fabs(area.value) < 3.0 * area.shownError)
        against(sentence(
            QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The area of the peak at %1 is below three of its errors."))
                    .arg(placeOfPeak(peak)));
    const double fwhm = m_result.peaks[k].measures.fwhm;
    const double sigma = fwhm / 2.354820045;
    const double top = m_result.peaks[k].measures.top;
    if (!centre.fixed && (top - m_problem.lower() < sigma || m_problem.upper() - top < sigma))
        against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                             "The peak at %1 is within one standard deviation of the end of the range."))
                    .arg(placeOfPeak(peak)));
    if (fwhm > 0.5 * (m_problem.upper() - m_problem.lower()) && m_layout.backgrounds > 1)
        against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                             "The peak at %1 is wider than half of the range, which shows no background."))
                    .arg(placeOfPeak(peak)));
    judgeExcess(peak);
}

// The exact test of "no such peak": without it, the counts of the range would be distributed like the rest of the
// model.
void Verdict::judgeExcess(int peak)
{
    if (!m_result.areCounts || m_problem.model().allowDips)
        return;
    const auto k = static_cast<std::size_t>(peak);
    const PeakMeasures& measures = m_result.peaks[k].measures;
    std::vector<double> p;
    p.reserve(m_result.parameters.size());
    for (const FitParameter& parameter : m_result.parameters)
        p.push_back(parameter.value);
    m_problem.evaluate(p.data());
    const auto unit = m_problem.unitContents(peak);
    const auto edges = m_problem.edges();
    double inside = 0.0;
    double outside = 0.0;
    double restInside = 0.0;
    double restOutside = 0.0;
    for (std::size_t i = 0; i < m_problem.bins(); ++i) {
        const double own = m_result.peaks[k].area * unit[i];
        const bool isInside = std::fabs(0.5 * (edges[i] + edges[i + 1]) - measures.top) <= measures.fwhm;
        (isInside ? inside : outside) += m_problem.contents()[i];
        (isInside ? restInside : restOutside) += std::max(0.0, m_result.modelContents[i] - own);
    }
    // If the rest is 0 except for rounding, the share inside is meaningless.
    const double rest = restInside + restOutside;
    if (!(rest > 1e-9 * m_result.modelSum))
        return;
    const double probability = excessProbability(inside, outside, std::clamp(restInside / rest, 0.0, 1.0));
    if (!(probability < 0.05))
        against(
            sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                         "The counts of the peak at %1 are not a significant excess (probability %2 without a peak)."))
                .arg(placeOfPeak(peak))
                .arg(probability, 0, 'g', 2));
}

void Verdict::judgeGoodness()
{
    if (std::fabs(m_result.goodness) > largestGoodness)
        against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                             "The model does not fit: the statistic is %1 standard deviations from its expectation."))
                    .arg(m_result.goodness, 0, 'f', 1));
}

// A further peak, a wrong shape or a curved background hardly changes the statistic of a complete range.
void Verdict::judgeResiduals()
{
    if (!m_result.areCounts)
        return;
    const AdditionFindings found = testAdditions(m_problem, m_result);
    if (std::fabs(found.peak.significance) > largestPeak)
        against(
            sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                         "The residuals around %1 are off by %2 standard deviations: a peak is missing or the shape is "
                         "wrong."))
                .arg(found.peak.place, 0, 'f', 1)
                .arg(found.peak.significance, 0, 'f', 1));
    if (std::fabs(found.shape.significance) > largestShape)
        against(sentence(
            QT_TRANSLATE_NOOP("tarnis::SpectrumFit", "The shape of the peak at %1 is wrong by %2 standard deviations."))
                    .arg(found.shape.place, 0, 'f', 1)
                    .arg(std::fabs(found.shape.significance), 0, 'f', 1));
    else if (std::fabs(found.shape.significance) > suspiciousShape)
        judgeOtherShape();
    if (std::fabs(found.background.significance) > largestBend)
        against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                             "The background is curved or has a step, by %1 standard deviations."))
                    .arg(std::fabs(found.background.significance), 0, 'f', 1));
}

// A score test sees the first step from a Gaussian to a Lorentzian only. The whole way can lower the statistic by more.
void Verdict::judgeOtherShape()
{
    const FitModel& own = m_problem.model();
    if (own.shape != PeakShape::Gaussian || m_result.options.statistic != FitStatistic::Cash)
        return;
    FitModel model = own;
    model.shape = PeakShape::Lorentzian;
    model.centres.clear();
    for (const FittedPeak& peak : m_result.peaks)
        model.centres.push_back(peak.centre);
    FitOptions options = m_result.options;
    options.profileErrors = false;
    options.profileWeakAreas = false;
    BinnedData data;
    data.contents = m_problem.contents();
    data.edges = m_problem.edges();
    const FitResult other = fitSpectrum(data, 0, static_cast<std::ptrdiff_t>(data.size()) - 1, model, options);
    if (other.status == FitStatus::Refused || !(m_result.value - other.value > otherShapeBetter))
        return;
    against(sentence(QT_TRANSLATE_NOOP("tarnis::SpectrumFit",
                         "A Lorentzian fits better: its statistic is lower by %1. The shape is wrong."))
                .arg(m_result.value - other.value, 0, 'f', 1));
}

void Verdict::judge()
{
    m_result.reasons.clear();
    judgeConvergence();
    judgeErrors();
    judgeCorrelations();
    for (int peak = 0; peak < m_layout.peaks; ++peak)
        judgePeak(peak);
    judgeGoodness();
    judgeResiduals();
    m_result.acceptable = m_result.reasons.isEmpty();
}

} // namespace

void addVerdict(FitProblem& problem, FitResult& result)
{
    Verdict(problem, result).judge();
}

} // namespace tarnis::analysis
