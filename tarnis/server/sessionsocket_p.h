// The waits of a session's worker: for the socket, for a pause, for the queue. Every wait ends at once when the session
// is to end.
#pragma once

#include <QByteArray>
#include <QTcpSocket>

#include <condition_variable>
#include <functional>
#include <mutex>

class QAbstractEventDispatcher;

namespace tarnis {

/// Passes the request to end a session from any thread to the worker. Uses standard types, so that the thread sanitizer
/// sees every access.
class SessionStop {
public:
    /// `quit` is the session's flag; it is read and written through std::atomic_ref.
    explicit SessionStop(bool& quit);

    /// Sets the flag and ends the worker's waits. The prompt is no longer read after that. Any thread.
    void request();
    /// Whether the flag is set, by request() or otherwise. Any thread.
    bool isQuitting() const;
    /// Waits `ms`, or until request(). Worker only.
    void sleep(int ms);
    /// Copies the bytes that `prompt` returns. False if it returns null, or after request(), when the owner may have
    /// deleted the bytes.
    bool copyPrompt(const std::function<const QByteArray*()>& prompt, QByteArray& copy);

private:
    friend class SessionSocket;
    void setDispatcher(QAbstractEventDispatcher* dispatcher);

    bool& m_quit;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_isRequested = false;
    QAbstractEventDispatcher* m_dispatcher = nullptr; ///< of a worker that waits for its socket
};

/// A socket for synchronous use on the worker's thread. Its waits behave like those of the base class, but run the
/// thread's event dispatcher, which another thread can wake.
class SessionSocket : public QTcpSocket {
public:
    explicit SessionSocket(SessionStop& stop);

    /// False without an error when the session is to end; the attempt is then aborted.
    bool waitForConnected(int ms) override;
    /// As waitForConnected().
    bool waitForReadyRead(int ms) override;

private:
    bool waitUntil(const std::function<bool()>& condition, int ms);

    SessionStop& m_stop;
};

} // namespace tarnis
