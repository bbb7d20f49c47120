#include "tarnis/client/connection_p.h"

#include <QPointer>

#include <algorithm>
#include <array>

namespace tarnis {

namespace {

// Maximum read by one call of onReadyRead(), some milliseconds of work, so that a large reply does not block the event
// loop.
constexpr qint64 bytesPerTurn = qint64(4) << 20;
constexpr qint64 largestRead = qint64(1) << 20;
constexpr qint64 smallRead = qint64(16) << 10;
constexpr qint64 maxGreeting = qint64(1) << 20;

} // namespace

Connection::Connection(QByteArray prompt, QObject* parent)
    : QObject(parent)
    , m_prompt(std::move(prompt))
{
}

Connection::~Connection()
{
    close(true);
}

// The socket's signals come as queued calls. A slot may then delete the socket or run a nested event loop: QTcpSocket
// does not emit again while a slot of its signal runs.
void Connection::makeSocket()
{
    m_socket = std::make_unique<QTcpSocket>(this);
    const quint64 number = ++m_socketNumber;
    const auto queued = [this, number](auto signal, auto slot) {
        connect(
            m_socket.get(), signal, this,
            [this, number, slot] {
                if (m_socket && number == m_socketNumber)
                    (this->*slot)();
            },
            Qt::QueuedConnection);
    };
    queued(&QTcpSocket::connected, &Connection::onConnected);
    queued(&QTcpSocket::readyRead, &Connection::onReadyRead);
    queued(&QTcpSocket::errorOccurred, &Connection::onSocketError);
}

void Connection::open(const QString& host, quint16 port)
{
    close(false);
    makeSocket();
    m_phase = Phase::Connecting;
    m_isEnding = false;
    m_isText = true;
    m_maxSize = maxGreeting;
    m_frame.emplace(ReplyFrame::Form::Text, m_buffer);
    // Unbuffered: the bytes go from the system straight into the reply, and a request at once into the system.
    m_socket->connectToHost(
        host, port, QIODeviceBase::ReadWrite | QIODeviceBase::Unbuffered, QAbstractSocket::AnyIPProtocol);
}

void Connection::onConnected()
{
    m_phase = Phase::Greeting;
    // A request is one small write that waits for its reply, so delaying it has no benefit.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    Q_EMIT opened();
}

void Connection::exchange(const QByteArray& request, ReplyFrame::Form form, qint64 maxSize)
{
    Q_ASSERT(m_phase == Phase::Idle);
    m_phase = Phase::Exchange;
    ++m_exchangeNumber;
    m_isEnding = false;
    m_isText = form == ReplyFrame::Form::Text;
    m_maxSize = maxSize;
    m_lengthField.clear();
    m_announced = 0;
    m_frame.emplace(form, m_buffer);
    m_socket->write(request);
    // A long upload that the system could not take at once. Short requests do without the signal.
    if (m_socket->bytesToWrite() > 0)
        connect(m_socket.get(), &QTcpSocket::bytesWritten, this, &Connection::sent, Qt::UniqueConnection);
}

bool Connection::hasStrayBytes() const
{
    return m_phase == Phase::Idle && m_socket->bytesAvailable() > 0;
}

void Connection::close(bool politely)
{
    if (!m_socket)
        return;
    const bool isIdle = m_phase == Phase::Idle;
    m_phase = Phase::Closed;
    m_frame.reset();
    m_buffer = QByteArray();
    const std::unique_ptr<QTcpSocket> socket = std::move(m_socket);
    socket->disconnect(this);
    if (politely && isIdle && socket->state() == QAbstractSocket::ConnectedState) {
        socket->write(farewell);
        socket->disconnectFromHost();
    }
    socket->abort();
}

void Connection::onReadyRead()
{
    if (m_phase == Phase::Idle) {
        onUnasked();
        return;
    }
    if (m_isEnding)
        return;
    for (qint64 turn = 0; turn < bytesPerTurn;) {
        if (m_frame->needsLength() && !readLength())
            return;
        const qint64 taken = readSome();
        if (taken <= 0)
            return;
        turn += taken;
        const bool complete = m_frame->isComplete(m_prompt);
        if (m_phase == Phase::Exchange && !reportProgress(taken, complete))
            return;
        if (!checkSize())
            return;
        if (complete) {
            onComplete();
            return;
        }
    }
    // The next readyRead() announces the remaining bytes.
}

// On an idle connection: either it was closed, or stray bytes arrived, after which replies could not be matched with
// requests.
void Connection::onUnasked()
{
    char byte = 0;
    const qint64 taken = m_socket->read(&byte, 1);
    if (taken > 0)
        fail(tr("The server sent bytes that no request asked for."));
    else if (taken < 0)
        fail(socketReason());
}

// False when the owner has closed or deleted the connection, or has run an event loop in which the reply was read.
bool Connection::reportProgress(qint64 taken, bool complete)
{
    const QPointer<Connection> self(this);
    const quint64 number = m_socketNumber;
    const quint64 exchangeNumber = m_exchangeNumber;
    m_isEnding = complete;
    const QByteArray held = m_buffer; // keeps the piece valid if the receiver calls close()
    QByteArrayView piece;
    if (m_isText) {
        piece = QByteArrayView(held).last(taken);
        piece.chop(complete ? std::min<qsizetype>(taken, m_prompt.size()) : 0);
    }
    Q_EMIT received(held.size(), m_isText ? -1 : std::max<qint64>(m_frame->length(), 0), piece);
    return self && m_socket && number == m_socketNumber && exchangeNumber == m_exchangeNumber
        && m_phase == Phase::Exchange;
}

// False while the length is incomplete, out of bounds, or the connection has ended. Every byte must be read, because an
// unbuffered socket does not signal again before.
bool Connection::readLength()
{
    std::array<char, lengthFieldSize> bytes {};
    const qint64 taken = m_socket->read(bytes.data(), lengthFieldSize - m_lengthField.size());
    if (taken < 0) {
        fail(socketReason());
        return false;
    }
    m_lengthField.append(bytes.data(), taken);
    if (m_lengthField.size() < lengthFieldSize)
        return false;
    m_frame->setLength(m_lengthField);
    m_announced = m_frame->length();
    if (m_lengthField.startsWith("NG:"))
        readAsText();
    if (m_frame->length() <= m_maxSize)
        return true;
    fail(
        tr("The server announced a reply of %1 bytes; at most %2 are accepted.").arg(m_frame->length()).arg(m_maxSize));
    return false;
}

// A server that does not know the command answers in text. As a length, "NG:" and a letter are negative, or more than
// 512 MiB and no multiple of 8, which is no histogram and hardly a file.
void Connection::readAsText()
{
    m_isText = true;
    m_announced = 0;
    m_frame.emplace(ReplyFrame::Form::Text, m_buffer);
    std::copy_n(m_lengthField.constData(), m_lengthField.size(), m_frame->room(m_lengthField.size()));
    m_frame->commit(m_lengthField.size());
}

// Reads once. Returns the number of bytes; 0 if there are none; -1 after the connection has ended.
qint64 Connection::readSome()
{
    qint64 taken = 0;
    const qsizetype missing = m_frame->missing();
    if (missing > 0) {
        const qint64 wanted = std::min<qint64>(missing + smallRead, largestRead);
        taken = m_socket->read(m_frame->room(wanted), wanted);
        m_frame->commit(std::max<qint64>(taken, 0));
    } else {
        // Most replies are short: a buffer that grows with the received bytes does not reserve space for a long one.
        std::array<char, smallRead> chunk; // NOLINT(cppcoreguidelines-pro-type-member-init): read() fills it
        taken = m_socket->read(chunk.data(), qint64(chunk.size()));
        const qint64 count = std::max<qint64>(taken, 0);
        std::copy_n(chunk.data(), count, m_frame->room(count));
        m_frame->commit(count);
    }
    if (taken < 0)
        fail(socketReason());
    return taken;
}

bool Connection::checkSize()
{
    // The text after a payload has the same limit.
    const qint64 limit = m_maxSize + (m_isText ? 0 : std::max<qint64>(m_frame->length(), 0)) + m_prompt.size();
    if (m_buffer.size() <= limit)
        return true;
    fail(m_phase == Phase::Greeting
            ? tr("The server has sent %1 bytes without its prompt. Check the address and the prompt.")
                  .arg(m_buffer.size())
            : tr("The reply is larger than the accepted %1 bytes.").arg(m_maxSize));
    return false;
}

void Connection::onComplete()
{
    const bool isGreeting = m_phase == Phase::Greeting;
    const QString text = m_frame->finish(m_prompt);
    m_frame.reset();
    m_phase = Phase::Idle;
    const QByteArray data = std::exchange(m_buffer, QByteArray());
    if (isGreeting)
        Q_EMIT greeted(data);
    else
        Q_EMIT replied(data, text);
}

void Connection::onSocketError()
{
    fail(socketReason());
}

void Connection::fail(const QString& reason)
{
    close(false);
    Q_EMIT lost(reason);
}

QString Connection::socketReason() const
{
    switch (m_socket->error()) {
    case QAbstractSocket::ConnectionRefusedError:
        return tr("The connection was refused: no server listens at this address.");
    case QAbstractSocket::HostNotFoundError:
        return tr("The host was not found. Check its name.");
    case QAbstractSocket::RemoteHostClosedError:
        return tr("The server has closed the connection.");
    case QAbstractSocket::NetworkError:
        return tr("The network connection was interrupted (%1).").arg(m_socket->errorString());
    default:
        return m_socket->errorString().isEmpty() ? tr("The connection has failed.") : m_socket->errorString();
    }
}

} // namespace tarnis
