// A private connection to the server for a window or the command line: a tarnis::Client that connects for the first
// command, and again for the first one after a failure.
#pragma once

#include <tarnis/server/tarniscmd.h>

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace tarnis {
class Client;
struct Reply;
} // namespace tarnis

namespace console {

class ServerController;

/// An unanswered command, with everything needed to send it again.
struct Request {
    QString text;
    QString name; ///< the command's m_cmdName
    bool isBinary = false;
};

/// Sends commands in order and reports their results. Never blocks. GUI thread.
class CommandChannel : public QObject {
    Q_OBJECT
public:
    /// `controller` must outlive this object. `name` is the connection's label in the log.
    CommandChannel(ServerController& controller, const QString& name, QObject* parent);
    ~CommandChannel() override;

    /// Takes ownership of the command and queues it, on a new connection if necessary. The server must be connected.
    void send(TarnisCmd* command);
    /// Drops and returns all unanswered commands and closes the connection.
    QList<Request> drop();

    /// The unanswered commands, the one being processed first.
    QList<Request> waiting() const;

Q_SIGNALS:
    /// A piece of a text reply, for commands with m_bProgress.
    void progress(const QByteArray& piece);
    /// The text or payload; the text after a payload is the command's m_replyText. A refusal in place of a payload is
    /// such a text, too.
    void replied(const PTarnisCmd& command, const QByteArray& reply);
    /// The connection is closed; `unanswered` are the lost commands, in order. The next send() connects again. The
    /// message is a part of a sentence, in the user's language.
    void failed(const QString& message, const QList<console::Request>& unanswered);
    /// A command was added, answered or dropped.
    void waitingChanged();

protected:
    struct Entry {
        const TarnisCmd* command; ///< only compared
        Request request;
    };

    void connectClient();
    void onEnded(const PTarnisCmd& command, const tarnis::Reply& reply);
    void onReplied(const PTarnisCmd& command, const QByteArray& reply);
    void onLost(const QString& reason);
    QList<Request> takeAll();

    ServerController& m_controller;
    QString m_name;
    std::unique_ptr<tarnis::Client> m_client; ///< null before the first command and after drop()
    int m_generation = 0; ///< number of the connection; identifies the results of an earlier one
    QList<Entry> m_waiting;
};

} // namespace console
