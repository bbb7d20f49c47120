// The live 2D window on the detector's image. The numbers of bins are those listed by the server, or 256 each without a
// list.
#include "histograms/histogramentries.h"

#include "histograms/histogramlist.h"
#include "histograms/livewindows.h"
#include "histograms/serverhistograms.h"

#include <optional>

namespace console {

namespace {

constexpr int binsShown = 256;

using Listed = std::optional<HistogramInfo>; // empty if the server lists none

/// Both axes count bins, as the cuts of the plot always do.
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
        .help = Windows::tr("The events by position, live"),
        .open = openMap,
        .histogram = QStringLiteral("image") };
}

} // namespace console
