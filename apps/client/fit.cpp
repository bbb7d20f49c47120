// tarnis fit: peaks of one range of a spectrum.
#include "commands.h"
#include "output.h"
#include "plot.h"
#include "spectrumfile.h"

#include <tarnis/analysis/figures.h>
#include <tarnis/analysis/spectrumfit.h>
#include <tarnis/formats/csv.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

namespace cli {

namespace {

using tarnis::FitModel;
using tarnis::FitOptions;
using tarnis::FitResult;

Failure wrong(const QString& text)
{
    return { .code = WrongUsage, .text = text };
}

/// The input of a fit.
struct FitInput {
    FitModel model;
    FitOptions options;
    bool automatic = false;
};

template <typename Value, typename Reader>
Outcome readName(const Arguments& arguments, const QString& option, Reader reader, const QString& names, Value& value)
{
    if (!arguments.has(option))
        return std::nullopt;
    const auto found = reader(arguments.value(option));
    if (!found)
        return wrong(QStringLiteral("--%1 '%2' is not one of %3").arg(option, arguments.value(option), names));
    value = *found;
    return std::nullopt;
}

Outcome readNames(const Arguments& arguments, FitInput& input)
{
    QStringList shapes;
    for (const tarnis::PeakShape shape : tarnis::allPeakShapes)
        shapes += tarnis::nameOf(shape);
    if (Outcome bad = readName(arguments, "shape", tarnis::peakShapeOf, shapes.join(", "), input.model.shape))
        return bad;
    if (Outcome bad = readName(arguments, "background", tarnis::fitBackgroundOf,
            "none, constant, linear, quadratic, exponential", input.model.background))
        return bad;
    if (Outcome bad = readName(arguments, "statistic", tarnis::fitStatisticOf, "cash, pearson, neyman, unweighted",
            input.options.statistic))
        return bad;
    return readName(arguments, "evaluate", tarnis::binEvaluationOf, "integral, centre", input.options.evaluation);
}

Outcome readPeaks(const Arguments& arguments, FitInput& input)
{
    if (arguments.has("at")) {
        for (const QString& word : arguments.value("at").split(u',')) {
            bool ok = false;
            const double centre = word.trimmed().toDouble(&ok);
            if (!ok || !std::isfinite(centre))
                return wrong(
                    QStringLiteral("--at '%1' is not a list of channels, as in 120,135.5").arg(arguments.value("at")));
            input.model.centres.push_back(centre);
        }
        if (input.model.centres.size() > FitModel::maxPeaks)
            return wrong(QStringLiteral("--at: a range can hold up to %1 peaks").arg(FitModel::maxPeaks));
        input.model.peaks = static_cast<int>(input.model.centres.size());
    }
    if (!arguments.has("peaks"))
        return std::nullopt;
    const QString text = arguments.value("peaks");
    if (text == u"auto") {
        if (!input.model.centres.empty())
            return wrong("--peaks auto and --at exclude each other");
        input.automatic = true;
        return std::nullopt;
    }
    bool ok = false;
    const int peaks = text.toInt(&ok);
    if (!ok || peaks < 0 || peaks > FitModel::maxPeaks)
        return wrong(
            QStringLiteral("--peaks '%1' is not auto or a number from 0 to %2").arg(text).arg(FitModel::maxPeaks));
    if (!input.model.centres.empty() && input.model.peaks != peaks)
        return wrong(
            QStringLiteral("--peaks %1 and the %2 positions of --at do not agree").arg(peaks).arg(input.model.peaks));
    input.model.peaks = peaks;
    return std::nullopt;
}

Outcome readFixed(const Arguments& arguments, FitInput& input)
{
    for (const QString& value : arguments.values("fix")) {
        for (const QString& part : value.split(u',')) {
            const qsizetype equals = part.indexOf(u'=');
            bool ok = false;
            const double number = part.mid(equals + 1).trimmed().toDouble(&ok);
            if (equals < 1 || !ok || !std::isfinite(number))
                return wrong(QStringLiteral("--fix '%1' is not NAME=VALUE, as in sigma=2.5").arg(part));
            input.model.constraints.push_back({ part.left(equals).trimmed(), number, true, {}, {}, {}, 1.0, 0.0 });
        }
    }
    return std::nullopt;
}

Result<FitInput> readFitInput(const Arguments& arguments)
{
    FitInput input;
    if (arguments.has("shared-width") && arguments.has("own-widths"))
        return wrong("--shared-width and --own-widths exclude each other");
    if (arguments.has("own-widths"))
        input.model.widthMode = tarnis::WidthMode::Own;
    input.options.profileErrors = arguments.has("profile");
    if (Outcome bad = readNames(arguments, input))
        return *bad;
    if (Outcome bad = readPeaks(arguments, input))
        return *bad;
    if (Outcome bad = readFixed(arguments, input))
        return *bad;
    return input;
}

QJsonObject byName(const FitResult& fit, double (*number)(const tarnis::FitParameter&))
{
    QJsonObject object;
    for (const tarnis::FitParameter& parameter : fit.parameters)
        object[parameter.name] = jsonNumber(number(parameter));
    return object;
}

void addMatrix(QJsonObject& object, const FitResult& fit)
{
    QJsonArray order;
    QJsonArray correlation;
    const std::size_t n = fit.parameters.size();
    for (std::size_t i = 0; i < n; ++i) {
        order.append(fit.parameters[i].name);
        QJsonArray row;
        for (std::size_t j = 0; j < n; ++j)
            row.append(jsonNumber(fit.correlation[i * n + j]));
        correlation.append(row);
    }
    object["parameter_order"] = order;
    object["correlation"] = correlation;
}

QJsonObject profilesOf(const FitResult& fit)
{
    QJsonObject object;
    for (const tarnis::FitParameter& parameter : fit.parameters) {
        if (parameter.profile)
            object[parameter.name] =
                QJsonArray { jsonNumber(parameter.profile->lower), jsonNumber(parameter.profile->upper) };
    }
    return object;
}

// Names of the parameters at bounds.
QJsonArray boundsReachedBy(const FitResult& fit)
{
    QJsonArray names;
    for (const tarnis::FitParameter& parameter : fit.parameters) {
        if (!parameter.fixed && (parameter.atLower || parameter.atUpper))
            names.append(parameter.name);
    }
    return names;
}

QJsonObject jsonOf(const FitResult& fit, const Range<qsizetype>& range)
{
    QJsonObject object { { "statistic", QString(tarnis::nameOf(fit.options.statistic)) },
        { "evaluation", QString(tarnis::nameOf(fit.options.evaluation)) },
        { "shape", QString(tarnis::nameOf(fit.model.shape)) },
        { "background", QString(tarnis::nameOf(fit.model.background)) },
        { "fit_range", QJsonArray { static_cast<double>(range.first), static_cast<double>(range.last) } },
        { "reference_channel", fit.reference }, { "value", jsonNumber(fit.value) }, { "points", fit.points },
        { "free", fit.free }, { "ndf", fit.ndf }, { "reduced", jsonNumber(fit.value / fit.ndf) },
        { "p_value", jsonNumber(fit.pValue) }, { "model_sum", fit.modelSum }, { "data_sum", fit.dataSum },
        { "model_minimum", fit.modelMinimum }, { "cash_expected", jsonNumber(fit.cashExpected) },
        { "cash_expected_sd", jsonNumber(fit.cashExpectedSd) }, { "cash_z", jsonNumber(fit.cashZ) },
        { "goodness", jsonNumber(fit.goodness) }, { "converged", fit.status == tarnis::FitStatus::Done },
        { "acceptable", fit.acceptable }, { "reasons", QJsonArray::fromStringList(fit.reasons) } };
    object["parameters"] = byName(fit, [](const tarnis::FitParameter& p) { return p.value; });
    object["standard_error"] = byName(fit, [](const tarnis::FitParameter& p) { return p.error; });
    object["standard_error_scaled"] = byName(fit, [](const tarnis::FitParameter& p) { return p.scaledError; });
    if (fit.options.statistic == tarnis::FitStatistic::Unweighted)
        object["standard_error_sandwich"] = byName(fit, [](const tarnis::FitParameter& p) { return p.sandwichError; });
    addMatrix(object, fit);
    object["at_bounds"] = boundsReachedBy(fit);
    QJsonObject derived;
    for (const tarnis::DerivedQuantity& quantity : fit.derived)
        derived[quantity.name] = QJsonArray { jsonNumber(quantity.value), jsonNumber(quantity.error) };
    object["derived"] = derived;
    if (const QJsonObject profiles = profilesOf(fit); !profiles.isEmpty())
        object["profile_errors"] = profiles;
    return object;
}

QByteArray textOf(const FitResult& fit)
{
    QList<QStringList> rows;
    for (const tarnis::FitParameter& parameter : fit.parameters) {
        QString note = parameter.fixed ? "fixed" : parameter.atLower || parameter.atUpper ? "at bound" : QString();
        if (parameter.profile)
            note = tarnis::figureText(parameter.value, parameter.profile->upper, -parameter.profile->lower);
        rows.append(QStringList { parameter.name, tarnis::figureText(parameter.value, parameter.shownError), note });
    }
    for (const tarnis::DerivedQuantity& quantity : fit.derived)
        rows.append(QStringList { quantity.name, tarnis::figureText(quantity.value, quantity.error) });
    QString last =
        QStringLiteral("%1 %2 / %3").arg(tarnis::nameOf(fit.options.statistic)).arg(fit.value, 0, 'f', 1).arg(fit.ndf);
    if (!std::isnan(fit.goodness))
        last += QStringLiteral(", %1 standard deviations from its expectation").arg(fit.goodness, 0, 'f', 1);
    QByteArray text = alignedTable(rows) + last.toUtf8() + '\n';
    text += fit.acceptable ? "acceptable\n" : "not acceptable:\n";
    for (const QString& reason : fit.reasons)
        text += "  " + reason.toUtf8() + '\n';
    return text;
}

/// Counts, fit and background as three curves, drawn by the program for figures.
Outcome draw(const FitResult& fit, const Spectrum& spectrum, const Range<qsizetype>& range, const Arguments& arguments)
{
    const QString path = arguments.value("plot");
    tarnis::Dataset curves;
    curves.title = spectrum.data.title;
    curves.x.name = "Channel";
    curves.rows = 3;
    curves.columns = range.last - range.first + 1;
    curves.rowNames = { "counts", "fit", "background" };
    for (qsizetype edge = range.first; edge <= range.last + 1; ++edge)
        curves.x.values.push_back(static_cast<double>(edge) - 0.5);
    const auto channel = [&](qsizetype i) { return static_cast<double>(range.first + i); };
    for (qsizetype i = 0; i < curves.columns; ++i)
        curves.values.push_back(spectrum.data.values[static_cast<std::size_t>(spectrum.binOf(range.first) + i)]);
    curves.values.insert(curves.values.end(), fit.modelContents.begin(), fit.modelContents.end());
    for (qsizetype i = 0; i < curves.columns; ++i)
        curves.values.push_back(fit.backgroundAt(channel(i)));
    // Through a pipe: an interrupt leaves no temporary file.
    QStringList words { "plot", "-", "-o", path, "--title", curves.title };
    // Values of an unweighted fit need not be counts: the root of the model is not their error then.
    if (fit.options.statistic != tarnis::FitStatistic::Unweighted)
        words += "--residuals";
    if (arguments.has("theme"))
        words += { "--theme", arguments.value("theme") };
    return runPlotProgram(words, tarnis::encodeCsv(curves));
}

/// Checks the options of the figure before the fit is run.
Outcome checkPlot(const Arguments& arguments)
{
    if (!arguments.has("plot"))
        return arguments.has("theme") ? Outcome(wrong("--theme is for --plot")) : std::nullopt;
    if (arguments.value("plot") == u"-")
        return wrong("--plot needs a file: standard output has the numbers");
    return checkOutputName(arguments.value("plot"));
}

Outcome fit(const Arguments& arguments)
{
    if (!arguments.has("range"))
        return wrong("no range: give --range LO:HI");
    if (Outcome bad = checkPlot(arguments))
        return bad;
    const Result<FitInput> input = readFitInput(arguments);
    if (!input.isOk())
        return input.failure();
    const Result<Spectrum> spectrum = readSpectrum(arguments.words().at(0));
    if (!spectrum.isOk())
        return spectrum.failure();
    const Result<Range<qsizetype>> range = channelOption(arguments, "range", spectrum.value());
    if (!range.isOk())
        return range.failure();
    const auto run = input.value().automatic ? tarnis::fitSpectrumAutomatically : tarnis::fitSpectrum;
    const FitResult result = run(spectrum.value().bins(), spectrum.value().binOf(range.value().first),
        spectrum.value().binOf(range.value().last), input.value().model, input.value().options);
    if (result.status == tarnis::FitStatus::Refused)
        return wrongUse(QStringLiteral("no fit: %1").arg(result.message));
    if (arguments.has("plot")) {
        if (Outcome failed = draw(result, spectrum.value(), range.value(), arguments))
            return failed;
    }
    return arguments.has("json") ? print(jsonOf(result, range.value())) : print(textOf(result));
}

} // namespace

const Command fitCommand {
    .name = "fit",
    .synopsis = "FILE --range LO:HI [--peaks N|auto] [--at C1,C2...] [--shape SHAPE] [--background BACKGROUND]\n"
                "                  [--statistic STATISTIC] [--evaluate integral|centre] [--shared-width|--own-widths]\n"
                "                  [--fix NAME=V] [--profile] [--json] [--plot FILE.(png|pdf|svg)] [--theme NAME]",
    .summary = "fits peaks and a background to a range of a spectrum",
    .description = "Fits the channels LO to HI, both included, and prints the parameters with their errors, what follows from\n"
                   "them, and whether the fit can be trusted. b0, b1 are about the middle of the range. A fit that cannot be made\n"
                   "is wrong usage; one that is not acceptable is printed with the reasons, and the exit code is 0.",
    .options = {
        { "range", "LO:HI", "channels, both included" },
        { "peaks", "N|auto", "number of peaks, 0 to 8; auto adds peaks as long as the counts justify them; without it 1" },
        { "at", "C1,C2...", "channels to begin with" },
        { "shape", "SHAPE", "gaussian, lorentzian, pseudo-voigt, voigt, tail-left, tail-right, back-to-back or hypermet" },
        { "background", "BACKGROUND", "constant, linear, quadratic, exponential or none; without it linear" },
        { "statistic", "STATISTIC", "cash, pearson, neyman or unweighted; without it cash" },
        { "evaluate", "HOW", "integral over the channel, or value at its centre; without it integral" },
        { "shared-width", {}, "one width for all peaks, as without it" },
        { "own-widths", {}, "each peak has its own width" },
        { "fix", "NAME=V", "holds a parameter; several by several options or commas" },
        { "profile", {}, "asymmetric errors too" },
        { "plot", "FILE", "draws counts, fit, background and residuals: .png, .pdf or .svg" },
        { "theme", "NAME", "of the figure: print, light, dark, high-contrast or classic; without it print" },
    },
    .minWords = 1,
    .maxWords = 1,
    .run = fit,
};

} // namespace cli
