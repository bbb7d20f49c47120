// A local server in a few lines of shell, for tests of starting and ending it.
#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <csignal>

namespace tarnis::testing {

/// The program file is deleted with the object; a running process continues.
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

/// Announces a port and exits at the end of its input.
inline QString faithful(quint16 port)
{
    return QStringLiteral("echo 'UI port: %1'\nread line").arg(port);
}

/// Announces a port and ignores its input.
inline QString deaf(quint16 port)
{
    return QStringLiteral("echo 'UI port: %1'\nwhile :; do sleep 1; done").arg(port);
}

inline bool isRunning(qint64 processId)
{
    return ::kill(pid_t(processId), 0) == 0;
}

} // namespace tarnis::testing
