#include "tarnis/foundation/delaycall.h"

#include <QMutex>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

// One deferred call of the process at a time.
QMutex& deferredCallMutex()
{
    static auto* const mutex = new QMutex;
    return *mutex;
}

// Set while this thread holds the mutex and runs or drops a function. The function may destroy the guard of another
// call, or run a nested event loop that reaches another call. Both lock the mutex on this thread again.
thread_local bool holdsTheMutex = false;

QMutex* unlessHeld()
{
    return holdsTheMutex ? nullptr : &deferredCallMutex();
}

} // namespace

DelayCall::DelayCall(std::function<void()> function, int delayMs, QObject* guard)
    : m_function(std::move(function))
    , m_guard(guard)
    , m_timer(new QTimer(this))
{
    if (m_guard)
        m_guardConnection = connect(m_guard, &QObject::destroyed, this, &DelayCall::onDestroyed);
    connect(m_timer, &QTimer::timeout, this, &DelayCall::onTimeout);
    m_timer->setSingleShot(true);
    m_timer->start(std::max(delayMs, 0));
}

void DelayCall::onTimeout()
{
    // The function may destroy the guard itself; onDestroyed() must not be called while it runs.
    disconnect(m_guardConnection);
    const QMutexLocker locker(unlessHeld());
    const QScopedValueRollback held(holdsTheMutex, true);
    const auto finished = qScopeGuard([this] { deleteLater(); });
    if (m_function)
        m_function();
}

void DelayCall::onDestroyed(QObject* /*object*/)
{
    const QMutexLocker locker(unlessHeld());
    {
        const QScopedValueRollback held(holdsTheMutex, true);
        std::function<void()> dropped;
        m_function.swap(dropped);
    }
    m_timer->stop();
    deleteLater();
}

void delay_call(std::function<void()> function, int delayMs, QObject* guard)
{
    new DelayCall(std::move(function), delayMs, guard); // deletes itself
}
