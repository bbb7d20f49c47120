// The curve of a fitted peak as the 1D plots draw it.
#pragma once

#include "tarnis/peak/peaksearch.h"
#include "tarnis/plots/math/axisticks_p.h"

#include <QLine>
#include <QList>

namespace tarnis {

/// The scales for drawing a peak's curve. The row is linear in the value, also on a log axis.
struct PeakScale {
    double minX = 0.0;
    double pixelsPerX = 0.0;
    int x0 = 0; ///< column of minX
    double minY = 0.0;
    double pixelsPerY = 0.0;
    int y0 = 0; ///< row of minY
};

/// Part of the X axis, a half-open range.
struct PeakExtent {
    double start = 0.0;
    double stop = 0.0;
};

/// The part of `visible`, an ascending range, that is within 1.5 times the full width at half maximum of the centre;
/// empty if stop is not above start.
PeakExtent peakExtent(const PeakSearch::Gaussian& peak, AxisRange visible);

/// Lines between the points of the curve at start, start + step and so on below stop. They end at a step that does not
/// change x.
QList<QLine> peakLines(const PeakSearch::Gaussian& peak, PeakExtent extent, double step, const PeakScale& scale);

} // namespace tarnis
