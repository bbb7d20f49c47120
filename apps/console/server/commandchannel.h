// A private connection to the server for a window or the command line: a TarnisSession that is created for the first
// command and recreated after a failure.
#pragma once

#include <tarnis/server/tarniscmd.h>

#include <QList>
#include <QObject>
#include <QString>

class Tarnis;
class TarnisSession;

namespace console {

/// An unanswered command, with everything needed to send it again.
struct Request {
    QString text;
    QString name; ///< the command's m_cmdName
    bool isBinary = false;
};

/// Sends commands in order and reports their results. GUI thread.
class CommandChannel : public QObject {
    Q_OBJECT
public:
    /// `server` must outlive this object. `name` is the session's label in the log.
    CommandChannel(Tarnis& server, const QString& name, QObject* parent);
    ~CommandChannel() override;

    /// Takes ownership of the command and queues it, on a new session if necessary. The server must be connected.
    void send(TarnisCmd* command);
    /// Drops and returns all unanswered commands and ends the session. Does not block: the session's thread ends in the
    /// background.
    QList<Request> drop();

    /// The current session, created if needed, for dialogs that read host, port and prompt from it. Owned by this
    /// object.
    TarnisSession* session();

    /// The unanswered commands, the one being processed first.
    QList<Request> waiting() const;

Q_SIGNALS:
    /// A piece of a text reply, for commands with m_bProgress.
    void progress(const QByteArray& piece);
    void replied(const PTarnisCmd& command, const QByteArray& reply);
    /// The session has ended; `unanswered` are the lost commands, in order. The next send() creates a new session.
    void failed(int socketError, const QString& message, const QList<console::Request>& unanswered);
    /// A command was added, answered or dropped.
    void waitingChanged();

protected:
    struct Entry {
        const TarnisCmd* command; ///< only compared
        Request request;
    };

    void onResult(const PTarnisCmd& command, const QByteArray& reply);
    void onError(int socketError, const QString& message);
    QList<Request> takeAll();

    Tarnis& m_server;
    QString m_name;
    TarnisSession* m_session = nullptr;
    int m_generation = 0; ///< number of the session; identifies queued calls of an ended one
    QList<Entry> m_waiting;
};

} // namespace console
