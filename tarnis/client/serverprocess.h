/// @file
/// Starts, monitors and ends a server program on this computer without blocking.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>

namespace tarnis {

/// How a server program is started and ended.
struct TARNIS_EXPORT ServerProcessOptions {
    QStringList arguments; ///< arguments of the program
    /// Empty: the program's folder, or the current directory for a program of the search path.
    QString workingDirectory;
    /// From the start to the line with the port, 0 or less: no limit. Longer times than
    /// 2^31 - 1 ms (24 days) count as that.
    std::chrono::milliseconds startTimeout = std::chrono::seconds(30);
    /// From the request to exit to the kill, 0 or less: the kill follows at once. At most 2^31 - 1 ms, as above.
    std::chrono::milliseconds exitGrace = std::chrono::seconds(30);
};

/// One server program at a time. The program announces its port by a line "UI port: N" on standard output, which may
/// arrive in pieces, and exits on "exit" or at the end of its standard input. Other output is dropped. All functions
/// must be called on the thread of this object. All signals are emitted from the event loop, none from within start(),
/// and the process object may be deleted in any of them.
class TARNIS_EXPORT ServerProcess : public QObject {
    Q_OBJECT
public:
    /// State of the program.
    enum class State {
        NotRunning, ///< never started, or ended
        Starting, ///< started, its port is not known
        Running, ///< its port is known
        Stopping, ///< requested to exit
    };
    Q_ENUM(State)

    /// Why a program has ended.
    enum class End {
        NotStarted, ///< it could not be started
        NoPort, ///< it announced no valid port in time and was killed
        Exited, ///< it exited without a request
        Crashed, ///< it was ended by a signal
        Stopped, ///< after stop() or kill()
    };
    Q_ENUM(End)

    /// Starts nothing.
    explicit ServerProcess(QObject* parent = nullptr);
    /// Requests a running program to exit and kills it after its grace time, without blocking, even if this object's
    /// thread ends before. The destructor of the application object waits for programs that are still running.
    ~ServerProcess() override;

    /// Starts a program, by path or by name. Returns false and does nothing unless the state is NotRunning.
    bool start(const QString& program, const ServerProcessOptions& options = {});
    /// Requests the program to exit, and kills it after the grace time. Does nothing if no program is running.
    void stop();
    /// Ends the program at once.
    void kill();

    State state() const; ///< see State
    quint16 port() const; ///< 0 while it is not known
    QString program() const; ///< of the last start()

Q_SIGNALS:
    /// The program runs; its port is not known yet.
    void started();
    /// The program listens on this port of this computer.
    void portKnown(quint16 port);
    /// The program has ended. Emitted exactly once for each start() that returned true, unless this object is
    /// destroyed. The reason is a text for users and contains the last line of the program's error output,
    /// without terminal sequences.
    void ended(tarnis::ServerProcess::End end, const QString& reason);

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
