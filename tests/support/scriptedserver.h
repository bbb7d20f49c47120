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

/// One step of the server on a connection.
class Step {
public:
    // Data for the client. "Text" and "binary" end with the server's prompt, "raw" is sent unchanged.
    static Step text(const QByteArray& body);
    static Step binary(const QByteArray& payload, const QByteArray& text = {});
    static Step doubles(
        const QList<double>& values, const QByteArray& text = {}); ///< a binary reply of little-endian doubles
    static Step raw(const QByteArray& bytes);
    /// The same in pieces of `size` bytes. Each piece except the first waits until the client has read the previous
    /// one.
    Step inChunksOf(qsizetype size) const;
    /// The same in pieces that begin at these offsets into the bytes as sent, length field and prompt included.
    Step cutAt(const QList<qsizetype>& offsets) const;
    /// A binary reply that announces a length different from that of its payload.
    Step announcing(qint32 length) const;

    // Expected input.
    static Step expect(const QByteArray& bytes); ///< exactly these bytes; others are recorded as a failure and close
                                                 ///< the connection
    static Step expectLine(const QByteArray& line); ///< these bytes and a line feed
    static Step hold(const QByteArray& gate); ///< waits for release(gate)
    static Step silence(); ///< waits until the client has disconnected; so does the end of a script

    // End or continuation.
    static Step drop(); ///< closes the connection in order
    static Step reset(); ///< breaks the connection
    static Step serve(); ///< reads requests and answers them until the client has disconnected

    enum class Kind { Text, Binary, Raw, Expect, Hold, Silence, Drop, Reset, Serve };
    Kind kind = Kind::Raw;
    std::string bytes; ///< body, payload, bytes, or name of the gate
    std::string behind; ///< text after a payload
    long long announced = 0;
    std::size_t chunkSize = 0; ///< 0: in one piece
    std::vector<std::size_t> cuts;
};

using Script = std::vector<Step>;

/// The script of a well-behaved server: greets and serves.
Script wellBehaved();

class ScriptedServer {
public:
    /// Every connection executes `script`, except for those of setScript().
    explicit ScriptedServer(const Script& script = wellBehaved(), const QByteArray& prompt = "> ");
    /// Disconnects all clients and ends. Scripts are aborted.
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    quint16 port() const;
    static QString host(); ///< "127.0.0.1"
    const QByteArray* prompt() const; ///< valid as long as the server
    static quint16 closedPort(); ///< a port without a listener

    // What serve() answers. By default a text reply without text.
    /// The answer to one request, from now on.
    void answer(const QByteArray& request, const Script& reply);
    /// The answers to the first, second, ... occurrence of a request; the last one is repeated.
    void answerInTurn(const QByteArray& request, const std::vector<Script>& replies);
    /// The answer to all other requests. Called on the server's threads.
    void answerOthers(const std::function<Script(const std::string& request)>& responder);

    /// The script of connection number `connection`, counted from 0. Call it before the connection is made.
    void setScript(int connection, const Script& script);

    // Gates.
    void release(const QByteArray& gate, int times = 1); ///< releases `times` holds, including later ones
    void open(const QByteArray& gate); ///< lets all pass from now on
    int holding(const QByteArray& gate) const; ///< number of connections that wait there

    // Recorded events.
    int connectionCount() const; ///< accepted so far
    int openConnections() const;
    int farewells() const; ///< connections that the client has closed with "close" as its last bytes
    QByteArray received(int connection = 0) const; ///< all bytes of a client; empty for one that has not connected
    QList<QByteArray> requests() const; ///< of all clients in order of arrival, without line feed or EOT
    QStringList failures() const; ///< expectations that were not met

    // Wait for the same; false if it does not happen within some seconds. Qt events are processed in the meantime.
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
