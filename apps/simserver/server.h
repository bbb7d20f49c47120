// The simulated server on the network: listens on the loopback interface, owns its clients, and advances the simulation
// during a run.
#pragma once

#include "requests.h"
#include "simulation.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

namespace simserver {

class Server : public QObject {
    Q_OBJECT
public:
    Server(Simulation& simulation, const QByteArray& prompt, int maxClients, QObject* parent = nullptr);

    /// Port 0 selects a free one. False if it cannot listen; see errorString().
    bool listen(quint16 port);
    QString errorString() const { return m_server.errorString(); }
    quint16 port() const { return m_server.serverPort(); }

    /// Refuses further connections and ends a run, so that it is recorded.
    void shutDown();

private:
    void onNewConnection();
    void welcome(QTcpSocket* socket);
    static void turnAway(QTcpSocket* socket);
    Steps respond(int client, const Request& request);
    void catchUp();
    void tickDuringARun();

    Simulation& m_simulation;
    QByteArray m_prompt;
    int m_maxClients;
    QTcpServer m_server;
    QTimer m_tick; ///< active only during a run
    QElapsedTimer m_upTime;
    QElapsedTimer m_sinceCatchUp;
    int m_clients = 0;
    int m_lastClient = 0;
    quint64 m_requests = 0;
};

} // namespace simserver
