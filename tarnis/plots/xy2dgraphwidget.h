// A two-dimensional histogram as an intensity map, with a colour bar, 1D cuts beside the window and regions of
// interest. GUI thread only.
#pragma once

#include <tarnis/foundation/modelesswidgetmanager.h>
#include <tarnis/peak/peaksearch.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QPointF>

#include <memory>

QT_BEGIN_NAMESPACE
class QDialog;
class QMenu;
class QPushButton;
QT_END_NAMESPACE
class ColorBarWidget;
class VectorGraphWidget;
class ViewSelectedROI;
class XYRangeInputDialog;

namespace tarnis {
enum class EdgeState;
enum class MouseState;
struct BinAxis;
struct MapColouring;
struct ScreenPlace;
} // namespace tarnis

/// An intensity map: a list of rows of bins, row 0 at the bottom. A bin with the value 0 is not painted, so the
/// background is visible. Of several bins that begin in one pixel column, the first non-zero one is shown. Setters of
/// data do not repaint: end a batch with refreshPixmap().
class TARNIS_EXPORT XY2DGraphWidget : public XYGraphWidget {
    Q_OBJECT

public:
    /// Initially no rows, an automatic colour bar, and the grid over the bins. Call init() next.
    explicit XY2DGraphWidget(QWidget* parent = nullptr);
    ~XY2DGraphWidget() override;

    /// The five points of the colour scale, at 0.0, 0.25, 0.5, 0.75 and 1.0 of it; shared by all maps of the process.
    /// @{
    static QColor colMin;
    static QColor colHalfMin;
    static QColor colHalf;
    static QColor colHalfMax;
    static QColor colMax;
    /// @}

    // Data - xy2dgraphwidget.cpp

    /// Sets a row and its largest value, on which the automatic colour scale relies; missing rows below it are empty.
    /// Automatic axes are fitted. `refresh` updates the cut windows if the cut is active. A negative row is ignored.
    void setData(int row, const QList<double>& values, double rowMax, bool refresh);
    /// Removes all rows, resets Z to auto scale, closes the cut windows and hides the regions.
    void clearData();
    /// Returns the rows, implicitly shared.
    void getData(QList<QList<double>>& rows);
    /// Axis units per bin; 0 derives it from the initial range. @{
    void setStepX(double step);
    void setStepY(double step);
    /// @}
    /// The effective step: as set, or the initial range divided by the bins (of row 0), 1e-5 without rows. Not finite
    /// if row 0 is empty.
    /// @{
    double getStepX();
    double getStepY();
    /// @}
    /// Axis units per bin on axes that are not manual; 0 counts as 1. Refreshes on a change.
    void setResolution(unsigned int x, unsigned int y);
    /// Length of the longest row times the X resolution.
    int getMaxCount();
    /// Largest of the row maxima passed to setData(), at least 0.
    double getMaxValue();

    // Colour scale - xy2dgraphwidget_colour.cpp

    /// Writes the value at the top of the scale to `maxZ`; returns whether the scale is automatic.
    bool getMaxZ(double& maxZ);
    void setColorBarTicks(int ticks); ///< as ColorBarWidget::setTicks()
    /// Colour of a value; invalid where the scale is undefined: for NaN, and for a value that equals both limits.
    QColor getColor(double value);
    /// Sets the five colours of all maps and, if it is valid, the background of all plots; repaints this plot. If one
    /// of the five is invalid, returns false and changes nothing.
    bool updateColor(QColor max, QColor halfMax, QColor half, QColor halfMin, QColor min, QColor background);

    // Painting - xy2dgraphwidget_paint.cpp

    /// Adds a cross, in axis units. Refreshes.
    void showPoint(double x, double y);
    /// Removes all crosses. Refreshes.
    void hidePoint();
    /// Positions button and colour bar for a widget of this size.
    void adjustWidgetPosition(QSize size);
    void onPaint(QPainter& painter, QRect const& graph) override;
    void paintSelectedRect(QPainter& painter) override;

    // Cut - xy2dgraphwidget_cut.cpp, _cutwindows.cpp

