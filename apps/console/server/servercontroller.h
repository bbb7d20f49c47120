// The console's server from the user's point of view: off, starting, up, failed or stopping. Owns the Tarnis manager,
// performs all transitions between these states, and provides texts that explain failures and what to do.
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

/// The manager with access to the local process, which is needed for "end by force".
class ManagedTarnis : public Tarnis {
    Q_OBJECT
public:
    using Tarnis::Tarnis;
    /// Null for a remote server, and after Shutdown() has released the process.
    QProcess* process() const { return m_process; }
    /// Host that sessions connect to.
    const QString& host() const { return m_host; }
    quint16 port() const { return m_port; }
    /// The last connection error as the socket's text; empty if there was none since forgetError().
    const QString& lastError() const { return m_lastError; }
    void forgetError() { m_lastError.clear(); }
    /// Deletes a process that has already ended, so that Shutdown() does not wait for its end.
    void discardEndedProcess();

public Q_SLOTS:
    /// Replaces the manager's slot: named sessions look up their receiver by this name.
    void onError(int socketError, const QString& message);

protected:
    QString m_lastError;
};

enum class ServerState { Off, Starting, Up, Failed, Stopping };

/// GUI thread. No call blocks longer than a session's read needs to detect its end (0.4 s).
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
    /// True while a run would be lost with the server.
    bool wouldLoseRun() const;
    /// Why the base path cannot be set now, as a text for users; empty if it can.
    QString basePathRefusal() const;
    /// A remote server is only disconnected from.
    bool isLocal() const { return m_choice.kind == ServerChoice::Kind::Local; }

    /// Uses this server; the current one is stopped first. `prompt` must not be empty.
    void start(const ServerChoice& choice, const QByteArray& prompt);
    /// Restarts the same server; from Off and Failed it only starts.
    void restart();
    /// Shuts down a local server, disconnects from a remote one, or cancels an attempt. The final state is Off.
    void stop();
    /// Kills a local server that does not end itself.
    void endByForce();
    /// To be called when a connection to the server was lost: checks whether the server still answers; if not, the
    /// state becomes Failed.
    void checkServer();

    /// Shows an alert of another part of the console.
    void showStatusMessage(const Alert& message) { Q_EMIT statusMessage(message); }

    /// Sets a server that was reachable before: if it does not answer, its address is still correct.
    void setKnown(const ServerChoice& choice) { m_known = choice; }

    /// Sets the manager's status (running or not) according to an accepted command or the reply to "stat".
    void readReply(const QString& command, const QByteArray& reply);
    /// As above for a "stat" that the user did not type: the status is kept if the reply does not contain it, or if a
    /// command has reported it since the request.
    void readState(const QByteArray& reply, qint64 askedNsAgo);
    /// True while a reply to "stat" can change the status: connected or running, and not busy.
    bool canReadState() const;

    /// Times in ms after which a slow operation is reported to the user. Tests shorten them.
    int m_probeTimeoutMs = 10000;
    int m_portTimeoutMs = 10000;
    int m_endTimeoutMs = 3000;
    /// The delay before checking again whether a lost remote server is back.
    int m_againMs = 3000;

Q_SIGNALS:
    void stateChanged();
    /// Replaces the previous alert; an empty text removes it.
    void alert(const console::Alert& alert);
    /// A transient message beside the alert.
    void statusMessage(const console::Alert& message);
    /// An accepted reply to "stat" has arrived, from any sender.
    void statRead(const QByteArray& reply);
    /// The server has been checked and answers. `refusal` is empty, or the reason why it accepts no further connection;
    /// those that exist continue.
    void answered(const QString& refusal);
    /// The manager is about to end its sessions: receivers must end their own ones.
    void aboutToStop();

protected:
    void takeState(const QString& command, const QByteArray& reply);
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
    void fail(const tarnis::TranslatedText& translated, AlertAction action)
    {
        fail(alertOf(Alert::Severity::Failure, translated, action));
    }
    AlertAction again() const { return isLocal() ? AlertAction::StartAgain : AlertAction::ConnectAgain; }
    static QString adviceAgain(bool isLocal);
    tarnis::TranslatedText obstacle(const QString& address) const;
    void shutDown();
    void reachedOff();
    void setState(ServerState state);
    Alert probeFailure(ServerProbe::Outcome outcome) const;
    Alert refusalFailure() const;
    Alert greetingFailure(const QString& address) const;
    Alert reachFailure(const QString& address) const;

    ManagedTarnis m_tarnis;
    ServerState m_state = ServerState::Off;
    Tarnis::SERVER_STATUS m_status = Tarnis::IDLE;
    ServerChoice m_choice;
    std::list<QByteArray>
        m_prompts; ///< all used prompts, the current one last, because ending sessions still read theirs
    QByteArray m_nextPrompt;
    std::optional<ServerChoice> m_next; ///< to start as soon as the state is Off
    ServerProbe m_probe;
    QTimer m_slowTimer; ///< fires when starting or stopping takes a long time
    QTimer m_againTimer; ///< checks for a lost remote server
    QPointer<QProcess> m_process; ///< the local server, also after Shutdown() has released it
    std::optional<ServerChoice> m_known; ///< was reachable before
    bool m_hasGreeted = false; ///< has greeted with the prompt, since begin()
    bool m_isRunning = false; ///< a run is under way, as last reported
    QElapsedTimer m_commanded; ///< time since a command's reply last reported the run state
};

/// Path of the program to start for a local choice: absolute; the simulator in the console's folder for an empty path;
/// looked up in PATH for a bare name. Empty if there is no such program.
QString resolveProgram(const QString& program);

} // namespace console
