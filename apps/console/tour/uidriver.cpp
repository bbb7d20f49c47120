#include "tour/uidriver.h"

#include <tarnis/foundation/files.h>

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <exception>

namespace console {

namespace {

constexpr int pollMs = 10;
constexpr int unansweredMs = 30000; // longer than answering() needs

void sendMouse(QWidget& widget, QEvent::Type type, QPoint position, Qt::MouseButton button, Qt::MouseButtons buttons,
    Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QMouseEvent event(type, QPointF(position), QPointF(widget.mapToGlobal(position)), button, buttons, modifiers);
    QApplication::sendEvent(&widget, &event);
}

void clickOnce(QWidget& control, QPoint position, Qt::MouseButton button = Qt::LeftButton,
    Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    const QPointer<QWidget> guard(&control);
    sendMouse(control, QEvent::MouseButtonPress, position, button, button, modifiers);
    if (guard)
        sendMouse(control, QEvent::MouseButtonRelease, position, button, Qt::NoButton, modifiers);
}

/// The rectangle on the screen inside its frame.
QRect placeOf(const QWidget& window)
{
    return { window.mapToGlobal(QPoint(0, 0)), window.size() };
}

bool belongsTo(const QWidget& widget, const QWidget& window)
{
    // Not isAncestorOf(), which stops at window boundaries.
    for (const QWidget* above = widget.parentWidget(); above; above = above->parentWidget()) {
        if (above == &window)
            return true;
    }
    return false;
}

/// The window, its visible child windows, and then menus and tool tips.
QList<QWidget*> standingWith(QWidget& window)
{
    QList<QWidget*> shown { &window };
    QList<QWidget*> above;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget* const widget : all) {
        if (!widget->isVisible() || widget == &window)
            continue;
        if (qobject_cast<QMenu*>(widget) || widget->inherits("QTipLabel"))
            above.append(widget);
        else if (belongsTo(*widget, window))
            shown.append(widget);
    }
    return shown + above;
}

void strike(QWidget& widget, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    const QPointer<QWidget> guard(&widget);
    for (const QEvent::Type type : { QEvent::KeyPress, QEvent::KeyRelease }) {
        QKeyEvent event(type, key, modifiers, text);
        if (guard)
            QApplication::sendEvent(&widget, &event);
    }
}

/// The number of colours of a picture, up to a small limit: a window that did not paint has one.
int colourCount(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height() && colours.size() < 4; y += 2) {
        for (int x = 0; x < image.width(); x += 2)
            colours.insert(image.pixel(x, y));
    }
    return int(colours.size());
}

} // namespace

TourFailure::TourFailure(const QString& what)
    : std::runtime_error(what.toStdString())
{
}

UiDriver::UiDriver(const QDir& directory, const QString& prefix, const bool& isInterrupted)
    : m_directory(directory)
    , m_prefix(prefix)
    , m_isInterrupted(isInterrupted)
{
}

void UiDriver::waitUntil(const QString& what, const std::function<bool()>& happened, int limitMs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    QEventLoop loop;
    QTimer poll;
    poll.setInterval(pollMs);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (m_isInterrupted || happened() || elapsed.hasExpired(limitMs))
            loop.quit();
    });
    checkInterruption();
    if (happened())
        return;
    poll.start();
    loop.exec();
    checkInterruption();
    if (!happened())
        throw TourFailure(QStringLiteral("waited %1 s in vain until %2").arg(limitMs / 1000).arg(what));
}

void UiDriver::wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void UiDriver::act(const std::function<void()>& action)
{
    QString left; // the title of an unanswered box that the action has opened
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer watch;
    watch.setInterval(pollMs);
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
        auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (box && (m_isInterrupted || elapsed.hasExpired(unansweredMs))) {
            left = QStringLiteral("%1 \"%2\"").arg(QLatin1String(box->metaObject()->className()), box->windowTitle());
            box->reject();
        }
    });
    watch.start();
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        action();
        loop.quit();
    });
    loop.exec();
    checkInterruption();
    if (!left.isEmpty())
        throw TourFailure(QStringLiteral("%1 was not expected").arg(left));
}

void UiDriver::close(QWidget& window)
{
    act([guard = QPointer<QWidget>(&window)] { // a window that is already closed may be deleted in the meantime
        if (guard)
            guard->close();
    });
}

void UiDriver::fail(const QString& what)
{
    throw TourFailure(QStringLiteral("not as expected: %1").arg(what));
}

QWidget& UiDriver::dialogOf(QWidget& window)
{
    QWidget* dialog = nullptr;
    waitUntil(QStringLiteral("a dialog opens"), [&] {
        QWidget* modal = QApplication::activeModalWidget();
        dialog = modal != &window ? modal : nullptr;
        return dialog != nullptr && dialog->isVisible();
    });
    return *dialog;
}

