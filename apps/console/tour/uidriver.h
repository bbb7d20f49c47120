// Drives windows as a user would, with keys and mouse, and takes pictures of them. What does not behave as expected
// is thrown as a TourFailure.
#pragma once

#include <QDir>
#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <stdexcept>

class QComboBox;
class QImage;
class QLineEdit;
class QMenu;

namespace console {

/// What went wrong, in words for the report.
class TourFailure : public std::runtime_error {
public:
    explicit TourFailure(const QString& what);
    QString text() const { return QString::fromUtf8(what()); }
};

/// GUI thread; every wait keeps the event loop going.
class UiDriver {
public:
    /// Pictures go to `directory`, which exists, and are called prefix-N-name.png. As soon as `isInterrupted` holds
    /// every wait throws.
    UiDriver(const QDir& directory, const QString& prefix, const bool& isInterrupted);

    /// Files of the pictures taken and of what was saved so far, in order.
    const QStringList& files() const { return m_files; }
    /// What the report says beside the files: why something was not there to be done.
    const QStringList& remarks() const { return m_remarks; }
    void remark(const QString& text) { m_remarks.append(text); }

    /// Waits for something to happen; throws after `limitMs`.
    void waitUntil(const QString& what, const std::function<bool()>& happened, int limitMs = 20000);
    /// Lets time pass, as a user who looks.
    void look(int ms);
    /// Throws if it is not.
    static void expect(bool isTrue, const QString& what)
    {
        if (!isTrue)
            fail(what);
    }
    [[noreturn]] static void fail(const QString& what);

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
    /// Press and release at one place, in the widget's coordinates.
    void clickAt(QWidget& widget, QPoint position, Qt::MouseButton button = Qt::LeftButton,
        Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Press, moves and release of the left button, in the widget's coordinates.
    void drag(QWidget& widget, QPoint from, QPoint to);
    /// Moves the pointer there and rests.
    void hover(QWidget& widget, QPoint position);
    void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Gives the keyboard to the edit and types at its end.
    void type(QWidget& edit, const QString& text);
    /// The whole text at once, as an input method does: a file dialog selects folders on the way while a path is typed.
    void enter(QWidget& edit, const QString& text);
    void clearText(QLineEdit& edit);
    /// The action of the window that this shortcut would trigger; it must be enabled.
    void shortcut(QWidget& window, const QKeySequence& keys);
    /// An action by object name, as from its menu; it must be enabled.
    void choose(QWidget& window, const char* actionName);
    /// The menu that a right click opens there.
    QMenu& openMenu(QWidget& widget, QPoint position);
    /// A click on the entry of this text in the menu of a right click; it must be enabled.
    void chooseInMenu(QWidget& widget, QPoint position, const QString& text);
    /// Walks with the arrow keys to the item of this text.
    void chooseItem(QComboBox& box, const QString& text);

    /// Closes a window by its own button.
    void close(QWidget& window);

    /// Runs `answer` on the next modal box that opens while `act` runs, even if `act` waits for the box to close.
    void answering(const std::function<void(QWidget&)>& answer, const std::function<void()>& act);

    /// Takes a picture. Throws if nothing is on it.
    void picture(QWidget& window, const QString& name);
    /// Takes one picture of several windows as they lie on the screen, the last one in front.
    void screen(const QList<QWidget*>& windows, const QString& name);
    /// Takes a picture of the window with the windows around it that belong to it, menus and tool tips included, where
    /// they stand on the screen.
    void scene(QWidget& window, const QString& name);
    /// A path for a file that the console is told to write; it stays beside the pictures.
    QString newFile(const QString& name);

protected:
    /// Runs `action` inside an event loop, as the events of a real user come: what closes may be deleted behind it.
    void act(const std::function<void()>& action);
    void checkInterruption();
    void keep(const QImage& image, const QString& name);
    QString nextName(const QString& name) const;

    QDir m_directory;
    QString m_prefix;
    QStringList m_files;
    QStringList m_remarks;
    const bool& m_isInterrupted;
};

} // namespace console
