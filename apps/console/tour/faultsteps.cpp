// The tour's steps through what goes wrong, and how one press mends it; and the end.
#include "command/commandpanel.h"
#include "mainwindow.h"
#include "notices/noticebar.h"
#include "tour/tourhelpers.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTcpServer>
#include <QTcpSocket>

#include <utility>

namespace console {

namespace {

/// A port on which nothing listens: one that was free a moment ago.
quint16 deafPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

Notice noticeOf(Person& person, MainWindow& window)
{
    return person.find<NoticeBar>(window, "noticeBar").notice();
}

void pressRemedy(Person& person, MainWindow& window)
{
    person.click(person.find<QPushButton>(person.find<NoticeBar>(window, "noticeBar"), "remedyButton"));
}

/// The server dies while a command is under way and another one is being typed.
void serverDies(Person& person, MainWindow& window)
{
    auto& edit = person.find<QLineEdit>(window, "commandEdit");
    person.type(edit, QStringLiteral("sleep 30000"));
    person.key(edit, Qt::Key_Return);
    person.type(edit, QStringLiteral("a command half typed"));
    person.waitUntil(QStringLiteral("the command is under way"), [&] { return window.commandPanel().isBusy(); });
    window.controller().endByForce();
    waitForState(person, window, ServerState::Failed, QStringLiteral("the loss is noticed"));
    person.waitUntil(QStringLiteral("the command line is free again"), [&] { return !window.commandPanel().isBusy(); });
    person.picture(window, QStringLiteral("lost"));
    person.expect(
        noticeOf(person, window).remedy == Remedy::StartAgain, QStringLiteral("the notice offers a new start"));
    pressRemedy(person, window);
    waitForState(person, window, ServerState::Up, QStringLiteral("one press brings the server back"));
    person.expect(edit.text() == u"a command half typed", QStringLiteral("what was typed is still there"));
    person.clearText(edit);
    ask(person, window, QStringLiteral("pwd"));
    person.picture(window, QStringLiteral("back"));
}

void nobodyAnswers(Person& person, MainWindow& window)
{
    const ServerChoice before = window.controller().choice();
    person.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_N));
    QWidget& dialog = person.dialogOf(window);
    person.click(person.find<QRadioButton>(dialog, "remoteRadio"));
    person.clearText(person.find<QLineEdit>(dialog, "hostEdit"));
    person.type(person.find<QLineEdit>(dialog, "hostEdit"), QStringLiteral("localhost"));
    person.find<QSpinBox>(dialog, "portSpin").setValue(deafPort());
    person.picture(dialog, QStringLiteral("dialog"));
    person.click(*person.find<QDialogButtonBox>(dialog, "buttonBox").button(QDialogButtonBox::Ok));
    waitForState(person, window, ServerState::Failed, QStringLiteral("the console sees that nobody answers"));
    person.picture(window, QStringLiteral("refused"));

    window.controller().start(before, window.controller().prompt());
    waitForState(person, window, ServerState::Up, QStringLiteral("the server of before is back"));
}

/// Something else listens at the port: it greets, but not with the prompt.
void wrongPrompt(Person& person, MainWindow& window)
{
    constexpr int shortMs = 1000; // instead of the ten seconds that somebody would wait
    ServerController& controller = window.controller();
    const ServerChoice before = controller.choice();
    const int patienceMs = std::exchange(controller.m_probeTimeoutMs, shortMs);
    QTcpServer other;
    person.expect(other.listen(QHostAddress::LocalHost), QStringLiteral("there is a free port"));
    QObject::connect(
        &other, &QTcpServer::newConnection, &other, [&] { other.nextPendingConnection()->write("220 mail\n"); });
    ServerChoice wrong;
    wrong.kind = ServerChoice::Kind::Remote;
    wrong.host = QStringLiteral("127.0.0.1");
    wrong.port = other.serverPort();
    controller.start(wrong, controller.prompt());
    waitForState(person, window, ServerState::Failed, QStringLiteral("the console sees that it is no server"));
    person.picture(window, QStringLiteral("not-greeted"));
    controller.m_probeTimeoutMs = patienceMs;
    controller.start(before, controller.prompt());
    waitForState(person, window, ServerState::Up, QStringLiteral("the server of before is back"));
}

void restart(Person& person, MainWindow& window)
{
    person.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_R));
    waitForState(person, window, ServerState::Stopping, QStringLiteral("the server is told to end"));
    waitForState(person, window, ServerState::Up, QStringLiteral("the server is back"));
    ask(person, window, QStringLiteral("stat"));
    person.picture(window, QStringLiteral("back"));
}

void shutDown(Person& person, MainWindow& window)
{
    person.choose(window, "shutDownAction");
    waitForState(person, window, ServerState::Off, QStringLiteral("the server has ended"));
    person.expect(!window.controller().hasProcess(), QStringLiteral("no process is left"));
    person.picture(window, QStringLiteral("off"));
}

/// Closing the window with a server running ends the server first.
void closeWindow(Person& person, MainWindow& window)
{
    person.choose(window, "startAction");
    waitForState(person, window, ServerState::Up, QStringLiteral("the server is back"));
    window.close();
    person.waitUntil(QStringLiteral("the window is closed"), [&] { return !window.isVisible(); });
    person.expect(!window.controller().hasProcess(), QStringLiteral("no process is left"));
}

} // namespace

QList<TourStep> closingSteps()
{
    return {
        { QStringLiteral("server-dies"), serverDies },
        { QStringLiteral("nobody-answers"), nobodyAnswers },
        { QStringLiteral("wrong-prompt"), wrongPrompt },
        { QStringLiteral("restart"), restart },
        { QStringLiteral("shut-down"), shutDown },
        { QStringLiteral("close"), closeWindow },
    };
}

} // namespace console
