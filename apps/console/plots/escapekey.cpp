#include "plots/escapekey.h"

#include "plots/boxplacer.h"
#include "plots/plottools.h"

#include <tarnis/dialogs/statdialog.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QMouseEvent>

namespace console {

namespace {

/// Access to the protected menu entries of the tools.
class PlotTools : public XYGraphWidget {
public:
    static QList<QAction*> of(XYGraphWidget& plot)
    {
        return { plot.*(&PlotTools::m_actRectangle), plot.*(&PlotTools::m_actZoomIn), plot.*(&PlotTools::m_actZoomOut),
            plot.*(&PlotTools::m_actMove), plot.*(&PlotTools::m_actSelectXRange) };
    }
};

class MapTools : public XY2DGraphWidget {
public:
    static QList<QAction*> of(XY2DGraphWidget& map)
    {
        return { map.*(&MapTools::m_act1dCut), map.*(&MapTools::m_actRoi) };
    }
};

QList<QAction*> toolsOf(XYGraphWidget& plot)
{
    QList<QAction*> tools = PlotTools::of(plot);
    if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot))
        tools.append(MapTools::of(*map));
    tools.removeAll(nullptr); // regions may be unavailable
    return tools;
}

bool leaveEditor(XYGraphWidget& plot)
{
    if (auto* const bar = plot.findChild<ColorBarWidget*>();
        bar && bar->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly)) {
        bar->deleteEditLine();
        return true;
    }
    if (!plot.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly))
        return false;
    // A press beside the graph closes the editor.
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(), plot.mapToGlobal(QPointF()), Qt::LeftButton, Qt::LeftButton,
        Qt::NoModifier);
    QApplication::sendEvent(&plot, &press);
    return true;
}

} // namespace

bool endActiveTool(XYGraphWidget& plot)
{
    if (leaveEditor(plot))
        return true;
    bool isLeft = false;
    for (QAction* const tool : toolsOf(plot)) {
        if (!tool->isChecked())
            continue;
        tool->trigger(); // as in the menu: some tools use triggered(), some toggled()
        isLeft = true;
    }
    return isLeft;
}

bool handleEscape(QWidget& window)
{
    if (!qobject_cast<QDialog*>(&window))
        return false;
    if (XYGraphWidget* const plot = BoxPlacer::plotOf(window))
        return endActiveTool(*plot);
    if (XYGraphWidget* const plot = plotOf(window)) {
        endActiveTool(*plot);
        return true;
    }
    return qobject_cast<StatDialog*>(&window) != nullptr; // live too
}

} // namespace console
