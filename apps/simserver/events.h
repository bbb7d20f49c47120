// The physics of the simulation: where and when events come, and a Poisson stream of them over live time. Plain
// arithmetic on its own random numbers; no clock, no socket. One object belongs to one thread.
#pragma once

#include "random.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace simserver {

/// One event. Positions are shares of the detector's width and height, the time is a share of the pulse period; all in
/// [0, 1).
struct Event {
    int module = 0;
    double horizontal = 0.0;
    double vertical = 0.0;
    double time = 0.0;
};

struct EventShape {
    int modules = 8; ///< side by side, each covers an equal share of the width; at least 1
    int peaks = 6; ///< 0 to EventModel::maxPeaks
    double background = 0.5; ///< share of the events that belong to no peak, 0 to 1
};

/// A powder pattern measured by time of flight: peaks at t0 / sqrt(N) with N = h^2 + k^2 + l^2 of a simple cubic
/// lattice, weights multiplicity * t^2, on a background that falls exponentially with time. A quarter of a peak's
/// events lie in one bright spot; half of the background is denser towards the middle of the detector. A module sees a
/// peak shifted in proportion to its distance from the middle.
class EventModel {
public:
    static constexpr int maxPeaks = 12;
    static constexpr double backgroundDecay = 0.35; ///< share of the period in which the background falls to 1/e

    explicit EventModel(const EventShape& shape);

    Event sample(Random& random) const;
    /// Where peak `peak` stands in `module`, and how wide it is, as shares of the period.
    double peakCentre(int peak, int module) const;
    static double peakSigma(int peak);

private:
    struct Peak {
        double cumulativeWeight; ///< of this and all peaks before it; the last is 1
        double horizontal;
        double vertical;
    };

    Event sampleBackground(Random& random) const;
    Event samplePeak(Random& random) const;
    int moduleAt(double horizontal) const;

    EventShape m_shape;
    std::vector<Peak> m_peaks;
};

/// Events with independent exponential gaps. What comes is a function of seed, run and shape; when it comes, of the
/// rate too. Cutting the time into pieces changes nothing.
class EventStream {
public:
    /// `rate` in events per second of live time, finite and not negative.
    EventStream(std::uint64_t seed, std::uint64_t run, const EventShape& shape, double rate);

    /// Hands every event up to `until` (live seconds), but at most `limit` of them, to `sink`. True if the live time
    /// has reached `until`; otherwise it stands at the last event.
    template <typename Sink> bool advance(double until, std::int64_t limit, Sink&& sink)
    {
        while (m_next <= until) {
            if (limit-- <= 0)
                return false;
            m_now = m_next;
            m_next += m_random.exponential() / m_rate;
            sink(m_model.sample(m_random));
        }
        if (until > m_now)
            m_now = until;
        return true;
    }

    /// Takes effect at once; the gap under way is stretched, so that the stream stays Poisson.
    void setRate(double rate);
    double rate() const { return m_rate; }
    double liveTime() const { return m_now; }

private:
    static constexpr double never = std::numeric_limits<double>::infinity();

    EventModel m_model;
    Random m_random;
    double m_rate;
    double m_now = 0.0;
    double m_next = never; ///< live time of the next event; never while the rate is 0
    double m_idleGap = 0.0; ///< the rest of the gap in units of the mean, while the rate is 0
};

} // namespace simserver
