// tarnis peaks and tarnis calibrate: all peaks of a spectrum, and energies from known lines among them.
#include "commands.h"
#include "output.h"
#include "spectrumfile.h"

#include <tarnis/analysis/calibrationlines.h>
#include <tarnis/analysis/energycalibration.h>
#include <tarnis/analysis/figures.h>
#include <tarnis/analysis/peaktable.h>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

Result<tarnis::EnergyCalibration> readCalibration(const QString& path)
{
    const Result<QByteArray> text = readInput(path);
    if (!text.isOk())
        return text.failure();
    tarnis::CalibrationResult result = tarnis::calibrationFromJson(text.value());
    if (!result.error.isEmpty())
        return Failure { .code = FileError, .text = QStringLiteral("cannot read '%1': %2").arg(path, result.error) };
    return std::move(result.calibration);
}

Result<tarnis::PeakTable> peaksOf(const Spectrum& spectrum, const Range<qsizetype>& range)
{
    tarnis::PeakTable table = tarnis::analysePeaks(spectrum.bins(), {},
        static_cast<std::size_t>(spectrum.binOf(range.first)), static_cast<std::size_t>(spectrum.binOf(range.last)));
    if (!table.fault.isEmpty())
        return wrongUse(QStringLiteral("no peaks: %1").arg(table.fault));
    return table;
}

QJsonObject jsonOf(
    const tarnis::TablePeak& peak, const tarnis::PeakTable& table, const tarnis::EnergyCalibration& calibration)
{
    QJsonObject object { { "centre", peak.centre }, { "centre_error", jsonNumber(peak.centreError) },
        { "area", peak.area }, { "area_error", jsonNumber(peak.areaError) }, { "fwhm", jsonNumber(peak.fwhm) },
        { "fwhm_error", jsonNumber(peak.fwhmError) }, { "height", jsonNumber(peak.height) },
        { "background", jsonNumber(peak.background) }, { "significance", peak.significance },
        { "window", static_cast<double>(peak.window) }, { "acceptable", peak.acceptable },
        { "reasons", QJsonArray::fromStringList(table.windows[peak.window].reasons) } };
    if (peak.areaProfile)
        object["area_profile"] =
            QJsonArray { jsonNumber(peak.areaProfile->lower), jsonNumber(peak.areaProfile->upper) };
    if (calibration.isValid()) {
        const tarnis::CalibratedEnergy energy = calibration.calibrated(peak.centre, peak.centreError);
        const double slope = calibration.slopeAt(peak.centre);
        object["energy"] = jsonNumber(energy.energy);
        object["energy_error"] = jsonNumber(energy.error);
        object["energy_fwhm"] = jsonNumber(peak.fwhm * slope);
        object["extrapolated"] = energy.extrapolated;
    }
    return object;
}

QByteArray textOf(const tarnis::PeakTable& table, const tarnis::EnergyCalibration& calibration)
{
    using tarnis::figureText;
    QStringList head { "channel", "area", "FWHM", "fit" };
    if (calibration.isValid())
        head.insert(1, calibration.unit);
    QList<QStringList> rows { head };
    for (const tarnis::TablePeak& peak : table.peaks) {
        QStringList row { figureText(peak.centre, peak.centreError), figureText(peak.area, peak.areaError),
            figureText(peak.fwhm, peak.fwhmError),
            peak.acceptable ? QStringLiteral("ok") : table.windows[peak.window].reasons.value(0) };
        if (calibration.isValid()) {
            const tarnis::CalibratedEnergy energy = calibration.calibrated(peak.centre, peak.centreError);
            row.insert(1, figureText(energy.energy, energy.error) + (energy.extrapolated ? " extrapolated" : ""));
        }
        rows.append(row);
    }
    return alignedTable(rows);
}

