#include "tarnis/tools/regions/regionhit_p.h"

#include <cmath>

namespace tarnis {

namespace {

bool isNear(double a, double b, double tolerance)
{
    return std::fabs(a - b) <= tolerance;
}

/// The part of a box along one axis: -1 lower end, 1 upper end, 0 between, empty outside.
std::optional<int> sideAt(double lower, double upper, double place, double tolerance)
{
    // In a narrow region the nearer end is used, so that both can be dragged.
    const bool isLower = isNear(place, lower, tolerance);
    const bool isUpper = isNear(place, upper, tolerance);
    if (isLower && isUpper)
        return place - lower < upper - place ? -1 : 1;
    if (isLower)
        return -1;
    if (isUpper)
        return 1;
    return place > lower && place < upper ? std::optional<int>(0) : std::nullopt;
}

RegionHandle::Part partOf(int x, int y)
{
    using H = RegionHandle;
    constexpr H::Part parts[3][3] = { { H::BottomLeft, H::Bottom, H::BottomRight }, { H::Left, H::Body, H::Right },
        { H::TopLeft, H::Top, H::TopRight } };
    return parts[y + 1][x + 1];
}

bool movesLeft(RegionHandle::Part part)
{
    return part == RegionHandle::Left || part == RegionHandle::BottomLeft || part == RegionHandle::TopLeft;
}

bool movesRight(RegionHandle::Part part)
{
    return part == RegionHandle::Right || part == RegionHandle::BottomRight || part == RegionHandle::TopRight;
}

bool movesBottom(RegionHandle::Part part)
{
    return part == RegionHandle::Bottom || part == RegionHandle::BottomLeft || part == RegionHandle::BottomRight;
}

bool movesTop(RegionHandle::Part part)
{
    return part == RegionHandle::Top || part == RegionHandle::TopLeft || part == RegionHandle::TopRight;
}

} // namespace

bool isInside(const QList<QPointF>& corners, const QPointF& place)
{
    bool inside = false;
    for (qsizetype i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
        const QPointF& a = corners.at(i);
        const QPointF& b = corners.at(j);
        if ((a.y() > place.y()) != (b.y() > place.y())
            && place.x() < (b.x() - a.x()) * (place.y() - a.y()) / (b.y() - a.y()) + a.x())
            inside = !inside;
    }
    return inside;
}

std::optional<RegionHandle> handleAt(const PlotRegion& region, const QPointF& place, const QPointF& tolerance)
{
    if (!region.isValid())
        return std::nullopt;
    if (region.kind == PlotRegion::Kind::Polygon) {
        for (qsizetype i = 0; i < region.points.size(); ++i) {
            if (isNear(place.x(), region.points.at(i).x(), tolerance.x())
                && isNear(place.y(), region.points.at(i).y(), tolerance.y()))
                return RegionHandle { RegionHandle::Corner, i };
        }
        return isInside(region.points, place) ? std::optional(RegionHandle {}) : std::nullopt;
    }
    const QRectF box = region.bounds();
    std::optional<int> x = 0;
    std::optional<int> y = 0;
    if (region.kind != PlotRegion::Kind::RangeY)
        x = sideAt(box.left(), box.right(), place.x(), tolerance.x());
    if (region.kind != PlotRegion::Kind::RangeX)
        y = sideAt(box.top(), box.bottom(), place.y(), tolerance.y()); // QRectF's top is the smaller y
    if (!x || !y)
        return std::nullopt;
    return RegionHandle { partOf(*x, *y), 0 };
}

PlotRegion dragged(const PlotRegion& region, const RegionHandle& handle, const QPointF& from, const QPointF& to)
{
    PlotRegion result = region;
    const QPointF by = to - from;
    if (handle.part == RegionHandle::Body) {
        result.translate(by);
        return result;
    }
    if (handle.part == RegionHandle::Corner) {
        if (handle.corner < result.points.size())
            result.points[handle.corner] += by;
        return result;
    }
    const QRectF box = region.bounds();
    QPointF low = box.topLeft();
    QPointF high = box.bottomRight();
    if (movesLeft(handle.part))
        low.rx() += by.x();
    if (movesRight(handle.part))
        high.rx() += by.x();
    if (movesBottom(handle.part))
        low.ry() += by.y();
    if (movesTop(handle.part))
        high.ry() += by.y();
    result.points = { low, high };
    return result;
}

} // namespace tarnis
