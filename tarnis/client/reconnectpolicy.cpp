#include "tarnis/client/client_p.h"

#include <QRandomGenerator>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

// Sums of it and of a moment stay inside the range of the clock.
constexpr std::chrono::milliseconds maxDelay = std::chrono::hours(24 * 365);

} // namespace

std::chrono::milliseconds reconnectDelay(const ReconnectPolicy& policy, int failures, double share)
{
    using std::chrono::milliseconds;
    const milliseconds first = std::clamp(policy.first, milliseconds(0), maxDelay);
    const milliseconds longest = std::clamp(policy.longest, milliseconds(0), maxDelay);
    if (first == milliseconds(0))
        return first; // an infinite power of the factor times 0 is no number
    const double factor = policy.factor >= 1.0 ? policy.factor : 1.0;
    const double jitter = policy.jitter >= 0.0 ? std::min(policy.jitter, 1.0) : 0.0;
    const double full = static_cast<double>(first.count()) * std::pow(factor, std::max(failures, 1) - 1);
    const double bounded = std::min(full, static_cast<double>(longest.count()));
    return milliseconds(std::llround(bounded * (1.0 - jitter * std::clamp(share, 0.0, 1.0))));
}

std::chrono::milliseconds ReconnectPolicy::delayAfter(int failures) const
{
    return reconnectDelay(*this, failures, QRandomGenerator::global()->generateDouble());
}

} // namespace tarnis
