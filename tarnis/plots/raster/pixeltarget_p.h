// The pixels behind a painter, where they may be written past its engine.
#pragma once

#include "tarnis/plots/raster/linerasterizer_p.h"

#include <QPoint>
#include <QRect>

#include <optional>

QT_BEGIN_NAMESPACE
class QImage;
class QPaintEngine;
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// The image of plain colours of 32 bits that a raster engine draws on, also where the painter was opened on a pixmap
/// or a widget; null for any other.
const QImage* plainImageBehind(const QPainter& painter);

/// True if pixels may be written directly (rasterPath()) and a raster engine puts an opaque colour on whole pixels: no
/// antialiasing, opacity or composition mode.
bool coversWholePixels(const QPainter& painter);

/// What an engine draws on, in its pixels: an image, also where the painter was opened on a widget.
QRect deviceRect(const QPaintEngine& engine);

/// What the painter adds to coordinates on their way to the device, if it does no more than shift whole pixels.
std::optional<QPoint> wholePixelOffset(const QPainter& painter);

/// The image that a painter writes to.
struct PixelTarget {
    PixelRows rows;
    QRect device; ///< all of the pixels
    QRect clip; ///< those that the painter may change
    QPoint offset; ///< of the painter's coordinates
};

/// Of a painter that covers whole pixels, shifts by whole pixels and clips to one rectangle, on an image of plain
/// colours of 32 bits; else none.
std::optional<PixelTarget> pixelTargetOf(const QPainter& painter);

} // namespace tarnis
