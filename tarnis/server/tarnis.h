// The one object by which a host application owns the server: it starts a local server or points at a remote one, keeps
// the sessions that have a name, the status and the settings. Lives on the GUI thread. Signals and posts to _g_sysMsg
// are all the reports that it makes; it does not read the meaning of replies.
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
/// SetRemoteHost, Run, and the same. To stop: Shutdown, wait for StatusChanged(IDLE), delete the manager.
class TARNIS_EXPORT Tarnis : public QObject {
    Q_OBJECT
public:
    /// What the server does. The values 3 to 8 are never entered by the manager: the host sets them as it reads the
    /// replies.
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

    /// The prompt is not owned, may be null (then TarnisSession's default prompt serves) and outlives every session.
    explicit Tarnis(const QByteArray* prompt, QObject* parent = nullptr);
    /// Tells a local server that is still there to exit and waits up to 30 s for it. Sessions are left to their parent,
    /// which is the manager's own.
    ~Tarnis() override;

    // The virtual operations, in their order. The manager calls its own operations through them - tarnis.cpp

    /// A session of the caller's own for the present server: neither started nor kept here.
    virtual TarnisSession* NewTarnisSession(QObject* parent);
    /// The named session. An unknown name gives null, and enters it in the map as such.
    virtual TarnisSession* GetTarnisSession(const QString& id);
    /// Starts the local server again. Stops nothing first: shut down before. False without a local server to repeat.
    virtual bool Restart();
    /// Starts the local server (`path`, or the stored path if null), or sends "stat" to the remote one on the session
    /// named "control", as the command named "statCmd". False if the local program does not start. The status follows
    /// later by StatusChanged(). What the local server prints is dropped when more than 1 MiB of it has not been read.
    virtual bool Run(const QString* path);
    /// Queues a text command on the named session, which is made and started on first use. The reply comes by
    /// onCmdReply(). Always true.
    virtual bool SendCmd(const QString& idSession, const QString& cmdName, const QString& cmd, bool bProgress);
    /// The server's "host:port", for display.
    virtual QString GetServerAddress() const;
    /// "ip:tcp" of the readout address that was set last, of any index.
    virtual QString GetReadoutAddressText() const;

    // Settings - tarnis_settings.cpp

    /// The value that is stored here, or `defaultValue` for a key without one.
    virtual QString GetSettingValue(const QString& key, const QString& defaultValue) const;
    /// Stores the value here; nothing goes to the server. A value that CheckSettingKey() refuses gives false.
    virtual bool SetSettingValue(const QString& key, const QString& value);
    /// False for the keys "tcp" and "bcp" with a value that is no int; true for everything else.
    virtual bool CheckSettingKey(const QString& key, const QString& value) const;

    // Virtual operations, continued - tarnis.cpp

    /// Ends the named sessions, waiting for their threads, and tells the local server to exit. The server has 30 s to
    /// end by itself; IDLE comes when it has ended. False, and nothing done, while HARDWARE_BUSY or STARTING.
    virtual bool Shutdown();

    // Settings, continued - tarnis_settings.cpp

    /// The settings themselves, not guarded: the manager's own thread only.
    virtual QMap<QString, QString>& GetSettings();
    virtual QMap<QString, QString> CopySettings() const; ///< all settings; for any thread
    /// Keeps a line for the next DownloadSettings(), which sends it first.
    virtual void AddCommand(const QString& line);
    /// Sends the kept lines and all settings, five in a "setting" line; with `bSave` "savesetting" after them. Returns
    /// the number of lines, "savesetting" not counted. Names of the replies: updateSettingCmd0 and on, savesettingCmd.
    virtual int DownloadSettings(const QString& sessionId, bool bSave);
    /// In IDLE stores the path as setting "basepath"; while connected and not busy also sends it and signals
    /// onBasePathChange(). Otherwise does nothing. Always false.
    virtual bool SetBasePath(const QString& path, bool bWithInst);

    // Operations that are not virtual - tarnis.cpp

