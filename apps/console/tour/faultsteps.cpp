// The tour's steps for failures and their one-click fixes, and the end of the tour.
#include "command/commandpanel.h"
#include "mainwindow.h"
#include "notices/alertbar.h"
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

/// A port without a listener: one that was free just before.
quint16 deafPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

Alert alertOf(UiDriver& driver, MainWindow& window)
{
    return driver.find<AlertBar>(window, "alertBar").alert();
}

void pressAlertButton(UiDriver& driver, MainWindow& window)
{
    driver.click(driver.find<QPushButton>(driver.find<AlertBar>(window, "alertBar"), "alertButton"));
}

/// The server dies while a command is under way and another one is being typed.
void serverDies(UiDriver& driver, MainWindow& window)
{
    auto& edit = driver.find<QLineEdit>(window, "commandEdit");
    driver.type(edit, QStringLiteral("sleep 30000"));
    driver.key(edit, Qt::Key_Return);
    driver.type(edit, QStringLiteral("a command half typed"));
    driver.waitUntil(QStringLiteral("the command is under way"), [&] { return window.commandPanel().isBusy(); });
    window.controller().endByForce();
    waitForState(driver, window, ServerState::Failed, QStringLiteral("the loss is noticed"));
    driver.waitUntil(QStringLiteral("the command line is free again"), [&] { return !window.commandPanel().isBusy(); });
    driver.screenshot(window, QStringLiteral("lost"));
    driver.expect(
        alertOf(driver, window).action == AlertAction::StartAgain, QStringLiteral("the alert offers a new start"));
    pressAlertButton(driver, window);
    waitForState(driver, window, ServerState::Up, QStringLiteral("one press brings the server back"));
    driver.expect(edit.text() == u"a command half typed", QStringLiteral("what was typed is still there"));
    driver.clearText(edit);
    ask(driver, window, QStringLiteral("pwd"));
    driver.screenshot(window, QStringLiteral("back"));
}

void noServerAnswers(UiDriver& driver, MainWindow& window)
{
    const ServerChoice before = window.controller().choice();
    driver.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_N));
    QWidget& dialog = driver.dialogOf(window);
    driver.click(driver.find<QRadioButton>(dialog, "remoteRadio"));
    driver.clearText(driver.find<QLineEdit>(dialog, "hostEdit"));
    driver.type(driver.find<QLineEdit>(dialog, "hostEdit"), QStringLiteral("localhost"));
    driver.find<QSpinBox>(dialog, "portSpin").setValue(deafPort());
    driver.screenshot(dialog, QStringLiteral("dialog"));
    driver.click(*driver.find<QDialogButtonBox>(dialog, "buttonBox").button(QDialogButtonBox::Ok));
    waitForState(driver, window, ServerState::Failed, QStringLiteral("the console detects that no server answers"));
    driver.screenshot(window, QStringLiteral("refused"));

    window.controller().start(before, window.controller().prompt());
    waitForState(driver, window, ServerState::Up, QStringLiteral("the previous server is back"));
}

/// Another program listens on the port: it sends a greeting, but not the prompt.
void wrongPrompt(UiDriver& driver, MainWindow& window)
{
    constexpr int shortMs = 1000; // instead of the ten seconds that a user would wait
    ServerController& controller = window.controller();
    const ServerChoice before = controller.choice();
    const int timeoutMs = std::exchange(controller.m_probeTimeoutMs, shortMs);
    QTcpServer other;
    driver.expect(other.listen(QHostAddress::LocalHost), QStringLiteral("there is a free port"));
    QObject::connect(
        &other, &QTcpServer::newConnection, &other, [&] { other.nextPendingConnection()->write("220 mail\n"); });
    ServerChoice wrong;
    wrong.kind = ServerChoice::Kind::Remote;
    wrong.host = QStringLiteral("127.0.0.1");
    wrong.port = other.serverPort();
    controller.start(wrong, controller.prompt());
    waitForState(driver, window, ServerState::Failed, QStringLiteral("the console sees that it is no server"));
    driver.screenshot(window, QStringLiteral("not-greeted"));
    controller.m_probeTimeoutMs = timeoutMs;
    controller.start(before, controller.prompt());
    waitForState(driver, window, ServerState::Up, QStringLiteral("the previous server is back"));
}

void restart(UiDriver& driver, MainWindow& window)
{
    driver.shortcut(window, QKeySequence(Qt::CTRL | Qt::Key_R));
    waitForState(driver, window, ServerState::Stopping, QStringLiteral("the server is requested to end"));
    waitForState(driver, window, ServerState::Up, QStringLiteral("the server is back"));
    ask(driver, window, QStringLiteral("stat"));
    driver.screenshot(window, QStringLiteral("back"));
}

void shutDown(UiDriver& driver, MainWindow& window)
{
    driver.choose(window, "shutDownAction");
    waitForState(driver, window, ServerState::Off, QStringLiteral("the server has ended"));
    driver.expect(!window.controller().hasProcess(), QStringLiteral("no process is left"));
    driver.screenshot(window, QStringLiteral("off"));
}

/// Closing the window with a server running ends the server first.
void closeWindow(UiDriver& driver, MainWindow& window)
{
    driver.choose(window, "startAction");
    waitForState(driver, window, ServerState::Up, QStringLiteral("the server is back"));
    window.close();
    driver.waitUntil(QStringLiteral("the window is closed"), [&] { return !window.isVisible(); });
    driver.expect(!window.controller().hasProcess(), QStringLiteral("no process is left"));
}

} // namespace

QList<TourStep> closingSteps()
{
    return {
        { QStringLiteral("server-dies"), serverDies },
        { QStringLiteral("no-answer"), noServerAnswers },
        { QStringLiteral("wrong-prompt"), wrongPrompt },
        { QStringLiteral("restart"), restart },
        { QStringLiteral("shut-down"), shutDown },
        { QStringLiteral("close"), closeWindow },
    };
}

} // namespace console
