#include "tarnis/tools/regions/regionrows_p.h"

#include "tarnis/analysis/figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace tarnis {

namespace {

constexpr double fewCounts = 10.0; // below this the exact interval is shown
constexpr double infinite = std::numeric_limits<double>::infinity();

RegionRow begunRow(const QList<PlotRegion>& regions, int index)
{
    RegionRow row;
    row.region = index;
    row.name = regions.at(index).name;
    row.limits = regions.at(index).bounds();
    return row;
}

void readStatistics(RegionRow& row, const RegionStatistics& numbers, double total)
{
    row.fault = numbers.fault;
    row.note = numbers.note;
    if (!numbers.fault.isEmpty())
        return;
    row.limits = QRectF(QPointF(numbers.lower, 0.0), QPointF(numbers.upper, 0.0));
    row.bins = static_cast<int>(numbers.bins);
    row.sum = { numbers.sum, numbers.sumError };
    row.sumInterval = numbers.sumInterval;
    row.sumUpperLimit = numbers.sumUpperLimit;
    row.net = { numbers.net, numbers.netError };
    row.isSignificant = numbers.significant;
    row.detectionLimit = numbers.detectionLimit;
    row.centroid = numbers.significant ? RegionValue { numbers.netCentroid, numbers.netCentroidError }
                                       : RegionValue { numbers.centroid, numbers.centroidError };
    row.fwhm = numbers.fwhm.shown;
    row.maximum = { numbers.maximum, numbers.maximumError };
    row.maximumAt = numbers.maximumPosition;
    row.share = total > 0.0 ? numbers.sum / total : noNumber;
}

void readStatistics(RegionRow& row, const MapRegionStatistics& numbers, const MapData& map, double total)
{
    row.fault = numbers.fault;
    row.note = numbers.note;
    if (!numbers.fault.isEmpty())
        return;
    row.bins = numbers.bins;
    row.sum = { numbers.sum, numbers.sumError };
    row.sumInterval = numbers.sumInterval;
    row.sumUpperLimit = numbers.sumUpperLimit;
    row.net = { numbers.chosen.net, numbers.chosen.netError };
    row.isSignificant = numbers.significant;
    row.detectionLimit = numbers.detectionLimit;
    const auto& centroid = numbers.significant ? numbers.netCentroid : numbers.centroid;
    const auto& error = numbers.significant ? numbers.netCentroidError : numbers.centroidError;
    row.centroid = { centroid[0], error[0] };
    row.centroidY = { centroid[1], error[1] };
    row.maximum = { numbers.maximum, std::sqrt(std::max(0.0, numbers.maximum)) };
    if (numbers.sum > 0.0) {
        row.maximumAt = map.x(numbers.maximumColumn);
        row.maximumAtY = map.y(numbers.maximumRow);
    }
    row.share = total > 0.0 ? numbers.sum / total : noNumber;
}

// Several sums side by side: each addition would wait for the one before it.
double sumOf(const QList<double>& contents)
{
    constexpr qsizetype lanes = 8;
    std::array<double, lanes> sums {};
    const double* const y = contents.constData();
    qsizetype i = 0;
    for (; i + lanes <= contents.size(); i += lanes) {
        for (qsizetype k = 0; k < lanes; ++k)
            sums[static_cast<std::size_t>(k)] += y[i + k];
    }
    return std::accumulate(y + i, y + contents.size(), std::accumulate(sums.begin(), sums.end(), 0.0));
}

auto numbersOf(const RegionRow& row)
{
    return std::array { row.limits.left(), row.limits.top(), row.limits.right(), row.limits.bottom(), row.sum.value,
        row.sum.error, row.sumInterval.lower, row.sumInterval.upper, row.sumUpperLimit, row.net.value, row.net.error,
        row.detectionLimit, row.centroid.value, row.centroid.error, row.centroidY.value, row.centroidY.error,
        row.energy.value, row.energy.error, row.fwhm, row.maximum.value, row.maximum.error, row.maximumAt,
        row.maximumAtY, row.share };
}

QString numberOrDash(double value)
{
    return std::isnan(value) ? QStringLiteral("–") : QString::number(value, 'g', 6);
}

} // namespace

