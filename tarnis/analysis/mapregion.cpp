// The bins of a region of a map.
#include "tarnis/analysis/mapregion.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::MapRegion", text);
}

// First bin whose centre is at or above `limit`, clipped to [0, count].
int firstFrom(double limit, double firstCentre, double width, int count)
{
    const double bin = std::ceil((limit - firstCentre) / width);
    if (std::isnan(bin))
        return count;
    return static_cast<int>(std::clamp(bin, 0.0, static_cast<double>(count)));
}

bool evenOdd(std::span<const QPointF> corners, double x, double y)
{
    bool inside = false;
    for (std::size_t i = 0, j = corners.size() - 1; i < corners.size(); j = i++) {
        const QPointF& a = corners[i];
        const QPointF& b = corners[j];
        if ((a.y() > y) != (b.y() > y) && x < a.x() + (b.x() - a.x()) * (y - a.y()) / (b.y() - a.y()))
            inside = !inside;
    }
    return inside;
}

} // namespace

QString MapData::fault() const
{
    if (columns < 1 || rows < 1)
        return sentence(QT_TRANSLATE_NOOP("tarnis::MapRegion", "The map has no bins."));
    if (contents.size() != static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows))
        return sentence(QT_TRANSLATE_NOOP("tarnis::MapRegion", "The map needs one content for each bin."));
    if (!std::isfinite(firstX) || !std::isfinite(firstY) || !(widthX > 0.0) || !(widthY > 0.0) || std::isinf(widthX)
        || std::isinf(widthY))
        return sentence(QT_TRANSLATE_NOOP(
            "tarnis::MapRegion", "The axes of the map need a finite start and a positive bin width."));
    return {};
}

// `fill` stores only the bounding box of the bins inside.
template <typename Inside> MapRegion MapRegion::fill(const MapData& map, Inside inside)
{
    MapRegion region;
    if (!map.fault().isEmpty())
        return region;
    region.m_left = map.columns;
    region.m_top = map.rows;
    for (int row = 0; row < map.rows; ++row) {
        for (int column = 0; column < map.columns; ++column) {
            if (!inside(column, row))
                continue;
            region.m_left = std::min(region.m_left, column);
            region.m_right = std::max(region.m_right, column);
            region.m_top = std::min(region.m_top, row);
            region.m_bottom = row;
        }
    }
    if (region.m_right < 0)
        return {};
    const int width = region.m_right - region.m_left + 1;
    region.m_inside.reserve(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(region.m_bottom - region.m_top + 1));
    for (int row = region.m_top; row <= region.m_bottom; ++row) {
        for (int column = region.m_left; column <= region.m_right; ++column) {
            const bool is = inside(column, row);
            region.m_inside.push_back(is ? 1 : 0);
            region.m_count += is ? 1 : 0;
        }
    }
    return region;
}

MapRegion MapRegion::bins(const MapData& map, int x0, int x1, int y0, int y1)
{
    MapRegion region;
    region.m_left = std::max(0, x0);
    region.m_right = std::min(map.columns - 1, x1);
    region.m_top = std::max(0, y0);
    region.m_bottom = std::min(map.rows - 1, y1);
    if (region.m_right < region.m_left || region.m_bottom < region.m_top)
        return {};
    region.m_count = (region.m_right - region.m_left + 1) * (region.m_bottom - region.m_top + 1);
    region.m_inside.assign(static_cast<std::size_t>(region.m_count), 1);
    return region;
}

MapRegion MapRegion::rectangle(const MapData& map, double x0, double x1, double y0, double y1)
{
    if (!map.fault().isEmpty())
        return {};
    return bins(map, firstFrom(x0, map.firstX, map.widthX, map.columns),
        firstFrom(x1, map.firstX, map.widthX, map.columns) - 1, firstFrom(y0, map.firstY, map.widthY, map.rows),
        firstFrom(y1, map.firstY, map.widthY, map.rows) - 1);
}

MapRegion MapRegion::ellipse(const MapData& map, double x, double y, double halfWidth, double halfHeight, double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return fill(map, [&](int column, int row) {
        const double dx = map.x(column) - x;
        const double dy = map.y(row) - y;
        const double u = (c * dx + s * dy) / halfWidth;
        const double v = (c * dy - s * dx) / halfHeight;
        return u * u + v * v < 1.0;
    });
}

MapRegion MapRegion::polygon(const MapData& map, std::span<const QPointF> corners)
{
    if (corners.size() < 3)
        return {};
    return fill(map, [&](int column, int row) { return evenOdd(corners, map.x(column), map.y(row)); });
}

bool MapRegion::contains(int column, int row) const
{
    if (column < m_left || column > m_right || row < m_top || row > m_bottom)
        return false;
    const auto index = static_cast<std::size_t>(row - m_top) * static_cast<std::size_t>(m_right - m_left + 1)
        + static_cast<std::size_t>(column - m_left);
    return m_inside[index] != 0;
}

} // namespace tarnis
