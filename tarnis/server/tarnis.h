// The one object by which a host application owns the server: it starts a local server or connects to a remote one, and
// owns the named sessions, the status and the settings. Lives on the GUI thread. It reports only by signals and posts
// to _g_sysMsg, and does not interpret replies.
#pragma once

#include <tarnis/server/serveraddress.h>
#include <tarnis/server/tarniscmd.h>
#include <tarnis/tarnis_export.h>

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QRecursiveMutex>
#include <QString>

class TarnisSession;

/// Local: SetLocal, SetProcessPath, Run, wait for StatusChanged(SERVER_CONNECTED). Remote: SetLocal(false),
/// SetRemoteHost, Run, wait likewise. To stop: Shutdown, wait for StatusChanged(IDLE), delete the manager.
class TARNIS_EXPORT Tarnis : public QObject {
    Q_OBJECT
public:
    /// The state of the server. The manager never sets the values 3 to 8; the host sets them according to the replies.
    enum SERVER_STATUS : int {
        IDLE, ///< no server, or one that has ended
        SERVER_CONNECTED, ///< the port is known, or a remote server has answered
        SERVER_ERROR, ///< a named session has lost its connection
        READOUT_CONNECTED, ///< SetBasePath() sends
        READOUT_ERROR, ///< SetBasePath() sends
        HARDWARE_BUSY, ///< Shutdown() refuses
        STARTING, ///< Shutdown() refuses
        RUNNING, ///< nothing follows from it here
        LOADING, ///< nothing follows from it here
        SHUTTING_DOWN ///< Shutdown() has begun
    };
    Q_ENUM(SERVER_STATUS)

    /// The prompt is not owned and must outlive every session. Null selects TarnisSession's default prompt.
    explicit Tarnis(const QByteArray* prompt, QObject* parent = nullptr);
    /// Makes a local server exit, if one is running, and waits up to 30 s for it. Sessions are deleted by their parent.
    ~Tarnis() override;

    // The virtual operations. The manager itself calls them virtually, so that subclasses can intercept - tarnis.cpp

    /// A new session for the current server. It is not started, and the caller owns it.
    virtual TarnisSession* NewTarnisSession(QObject* parent);
    /// The named session. An unknown name returns null and adds a null entry to the map.
    virtual TarnisSession* GetTarnisSession(const QString& id);
    /// Starts the local server again. Does not stop a running server: call Shutdown() first. False if no local server
    /// was started before.
    virtual bool Restart();
    /// Starts the local server (`path`, or the stored path if null), or sends "stat" to the remote one on the session
    /// named "control", as the command named "statCmd". False if the local program does not start. The status follows
    /// later by StatusChanged(). Unread output of the local server beyond 1 MiB is discarded.
    virtual bool Run(const QString* path);
    /// Queues a text command on the named session, which is created and started on first use. The reply comes by
    /// onCmdReply(). Always true.
    virtual bool SendCmd(const QString& idSession, const QString& cmdName, const QString& cmd, bool bProgress);
    /// The server's "host:port", for display.
    virtual QString GetServerAddress() const;
    /// "ip:tcp" of the readout address that was set last, for any index.
    virtual QString GetReadoutAddressText() const;

    // Settings - tarnis_settings.cpp

    /// The stored value, or `defaultValue` if nothing is stored.
    virtual QString GetSettingValue(const QString& key, const QString& defaultValue) const;
    /// Stores the value without sending it to the server. Returns false for a value that CheckSettingKey() refuses.
    virtual bool SetSettingValue(const QString& key, const QString& value);
    /// False for the keys "tcp" and "bcp" with a value that is not an int; true for everything else.
    virtual bool CheckSettingKey(const QString& key, const QString& value) const;

    // Virtual operations, continued - tarnis.cpp

    /// Ends the named sessions, waiting for their threads, and makes the local server exit. The server has 30 s before
    /// it is killed; the status becomes IDLE when it has ended. Returns false and does nothing while HARDWARE_BUSY or
    /// STARTING.
    virtual bool Shutdown();

    // Settings, continued - tarnis_settings.cpp

    /// The settings by reference, without a lock: the manager's thread only.
    virtual QMap<QString, QString>& GetSettings();
    virtual QMap<QString, QString> CopySettings() const; ///< a copy of all settings; any thread
    /// Stores a line for the next DownloadSettings(), which sends it first.
    virtual void AddCommand(const QString& line);
    /// Sends the stored lines and all settings, five per "setting" line; with `bSave` followed by "savesetting".
    /// Returns the number of lines, "savesetting" not counted. Names of the replies: updateSettingCmd0 and on,
    /// savesettingCmd.
    virtual int DownloadSettings(const QString& sessionId, bool bSave);
    /// In IDLE stores the path as setting "basepath"; while connected and not busy also sends it and emits
    /// onBasePathChange(). Otherwise does nothing. Always false.
    virtual bool SetBasePath(const QString& path, bool bWithInst);

    // Operations that are not virtual - tarnis.cpp

