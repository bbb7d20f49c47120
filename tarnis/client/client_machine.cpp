// The client's state machine: connects, sends, expires and ends requests.
#include "tarnis/client/client_p.h"

#include <QPointer>
#include <QRandomGenerator>
#include <QThread>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

const QLatin1String refusalMark("NG:");

// The client is not notified when a caller cancels a future. A watcher reports it, but costs as much as a request. So
// only requests that wait longer than this get a watcher, and a long queue is scanned instead.
constexpr std::chrono::milliseconds lookInterval(50);
constexpr qsizetype maxWatched = 64;

double secondsOf(std::chrono::milliseconds limit)
{
    return std::chrono::duration<double>(limit).count();
}

} // namespace

Reply endedAs(Reply::Outcome outcome, const QString& why)
{
    Reply reply;
    reply.outcome = outcome;
    reply.reason = why;
    return reply;
}

QFuture<Reply> endedFuture(Reply reply)
{
    QPromise<Reply> promise;
    promise.start();
    promise.addResult(std::move(reply));
    promise.finish();
    return promise.future();
}

std::chrono::milliseconds reconnectDelay(const ReconnectPolicy& policy, int failures, double share)
{
    const auto first = static_cast<double>(std::max<qint64>(policy.first.count(), 0));
    const auto longest = static_cast<double>(std::max<qint64>(policy.longest.count(), 0));
    const double full = std::min(longest, first * std::pow(std::max(policy.factor, 1.0), std::max(failures, 1) - 1));
    const double kept = 1.0 - std::clamp(policy.jitter, 0.0, 1.0) * std::clamp(share, 0.0, 1.0);
    return std::chrono::milliseconds(std::llround(full * kept));
}

Reply replyOf(const QByteArray& data, const QString& binaryText)
{
    Reply reply;
    reply.outcome = Reply::Outcome::Replied;
    reply.data = data;
    reply.binaryText = binaryText;
    const bool isRefused =
        binaryText.isNull() ? data.startsWith(refusalMark.data()) : binaryText.startsWith(refusalMark);
    if (isRefused) {
        reply.outcome = Reply::Outcome::Refused;
        reply.reason = reply.text().mid(refusalMark.size()).trimmed();
    }
    return reply;
}

Client::Private::Private(Client& client, ClientOptions clientOptions)
    : q(client)
    , options(std::move(clientOptions))
    , connection(options.prompt, &client)
{
    connect(&connection, &Connection::opened, &q, [this] { onOpened(); });
    connect(&connection, &Connection::greeted, &q, [this](const QByteArray& text) { onGreeted(text); });
    connect(&connection, &Connection::received, &q,
        [this](qint64 size, qint64 expected, QByteArrayView piece) { onReceived(size, expected, piece); });
    connect(&connection, &Connection::replied, &q,
        [this](const QByteArray& data, const QString& text) { onReplied(data, text); });
    connect(&connection, &Connection::lost, &q, [this](const QString& why) { lose(why); });
}

QString Client::Private::addressProblem() const
{
    if (options.prompt.isEmpty())
        return Client::tr("The prompt is empty. Without it the end of a reply cannot be recognised.");
    if (host.trimmed().isEmpty())
        return Client::tr("The name of the server's host is empty.");
    return port == 0 ? Client::tr("The port must be from 1 to 65535.") : QString();
}

void Client::Private::connectTo(const QString& newHost, quint16 newPort)
{
    const QPointer<Client> alive(&q);
    disconnectAs(Client::tr("The client connects to another server."), true);
    if (!alive)
        return;
    host = newHost;
    port = newPort;
    failures = 0;
    if (const QString problem = addressProblem(); !problem.isEmpty()) {
        state = State::Failed;
        reason = problem;
    } else {
        startAttempt();
    }
    announce();
}

void Client::Private::reconnectNow()
{
    const bool mayTry = state == State::Reconnecting || (state == State::Failed && addressProblem().isEmpty());
    if (!mayTry)
        return;
    startAttempt();
    announce();
}

void Client::Private::startAttempt()
{
    state = State::Connecting;
    phaseDue = after(Clock::now(), options.connectTimeout);
    connection.open(host.trimmed(), port);
    arm();
}

