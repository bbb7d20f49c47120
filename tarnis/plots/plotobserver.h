// Notification of changes of a plot.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QFlags>
#include <Qt>

QT_BEGIN_NAMESPACE
class QPointF;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

class PlotHooks;

/// Receives the changes of one plot, whatever the reason. A subclass overrides the functions it needs. An observer is
/// active from its construction until its or the plot's destruction. Without observers there is no overhead. GUI thread
/// only.
class TARNIS_EXPORT PlotObserver {
public:
    /// What has changed since the previous call.
    enum Change : unsigned int {
        RangeX = 1, ///< the visible range of X
        RangeY = 2, ///< the visible range of Y
        ScaleType = 4, ///< Y became linear or logarithmic; for a map, its colour scale
        PlotRect = 8, ///< position or size of the plot rectangle
        Data = 16, ///< samples, bins, the shown series, or their names
        AutoScale = 32, ///< automatic scaling of an axis or of a map's colours
        Levels = 64 ///< the limits of a map's colours
    };
    Q_DECLARE_FLAGS(Changes, Change)

    /// Attaches to the plot. Null causes a warning, and the observer receives nothing.
    explicit PlotObserver(XYGraphWidget* plot);
    PlotObserver(const PlotObserver&) = delete;
    PlotObserver& operator=(const PlotObserver&) = delete;
    virtual ~PlotObserver();

    /// The plot; null once it has been destroyed.
    XYGraphWidget* observedPlot() const { return m_observed; }

    /// For hosts that draw other data in onPaint(): notifies observers of the plot with Data.
    static void announceData(XYGraphWidget& plot);

protected:
    /// Called from the event loop, once for all changes since the previous call. A change that was undone in the
    /// meantime is not reported. The function may change the plot; that is a new change.
    virtual void plotChanged(Changes changes);
    /// Called at once when the host sets up the axis again by initManualX() or initManualY(), with the previously
    /// visible range. The observer may set a range.
    virtual void axisInitialized(Qt::Orientation axis, double previousMin, double previousMax);
    /// Called at once when the cross of a PlotCrosshair of the plot moves: its value on both axes, or NaN when it is no
    /// longer shown.
    virtual void crosshairMoved(const QPointF& value);
    /// Called at once when this happens in a plot that shares this axis by an AxisLink.
    virtual void linkedCrosshairMoved(Qt::Orientation axis, double value);

private:
    friend class PlotHooks;
    XYGraphWidget* m_observed = nullptr;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(PlotObserver::Changes)

} // namespace tarnis
