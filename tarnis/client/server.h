/// @file
/// A local or remote server with its named connections.
#pragma once

#include <tarnis/client/client.h>
#include <tarnis/client/serverprocess.h>
#include <tarnis/tarnis_export.h>

#include <QFuture>
#include <QMap>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace tarnis {

/// How the connection to a server is made and monitored.
struct TARNIS_EXPORT ServerOptions {
    ClientOptions client = {}; ///< options of every connection
    ServerProcessOptions process = {}; ///< options of a local server
    /// From connectTo(), or from the announced port of a local server, to the greeting. 0 or less: no limit. Longer
    /// times than 2^31 - 1 ms (24 days) count as that.
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(30);
    /// Between two "stat". 0 or less: none is sent, and the run state is unknown. At most 2^31 - 1 ms, as above.
    std::chrono::milliseconds statInterval = std::chrono::seconds(3);
};

/// How a step of a server ended. Each step ends exactly once.
struct TARNIS_EXPORT ServerStep {
    /// The possible results of a step.
    enum class Outcome {
        Done, ///< the server is connected, or stopped
        Failed, ///< see the reason; the state is Failed
        Cancelled, ///< by cancel(), by the next step, or by the destruction of the Server
    };
    Outcome outcome = Outcome::Failed; ///< see Outcome
    QString reason; ///< a text for users; empty for Done
};

/// Owns a local server program or connects to a remote server, and owns the clients of that server. All steps are
/// asynchronous. A step cancels the previous one. A lost connection is re-established automatically; restart() starts a
/// local program that has ended.
///
///     auto* server = new tarnis::Server({}, this);
///     server->startLocal("tarnis-simserver").then(this, [=](const tarnis::ServerStep& step) {
///         if (step.outcome == tarnis::ServerStep::Outcome::Done)
///             server->client("control")->request("start");
///         else
///             qWarning() << step.reason;
///     });
///
/// The clients live on the thread of the Server. It may be deleted at any time, also in its own signals and
/// continuations.
class TARNIS_EXPORT Server : public QObject {
    Q_OBJECT
    /// See State.
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    /// See reason().
    Q_PROPERTY(QString reason READ reason NOTIFY stateChanged)
    /// See RunState.
    Q_PROPERTY(RunState runState READ runState NOTIFY runStateChanged)
public:
    /// State of the server and of the connection to it.
    enum class State {
        Idle, ///< no server, or shut down
        Starting, ///< the local program has not announced its port
        Connecting, ///< waiting for the first greeting
        Connected, ///< requests are answered
        Reconnecting, ///< the connection was lost, reconnecting
        Stopping, ///< waiting for the local program to exit
        Failed, ///< see reason()
    };
    Q_ENUM(State)

    /// State of the acquisition, according to the last reply to "stat".
    enum class RunState {
        Unknown, ///< not connected, or the reply has no "state:" line
        Stopped, ///< "state: STOPPED"
        Running, ///< "state: RUNNING"
    };
    Q_ENUM(RunState)

    /// Does not connect.
    explicit Server(ServerOptions options = {}, QObject* parent = nullptr);
    /// Makes a local program exit, see ServerProcess. Requests of the clients end as Cancelled.
    ~Server() override;

    /// Starts the program and connects to it, after a previous server has been shut down. Done when the greeting has
    /// arrived.
    QFuture<ServerStep> startLocal(const QString& program);
    /// Connects to a running server. A local one is requested to exit first. Done when the greeting has arrived.
    QFuture<ServerStep> connectTo(const QString& host, quint16 port);
    /// Repeats the last startLocal() or connectTo(). Waits for a local program that is exiting.
    QFuture<ServerStep> restart();
    /// Cancels the step under way: a local program whose greeting has not arrived is killed. Its future ends as
    /// Cancelled at once.
    void cancel();
    /// Cancels the step under way, closes the clients, and requests a local program to exit. Done when it has ended, at
    /// the latest after the grace time.
    QFuture<ServerStep> shutdown();

    /// The connection with this name, created on first use and owned by the Server; do not delete it. It is connected
    /// whenever the server is, to the new port after a restart.
    ///
    /// Each step first ends all requests as Cancelled. While the server is Starting, Connecting or Reconnecting,
    /// further requests wait under their own deadlines. A client whose server is Starting, or waits for the end of the
    /// previous program, is in the state Connecting. In the states Idle and Failed requests fail at once. Waiting
    /// requests end as Cancelled with cancel() and shutdown(), and as Failed, with the server's reason, when the server
    /// fails.
    ///
    /// A long command or binary reply delays only requests on the same connection. The Server itself uses the
    /// connection "control" for its state.
    Client* client(const QString& name);

    State state() const; ///< see State
    QString reason() const; ///< reason of Failed and Reconnecting, as a text for users; else empty
    RunState runState() const; ///< see RunState
    bool isLocal() const; ///< the last step was startLocal()
    QString host() const; ///< host of the server; empty while it is not known
    quint16 port() const; ///< 0 while it is not known
    /// Names and values of the last reply to "stat"; the last value if a name occurs twice. After a reply of more than
    /// 1 MiB the connection is closed and made again.
    QMap<QString, QString> statistics() const;

Q_SIGNALS:
    /// After each change of state() or reason().
    void stateChanged(tarnis::Server::State state, const QString& reason);
    /// After each change of runState().
    void runStateChanged(tarnis::Server::RunState runState);
    /// A reply to "stat" has arrived.
    void statisticsChanged(const QMap<QString, QString>& statistics);

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
