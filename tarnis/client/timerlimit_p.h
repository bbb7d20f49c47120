// Times of hosts, as a QTimer can run them.
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace tarnis {

/// The longest run of a QTimer, which counts milliseconds in an int: 24 days and 20 hours.
inline constexpr std::chrono::milliseconds maxTimerRun { std::numeric_limits<int>::max() };

/// The nearest time that a QTimer can run. What is longer than 24 days, a host means as "practically never".
constexpr std::chrono::milliseconds timerRun(std::chrono::milliseconds wanted)
{
    return std::clamp(wanted, std::chrono::milliseconds(0), maxTimerRun);
}

} // namespace tarnis
