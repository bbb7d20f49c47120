#include "server/serverprobe.h"

#include "server/replytext.h"

namespace console {

namespace {

constexpr qsizetype greetingLimit = 65536; // limit of a greeting
constexpr qsizetype reasonLimit = 200; // characters of a refusal in a text for users

} // namespace

ServerProbe::ServerProbe(QObject* parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ServerProbe::onTimeout);
    connect(&m_socket, &QTcpSocket::readyRead, this, &ServerProbe::onReadyRead);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &ServerProbe::onFailed);
}

void ServerProbe::start(const QString& host, quint16 port, const QByteArray& prompt, int timeoutMs)
{
    stop();
    m_prompt = prompt;
    m_received.clear();
    m_error = QAbstractSocket::UnknownSocketError;
    m_errorText.clear();
    m_timer.start(timeoutMs);
    m_socket.connectToHost(host, port);
}

void ServerProbe::stop()
{
    m_timer.stop();
    m_socket.abort();
}

void ServerProbe::onReadyRead()
{
    m_received += m_socket.readAll();
    if (!isActive())
        return;
    if (m_received.endsWith(m_prompt)) {
        m_timer.stop();
        m_socket.write("close");
        m_socket.disconnectFromHost();
        Q_EMIT finished(Outcome::Greeted);
    } else if (m_received.size() > greetingLimit) {
        end(Outcome::NoPrompt);
    }
}

void ServerProbe::onFailed()
{
    if (!isActive())
        return;
    m_error = m_socket.error();
    m_errorText = m_socket.errorString();
    m_received += m_socket.readAll();
    const bool wasConnected = m_error == QAbstractSocket::RemoteHostClosedError;
    end(wasConnected ? Outcome::NoPrompt : Outcome::NotReached);
}

void ServerProbe::onTimeout()
{
    const bool isConnected = m_socket.state() == QAbstractSocket::ConnectedState;
    m_error = QAbstractSocket::SocketTimeoutError;
    m_errorText = tr("No answer in time");
    end(isConnected ? Outcome::NoPrompt : Outcome::NotReached);
}

QString ServerProbe::refusal() const
{
    const QString reason = QString::fromUtf8(m_received).section(u':', 1).trimmed().section(u'\n', 0, 0).simplified();
    return reason.size() > reasonLimit ? reason.left(reasonLimit) + u'\u2026' : reason;
}

void ServerProbe::end(Outcome outcome)
{
    stop();
    const bool isRefused =
        outcome == Outcome::NoPrompt && replyKind(QString::fromUtf8(m_received)) == ReplyKind::Refused;
    Q_EMIT finished(isRefused ? Outcome::Refused : outcome);
}

} // namespace console
