/** @file
 * Energy of a position on an axis: a polynomial through known lines with its covariance. Pure functions and values,
 * re-entrant. Formulae and sources: docs/analysis.md. */
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QString>

#include <vector>

namespace tarnis {

/// A line of known energy at a measured position.
struct CalibrationPoint {
    double position = 0.0; ///< position on the axis, for example a channel
    double positionError = 0.0; ///< one standard deviation
    double energy = 0.0; ///< known
    double energyError = 0.0; ///< one standard deviation
    QString name; ///< name of the line, for example "Ba-133"
    double residual = 0.0; ///< energy - calibration, filled by the fit
};

/// A calibrated position with the components of its error.
struct CalibratedEnergy {
    double energy = 0.0; ///< in the unit of the calibration
    double errorFromPosition = 0.0; ///< error from the position
    double errorFromCalibration = 0.0; ///< error from the polynomial
    double error = 0.0; ///< both
    bool extrapolated = false; ///< outside of the range of the points
};

/// E = sum of coefficients[k] (x - reference)^k.
struct TARNIS_EXPORT EnergyCalibration {
    double reference = 0.0; ///< mean position of the points
    std::vector<double> coefficients; ///< two or three coefficients in powers of x - reference; empty: no calibration
    std::vector<double> covariance; ///< covariance of the coefficients, row-major; absolute, not scaled
    double chi2 = 0.0; ///< sum of the squared residuals over their variances
    int ndf = 0; ///< points - coefficients
    std::vector<CalibrationPoint> points; ///< the points with residuals, sorted by position
    QString unit = QStringLiteral("keV"); ///< unit of the energies
    QString source; ///< file or measurement that the points come from; may be empty

    /// Whether there is a calibration.
    bool isValid() const { return coefficients.size() >= 2; }
    /// 1 or 2.
    int degree() const { return static_cast<int>(coefficients.size()) - 1; }
    /// Energy at a position; NaN without a calibration.
    double energyAt(double x) const;
    /// dE/dx at a position, by which widths are converted.
    double slopeAt(double x) const;
    /// Energy with its error at a position with an error.
    CalibratedEnergy calibrated(double x, double error = 0.0) const;
    /// Error of the energy difference of two positions of one spectrum. The calibration errors are correlated.
    double differenceError(double x1, double error1, double x2, double error2) const;
    /// The position of an energy on the increasing branch of the points; NaN if the branch does not reach it.
    double positionOf(double energy) const;
    /// Coefficients in powers of x, lowest first. Only for other programs, because they are strongly correlated.
    std::vector<double> uncentred() const;
    /// Whether the energy increases over the complete range.
    bool risesFrom(double lower, double upper) const;
};

/// A calibration, or an error.
struct CalibrationResult {
    EnergyCalibration calibration; ///< not valid if there is an error
    QString error; ///< for the user; empty on success
};

/// Fits a polynomial of degree 1 or 2 to at least degree + 2 points, so that at least one degree of freedom remains. A
/// calibration that does not increase from lower to upper, the ends of the axis, is refused. degree 0: 2, or 1 for
/// three points.
TARNIS_EXPORT CalibrationResult fitEnergyCalibration(
    std::vector<CalibrationPoint> points, double lower, double upper, int degree = 0);

/// The calibration as JSON, UTF-8, with all digits.
TARNIS_EXPORT QByteArray calibrationToJson(const EnergyCalibration& calibration);
/// Reads calibrationToJson()'s format and validates it.
TARNIS_EXPORT CalibrationResult calibrationFromJson(const QByteArray& text);

} // namespace tarnis
