// The gestures: wheel, pinch, middle drag, double click and keys.
#include "tarnis/tools/navigation/plotnavigator_p.h"

#include "tarnis/plots/plotmapping.h"
#include "tarnis/plots/plottool_p.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

bool isInScrollArea(const QWidget& widget)
{
    for (const QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea*>(parent) != nullptr)
            return true;
    }
    return false;
}

/// Steps of a wheel or a touchpad. Alt, and Shift on some systems, turn vertical steps into horizontal ones.
int stepsOf(const QWheelEvent& event)
{
    constexpr int eighthsPerPixel = 12; // of a device that counts pixels only: ten are a notch
    const QPoint steps = event.angleDelta().isNull() ? event.pixelDelta() * eighthsPerPixel : event.angleDelta();
    return steps.y() != 0 ? steps.y() : steps.x();
}

bool isHistoryKey(const QKeyEvent& event)
{
    const bool isArrow = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    return event.key() == Qt::Key_Backspace || (isArrow && event.modifiers() == Qt::AltModifier);
}

/// A key that a control on the plot, such as the strip of the colours, has left to the plot; not one for an editor.
bool isLeftByControl(const QWidget& plot)
{
    const QWidget* const focused = plot.window()->focusWidget();
    return focused != nullptr && plot.isAncestorOf(focused) && !focused->testAttribute(Qt::WA_InputMethodEnabled);
}

} // namespace

bool PlotNavigator::handleEvent(QEvent* event)
{
    if (event->type() == QEvent::KeyPress && isHistoryKey(static_cast<const QKeyEvent&>(*event))
        && isLeftByControl(*plot()))
        return handleKey(static_cast<const QKeyEvent&>(*event));
    if (event->type() == QEvent::NativeGesture)
        return handlePinch(static_cast<const QNativeGestureEvent&>(*event));
    const bool isTouch = event->type() == QEvent::TouchBegin || event->type() == QEvent::TouchUpdate
        || event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel;
    if (isTouch)
        return m_data->touch.handle(static_cast<QTouchEvent&>(*event));
    return InteractiveTool::handleEvent(event);
}

void PlotNavigator::handleHide()
{
    endPan(true);
}

bool PlotNavigator::claimsKey(const QKeyEvent& event) const
{
    return event.key() == Qt::Key_Escape && m_data->isPanning;
}

bool PlotNavigator::handleWheel(QWheelEvent& event)
{
    const int steps = stepsOf(event);
    const PlotMapping mapping = PlotMapping::of(*plot());
    const PlotZone zone = zoneAt(*plot(), mapping, event.position());
    const bool isCtrl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool isShift = event.modifiers().testFlag(Qt::ShiftModifier);
    if (zone == PlotZone::Outside || (isInScrollArea(*plot()) && !isCtrl && !plot()->hasFocus()))
        return false;
    event.accept();
    if (steps == 0 || m_data->isPanning)
        return true;
    if (!takeFocus() || !noteChange())
        return true;
    placeWheel(mapping, event);
    const bool isMap = m_data->view.map() != nullptr;
    if (zone == PlotZone::ColourBar)
        zoomLevels(!isShift, steps);
    if (zone == PlotZone::AxisX || (zone == PlotZone::Plot && (isCtrl || !isShift)))
        zoomAxis(Qt::Horizontal, m_data->wheelShareX, steps);
    if (zone == PlotZone::AxisY || (zone == PlotZone::Plot && (isCtrl || isShift || isMap)))
        zoomAxis(Qt::Vertical, m_data->wheelShareY, steps);
    m_data->wheelX = m_data->view.range(Qt::Horizontal);
    m_data->wheelY = m_data->view.range(Qt::Vertical);
    const int modifiers = (isCtrl ? 1 : 0) + (isShift ? 2 : 0);
    commit(WheelKind, static_cast<int>(zone) * 4 + modifiers, event.timestamp());
    return true;
}

/// The next key is for the plot that the user zooms, unless the user types in another control of the window. In a
/// scroll area the focus decides what the wheel does, so there a click takes it. Returns false if a slot has deleted
/// the tool.
bool PlotNavigator::takeFocus()
{
    const QWidget* const focused = plot()->window()->focusWidget();
    const bool isTyping = focused != nullptr && focused->testAttribute(Qt::WA_InputMethodEnabled);
    if (plot()->hasFocus() || isTyping || isInScrollArea(*plot()))
        return true;
    const QPointer<PlotNavigator> self(this);
    plot()->setFocus(Qt::MouseFocusReason);
    return !self.isNull() && plot() != nullptr;
}

