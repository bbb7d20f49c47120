// The server of a command: connected to, or started, as the options say.
#pragma once

#include "arguments.h"
#include "outcome.h"

#include <tarnis/client/client.h>

#include <QProcess>

#include <memory>

namespace cli {

/// Wrong usage if the name of a file or histogram of the server is empty or holds a control character, which would end
/// the request. `what` is "file" or "histogram".
Outcome checkRemoteName(const QString& name, const QString& what);
/// Wrong usage if the text is empty or has more than one line.
Outcome checkServerCommand(const QString& command);

/// A connection for the time of one command. Each request waits for its reply.
class Server {
public:
    /// Connects, after it has started the program of --local. The text of a failure names the address.
    static Result<std::unique_ptr<Server>> open(const Arguments& arguments);
    /// Ends the program that it has started.
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// The reply to a text command. A refusal is a failure with the server's text, a reply that is no text one with the
    /// code NoConnection.
    Result<tarnis::Reply> ask(const QString& command);
    /// The same for a command with a binary reply. A negative length is a failure, too.
    Result<tarnis::Reply> askBinary(const QString& command);
    /// Stores a text file on the server.
    Result<tarnis::Reply> upload(const QString& name, const QByteArray& content);
    /// HOST:PORT.
    QString address() const;
    /// A reply that does not keep to the protocol, with the code NoConnection.
    Failure brokenReply(const QString& command, const QString& reason) const;
    tarnis::Client& client() { return *m_client; }

private:
    Server() = default;
    Outcome readOptions(const Arguments& arguments);
    Outcome start(const QString& program);
    Outcome connectToServer();
    tarnis::RequestOptions requestOptions() const;
    Result<tarnis::Reply> finish(QFuture<tarnis::Reply> future, const QString& what);
    Result<tarnis::Reply> checked(tarnis::Reply reply, const QString& what) const;
    QString endOfProgram() const;

    QString m_host;
    quint16 m_port = 0;
    QByteArray m_prompt = "> ";
    std::chrono::milliseconds m_timeout { 10000 };
    QString m_program;
    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<tarnis::Client> m_client;
};

} // namespace cli
