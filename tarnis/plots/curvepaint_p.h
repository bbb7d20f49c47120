// Curves drawn with a painter's pen.
#pragma once

#include "tarnis/plots/math/curvelines_p.h"

#include <optional>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace tarnis {

/// What a painter lets be drawn together with its pen: nothing unless it covers whole pixels with an opaque colour on a
/// raster device.
Merging mergingOn(const QPainter& painter);

/// Draws the lines with the painter's pen, each as QPainter::drawLine() does.
void paintLines(QPainter& painter, const QList<QLine>& lines);

/// How and where a curve is drawn.
struct CurveDrawing {
    bool columnChart = false; ///< wins over joined
    bool joined = true; ///< else crosses
    double first = 0.0; ///< fractional indices in view
    double last = 0.0;
    SampleScale x;
    std::optional<FunctionScale> plotX; ///< takes the place of x, and of first and last
    ValueScale y;
    ColumnShape shape;

    /// The samples that are visited, of `count`.
    SampleRange visited(qsizetype count) const;
};

/// Draws the samples of `range`, which `samples` holds. A column chart sets the brush to the pen's colour.
void paintCurve(QPainter& painter, const SampleRun& samples, SampleRange range, const CurveDrawing& drawing);

} // namespace tarnis
