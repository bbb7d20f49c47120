// A connection of one's own to the server, as a window or a command line needs it: a private TarnisSession that is made
// with the first command and made again after a failure.
#pragma once

#include <tarnis/server/tarniscmd.h>

#include <QList>
#include <QObject>
#include <QString>

class Tarnis;
class TarnisSession;

namespace console {

/// A command as it was given up: enough to send it again.
struct Request {
    QString text;
    QString name; ///< the command's m_cmdName
    bool isBinary = false;
};

/// Sends commands in order and tells what became of each. GUI thread.
class CommandChannel : public QObject {
    Q_OBJECT
public:
    /// `server` must outlive the link. `name` is the session's label in the log.
    CommandChannel(Tarnis& server, const QString& name, QObject* parent);
    ~CommandChannel() override;

    /// Takes the command over and queues it, on a new session if there is none. The server must be connected.
    void send(TarnisCmd* command);
    /// Forgets every command that has no answer yet and ends the session; returns them. Does not block: the
    /// session's thread ends in the background.
    QList<Request> drop();

    /// The live session, made if need be, for dialogs that read host, port and prompt from it. Owned by the link.
    TarnisSession* session();

    /// The commands that have no answer yet, the one on the wire first.
    QList<Request> waiting() const;

Q_SIGNALS:
    /// A piece of a text reply, for commands with m_bProgress.
    void progress(const QByteArray& piece);
    void replied(const PTarnisCmd& command, const QByteArray& reply);
    /// The session has ended; `unanswered` are the commands that were lost, in order. The next send() starts again.
    void failed(int socketError, const QString& message, const QList<console::Request>& unanswered);
    /// A command was added, answered or dropped.
    void waitingChanged();

protected:
    struct Entry {
        const TarnisCmd* command; ///< for comparing only
        Request request;
    };

    void onResult(const PTarnisCmd& command, const QByteArray& reply);
    void onError(int socketError, const QString& message);
    QList<Request> takeAll();

    Tarnis& m_server;
    QString m_name;
    TarnisSession* m_session = nullptr;
    int m_generation = 0; ///< counts sessions: calls that an ended one has left in the event queue are recognised
    QList<Entry> m_waiting;
};

} // namespace console
