// A panel that fits peaks of a plot, with a table of the parameters.
#pragma once

#include <tarnis/analysis/spectrumfit.h>
#include <tarnis/plots/axisrange.h>
#include <tarnis/tarnis_export.h>

#include <QJsonObject>
#include <QWidget>

#include <memory>

QT_BEGIN_NAMESPACE
class QDateTime;
QT_END_NAMESPACE
class XYGraphWidget;

namespace tarnis {

struct PlotSpectrum;

/// A panel beside a plot of curves that fits its peaks. A drag on the plot selects the range, clicks select peaks. A
/// preview with the starting values appears at once, dashed. Parameters can be fixed, bounded and tied in the table; an
/// entered value is the starting value of the fit. Values are shown as value(uncertainty); files and the clipboard
/// contain all digits. Fits run on a thread of the global pool. Residuals of the shown result are below the table, on
/// the axis of the plot.
///
/// While it follows the plot, it repeats the fit every few seconds if data have arrived. If such a fit is not
/// acceptable, the last good one stays in the table and on the plot, and the line below shows the reason. GUI thread
/// only.
class TARNIS_EXPORT FitPanel : public QWidget {
    Q_OBJECT

public:
    /// Creates a panel for a plot, which may be destroyed first; the panel then keeps its last result.
    explicit FitPanel(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~FitPanel() override;

    XYGraphWidget* plot() const; ///< the plot; null after it has been destroyed

    AxisRange range() const; ///< the range in units of X; equal ends: none selected
    void setRange(double lower, double upper); ///< guesses
    const FitModel& model() const; ///< the model with the constraints of the table
    void setModel(const FitModel& model); ///< guesses
    const FitOptions& options() const; ///< statistic and evaluation
    void setOptions(const FitOptions& options); ///< takes effect with the next fit
    bool isAutomatic() const; ///< whether the number of peaks is determined automatically
    void setAutomatic(bool on); ///< takes effect with the next fit

    const FitResult& result() const; ///< the shown result: a preview, a fit, or the last good fit
    bool isGuess() const; ///< whether result() is a preview
    bool isRunning() const; ///< whether a fit is running
    QString message() const; ///< the shown verdict and reasons
    /// Seconds between fits of a live plot; 0: does not follow. @{
    int followSeconds() const;
    void setFollowSeconds(int seconds);
    /// @}

    QString table() const; ///< the result: name, value, error with all digits, separated by tabs
    QString historyTable() const; ///< all fits of the panel, one per line, with all digits, separated by tabs

    /// Range, model, options and constraints for a stored view. Restoring shows a preview; missing keys leave the
    /// current values unchanged. @{
    QJsonObject saveState() const;
    void restoreState(const QJsonObject& state);
    /// @}

public Q_SLOTS:
    void guess(); ///< shows the starting values for the current range and model
    void fit(); ///< starts a fit of the current data
    void clear(); ///< removes range and curves from the plot; keeps the history

Q_SIGNALS:
    void guessed(); ///< result() is a new preview
    void fitted(); ///< a fit has ended; result() is this fit unless a previous good one was kept
    void stateChanged(); ///< saveState() differs

private:
    struct TARNIS_NO_EXPORT Internals;
    TARNIS_NO_EXPORT void connectControls();
    TARNIS_NO_EXPORT void connectModel();
    TARNIS_NO_EXPORT void connectActions();
    TARNIS_NO_EXPORT void connectPages();
    TARNIS_NO_EXPORT bool checkRange();
    TARNIS_NO_EXPORT void connectPlot();
    TARNIS_NO_EXPORT void readControls();
    TARNIS_NO_EXPORT void showControls();
    TARNIS_NO_EXPORT void addPeakAt(double x, double tolerance);
    TARNIS_NO_EXPORT void showFit(
        const FitResult& result, const PlotSpectrum& spectrum, const QDateTime& time, bool isUsed);
    TARNIS_NO_EXPORT void showResult(const QString& note);
    TARNIS_NO_EXPORT void showParameters();
    TARNIS_NO_EXPORT void showGoodness(const QString& note);
    TARNIS_NO_EXPORT void showHistory();
    TARNIS_NO_EXPORT void showTrend();
    TARNIS_NO_EXPORT void showTrendNames(int first);
    TARNIS_NO_EXPORT void showMessage(const QString& text, bool isGood);
    TARNIS_NO_EXPORT void onDataChanged();

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
