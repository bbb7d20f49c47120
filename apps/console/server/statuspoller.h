// Keeps the status of the server true while nobody asks for it: a run that ends by itself, a server that goes.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

namespace console {

class ServerController;
class CommandChannel;

/// Sends "stat" on a session of its own while a server is up and not busy, unless its state was told meanwhile. The
/// replies go to the controller and nowhere else. GUI thread.
class StatusPoller : public QObject {
    Q_OBJECT
public:
    /// `isFree` says whether the console asks nothing else: a server that works on a command is left alone.
    StatusPoller(ServerController& controller, const std::function<bool()>& isFree, QObject* parent);
    ~StatusPoller() override;

    /// 0: never asks.
    void setInterval(int intervalMs);
    /// Asks now. False if this is not the time for it.
    bool ask();

protected:
    void onServerState();

    ServerController& m_controller;
    std::function<bool()> m_isFree;
    CommandChannel* m_link;
    QElapsedTimer m_asked;
    QTimer m_timer;
};

} // namespace console
