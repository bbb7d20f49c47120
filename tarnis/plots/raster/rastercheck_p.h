// Whether the pixels that are written past QPainter are those that it would draw.
#pragma once

#include "tarnis/plots/rasterpath.h"

#include <QByteArray>

#include <functional>

QT_BEGIN_NAMESPACE
class QImage;
QT_END_NAMESPACE

namespace tarnis {

/// Draws the reference pattern on an image of 32 bits: bins as bars and as lines, some cut by the left edge, and lines
/// of all slopes.
using ReferenceDrawing = std::function<void(QImage&)>;

/// The pattern by the composed map and the line rasteriser.
void drawReferenceDirectly(QImage& image);
/// The pattern by one drawing call for each bin and line.
void drawReferenceByPainter(QImage& image);

/// True if `direct` draws the same pixels as drawReferenceByPainter().
bool referencePatternsMatch(const ReferenceDrawing& direct);

/// The path that a value of TARNIS_RASTER and the result of the check lead to. `match` is asked only if need be.
RasterPath chooseRasterPath(const QByteArray& wish, const std::function<bool()>& match);

} // namespace tarnis
