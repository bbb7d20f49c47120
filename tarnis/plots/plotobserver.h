// Listening to a plot: what it shows has changed, for any reason.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QFlags>
#include <Qt>

class XYGraphWidget;

namespace tarnis {

class PlotHooks;

/// Receives the changes of one plot. A subclass overrides what it needs. An observer starts with its construction and
/// ends with its destruction or with the plot's. A plot without observers does nothing for them. GUI thread only.
class TARNIS_EXPORT PlotObserver {
public:
    /// What differs from the moment of the previous call.
    enum Change : unsigned int {
        RangeX = 1, ///< the visible range of X
        RangeY = 2, ///< the visible range of Y
        ScaleType = 4, ///< Y became linear or logarithmic; for a map, its colour scale
        PlotRect = 8, ///< place or size of the plot rectangle
        Data = 16, ///< samples, bins, which series are shown, or their names
        AutoScale = 32, ///< whether an axis, or a map's colours, follow the data
        Levels = 64 ///< the limits of a map's colours
    };
    Q_DECLARE_FLAGS(Changes, Change)

    /// Attaches to the plot. Null is reported as a warning, and the observer receives nothing.
    explicit PlotObserver(XYGraphWidget* plot);
    PlotObserver(const PlotObserver&) = delete;
    PlotObserver& operator=(const PlotObserver&) = delete;
    virtual ~PlotObserver();

    /// The plot; null once it has been destroyed.
    XYGraphWidget* observedPlot() const { return m_observed; }

    /// For hosts that draw data of their own in onPaint(): observers of the plot receive Data.
    static void announceData(XYGraphWidget& plot);

protected:
    /// Called from the event loop, once for all changes since the previous call, with the state that they left. A
    /// change that was taken back before is not reported. The plot may be changed from within; that is a new change.
    virtual void plotChanged(Changes changes);
    /// Called at once when the host sets the axis up again by initManualX() or initManualY(), with the range that was
    /// visible before. The observer may set a range.
    virtual void axisInitialized(Qt::Orientation axis, double previousMin, double previousMax);

private:
    friend class PlotHooks;
    XYGraphWidget* m_observed = nullptr;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(PlotObserver::Changes)

} // namespace tarnis
