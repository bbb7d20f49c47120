// What the tests of the manager without a local server share: a host of it, and its developer traces.
#pragma once

#include "support/managerprobe.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

namespace tarnis::testing {

inline const QByteArray prompt("> ");

inline QStringList debugTexts;

inline void collectDebugText(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg)
        debugTexts.append(text.mid(text.indexOf(QLatin1String(" | ")) + 3));
}

/// Developer traces of an action, without place and thread.
template <typename Action> QStringList tracesOf(const Action& action)
{
    debugTexts.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectDebugText);
    action();
    qInstallMessageHandler(previous);
    return debugTexts;
}

inline Tarnis::SERVER_STATUS status(int value)
{
    return static_cast<Tarnis::SERVER_STATUS>(value);
}

/// A manager with a parent that owns its sessions, as hosts have it.
struct Host {
    QObject parent;
    TarnisProbe* manager = new TarnisProbe(&prompt, &parent);
    HostRecord record { *manager };

    explicit Host(const ScriptedServer* server = nullptr)
    {
        manager->SetLocal(false);
        if (server)
            manager->SetRemoteHost(ScriptedServer::host(), server->port());
    }
    bool run() { return manager->Run(nullptr); }
    bool runUntilConnected()
    {
        return run() && eventually([this] { return record.has("reply statCmd|stat|"); });
    }
    QString waitFor(const QString& event)
    {
        eventually([&] { return record.has(event); });
        return record.has(event) ? QString() : record.events.join('\n');
    }
};

} // namespace tarnis::testing

#define EXPECT_EVENT(host, event)                                                                                      \
    do {                                                                                                               \
        const QString otherEvents = (host).waitFor(event);                                                             \
        QVERIFY2((host).record.has(event), qPrintable(otherEvents));                                                   \
    } while (false)
