// Fingers on a touch screen: one acts as the mouse, two are a gesture.
#pragma once

#include <QBasicTimer>
#include <QMouseEvent>
#include <QObject>
#include <QPointF>
#include <QTouchEvent>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace tarnis {

/// Receives the gestures of two fingers, in coordinates of the widget.
class TwoFingerGesture {
public:
    TwoFingerGesture() = default;
    TwoFingerGesture(const TwoFingerGesture&) = delete;
    TwoFingerGesture& operator=(const TwoFingerGesture&) = delete;
    virtual ~TwoFingerGesture() = default;

    /// Two fingers touch the widget, `middle` between them.
    virtual void beginTwoFingers(const QPointF& middle, quint64 timeMs) = 0;
    /// `scale` is 1 until the distance has changed by a fifth, since a hand that moves two fingers also changes it
    /// slightly. It continues from 1.
    virtual void moveTwoFingers(const QPointF& middle, double scale) = 0;
    virtual void endTwoFingers(bool cancel) = 0;
};

/// Turns the touch events of a widget into mouse events and gestures. Without it Qt would send mouse events for the
/// first finger, which cannot be taken back when the second one follows.
///
/// The mouse is pressed when the finger moves or is lifted. A finger that rests is the right button, and a second tap
/// at the same place a double click. A finger on a child widget is left to Qt.
class TouchInput : public QObject {
public:
    TouchInput(QWidget& widget, TwoFingerGesture& gesture);
    ~TouchInput() override;

    /// True if the event has been handled. A receiver of a mouse event may destroy this object.
    bool handle(QTouchEvent& event);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    enum class Fingers {
        None,
        Waiting, // one, which has not moved
        Mouse, // one, as the left button
        Two,
        Over // until all are lifted
    };
    using Points = QList<QEventPoint>; // on the screen

    bool begin(const Points& down, quint64 timeMs);
    void wait(const Points& down, quint64 timeMs);
    void moveMouse(const QTouchEvent& event, const Points& down);
    void beginTwo(const Points& down, quint64 timeMs);
    void moveTwo(const Points& down);
    void cancel();
    void tap(quint64 timeMs);
    void send(QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons);

    QWidget& m_widget;
    TwoFingerGesture& m_gesture;
    QBasicTimer m_hold;
    Fingers m_fingers = Fingers::None;
    int m_id = 0; // of the finger that acts as the mouse
    QPointF m_at; // of the mouse
    QPointF m_global;
    quint64 m_time = 0;
    QPointF m_tapAt; // the last one
    quint64 m_tapTime = 0;
    bool m_hasTap = false;
    double m_distance = 1.0; // of two fingers, at scale 1
    bool m_isScaling = false;
};

} // namespace tarnis
