// A user without a plan: random wheels, pinches, fingers, drags, clicks, keys and actions on a plot.
#pragma once

#include "support/randomcases.h"

#include <tarnis/plots/xygraphwidget.h>
#include <tarnis/tools/interactivetool.h>

#include <QAction>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTest>
#include <QTouchEvent>
#include <QWheelEvent>

#include <iterator>

namespace tarnis::testing {

/// Each call of act() is one gesture.
class Monkey {
public:
    Monkey(XYGraphWidget& plot, Generator& random)
        : m_plot(plot)
        , m_random(random)
    {
    }

    void act()
    {
        switch (whole(m_random, 0, 8)) {
        case 8:
            fingers();
            break;
        case 6:
            pinch();
            break;
        case 7:
            side();
            break;
        case 0:
            wheel();
            break;
        case 1:
            drag();
            break;
        case 2:
            send(QEvent::MouseButtonDblClick, point(), Qt::LeftButton, Qt::LeftButton);
            break;
        case 3:
            key();
            break;
        case 4:
            send(QEvent::MouseMove, point(), Qt::NoButton, Qt::NoButton);
            break;
        default:
            action();
            break;
        }
    }

private:
    QPointF point()
    {
        return { uniform(m_random, -20.0, m_plot.width() + 20.0), uniform(m_random, -20.0, m_plot.height() + 20.0) };
    }
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, m_plot.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_plot, &event);
    }
    void wheel()
    {
        const QPointF at = point();
        const Qt::KeyboardModifiers modifiers[] = { Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier };
        QWheelEvent event(at, m_plot.mapToGlobal(at), {}, { 0, whole(m_random, -2400, 2400) }, Qt::NoButton,
            modifiers[whole(m_random, 0, 2)], Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_plot, &event);
    }
    void pinch()
    {
        const QPointF at = point();
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, at, at,
            m_plot.mapToGlobal(at), uniform(m_random, -1.2, 1.0), {}, 0);
        QCoreApplication::sendEvent(&m_plot, &event);
    }
    /// One or two fingers on a touch screen.
    void fingers()
    {
        static QPointingDevice* const screen = QTest::createTouchDevice();
        const int count = whole(m_random, 1, 2);
        const auto touch = [&](QEvent::Type type, QEventPoint::State state) {
            QList<QEventPoint> points;
            for (int id = 0; id < count; ++id) {
                const QPointF at = point();
                points.append(QEventPoint(id, state, at, m_plot.mapToGlobal(at)));
            }
            QTouchEvent event(type, screen, Qt::NoModifier, points);
            QCoreApplication::sendEvent(&m_plot, &event);
        };
        touch(QEvent::TouchBegin, QEventPoint::Pressed);
        for (int i = whole(m_random, 0, 4); i > 0; --i)
            touch(QEvent::TouchUpdate, QEventPoint::Updated);
        if (chance(m_random, 0.9)) // the end may go elsewhere
            touch(chance(m_random, 0.2) ? QEvent::TouchCancel : QEvent::TouchEnd, QEventPoint::Released);
    }
    void side()
    {
        const Qt::MouseButton button = chance(m_random, 0.5) ? Qt::BackButton : Qt::ForwardButton;
        const QPointF at = point();
        send(QEvent::MouseButtonPress, at, button, button);
        send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void drag()
    {
        const Qt::MouseButton button = chance(m_random, 0.5) ? Qt::LeftButton : Qt::MiddleButton;
        send(QEvent::MouseButtonPress, point(), button, button);
        for (int i = whole(m_random, 0, 4); i > 0; --i)
            send(QEvent::MouseMove, point(), Qt::NoButton, button);
        if (chance(m_random, 0.9)) // a release may go elsewhere
            send(QEvent::MouseButtonRelease, point(), button, Qt::NoButton);
    }
    void key()
    {
        const int keys[] = { Qt::Key_Left, Qt::Key_Up, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_PageDown, Qt::Key_PageUp,
            Qt::Key_Home, Qt::Key_L, Qt::Key_G, Qt::Key_C, Qt::Key_P, Qt::Key_M, Qt::Key_R, Qt::Key_Backspace,
            Qt::Key_Escape, Qt::Key_Delete, Qt::Key_Space, Qt::Key_Return, Qt::Key_E, Qt::Key_B, Qt::Key_F2 };
        const Qt::KeyboardModifiers modifiers[] = { Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
            Qt::AltModifier, Qt::ControlModifier };
        const Qt::KeyboardModifiers modifier = modifiers[whole(m_random, 0, 5)];
        QTest::keyClick(&m_plot, Qt::Key(keys[whole(m_random, 0, int(std::size(keys)) - 1)]), modifier);
    }
    void action()
    {
        QList<QAction*> actions;
        for (const InteractiveTool* const tool : InteractiveTool::toolsOf(m_plot))
            actions += tool->actions();
        actions.removeIf([](const QAction* each) { return each->menu() || each->text().contains(u"..."); });
        if (!actions.isEmpty())
            actions.at(whole(m_random, 0, int(actions.size()) - 1))->trigger();
    }

    XYGraphWidget& m_plot;
    Generator& m_random;
};

} // namespace tarnis::testing
