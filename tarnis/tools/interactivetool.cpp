#include "tarnis/tools/interactivetool.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/xygraphwidget.h"

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
