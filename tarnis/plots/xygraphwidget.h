// The base class of all plots: two ranges, ticks with labels, grid, notes, the mapping between pixels and values, and
// the mouse tools. It draws no data. GUI thread only.
#pragma once

#include <tarnis/plots/doublebufferedwidget.h>

#include <QColor>
#include <QList>
#include <QMargins>
#include <QPoint>
#include <QPrinter>
#include <QRect>
#include <QRubberBand>
#include <QString>

#include <memory>

QT_BEGIN_NAMESPACE
class QAction;
class QLineEdit;
QT_END_NAMESPACE
class XRangeInputDialog;
namespace tarnis {
class LabelCache;
class PlotAccess;
class PlotHooks;
enum class MouseStep;
struct PlotRanges;
} // namespace tarnis

/// A plot frame. A subclass draws its data in onPaint(), inside the clipped plot rectangle. Setters do not repaint
/// unless documented: end a batch with refreshPixmap().
class TARNIS_EXPORT XYGraphWidget : public DoubleBufferedWidget {
    Q_OBJECT

public:
    /// Creates automatic axes with ranges of 0 to 0, and the actions of the menu. Call init() next.
    explicit XYGraphWidget(QWidget* parent = nullptr);
    ~XYGraphWidget() override;

    /// Fill colour of the plot rectangle, shared by all plots of the process. Initially black.
    static QColor m_backGroundColor;

    // Setup and ranges - xygraphwidget.cpp

    /// Sets names, ranges from 0 to the rounded maximum, and automatic scaling for both axes. Ends any manual range.
    void init(const QString& nameX, const QString& nameY, double maxX, double maxY, bool autoX, bool autoY);
    /// Fixes the range of the axis: visible and initial range are min to max, unrounded; min may be above max. @{
    void initManualX(double min, double max);
    void initManualY(double min, double max);
    /// @}
    /// Sets automatic scaling of both axes and updates the mouse tool.
    void initMode(bool autoX, bool autoY);
    /// Sets the visible range without rounding; automatic scaling is unchanged. @{
    void setMinMaxX(double min, double max);
    void setMinMaxY(double min, double max);
    /// @}
    /// Writes the visible range to the arguments; returns whether the axis scales automatically. @{
    bool getMinMaxX(double& min, double& max);
    bool getMinMaxY(double& min, double& max);
    /// @}
    /// Writes the range passed to init(), initManualX() or initManualY() to the arguments. @{
    void getInitMinMaxX(double& min, double& max) const;
    void getInitMinMaxY(double& min, double& max) const;
    /// @}
    /// On a change: new initial and visible maximum (rounded unless the range is manual), and a refresh.
    void setInitMaxX(double max);
    /// Name beside the axis. On a change: a refresh. @{
    void setNameX(const QString& name);
    void setNameY(const QString& name);
    QString getNameX() const;
    QString getNameY() const;
    /// @}
    /// Free text above the plot, right-aligned.
    void setNotes(const QString& notes);
    /// Heading of the printed page. Shown on the screen only by a tarnis::PlotStyle.
    void setTitle(const QString& title);
    /// Requested decimals of the axis. If 0, no tick step is below 1. A new value affects the Y ticks at the next paint
    /// and the X ticks one paint later. @{
    void setDecimalX(int decimal);
    void setDecimalY(int decimal);
    int getDecimalX() const;
    int getDecimalY() const;
    /// @}
    /// Sets a logarithmic Y axis. Refreshes.
    virtual void setLogScaleY(bool on);
    /// Grid over the data instead of under it. Refreshes.
    void SetPaintGridLineOnGraph(bool on);
    /// A second scale for X: ticks are at its round values, and the editors of the axis ends use it. Both functions get
    /// `userData` as their last argument; null means the identity.
    void setFuncX2Tick(double (*x2tick)(double, void*), double (*tick2x)(double, void*), void* userData);

    // Ticks and mapping - xygraphwidget_ticks.cpp

