/// @file
/// An asynchronous connection to a server: requests in, futures out.
#pragma once

#include <tarnis/client/reply.h>
#include <tarnis/tarnis_export.h>

#include <QFuture>
#include <QObject>

#include <memory>

namespace tarnis {

/// What follows the loss of a connection, or an attempt that fails: the n-th wait is first * factor^n, at most
/// `longest`, less a random share of up to `jitter`, which keeps many clients from returning in step.
struct TARNIS_EXPORT ReconnectPolicy {
    bool enabled = true; ///< false: the state becomes Failed at once
    std::chrono::milliseconds first { 250 }; ///< the wait after the first failure
    std::chrono::milliseconds longest { 30000 }; ///< no wait exceeds it
    double factor = 2.0; ///< 1 or more
    double jitter = 0.25; ///< 0 to 1
    int maxAttempts = 0; ///< failures in a row after which the state becomes Failed; 0: no limit
};

/// The command that is sent on an idle connection to find a server that no longer answers.
struct TARNIS_EXPORT KeepAlive {
    QString command = QStringLiteral("stat"); ///< a text command that changes nothing; its reply is dropped
    std::chrono::milliseconds interval = std::chrono::seconds(30); ///< idle time before it is sent; 0: never
    std::chrono::milliseconds silence = std::chrono::seconds(10); ///< the server must answer within this time
};

/// Everything about a connection but its address.
struct TARNIS_EXPORT ClientOptions {
    QByteArray prompt = "> "; ///< what ends every reply; not empty
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(10); ///< for host look-up and TCP connection
    std::chrono::milliseconds greetingTimeout = std::chrono::seconds(10); ///< from there to the end of the greeting
    ReconnectPolicy reconnect = {}; ///< see there
    KeepAlive keepAlive = {}; ///< see there
    int maxQueued = 100000; ///< requests that may wait; a further one fails at once
};

/// One connection to a server, on the event loop of the thread that the client lives in. It has no thread of its own,
/// never blocks and shows no message boxes. A lost connection is made again; requests that wait are sent then, the one
/// under way ends as Failed, since the server may have carried it out.
///
///     auto* client = new tarnis::Client({}, this);
///     client->connectTo("localhost", 5000);
///     client->request("stat").then(this, [](const tarnis::Reply& reply) { qInfo() << reply.text(); });
///
/// All functions must be called on the client's thread. The client may be deleted at any time, also by a slot connected
/// to its signals, a continuation or a progress callback; its destructor ends every request and emits nothing.
/// Continuations without a context object run on the client's thread. Nothing ends while that thread is blocked: do not
/// call waitForFinished() or result() of a request there before it has ended. Cancelling the request's future cancels
/// the request; cancelling what then() returned does not.
class TARNIS_EXPORT Client : public QObject {
    Q_OBJECT
    /// See State.
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    /// See reason().
    Q_PROPERTY(QString reason READ reason NOTIFY stateChanged)
public:
    /// Where the connection is. Any state may follow any other.
    enum class State {
        Disconnected, ///< before connectTo(), after close() and abort(); requests fail at once
        Connecting, ///< looking up the host, making the TCP connection; requests wait
        Greeting, ///< connected, waiting for the first prompt; requests wait
        Ready, ///< no request under way
        Busy, ///< the server owes a reply
        Reconnecting, ///< waiting before the next attempt; requests wait
        Failed, ///< given up, see reason(); requests fail at once
    };
    Q_ENUM(State)

    /// Does not connect.
    explicit Client(ClientOptions options = {}, QObject* parent = nullptr);
    /// Ends every request as Cancelled. A connection is told "close" first if no request is under way.
    ~Client() override;

    /// Connects, after a close() of the present connection. A host, port or prompt that cannot be used gives Failed.
    void connectTo(const QString& host, quint16 port);
    /// In Reconnecting and Failed starts the next attempt at once; nothing otherwise.
    void reconnectNow();
    /// Ends every request as Cancelled, says "close" to the server unless a request is under way, and disconnects.
    /// The state is Disconnected when it returns. `reason` is the reason of the requests, empty for a general one.
    void close(const QString& reason = {});
    /// As close() without a word to the server: nothing more is sent.
    void abort();
    /// Ends the waiting requests as Cancelled. The one under way goes on.
    void cancelAll();

    /// Sends a command as its turn comes and returns a future that ends exactly once. A text that begins with "txfile"
    /// is an upload: a header line, a line feed, the content. Refused without being sent: an upload without line feed
    /// or with the byte 04, another text with a line feed. An empty text is not sent either, its reply is empty.
    /// Characters outside Latin-1 are sent as "?".
    ///
    /// The caller may cancel the future itself: it then ends without a result, as Qt's rule is. A request that waits is
    /// not sent; the reply of one under way is read and dropped. With Qt 6.4, cancel no future that has ended: if it
    /// had a continuation, Qt uses freed memory.
    QFuture<Reply> request(const QString& text, const RequestOptions& options = {});
    /// request() with Form::Binary, for histograms and files: "rxfile NAME", "hist1d NAME".
    QFuture<Reply> requestBinary(const QString& text, RequestOptions options = {});
    /// Sends "txfile NAME" with the content, any bytes but 04.
    QFuture<Reply> upload(const QString& name, const QByteArray& content, const RequestOptions& options = {});

    State state() const; ///< see State
    QString reason() const; ///< why the connection was lost or given up, as a text for users; else empty
    QString host() const; ///< as given to connectTo()
    quint16 port() const; ///< as given to connectTo()
    /// True in Ready and Busy.
    bool isConnected() const;
    /// Requests that have not ended, the one under way included.
    qsizetype pending() const;
    const ClientOptions& options() const; ///< as given to the constructor
    /// The server's greeting on this connection, without its prompt.
    QByteArray greeting() const;

Q_SIGNALS:
    /// After each change of state() or reason().
    void stateChanged(tarnis::Client::State state, const QString& reason);
    /// The connection is up and greeted, for the first time or again.
    void connected();
    /// A connection that was up is lost: state() is Reconnecting or Failed. Comes before stateChanged().
    void connectionLost(const QString& reason);

protected:
    void timerEvent(QTimerEvent* event) override; ///< all limits of the client

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
