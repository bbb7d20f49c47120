#include "tarnis/tools/navigation/plotzones_p.h"

#include "tarnis/plots/colorbarwidget.h"
#include "tarnis/plots/mapcolouring_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/plots/plotmapping.h"

namespace tarnis {

PlotZone zoneAt(const XYGraphWidget& plot, const PlotMapping& mapping, const QPointF& position)
{
    if (const auto* map = qobject_cast<const XY2DGraphWidget*>(&plot)) {
        const ColorBarWidget& bar = PlotAccess::colourBar(*map);
        const MapColouring* const colouring = PlotAccess::colouring(*map);
        const int beside = colouring != nullptr ? colouring->besideBar : 0;
        if (bar.isVisibleTo(map) && bar.geometry().adjusted(-beside, 0, 0, 0).contains(position.toPoint()))
            return PlotZone::ColourBar;
    }
    if (!mapping.isValid())
        return PlotZone::Outside;
    const QRect rect = mapping.frameRect();
    const QPoint point = mapping.toFrame(position).toPoint();
    if (rect.contains(point))
        return PlotZone::Plot;
    const bool isBesideX = point.x() >= rect.left() && point.x() <= rect.right();
    const bool isBesideY = point.y() >= rect.top() && point.y() <= rect.bottom();
    if (isBesideX && point.y() > rect.bottom())
        return PlotZone::AxisX;
    return isBesideY && point.x() < rect.left() ? PlotZone::AxisY : PlotZone::Outside;
}

bool isOnEndLabel(const XYGraphWidget& plot, const QPoint& position)
{
    return PlotAccess::minXLabel(plot).contains(position, true) || PlotAccess::maxXLabel(plot).contains(position, true)
        || PlotAccess::minYLabel(plot).contains(position, true) || PlotAccess::maxYLabel(plot).contains(position, true);
}

} // namespace tarnis
