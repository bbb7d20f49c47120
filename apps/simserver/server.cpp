#include "server.h"

#include "client.h"
#include "commands.h"
#include "text.h"

#include <tarnis/foundation/log.h>

#include <QTcpSocket>

#include <algorithm>

namespace simserver {

namespace {

constexpr int tickMs = 50;
constexpr double eventShare = 0.4; // fraction of the time for generating events; the rest is for the clients
constexpr double longestBudgetSeconds = 0.02;
constexpr int listenBacklog = 256;

} // namespace

Server::Server(Simulation& simulation, const QByteArray& prompt, int maxClients, QObject* parent)
    : QObject(parent)
    , m_simulation(simulation)
    , m_prompt(prompt)
    , m_maxClients(maxClients)
    , m_server(this)
    , m_tick(this)
{
    m_upTime.start();
    m_sinceCatchUp.start();
    m_server.setListenBacklogSize(listenBacklog);
    m_server.setMaxPendingConnections(listenBacklog);
    connect(&m_server, &QTcpServer::newConnection, this, &Server::onNewConnection);
    connect(&m_server, &QTcpServer::acceptError, this, [this] {
        // Probably too many open files: retry when some may have been closed.
        LOG_ERR("cannot accept: %s", m_server.errorString().toUtf8().constData());
        m_server.pauseAccepting();
        QTimer::singleShot(1000, &m_server, &QTcpServer::resumeAccepting);
    });
    connect(&m_tick, &QTimer::timeout, this, &Server::catchUp);
    simulation.facts = [this] {
        return ServerFacts { .port = m_server.serverPort(),
            .clients = m_clients,
            .requests = m_requests,
            .upSeconds = static_cast<double>(m_upTime.elapsed()) / 1000.0 };
    };
}

bool Server::listen(quint16 port)
{
    if (!m_server.listen(QHostAddress::LocalHost, port))
        return false;
    m_sinceCatchUp.start();
    tickDuringARun();
    return true;
}

void Server::shutDown()
{
    m_server.close();
    catchUp();
    m_tick.stop();
    if (!m_simulation.acquisition().isRunning())
        return;
    const QString error = m_simulation.stop();
    if (!error.isEmpty())
        LOG_ERR("%s", error.toUtf8().constData());
}

void Server::onNewConnection()
{
    while (QTcpSocket* const socket = m_server.nextPendingConnection()) {
        if (m_clients < m_maxClients)
            welcome(socket);
        else
            turnAway(socket);
    }
}

void Server::welcome(QTcpSocket* socket)
{
    const int number = ++m_lastClient;
    ++m_clients;
    LOG_INFO("client %d comes from port %d", number, socket->peerPort());
    auto* const client = new Client(
        socket, number, [this, number](const Request& request) { return respond(number, request); }, this);
    connect(client, &Client::finished, this, [this, client] {
        --m_clients;
        LOG_INFO("client %d has gone", client->number());
        client->deleteLater();
    });
    client->start(m_simulation.fault().greeting(greetingText(), m_prompt));
}

void Server::turnAway(QTcpSocket* socket)
{
    LOG_ERR("too many clients: one is turned away");
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    socket->write("NG:too many clients\n");
    socket->disconnectFromHost();
}

Steps Server::respond(int client, const Request& request)
{
    LOG_BLOCK("client %d: %s", client, shown(QString::fromLatin1(request.bytes.left(100))).toUtf8().constData());
    ++m_requests;
    catchUp();
    const Reply reply = answer(m_simulation, request);
    if (reply.text.startsWith("NG:"))
        LOG_INFO("refused: %s", reply.text.trimmed().constData());
    tickDuringARun();
    return m_simulation.fault().reply(reply, m_prompt);
}

/// Simulates the time since the last call. Time beyond the budget is dead time.
void Server::catchUp()
{
    const double seconds = static_cast<double>(m_sinceCatchUp.nsecsElapsed()) * 1e-9;
    m_sinceCatchUp.start();
    const double budget = std::min(seconds * eventShare, longestBudgetSeconds) * 1e9;
    m_simulation.advance(seconds, [&] { return static_cast<double>(m_sinceCatchUp.nsecsElapsed()) < budget; });
    tickDuringARun();
}

void Server::tickDuringARun()
{
    const bool running = m_simulation.acquisition().isRunning();
    if (running && !m_tick.isActive())
        m_tick.start(tickMs);
    else if (!running)
        m_tick.stop();
}

} // namespace simserver
