// Positions in a plot that tools set and the user drags: snapping, hit tests, steps by a bin. Pure functions without a
// widget.
#pragma once

#include "tarnis/plots/plotmapping.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QPoint>
#include <QPointF>

#include <optional>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace tarnis {

/// Moves each coordinate that is inside of the data to the middle of its bin.
QPointF snappedToBins(const PlotMapping& mapping, const QPointF& position);

/// Moves the position by bins. Outside of the data the step is a hundredth of the view.
QPointF movedByBins(const PlotMapping& mapping, const QPointF& position, int columns, int rows);

/// The bins, to the right and up, by which a key moves a position: 1 for an arrow with Ctrl, 10 with Shift too. (0, 0)
/// for any other key.
QPoint binsOfKey(const QKeyEvent& event);

/// True if the widget pixel is near a position: near its vertical line, or near the point itself.
bool isHit(const PlotMapping& mapping, const QPointF& place, const QPointF& pixel, bool isLine, double reach = 6.0);

/// The side of a position outside of the view, for an arrow at the border.
enum class PlaceSide { Inside, Left, Right, Above, Below };
PlaceSide sideOf(const PlotMapping& mapping, const QPointF& place, bool isLine);

bool isFinitePlace(const QPointF& place);

/// True if the pixel of the widget is in the plot rectangle of a mapping that is valid.
bool isOverPlot(const PlotMapping& mapping, const QPointF& pixel);

/// The nearest pixel of the plot rectangle: a drag that leaves the plot goes on along its border.
QPointF pixelInPlot(const PlotMapping& mapping, const QPointF& pixel);

/// Two places of a stored view, as [x, y, x, y]. Nothing if there are not four finite numbers. @{
struct PlacePair {
    QPointF from;
    QPointF to;
};
QJsonArray placesToJson(const PlacePair& places);
std::optional<PlacePair> placesFromJson(const QJsonValue& value);
/// @}

} // namespace tarnis
