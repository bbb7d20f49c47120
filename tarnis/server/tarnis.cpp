// Construction, status, named sessions and shutdown of the manager. The local server is in tarnis_process.cpp, the
// settings are in tarnis_settings.cpp.
#include "tarnis/server/tarnis.h"

#include "tarnis/foundation/checkedconnect_p.h"
#include "tarnis/foundation/log.h"
#include "tarnis/foundation/systemmessages.h"
#include "tarnis/foundation/trace_p.h"
#include "tarnis/server/sessionend_p.h"
#include "tarnis/server/tarnissession.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QVariant>

#include <algorithm>

namespace {

// The manager that is receiving a queued call on this thread, if any.
thread_local const Tarnis* queuedCallReceiver = nullptr;

// An event that is posted after the queued calls of closed sessions.
QEvent::Type queuedCallsDelivered()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}

const char* boolName(bool value)
{
    return value ? "true" : "false";
}

// The log shows sessions by the low 32 bits of their address.
unsigned int shortAddress(const TarnisSession* session)
{
    return static_cast<unsigned int>(reinterpret_cast<quintptr>(session));
}

QString addressText(const QString& host, quint16 port)
{
    return host + QLatin1Char(':') + QVariant(port).toString();
}

} // namespace

Tarnis::Tarnis(const QByteArray* prompt, QObject* parent)
    : QObject(parent)
    , m_prompt(prompt)
{
    qRegisterMetaType<PTarnisCmd>("PTarnisCmd");
    LOG_DBG("Tarnis::Tarnis()");
}

Tarnis::~Tarnis()
{
    LOG_BLOCK("~Tarnis");
    if (m_process)
        endLocalServer();
    endSupersededServers();
}

bool Tarnis::event(QEvent* event)
{
    if (event->type() == queuedCallsDelivered()) {
        const QMutexLocker locker(&m_mutex);
        --m_closings;
        return true;
    }
    if (event->type() != QEvent::MetaCall)
        return QObject::event(event);
    const QScopedValueRollback receiver(queuedCallReceiver, static_cast<const Tarnis*>(this));
    return QObject::event(event);
}

// Disconnecting a session does not remove the calls that it has already queued. They arrive before the marker event,
// with a sender that is null or seems to be a new session that reuses the address of the old one.
bool Tarnis::isCallOfClosedSession() const
{
    const QMutexLocker locker(&m_mutex);
    if (m_closings == 0 || queuedCallReceiver != this)
        return false;
    const QObject* const session = sender();
    return !session || std::find(m_sessions.cbegin(), m_sessions.cend(), session) != m_sessions.cend();
}

// Until the marker event arrives, calls of the sessions closed now may precede it.
void Tarnis::outlastQueuedCalls()
{
    ++m_closings;
    QCoreApplication::postEvent(this, new QEvent(queuedCallsDelivered()));
}

const char* Tarnis::GetStatusName(SERVER_STATUS status)
{
    switch (status) {
    case IDLE:
        return "IDLE";
    case SERVER_CONNECTED:
        return "SERVER CONNECTED";
    case SERVER_ERROR:
        return "SERVER ERROR";
    case READOUT_CONNECTED:
        return "READOUT CONNECTED";
    case READOUT_ERROR:
        return "READOUT ERROR";
    case HARDWARE_BUSY:
        return "HARDWARE BUSY";
    case STARTING:
        return "STARTING";
    case RUNNING:
        return "RUNNING";
    case LOADING:
        return "LOADING";
    case SHUTTING_DOWN:
        return "SHUTTING DOWN";
    }
    return "UNKNOWN";
}

void Tarnis::SetLocal(bool local)
{
    m_bLocal = local;
}

void Tarnis::SetProcessPath(const QString& path)
{
    m_processPath = path;
}

void Tarnis::SetRemoteHost(const QString& host, quint16 port)
{
    LOG_BLOCK("Tarnis::SetRemoteHost(host[%s], port[%d])", qUtf8Printable(host), port);
    const QMutexLocker locker(&m_mutex);
    m_remoteHost = host;
    m_remotePort = port;
    m_serverAddress = addressText(host, port);
}

