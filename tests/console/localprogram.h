// A local server in a few lines of shell, for tests of who starts and ends it.
#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <csignal>

namespace tarnis::testing {

/// The program is gone with the object; a process that still runs goes on.
class LocalProgram {
public:
    explicit LocalProgram(const QString& body)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no scratch file");
        file.write("#!/bin/sh\n" + body.toUtf8() + "\n");
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    }
    QString path() const { return m_directory.filePath(QStringLiteral("server")); }

private:
    QTemporaryDir m_directory;
};

/// Tells a port and ends when its input does.
inline QString faithful(quint16 port)
{
    return QStringLiteral("echo 'UI port: %1'\nread line").arg(port);
}

/// Tells a port and does not care about its input.
inline QString deaf(quint16 port)
{
    return QStringLiteral("echo 'UI port: %1'\nwhile :; do sleep 1; done").arg(port);
}

inline bool isRunning(qint64 processId)
{
    return ::kill(pid_t(processId), 0) == 0;
}

} // namespace tarnis::testing
