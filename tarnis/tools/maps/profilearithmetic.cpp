#include "tarnis/tools/maps/profilearithmetic_p.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr double rounding = 1e-9; // fraction of a bin

/// An interval of columns.
struct Interval {
    double low = -std::numeric_limits<double>::infinity();
    double high = std::numeric_limits<double>::infinity();
};

/// Clips the interval to low <= offset + slope * column < high.
void cut(Interval& interval, double offset, double slope, double low, double high)
{
    if (slope == 0.0) {
        if (!(offset >= low && offset < high))
            interval.high = -std::numeric_limits<double>::infinity();
        return;
    }
    const double a = (low - offset) / slope;
    const double b = (high - offset) / slope;
    interval.low = std::max(interval.low, std::min(a, b));
    interval.high = std::min(interval.high, std::max(a, b));
}

double joined(ProfileJoin join, double current, double value, int count)
{
    if (count == 0)
        return value;
    return join == ProfileJoin::Maximum ? std::max(current, value) : current + value;
}

bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

} // namespace

ProfileSteps stepsOf(const ProfileBand& band)
{
    ProfileSteps steps;
    const QPointF way = band.to - band.from;
    const double length = std::hypot(way.x(), way.y());
    steps.direction = length > rounding ? way / length : QPointF(1.0, 0.0);
    steps.step = std::abs(steps.direction.x()) + std::abs(steps.direction.y());
    steps.halfWidth = std::max(band.width, steps.step) / 2.0;
    const double count = std::floor(length / steps.step + rounding) + 1.0;
    steps.count = count <= maxProfileSteps ? static_cast<int>(count) : maxProfileSteps + 1; // NaN: no bins have a width
    return steps;
}

Profile profileAlong(const QList<QList<double>>& rows, const ProfileBand& band, ProfileJoin join)
{
    Profile profile;
    if (!isFinite(band.from) || !isFinite(band.to) || !std::isfinite(band.width))
        return profile;
    const ProfileSteps steps = stepsOf(band);
    profile.step = steps.step;
    if (steps.count > maxProfileSteps)
        return profile;
    profile.values = QList<double>(steps.count, std::numeric_limits<double>::quiet_NaN());
    profile.bins = QList<int>(steps.count, 0);
    const QPointF d = steps.direction;
    const double before = steps.step / 2.0 + rounding; // the first step is centred on the start of the band
    const double after = steps.count * steps.step - steps.step / 2.0 - rounding;
    double* const values = profile.values.data();
    int* const bins = profile.bins.data();
    for (qsizetype row = 0; row < rows.size(); ++row) {
        const double y = static_cast<double>(row) + 0.5 - band.from.y();
        const double x0 = 0.5 - band.from.x();
        Interval columns;
        cut(columns, x0 * d.x() + y * d.y(), d.x(), -before, after);
        cut(columns, y * d.x() - x0 * d.y(), -d.y(), -steps.halfWidth - rounding, steps.halfWidth - rounding);
        const auto last = static_cast<double>(rows.at(row).size() - 1);
        // One more column on each side, because the conditions are tested for each bin.
        const double first = std::max(std::floor(columns.low) - 1.0, 0.0);
        const double end = std::min(std::ceil(columns.high) + 1.0, last);
        if (!(first <= end))
            continue;
        for (auto column = static_cast<qsizetype>(first); column <= static_cast<qsizetype>(end); ++column) {
            const double x = static_cast<double>(column) + x0;
            const double along = x * d.x() + y * d.y();
            const double across = y * d.x() - x * d.y();
            const double value = rows.at(row).at(column);
            const bool isInside = along >= -before && along < after && across >= -steps.halfWidth - rounding
                && across < steps.halfWidth - rounding;
            if (!isInside || !std::isfinite(value))
                continue;
            const int step =
                std::clamp(static_cast<int>(std::floor((along + before) / steps.step)), 0, steps.count - 1);
            values[step] = joined(join, values[step], value, bins[step]);
            ++bins[step];
        }
    }
    if (join == ProfileJoin::Mean) {
        for (int i = 0; i < steps.count; ++i)
            values[i] /= bins[i];
    }
    return profile;
}

} // namespace tarnis
