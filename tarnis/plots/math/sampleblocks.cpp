#include "tarnis/plots/math/sampleblocks_p.h"

#include <algorithm>
#include <numeric>

namespace tarnis {

namespace {

constexpr qsizetype blockSize = 16;
constexpr qsizetype fewSamples = 8192;
constexpr int usesToBuild = 3; // a style uses the samples twice to paint a new reply
constexpr std::size_t maxEntries = 128;

} // namespace

/// The complete blocks of a run. The samples before and after them are read one by one.
struct SampleBlocks::Run {
    qsizetype first = 0;
    qsizetype end = 0;
    qsizetype from() const { return first * blockSize; }
    qsizetype to() const { return end * blockSize; }
};

SampleBlocks::SampleBlocks(const QList<double>& samples)
    : m_samples(samples)
    , m_notFinite { 0 }
    , m_notCounts { 0 }
    , m_counts { 0.0 }
{
    const qsizetype blocks = samples.size() / blockSize;
    m_low.reserve(static_cast<std::size_t>(blocks));
    m_high.reserve(static_cast<std::size_t>(blocks));
    for (qsizetype i = 0; i < blocks; ++i) {
        const double* const block = m_samples.constData() + i * blockSize;
        const SampleExtremes found = extremesOf(block, blockSize);
        m_low.push_back(found.finite ? found.low : 0.0);
        m_high.push_back(found.finite ? found.high : 0.0);
        m_notFinite.push_back(m_notFinite.back() + (found.finite ? 0 : 1));
        const bool areCounts = tarnis::areIntegerCounts(block, blockSize);
        m_notCounts.push_back(m_notCounts.back() + (areCounts ? 0 : 1));
        m_counts.push_back(
            areCounts && found.finite ? std::accumulate(block, block + blockSize, m_counts.back()) : m_counts.back());
    }
}

SampleBlocks::Run SampleBlocks::runOf(qsizetype begin, qsizetype end) const
{
    return { (begin + blockSize - 1) / blockSize, end / blockSize };
}

SampleExtremes SampleBlocks::extremes(qsizetype begin, qsizetype end) const
{
    const double* const samples = m_samples.constData();
    const Run run = runOf(begin, end);
    if (run.first >= run.end)
        return extremesOf(samples + begin, end - begin);
    const auto first = static_cast<std::size_t>(run.first);
    SampleExtremes result { *std::min_element(m_low.begin() + run.first, m_low.begin() + run.end),
        *std::max_element(m_high.begin() + run.first, m_high.begin() + run.end),
        m_notFinite[static_cast<std::size_t>(run.end)] == m_notFinite[first] };
    const auto include = [&](qsizetype from, qsizetype to) {
        if (from >= to)
            return;
        const SampleExtremes found = extremesOf(samples + from, to - from);
        result.low = std::min(result.low, found.low);
        result.high = std::max(result.high, found.high);
        result.finite = result.finite && found.finite;
    };
    include(begin, run.from());
    include(run.to(), end);
    return result;
}

bool SampleBlocks::areIntegerCounts(qsizetype begin, qsizetype end) const
{
    const double* const samples = m_samples.constData();
    const Run run = runOf(begin, end);
    if (run.first >= run.end)
        return tarnis::areIntegerCounts(samples + begin, end - begin);
    return m_notCounts[static_cast<std::size_t>(run.end)] == m_notCounts[static_cast<std::size_t>(run.first)]
        && tarnis::areIntegerCounts(samples + begin, run.from() - begin)
        && tarnis::areIntegerCounts(samples + run.to(), end - run.to());
}

std::optional<double> SampleBlocks::sumOfCounts(qsizetype begin, qsizetype end) const
{
    constexpr double exact = 9007199254740992.0; // 2^53
    if (m_counts.back() >= exact || !areIntegerCounts(begin, end))
        return std::nullopt;
    const double* const samples = m_samples.constData();
    const Run run = runOf(begin, end);
    const auto first = static_cast<std::size_t>(run.first);
    const auto last = static_cast<std::size_t>(run.end);
    double sum = 0.0;
    if (first >= last) {
        sum = std::accumulate(samples + begin, samples + end, sum);
    } else if (m_notFinite[last] == m_notFinite[first]) {
        sum = m_counts[last] - m_counts[first];
        sum = std::accumulate(samples + begin, samples + run.from(), sum);
        sum = std::accumulate(samples + run.to(), samples + end, sum);
    } else {
        return std::nullopt;
    }
    return sum < exact ? std::optional(sum) : std::nullopt;
}

const SampleBlocks* SampleBlockCache::of(const QList<double>& samples)
{
    if (samples.size() < fewSamples)
        return nullptr;
    auto entry = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& known) {
        return known.samples.constData() == samples.constData() && known.samples.size() == samples.size();
    });
    if (entry == m_entries.end()) {
        if (m_entries.size() >= maxEntries)
            m_entries.clear();
        entry = m_entries.insert(m_entries.end(), Entry { samples, 0, nullptr });
    }
    if (++entry->uses >= usesToBuild && entry->blocks == nullptr)
        entry->blocks = std::make_unique<SampleBlocks>(samples);
    return entry->blocks.get();
}

} // namespace tarnis
