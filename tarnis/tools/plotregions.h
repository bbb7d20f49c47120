// Regions that the user draws and drags on a plot.
#pragma once

#include <tarnis/plots/plotoverlay.h>
#include <tarnis/tools/interactivetool.h>
#include <tarnis/tools/plotregion.h>

#include <memory>

namespace tarnis {

/// Any number of named regions over a plot: ranges of X on curves; on maps also ranges of Y, rectangles, ellipses and
/// polygons. RegionTable shows their statistics.
///
/// draw() begins a region: a drag with the left button draws it, for a polygon clicks place corners, and a double
/// click, Return or a click on the first corner closes it. Otherwise, while no mouse tool of the plot is active, a
/// region can be selected by a click and dragged by its edges, corners and inside. Delete removes the selected one.
/// Escape ends drawing or reverts the drag.
class TARNIS_EXPORT PlotRegions : public InteractiveTool, protected PlotOverlay {
    Q_OBJECT

public:
    /// Attaches to the plot, which owns the tool.
    explicit PlotRegions(XYGraphWidget* plot);
    ~PlotRegions() override;

    const QList<PlotRegion>& regions() const; ///< in the order of their creation
    /// Replaces all regions; ignores those that are invalid or not supported by this plot. Clears the selection.
    void setRegions(const QList<PlotRegion>& regions);
    /// Appends a region, with a new name unless it has one. Returns its index; -1 if it is not valid for the plot.
    int add(PlotRegion region);
    void replace(int index, const PlotRegion& region); ///< ignored for an unknown index or an invalid region
    void remove(int index); ///< ignored for an unknown index
    bool fits(const PlotRegion& region) const; ///< whether the region is valid for the plot

    /// The selected region, -1 for none. @{
    int selected() const;
    void select(int index);
    /// @}
    bool isDrawing() const; ///< whether draw() is waiting for its region

    QList<QAction*> actions() const override;
    QJsonObject saveState() const override;
    void restoreState(const QJsonObject& state) override;

public Q_SLOTS:
    void draw(tarnis::PlotRegion::Kind kind); ///< the next drag or clicks draw a region of this kind
    void cancel(); ///< ends drawing or dragging without a change
    void removeSelected(); ///< does nothing without a selection

Q_SIGNALS:
    void regionsChanged(); ///< also emitted during a drag
    void selectionChanged(int index); ///< -1: none
    void drawingChanged(bool isDrawing); ///< see isDrawing()
    void dataChanged(); ///< the plot's data have changed

protected:
    bool handleEvent(QEvent* event) override;
    QList<QRect> nameBoxes() const override;
    void plotChanged(Changes changes) override;
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override;

private:
    struct TARNIS_NO_EXPORT Internals;
    TARNIS_NO_EXPORT bool press(const QPointF& position);
    TARNIS_NO_EXPORT bool move(const QPointF& position);
    TARNIS_NO_EXPORT bool release(const QPointF& position);
    TARNIS_NO_EXPORT bool takeKey(int key);
    TARNIS_NO_EXPORT void addCorner(const QPointF& position);
    TARNIS_NO_EXPORT void finishDrawing();
    TARNIS_NO_EXPORT bool grab(const QPointF& position);
    TARNIS_NO_EXPORT void setDrawing(bool on);
    TARNIS_NO_EXPORT void makeActions();

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
