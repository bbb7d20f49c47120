// Assigns lines to peaks: searches over pairs of strong lines and strong peaks for the straight line under which lines
// and peaks match best, then fits a parabola to the matches with decreasing tolerances.
#include "tarnis/analysis/calibrationlines.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

struct Strong {
    std::size_t index;
    double weight; ///< square root of the strength, relative to the largest
};

template <typename Range, typename Strength>
std::vector<Strong> strongest(const Range& range, Strength strength, std::size_t count)
{
    std::vector<Strong> result;
    double largest = 0.0;
    for (std::size_t i = 0; i < range.size(); ++i)
        largest = std::max(largest, strength(range[i]));
    for (std::size_t i = 0; i < range.size(); ++i)
        result.push_back({ i, largest > 0.0 ? std::sqrt(std::max(0.0, strength(range[i])) / largest) : 1.0 });
    std::stable_sort(
        result.begin(), result.end(), [](const Strong& a, const Strong& b) { return a.weight > b.weight; });
    if (result.size() > count)
        result.resize(count);
    return result;
}

// E = a + b x + c x^2.
struct Curve {
    double a = 0.0;
    double b = 1.0;
    double c = 0.0;
    double energy(double x) const { return a + (b + c * x) * x; }
    double slope(double x) const { return b + 2.0 * c * x; }
};

class Assigner {
public:
    Assigner(std::span<const CalibrationLine> lines, std::span<const MeasuredPeak> peaks, double lower, double upper)
        : m_lines(lines)
        , m_peaks(peaks)
        , m_lower(lower)
        , m_upper(upper)
        , m_strongLines(strongest(
              lines, [](const CalibrationLine& line) { return line.intensity; }, 24))
        , m_strongPeaks(strongest(
              peaks, [](const MeasuredPeak& peak) { return peak.area; }, 40))
    {
    }
    std::vector<CalibrationPoint> placed() const;
    std::vector<CalibrationPoint> searched(std::span<const double> approximate) const;

private:
    std::optional<std::size_t> peakAt(const Curve& curve, const CalibrationLine& line, double tolerance) const;
    std::vector<CalibrationPoint> pointsUnder(const Curve& curve, double tolerance) const;
    double score(const Curve& curve, double tolerance) const;
    std::optional<Curve> bestLine() const;
    CalibrationPoint point(const CalibrationLine& line, const MeasuredPeak& peak) const
    {
        return { peak.position, peak.error, line.energy, line.energyError, line.name, 0.0 };
    }

    std::span<const CalibrationLine> m_lines;
    std::span<const MeasuredPeak> m_peaks;
    double m_lower;
    double m_upper;
    std::vector<Strong> m_strongLines;
    std::vector<Strong> m_strongPeaks;
};

std::vector<CalibrationPoint> Assigner::placed() const
{
    std::vector<CalibrationPoint> points;
    for (const CalibrationLine& line : m_lines) {
        if (line.position < 0.0)
            continue;
        const auto nearest =
            std::min_element(m_peaks.begin(), m_peaks.end(), [&](const MeasuredPeak& a, const MeasuredPeak& b) {
                return std::fabs(a.position - line.position) < std::fabs(b.position - line.position);
            });
        if (nearest != m_peaks.end() && std::fabs(nearest->position - line.position) <= nearest->fwhm)
            points.push_back(point(line, *nearest));
    }
    return points;
}

// The strongest peak within the tolerance, in full widths: a slightly nearer neighbour is usually weaker.
std::optional<std::size_t> Assigner::peakAt(const Curve& curve, const CalibrationLine& line, double tolerance) const
{
    std::optional<std::size_t> best;
    for (const Strong& strong : m_strongPeaks) {
        const MeasuredPeak& peak = m_peaks[strong.index];
        const double distance = std::fabs(curve.energy(peak.position) - line.energy);
        if (distance < tolerance * peak.fwhm * curve.slope(peak.position))
            return strong.index;
    }
    return best;
}

// The total weight of matching lines and peaks, minus that of unmatched ones in range.
double Assigner::score(const Curve& curve, double tolerance) const
{
    const double low = curve.energy(m_lower);
    const double high = curve.energy(m_upper);
    double sum = 0.0;
    std::vector<char> met(m_peaks.size(), 0);
    for (const Strong& strong : m_strongLines) {
        const CalibrationLine& line = m_lines[strong.index];
        if (line.energy < low || line.energy > high) {
            sum -= 0.5 * strong.weight;
            continue;
        }
        const auto peak = peakAt(curve, line, tolerance);
        const bool meets = peak && !met[*peak];
        sum += meets ? strong.weight : -0.7 * strong.weight;
        if (meets)
            met[*peak] = 1;
    }
    for (const Strong& strong : m_strongPeaks)
        sum += met[strong.index] ? strong.weight : -0.3 * strong.weight;
    return sum;
}

