#include "histograms/histogramentries.h"

#include "histograms/histogramchooser.h"

namespace console {

WindowEntry histogramsEntry()
{
    return {
        .id = QStringLiteral("histograms"),
        .menuText = Windows::tr("&Histograms..."),
        .title = Windows::tr("Histograms"),
        .help = Windows::tr("Choose which of the server's histograms to open"),
        .open = [](const WindowContext& context) -> QWidget* { return new HistogramChooser(context); },
        .shortcut = QStringLiteral("Ctrl+Shift+H"),
    };
}

} // namespace console
