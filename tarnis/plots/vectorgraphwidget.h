// A plot of one series of samples, with one peak curve over it, a CSV file and a peak search dialog. GUI thread only.
#pragma once

#include <tarnis/foundation/modelesswidgetmanager.h>
#include <tarnis/peak/peaksearch.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QList>

/// Shows samples as a joined line; sample i stands in the middle of the bin from i to i + 1, or, on a manual X axis, in
/// the middle of its share of the initial range. The caller tells the largest sample. Setters store and do not repaint
/// unless they say so: end a batch with refreshPixmap().
class TARNIS_EXPORT VectorGraphWidget : public XYGraphWidget {
    Q_OBJECT

public:
    /// An empty plot with "Save CSV..." in its menu.
    explicit VectorGraphWidget(QWidget* parent = nullptr);
    ~VectorGraphWidget() override;

    /// The samples, any number. With automatic X the axis takes their number, rounded up.
    void setData(const QList<double>& samples);
    /// Abscissae, for the first column of the CSV file alone.
    void setIndex(const QList<double>& index);
    /// The largest sample. With automatic Y it stands at 90 % of the axis or a little below.
    void setMaxValue(double value);
    /// Refits an automatic Y axis; its minimum stays. Refreshes.
    void setLogScaleY(bool on) override;
    /// Shows this peak instead of the one before. Its `center` and `sigma` are in units of the X axis. Refreshes.
    void showPeak(const PeakSearch::Gaussian& g);
    /// Draws the curve with the painter's pen: `x0` is the column of the left end of the X axis, `y0` the row of the
    /// lower end of the Y axis, `scaleY` the pixels per unit of Y. Linear in Y on a log axis too.
    void paintPeak(QPainter& painter, const PeakSearch::Gaussian& g, double scaleY, int x0, int y0);

public Q_SLOTS:
    /// When switched on: fits the axis to the samples, or X to its initial range if init() made it so, and refreshes.
    /// @{
    void onAutoScaleX(bool checked) override;
    void onAutoScaleY(bool checked) override;
    /// @}
    /// Asks for a file and writes a line a sample, with the abscissa before it if there are as many as samples. Silent
    /// where it cannot.
    void onSaveCsv();
    /// Opens the peak search dialog, or brings the open one to the front.
    void onPeakSearch();
    /// Searches the samples in view; `threshold` is a percentage of the largest sample. Shows nothing: see showPeak().
    void peakSearch(int threshold, int width, bool peak);

public:
    void onPaint(QPainter& painter, QRect const& graph) override;

protected:
    QList<double> m_data; ///< see setData()
    double m_maxValue = 0.0; ///< as told by setMaxValue()
    QList<double> m_index; ///< see setIndex()
    QList<PeakSearch::Gaussian> m_peaks; ///< the peak on show: one at most
    ModelessWidgetManager m_modeless; ///< the open peak search dialog, key this

private:
    friend class tarnis::PlotAccess;
};
