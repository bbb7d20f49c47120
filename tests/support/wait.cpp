#include "support/wait.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>

#include <chrono>
#include <thread>

namespace tarnis::testing {

namespace {

bool poll(const std::function<bool()>& condition, const std::function<void()>& between)
{
    const QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        between();
        std::this_thread::sleep_for(std::chrono::microseconds(200)); // leaves the processor to what is waited for
    }
    return true;
}

} // namespace

bool eventually(const std::function<bool()>& condition)
{
    return poll(condition, [] {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
}

bool eventuallyWithoutEvents(const std::function<bool()>& condition)
{
    return poll(condition, [] {});
}

} // namespace tarnis::testing
