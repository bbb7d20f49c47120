// The worker of a session: connection and greeting, command loop, closing message.
#include "tarnis/server/tarnissession.h"

#include "tarnis/foundation/log.h"
#include "tarnis/server/sessionsocket_p.h"
#include "tarnis/server/wire_p.h"

#include <cstdlib>
#include <typeinfo>

namespace {

constexpr int connectTimeoutMs = 30000;
constexpr int idlePauseMs = 50;

// Without an event loop, nothing would send the bytes that are in the socket's buffer when it is closed.
void writeFarewell(QTcpSocket& socket)
{
    socket.write(tarnis::farewell);
    socket.flush();
}

// An exception in a session is fatal for the application: there is no consistent state to return to.
[[noreturn]] void endProcess()
{
    closelog();
    QThread::currentThread()->exit(1);
    std::abort();
}

} // namespace

/// One run of a session, on its worker thread.
class TarnisSession::Worker {
public:
    explicit Worker(TarnisSession& session)
        : m_session(session)
        , m_socket(*session.m_stop)
    {
    }
    void run();

private:
    bool openConnection();
    bool readGreeting();
    void serveQueue();
    PTarnisCmd takeCommand();
    bool handle(const PTarnisCmd& cmd);
    bool exchange(TarnisCmd& cmd, const QString& request);
    bool readReply(TarnisCmd& cmd);
    bool isQuitting() const { return m_session.m_stop->isQuitting(); }

    TarnisSession& m_session;
    tarnis::SessionSocket m_socket;
    QByteArray m_reply;
    QString m_id; ///< the session's label when the command was taken
};

void TarnisSession::Worker::run()
{
    if (!openConnection() || !readGreeting())
        return;
    {
        LOG_BLOCK("emit connected()");
        Q_EMIT m_session.connected();
    }
    LOG_DBG("start thread loop");
    serveQueue();
    LOG_DBG("exit loop");
    if (m_socket.isOpen()) {
        LOG_BLOCK("close socket");
        writeFarewell(m_socket);
        m_socket.close();
    }
    LOG_DBG("exit TarnisSession::run()");
}

bool TarnisSession::Worker::openConnection()
{
    LOG_DBG("connecting to %s:%d", qUtf8Printable(m_session.m_host), m_session.m_port);
    m_socket.connectToHost(
        m_session.m_host, m_session.m_port, QIODeviceBase::ReadWrite, QAbstractSocket::AnyIPProtocol);
    LOG_DBG("wait for connected");
    if (m_socket.waitForConnected(connectTimeoutMs)) {
        LOG_DBG("connected");
        return true;
    }
    if (isQuitting()) {
        LOG_DBG("quit");
        return false;
    }
    LOG_ERR("socket error: [%d][%s]", int(m_socket.error()), qUtf8Printable(m_socket.errorString()));
    Q_EMIT m_session.error(m_socket.error(), m_socket.errorString());
    return false;
}

bool TarnisSession::Worker::readGreeting()
{
    LOG_DBG("read first prompt");
    if (m_session.read(m_socket, m_reply, false))
        return true;
    LOG_ERR("socket read error");
    // Read before the closing message is sent: writing to a connection that the server has closed would change both.
    const int code = m_socket.error();
    const QString message = m_socket.errorString();
    if (m_socket.isOpen()) {
        LOG_DBG("socke is open. write close");
        writeFarewell(m_socket);
        LOG_DBG("socket close");
        m_socket.close();
    } else {
        LOG_DBG("socke is not open");
    }
    if (m_session.isTooLarge(m_reply.size()))
        return false; // already reported by the reader; the socket has no error
    // After a timeout the reader has already emitted the error. Receivers get it twice.
    LOG_BLOCK("emit error(%d, %s)", code, qUtf8Printable(message));
    Q_EMIT m_session.error(code, message);
    return false;
}

void TarnisSession::Worker::serveQueue()
{
    while (!isQuitting()) {
        LOG_BLOCK("loop");
        const PTarnisCmd cmd = takeCommand();
        if (isQuitting()) {
            LOG_DBG("quit");
            break;
        }
        if (!cmd) {
            LOG_BLOCK("cmd is null, sleep 50");
            m_session.m_stop->sleep(idlePauseMs);
            continue;
        }
        if (!handle(cmd))
            break;
    }
}

PTarnisCmd TarnisSession::Worker::takeCommand()
{
    LOG_BLOCK("locking");
    const QMutexLocker locker(&m_session.m_mutex);
    if (m_session.m_queue.isEmpty())
        return {};
    m_id = m_session.m_id;
    return m_session.m_queue.takeFirst();
}

// False when the session has to end.
bool TarnisSession::Worker::handle(const PTarnisCmd& cmd)
{
    LOG_BLOCK("handle cmd: id[%s] name[%s] cmd[%s]", qUtf8Printable(m_id), qUtf8Printable(cmd->m_cmdName),
        qUtf8Printable(cmd->m_cmd));
    m_reply.clear();
    const QString request = cmd->getCmdString();
    if (!request.isEmpty() && !exchange(*cmd, request))
        return false;
    if (isQuitting()) {
        LOG_BLOCK("quite");
        return false;
    }
    {
        LOG_BLOCK("emit result()");
        Q_EMIT m_session.result(cmd, m_reply);
    }
    // The receivers own the bytes now; a reference kept here would make an idle session hold its last reply.
    m_reply.clear();
    LOG_BLOCK("sleep %d", cmd->m_afterSleep);
    if (cmd->m_afterSleep > 0)
        m_session.m_stop->sleep(cmd->m_afterSleep);
    return true;
}

bool TarnisSession::Worker::exchange(TarnisCmd& cmd, const QString& request)
{
    LOG_BLOCK("cmd is not empty");
    if (tarnis::isUpload(request)) {
        LOG_BLOCK("txfile");
        const QByteArray refusal = tarnis::uploadRefusal(request);
        if (refusal.isEmpty()) {
            m_socket.write(tarnis::requestBytes(request));
        } else {
            LOG_DBG("%s", refusal.constData());
            m_reply = refusal + '\n';
        }
    } else {
        LOG_BLOCK("write");
        m_socket.write(tarnis::requestBytes(request));
    }
    // No flush: the wait for the reply sends the bytes. A refused upload already has its reply.
    return !m_reply.isEmpty() || readReply(cmd);
}

bool TarnisSession::Worker::readReply(TarnisCmd& cmd)
{
    LOG_BLOCK("receive response");
    if (!cmd.m_bBinary)
        return m_session.read(m_socket, m_reply, cmd.m_bProgress);
    QString text;
    if (!m_session.readBinary(m_socket, m_reply, text))
        return false;
    cmd.m_replyText = text;
    return true;
}

void TarnisSession::run()
{
    LOG_BLOCK("TarnisSession::run(), this[%p]", static_cast<void*>(this));
    try {
        LOG_BLOCK("try block");
        Worker(*this).run();
    } catch (const std::exception& exception) {
        const char* type = typeid(exception).name();
        if (*type == '*')
            ++type;
        LOG_ERR("exit with %s[%s]", type, exception.what());
        endProcess();
    } catch (...) {
        LOG_ERR("exit with unknown error");
        endProcess();
    }
}
