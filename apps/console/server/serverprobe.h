// Checks whether a server answers at an address, before sessions connect to it. Destroying a connecting session can
// block for up to 30 s; the probe never blocks, can be stopped at once, and reports why there is no answer.
#pragma once

#include <QAbstractSocket>
#include <QByteArray>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace console {

/// One attempt at a time: connects, reads the greeting up to the prompt, sends "close" and disconnects. GUI thread.
class ServerProbe : public QObject {
    Q_OBJECT
public:
    /// The result of the attempt.
    enum class Outcome {
        Greeted, ///< the greeting ended with the prompt
        NotReached, ///< no connection; see socketError()
        NoPrompt, ///< a connection, but no prompt in time, or the peer disconnected first
        Refused, ///< the server answers, but refuses the connection; see refusal()
    };

    explicit ServerProbe(QObject* parent = nullptr);

    /// Starts an attempt, replacing the one under way. `prompt` must not be empty.
    void start(const QString& host, quint16 port, const QByteArray& prompt, int timeoutMs);
    /// Cancels the attempt under way without a signal.
    void stop();
    bool isActive() const { return m_timer.isActive(); }

    /// Of the last attempt: the socket's error, its text, and what was received before the end.
    QAbstractSocket::SocketError socketError() const { return m_error; }
    QString errorText() const { return m_errorText; }
    QByteArray received() const { return m_received; }
    /// The server's reason for Outcome::Refused, in one line of limited length.
    QString refusal() const;

Q_SIGNALS:
    void finished(console::ServerProbe::Outcome outcome);

protected:
    void onReadyRead();
    void onFailed();
    void onTimeout();
    void end(Outcome outcome);

    QTcpSocket m_socket;
    QTimer m_timer;
    QByteArray m_prompt;
    QByteArray m_received;
    QAbstractSocket::SocketError m_error = QAbstractSocket::UnknownSocketError;
    QString m_errorText;
};

} // namespace console