    /// The address for new sessions: that of the server of the last Run(). Its prompt is the manager's. Any thread.
    tarnis::ServerAddress GetSessionAddress() const;
    /// Takes no lock: call it from the manager's own thread.
    void SetLocal(bool local);
    /// Program of the local server: the complete text is the program, without arguments. Takes no lock.
    void SetProcessPath(const QString& path);
    /// The remote server of the next Run(); GetServerAddress() returns it at once.
    void SetRemoteHost(const QString& host, quint16 port);
    void GetRemoteHost(QString& host, quint16& port) const; ///< as set; not the address of a local server
    /// Stores the status and emits a change with the manager's lock held. All transitions are allowed.
    void SetStatus(SERVER_STATUS status);
    bool IsServerConnected() const; ///< false in IDLE, SERVER_ERROR and SHUTTING_DOWN
    /// The value's name with spaces for "_", for example "SERVER CONNECTED"; "UNKNOWN" for any other number.
    static const char* GetStatusName(SERVER_STATUS status);

    // Settings, continued - tarnis_settings.cpp

    /// Null for every key unless a subclass fills m_stats.
    QString GetStatValue(const QString& key) const;
    /// The settings "ip", "tcp" and "bcp"; the second form appends the index to each key. False if a port is not a
    /// number; it is then 0. @{
    bool GetReadoutAddress(QString& ip, unsigned int& tcp, unsigned int& bcp) const;
    bool GetReadoutAddress(int index, QString& ip, unsigned int& tcp, unsigned int& bcp) const;
    /// @}
    /// Stores the three settings and the text of GetReadoutAddressText(). Returns true even if a port is refused. @{
    bool SetReadoutAddress(QString& ip, unsigned int tcp, unsigned int bcp);
    bool SetReadoutAddress(int index, QString& ip, unsigned int tcp, unsigned int bcp);
    /// @}

Q_SIGNALS:
    /// Emitted with the manager's lock held: a slot must not wait for a thread that uses the manager.
    void StatusChanged(Tarnis::SERVER_STATUS status);
    /// The reply to SendCmd(): its name and text arguments, and the server's bytes without the prompt.
    void onCmdReply(const QString& cmdName, const QString& cmd, const QByteArray& result);
    void onBasePathChange(const QString& baseDir); ///< SetBasePath() has sent this path; the reply has not arrived yet

public Q_SLOTS:
    /// Looks for "UI port:" in what the local server prints. A port other than 0 sets SERVER_CONNECTED.
    void onServerReadyStdOut();
    void onServerError(QProcess::ProcessError err); ///< posts the local server's failure to _g_sysMsg
    void onStatusChanged(Tarnis::SERVER_STATUS status); ///< logs it; connected when the first local server starts
    /// A named session's reply: sets SERVER_CONNECTED if IDLE, then emits onCmdReply().
    void onReply(PTarnisCmd cmd, const QByteArray& result);
    /// A named session's failure: posts it to _g_sysMsg and sets SERVER_ERROR.
    void onError(int socketError, const QString& message);
    void onLocalSvrFinished(int exitCode, QProcess::ExitStatus exitStatus); ///< sets IDLE, whatever the exit code

protected:
    bool event(QEvent* event) override;

    mutable QRecursiveMutex m_mutex; ///< guards everything below
    const QByteArray* m_prompt; ///< not owned
    QString m_serverAddress; ///< see GetServerAddress()
    QString m_readoutAddress; ///< see GetReadoutAddressText()
    QString m_processPath; ///< see SetProcessPath()
    QString m_remoteHost; ///< see SetRemoteHost(), with m_remotePort
    quint16 m_remotePort = 0; ///< see m_remoteHost
    QString m_host; ///< host for new sessions, with m_port
    quint16 m_port = 0; ///< see m_host
    QProcess* m_process = nullptr; ///< the local server, owned
    QMap<QString, TarnisSession*> m_sessions; ///< by name
    QMap<QString, QString> m_settings; ///< by key
    QMap<QString, QString> m_stats; ///< never written here
    QList<QString> m_commands; ///< lines for the next DownloadSettings()
    bool m_bLocal = true; ///< Run() starts a program
    SERVER_STATUS m_status = IDLE; ///< see SetStatus()
    QList<QPointer<QProcess>> m_supersededProcesses; ///< servers that were still running when another was started;
                                                     ///< owned
    int m_closings = 0; ///< shutdowns whose sessions may still have calls in the queue

    /// In a slot called by a session: whether that session was closed before the call arrived.
    bool isCallOfClosedSession() const;

private:
    // Steps of the operations above and of the destructor. The local server's are in tarnis_process.cpp.
    TARNIS_NO_EXPORT void outlastQueuedCalls();
    TARNIS_NO_EXPORT TarnisSession* startNamedSession(const QString& id);
    TARNIS_NO_EXPORT void closeNamedSessions();
    TARNIS_NO_EXPORT bool startLocalServer();
    TARNIS_NO_EXPORT void connectLocalServer();
    TARNIS_NO_EXPORT void supersedeLocalServer();
    TARNIS_NO_EXPORT void endSupersededServers();
    TARNIS_NO_EXPORT void closeLocalServer();
    TARNIS_NO_EXPORT void endLocalServer();
};
