// The requests of a client that wait for their turn: by priority, then in order, each with a deadline.
#pragma once

#include "tarnis/client/reply.h"

#include <QByteArray>
#include <QFutureWatcher>
#include <QPromise>

#include <chrono>
#include <compare>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace tarnis {

/// Largest reply that is accepted to the requests which the library makes by itself: lines that are taken apart on the
/// event loop. A larger one ends the connection.
inline constexpr qint64 maxOwnReply = qint64(1) << 20;

using Clock = std::chrono::steady_clock;
constexpr Clock::time_point never = Clock::time_point::max();

/// The moment `limit` after `from`; never for a limit of 0 or less.
Clock::time_point after(Clock::time_point from, std::chrono::milliseconds limit);

/// Place of a request in the queue; smaller ones go first.
struct RequestKey {
    int rank = 0; ///< the negative of the priority
    quint64 number = 0; ///< ascending

    auto operator<=>(const RequestKey&) const = default;
};

struct Request {
    QByteArray bytes; ///< as they go on the wire
    RequestOptions options;
    Clock::time_point begin; ///< the call of request()
    Clock::time_point due = never; ///< the deadline
    /// Nothing for a keep-alive, or once the request has ended while the server still owes the reply.
    std::optional<QPromise<Reply>> promise;
    /// Reports that the caller has cancelled the future. Only requests that wait for long have one.
    std::unique_ptr<QFutureWatcher<Reply>> watcher;

    /// The caller has cancelled the future.
    bool isCancelled() const { return promise && promise->isCanceled(); }
};

/// A request that has ended, and how. Separate from the queue: its continuations may do anything to the client.
struct EndedRequest {
    std::optional<QPromise<Reply>> promise;
    Clock::time_point begin;
    Reply reply;

    EndedRequest(Request& request, Reply end);
    /// Ends the future. A second call does nothing.
    void finish();
};

using EndedRequests = std::vector<EndedRequest>;

/// In the order in which they were to be sent.
void finishAll(EndedRequests ended);

class RequestQueue {
public:
    bool isEmpty() const { return m_requests.empty(); }
    qsizetype size() const { return qsizetype(m_requests.size()); }
    /// The earliest deadline; never without one.
    Clock::time_point nextDue() const;

    void insert(RequestKey key, Request request);
    std::pair<RequestKey, Request> takeFirst(); ///< not of an empty queue
    std::optional<Request> take(RequestKey key);
    /// All whose deadline has passed, in the order of their places.
    std::vector<Request> takeExpired(Clock::time_point now);
    std::vector<Request> takeAll();
    /// All whose future the caller has cancelled, in the order of their places.
    std::vector<Request> takeCancelled();
    /// Calls `visit` with each key and request, in order.
    template <typename Visit> void forEach(const Visit& visit)
    {
        for (auto& [key, request] : m_requests)
            visit(key, request);
    }

private:
    std::vector<Request> take(const std::vector<RequestKey>& keys);
    std::map<RequestKey, Request> m_requests;
    std::set<std::pair<Clock::time_point, RequestKey>> m_deadlines; ///< of those that have one
};

} // namespace tarnis
