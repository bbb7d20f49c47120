// Fitting peaks of a plot, with a table of the parameters.
#pragma once

#include <tarnis/analysis/spectrumfit.h>
#include <tarnis/plots/axisrange.h>
#include <tarnis/tarnis_export.h>

#include <QJsonObject>
#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A panel beside a plot of curves that fits its peaks. A drag on the plot chooses the range, clicks choose peaks; the
/// guess appears at once, dashed. Parameters can be fixed, bounded and tied in the table, and a typed value is where
/// the fit begins. Values are shown as value(uncertainty); files and the clipboard carry all digits. Fits run on a
/// thread of the global pool. Residuals of the shown result are below the table, on the axis of the plot.
///
/// While it follows the plot, it fits again every few seconds if data have arrived. A fit that is not acceptable then
/// leaves the last good one in the table and on the plot, and the line below says why. GUI thread only.
class TARNIS_EXPORT FitPanel : public QWidget {
    Q_OBJECT

public:
    /// A panel for a plot, which may be destroyed first: then the panel keeps its last result.
    explicit FitPanel(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~FitPanel() override;

    XYGraphWidget* plot() const; ///< null once it has been destroyed

    AxisRange range() const; ///< in units of X; equal ends: none was chosen
    void setRange(double lower, double upper); ///< guesses
    const FitModel& model() const; ///< with the constraints of the table
    void setModel(const FitModel& model); ///< guesses
    const FitOptions& options() const; ///< statistic and evaluation
    void setOptions(const FitOptions& options); ///< for the next fit
    bool isAutomatic() const; ///< as many peaks as the contents justify
    void setAutomatic(bool on); ///< for the next fit

    const FitResult& result() const; ///< as shown: a guess, a fit, or the last good fit
    bool isGuess() const; ///< result() is a guess
    bool isRunning() const; ///< a fit is under way
    QString message() const; ///< verdict and reasons, as shown
    /// Seconds between fits of a live plot, 0: it does not follow. @{
    int followSeconds() const;
    void setFollowSeconds(int seconds);
    /// @}

    QString table() const; ///< the result: name, value, error with all digits, separated by tabs
    QString historyTable() const; ///< all fits of the panel, one a line, with all digits, separated by tabs

    /// Range, model, options and constraints for a stored view; restoring guesses and keeps what is missing. @{
    QJsonObject saveState() const;
    void restoreState(const QJsonObject& state);
    /// @}

public Q_SLOTS:
    void guess(); ///< draws first values for the present range and model
    void fit(); ///< starts a fit of the present data
    void clear(); ///< no range and no curves on the plot; the history stays

Q_SIGNALS:
    void guessed(); ///< result() is a new guess
    void fitted(); ///< a fit has ended; result() holds it unless an earlier good one was kept
    void stateChanged(); ///< saveState() differs

protected:
    void changeEvent(QEvent* event) override;

private:
    struct TARNIS_NO_EXPORT Internals;
    TARNIS_NO_EXPORT void connectControls();
    TARNIS_NO_EXPORT void connectPlot();
    TARNIS_NO_EXPORT void readControls();
    TARNIS_NO_EXPORT void showControls();
    TARNIS_NO_EXPORT void addPeakAt(double x, double tolerance);
    TARNIS_NO_EXPORT void showResult(const QString& note);
    TARNIS_NO_EXPORT void showHistory();
    TARNIS_NO_EXPORT void showTrend();
    TARNIS_NO_EXPORT void showMessage(const QString& text, bool isGood);
    TARNIS_NO_EXPORT void onDataChanged();

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