Outcome peaks(const Arguments& arguments)
{
    tarnis::EnergyCalibration calibration;
    if (arguments.has("calibration")) {
        Result<tarnis::EnergyCalibration> read = readCalibration(arguments.value("calibration"));
        if (!read.isOk())
            return read.failure();
        calibration = std::move(read.value());
    }
    const Result<Spectrum> spectrum = readSpectrum(arguments.words().at(0));
    if (!spectrum.isOk())
        return spectrum.failure();
    const Result<Range<qsizetype>> range = channelOption(arguments, "range", spectrum.value());
    if (!range.isOk())
        return range.failure();
    const Result<tarnis::PeakTable> table = peaksOf(spectrum.value(), range.value());
    if (!table.isOk())
        return table.failure();
    if (!arguments.has("json"))
        return print(textOf(table.value(), calibration));
    QJsonArray list;
    for (const tarnis::TablePeak& peak : table.value().peaks)
        list.append(jsonOf(peak, table.value(), calibration));
    return print(QJsonObject { { "peaks", list },
        { "range", QJsonArray { static_cast<double>(range.value().first), static_cast<double>(range.value().last) } },
        { "width_calibration", QJsonArray { table.value().widths.a, table.value().widths.b } } });
}

/// Reads lines from a file, or the lines of a source.
Result<std::vector<tarnis::CalibrationLine>> readLines(const QString& word)
{
    tarnis::CalibrationLines lines;
    if (word == u"-" || QFileInfo::exists(word)) {
        const Result<QByteArray> text = readInput(word);
        if (!text.isOk())
            return text.failure();
        lines = tarnis::linesFromText(text.value());
        if (!lines.error.isEmpty())
            return Failure { .code = FileError, .text = QStringLiteral("cannot read '%1': %2").arg(word, lines.error) };
    } else {
        lines = tarnis::linesOfSource(word);
        if (!lines.error.isEmpty())
            return wrongUse(QStringLiteral("--lines '%1' is not a file. %2").arg(word, lines.error));
    }
    return std::move(lines.lines);
}

QByteArray textOf(const tarnis::EnergyCalibration& calibration)
{
    QList<QStringList> rows { { "line", "channel", calibration.unit, "residual" } };
    for (const tarnis::CalibrationPoint& point : calibration.points)
        rows.append(QStringList { point.name, tarnis::figureText(point.position, point.positionError),
            tarnis::figureText(point.energy, point.energyError), QString::number(point.residual, 'f', 4) });
    QString text = QStringLiteral("degree %1, chi squared %2 / %3")
                       .arg(calibration.degree())
                       .arg(calibration.chi2, 0, 'f', 1)
                       .arg(calibration.ndf);
    const double scale = std::sqrt(calibration.chi2 / calibration.ndf);
    if (scale > 1.0)
        text += QStringLiteral(": the errors are too small by a factor of %1").arg(scale, 0, 'f', 2);
    return alignedTable(rows) + text.toUtf8() + '\n';
}

/// Lines that miss their peaks by a large part of the width are wrongly assigned.
Outcome checkAssignment(const tarnis::EnergyCalibration& calibration, const std::vector<tarnis::MeasuredPeak>& peaks)
{
    for (const tarnis::CalibrationPoint& point : calibration.points) {
        for (const tarnis::MeasuredPeak& peak : peaks) {
            const double tolerance = 0.2 * peak.fwhm * calibration.slopeAt(peak.position);
            if (peak.position == point.position && std::fabs(point.residual) > tolerance)
                return Failure { .code = WrongUsage,
                    .text = QStringLiteral(
                        "no calibration: the lines do not match the peaks, that of %1 keV is off by %2 keV; "
                        "give the channels of at least three lines in a file")
                                .arg(point.energy)
                                .arg(point.residual, 0, 'f', 2) };
        }
    }
    return std::nullopt;
}

