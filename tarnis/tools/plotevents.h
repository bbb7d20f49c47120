// Signals for the user's actions on a plot.
#pragma once

#include <tarnis/plots/axisrange.h>
#include <tarnis/tools/interactivetool.h>

#include <QMetaType>
#include <QPointF>
#include <QString>

#include <limits>

QT_BEGIN_NAMESPACE
class QMouseEvent;
QT_END_NAMESPACE

namespace tarnis {

/// A position in a plot and the data there.
struct TARNIS_EXPORT PlotPoint {
    QPointF value; ///< position in units of both axes
    qsizetype column = -1; ///< bin of X; -1 outside of the data
    qsizetype row = -1; ///< bin of Y; -1 on curves and outside of the data
    /// The visible curve nearest to the position, as an index into tarnis::curveNames(); 0 on a plot of one series; -1
    /// on maps and if no curve is within reach.
    int series = -1;
    QString seriesName; ///< as in tarnis::curveNames(); empty without a curve
    double distance = std::numeric_limits<double>::infinity(); ///< distance from the position to that curve in pixels
    /// Value of the bin: the sample of that curve, or the bin of the map. NaN without one.
    double sample = std::numeric_limits<double>::quiet_NaN();
};

/// Reports changes of the visible range, clicks and the position of the pointer. It does not filter any event. Clicks
/// and moves are reported inside the plot rectangle while no mouse tool of the plot is active. A tool that handles a
/// click or double click itself, as PlotNavigator does, hides it from PlotEvents objects that were attached before that
/// tool. A slot that deletes the plot needs a queued connection.
///
///     auto* events = new tarnis::PlotEvents(plot);
///     connect(events, &tarnis::PlotEvents::clicked, this, [](const tarnis::PlotPoint& point) { ... });
class TARNIS_EXPORT PlotEvents : public InteractiveTool {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns this object.
    explicit PlotEvents(XYGraphWidget* plot);

    /// Maximum distance of the nearest curve in pixels, not negative; default 20. @{
    void setReach(double pixels);
    double reach() const { return m_reach; }
    /// @}
    /// The data at a pixel of the plot.
    PlotPoint at(const QPointF& pixel) const;

Q_SIGNALS:
    /// A visible range has changed, for any reason. Emitted from the event loop, once for all changes since the
    /// previous signal.
    void rangeChanged(const tarnis::AxisRange& x, const tarnis::AxisRange& y);
    /// The left button was pressed and released at one place.
    void clicked(const tarnis::PlotPoint& point, Qt::KeyboardModifiers modifiers);
    /// A double click; clicked() is emitted only for its first click.
    void doubleClicked(const tarnis::PlotPoint& point, Qt::KeyboardModifiers modifiers);
    /// The pointer has moved to this position without a pressed button.
    void hovered(const tarnis::PlotPoint& point);
    /// The pointer has left the plot rectangle; follows a hovered().
    void hoverEnded();

protected:
    bool handlePress(const QMouseEvent& event) override;
    bool handleMove(const QMouseEvent& event) override;
    bool handleRelease(const QMouseEvent& event) override;
    bool handleDoubleClick(const QMouseEvent& event) override;
    void handleLeave() override;
    void handleHide() override;
    void plotChanged(Changes changes) override;

private:
    TARNIS_NO_EXPORT bool isInside(const QPointF& pixel) const;
    TARNIS_NO_EXPORT void endHover();

    double m_reach = 20.0;
    bool m_isPressed = false;
    bool m_isHovering = false;
    QPointF m_pressedAt;
};

} // namespace tarnis

Q_DECLARE_METATYPE(tarnis::PlotPoint)