/// Sets the anchor of the zoom. While the pointer rests it is kept, because the plot rectangle moves slightly with the
/// width of the labels: the same notches back lead to the same range, also later, unless something else changed it.
void PlotNavigator::placeWheel(const PlotMapping& mapping, const QWheelEvent& event)
{
    const QPointF at = mapping.toFrame(event.position());
    const QRectF rect = mapping.frameRect();
    const bool isNew = event.position() != m_data->wheelAt;
    const bool isLate = event.timestamp() > m_data->wheelTime + ViewHistory::sameGestureMs;
    m_data->wheelAt = event.position();
    m_data->wheelTime = event.timestamp();
    if (isNew || (isLate && m_data->view.range(Qt::Horizontal) != m_data->wheelX))
        m_data->wheelShareX = (at.x() - rect.left()) / rect.width();
    if (isNew || (isLate && m_data->view.range(Qt::Vertical) != m_data->wheelY))
        m_data->wheelShareY = (mapping.frameRect().bottom() - at.y()) / rect.height();
}

bool PlotNavigator::handlePinch(const QNativeGestureEvent& event)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (event.gestureType() != Qt::ZoomNativeGesture || !mapping.isValid() || !(event.value() > -1.0))
        return false;
    if (!noteChange())
        return true;
    // The value is the change of scale: 0.1 for a tenth larger.
    const double eighths = std::log1p(event.value()) / std::log(1.2) * eighthsPerNotch;
    if (std::isfinite(eighths)) {
        const QPointF at = mapping.toFrame(event.position());
        const QRect rect = mapping.frameRect();
        const int steps =
            static_cast<int>(std::lround(std::clamp(eighths, -10.0 * eighthsPerNotch, 10.0 * eighthsPerNotch)));
        zoomAxis(Qt::Horizontal, (at.x() - rect.left()) / rect.width(), steps);
        zoomAxis(Qt::Vertical, (rect.bottom() - at.y()) / rect.height(), steps);
    }
    commit(PinchKind, 0, event.timestamp());
    return true;
}

void PlotNavigator::zoomAxis(Qt::Orientation axis, double share, int eighths)
{
    ViewControl& view = m_data->view;
    const AxisRange shown = view.range(axis);
    const ZoomAnchor anchor = view.anchor(axis, share);
    ZoomSteps& steps = axis == Qt::Horizontal ? m_data->stepsX : m_data->stepsY;
    if (!steps.continues(shown, view.scale(axis), anchor))
        steps = ZoomSteps(shown, view.scale(axis), anchor);
    const AxisRange zoomed = steps.add(eighths, view.limits(axis));
    if (zoomed != shown)
        view.show(axis, zoomed);
}

void PlotNavigator::zoomLevels(bool upper, int eighths)
{
    ViewControl& view = m_data->view;
    const ZoomAnchor anchor { upper ? 0.0 : 1.0, upper };
    if (!m_data->stepsLevels.continues(view.levels(), view.levelScale(), anchor))
        m_data->stepsLevels = ZoomSteps(view.levels(), view.levelScale(), anchor);
    const AxisRange shown = view.levels();
    const AxisRange zoomed = m_data->stepsLevels.add(eighths, view.levelLimits());
    if (zoomed != shown)
        view.showLevels(zoomed);
}

bool PlotNavigator::handlePress(const QMouseEvent& event)
{
    if (!noteChange())
        return true;
    ++m_data->serial; // changes by a tool of the plot up to the next press are one entry
    switch (event.button()) {
    case Qt::MiddleButton:
        beginPan(event.position(), event.timestamp());
        return false; // the plot closes an open editor
    case Qt::BackButton:
        goBack();
        return true;
    case Qt::ForwardButton:
        goForward();
        return true;
    case Qt::LeftButton: {
        const QPoint point = event.position().toPoint();
        const bool onX = isHeld(Qt::Horizontal) && m_data->markX.contains(point);
        const bool onY = isHeld(Qt::Vertical) && m_data->markY.contains(point);
        if (!onX && !onY)
            return false;
        fit(onX ? Qt::Horizontal : Qt::Vertical, false);
        return true;
    }
    default:
        return false;
    }
}

