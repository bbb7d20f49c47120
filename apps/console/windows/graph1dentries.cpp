// The live 1D windows: rows of all modules, the sum in the pair format, a single row, a measured spectrum.
#include "windows/histogramwindows.h"
#include "windows/livewindows.h"
#include "windows/window.h"

namespace console {

namespace {

constexpr double period = 40000.0; // of the simulated source, in us
constexpr double detectorSize = 1000.0; // in mm
constexpr int binsShown = 1024;
constexpr int modules = 8;

CurvesRequest rowsRequest()
{
    CurvesRequest request;
    request.title = Windows::tr("Arrival Times");
    request.xLabel = Windows::tr("Time [us]");
    request.xMax = period;
    request.description = Windows::tr("Module");
    request.command = QStringLiteral("hist1d time 0 %1 bins:%2").arg(modules - 1).arg(binsShown);
    request.last = modules - 1;
    request.rangeName = Windows::tr("Time");
    return request;
}

CurvesRequest pairsRequest()
{
    CurvesRequest request; // both ends 0: each reply brings its own axis
    request.title = Windows::tr("Arrival Times, All Modules");
    request.xLabel = Windows::tr("Time [us]");
    request.description = Windows::tr("Sum");
    request.command = QStringLiteral("hist1d total pairs bins:%1").arg(binsShown);
    request.rangeName = Windows::tr("Time");
    return request;
}

CurvesRequest singleRowRequest()
{
    CurvesRequest request;
    request.title = Windows::tr("Position, Module 0");
    request.xLabel = Windows::tr("Position [mm]");
    request.xMax = detectorSize;
    request.command = QStringLiteral("hist1d position 0");
    return request;
}

CurvesRequest spectrumRequest()
{
    CurvesRequest request; // in keV where the file has a calibration, else in channels: the reply brings the axis
    request.title = Windows::tr("Measured Spectrum");
    request.xLabel = Windows::tr("Energy or Channel");
    request.description = Windows::tr("Spectrum");
    request.command = QStringLiteral("hist1d spectrum pairs all");
    return request;
}

std::function<QWidget*(const WindowContext&)> opening(CurvesRequest (*request)())
{
    return [request](const WindowContext& context) { return new LiveCurves(context, std::function(request)); };
}

} // namespace

WindowEntry rowsEntry()
{
    return { QStringLiteral("curves"), Windows::tr("&Arrival Times"), Windows::tr("Arrival Times"),
        Windows::tr("The arrival times of each module, live"), opening(rowsRequest), driveRows };
}

WindowEntry pairsEntry()
{
    return { QStringLiteral("pairs"), Windows::tr("Arrival Times, A&ll Modules"),
        Windows::tr("Arrival Times, All Modules"),
        Windows::tr("The sum of all modules, live; the server tells the axis"), opening(pairsRequest), drivePairs };
}

WindowEntry singleRowEntry()
{
    return { QStringLiteral("single-row"), Windows::tr("&Position of Module 0"), Windows::tr("Position, Module 0"),
        Windows::tr("Where the events of one module are, live"), opening(singleRowRequest), driveSingleRow };
}

WindowEntry spectrumEntry()
{
    return { QStringLiteral("spectrum"), Windows::tr("&Measured Spectrum"), Windows::tr("Measured Spectrum"),
        Windows::tr("The spectrum that the server was given with --spectrum"), opening(spectrumRequest),
        driveSpectrum };
}

} // namespace console
