#include "tarnis/client/histogrampoller.h"

#include "tarnis/client/timerlimit_p.h"

#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

namespace tarnis {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

milliseconds since(Clock::time_point moment)
{
    return std::chrono::duration_cast<milliseconds>(Clock::now() - moment);
}

/// A poller and the intervals that its viewers have requested.
struct SharedPoller {
    HistogramPoller poller;
    std::multiset<milliseconds> intervals = {};
};

/// One caller of HistogramPoller::shared(). The poller follows the shortest interval of those that exist.
class Viewer {
public:
    Viewer(std::shared_ptr<SharedPoller> shared, milliseconds interval)
        : m_shared(std::move(shared))
        , m_interval(m_shared->intervals.insert(interval))
    {
        if (m_interval == m_shared->intervals.begin())
            m_shared->poller.setInterval(interval);
    }
    ~Viewer()
    {
        auto& intervals = m_shared->intervals;
        const milliseconds former = *intervals.begin();
        intervals.erase(m_interval);
        if (!intervals.empty() && *intervals.begin() != former)
            m_shared->poller.setInterval(*intervals.begin());
    }
    Q_DISABLE_COPY_MOVE(Viewer)

    HistogramPoller& poller() const { return m_shared->poller; }

private:
    std::shared_ptr<SharedPoller> m_shared;
    std::multiset<milliseconds>::iterator m_interval;
};

/// The shared pollers of a client, as its child.
class PollerRegistry : public QObject {
public:
    using QObject::QObject;
    struct Entry {
        QString command;
        HistogramFormat format;
        std::weak_ptr<SharedPoller> poller;
    };
    std::vector<Entry> entries;

    static PollerRegistry& of(Client& client)
    {
        for (QObject* child : client.children()) {
            if (auto* const registry = dynamic_cast<PollerRegistry*>(child))
                return *registry;
        }
        return *new PollerRegistry(&client);
    }
};

} // namespace

class TARNIS_NO_EXPORT HistogramPoller::Private {
public:
    /// Receives the results of the thread pool. The poller may be destroyed while a reply is decoded.
    struct Mailbox {
        std::mutex mutex;
        HistogramPoller* receiver = nullptr; ///< guarded by mutex
    };

    Private(HistogramPoller& poller, Client& pollerClient, const QString& text, const HistogramFormat& expected,
        const PollOptions& pollOptions);
    void poll();
    void onReply(const Reply& reply, quint64 number);
    void decode(const Reply& reply, quint64 number);
    void onDecoded(const HistogramReply& histogram, quint64 number);
    void pollLater();
    void onFailed(const QString& why);
    void onStale();

    HistogramPoller& q;
    QPointer<Client> client;
    const QString command;
    const HistogramFormat format;
    PollOptions options;
    std::shared_ptr<Mailbox> mailbox = std::make_shared<Mailbox>();
    QTimer pollTimer;
    QTimer staleTimer;
    bool isRunning = false;
    quint64 number = 0; ///< identifies the poll under way; results of earlier ones are dropped
    Clock::time_point begin; ///< time of the last poll
    Clock::time_point lastGood; ///< time of the last histogram's request, or of start()
    HistogramReply last;
    QString lastFailure; ///< empty after a histogram
};

HistogramPoller::Private::Private(HistogramPoller& poller, Client& pollerClient, const QString& text,
    const HistogramFormat& expected, const PollOptions& pollOptions)
    : q(poller)
    , client(&pollerClient)
    , command(text)
    , format(expected)
    , options(pollOptions)
    , pollTimer(&poller)
    , staleTimer(&poller)
{
    mailbox->receiver = &poller;
    options.interval = std::clamp(options.interval, milliseconds(1), maxTimerRun);
    pollTimer.setSingleShot(true);
    connect(&pollTimer, &QTimer::timeout, &q, [this] { poll(); });
    connect(&staleTimer, &QTimer::timeout, &q, [this] { onStale(); });
}

void HistogramPoller::Private::poll()
{
    if (!client) {
        q.stop();
        onFailed(HistogramPoller::tr("The connection to the server was closed."));
        return;
    }
    begin = Clock::now();
    RequestOptions request;
    request.form = RequestOptions::Form::Binary;
    request.deadline = options.deadline;
    request.silence = options.silence;
    request.maxSize = options.maxSize;
    request.priority = options.priority;
    // The future may have ended already, and the call below may have deleted the poller.
    client->request(command, request).then([poller = QPointer(&q), number = ++this->number](const Reply& reply) {
        if (poller)
            poller->d->onReply(reply, number);
    });
}

