#include "plots/plottools.h"

#include "plots/plotlinks.h"
#include "plots/plotpanels.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/export/plotexporter.h>
#include <tarnis/foundation/retranslator.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotkeyboard.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QToolTip>

namespace console {

namespace {

struct PlotTools {
    Q_DECLARE_TR_FUNCTIONS(PlotTools)
};

/// Copies the picture of a plot. A tool of the plot that has values to copy receives the key first.
QAction* newCopyAction(XYGraphWidget& plot)
{
    auto* const action = new QAction(&plot);
    action->setObjectName(QStringLiteral("copyPicture"));
    action->setShortcut(QKeySequence::Copy);
    action->setShortcutContext(Qt::WidgetShortcut);
    plot.addAction(action);
    tarnis::setTranslatedText(*action, plot, [] { return PlotTools::tr("Copy Picture"); });
    QObject::connect(action, &QAction::triggered, &plot, [&plot] { tarnis::PlotExporter(plot).copyPicture(); });
    return action;
}

} // namespace

void attachTools(XYGraphWidget& plot)
{
    if (plot.findChild<tarnis::PlotNavigator*>(QString(), Qt::FindDirectChildrenOnly))
        return;
    auto* const navigator = new tarnis::PlotNavigator(&plot); // owned by the plot
    QObject::connect(navigator, &tarnis::PlotNavigator::message, &plot,
        [&plot](const QString& text) { QToolTip::showText(plot.mapToGlobal(plot.rect().center()), text, &plot); });
    new tarnis::PlotKeyboard(&plot);
    auto* const crosshair = new tarnis::PlotCrosshair(&plot);
    crosshair->setOn(false);
    new tarnis::PlotMarkers(&plot);
    new tarnis::PlotRuler(&plot);
    if (qobject_cast<MultiVectorGraphWidget*>(&plot))
        new tarnis::PlotLegend(&plot);
    if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot)) {
        new tarnis::ColourLevels(map);
        new tarnis::LineProfile(map);
    } else {
        new tarnis::ErrorBars(&plot);
        new tarnis::ReferenceCurves(&plot);
    }
    new tarnis::BinAggregation(&plot);
}

XYGraphWidget* plotOf(const QWidget& window)
{
    for (XYGraphWidget* const plot : window.findChildren<XYGraphWidget*>()) {
        if (plot->window() == &window)
            return plot;
    }
    return nullptr;
}

void setLiveTime(const QWidget& window, double seconds)
{
    const XYGraphWidget* const plot = plotOf(window);
    auto* const references = plot ? plot->findChild<tarnis::ReferenceCurves*>() : nullptr;
    if (references)
        references->setLiveTime(seconds);
}

void addToolBar(QWidget& window)
{
    const bool isHistogram = qobject_cast<Graph1DDialog*>(&window) || qobject_cast<Graph2DDialog*>(&window);
    auto* const layout = qobject_cast<QBoxLayout*>(window.layout());
    XYGraphWidget* const plot = isHistogram ? plotOf(window) : nullptr;
    if (!plot || !layout || window.findChild<tarnis::PlotToolBar*>(QString(), Qt::FindDirectChildrenOnly))
        return;
    attachTools(*plot);
    auto* const bar = new tarnis::PlotToolBar(plot, &window);
    layout->insertWidget(0, bar);
    addLinks(*bar);
    addPanels(*bar);
    bar->addAction(newCopyAction(*plot));
    plot->setFocus(Qt::OtherFocusReason); // its keys work at once
}

} // namespace console
