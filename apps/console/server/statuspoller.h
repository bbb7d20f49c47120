// The console's only poller of "stat": for status, run, event rate and snapshots.
#pragma once

#include "server/runstatus.h"

#include <tarnis/server/tarnis.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

namespace console {

class ServerController;
class CommandChannel;

/// Sends "stat" on its own connection while a server is up and not busy, unless its state was reported in the meantime.
/// Passes the replies to the controller and emits them for all windows that show values of them. GUI thread.
class StatusPoller : public QObject {
    Q_OBJECT
public:
    /// `isFree` returns whether the console has no other request: a server that executes a command is not polled.
    StatusPoller(ServerController& controller, const std::function<bool()>& isFree, QObject* parent);
    ~StatusPoller() override;

    /// The time between two polls. During a run, or while a window watches, it is at most one second. 0: does not poll
    /// automatically.
    void setInterval(int intervalMs);
    /// Polls now. False if polling is currently not possible.
    bool ask();
    /// Polls now, also while a command is under way. Uses a poll that is already under way. Does nothing without a
    /// server.
    void request();
    /// A command has changed the run. Polls as soon as neither the server nor the console is busy, and after a reply
    /// under way, which may be older. Does nothing while polling is switched off.
    void refresh();
    /// Polls if refresh() waits for that. Call it when the console is free again.
    void refreshIfFree();
    /// Polls once a second, also while a command is under way, until `watcher` is destroyed.
    void watch(QObject* watcher);
    /// True while waiting for a reply.
    bool isAsking() const;

    /// The status of the server's last reply, including those to typed commands and of the statistics; empty without a
    /// server.
    const RunStatus& runStatus() const { return m_runStatus; }
    const UnsavedData& unsavedData() const { return m_unsaved; }
    /// The user has saved data.
    void noteSaved() { m_unsaved.noteSaved(); }

Q_SIGNALS:
    /// The reply to a poll, including refusals.
    void replied(const QByteArray& reply);
    /// The connection was lost before the reply; the next poll creates a new one.
    void failed(const QString& message);
    /// runStatus() was updated by a new reply, or cleared.
    void runStatusChanged();

protected:
    void onServerState();
    void onTimeout();
    void read(const QByteArray& reply);
    void schedule();
    void send();
    bool isServedByOthers() const;
    bool canAsk() const;

    ServerController& m_controller;
    std::function<bool()> m_isFree;
    CommandChannel* m_channel;
    QElapsedTimer m_asked;
    QElapsedTimer m_sinceReplyToOthers; ///< time since a reply to a "stat" of another sender
    QTimer m_timer;
    int m_intervalMs;
    int m_watchers = 0;
    bool m_isOutdated = false; ///< the run has changed since the last poll was sent
    bool m_isReading = false; ///< the reply to a poll is being read
    Tarnis::SERVER_STATUS m_status = Tarnis::IDLE; ///< status at the last check
    RunStatus m_runStatus;
    UnsavedData m_unsaved;
};

} // namespace console
