// A list of the curves over a plot, with their names and colours.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QPointF>
#include <QRect>
#include <QString>

QT_BEGIN_NAMESPACE
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;
QT_END_NAMESPACE
class MultiVectorGraphWidget;

namespace tarnis {

/// Attached to a MultiVectorGraphWidget, it lists the curves that have samples, by the names of curveNames(). With
/// fewer than two, and on other plots, it draws nothing.
///
/// - A click on an entry hides the curve or shows it again, a double click shows that curve alone, and again all of
///   them. An entry of a hidden curve is greyed and stays. A sum of all has one entry that nothing hides.
/// - A drag moves the legend inside the plot; the wheel over it scrolls a list that is longer than the plot.
/// - Shift+L shows the legend and hands it the keys: Up, Down, Page Up, Page Down, Home and End choose an entry, Space
///   hides or shows it, Return shows it alone, Escape returns the keys to the plot, and Shift+L hides the legend.
///
/// It belongs into saved and printed pictures, without the mark of the keyboard.
class TARNIS_EXPORT PlotLegend : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the legend. It is visible.
    explicit PlotLegend(XYGraphWidget* plot);
    ~PlotLegend() override;

    bool isVisible() const; ///< see setVisible()
    /// Its place between the left upper (0, 0) and the right lower corner (1, 1) of the plot rectangle: the share of
    /// the room that the legend leaves, along each axis. (1, 0) at first.
    QPointF place() const;
    qsizetype count() const; ///< number of entries
    bool isShown(qsizetype entry) const; ///< whether the curve of an entry is shown; false beyond the entries
    QString name(qsizetype entry) const; ///< the text of an entry; empty beyond the entries

    QList<QAction*> actions() const override; ///< the switch
    /// Whether it is visible, its place, and the hidden curves by their record. @{
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;
    /// @}

public Q_SLOTS:
    void setVisible(bool visible); ///< the curves stay as they are
    void setPlace(const QPointF& place); ///< see place(); limited to 0 to 1, not a number changes nothing
    void toggle(qsizetype entry); ///< hides the curve or shows it; nothing beyond the entries
    void isolate(qsizetype entry); ///< shows that curve alone; all of them if it is alone already
    void showAll(); ///< shows all curves

Q_SIGNALS:
    void visibleChanged(bool visible); ///< see isVisible()

protected:
    bool handleEvent(QEvent* event) override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    struct Layout;
    TARNIS_NO_EXPORT MultiVectorGraphWidget* curves() const;
    TARNIS_NO_EXPORT Layout layout() const;
    TARNIS_NO_EXPORT bool handlePress(const QMouseEvent& event);
    TARNIS_NO_EXPORT bool handleMove(const QMouseEvent& event);
    TARNIS_NO_EXPORT bool handleRelease(const QMouseEvent& event);
    TARNIS_NO_EXPORT bool handleDoubleClick(const QMouseEvent& event);
    TARNIS_NO_EXPORT bool handleWheel(QWheelEvent& event);
    TARNIS_NO_EXPORT bool handleKey(const QKeyEvent& event);
    TARNIS_NO_EXPORT void select(qsizetype entry);
    TARNIS_NO_EXPORT void enable(const QList<int>& records, bool on);
    TARNIS_NO_EXPORT void applyToEntries(qsizetype alone);

    bool m_isVisible = true;
    QPointF m_place { 1.0, 0.0 };
    qsizetype m_first = 0; // of the rows in sight
    qsizetype m_selected = -1; // by the keyboard; -1: the keys are the plot's
    bool m_isPressed = false;
    bool m_isDragging = false;
    QPointF m_pressAt; // in the frame's coordinates
    QPointF m_placeAtPress;
    int m_wheelRest = 0; // eighths of a degree that are not a row yet
    QAction* m_switch = nullptr;
};

} // namespace tarnis
