// The part of `tarnis plot` that draws.
#include "datafile.h"
#include "histogram.h"
#include "output.h"
#include "plot.h"
#include "plotwidgets.h"
#include "server.h"

#include <tarnis/export/plotexporter.h>
#include <tarnis/formats/formats.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QFileInfo>
#include <QJsonObject>

namespace cli {

namespace {

bool isFile(const QString& word)
{
    return word == u"-" || tarnis::formatOfName(word) || QFileInfo::exists(word);
}

Result<std::vector<tarnis::Dataset>> readData(const Arguments& arguments)
{
    std::vector<tarnis::Dataset> data;
    std::unique_ptr<Server> server;
    for (const QString& word : arguments.words()) {
        const Outcome wrong = isFile(word) ? std::nullopt : checkRemoteName(word, "histogram");
        if (wrong)
            return *wrong;
    }
    for (const QString& word : arguments.words()) {
        if (isFile(word)) {
            Result<tarnis::Dataset> file = readDataFile(word);
            if (!file.isOk())
                return file.failure();
            data.push_back(std::move(file.value()));
            continue;
        }
        if (!server) {
            Result<std::unique_ptr<Server>> opened = Server::open(arguments);
            if (!opened.isOk() && opened.failure().code == WrongUsage)
                return Failure { .code = WrongUsage,
                    .text = QStringLiteral("'%1' is not a file, and for a histogram there is %2")
                                .arg(word, opened.failure().text) };
            if (!opened.isOk())
                return opened.failure();
            server = std::move(opened.value());
        }
        Result<tarnis::Dataset> histogram = fetchHistogram(*server, word);
        if (!histogram.isOk())
            return histogram.failure();
        warnOfBadValues(histogram.value(), word);
        data.push_back(std::move(histogram.value()));
    }
    return data;
}

Result<tarnis::PictureFormat> pictureFormat(const Arguments& arguments)
{
    const QString path = arguments.value("o");
    if (!arguments.has("o"))
        return Failure { .code = WrongUsage, .text = "no output: give -o FILE, or -o - for standard output" };
    if (Outcome wrong = checkOutputName(path))
        return *wrong;
    if (path == u"-" && arguments.has("json"))
        return Failure { .code = WrongUsage, .text = "--json and -o - both use standard output" };
    const QString byName = isStream(path) ? QStringLiteral(".png") : path;
    const std::optional<tarnis::PictureFormat> format =
        tarnis::pictureFormatOfName(arguments.has("format") ? u'.' + arguments.value("format") : byName);
    if (format)
        return *format;
    return Failure { .code = WrongUsage,
        .text = arguments.has("format")
            ? QStringLiteral("--format '%1' is not png, pdf or svg").arg(arguments.value("format"))
            : QStringLiteral("'%1' does not end in .png, .pdf or .svg").arg(path) };
}

/// Several titles are shown in the legend.
QString titleOf(const Arguments& arguments, const std::vector<tarnis::Dataset>& all)
{
    if (arguments.has("title"))
        return arguments.value("title");
    return all.size() == 1 ? all.front().title : QString();
}

tarnis::PictureOptions pictureOptions(const FigureOptions& figure, const tarnis::Dataset& data)
{
    tarnis::PictureOptions options;
    options.size = figure.size;
    options.dpi = figure.dpi;
    // A theme draws the title itself.
    options.heading = figure.theme ? QString() : figure.title;
    options.title = figure.title;
    options.source = data.source;
    options.time = data.time;
    return options;
}

} // namespace

Outcome plot(const Arguments& arguments)
{
    const Result<tarnis::PictureFormat> format = pictureFormat(arguments);
    if (!format.isOk())
        return format.failure();
    Result<FigureOptions> figure = figureOptions(arguments);
    if (!figure.isOk())
        return figure.failure();
    const Result<std::vector<tarnis::Dataset>> data = readData(arguments);
    if (!data.isOk())
        return data.failure();
    figure.value().title = titleOf(arguments, data.value());
    const Result<std::unique_ptr<XYGraphWidget>> widget = makePlot(data.value(), figure.value());
    if (!widget.isOk())
        return widget.failure();
    QString error;
    const QByteArray picture =
        tarnis::PlotExporter(*widget.value())
            .picture(format.value(), pictureOptions(figure.value(), data.value().front()), &error);
    const QString path = arguments.value("o");
    if (!error.isEmpty())
        return Failure { .code = WrongUsage, .text = error };
    if (Outcome outcome = writeOutput(path, picture))
        return outcome;
    if (!arguments.has("json"))
        return std::nullopt;
    return print(QJsonObject { { "file", path }, { "bytes", picture.size() }, { "width", figure.value().size.width() },
        { "height", figure.value().size.height() } });
}

} // namespace cli
