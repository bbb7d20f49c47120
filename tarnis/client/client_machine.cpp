// The client's state machine: connects, sends, reconnects and ends what is late.
#include "tarnis/client/client_p.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace tarnis {

namespace {

double secondsOf(std::chrono::milliseconds limit)
{
    return std::chrono::duration<double>(limit).count();
}

} // namespace

Client::Private::Private(Client& client, ClientOptions clientOptions)
    : q(client)
    , options(std::move(clientOptions))
    , connection(options.prompt, &client)
{
    connect(&connection, &Connection::opened, &q, [this] { onOpened(); });
    connect(&connection, &Connection::greeted, &q, [this](const QByteArray& text) { onGreeted(text); });
    connect(&connection, &Connection::received, &q,
        [this](qint64 size, qint64 expected, QByteArrayView piece) { onReceived(size, expected, piece); });
    connect(&connection, &Connection::sent, &q, [this] {
        if (underWay)
            underWay->lastByte = Clock::now();
    });
    connect(&connection, &Connection::replied, &q,
        [this](const QByteArray& data, const QString& text) { onReplied(data, text); });
    connect(&connection, &Connection::lost, &q, [this](const QString& why) { lose(why); });
}

QString Client::Private::problem() const
{
    if (options.prompt.isEmpty())
        return Client::tr("The prompt is empty. Without it the end of a reply cannot be recognised.");
    // Two lines would bring two replies.
    const QString& probe = options.keepAlive.command;
    const bool isOneLine = !probe.trimmed().isEmpty() && !probe.contains(QLatin1Char('\n')) && !isUpload(probe);
    if (options.keepAlive.interval > std::chrono::milliseconds(0) && !isOneLine)
        return Client::tr("The keep-alive command must be one line of text.");
    if (host.trimmed().isEmpty())
        return Client::tr("The name of the server's host is empty.");
    return port == 0 ? Client::tr("The port must be from 1 to 65535.") : QString();
}

void Client::Private::connectTo(const QString& newHost, quint16 newPort)
{
    if (isEnding)
        return;
    const QPointer<Client> alive(&q);
    const QString given = newHost; // NOLINT(performance-unnecessary-copy-initialization): may be the client's own
    disconnectAs(Client::tr("The client connects to another server."), true);
    // A receiver may have connected to what it knew before.
    if (alive && state != State::Disconnected)
        disconnectAs(Client::tr("The client connects to another server."), true);
    if (alive && state == State::Disconnected)
        begin(given, newPort);
}

/// The first attempt at an address.
void Client::Private::begin(const QString& newHost, quint16 newPort)
{
    host = newHost;
    port = newPort;
    failures = 0;
    if (const QString why = problem(); !why.isEmpty()) {
        leave(State::Failed, why, Reply::Outcome::Failed, why, false);
        return;
    }
    startAttempt();
    announce();
}

void Client::Private::awaitAddress(const QString& why)
{
    leave(State::Connecting, {}, Reply::Outcome::Cancelled, why, true);
}

void Client::Private::addressKnown(const QString& newHost, quint16 newPort)
{
    if (awaitsAddress)
        begin(newHost, newPort);
    else // closed or used by the host meanwhile
        connectTo(newHost, newPort);
}

void Client::Private::giveUp(const QString& why)
{
    leave(State::Disconnected, why, Reply::Outcome::Failed, why, true);
}

void Client::Private::reconnectNow()
{
    const bool mayTry = state == State::Reconnecting || (state == State::Failed && problem().isEmpty());
    if (!mayTry)
        return;
    startAttempt();
    announce();
}

void Client::Private::startAttempt()
{
    awaitsAddress = false;
    state = State::Connecting;
    phaseDue = after(Clock::now(), options.connectTimeout);
    connection.open(host.trimmed(), port);
    arm();
}

void Client::Private::disconnectAs(const QString& why, bool politely)
{
    leave(State::Disconnected, {}, Reply::Outcome::Cancelled, why, politely);
}

/// Ends the connection and every request, for a state without a connection.
void Client::Private::leave(
    State newState, const QString& newReason, Reply::Outcome outcome, const QString& why, bool politely)
{
    EndedRequests ended;
    endUnderWay(ended, outcome, why);
    EndedRequests queued = endQueue(outcome, why);
    std::ranges::move(queued, std::back_inserter(ended));
    underWay.reset();
    connection.close(politely);
    timer.stop();
    armed = never;
    phaseDue = never;
    cancelCheckDue = never;
    state = newState;
    awaitsAddress = newState == State::Connecting;
    reason = newReason;
    greeting.clear();
    const QPointer<Client> alive(&q);
    finishAll(std::move(ended));
    if (alive)
        announce();
}

