// Common declarations of the sources of the reference curves.
#pragma once

#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/curves/referencearithmetic_p.h"
#include "tarnis/tools/referencecurves.h"

#include <QRect>

#include <algorithm>
#include <optional>

namespace tarnis {

struct TARNIS_NO_EXPORT ReferenceCurves::Reference {
    QString name;
    QString path; // path of the file
    double liveTime = 0.0; // seconds; 0 if unknown
    bool isFrozen = false; // frozen from the plot
    bool isContinued = false; // the plot's data have not been cleared since
    QList<QString> curveNames; // parallel to `curves`
    QList<QList<double>> curves;
};

/// A curve of a reference with the live curve that belongs to it.
struct TARNIS_NO_EXPORT ReferenceCurves::Pair {
    int index = 0; // of the reference
    int live = -1; // index among the visible curves; -1 without one
    QList<double> samples; // of the live curve
    QList<double> reference;
    QList<double> values; // compared; empty where they are not
    double norm = 1.0; // above 0
    bool isScaled = true; // as chosen; counts or live times can be missing
    bool isContained = false; // the live counts are those of the reference and later ones
};

/// The axis of the comparison, beside the strip.
struct StripAxis {
    static constexpr int room = 2; // pixels: a point at an end of the axis is beside the frame, not under it

    QRect strip;
    AxisRange range;

    double bottom() const { return strip.bottom() - room; }
    double pixelsPerUnit() const { return std::max(strip.height() - 1 - 2 * room, 1) / (range.max - range.min); }
    double rowOf(double value) const { return limitedCoordinate(bottom() - (value - range.min) * pixelsPerUnit()); }

    /// True if values have the same rows.
    bool isSameAs(const StripAxis& other) const
    {
        return strip.top() == other.strip.top() && strip.bottom() == other.strip.bottom() && range == other.range;
    }
};

/// The row in the strip of each compared value. A zoom in X seldom changes the axis of the strip, and bytes are read in
/// an eighth of the time.
struct StripRows {
    QList<double> values; // shared
    StripAxis axis;
    QList<quint8> rows;
};

/// All pairs, and the visible curves that they were made for.
struct TARNIS_NO_EXPORT ReferenceCurves::Pairs {
    QList<ShownCurve> live;
    QList<Pair> all;
    QList<StripRows> rows; // of pairs that the strip shows
    std::optional<AxisRange> axis; // of the strip so far
};

Comparison comparisonOf(ReferenceCurves::View view);

} // namespace tarnis
