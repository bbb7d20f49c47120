// A plot of many series in one frame: curves of single series or of sums, read-out, CSV files, selection of the visible
// series and peak search. GUI thread only.
#pragma once

#include <tarnis/foundation/modelesswidgetmanager.h>
#include <tarnis/peak/peaksearch.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QColor>
#include <QList>
#include <QString>

class QTableWidget;
namespace tarnis {
struct CurveDrawing;
}

/// Series in groups of `m_groupSize`: index = group * m_groupSize + position. A negative index is ignored; a group size
/// below 1 counts as 1. Setters do not repaint unless documented: end a batch with refreshPixmap().
class TARNIS_EXPORT MultiVectorGraphWidget : public XYGraphWidget {
    Q_OBJECT

public:
    /// One series.
    struct Data {
        QList<double> values; ///< the samples; empty for a record without samples
        QColor color = Qt::white; ///< pen colour
        bool enable = true; ///< shown
    };

    /// The curves that are drawn.
    enum AddType : int {
        AddNone = 0, ///< every enabled series
        AddEachGroup = 1, ///< the sum of each group
        AddEachPosition = 2, ///< for each position in a group, the sum over the groups
        AddAll = 3 ///< the sum of all enabled series; also used for any other value
    };

    /// Eight records without samples, in eight colours, and a grid.
    explicit MultiVectorGraphWidget(QWidget* parent = nullptr);
    ~MultiVectorGraphWidget() override;

    // Series - multivectorgraphwidget.cpp

    /// Stores a series, and `maxValue` as the largest value of its whole group; the last call for a group is effective.
    /// Adds default records up to `index`. Fits the automatic axes.
    void setData(int index, const QList<double>& values, double maxValue);
    /// Removes records at the end or adds default ones.
    void resizeData(int count);
    /// `enable` of a record; the setter adds default records up to `index`. @{
    void setEnable(int index, bool enable);
    void setColor(int index, QColor color);
    /// @}
    /// Resets to m_groupSize records without samples, and no peaks. Colours and `enable` are kept.
    void clearData();
    /// Whether any record has samples.
    bool hasData() const;
    /// Number of records with samples.
    int getValidDataCount();
    /// The largest number of samples of any record, including hidden ones, times the resolution.
    int getMaxCount();
    /// An upper bound of the curves of the current type; at least 0.
    double getMaxValue();
    /// Returns the samples of a record; false, without writing `values`, if there is no such record.
    bool getData(int index, QList<double>& values);
    /// Sets the first column of the CSV file.
    void setManualIndex(const QList<double>& index);
    /// X units per sample; 0 counts as 1. Refreshes on a change.
    void setResolution(unsigned int resolution);
    /// Refits the automatic axes, closes the visible-items dialog, and refreshes.
    void setAddType(AddType type);
    /// A non-linear X axis: `x2plot` maps a sample's position (index * resolution) to a plot X value, `plot2x` back.
    /// Both get null as their second argument. Removes "Peak Search" from the menu.
    void setFuncX2Plot(double (*x2plot)(double, void*), double (*plot2x)(double, void*));

    // Painting - multivectorgraphwidget_paint.cpp

    void onPaint(QPainter& painter, QRect const& graph) override;
    /// Draws samples with the painter's pen as columns, a joined line or crosses. `sx` is in pixels per sample, `sy` in
    /// pixels per unit or decade; `first` to `last` are the visible fractional indices; `x0`, `y0` is the lower left
    /// corner. Returns the sum of the drawn samples if they are joined, else 0.
    double paintData(QPainter& painter, const QList<double>& values, double sx, double first, double last, double sy,
        int x0, int y0);
    /// Draws the curve with the painter's pen: `x0` is the column of the left end of the X axis, `y0` the row of the
    /// lower end of the Y axis, `scaleY` the pixels per unit of Y. Linear in Y, also on a log axis.
    void paintPeak(QPainter& painter, const PeakSearch::Gaussian& g, double scaleY, int x0, int y0);

    // Tools - multivectorgraphwidget_tools.cpp

