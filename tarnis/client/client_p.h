// The state machine of a client. Each entry point first updates all members, then ends futures and emits signals. It
// accesses no member after one of these has deleted the client.
#pragma once

#include "tarnis/client/client.h"
#include "tarnis/client/connection_p.h"
#include "tarnis/client/requestqueue_p.h"

#include <QBasicTimer>

namespace tarnis {

/// ReconnectPolicy::delayAfter() with the random number, 0 to 1.
std::chrono::milliseconds reconnectDelay(const ReconnectPolicy& policy, int failures, double share);

/// The result of a request from the server's answer.
Reply replyOf(const QByteArray& data, const QString& binaryText);

/// The result of a request without an answer.
Reply endedAs(Reply::Outcome outcome, const QString& why);

/// The future of a request that has ended before it could wait.
QFuture<Reply> endedFuture(Reply reply);

/// The arguments of the last stateChanged() of a client or a server.
template <typename Owner> struct AnnouncedState {
    typename Owner::State state {}; ///< at first the one of a new owner, without a connection
    QString reason;

    /// Emits the signal unless it would repeat the last one.
    void announce(Owner& owner, typename Owner::State newState, const QString& newReason)
    {
        if (newState == state && newReason == reason)
            return;
        state = newState;
        reason = newReason;
        // A copy: a receiver may delete the owner or change its reason, and use the argument afterwards.
        const QString given = reason;
        Q_EMIT owner.stateChanged(newState, given);
    }
};

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
    void lose(const QString& why, Reply::Outcome outcome = Reply::Outcome::Failed);
    // Those of a Server:
    /// Ends every request as Cancelled. Further ones wait for addressKnown().
    void awaitAddress(const QString& why);
    /// Connects, and keeps the requests that wait since awaitAddress().
    void addressKnown(const QString& newHost, quint16 newPort);
    /// Ends every request as Failed; the state becomes Disconnected.
    void giveUp(const QString& why);

    // Steps
    std::optional<Reply> localReply(const QString& text) const;
    QString problem() const;
    void watch(Request& request, RequestKey key);
    void lookForCancelled(Clock::time_point now);
    void leave(State newState, const QString& newReason, Reply::Outcome outcome, const QString& why, bool politely);
    void begin(const QString& newHost, quint16 newPort);
    void startAttempt();
    void advance();
    void advanceLater();
    void send(RequestKey key, Request request);
    void sendKeepAlive();
    void loseForStrayBytes();
    bool expireUnderWay(Clock::time_point now);
    void expirePhase(Clock::time_point now);
    EndedRequests endQueue(Reply::Outcome outcome, const QString& why);
    void endUnderWay(EndedRequests& ended, Reply::Outcome outcome, const QString& why);
    Clock::time_point nextDue() const;
    void arm();
    void announce() { lastAnnounced.announce(q, state, reason); }

    struct UnderWay {
        RequestKey key;
        Request request;
        Clock::time_point lastByte; ///< received, or sent
        bool isKeepAlive = false;
        qint64 reported = 0; ///< bytes of a payload, to the progress callback
    };

    Client& q;
    const ClientOptions options;
    Connection connection;
    RequestQueue queue;
    std::optional<UnderWay> underWay;
    State state = State::Disconnected;
    QString reason;
    AnnouncedState<Client> lastAnnounced;
    QString host;
    quint16 port = 0;
    QByteArray greeting;
    bool isEnding = false; ///< in the destructor: a continuation does not connect again
    bool awaitsAddress = false; ///< in Connecting, without a socket
    bool advancesLater = false; ///< a call of advance() is in the event queue
    int failures = 0; ///< in a row, without a reply or a stable connection in between
    Clock::time_point upSince; ///< the last greeting
    Clock::time_point phaseDue = never; ///< of Connecting, Greeting and Reconnecting
    Clock::time_point cancelCheckDue = never; ///< when requests are looked through for cancelled ones
    Clock::time_point lastExchange; ///< an idle connection's keep-alive counts from here
    QBasicTimer timer;
    Clock::time_point armed = never; ///< when the timer fires; it may be early, never late
    quint64 nextNumber = 0;
};

} // namespace tarnis
