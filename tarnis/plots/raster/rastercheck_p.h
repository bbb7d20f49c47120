// Checks that directly written pixels are those that QPainter would draw.
#pragma once

#include "tarnis/plots/rasterpath.h"

#include <QByteArray>

#include <functional>

QT_BEGIN_NAMESPACE
class QImage;
QT_END_NAMESPACE

namespace tarnis {

/// Draws the reference pattern on an image of 32 bits: bins as bars and as lines, some clipped by the left edge, and
/// lines of all slopes.
using ReferenceDrawing = std::function<void(QImage&)>;

/// Draws the pattern with the composed map and the line rasteriser.
void drawReferenceDirectly(QImage& image);
/// Draws the pattern with one drawing call for each bin and line.
void drawReferenceByPainter(QImage& image);

/// True if `direct` draws the same pixels as drawReferenceByPainter().
bool referencePatternsMatch(const ReferenceDrawing& direct);

/// The path for a value of TARNIS_RASTER and the result of the check. `match` is called only if needed.
RasterPath chooseRasterPath(const QByteArray& wish, const std::function<bool()>& match);

} // namespace tarnis
