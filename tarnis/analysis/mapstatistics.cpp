// Statistics of a region of a map. Positions are relative to the middle of the region's box.
#include "tarnis/analysis/mapregion.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::MapRegion", text);
}

double square(double x)
{
    return x * x;
}

struct Bin {
    double x;
    double y;
    double content;
};

struct Bins {
    double originX;
    double originY;
    std::vector<Bin> region;
    std::vector<Bin> frame;
};

double sumOf(const std::vector<Bin>& bins)
{
    double sum = 0.0;
    for (const Bin& bin : bins)
        sum += bin.content;
    return sum;
}

// Whether a bin of the region is within `width` bins, along rows, columns and diagonals.
bool isNear(const MapRegion& region, int column, int row, int width)
{
    for (int y = row - width; y <= row + width; ++y) {
        for (int x = column - width; x <= column + width; ++x) {
            if (region.contains(x, y))
                return true;
        }
    }
    return false;
}

// The frame, and whether a part of it is missing.
std::vector<Bin> frameOf(const MapData& map, const MapRegion& region, int width, const Bins& bins,
    std::span<const MapRegion> others, bool& clipped)
{
    std::vector<Bin> frame;
    for (int row = region.top() - width; row <= region.bottom() + width; ++row) {
        for (int column = region.left() - width; column <= region.right() + width; ++column) {
            if (region.contains(column, row) || !isNear(region, column, row, width))
                continue;
            const bool outside = column < 0 || row < 0 || column >= map.columns || row >= map.rows;
            const bool taken = std::any_of(
                others.begin(), others.end(), [&](const MapRegion& other) { return other.contains(column, row); });
            if (outside || taken) {
                clipped = true;
                continue;
            }
            const auto index = static_cast<std::size_t>(row) * static_cast<std::size_t>(map.columns)
                + static_cast<std::size_t>(column);
            frame.push_back({ map.x(column) - bins.originX, map.y(row) - bins.originY, map.contents[index] });
        }
    }
    return frame;
}

void addGross(const MapData& map, const MapRegion& region, Bins& bins, MapRegionStatistics& result)
{
    for (int row = region.top(); row <= region.bottom(); ++row) {
        for (int column = region.left(); column <= region.right(); ++column) {
            if (!region.contains(column, row))
                continue;
            const double content = map.contents[static_cast<std::size_t>(row) * static_cast<std::size_t>(map.columns)
                + static_cast<std::size_t>(column)];
            if (bins.region.empty() || content > result.maximum) {
                result.maximum = content;
                result.maximumColumn = column;
                result.maximumRow = row;
            }
            bins.region.push_back({ map.x(column) - bins.originX, map.y(row) - bins.originY, content });
        }
    }
    result.bins = static_cast<int>(bins.region.size());
    result.sum = sumOf(bins.region);
    result.sumError = std::sqrt(std::max(0.0, result.sum));
    result.mean = result.sum / result.bins;
    result.meanError = result.sumError / result.bins;
}

struct Moments {
    std::array<double, 2> centroid;
    std::array<double, 3> covariance;
};

// Moments of the contents minus a constant, with their sum.
Moments momentsOf(const std::vector<Bin>& bins, double constant, double sum)
{
    Moments m {};
    for (const Bin& bin : bins) {
        m.centroid[0] += bin.x * (bin.content - constant) / sum;
        m.centroid[1] += bin.y * (bin.content - constant) / sum;
    }
    for (const Bin& bin : bins) {
        const double dx = bin.x - m.centroid[0];
        const double dy = bin.y - m.centroid[1];
        const double share = (bin.content - constant) / sum;
        m.covariance[0] += dx * dx * share;
        m.covariance[1] += dx * dy * share;
        m.covariance[2] += dy * dy * share;
    }
    return m;
}

// Errors of the centroids: own counts, and the variance of the constant.
std::array<double, 2> centroidErrors(
    const std::vector<Bin>& bins, const Moments& m, double sum, double constantVariance)
{
    std::array<double, 2> own {};
    std::array<double, 2> level {};
    for (const Bin& bin : bins) {
        const double dx = bin.x - m.centroid[0];
        const double dy = bin.y - m.centroid[1];
        own[0] += dx * dx * bin.content;
        own[1] += dy * dy * bin.content;
        level[0] += dx;
        level[1] += dy;
    }
    return { std::sqrt(std::max(0.0, own[0] + square(level[0]) * constantVariance)) / sum,
        std::sqrt(std::max(0.0, own[1] + square(level[1]) * constantVariance)) / sum };
}

