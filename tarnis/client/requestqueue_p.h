// The waiting requests of a client, ordered by priority and time of arrival, each with a deadline.
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

/// Largest accepted reply to the library's own requests, whose lines are parsed on the event loop. A larger one ends
/// the connection.
inline constexpr qint64 maxOwnReply = qint64(1) << 20;

using Clock = std::chrono::steady_clock;
constexpr Clock::time_point never = Clock::time_point::max();

/// The moment `limit` after `from`; never for a limit of 0 or less, or beyond the range of the clock.
Clock::time_point after(Clock::time_point from, std::chrono::milliseconds limit);

/// Position of a request in the queue; smaller keys are sent first.
struct RequestKey {
    qint64 rank = 0; ///< the negative of the priority, which may be the smallest int
    quint64 number = 0; ///< ascending

    auto operator<=>(const RequestKey&) const = default;
};

struct Request {
    QByteArray bytes; ///< the encoded request
    RequestOptions options;
    Clock::time_point begin; ///< time of the call of request()
    Clock::time_point due = never; ///< the deadline
    /// Empty for a keep-alive, and after the request has ended while its reply is still expected.
    std::optional<QPromise<Reply>> promise;
    /// Reports that the caller has cancelled the future. Only requests that wait for a long time have one.
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

/// Finishes them in sending order.
void finishAll(EndedRequests ended);

class RequestQueue {
public:
    bool isEmpty() const { return m_requests.empty(); }
    qsizetype size() const { return qsizetype(m_requests.size()); }
    /// The earliest deadline; `never` without one.
    Clock::time_point nextDue() const;

    void insert(RequestKey key, Request request);
    std::pair<RequestKey, Request> takeFirst(); ///< must not be empty
    std::optional<Request> take(RequestKey key);
    /// Removes all requests whose deadline has passed; returns them in queue order.
    std::vector<Request> takeExpired(Clock::time_point now);
    std::vector<Request> takeAll();
    /// Removes all requests whose future was cancelled by the caller; returns them in queue order.
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
    std::set<std::pair<Clock::time_point, RequestKey>> m_deadlines; ///< deadlines of the requests that have one
};

} // namespace tarnis
