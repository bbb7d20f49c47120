// The readers for text and binary replies.
#include "tarnis/server/tarnissession.h"

#include "tarnis/foundation/log.h"
#include "tarnis/server/sessionsocket_p.h"
#include "tarnis/server/wire_p.h"

#include <QLocale>
#include <QTcpSocket>

#include <algorithm>
#include <atomic>
#include <limits>

namespace {

constexpr int allowedIdleRounds = 100;
constexpr int timeoutUnitMs = 10;

int waitMs(int timeout)
{
    const qint64 ms = qint64(timeout) * timeoutUnitMs;
    return int(std::clamp<qint64>(ms, 0, std::numeric_limits<int>::max()));
}

// waitForReadyRead() reacts only to new bytes: with `enough` bytes already in the socket's buffer it would delay a
// complete reply. It also sends the request, except when it finds bytes to read at once.
bool waitForBytes(QTcpSocket& socket, qint64 enough, int timeout)
{
    if (socket.bytesAvailable() < enough && !socket.waitForReadyRead(waitMs(timeout)))
        return false;
    if (socket.bytesToWrite() > 0)
        socket.flush();
    return true;
}

// Reads all bytes of the socket's buffer in one copy. Returns their number.
qsizetype takeAvailable(QTcpSocket& socket, tarnis::ReplyFrame& frame)
{
    const qint64 available = socket.bytesAvailable();
    if (available <= 0)
        return 0;
    const qint64 taken = std::max<qint64>(socket.read(frame.room(available), available), 0);
    frame.commit(taken);
    return taken;
}

// Reads the announced length once its four bytes are here; one to three of them stay in the socket.
bool takeLength(QTcpSocket& socket, tarnis::ReplyFrame& frame)
{
    if (socket.bytesAvailable() < tarnis::lengthFieldSize)
        return false;
    frame.setLength(socket.read(tarnis::lengthFieldSize));
    return true;
}

// Keeps the socket's buffer small while a payload arrives, so that the data stay in the cache instead of filling a
// second large allocation. Chunk boundaries do not matter, because the prompt is searched only after the payload.
class PayloadWindow {
public:
    explicit PayloadWindow(QTcpSocket& socket)
        : m_socket(socket)
    {
    }
    ~PayloadWindow() { m_socket.setReadBufferSize(0); }
    PayloadWindow(const PayloadWindow&) = delete;
    PayloadWindow& operator=(const PayloadWindow&) = delete;
    void update(qsizetype missing)
    {
        const qsizetype window = std::clamp(missing / 64, smallest, largest);
        m_socket.setReadBufferSize(missing > window ? window : 0);
    }

private:
    static constexpr qsizetype smallest = qsizetype(128) << 10;
    static constexpr qsizetype largest = qsizetype(1) << 20;
    QTcpSocket& m_socket;
};

} // namespace

bool TarnisSession::isTooLarge(qint64 bytes) const
{
    // atomic_ref of a const object comes with C++26 only.
    const qint64 limit = std::atomic_ref(const_cast<qint64&>(m_maxReplySize)).load(std::memory_order_relaxed);
    return limit > 0 && bytes > limit;
}

bool TarnisSession::copyPrompt(QByteArray& copy)
{
    return m_stop->copyPrompt([this] { return GetPrompt(); }, copy);
}

// Always returns false, the result of a failed read.
bool TarnisSession::failTooLarge()
{
    const QString limit = QLocale().formattedDataSize(std::atomic_ref(m_maxReplySize).load(std::memory_order_relaxed));
    Q_EMIT error(QAbstractSocket::SocketResourceError,
        tr("The server's reply is larger than the limit of %1. The connection has been closed").arg(limit));
    return false;
}

bool TarnisSession::read(QTcpSocket& socket, QByteArray& buffer, bool emitRead)
{
    LOG_BLOCK("TarnisSession::read(), this[%p]", static_cast<void*>(this));
    tarnis::ReplyFrame frame(tarnis::ReplyFrame::Form::Text, buffer);
    if (std::atomic_ref(m_bQuit).load())
        return false;
    for (int idle = 0;;) {
        const bool ready = waitForBytes(socket, 1, std::atomic_ref(m_timeout).load(std::memory_order_relaxed));
        if (idle > allowedIdleRounds && !ready && !m_stop->isQuitting()) {
            Q_EMIT error(socket.error(), socket.errorString());
            return false;
        }
        const qsizetype taken = takeAvailable(socket, frame);
        ++idle;
        if (taken > 0) {
            if (isTooLarge(buffer.size()))
                return failTooLarge();
            QByteArray prompt;
            if (!copyPrompt(prompt))
                return false;
            const bool complete = frame.isComplete(prompt);
            const qsizetype fresh = complete ? taken - prompt.size() : taken;
            if (emitRead && fresh > 0)
                Q_EMIT read(buffer.mid(buffer.size() - taken, fresh));
            if (complete) {
                frame.finish(prompt);
                return true;
            }
            idle = 0;
        }
        if (std::atomic_ref(m_bQuit).load())
            return false;
    }
}

bool TarnisSession::readBinary(QTcpSocket& socket, QByteArray& buffer, QString& text)
{
    LOG_BLOCK("TarnisSession::readBinary(), this[%p]", static_cast<void*>(this));
    tarnis::ReplyFrame frame(tarnis::ReplyFrame::Form::Binary, buffer);
    text.clear();
    if (std::atomic_ref(m_bQuit).load())
        return false;
    PayloadWindow window(socket);
    // Unlike in read(), the idle rounds of the whole reply count.
    for (int idle = 0;;) {
        window.update(frame.missing());
        const qint64 enough = frame.needsLength() ? tarnis::lengthFieldSize : 1;
        const bool ready = waitForBytes(socket, enough, std::atomic_ref(m_timeout).load(std::memory_order_relaxed));
        if (!ready && idle > allowedIdleRounds && !m_stop->isQuitting()) {
            Q_EMIT error(socket.error(), socket.errorString());
            return false;
        }
        if (frame.needsLength()) {
            // An iteration that reads the length reads no payload.
            idle += takeLength(socket, frame) ? 0 : 1;
            if (isTooLarge(frame.length()))
                return failTooLarge();
        } else if (takeAvailable(socket, frame) == 0) {
            ++idle;
        } else {
            if (isTooLarge(buffer.size()))
                return failTooLarge();
            QByteArray prompt;
            if (!copyPrompt(prompt))
                return false;
            if (frame.isComplete(prompt)) {
                text = frame.finish(prompt);
                return true;
            }
        }
        if (std::atomic_ref(m_bQuit).load())
            return false;
    }
}
