// A list of the curves over a plot, with their names and colours.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>

#include <QList>
#include <QPointF>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QKeyEvent;
class QMouseEvent;
class QTimer;
class QWheelEvent;
QT_END_NAMESPACE
class MultiVectorGraphWidget;

namespace tarnis {

class LabelCache;

/// Attached to a MultiVectorGraphWidget, it lists the curves that have samples, with their curveNames(). It draws
/// nothing for fewer than two curves, and on other plots.
///
/// - A click on an entry hides the curve or shows it again. A double click shows only that curve; a second one shows
///   all. Entries of hidden curves are grey. The sum of all curves has one entry, which cannot be hidden.
/// - A drag moves the legend inside the plot; the wheel over it scrolls a list that is longer than the plot.
/// - Shift+L shows the legend and gives it the keyboard focus. Then Up, Down, Page Up, Page Down, Home and End select
///   an entry, Space hides or shows it, Return shows only this curve, Escape returns the focus to the plot, and Shift+L
///   hides the legend.
///
/// It appears in saved and printed pictures, without the focus mark.
class TARNIS_EXPORT PlotLegend : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the legend. Initially it is visible.
    explicit PlotLegend(XYGraphWidget* plot);
    ~PlotLegend() override;

    bool isVisible() const; ///< see setVisible()
    /// Its position from the upper left (0, 0) to the lower right corner (1, 1) of the plot rectangle, as fractions of
    /// the free space along each axis. Until setPlace(), a drag or a restored position it is a corner, first (1, 0). If
    /// data cover the legend there while the plot shows its whole range, it moves to the corner with the least data; it
    /// leaves each corner at most once. In a zoomed view it chooses its corner when the user has stopped zooming, and
    /// data do not move it; in the whole view it is back at its corner there.
    QPointF place() const;
    qsizetype count() const; ///< number of entries
    bool isShown(qsizetype entry) const; ///< whether the curve of an entry is shown; false beyond the entries
    QString name(qsizetype entry) const; ///< the text of an entry; empty beyond the entries

    QList<QAction*> actions() const override; ///< the switch
    /// Visibility, position unless the legend chooses it, and the hidden curves by their record. @{
    QString stateName() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;
    /// @}

public Q_SLOTS:
    void setVisible(bool visible); ///< shows or hides the legend; the curves are unchanged
    void setPlace(const QPointF& place); ///< see place(); limited to 0 to 1, NaN is ignored
    void toggle(qsizetype entry); ///< hides or shows the curve; ignored for an invalid entry
    void isolate(qsizetype entry); ///< shows only that curve; all of them if it is already the only one
    void showAll(); ///< shows all curves

Q_SIGNALS:
    void visibleChanged(bool visible); ///< see isVisible()

protected:
    bool handleEvent(QEvent* event) override;
    bool handlePress(const QMouseEvent& event) override;
    bool handleMove(const QMouseEvent& event) override;
    bool handleRelease(const QMouseEvent& event) override;
    bool handleDoubleClick(const QMouseEvent& event) override;
    bool handleWheel(QWheelEvent& event) override;
    bool handleKey(const QKeyEvent& event) override;
    bool claimsKey(const QKeyEvent& event) const override;
    void handleHide() override;
    QList<QRect> cornerBoxes() const override; ///< its rectangle; empty list while nothing is drawn
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    struct Layout;
    TARNIS_NO_EXPORT MultiVectorGraphWidget* curves() const;
    TARNIS_NO_EXPORT Layout layout() const;
    TARNIS_NO_EXPORT void select(qsizetype entry);
    TARNIS_NO_EXPORT void enable(const QList<int>& records, bool on);
    TARNIS_NO_EXPORT void applyToEntries(qsizetype alone);
    TARNIS_NO_EXPORT void leaveData(Changes changes);
    TARNIS_NO_EXPORT void leaveDataAtRest();
    TARNIS_NO_EXPORT QPointF leastCoveringPlace(const QList<QPointF>& excluded) const;

    bool m_isVisible = true;
    QPointF m_place { 1.0, 0.0 };
    bool m_isPlaceSet = false; // by the user or the host
    QList<QPointF> m_cornersLeft; // corners where data covered the legend
    std::optional<QPointF> m_zoomedPlace; // chosen for the current zoomed view
    QTimer* m_rest = nullptr; // of the view
    bool m_waitsForData = true; // to choose a place in a zoomed view
    qsizetype m_first = 0; // first visible row
    qsizetype m_selected = -1; // entry selected by the keyboard; -1: the plot has the focus
    bool m_isPressed = false;
    bool m_isDragging = false;
    QPointF m_pressAt; // in the frame's coordinates
    QPointF m_placeAtPress;
    int m_wheelRest = 0; // remaining eighths of a degree, less than a row
    QAction* m_switch = nullptr;
    std::unique_ptr<LabelCache> m_labels;
};

} // namespace tarnis
