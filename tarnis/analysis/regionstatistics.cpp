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

// The bins of the region, an array for each quantity, so that the sums over them are vectorised.
class Cells {
public:
    explicit Cells(std::size_t count)
        : m_count(count)
        , m_numbers(Quantities * count)
    {
    }
    std::size_t size() const { return m_count; }
    const double* x() const { return array(X); } ///< centres, relative to the origin
    const double* width() const { return array(Width); } ///< full widths of the bins
    const double* part() const { return array(Part); } ///< fractions of the bins inside the region, 0..1
    const double* y() const { return array(Y); } ///< contents times part
    const double* variance() const { return array(Variance); }
    const double* leftWidth() const { return array(LeftWidth); } ///< width inside times the weight of the left density
    const double* rightWidth() const { return array(RightWidth); } ///< likewise of the right side
    const double* net() const { return array(Net); } ///< y less the background

    enum Quantity : std::size_t { X, Width, Part, Y, Variance, LeftWidth, RightWidth, Net, Quantities };
    double* writable(Quantity quantity) { return m_numbers.data() + quantity * m_count; }

private:
    const double* array(Quantity quantity) const { return m_numbers.data() + quantity * m_count; }

    std::size_t m_count;
    std::vector<double> m_numbers;
};

// Sum of a term over the cells, in several sums, as each addition would wait for the one before it.
template <typename Term> double sumOver(const Cells& cells, Term term)
{
    std::array<double, 8> sums {};
    std::size_t i = 0;
    for (; i + sums.size() <= cells.size(); i += sums.size()) {
        for (std::size_t k = 0; k < sums.size(); ++k)
            sums[k] += term(i + k);
    }
    for (; i < cells.size(); ++i)
        sums[0] += term(i);
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) + ((sums[4] + sums[5]) + (sums[6] + sums[7]));
}

double sumOf(const Cells& cells, const double* values)
{
    return sumOver(cells, [=](std::size_t i) { return values[i]; });
}

double sumOfProducts(const Cells& cells, const double* a, const double* b)
{
    return sumOver(cells, [=](std::size_t i) { return a[i] * b[i]; });
}

struct Region {
    const BinnedData& data;
    const RegionOptions& options;
    double origin;
    Cells cells;
    bool exact; ///< contents are counts and bins are not split
    bool hasVariances; ///< contents are counts or have variances of their own
};

Region collect(const BinnedData& data, RegionStatistics& result, const RegionOptions& options)
{
    Region region { data, options, data.centre(result.first), Cells(result.last - result.first + 1), false, true };
    double* const x = region.cells.writable(Cells::X);
    double* const width = region.cells.writable(Cells::Width);
    double* const part = region.cells.writable(Cells::Part);
    double* const y = region.cells.writable(Cells::Y);
    double* const variance = region.cells.writable(Cells::Variance);
    for (std::size_t i = 0; i < region.cells.size(); ++i) {
        const std::size_t bin = result.first + i;
        x[i] = data.centre(bin) - region.origin;
        width[i] = data.binWidth(bin);
        part[i] = 1.0;
        if (options.partialBins) {
            const double covered = std::min(data.edge(bin + 1), result.upper) - std::max(data.edge(bin), result.lower);
            part[i] = std::clamp(covered / width[i], 0.0, 1.0);
        }
        y[i] = part[i] * data.contents[bin];
        variance[i] = part[i] * part[i] * data.variance(bin);
    }
    result.bins = sumOf(region.cells, part);
    // The tests of counts include the sides.
    const std::size_t sides = static_cast<std::size_t>(std::max(0, options.sideBins));
    const std::size_t from = result.first - std::min(sides, result.first);
    const std::size_t to = std::min(data.size() - 1, result.last + sides);
    const bool counts = faultOfCounts(data.contents.subspan(from, to - from + 1)).isEmpty();
    const auto own = data.contents.subspan(result.first, region.cells.size());
    const auto sidesAreFinite = [&] {
        return std::all_of(data.contents.begin() + static_cast<std::ptrdiff_t>(from),
            data.contents.begin() + static_cast<std::ptrdiff_t>(to) + 1,
            [](double content) { return std::isfinite(content); });
    };
    // A side that is not finite only takes the net area away.
    region.hasVariances = counts || !data.variances.empty() || (faultOfCounts(own).isEmpty() && !sidesAreFinite());
    region.exact = counts && data.variances.empty() && result.bins == static_cast<double>(region.cells.size());
    return region;
}

