// The live 1D windows: rows of all modules, the sum in the pair format, a single row, a measured spectrum. Rows, axes
// and units are those listed by the server; without a list, those of the simulated server with default settings.
#include "histograms/histogramentries.h"

#include "histograms/histogramlist.h"
#include "histograms/livewindows.h"
#include "histograms/serverhistograms.h"

#include <functional>
#include <optional>

namespace console {

namespace {

constexpr double period = 40000.0; // of the simulated source, in us
constexpr double detectorSize = 1000.0; // in mm
constexpr int binsShown = 1024;
constexpr int modules = 8;

using Listed = std::optional<HistogramInfo>; // empty if the server lists none

/// According to the server's list, else `otherwise`.
CurvesRequest requestFor(const Listed& histogram, const CurvesRequest& otherwise)
{
    if (!histogram)
        return otherwise;
    CurvesRequest request = curvesRequest(*histogram);
    if (request.xLabel.isEmpty())
        request.xLabel = otherwise.xLabel;
    request.title = titleOf(*histogram, otherwise.title);
    request.description = otherwise.description;
    if (!otherwise.rangeName.isEmpty())
        request.rangeName = otherwise.rangeName;
    return request;
}

/// The pair format: each reply contains its own axis.
CurvesRequest inPairs(CurvesRequest request, const QString& command)
{
    request.xMin = 0.0;
    request.xMax = 0.0;
    request.first = 0;
    request.last = 0;
    request.command = command;
    return request;
}

CurvesRequest rowsRequest(const Listed& histogram)
{
    CurvesRequest simulated;
    simulated.title = Windows::tr("Arrival Times");
    simulated.xLabel = Windows::tr("Time [us]");
    simulated.xMax = period;
    simulated.description = Windows::tr("Module");
    simulated.command = QStringLiteral("hist1d time 0 %1 bins:%2").arg(modules - 1).arg(binsShown);
    simulated.last = modules - 1;
    simulated.rangeName = Windows::tr("Time");
    return requestFor(histogram, simulated);
}

CurvesRequest pairsRequest(const Listed& histogram)
{
    CurvesRequest simulated;
    simulated.title = Windows::tr("Arrival Times, All Modules");
    simulated.xLabel = Windows::tr("Time [us]");
    simulated.description = Windows::tr("Sum");
    simulated.rangeName = Windows::tr("Time");
    const int bins = histogram ? binsToShow(histogram->x.bins, binsShown) : binsShown;
    return inPairs(requestFor(histogram, simulated), QStringLiteral("hist1d total pairs bins:%1").arg(bins));
}

CurvesRequest singleRowRequest(const Listed& histogram)
{
    CurvesRequest simulated;
    simulated.title = Windows::tr("Position, Module 0");
    simulated.xLabel = Windows::tr("Position [mm]");
    simulated.xMax = detectorSize;
    CurvesRequest request = requestFor(histogram, simulated);
    request.title = simulated.title;
    request.last = 0;
    request.command = QStringLiteral("hist1d position 0");
    return request;
}

CurvesRequest spectrumRequest(const Listed& histogram)
{
    CurvesRequest simulated; // in keV if the file has a calibration, else in channels
    simulated.title = Windows::tr("Measured Spectrum");
    simulated.xLabel = Windows::tr("Energy or Channel");
    simulated.description = Windows::tr("Spectrum");
    return inPairs(requestFor(histogram, simulated), QStringLiteral("hist1d spectrum pairs all"));
}

/// Completes the entry with a window of the histogram, which uses the server's list when it opens.
WindowEntry entryOf(WindowEntry entry, const QString& histogram, CurvesRequest (*request)(const Listed&))
{
    entry.histogram = histogram;
    entry.open = [histogram, request](const WindowContext& context) -> QWidget* {
        const Listed listed = context.histograms.find(histogram);
        return new LiveCurves(context, std::function([request, listed] { return request(listed); }));
    };
    return entry;
}

} // namespace

WindowEntry rowsEntry()
{
    return entryOf(
        {
            .id = QStringLiteral("curves"),
            .menuText = Windows::tr("&Arrival Times"),
            .title = Windows::tr("Arrival Times"),
            .help = Windows::tr("The arrival times of each module, live"),
        },
        QStringLiteral("time"), rowsRequest);
}

WindowEntry pairsEntry()
{
    return entryOf(
        {
            .id = QStringLiteral("pairs"),
            .menuText = Windows::tr("Arrival Times, A&ll Modules"),
            .title = Windows::tr("Arrival Times, All Modules"),
            .help = Windows::tr("The sum of all modules, live; the server defines the axis"),
        },
        QStringLiteral("total"), pairsRequest);
}

WindowEntry singleRowEntry()
{
    return entryOf(
        {
            .id = QStringLiteral("single-row"),
            .menuText = Windows::tr("&Position of Module 0"),
            .title = Windows::tr("Position, Module 0"),
            .help = Windows::tr("The positions of the events of one module, live"),
        },
        QStringLiteral("position"), singleRowRequest);
}

WindowEntry spectrumEntry()
{
    return entryOf(
        {
            .id = QStringLiteral("spectrum"),
            .menuText = Windows::tr("&Measured Spectrum"),
            .title = Windows::tr("Measured Spectrum"),
            .help = Windows::tr("The measured spectrum of the server's option --spectrum"),
        },
        QStringLiteral("spectrum"), spectrumRequest);
}

} // namespace console
