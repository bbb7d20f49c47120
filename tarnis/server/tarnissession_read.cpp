// The two readers of a session, both in the order of the bytes on the wire.
#include "tarnis/server/tarnissession.h"

#include "tarnis/foundation/log.h"
#include "tarnis/server/wire_p.h"

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

// waitForReadyRead() answers to new bytes only: with `enough` of them in the socket's buffer it would hold up a reply
// that is already here. It takes the request out, but not where it finds bytes to read at once.
bool waitForBytes(QTcpSocket& socket, qint64 enough, int timeout)
{
    if (socket.bytesAvailable() < enough && !socket.waitForReadyRead(waitMs(timeout)))
        return false;
    if (socket.bytesToWrite() > 0)
        socket.flush();
    return true;
}

// All that the socket holds, appended in one copy. Gives the number of bytes.
qsizetype takeAvailable(QTcpSocket& socket, QByteArray& buffer)
{
    const qint64 available = socket.bytesAvailable();
    if (available <= 0)
        return 0;
    const qsizetype before = buffer.size();
    buffer.resize(before + available);
    const qint64 taken = std::max<qint64>(socket.read(buffer.data() + before, available), 0);
    buffer.truncate(before + taken);
    return taken;
}

// The announced length, once its four bytes are here; one to three of them stay in the socket.
bool takeLength(QTcpSocket& socket, qint32& length)
{
    if (socket.bytesAvailable() < tarnis::lengthFieldSize)
        return false;
    length = tarnis::announcedLength(socket.read(tarnis::lengthFieldSize));
    return true;
}

// Keeps the socket's own buffer small while a payload comes, so that the payload goes through the cache and not through
// a second block of fresh memory. Where its chunks end does not matter: the prompt is looked for behind it only.
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

qsizetype takePayload(QTcpSocket& socket, QByteArray& buffer, qint32 length)
{
    const qsizetype received = buffer.size() + socket.bytesAvailable();
    const qsizetype worthHaving = tarnis::binaryReplyCapacity(length, received);
    // A text that is longer than foreseen grows the buffer as any other.
    if (received > buffer.capacity() && received <= worthHaving)
        buffer.reserve(worthHaving);
    return takeAvailable(socket, buffer);
}

} // namespace

bool TarnisSession::read(QTcpSocket& socket, QByteArray& buffer, bool emitRead)
{
    LOG_BLOCK("TarnisSession::read(), this[%p]", static_cast<void*>(this));
    buffer.clear();
    if (std::atomic_ref(m_bQuit).load())
        return false;
    for (int idle = 0;;) {
        const bool ready = waitForBytes(socket, 1, std::atomic_ref(m_timeout).load(std::memory_order_relaxed));
        if (idle > allowedIdleRounds && !ready) {
            Q_EMIT error(socket.error(), socket.errorString());
            return false;
        }
        const qsizetype taken = takeAvailable(socket, buffer);
        ++idle;
        if (taken > 0) {
            const QByteArray* const prompt = GetPrompt();
            if (!prompt)
                return false;
            const bool complete = buffer.endsWith(*prompt);
            const qsizetype fresh = complete ? taken - prompt->size() : taken;
            if (emitRead && fresh > 0)
                Q_EMIT read(buffer.mid(buffer.size() - taken, fresh));
            if (complete) {
                buffer.chop(prompt->size());
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
    buffer.clear();
    text.clear();
    if (std::atomic_ref(m_bQuit).load())
        return false;
    qint32 length = 0;
    bool lengthKnown = false;
    PayloadWindow window(socket);
    // Unlike in read(), the idle rounds of the whole reply count.
    for (int idle = 0;;) {
        window.update(lengthKnown ? length - buffer.size() : 0);
        const qint64 enough = lengthKnown ? 1 : tarnis::lengthFieldSize;
        const bool ready = waitForBytes(socket, enough, std::atomic_ref(m_timeout).load(std::memory_order_relaxed));
        if (!ready && idle > allowedIdleRounds) {
            Q_EMIT error(socket.error(), socket.errorString());
            return false;
        }
        if (!lengthKnown) {
            // A round that reads the length takes no payload.
            lengthKnown = takeLength(socket, length);
            idle += lengthKnown ? 0 : 1;
        } else if (takePayload(socket, buffer, length) == 0) {
            ++idle;
        } else {
            const QByteArray* const prompt = GetPrompt();
            if (!prompt)
                return false;
            if (tarnis::endsBinaryReply(buffer, length, *prompt)) {
                text = tarnis::splitBinaryReply(buffer, length, prompt->size());
                return true;
            }
        }
        if (std::atomic_ref(m_bQuit).load())
            return false;
    }
}