void addSum(const Region& region, RegionStatistics& result)
{
    const Cells& cells = region.cells;
    const double sum = sumOf(cells, cells.y());
    const double variance = sumOf(cells, cells.variance());
    // Unequal bins: the mean is per unit of the axis.
    const double size = region.data.edges.empty() ? result.bins : sumOfProducts(cells, cells.part(), cells.width());
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
    const Cells& cells = region.cells;
    const double* const x = cells.x();
    const double* const y = cells.y();
    const double* const v = cells.variance();
    const double* const w = cells.width();
    const double centroid = sumOfProducts(cells, x, y) / sum;
    const auto distance = [=](std::size_t i) { return square(x[i] - centroid); };
    const double variance = sumOver(cells, [=](std::size_t i) { return distance(i) * y[i]; }) / sum;
    const double error = sumOver(cells, [=](std::size_t i) { return distance(i) * v[i]; });
    const double widths = sumOver(cells, [=](std::size_t i) { return y[i] * square(w[i]); });
    const double varianceError = sumOver(cells, [=](std::size_t i) { return square(distance(i) - variance) * v[i]; });
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
    Cells& cells = region.cells;
    double* const leftWidth = cells.writable(Cells::LeftWidth);
    double* const rightWidth = cells.writable(Cells::RightWidth);
    double* const net = cells.writable(Cells::Net);
    // Position between the middles of the side groups: 0 left, 1 right.
    const double slope = sides.left.bins && sides.right.bins ? 1.0 / distance : 0.0;
    const double start = !sides.left.bins ? 1.0 : 0.0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const double t = start + slope * (cells.x()[i] - sides.left.middle);
        const double width = cells.part()[i] * cells.width()[i];
        leftWidth[i] = width * (1.0 - t);
        rightWidth[i] = width * t;
        net[i] = cells.y()[i] - (leftWidth[i] * leftDensity + rightWidth[i] * rightDensity);
    }
    sides.leftShare = sumOf(cells, leftWidth);
    sides.rightShare = sumOf(cells, rightWidth);
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
    const double* const y = region.cells.y();
    const double* const ownNet = region.cells.net();
    const double background = sumOver(region.cells, [=](std::size_t i) { return y[i] - ownNet[i]; });
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
    const Cells& cells = region.cells;
    const double* const x = cells.x();
    const double* const contents = cells.net();
    const double centroid = sumOfProducts(cells, x, contents) / net;
    const auto distance = [=](std::size_t i) { return x[i] - centroid; };
    const double variance = sumOver(cells, [=](std::size_t i) { return square(distance(i)) * contents[i]; }) / net;
    // Each quantity is a weighted sum of the contents of the region and, through the background line, of the side
    // groups.
    const auto errorOf = [&](auto weightOf) {
        const auto weighted = [&](const double* values, auto weight) {
            return sumOver(cells, [=](std::size_t i) { return weight(i) * values[i]; });
        };
        const double own = weighted(cells.variance(), [=](std::size_t i) { return square(weightOf(i)); });
        const double left = weighted(cells.leftWidth(), weightOf);
        const double right = weighted(cells.rightWidth(), weightOf);
        const double sum =
            own + square(left) * densityVariance(sides.left) + square(right) * densityVariance(sides.right);
        return std::sqrt(std::max(0.0, sum)) / net;
    };
    result.netCentroid = region.origin + centroid;
    result.netCentroidError = errorOf(distance);
    result.netVariance = variance;
    result.netVarianceError = errorOf([=](std::size_t i) { return square(distance(i)) - variance; });
}

void addWidths(const Region& region, RegionStatistics& result)
{
    const bool densities = !region.data.edges.empty();
    const Cells& cells = region.cells;
    const std::span<const double> x(cells.x(), cells.size());
    std::vector<double> net(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        // Relative to the full bin, otherwise the partial bins at the limits would look like the flanks of a peak.
        const double size = densities ? cells.part()[i] * cells.width()[i] : cells.part()[i];
        net[i] = cells.part()[i] > 0.0 ? cells.net()[i] / size : 0.0;
    }
    const auto top = static_cast<std::size_t>(std::max_element(net.begin(), net.end()) - net.begin());
    result.netMaximum = net[top];
    result.netMaximumBin = result.first + top;
    const bool trusted = result.significant && cells.net()[top] >= 25.0;
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
