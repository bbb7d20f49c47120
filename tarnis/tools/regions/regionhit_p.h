// What part of a region is under a place, and how a drag of it changes the region. Pure.
#pragma once

#include "tarnis/tools/plotregion.h"

#include <optional>

namespace tarnis {

/// A part that can be dragged.
struct RegionHandle {
    enum Part { Body, Left, Right, Bottom, Top, BottomLeft, BottomRight, TopLeft, TopRight, Corner };
    Part part = Body;
    qsizetype corner = 0; ///< of a polygon

    friend bool operator==(const RegionHandle& a, const RegionHandle& b)
    {
        return a.part == b.part && a.corner == b.corner;
    }
};

/// The part at a place; tolerance: reach of edges and corners along both axes. Nothing outside.
std::optional<RegionHandle> handleAt(const PlotRegion& region, const QPointF& place, const QPointF& tolerance);

/// The region after a drag of that part from one place to another.
PlotRegion dragged(const PlotRegion& region, const RegionHandle& handle, const QPointF& from, const QPointF& to);

/// Whether a place is inside a polygon by the even-odd rule.
bool isInside(const QList<QPointF>& corners, const QPointF& place);

} // namespace tarnis
