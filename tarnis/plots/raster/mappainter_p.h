// Paints the bins of a map.
#pragma once

#include "tarnis/plots/math/binvalues_p.h"
#include "tarnis/plots/raster/mapcompositor_p.h"

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// Paints with one drawing call for each non-empty bin, rows and columns in ascending order; of the bins of a row that
/// begin at the same pixel only the first is drawn. Leaves pen and brush changed.
void paintBinsOneByOne(QPainter& painter, const BinGeometry& view, const BinRows& rows, const ColourScale& scale);

/// Paints the same picture faster: composed in memory if the painter draws whole pixels on a raster device, clipped to
/// the plot rectangle; otherwise bin by bin. Keeps its buffers between calls.
class MapPainter {
public:
    /// Leaves pen and brush unspecified.
    void paint(QPainter& painter, const BinGeometry& view, const BinRows& rows, const ColourScale& scale);

private:
    BinColouring m_converter;
    BinRaster m_raster;
};

} // namespace tarnis
