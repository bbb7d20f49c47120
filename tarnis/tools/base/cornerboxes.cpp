#include "tarnis/tools/base/cornerboxes_p.h"

#include "tarnis/tools/plotlegend.h"
#include "tarnis/tools/plotnavigator.h"

namespace tarnis {

QList<QRect> cornerBoxes(const XYGraphWidget& plot)
{
    QList<QRect> boxes;
    for (const InteractiveTool* const tool : InteractiveTool::toolsOf(plot)) {
        if (qobject_cast<const PlotLegend*>(tool) != nullptr || qobject_cast<const PlotNavigator*>(tool) != nullptr)
            boxes += tool->overlayBoxes();
    }
    return boxes;
}

} // namespace tarnis
