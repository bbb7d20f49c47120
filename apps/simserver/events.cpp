#include "events.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace simserver {

namespace {

/// A line of a simple cubic lattice: N = h^2 + k^2 + l^2 and its multiplicity.
struct LatticeLine {
    int squareSum;
    int multiplicity;
};

constexpr std::array<LatticeLine, EventModel::maxPeaks> latticeLines { { { 1, 6 }, { 2, 12 }, { 3, 8 }, { 4, 6 },
    { 5, 24 }, { 6, 24 }, { 8, 12 }, { 9, 30 }, { 10, 24 }, { 11, 24 }, { 12, 8 }, { 13, 24 } } };

constexpr double firstPeakTime = 0.88;
constexpr double moduleShift = 0.03; // shift of a peak's time from the first to the last module
constexpr double spotShare = 0.25;
constexpr double spotSigma = 0.012;
constexpr double haloShare = 0.5;
constexpr double haloSigma = 0.18;
constexpr double largestShare = 1.0 - 0x1.0p-53; // the largest double below 1

double linePosition(int peak)
{
    return firstPeakTime / std::sqrt(static_cast<double>(latticeLines.at(static_cast<std::size_t>(peak)).squareSum));
}

/// Low-discrepancy positions between 0.1 and 0.9, so that spots do not overlap.
double spotPlace(int peak, double step)
{
    const double place = 0.5 + step * (peak + 1);
    return 0.1 + 0.8 * (place - std::floor(place));
}

/// A normal number that is drawn again until it is in [0, 1). All uses have nearly all of their weight inside; after 64
/// draws the last one is clamped, so that the loop always ends.
double normalShare(Random& random, double mean, double sigma)
{
    double share = 0.0;
    for (int attempt = 0; attempt < 64; ++attempt) {
        share = mean + sigma * random.normal();
        if (share >= 0.0 && share < 1.0)
            return share;
    }
    return std::clamp(share, 0.0, largestShare);
}

} // namespace

EventModel::EventModel(const EventShape& shape)
    : m_shape(shape)
{
    double sum = 0.0;
    for (int peak = 0; peak < shape.peaks; ++peak) {
        const double position = linePosition(peak);
        sum += latticeLines.at(static_cast<std::size_t>(peak)).multiplicity * position * position;
        m_peaks.push_back({ sum, spotPlace(peak, 0.7548776662466927), spotPlace(peak, 0.5698402909980532) });
    }
    for (Peak& peak : m_peaks)
        peak.cumulativeWeight /= sum;
}

Event EventModel::sample(Random& random) const
{
    if (m_peaks.empty() || random.uniform() < m_shape.background)
        return sampleBackground(random);
    return samplePeak(random);
}

double EventModel::peakCentre(int peak, int module) const
{
    const double distance = (module + 0.5) / m_shape.modules - 0.5;
    return linePosition(peak) * (1.0 + moduleShift * distance);
}

double EventModel::peakSigma(int peak)
{
    return 0.001 + 0.003 * linePosition(peak);
}

Event EventModel::sampleBackground(Random& random) const
{
    Event event;
    if (random.uniform() < haloShare) {
        event.horizontal = normalShare(random, 0.5, haloSigma);
        event.vertical = normalShare(random, 0.5, haloSigma);
    } else {
        event.horizontal = random.uniform();
        event.vertical = random.uniform();
    }
    // Inverse of the exponential's distribution function, truncated at one period.
    const double cut = -std::expm1(-1.0 / backgroundDecay);
    event.time = std::min(-backgroundDecay * std::log1p(-random.uniform() * cut), largestShare);
    event.module = moduleAt(event.horizontal);
    return event;
}

Event EventModel::samplePeak(Random& random) const
{
    const double choice = random.uniform();
    std::size_t peak = 0;
    while (peak + 1 < m_peaks.size() && choice >= m_peaks[peak].cumulativeWeight)
        ++peak;
    Event event;
    if (random.uniform() < spotShare) {
        event.horizontal = normalShare(random, m_peaks[peak].horizontal, spotSigma);
        event.vertical = normalShare(random, m_peaks[peak].vertical, spotSigma);
    } else {
        event.horizontal = random.uniform();
        event.vertical = random.uniform();
    }
    event.module = moduleAt(event.horizontal);
    const int number = static_cast<int>(peak);
    event.time = normalShare(random, peakCentre(number, event.module), peakSigma(number));
    return event;
}

int EventModel::moduleAt(double horizontal) const
{
    return std::min(static_cast<int>(horizontal * m_shape.modules), m_shape.modules - 1);
}

EventStream::EventStream(std::uint64_t seed, std::uint64_t run, const EventShape& shape, double rate)
    : m_model(shape)
    , m_random(seed, run, 0)
    , m_rate(rate)
    , m_idleGap(m_random.exponential())
{
    if (rate > 0.0)
        m_next = m_idleGap / rate;
}

void EventStream::setRate(double rate)
{
    if (rate == m_rate)
        return;
    if (m_rate > 0.0)
        m_idleGap = (m_next - m_now) * m_rate;
    m_rate = rate;
    m_next = rate > 0.0 ? m_now + m_idleGap / rate : never;
}

} // namespace simserver
