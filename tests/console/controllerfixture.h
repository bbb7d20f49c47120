// Servers to choose, and a controller with its alerts.
#pragma once

#include "server/commandchannel.h"
#include "server/servercontroller.h"
#include "server/serverprobe.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QTest>

namespace tarnis::testing {

inline console::ServerChoice remote(quint16 port, const QString& host = ScriptedServer::host())
{
    return { console::ServerChoice::Kind::Remote, {}, host, port };
}

/// A controller with short timeouts, and its alerts.
struct ControllerFixture {
    console::ServerController controller;
    QList<console::Alert> alerts;

    ControllerFixture()
    {
        controller.m_endTimeoutMs = 50;
        QObject::connect(&controller, &console::ServerController::alert, &controller,
            [this](const console::Alert& alert) { alerts.append(alert); });
    }
    void start(const console::ServerChoice& choice) { controller.start(choice, "> "); }
    bool startsUp(const console::ServerChoice& choice)
    {
        start(choice);
        return reaches(console::ServerState::Up);
    }
    bool reaches(console::ServerState state)
    {
        return eventually([&] { return controller.state() == state; });
    }
    bool reports(const QString& text, console::AlertAction action)
    {
        return eventually(
            [&] { return !alerts.isEmpty() && alerts.last().text.contains(text) && alerts.last().action == action; });
    }
    /// Sends the command "a" on the session "control".
    void send() { controller.tarnis().SendCmd("control", "n", "a", false); }
    qint64 processId() { return controller.tarnis().process()->processId(); }
    QString lastText() const { return alerts.isEmpty() ? QString() : alerts.last().text; }
};

} // namespace tarnis::testing
