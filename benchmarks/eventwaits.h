// How long events wait for a thread's event loop.
#pragma once

#include <QObject>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

/// How long an event waits until the thread of construction handles it, by the clock: another thread posts one after
/// each interval. What an event loop does between two events, however long it goes on, does not count.
class EventWaits {
public:
    explicit EventWaits(std::chrono::milliseconds interval)
        : m_poster([this, interval](const std::stop_token& stop) { post(stop, interval); })
    {
    }

    const std::vector<double>& milliseconds() const { return m_milliseconds; }
    /// 0 without an event.
    double longest() const
    {
        return m_milliseconds.empty() ? 0.0 : *std::max_element(m_milliseconds.begin(), m_milliseconds.end());
    }

private:
    void post(const std::stop_token& stop, std::chrono::milliseconds interval)
    {
        using Clock = std::chrono::steady_clock;
        while (!stop.stop_requested()) {
            std::this_thread::sleep_for(interval);
            const Clock::time_point posted = Clock::now();
            QMetaObject::invokeMethod(&m_receiver, [this, posted] {
                m_milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - posted).count());
            });
        }
    }

    std::vector<double> m_milliseconds;
    QObject m_receiver;
    std::jthread m_poster; // destroyed before the objects it posts to
};