std::optional<Curve> Assigner::bestLine() const
{
    std::optional<Curve> best;
    double bestScore = 0.0;
    const std::size_t peaks = std::min<std::size_t>(16, m_strongPeaks.size());
    const std::size_t lines = std::min<std::size_t>(12, m_strongLines.size());
    for (std::size_t i = 0; i < peaks; ++i) {
        for (std::size_t j = 0; j < peaks; ++j) {
            const double x1 = m_peaks[m_strongPeaks[i].index].position;
            const double x2 = m_peaks[m_strongPeaks[j].index].position;
            if (!(x2 > x1))
                continue;
            for (std::size_t k = 0; k < lines; ++k) {
                for (std::size_t l = 0; l < lines; ++l) {
                    const double e1 = m_lines[m_strongLines[k].index].energy;
                    const double e2 = m_lines[m_strongLines[l].index].energy;
                    const double slope = (e2 - e1) / (x2 - x1);
                    const Curve curve { e1 - slope * x1, slope, 0.0 };
                    // Zero energy is normally near the first channel.
                    if (!(e2 > e1) || std::fabs(curve.energy(m_lower)) > 0.05 * slope * (m_upper - m_lower))
                        continue;
                    const double found = score(curve, 0.5);
                    if (!best || found > bestScore) {
                        best = curve;
                        bestScore = found;
                    }
                }
            }
        }
    }
    return best;
}

std::vector<CalibrationPoint> Assigner::pointsUnder(const Curve& curve, double tolerance) const
{
    std::vector<CalibrationPoint> points;
    std::vector<char> taken(m_peaks.size(), 0);
    for (const Strong& strong : m_strongLines) {
        const auto peak = peakAt(curve, m_lines[strong.index], tolerance);
        if (!peak || taken[*peak])
            continue;
        taken[*peak] = 1;
        points.push_back(point(m_lines[strong.index], m_peaks[*peak]));
    }
    std::sort(points.begin(), points.end(),
        [](const CalibrationPoint& a, const CalibrationPoint& b) { return a.position < b.position; });
    return points;
}

// All points have equal weight in the assignment; a common position error allows the curve to bend.
std::optional<Curve> curveThrough(std::vector<CalibrationPoint> points, double lower, double upper)
{
    for (CalibrationPoint& point : points) {
        point.positionError = 1.0;
        point.energyError = 0.0;
    }
    const CalibrationResult fit = fitEnergyCalibration(points, lower, upper);
    if (!fit.error.isEmpty())
        return std::nullopt;
    const std::vector<double> c = fit.calibration.uncentred();
    return Curve { c[0], c[1], c.size() > 2 ? c[2] : 0.0 };
}

std::vector<CalibrationPoint> Assigner::searched(std::span<const double> approximate) const
{
    std::optional<Curve> curve = bestLine();
    if (approximate.size() >= 2) {
        const Curve known { approximate[0], approximate[1], approximate.size() > 2 ? approximate[2] : 0.0 };
        const bool rises = known.slope(m_lower) > 0.0 && known.slope(m_upper) > 0.0;
        if (rises && (!curve || score(known, 0.5) >= score(*curve, 0.5)))
            curve = known;
    }
    if (!curve)
        return {};
    std::vector<CalibrationPoint> points = pointsUnder(*curve, 0.7);
    for (const double tolerance : { 0.6, 0.5, 0.4 }) {
        const std::optional<Curve> next = curveThrough(points, m_lower, m_upper);
        if (!next)
            break;
        points = pointsUnder(*next, tolerance);
    }
    return points;
}

} // namespace

std::vector<CalibrationPoint> assignLines(std::span<const CalibrationLine> lines, std::span<const MeasuredPeak> peaks,
    double axisLower, double axisUpper, std::span<const double> approximate)
{
    const Assigner assigner(lines, peaks, axisLower, axisUpper);
    const bool anyPlaced =
        std::any_of(lines.begin(), lines.end(), [](const CalibrationLine& line) { return line.position >= 0.0; });
    return anyPlaced ? assigner.placed() : assigner.searched(approximate);
}

} // namespace tarnis
