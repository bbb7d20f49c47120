// A crosshair for reading values of a plot.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPointF>
#include <QRect>

#include <memory>

QT_BEGIN_NAMESPACE
class QFont;
QT_END_NAMESPACE

namespace tarnis {

class LinkedCross;
struct PlotReadOut;
struct ReadOutLabels;

/// A cross under the pointer, with a text that shows the bin there: its number and edges, the value on the second X
/// scale if there is one, and the value of every visible curve, or of the map's bin. It snaps to bins and never
/// interpolates. An empty bin shows 0, a position outside of the data a dash, and NaN "no data". The text is updated
/// when data arrive while the pointer rests. The plot's own tool tips are disabled in the meantime.
///
/// If the plot is linked with others by AxisLink, a cross in one of them appears here as a line at its position on the
/// shared axis.
///
/// While the plot has the focus, C switches the cross, P pins it to the value under it, Ctrl with an arrow pins it a
/// bin further, with Shift too ten bins, Ctrl+C copies the read-out as a table separated by tabs, and Escape releases
/// the pin or switches the cross off. A pinned cross appears in saved pictures.
class TARNIS_EXPORT PlotCrosshair : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the tool. Initially it is on.
    explicit PlotCrosshair(XYGraphWidget* plot);
    ~PlotCrosshair() override;

    bool isOn() const; ///< whether it is on; it is shown while the pointer is in the plot rectangle, or while pinned
    bool isPinned() const; ///< whether it is fixed at its value
    QString text() const; ///< the shown line; empty while nothing is shown
    QString table() const; ///< header and numbers, separated by tabs; empty outside of the data
    /// Where text() is drawn, in the frame's coordinates of PlotMapping: above the plot rectangle if it fits there
    /// beside the title, otherwise in lines at the top of the plot, away from the cross. Null while nothing is shown.
    QRect textBox() const;

    QList<QAction*> actions() const override; ///< switch, pin and copy
    /// Whether it is on, and where it is pinned. @{
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;
    /// @}

public Q_SLOTS:
    void setOn(bool on); ///< switching off releases the pin
    void pinAt(const QPointF& value); ///< switches the cross on and pins it to a value of both axes
    void release(); ///< the cross follows the pointer again
    void copy(); ///< copies the table to the clipboard; does nothing outside of the data

Q_SIGNALS:
    void textChanged(const QString& text); ///< see text()
    void onChanged(bool on); ///< see isOn()

protected:
    bool handleMove(const QMouseEvent& event) override;
    bool handleKey(const QKeyEvent& event) override;
    bool claimsKey(const QKeyEvent& event) const override;
    void handleLeave() override;
    void plotChanged(Changes changes) override;
    void linkedCrosshairMoved(Qt::Orientation axis, double value) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;
    bool isSaved() const override;

private:
    TARNIS_NO_EXPORT bool isShown() const;
    TARNIS_NO_EXPORT QPointF value(const PlotMapping& mapping) const;
    TARNIS_NO_EXPORT PlotReadOut readOut() const;
    struct Label;
    struct Labels;
    struct Drawing;
    TARNIS_NO_EXPORT Label labelAt(const PlotMapping& mapping, const QFont& font, const PlotReadOut& shown) const;
    TARNIS_NO_EXPORT Label labelAbove(const PlotMapping& mapping, ReadOutLabels& labels) const;
    TARNIS_NO_EXPORT Drawing drawing(const PlotMapping& mapping, const QFont& font) const;
    TARNIS_NO_EXPORT void notePointer(const QPointF& position);
    TARNIS_NO_EXPORT void renew();
    TARNIS_NO_EXPORT void makeActions();
    TARNIS_NO_EXPORT void togglePin();
    TARNIS_NO_EXPORT bool moveBy(const QPoint& bins);
    TARNIS_NO_EXPORT void updateActions();

    bool m_isOn = true;
    bool m_isPinned = false;
    bool m_isOver = false; // the pointer is in the plot rectangle
    QPointF m_pointer; // in pixels of the widget
    QPointF m_pin; // in values
    QString m_text;
    std::unique_ptr<Labels> m_labels; // layouts of the read-out
    std::unique_ptr<LinkedCross> m_linked; // null without a plot
    QAction* m_switch = nullptr;
    QAction* m_pinSwitch = nullptr;
    QAction* m_copy = nullptr;
};

} // namespace tarnis