    /// Where new sessions connect to: of the server that Run() has started or was pointed at. Its prompt is the
    /// manager's. Any thread.
    tarnis::ServerAddress GetSessionAddress() const;
    /// Takes no lock: call it from the manager's own thread.
    void SetLocal(bool local);
    /// Program of the local server, the whole text, without arguments. Takes no lock.
    void SetProcessPath(const QString& path);
    /// The remote server of the next Run(); GetServerAddress() gives it at once.
    void SetRemoteHost(const QString& host, quint16 port);
    void GetRemoteHost(QString& host, quint16& port) const; ///< as set; not the address of a local server
    /// Stores the status and signals a change, with the manager's lock held. Any value may follow any value.
    void SetStatus(SERVER_STATUS status);
    bool IsServerConnected() const; ///< false in IDLE, SERVER_ERROR and SHUTTING_DOWN
    /// The value's name with blanks for "_", as "SERVER CONNECTED"; "UNKNOWN" for any other number.
    static const char* GetStatusName(SERVER_STATUS status);

    // Settings, continued - tarnis_settings.cpp

    /// Null for every key as long as no subclass fills m_stats.
    QString GetStatValue(const QString& key) const;
    /// The settings "ip", "tcp" and "bcp", with the index behind each in the second form. False if a port is no number;
    /// it is 0 then. @{
    bool GetReadoutAddress(QString& ip, unsigned int& tcp, unsigned int& bcp) const;
    bool GetReadoutAddress(int index, QString& ip, unsigned int& tcp, unsigned int& bcp) const;
    /// @}
    /// Stores the three settings and the text of GetReadoutAddressText(). True also when a port is refused. @{
    bool SetReadoutAddress(QString& ip, unsigned int tcp, unsigned int bcp);
    bool SetReadoutAddress(int index, QString& ip, unsigned int tcp, unsigned int bcp);
    /// @}

Q_SIGNALS:
    /// Emitted with the manager's lock held: a slot must not wait for a thread that needs the manager.
    void StatusChanged(Tarnis::SERVER_STATUS status);
    /// The reply to SendCmd(): the name and the text that it was given, and the server's bytes without the prompt.
    void onCmdReply(const QString& cmdName, const QString& cmd, const QByteArray& result);
    void onBasePathChange(const QString& baseDir); ///< SetBasePath() has sent this path; no reply has come yet

public Q_SLOTS:
    /// Looks for "UI port:" in what the local server prints. A port other than 0 brings SERVER_CONNECTED.
    void onServerReadyStdOut();
    void onServerError(QProcess::ProcessError err); ///< posts the local server's failure to _g_sysMsg
    void onStatusChanged(Tarnis::SERVER_STATUS status); ///< logs it; bound from the first local server on
    /// A named session's reply: in IDLE it brings SERVER_CONNECTED; then onCmdReply() is emitted.
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
    QString m_host; ///< what new sessions connect to, with m_port
    quint16 m_port = 0; ///< see m_host
    QProcess* m_process = nullptr; ///< the local server, owned
    QMap<QString, TarnisSession*> m_sessions; ///< by name
    QMap<QString, QString> m_settings; ///< by key
    QMap<QString, QString> m_stats; ///< nothing here writes it
    QList<QString> m_commands; ///< lines for the next DownloadSettings()
    bool m_bLocal = true; ///< Run() starts a program
    SERVER_STATUS m_status = IDLE; ///< see SetStatus()
    QList<QPointer<QProcess>> m_supersededProcesses; ///< servers that ran when another was started; owned
    int m_closings = 0; ///< shutdowns whose sessions may still have calls in the queue

    /// Steps of the operations above and of the destructor. The local server's are in tarnis_process.cpp. @{
    bool isCallOfClosedSession() const;
    void outlastQueuedCalls();
    TarnisSession* startNamedSession(const QString& id);
    void closeNamedSessions();
    bool startLocalServer();
    void connectLocalServer();
    void supersedeLocalServer();
    void endSupersededServers();
    void closeLocalServer();
    void endLocalServer();
    /// @}
};
