// The requests of a client: how they are queued, and removed when their callers cancel them.
#include "tarnis/client/client_p.h"

#include <QThread>

#include <algorithm>

namespace tarnis {

namespace {

const QLatin1String refusalMark("NG:");

// The client is not notified when a caller cancels a future. A watcher reports it, but costs as much as a request. So
// only requests that wait longer than this get a watcher, and a long queue is scanned instead.
constexpr std::chrono::milliseconds lookInterval(50);
constexpr qsizetype maxWatched = 64;
constexpr qint64 largestMaxSize = qint64(1) << 48; // more than a reply can have; sums with it do not overflow

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
        // Receivers take an empty reason for success.
        if (reply.reason.isEmpty())
            reply.reason = Client::tr("The server refused the request without a reason.");
    }
    return reply;
}

/// The result of a request that is not sent.
std::optional<Reply> Client::Private::localReply(const QString& text) const
{
    if (QThread::currentThread() != q.thread())
        return endedAs(Reply::Outcome::Failed, Client::tr("The request was made on another thread than the client's."));
    if (text.isEmpty())
        return replyOf({}, {});
    if (isUpload(text)) {
        // Sessions refuse an upload in the same way.
        const QByteArray refusal = uploadRefusal(text);
        if (!refusal.isEmpty())
            return replyOf(refusal + '\n', {});
    } else if (text.contains(QLatin1Char('\n'))) {
        return endedAs(
            Reply::Outcome::Refused, Client::tr("The command contains a line feed. Send one command per request."));
    }
    if (state == State::Disconnected)
        return endedAs(
            Reply::Outcome::Failed, reason.isEmpty() ? Client::tr("The client is not connected to a server.") : reason);
    if (state == State::Failed)
        return endedAs(Reply::Outcome::Failed, reason);
    if (queue.size() >= std::max(options.maxQueued, 1))
        return endedAs(Reply::Outcome::Failed, Client::tr("%1 requests are already waiting.").arg(queue.size()));
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
    request.options.maxSize = std::clamp<qint64>(requestOptions.maxSize, 0, largestMaxSize);
    request.promise->start();
    QFuture<Reply> future = request.promise->future();
    const RequestKey key { -qint64(requestOptions.priority), nextNumber++ };
    queue.insert(key, std::move(request));
    if (cancelCheckDue == never)
        cancelCheckDue = Clock::now() + lookInterval;
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
        cancelCheckDue = never;
        queue.forEach([this](RequestKey key, Request& request) { watch(request, key); });
        if (underWay)
            watch(underWay->request, underWay->key);
    } else {
        cancelCheckDue = now + lookInterval;
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

} // namespace tarnis
