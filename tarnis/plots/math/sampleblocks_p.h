// Extremes and sums of samples by blocks, for what is computed from the same samples again and again while the view
// changes.
#pragma once

#include "tarnis/plots/math/sampleextremes_p.h"

#include <QList>

#include <memory>
#include <optional>
#include <vector>

namespace tarnis {

/// The extremes and sums of each block of samples, so that those of a long run take a few percent of the time that
/// reading all its samples takes.
class SampleBlocks {
public:
    /// Reads every sample once. Shares the samples.
    explicit SampleBlocks(const QList<double>& samples);

    /// As extremesOf() for the samples from `begin` to before `end`; at least one.
    SampleExtremes extremes(qsizetype begin, qsizetype end) const;
    /// As tarnis::areIntegerCounts() for these samples.
    bool areIntegerCounts(qsizetype begin, qsizetype end) const;
    /// The exact sum of these samples; empty if a sample is not a finite integer count, or if the curve has more counts
    /// than can be added exactly.
    std::optional<double> sumOfCounts(qsizetype begin, qsizetype end) const;
    /// Prefetches the samples around the end of a run: they are too sparse for the hardware prefetcher.
    void fetchEnds(qsizetype at, qsizetype count) const
    {
#ifdef __GNUC__
        constexpr qsizetype line = 8; // samples
        for (qsizetype i = at - 2 * line; i <= at + 2 * line; i += line) {
            if (i >= 0 && i < count)
                __builtin_prefetch(m_samples.constData() + i);
        }
#endif
    }

private:
    struct Run; // of whole blocks
    Run runOf(qsizetype begin, qsizetype end) const;

    QList<double> m_samples;
    std::vector<double> m_low;
    std::vector<double> m_high;
    std::vector<int> m_notFinite; // number of such blocks before a block
    std::vector<int> m_notCounts;
    std::vector<double> m_counts; // in the blocks before a block; without those of the blocks that are not counts
};

/// The blocks of a plot's samples. Built for samples that are used repeatedly: for each new reply of a live window they
/// would take longer than they save.
class SampleBlockCache {
public:
    /// The blocks of these samples, found by their address; valid until the next call. Null for few samples, and in the
    /// first calls.
    const SampleBlocks* of(const QList<double>& samples);
    /// Call it when the plot gets new data.
    void clear() { m_entries.clear(); }

private:
    struct Entry {
        QList<double> samples; // shared, so that no other samples get the address
        int uses = 0;
        std::unique_ptr<SampleBlocks> blocks;
    };
    std::vector<Entry> m_entries;
};

} // namespace tarnis
