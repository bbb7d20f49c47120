// The live 2D window on the detector's image.
#include "windows/histogramwindows.h"
#include "windows/livewindows.h"
#include "windows/window.h"

#include <tarnis/plots/xy2dgraphwidget.h>

namespace console {

namespace {

constexpr int binsShown = 256;

MapRequest imageRequest()
{
    MapRequest request;
    request.title = Windows::tr("Image");
    request.xLabel = Windows::tr("X");
    request.yLabel = Windows::tr("Y");
    request.bins = binsShown;
    request.command = QStringLiteral("hist2d image bins:%1").arg(binsShown);
    return request;
}

QWidget* openMap(const WindowContext& context)
{
    auto* const window = new LiveMap(context, std::function(imageRequest));
    window->getGraphWidget()->enalbeRoiSelect(QRect(0, 0, binsShown, binsShown));
    return window;
}

} // namespace

WindowEntry mapEntry()
{
    return { .id = QStringLiteral("map"),
        .menuText = Windows::tr("&Image"),
        .title = Windows::tr("Image"),
        .help = Windows::tr("The events by place, live"),
        .open = openMap,
        .tour = driveMap,
        .histogram = QStringLiteral("image") };
}

} // namespace console
