#include "tarnis/tools/maps/profilearithmetic_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

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

bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

/// The part of a bin that is in the band: its area in a step, and in the step after it.
struct BinShare {
    int step = 0;
    double area = 0.0;
    double areaAfter = 0.0;
};

/// Shares of bins in the steps of a band. Places are centres of bins, in bins along the line from the start of the band
/// and across it.
class BinShares {
public:
    BinShares(const ProfileSteps& steps, ProfileJoin join)
        : m_steps(steps)
        , m_corners(cornersOf(steps.direction))
        , m_isWhole(join == ProfileJoin::Maximum || steps.step == 1.0)
    {
    }

    /// How far the centre of a bin with a share may be outside of the band, on each side.
    double reach() const { return m_isWhole ? rounding : m_steps.step / 2.0; }

    BinShare at(double along, double across) const { return m_isWhole ? whole(along, across) : parts(along, across); }

private:
    BinShare whole(double along, double across) const
    {
        const double before = m_steps.step / 2.0 + rounding; // the first step is centred on the start of the band
        const double after = (m_steps.count - 0.5) * m_steps.step - rounding;
        const bool isInside = along >= -before && along < after && across >= -m_steps.halfWidth - rounding
            && across < m_steps.halfWidth - rounding;
        if (!isInside)
            return {};
        const int step = static_cast<int>(std::floor((along + before) / m_steps.step));
        return { std::clamp(step, 0, m_steps.count - 1), 1.0, 0.0 };
    }

    /// A bin is as long as a step, so that it is in two of them.
    BinShare parts(double along, double across) const
    {
        const double half = m_steps.step / 2.0; // of the length and the width of a bin as seen from the line
        const bool isNear = along > -m_steps.step && along < m_steps.count * m_steps.step
            && std::abs(across) < m_steps.halfWidth + half;
        if (!isNear)
            return {};
        BinShare share;
        share.step = static_cast<int>(std::floor(along / m_steps.step));
        const double border = (share.step + 0.5) * m_steps.step - along; // between the steps, from the centre
        if (std::abs(across) <= m_steps.halfWidth - half) {
            share.area = areaBefore(border);
            share.areaAfter = 1.0 - share.area;
            return share;
        }
        // The part of the bin between the borders of the band
        const double upper = m_steps.halfWidth - across;
        const double lower = -m_steps.halfWidth - across;
        share.area = areaBefore(border, upper) - areaBefore(border, lower);
        share.areaAfter = areaBefore(upper) - areaBefore(lower) - share.area;
        return share;
    }

    /// The area of a bin before a line across the band, or below a line along it, at this distance from its centre: the
    /// integral of a trapezoid.
    double areaBefore(double border) const
    {
        const double a = std::abs(m_steps.direction.x());
        const double b = std::abs(m_steps.direction.y());
        const double half = m_steps.step / 2.0; // of the bin's length
        const double fromEdge = std::clamp(half - std::abs(border), 0.0, half);
        const double outside = fromEdge < std::min(a, b) ? fromEdge * fromEdge / (2.0 * a * b)
                                                         : (fromEdge - std::min(a, b) / 2.0) / std::max(a, b);
        return border < 0.0 ? outside : 1.0 - outside;
    }

    /// The area of a bin before one line and below the other: that below its upper edges without that below its lower
    /// ones.
    double areaBefore(double border, double top) const
    {
        const double half = m_steps.step / 2.0;
        if (top >= half)
            return areaBefore(border);
        if (top <= -half)
            return 0.0;
        double area = 0.0;
        for (std::size_t i = 0; i < m_corners.size(); ++i)
            area -= areaBelow(m_corners[i], m_corners[(i + 1) % m_corners.size()], border, top);
        return area;
    }

    /// The integral over x of the edge, or of the top where that is lower, as far as the border; negative backwards.
    static double areaBelow(QPointF from, QPointF to, double border, double top)
    {
        const bool isBackwards = from.x() > to.x();
        if (isBackwards)
            std::swap(from, to);
        if (from.x() >= border)
            return 0.0;
        if (to.x() > border)
            to = from + (to - from) * ((border - from.x()) / (to.x() - from.x()));
        const double low = std::min(from.y(), to.y());
        const double high = std::max(from.y(), to.y());
        double height = top; // mean
        if (high <= top) {
            height = (low + high) / 2.0;
        } else if (low < top) {
            const double share = (top - low) / (high - low); // of the edge below the top
            height = share * (low + top) / 2.0 + (1.0 - share) * top;
        }
        const double area = (to.x() - from.x()) * height;
        return isBackwards ? -area : area;
    }

    /// The corners of a bin around its centre, as seen from the line, counter-clockwise.
    static std::array<QPointF, 4> cornersOf(const QPointF& direction)
    {
        const QPointF d = direction / 2.0;
        return { QPointF(d.x() + d.y(), d.x() - d.y()), QPointF(d.y() - d.x(), d.x() + d.y()),
            QPointF(-d.x() - d.y(), d.y() - d.x()), QPointF(d.x() - d.y(), -d.x() - d.y()) };
    }

    const ProfileSteps m_steps;
    const std::array<QPointF, 4> m_corners;
    const bool m_isWhole; // a bin belongs to the step of its centre
};

/// Adds a bin to a step of the profile.
void add(Profile& profile, ProfileJoin join, int step, double value, double area)
{
    if (area <= rounding || step < 0 || step >= profile.values.size())
        return;
    double& current = profile.values[step];
    if (profile.areas[step] == 0.0)
        current = value * area;
    else
        current = join == ProfileJoin::Maximum ? std::max(current, value) : current + value * area;
    profile.areas[step] += area;
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
    profile.areas = QList<double>(steps.count, 0.0);
    const BinShares shares(steps, join);
    const QPointF d = steps.direction;
    for (qsizetype row = 0; row < rows.size(); ++row) {
        const double y = static_cast<double>(row) + 0.5 - band.from.y();
        const double x0 = 0.5 - band.from.x();
        const double width = steps.halfWidth + shares.reach();
        Interval columns;
        cut(columns, x0 * d.x() + y * d.y(), d.x(), -steps.step / 2.0 - shares.reach(),
            (steps.count - 0.5) * steps.step + shares.reach());
        cut(columns, y * d.x() - x0 * d.y(), -d.y(), -width, width);
        const auto last = static_cast<double>(rows.at(row).size() - 1);
        // One more column on each side, because the conditions are tested for each bin.
        const double first = std::max(std::floor(columns.low) - 1.0, 0.0);
        const double end = std::min(std::ceil(columns.high) + 1.0, last);
        if (!(first <= end))
            continue;
        for (auto column = static_cast<qsizetype>(first); column <= static_cast<qsizetype>(end); ++column) {
            const double value = rows.at(row).at(column);
            if (!std::isfinite(value))
                continue;
            const double x = static_cast<double>(column) + x0;
            const BinShare share = shares.at(x * d.x() + y * d.y(), y * d.x() - x * d.y());
            add(profile, join, share.step, value, share.area);
            add(profile, join, share.step + 1, value, share.areaAfter);
        }
    }
    if (join == ProfileJoin::Mean) {
        for (int i = 0; i < steps.count; ++i)
            profile.values[i] /= profile.areas[i];
    }
    return profile;
}

} // namespace tarnis
