// The live 2D window on the detector's image. Bins and axes are those listed by the server. Without a list, each axis
// counts 256 bins.
#include "histograms/histogramentries.h"

#include "histograms/histogramlist.h"
#include "histograms/livewindows.h"
#include "histograms/serverhistograms.h"

#include <optional>

namespace console {

namespace {

constexpr int binsShown = 256;

using Listed = std::optional<HistogramInfo>; // empty if the server lists none

/// With the axes of the server's list; without a list, both count bins.
MapRequest imageRequest(const Listed& histogram)
{
    MapRequest request;
    request.bins = binsShown;
    request.yBins = binsShown;
    request.command = QStringLiteral("hist2d image bins:%1").arg(binsShown);
    if (histogram)
        request = mapRequest(*histogram);
    request.title = Windows::tr("Image");
    if (request.xLabel.isEmpty())
        request.xLabel = Windows::tr("X");
    if (request.yLabel.isEmpty())
        request.yLabel = Windows::tr("Y");
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
