// The read-out under the mouse in the tool tip of the multi-vector plot.
#pragma once

#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/seriesgrouping_p.h"

#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

namespace tarnis {

/// The X axis for the read-out.
struct ReadOutAxis {
    AxisRange visible;
    AxisRange initial;
    bool decimals = false; ///< the middle of a bin is shown instead of its lower end
    double resolution = 1.0;
    double (*plotX)(double, void*) = nullptr; ///< position to plot X value, or null
    double (*position)(double, void*) = nullptr; ///< plot X value to position, or null
    double (*named)(double, void*) = nullptr; ///< plot X value to the scale that the axis names, or null
    void* namedData = nullptr; ///< its second argument
};

/// Index of the sample at plot X value `x`, within 0..count - 1. `count` is at least 1.
int sampleAt(double x, const ReadOutAxis& axis, qsizetype count);

/// The displayed X value of a sample.
double shownX(int index, const ReadOutAxis& axis, qsizetype count);

/// Sum of the samples with this index in all enabled series that are long enough.
double sumAt(const QList<Series>& series, int index);

/// The enabled, sufficiently long series whose sample is closest to `y` and nearer than `reach`; of equal ones the
/// first.
std::optional<int> seriesNearest(const QList<Series>& series, int index, double y, double reach);

/// Terms of the read-out.
struct ReadOutNames {
    QString x;
    QString group;
    int firstNumber = 0;
};

/// The text for a pixel strictly inside the graph; empty outside, without samples in the first series, and if no series
/// is near. `summed` shows one sum instead of the nearest series.
QString readOut(const QList<Series>& series, QPoint pixel, const QRect& graph, const ReadOutAxis& axis, AxisRange y,
    bool summed, const ReadOutNames& names);

} // namespace tarnis
