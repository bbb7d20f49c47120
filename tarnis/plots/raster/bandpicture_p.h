// The rubber band of a plot with tools.
#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QRubberBand;
QT_END_NAMESPACE

namespace tarnis {

/// Paints a rectangular rubber band in its style, as QRubberBand does. The edges and the inside come from a small band
/// where the style allows it: a raster painter distributes the rows of a large translucent shape to threads, which
/// takes longer than all of its pixels. Colours can differ by 3 of 255, by rounding.
void paintRubberBand(QRubberBand& band);

} // namespace tarnis
