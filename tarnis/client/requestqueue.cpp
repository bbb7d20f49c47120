#include "tarnis/client/requestqueue_p.h"

#include <algorithm>

namespace tarnis {

Clock::time_point after(Clock::time_point from, std::chrono::milliseconds limit)
{
    using std::chrono::milliseconds;
    // A limit beyond the clock's range means no limit.
    if (limit <= milliseconds(0) || limit >= std::chrono::duration_cast<milliseconds>(never - from))
        return never;
    return from + limit;
}

EndedRequest::EndedRequest(Request& request, Reply end)
    : promise(std::exchange(request.promise, std::nullopt))
    , begin(request.begin)
    , reply(std::move(end))
{
    // Without it the watcher would get events about the end.
    request.watcher.reset();
}

void EndedRequest::finish()
{
    std::optional<QPromise<Reply>> ending = std::exchange(promise, std::nullopt);
    if (!ending)
        return;
    reply.elapsed = Clock::now() - begin;
    ending->addResult(std::move(reply));
    ending->finish();
}

void finishAll(EndedRequests ended)
{
    for (EndedRequest& request : ended)
        request.finish();
}

Clock::time_point RequestQueue::nextDue() const
{
    return m_deadlines.empty() ? never : m_deadlines.begin()->first;
}

void RequestQueue::insert(RequestKey key, Request request)
{
    if (request.due != never)
        m_deadlines.emplace(request.due, key);
    m_requests.emplace(key, std::move(request));
}

std::pair<RequestKey, Request> RequestQueue::takeFirst()
{
    const RequestKey key = m_requests.begin()->first;
    return { key, *take(key) };
}

std::optional<Request> RequestQueue::take(RequestKey key)
{
    auto node = m_requests.extract(key);
    if (node.empty())
        return std::nullopt;
    m_deadlines.erase({ node.mapped().due, key });
    return std::move(node.mapped());
}

std::vector<Request> RequestQueue::takeExpired(Clock::time_point now)
{
    std::vector<RequestKey> keys;
    for (auto deadline = m_deadlines.begin(); deadline != m_deadlines.end() && deadline->first <= now; ++deadline)
        keys.push_back(deadline->second);
    std::ranges::sort(keys);
    return take(keys);
}

std::vector<Request> RequestQueue::takeCancelled()
{
    std::vector<RequestKey> keys;
    for (const auto& [key, request] : m_requests) {
        if (request.isCancelled())
            keys.push_back(key);
    }
    return take(keys);
}

std::vector<Request> RequestQueue::take(const std::vector<RequestKey>& keys)
{
    std::vector<Request> requests;
    requests.reserve(keys.size());
    for (const RequestKey& key : keys)
        requests.push_back(*take(key));
    return requests;
}

std::vector<Request> RequestQueue::takeAll()
{
    std::vector<Request> all;
    all.reserve(m_requests.size());
    for (auto& [key, request] : m_requests)
        all.push_back(std::move(request));
    m_requests.clear();
    m_deadlines.clear();
    return all;
}

} // namespace tarnis
