// The simulated server as a process, and a plain client for it, for tests.
#pragma once

#include "support/payload.h"
#include "support/wait.h"

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <vector>

namespace simtest {

using tarnis::testing::timeoutMs;

/// Starts tarnis-simserver and ends it on destruction.
class Program {
public:
    explicit Program(const QStringList& arguments = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The port that it prints; 0 if it ends before.
    quint16 port();
    /// Everything on standard output so far and until `text` is in it or the program ends.
    QByteArray outputUntil(const QByteArray& text);
    void type(const QByteArray& text); ///< on its standard input
    void closeInput();
    void terminate() { m_process.terminate(); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    /// "exit 0", "crash": how it ended. Waits for it.
    QString end();
    QByteArray errors(); ///< standard error; waits for the end
    qint64 processId() const { return m_process.processId(); }

private:
    QProcess m_process;
    QByteArray m_output;
    quint16 m_port = 0;
};

struct BinaryReply {
    qint32 length = 0;
    QByteArray payload;
    QByteArray text;
    std::vector<double> values() const { return tarnis::testing::doublesOf(payload); }
};

/// One connection. Every wait ends after half a minute, which no test reaches.
class Connection {
public:
    /// Connects and reads the greeting, unless `greeted` is false.
    explicit Connection(quint16 port, const QByteArray& prompt = "> ", bool greeted = true);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void send(const QByteArray& bytes);
    /// Bytes up to the prompt at their end, without it.
    QByteArray text();
    BinaryReply binary();
    QByteArray ask(const QByteArray& command);
    BinaryReply askBinary(const QByteArray& command);
    /// The value after "name: " in a text reply.
    QByteArray value(const QByteArray& command, const QByteArray& name);
    /// Exactly `count` bytes, or those before the connection ends.
    QByteArray bytes(qsizetype count);
    /// All bytes until the server ends the connection.
    QByteArray untilClosed();
    bool isReset() const { return m_reset; } ///< how the connection ended
    const QByteArray& greeting() const { return m_greeting; }

private:
    bool more();

    int m_socket;
    QByteArray m_prompt;
    QByteArray m_buffer;
    QByteArray m_greeting;
    bool m_reset = false;
};

} // namespace simtest
