// The public functions of the server. Its steps are in server_steps.cpp.
#include "tarnis/client/server_p.h"

#include <utility>

namespace tarnis {

Server::Server(ServerOptions options, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(*this, std::move(options)))
{
}

Server::~Server()
{
    d->isEnding = true;
    d->state = State::Idle;
    d->host.clear();
    d->endSteps(ServerStep::Outcome::Cancelled, Private::destroyedReason());
    // Destroyed before the members that their signals use.
    const QMap<QString, QPointer<Client>> clients = std::exchange(d->clients, {});
    for (const QPointer<Client>& client : clients)
        delete client;
}

QFuture<ServerStep> Server::startLocal(const QString& program)
{
    return d->isEnding ? d->cancelledStep() : d->startLocal(program);
}

QFuture<ServerStep> Server::connectTo(const QString& host, quint16 port)
{
    return d->isEnding ? d->cancelledStep() : d->connectTo(host, port);
}

QFuture<ServerStep> Server::restart()
{
    const QString remoteHost = d->remoteHost; // a receiver may begin another step
    return d->local ? startLocal(d->program) : connectTo(remoteHost, d->remotePort);
}

void Server::cancel()
{
    d->cancel();
}

QFuture<ServerStep> Server::shutdown()
{
    return d->isEnding ? d->cancelledStep() : d->shutdown();
}

Client* Server::client(const QString& name)
{
    return d->client(name);
}

Server::State Server::state() const
{
    return d->state;
}

QString Server::reason() const
{
    return d->reason;
}

Server::RunState Server::runState() const
{
    return d->runState;
}

bool Server::isLocal() const
{
    return d->local;
}

QString Server::host() const
{
    return d->host;
}

quint16 Server::port() const
{
    return d->port;
}

QMap<QString, QString> Server::statistics() const
{
    return d->statistics;
}

} // namespace tarnis