void Client::Private::disconnectAs(const QString& why, bool politely)
{
    EndedRequests ended;
    endUnderWay(ended, Reply::Outcome::Cancelled, why);
    EndedRequests queued = endQueue(Reply::Outcome::Cancelled, why);
    std::ranges::move(queued, std::back_inserter(ended));
    underWay.reset();
    connection.close(politely);
    timer.stop();
    armed = never;
    phaseDue = never;
    lookDue = never;
    state = State::Disconnected;
    reason.clear();
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

/// The result of a request that is not sent.
std::optional<Reply> Client::Private::localReply(const QString& text) const
{
    if (QThread::currentThread() != q.thread())
        return endedAs(Reply::Outcome::Failed, Client::tr("The request was made on another thread than the client's."));
    if (text.isEmpty())
        return replyOf({}, {});
    if (isUpload(text)) {
        // Sessions reject an upload in the same way.
        const QByteArray refusal = uploadRefusal(text);
        if (!refusal.isEmpty())
            return replyOf(refusal + '\n', {});
    } else if (text.contains(QLatin1Char('\n'))) {
        return endedAs(
            Reply::Outcome::Refused, Client::tr("The command holds a line feed. Send one command per request."));
    }
    if (state == State::Disconnected)
        return endedAs(Reply::Outcome::Failed, Client::tr("The client is not connected to a server."));
    if (state == State::Failed)
        return endedAs(Reply::Outcome::Failed, reason);
    if (queue.size() >= options.maxQueued)
        return endedAs(Reply::Outcome::Failed, Client::tr("%1 requests wait already.").arg(queue.size()));
    return std::nullopt;
}

QFuture<Reply> Client::Private::request(const QString& text, const RequestOptions& requestOptions)
{
    if (std::optional<Reply> reply = localReply(text))
        return endedFuture(*std::move(reply));
    Request request { .bytes = requestBytes(text),
        .options = requestOptions,
        .begin = Clock::now(),
        .due = never,
        .promise = QPromise<Reply>(),
        .watcher = nullptr };
    request.due = after(request.begin, requestOptions.deadline);
    request.promise->start();
    QFuture<Reply> future = request.promise->future();
    const RequestKey key { -requestOptions.priority, nextNumber++ };
    queue.insert(key, std::move(request));
    if (lookDue == never)
        lookDue = Clock::now() + lookInterval;
    advance();
    return future;
}

void Client::Private::lookForCancelled(Clock::time_point now)
{
    EndedRequests cancelled;
    for (Request& request : queue.takeCancelled())
        cancelled.emplace_back(request, Reply());
    if (underWay && underWay->request.isCancelled())
        cancelled.emplace_back(underWay->request, Reply());
    if (queue.size() <= maxWatched) {
        lookDue = never;
        queue.forEach([this](RequestKey key, Request& request) { watch(request, key); });
        if (underWay)
            watch(underWay->request, underWay->key);
    } else {
        lookDue = now + lookInterval;
    }
    finishAll(std::move(cancelled));
}

void Client::Private::watch(Request& request, RequestKey key)
{
    if (request.watcher || !request.promise)
        return;
    request.watcher = std::make_unique<QFutureWatcher<Reply>>();
    // Queued: the watcher is deleted with its request.
    connect(
        request.watcher.get(), &QFutureWatcherBase::canceled, &q, [this, key] { onCancelled(key); },
        Qt::QueuedConnection);
    request.watcher->setFuture(request.promise->future());
}

void Client::Private::onCancelled(RequestKey key)
{
    if (std::optional<Request> waiting = queue.take(key))
        EndedRequest(*waiting, {}).finish();
    else if (underWay && underWay->key == key)
        EndedRequest(underWay->request, {}).finish();
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
    if (text.startsWith(refusalMark.data())) {
        connection.close(true);
        lose(replyOf(text, {}).reason);
        return;
    }
    greeting = text;
    lastExchange = Clock::now();
    state = State::Ready;
    reason.clear();
    arm();
    const QPointer<Client> alive(&q);
    announce();
    if (alive)
        Q_EMIT q.connected();
    if (alive)
        advance();
}

/// Sends the next request if there is one, and updates the state.
void Client::Private::advance()
{
    EndedRequests cancelled;
    if (!underWay && connection.phase() == Connection::Phase::Idle) {
        if (!queue.isEmpty() && connection.hasStrayBytes()) {
            connection.close(false);
            lose(Client::tr("The server sent bytes that no request asked for."));
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
    // A copy: the callback may end the request that holds it.
    const auto progress = underWay->request.options.progress;
    progress({ size, expected, piece });
}

void Client::Private::onReplied(const QByteArray& data, const QString& binaryText)
{
    Request request = std::move(underWay->request);
    underWay.reset();
    failures = 0;
    lastExchange = Clock::now();
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

/// The connection is already closed.
void Client::Private::lose(const QString& why)
{
    const bool wasUp = state == State::Ready || state == State::Busy;
    EndedRequests ended;
    endUnderWay(ended, Reply::Outcome::Failed, why);
    underWay.reset();
    greeting.clear();
    reason = why;
    ++failures;
    const ReconnectPolicy& policy = options.reconnect;
    if (policy.enabled && (policy.maxAttempts <= 0 || failures < policy.maxAttempts)) {
        state = State::Reconnecting;
        phaseDue = Clock::now() + reconnectDelay(policy, failures, QRandomGenerator::global()->generateDouble());
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
    const QPointer<Client> alive(&q);
    finishAll(std::move(expired));
    if (alive && now >= lookDue)
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
    const QPointer<Client> alive(&q);
    EndedRequest(underWay->request, endedAs(Reply::Outcome::TimedOut, why)).finish();
    // A continuation may have connected again.
    if (alive && underWay && connection.phase() == Connection::Phase::Closed)
        lose(why);
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
    Clock::time_point due = std::min({ queue.nextDue(), phaseDue, lookDue });
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

void Client::Private::announce()
{
    if (state == announcedState && reason == announcedReason)
        return;
    announcedState = state;
    announcedReason = reason;
    Q_EMIT q.stateChanged(announcedState, announcedReason);
}

} // namespace tarnis
