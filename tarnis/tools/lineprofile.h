// Profiles across a map.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPointF>
#include <QPointer>

QT_BEGIN_NAMESPACE
class QMenu;
QT_END_NAMESPACE
class VectorGraphWidget;
class XY2DGraphWidget;

namespace tarnis {

/// A line, or a band, of any direction across a map, and a plot of the bins along it. The profile follows the line
/// while it is dragged, and the data. A bin belongs to the band if its centre is in it. The steps of the profile are as
/// long as a bin seen along the line; their position is that of X along a horizontal line, of Y along an upright one,
/// and counts bins from the begin otherwise.
///
/// While the tool is on, a left drag in the map draws a line, a drag of an end moves that end, a drag of the middle
/// moves the line, and a drag of the handle beside it widens the band. With the keyboard on the map, B switches the
/// tool, and Escape takes a drag back, or switches the tool off. The plot of the profile is a window of its own until
/// the host places it. The line appears in saved pictures.
class TARNIS_EXPORT LineProfile : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// How the bins across the band are joined to one value.
    enum class Join {
        Sum, ///< of the finite bins
        Mean, ///< of the finite bins
        Maximum ///< the largest one
    };
    Q_ENUM(Join)

    /// Attaches to the map, which owns the tool. It is switched off, and there is no line yet.
    explicit LineProfile(XY2DGraphWidget* map);
    ~LineProfile() override;

    bool isOn() const; ///< line and profile are shown, and answer the mouse
    bool isSet() const; ///< there is a line
    /// The ends in units of the axes, in the middles of bins; (0, 0) without a line. @{
    QPointF from() const;
    QPointF to() const;
    /// @}
    double bandWidth() const; ///< across, in bins; at least 1
    Join join() const; ///< see Join
    QList<double>
    values() const; ///< of the steps, from the begin; NaN for one outside of the map; empty without a line
    /// The plot of the profile: a window of its own beside the map, shown while the tool is on. A host may put it into
    /// a layout. Null without a map.
    VectorGraphWidget* profilePlot() const;

    QList<QAction*> actions() const override;
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    /// Shows line and profile. Without a line, a horizontal one across the middle of the view is set.
    void setOn(bool on);
    void setLine(const QPointF& from, const QPointF& to); ///< ends that are not finite are ignored
    void setBandWidth(double bins); ///< limited to 1 to 1e6; what is not a number is ignored
    void setJoin(tarnis::LineProfile::Join join); ///< see Join

Q_SIGNALS:
    void profileChanged(); ///< line, width, join or values() have changed
    void onChanged(bool on); ///< see isOn()

protected:
    bool handleEvent(QEvent* event) override;
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
    TARNIS_NO_EXPORT void showValues(const PlotMapping& mapping);
    TARNIS_NO_EXPORT Shape shape(const PlotMapping& mapping) const;
    TARNIS_NO_EXPORT Grip gripAt(const PlotMapping& mapping, const QPointF& pixel) const;
    TARNIS_NO_EXPORT bool handleMouse(QEvent* event);
    TARNIS_NO_EXPORT void drag(const PlotMapping& mapping, const QPointF& pixel);
    TARNIS_NO_EXPORT bool handleKey(int key, Qt::KeyboardModifiers modifiers);
    TARNIS_NO_EXPORT void endDrag(bool cancel);

    bool m_isOn = false;
    bool m_isSet = false;
    QPointF m_from;
    QPointF m_to;
    double m_width = 1.0; // bins
    Join m_join = Join::Sum;
    QList<double> m_values;
    Grip m_grip = Grip::None; // of the drag
    QPointF m_pressed; // value under the press
    QPointF m_wasFrom; // before the drag
    QPointF m_wasTo;
    double m_wasWidth = 1.0;
    QPointer<VectorGraphWidget> m_plot;
    QMenu* m_menu = nullptr; // of the action
    QAction* m_switch = nullptr;
    QAction* m_menuAction = nullptr;
};

} // namespace tarnis
