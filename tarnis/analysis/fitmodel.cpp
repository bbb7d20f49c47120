#include "tarnis/analysis/fitmodel.h"

#include "tarnis/analysis/fitproblem_p.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

constexpr std::array backgroundNames { "none"_L1, "constant"_L1, "linear"_L1, "quadratic"_L1, "exponential"_L1 };
constexpr std::array statisticNames { "cash"_L1, "pearson"_L1, "neyman"_L1, "unweighted"_L1 };
constexpr std::array evaluationNames { "integral"_L1, "centre"_L1 };

template <typename Enum, std::size_t n>
std::optional<Enum> valueOf(const std::array<QLatin1StringView, n>& names, const QString& name)
{
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return std::nullopt;
    return static_cast<Enum>(found - names.begin());
}

} // namespace

QLatin1StringView nameOf(FitBackground background)
{
    return backgroundNames[static_cast<std::size_t>(background)];
}

QLatin1StringView nameOf(FitStatistic statistic)
{
    return statisticNames[static_cast<std::size_t>(statistic)];
}

QLatin1StringView nameOf(BinEvaluation evaluation)
{
    return evaluationNames[static_cast<std::size_t>(evaluation)];
}

std::optional<FitBackground> fitBackgroundOf(const QString& name)
{
    return valueOf<FitBackground>(backgroundNames, name);
}

std::optional<FitStatistic> fitStatisticOf(const QString& name)
{
    return valueOf<FitStatistic>(statisticNames, name);
}

std::optional<BinEvaluation> binEvaluationOf(const QString& name)
{
    return valueOf<BinEvaluation>(evaluationNames, name);
}

double WidthCalibration::sigma(double x) const
{
    return std::sqrt(std::max(1e-6, a + b * x));
}

namespace analysis {

FitLayout::FitLayout(const FitModel& model)
    : peaks(model.peaks)
    , widths(model.widthMode == WidthMode::Calibrated ? 1 : widthCount(model.shape))
{
    const bool own = model.widthMode == WidthMode::Own || peaks == 1;
    for (int k = 0; k < peaks; ++k) {
        const auto i = static_cast<std::size_t>(k);
        area[i] = count++;
        centre[i] = count++;
        for (int w = 0; own && model.widthMode != WidthMode::Calibrated && w < widths; ++w)
            width[i][static_cast<std::size_t>(w)] = count++;
    }
    if (peaks > 0 && (!own || model.widthMode == WidthMode::Calibrated)) {
        for (int w = 0; w < widths; ++w, ++count) {
            for (std::size_t i = 0; i < static_cast<std::size_t>(peaks); ++i)
                width[i][static_cast<std::size_t>(w)] = count;
        }
    }
    if (model.withStep && peaks > 0)
        step = count++;
    background = count;
    switch (model.background) {
    case FitBackground::None:
        break;
    case FitBackground::Constant:
        backgrounds = 1;
        break;
    case FitBackground::Linear:
    case FitBackground::Exponential:
        backgrounds = 2;
        break;
    case FitBackground::Quadratic:
        backgrounds = 3;
        break;
    }
    count += backgrounds;
}

} // namespace analysis

std::vector<QString> FitModel::parameterNames() const
{
    const analysis::FitLayout layout(*this);
    std::vector<QString> names(static_cast<std::size_t>(layout.count));
    const auto widthNames = widthParameterNames(shape);
    for (int k = 0; k < peaks; ++k) {
        const auto i = static_cast<std::size_t>(k);
        const QString number = peaks > 1 ? QString::number(k + 1) : QString();
        names[static_cast<std::size_t>(layout.area[i])] = "area"_L1 + number;
        names[static_cast<std::size_t>(layout.centre[i])] = "centre"_L1 + number;
        const QString ownNumber = widthMode == WidthMode::Own ? number : QString();
        for (int w = 0; w < layout.widths; ++w) {
            const auto j = static_cast<std::size_t>(w);
            const QString name = widthMode == WidthMode::Calibrated ? u"width_factor"_s : QString(widthNames[j]);
            names[static_cast<std::size_t>(layout.width[i][j])] = name + ownNumber;
        }
    }
    if (layout.step >= 0)
        names[static_cast<std::size_t>(layout.step)] = u"step"_s;
    for (int b = 0; b < layout.backgrounds; ++b)
        names[static_cast<std::size_t>(layout.background + b)] = "b"_L1 + QString::number(b);
    return names;
}

} // namespace tarnis
