/// @file
/// A server program on this computer: started, watched, ended, without blocking.
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
    QStringList arguments; ///< of the program
    /// Where it runs. Empty: the program's folder, or the present directory for a program of the search path.
    QString workingDirectory;
    std::chrono::milliseconds startTimeout = std::chrono::seconds(30); ///< from the start to the line with the port
    std::chrono::milliseconds exitGrace = std::chrono::seconds(30); ///< from the request to exit to the kill
};

/// One server program at a time. It announces its port by a line "UI port: N" on standard output, which may arrive in
/// pieces, and exits on "exit" or the end of its standard input. Its other output is dropped. All signals come from the
/// event loop, none from within start(), and the process object may be deleted in any of them.
class TARNIS_EXPORT ServerProcess : public QObject {
    Q_OBJECT
public:
    /// Where the program is in its life.
    enum class State {
        NotRunning, ///< never started, or ended
        Starting, ///< started, its port is not known
        Running, ///< its port is known
        Stopping, ///< asked to exit
    };
    Q_ENUM(State)

    /// Why a program is not running any more.
    enum class End {
        NotStarted, ///< it could not be started
        NoPort, ///< it announced no port in time, or none that is valid, and was killed
        Exited, ///< it exited by itself
        Crashed, ///< it was ended by a signal
        Stopped, ///< after stop() or kill()
    };
    Q_ENUM(End)

    /// Starts nothing.
    explicit ServerProcess(QObject* parent = nullptr);
    /// A program that runs is asked to exit, and killed after its grace time; that outlives this object and does not
    /// block. What still runs when the application object is destroyed is waited for there.
    ~ServerProcess() override;

    /// Starts a program, by path or by name. False, and nothing done, while another one is not NotRunning.
    bool start(const QString& program, const ServerProcessOptions& options = {});
    /// Asks the program to exit, and kills it after the grace time. Does nothing without one.
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
    /// The program is gone. Comes exactly once for each start() that returned true, as long as this object lives; the
    /// reason is a text for users, and holds the last line of its error output.
    void ended(tarnis::ServerProcess::End end, const QString& reason);

private:
    class TARNIS_NO_EXPORT Private;
    std::unique_ptr<Private> d;
};

} // namespace tarnis
