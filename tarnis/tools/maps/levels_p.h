// Arithmetic of colour levels: quantiles and a histogram of a map's bins, and the scale on which levels are dragged.
// Pure functions without a widget.
#pragma once

#include "tarnis/plots/axisrange.h"
#include "tarnis/plots/raster/colourscale_p.h"

#include <QList>

#include <vector>

namespace tarnis {

/// The painted bins of a map, which are the finite non-zero ones, in no particular order.
std::vector<double> paintedBins(const QList<QList<double>>& rows);

/// The `lower` and `upper` percentiles by nearest rank; 0 to 0 without values. The percentages are limited to 0 to 100
/// and sorted. Reorders the values.
AxisRange percentileLevels(std::vector<double>& values, double lower, double upper);

/// The levels, from or to 0 if they are equal: a map on which nearly every bin has one count would have a single
/// colour.
AxisRange distinctLevels(AxisRange levels);

/// An axis of values transformed by the curve of a colour scale.
struct LevelAxis {
    AxisRange range; ///< ascending
    ScaleCurve curve = ScaleCurve::Linear;

    /// 0 at the lower end of the range, 1 at the upper one. Values beyond the ends are not limited.
    double shareOf(double value) const;
    /// The inverse.
    double valueAt(double share) const;
};

/// An axis that includes all values with a margin, and both levels. The margin of values that are not negative ends at
/// 0. On a logarithmic curve values at or below 0 do not count.
LevelAxis levelAxis(const std::vector<double>& values, AxisRange levels, ScaleCurve curve);

/// The number of values in each of `count` equal steps of the axis.
std::vector<qsizetype> levelHistogram(const std::vector<double>& values, const LevelAxis& axis, int count);

/// The level that a drag moves.
enum class LevelHandle { None, Lower, Upper, Both };

/// The handle for a press at `share`, with levels at shares; the nearest one within `reach`, else Both between them.
LevelHandle handleAt(double share, double lower, double upper, double reach);

/// The levels after a drag by `delta` in shares. The levels keep their order and a distance of at least `minDistance`,
/// and stay on the axis.
AxisRange draggedLevels(AxisRange levels, const LevelAxis& axis, LevelHandle handle, double delta, double minDistance);

} // namespace tarnis