void UiDriver::click(QWidget& control)
{
    expect(control.isVisible(), QStringLiteral("%1 is on show").arg(control.objectName()));
    expect(control.isEnabled(),
        QStringLiteral("%1 can be pressed (tool tip: %2)").arg(control.objectName(), control.toolTip()));
    waitUntil(QStringLiteral("%1 has its place in a new window").arg(control.objectName()),
        [&] { return !control.size().isEmpty(); });
    if (control.focusPolicy() & Qt::ClickFocus)
        control.setFocus(Qt::MouseFocusReason);
    // Check boxes react only on their indicator and text, at the left.
    const QPoint middle(qMin(control.width() / 2, 20), control.height() / 2);
    act([&] { clickOnce(control, middle); });
}

void UiDriver::doubleClick(QWidget& control, QPoint position)
{
    act([&] {
        clickOnce(control, position);
        const QPointer<QWidget> guard(&control);
        sendMouse(control, QEvent::MouseButtonDblClick, position, Qt::LeftButton, Qt::LeftButton);
        if (guard)
            sendMouse(control, QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton);
    });
}

void UiDriver::clickAt(QWidget& widget, QPoint position, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    act([&] { clickOnce(widget, position, button, modifiers); });
}

void UiDriver::hover(QWidget& widget, QPoint position)
{
    act([&] { sendMouse(widget, QEvent::MouseMove, position, Qt::NoButton, Qt::NoButton); });
}

void UiDriver::drag(QWidget& widget, QPoint from, QPoint to)
{
    constexpr int steps = 8;
    act([&] { sendMouse(widget, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton); });
    for (int i = 1; i <= steps; ++i) {
        const QPoint position = from + (to - from) * i / steps;
        act([&] { sendMouse(widget, QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton); });
    }
    act([&] { sendMouse(widget, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton); });
}

void UiDriver::key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    act([&] { strike(widget, key, modifiers, QString()); });
}

/// Waits for the window manager, if there is one: without the keyboard a file dialog replaces its file name. Once in
/// vain, since the display may give the keyboard to somebody else.
void UiDriver::focus(QWidget& control)
{
    constexpr int limitMs = 2000;
    control.activateWindow();
    control.setFocus(Qt::MouseFocusReason);
    QElapsedTimer elapsed;
    elapsed.start();
    const QPointer<QWidget> guard(&control);
    while (guard && !control.hasFocus() && m_hasKeyboard && !elapsed.hasExpired(limitMs))
        wait(pollMs);
    expect(!guard.isNull(), QStringLiteral("the control stays"));
    m_hasKeyboard = control.hasFocus();
}

void UiDriver::type(QWidget& edit, const QString& text)
{
    expect(edit.isVisible() && edit.isEnabled(), QStringLiteral("%1 takes text").arg(edit.objectName()));
    focus(edit);
    act([&] {
        for (const QChar c : text)
            strike(edit, 0, Qt::NoModifier, QString(c));
    });
}

void UiDriver::enter(QWidget& edit, const QString& text)
{
    expect(edit.isVisible() && edit.isEnabled(), QStringLiteral("%1 takes text").arg(edit.objectName()));
    focus(edit);
    act([&] { strike(edit, 0, Qt::NoModifier, text); });
}

void UiDriver::clearText(QLineEdit& edit)
{
    focus(edit);
    key(edit, Qt::Key_A, Qt::ControlModifier);
    key(edit, Qt::Key_Delete);
    expect(edit.text().isEmpty(), QStringLiteral("%1 is empty").arg(edit.objectName()));
}

void UiDriver::shortcut(QWidget& window, const QKeySequence& keys)
{
    QList<QAction*> found;
    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->shortcuts().contains(keys))
            found.append(action);
    }
    expect(found.size() == 1,
        QStringLiteral("exactly one action has the keys %1").arg(keys.toString(QKeySequence::PortableText)));
    choose(window, found.first()->objectName().toLatin1().constData());
}

void UiDriver::choose(QWidget& window, const char* actionName)
{
    auto& action = find<QAction>(window, actionName);
    expect(action.isEnabled(),
        QStringLiteral("%1 can be chosen (tool tip: %2)").arg(QLatin1String(actionName), action.toolTip()));
    act([&] { action.trigger(); });
}

QMenu& UiDriver::openMenu(QWidget& widget, QPoint position)
{
    clickAt(widget, position, Qt::RightButton);
    QMenu* menu = nullptr;
    waitUntil(QStringLiteral("a menu opens"), [&] {
        menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        return menu != nullptr && menu->isVisible();
    });
    return *menu;
}

void UiDriver::chooseInMenu(QWidget& widget, QPoint position, const QString& text)
{
    const QPointer<QMenu> menu(&openMenu(widget, position));
    const QList<QAction*> actions = menu->actions();
    const auto found =
        std::find_if(actions.begin(), actions.end(), [&text](const QAction* action) { return action->text() == text; });
    if (found == actions.end() || !(*found)->isVisible() || !(*found)->isEnabled()) {
        menu->close();
        throw TourFailure(QStringLiteral("%1 cannot be chosen in the menu").arg(text));
    }
    const QPoint middle = menu->actionGeometry(*found).center();
    constexpr int moves = 8; // a menu ignores a release if the pointer has hardly moved
    for (int i = moves; i > 0; --i) {
        act([&] { sendMouse(*menu, QEvent::MouseMove, middle - QPoint(i, 0), Qt::NoButton, Qt::NoButton); });
    }
    act([&] { clickOnce(*menu, middle); });
    if (menu)
        waitUntil(QStringLiteral("the menu closes"), [&] { return menu.isNull() || !menu->isVisible(); });
}

