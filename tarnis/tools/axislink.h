// Plots whose axes show the same range.
#pragma once

#include <tarnis/plots/axisrange.h>
#include <tarnis/tarnis_export.h>

#include <QObject>
#include <Qt>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A group of axes that share one range. An axis is one of a plot: also the Y axis of a map and the X axis of a curve
/// can be in one group, where both count the same quantity. Two groups link both axes of plots.
///
/// When the user or the host changes the range of one axis, all others show it, and their automatic scaling ends. When
/// automatic scaling of one axis is switched on, it is switched on for all, and each follows its own data until the
/// next change. Data never travel through the group. Each plot is repainted once for all changes since its last paint,
/// and hidden plots are not painted. Ranges are equal to the bit.
///
/// The group does not own the plots. A plot that is destroyed leaves it. GUI thread only.
class TARNIS_EXPORT AxisLink : public QObject {
    Q_OBJECT

public:
    /// A group without axes.
    explicit AxisLink(QObject* parent = nullptr);
    ~AxisLink() override; ///< the plots keep their ranges

    /// Adds an axis, which takes the range of the group, also the automatic scaling of an automatic one; the first one
    /// gives it. An axis that is in the group already, and null, change nothing; null is reported as a warning.
    void add(XYGraphWidget* plot, Qt::Orientation axis);
    /// Takes an axis out, which keeps its range. Unknown axes change nothing.
    void remove(XYGraphWidget* plot, Qt::Orientation axis);
    bool contains(const XYGraphWidget* plot, Qt::Orientation axis) const; ///< whether the axis is in the group
    qsizetype count() const; ///< number of axes

Q_SIGNALS:
    /// The group shows another range, after all plots have it. Not emitted for automatic scaling.
    void rangeChanged(double min, double max);

private:
    class Member;
    friend class Member;
    TARNIS_NO_EXPORT void follow(const Member& source);
    TARNIS_NO_EXPORT Member* find(const XYGraphWidget* plot, Qt::Orientation axis) const;
    TARNIS_NO_EXPORT void dropDestroyed();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace tarnis
