#include "tarnis/tools/curves/envelope_p.h"

#include "tarnis/plots/math/sampleblocks_p.h"
#include "tarnis/plots/math/sampleextremes_p.h"
#include "tarnis/tools/curves/counterrors_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

constexpr qsizetype fetchedRuns = 4; // ahead of the current one

bool belongs(double sample, EnvelopeOf which)
{
    return which == EnvelopeOf::Counts ? isCount(sample) : std::isfinite(sample);
}

/// The samples of a run. `blocks` is null, or that of the curve.
struct RunSamples {
    const double* samples;
    qsizetype first; // in the curve
    qsizetype count;
    const SampleBlocks* blocks;

    SampleExtremes extremes() const
    {
        return blocks != nullptr ? blocks->extremes(first, first + count) : extremesOf(samples, count);
    }
    bool areIntegerCounts() const
    {
        return blocks != nullptr ? blocks->areIntegerCounts(first, first + count)
                                 : tarnis::areIntegerCounts(samples, count);
    }
};

/// False if no sample belongs to the envelope.
bool read(EnvelopeColumn& entry, const RunSamples& run, EnvelopeOf which)
{
    const auto [samples, first, count, blocks] = run;
    if (which == EnvelopeOf::Numbers || run.areIntegerCounts()) {
        if (const SampleExtremes quick = run.extremes(); quick.finite) {
            entry.first = samples[0];
            entry.last = samples[count - 1];
            entry.lowest = quick.low;
            entry.highest = quick.high;
            return true;
        }
    }
    bool isEmpty = true;
    for (qsizetype i = 0; i < count; ++i) {
        const double sample = samples[i];
        if (!belongs(sample, which))
            continue;
        if (isEmpty)
            entry.first = entry.lowest = entry.highest = sample;
        isEmpty = false;
        entry.last = sample;
        entry.lowest = std::min(entry.lowest, sample);
        entry.highest = std::max(entry.highest, sample);
    }
    return !isEmpty;
}

/// Calls `use` with each run that the curve reaches, its samples and their number.
template <typename Use> void forEachRun(const QList<ColumnRun>& runs, const ShownCurve& curve, const Use& use)
{
    QList<double> sums;
    for (const ColumnRun& run : runs) {
        const qsizetype count = std::min(run.last + 1, curve.size()) - run.first;
        if (count <= 0)
            continue;
        if (curve.parts.size() == 1) {
            use(run, curve.parts.constFirst().constData() + run.first, count);
            continue;
        }
        sums.resize(count);
        for (qsizetype i = 0; i < count; ++i)
            sums[i] = curve.valueAt(run.first + i);
        use(run, sums.constData(), count);
    }
}

} // namespace

QList<ColumnRun> columnRuns(const BinPositions& positionOf, BinsInView bins)
{
    QList<ColumnRun> runs;
    for (qsizetype first = bins.first; first <= bins.last;) {
        const double position = positionOf(first);
        const double column = std::floor(position);
        qsizetype end = first + 1;
        if (const double step = positionOf.step(); step != 0.0) {
            // Bins of equal width: skips to just before the end of the column and tests each bin from there.
            const double way = step > 0.0 ? column + 1.0 - position : column - position;
            const double jump = way / step - 2.0;
            if (jump > 1.0)
                end = first + static_cast<qsizetype>(std::min(jump, static_cast<double>(bins.last + 1 - first)));
        }
        while (end <= bins.last && std::floor(positionOf(end)) == column)
            ++end;
        runs.append({ static_cast<int>(column), first, end - 1 });
        first = end;
    }
    return runs;
}

QList<EnvelopeColumn> envelopeOf(
    const QList<ColumnRun>& runs, const ShownCurve& curve, EnvelopeOf which, const SampleBlocks* blocks)
{
    QList<EnvelopeColumn> columns;
    columns.reserve(runs.size());
    forEachRun(runs, curve, [&](const ColumnRun& run, const double* samples, qsizetype count) {
        if (blocks != nullptr)
            blocks->fetchEnds(run.first + fetchedRuns * count, curve.size());
        EnvelopeColumn entry;
        entry.column = run.column;
        if (read(entry, { samples, run.first, count, blocks }, which))
            columns.append(entry);
    });
    return columns;
}

QList<ColumnPart> connectedParts(const QList<ColumnRun>& runs, const QList<EnvelopeColumn>& columns)
{
    QList<ColumnPart> parts;
    qsizetype next = 0; // run
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const qsizetype adjacent = next;
        while (next < runs.size() && runs.at(next).column != columns.at(i).column)
            ++next;
        if (parts.isEmpty() || next != adjacent)
            parts.append({ i, i });
        parts.last().end = i + 1;
        ++next;
    }
    return parts;
}

namespace {

/// The sum of integer counts, empty if it is not exact. An exact sum does not depend on the order, so several
/// independent sums are added up.
std::optional<double> sumOfCounts(const double* samples, qsizetype count)
{
    constexpr double exact = 9007199254740992.0; // 2^53
    if (!areIntegerCounts(samples, count))
        return std::nullopt;
    std::array<double, 4> sums {};
    qsizetype i = 0;
    for (; i + 4 <= count; i += 4) {
        for (std::size_t k = 0; k < sums.size(); ++k)
            sums[k] += samples[i + static_cast<qsizetype>(k)];
    }
    for (; i < count; ++i)
        sums[0] += samples[i];
    const double sum = (sums[0] + sums[1]) + (sums[2] + sums[3]);
    return sum < exact ? std::optional(sum) : std::nullopt;
}

} // namespace

QList<double> meansOf(const QList<ColumnRun>& runs, const ShownCurve& curve, const SampleBlocks* blocks)
{
    QList<double> means;
    means.reserve(runs.size());
    forEachRun(runs, curve, [&](const ColumnRun& run, const double* samples, qsizetype count) {
        const std::optional<double> counts =
            blocks != nullptr ? blocks->sumOfCounts(run.first, run.first + count) : sumOfCounts(samples, count);
        if (counts) {
            means.append(*counts / static_cast<double>(count));
            return;
        }
        double sum = 0.0;
        qsizetype numbers = 0;
        for (qsizetype i = 0; i < count; ++i) {
            const bool isNumber = std::isfinite(samples[i]);
            sum += isNumber ? samples[i] : 0.0;
            numbers += isNumber ? 1 : 0;
        }
        if (numbers > 0)
            means.append(sum / static_cast<double>(numbers));
    });
    return means;
}

} // namespace tarnis
