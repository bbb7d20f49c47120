// Regions of one axis. Sums use positions relative to the first bin of the region: at channel 16000 the second moment
// about 0 would cancel.
#include "tarnis/analysis/regionstatistics.h"

#include "tarnis/analysis/regionwidth_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tarnis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::RegionStatistics", text);
}

double square(double x)
{
    return x * x;
}

// One bin of the region.
struct Cell {
    double x; ///< centre, relative to the origin
    double width; ///< full width of the bin
    double part; ///< fraction of the bin inside the region, 0..1
    double y; ///< content times part
    double variance;
    double leftWidth = 0.0; ///< width inside the region times the weight of the left side's density
    double rightWidth = 0.0; ///< likewise of the right side
    double net = 0.0; ///< y less the background
};

// Sum of a term over the cells. In four sums, as each addition would wait for the one before it.
template <typename Term> double sumOver(const std::vector<Cell>& cells, Term term)
{
    std::array<double, 4> sums {};
    std::size_t i = 0;
    for (; i + sums.size() <= cells.size(); i += sums.size()) {
        for (std::size_t k = 0; k < sums.size(); ++k)
            sums[k] += term(cells[i + k]);
    }
    for (; i < cells.size(); ++i)
        sums[0] += term(cells[i]);
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
}

struct Region {
    const BinnedData& data;
    const RegionOptions& options;
    double origin;
    std::vector<Cell> cells;
    bool exact; ///< contents are counts and bins are not split
    bool hasVariances; ///< contents are counts or have variances of their own
};

Region collect(const BinnedData& data, RegionStatistics& result, const RegionOptions& options)
{
    Region region { data, options, data.centre(result.first), {}, false, true };
    region.cells.reserve(result.last - result.first + 1);
    for (std::size_t i = result.first; i <= result.last; ++i) {
        double part = 1.0;
        if (options.partialBins) {
            const double covered = std::min(data.edge(i + 1), result.upper) - std::max(data.edge(i), result.lower);
            part = std::clamp(covered / data.binWidth(i), 0.0, 1.0);
        }
        region.cells.push_back({ data.centre(i) - region.origin, data.binWidth(i), part, part * data.contents[i],
            part * part * data.variance(i) });
        result.bins += part;
    }
    // The tests of counts include the sides.
    const std::size_t sides = static_cast<std::size_t>(std::max(0, options.sideBins));
    const std::size_t from = result.first - std::min(sides, result.first);
    const std::size_t to = std::min(data.size() - 1, result.last + sides);
    const bool counts = faultOfCounts(data.contents.subspan(from, to - from + 1)).isEmpty();
    const auto own = data.contents.subspan(result.first, region.cells.size());
    const auto sidesAreFinite = [&] {
        return std::all_of(data.contents.begin() + static_cast<std::ptrdiff_t>(from),
            data.contents.begin() + static_cast<std::ptrdiff_t>(to) + 1, [](double y) { return std::isfinite(y); });
    };
    // A side that is not finite only takes the net area away.
    region.hasVariances = counts || !data.variances.empty() || (faultOfCounts(own).isEmpty() && !sidesAreFinite());
    region.exact = counts && data.variances.empty() && result.bins == static_cast<double>(region.cells.size());
    return region;
}

void addSum(const Region& region, RegionStatistics& result)
{
    const double sum = sumOver(region.cells, [](const Cell& cell) { return cell.y; });
    const double variance = sumOver(region.cells, [](const Cell& cell) { return cell.variance; });
    // Unequal bins: the mean is per unit of the axis.
    const double size = region.data.edges.empty()
        ? result.bins
        : sumOver(region.cells, [](const Cell& cell) { return cell.part * cell.width; });
    result.sum = sum;
    result.sumError = std::sqrt(std::max(0.0, variance));
    result.mean = sum / size;
    result.meanError = result.sumError / size;
    if (region.exact && sum <= region.options.intervalsUpTo) {
        result.sumInterval = poissonInterval(sum);
        result.sumUpperLimit = poissonUpperLimit(sum);
    }
    if (region.options.liveTime > 0.0) {
        result.rate = sum / region.options.liveTime;
        result.rateError = result.sumError / region.options.liveTime;
    }
}

