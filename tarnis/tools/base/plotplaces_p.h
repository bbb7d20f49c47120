// Places in a plot that tools set and the user drags: snapping, hits, steps by a bin. Plain values; no widget.
#pragma once

#include "tarnis/plots/plotmapping.h"

#include <QPointF>

namespace tarnis {

/// The position with each coordinate that is inside of the data moved to the middle of its bin.
QPointF snappedToBins(const PlotMapping& mapping, const QPointF& position);

/// The position moved by whole bins. Outside of the data the step is a hundredth of the view.
QPointF movedByBins(const PlotMapping& mapping, const QPointF& position, int columns, int rows);

/// True if the pixel of the widget is within reach of a place: of its upright line, or of the point itself.
bool isHit(const PlotMapping& mapping, const QPointF& place, const QPointF& pixel, bool isLine, double reach = 6.0);

/// Where a place outside of the view is, for an arrow at the border.
enum class PlaceSide { Inside, Left, Right, Above, Below };
PlaceSide sideOf(const PlotMapping& mapping, const QPointF& place, bool isLine);

bool isFinitePlace(const QPointF& place);

} // namespace tarnis
