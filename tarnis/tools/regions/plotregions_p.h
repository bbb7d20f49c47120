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
    std::optional<PlotRegion> drawn; ///< under way; no points before the first press
    std::optional<RegionHandle> handle; ///< that is dragged, of the selected region
    PlotRegion before; ///< the selected region before the drag
    QPointF pressed; ///< value at the press
    QPointF pressedPixel;
    bool hasMoved = false;
    QList<QAction*> actions;
    QAction* removeAction = nullptr;

    /// "Region 3": the first free one.
    QString freeName() const;
};

} // namespace tarnis
