// Mouse gestures on a map whose rows arrive, while a tool comes and goes.
#pragma once

#include "support/plotmouse.h"
#include "support/randomcases.h"
#include "support/visibleplot.h"

#include <tarnis/plots/xy2dgraphwidget.h>

#include <QCoreApplication>

#include <cmath>
#include <memory>

namespace tarnis::testing {

/// Sets a row of the map: of random length, with some values missing.
inline void setRandomRow(XY2DGraphWidget& map, Generator& random)
{
    QList<double> row(whole(random, 0, 11));
    for (double& value : row)
        value = chance(random, 0.1) ? std::nan("") : uniform(random, -5, 20);
    map.setData(whole(random, 0, 7), row, 20, false);
    map.refreshPixmap();
}

/// Attaches, switches, drags and detaches a Tool 400 times, a row between each; the map has eight rows and is shown.
template <typename Tool> void attachUnderLiveRows(XY2DGraphWidget& map, Generator& random)
{
    std::unique_ptr<Tool> tool;
    PlotMouse mouse(map);
    for (int i = 0; i < 400; ++i) {
        setRandomRow(map, random);
        const QPoint at(whole(random, 0, map.width()), whole(random, 0, map.height()));
        switch (whole(random, 0, 6)) {
        case 0:
            tool = tool ? nullptr : std::make_unique<Tool>(&map);
            break;
        case 1:
            if (tool)
                tool->setOn(chance(random, 0.75));
            break;
        case 2:
            mouse.press(at);
            break;
        case 3:
            mouse.release(at);
            break;
        case 4:
            QCoreApplication::processEvents();
            break;
        default:
            mouse.move(at);
        }
        map.grab();
    }
    tool.reset();
    mouse.release(QPoint(1, 1));
}

} // namespace tarnis::testing
