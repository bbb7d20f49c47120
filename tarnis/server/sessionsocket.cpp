#include "tarnis/server/sessionsocket_p.h"

#include <QAbstractEventDispatcher>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <chrono>

namespace tarnis {

SessionStop::SessionStop(bool& quit)
    : m_quit(quit)
{
}

void SessionStop::request()
{
    const std::lock_guard lock(m_mutex);
    m_isRequested = true;
    std::atomic_ref(m_quit).store(true);
    m_wake.notify_all();
    // A dispatcher that is woken before it waits returns at once, so no request is lost between the test and the wait.
    if (m_dispatcher)
        m_dispatcher->wakeUp();
}

bool SessionStop::isQuitting() const
{
    return std::atomic_ref(m_quit).load();
}

void SessionStop::sleep(int ms)
{
    std::unique_lock lock(m_mutex);
    m_wake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_isRequested; });
}

bool SessionStop::copyPrompt(const std::function<const QByteArray*()>& prompt, QByteArray& copy)
{
    const std::lock_guard lock(m_mutex);
    const QByteArray* const bytes = m_isRequested ? nullptr : prompt();
    if (!bytes)
        return false;
    // A deep copy: the host's array may refer to memory that it does not own.
    copy = QByteArray(bytes->constData(), bytes->size());
    return true;
}

void SessionStop::setDispatcher(QAbstractEventDispatcher* dispatcher)
{
    const std::lock_guard lock(m_mutex);
    m_dispatcher = dispatcher;
}

SessionSocket::SessionSocket(SessionStop& stop)
    : m_stop(stop)
{
}

bool SessionSocket::waitForConnected(int ms)
{
    const auto isSettled = [this] { return state() != HostLookupState && state() != ConnectingState; };
    if (waitUntil(isSettled, ms))
        return state() == ConnectedState;
    if (m_stop.isQuitting()) {
        abort();
        return false;
    }
    return QTcpSocket::waitForConnected(0); // sets the timeout error
}

bool SessionSocket::waitForReadyRead(int ms)
{
    // The base class reads available bytes and sends pending ones with fewer system calls.
    if (QTcpSocket::waitForReadyRead(0))
        return true;
    const qint64 before = bytesAvailable();
    const auto isSettled = [this, before] { return bytesAvailable() > before || state() != ConnectedState; };
    if (waitUntil(isSettled, ms))
        return bytesAvailable() > before;
    return !m_stop.isQuitting() && QTcpSocket::waitForReadyRead(0); // sets the timeout error
}

// True once the condition holds; false at the deadline and when the session is to end.
bool SessionSocket::waitUntil(const std::function<bool()>& condition, int ms)
{
    if (condition() || ms <= 0)
        return condition();
    QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
    m_stop.setDispatcher(dispatcher);
    // Not single-shot: a timer that fires slightly early would leave the dispatcher waiting forever.
    QTimer alarm;
    alarm.setTimerType(Qt::PreciseTimer);
    alarm.start(ms);
    const QDeadlineTimer deadline(ms);
    while (!condition() && !deadline.hasExpired() && !m_stop.isQuitting())
        dispatcher->processEvents(QEventLoop::WaitForMoreEvents);
    m_stop.setDispatcher(nullptr);
    return condition();
}

} // namespace tarnis
