// The server of a command, connected or started according to the options.
#pragma once

#include "arguments.h"
#include "interruption.h"
#include "outcome.h"

#include <tarnis/client/client.h>

#include <QProcess>

#include <memory>

namespace cli {

/// Wrong usage if the name of a file or histogram on the server is empty or contains characters that a request cannot
/// hold: control characters, which could end it, and those outside of Latin-1. `what` is "file" or "histogram".
Outcome checkRemoteName(const QString& name, const QString& what);
/// Wrong usage if the text is empty or has more than one line.
Outcome checkServerCommand(const QString& command);

/// A connection for one command. Each request waits for its reply.
class Server {
public:
    /// Starts the program of --local, if given, and connects. The text of a failure contains the address. An
    /// interruption ends the attempt with a failure.
    static Result<std::unique_ptr<Server>> open(const Arguments& arguments, const Interruption* interruption = nullptr);
    /// Ends the program that was started.
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// The reply to a text command. A refusal is a failure with the server's text; a reply that is not text has the
    /// code NoConnection.
    Result<tarnis::Reply> ask(const QString& command);
    /// As above for a command with a binary reply. A negative length is a failure too.
    Result<tarnis::Reply> askBinary(const QString& command);
    /// Stores a text file on the server.
    Result<tarnis::Reply> upload(const QString& name, const QByteArray& content);
    /// HOST:PORT.
    QString address() const;
    /// A failure for a reply that violates the protocol, with the code NoConnection.
    Failure brokenReply(const QString& command, const QString& reason) const;
    tarnis::Client& client() { return *m_client; }

private:
    Server() = default;
    Outcome readOptions(const Arguments& arguments);
    Outcome start(const QString& program);
    void waitForOutput(std::chrono::milliseconds limit) const;
    Outcome connectToServer();
    bool isInterrupted() const { return m_interruption != nullptr && m_interruption->isRequested(); }
    tarnis::RequestOptions requestOptions() const;
    Result<tarnis::Reply> finish(QFuture<tarnis::Reply> future, const QString& what);
    Result<tarnis::Reply> checked(tarnis::Reply reply, const QString& what) const;
    QString endOfProgram() const;

    QString m_host;
    quint16 m_port = 0;
    QByteArray m_prompt = "> ";
    std::chrono::milliseconds m_timeout { 10000 };
    QString m_program;
    const Interruption* m_interruption = nullptr; ///< during open()
    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<tarnis::Client> m_client;
};

} // namespace cli