void PlotNavigator::beginPan(const QPointF& position, quint64 timeMs)
{
    const PlotMapping mapping = PlotMapping::of(*plot());
    m_data->panZone = zoneAt(*plot(), mapping, position);
    if (m_data->panZone == PlotZone::Outside || m_data->panZone == PlotZone::ColourBar)
        return;
    m_data->isPanning = true;
    m_data->panStart = mapping.toFrame(position);
    m_data->panView = m_data->view.state();
    m_data->panTime = timeMs;
    showCursor(Qt::ClosedHandCursor);
}

bool PlotNavigator::handleMove(const QMouseEvent& event)
{
    if (!m_data->isPanning)
        return false;
    if (!event.buttons().testFlag(Qt::MiddleButton)) { // the release went to another widget
        endPan(false);
        return false;
    }
    const PlotMapping mapping = PlotMapping::of(*plot());
    if (!mapping.isValid())
        return true;
    // Computed from the view at the press, so that moving back restores it exactly.
    const QPointF moved = mapping.toFrame(event.position()) - m_data->panStart;
    ViewControl& view = m_data->view;
    const auto pan = [&view](Qt::Orientation axis, AxisRange start, double share) {
        const AxisRange panned = pannedView(start, view.scale(axis), share, view.limits(axis));
        if (panned != view.range(axis))
            view.show(axis, panned);
    };
    if (m_data->panZone != PlotZone::AxisY)
        pan(Qt::Horizontal, m_data->panView.x, -moved.x() / mapping.frameRect().width());
    if (m_data->panZone != PlotZone::AxisX)
        pan(Qt::Vertical, m_data->panView.y, moved.y() / mapping.frameRect().height());
    return true;
}

bool PlotNavigator::handleRelease(const QMouseEvent& event)
{
    if (event.button() != Qt::MiddleButton || !m_data->isPanning)
        return event.button() == Qt::BackButton || event.button() == Qt::ForwardButton;
    endPan(false);
    return true;
}

void PlotNavigator::endPan(bool cancel)
{
    if (!std::exchange(m_data->isPanning, false))
        return;
    restoreCursor();
    if (cancel)
        m_data->view.apply(m_data->panView);
    commit(PanKind, ++m_data->serial, m_data->panTime);
}

bool PlotNavigator::handleDoubleClick(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || PlotAccess::mode(*plot()) != NoTool)
        return false; // the mouse tool handles it as a press
    const PlotZone zone = zoneAt(*plot(), PlotMapping::of(*plot()), event.position());
    if (zone == PlotZone::Outside || isOnEndLabel(*plot(), event.position().toPoint()))
        return false;
    PlotAccess::dropEditor(*plot());
    if (zone == PlotZone::ColourBar) {
        if (!noteChange())
            return true;
        m_data->view.fitLevels();
        commit(OnceKind, ++m_data->serial, event.timestamp());
    } else {
        fit(zone == PlotZone::AxisY ? Qt::Vertical : Qt::Horizontal, zone == PlotZone::Plot);
    }
    return true;
}

bool PlotNavigator::handleKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_Escape && m_data->isPanning) {
        endPan(true);
        return true;
    }
    if (modifiers == Qt::AltModifier && (event.key() == Qt::Key_Left || event.key() == Qt::Key_Right)) {
        event.key() == Qt::Key_Left ? goBack() : goForward();
        return true;
    }
    const bool isPlus = event.key() == Qt::Key_Plus && modifiers == Qt::ShiftModifier; // on many keyboards
    if (modifiers != Qt::NoModifier && !isPlus)
        return false;
    switch (event.key()) {
    case Qt::Key_Backspace:
        goBack();
        return true;
    case Qt::Key_G:
        switchGrid();
        return true;
    case Qt::Key_L:
        switchLog();
        return true;
    default:
        if (!noteChange())
            return true;
        if (!m_data->view.takeKey(event.key()))
            return false;
        commit(KeyKind, event.key(), event.timestamp());
        return true;
    }
}

} // namespace tarnis
