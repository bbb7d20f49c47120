// What the windows with a session of their own share: the session ends without blocking, and a new one is taken when
// the server is there again.
#pragma once

#include <tarnis/foundation/retranslator.h>

#include <tarnis/server/serveraddress.h>

#include <QObject>
#include <QString>
#include <QTimer>

class TarnisSession;

namespace console {

class ServerController;

/// Looks after the session pointer of one window. GUI thread.
class SessionRecovery : public QObject {
    Q_OBJECT
public:
    /// `session` is the window's own pointer; the keeper sets it to null when it ends the session. A member of the
    /// window's class, so that the session is gone before the library's destructor would wait for it.
    SessionRecovery(ServerController& controller, TarnisSession*& session);
    ~SessionRecovery() override;

    /// To be called with the `error` of a session. That of one which has been ended already does nothing.
    void fail(const QObject* sender, const QString& message);
    /// Ends the session for good, as when the window closes.
    void end();
    /// A new session to the current server, neither connected to anything nor started. The server is up.
    TarnisSession* renew();
    /// Where the window's next session goes, for windows that make it themselves when it is wanted. The server is up.
    tarnis::ServerAddress renewedAddress();
    /// Why there is no session, in the current language; empty while there is one.
    QString text() const;

    int m_retryMs = 1000; ///< the pause before a new session while the server is up

Q_SIGNALS:
    /// The session has ended; text() says so to the user.
    void lost();
    /// The server is there: the window calls renew(), connects and starts it.
    void wanted();

protected:
    void drop(const tarnis::TranslatedText& words);
    void onServerState();
    void ask();

    ServerController& m_controller;
    TarnisSession*& m_session;
    QTimer m_retryTimer;
    tarnis::TranslatedText m_text; ///< of text()
    bool m_isEnded = false;
};

} // namespace console
