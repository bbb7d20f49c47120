// Common declarations of the sources of the reference curves.
#pragma once

#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/base/plotlabel_p.h"
#include "tarnis/tools/curves/referencearithmetic_p.h"
#include "tarnis/tools/referencecurves.h"

#include <QRect>

namespace tarnis {

struct TARNIS_NO_EXPORT ReferenceCurves::Reference {
    QString name;
    QString path; // path of the file
    double liveTime = 0.0; // seconds; 0 if unknown
    bool isFrozen = false; // frozen from the plot
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
    bool isContained = false; // the live counts are those of the reference and later ones
};

/// All pairs, and the visible curves that they were made for.
struct TARNIS_NO_EXPORT ReferenceCurves::Pairs {
    QList<ShownCurve> live;
    QList<Pair> all;
};

/// The axis of the comparison, beside the strip.
struct StripAxis {
    QRect strip;
    AxisRange range;

    double pixelsPerUnit() const { return strip.height() / (range.max - range.min); }
    double rowOf(double value) const
    {
        return limitedCoordinate(strip.bottom() - (value - range.min) * pixelsPerUnit());
    }
};

Comparison comparisonOf(ReferenceCurves::View view);

} // namespace tarnis
