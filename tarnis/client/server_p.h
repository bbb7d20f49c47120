// The steps of a server and what they do to its clients.
#pragma once

#include "tarnis/client/client_p.h"
#include "tarnis/client/server.h"

#include <QPointer>
#include <QPromise>
#include <QTimer>

#include <functional>
#include <vector>

namespace tarnis {

// Each entry point first updates the members, then ends futures and emits signals.
class TARNIS_NO_EXPORT Server::Private {
public:
    Private(Server& owner, ServerOptions serverOptions);

    using Steps = std::vector<QPromise<ServerStep>>;

    // Steps
    QFuture<ServerStep> startLocal(const QString& newProgram);
    QFuture<ServerStep> connectTo(const QString& newHost, quint16 newPort);
    QFuture<ServerStep> shutdown();
    void cancel();

    // Events
    void onPort(quint16 announced);
    void onProcessEnded(const QString& why);
    void onControlState(Client::State clientState, const QString& why);
    void onConnectTimeout();
    void onStatistics(const Reply& reply);

    QFuture<ServerStep> addStep();
    /// The end of a step that was begun in the destructor.
    static QFuture<ServerStep> cancelledStep();
    static QString destroyedReason();
    void launch();
    void openClients(const QString& newHost, quint16 newPort);
    bool awaitsPort() const;
    void closeClients(const QString& why);
    void endClients(const std::function<void(Client&)>& end);
    Client* client(const QString& name);
    void requestStatistics();
    void fail(const QString& why);
    void endSteps(ServerStep::Outcome outcome, const QString& why);
    void setRunState(RunState newState);
    void announce() { lastAnnounced.announce(q, state, reason); }

    Server& q;
    const ServerOptions options;
    ServerProcess process;
    QMap<QString, QPointer<Client>> clients;
    Steps steps; ///< all of the same type
    quint64 stepNumber = 0; ///< of the last change of what the clients do
    State state = State::Idle;
    QString reason;
    AnnouncedState<Server> lastAnnounced;
    RunState runState = RunState::Unknown;
    QMap<QString, QString> statistics;
    bool local = false;
    bool isEnding = false; ///< in the destructor: a continuation begins no further step
    bool launchesNext = false; ///< start a local program when the current one has ended
    QString program;
    QString host; ///< for the clients; empty while no server is available
    quint16 port = 0;
    QString remoteHost; ///< the last connectTo(), for restart()
    quint16 remotePort = 0;
    QTimer connectTimer;
    QTimer statTimer;
};

} // namespace tarnis
