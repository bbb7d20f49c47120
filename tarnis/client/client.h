/// @file
/// An asynchronous connection to a server. Requests return futures.
#pragma once

#include <tarnis/client/reply.h>
#include <tarnis/tarnis_export.h>

#include <QFuture>
#include <QObject>

#include <memory>

namespace tarnis {

/// How a client reconnects after a lost connection or a failed attempt. The n-th wait is first * factor^n, at most
/// `longest`, reduced by a random fraction of up to `jitter`, so that many clients do not reconnect at the same time.
struct TARNIS_EXPORT ReconnectPolicy {
    bool enabled = true; ///< false: the state becomes Failed at once
    std::chrono::milliseconds first { 250 }; ///< the wait after the first failure; 0: no wait
    std::chrono::milliseconds longest { 30000 }; ///< the maximum wait; at most a year
    double factor = 2.0; ///< 1 or more
    double jitter = 0.25; ///< 0 to 1
    /// Consecutive failures after which the state becomes Failed; 0: no limit. A reply resets the count, and so does a
    /// connection that lasted for `stableAfter`.
    int maxAttempts = 0;
    std::chrono::milliseconds stableAfter = std::chrono::seconds(10); ///< counted from the greeting; 0: any

    /// The wait after a number of consecutive failures, at least 1. For hosts that repeat something else, such as the
    /// start of a program. Thread-safe.
    std::chrono::milliseconds delayAfter(int failures) const;
};

/// The command that is sent on an idle connection to find a server that no longer answers.
struct TARNIS_EXPORT KeepAlive {
    QString command = QStringLiteral("stat"); ///< one line that changes nothing; its reply is dropped
    std::chrono::milliseconds interval = std::chrono::seconds(30); ///< idle time before it is sent; 0: never
    std::chrono::milliseconds silence = std::chrono::seconds(10); ///< the server must answer within this time
};

/// Options of a connection, without its address. Here and in RequestOptions a time of 0 or less means no limit, unless
/// stated otherwise, and so does a time beyond the range of the clock.
struct TARNIS_EXPORT ClientOptions {
    QByteArray prompt = "> "; ///< the end of every reply; not empty
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(10); ///< for the host lookup and the TCP connection
    std::chrono::milliseconds greetingTimeout = std::chrono::seconds(10); ///< from the TCP connection to the end of the
                                                                          ///< greeting
    ReconnectPolicy reconnect = {}; ///< see there
    KeepAlive keepAlive = {}; ///< see there
    int maxQueued = 100000; ///< maximum number of waiting requests, at least 1; a further one fails at once
};

/// One connection to a server, on the event loop of the thread that the client lives in. It has no thread of its own,
/// never blocks and shows no message boxes. A lost connection is re-established. Waiting requests are sent then. The
/// request under way ends as Failed, because the server may already have executed it.
///
///     auto* client = new tarnis::Client({}, this);
///     client->connectTo("localhost", 5000);
///     client->request("stat").then(this, [](const tarnis::Reply& reply) { qInfo() << reply.text(); });
///
/// All functions must be called on the client's thread. Between its construction and the first connectTo() it may be
/// moved to another thread. It may be deleted at any time, also by a slot connected to its signals, a continuation or a
/// progress callback; its destructor ends every request and emits nothing. Each of them may also run an event loop of
/// its own, such as that of a message box: the client continues meanwhile. Continuations without a context object run
/// on the client's thread. Nothing ends while that thread is blocked: do not call waitForFinished() or result() of a
/// request there before it has ended. Cancelling the request's future cancels the request; cancelling what then()
/// returned does not.
class TARNIS_EXPORT Client : public QObject {
    Q_OBJECT
    /// See State.
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    /// See reason().
    Q_PROPERTY(QString reason READ reason NOTIFY stateChanged)
public:
    /// State of the connection. All transitions are possible.
    enum class State {
        Disconnected, ///< before connectTo(), after close() and abort(); requests fail at once
        Connecting, ///< looking up the host, making the TCP connection, see also Server::client(); requests wait
        Greeting, ///< connected, waiting for the first prompt; requests wait
        Ready, ///< no request under way
        Busy, ///< waiting for a reply
        Reconnecting, ///< waiting before the next attempt; requests wait
        Failed, ///< no further attempts, see reason(); requests fail at once
    };
    Q_ENUM(State)

    /// Does not connect.
    explicit Client(ClientOptions options = {}, QObject* parent = nullptr);
    /// Ends every request as Cancelled. Sends "close" to the server first if no request is under way.
    ~Client() override;

    /// Connects, after closing the current connection. An invalid host, port, prompt or keep-alive command leads to the
    /// state Failed.
    void connectTo(const QString& host, quint16 port);
    /// Starts the next attempt at once in the states Reconnecting and Failed; otherwise does nothing.
    void reconnectNow();
    /// Ends every request as Cancelled, sends "close" to the server unless a request is under way, and disconnects. The
    /// state is Disconnected when it returns. `reason` is reported as the reason of the requests; an empty one selects
    /// a general text.
    void close(const QString& reason = {});
    /// As close(), but sends nothing to the server.
    void abort();
    /// Ends the waiting requests as Cancelled. The request under way continues.
    void cancelAll();

    /// Queues a command and returns a future that ends exactly once. In the states Connecting, Greeting and
    /// Reconnecting it waits for the connection, at most until its deadline. A request that fails at once has ended
    /// when this function returns. A continuation that repeats a failed request must therefore wait first, to avoid
    /// endless recursion.
    ///
    /// A text that begins with "txfile" is an upload: a header line, a line feed, the content. Refused without being
    /// sent: an upload without line feed or with the byte 04, another text with a line feed. An empty text is not sent
    /// either, its reply is empty. Characters outside Latin-1 are sent as "?".
    ///
    /// The caller may cancel the future, which then ends without a result. A waiting request is not sent; the reply of
    /// one under way is read and dropped. With Qt 6.4, do not cancel a future that has ended: if it had a continuation,
    /// Qt uses freed memory.
    QFuture<Reply> request(const QString& text, const RequestOptions& options = {});
    /// request() with Form::Binary, for histograms and files: "rxfile NAME", "hist1d NAME".
    QFuture<Reply> requestBinary(const QString& text, RequestOptions options = {});
    /// Sends "txfile NAME" with the content, which must not contain the byte 04.
    QFuture<Reply> upload(const QString& name, const QByteArray& content, const RequestOptions& options = {});

    State state() const; ///< see State
    /// Why the connection was lost or could not be made, or why the Server that owns the client has failed, as a text
    /// for users; else empty.
    QString reason() const;
    QString host() const; ///< as given to connectTo()
    quint16 port() const; ///< as given to connectTo()
    /// True in Ready and Busy.
    bool isConnected() const;
    /// Number of requests that have not ended, including the one under way.
    qsizetype pending() const;
    const ClientOptions& options() const; ///< as given to the constructor
    /// The server's greeting on this connection, without its prompt.
    QByteArray greeting() const;

Q_SIGNALS:
    /// After each change of state() or reason(). A slot that changes the state, for example by close(), causes a nested
    /// emission: slots connected after it receive the later state first. Such slots should use state() and reason().
    void stateChanged(tarnis::Client::State state, const QString& reason);
    /// The connection is established and the greeting has arrived, for the first time or again.
    void connected();
    /// An established connection was lost; state() is Reconnecting or Failed. Emitted before stateChanged().
    void connectionLost(const QString& reason);

protected:
    void timerEvent(QTimerEvent* event) override; ///< all limits of the client

private:
    friend class Server; // its clients wait while its address is not known
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
