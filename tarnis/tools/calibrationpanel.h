// A panel that makes an energy calibration from the peaks of a plot.
#pragma once

#include <tarnis/analysis/calibrationlines.h>
#include <tarnis/analysis/energycalibration.h>
#include <tarnis/tarnis_export.h>

#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A panel beside a plot of curves that fits its peaks, assigns lines of known energy to them, and fits a polynomial
/// with the covariance of its coefficients. Of several curves the user chooses one. Lines come from the built-in
/// sources or a file. In the table the user can enter an energy for any peak and exclude lines; the fit is updated at
/// once. The calibration is applied to the axis and the read-outs of the plot and to the results of its panels
/// (PlotCalibration), saved and loaded. GUI thread only.
class TARNIS_EXPORT CalibrationPanel : public QWidget {
    Q_OBJECT

public:
    /// Creates a panel for a plot, which may be destroyed first.
    explicit CalibrationPanel(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~CalibrationPanel() override;

    XYGraphWidget* plot() const; ///< the plot; null after it has been destroyed
    /// Built-in sources joined by "+", for example "ba133+cs137". An unknown name is reported in message(). @{
    QString source() const;
    void setSource(const QString& names);
    /// @}
    /// Reads lines from a file, replacing those of the source. Returns the error for the user; empty on success.
    QString loadLines(const QString& path);
    /// Degree of the polynomial: 1 or 2; 0 (default): 2, or 1 for three lines. @{
    int degree() const;
    void setDegree(int degree);
    /// @}
    const EnergyCalibration& calibration() const; ///< invalid without a calibration
    bool isRunning() const; ///< whether the peaks are being fitted
    QString message() const; ///< summary of the calibration, or why it is missing

    /// Writes and reads a calibration file. Returns the error for the user; empty on success. @{
    QString saveCalibration(const QString& path) const;
    QString loadCalibration(const QString& path);
    /// @}

public Q_SLOTS:
    void calibrate(); ///< fits the peaks of the current data and assigns the lines to them
    void apply(); ///< applies the calibration to the plot; message() contains the error, if any
    void remove(); ///< removes the calibration from the plot

Q_SIGNALS:
    void calibrated(); ///< calibration() or message() has changed

private:
    struct Internals;
    TARNIS_NO_EXPORT void build();
    TARNIS_NO_EXPORT void buildFileButtons();
    TARNIS_NO_EXPORT void setTexts();
    TARNIS_NO_EXPORT void fitPoints();
    TARNIS_NO_EXPORT void showCalibration(const QString& error);

    std::unique_ptr<Internals> m_data;
};

} // namespace tarnis