// Solves the symmetric 3 x 3 system of the plane's normal equations by Cramer's rule; false if the frame is a line.
bool solve(const std::array<double, 6>& a, const std::array<double, 3>& b, std::array<double, 3>& p)
{
    // a: 11 12 13 22 23 33
    const double c11 = a[3] * a[5] - a[4] * a[4];
    const double c12 = a[2] * a[4] - a[1] * a[5];
    const double c13 = a[1] * a[4] - a[2] * a[3];
    const double c22 = a[0] * a[5] - a[2] * a[2];
    const double c23 = a[1] * a[2] - a[0] * a[4];
    const double c33 = a[0] * a[3] - a[1] * a[1];
    const double determinant = a[0] * c11 + a[1] * c12 + a[2] * c13;
    if (!(std::fabs(determinant) > 1e-12 * a[0] * a[3] * a[5]))
        return false;
    p[0] = (c11 * b[0] + c12 * b[1] + c13 * b[2]) / determinant;
    p[1] = (c12 * b[0] + c22 * b[1] + c23 * b[2]) / determinant;
    p[2] = (c13 * b[0] + c23 * b[1] + c33 * b[2]) / determinant;
    return true;
}

void addPlane(const Bins& bins, MapRegionStatistics& result)
{
    std::array<double, 6> normal {};
    std::array<double, 3> right {};
    for (const Bin& bin : bins.frame) {
        const std::array<double, 6> products { 1.0, bin.x, bin.y, bin.x * bin.x, bin.x * bin.y, bin.y * bin.y };
        for (std::size_t k = 0; k < normal.size(); ++k)
            normal[k] += products[k];
        right[0] += bin.content;
        right[1] += bin.x * bin.content;
        right[2] += bin.y * bin.content;
    }
    // The background is (sums over the region of 1, x, y) times the coefficients, so its weight for one bin of the
    // frame is that vector times the inverse of the normal matrix times (1, x, y).
    std::array<double, 3> total {};
    for (const Bin& bin : bins.region) {
        total[0] += 1.0;
        total[1] += bin.x;
        total[2] += bin.y;
    }
    std::array<double, 3> weight {};
    if (!solve(normal, right, result.planeCoefficients) || !solve(normal, total, weight)) {
        result.planeCoefficients = { noNumber, noNumber, noNumber };
        return;
    }
    double background = 0.0;
    double variance = 0.0;
    for (const Bin& bin : bins.frame) {
        const double w = weight[0] + weight[1] * bin.x + weight[2] * bin.y;
        background += w * bin.content;
        variance += w * w * bin.content;
    }
    result.plane.background = background;
    result.plane.backgroundError = std::sqrt(std::max(0.0, variance));
    result.plane.net = result.sum - background;
    result.plane.netError = std::sqrt(std::max(0.0, result.sum + variance));
}

void addNet(const Bins& bins, MapRegionStatistics& result)
{
    const double n = result.bins;
    const double frame = result.frameBins;
    result.frameSum = sumOf(bins.frame);
    const double variance = square(n / frame) * result.frameSum;
    result.flat.background = n * result.frameSum / frame;
    result.flat.backgroundError = std::sqrt(std::max(0.0, variance));
    result.flat.net = result.sum - result.flat.background;
    result.flat.netError = std::sqrt(std::max(0.0, result.sum + variance));
    addPlane(bins, result);
    const bool usePlane = result.frameClipped && !std::isnan(result.plane.net);
    result.chosen = usePlane ? result.plane : result.flat;
    if (result.flat.net > 0.0) {
        const double mean = result.frameSum / frame;
        const Moments m = momentsOf(bins.region, mean, result.flat.net);
        result.netCentroid = { bins.originX + m.centroid[0], bins.originY + m.centroid[1] };
        result.netCovariance = m.covariance;
        result.netCentroidError = centroidErrors(bins.region, m, result.flat.net, result.frameSum / square(frame));
    }
}

