// The console's server from the user's point of view: off, starting, up, failed or stopping. Owns the Tarnis manager,
// brings it from any of these to any other, and says in words what went wrong and what to do.
#pragma once

#include "app/commandline.h"
#include "notices/alert.h"
#include "server/serverprobe.h"

#include <tarnis/server/tarnis.h>

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <list>
#include <optional>

namespace console {

/// The manager, with a look at the local process: a host that offers "end by force" needs it.
class ManagedTarnis : public Tarnis {
    Q_OBJECT
public:
    using Tarnis::Tarnis;
    /// Null for a remote server, and as soon as Shutdown() has let go of the process.
    QProcess* process() const { return m_process; }
    /// Where sessions connect to.
    const QString& host() const { return m_host; }
    quint16 port() const { return m_port; }
    /// Why the connection broke last, in the socket's words; empty if it did not since forgetError().
    const QString& lastError() const { return m_lastError; }
    void forgetError() { m_lastError.clear(); }
    /// Deletes a process that has ended by itself, so that Shutdown() does not wait for its end.
    void discardEndedProcess();

public Q_SLOTS:
    /// In place of the manager's own: named sessions look their receiver up by this name.
    void onError(int socketError, const QString& message);

protected:
    QString m_lastError;
};

enum class ServerState { Off, Starting, Up, Failed, Stopping };

/// GUI thread. No call blocks longer than a session's read needs to notice its end (0.4 s).
class ServerController : public QObject {
    Q_OBJECT
public:
    explicit ServerController(QObject* parent = nullptr);
    ~ServerController() override;

    ManagedTarnis& tarnis() { return m_tarnis; }
    ServerState state() const { return m_state; }
    Tarnis::SERVER_STATUS status() const { return m_status; }
    const ServerChoice& choice() const { return m_choice; }
    const QByteArray& prompt() const { return m_prompts.back(); }
    /// The server's name for the user: program or address.
    QString serverName() const;
    /// True while a server process that this console started is running.
    bool hasProcess() const;
    /// True while a run goes on that would end with the server.
    bool isRunAtStake() const;
    /// Why the base path cannot be set now, in words; empty if it can.
    QString basePathRefusal() const;
    /// A remote server is only disconnected from.
    bool isLocal() const { return m_choice.kind == ServerChoice::Kind::Local; }

    /// Uses this server from now on; one that is in use is stopped first. `prompt` must not be empty.
    void start(const ServerChoice& choice, const QByteArray& prompt);
    /// Stops and starts the same server again; from Off and Failed it just starts.
    void restart();
    /// Shuts a local server down, disconnects from a remote one, gives up an attempt. The state ends in Off.
    void stop();
    /// Kills the local server that does not end by itself.
    void endByForce();
    /// A connection of the host's own to the server broke: looks whether the server is still there, and if not, fails.
    void checkServer();

    /// Shows an alert of a part that has no place of its own for it.
    void showStatusMessage(const Alert& message) { Q_EMIT statusMessage(message); }

    /// A server that was there before: if nothing answers, its address is right all the same.
    void setKnown(const ServerChoice& choice) { m_known = choice; }

    /// Sets the manager's status by what an accepted command or the reply to "stat" tells: a run goes on, or has ended.
    void readReply(const QString& command, const QByteArray& reply);
    /// The same with the reply to a "stat" that the user did not type: a status that the reply does not hold stays, and
    /// so does one that a command has reported since the request.
    void readState(const QByteArray& reply, qint64 askedMsAgo);
    /// True while a reply to "stat" can change the status: connected or running, and not busy.
    bool canReadState() const;

    /// Times after which the user is told that something takes long, in ms. Tests make them short.
    int m_probeTimeoutMs = 10000;
    int m_portTimeoutMs = 10000;
    int m_endTimeoutMs = 3000;
    /// The pause before it looks again whether a remote server that has gone is back.
    int m_againMs = 3000;

Q_SIGNALS:
    void stateChanged();
    /// Replaces the previous alert; an empty text takes it away.
    void alert(const console::Alert& alert);
    /// Comes and goes beside the alert.
    void statusMessage(const console::Alert& message);
    /// An accepted reply to "stat" has come, whoever has sent the command.
    void statRead(const QByteArray& reply);
    /// The manager is about to end its sessions: end your own now, their server goes.
    void aboutToStop();

protected:
    bool takeState(const QString& command, const QByteArray& reply);
    void begin();
    void beginLocal();
    void beginRemote();
    void onProbed(ServerProbe::Outcome outcome);
    void probeAgain();
    void goOn();
    void onStatusChanged(Tarnis::SERVER_STATUS status);
    void onConnected();
    void onProcessFinished();
    void onSlow();
    void fail(const Alert& failure);
    void fail(const tarnis::TranslatedText& words, AlertAction action)
    {
        fail(alertOf(Alert::Severity::Failure, words, action));
    }
    AlertAction again() const { return isLocal() ? AlertAction::StartAgain : AlertAction::ConnectAgain; }
    static QString adviceAgain(bool isLocal);
    tarnis::TranslatedText obstacle(const QString& address) const;
    void shutDown();
    void reachedOff();
    void setState(ServerState state);
    Alert probeFailure(ServerProbe::Outcome outcome) const;
    Alert greetingFailure(const QString& address) const;
    Alert reachFailure(const QString& address) const;

    ManagedTarnis m_tarnis;
    ServerState m_state = ServerState::Off;
    Tarnis::SERVER_STATUS m_status = Tarnis::IDLE;
    ServerChoice m_choice;
    std::list<QByteArray>
        m_prompts; ///< every prompt ever used, the present one last: sessions that end keep reading theirs
    QByteArray m_nextPrompt;
    std::optional<ServerChoice> m_next; ///< to start as soon as the state is Off
    ServerProbe m_probe;
    QTimer m_slowTimer; ///< fires when starting or stopping takes long
    QTimer m_againTimer; ///< looks for a remote server that has gone
    QPointer<QProcess> m_process; ///< the local server, also after Shutdown() has let go of it
    std::optional<ServerChoice> m_known; ///< was there before
    bool m_hasGreeted = false; ///< with the prompt, since begin()
    bool m_isRunning = false; ///< a run goes on, as far as it was told
    QElapsedTimer m_commanded; ///< since the reply to a command last told whether a run goes on
};

/// Path of the program to start for a local choice: absolute, the simulator beside the console for an empty one, looked
/// up in PATH for a bare name. Empty if there is no such program.
QString resolveProgram(const QString& program);

} // namespace console