    /// Sets the cut rectangle to the visible range. No refresh.
    void init1dCutRectWithDrawingRange();
    /// Widens the range to whole bins, limited below by 0 and above by the number of bins; the range box follows.
    /// @{
    void update1dCutRangeX(double& min, double& max);
    void update1dCutRangeY(double& min, double& max);
    /// @}
    /// Opens the range box and the cut windows if necessary and places them beside the window. With `refreshData` the
    /// sums are recomputed.
    void refresh1dCut(bool refreshData);
    /// Sums of the visible bins by column, from left to right, and by row, from the bottom up.
    void get1dData(QList<double>& horizontal, QList<double>& vertical);
    /// Shows sums in the notes line of the cut plots. Refreshes on a change.
    void setDisplay1dCutIntensity(bool on);
    /// Cuts the visible range and shows the peaks in the cut plots; a peak with N = 0 is not shown.
    void show1dCutWithGauss(const PeakSearch::Gaussian& x, const PeakSearch::Gaussian& y);
    /// Removes the cut rectangle and closes the range box and the cut windows. The tool remains checked.
    void close1dCut();
    void updateModeAndCursor() override;
    /// End of a rubber band: zooms, cuts, or adds a region, depending on the checked tool.
    void onSetRectangle(double x1, double x2, double y1, double y2) override;
    /// Cuts along a rectangle that is clipped and rounded as bin numbers, for any axis.
    virtual void update1dCutRect(double x1, double x2, double y1, double y2);
    /// Cuts along an unchanged rectangle with corners in any order.
    virtual void update1dCutRectSimply(double x1, double x2, double y1, double y2);
    /// Sets the cut rectangle to all bins, counted in bins. No refresh.
    virtual void init1dCutRect();

    // Regions - xy2dgraphwidget_roi.cpp

    /// Offers the selection of regions inside `range`, in whole axis units. A range without width or height is
    /// refused. A further call changes the range and clips the regions to it.
    void enalbeRoiSelect(QRect range);
    /// Switches the tool on or off, if it is available.
    void SetRoiEnabled(bool on);
    bool IsRoiEnabled() const; ///< whether it is on
    /// Opens the window of the regions if necessary, and places it beside the parent.
    void refreshROI();
    /// Shows or hides the menu entry; hiding it switches the tool off.
    void showRoiMenu(bool visible);
    /// Hides the window of the regions if the tool is on. The tool remains checked.
    void closeROI();
    /// The list of regions; null until the tool was first switched on.
    ViewSelectedROI* GetViewSelectedROI();

    // Files - xy2dgraphwidget_files.cpp

    /// The plot with overlay and colour bar, as a new pixmap that the caller owns.
    QPixmap* toPixmap() override;

Q_SIGNALS:
    void onColorBarChanged(XY2DGraphWidget* widget); ///< the colours of the scale were set by this plot
    void onSelectRoiBegin(const QList<QRect>& roiList); ///< the region tool was switched on
    void onSelectRoiChanged(const QList<QRect>& roiList); ///< a region was added, changed or removed
    void onSelectRoiEnd(); ///< the region tool was switched off

public Q_SLOTS:
    // Colour scale, continued
    void onAutoScaleZToggled(bool checked); ///< off: the limits are kept and the bar's labels can be edited. Refreshes.
    void onMaxZChanged(double max); ///< sets the upper limit of the scale
    // Cut, continued
    void onParentMoved(); ///< the owner's window was moved; moves the cut and region windows along
    void onParentActivate(); ///< the owner's window became active; raises these windows
    void on1dCutEntered(); ///< Return in the editor of an edge; a value outside of the visible range is ignored
    // Files, continued
    void onColorBarMenuHide(); ///< deletes the menu after it was closed
    // Data, continued
    void onAutoScaleX(bool) override; ///< fits to the longest row
    void onAutoScaleY(bool) override; ///< fits to the number of rows
    void onReset() override; ///< also resets the cut if it is active
    // Files, continued
    void onSave() override; ///< with overlay and colour bar
    void onPrint() override; ///< with both cut windows open, the three plots on one page
    void onSaveCsv(); ///< writes all bins, one line for each row; does nothing if the file cannot be opened
    // Cut, continued
    void on1dCut(bool); ///< switches the tool: on cuts all bins and opens the windows; off closes them
    void on1dCutInside(bool); ///< cut plots show only bins inside the rectangle
    void on1dCutEdited(double x_min, double x_max, double y_min, double y_max); ///< from the range box
    // Colour scale, continued
    void onLogScale(bool); ///< log scale of the colours and of the Y axes of the cut plots. Refreshes.
    // Regions, continued
    void onROI(bool); ///< switches the tool: opens or hides the window of the regions, and emits a signal
    // Colour scale, continued
    void onMinZChanged(double min); ///< sets the lower limit of the scale
    void onColorBarSizeChanging(int width); ///< sets the width of the colour bar
    /// Asks for the colour of one point of the scale. @{
    void onMinColor();
    void onHalfMinColor();
    void onHalfColor();
    void onHalfMaxColor();
    void onMaxColor();
    /// @}
    void updatePattern(); ///< the colours were set: repaints and emits onColorBarChanged()
    /// Sets the five colours of all maps; this one repaints. @{
    void onPatternRainbow1();
    void onPatternRainbow2();
    void onPatternGrays();
    void onPatternBlueRedGreen();
    void onPatternRedWhiteBlue();
    void onPatternCyanMagenta();
    void onPatternYellowHot();
    void onPatternBlue();
    void onColorReverse();
    /// @}
    void onBackGroundColor(); ///< lets the user choose the background of all plots; repaints this one
    /// An editor of the colour bar was opened or closed. @{
    void onEditingColorBar();
    void onFinishEditingColorBar();
    /// @}
    // Regions, continued
    /// Called by the list of regions: repaints, and emits onSelectRoiChanged() if the rectangles have changed.
    void onROIChanged(const QList<QRect>& roiList, int selectedIndex, bool dataChanged);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    // Data
    QList<QList<double>> m_data; ///< [row][column]; rows may differ in length
    QList<double> m_rowMax; ///< parallel to m_data, as passed to setData()

