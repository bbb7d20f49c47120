// Reads and changes the view of a plot through its public functions, within limits that keep the data visible.
#pragma once

#include "tarnis/plots/math/viewarithmetic_p.h"
#include "tarnis/plots/plotaccess_p.h"
#include "tarnis/tools/navigation/viewhistory_p.h"

#include <Qt>

#include <optional>

QT_BEGIN_NAMESPACE
class QAction;
QT_END_NAMESPACE
class XY2DGraphWidget;
class XYGraphWidget;

namespace tarnis {

/// The view of a plot for tools. The X axis of a plot of a 1D cut is that of the map: the map sets its range with every
/// update, so that its changes are made there, and its limits are those of the map. The extent of the data is cached
/// until forgetData().
class ViewControl {
public:
    explicit ViewControl(XYGraphWidget& plot)
        : m_plot(plot)
    {
    }

    XY2DGraphWidget* map() const; ///< null for curves
    ViewState state() const;
    /// Restores a view; axes that followed the data follow the current data.
    void apply(const ViewState& view);

    AxisRange range(Qt::Orientation axis) const;
    AxisScale scale(Qt::Orientation axis) const;
    bool isAuto(Qt::Orientation axis) const;
    /// Shows the range and ends automatic scaling of that axis; the cut windows of a map follow.
    void show(Qt::Orientation axis, AxisRange range);
    /// Makes the axis follow the data again.
    void fit(Qt::Orientation axis);
    ViewLimits limits(Qt::Orientation axis) const;
    /// The anchor for a pointer at `share`: curves keep the lower end of Y if it is that of an empty spectrum.
    ZoomAnchor anchor(Qt::Orientation axis, double share) const;

    // Colours of a map
    AxisRange levels() const;
    AxisScale levelScale() const;
    ViewLimits levelLimits() const;
    void showLevels(AxisRange levels);
    void fitLevels();

    /// Keys that move and zoom: arrows by a tenth, plus and minus along X and Page Up and Page Down along Y by a
    /// quarter, Home to both axes automatic. False for any other key.
    bool takeKey(int key);

    /// The entry "Log Scale" of the plot's menu, null without one, and its state.
    QAction* logAction() const;
    void setLogScale(bool on);

    void forgetData() { m_extentY.reset(); }

private:
    using CutAxis = PlotAccess::CutAxis;
    /// The map's axis in place of one of a cut; without a value for an axis of its own.
    std::optional<CutAxis> mapAxis(Qt::Orientation axis) const;
    void zoomBy(Qt::Orientation axis, double factor, ZoomAnchor anchor);
    void panBy(Qt::Orientation axis, double share);
    void redraw();
    AxisRange extentX() const;
    AxisRange extentY() const;

    XYGraphWidget& m_plot;
    mutable std::optional<AxisRange> m_extentY;
};

} // namespace tarnis
