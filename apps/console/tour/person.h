// Drives windows as a person would, with keys and mouse, and takes pictures of them. What does not behave as expected
// is thrown as a TourFailure.
#pragma once

#include <QDir>
#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <stdexcept>

class QAction;
class QImage;
class QLineEdit;

namespace console {

/// What went wrong, in words for the report.
class TourFailure : public std::runtime_error {
public:
    explicit TourFailure(const QString& what);
    QString text() const { return QString::fromUtf8(what()); }
};

/// GUI thread; every wait keeps the event loop going.
class Person {
public:
    /// Pictures go to `directory`, which exists, and are called prefix-N-name.png. As soon as `isInterrupted` holds
    /// every wait throws.
    Person(const QDir& directory, const QString& prefix, const bool& isInterrupted);

    /// Files of the pictures taken so far.
    const QStringList& pictures() const { return m_pictures; }

    /// Waits for something to happen; throws after `limitMs`.
    void waitUntil(const QString& what, const std::function<bool()>& happened, int limitMs = 20000);
    /// Lets time pass, as somebody who looks.
    void look(int ms);
    void expect(bool isTrue, const QString& what);

    /// The widget or action of this object name inside `window`.
    template <typename Object> Object& find(QWidget& window, const char* name)
    {
        auto* widget = window.findChild<Object*>(QString::fromLatin1(name));
        if (!widget)
            throw TourFailure(QStringLiteral("%1 has no %2").arg(window.objectName(), QLatin1String(name)));
        return *widget;
    }
    /// The dialog that stands in front of `window` now, as soon as it is there.
    QWidget& dialogOf(QWidget& window);

    /// A click in the middle. The control must be visible and enabled.
    void click(QWidget& control);
    void doubleClick(QWidget& control, QPoint position);
    /// Press, moves and release of the left button, in the widget's coordinates.
    void drag(QWidget& widget, QPoint from, QPoint to);
    void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Gives the keyboard to the edit and types at its end.
    void type(QWidget& edit, const QString& text);
    void clearText(QLineEdit& edit);
    /// The action of the window that this shortcut would trigger; it must be enabled.
    void shortcut(QWidget& window, const QKeySequence& keys);
    /// An action by object name, as from its menu; it must be enabled.
    void choose(QWidget& window, const char* actionName);

    /// Closes a window by its own button.
    void close(QWidget& window);

    /// Runs `answer` on the next modal box that opens while `act` runs, even if `act` waits for the box to close.
    void answering(const std::function<void(QWidget&)>& answer, const std::function<void()>& act);

    /// Takes a picture. Throws if nothing is on it.
    void picture(QWidget& window, const QString& name);
    /// Takes one picture of several windows as they lie on the screen, the last one in front.
    void screen(const QList<QWidget*>& windows, const QString& name);

protected:
    /// Runs `deed` inside an event loop, as the events of a real person come: what closes may be deleted behind it.
    void act(const std::function<void()>& deed);
    void save(const QImage& image, const QString& name);

    QDir m_directory;
    QString m_prefix;
    QStringList m_pictures;
    const bool& m_isInterrupted;
};

} // namespace console