void Client::Private::cancelAll()
{
    finishAll(endQueue(Reply::Outcome::Cancelled, Client::tr("The request was cancelled before it was sent.")));
}

void Client::Private::onOpened()
{
    state = State::Greeting;
    phaseDue = after(Clock::now(), options.greetingTimeout);
    arm();
    announce();
}

void Client::Private::onGreeted(const QByteArray& text)
{
    phaseDue = never;
    if (const Reply reply = replyOf(text, {}); !reply.isOk()) {
        connection.close(true);
        lose(reply.reason);
        return;
    }
    greeting = text;
    lastExchange = Clock::now();
    upSince = lastExchange;
    state = State::Ready;
    reason.clear();
    arm();
    advanceLater();
    const QPointer<Client> alive(&q);
    announce();
    if (alive)
        Q_EMIT q.connected();
    if (alive)
        advance();
}

/// Sends the next request also while a receiver runs a nested event loop, such as that of a message box. Queued, so
/// that a receiver without one may first cancel what waits.
void Client::Private::advanceLater()
{
    if (advancesLater || queue.isEmpty())
        return;
    advancesLater = true;
    QMetaObject::invokeMethod(
        &q,
        [this] {
            advancesLater = false;
            advance();
        },
        Qt::QueuedConnection);
}

/// Sends the next request if there is one, and updates the state.
void Client::Private::advance()
{
    EndedRequests cancelled;
    if (!underWay && connection.phase() == Connection::Phase::Idle) {
        if (!queue.isEmpty() && connection.hasStrayBytes()) {
            loseForStrayBytes();
            return;
        }
        while (!queue.isEmpty() && !underWay) {
            auto [key, request] = queue.takeFirst();
            if (request.isCancelled())
                cancelled.emplace_back(request, Reply());
            else
                send(key, std::move(request));
        }
        state = underWay ? State::Busy : State::Ready;
    }
    arm();
    const QPointer<Client> alive(&q);
    finishAll(std::move(cancelled));
    if (alive)
        announce();
}

/// The next reply could not be distinguished from them.
void Client::Private::loseForStrayBytes()
{
    connection.close(false);
    lose(Client::tr("The server sent bytes that no request asked for."));
}

void Client::Private::send(RequestKey key, Request request)
{
    const auto form =
        request.options.form == RequestOptions::Form::Binary ? ReplyFrame::Form::Binary : ReplyFrame::Form::Text;
    const QByteArray bytes = std::exchange(request.bytes, QByteArray());
    const qint64 maxSize = request.options.maxSize;
    underWay.emplace(UnderWay { key, std::move(request), Clock::now() });
    connection.exchange(bytes, form, maxSize);
}

void Client::Private::sendKeepAlive()
{
    if (connection.hasStrayBytes()) {
        loseForStrayBytes();
        return;
    }
    RequestOptions probe;
    probe.silence = options.keepAlive.silence;
    probe.maxSize = maxOwnReply;
    Request request {
        .bytes = requestBytes(options.keepAlive.command),
        .options = probe,
        .begin = Clock::now(),
        .due = never,
        .promise = std::nullopt,
        .watcher = nullptr,
    };
    send({ 0, nextNumber++ }, std::move(request));
    underWay->isKeepAlive = true;
}

void Client::Private::onReceived(qint64 size, qint64 expected, QByteArrayView piece)
{
    underWay->lastByte = Clock::now();
    if (!underWay->request.promise || !underWay->request.options.progress)
        return;
    qint64 received = size;
    if (expected >= 0) { // what follows the payload is no progress
        received = std::min(size, expected);
        if (std::exchange(underWay->reported, received) == received)
            return;
    }
    // A copy: the callback may end the request that holds it.
    const auto progress = underWay->request.options.progress;
    progress({ received, expected, piece });
}

void Client::Private::onReplied(const QByteArray& data, const QString& binaryText)
{
    Request request = std::move(underWay->request);
    underWay.reset();
    failures = 0;
    lastExchange = Clock::now();
    advanceLater();
    const QPointer<Client> alive(&q);
    Reply reply = replyOf(data, binaryText);
    reply.announced = connection.announcedLength();
    EndedRequest(request, std::move(reply)).finish();
    if (alive)
        advance();
}

EndedRequests Client::Private::endQueue(Reply::Outcome outcome, const QString& why)
{
    EndedRequests ended;
    for (Request& request : queue.takeAll())
        ended.emplace_back(request, endedAs(outcome, why));
    return ended;
}

