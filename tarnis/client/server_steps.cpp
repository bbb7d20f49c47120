// How a server is started, connected, lost and stopped.
#include "tarnis/client/server_p.h"
#include "tarnis/client/timerlimit_p.h"
#include "tarnis/server/tarniscmd.h"

#include <QStringList>

#include <utility>

namespace tarnis {

namespace {

using Outcome = ServerStep::Outcome;

const QString controlName = QStringLiteral("control");

void finishAll(std::vector<QPromise<ServerStep>> steps, Outcome outcome, const QString& reason)
{
    for (QPromise<ServerStep>& step : steps) {
        step.addResult(ServerStep { outcome, reason });
        step.finish();
    }
}

Server::RunState runStateOf(const QMap<QString, QString>& statistics)
{
    const QString state = statistics.value(QStringLiteral("state"));
    if (state == QLatin1String("RUNNING"))
        return Server::RunState::Running;
    return state == QLatin1String("STOPPED") ? Server::RunState::Stopped : Server::RunState::Unknown;
}

} // namespace

Server::Private::Private(Server& owner, ServerOptions serverOptions)
    : q(owner)
    , options(std::move(serverOptions))
    , process(&owner)
    , connectTimer(&owner)
    , statTimer(&owner)
{
    connectTimer.setSingleShot(true);
    connect(&connectTimer, &QTimer::timeout, &q, [this] { onConnectTimeout(); });
    connect(&statTimer, &QTimer::timeout, &q, [this] { requestStatistics(); });
    connect(&process, &ServerProcess::portKnown, &q, [this](quint16 announced) { onPort(announced); });
    connect(
        &process, &ServerProcess::ended, &q, [this](ServerProcess::End, const QString& why) { onProcessEnded(why); });
}

QFuture<ServerStep> Server::Private::addStep()
{
    QPromise<ServerStep> promise;
    promise.start();
    QFuture<ServerStep> future = promise.future();
    steps.push_back(std::move(promise));
    return future;
}

QString Server::Private::destroyedReason()
{
    return Server::tr("The server object was destroyed.");
}

QFuture<ServerStep> Server::Private::cancelledStep()
{
    Steps one(1);
    one.front().start();
    QFuture<ServerStep> future = one.front().future();
    finishAll(std::move(one), Outcome::Cancelled, destroyedReason());
    return future;
}

QFuture<ServerStep> Server::Private::startLocal(const QString& newProgram)
{
    Steps replaced = std::exchange(steps, {});
    QFuture<ServerStep> future = addStep();
    local = true;
    program = newProgram;
    host.clear();
    port = 0;
    reason.clear();
    connectTimer.stop();
    launchesNext = process.state() != ServerProcess::State::NotRunning;
    if (launchesNext) {
        state = State::Stopping;
        process.stop();
    } else {
        launch();
    }
    const QPointer<Server> alive(&q);
    endClients([](Client& one) { one.d->awaitAddress(Server::tr("The server is started again.")); });
    if (alive)
        finishAll(std::move(replaced), Outcome::Cancelled, Server::tr("Another step was begun."));
    if (alive)
        announce();
    return future;
}

void Server::Private::launch()
{
    launchesNext = false;
    state = State::Starting;
    process.start(program, options.process);
}

QFuture<ServerStep> Server::Private::connectTo(const QString& newHost, quint16 newPort)
{
    Steps replaced = std::exchange(steps, {});
    QFuture<ServerStep> future = addStep();
    local = false;
    launchesNext = false;
    remoteHost = newHost;
    remotePort = newPort;
    process.stop();
    const QPointer<Server> alive(&q);
    finishAll(std::move(replaced), Outcome::Cancelled, Server::tr("Another step was begun."));
    // A continuation may have begun the next step already.
    if (alive && !local && remoteHost == newHost && remotePort == newPort && !steps.empty())
        openClients(newHost, newPort);
    return future;
}

QFuture<ServerStep> Server::Private::shutdown()
{
    Steps replaced = state == State::Stopping && !launchesNext ? Steps() : std::exchange(steps, {});
    QFuture<ServerStep> future = addStep();
    launchesNext = false;
    connectTimer.stop();
    host.clear();
    port = 0;
    reason.clear();
    process.stop();
    const bool isGone = process.state() == ServerProcess::State::NotRunning;
    state = isGone ? State::Idle : State::Stopping;
    const QPointer<Server> alive(&q);
    closeClients(Server::tr("The server is shut down."));
    if (alive)
        finishAll(std::move(replaced), Outcome::Cancelled, Server::tr("The server is shut down."));
    if (alive && state == State::Idle)
        endSteps(Outcome::Done, {});
    if (alive)
        announce();
    return future;
}

void Server::Private::cancel()
{
    const bool isConnecting = state == State::Starting || state == State::Connecting || launchesNext;
    if (!isConnecting)
        return;
    const bool waits = launchesNext;
    launchesNext = false;
    connectTimer.stop();
    host.clear();
    port = 0;
    if (!waits)
        process.kill();
    state = State::Idle;
    const QPointer<Server> alive(&q);
    closeClients(Server::tr("The connection attempt was cancelled."));
    if (alive)
        endSteps(Outcome::Cancelled, Server::tr("The connection attempt was cancelled."));
    if (alive)
        announce();
}

void Server::Private::onPort(quint16 announced)
{
    if (state == State::Starting)
        openClients(QStringLiteral("localhost"), announced);
}

void Server::Private::onProcessEnded(const QString& why)
{
    if (launchesNext) {
        launch();
        announce();
    } else if (state == State::Stopping) {
        state = State::Idle;
        const QPointer<Server> alive(&q);
        endSteps(Outcome::Done, {});
        if (alive)
            announce();
    } else if (local && state != State::Idle && state != State::Failed) {
        fail(why);
    }
}

void Server::Private::openClients(const QString& newHost, quint16 newPort)
{
    host.clear();
    client(controlName); // created before there is an address, so that it connects only below
    host = newHost;
    port = newPort;
    state = State::Connecting;
    reason.clear();
    if (options.connectTimeout > std::chrono::milliseconds(0))
        connectTimer.start(timerRun(options.connectTimeout));
    statTimer.stop();
    ++stepNumber;
    const QPointer<Server> alive(&q);
    setRunState(RunState::Unknown);
    if (alive)
        announce();
    if (!alive || state != State::Connecting)
        return;
    const QList<QPointer<Client>> all = clients.values();
    for (const QPointer<Client>& one : all) {
        // A slot may have changed or deleted anything.
        if (!one || !alive || host != newHost || port != newPort)
            continue;
        if (local)
            one->d->addressKnown(newHost, newPort);
        else
            one->connectTo(newHost, newPort);
    }
}

/// The clients cannot be connected yet, but will be.
bool Server::Private::awaitsPort() const
{
    return state == State::Starting || launchesNext;
}

void Server::Private::closeClients(const QString& why)
{
    endClients([&why](Client& one) { one.close(why); });
}

/// Ends what the clients do, unless a receiver begins another step meanwhile.
void Server::Private::endClients(const std::function<void(Client&)>& end)
{
    statTimer.stop();
    const quint64 number = ++stepNumber;
    const QPointer<Server> alive(&q);
    const QList<QPointer<Client>> all = clients.values();
    for (const QPointer<Client>& one : all) {
        if (one && alive && number == stepNumber)
            end(*one);
    }
    if (alive)
        setRunState(RunState::Unknown);
}

Client* Server::Private::client(const QString& name)
{
    QPointer<Client>& entry = clients[name];
    if (entry)
        return entry;
    auto* const made = new Client(options.client, &q);
    entry = made;
    if (name == controlName)
        connect(made, &Client::stateChanged, &q,
            [this](Client::State clientState, const QString& why) { onControlState(clientState, why); });
    if (!host.isEmpty())
        made->connectTo(host, port);
    else if (awaitsPort())
        made->d->awaitAddress({});
    else if (state == State::Failed)
        made->d->giveUp(reason);
    return made;
}

void Server::Private::onControlState(Client::State clientState, const QString& why)
{
    const bool isUp = state == State::Connected || state == State::Reconnecting;
    if (state != State::Connecting && !isUp)
        return;
    if (clientState == Client::State::Ready && state != State::Connected) {
        connectTimer.stop();
        state = State::Connected;
        reason.clear();
        if (options.statInterval > std::chrono::milliseconds(0)) {
            statTimer.start(timerRun(options.statInterval));
            QMetaObject::invokeMethod(
                &q, [this] { requestStatistics(); }, Qt::QueuedConnection);
        }
        const QPointer<Server> alive(&q);
        endSteps(Outcome::Done, {});
        if (alive)
            announce();
    } else if (clientState == Client::State::Reconnecting && isUp) {
        state = State::Reconnecting;
        reason = why;
        const QPointer<Server> alive(&q);
        setRunState(RunState::Unknown);
        if (alive)
            announce();
    } else if (clientState == Client::State::Failed) {
        fail(why);
    }
}

void Server::Private::onConnectTimeout()
{
    const Client* const control = clients.value(controlName);
    const QString cause = control ? control->reason() : QString();
    const QString text = Server::tr("The server was not reached within %1 s.")
                             .arg(std::chrono::duration<double>(options.connectTimeout).count());
    fail(cause.isEmpty() ? text : text + QLatin1Char(' ') + cause);
}

void Server::Private::fail(const QString& given)
{
    const QString why = given; // `given` may refer to the text of a client that is closed below
    connectTimer.stop();
    launchesNext = false;
    host.clear();
    port = 0;
    state = State::Failed;
    reason = why;
    process.stop();
    const QPointer<Server> alive(&q);
    endClients([&why](Client& one) { one.d->giveUp(why); });
    if (alive)
        endSteps(Outcome::Failed, why);
    if (alive)
        announce();
}

void Server::Private::endSteps(Outcome outcome, const QString& why)
{
    finishAll(std::exchange(steps, {}), outcome, why);
}

void Server::Private::requestStatistics()
{
    const QPointer<Client> control = clients.value(controlName);
    // Sends no further request while the last one is unanswered.
    if (state != State::Connected || !control || control->state() != Client::State::Ready)
        return;
    RequestOptions request;
    request.priority = -2;
    request.maxSize = maxOwnReply;
    control->request(QStringLiteral("stat"), request).then([owner = QPointer(&q)](const Reply& reply) {
        if (owner && reply.isOk())
            owner->d->onStatistics(reply);
    });
}

void Server::Private::onStatistics(const Reply& reply)
{
    TarnisCmd::makeNameValueMap(reply.text().split(QLatin1Char('\n')), statistics);
    const RunState newState = runStateOf(statistics);
    const QPointer<Server> alive(&q);
    const QMap<QString, QString> given = statistics; // a receiver may delete the server
    Q_EMIT q.statisticsChanged(given);
    if (alive && state == State::Connected)
        setRunState(newState);
}

void Server::Private::setRunState(RunState newState)
{
    if (newState == runState)
        return;
    runState = newState;
    Q_EMIT q.runStateChanged(newState);
}

} // namespace tarnis
