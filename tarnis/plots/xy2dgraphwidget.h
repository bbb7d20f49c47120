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
class BinMap;
class ColorScale;
enum class CutContent;
enum class FivePoints;
struct AxisRange;
struct BinAxis;
struct MapColoring;
struct ScreenPlace;
} // namespace tarnis

/// An intensity map: a list of rows of bins, row 0 at the bottom. A bin that is 0 is not painted, so the background
/// shows; of several bins that begin in one pixel column the first one that is not 0 is shown. Setters of data do not
/// repaint: end a batch with refreshPixmap().
class TARNIS_EXPORT XY2DGraphWidget : public XYGraphWidget {
    Q_OBJECT

public:
    /// No rows, the colour bar automatic, the grid over the bins; to be followed by init().
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
    /// An axis on auto scale is fitted. `refresh` refreshes the cut windows if the cut is on. A negative row is
    /// ignored.
    void setData(int row, const QList<double>& values, double rowMax, bool refresh);
    /// Removes all rows, puts Z back to auto scale, closes the cut windows and hides the regions.
    void clearData();
    /// Gives the rows, implicitly shared.
    void getData(QList<QList<double>>& rows);
    /// Axis units per bin; 0 derives it from the initial range. @{
    void setStepX(double step);
    void setStepY(double step);
    /// @}
    /// The step in force: as set, or initial range by bins (of row 0), 1e-5 without rows. Not finite if row 0 is empty.
    /// @{
    double getStepX();
    double getStepY();
    /// @}
    /// Axis units per bin on axes that are not manual; 0 counts as 1. Refreshes on a change.
    void setResolution(unsigned int x, unsigned int y);
    /// Length of the longest row times the X resolution.
    int getMaxCount();
    /// Largest of the row maxima as given to setData(), at least 0.
    double getMaxValue();

    // Colour scale - xy2dgraphwidget_color.cpp

    /// Gives the value at the top of the scale; returns whether the scale is automatic.
    bool getMaxZ(double& maxZ);
    void setColorBarTicks(int ticks); ///< as ColorBarWidget::setTicks()
    /// Colour of a value; invalid where the scale is undefined, for NaN and for a value that equals both limits.
    QColor getColor(double value);
    /// Sets the five colours of all maps and, if it is valid, the background of all plots; repaints this plot. If one
    /// of the five is invalid: false, and nothing changes.
    bool updateColor(QColor max, QColor halfMax, QColor half, QColor halfMin, QColor min, QColor background);

    // Painting - xy2dgraphwidget_paint.cpp

    /// Adds a cross, in axis units. Refreshes.
    void showPoint(double x, double y);
    /// Removes all crosses. Refreshes.
    void hidePoint();
    /// Places button and colour bar for a widget of that size.
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
    /// Opens the range box and the cut windows where they are missing and places them beside the window. With
    /// `refreshData` the sums are made again.
    void refresh1dCut(bool refreshData);
    /// Sums of the visible bins by column, from left to right, and by row, from the bottom up.
    void get1dData(QList<double>& horizontal, QList<double>& vertical);
    /// Shows sums in the notes line of the cut plots. Refreshes on a change.
    void setDisplay1dCutIntensity(bool on);
    /// Cuts the visible range and shows the peaks in the cut plots; a peak with N 0 is left out.
    void show1dCutWithGauss(const PeakSearch::Gaussian& x, const PeakSearch::Gaussian& y);
    /// Ends the cut rectangle and closes the range box and the cut windows. The tool stays checked.
    void close1dCut();
    void updateModeAndCursor() override;
    /// End of a rubber band: zooms, cuts, or adds a region, by the tool that is checked.
    void onSetRectangle(double x1, double x2, double y1, double y2) override;
    /// Cuts along a rectangle that is clipped and rounded as bin numbers, whatever the axis.
    virtual void update1dCutRect(double x1, double x2, double y1, double y2);
    /// Cuts along a rectangle as it is given, corners in any order.
    virtual void update1dCutRectSimply(double x1, double x2, double y1, double y2);
    /// Sets the cut rectangle to all bins, counted in bins. No refresh.
    virtual void init1dCutRect();

