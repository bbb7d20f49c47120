// Curves drawn with a painter's pen.
#pragma once

#include "tarnis/plots/math/curvelines_p.h"

#include <optional>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// What may be merged when drawing with the painter's pen: nothing unless the pen covers whole pixels with an opaque
/// colour on a raster device.
Merging mergingOn(const QPainter& painter);

/// Draws the lines with the painter's pen, each as QPainter::drawLine() does; where the painter scales, in whole pixels
/// of the device.
void paintLines(QPainter& painter, const QList<QLine>& lines);

/// How and where a curve is drawn.
struct CurveDrawing {
    bool columnChart = false; ///< overrides joined
    bool joined = true; ///< else crosses
    double first = 0.0; ///< visible range as fractional indices
    double last = 0.0;
    SampleScale x;
    std::optional<FunctionScale> plotX; ///< replaces x, and first and last
    ValueScale y;
    ColumnShape shape;

    /// The samples to draw, of `count`.
    SampleRange visited(qsizetype count) const;
};

/// Draws the samples of `range`, which `samples` must contain. A column chart sets the brush to the pen's colour.
void paintCurve(QPainter& painter, const SampleRun& samples, SampleRange range, const CurveDrawing& drawing);

} // namespace tarnis
