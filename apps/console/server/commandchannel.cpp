#include "server/commandchannel.h"

#include <tarnis/server/sessionend.h>
#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarnissession.h>

#include <utility>

namespace console {

CommandChannel::CommandChannel(Tarnis& server, const QString& name, QObject* parent)
    : QObject(parent)
    , m_server(server)
    , m_name(name)
{
}

CommandChannel::~CommandChannel()
{
    blockSignals(true);
    drop();
}

TarnisSession* CommandChannel::session()
{
    if (m_session)
        return m_session;
    m_session = m_server.NewTarnisSession(nullptr);
    m_session->SetId(m_name);
    const int generation = ++m_generation;
    connect(m_session, &TarnisSession::result, this,
        [this, generation](const PTarnisCmd& command, const QByteArray& reply) {
            if (generation == m_generation)
                onResult(command, reply);
        });
    connect(m_session, &TarnisSession::error, this, [this, generation](int socketError, const QString& message) {
        if (generation == m_generation)
            onError(socketError, message);
    });
    connect(m_session, qOverload<const QByteArray&>(&TarnisSession::read), this,
        [this, generation](const QByteArray& piece) {
            if (generation == m_generation)
                Q_EMIT progress(piece);
        });
    m_session->start(QThread::InheritPriority);
    return m_session;
}

void CommandChannel::send(TarnisCmd* command)
{
    m_waiting.append({ command, { command->getCmdString(), command->m_cmdName, command->m_bBinary } });
    session()->send(command);
    Q_EMIT waitingChanged();
}

QList<Request> CommandChannel::drop()
{
    ++m_generation;
    tarnis::endInBackground(std::exchange(m_session, nullptr));
    return takeAll();
}

QList<Request> CommandChannel::waiting() const
{
    QList<Request> requests;
    for (const Entry& entry : m_waiting)
        requests.append(entry.request);
    return requests;
}

QList<Request> CommandChannel::takeAll()
{
    QList<Request> requests = waiting();
    m_waiting.clear();
    if (!requests.isEmpty())
        Q_EMIT waitingChanged();
    return requests;
}

void CommandChannel::onResult(const PTarnisCmd& command, const QByteArray& reply)
{
    if (!m_waiting.isEmpty() && m_waiting.constFirst().command == command.data())
        m_waiting.removeFirst();
    Q_EMIT replied(command, reply);
    Q_EMIT waitingChanged();
}

void CommandChannel::onError(int socketError, const QString& message)
{
    const QList<Request> unanswered = drop();
    Q_EMIT failed(socketError, message, unanswered);
}

} // namespace console
