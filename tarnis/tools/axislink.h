// Links axes of plots, so that they show the same range.
#pragma once

#include <tarnis/plots/axisrange.h>
#include <tarnis/tarnis_export.h>

#include <QObject>
#include <Qt>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A group of axes that share one range. The members can be different axes, for example the Y axis of a map and the X
/// axis of a curve, if both have the same quantity. Use two groups to link both axes of plots.
///
/// When the user or the host changes the range of one axis, all others show this range, and their automatic scaling
/// ends. When automatic scaling of one axis is switched on, it is switched on for all, and each follows its own data
/// until the next change. The group only passes on ranges, never data. Each plot is repainted once for all changes
/// since its last paint, and hidden plots are not painted. Ranges are exactly equal. Of changes of several plots in one
/// pass of the event loop, the last one remains.
///
/// The cross of a PlotCrosshair of one member appears as a line in the others whose crosshair is on, at its position on
/// the shared axis. Of several crosses, the one that moved last is shown. Nothing but these lines is repainted.
///
/// The group does not own the plots. A destroyed plot is removed from it. GUI thread only.
class TARNIS_EXPORT AxisLink : public QObject {
    Q_OBJECT

public:
    /// An empty group.
    explicit AxisLink(QObject* parent = nullptr);
    ~AxisLink() override; ///< the plots keep their ranges

    /// Adds an axis, which adopts the range or automatic scaling of the group; the first axis defines them. An axis
    /// that is already in the group is ignored. Null is ignored with a warning.
    void add(XYGraphWidget* plot, Qt::Orientation axis);
    /// Removes an axis, which keeps its range. Unknown axes are ignored.
    void remove(XYGraphWidget* plot, Qt::Orientation axis);
    bool contains(const XYGraphWidget* plot, Qt::Orientation axis) const; ///< whether the axis is in the group
    qsizetype count() const; ///< number of axes

Q_SIGNALS:
    /// The range of the group has changed. Emitted after all plots have been updated, but not for automatic scaling.
    /// add() emits it for a change of a member that was still to be reported.
    void rangeChanged(double min, double max);

private:
    class Member;
    friend class Member;
    TARNIS_NO_EXPORT void follow(Member& source);
    TARNIS_NO_EXPORT void postLateChanges();
    TARNIS_NO_EXPORT void followLateChanges();
    TARNIS_NO_EXPORT void showCrosshairs();
    TARNIS_NO_EXPORT double crosshairFor(const Member& member) const;
    TARNIS_NO_EXPORT Member* find(const XYGraphWidget* plot, Qt::Orientation axis) const;
    TARNIS_NO_EXPORT void dropDestroyed();

    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace tarnis
