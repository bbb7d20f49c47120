// A plot of one series of samples, with one peak curve over it, a CSV file and a peak search dialog. GUI thread only.
#pragma once

#include <tarnis/foundation/modelesswidgetmanager.h>
#include <tarnis/peak/peaksearch.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QList>
#include <QPointer>

class XY2DGraphWidget;

/// Shows samples as a joined line. Sample i is at the middle of the bin from i to i + 1 or, on a manual X axis, at the
/// middle of its part of the initial range. The caller sets the largest sample. Setters do not repaint unless
/// documented: end a batch with refreshPixmap().
class TARNIS_EXPORT VectorGraphWidget : public XYGraphWidget {
    Q_OBJECT

public:
    /// An empty plot with "Save CSV..." in its menu.
    explicit VectorGraphWidget(QWidget* parent = nullptr);
    ~VectorGraphWidget() override;

    /// Sets the samples. An automatic X axis extends to their number, rounded up.
    void setData(const QList<double>& samples);
    /// Sets abscissae, which are only used for the first column of the CSV file.
    void setIndex(const QList<double>& index);
    /// Sets the largest sample. On an automatic Y axis it is at 90 % of the axis or slightly below.
    void setMaxValue(double value);
    /// Refits an automatic Y axis; its minimum is unchanged. Refreshes.
    void setLogScaleY(bool on) override;
    /// Shows this peak instead of the previous one. Its `center` and `sigma` are in units of the X axis. Refreshes.
    void showPeak(const PeakSearch::Gaussian& g);
    /// Draws the curve with the painter's pen: `x0` is the column of the left end of the X axis, `y0` the row of the
    /// lower end of the Y axis, `scaleY` the pixels per unit of Y. Linear in Y, also on a log axis.
    void paintPeak(QPainter& painter, const PeakSearch::Gaussian& g, double scaleY, int x0, int y0);

public Q_SLOTS:
    /// When switched on: fits the axis to the samples, or X to its initial range if set by init(), and refreshes.
    /// @{
    void onAutoScaleX(bool checked) override;
    void onAutoScaleY(bool checked) override;
    /// @}
    /// Asks for a file and writes one line per sample, preceded by its abscissa if there are as many as samples. Errors
    /// are not reported.
    void onSaveCsv();
    /// Opens the peak search dialog, or raises the open one.
    void onPeakSearch();
    /// Searches the visible samples; `threshold` is a percentage of the largest sample. Does not show the peaks, see
    /// showPeak().
    void peakSearch(int threshold, int width, bool peak);

public:
    void onPaint(QPainter& painter, QRect const& graph) override;

protected:
    QList<double> m_data; ///< see setData()
    double m_maxValue = 0.0; ///< as set by setMaxValue()
    QList<double> m_index; ///< see setIndex()
    QList<PeakSearch::Gaussian> m_peaks; ///< the shown peak: at most one
    ModelessWidgetManager m_modeless; ///< the open peak search dialog, with `this` as key

private:
    friend class tarnis::PlotAccess;
    QPointer<XY2DGraphWidget> m_cutMap; // of a plot in a window of that map's 1D cut
};
