#include "tarnis/foundation/delaycall.h"

#include <QMutex>
#include <QScopeGuard>
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

// Set while this thread runs a deferred function, and so holds the mutex: the function may destroy the guard of another
// call, whose onDestroyed() then comes on the same thread.
thread_local bool runsDeferredCall = false;

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
    // The function may destroy the guard itself; onDestroyed() must not come while it runs.
    disconnect(m_guardConnection);
    const QMutexLocker locker(&deferredCallMutex());
    const auto finished = qScopeGuard([this] {
        runsDeferredCall = false;
        deleteLater();
    });
    runsDeferredCall = true;
    if (m_function)
        m_function();
}

void DelayCall::onDestroyed(QObject* /*object*/)
{
    QMutexLocker locker(runsDeferredCall ? nullptr : &deferredCallMutex());
    {
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
