// Finds the part of a region at a position, and computes how dragging it changes the region. Pure functions.
#pragma once

#include "tarnis/tools/plotregion.h"

#include <optional>

namespace tarnis {

/// A part that can be dragged.
struct RegionHandle {
    enum Part { Body, Left, Right, Bottom, Top, BottomLeft, BottomRight, TopLeft, TopRight, Corner };
    Part part = Body;
    qsizetype corner = 0; ///< corner index of a polygon

    friend bool operator==(const RegionHandle& a, const RegionHandle& b)
    {
        return a.part == b.part && a.corner == b.corner;
    }
};

/// The part at a position; tolerance: reach of edges and corners along both axes. Empty outside.
std::optional<RegionHandle> handleAt(const PlotRegion& region, const QPointF& place, const QPointF& tolerance);

/// The region after a drag of that part from one position to another.
PlotRegion dragged(const PlotRegion& region, const RegionHandle& handle, const QPointF& from, const QPointF& to);

/// Whether a position is inside a polygon by the even-odd rule.
bool isInside(const QList<QPointF>& corners, const QPointF& place);

} // namespace tarnis
