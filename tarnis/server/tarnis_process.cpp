// The manager's local server: its start, its port, its end.
#include "tarnis/server/tarnis.h"

#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/log.h"
#include "tarnis/foundation/systemmessages.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/server/localserver_p.h"
#include "tarnis/server/serverexit_p.h"

namespace {

constexpr int startTimeoutMs = 30000;
constexpr qint64 unreadOutputLimit = 1 << 20;

// The server's output is not read once the port is known, and its error output never is. What a server writes in months
// must not accumulate in this process.
void boundUnreadOutput(QProcess* process)
{
    QObject::connect(process, &QProcess::readyReadStandardOutput, process, [process] {
        if (process->bytesAvailable() > unreadOutputLimit)
            process->readAllStandardOutput();
    });
    QObject::connect(process, &QProcess::readyReadStandardError, process, [process] {
        process->setReadChannel(QProcess::StandardError);
        if (process->bytesAvailable() > unreadOutputLimit)
            process->readAll();
        process->setReadChannel(QProcess::StandardOutput);
    });
}

void post(const tarnis::SystemMessage& message)
{
    tarnis::SystemMessages::instance().post(message);
}

} // namespace

bool Tarnis::startLocalServer()
{
    supersedeLocalServer();
    m_process = new QProcess;
    m_process->setWorkingDirectory(tarnis::workingDirectory(m_processPath));
    m_process->start(m_processPath, {}, QIODeviceBase::ReadWrite);
    if (!m_process->waitForStarted(startTimeoutMs)) {
        delete m_process;
        m_process = nullptr;
        post({ QT_TRANSLATE_NOOP(
                   "tarnis::SystemMessage", "Could not Start Local Server[%1] - check velmark.xml localServer element"),
            { m_processPath } });
        return false;
    }
    post({ QT_TRANSLATE_NOOP("tarnis::SystemMessage", "Local Server[%1] Started"), { m_processPath } });
    connectLocalServer();
    return true;
}

void Tarnis::connectLocalServer()
{
    // The connection already exists if this is not the manager's first server.
    disconnect(this, SIGNAL(StatusChanged(Tarnis::SERVER_STATUS)), this, SLOT(onStatusChanged(Tarnis::SERVER_STATUS)));
    tarnis::checkedConnect(
        this, SIGNAL(StatusChanged(Tarnis::SERVER_STATUS)), this, SLOT(onStatusChanged(Tarnis::SERVER_STATUS)));
    tarnis::checkedConnect(m_process, SIGNAL(readyReadStandardOutput()), this, SLOT(onServerReadyStdOut()));
    // Connected after the start, so that a program that does not start is reported once, not twice.
    tarnis::checkedConnect(
        m_process, SIGNAL(errorOccurred(QProcess::ProcessError)), this, SLOT(onServerError(QProcess::ProcessError)));
    tarnis::checkedConnect(m_process,
        SIGNAL(finished(int,QProcess::ExitStatus)), this, SLOT(onLocalSvrFinished(int,QProcess::ExitStatus)));
    boundUnreadOutput(m_process);
}

void Tarnis::supersedeLocalServer()
{
    if (!m_process)
        return;
    // The process is not stopped; its object is kept until it has ended.
    if (m_process->state() == QProcess::NotRunning) {
        m_process->deleteLater();
        return;
    }
    connect(m_process, &QProcess::finished, m_process, &QObject::deleteLater);
    m_supersededProcesses.append(m_process);
}

void Tarnis::endSupersededServers()
{
    for (const QPointer<QProcess>& process : m_supersededProcesses) {
        if (!process)
            continue;
        tarnis::askServerToExit(*process);
        new tarnis::ServerExit(process); // deletes itself, with the process
    }
}

void Tarnis::onServerReadyStdOut()
{
    LOG_BLOCK("onServerReadyStdOut");
    auto* process = qobject_cast<QProcess*>(sender());
    if (!process)
        process = m_process;
    if (!process)
        return;
    const QString output = QString::fromUtf8(process->readAllStandardOutput());
    TARNIS_TRACE(QLatin1String("STDOUT:") + output);
    const std::optional<quint16> port = tarnis::announcedPort(output);
    if (!port)
        return;
    const QMutexLocker locker(&m_mutex);
    m_port = *port;
    if (m_port == 0)
        return;
    m_host = QStringLiteral("localhost");
    m_serverAddress = QStringLiteral("localhost:%1").arg(m_port);
    TARNIS_TRACE(QStringLiteral("PortNo: %1").arg(m_port));
    SetStatus(SERVER_CONNECTED);
    disconnect(process, SIGNAL(readyReadStandardOutput()), this, SLOT(onServerReadyStdOut()));
    post({ QT_TRANSLATE_NOOP("tarnis::SystemMessage", "Local Tarnis Server Started on port %1"),
        { QString::number(m_port) } });
}

void Tarnis::onServerError(QProcess::ProcessError err)
{
    LOG_BLOCK("Tarnis::onServerError(err[%d])", static_cast<int>(err));
    const QMutexLocker locker(&m_mutex);
    if (err == QProcess::Crashed && m_status != SHUTTING_DOWN && m_status != IDLE)
        post({ QT_TRANSLATE_NOOP("tarnis::SystemMessage", "Server process crashed."), {} });
    else
        post({ QT_TRANSLATE_NOOP("tarnis::SystemMessage", "ServerError: Crashed but shutting down or idle. err[%1]"),
            { QString::number(static_cast<int>(err)) } });
}

void Tarnis::onLocalSvrFinished(int /*exitCode*/, QProcess::ExitStatus /*exitStatus*/)
{
    LOG_BLOCK("onLocalSvrFinished");
    SetStatus(IDLE);
}

void Tarnis::closeLocalServer()
{
    if (!m_process) {
        SetStatus(IDLE);
        return;
    }
    LOG_DBG("closing local server");
    const bool ended = m_process->state() == QProcess::NotRunning;
    // A port that the server announces later no longer matters.
    disconnect(m_process, SIGNAL(readyReadStandardOutput()), this, SLOT(onServerReadyStdOut()));
    tarnis::askServerToExit(*m_process);
    new tarnis::ServerExit(m_process); // deletes itself, with the process
    m_process = nullptr;
    // A process that has already ended emits no `finished`, which would set this.
    if (ended)
        SetStatus(IDLE);
}

void Tarnis::endLocalServer()
{
    LOG_BLOCK("local server deleting");
    TARNIS_TRACE(QStringLiteral("ERROR:Disconnect Server Before delete."));
    disconnect(m_process, SIGNAL(readyReadStandardOutput()), this, SLOT(onServerReadyStdOut()));
    tarnis::askServerToExit(*m_process);
    tarnis::waitForServerExit(*m_process, tarnis::serverExitGraceMs);
    new tarnis::ServerExit(m_process); // deletes itself, with the process
}
