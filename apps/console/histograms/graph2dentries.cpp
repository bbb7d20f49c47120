// The live 2D window on the detector's image. The numbers of bins are those that the server lists; a server that lists
// none is taken for one of 256 bins each way.
#include "histograms/histogramlist.h"
#include "histograms/livewindows.h"
#include "histograms/serverhistograms.h"
#include "windows/window.h"

#include <optional>

namespace console {

namespace {

constexpr int binsShown = 256;

using Listed = std::optional<HistogramInfo>; // nothing from a server that lists none

/// Both axes count the bins, as the cuts of the plot do whatever the axes say.
MapRequest imageRequest(const Listed& histogram)
{
    MapRequest request;
    request.title = Windows::tr("Image");
    request.xLabel = Windows::tr("X");
    request.yLabel = Windows::tr("Y");
    request.bins = binsShown;
    request.yBins = binsShown;
    request.command = QStringLiteral("hist2d image bins:%1").arg(binsShown);
    if (!histogram)
        return request;
    const MapRequest listed = mapRequest(*histogram);
    request.bins = listed.bins;
    request.yBins = listed.yBins;
    request.command = listed.command;
    return request;
}

QWidget* openMap(const WindowContext& context)
{
    Listed listed = context.histograms.find(QStringLiteral("image"));
    if (listed && !listed->isMap)
        listed.reset();
    return new LiveMap(context, std::function([listed] { return imageRequest(listed); }));
}

} // namespace

WindowEntry mapEntry()
{
    return { .id = QStringLiteral("map"),
        .menuText = Windows::tr("&Image"),
        .title = Windows::tr("Image"),
        .help = Windows::tr("The events by place, live"),
        .open = openMap,
        .histogram = QStringLiteral("image") };
}

} // namespace console