void Tarnis::GetRemoteHost(QString& host, quint16& port) const
{
    const QMutexLocker locker(&m_mutex);
    host = m_remoteHost;
    port = m_remotePort;
}

QString Tarnis::GetServerAddress() const
{
    const QMutexLocker locker(&m_mutex);
    return m_serverAddress;
}

tarnis::ServerAddress Tarnis::GetSessionAddress() const
{
    const QMutexLocker locker(&m_mutex);
    return { m_host, m_port, m_prompt };
}

bool Tarnis::IsServerConnected() const
{
    const QMutexLocker locker(&m_mutex);
    return m_status != IDLE && m_status != SERVER_ERROR && m_status != SHUTTING_DOWN;
}

void Tarnis::SetStatus(SERVER_STATUS status)
{
    LOG_BLOCK("Tarnis::SetStatus(status[%d])", static_cast<int>(status));
    const QMutexLocker locker(&m_mutex);
    if (status == m_status)
        return;
    m_status = status;
    if (status == SERVER_ERROR)
        TARNIS_TRACE(QStringLiteral("Tarnis::SetStatus SERVER_ERROR"));
    Q_EMIT StatusChanged(status);
}

void Tarnis::onStatusChanged(Tarnis::SERVER_STATUS status)
{
    LOG_BLOCK("Tarnis::onStatusChanged(status[%d])", static_cast<int>(status));
    TARNIS_TRACE(QStringLiteral("OK:StatusChange message"));
}

bool Tarnis::Run(const QString* path)
{
    LOG_BLOCK("Run");
    const QMutexLocker locker(&m_mutex);
    if (path)
        m_processPath = *path;
    if (m_bLocal && (path || !m_processPath.isEmpty()))
        return startLocalServer();
    m_port = m_remotePort;
    m_host = m_remoteHost;
    m_serverAddress = addressText(m_host, m_port);
    SendCmd(QStringLiteral("control"), QStringLiteral("statCmd"), QStringLiteral("stat"), false);
    return true;
}

bool Tarnis::Restart()
{
    const QMutexLocker locker(&m_mutex);
    return m_bLocal && m_process ? Run(nullptr) : false;
}

TarnisSession* Tarnis::NewTarnisSession(QObject* parent)
{
    const QMutexLocker locker(&m_mutex);
    auto* const session = new TarnisSession(m_host, m_port, m_prompt, parent);
    session->SetId(QStringLiteral("NewTarnisSession"));
    LOG_DBG("    return %x", shortAddress(session));
    return session;
}

TarnisSession* Tarnis::GetTarnisSession(const QString& id)
{
    const QMutexLocker locker(&m_mutex);
    return m_sessions[id];
}

bool Tarnis::SendCmd(const QString& idSession, const QString& cmdName, const QString& cmd, bool bProgress)
{
    LOG_BLOCK("Tarnis::SendCmd(idSession[%s], cmdName[%s], cmd[%s], bProgress[%s])", qUtf8Printable(idSession),
        qUtf8Printable(cmdName), qUtf8Printable(cmd), boolName(bProgress));
    const QMutexLocker locker(&m_mutex);
    TarnisSession* session = m_sessions.value(idSession);
    LOG_DBG("    pSession[%x]", shortAddress(session));
    if (!session)
        session = startNamedSession(idSession);
    LOG_DBG("    creaate cmd");
    auto* const command = new TarnisCmd(cmd);
    LOG_DBG("        -> %p", static_cast<void*>(command));
    command->m_bProgress = bProgress;
    command->m_cmdName = cmdName;
    {
        LOG_BLOCK("    sending cmd, session[%s] cmdName[%s] cmd[%s]", qUtf8Printable(idSession),
            qUtf8Printable(cmdName), qUtf8Printable(cmd));
        session->send(command);
    }
    LOG_DBG("    return true");
    return true;
}

