// Profiles across a map.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPointF>
#include <QPointer>

#include <memory>

QT_BEGIN_NAMESPACE
class QMenu;
class QTimer;
QT_END_NAMESPACE
class VectorGraphWidget;
class XY2DGraphWidget;

namespace tarnis {

class MenuTool;

/// A line, or a band, in any direction across a map, and a plot of the bins along it. The profile is updated when the
/// line is dragged and when data arrive. The steps of the profile are as long as a bin in the direction of the line.
/// Their position is X along a horizontal line, Y along a vertical one, and otherwise the number of bins from the
/// start. Along an axis a bin belongs to the band if its centre is inside. Along a slanted line, sums and means take
/// the fraction of a bin's area that lies in the step.
///
/// While the tool is on, a left drag in the map draws a line, a drag of an end moves that end, a drag of the middle
/// moves the line, and a drag of the handle beside it widens the band. While the map has the focus, B switches the
/// tool, Ctrl with an arrow moves the end by a bin, with Shift too by ten, Space swaps both ends, and Escape reverts a
/// drag, or switches the tool off. The plot of the profile is a separate window unless the
/// host embeds it. The line appears in saved pictures.
class TARNIS_EXPORT LineProfile : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How the bins across the band are combined.
    enum class Join {
        Sum, ///< sum of the finite bins
        Mean, ///< mean of the finite bins
        Maximum ///< largest finite bin whose centre is in the step
    };
    Q_ENUM(Join)

    /// Attaches to the map, which owns the tool. Initially it is off, and there is no line.
    explicit LineProfile(XY2DGraphWidget* map);
    ~LineProfile() override;

    bool isOn() const; ///< whether line and profile are shown and can be edited
    bool isSet() const; ///< whether there is a line
    /// The ends in units of the axes, at the middles of bins; (0, 0) without a line. @{
    QPointF from() const;
    QPointF to() const;
    /// @}
    double bandWidth() const; ///< width across the line in bins; at least 1
    Join join() const; ///< see Join
    QList<double> values() const; ///< values of the steps from the start; NaN outside of the map; empty without a line
    /// The plot of the profile: a separate window beside the map, shown while the tool is on. A host may add it to a
    /// layout. It gets the theme of the map's PlotStyle, unless it has a style. Null without a map.
    VectorGraphWidget* profilePlot() const;

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    /// Shows line and profile. Without a line, a horizontal one across the middle of the view is set.
    void setOn(bool on);
    void setLine(const QPointF& from, const QPointF& to); ///< ends that are not finite are ignored
    void setBandWidth(double bins); ///< limited to 1 to 1e6; NaN is ignored
    void setJoin(tarnis::LineProfile::Join join); ///< see Join

Q_SIGNALS:
    void profileChanged(); ///< line, width, join or values() have changed
    void onChanged(bool on); ///< see isOn()

protected:
    bool handleEvent(QEvent* event) override;
    bool handlePress(const QMouseEvent& event) override;
    bool handleMove(const QMouseEvent& event) override;
    bool handleRelease(const QMouseEvent& event) override;
    bool handleKey(const QKeyEvent& event) override;
    bool claimsKey(const QKeyEvent& event) const override;
    void handleHide() override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    enum class Grip { None, From, To, Line, Width };
    struct Shape;

    TARNIS_NO_EXPORT XY2DGraphWidget* map() const;
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void fillMenu();
    TARNIS_NO_EXPORT void makePlot();
    TARNIS_NO_EXPORT void renew();
    TARNIS_NO_EXPORT void showPending();
    TARNIS_NO_EXPORT void showValues(const PlotMapping& mapping);
    TARNIS_NO_EXPORT Shape shape(const PlotMapping& mapping) const;
    TARNIS_NO_EXPORT QRegion areaOf(const Shape& line, const QRect& frame) const;
    TARNIS_NO_EXPORT bool isTooShort() const;
    TARNIS_NO_EXPORT Grip gripAt(const PlotMapping& mapping, const QPointF& pixel) const;
    TARNIS_NO_EXPORT void showWithMap();
    TARNIS_NO_EXPORT void drag(const PlotMapping& mapping, const QPointF& pixel);
    TARNIS_NO_EXPORT void endDrag(bool cancel);

    bool m_isOn = false;
    bool m_isSet = false;
    QPointF m_from;
    QPointF m_to;
    double m_width = 1.0; // bins
    Join m_join = Join::Sum;
    QList<double> m_values;
    Grip m_grip = Grip::None; // handle of the drag
    QPointF m_pressed; // value under the mouse press
    QPointF m_wasFrom; // end before the drag
    QPointF m_wasTo;
    double m_wasWidth = 1.0;
    QPointer<VectorGraphWidget> m_plot;
    QTimer* m_frame = nullptr; // runs for a frame after an update of the profile's plot
    bool m_isFramePending = false; // m_values are not in the plot yet
    QMenu* m_menu = nullptr; // menu of the action
    QAction* m_switch = nullptr;
    QAction* m_menuAction = nullptr;
    std::unique_ptr<MenuTool> m_menuTool;
};

} // namespace tarnis