    // Colour bar
    QPushButton* m_autoButton; ///< "Auto" or "Manual"
    ColorBarWidget* m_colorBar; ///< a child, at the right edge
    QMenu* m_colorBarMenu = nullptr; ///< the open menu
    double m_minZ = 0.0; ///< value at the bottom of the scale
    double m_maxZ = 100.0; ///< value at the top

    /// Axis units per bin, 0 derives them; and on axes that are not manual, at least 1. @{
    double m_stepX = 0.0, m_stepY = 0.0;
    unsigned int m_resolutionX = 1, m_resolutionY = 1;
    /// @}

    QAction* m_act1dCut; ///< the tool's entry of the menu
    bool m_1dCutMode = false; ///< the tool is on
    bool m_1dCutActive = false; ///< there is a rectangle: sums are computed, its edges can be dragged
    QAction* m_act1dCutInside; ///< second menu entry, visible while the tool is on
    bool m_1dCutInside = false; ///< see on1dCutInside()

    // Colour scale
    bool m_logScale = false; ///< logarithmic colours

    /// The rectangle of the cut. @{
    double m_cutMinX = 0.0, m_cutMaxX = 0.0, m_cutMinY = 0.0, m_cutMaxY = 0.0;
    /// @}
    QRect m_cutPixelRect; ///< in widget pixels, as last painted
    int m_cutDragEdge = 0; ///< 0 none, 1 left, 2 right, 3 top, 4 bottom
    /// Each contains its cut window with a null key. @{
    ModelessWidgetManager m_cutXWindows, m_cutYWindows;
    /// @}
    XYRangeInputDialog* m_cutRangeDialog = nullptr; ///< the open range box, a child

    // Painting
    QList<QPointF> m_points; ///< crosses, in axis units

    // Regions
    QAction* m_actRoi = nullptr; ///< null until the tool is available
    QRect m_roiRange; ///< whole axis units
    QDialog* m_roiWindow = nullptr; ///< a child; null until the tool was first switched on

    // Mouse
    QPoint m_pressPos; ///< position of the last press

    bool m_display1dCutIntensity = false; ///< see setDisplay1dCutIntensity()

    /// An editor of the colour bar has ever been opened or closed; never reset. @{
    bool m_editingColorBar = false, m_finishedEditingColorBar = false;
    /// @}

private:
    friend class tarnis::PlotAccess;
    // Each does the steps of one concern, on the members above, which subclasses read and write.
    class TARNIS_NO_EXPORT ColourControls;
    class TARNIS_NO_EXPORT Cut;
    class TARNIS_NO_EXPORT Regions;
    struct TARNIS_NO_EXPORT Parts;
    TARNIS_NO_EXPORT tarnis::BinAxis binAxisX();
    TARNIS_NO_EXPORT tarnis::BinAxis binAxisY();
    TARNIS_NO_EXPORT qsizetype columnCount() const;
    TARNIS_NO_EXPORT void onViewChanged();
    TARNIS_NO_EXPORT tarnis::MouseState mouseState() const;
    TARNIS_NO_EXPORT tarnis::EdgeState edgeState() const;
    TARNIS_NO_EXPORT void uncheckTools();
    TARNIS_NO_EXPORT QString readOutAt(const QPoint& point);
    TARNIS_NO_EXPORT void paintPoints(QPainter& painter, const QRect& graph) const;
    TARNIS_NO_EXPORT int besideBar() const;
    TARNIS_NO_EXPORT tarnis::ScreenPlace screenPlace();
    TARNIS_NO_EXPORT void printWithCuts(VectorGraphWidget& plotX, VectorGraphWidget& plotY);

    std::unique_ptr<Parts> m_parts;
    std::unique_ptr<tarnis::MapColouring> m_colouring; // null until set by a tool
};
