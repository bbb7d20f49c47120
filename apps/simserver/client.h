// One connection: it greets, takes requests one after the other, and carries out the steps of each reply. Requests wait
// in the kernel while a reply is under way, so a client that does not read holds at most one reply here.
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

    /// Takes the socket over and begins with the steps of the greeting once start() is called.
    Client(QTcpSocket* socket, int number, Responder responder, QObject* parent);

    void start(const Steps& greeting);
    int number() const { return m_number; }

Q_SIGNALS:
    void finished(); ///< the connection is gone; the object may be deleted later

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
    std::deque<Step> m_steps; ///< of the reply under way
    QTimer m_pause;
    bool m_working = false;
    bool m_paused = false;
    bool m_closing = false;
};

} // namespace simserver
