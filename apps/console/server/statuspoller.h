// The one place from which the console asks a server for "stat": for its status, the run, the event rate and snapshots.
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

/// Sends "stat" on a session of its own while a server is up and not busy, unless its state was reported meanwhile. The
/// replies go to the controller and, by signal, to everything that shows a part of them. GUI thread.
class StatusPoller : public QObject {
    Q_OBJECT
public:
    /// `isFree` says whether the console asks nothing else: a server that works on a command is left alone.
    StatusPoller(ServerController& controller, const std::function<bool()>& isFree, QObject* parent);
    ~StatusPoller() override;

    /// The time between two polls. While a run goes on, or a window watches, it is at most a second. 0: never polls by
    /// itself.
    void setInterval(int intervalMs);
    /// Asks now. False if this is not the time for it.
    bool ask();
    /// Asks now, also while a command is under way. A poll that is under way already serves. Without a server nothing
    /// happens.
    void request();
    /// Polls once a second, also while a command is under way, until `watcher` is destroyed.
    void watch(QObject* watcher);
    /// True while a reply is awaited.
    bool isAsking() const;

    /// Of the last reply of this server, typed ones and those of the statistics too; empty without a server.
    const RunStatus& runStatus() const { return m_runStatus; }
    const UnsavedData& unsavedData() const { return m_unsaved; }
    /// The user has saved something of the data.
    void noteSaved() { m_unsaved.noteSaved(); }

Q_SIGNALS:
    /// The reply to a poll, also a refusal.
    void replied(const QByteArray& reply);
    /// The connection broke before the reply; the next poll makes a new one.
    void failed(const QString& message);
    /// runStatus() is that of a new reply, or has become empty.
    void runStatusChanged();

protected:
    void onServerState();
    void onTimeout();
    void read(const QByteArray& reply);
    void schedule();
    void send();
    bool isToldByOthers() const;

    ServerController& m_controller;
    std::function<bool()> m_isFree;
    CommandChannel* m_channel;
    QElapsedTimer m_asked;
    QElapsedTimer m_toldByOthers; ///< since a reply to a "stat" that this poller has not sent
    QTimer m_timer;
    int m_intervalMs;
    int m_watchers = 0;
    bool m_isReading = false; ///< the reply to a poll
    Tarnis::SERVER_STATUS m_status = Tarnis::IDLE; ///< when it was last looked at
    RunStatus m_runStatus;
    UnsavedData m_unsaved;
};

} // namespace console
