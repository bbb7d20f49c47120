#include "tarnis/tools/interactivetool.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>

namespace tarnis {

InteractiveTool::InteractiveTool(XYGraphWidget* plot, Needs needs)
    : QObject(plot)
    , PlotObserver(plot)
{
    if (plot == nullptr)
        return;
    plot->installEventFilter(this);
    setNeeds(needs);
}

InteractiveTool::~InteractiveTool()
{
    if (plot() == nullptr)
        return; // a plot that is being destroyed has nothing to restore
    restoreCursor();
    setNeeds(Nothing);
}

QList<InteractiveTool*> InteractiveTool::toolsOf(const XYGraphWidget& plot)
{
    return plot.findChildren<InteractiveTool*>(QString(), Qt::FindDirectChildrenOnly);
}

QList<QAction*> InteractiveTool::actions() const
{
    return {};
}

QString InteractiveTool::stateName() const
{
    return QString::fromLatin1(metaObject()->className()).section(QLatin1String("::"), -1);
}

QJsonObject InteractiveTool::saveState() const
{
    return {};
}

void InteractiveTool::restoreState(const QJsonObject& /*state*/)
{
}

bool InteractiveTool::event(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) { // a widget passes it on to child widgets only
        const auto own = findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
        for (QAction* const action : own)
            QCoreApplication::sendEvent(action, event);
    }
    return QObject::event(event);
}

void InteractiveTool::receiveEventsFirst()
{
    if (plot() != nullptr)
        plot()->installEventFilter(this); // moves an installed filter to the front
}

void InteractiveTool::setNeeds(Needs needs)
{
    if (plot() == nullptr)
        return;
    PlotHooks& hooks = PlotHooks::of(*plot());
    const Needs begun = needs & ~m_needs;
    const Needs ended = m_needs & ~needs;
    m_needs = needs;
    if (begun.testFlag(MouseMoves))
        hooks.acquireTracking();
    if (begun.testFlag(KeyboardFocus))
        hooks.acquireFocus();
    if (begun.testFlag(ReadOut))
        hooks.acquireReadOut();
    if (ended.testFlag(MouseMoves))
        hooks.releaseTracking();
    if (ended.testFlag(KeyboardFocus))
        hooks.releaseFocus();
    if (ended.testFlag(ReadOut))
        hooks.releaseReadOut();
}

void InteractiveTool::showCursor(const QCursor& cursor)
{
    if (plot() != nullptr)
        PlotHooks::of(*plot()).showCursor(this, cursor);
}

void InteractiveTool::restoreCursor()
{
    if (plot() != nullptr)
        PlotHooks::of(*plot()).restoreCursor(this);
}

bool InteractiveTool::handleEvent(QEvent* /*event*/)
{
    return false;
}

bool InteractiveTool::eventFilter(QObject* object, QEvent* event)
{
    return plot() != nullptr && object == plot() && handleEvent(event);
}

} // namespace tarnis