void Client::Private::endUnderWay(EndedRequests& ended, Reply::Outcome outcome, const QString& why)
{
    if (underWay && underWay->request.promise)
        ended.emplace_back(underWay->request, endedAs(outcome, why));
}

/// The connection is closed already. `outcome`: of the request under way.
void Client::Private::lose(const QString& why, Reply::Outcome outcome)
{
    const bool wasUp = state == State::Ready || state == State::Busy;
    EndedRequests ended;
    endUnderWay(ended, outcome, why);
    underWay.reset();
    greeting.clear();
    reason = why;
    const ReconnectPolicy& policy = options.reconnect;
    const bool isAlwaysStable = policy.stableAfter <= std::chrono::milliseconds(0);
    if (wasUp && (isAlwaysStable || Clock::now() >= after(upSince, policy.stableAfter)))
        failures = 0;
    ++failures;
    if (policy.enabled && (policy.maxAttempts <= 0 || failures < policy.maxAttempts)) {
        state = State::Reconnecting;
        phaseDue = Clock::now() + policy.delayAfter(failures);
    } else {
        state = State::Failed;
        phaseDue = never;
        EndedRequests queued = endQueue(Reply::Outcome::Failed, why);
        std::ranges::move(queued, std::back_inserter(ended));
    }
    arm();
    const QPointer<Client> alive(&q);
    finishAll(std::move(ended));
    if (alive && wasUp)
        Q_EMIT q.connectionLost(why);
    if (alive)
        announce();
}

void Client::Private::onTimer()
{
    timer.stop();
    armed = never;
    const Clock::time_point now = Clock::now();
    EndedRequests expired;
    for (Request& request : queue.takeExpired(now)) {
        const double limit = secondsOf(request.options.deadline);
        expired.emplace_back(request,
            endedAs(Reply::Outcome::TimedOut,
                Client::tr("The request was not sent within its deadline of %1 s.").arg(limit)));
    }
    arm(); // a continuation may run an event loop of its own
    const QPointer<Client> alive(&q);
    finishAll(std::move(expired));
    if (alive && now >= cancelCheckDue)
        lookForCancelled(now);
    if (alive && !expireUnderWay(now) && alive)
        expirePhase(now);
    if (alive)
        arm();
}

/// Ends a request that the server has not answered in time. Its reply may still arrive, so the connection is closed.
/// Returns whether that happened; the client may have been deleted then.
bool Client::Private::expireUnderWay(Clock::time_point now)
{
    if (!underWay)
        return false;
    const Request& request = underWay->request;
    QString why;
    if (now >= request.due)
        why = Client::tr("The reply was not complete within the deadline of %1 s.")
                  .arg(secondsOf(request.options.deadline));
    else if (now >= after(underWay->lastByte, request.options.silence))
        why = Client::tr("The server was silent for %1 s.").arg(secondsOf(request.options.silence));
    else
        return false;
    connection.close(false);
    lose(why, Reply::Outcome::TimedOut);
    return true;
}

void Client::Private::expirePhase(Clock::time_point now)
{
    if (now >= phaseDue && state == State::Reconnecting) {
        startAttempt();
        announce();
    } else if (now >= phaseDue && state == State::Connecting) {
        connection.close(false);
        lose(Client::tr("No connection to the server within %1 s.").arg(secondsOf(options.connectTimeout)));
    } else if (now >= phaseDue && state == State::Greeting) {
        connection.close(false);
        lose(Client::tr("No prompt from the server within %1 s.").arg(secondsOf(options.greetingTimeout)));
    } else if (state == State::Ready && !underWay && now >= after(lastExchange, options.keepAlive.interval)) {
        sendKeepAlive();
    }
}

Clock::time_point Client::Private::nextDue() const
{
    Clock::time_point due = std::min({ queue.nextDue(), phaseDue, cancelCheckDue });
    if (underWay)
        due = std::min({ due, underWay->request.due, after(underWay->lastByte, underWay->request.options.silence) });
    else if (state == State::Ready)
        due = std::min(due, after(lastExchange, options.keepAlive.interval));
    return due;
}

/// Restarts the timer only for an earlier time: limits move with each reply, and a timer that fires early is cheaper
/// than a restart for each request.
void Client::Private::arm()
{
    const Clock::time_point due = nextDue();
    if (due >= armed)
        return;
    using std::chrono::milliseconds;
    const auto wait = std::chrono::ceil<milliseconds>(due - Clock::now());
    const auto bounded = std::clamp(wait, milliseconds(0), milliseconds(std::chrono::hours(24)));
    armed = due;
    timer.start(int(bounded.count()), bounded < std::chrono::seconds(2) ? Qt::PreciseTimer : Qt::CoarseTimer, &q);
}

} // namespace tarnis
