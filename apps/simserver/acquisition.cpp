#include "acquisition.h"

#include <algorithm>

namespace simserver {

namespace {

constexpr double meanHeight = 256.0;

EventShape shapeOf(const SettingValues& values)
{
    return { .modules = values.modules, .peaks = values.peaks, .background = values.background };
}

} // namespace

Acquisition::Acquisition(const SettingValues& values)
    : m_values(values)
    , m_histograms(values.modules)
    , m_modules(static_cast<std::size_t>(values.modules))
    , m_channelRandom(values.seed, 0, 1)
    , m_heightRandom(values.seed, 0, 2)
{
}

void Acquisition::setSpectrum(const Spectrum& spectrum)
{
    m_histograms.addSpectrum(spectrum);
    m_sampler.emplace(spectrum.counts);
}

void Acquisition::configure(const SettingValues& values)
{
    const bool modulesChanged = values.modules != m_values.modules;
    m_values = values;
    if (m_stream)
        m_stream->setRate(values.rate);
    if (modulesChanged) {
        m_modules.assign(static_cast<std::size_t>(values.modules), Module());
        m_histograms.setModules(values.modules);
        clear();
    }
}

void Acquisition::start(int run)
{
    m_run = run;
    const auto number = static_cast<std::uint64_t>(run);
    m_stream.emplace(m_values.seed, number, shapeOf(m_values), m_values.rate);
    m_channelRandom = Random(m_values.seed, number, 1);
    m_heightRandom = Random(m_values.seed, number, 2);
    clear();
}

void Acquisition::stop()
{
    m_stream.reset();
    m_recentRate = 0.0;
}

void Acquisition::clear()
{
    m_histograms.clear();
    for (Module& module : m_modules)
        module.counts = 0;
    m_liveAtClear = m_stream ? m_stream->liveTime() : 0.0;
    m_events = 0;
    m_rejected = 0;
    m_realTime = 0.0;
    m_liveTime = 0.0;
    m_recentRate = 0.0;
    m_windowLiveTime = 0.0;
    m_windowEvents = 0;
}

void Acquisition::advance(double seconds, const std::function<bool()>& mayGoOn)
{
    if (!m_stream || !(seconds > 0.0))
        return;
    constexpr std::int64_t slice = 4096;
    const bool hasMaxTime = m_values.maxTime > 0.0;
    const auto maxEvents = static_cast<std::uint64_t>(m_values.maxEvents);
    double until = m_stream->liveTime() + seconds;
    if (hasMaxTime)
        until = std::min(until, m_liveAtClear + m_values.maxTime);
    m_realTime += seconds;
    bool ended = false;
    for (bool reached = false; !reached && !ended;) {
        const std::uint64_t wanted = maxEvents > m_events ? maxEvents - m_events : 0;
        const std::int64_t limit = maxEvents == 0 ? slice : std::min(slice, static_cast<std::int64_t>(wanted));
        reached = m_stream->advance(until, limit, [this](const Event& event) { take(event); });
        ended = (maxEvents > 0 && m_events >= maxEvents)
            || (hasMaxTime && reached && until >= m_liveAtClear + m_values.maxTime);
        if (!reached && !ended && !mayGoOn())
            break;
    }
    m_liveTime = m_stream->liveTime() - m_liveAtClear;
    updateRecentRate();
    if (ended)
        stop();
}

double Acquisition::meanRate() const
{
    return m_liveTime > 0.0 ? static_cast<double>(m_events) / m_liveTime : 0.0;
}

void Acquisition::take(const Event& event)
{
    Module& module = m_modules[static_cast<std::size_t>(event.module)];
    if (!isAccepted(module)) {
        ++m_rejected;
        return;
    }
    ++m_events;
    ++module.counts;
    m_histograms.fill(event);
    if (m_sampler && m_sampler->isValid())
        m_histograms.fillSampled(m_sampler->sample(m_channelRandom));
}

bool Acquisition::isAccepted(const Module& module)
{
    if (!module.enabled)
        return false;
    return module.threshold == 0 || m_heightRandom.exponential() * meanHeight >= module.threshold;
}

void Acquisition::updateRecentRate()
{
    const double window = m_liveTime - m_windowLiveTime;
    if (window < 1.0)
        return;
    m_recentRate = static_cast<double>(m_events - m_windowEvents) / window;
    m_windowLiveTime = m_liveTime;
    m_windowEvents = m_events;
}

} // namespace simserver