    // Regions - xy2dgraphwidget_roi.cpp

    /// Offers the selection of regions inside `range`, in whole axis units. A range without width or height is refused.
    /// Called again it changes the range and clips the regions to it.
    void enalbeRoiSelect(QRect range);
    /// Switches the tool, if it is offered.
    void SetRoiEnabled(bool on);
    bool IsRoiEnabled() const; ///< whether it is on
    /// Opens the window of the regions where it is missing, and places it beside the parent.
    void refreshROI();
    /// Shows or hides the menu entry; hiding it switches the tool off.
    void showRoiMenu(bool visible);
    /// Hides the window of the regions if the tool is on. The tool stays checked.
    void closeROI();
    /// The list of regions; null until the tool was first switched on.
    ViewSelectedROI* GetViewSelectedROI();

    // Files - xy2dgraphwidget_files.cpp

    /// The plot with overlay and colour bar, as a new pixmap that the caller owns.
    QPixmap* toPixmap() override;

Q_SIGNALS:
    void onColorBarChanged(XY2DGraphWidget* widget); ///< the colours of the scale were set by this plot
    void onSelectRoiBegin(const QList<QRect>& roiList); ///< the region tool went on
    void onSelectRoiChanged(const QList<QRect>& roiList); ///< a region was added, changed or removed
    void onSelectRoiEnd(); ///< the region tool went off

public Q_SLOTS:
    // Colour scale, continued
    void onAutoScaleZToggled(bool checked); ///< off: the limits stay and the bar's labels can be edited. Refreshes.
    void onMaxZChanged(double max); ///< sets the upper limit of the scale
    // Cut, continued
    void onParentMoved(); ///< the owner's window moved: cut and region windows follow
    void onParentActivate(); ///< the owner's window became active: they come to the front
    void on1dCutEntered(); ///< Return in the editor of an edge; a value out of sight is ignored
    // Files, continued
    void onColorBarMenuHide(); ///< drops the menu that has closed
    // Data, continued
    void onAutoScaleX(bool) override; ///< fits to the longest row
    void onAutoScaleY(bool) override; ///< fits to the number of rows
    void onReset() override; ///< the cut, if it is on, follows
    // Files, continued
    void onSave() override; ///< with overlay and colour bar
    void onPrint() override; ///< with both cut windows open, the three plots on one page
    void onSaveCsv(); ///< all bins, one line for each row; a file that cannot be opened is dropped silently
    // Cut, continued
    void on1dCut(bool); ///< the tool: on, it cuts all bins and opens its windows; off, it closes them
    void on1dCutInside(bool); ///< cut plots leave out what lies outside of the rectangle
    void on1dCutEdited(double x_min, double x_max, double y_min, double y_max); ///< from the range box
    // Colour scale, continued
    void onLogScale(bool); ///< of the colours, and of the Y axes of the cut plots. Refreshes.
    // Regions, continued
    void onROI(bool); ///< the tool: opens or hides the window of the regions, and tells it by a signal
    // Colour scale, continued
    void onMinZChanged(double min); ///< sets the lower limit of the scale
    void onColorBarSizeChanging(int width); ///< gives the colour bar that width
    /// Asks for the colour of one point of the scale. @{
    void onMinColor();
    void onHalfMinColor();
    void onHalfColor();
    void onHalfMaxColor();
    void onMaxColor();
    /// @}
    void updatePattern(); ///< the colours were set: repaints and tells it
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
    void onBackGroundColor(); ///< asks for the background of all plots; this one repaints
    /// An editor of the colour bar opens, or is dropped. @{
    void onEditingColorBar();
    void onFinishEditingColorBar();
    /// @}
    // Regions, continued
    /// From the list of regions: repaints, and tells a change of the rectangles by onSelectRoiChanged().
    void onROIChanged(const QList<QRect>& roiList, int selectedIndex, bool dataChanged);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    // Data
    QList<QList<double>> m_data; ///< [row][column]; rows may differ in length
    QList<double> m_rowMax; ///< parallel to m_data, as given

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
    bool m_1dCutActive = false; ///< there is a rectangle: sums are made, its edges answer the mouse
    QAction* m_act1dCutInside; ///< its second entry, visible while it is on
    bool m_1dCutInside = false; ///< see on1dCutInside()

