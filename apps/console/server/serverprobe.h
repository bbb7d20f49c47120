// Looks whether a server answers at an address, before sessions are pointed at it. A session that connects blocks
// whoever destroys it for up to 30 s; the probe never blocks, can be stopped at once, and knows why nobody answers.
#pragma once

#include <QAbstractSocket>
#include <QByteArray>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace console {

/// One attempt at a time: connects, reads the greeting up to the prompt, says "close" and goes. GUI thread.
class ServerProbe : public QObject {
    Q_OBJECT
public:
    /// What came of the attempt.
    enum class Outcome {
        Greeted, ///< the greeting ended with the prompt
        NotReached, ///< no connection; the socket's error tells why
        NoPrompt, ///< a connection, but no prompt in time, or the peer hung up before it
    };

    explicit ServerProbe(QObject* parent = nullptr);

    /// Starts an attempt, in place of the one under way. `prompt` must not be empty.
    void start(const QString& host, quint16 port, const QByteArray& prompt, int timeoutMs);
    /// Ends the attempt under way without a signal.
    void stop();
    bool isActive() const { return m_timer.isActive(); }

    /// Of the last attempt: the socket's error, its text, and what was received before the end.
    QAbstractSocket::SocketError socketError() const { return m_error; }
    QString errorText() const { return m_errorText; }
    QByteArray received() const { return m_received; }

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
