// Operates windows with keys and mouse like a user, and takes screenshots. Unexpected behaviour throws a TourFailure.
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

/// A failure, with a text for the report.
class TourFailure : public std::runtime_error {
public:
    explicit TourFailure(const QString& what);
    QString text() const { return QString::fromUtf8(what()); }
};

/// GUI thread; every wait runs the event loop.
class UiDriver {
public:
    /// Screenshots are written to `directory`, which must exist, as prefix-N-name.png. Every wait throws as soon as
    /// `isInterrupted` returns true.
    UiDriver(const QDir& directory, const QString& prefix, const bool& isInterrupted);

    /// Screenshots and saved files so far, in order.
    const QStringList& files() const { return m_files; }
    /// Remarks for the report: why something was skipped.
    const QStringList& remarks() const { return m_remarks; }
    void remark(const QString& text) { m_remarks.append(text); }

    /// Waits for a condition; throws after `limitMs`.
    void waitUntil(const QString& what, const std::function<bool()>& happened, int limitMs = 20000);
    /// Waits while events are processed, like a user who looks.
    void wait(int ms);
    /// Throws if the condition is false.
    static void expect(bool isTrue, const QString& what)
    {
        if (!isTrue)
            fail(what);
    }
    [[noreturn]] static void fail(const QString& what);

    /// The widget or action with this object name inside `window`.
    template <typename Object> Object& find(QWidget& window, const char* name)
    {
        auto* widget = window.findChild<Object*>(QString::fromLatin1(name));
        if (!widget)
            throw TourFailure(QStringLiteral("%1 has no %2").arg(window.objectName(), QLatin1String(name)));
        return *widget;
    }
    /// Waits for the dialog in front of `window`.
    QWidget& dialogOf(QWidget& window);

    /// A click in the middle. The control must be visible and enabled.
    void click(QWidget& control);
    void doubleClick(QWidget& control, QPoint position);
    /// Press and release at one position, in the widget's coordinates.
    void clickAt(QWidget& widget, QPoint position, Qt::MouseButton button = Qt::LeftButton,
        Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Press, moves and release of the left button, in the widget's coordinates.
    void drag(QWidget& widget, QPoint from, QPoint to);
    /// Moves the pointer there and rests.
    void hover(QWidget& widget, QPoint position);
    void key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void focus(QWidget& control);
    /// Gives the focus to the edit and types at its end.
    void type(QWidget& edit, const QString& text);
    /// Enters the complete text at once, like an input method: a file dialog selects folders while a path is typed.
    void enter(QWidget& edit, const QString& text);
    void clearText(QLineEdit& edit);
    /// Triggers the action of the window with this shortcut; it must be enabled.
    void shortcut(QWidget& window, const QKeySequence& keys);
    /// Triggers an action by object name, as from its menu; it must be enabled.
    void choose(QWidget& window, const char* actionName);
    /// The menu that a right click opens there.
    QMenu& openMenu(QWidget& widget, QPoint position);
    /// Clicks the entry with this text in the context menu; it must be enabled.
    void chooseInMenu(QWidget& widget, QPoint position, const QString& text);
    /// Selects the item with this text using the arrow keys.
    void chooseItem(QComboBox& box, const QString& text);

    /// Closes a window by its own button.
    void close(QWidget& window);

    /// Runs `answer` on the next modal box that opens while `act` runs, even if `act` waits for the box to close.
    void answering(const std::function<void(QWidget&)>& answer, const std::function<void()>& act);

    /// Takes a screenshot. Throws if it is empty.
    void screenshot(QWidget& window, const QString& name);
    /// Takes one screenshot of several windows at their positions, the last one in front.
    void screenshotOf(const QList<QWidget*>& windows, const QString& name);
    /// Takes a screenshot of the window with its child windows, menus and tool tips at their positions.
    void screenshotWithPopups(QWidget& window, const QString& name);
    /// A path beside the screenshots for a file that the console writes.
    QString newFile(const QString& name);

protected:
    /// Runs `action` inside an event loop, like real user events: closed windows may be deleted afterwards.
    void act(const std::function<void()>& action);
    void checkInterruption();
    void saveScreenshot(const QImage& image, const QString& name);
    QString nextName(const QString& name) const;

    QDir m_directory;
    QString m_prefix;
    QStringList m_files;
    QStringList m_remarks;
    const bool& m_isInterrupted;
    bool m_hasKeyboard = true; ///< unless the last control that wanted it waited in vain
};

} // namespace console
