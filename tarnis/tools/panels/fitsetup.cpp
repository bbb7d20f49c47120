#include "tarnis/tools/panels/fitsetup_p.h"

#include "tarnis/analysis/figures.h"
#include "tarnis/tools/panels/plotspectra_p.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(tarnis::FitPanel)
};

bool isKnown(const FitConstraint& constraint)
{
    return constraint.start || constraint.fixed || constraint.lower || constraint.upper || !constraint.tiedTo.isEmpty();
}

QJsonObject jsonOf(const FitConstraint& constraint)
{
    QJsonObject json { { "name"_L1, constraint.name }, { "fixed"_L1, constraint.fixed } };
    if (constraint.start)
        json.insert("start"_L1, *constraint.start);
    if (constraint.lower)
        json.insert("lower"_L1, *constraint.lower);
    if (constraint.upper)
        json.insert("upper"_L1, *constraint.upper);
    if (!constraint.tiedTo.isEmpty())
        json.insert("tie"_L1, textOf(FitTie { constraint.tiedTo, constraint.factor, constraint.offset }));
    return json;
}

FitConstraint constraintOf(const QJsonObject& json)
{
    FitConstraint constraint;
    const auto number = [&](QLatin1StringView key) {
        const QJsonValue value = json.value(key);
        return value.isDouble() ? std::optional<double>(value.toDouble()) : std::nullopt;
    };
    constraint.name = json.value("name"_L1).toString();
    constraint.start = number("start"_L1);
    constraint.fixed = json.value("fixed"_L1).toBool() && constraint.start;
    constraint.lower = number("lower"_L1);
    constraint.upper = number("upper"_L1);
    if (const std::optional<FitTie> tie = fitTieOf(json.value("tie"_L1).toString())) {
        constraint.tiedTo = tie->other;
        constraint.factor = tie->factor;
        constraint.offset = tie->offset;
    }
    return constraint;
}

template <typename Enum> void readEnum(const QJsonObject& json, QLatin1StringView key, Enum& value, auto parse)
{
    if (const std::optional<Enum> read = parse(json.value(key).toString()))
        value = *read;
}

FitResult refused(const QString& message)
{
    FitResult result;
    result.message = message;
    return result;
}

/// Calls `run` with the bins of the range, or returns the reason why there are none.
template <typename Run> FitResult onRange(const BinnedData& data, const FitSetup& setup, const Run& run)
{
    if (data.size() == 0)
        return refused(Text::tr("The plot has no data."));
    if (setup.range.min == setup.range.max)
        return refused(Text::tr("Choose a range first: press \"Range\" and drag over a peak."));
    const BinRange bins = binsBetween(data, setup.range.min, setup.range.max);
    if (bins.isEmpty())
        return refused(Text::tr("The range contains no bin of the data."));
    return run(bins.first, bins.last);
}

} // namespace

std::optional<FitTie> fitTieOf(const QString& text)
{
    if (text.trimmed().isEmpty())
        return FitTie {};
    static const QString number = QStringLiteral(R"((?:\d+\.?\d*|\.\d+)(?:[eE][+-]?\d+)?)");
    static const QRegularExpression form(
        QStringLiteral(R"(^\s*(?:([+-]?\s*%1)\s*\*\s*)?([A-Za-z]\w*)\s*(?:([+-])\s*(%1))?\s*$)").arg(number));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    FitTie tie { match.captured(2) };
    if (match.hasCaptured(1) && !match.captured(1).isEmpty())
        tie.factor = match.captured(1).remove(u' ').toDouble();
    if (!match.captured(4).isEmpty())
        tie.offset = match.captured(4).toDouble() * (match.captured(3) == "-"_L1 ? -1.0 : 1.0);
    return tie;
}

