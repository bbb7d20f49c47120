// tarnis stats: statistics of a region of a spectrum.
#include "commands.h"
#include "output.h"
#include "spectrumfile.h"

#include <tarnis/analysis/figures.h>
#include <tarnis/analysis/regionstatistics.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

namespace cli {

namespace {

using tarnis::RegionStatistics;

// Programs can judge small counts by the other fields: the width is left out only where noise decides, or without a
// peak.
void addWidth(QJsonObject& object, const QString& name, const tarnis::InterpolatedWidth& width, bool hasPeak)
{
    object[name + "_left"] = jsonNumber(width.left);
    object[name + "_right"] = jsonNumber(width.right);
    object[name] = hasPeak && width.unique ? jsonNumber(width.width) : QJsonValue();
    object[name + "_outer"] = jsonNumber(width.outer);
    object[name + "_unique"] = width.unique;
}

QJsonObject grossOf(const RegionStatistics& s)
{
    return { { "channels", s.bins }, { "sum", s.sum }, { "sum_error", jsonNumber(s.sumError) },
        { "sum_interval68", QJsonArray { jsonNumber(s.sumInterval.lower), jsonNumber(s.sumInterval.upper) } },
        { "sum_upper_limit95", jsonNumber(s.sumUpperLimit) }, { "mean", jsonNumber(s.mean) },
        { "mean_error", jsonNumber(s.meanError) }, { "maximum", jsonNumber(s.maximum) },
        { "maximum_channel", jsonNumber(s.maximumPosition) }, { "centroid", jsonNumber(s.centroid) },
        { "centroid_error", jsonNumber(s.centroidError) }, { "variance", jsonNumber(s.variance) },
        { "variance_error", jsonNumber(s.varianceError) }, { "variance_sheppard", jsonNumber(s.varianceSheppard) },
        { "rms", jsonNumber(s.rms) } };
}

void addNet(QJsonObject& object, const RegionStatistics& s, const Spectrum& spectrum)
{
    object["background_left"] = jsonNumber(s.backgroundLeft);
    object["background_right"] = jsonNumber(s.backgroundRight);
    object["background_area"] = jsonNumber(s.background);
    object["background_area_error"] = jsonNumber(s.backgroundError);
    object["net_area"] = jsonNumber(s.net);
    object["net_area_error"] = jsonNumber(s.netError);
    object["critical_level"] = jsonNumber(s.criticalLevel);
    object["detection_limit"] = jsonNumber(s.detectionLimit);
    const bool tested = !std::isnan(s.criticalLevel);
    object["significant"] = tested ? QJsonValue(s.aboveCriticalLevel) : QJsonValue();
    object["significant_exact"] = tested ? QJsonValue(s.significant) : QJsonValue();
    object["binomial_p"] = jsonNumber(s.excessProbability);
    object["li_ma"] = jsonNumber(s.liMa);
    // Without a significant area the centroid can be outside of the region.
    const bool shown = s.aboveCriticalLevel;
    object["net_centroid"] = shown ? jsonNumber(s.netCentroid) : QJsonValue();
    object["net_centroid_error"] = shown ? jsonNumber(s.netCentroidError) : QJsonValue();
    object["net_variance"] = shown ? jsonNumber(s.netVariance) : QJsonValue();
    object["net_maximum"] = jsonNumber(s.netMaximum);
    object["net_maximum_channel"] = s.hasNet
        ? QJsonValue(static_cast<double>(spectrum.firstChannel) + static_cast<double>(s.netMaximumBin))
        : QJsonValue();
    addWidth(object, "fwhm", s.fwhm, shown);
    addWidth(object, "fwtm", s.fwtm, shown);
}

// A region without counts has no width and no position of its maximum.
QString numberText(double number)
{
    return std::isnan(number) ? QStringLiteral("\u2013") : tarnis::fullDigits(number);
}

QByteArray textOf(const RegionStatistics& s)
{
    using tarnis::figureText;
    QList<QStringList> rows { { "sum",
                                  s.sum < 10.0 && !std::isnan(s.sumInterval.upper)
                                      ? QStringLiteral("%1  68 %: %2 to %3")
                                            .arg(s.sum)
                                            .arg(s.sumInterval.lower, 0, 'f', 2)
                                            .arg(s.sumInterval.upper, 0, 'f', 2)
                                      : figureText(s.sum, s.sumError) },
        { "mean", figureText(s.mean, s.meanError) },
        { "maximum", QStringLiteral("%1 at %2").arg(numberText(s.maximum), numberText(s.maximumPosition)) },
        { "centroid", figureText(s.centroid, s.centroidError) }, { "rms width", numberText(s.rms) } };
    const auto add = [&rows](const QString& name, const QString& text) { rows.append(QStringList { name, text }); };
    if (s.hasNet) {
        add("background", figureText(s.background, s.backgroundError));
        add("net area", figureText(s.net, s.netError));
        add("critical level", tarnis::fullDigits(s.criticalLevel));
        add("probability without a peak", QString::number(s.excessProbability, 'g', 3));
        if (s.significant)
            add("net centroid", figureText(s.netCentroid, s.netCentroidError));
        else
            add("no peak", QStringLiteral("net area below the detection limit %1").arg(s.detectionLimit, 0, 'f', 1));
        if (!std::isnan(s.fwhm.shown))
            add("FWHM (interpolated)", QString::number(s.fwhm.shown, 'g', 4));
    }
    if (!std::isnan(s.rate))
        add("rate (1/s)", figureText(s.rate, s.rateError));
    if (!std::isnan(s.netRate))
        add("net rate (1/s)", figureText(s.netRate, s.netRateError));
    if (!s.note.isEmpty())
        add("note", s.note);
    return alignedTable(rows);
}

Outcome stats(const Arguments& arguments)
{
    if (!arguments.has("region"))
        return Failure { .code = WrongUsage, .text = "no region: give --region LO:HI" };
    const Result<int> sides = wholeNumberOption(arguments, "sides", 0, 10000, 3);
    if (!sides.isOk())
        return sides.failure();
    const Result<Spectrum> spectrum = readSpectrum(arguments.words().at(0));
    if (!spectrum.isOk())
        return spectrum.failure();
    const Result<Range<qsizetype>> range = channelOption(arguments, "region", spectrum.value());
    if (!range.isOk())
        return range.failure();
    tarnis::RegionOptions options;
    options.sideBins = sides.value();
    if (spectrum.value().data.liveTime > 0.0)
        options.liveTime = spectrum.value().data.liveTime;
    const RegionStatistics s = tarnis::regionStatisticsOfBins(spectrum.value().bins(),
        spectrum.value().binOf(range.value().first), spectrum.value().binOf(range.value().last), options);
    if (!s.fault.isEmpty())
        return wrongUse(s.fault);
    if (!arguments.has("json"))
        return print(textOf(s));
    QJsonObject object = grossOf(s);
    object["lo"] = static_cast<double>(range.value().first);
    object["hi"] = static_cast<double>(range.value().last);
    object["side_channels"] = options.sideBins;
    object["rate"] = jsonNumber(s.rate);
    object["rate_error"] = jsonNumber(s.rateError);
    object["net_rate"] = jsonNumber(s.netRate);
    object["net_rate_error"] = jsonNumber(s.netRateError);
    object["note"] = s.note;
    addNet(object, s, spectrum.value());
    return print(object);
}

} // namespace

const Command statsCommand {
    .name = "stats",
    .synopsis = "FILE --region LO:HI [--sides N] [--json]",
    .summary = "counts a region of a spectrum, with its background",
    .description = "Sum, centroid and width of the channels LO to HI, both included, and what is above the background of the\n"
                   "channels on either side, with errors and the probability that there is no peak. FILE is CSV, .spe, .npy or .h5.",
    .options = {
        { "region", "LO:HI", "channels, both included" },
        { "sides", "N", "channels on either side for the background; without it 3, 0 for none" },
    },
    .minWords = 1,
    .maxWords = 1,
    .run = stats,
};

} // namespace cli