void addMaximum(const Region& region, RegionStatistics& result)
{
    const bool densities = !region.data.edges.empty();
    std::size_t best = result.first;
    const auto heightOf = [&](std::size_t i) {
        return densities ? region.data.contents[i] / region.data.binWidth(i) : region.data.contents[i];
    };
    for (std::size_t i = result.first; i <= result.last; ++i) {
        if (heightOf(i) > heightOf(best))
            best = i;
    }
    const double scale = densities ? 1.0 / region.data.binWidth(best) : 1.0;
    result.maximum = heightOf(best);
    result.maximumError = scale * std::sqrt(std::max(0.0, region.data.variance(best)));
    result.maximumBin = best;
    if (result.sum > 0.0)
        result.maximumPosition = region.data.centre(best);
}

void addMoments(const Region& region, RegionStatistics& result)
{
    const double sum = result.sum;
    if (!(sum > 0.0))
        return;
    const std::vector<Cell>& cells = region.cells;
    const double centroid = sumOver(cells, [](const Cell& cell) { return cell.x * cell.y; }) / sum;
    const auto distance = [centroid](const Cell& cell) { return square(cell.x - centroid); };
    const double variance = sumOver(cells, [&](const Cell& cell) { return distance(cell) * cell.y; }) / sum;
    const double error = sumOver(cells, [&](const Cell& cell) { return distance(cell) * cell.variance; });
    const double widths = sumOver(cells, [](const Cell& cell) { return cell.y * square(cell.width); });
    const double varianceError =
        sumOver(cells, [&](const Cell& cell) { return square(distance(cell) - variance) * cell.variance; });
    result.centroid = region.origin + centroid;
    result.centroidError = std::sqrt(std::max(0.0, error)) / sum;
    result.variance = variance;
    result.varianceError = std::sqrt(std::max(0.0, varianceError)) / sum;
    result.varianceSheppard = variance - widths / (12.0 * sum);
    if (variance >= 0.0)
        result.rms = std::sqrt(variance);
    if (result.varianceSheppard >= 0.0)
        result.rmsSheppard = std::sqrt(result.varianceSheppard);
}

// Contents next to one end of the region.
struct Side {
    int bins = 0;
    double sum = 0.0;
    double variance = 0.0;
    double width = 0.0;
    double middle = 0.0; ///< relative to the origin
};

Side sideOf(const Region& region, std::size_t begin, std::size_t end)
{
    Side side;
    if (begin >= end)
        return side;
    for (std::size_t i = begin; i < end; ++i) {
        side.sum += region.data.contents[i];
        side.variance += region.data.variance(i);
    }
    side.bins = static_cast<int>(end - begin);
    side.width = region.data.edge(end) - region.data.edge(begin);
    side.middle = 0.5 * (region.data.edge(begin) + region.data.edge(end)) - region.origin;
    return side;
}

// Computes the cells' background, the weights of the sides in it, and the sides' results.
struct Sides {
    Side left, right;
    double leftShare = 0.0; ///< sum over the region of (1 - t), in units of the axis
    double rightShare = 0.0;
};

Sides addSides(Region& region, RegionStatistics& result)
{
    const std::size_t wanted = static_cast<std::size_t>(std::max(0, region.options.sideBins));
    Sides sides;
    sides.left = sideOf(region, result.first - std::min(wanted, result.first), result.first);
    sides.right = sideOf(region, result.last + 1, std::min(region.data.size(), result.last + 1 + wanted));
    const double leftDensity = sides.left.bins ? sides.left.sum / sides.left.width : 0.0;
    const double rightDensity = sides.right.bins ? sides.right.sum / sides.right.width : 0.0;
    const double distance = sides.right.middle - sides.left.middle;
    for (Cell& cell : region.cells) {
        // Position between the middles of the side groups: 0 left, 1 right.
        const double t = !sides.left.bins ? 1.0 : !sides.right.bins ? 0.0 : (cell.x - sides.left.middle) / distance;
        cell.leftWidth = cell.part * cell.width * (1.0 - t);
        cell.rightWidth = cell.part * cell.width * t;
        cell.net = cell.y - (cell.leftWidth * leftDensity + cell.rightWidth * rightDensity);
    }
    sides.leftShare = sumOver(region.cells, [](const Cell& cell) { return cell.leftWidth; });
    sides.rightShare = sumOver(region.cells, [](const Cell& cell) { return cell.rightWidth; });
    result.leftBins = sides.left.bins;
    result.rightBins = sides.right.bins;
    if (sides.left.bins) {
        result.leftSum = sides.left.sum;
        result.backgroundLeft = sides.left.sum / sides.left.bins;
    }
    if (sides.right.bins) {
        result.rightSum = sides.right.sum;
        result.backgroundRight = sides.right.sum / sides.right.bins;
    }
    return sides;
}

