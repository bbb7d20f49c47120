// One TCP connection to the server, a worker thread that owns it, and the queue of commands in front of it. Any thread
// may queue commands; all signals come from the worker, so that receivers in other threads get them as queued calls, in
// order.
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
/// prompt and emits `result`. After an `error` the session has ended: destroy it and create another.
class TARNIS_EXPORT TarnisSession : public QThread {
    Q_OBJECT
public:
    QString m_host; ///< fixed once the thread has started
    quint16 m_port; ///< as m_host

protected:
    QRecursiveMutex m_mutex; ///< guards m_queue and m_id; never held across socket work or signals
    bool m_bQuit = false; ///< set once, when the session is to end; through std::atomic_ref
    int m_timeout = 40; ///< read timeout in units of 10 ms; through std::atomic_ref
    const QByteArray* m_pPrompt; ///< not owned, may be null
    QList<PTarnisCmd> m_queue; ///< the first is sent next
    QString m_id; ///< label for the log

    static QByteArray* m_pDefaultPrompt; ///< not owned; through std::atomic_ref

public:
    /// `prompt` ends every reply of the server; it must outlive the session. Null selects the default prompt.
    TarnisSession(const QString& host, quint16 port, const QByteArray* prompt, QObject* parent);
    /// Waits for the worker. The worker's own waits end at once, so this effectively waits only for slots that its
    /// signals call directly. Queued commands are destroyed unanswered. Must not run on the worker itself.
    /// tarnis::endInBackground() does not wait.
    ~TarnisSession() override;

    /// The prompt of sessions without their own. Not owned; it must outlive those sessions.
    static void SetDefaultPrompt(QByteArray* prompt);
    /// The allowed silence of the server: a read fails after 102 waits of `timeout` * 10 ms, which is about `timeout`
    /// seconds. Takes effect with the next wait; any thread.
    void setTimeout(int timeout);
    /// The maximum size of a reply in bytes, including the text after a payload; 0 for no limit. Default 1 GiB. A
    /// larger reply is not read to its end: the session emits `error` with QAbstractSocket::SocketResourceError and an
    /// explanation, and ends. Takes effect with the next bytes; any thread.
    void setMaxReplySize(qint64 bytes);
    /// The session's prompt, else the default. If both are missing, which is a programming error, it shows a message
    /// (see tarnis::setMessageHandler()) and returns null.
    const QByteArray* GetPrompt();
    /// A label for the log. Any thread.
    void SetId(const QString& id);

    /// Takes ownership of the command and appends it to the queue. Any thread, also before start(); a null pointer is
    /// ignored.
    void send(TarnisCmd* cmd);
    /// As above, at the head of the queue. A command that is already being sent is not affected.
    void sendPrevious(TarnisCmd* cmd);
    /// Inserts all commands at the head of the queue, in the order of the list.
    void sendPrevious(const QList<TarnisCmd*>& cmds);
    /// Destroys the queued commands unanswered. A command that has been sent still gets its result. Any thread.
    void cancel();

    /// Shows a session's `error` in a message box, or with the handler of tarnis::setMessageHandler(). GUI thread.
    static void showErrorMessage(int socketError, const QString& message);

    /// Reads a text reply into `buffer`, without its prompt. With `emitRead` its pieces are also emitted by the signal
    /// `read`. False when the session quits, and after `error` when the server does not answer or has closed the
    /// connection. Used by run() only.
    bool read(QTcpSocket& socket, QByteArray& buffer, bool emitRead);
    /// Reads a binary reply: the payload into `buffer`, the text after it into `text`. Otherwise as read().
    bool readBinary(QTcpSocket& socket, QByteArray& buffer, QString& text);

Q_SIGNALS:
    /// The connection is up and the server has sent its first prompt.
    void connected();
    /// The command has been answered. A reply that begins with "NG:" is a refusal by the server (or the session).
    void result(PTarnisCmd cmd, const QByteArray& result);
    /// The socket failed: value of QAbstractSocket::SocketError and Qt's text. The session ends; queued commands get no
    /// result.
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
