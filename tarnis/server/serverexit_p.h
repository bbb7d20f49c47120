// Ends a local server and disposes of its process object.
#pragma once

#include <QObject>
#include <QPointer>

class QProcess;

namespace tarnis {

constexpr int serverExitGraceMs = 30000; ///< how long a server may take to save what it has and end

/// Writes "exit" and closes the server's standard input, so that a server that reads lines sees the end of its input.
/// Ignores a process that has ended.
void askServerToExit(QProcess& process);

/// Waits until the process has ended, at most `graceMs`, then kills it.
void waitForServerExit(QProcess& process, int graceMs);

/// Keeps a process object until the process has ended, and kills the process after the grace time. Needs an event loop;
/// processes that still run when the application object is destroyed are waited for there. Deletes itself.
class ServerExit : public QObject {
    Q_OBJECT
public:
    /// Takes ownership of the process.
    explicit ServerExit(QProcess* process, int graceMs = serverExitGraceMs);
    ~ServerExit() override;

private:
    QPointer<QProcess> m_process; ///< a child; a superseded process may be destroyed before this object
    qint64 m_deadlineMs; ///< on the monotonic clock
};

/// Ends the process as ServerExit does, on the application's thread: that of the caller may end before the process.
/// Takes ownership of the process, which must have no parent.
void endServerInBackground(QProcess* process, int graceMs);

} // namespace tarnis
