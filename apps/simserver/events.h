// The physics of the simulation: position and time of events, and a Poisson stream of them over live time. Pure
// arithmetic with its own random numbers; no clock, no socket. Not thread-safe.
#pragma once

#include "random.h"

#include <cstdint>
#include <limits>
#include <vector>

namespace simserver {

/// One event. Positions are fractions of the detector's width and height, the time is a fraction of the pulse period;
/// all in [0, 1).
struct Event {
    int module = 0;
    double horizontal = 0.0;
    double vertical = 0.0;
    double time = 0.0;
};

struct EventShape {
    int modules = 8; ///< side by side, each covers an equal part of the width; at least 1
    int peaks = 6; ///< 0 to EventModel::maxPeaks
    double background = 0.5; ///< fraction of the events that belong to no peak, 0 to 1
};

/// A powder pattern measured by time of flight: peaks at t0 / sqrt(N) with N = h^2 + k^2 + l^2 of a simple cubic
/// lattice, weights multiplicity * t^2, on a background that falls exponentially with time. A quarter of a peak's
/// events are in one bright spot; half of the background is denser towards the middle of the detector. In a module, a
/// peak is shifted in proportion to the distance from the middle.
class EventModel {
public:
    static constexpr int maxPeaks = 12;
    static constexpr double backgroundDecay = 0.35; ///< fraction of the period in which the background falls to 1/e

    explicit EventModel(const EventShape& shape);

    Event sample(Random& random) const;
    /// Centre and width of peak `peak` in `module`, as fractions of the period.
    double peakCentre(int peak, int module) const;
    static double peakSigma(int peak);

private:
    struct Peak {
        double cumulativeWeight; ///< weight of this and all previous peaks; the last is 1
        double horizontal;
        double vertical;
    };

    Event sampleBackground(Random& random) const;
    Event samplePeak(Random& random) const;
    int moduleAt(double horizontal) const;

    EventShape m_shape;
    std::vector<Peak> m_peaks;
};

/// Events with independent exponential gaps. The events depend on seed, run and shape, and their times also on the
/// rate. Splitting the time into intervals changes nothing.
class EventStream {
public:
    /// `rate` in events per second of live time, finite and not negative.
    EventStream(std::uint64_t seed, std::uint64_t run, const EventShape& shape, double rate);

    /// Passes the events up to `until` (live seconds), at most `limit` of them, to `sink`. True if the live time has
    /// reached `until`; otherwise it is that of the last event.
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

    /// Takes effect at once; the current gap is rescaled, so that the stream remains Poisson.
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