TarnisSession* Tarnis::startNamedSession(const QString& id)
{
    LOG_DBG("    creating new session");
    // A caller on another thread cannot set the session's parent; this is done later on the manager's thread.
    const bool ownThread = thread() == QThread::currentThread();
    auto* const session = new TarnisSession(m_host, m_port, m_prompt, ownThread ? parent() : nullptr);
    m_sessions[id] = session;
    session->SetId(id);
    tarnis::checkedConnect(session, SIGNAL(result(PTarnisCmd,QByteArray)), this, SLOT(onReply(PTarnisCmd,QByteArray)));
    tarnis::checkedConnect(session, SIGNAL(error(int,QString)), this, SLOT(onError(int,QString)));
    if (!ownThread) {
        session->moveToThread(thread());
        const auto adopt = [this, orphan = QPointer<TarnisSession>(session)] {
            if (orphan)
                orphan->setParent(parent());
        };
        QMetaObject::invokeMethod(this, adopt, Qt::QueuedConnection);
    }
    LOG_DBG("    new session start [%s]", qUtf8Printable(id));
    session->start(QThread::InheritPriority);
    return session;
}

void Tarnis::onReply(PTarnisCmd cmd, const QByteArray& result)
{
    if (!cmd || isCallOfClosedSession())
        return;
    LOG_BLOCK("Tarnis::onReply([%s/%s])", qUtf8Printable(cmd->m_cmdName), qUtf8Printable(cmd->m_cmd));
    {
        const QMutexLocker locker(&m_mutex);
        if (m_status == IDLE) {
            m_serverAddress = addressText(m_host, m_port);
            SetStatus(SERVER_CONNECTED);
            tarnis::SystemMessages::instance().post(
                { QT_TRANSLATE_NOOP("tarnis::SystemMessage", "Remote Tarnis Server Started on port %1"),
                    { QString::number(m_port) } });
        }
    }
    Q_EMIT onCmdReply(cmd->m_cmdName, cmd->m_cmd, result);
}

void Tarnis::onError(int socketError, const QString& message)
{
    if (isCallOfClosedSession())
        return;
    LOG_BLOCK("Tarnis::onError(socketError[%d], message[%s])", socketError, qUtf8Printable(message));
    tarnis::SystemMessages::instance().post({ QT_TRANSLATE_NOOP("tarnis::SystemMessage", "Socket Error %1 %2"),
        { QString::number(socketError), message } });
    SetStatus(SERVER_ERROR);
}

bool Tarnis::Shutdown()
{
    LOG_BLOCK("Shutdown");
    const QMutexLocker locker(&m_mutex);
    LOG_DBG("status: %d", static_cast<int>(m_status));
    if (m_status == IDLE) {
        LOG_DBG("IDLE");
        TARNIS_TRACE(QStringLiteral("Tarnis::Shutdown() called in status IDLE"));
        return true;
    }
    if (m_status == SHUTTING_DOWN) {
        LOG_DBG("SHUTTING_DOWN");
        TARNIS_TRACE(QStringLiteral("Tarnis::Shutdown() called in status SHUTTING DOWN"));
        return true;
    }
    if (m_status == HARDWARE_BUSY || m_status == STARTING || m_status > SHUTTING_DOWN)
        return false;
    LOG_BLOCK("shutting down");
    SetStatus(SHUTTING_DOWN);
    closeNamedSessions();
    closeLocalServer();
    return true;
}

void Tarnis::closeNamedSessions()
{
    // Request all ends first, so that each wait is short.
    for (TarnisSession* const session : std::as_const(m_sessions)) {
        if (session)
            tarnis::SessionEnd::request(*session);
    }
    for (auto entry = m_sessions.begin(); entry != m_sessions.end(); ++entry) {
        TarnisSession* const session = entry.value();
        if (!session)
            continue; // GetTarnisSession() was called with an unused name
        LOG_DBG("closing [%s]", qUtf8Printable(entry.key()));
        session->cancel();
        disconnect(session, SIGNAL(result(PTarnisCmd,QByteArray)), this, SLOT(onReply(PTarnisCmd,QByteArray)));
        disconnect(session, SIGNAL(error(int,QString)), this, SLOT(onError(int,QString)));
        delete session; // waits for its thread
        entry.value() = nullptr;
    }
    m_sessions.clear();
    outlastQueuedCalls();
}
