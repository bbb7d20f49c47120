// Construction, queue and user messages of a session. Its readers are in tarnissession_read.cpp, the worker's steps in
// tarnissession_run.cpp.
#include "tarnis/server/tarnissession.h"

#include "tarnis/foundation/log.h"
#include "tarnis/foundation/message.h"
#include "tarnis/server/sessionsocket_p.h"

#include <QAbstractSocket>
#include <QCoreApplication>

#include <atomic>

namespace {

// For block names: a null command is legal in the queue.
QByteArray nameOf(const TarnisCmd* cmd)
{
    return cmd ? cmd->m_cmdName.toUtf8() : QByteArray();
}

QByteArray textOf(const TarnisCmd* cmd)
{
    return cmd ? cmd->m_cmd.toUtf8() : QByteArray();
}

void showAssertion()
{
    tarnis::showMessage({ .kind = tarnis::MessageKind::Critical,
        .title = QStringLiteral("Assertion"),
        .text = QStringLiteral("Assertion failed: m_pDefaultPrompt != nullptr || m_pPrompt != nullptr") });
}

// The worker detects that the prompt is missing, but only the GUI thread can show a message box. The worker does not
// wait for the answer, because the GUI thread may itself be waiting for the worker.
void showAssertionOnGuiThread()
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (!application)
        return;
    if (QThread::currentThread() == application->thread())
        showAssertion();
    else
        QMetaObject::invokeMethod(application, showAssertion, Qt::QueuedConnection);
}

} // namespace

QByteArray* TarnisSession::m_pDefaultPrompt = nullptr;

TarnisSession::TarnisSession(const QString& host, quint16 port, const QByteArray* prompt, QObject* parent)
    : QThread(parent)
    , m_host(host)
    , m_port(port)
    , m_pPrompt(prompt)
    , m_stop(std::make_unique<tarnis::SessionStop>(m_bQuit))
{
    LOG_DBG("TarnisSession::TarnisSession(), this[%p]", static_cast<void*>(this));
}

TarnisSession::~TarnisSession()
{
    LOG_BLOCK("TarnisSession::~TarnisSession(), this[%p] id[%s]", static_cast<void*>(this), qUtf8Printable(m_id));
    m_stop->request();
    {
        LOG_BLOCK("waiting");
        wait();
    }
    {
        LOG_BLOCK("canceling");
        cancel();
    }
}

void TarnisSession::SetDefaultPrompt(QByteArray* prompt)
{
    std::atomic_ref(m_pDefaultPrompt).store(prompt);
}

void TarnisSession::setTimeout(int timeout)
{
    std::atomic_ref(m_timeout).store(timeout, std::memory_order_relaxed);
}

void TarnisSession::setMaxReplySize(qint64 bytes)
{
    std::atomic_ref(m_maxReplySize).store(bytes, std::memory_order_relaxed);
}

const QByteArray* TarnisSession::GetPrompt()
{
    if (m_pPrompt)
        return m_pPrompt;
    const QByteArray* const prompt = std::atomic_ref(m_pDefaultPrompt).load();
    if (!prompt) {
        LOG_BLOCK("xASSERT(m_pDefaultPrompt != nullptr || m_pPrompt != nullptr)");
        showAssertionOnGuiThread();
    }
    return prompt;
}

void TarnisSession::SetId(const QString& id)
{
    LOG_BLOCK("TarnisSession::SetId(), this[%p] id[%s]", static_cast<void*>(this), qUtf8Printable(id));
    const QMutexLocker locker(&m_mutex);
    m_id = id;
}

void TarnisSession::send(TarnisCmd* cmd)
{
    LOG_BLOCK("TarnisSession::send(), this[%p] cmdName[%s] cmd[%s]", static_cast<void*>(this), nameOf(cmd).constData(),
        textOf(cmd).constData());
    const QMutexLocker locker(&m_mutex);
    m_queue.append(PTarnisCmd(cmd));
}

void TarnisSession::sendPrevious(TarnisCmd* cmd)
{
    LOG_BLOCK("TarnisSession::sendPrevious(), this[%p] cmdName[%s] cmd[%s]", static_cast<void*>(this),
        nameOf(cmd).constData(), textOf(cmd).constData());
    const QMutexLocker locker(&m_mutex);
    m_queue.prepend(PTarnisCmd(cmd));
}

void TarnisSession::sendPrevious(const QList<TarnisCmd*>& cmds)
{
    LOG_BLOCK("TarnisSession::sendPrevious(), this[%p] size[%d]", static_cast<void*>(this), int(cmds.size()));
    const QMutexLocker locker(&m_mutex);
    for (auto cmd = cmds.crbegin(); cmd != cmds.crend(); ++cmd)
        m_queue.prepend(PTarnisCmd(*cmd));
}

void TarnisSession::cancel()
{
    LOG_BLOCK("TarnisSession::cancel(), this[%p]", static_cast<void*>(this));
    // The commands are destroyed outside the lock: the destructor of a host's command may use this session.
    QList<PTarnisCmd> dropped;
    const QMutexLocker locker(&m_mutex);
    m_queue.swap(dropped);
}

void TarnisSession::showErrorMessage(int socketError, const QString& message)
{
    LOG_BLOCK(
        "static TarnisSession::showErrorMessage(socketError[%d], message[%s])", socketError, qUtf8Printable(message));
    QString text;
    switch (socketError) {
    case QAbstractSocket::ConnectionRefusedError:
        text = tr("The connection was refused by the peer.");
        break;
    case QAbstractSocket::HostNotFoundError:
        text = tr("The host was not found.");
        break;
    default:
        text = tr("%1.").arg(message);
    }
    tarnis::showMessage({ .title = QCoreApplication::applicationName(), .text = text });
}
