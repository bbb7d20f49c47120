/// @file
/// A server, local or remote, with its connections by name.
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

/// How a server is reached and watched.
struct TARNIS_EXPORT ServerOptions {
    ClientOptions client = {}; ///< of every connection
    ServerProcessOptions process = {}; ///< of a local server
    /// From startLocal() or connectTo() to the greeting; the start of a local server has its own limit besides.
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(30);
    std::chrono::milliseconds statInterval =
        std::chrono::seconds(3); ///< between two "stat"; 0: the run state is unknown
};

/// How a step of a server ended. Each step ends exactly once.
struct TARNIS_EXPORT ServerStep {
    /// The three ends of a step.
    enum class Outcome {
        Done, ///< the server is connected, or stopped
        Failed, ///< see the reason; the state is Failed
        Cancelled, ///< by cancel(), by the next step, or by the destruction of the Server
    };
    Outcome outcome = Outcome::Failed; ///< see Outcome
    QString reason; ///< a text for users; empty for Done
};

/// Owns a local server program or points at a remote server, and owns the clients that talk to it. All steps are
/// asynchronous, none blocks, and a later one stops an earlier one. A lost connection comes back by itself; a local
/// program that has ended is started again by restart().
///
///     auto* server = new tarnis::Server({}, this);
///     server->startLocal("tarnis-simserver").then(this, [=](const tarnis::ServerStep& step) {
///         if (step.outcome == tarnis::ServerStep::Outcome::Done)
///             server->client("control")->request("start");
///         else
///             qWarning() << step.reason;
///     });
///
/// The thread is that of its clients. It may be deleted at any time, also by its own signals and continuations.
class TARNIS_EXPORT Server : public QObject {
    Q_OBJECT
    /// See State.
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    /// See reason().
    Q_PROPERTY(QString reason READ reason NOTIFY stateChanged)
    /// See RunState.
    Q_PROPERTY(RunState runState READ runState NOTIFY runStateChanged)
public:
    /// What the server is to this program.
    enum class State {
        Idle, ///< none, or shut down
        Starting, ///< the local program has not announced its port
        Connecting, ///< waiting for the first greeting
        Connected, ///< requests are answered
        Reconnecting, ///< the connection is lost and tried again
        Stopping, ///< the local program was asked to exit
        Failed, ///< see reason()
    };
    Q_ENUM(State)

    /// What the server does, as of the last reply to "stat".
    enum class RunState {
        Unknown, ///< not connected, or the reply has no line "state:"
        Stopped, ///< "state: STOPPED"
        Running, ///< "state: RUNNING"
    };
    Q_ENUM(RunState)

    /// Does not connect.
    explicit Server(ServerOptions options = {}, QObject* parent = nullptr);
    /// As ServerProcess: a local program is asked to exit. Requests of the clients end as Cancelled.
    ~Server() override;

    /// Starts the program and connects to it, after the end of what was before. Done when it has greeted.
    QFuture<ServerStep> startLocal(const QString& program);
    /// Connects to a server that runs already, after a local one was asked to exit. Done when it has greeted.
    QFuture<ServerStep> connectTo(const QString& host, quint16 port);
    /// Repeats the last startLocal() or connectTo(). Waits for the end of a local program that was asked to exit.
    QFuture<ServerStep> restart();
    /// Stops the step under way: a local program that has not greeted is killed. Its future ends as Cancelled at once.
    void cancel();
    /// Stops whatever is under way, closes the clients, and asks a local program to exit. Done when it is gone, at the
    /// latest after the grace time.
    QFuture<ServerStep> shutdown();

    /// The connection of this name, made at the first use and owned by the server. It is connected whenever the server
    /// is, to the new port after a restart; requests made without a connection end as Failed. A priority, a long
    /// command or a binary reply delays other requests of the same name only. The name "control" is also the server's
    /// own, for its state.
    Client* client(const QString& name);

    State state() const; ///< see State
    QString reason() const; ///< of Failed and Reconnecting, as a text for users; else empty
    RunState runState() const; ///< see RunState
    bool isLocal() const; ///< the last step was startLocal()
    QString host() const; ///< of the server, empty while it is not known
    quint16 port() const; ///< 0 while it is not known
    /// Names and values of the last reply to "stat"; of names that occur twice the last value. A reply of more than
    /// 1 MiB ends the connection, which is then made again.
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
