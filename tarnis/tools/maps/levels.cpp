#include "tarnis/tools/maps/levels_p.h"

#include "tarnis/plots/raster/bincolouring_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr double roomAtEnds = 0.03; // fraction of the axis
constexpr double minDecades = 0.1;

double onCurve(ScaleCurve curve, double value)
{
    switch (curve) {
    case ScaleCurve::Log:
        return value > 0.0 ? std::log10(value) : 0.0; // as the colours do
    case ScaleCurve::SquareRoot:
        return value < 0.0 ? 0.0 : std::sqrt(value);
    default:
        return value;
    }
}

double offCurve(ScaleCurve curve, double position)
{
    switch (curve) {
    case ScaleCurve::Log:
        return std::pow(10.0, position);
    case ScaleCurve::SquareRoot:
        return position < 0.0 ? 0.0 : position * position;
    default:
        return position;
    }
}

double quantile(std::vector<double>& values, double percent)
{
    const auto last = static_cast<double>(values.size() - 1);
    const auto rank = static_cast<std::ptrdiff_t>(std::llround(percent / 100.0 * last));
    const auto place = values.begin() + rank;
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

} // namespace

std::vector<double> paintedBins(const QList<QList<double>>& rows)
{
    std::vector<double> values;
    for (const QList<double>& row : rows) {
        for (const double value : row) {
            if (std::isfinite(value) && !isEmptyBin(value))
                values.push_back(value);
        }
    }
    return values;
}

AxisRange percentileLevels(std::vector<double>& values, double lower, double upper)
{
    if (values.empty() || std::isnan(lower) || std::isnan(upper))
        return {};
    const double low = std::clamp(std::min(lower, upper), 0.0, 100.0);
    const double high = std::clamp(std::max(lower, upper), 0.0, 100.0);
    return { quantile(values, low), quantile(values, high) };
}

AxisRange distinctLevels(AxisRange levels)
{
    if (levels.min != levels.max)
        return levels;
    return { std::min(levels.min, 0.0), std::max(levels.max, 0.0) };
}

double LevelAxis::shareOf(double value) const
{
    const double low = onCurve(curve, range.min);
    const double span = onCurve(curve, range.max) - low;
    return span > 0.0 ? (onCurve(curve, value) - low) / span : 0.0;
}

double LevelAxis::valueAt(double share) const
{
    const double low = onCurve(curve, range.min);
    return offCurve(curve, low + share * (onCurve(curve, range.max) - low));
}

LevelAxis levelAxis(const std::vector<double>& values, AxisRange levels, ScaleCurve curve)
{
    double low = std::min(levels.min, levels.max);
    double high = std::max(levels.min, levels.max);
    if (!std::isfinite(low) || !std::isfinite(high)) {
        low = values.empty() ? 0.0 : values.front();
        high = low;
    }
    if (curve == ScaleCurve::Log && low <= 0.0)
        low = high > 0.0 ? std::min(1.0, high) : 1.0;
    AxisRange span { low, high };
    bool hasValues = false;
    for (const double value : values) {
        if (curve == ScaleCurve::Log && value <= 0.0)
            continue;
        span =
            hasValues ? AxisRange { std::min(span.min, value), std::max(span.max, value) } : AxisRange { value, value };
        hasValues = true;
    }
    LevelAxis axis { { low, high }, curve };
    double from = onCurve(curve, span.min);
    double to = onCurve(curve, span.max);
    const double minSpan = curve == ScaleCurve::Log ? minDecades : std::max(std::abs(to), 1.0) * 1e-6;
    if (to - from < minSpan)
        to = from + (curve == ScaleCurve::Log ? 1.0 : std::max(std::abs(from), 1.0));
    // A margin beyond the levels would let keys move them further each time.
    const double room = hasValues ? roomAtEnds * (to - from) : 0.0;
    const bool hasZero = curve == ScaleCurve::SquareRoot || (curve == ScaleCurve::Linear && span.min >= 0.0);
    from = std::min(hasZero ? std::max(from - room, 0.0) : from - room, onCurve(curve, low));
    to = std::max(to + room, onCurve(curve, high));
    axis.range = { offCurve(curve, from), offCurve(curve, to) };
    if (!std::isfinite(axis.range.max))
        axis.range = { low, std::numeric_limits<double>::max() };
    return axis;
}

std::vector<qsizetype> levelHistogram(const std::vector<double>& values, const LevelAxis& axis, int count)
{
    std::vector<qsizetype> steps(static_cast<std::size_t>(std::max(count, 0)));
    if (steps.empty())
        return steps;
    const double low = onCurve(axis.curve, axis.range.min);
    const double span = onCurve(axis.curve, axis.range.max) - low;
    if (!(span > 0.0))
        return steps;
    const double scale = count / span;
    for (const double value : values) {
        const double step = (onCurve(axis.curve, value) - low) * scale;
        // An overflowing range yields NaN steps, which count at the lower end.
        ++steps[static_cast<std::size_t>(step >= 0.0 ? std::min(step, count - 1.0) : 0.0)];
    }
    return steps;
}

LevelHandle handleAt(double share, double lower, double upper, double reach)
{
    const double toLower = std::abs(share - lower);
    const double toUpper = std::abs(share - upper);
    // For equal levels the side of the press decides, so that they can be separated.
    const bool nearerUpper = toUpper < toLower || (toUpper == toLower && share > upper);
    if (std::min(toLower, toUpper) <= reach)
        return nearerUpper ? LevelHandle::Upper : LevelHandle::Lower;
    return share > std::min(lower, upper) && share < std::max(lower, upper) ? LevelHandle::Both : LevelHandle::None;
}

AxisRange draggedLevels(AxisRange levels, const LevelAxis& axis, LevelHandle handle, double delta, double minDistance)
{
    double lower = axis.shareOf(levels.min);
    double upper = axis.shareOf(levels.max);
    if (handle == LevelHandle::None || !std::isfinite(lower) || !std::isfinite(upper) || !std::isfinite(delta))
        return levels;
    if (handle == LevelHandle::Both) {
        const double most = std::max(1.0 - upper, 0.0);
        const double shift = std::clamp(delta, std::min(-lower, 0.0), most);
        return { axis.valueAt(lower + shift), axis.valueAt(upper + shift) };
    }
    if (handle == LevelHandle::Lower) {
        lower = std::clamp(lower + delta, 0.0, std::max(upper - minDistance, 0.0));
        return { axis.valueAt(lower), levels.max };
    }
    upper = std::clamp(upper + delta, std::min(lower + minDistance, 1.0), 1.0);
    return { levels.min, axis.valueAt(upper) };
}

} // namespace tarnis