// Variance of the sides' densities, 0 for a missing side.
double densityVariance(const Side& side)
{
    return side.bins ? side.variance / square(side.width) : 0.0;
}

void addNet(const Region& region, const Sides& sides, RegionStatistics& result)
{
    const double background = sumOver(region.cells, [](const Cell& cell) { return cell.y - cell.net; });
    const double backgroundVariance =
        square(sides.leftShare) * densityVariance(sides.left) + square(sides.rightShare) * densityVariance(sides.right);
    result.background = background;
    result.backgroundError = std::sqrt(std::max(0.0, backgroundVariance));
    result.net = result.sum - background;
    result.netError = std::sqrt(std::max(0.0, square(result.sumError) + backgroundVariance));
    if (region.options.liveTime > 0.0) {
        result.netRate = result.net / region.options.liveTime;
        result.netRateError = result.netError / region.options.liveTime;
    }
    if (!region.exact)
        return;
    const CurrieLevels levels = currieLevels(background, backgroundVariance);
    result.criticalLevel = levels.critical;
    result.detectionLimit = levels.detection;
    result.aboveCriticalLevel = result.net > levels.critical;
    const double regionWidth = sides.leftShare + sides.rightShare;
    const double sideWidth = sides.left.width + sides.right.width;
    const double outside = sides.left.sum + sides.right.sum;
    result.excessProbability = excessProbability(result.sum, outside, regionWidth / (regionWidth + sideWidth));
    result.significant = result.excessProbability < 0.05;
    result.liMa = liMaSignificance(result.sum, outside, regionWidth / sideWidth);
}

void addNetMoments(const Region& region, const Sides& sides, RegionStatistics& result)
{
    const double net = result.net;
    if (!(net > 0.0))
        return;
    const std::vector<Cell>& cells = region.cells;
    const double centroid = sumOver(cells, [](const Cell& cell) { return cell.x * cell.net; }) / net;
    const auto distance = [centroid](const Cell& cell) { return cell.x - centroid; };
    const double variance = sumOver(cells, [&](const Cell& cell) { return square(distance(cell)) * cell.net; }) / net;
    // Each quantity is a weighted sum of the contents of the region and, through the background line, of the side
    // groups.
    const auto errorOf = [&](auto weightOf) {
        const double own = sumOver(cells, [&](const Cell& cell) { return square(weightOf(cell)) * cell.variance; });
        const double left = sumOver(cells, [&](const Cell& cell) { return weightOf(cell) * cell.leftWidth; });
        const double right = sumOver(cells, [&](const Cell& cell) { return weightOf(cell) * cell.rightWidth; });
        const double sum =
            own + square(left) * densityVariance(sides.left) + square(right) * densityVariance(sides.right);
        return std::sqrt(std::max(0.0, sum)) / net;
    };
    result.netCentroid = region.origin + centroid;
    result.netCentroidError = errorOf(distance);
    result.netVariance = variance;
    result.netVarianceError = errorOf([&](const Cell& cell) { return square(distance(cell)) - variance; });
}

void addWidths(const Region& region, RegionStatistics& result)
{
    const bool densities = !region.data.edges.empty();
    std::vector<double> x;
    std::vector<double> net;
    x.reserve(region.cells.size());
    net.reserve(region.cells.size());
    for (const Cell& cell : region.cells) {
        // Relative to the full bin, otherwise the partial bins at the limits would look like the flanks of a peak.
        const double scale = 1.0 / (densities ? cell.part * cell.width : cell.part);
        x.push_back(cell.x);
        net.push_back(cell.part > 0.0 ? scale * cell.net : 0.0);
    }
    const auto top = static_cast<std::size_t>(std::max_element(net.begin(), net.end()) - net.begin());
    result.netMaximum = net[top];
    result.netMaximumBin = result.first + top;
    const bool trusted = result.significant && region.cells[top].net >= 25.0;
    result.fwhm = analysis::interpolatedWidth(x, net, top, 0.5, region.origin, trusted);
    result.fwtm = analysis::interpolatedWidth(x, net, top, 0.1, region.origin, trusted);
}

// Contents that are neither counts nor have variances: their errors are unknown.
void removeErrors(RegionStatistics& result)
{
    for (double* const error : { &result.sumError, &result.meanError, &result.maximumError, &result.centroidError,
             &result.varianceError, &result.backgroundError, &result.netError, &result.netCentroidError,
             &result.netVarianceError, &result.rateError, &result.netRateError })
        *error = noNumber;
    const QString reason = sentence(QT_TRANSLATE_NOOP(
        "tarnis::RegionStatistics", "The contents are not counts and have no variances: their errors are unknown."));
    result.note = result.note.isEmpty() ? reason : result.note + u' ' + reason;
}

