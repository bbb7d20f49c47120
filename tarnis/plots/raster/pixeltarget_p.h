// Direct access to the pixels of a painter's device, bypassing its engine.
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

/// The plain 32-bit image that a raster engine draws on, also if the painter was opened on a pixmap or a widget; else
/// null.
const QImage* plainImageBehind(const QPainter& painter);

/// True if the raster engine sets whole pixels to an opaque colour: no antialiasing, opacity or composition mode.
bool drawsWholePixels(const QPainter& painter);

/// True if drawsWholePixels() is, and pixels may be written directly (rasterPath()).
bool coversWholePixels(const QPainter& painter);

/// The rectangle of an engine's device in pixels: an image, also if the painter was opened on a widget.
QRect deviceRect(const QPaintEngine& engine);

/// The offset from painter to device coordinates, if the painter only shifts by whole pixels.
std::optional<QPoint> wholePixelOffset(const QPainter& painter);

/// The image that a painter writes to.
struct PixelTarget {
    PixelRows rows;
    QRect device; ///< all pixels
    QRect clip; ///< those that the painter may change
    QPoint offset; ///< offset of the painter's coordinates
};

/// The target of a painter that covers whole pixels, shifts by whole pixels and clips to one rectangle, on a plain
/// 32-bit image; else empty.
std::optional<PixelTarget> pixelTargetOf(const QPainter& painter);

} // namespace tarnis
