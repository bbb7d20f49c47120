// Finds the corner of a plot in which a legend covers the least of the curves. No painter.
#pragma once

#include "tarnis/tools/base/plotcurves_p.h"

#include <QRect>

namespace tarnis {

class PlotMapping;

/// The fraction, from 0 to 1, of the pixel columns of `rect` in which a curve or its line to the next sample passes
/// through it. `rect` is in the frame's coordinates.
double coverageOf(const QRect& rect, const QList<ShownCurve>& curves, const PlotMapping& mapping);

/// The fraction of its columns in which a legend may cover curves.
constexpr double toleratedCoverage = 0.05;

/// True if moving a legend is worth it: it covers more than tolerated now, and at most half as much afterwards.
inline bool isClearlyBetter(double current, double other)
{
    return current > toleratedCoverage && other <= current / 2.0;
}

} // namespace tarnis