void addNumbers(Region& region, RegionStatistics& result)
{
    addSum(region, result);
    addMaximum(region, result);
    addMoments(region, result);
    const Sides sides = addSides(region, result);
    if (sides.left.bins == 0 && sides.right.bins == 0) {
        result.note = sentence(QT_TRANSLATE_NOOP(
            "tarnis::RegionStatistics", "There are no bins next to the region: no background and no net area."));
        return;
    }
    if (!std::isfinite(sides.left.sum) || !std::isfinite(sides.right.sum)) {
        result.note = sentence(QT_TRANSLATE_NOOP("tarnis::RegionStatistics",
            "A bin next to the region is not a finite number: no background and no net area."));
        return;
    }
    result.hasNet = true;
    if (sides.left.bins == 0 || sides.right.bins == 0)
        result.note = sentence(QT_TRANSLATE_NOOP(
            "tarnis::RegionStatistics", "One side is missing at the end of the axis: the background is flat."));
    addNet(region, sides, result);
    addNetMoments(region, sides, result);
    addWidths(region, result);
}

RegionStatistics evaluate(const BinnedData& data, RegionStatistics result, const RegionOptions& options)
{
    for (std::size_t i = result.first; i <= result.last; ++i) {
        if (!std::isfinite(data.contents[i])) {
            result.fault = sentence(QT_TRANSLATE_NOOP("tarnis::RegionStatistics",
                                        "Bin %1 is not a finite number. Choose a region without it."))
                               .arg(i);
            return result;
        }
    }
    Region region = collect(data, result, options);
    if (!(result.bins > 0.0)) {
        result.fault = sentence(QT_TRANSLATE_NOOP("tarnis::RegionStatistics", "The region covers no part of a bin."));
        return result;
    }
    addNumbers(region, result);
    if (!region.hasVariances)
        removeErrors(result);
    return result;
}

// Starts a result; without valid bins it contains the fault.
RegionStatistics begin(const BinnedData& data)
{
    RegionStatistics result;
    result.fault = data.fault();
    return result;
}

QString outsideText()
{
    return sentence(QT_TRANSLATE_NOOP(
        "tarnis::RegionStatistics", "The region contains no bin of the axis. Choose limits on the axis."));
}

} // namespace

RegionStatistics regionStatisticsOfBins(
    const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last, const RegionOptions& options)
{
    RegionStatistics result = begin(data);
    if (!result.fault.isEmpty())
        return result;
    if (first < 0 || last < first || last >= static_cast<std::ptrdiff_t>(data.size())) {
        result.fault = outsideText();
        return result;
    }
    result.first = static_cast<std::size_t>(first);
    result.last = static_cast<std::size_t>(last);
    result.lower = data.edge(result.first);
    result.upper = data.edge(result.last + 1);
    RegionOptions whole = options;
    whole.partialBins = false;
    return evaluate(data, std::move(result), whole);
}

RegionStatistics regionStatistics(const BinnedData& data, double lower, double upper, const RegionOptions& options)
{
    RegionStatistics result = begin(data);
    if (!result.fault.isEmpty())
        return result;
    // From the first bin that ends (or has its centre) after the lower limit to the last one that begins (or has it)
    // before the upper limit.
    const auto inside = [&](std::size_t i) {
        if (options.partialBins)
            return data.edge(i + 1) > lower && data.edge(i) < upper;
        return data.centre(i) >= lower && data.centre(i) < upper;
    };
    std::size_t first = 0;
    std::size_t last = data.size();
    if (const std::ptrdiff_t bin = data.binAt(lower); bin > 0)
        first = static_cast<std::size_t>(bin) - 1;
    if (const std::ptrdiff_t bin = data.binAt(upper); bin >= 0)
        last = std::min(data.size(), static_cast<std::size_t>(bin) + 2);
    while (first < last && !inside(first))
        ++first;
    while (last > first && !inside(last - 1))
        --last;
    if (first == last) {
        result.fault = outsideText();
        return result;
    }
    if (!options.partialBins)
        return regionStatisticsOfBins(
            data, static_cast<std::ptrdiff_t>(first), static_cast<std::ptrdiff_t>(last) - 1, options);
    result.first = first;
    result.last = last - 1;
    result.lower = std::max(lower, data.edge(first));
    result.upper = std::min(upper, data.edge(last));
    return evaluate(data, std::move(result), options);
}

} // namespace tarnis
