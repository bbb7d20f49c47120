// Texts of a map: the bin under the mouse, the CSV file. Pure functions without a widget.
#pragma once

#include "tarnis/plots/math/bingeometry_p.h"
#include "tarnis/plots/math/binvalues_p.h"

#include <QPoint>
#include <QString>

namespace tarnis {

/// An axis in the read-out.
struct MapAxis {
    BinAxis bins;
    QString name;
    int decimals = 0; ///< 0 shows the lower edge of a bin, any other number its centre
};

/// "name:x name:y i:value" for the bin under a pixel; empty if the pixel is not strictly inside of the graph or the bin
/// is not above 0.
QString readOut(const BinRows& rows, const MapAxis& x, const MapAxis& y, const QPoint& pixel, const QRect& graph);

/// All bins, one line for each row, starting with row 0.
QString csvOfRows(const BinRows& rows);

} // namespace tarnis