QString textOf(const FitTie& tie)
{
    if (tie.other.isEmpty())
        return {};
    QString text = tie.other;
    if (tie.factor != 1.0)
        text.prepend(QString::number(tie.factor, 'g', 15) + " * "_L1);
    if (tie.offset != 0.0)
        text.append((tie.offset < 0.0 ? " - "_L1 : " + "_L1) + QString::number(std::fabs(tie.offset), 'g', 15));
    return text;
}

FitConstraint FitSetup::constraint(const QString& name) const
{
    for (const FitConstraint& constraint : model.constraints) {
        if (constraint.name == name)
            return constraint;
    }
    FitConstraint none;
    none.name = name;
    return none;
}

void FitSetup::setConstraint(const FitConstraint& constraint)
{
    std::erase_if(model.constraints, [&](const FitConstraint& old) { return old.name == constraint.name; });
    if (isKnown(constraint))
        model.constraints.push_back(constraint);
}

void FitSetup::setCentres(std::vector<double> centres)
{
    const auto peaks = static_cast<int>(centres.size());
    // A new order of the peaks renumbers their parameters.
    model.constraints.clear();
    std::sort(centres.begin(), centres.end());
    model.centres = std::move(centres);
    model.peaks = peaks;
    isAutomatic = false;
}

FitModel FitSetup::modelToFit(const FitResult* from) const
{
    FitModel result = model;
    if (static_cast<int>(result.centres.size()) != result.peaks)
        result.centres.clear();
    const std::vector<QString> names = result.parameterNames();
    const auto exists = [&](const QString& name) { return std::find(names.begin(), names.end(), name) != names.end(); };
    std::erase_if(result.constraints, [&](const FitConstraint& constraint) {
        return !exists(constraint.name) || (!constraint.tiedTo.isEmpty() && !exists(constraint.tiedTo));
    });
    if (from == nullptr || from->model.parameterNames() != names)
        return result;
    for (const FitParameter& parameter : from->parameters) {
        FitConstraint known = constraint(parameter.name);
        if (known.fixed || !known.tiedTo.isEmpty() || parameter.name.startsWith(u'b'))
            continue; // the background starts at its own estimate, which is always close
        std::erase_if(result.constraints, [&](const FitConstraint& old) { return old.name == known.name; });
        known.start = parameter.value;
        result.constraints.push_back(known);
    }
    return result;
}

QJsonObject FitSetup::toJson() const
{
    QJsonArray constraints;
    for (const FitConstraint& constraint : model.constraints)
        constraints.append(jsonOf(constraint));
    QJsonArray centres;
    for (const double centre : model.centres)
        centres.append(centre);
    return { { "range"_L1, QJsonArray { range.min, range.max } }, { "automatic"_L1, isAutomatic },
        { "peaks"_L1, model.peaks }, { "centres"_L1, centres }, { "shape"_L1, QString(nameOf(model.shape)) },
        { "background"_L1, QString(nameOf(model.background)) }, { "step"_L1, model.withStep },
        { "ownWidths"_L1, model.widthMode == WidthMode::Own }, { "statistic"_L1, QString(nameOf(options.statistic)) },
        { "constraints"_L1, constraints } };
}

void FitSetup::fromJson(const QJsonObject& json)
{
    const QJsonArray ends = json.value("range"_L1).toArray();
    if (ends.size() == 2 && ends[0].isDouble() && ends[1].isDouble())
        range = { ends[0].toDouble(), ends[1].toDouble() };
    isAutomatic = json.value("automatic"_L1).toBool(isAutomatic);
    const int peaks = json.value("peaks"_L1).toInt(model.peaks);
    if (peaks >= 0 && peaks <= FitModel::maxPeaks)
        model.peaks = peaks;
    model.centres.clear();
    for (const QJsonValue centre : json.value("centres"_L1).toArray()) {
        if (centre.isDouble())
            model.centres.push_back(centre.toDouble());
    }
    if (static_cast<int>(model.centres.size()) != model.peaks)
        model.centres.clear();
    readEnum(json, "shape"_L1, model.shape, peakShapeOf);
    readEnum(json, "background"_L1, model.background, fitBackgroundOf);
    readEnum(json, "statistic"_L1, options.statistic, fitStatisticOf);
    model.withStep = json.value("step"_L1).toBool(model.withStep);
    if (json.contains("ownWidths"_L1))
        model.widthMode = json.value("ownWidths"_L1).toBool() ? WidthMode::Own : WidthMode::Shared;
    if (!json.contains("constraints"_L1))
        return;
    model.constraints.clear();
    for (const QJsonValue value : json.value("constraints"_L1).toArray()) {
        const FitConstraint constraint = constraintOf(value.toObject());
        if (!constraint.name.isEmpty())
            setConstraint(constraint);
    }
}

