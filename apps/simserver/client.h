// One connection: sends the greeting, reads requests one after the other, and executes the steps of each reply.
// Requests wait in the kernel while a reply is under way, so at most one reply is buffered for a client that does not
// read.
#pragma once

#include "faults.h"
#include "requests.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>

QT_BEGIN_NAMESPACE
class QTcpSocket;
QT_END_NAMESPACE

namespace simserver {

class Client : public QObject {
    Q_OBJECT
public:
    /// Turns a request into the steps of its reply.
    using Responder = std::function<Steps(const Request&)>;

    /// Takes ownership of the socket. start() begins with the steps of the greeting.
    Client(QTcpSocket* socket, int number, Responder responder, QObject* parent);

    void start(const Steps& greeting);
    int number() const { return m_number; }

Q_SIGNALS:
    void finished(); ///< the connection has ended; the object may be deleted

private:
    static constexpr qint64 readChunk = qint64 { 64 } * 1024;

    void work();
    bool carryOut(Step& step);
    bool writePieces(Step& step);
    bool takeRequest();
    void reset();

    QTcpSocket* m_socket;
    int m_number;
    Responder m_responder;
    RequestReader m_reader;
    std::deque<Step> m_steps; ///< remaining steps of the current reply
    QTimer m_pause;
    bool m_working = false;
    bool m_paused = false;
    bool m_closing = false;
};

} // namespace simserver