void UiDriver::chooseItem(QComboBox& box, const QString& text)
{
    focus(box);
    key(box, Qt::Key_Home);
    for (int i = 0; i < box.count() && box.currentText() != text; ++i)
        key(box, Qt::Key_Down);
    expect(box.currentText() == text, QStringLiteral("%1 can be chosen").arg(text));
}

void UiDriver::answering(const std::function<void(QWidget&)>& answer, const std::function<void()>& act)
{
    constexpr int limitMs = 10000;
    std::exception_ptr failure;
    QElapsedTimer sinceAnswer;
    QTimer poll;
    poll.setInterval(pollMs);
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget* const box = QApplication::activeModalWidget();
        if (!sinceAnswer.isValid() && box && box->isVisible() && !m_isInterrupted) {
            sinceAnswer.start();
            try { // exceptions must not pass through the event loop
                answer(*box);
            } catch (...) {
                failure = std::current_exception();
            }
        }
        const bool isOver = m_isInterrupted || failure || (sinceAnswer.isValid() && sinceAnswer.hasExpired(limitMs));
        if (isOver && box && box->isVisible()) {
            if (!failure)
                failure = std::make_exception_ptr(
                    TourFailure(QStringLiteral("the box %1 stays open").arg(box->windowTitle())));
            box->close(); // unblocks the code that waits for it
        }
    });
    poll.start();
    act();
    if (!failure && !sinceAnswer.isValid())
        waitUntil(QStringLiteral("a box opens"), [&] { return sinceAnswer.isValid(); });
    if (failure)
        std::rethrow_exception(failure);
}

void UiDriver::screenshot(QWidget& window, const QString& name)
{
    checkInterruption();
    wait(60); // lets posted events be painted
    saveScreenshot(window.grab().toImage(), name);
}

void UiDriver::screenshotOf(const QList<QWidget*>& windows, const QString& name)
{
    checkInterruption();
    wait(60);
    QRect area;
    for (const QWidget* const window : windows)
        area |= window->frameGeometry();
    expect(!area.isEmpty(), QStringLiteral("there are windows on the screen"));
    if (QGuiApplication::platformName() == u"xcb") { // with the frames of the window manager
        wait(500); // which draws them asynchronously
        saveScreenshot(
            windows.constFirst()->screen()->grabWindow(0, area.x(), area.y(), area.width(), area.height()).toImage(),
            name);
        return;
    }
    QImage image(area.size(), QImage::Format_RGB32);
    image.fill(QColor(0x50, 0x58, 0x60));
    QPainter painter(&image);
    for (QWidget* const window : windows)
        painter.drawPixmap(window->geometry().topLeft() - area.topLeft(), window->grab());
    painter.end();
    saveScreenshot(image, name);
}

void UiDriver::screenshotWithPopups(QWidget& window, const QString& name)
{
    checkInterruption();
    wait(60);
    const QList<QWidget*> shown = standingWith(window);
    QRect bounds;
    for (const QWidget* widget : shown)
        bounds |= placeOf(*widget);
    QImage image(bounds.size(), QImage::Format_RGB32);
    image.fill(QColor(0x505860)); // the desktop
    QPainter painter(&image);
    for (QWidget* const widget : shown)
        painter.drawPixmap(placeOf(*widget).topLeft() - bounds.topLeft(), widget->grab());
    painter.end();
    saveScreenshot(image, name);
}

QString UiDriver::newFile(const QString& name)
{
    const QString file = nextName(name);
    m_files.append(file);
    return m_directory.absoluteFilePath(file);
}

QString UiDriver::nextName(const QString& name) const
{
    return QStringLiteral("%1-%2-%3").arg(m_prefix).arg(m_files.size() + 1).arg(name);
}

void UiDriver::saveScreenshot(const QImage& image, const QString& name)
{
    const QString file = nextName(name + QStringLiteral(".png"));
    expect(colourCount(image) > 2, QStringLiteral("there is something on %1").arg(file));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    expect(
        buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "png"), QStringLiteral("%1 can be encoded").arg(file));
    const QString error = tarnis::writeFile(m_directory.filePath(file), bytes);
    if (!error.isEmpty())
        throw TourFailure(QStringLiteral("%1 cannot be written: %2").arg(m_directory.filePath(file), error));
    m_files.append(file);
}

void UiDriver::checkInterruption()
{
    expect(!m_isInterrupted, QStringLiteral("the tour is not interrupted"));
}

} // namespace console
