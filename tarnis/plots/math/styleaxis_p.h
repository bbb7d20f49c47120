// Arithmetic of a styled axis: round ticks and their labels, and ranges that follow the data with hysteresis. Pure
// functions.
#pragma once

#include "tarnis/plots/axisrange.h"

#include <QList>
#include <QString>

namespace tarnis {

/// Positions on an axis, ascending, inside the range.
struct TickPlan {
    QList<double> major; ///< ticks with a label
    QList<double> minor; ///< without
    double step = 0.0; ///< between major ticks; 0 on a logarithmic axis
};

/// The smallest of 1, 2, 5 times a power of ten that is not below `value`; `value` must be above 0.
double roundStepFrom(double value);

/// At most about `maxTicks` major ticks (at least 1) at round values, with a step of at least `smallestStep`. Empty for
/// a range that is empty, not finite, or too narrow for a double.
TickPlan linearPlan(AxisRange range, int maxTicks, double smallestStep);

/// Powers of ten, with 2 and 5 between them if there are few. Within one decade, as linearPlan(). Ends at or below 0
/// count as 1.
TickPlan decadePlan(AxisRange range, int maxTicks);

/// How numbers with many digits are written.
enum class LargeNumbers {
    Prefixes, ///< 1.5M
    Powers ///< 1.5×10⁶
};

/// A label; an exponent is drawn as superscript after the text.
struct AxisLabel {
    QString text;
    QString exponent;

    /// The label on one line.
    QString plain() const;
};

/// Labels of the major ticks, with as many decimals as the step needs. From 100 000 on, and below 0.001, all labels of
/// an axis share one prefix or one power of ten. Where no prefix is known, they have a power of ten in both forms.
QList<AxisLabel> axisLabels(const TickPlan& plan, LargeNumbers form);
/// Labels of a logarithmic axis: 1, 10, 100 or, beyond 10 000 and below 0.001, powers of ten.
QList<AxisLabel> decadeLabels(const TickPlan& plan, LargeNumbers form);

/// The range of an axis that shows values from `data.min` to `data.max`: includes 0, with 5 to 10 % of space beyond the
/// extremes and round ends. 0 to 1 without values (both 0, or not finite).
AxisRange roomyRange(AxisRange data);
/// As above, on a logarithmic axis, for the smallest value above 0 and the largest. Counts begin at 0.5, so that a
/// single count is visible, or at a power of ten. 0.5 to 10 if no value is above 0.
AxisRange roomyDecades(AxisRange data);

/// `shown` if the data are within it and fill at least three quarters of it, else the roomy range.
/// @{
AxisRange calmRange(AxisRange shown, AxisRange data);
AxisRange calmDecades(AxisRange shown, AxisRange data);
/// @}

/// `kept` if `needed` fits and is not smaller by more than `slack`, else `needed`: for space that follows labels.
int calmLength(int kept, int needed, int slack);

/// The unit in a name such as "Energy [keV]" or "Energy (keV)"; empty without one.
QString unitIn(const QString& name);
/// The name with its unit, unless it already contains a unit or the unit is empty.
QString withUnit(const QString& name, const QString& unit);

} // namespace tarnis