    /// log10(x) for x above 0, else 0.
    static double LOG10(double x);
    /// The value in the process-wide number format. @{
    QString getLabelX(double value);
    QString getLabelY(double value);
    /// @}
    /// Average width and height of a character in the widget's font.
    void getCharSize(int& width, int& height);
    /// Space for labels and names around the plot rectangle.
    void getMargin(QSize& topLeft, QSize& bottomRight);
    /// Round values from `a` to `b`, descending if a is above b. `decimal` is the requested number of decimals; if it
    /// is not 0 and the step is below 1, it receives the number used (at most 3).
    static QList<double> calcTicks(double a, double b, int& decimal);
    /// Rounds a maximum up to a multiple of the tick step; `ticks` receives the number of steps, at least 4. Negative
    /// values yield NaN.
    /// @{
    double adjustAxis(double value, unsigned int& ticks);
    double adjustAxis(double value);
    /// @}
    /// Sets the visible maximum: the initial one on a manual axis, else the rounded value.
    void adjustAxisX(double value);
    /// As above; on a log axis the first power of ten from 1 on that is not below the value.
    void adjustAxisY(double value);
    /// Converts pixels to values with the plot rectangle of the last paint; linear also on a log axis.
    QPointF calcGraphPointF(const QPointF& point) const;
    /// As above for integers, rounded to the nearest; values beyond int are clamped.
    QPoint calcGraphPoint(const QPoint& point) const;
    /// Converts values to pixels, the inverse.
    QPointF calcWidgetPointF(const QPointF& point) const;
    QPoint calcWidgetPoint(const QPoint& point) const; ///< as above for integers, rounded as in calcGraphPoint()

    // Painting - xygraphwidget_paint.cpp

    /// Draws frame, ticks, grid and notes, and calls onPaint(). On return the clip is the plot rectangle.
    void paint(QPainter& painter, QRect* rect) override;
    /// The picture of the plot as a new pixmap that the caller owns: a copy of the cached one, or a newly drawn one.
    virtual QPixmap* toPixmap();

    // Selection of an X range - xygraphwidget_range.cpp

    /// Shows or hides the two menu entries; `name` replaces "X" in them.
    void SetEnableSelectXRangeFeature(bool enable, const QString& name);
    bool IsEnableSelectXRangeFeature() const; ///< whether they are shown
    bool IsEnableSelectXRange() const; ///< whether the selection tool is on
    /// Switches the selection tool on or off.
    void SetEnableSelectXRange(bool enable);
    /// Writes the selected range to the arguments; returns true if there is one.
    bool GetXRange(double& min, double& max) const;
    /// Selects the range, in either order, and emits xRangeSelected(); equal ends select nothing. For an unchanged
    /// range only the open box is updated. Repaints at once: must not be called while painting.
    void SetXRange(double min, double max);

Q_SIGNALS:
    void xRangeSelectBegin(); ///< the selection tool was switched on; its box is open
    void xRangeSelected(double /*min*/, double /*max*/); ///< on each change of the range
    void xRangeSelectEnd(); ///< the selection tool is being switched off; its box still exists
    void xRangeSelectClear(); ///< the user cleared the range

public Q_SLOTS:
    // Editors of the axis ends - xygraphwidget_edit.cpp
    /// Asks for the limit in a dialog; a minimum above the maximum is ignored. @{
    void onEditMinY();
    void onEditMaxY();
    /// @}
    // Selection of an X range, continued
    void onParentMoved(); ///< the owner's window was moved; moves the range box along
    void onParentActivate(); ///< the owner's window became active; raises the range box
    // Setup and ranges, continued
    /// Stores the flag and updates the check mark. Subclasses refit the range to their data. @{
    virtual void onAutoScaleX(bool checked);
    virtual void onAutoScaleY(bool checked);
    /// @}
    // Mouse tools - xygraphwidget_mouse.cpp
    /// If the tool's action is checked, the others are unchecked. @{
    virtual void onRectangle();
    virtual void onZoomIn();
    virtual void onZoomOut();
    virtual void onMove();
    /// @}
    virtual void onReset(); ///< both axes scale automatically again
    virtual void onShowGrid(); ///< toggles the grid; the check mark is unchanged
    // Files and printing - xygraphwidget_files.cpp
    virtual void onSave(); ///< asks for a file name; a failed write is reported in a message box
    virtual void onPrint(); ///< prints title and plot on one page
    // Selection of an X range, continued
    /// Opens the range box beside the parent, replacing the mouse tools, or closes it; emits a signal.
    virtual void onSelectXRange(bool);
    virtual void onClearXRange(); ///< clears the selection and emits xRangeSelectClear()
    /// Return in the open editor: sets the end and ends automatic scaling. A value that would reverse the range is
    /// ignored. @{
    void onMinXEntered();
    void onMaxXEntered();
    void onMinYEntered();
    void onMaxYEntered();
    /// @}
    void onTofRangeEdited(double x_min, double x_max); ///< called by the range box; as SetXRange()

public:
    /// Sets mode and cursor according to the check marks of the tools.
    virtual void updateModeAndCursor();
    /// Draws over the picture, directly on the screen: the two lines of the selected X range.
    virtual void paintSelectedRect(QPainter& painter);
    /// Draws the data into the clipped plot rectangle. Does nothing here.
    virtual void onPaint(QPainter& painter, QRect const& graph);
    /// End of a rubber band: zooms to the values, or selects the X range. An axis whose upper end would not be above
    /// the lower one is unchanged.
    virtual void onSetRectangle(double x1, double x2, double y1, double y2);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

