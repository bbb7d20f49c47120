#include "support/wait.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>
#include <thread>

namespace tarnis::testing {

namespace {

/// Leaves the processor to what is waited for.
void pause()
{
    std::this_thread::sleep_for(std::chrono::microseconds(200));
}

} // namespace

Waiting::Waiting()
    : m_deadline(timeoutMs)
{
}

bool Waiting::next()
{
    if (m_deadline.hasExpired())
        return false;
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    pause();
    return true;
}

bool eventually(const std::function<bool()>& condition)
{
    for (Waiting waiting; !condition();) {
        if (!waiting.next())
            return false;
    }
    return true;
}

bool eventuallyWithoutEvents(const std::function<bool()>& condition)
{
    for (const QDeadlineTimer deadline(timeoutMs); !condition(); pause()) {
        if (deadline.hasExpired())
            return false;
    }
    return true;
}

} // namespace tarnis::testing
