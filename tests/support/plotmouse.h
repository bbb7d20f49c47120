// Mouse input on a plot: points are given in values, events are sent to the widget like those of the window system.
#pragma once

#include <QAction>
#include <QCursor>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QWidget>

namespace tarnis::testing {

/// Presses, moves and releases; the position of a move is that of the next release, as with a real mouse.
class PlotMouse {
public:
    explicit PlotMouse(QWidget& plot)
        : m_plot(plot)
    {
    }

    void press(const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(&m_plot, button, {}, at);
    }
    void move(const QPoint& to) { QTest::mouseMove(&m_plot, to); }
    void release(const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(&m_plot, button, {}, at);
    }
    void click(const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        press(at, button);
        release(at, button);
    }
    void drag(const QPoint& from, const QPoint& to)
    {
        press(from);
        move((from + to) / 2);
        move(to);
        release(to);
    }

    /// Opens the context menu, picks the entry and closes the menu. False if there is no such entry.
    bool pick(const QString& entry, const QPoint& at = QPoint(1, 1))
    {
        press(at, Qt::RightButton);
        release(at, Qt::RightButton);
        // An entry may open a box, during which the menu is deleted.
        const QPointer<QMenu> menu = m_plot.findChild<QMenu*>();
        if (menu.isNull())
            return false;
        bool found = false;
        for (QAction* action : menu->actions()) {
            if (action->text() == entry && action->isVisible() && action->isEnabled()) {
                found = true;
                clickIn(*menu, menu->actionGeometry(action).center());
                break;
            }
        }
        if (menu) {
            menu->close();
            QCoreApplication::sendPostedEvents(menu, QEvent::DeferredDelete);
        }
        return found;
    }

private:
    /// Shakes the mouse first: Qt 6.8 closes a menu at a click where it opened, unless the mouse has moved
    /// seven times. The first menu of a program misses some of the moves.
    static void clickIn(QMenu& menu, const QPoint& at)
    {
        for (int i = 0; i < 20; ++i)
            QTest::mouseMove(&menu, at + QPoint(i % 2, 0));
        QTest::mouseClick(&menu, Qt::LeftButton, {}, at);
    }

    QWidget& m_plot;
};

} // namespace tarnis::testing
