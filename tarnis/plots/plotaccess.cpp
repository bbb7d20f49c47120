#include "tarnis/plots/plotaccess_p.h"

#include "tarnis/plots/colorbarwidget.h"

#include <QAction>
#include <QLineEdit>

namespace tarnis {

void PlotAccess::dropEditor(XYGraphWidget& plot)
{
    if (plot.m_edit == nullptr)
        return;
    plot.m_edit->deleteLater();
    plot.m_edit = nullptr;
}

bool PlotAccess::isCutOn(const XY2DGraphWidget& map)
{
    return map.m_act1dCut->isChecked();
}

PlotAccess::MapAxis PlotAccess::mapAxisX(const XY2DGraphWidget& map)
{
    // The step's getter only reads, but is declared otherwise.
    return { const_cast<XY2DGraphWidget&>(map).getStepX(), map.m_resolutionX };
}

PlotAccess::MapAxis PlotAccess::mapAxisY(const XY2DGraphWidget& map)
{
    return { const_cast<XY2DGraphWidget&>(map).getStepY(), map.m_resolutionY };
}

void PlotAccess::openLimitEditor(XY2DGraphWidget& map, bool isUpper)
{
    if (map.m_colorBar->isAutoScale())
        map.onAutoScaleZToggled(false);
    map.m_colorBar->openEditor(isUpper);
}

} // namespace tarnis
