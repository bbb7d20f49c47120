#include "tarnis/plots/math/seriesgrouping_p.h"

#include "tarnis/foundation/trace_p.h"
#include "tarnis/plots/math/sampleextremes_p.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr int rotationSize = 8;

/// Samples that are summed at a time; they fit into the L1 cache.
constexpr int samplesPerBlock = 1024;

bool isEmpty(const QList<Series>& series, const SummedCurve& curve)
{
    return curve.records.isEmpty() || series.at(curve.records.constFirst()).values.isEmpty();
}

// Adds block by block; each sum is in the order of the records.
void addUp(const QList<Series>& series, const SummedCurve& curve, SampleRange range, double* sums)
{
    for (int begin = range.begin; begin < range.end; begin += samplesPerBlock) {
        const int end = std::min(begin + samplesPerBlock, range.end);
        double* block = sums + (begin - range.begin);
        const QList<double>& first = series.at(curve.records.constFirst()).values;
        std::copy(first.constData() + begin, first.constData() + end, block);
        for (qsizetype i = 1; i < curve.records.size(); ++i) {
            const QList<double>& other = series.at(curve.records.at(i)).values;
            const int common = static_cast<int>(std::min<qsizetype>(end, other.size())) - begin;
            const double* samples = common > 0 ? other.constData() + begin : nullptr;
            for (int k = 0; k < common; ++k)
                block[k] += samples[k];
        }
    }
}

} // namespace

QColor rotationColour(int number)
{
    static constexpr std::array<QRgb, rotationSize> colors { qRgb(255, 51, 0), qRgb(255, 255, 0), qRgb(51, 153, 102),
        qRgb(0, 65, 255), qRgb(102, 204, 255), qRgb(255, 153, 153), qRgb(255, 153, 0), qRgb(153, 0, 102) };
    return QColor(colors.at(static_cast<std::size_t>(number % rotationSize)));
}

QList<SummedCurve> curvesOf(const QList<Series>& series, AddType type, int groupSize)
{
    switch (type) {
    case AddType::AddNone: {
        QList<SummedCurve> curves;
        for (int i = 0; i < series.size(); ++i)
            curves.append({ { i }, series.at(i % groupSize).color, series.at(i).enable });
        return curves;
    }
    case AddType::AddEachGroup:
        return curvesByGroup(series, groupSize);
    case AddType::AddEachPosition:
        return curvesByPosition(series, groupSize);
    case AddType::AddAll:
        break;
    }
    return { curveOfAll(series, true) };
}

QList<SummedCurve> curvesByGroup(const QList<Series>& series, int groupSize)
{
    QList<SummedCurve> curves((series.size() + groupSize - 1) / groupSize);
    int colors = 0;
    for (int i = 0; i < series.size(); ++i) {
        SummedCurve& curve = curves[i / groupSize];
        if (isEmpty(series, curve))
            curve = { { i }, rotationColour(colors++), series.at(i).enable };
        else
            curve.records.append(i);
    }
    return curves;
}

QList<SummedCurve> curvesByPosition(const QList<Series>& series, int groupSize)
{
    QList<SummedCurve> curves(groupSize);
    for (int i = 0; i < series.size(); ++i) {
        SummedCurve& curve = curves[i % groupSize];
        if (isEmpty(series, curve))
            curve = { { i }, series.at(i % groupSize).color, series.at(i % groupSize).enable };
        else
            curve.records.append(i);
    }
    return curves;
}

SummedCurve curveOfAll(const QList<Series>& series, bool enabledOnly)
{
    SummedCurve curve;
    for (int i = 0; i < series.size(); ++i) {
        if (enabledOnly && !series.at(i).enable)
            continue;
        if (curve.records.isEmpty())
            curve.colour = series.at(i).color;
        curve.records.append(i);
    }
    return curve;
}

void traceDifferentLengths(const QList<Series>& series, const SummedCurve& curve)
{
    const qsizetype length = lengthOf(series, curve);
    for (qsizetype i = 1; i < curve.records.size(); ++i) {
        const qsizetype other = series.at(curve.records.at(i)).values.size();
        if (other != length)
            TARNIS_TRACE(QStringLiteral("Dst Size: %1 Src Size: %2").arg(length).arg(other));
    }
}

std::unique_ptr<double[]> sumsOf(const QList<Series>& series, const SummedCurve& curve, SampleRange range)
{
    traceDifferentLengths(series, curve);
    auto sums =
        std::make_unique_for_overwrite<double[]>(static_cast<std::size_t>(std::max(range.end - range.begin, 0)));
    addUp(series, curve, range, sums.get());
    return sums;
}

QList<double> wholeSums(const QList<Series>& series, const SummedCurve& curve)
{
    if (curve.records.isEmpty())
        return {};
    traceDifferentLengths(series, curve);
    QList<double> sums = series.at(curve.records.constFirst()).values;
    if (curve.records.size() > 1 && !sums.isEmpty())
        addUp(series, curve, { 0, static_cast<int>(sums.size()) }, sums.data());
    return sums;
}

qsizetype lengthOf(const QList<Series>& series, const SummedCurve& curve)
{
    return curve.records.isEmpty() ? 0 : series.at(curve.records.constFirst()).values.size();
}

qsizetype longestSeries(const QList<Series>& series)
{
    qsizetype longest = 0;
    for (const Series& record : series)
        longest = std::max(longest, record.values.size());
    return longest;
}

int filledSeries(const QList<Series>& series)
{
    return static_cast<int>(
        std::count_if(series.cbegin(), series.cend(), [](const Series& record) { return !record.values.isEmpty(); }));
}

double maxOfCurves(const QList<Series>& series, const QList<double>& maxValues, AddType type, int groupSize)
{
    double largest = 0.0;
    double sum = 0.0;
    double sumOfEnabled = 0.0;
    for (qsizetype i = 0; i < maxValues.size(); ++i) {
        largest = std::max(largest, maxValues.at(i));
        sum += maxValues.at(i);
        if (i < series.size() && series.at(i).enable)
            sumOfEnabled += maxValues.at(i);
    }
    switch (type) {
    case AddType::AddNone:
        return largest;
    case AddType::AddEachGroup:
        return groupSize * largest;
    case AddType::AddEachPosition:
        return sum;
    case AddType::AddAll:
        break;
    }
    return groupSize < 2 ? sumOfEnabled : groupSize * sum;
}

double largestOf(const QList<double>& values)
{
    double largest = -std::numeric_limits<double>::infinity();
    for (const double value : values)
        largest = value > largest ? value : largest;
    return std::isinf(largest) && largest < 0.0 ? 0.0 : largest;
}

double lowestForLogAxis(const QList<Series>& series)
{
    double lowest = 1.0;
    for (const Series& record : series)
        lowest = lowestAbove(DBL_EPSILON, record.values.constData(), record.values.size(), lowest);
    return lowest;
}

} // namespace tarnis
