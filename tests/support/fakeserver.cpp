#include "support/fakeserver.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>

namespace tarnis::testing {

FakeServer::FakeServer(const QStringList& script, const QString& name)
    : m_path(m_folder.filePath(name))
{
    QDir().mkpath(QFileInfo(m_path).path());
    QFile::link(QStringLiteral(TARNIS_FAKE_SERVER), m_path);
    QFile file(m_path + QLatin1String(".script"));
    if (file.open(QIODevice::WriteOnly))
        file.write(script.join(QLatin1Char('\n')).toUtf8() + '\n');
}

QString FakeServer::path() const
{
    return m_path;
}

QString FakeServer::folder() const
{
    return m_folder.path();
}

bool FakeServer::hasNoted(const QString& name) const
{
    return QFileInfo::exists(m_path + QLatin1Char('.') + name);
}

QByteArray FakeServer::noted(const QString& name) const
{
    QFile file(m_path + QLatin1Char('.') + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList FakeServer::wellBehaved(int port)
{
    return { QStringLiteral("print UI port: %1\\n").arg(port), QStringLiteral("await-end"),
        QStringLiteral("note end") };
}

QStringList FakeServer::deaf(int port)
{
    return { QStringLiteral("print UI port: %1\\n").arg(port), QStringLiteral("linger") };
}

bool isRunning(qint64 processId)
{
    return ::kill(pid_t(processId), 0) == 0;
}

} // namespace tarnis::testing
