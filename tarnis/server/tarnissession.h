// One TCP connection to the server, a worker thread that owns it, and the queue of commands in front of it. Any thread
// may queue commands; all signals come from the worker, so that receivers elsewhere get them as queued calls, in order.
#pragma once

#include <tarnis/server/tarniscmd.h>
#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QList>
#include <QRecursiveMutex>
#include <QString>
#include <QThread>

#include <memory>

class QTcpSocket;
namespace tarnis {
class SessionEnd;
class SessionStop;
} // namespace tarnis

/// Connect the slots, call start(), send commands. The worker writes one command at a time, reads to the server's
/// prompt and emits `result`. After an `error` the session has ended: destroy it and make another.
class TARNIS_EXPORT TarnisSession : public QThread {
    Q_OBJECT
public:
    QString m_host; ///< fixed once the thread has started
    quint16 m_port; ///< as m_host

protected:
    QRecursiveMutex m_mutex; ///< guards m_queue and m_id; never held across socket work or signals
    bool m_bQuit = false; ///< set once, when the session is to end; through std::atomic_ref
    int m_timeout = 40; ///< read time-out in units of 10 ms; through std::atomic_ref
    const QByteArray* m_pPrompt; ///< not owned, may be null
    QList<PTarnisCmd> m_queue; ///< first to go in front
    QString m_id; ///< label for the log

    static QByteArray* m_pDefaultPrompt; ///< not owned; through std::atomic_ref

public:
    /// `prompt` ends every reply of the server; it must outlive the session. Null: the default prompt serves.
    TarnisSession(const QString& host, quint16 port, const QByteArray* prompt, QObject* parent);
    /// Waits for the worker, whose waits for a reply, a connection or a command's pause end at once: in effect for the
    /// slots that its signals call directly. Commands in the queue die unanswered. Not from the worker itself.
    /// tarnis::endInBackground() does not wait.
    ~TarnisSession() override;

    /// The prompt of sessions that have none of their own. Not taken over; it must outlive those sessions.
    static void SetDefaultPrompt(QByteArray* prompt);
    /// The allowed silence of the server: a read fails after 102 waits of `timeout` * 10 ms, in effect `timeout`
    /// seconds. From the next wait on; any thread.
    void setTimeout(int timeout);
    /// The bytes that one reply may have, the text behind a payload included; 0 for no limit. 1 GiB at first. A larger
    /// reply is not read to its end: `error` comes with QAbstractSocket::SocketResourceError and a text that says so,
    /// and the session ends. From the next bytes on; any thread.
    void setMaxReplySize(qint64 bytes);
    /// The session's prompt, else the default. With neither, a programming error, it shows a message, see
    /// tarnis::setMessageHandler(), and returns null.
    const QByteArray* GetPrompt();
    /// A label for the log. Any thread.
    void SetId(const QString& id);

    /// Takes the command over and puts it at the end of the queue. Any thread, started or not; a null pointer does
    /// nothing.
    void send(TarnisCmd* cmd);
    /// The same, at the head of the queue. The command on the wire is not touched.
    void sendPrevious(TarnisCmd* cmd);
    /// All of them at the head of the queue, in the order of the list.
    void sendPrevious(const QList<TarnisCmd*>& cmds);
    /// Destroys the commands in the queue, unanswered. The one on the wire still gets its result. Any thread.
    void cancel();

    /// Shows the user a session's `error` in a box, or as tarnis::setMessageHandler() has it. GUI thread.
    static void showErrorMessage(int socketError, const QString& message);

    /// Reads a text reply into `buffer`, without its prompt. With `emitRead` its pieces go out through the signal
    /// `read`. False when the session quits, and after `error` when the server stays silent or is gone. Used by run()
    /// only.
    bool read(QTcpSocket& socket, QByteArray& buffer, bool emitRead);
    /// Reads a binary reply: the payload into `buffer`, the text behind it into `text`. Otherwise as read().
    bool readBinary(QTcpSocket& socket, QByteArray& buffer, QString& text);

Q_SIGNALS:
    /// The connection is up and the server has sent its first prompt.
    void connected();
    /// The command has been answered. A reply that begins with "NG:" is the server's (or the session's) refusal.
    void result(PTarnisCmd cmd, const QByteArray& result);
    /// The socket failed: value of QAbstractSocket::SocketError and Qt's text. The session ends; nothing that is queued
    /// gets a result.
    void error(int socketError, const QString& message);
    /// A piece of a text reply, for commands with m_bProgress.
    void read(const QByteArray& readBytes);

protected:
    void run() override;

    class TARNIS_NO_EXPORT Worker; ///< the steps of run()

private:
    friend class tarnis::SessionEnd;
    TARNIS_NO_EXPORT bool isTooLarge(qint64 bytes) const;
    TARNIS_NO_EXPORT bool copyPrompt(QByteArray& copy);
    TARNIS_NO_EXPORT bool failTooLarge();

    qint64 m_maxReplySize = qint64(1) << 30; ///< through std::atomic_ref
    const std::unique_ptr<tarnis::SessionStop> m_stop;
};
