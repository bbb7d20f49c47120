// A manager with accessible members, and a recorder of its signals and posts.
#pragma once

#include <tarnis/foundation/sysmsg.h>
#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarnissession.h>

#include <QObject>
#include <QStringList>

#include <memory>

namespace tarnis::testing {

class TarnisProbe : public Tarnis {
public:
    using Tarnis::m_bLocal;
    using Tarnis::m_commands;
    using Tarnis::m_host;
    using Tarnis::m_mutex;
    using Tarnis::m_port;
    using Tarnis::m_process;
    using Tarnis::m_processPath;
    using Tarnis::m_prompt;
    using Tarnis::m_readoutAddress;
    using Tarnis::m_remoteHost;
    using Tarnis::m_remotePort;
    using Tarnis::m_serverAddress;
    using Tarnis::m_sessions;
    using Tarnis::m_settings;
    using Tarnis::m_stats;
    using Tarnis::m_status;
    using Tarnis::Tarnis;
};

/// Everything that the manager reports, in order: "status SERVER CONNECTED", "post TEXT", "reply NAME|CMD|RESULT",
/// "path DIR".
class HostRecord {
public:
    explicit HostRecord(const Tarnis& manager)
    {
        watch(manager);
        QObject::connect(&_g_sysMsg, &SysMsg::onSysMsg, &m_context,
            [this](const QString& text) { events.append(QStringLiteral("post ") + text); });
    }
    void watch(const Tarnis& manager)
    {
        QObject::connect(&manager, &Tarnis::StatusChanged, &m_context, [this](Tarnis::SERVER_STATUS status) {
            events.append(QStringLiteral("status ") + QLatin1String(Tarnis::GetStatusName(status)));
        });
        QObject::connect(&manager, &Tarnis::onCmdReply, &m_context,
            [this](const QString& name, const QString& cmd, const QByteArray& result) {
                events.append(QStringLiteral("reply %1|%2|%3").arg(name, cmd, QString::fromUtf8(result)));
            });
        QObject::connect(&manager, &Tarnis::onBasePathChange, &m_context,
            [this](const QString& path) { events.append(QStringLiteral("path ") + path); });
    }
    bool has(const QString& event) const { return events.contains(event); }

    QStringList events;

private:
    QObject m_context;
};

} // namespace tarnis::testing
