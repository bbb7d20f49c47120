#include "client.h"

#include <tarnis/foundation/log.h>

#include <QScopedValueRollback>
#include <QTcpSocket>

#include <cstdlib>

#include <sys/socket.h>
#include <unistd.h>

namespace simserver {

Client::Client(QTcpSocket* socket, int number, Responder responder, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_number(number)
    , m_responder(std::move(responder))
    , m_pause(this)
{
    socket->setParent(this);
    // Replies are written in parts; without this the last part would wait for the peer's delayed acknowledgement.
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket->setReadBufferSize(readChunk);
    m_pause.setSingleShot(true);
    m_pause.setTimerType(Qt::PreciseTimer);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        m_paused = false;
        work();
    });
    connect(socket, &QTcpSocket::readyRead, this, &Client::work);
    connect(socket, &QTcpSocket::bytesWritten, this, &Client::work);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        m_closing = true;
        m_pause.stop();
        Q_EMIT finished();
    });
}

void Client::start(const Steps& greeting)
{
    m_steps.assign(greeting.begin(), greeting.end());
    work();
}

void Client::work()
{
    if (m_working)
        return; // a flush inside a step emits bytesWritten()
    const QScopedValueRollback<bool> working(m_working, true);
    // The next reply begins when the previous one is completely written, so that all clients are served fairly.
    while (!m_closing && !m_paused) {
        if (!m_steps.empty()) {
            if (carryOut(m_steps.front()) && !m_steps.empty())
                m_steps.pop_front();
        } else if (m_socket->bytesToWrite() > 0 || !takeRequest()) {
            return;
        }
    }
}

/// True when the step is complete.
bool Client::carryOut(Step& step)
{
    switch (step.kind) {
    case Step::Kind::Write:
        m_socket->write(step.bytes);
        return true;
    case Step::Kind::WritePieces:
        return writePieces(step);
    case Step::Kind::Pause:
        m_socket->flush();
        m_paused = true;
        m_pause.start(step.pauseMs);
        return true;
    case Step::Kind::Close:
        m_closing = true;
        m_socket->disconnectFromHost();
        return true;
    case Step::Kind::Reset:
        reset();
        return true;
    case Step::Kind::Exit:
        _exit(faultExitCode);
    case Step::Kind::Crash:
        std::abort();
    }
    return true;
}

bool Client::writePieces(Step& step)
{
    m_socket->write(step.bytes.first(qMin(step.piece, step.bytes.size())));
    m_socket->flush();
    step.bytes.remove(0, qMin(step.piece, step.bytes.size()));
    if (step.bytes.isEmpty())
        return true;
    m_paused = true;
    m_pause.start(step.pauseMs);
    return false;
}

bool Client::takeRequest()
{
    std::optional<Request> request = m_reader.next();
    while (!request) {
        const QByteArray bytes = m_socket->read(readChunk);
        if (bytes.isEmpty())
            return false;
        m_reader.feed(bytes);
        request = m_reader.next();
    }
    if (request->kind == Request::Kind::Farewell) {
        m_closing = true;
        m_socket->disconnectFromHost();
        return false;
    }
    const Steps steps = m_responder(*request);
    m_steps.assign(steps.begin(), steps.end());
    return true;
}

void Client::reset()
{
    const linger hard { .l_onoff = 1, .l_linger = 0 };
    const auto descriptor = static_cast<int>(m_socket->socketDescriptor());
    if (setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &hard, sizeof(hard)) != 0)
        LOG_ERR("client %d: the connection cannot be reset", m_number);
    m_closing = true;
    m_socket->abort();
}

} // namespace simserver
