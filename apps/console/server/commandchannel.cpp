#include "server/commandchannel.h"

#include "server/servercontroller.h"

#include <tarnis/client/client.h>
#include <tarnis/foundation/log.h>

#include <utility>

namespace console {

namespace {

// A command has no deadline as long as the server responds.
constexpr std::chrono::seconds silence(40);
constexpr std::chrono::seconds connectTime(30);
constexpr qint64 maxReply = qint64(1) << 30;

// The user decides whether a lost command is sent again, so the client does not connect again by itself. An idle
// connection needs no watch: the status is polled on one of its own.
tarnis::ClientOptions clientOptions(const QByteArray& prompt)
{
    tarnis::ClientOptions options;
    options.prompt = prompt;
    options.connectTimeout = connectTime;
    options.greetingTimeout = silence;
    options.reconnect.enabled = false;
    options.keepAlive.interval = {};
    return options;
}

} // namespace

CommandChannel::CommandChannel(ServerController& controller, const QString& name, QObject* parent)
    : QObject(parent)
    , m_controller(controller)
    , m_name(name)
{
}

CommandChannel::~CommandChannel()
{
    blockSignals(true);
    drop();
}

void CommandChannel::connectClient()
{
    using State = tarnis::Client::State;
    const bool isUsable = m_client && m_client->state() != State::Failed && m_client->state() != State::Disconnected;
    if (isUsable)
        return;
    ++m_generation;
    const ManagedTarnis& server = m_controller.tarnis();
    LOG_DBG("%s: connecting to %s:%d", qUtf8Printable(m_name), qUtf8Printable(server.host()), server.port());
    m_client = std::make_unique<tarnis::Client>(clientOptions(m_controller.prompt()));
    m_client->connectTo(server.host(), server.port());
}

void CommandChannel::send(TarnisCmd* command)
{
    const PTarnisCmd owned(command);
    const QString text = command->getCmdString();
    m_waiting.append({ command, { text, command->m_cmdName, command->m_bBinary } });
    connectClient();
    const int generation = m_generation;
    Q_EMIT waitingChanged(); // before the request, which may end at once
    if (generation != m_generation)
        return; // dropped by a receiver
    LOG_DBG("%s: %s", qUtf8Printable(m_name), qUtf8Printable(command->m_cmd.section(u'\n', 0, 0)));
    tarnis::RequestOptions options { .deadline = {}, .silence = silence, .maxSize = maxReply };
    options.form = command->m_bBinary ? tarnis::RequestOptions::Form::Binary : tarnis::RequestOptions::Form::Text;
    if (command->m_bProgress)
        options.progress = [this, generation](const tarnis::Progress& piece) {
            if (generation == m_generation && !piece.piece.isEmpty())
                Q_EMIT progress(piece.piece.toByteArray());
        };
    m_client->request(text, options).then([this, generation, owned](const tarnis::Reply& reply) {
        if (generation == m_generation)
            onEnded(owned, reply);
    });
}

QList<Request> CommandChannel::drop()
{
    ++m_generation;
    m_client.reset();
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

void CommandChannel::onEnded(const PTarnisCmd& command, const tarnis::Reply& reply)
{
    using Outcome = tarnis::Reply::Outcome;
    if (reply.outcome != Outcome::Replied && reply.outcome != Outcome::Refused) {
        onLost(reply.reason);
        return;
    }
    // A server that does not know a command refuses it in text, although a payload was expected.
    const bool isTextOnly = command->m_bBinary && reply.binaryText.isNull();
    command->m_replyText = isTextOnly ? QString::fromUtf8(reply.data) : reply.binaryText;
    onReplied(command, isTextOnly ? QByteArray() : reply.data);
}

void CommandChannel::onReplied(const PTarnisCmd& command, const QByteArray& reply)
{
    if (!m_waiting.isEmpty() && m_waiting.constFirst().command == command.data())
        m_waiting.removeFirst();
    Q_EMIT replied(command, reply);
    Q_EMIT waitingChanged();
}

void CommandChannel::onLost(const QString& reason)
{
    LOG_ERR("%s: %s", qUtf8Printable(m_name), qUtf8Printable(reason));
    const QString message = reason.endsWith(u'.') ? reason.chopped(1) : reason;
    const QList<Request> unanswered = drop();
    Q_EMIT failed(message, unanswered);
}

} // namespace console
