// Session handling for windows with their own session: ends the session without blocking, and renews it when the server
// is back.
#pragma once

#include <tarnis/foundation/retranslator.h>

#include <tarnis/server/serveraddress.h>

#include <QObject>
#include <QString>
#include <QTimer>

class TarnisSession;

namespace console {

class ServerController;

/// Manages the session pointer of one window. GUI thread.
class SessionRecovery : public QObject {
    Q_OBJECT
public:
    /// `session` is the window's own pointer; it is set to null when the session is ended. Make this object a member of
    /// the window's class, so that the session has ended before the library's destructor would wait for it.
    SessionRecovery(ServerController& controller, TarnisSession*& session);
    ~SessionRecovery() override;

    /// Call it with the `error` of a session. Errors of ended sessions are ignored.
    void fail(const QObject* sender, const QString& message);
    /// Ends the session permanently, for example when the window closes.
    void end();
    /// A new session to the current server, without signal connections and not started. The server must be up.
    TarnisSession* renew();
    /// The address of the window's next session, for windows that create it themselves. The server must be up.
    tarnis::ServerAddress renewedAddress();
    /// Tries to get a session now instead of after the next delay. Returns true if the window has a session then.
    bool retry();
    /// True while the server is connected, but refuses a further connection for this window.
    bool isRefused() const { return !m_session && !m_refusal.isEmpty(); }
    /// Why there is no session, in the current language; empty while there is one.
    QString text() const;

    int m_retryMs = 1000; ///< the delay before a new session while the server is up

Q_SIGNALS:
    /// The session has ended; text() explains this to the user.
    void lost();
    /// The server is available: the window must call renew(), connect the session and start it.
    void wanted();

protected:
    void onAnswered(const QString& refusal);
    void drop(const tarnis::TranslatedText& translated);
    void onServerState();
    void ask();

    ServerController& m_controller;
    TarnisSession*& m_session;
    QTimer m_retryTimer;
    tarnis::TranslatedText m_text; ///< of text()
    QString m_refusal; ///< the server's reason for accepting no further connection, at the last check
    bool m_isEnded = false;
};

} // namespace console
