// An energy calibration from the peaks of a plot.
#pragma once

#include <tarnis/analysis/calibrationlines.h>
#include <tarnis/analysis/energycalibration.h>
#include <tarnis/tarnis_export.h>

#include <QWidget>

#include <memory>

class XYGraphWidget;

namespace tarnis {

/// A panel beside a plot of curves that fits its peaks, assigns lines of known energy to them, and fits a polynomial
/// with the covariance of its coefficients. Lines come from the built-in sources or a file. In the table an energy can
/// be typed for any peak, and a line can be left out; the fit follows at once. The calibration is applied to the axis
/// and the read-outs of the plot and to the results of its panels (PlotCalibration), saved and loaded. GUI thread only.
class TARNIS_EXPORT CalibrationPanel : public QWidget {
    Q_OBJECT

public:
    /// A panel for a plot, which may be destroyed first.
    explicit CalibrationPanel(XYGraphWidget* plot, QWidget* parent = nullptr);
    ~CalibrationPanel() override;

    XYGraphWidget* plot() const; ///< null once it has been destroyed
    /// Built-in sources joined by "+", for example "ba133+cs137". An unknown name is reported in message(). @{
    QString source() const;
    void setSource(const QString& names);
    /// @}
    /// Reads lines from a file in place of the source's. The error is for the user; empty on success.
    QString loadLines(const QString& path);
    /// Degree of the polynomial: 1 or 2; 0, the first one: 2, or 1 for three lines. @{
    int degree() const;
    void setDegree(int degree);
    /// @}
    const EnergyCalibration& calibration() const; ///< not valid without one
    bool isRunning() const; ///< the peaks are being fitted
    QString message() const; ///< about the calibration, or why there is none

    /// Writes the calibration to a file, and reads one. The error is for the user; empty on success. @{
    QString saveCalibration(const QString& path) const;
    QString loadCalibration(const QString& path);
    /// @}

public Q_SLOTS:
    void calibrate(); ///< fits the peaks of the present data and assigns the lines to them
    void apply(); ///< puts the calibration on the plot; message() says why it cannot
    void remove(); ///< takes the calibration off the plot

Q_SIGNALS:
    void calibrated(); ///< calibration() or message() is new

protected:
    void changeEvent(QEvent* event) override;

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
