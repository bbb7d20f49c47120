// Mouse, wheel and key events of the legend.
#include "tarnis/plots/multivectorgraphwidget.h"
#include "tarnis/plots/plotmapping.h"
#include "tarnis/tools/curves/plotlegend_p.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace tarnis {

namespace {

constexpr double clickSlack = 4.0; // in pixels; a longer move is a drag
constexpr int eighthsPerRow = 40; // three rows per notch

bool isSwitch(const QKeyEvent& key)
{
    return key.key() == Qt::Key_L && key.modifiers() == Qt::ShiftModifier;
}

} // namespace

bool PlotLegend::handleEvent(QEvent* event)
{
    if (curves() == nullptr)
        return false;
    if (event->type() == QEvent::FocusOut) {
        m_selected = -1;
        updateOverlay();
    }
    return InteractiveTool::handleEvent(event);
}

void PlotLegend::handleHide()
{
    m_isPressed = false;
}

/// Escape would close a dialog around the plot, Return press its button.
bool PlotLegend::claimsKey(const QKeyEvent& /*event*/) const
{
    return m_selected >= 0;
}

bool PlotLegend::handlePress(const QMouseEvent& event)
{
    m_isPressed = false; // the release went to another widget
    if (event.button() != Qt::LeftButton)
        return false;
    const QPointF at = PlotMapping::of(*curves()).toFrame(event.position());
    if (!QRectF(layout().rect).contains(at))
        return false;
    m_isPressed = true;
    m_isDragging = false;
    m_pressAt = at;
    m_placeAtPress = place();
    return true;
}

bool PlotLegend::handleMove(const QMouseEvent& event)
{
    if (!m_isPressed)
        return false;
    if (!event.buttons().testFlag(Qt::LeftButton)) {
        m_isPressed = false;
        return false;
    }
    const QPointF moved = PlotMapping::of(*curves()).toFrame(event.position()) - m_pressAt;
    m_isDragging = m_isDragging || moved.manhattanLength() > clickSlack;
    if (!m_isDragging)
        return true;
    const QSizeF room = layout().room;
    setPlace({ room.width() > 0.0 ? m_placeAtPress.x() + moved.x() / room.width() : place().x(),
        room.height() > 0.0 ? m_placeAtPress.y() + moved.y() / room.height() : place().y() });
    return true;
}

bool PlotLegend::handleRelease(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || !std::exchange(m_isPressed, false))
        return false;
    if (!m_isDragging)
        toggle(layout().entryAt(m_pressAt));
    return true;
}

/// The first click has already toggled the entry. The double click reverts that and shows only this curve.
bool PlotLegend::handleDoubleClick(const QMouseEvent& event)
{
    const Layout now = layout();
    const QPointF at = PlotMapping::of(*curves()).toFrame(event.position());
    if (event.button() != Qt::LeftButton || !QRectF(now.rect).contains(at))
        return false;
    const qsizetype entry = now.entryAt(at);
    toggle(entry);
    isolate(entry);
    return true;
}

bool PlotLegend::handleWheel(QWheelEvent& event)
{
    const Layout now = layout();
    if (!QRectF(now.rect).contains(PlotMapping::of(*curves()).toFrame(event.position())))
        return false;
    event.accept();
    m_wheelRest += event.angleDelta().y();
    const int rows = m_wheelRest / eighthsPerRow;
    m_wheelRest -= rows * eighthsPerRow;
    m_first = std::clamp<qsizetype>(now.first - rows, 0, std::max<qsizetype>(now.entries.size() - now.rows, 0));
    updateOverlay();
    return true;
}

void PlotLegend::select(qsizetype entry)
{
    const Layout now = layout();
    m_selected = std::clamp<qsizetype>(entry, 0, std::max<qsizetype>(now.entries.size() - 1, 0));
    m_first = std::clamp(now.first, m_selected - std::max<qsizetype>(now.rows - 1, 0), m_selected);
    updateOverlay();
}

bool PlotLegend::handleKey(const QKeyEvent& event)
{
    if (layout().rect.isEmpty())
        m_selected = -1; // nothing to show it in
    if (isSwitch(event)) {
        if (m_selected >= 0) {
            setVisible(false);
        } else {
            setVisible(true);
            receiveEventsFirst();
            if (!layout().rect.isEmpty())
                select(layout().first);
        }
        return true;
    }
    if (m_selected < 0 || (event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    const qsizetype page = std::max<qsizetype>(layout().rows - 1, 1);
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        select(m_selected + (event.key() == Qt::Key_Up ? -1 : 1));
        return true;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        select(m_selected + (event.key() == Qt::Key_PageUp ? -page : page));
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        select(event.key() == Qt::Key_Home ? 0 : count() - 1);
        return true;
    case Qt::Key_Space:
        toggle(m_selected);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        isolate(m_selected);
        return true;
    case Qt::Key_Escape:
        m_selected = -1;
        updateOverlay();
        return true;
    default:
        return false;
    }
}

} // namespace tarnis