Outcome calibrate(const Arguments& arguments)
{
    if (!arguments.has("lines"))
        return Failure {
            .code = WrongUsage,
            .text =
                QStringLiteral("no lines: give --lines FILE, or one of %1").arg(tarnis::calibrationSources().join(", "))
        };
    if (!arguments.has("o"))
        return Failure { .code = WrongUsage, .text = "no output: give -o FILE, or -o - for standard output" };
    if (Outcome wrong = checkOutputName(arguments.value("o")))
        return *wrong;
    if (arguments.value("o") == u"-" && arguments.has("json"))
        return Failure { .code = WrongUsage, .text = "--json and -o - both use standard output" };
    const Result<int> degree = wholeNumberOption(arguments, "degree", 1, 2, 0);
    if (!degree.isOk())
        return degree.failure();
    const Result<std::vector<tarnis::CalibrationLine>> lines = readLines(arguments.value("lines"));
    if (!lines.isOk())
        return lines.failure();
    const Result<Spectrum> spectrum = readSpectrum(arguments.words().at(0));
    if (!spectrum.isOk())
        return spectrum.failure();
    const Range<qsizetype> all { spectrum.value().firstChannel, spectrum.value().lastChannel() };
    const Result<tarnis::PeakTable> table = peaksOf(spectrum.value(), all);
    if (!table.isOk())
        return table.failure();
    std::vector<tarnis::MeasuredPeak> measured;
    for (const tarnis::TablePeak& peak : table.value().peaks) {
        // Peaks of windows with a bad fit are parts of a continuum, and larger than any line.
        const bool fits = std::fabs(table.value().windows[peak.window].goodness) < 4.0;
        if (fits && peak.centreError > 0.0 && peak.area > 0.0)
            measured.push_back({ peak.centre, peak.centreError, peak.fwhm, peak.area });
    }
    const double low = static_cast<double>(all.first);
    const double high = static_cast<double>(all.last);
    const std::vector<tarnis::CalibrationPoint> points =
        tarnis::assignLines(lines.value(), measured, low, high, spectrum.value().data.calibration);
    tarnis::CalibrationResult result = tarnis::fitEnergyCalibration(points, low, high, degree.value());
    if (!result.error.isEmpty()) {
        QString text = QStringLiteral("no calibration: %1").arg(result.error);
        if (measured.size() < table.value().peaks.size())
            text += QStringLiteral(
                " Of %1 peaks %2 have a fit that can be used: 'tarnis peaks' prints why the others have not")
                        .arg(table.value().peaks.size())
                        .arg(measured.size());
        return wrongUse(text);
    }
    if (Outcome doubtful = checkAssignment(result.calibration, measured))
        return doubtful;
    result.calibration.source = QFileInfo(arguments.words().at(0)).fileName();
    const QByteArray json = tarnis::calibrationToJson(result.calibration);
    if (Outcome failed = writeOutput(arguments.value("o"), json))
        return failed;
    if (arguments.value("o") == u"-")
        return std::nullopt;
    return arguments.has("json") ? print(QJsonDocument::fromJson(json).object()) : print(textOf(result.calibration));
}

} // namespace

const Command peaksCommand {
    .name = "peaks",
    .synopsis = "FILE [--range LO:HI] [--calibration FILE] [--json]",
    .summary = "finds and fits all peaks of a spectrum",
    .description = "Searches the peaks of a spectrum, fits them and prints a table with errors, from the left to the right.",
    .options = {
        { "range", "LO:HI", "channels, both included; without it all" },
        { "calibration", "FILE", "energies by a file of 'tarnis calibrate'" },
    },
    .minWords = 1,
    .maxWords = 1,
    .run = peaks,
};

const Command calibrateCommand {
    .name = "calibrate",
    .synopsis = "FILE --lines FILE|SOURCE -o FILE [--degree N]",
    .summary = "makes an energy calibration from known lines",
    .description = "Finds the peaks of a spectrum, assigns the lines of a source to them, and writes the calibration as JSON.\n"
                   "A file of lines has energy, error, and if known channel and name on each line. Sources are joined by +, as in\n"
                   "ba133+cs137: am241, ba133, cd109, co57, co60, cs137, eu152, k40, mn54, na22, ra226, th232, y88.",
    .options = {
        { "lines", "FILE|SOURCE", "known lines" },
        { "o", "FILE", "the calibration; - is standard output" },
        { "degree", "N", "1 or 2; without it 2, or 1 for three lines" },
    },
    .minWords = 1,
    .maxWords = 1,
    .run = calibrate,
};

} // namespace cli