    /// The body of a CSV file: the manual index and a column for each enabled record.
    QString vector2Csv(const QList<Data>& list);
    /// Shows this peak instead of the previous ones. Its `center` and `sigma` are in units of the X axis. Refreshes.
    void showPeak(const PeakSearch::Gaussian& g);

public Q_SLOTS:
    void onSelectVisibles(); ///< opens the visible-items dialog, or raises the open one
    void onPainting(); ///< fits an automatic Y axis to the largest values, before the ticks are laid out
    /// When switched on: fits the axis to the series, or X to its initial range if set by init(), and refreshes. @{
    void onAutoScaleX(bool checked) override;
    void onAutoScaleY(bool checked) override;
    /// @}
    void onSelectXRange(bool) override; ///< without data the tool is switched off again
    void onDlgSelectCheckedApply(); ///< applies the check states of the visible-items dialog. Refreshes.
    /// Asks for a file and writes the curves of the current type. Errors are not reported.
    void onSaveCsv();
    void onPeakSearch(); ///< opens the peak search dialog, or raises the open one
    /// Searches the first enabled curve in the visible X range; `threshold` is a percentage of its largest sample.
    /// Shows the peaks in the plot and in the open dialog. Does nothing without an enabled curve.
    void peakSearch(int threshold, int width, bool peak);
    void peakSelected(int index); ///< the peak that is drawn bold, -1 for none. Refreshes on a change.
    void peakToggledDisplayPoints(bool checked); ///< fitted samples instead of curves. Refreshes.
    void peakClear(); ///< removes all peaks from the plot. Refreshes.
    void onConnectPoints(bool bConnectPoints); ///< a joined line, else crosses. Refreshes.
    void onColumnChart(bool bColumnChart); ///< columns, overriding onConnectPoints(). Refreshes.
    void onLogScale(bool); ///< as setLogScaleY()

protected:
    void mouseMoveEvent(QMouseEvent* event) override;

    QList<Data> m_data; ///< the series

public:
    int m_groupSize = 8; ///< series per group
    int m_firstNumber = 0; ///< number of the first group in texts

protected:
    AddType m_addType = AddNone; ///< see setAddType()
    QList<double> m_maxValues; ///< largest value of each group, as passed to setData()

    /// Open windows of the tools, with `this` as key. @{
    ModelessWidgetManager m_visibleDialogs;
    ModelessWidgetManager m_peakDialogs;
    /// @}

public:
    QString m_itemName; ///< term for a position in a group
    QString m_groupName; ///< term for a group

protected:
    QList<double> m_manualIndex; ///< see setManualIndex()

    // Peaks
    QList<PeakSearch::Gaussian> m_peaks; ///< on show
    int m_peakSelected = -1; ///< index in m_peaks, -1 for none
    double m_peakThreshold = 0.0; ///< threshold in Y units
    bool m_peakDisplayPoints = false; ///< fitted samples instead of curves

    // Form of the curves
    unsigned int m_resolution = 1; ///< X units per sample, at least 1
    bool m_columnChart = false; ///< see onColumnChart()
    bool m_connectPoints = true; ///< see onConnectPoints()
    /// See setFuncX2Plot(); null for a linear axis. @{
    double (*m_funcX2Plot)(double, void*) = nullptr;
    double (*m_funcPlot2X)(double, void*) = nullptr;
    /// @}

    QAction* m_actPeakSearch; ///< owned by the widget

    /// @cond
    // Steps of the above
    TARNIS_NO_EXPORT int groupSize() const; ///< m_groupSize, at least 1
    TARNIS_NO_EXPORT void fitAutoScaledAxes();
    TARNIS_NO_EXPORT tarnis::CurveDrawing drawingOf(
        double sx, double first, double last, double sy, int x0, int y0) const;
    TARNIS_NO_EXPORT void paintFoundPeaks(QPainter& painter, const QRect& graph, double first, double sx, double sy);
    TARNIS_NO_EXPORT void fillVisiblesTable(QTableWidget& table) const;
    /// @endcond

private:
    friend class tarnis::PlotAccess;
};
