/// @file
/// Polls a histogram and decodes it outside of the event loop's thread.
#pragma once

#include <tarnis/client/client.h>
#include <tarnis/client/histogramreply.h>
#include <tarnis/tarnis_export.h>

#include <QObject>

#include <chrono>
#include <memory>

namespace tarnis {

/// How often a histogram is requested, and when it counts as stale.
struct TARNIS_EXPORT PollOptions {
    /// From one request to the next, 1 ms to 2^31 - 1 ms (24 days); the nearest of them for another value.
    std::chrono::milliseconds interval = std::chrono::seconds(1);
    std::chrono::milliseconds deadline = std::chrono::seconds(10); ///< limit for one reply; see RequestOptions
    std::chrono::milliseconds silence = std::chrono::seconds(5); ///< see RequestOptions
    /// Age of the last histogram; 0: never stale. Times beyond 2^31 - 1 ms count as that.
    std::chrono::milliseconds staleAfter = std::chrono::seconds(5);
    qint64 maxSize = qint64(256) << 20; ///< bytes; see RequestOptions
    int priority = -1; ///< lower than that of commands typed by the user
};

/// Polls one histogram through a client. At most one request is under way. The next one follows one interval after it,
/// or at once if the reply took longer. Replies are decoded on Qt's global thread pool, and results arrive on the
/// poller's thread, which must be the client's. Polling continues after failures and lost connections, until stop().
///
///     auto poller = tarnis::HistogramPoller::shared(client, "hist1d total", {});
///     connect(poller.get(), &tarnis::HistogramPoller::updated, plot, showHistogram);
class TARNIS_EXPORT HistogramPoller : public QObject {
    Q_OBJECT
public:
    /// Does not start. The client may be destroyed before the poller, which then stops.
    HistogramPoller(Client& client, const QString& command, const HistogramFormat& format,
        const PollOptions& options = {}, QObject* parent = nullptr);
    /// Drops the poll under way.
    ~HistogramPoller() override;

    /// The running poller of this command and format on this client, which all callers share: many viewers of one
    /// histogram cost one poll. It ends with the last pointer: a viewer that has ended releases its pointer. stop()
    /// ends the polls of all viewers, until the next call of shared() or start(). The interval is the shortest of the
    /// present viewers'; setInterval() replaces it until that changes. Other options are those of the first caller.
    static std::shared_ptr<HistogramPoller> shared(
        Client& client, const QString& command, const HistogramFormat& format, const PollOptions& options = {});

    void start(); ///< polls at once if it was stopped
    void stop(); ///< requests no more, for none of those who share it; a reply under way is dropped, last() stays
    bool isRunning() const; ///< between start() and stop()
    void setInterval(std::chrono::milliseconds interval); ///< from the next poll on; see PollOptions

    QString command() const; ///< as given to the constructor
    std::chrono::milliseconds interval() const; ///< see PollOptions
    /// The last histogram; without rows before the first.
    HistogramReply last() const;
    /// Time since the last histogram was requested, or since start() before the first one.
    std::chrono::milliseconds age() const;

Q_SIGNALS:
    /// A new histogram.
    void updated(const tarnis::HistogramReply& histogram);
    /// The last histogram is older than `staleAfter`. Emitted again after each further `staleAfter`.
    void stale(std::chrono::milliseconds age);
    /// A poll returned no histogram. Emitted once for consecutive failures with the same reason.
    void failed(const QString& reason);

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
