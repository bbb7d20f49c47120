// A host of a manager whose server is a program of the test.
#pragma once

#include "support/fakeserver.h"
#include "support/managerprobe.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

namespace tarnis::testing {

inline const QByteArray prompt("> ");

/// A manager in local mode whose server is one of the test's programs.
struct Host {
    QObject parent;
    TarnisProbe* manager = new TarnisProbe(&prompt, &parent);
    HostRecord record { *manager };

    bool run(const FakeServer& server)
    {
        manager->SetProcessPath(server.path());
        return manager->Run(nullptr);
    }
    bool runUntilConnected(const FakeServer& server)
    {
        return run(server) && eventually([this] { return manager->m_status == Tarnis::SERVER_CONNECTED; });
    }
    /// Lets the server take its next step.
    void sendToServer(const QByteArray& text) { manager->m_process->write(text); }
    QStringList posts() const
    {
        QStringList texts;
        for (const QString& event : record.events) {
            if (event.startsWith(QLatin1String("post ")))
                texts.append(event.mid(5));
        }
        return texts;
    }
    /// Waits until the manager was notified of the end of the process.
    bool waitForEnd()
    {
        return eventually([this] { return manager->m_process->state() == QProcess::NotRunning; });
    }
};

} // namespace tarnis::testing
