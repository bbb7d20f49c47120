#include "tarnis/tools/navigation/touchinput_p.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLineF>
#include <QPointer>
#include <QPointingDevice>
#include <QStyleHints>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>

namespace tarnis {

namespace {

constexpr double scaleFrom = 1.2; // change of distance from which two fingers zoom

const QEventPoint* pointWith(int id, const QList<QEventPoint>& points)
{
    const auto found =
        std::find_if(points.cbegin(), points.cend(), [id](const QEventPoint& point) { return point.id() == id; });
    return found != points.cend() ? &*found : nullptr;
}

double distanceOf(const QList<QEventPoint>& points)
{
    return std::max(QLineF(points.at(0).position(), points.at(1).position()).length(), 1.0);
}

QPointF middleOf(const QList<QEventPoint>& points)
{
    return (points.at(0).position() + points.at(1).position()) / 2.0;
}

} // namespace

TouchInput::TouchInput(QWidget& widget, TwoFingerGesture& gesture)
    : m_widget(widget)
    , m_gesture(gesture)
{
}

TouchInput::~TouchInput() = default;

bool TouchInput::handle(QTouchEvent& event)
{
    if (event.pointingDevice() == nullptr || event.pointingDevice()->type() != QInputDevice::DeviceType::TouchScreen)
        return false; // a touchpad moves the pointer
    if (event.type() == QEvent::TouchCancel) {
        cancel();
        return true;
    }
    Points down;
    for (const QEventPoint& point : event.points()) {
        if (point.state() != QEventPoint::Released)
            down.append(point);
    }
    event.accept();
    const quint64 timeMs = event.timestamp();
    switch (m_fingers) {
    case Fingers::None:
        return event.type() != QEvent::TouchBegin || begin(down, timeMs);
    case Fingers::Waiting:
        wait(down, timeMs);
        break;
    case Fingers::Mouse:
        moveMouse(event, down);
        break;
    case Fingers::Two:
        moveTwo(down);
        break;
    case Fingers::Over:
        m_fingers = down.isEmpty() ? Fingers::None : Fingers::Over;
        break;
    }
    return true;
}

bool TouchInput::begin(const Points& down, quint64 timeMs)
{
    if (down.isEmpty() || m_widget.childAt(down.constFirst().position().toPoint()) != nullptr)
        return false;
    if (down.size() > 1) {
        beginTwo(down, timeMs);
        return true;
    }
    m_fingers = Fingers::Waiting;
    m_id = down.constFirst().id();
    m_at = down.constFirst().position();
    m_global = down.constFirst().globalPosition();
    m_time = timeMs;
    m_hold.start(QGuiApplication::styleHints()->mousePressAndHoldInterval(), this);
    return true;
}

void TouchInput::wait(const Points& down, quint64 timeMs)
{
    if (down.size() == 1) {
        const QPointF moved = down.constFirst().position() - m_at;
        if (moved.manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
            return;
        m_hold.stop();
        m_fingers = Fingers::Mouse;
        const QPointer<TouchInput> self(this);
        send(QEvent::MouseMove, Qt::NoButton, Qt::NoButton); // where tools expect the pointer
        if (!self.isNull())
            send(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
        if (self.isNull())
            return;
        m_at = down.constFirst().position();
        m_global = down.constFirst().globalPosition();
        m_time = timeMs;
        send(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
        return;
    }
    m_hold.stop();
    if (down.isEmpty())
        tap(timeMs);
    else
        beginTwo(down, timeMs);
}

void TouchInput::tap(quint64 timeMs)
{
    const QStyleHints& hints = *QGuiApplication::styleHints();
    const bool isSecond = m_hasTap && timeMs - m_tapTime <= quint64(hints.mouseDoubleClickInterval())
        && QLineF(m_tapAt, m_at).length() <= hints.touchDoubleTapDistance();
    m_fingers = Fingers::None;
    m_hasTap = !isSecond;
    m_tapAt = m_at;
    m_tapTime = timeMs;
    m_time = timeMs;
    const QPointer<TouchInput> self(this);
    send(QEvent::MouseMove, Qt::NoButton, Qt::NoButton);
    if (!self.isNull())
        send(isSecond ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    if (!self.isNull())
        send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

/// A second finger is ignored: the plot's tool is in the middle of its drag.
void TouchInput::moveMouse(const QTouchEvent& event, const Points& down)
{
    const QEventPoint* const point = pointWith(m_id, event.points());
    m_time = event.timestamp();
    if (point != nullptr) {
        m_at = point->position();
        m_global = point->globalPosition();
    }
    if (point != nullptr && point->state() != QEventPoint::Released) {
        if (point->state() == QEventPoint::Updated)
            send(QEvent::MouseMove, Qt::NoButton, Qt::LeftButton);
        return;
    }
    m_fingers = down.isEmpty() ? Fingers::None : Fingers::Over;
    send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

void TouchInput::beginTwo(const Points& down, quint64 timeMs)
{
    m_fingers = Fingers::Two;
    m_hasTap = false;
    m_isScaling = false;
    m_distance = distanceOf(down);
    m_gesture.beginTwoFingers(middleOf(down), timeMs);
}

void TouchInput::moveTwo(const Points& down)
{
    if (down.size() < 2) {
        m_fingers = down.isEmpty() ? Fingers::None : Fingers::Over;
        m_gesture.endTwoFingers(false);
        return;
    }
    const double change = distanceOf(down) / m_distance;
    if (!m_isScaling && (change >= scaleFrom || change <= 1.0 / scaleFrom)) {
        m_isScaling = true;
        m_distance *= change > 1.0 ? scaleFrom : 1.0 / scaleFrom;
    }
    m_gesture.moveTwoFingers(middleOf(down), m_isScaling ? distanceOf(down) / m_distance : 1.0);
}

void TouchInput::cancel()
{
    m_hold.stop();
    const Fingers fingers = m_fingers;
    m_fingers = Fingers::None;
    if (fingers == Fingers::Two)
        m_gesture.endTwoFingers(true);
    else if (fingers == Fingers::Mouse)
        send(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
}

/// A finger that rests opens the menu.
void TouchInput::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_hold.timerId())
        return;
    m_hold.stop();
    if (m_fingers != Fingers::Waiting)
        return;
    m_fingers = Fingers::Over;
    const QPointer<TouchInput> self(this);
    send(QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton);
    if (!self.isNull())
        send(QEvent::MouseButtonRelease, Qt::RightButton, Qt::NoButton);
}

void TouchInput::send(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, m_at, m_widget.mapTo(m_widget.window(), m_at), m_global, button, buttons,
        QGuiApplication::keyboardModifiers(), Qt::MouseEventSynthesizedByApplication);
    event.setTimestamp(m_time);
    QCoreApplication::sendEvent(&m_widget, &event);
}

} // namespace tarnis
