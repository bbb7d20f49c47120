// The state machine of a client. Each entry point first updates all members, then ends futures and emits signals. It
// accesses no member after one of these has deleted the client.
#pragma once

#include "tarnis/client/client.h"
#include "tarnis/client/connection_p.h"
#include "tarnis/client/requestqueue_p.h"

#include <QBasicTimer>

namespace tarnis {

/// The wait before the next attempt after `failures` (1 or more) consecutive failures. `share` is a random number from
/// 0 to 1.
std::chrono::milliseconds reconnectDelay(const ReconnectPolicy& policy, int failures, double share);

/// The result of a request from the server's answer.
Reply replyOf(const QByteArray& data, const QString& binaryText);

/// The result of a request without an answer.
Reply endedAs(Reply::Outcome outcome, const QString& why);

/// The future of a request that has ended before it could wait.
QFuture<Reply> endedFuture(Reply reply);

class TARNIS_NO_EXPORT Client::Private {
public:
    Private(Client& client, ClientOptions clientOptions);

    // Entry points
    void connectTo(const QString& newHost, quint16 newPort);
    void reconnectNow();
    void disconnectAs(const QString& why, bool politely);
    void cancelAll();
    QFuture<Reply> request(const QString& text, const RequestOptions& requestOptions);
    void onTimer();
    void onOpened();
    void onGreeted(const QByteArray& text);
    void onReceived(qint64 size, qint64 expected, QByteArrayView piece);
    void onReplied(const QByteArray& data, const QString& binaryText);
    void onCancelled(RequestKey key);
    void lose(const QString& why);

    // Steps
    std::optional<Reply> localReply(const QString& text) const;
    QString addressProblem() const;
    void watch(Request& request, RequestKey key);
    void lookForCancelled(Clock::time_point now);
    void startAttempt();
    void advance();
    void send(RequestKey key, Request request);
    void sendKeepAlive();
    bool expireUnderWay(Clock::time_point now);
    void expirePhase(Clock::time_point now);
    EndedRequests endQueue(Reply::Outcome outcome, const QString& why);
    void endUnderWay(EndedRequests& ended, Reply::Outcome outcome, const QString& why);
    Clock::time_point nextDue() const;
    void arm();
    void announce();

    struct UnderWay {
        RequestKey key;
        Request request;
        Clock::time_point lastByte; ///< or the time of sending
        bool isKeepAlive = false;
    };

    Client& q;
    const ClientOptions options;
    Connection connection;
    RequestQueue queue;
    std::optional<UnderWay> underWay;
    State state = State::Disconnected;
    QString reason;
    State announcedState = State::Disconnected;
    QString announcedReason;
    QString host;
    quint16 port = 0;
    QByteArray greeting;
    int failures = 0; ///< consecutive, without a reply in between
    Clock::time_point phaseDue = never; ///< deadline in Connecting, Greeting and Reconnecting
    Clock::time_point lookDue = never; ///< next scan for cancelled requests
    Clock::time_point lastExchange; ///< start of the keep-alive interval
    QBasicTimer timer;
    Clock::time_point armed = never; ///< when the timer fires; it may be early, never late
    quint64 nextNumber = 0;
};

} // namespace tarnis
