// How a local server is told to end, and what becomes of its process object.
#pragma once

#include <QObject>
#include <QPointer>

class QProcess;

namespace tarnis {

constexpr int serverExitGraceMs = 30000; ///< how long a server may take to save what it has and end

/// Writes "exit" and closes the server's standard input, so that a server that reads lines sees the end. A process that
/// has ended is passed over.
void askServerToExit(QProcess& process);

/// Waits until the process has ended, at most `graceMs`, then kills it.
void waitForServerExit(QProcess& process, int graceMs);

/// Keeps a process object until the process has ended, and kills the process after the grace time. Needs an event loop;
/// what still runs when the application object goes is waited for there. Deletes itself.
class ServerExit : public QObject {
    Q_OBJECT
public:
    /// Takes the process over.
    explicit ServerExit(QProcess* process, int graceMs = serverExitGraceMs);
    ~ServerExit() override;

private:
    QPointer<QProcess> m_process; ///< a child; a superseded one may go before this
    qint64 m_deadlineMs; ///< on the monotonic clock
};

} // namespace tarnis