std::vector<RegionRow> regionRows(
    const QList<PlotRegion>& regions, const QList<PlotSpectrum>& spectra, const RegionTableOptions& options)
{
    std::vector<RegionRow> rows;
    std::vector<double> totals;
    totals.reserve(static_cast<std::size_t>(spectra.size()));
    for (const PlotSpectrum& spectrum : spectra)
        totals.push_back(sumOf(spectrum.contents));
    rows.reserve(static_cast<std::size_t>(regions.size() * spectra.size()));
    RegionOptions regionOptions;
    regionOptions.sideBins = options.sideBins;
    regionOptions.intervalsUpTo = fewCounts;
    for (int i = 0; i < regions.size(); ++i) {
        const QRectF box = regions.at(i).bounds();
        for (qsizetype k = 0; k < spectra.size(); ++k) {
            RegionRow row = begunRow(regions, i);
            row.curve = spectra.at(k).name;
            row.colour = spectra.at(k).colour;
            readStatistics(row, regionStatistics(spectra.at(k).data(), box.left(), box.right(), regionOptions),
                totals[static_cast<std::size_t>(k)]);
            if (options.calibration.isValid() && !std::isnan(row.centroid.value)) {
                const CalibratedEnergy energy = options.calibration.calibrated(row.centroid.value, row.centroid.error);
                row.energy = { energy.energy, energy.error };
            }
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

MapRegion binsOf(const PlotRegion& region, const MapData& map)
{
    const QRectF box = region.bounds();
    switch (region.kind) {
    case PlotRegion::Kind::RangeX:
        return MapRegion::rectangle(map, box.left(), box.right(), -infinite, infinite);
    case PlotRegion::Kind::RangeY:
        return MapRegion::rectangle(map, -infinite, infinite, box.top(), box.bottom());
    case PlotRegion::Kind::Rectangle:
        return MapRegion::rectangle(map, box.left(), box.right(), box.top(), box.bottom());
    case PlotRegion::Kind::Ellipse:
        return MapRegion::ellipse(map, box.center().x(), box.center().y(), box.width() / 2.0, box.height() / 2.0);
    case PlotRegion::Kind::Polygon:
        break;
    }
    return MapRegion::polygon(map, { region.points.constData(), static_cast<std::size_t>(region.points.size()) });
}

std::vector<RegionRow> regionRows(
    const QList<PlotRegion>& regions, const MapContents& map, const RegionTableOptions& options)
{
    std::vector<RegionRow> rows;
    if (map.data.columns == 0)
        return rows;
    std::vector<MapRegion> bins;
    bins.reserve(static_cast<std::size_t>(regions.size()));
    for (const PlotRegion& region : regions)
        bins.push_back(binsOf(region, map.data));
    const double total = std::accumulate(map.contents.begin(), map.contents.end(), 0.0);
    MapRegionOptions mapOptions;
    mapOptions.frame = options.frame;
    for (int i = 0; i < regions.size(); ++i) {
        // The counts of another region are not background of this one.
        std::vector<MapRegion> others;
        for (int k = 0; k < regions.size(); ++k) {
            if (k != i)
                others.push_back(bins[static_cast<std::size_t>(k)]);
        }
        RegionRow row = begunRow(regions, i);
        row.colour = Qt::white;
        readStatistics(
            row, mapRegionStatistics(map.data, bins[static_cast<std::size_t>(i)], mapOptions, others), map.data, total);
        rows.push_back(std::move(row));
    }
    return rows;
}

bool isSameRow(const RegionRow& a, const RegionRow& b)
{
    const auto isSameNumber = [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); };
    const auto left = numbersOf(a);
    const auto right = numbersOf(b);
    return std::equal(left.begin(), left.end(), right.begin(), isSameNumber) && a.region == b.region && a.bins == b.bins
        && a.isSignificant == b.isSignificant && a.name == b.name && a.curve == b.curve && a.colour == b.colour
        && a.fault == b.fault && a.note == b.note;
}

RegionValue since(const RegionValue& now, const RegionValue& frozen)
{
    const double variance = now.error * now.error - frozen.error * frozen.error;
    if (std::isnan(variance)) // contents that are not counts
        return { now.value - frozen.value, noNumber };
    // A variance that decreases by more than rounding means that the spectrum was cleared.
    if (!(variance >= -1e-9 * now.error * now.error))
        return {};
    return { now.value - frozen.value, std::sqrt(std::max(0.0, variance)) };
}

const FrozenRow* frozenOf(const RegionRow& row, const std::vector<FrozenRow>& frozen)
{
    for (const FrozenRow& candidate : frozen) {
        if (candidate.name == row.name && candidate.curve == row.curve)
            return &candidate;
    }
    return nullptr;
}

QString valueText(const RegionValue& value)
{
    return std::isnan(value.value) ? QStringLiteral("–") : figureText(value.value, value.error);
}

QString sumText(const RegionRow& row)
{
    if (row.sum.value == 0.0 && !std::isnan(row.sumUpperLimit))
        return QStringLiteral("0, < %1").arg(row.sumUpperLimit, 0, 'f', 2);
    if (row.sum.value < fewCounts && row.sum.value > 0.0 && !std::isnan(row.sumInterval.upper))
        return figureText(row.sum.value, row.sumInterval.upper - row.sum.value, row.sum.value - row.sumInterval.lower);
    return valueText(row.sum);
}

QString netText(const RegionRow& row)
{
    if (!row.isSignificant && !std::isnan(row.detectionLimit))
        return QStringLiteral("< %1; %2")
            .arg(numberOrDash(std::round(row.detectionLimit * 10.0) / 10.0), valueText(row.net));
    return valueText(row.net);
}

QString regionTableText(const std::vector<RegionRow>& rows, bool isMap, const std::vector<FrozenRow>& frozen)
{
    QStringList header { QStringLiteral("region"), QStringLiteral("curve"), QStringLiteral("from"),
        QStringLiteral("to") };
    if (isMap)
        header << QStringLiteral("from_y") << QStringLiteral("to_y");
    header << QStringLiteral("bins") << QStringLiteral("sum") << QStringLiteral("sum_error") << QStringLiteral("net")
           << QStringLiteral("net_error") << QStringLiteral("significant") << QStringLiteral("centroid")
           << QStringLiteral("centroid_error");
    if (isMap)
        header << QStringLiteral("centroid_y") << QStringLiteral("centroid_y_error");
    header << QStringLiteral("fwhm") << QStringLiteral("maximum") << QStringLiteral("maximum_at")
           << QStringLiteral("share");
    const bool hasEnergies =
        std::any_of(rows.begin(), rows.end(), [](const RegionRow& row) { return !std::isnan(row.energy.value); });
    if (hasEnergies)
        header << QStringLiteral("energy") << QStringLiteral("energy_error");
    if (!frozen.empty())
        header << QStringLiteral("sum_since") << QStringLiteral("sum_since_error") << QStringLiteral("net_since")
               << QStringLiteral("net_since_error");
    QString text = header.join(u'\t') + u'\n';
    const auto both = [](QStringList& line, const RegionValue& value) {
        line << fullDigits(value.value) << fullDigits(value.error);
    };
    for (const RegionRow& row : rows) {
        QStringList line { row.name, row.curve, fullDigits(row.limits.left()), fullDigits(row.limits.right()) };
        if (isMap)
            line << fullDigits(row.limits.top()) << fullDigits(row.limits.bottom());
        line << QString::number(row.bins);
        both(line, row.sum);
        both(line, row.net);
        line << QString::number(row.isSignificant ? 1 : 0);
        both(line, row.centroid);
        if (isMap)
            both(line, row.centroidY);
        line << fullDigits(row.fwhm) << fullDigits(row.maximum.value) << fullDigits(row.maximumAt)
             << fullDigits(row.share);
        if (hasEnergies)
            both(line, row.energy);
        if (!frozen.empty()) {
            const FrozenRow* const before = frozenOf(row, frozen);
            both(line, before != nullptr ? since(row.sum, before->sum) : RegionValue());
            both(line, before != nullptr ? since(row.net, before->net) : RegionValue());
        }
        text += line.join(u'\t') + u'\n';
    }
    return text;
}

} // namespace tarnis