void HistogramPoller::Private::onReply(const Reply& reply, quint64 replyNumber)
{
    if (replyNumber != number || !isRunning)
        return;
    if (reply.isOk()) {
        decode(reply, replyNumber);
        return;
    }
    pollLater();
    onFailed(reply.reason);
}

void HistogramPoller::Private::decode(const Reply& reply, quint64 replyNumber)
{
    QThreadPool::globalInstance()->start([box = mailbox, reply, expected = format, replyNumber] {
        const HistogramReply histogram = HistogramReply::parse(reply.data, reply.binaryText, expected);
        const std::lock_guard lock(box->mutex);
        HistogramPoller* const poller = box->receiver;
        if (!poller)
            return;
        QMetaObject::invokeMethod(
            poller, [poller, histogram, replyNumber] { poller->d->onDecoded(histogram, replyNumber); },
            Qt::QueuedConnection);
    });
}

void HistogramPoller::Private::onDecoded(const HistogramReply& histogram, quint64 replyNumber)
{
    if (replyNumber != number || !isRunning)
        return;
    pollLater();
    if (!histogram.isOk()) {
        onFailed(histogram.reason);
        return;
    }
    last = histogram;
    lastFailure.clear();
    lastGood = begin;
    if (staleTimer.interval() > 0)
        staleTimer.start();
    Q_EMIT q.updated(histogram);
}

void HistogramPoller::Private::pollLater()
{
    pollTimer.start(std::max(options.interval - since(begin), milliseconds(0)));
}

void HistogramPoller::Private::onFailed(const QString& why)
{
    if (why == lastFailure)
        return;
    lastFailure = why;
    Q_EMIT q.failed(why);
}

void HistogramPoller::Private::onStale()
{
    Q_EMIT q.stale(since(lastGood));
}

HistogramPoller::HistogramPoller(
    Client& client, const QString& command, const HistogramFormat& format, const PollOptions& options, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this, client, command, format, options))
{
}

HistogramPoller::~HistogramPoller()
{
    const std::lock_guard lock(d->mailbox->mutex);
    d->mailbox->receiver = nullptr;
}

std::shared_ptr<HistogramPoller> HistogramPoller::shared(
    Client& client, const QString& command, const HistogramFormat& format, const PollOptions& options)
{
    auto& entries = PollerRegistry::of(client).entries;
    std::erase_if(entries, [](const auto& entry) { return entry.poller.expired(); });
    const auto entry =
        std::ranges::find_if(entries, [&](const auto& one) { return one.command == command && one.format == format; });
    std::shared_ptr<SharedPoller> polls;
    if (entry != entries.end()) {
        polls = entry->poller.lock();
    } else {
        polls.reset(new SharedPoller { HistogramPoller(client, command, format, options) });
        entries.push_back({ command, format, polls });
    }
    const auto viewer = std::make_shared<Viewer>(std::move(polls), options.interval);
    viewer->poller().start();
    // Points to the poller, and counts the viewer.
    return { viewer, &viewer->poller() };
}

void HistogramPoller::start()
{
    if (d->isRunning)
        return;
    d->isRunning = true;
    d->lastGood = Clock::now();
    d->lastFailure.clear();
    if (d->options.staleAfter > milliseconds(0))
        d->staleTimer.start(timerRun(d->options.staleAfter));
    // Not directly: a poll that fails at once would emit before the caller has connected to the signals.
    d->pollTimer.start(0);
}

void HistogramPoller::stop()
{
    d->isRunning = false;
    d->pollTimer.stop();
    d->staleTimer.stop();
    ++d->number;
}

bool HistogramPoller::isRunning() const
{
    return d->isRunning;
}

void HistogramPoller::setInterval(milliseconds interval)
{
    d->options.interval = std::clamp(interval, milliseconds(1), maxTimerRun);
    if (d->pollTimer.isActive() && d->number > 0)
        d->pollLater();
}

QString HistogramPoller::command() const
{
    return d->command;
}

milliseconds HistogramPoller::interval() const
{
    return d->options.interval;
}

HistogramReply HistogramPoller::last() const
{
    return d->last;
}

milliseconds HistogramPoller::age() const
{
    return since(d->lastGood);
}

} // namespace tarnis
