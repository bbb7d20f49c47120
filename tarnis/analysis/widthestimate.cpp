// Estimates widths along the axis: searches with kernels of many widths, fits the prominent peaks, and fits a straight
// line to the squares of their widths.
#include "tarnis/analysis/peakfinder_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace {

using namespace analysis;

// A prominent position with the best matching kernel.
struct Spot {
    std::size_t bin;
    double sigma; ///< sigma of the kernel, in bins
    double significance;
};

std::vector<double> summed(std::span<const double> y, std::size_t group)
{
    std::vector<double> sums((y.size() + group - 1) / group, 0.0);
    for (std::size_t i = 0; i < y.size(); ++i)
        sums[i / group] += y[i];
    return sums;
}

std::vector<Spot> strongestSpots(std::span<const double> y)
{
    std::vector<Spot> spots;
    const double widest = widestFwhm(y.size()) / 2.0;
    for (double sigma = 1.0; sigma <= widest; sigma *= 1.41421356) {
        // Wide kernels use sums of bins, because single bins do not matter to them and would take long.
        const auto group = static_cast<std::size_t>(std::max(1.0, std::floor(sigma / 2.8)));
        const std::vector<double> sums = summed(y, group);
        const std::vector<double> values =
            searchSignificance(sums, std::vector<double>(sums.size(), sigma / static_cast<double>(group)));
        for (const std::size_t i : maximaAbove(values, 10.0))
            spots.push_back({ std::min(y.size() - 1, i * group + group / 2), sigma, values[i] });
    }
    std::sort(spots.begin(), spots.end(), [](const Spot& a, const Spot& b) { return a.significance > b.significance; });
    // Keeps the most significant of overlapping spots.
    std::vector<Spot> result;
    for (const Spot& spot : spots) {
        const bool taken = std::any_of(result.begin(), result.end(), [&](const Spot& other) {
            const double distance = std::fabs(static_cast<double>(spot.bin) - static_cast<double>(other.bin));
            return distance < 3.0 * std::max(spot.sigma, other.sigma);
        });
        if (!taken)
            result.push_back(spot);
        if (result.size() == 24)
            break;
    }
    return result;
}

struct WidthPoint {
    double x;
    double square; ///< of sigma
    double error; ///< error of the squared width
};

std::optional<WidthPoint> fittedWidth(const BinnedData& data, std::size_t first, std::size_t last, const Spot& spot)
{
    const double sigma = spot.sigma / 1.4;
    const auto reach = static_cast<std::ptrdiff_t>(std::ceil(std::max(5.0, 5.0 * sigma)));
    const auto centre = static_cast<std::ptrdiff_t>(first + spot.bin);
    FitModel model;
    model.centres = { data.centre(first + spot.bin) };
    FitOptions options;
    options.profileWeakAreas = false;
    if (!data.variances.empty() || !faultOfCounts(data.contents).isEmpty())
        options.statistic = FitStatistic::Unweighted;
    const FitResult fit = fitSpectrum(data, std::max(static_cast<std::ptrdiff_t>(first), centre - reach),
        std::min(static_cast<std::ptrdiff_t>(last), centre + reach), model, options);
    const double width = fit.valueOf(QStringLiteral("sigma"));
    const double error = fit.errorOf(QStringLiteral("sigma"));
    const double ratio = fit.valueOf(QStringLiteral("area")) / fit.errorOf(QStringLiteral("area"));
    // Excludes multiplets and shoulders.
    if (fit.status != FitStatus::Done || !(ratio > 15.0) || !(error < 0.1 * width) || std::fabs(fit.goodness) > 6.0)
        return std::nullopt;
    return WidthPoint { fit.valueOf(QStringLiteral("centre")), width * width, 2.0 * width * error };
}

// sigma^2 = a + b x with a, b >= 0.
WidthCalibration lineThrough(const std::vector<WidthPoint>& points)
{
    double w = 0.0;
    double wx = 0.0;
    double wy = 0.0;
    double wxx = 0.0;
    double wxy = 0.0;
    for (const WidthPoint& point : points) {
        // Shapes are never exactly Gaussian. Adds an error of 3 % of the square, so that a single large peak does not
        // dominate.
        const double weight = 1.0 / (point.error * point.error + 9e-4 * point.square * point.square);
        w += weight;
        wx += weight * point.x;
        wy += weight * point.square;
        wxx += weight * point.x * point.x;
        wxy += weight * point.x * point.square;
    }
    const double determinant = w * wxx - wx * wx;
    WidthCalibration line { wy / w, 0.0 };
    if (points.size() < 2 || !(determinant > 1e-12 * w * wxx))
        return line;
    const double b = (w * wxy - wx * wy) / determinant;
    const double a = (wy - b * wx) / w;
    if (b < 0.0)
        return line;
    return a < 0.0 ? WidthCalibration { 0.0, wxy / wxx } : WidthCalibration { a, b };
}

} // namespace

namespace analysis {

double widestFwhm(std::size_t bins)
{
    return std::max(4.0, 0.04 * static_cast<double>(bins));
}

} // namespace analysis

std::optional<WidthCalibration> estimateWidths(const BinnedData& data, std::size_t first, std::size_t last)
{
    if (!canBeSearched(data, first, last))
        return std::nullopt;
    std::vector<WidthPoint> points;
    for (const Spot& spot : strongestSpots(data.contents.subspan(first, last - first + 1))) {
        if (const auto point = fittedWidth(data, first, last, spot))
            points.push_back(*point);
    }
    if (points.empty())
        return std::nullopt;
    WidthCalibration line = lineThrough(points);
    // Removes the worst point while it is far off: unresolved doublets are too wide.
    while (points.size() > 3) {
        const auto offOf = [&](const WidthPoint& p) {
            const double sigma = line.sigma(p.x);
            return std::fabs(std::log(p.square / (sigma * sigma)));
        };
        const auto worst = std::max_element(points.begin(), points.end(),
            [&](const WidthPoint& a, const WidthPoint& b) { return offOf(a) < offOf(b); });
        if (offOf(*worst) < 0.25)
            break;
        points.erase(worst);
        line = lineThrough(points);
    }
    return line;
}

} // namespace tarnis
