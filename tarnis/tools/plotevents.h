// What the user does on a plot, as signals for the host.
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

/// A place in a plot and the data there.
struct TARNIS_EXPORT PlotPoint {
    QPointF value; ///< in units of both axes
    qsizetype column = -1; ///< bin of X; -1 outside of the data
    qsizetype row = -1; ///< bin of Y; -1 on curves and outside of the data
    /// The visible curve that passes nearest to the place, as an index into tarnis::curveNames(); 0 on a plot of one
    /// series; -1 on maps and where no curve passes within `distance`.
    int series = -1;
    QString seriesName; ///< as in tarnis::curveNames(); empty without one
    double distance = std::numeric_limits<double>::infinity(); ///< from the place to that curve, pixels
    /// Of the bin: the sample of that curve, or the bin of the map. NaN without one.
    double sample = std::numeric_limits<double>::quiet_NaN();
};

/// Reports changes of the visible range, clicks and the place under the pointer. It keeps no event from the plot.
/// Clicks and moves are those inside the plot rectangle while no tool of the plot's menu is chosen. A tool that handles
/// a click or a double click itself, as PlotNavigator does, hides it from the events that were attached before that
/// tool. A slot that deletes the plot needs a queued connection.
///
///     auto* events = new tarnis::PlotEvents(plot);
///     connect(events, &tarnis::PlotEvents::clicked, this, [](const tarnis::PlotPoint& point) { ... });
class TARNIS_EXPORT PlotEvents : public InteractiveTool {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the events.
    explicit PlotEvents(XYGraphWidget* plot);

    /// A curve is the nearest one only within this distance, which is 20 at first; pixels, not negative. @{
    void setReach(double pixels);
    double reach() const { return m_reach; }
    /// @}
    /// What is at a pixel of the plot.
    PlotPoint at(const QPointF& pixel) const;

Q_SIGNALS:
    /// A visible range has changed, for any reason. Comes from the event loop, once for all changes since the last one.
    void rangeChanged(const tarnis::AxisRange& x, const tarnis::AxisRange& y);
    /// The left button was pressed and released at one place.
    void clicked(const tarnis::PlotPoint& point, Qt::KeyboardModifiers modifiers);
    /// A second click on that place; clicked() came for the first one only.
    void doubleClicked(const tarnis::PlotPoint& point, Qt::KeyboardModifiers modifiers);
    /// The pointer has moved to this place, no button pressed.
    void hovered(const tarnis::PlotPoint& point);
    /// The pointer has left the plot rectangle; follows a hovered().
    void hoverEnded();

protected:
    bool handleEvent(QEvent* event) override;
    void plotChanged(Changes changes) override;

private:
    TARNIS_NO_EXPORT void press(const QMouseEvent& event);
    TARNIS_NO_EXPORT void release(const QMouseEvent& event);
    TARNIS_NO_EXPORT void hover(const QMouseEvent& event);
    TARNIS_NO_EXPORT bool isInside(const QPointF& pixel) const;
    TARNIS_NO_EXPORT void endHover();

    double m_reach = 20.0;
    bool m_isPressed = false;
    bool m_isHovering = false;
    QPointF m_pressedAt;
};

} // namespace tarnis

Q_DECLARE_METATYPE(tarnis::PlotPoint)
