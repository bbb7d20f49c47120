#include "tarnis/tools/interactivetool.h"

#include "tarnis/plots/plothooks_p.h"
#include "tarnis/plots/xygraphwidget.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QToolTip>
#include <QWheelEvent>

#include <utility>

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

void InteractiveTool::cancelDrags(XYGraphWidget& plot)
{
    QList<QPointer<InteractiveTool>> tools; // a slot of one may delete others
    for (InteractiveTool* const tool : toolsOf(plot))
        tools.append(tool);
    for (const QPointer<InteractiveTool>& tool : std::as_const(tools)) {
        if (!tool.isNull() && tool->plot() != nullptr)
            tool->handleHide();
    }
}

QList<QAction*> InteractiveTool::actions() const
{
    return {};
}

QList<QRect> InteractiveTool::overlayBoxes() const
{
    return cornerBoxes() + nameBoxes();
}

QList<QRect> InteractiveTool::cornerBoxes() const
{
    return {};
}

QList<QRect> InteractiveTool::cornerBoxesOf(const XYGraphWidget& plot)
{
    QList<QRect> boxes;
    for (const InteractiveTool* const tool : toolsOf(plot))
        boxes += tool->cornerBoxes();
    return boxes;
}

QList<QRect> InteractiveTool::nameBoxes() const
{
    return {};
}

QList<QRect> InteractiveTool::nameBoxesOf(const XYGraphWidget& plot)
{
    QList<QRect> boxes;
    for (const InteractiveTool* const tool : toolsOf(plot))
        boxes += tool->nameBoxes();
    return boxes;
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
    if (begun.testFlag(ReadOut)) {
        hooks.acquireReadOut();
        if (plot()->underMouse())
            QToolTip::hideText(); // the plot's own tip would stay beside the read-out until the next move
    }
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

bool InteractiveTool::handleEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return handlePress(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseMove:
        return handleMove(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        return handleRelease(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseButtonDblClick:
        return handleDoubleClick(static_cast<const QMouseEvent&>(*event));
    case QEvent::Wheel:
        return handleWheel(static_cast<QWheelEvent&>(*event));
    case QEvent::KeyPress:
        return plot()->hasFocus() && handleKey(static_cast<const QKeyEvent&>(*event));
    case QEvent::ShortcutOverride: // not consumed: an accepted one comes back as a key
        if (plot()->hasFocus() && claimsKey(static_cast<const QKeyEvent&>(*event)))
            event->accept();
        return false;
    case QEvent::Leave:
        handleLeave();
        return false;
    case QEvent::Hide:
        handleHide();
        return false;
    default:
        return false;
    }
}

bool InteractiveTool::handlePress(const QMouseEvent& /*event*/)
{
    return false;
}

bool InteractiveTool::handleMove(const QMouseEvent& /*event*/)
{
    return false;
}

bool InteractiveTool::handleRelease(const QMouseEvent& /*event*/)
{
    return false;
}

bool InteractiveTool::handleDoubleClick(const QMouseEvent& /*event*/)
{
    return false;
}

bool InteractiveTool::handleWheel(QWheelEvent& /*event*/)
{
    return false;
}

bool InteractiveTool::handleKey(const QKeyEvent& /*event*/)
{
    return false;
}

bool InteractiveTool::claimsKey(const QKeyEvent& /*event*/) const
{
    return false;
}

void InteractiveTool::handleLeave()
{
}

void InteractiveTool::handleHide()
{
}

bool InteractiveTool::eventFilter(QObject* object, QEvent* event)
{
    if (plot() == nullptr || object != plot())
        return false;
    const QPointer<QObject> receiver(object);
    const bool isHandled = handleEvent(event);
    if (!receiver.isNull())
        return isHandled;
    event->accept(); // a receiver of a signal has destroyed the plot, and perhaps this tool: nothing may follow
    return true;
}

} // namespace tarnis
