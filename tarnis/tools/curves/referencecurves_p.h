// Common declarations of the sources of the reference curves.
#pragma once

#include "tarnis/tools/base/plotcurves_p.h"
#include "tarnis/tools/curves/referencearithmetic_p.h"
#include "tarnis/tools/referencecurves.h"

namespace tarnis {

struct TARNIS_NO_EXPORT ReferenceCurves::Reference {
    QString name;
    QString path; // path of the file
    double liveTime = 0.0; // seconds; 0 if unknown
    bool isFrozen = false; // frozen from the plot
    QList<QString> curveNames; // parallel to `curves`
    QList<QList<double>> curves;
};

/// A live curve with its reference.
struct TARNIS_NO_EXPORT ReferenceCurves::Pair {
    int live = 0; // index among the visible curves
    QList<double> reference;
    double norm = 1.0;
    bool isContained = false;
};

/// A compared bin in the strip.
struct TARNIS_NO_EXPORT ReferenceCurves::Point {
    double column = 0.0; // in the frame's coordinates
    ComparedBin bin;
    QColor color;
};

Comparison comparisonOf(ReferenceCurves::View view);

} // namespace tarnis
