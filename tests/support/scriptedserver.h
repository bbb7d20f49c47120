// A server inside the test's process that does what a script says: greets, awaits requests, answers in pieces, holds
// back, hangs up. It listens on a free port of 127.0.0.1 as soon as it is constructed and is gone when it is destroyed.
//
//     ScriptedServer server;                                        // greets, answers every request with an empty text
//     server.answer("stat", { Step::text("a: 1\n") });
//     server.answer("hist1d", { Step::hold("hist"), Step::doubles({ 1.0, 2.0 }, "OK:\n") });
//     TarnisSession session(server.host(), server.port(), server.prompt(), nullptr);
//     ...
//     QVERIFY(server.waitForHold("hist"));                          // the request has come, the answer waits
//     server.release("hist");
//
// All functions may be called from any thread. What the server keeps is plain standard types under a mutex, so that the
// thread sanitizer sees every access even with a Qt that is not instrumented.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarnis::testing {

/// Runs the calling thread's Qt events until `condition` holds; false after `timeoutMs`.
bool eventually(const std::function<bool()>& condition, int timeoutMs = 20000);

/// One thing that the server does on a connection.
class Step {
public:
    // What goes to the client. "Text" and "binary" end with the server's prompt, "raw" is sent as it stands.
    static Step text(const QByteArray& body);
    static Step binary(const QByteArray& payload, const QByteArray& text = {});
    static Step doubles(
        const QList<double>& values, const QByteArray& text = {}); ///< a binary reply of little-endian doubles
    static Step raw(const QByteArray& bytes);
    /// The same in pieces of `size` bytes. Each piece but the first waits until the client has taken the one before.
    Step inChunksOf(qsizetype size) const;
    /// The same in pieces that begin at these offsets into the bytes as sent, length field and prompt included.
    Step cutAt(const QList<qsizetype>& offsets) const;
    /// A binary reply that announces another length than that of its payload.
    Step announcing(qint32 length) const;

    // What is awaited.
    static Step expect(const QByteArray& bytes); ///< these very bytes; others are noted as a failure and dropped on
    static Step expectLine(const QByteArray& line); ///< these bytes and a line feed
    static Step hold(const QByteArray& gate); ///< waits for release(gate)
    static Step silence(); ///< waits until the client has gone; so does the end of a script

    // How it ends, or goes on.
    static Step drop(); ///< closes the connection in order
    static Step reset(); ///< breaks the connection
    static Step serve(); ///< takes requests and answers them until the client has gone

    enum class Kind { Text, Binary, Raw, Expect, Hold, Silence, Drop, Reset, Serve };
    Kind kind = Kind::Raw;
    std::string bytes; ///< body, payload, bytes, or name of the gate
    std::string behind; ///< text behind a payload
    long long announced = 0;
    std::size_t chunkSize = 0; ///< 0: in one piece
    std::vector<std::size_t> cuts;
};

using Script = std::vector<Step>;

/// What a server does that behaves: greets and serves.
Script wellBehaved();

class ScriptedServer {
public:
    /// Every connection plays `script`; setScript() makes exceptions.
    explicit ScriptedServer(const Script& script = wellBehaved(), const QByteArray& prompt = "> ");
    /// Hangs up on all clients and ends. Scripts stop where they are.
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    quint16 port() const;
    static QString host(); ///< "127.0.0.1"
    const QByteArray* prompt() const; ///< lives as long as the server
    static quint16 closedPort(); ///< a port on which nobody listens

    // What serve() answers. Until told otherwise, a text reply without text.
    /// The answer to one request, from now on.
    void answer(const QByteArray& request, const Script& reply);
    /// The answers to the first, second, ... occurrence of a request; the last one stays.
    void answerInTurn(const QByteArray& request, const std::vector<Script>& replies);
    /// The answer to all other requests. Called on the server's threads.
    void answerOthers(const std::function<Script(const std::string& request)>& responder);

    /// What connection number `connection`, counted from 0, plays instead. Before it comes.
    void setScript(int connection, const Script& script);

    // Gates.
    void release(const QByteArray& gate, int times = 1); ///< lets so many holds pass, also such as come later
    void open(const QByteArray& gate); ///< lets all pass from now on
    int holding(const QByteArray& gate) const; ///< connections that wait there

    // What has happened.
    int connectionCount() const; ///< accepted so far
    int openConnections() const;
    int farewells() const; ///< connections that the client has closed with "close" as its last bytes
    QByteArray received(int connection = 0) const; ///< all bytes of a client; empty for one that has not come
    QList<QByteArray> requests() const; ///< of all clients in order of arrival, without line feed or EOT
    QStringList failures() const; ///< expectations that were not met

    // The same, waited for; false when it does not come within some seconds. Qt events go on meanwhile.
    bool waitForConnections(int count) const;
    bool waitForRequests(int count) const;
    bool waitForRequest(const QByteArray& request) const;
    bool waitForHold(const QByteArray& gate, int count = 1) const;
    bool waitForFarewells(int count) const;
    bool waitUntilDeserted() const; ///< no connection open

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis::testing
