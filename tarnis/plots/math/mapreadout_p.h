// The text of the bin under the mouse. Values in, text out; no widget.
#pragma once

#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"

#include <QPoint>
#include <QString>

namespace tarnis {

/// An axis as the read-out shows it.
struct MapAxis {
    BinAxis bins;
    QString name;
    int decimals = 0; ///< 0 shows the lower edge of a bin, any other number its centre
};

/// "name:x name:y i:value" for the bin under a pixel; empty if the pixel is not strictly inside of the graph or the bin
/// is not above 0.
QString readOut(const BinRows& rows, const MapAxis& x, const MapAxis& y, const QPoint& pixel, const QRect& graph);

} // namespace tarnis
