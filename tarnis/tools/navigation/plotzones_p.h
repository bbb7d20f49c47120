// The part of a plot under the pointer.
#pragma once

#include <QPointF>

class XYGraphWidget;

namespace tarnis {

class PlotMapping;

enum class PlotZone {
    Outside,
    Plot, ///< inside the plot rectangle
    AxisX, ///< the strip with the labels of X
    AxisY, ///< the strip with the labels of Y
    ColourBar ///< the colour bar of a map, with the histogram beside it
};

/// The part under a position in the widget.
PlotZone zoneAt(const XYGraphWidget& plot, const PlotMapping& mapping, const QPointF& position);

/// True on one of the labels at the ends of an axis, which open an editor.
bool isOnEndLabel(const XYGraphWidget& plot, const QPoint& position);

} // namespace tarnis
