// The boxes in the corners of a plot, which texts of other tools avoid.
#pragma once

#include <QList>
#include <QRect>

class XYGraphWidget;

namespace tarnis {

/// The boxes of a plot's legend and of its held axes, which are above other texts. Their tools repaint all overlays
/// when they move.
QList<QRect> cornerBoxes(const XYGraphWidget& plot);

} // namespace tarnis
