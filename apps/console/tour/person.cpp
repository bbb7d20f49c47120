#include "tour/person.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <exception>

namespace console {

namespace {

constexpr int pollMs = 10;

void sendMouse(QWidget& widget, QEvent::Type type, QPoint position, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, QPointF(position), QPointF(widget.mapToGlobal(position)), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void clickOnce(QWidget& control, QPoint position)
{
    const QPointer<QWidget> guard(&control);
    sendMouse(control, QEvent::MouseButtonPress, position, Qt::LeftButton, Qt::LeftButton);
    if (guard)
        sendMouse(control, QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton);
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

/// How many colours a picture has, up to a few: a window that did not paint has one.
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

Person::Person(const QDir& directory, const QString& prefix, const bool& isInterrupted)
    : m_directory(directory)
    , m_prefix(prefix)
    , m_isInterrupted(isInterrupted)
{
}

void Person::waitUntil(const QString& what, const std::function<bool()>& happened, int limitMs)
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
    expect(!m_isInterrupted, QStringLiteral("nobody interrupts the tour"));
    if (happened())
        return;
    poll.start();
    loop.exec();
    expect(!m_isInterrupted, QStringLiteral("nobody interrupts the tour"));
    if (!happened())
        throw TourFailure(QStringLiteral("waited %1 s in vain until %2").arg(limitMs / 1000).arg(what));
}

void Person::look(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void Person::act(const std::function<void()>& deed)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        deed();
        loop.quit();
    });
    loop.exec();
}

void Person::close(QWidget& window)
{
    act([&] { window.close(); });
}

void Person::expect(bool isTrue, const QString& what)
{
    if (!isTrue)
        throw TourFailure(QStringLiteral("not as expected: %1").arg(what));
}

QWidget& Person::dialogOf(QWidget& window)
{
    QWidget* dialog = nullptr;
    waitUntil(QStringLiteral("a dialog opens"), [&] {
        QWidget* modal = QApplication::activeModalWidget();
        dialog = modal != &window ? modal : nullptr;
        return dialog != nullptr && dialog->isVisible();
    });
    return *dialog;
}

void Person::click(QWidget& control)
{
    expect(control.isVisible(), QStringLiteral("%1 is on show").arg(control.objectName()));
    expect(control.isEnabled(),
        QStringLiteral("%1 can be pressed (it says: %2)").arg(control.objectName(), control.toolTip()));
    if (control.focusPolicy() & Qt::ClickFocus)
        control.setFocus(Qt::MouseFocusReason);
    // Check boxes react on their box and text only, at the left.
    const QPoint middle(qMin(control.width() / 2, 20), control.height() / 2);
    act([&] { clickOnce(control, middle); });
}

void Person::doubleClick(QWidget& control, QPoint position)
{
    act([&] {
        clickOnce(control, position);
        const QPointer<QWidget> guard(&control);
        sendMouse(control, QEvent::MouseButtonDblClick, position, Qt::LeftButton, Qt::LeftButton);
        if (guard)
            sendMouse(control, QEvent::MouseButtonRelease, position, Qt::LeftButton, Qt::NoButton);
    });
}

void Person::drag(QWidget& widget, QPoint from, QPoint to)
{
    constexpr int steps = 8;
    act([&] { sendMouse(widget, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton); });
    for (int i = 1; i <= steps; ++i) {
        const QPoint position = from + (to - from) * i / steps;
        act([&] { sendMouse(widget, QEvent::MouseMove, position, Qt::NoButton, Qt::LeftButton); });
    }
    act([&] { sendMouse(widget, QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton); });
}

void Person::key(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    act([&] { strike(widget, key, modifiers, QString()); });
}

void Person::type(QWidget& edit, const QString& text)
{
    expect(edit.isVisible() && edit.isEnabled(), QStringLiteral("%1 takes text").arg(edit.objectName()));
    edit.setFocus(Qt::MouseFocusReason);
    act([&] {
        for (const QChar c : text)
            strike(edit, 0, Qt::NoModifier, QString(c));
    });
}

void Person::clearText(QLineEdit& edit)
{
    edit.setFocus(Qt::MouseFocusReason);
    key(edit, Qt::Key_A, Qt::ControlModifier);
    key(edit, Qt::Key_Delete);
    expect(edit.text().isEmpty(), QStringLiteral("%1 is empty").arg(edit.objectName()));
}

void Person::shortcut(QWidget& window, const QKeySequence& keys)
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

void Person::choose(QWidget& window, const char* actionName)
{
    auto& action = find<QAction>(window, actionName);
    expect(action.isEnabled(),
        QStringLiteral("%1 can be chosen (it says: %2)").arg(QLatin1String(actionName), action.toolTip()));
    act([&] { action.trigger(); });
}

void Person::answering(const std::function<void(QWidget&)>& answer, const std::function<void()>& act)
{
    std::exception_ptr failure;
    bool isAnswered = false;
    QTimer poll;
    poll.setInterval(pollMs);
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        QWidget* box = QApplication::activeModalWidget();
        if (!box || !box->isVisible())
            return;
        poll.stop();
        isAnswered = true;
        try { // no exception may pass the event loop
            answer(*box);
        } catch (...) {
            failure = std::current_exception();
            box->close();
        }
    });
    poll.start();
    act();
    if (!isAnswered)
        waitUntil(QStringLiteral("a box opens"), [&] { return isAnswered; });
    if (failure)
        std::rethrow_exception(failure);
}

void Person::picture(QWidget& window, const QString& name)
{
    look(60); // what is posted gets painted
    save(window.grab().toImage(), name);
}

void Person::screen(const QList<QWidget*>& windows, const QString& name)
{
    look(60);
    QRect area;
    for (const QWidget* const window : windows)
        area |= window->frameGeometry();
    expect(!area.isEmpty(), QStringLiteral("there are windows on the screen"));
    QImage image(area.size(), QImage::Format_RGB32);
    image.fill(QColor(0x50, 0x58, 0x60));
    QPainter painter(&image);
    for (QWidget* const window : windows)
        painter.drawPixmap(window->geometry().topLeft() - area.topLeft(), window->grab());
    painter.end();
    save(image, name);
}

void Person::save(const QImage& image, const QString& name)
{
    expect(!m_isInterrupted, QStringLiteral("nobody interrupts the tour"));
    const QString file = QStringLiteral("%1-%2-%3.png").arg(m_prefix).arg(m_pictures.size() + 1).arg(name);
    expect(colourCount(image) > 2, QStringLiteral("there is something on %1").arg(file));
    if (!image.save(m_directory.filePath(file)))
        throw TourFailure(QStringLiteral("%1 cannot be written").arg(m_directory.filePath(file)));
    m_pictures.append(file);
}

} // namespace console
