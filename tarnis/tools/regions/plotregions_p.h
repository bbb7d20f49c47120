// State of the regions of a plot.
#pragma once

#include "tarnis/tools/plotregions.h"
#include "tarnis/tools/regions/regionhit_p.h"

#include <QAction>

#include <optional>

namespace tarnis {

struct TARNIS_NO_EXPORT PlotRegions::Internals {
    QList<PlotRegion> regions;
    int selected = -1;
    std::optional<PlotRegion> drawn; ///< region being drawn; without points before the first press
    std::optional<RegionHandle> handle; ///< dragged part of the selected region
    PlotRegion before; ///< the selected region before the drag
    QPointF pressed; ///< value at the press
    QPointF pressedPixel;
    bool hasMoved = false;
    QList<QAction*> actions;
    QAction* removeAction = nullptr;

    /// The first unused name, for example "Region 3".
    QString freeName() const;
};

} // namespace tarnis
