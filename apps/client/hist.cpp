// tarnis hist: writes a histogram of the server to a file.
#include "commands.h"
#include "datafile.h"
#include "histogram.h"
#include "output.h"

#include <tarnis/formats/formats.h>

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>

namespace cli {

namespace {

/// JSON has no non-finite numbers.
QJsonArray jsonNumbers(const std::vector<double>& numbers)
{
    QJsonArray array;
    for (const double number : numbers)
        array.append(std::isfinite(number) ? QJsonValue(number) : QJsonValue());
    return array;
}

QJsonObject jsonAxis(const tarnis::DataAxis& axis, qsizetype bins)
{
    return { { "name", axis.name }, { "unit", axis.unit }, { "edges", jsonNumbers(tarnis::edgesOf(axis, bins)) } };
}

QJsonObject summaryOf(const tarnis::Dataset& data)
{
    return { { "name", data.title }, { "kind", data.kind == tarnis::Dataset::Kind::Map ? "map" : "curves" },
        { "source", data.source }, { "time", data.time.toString(Qt::ISODateWithMs) }, { "liveTime", data.liveTime },
        { "rows", data.rows }, { "columns", data.columns },
        { "sum", std::accumulate(data.values.begin(), data.values.end(), 0.0) } };
}

QJsonObject jsonOf(const tarnis::Dataset& data)
{
    QJsonObject object = summaryOf(data);
    object.insert("x", jsonAxis(data.x, data.columns));
    if (data.kind == tarnis::Dataset::Kind::Map)
        object.insert("y", jsonAxis(data.y, data.rows));
    QJsonArray rows;
    for (qsizetype row = 0; row < data.rows; ++row) {
        const auto begin = data.values.begin() + row * data.columns;
        rows.append(jsonNumbers({ begin, begin + data.columns }));
    }
    object.insert("values", rows);
    return object;
}

/// The format of the output: that of --format, or of the file's name.
Result<tarnis::FileFormat> outputFormat(const Arguments& arguments)
{
    const QString path = arguments.value("o");
    const QString asked = arguments.value("format");
    const QString byName = isStream(path) ? QStringLiteral(".csv") : path;
    const std::optional<tarnis::FileFormat> format =
        tarnis::formatOfName(arguments.has("format") ? u'.' + asked : byName);
    if (format)
        return *format;
    const QString text = arguments.has("format")
        ? QStringLiteral("--format '%1' is not csv, npy, spe or h5").arg(asked)
        : QStringLiteral("'%1' does not end in .csv, .npy, .spe or .h5").arg(path);
    return Failure { .code = WrongUsage, .text = text };
}

Outcome checkOutput(const Arguments& arguments)
{
    const bool json = arguments.has("json");
    if (!arguments.has("o"))
        return json ? Outcome()
                    : Failure { .code = WrongUsage, .text = "no output: give -o FILE, or -o - for standard output" };
    if (Outcome wrong = checkOutputName(arguments.value("o")))
        return *wrong;
    if (json && arguments.value("o") == u"-")
        return Failure { .code = WrongUsage, .text = "--json and -o - both use standard output" };
    const Result<tarnis::FileFormat> format = outputFormat(arguments);
    return format.isOk() ? std::nullopt : Outcome(format.failure());
}

/// Counts with their standard deviations, sqrt(N), for NeXus files. Text and arrays contain only the values.
tarnis::Dataset withErrors(tarnis::Dataset data)
{
    const bool areCounts = std::all_of(data.values.begin(), data.values.end(),
        [](double value) { return value >= 0.0 && value == std::floor(value); });
    if (!areCounts)
        return data;
    data.errors.reserve(data.values.size());
    std::transform(data.values.begin(), data.values.end(), std::back_inserter(data.errors),
        [](double count) { return std::sqrt(count); });
    return data;
}

Outcome save(const Arguments& arguments, const tarnis::Dataset& data)
{
    const QString path = arguments.value("o");
    const tarnis::FileFormat format = outputFormat(arguments).value();
    const tarnis::EncodeResult file =
        tarnis::encodeDataset(format == tarnis::FileFormat::Hdf5 ? withErrors(data) : data, format);
    if (!file.error.isEmpty())
        return Failure { .code = FileError, .text = QStringLiteral("cannot write '%1': %2").arg(path, file.error) };
    if (Outcome outcome = writeOutput(path, file.bytes))
        return outcome;
    if (!arguments.has("json"))
        return std::nullopt;
    QJsonObject summary = summaryOf(data);
    summary.insert("file", path);
    return print(summary);
}

Outcome hist(const Arguments& arguments)
{
    if (Outcome wrong = checkOutput(arguments))
        return wrong;
    if (Outcome wrong = checkRemoteName(arguments.words().first(), "histogram"))
        return wrong;
    const Result<std::optional<Range<int>>> rows = rowsOption(arguments);
    if (!rows.isOk())
        return rows.failure();
    const Result<std::unique_ptr<Server>> server = Server::open(arguments);
    if (!server.isOk())
        return server.failure();
    const Result<tarnis::Dataset> data = fetchHistogram(*server.value(), arguments.words().first(), rows.value());
    if (!data.isOk())
        return data.failure();
    warnOfBadValues(data.value(), data.value().title);
    return arguments.has("o") ? save(arguments, data.value()) : print(jsonOf(data.value()));
}

} // namespace

const Command histCommand {
    .name = "hist",
    .synopsis = "[--server HOST:PORT | --local PROGRAM] [--prompt TEXT] [--timeout S] NAME [--rows A:B] -o FILE",
    .summary = "saves a histogram of the server",
    .description = "Saves the histogram NAME as FILE, whose name ends in .csv, .npy, .spe or .h5. The file has the "
                   "axes, units, title,\n"
                   "server, run and time (.npy: the values alone). With --json and without -o the values are printed.",
    .options = serverOptions()
        + QList<Option> { { "rows", "A:B", "rows A to B of a 1D histogram, or row A; without it all" },
            { "o", "FILE", "the file; - is standard output" },
            { "format", "FORMAT", "csv, npy, spe or h5, whatever the name of the file; without it csv for -o -" } },
    .minWords = 1,
    .maxWords = 1,
    .run = hist,
};

} // namespace cli
