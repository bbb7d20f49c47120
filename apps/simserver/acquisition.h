// A data acquisition without hardware: runs, events during a run, readout modules that filter them, and statistics. The
// caller passes the time; not thread-safe.
#pragma once

#include "events.h"
#include "histograms.h"
#include "settings.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace simserver {

/// A readout module. Modules with an even number are of the family "orsino".
struct Module {
    static constexpr int maxThreshold = 1023;

    bool enabled = true; ///< a disabled module drops its events
    int threshold = 0; ///< drops events of smaller height; heights are exponentially distributed with a mean of 256
    std::uint64_t counts = 0; ///< counts since the start of the run or the last clear
};

class Acquisition {
public:
    enum class State { Stopped, Running };

    explicit Acquisition(const SettingValues& values);

    /// Sets a measured spectrum, from which one channel is sampled for each event. Only while stopped.
    void setSpectrum(const Spectrum& spectrum);
    /// Applies changed settings. A new number of modules clears everything and resets the modules to default.
    void configure(const SettingValues& values);

    /// Begins run `run` on cleared histograms.
    void start(int run);
    void stop();
    /// Resets histograms, counts and clocks; a run continues.
    void clear();

    /// Simulates `seconds` of real time in slices of a few thousand events. When `mayGoOn` returns false between two
    /// slices, the rest of the time is dead time. A preset ends the run exactly at its event.
    void advance(double seconds, const std::function<bool()>& mayGoOn);

    State state() const { return m_stream ? State::Running : State::Stopped; }
    bool isRunning() const { return m_stream.has_value(); }
    int run() const { return m_run; } ///< number of the current or last run; -1 before the first
    std::uint64_t events() const { return m_events; } ///< accepted events since the start or the last clear
    std::uint64_t rejected() const { return m_rejected; } ///< events dropped by modules
    double realTime() const { return m_realTime; } ///< seconds since the start or the last clear
    double liveTime() const { return m_liveTime; } ///< the part of it in which events were possible
    double meanRate() const; ///< accepted events per live second
    double recentRate() const { return m_recentRate; } ///< the same over about the last second; 0 while stopped

    std::vector<Module>& modules() { return m_modules; }
    const std::vector<Module>& modules() const { return m_modules; }
    const HistogramSet& histograms() const { return m_histograms; }

private:
    void take(const Event& event);
    bool isAccepted(const Module& module);
    void updateRecentRate();

    SettingValues m_values;
    HistogramSet m_histograms;
    std::optional<ChannelSampler> m_sampler;
    std::vector<Module> m_modules;
    int m_run = -1;

    // Event stream of the current run. Random number streams are separate, so that neither a spectrum nor a threshold
    // changes the events.
    std::optional<EventStream> m_stream;
    Random m_channelRandom;
    Random m_heightRandom;
    double m_liveAtClear = 0.0;

    std::uint64_t m_events = 0;
    std::uint64_t m_rejected = 0;
    double m_realTime = 0.0;
    double m_liveTime = 0.0;
    double m_recentRate = 0.0;
    double m_windowLiveTime = 0.0;
    std::uint64_t m_windowEvents = 0;
};

} // namespace simserver