    // Colour scale
    bool m_logScale = false; ///< colours by the logarithm

    /// The rectangle of the cut. @{
    double m_cutMinX = 0.0, m_cutMaxX = 0.0, m_cutMinY = 0.0, m_cutMaxY = 0.0;
    /// @}
    QRect m_cutPixelRect; ///< in widget pixels, as last painted
    int m_cutDragEdge = 0; ///< 0 none, 1 left, 2 right, 3 top, 4 bottom
    /// Each holds its cut window under the key null. @{
    ModelessWidgetManager m_cutXWindows, m_cutYWindows;
    /// @}
    XYRangeInputDialog* m_cutRangeDialog = nullptr; ///< the open range box, a child

    // Painting
    QList<QPointF> m_points; ///< crosses, in axis units

    // Regions
    QAction* m_actRoi = nullptr; ///< null until the tool is offered
    QRect m_roiRange; ///< whole axis units
    QDialog* m_roiWindow = nullptr; ///< a child; null until the tool was first switched on

    // Mouse
    QPoint m_pressPos; ///< of the last press

    bool m_display1dCutIntensity = false; ///< see setDisplay1dCutIntensity()

    /// An editor of the colour bar was opened, or dropped, once; nothing clears them. @{
    bool m_editingColorBar = false, m_finishedEditingColorBar = false;
    /// @}

    std::unique_ptr<tarnis::BinMap> m_map; ///< paints the bins and keeps buffers for it

    /// Steps of the above. @{
    tarnis::BinAxis binAxisX();
    tarnis::BinAxis binAxisY();
    qsizetype columnCount() const;
    void feedColorBar();
    void fitColorScale();
    tarnis::ColorScale colorScale() const;
    void setColors(QColor max, QColor halfMax, QColor half, QColor halfMin, QColor min);
    void askColor(QColor& color, const QString& title);
    void openColorBarMenu(const QPoint& globalPosition);
    void paintPoints(QPainter& painter, const QRect& graph) const;
    void uncheckTools();
    tarnis::ScreenPlace screenPlace();
    tarnis::CutContent cutContent() const;
    void setCutRect(tarnis::AxisRange x, tarnis::AxisRange y);
    void fillRangeBox();
    void openCutWindow(ModelessWidgetManager& windows, bool upright);
    static VectorGraphWidget* cutPlot(const ModelessWidgetManager& windows);
    void fillCutX();
    void fillCutY();
    void placeCutWindows();
    void paintCut(QPainter& painter);
    bool takeEdge(Qt::MouseButton button, const QPoint& point);
    void openEdgeEditor(const QPoint& point);
    void enterEdge(double value);
    void moveEdge(int edge, double value);
    void finishEdgeDrag(const QPoint& point);
    QString readOutAt(const QPoint& point);
    void addRegion(double x1, double x2, double y1, double y2);
    void makeRegionWindow();
    void renewRegionWindow();
    void hideRegionWindow();
    void paintRegions(QPainter& painter);
    void printWithCuts(VectorGraphWidget& plotX, VectorGraphWidget& plotY);
    /// @}

private:
    friend class tarnis::PlotAccess;
    TARNIS_NO_EXPORT int besideBar() const;
    TARNIS_NO_EXPORT void setFivePoints(tarnis::FivePoints palette);
    std::unique_ptr<tarnis::MapColoring> m_coloring; // null until a tool makes a choice
};