FitResult runFit(const BinnedData& data, const FitSetup& setup, const FitResult* from)
{
    return onRange(data, setup, [&](std::ptrdiff_t first, std::ptrdiff_t last) {
        return setup.isAutomatic ? fitSpectrumAutomatically(data, first, last, setup.modelToFit(), setup.options)
                                 : fitSpectrum(data, first, last, setup.modelToFit(from), setup.options);
    });
}

FitResult runGuess(const BinnedData& data, const FitSetup& setup)
{
    return onRange(data, setup, [&](std::ptrdiff_t first, std::ptrdiff_t last) {
        return guessSpectrumFit(data, first, last, setup.modelToFit(), setup.options);
    });
}

namespace {

QString titleOf(FitStatistic statistic)
{
    switch (statistic) {
    case FitStatistic::Cash:
        return Text::tr("Likelihood ratio (Cash)");
    case FitStatistic::Pearson:
        return Text::tr("Chi squared (Pearson)");
    case FitStatistic::Neyman:
        return Text::tr("Chi squared (Neyman)");
    case FitStatistic::Unweighted:
        break;
    }
    return Text::tr("Sum of squares");
}

} // namespace

QString summaryOf(const FitResult& result, bool isGuess)
{
    if (result.status == FitStatus::Refused)
        return result.message;
    if (isGuess)
        return Text::tr("A guess, not fitted yet.");
    QString text = result.acceptable ? Text::tr("Acceptable.") : Text::tr("Not acceptable.");
    text += u' '
        + Text::tr("%1: %2 for %3 degrees of freedom, %4 bins")
              .arg(titleOf(result.options.statistic), QString::number(result.value, 'g', 5))
              .arg(result.ndf)
              .arg(result.points);
    if (!std::isnan(result.goodness))
        text += Text::tr(", %1 standard deviations from the expectation").arg(result.goodness, 0, 'f', 1);
    text += u'.';
    for (const QString& reason : result.reasons)
        text += u'\n' + reason;
    return text;
}

QString tableOf(const FitResult& result)
{
    QString text = QStringLiteral("name\tvalue\terror\n");
    for (const FitParameter& parameter : result.parameters)
        text += parameter.name + u'\t' + fullDigits(parameter.value) + u'\t' + fullDigits(parameter.shownError) + u'\n';
    for (const DerivedQuantity& quantity : result.derived)
        text += quantity.name + u'\t' + fullDigits(quantity.value) + u'\t' + fullDigits(quantity.error) + u'\n';
    return text;
}

std::vector<double> residualsOf(const BinnedData& data, const FitResult& result)
{
    std::vector<double> residuals;
    if (result.last >= data.size() || result.modelContents.size() != result.last - result.first + 1)
        return residuals;
    for (std::size_t i = 0; i < result.modelContents.size(); ++i) {
        const std::size_t bin = result.first + i;
        const double model = result.modelContents[i];
        const double variance = result.areCounts ? model : data.variance(bin);
        residuals.push_back(variance > 0.0 ? (data.contents[bin] - model) / std::sqrt(variance) : noNumber);
    }
    return residuals;
}

} // namespace tarnis