void addTests(MapRegionStatistics& result)
{
    const CurrieLevels levels = currieLevels(result.flat.background, square(result.flat.backgroundError));
    result.criticalLevel = levels.critical;
    result.detectionLimit = levels.detection;
    result.aboveCriticalLevel = result.flat.net > levels.critical;
    result.excessProbability = excessProbability(
        result.sum, result.frameSum, static_cast<double>(result.bins) / (result.bins + result.frameBins));
    result.significant = result.excessProbability < 0.05;
}

// The errors above are those of counts.
void removeErrors(MapRegionStatistics& result)
{
    for (double* const error : { &result.sumError, &result.meanError, &result.rateError, &result.netRateError,
             &result.flat.backgroundError, &result.flat.netError, &result.plane.backgroundError, &result.plane.netError,
             &result.chosen.backgroundError, &result.chosen.netError })
        *error = noNumber;
    result.centroidError.fill(noNumber);
    result.netCentroidError.fill(noNumber);
    const QString reason =
        sentence(QT_TRANSLATE_NOOP("tarnis::MapRegion", "The contents are not counts: their errors are unknown."));
    result.note = result.note.isEmpty() ? reason : result.note + u' ' + reason;
}

} // namespace

MapRegionStatistics mapRegionStatistics(
    const MapData& map, const MapRegion& region, const MapRegionOptions& options, std::span<const MapRegion> others)
{
    MapRegionStatistics result;
    result.fault = map.fault();
    if (result.fault.isEmpty() && (region.isEmpty() || region.right() >= map.columns || region.bottom() >= map.rows))
        result.fault = sentence(QT_TRANSLATE_NOOP(
            "tarnis::MapRegion", "The region contains no bin of the map. Choose an outline on the map."));
    if (!result.fault.isEmpty())
        return result;
    Bins bins { 0.5 * (map.x(region.left()) + map.x(region.right())),
        0.5 * (map.y(region.top()) + map.y(region.bottom())), {}, {} };
    addGross(map, region, bins, result);
    if (!std::isfinite(result.sum)) {
        result = {};
        result.fault = sentence(QT_TRANSLATE_NOOP(
            "tarnis::MapRegion", "A bin of the region is not a finite number. Choose an outline without it."));
        return result;
    }
    std::vector<double> contents;
    for (const Bin& bin : bins.region)
        contents.push_back(bin.content);
    const bool hasErrors = map.areCounts && faultOfCounts(contents).isEmpty();
    bins.frame = frameOf(map, region, std::max(0, options.frame), bins, others, result.frameClipped);
    for (const Bin& bin : bins.frame)
        contents.push_back(bin.content);
    const bool counts = map.areCounts && faultOfCounts(contents).isEmpty();
    if (counts) {
        result.sumInterval = poissonInterval(result.sum);
        result.sumUpperLimit = poissonUpperLimit(result.sum);
    }
    if (result.sum > 0.0) {
        const Moments m = momentsOf(bins.region, 0.0, result.sum);
        result.centroid = { bins.originX + m.centroid[0], bins.originY + m.centroid[1] };
        result.centroidError = centroidErrors(bins.region, m, result.sum, 0.0);
        result.covariance = m.covariance;
    }
    result.frameBins = static_cast<int>(bins.frame.size());
    if (result.frameBins > 0 && std::isfinite(sumOf(bins.frame))) {
        result.hasNet = true;
        addNet(bins, result);
        if (counts)
            addTests(result);
    }
    if (!result.hasNet)
        result.note = sentence(QT_TRANSLATE_NOOP("tarnis::MapRegion",
            "There is no frame of finite bins around the region: no background and no net content."));
    else if (result.frameClipped)
        result.note = sentence(
            QT_TRANSLATE_NOOP("tarnis::MapRegion", "The frame is clipped: the background is a plane fitted to it."));
    if (options.liveTime > 0.0) {
        result.rate = result.sum / options.liveTime;
        result.rateError = result.sumError / options.liveTime;
        result.netRate = result.chosen.net / options.liveTime;
        result.netRateError = result.chosen.netError / options.liveTime;
    }
    if (!hasErrors)
        removeErrors(result);
    return result;
}

} // namespace tarnis