    /// The visible ranges. @{
    double m_minX = 0.0, m_maxX = 0.0;
    double m_minY = 0.0, m_maxY = 0.0;
    /// @}
    /// The ranges as passed at setup. @{
    double m_initMinX = 0.0, m_initMaxX = 0.0;
    double m_initMinY = 0.0, m_initMaxY = 0.0;
    /// @}
    /// The selected X range; equal values select nothing. @{
    double m_xRangeMin = 0.0, m_xRangeMax = 0.0;
    /// @}
    /// The subclass fits the range to its data. @{
    bool m_autoScaleX = true, m_autoScaleY = true;
    /// @}
    bool m_initAutoScaleX = true; ///< as passed to init()
    /// The maximum stays the initial one, unrounded. @{
    bool m_manualX = false, m_manualY = false;
    /// @}

    /// Decimals of the ticks: requested, and the working copies of a paint. @{
    int m_decimalX = 0, m_decimalY = 0;
    int m_tickDecimalX = 0, m_tickDecimalY = 0;
    /// @}
    void* m_funcUserData = nullptr; ///< see setFuncX2Tick()
    bool m_logScaleY = false; ///< see setLogScaleY()
    bool m_paintGridOnGraph = false; ///< see SetPaintGridLineOnGraph()

    /// The texts on and above the plot, and of its printed page. @{
    QString m_nameX, m_nameY;
    QString m_notes;
    QString m_title;
    /// @}

    // Geometry
    QRect m_graphRect; ///< inner plot rectangle of the last paint, in the painter's coordinates
    QMargins m_margin; ///< margins of the frame

    // Mouse
    int m_mode = 0; ///< 0 none, 1 rubber band, 2 zoom in, 3 zoom out, 4 move
    bool m_selecting = false; ///< a drag is under way
    QRect m_selectRect; ///< the rubber band, not clipped
    QRubberBand m_rubberBand; ///< the visible rubber band, clipped
    QPoint m_lastPos; ///< previous position while moving

    /// Entries of the menu, owned by the widget. @{
    QAction* m_actAutoScaleX;
    QAction* m_actAutoScaleY;
    QAction* m_actRectangle;
    QAction* m_actZoomIn;
    QAction* m_actZoomOut;
    QAction* m_actMove;
    QAction* m_actShowGrid;
    QAction* m_actSelectXRange;
    QAction* m_actClearXRange;
    /// @}

    /// The labels that open an editor, in pixels of the widget. @{
    QRect m_labelRectMinX, m_labelRectMaxX, m_labelRectMinY, m_labelRectMaxY;
    /// @}
    QLineEdit* m_edit = nullptr; ///< the open editor, a child

    bool m_showGrid = true; ///< see onShowGrid()
    QPrinter m_printer; ///< keeps the settings between prints
    /// See setFuncX2Tick(); never null. @{
    double (*m_funcX2Tick)(double, void*);
    double (*m_funcTick2X)(double, void*);
    /// @}

    QString m_xRangeName; ///< the name for X in the menu and the range box
    XRangeInputDialog* m_xRangeDialog = nullptr; ///< the open box, a child

    std::unique_ptr<tarnis::LabelCache> m_labels; ///< layouts of tick labels

private:
    friend class tarnis::PlotAccess;
    std::unique_ptr<tarnis::PlotHooks> m_hooks; // null until an observer or an overlay attaches

protected:
    /// @cond
    // Observers and overlays
    TARNIS_NO_EXPORT void viewTouched();
    TARNIS_NO_EXPORT void dataTouched();
    TARNIS_NO_EXPORT bool isReadOutByTool() const;
    TARNIS_NO_EXPORT std::unique_ptr<QPixmap> copyWithOverlays() const;
    // Steps of the mouse tools and editors
    TARNIS_NO_EXPORT tarnis::PlotRanges visibleRanges() const;
    TARNIS_NO_EXPORT void changeRanges(const tarnis::PlotRanges& ranges);
    TARNIS_NO_EXPORT void takeStep(tarnis::MouseStep step, const QPoint& point);
    TARNIS_NO_EXPORT void showRubberBand();
    TARNIS_NO_EXPORT void finishRubberBand();
    TARNIS_NO_EXPORT void dropEditor();
    TARNIS_NO_EXPORT void openEditorAt(const QPoint& point);
    TARNIS_NO_EXPORT void enterMinY(double value);
    TARNIS_NO_EXPORT void enterMaxY(double value);
    /// @endcond
};
