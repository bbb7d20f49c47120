// A server with curves, pairs and a map.
#pragma once

#include "app/language.h"
#include "console/consolefixture.h"
#include "histograms/histogramchooser.h"
#include "histograms/lastdatabar.h"
#include "histograms/livewindows.h"
#include "histograms/serverhistograms.h"
#include "support/wait.h"
#include "tables/ratewindow.h"
#include "windows/openwindows.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>

namespace tarnis::testing {

inline const QByteArray curvesCommand("hist1d time 0 7 bins:1024");
inline const QByteArray pairsCommand("hist1d total pairs bins:1024");
inline const QByteArray mapCommand("hist2d image bins:256");

inline Script curvesOf(double value)
{
    return { Step::doubles(QList<double>(8, value), "OK:\n") };
}

class LiveServer : public ScriptedServer {
public:
    LiveServer()
    {
        answer(curvesCommand, curvesOf(3));
        answer(pairsCommand, { Step::doubles({ 0, 5, 39, 6 }, "OK: (0 40000 1024)\n") });
        answer(mapCommand, { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") });
        answer("stat", { Step::text("OK:\nevents: 12\nrate: 5\n") });
    }
};

template <typename Window> bool isFilled(const Window& window)
{
    return eventually([&] { return window.getGraphWidget()->getMaxValue() > 0.0; });
}

} // namespace tarnis::testing
