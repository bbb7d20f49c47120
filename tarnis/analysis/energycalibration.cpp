#include "tarnis/analysis/energycalibration.h"

#include "tarnis/analysis/factoredmatrix_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnis {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::EnergyCalibration", text);
}

QString faultOf(const std::vector<CalibrationPoint>& points, double lower, double upper, int degree)
{
    if (degree < 0 || degree > 2)
        return sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration", "The degree of a calibration is 1 or 2."));
    const std::size_t needed = static_cast<std::size_t>(degree == 0 ? 3 : degree + 2);
    if (points.size() < needed)
        return sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
                            "Assigned lines: %1. A calibration needs %2, so that one is left as a check."))
            .arg(points.size())
            .arg(needed);
    if (!std::isfinite(lower) || !std::isfinite(upper) || !(lower < upper))
        return sentence(
            QT_TRANSLATE_NOOP("tarnis::EnergyCalibration", "The limits of the axis must be finite and increase."));
    for (const CalibrationPoint& point : points) {
        if (!std::isfinite(point.position) || !std::isfinite(point.energy))
            return sentence(QT_TRANSLATE_NOOP(
                "tarnis::EnergyCalibration", "A line has a position or an energy that is not a finite number."));
        const bool errors = point.positionError >= 0.0 && point.energyError >= 0.0
            && point.positionError + point.energyError > 0.0 && std::isfinite(point.positionError + point.energyError);
        if (!errors)
            return sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
                                "The line at %1 needs an error of its position or its energy."))
                .arg(point.energy);
    }
    for (std::size_t i = 1; i < points.size(); ++i) {
        if (!(points[i].position > points[i - 1].position) || !(points[i].energy > points[i - 1].energy))
            return sentence(
                QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
                    "The energies do not increase with the positions between %1 and %2. Check the assignment "
                    "of the lines."))
                .arg(points[i - 1].energy)
                .arg(points[i].energy);
    }
    return {};
}

// One weighted fit in powers of (x - reference)/scale; the weights contain the slope of the previous fit.
bool solveOnce(EnergyCalibration& calibration, std::size_t n, double scale)
{
    std::vector<double> matrix(n * n, 0.0);
    std::vector<double> right(n, 0.0);
    for (const CalibrationPoint& point : calibration.points) {
        const double slope = calibration.isValid() ? calibration.slopeAt(point.position) : 0.0;
        const double variance =
            point.energyError * point.energyError + slope * slope * point.positionError * point.positionError;
        const double weight = 1.0 / (variance > 0.0 ? variance : point.positionError * point.positionError);
        std::vector<double> powers(n, 1.0);
        for (std::size_t k = 1; k < n; ++k)
            powers[k] = powers[k - 1] * (point.position - calibration.reference) / scale;
        for (std::size_t j = 0; j < n; ++j) {
            right[j] += weight * powers[j] * point.energy;
            for (std::size_t k = 0; k < n; ++k)
                matrix[j * n + k] += weight * powers[j] * powers[k];
        }
    }
    analysis::FactoredMatrix factored;
    if (!factored.factorise(matrix, std::vector<char>(n, 0)))
        return false;
    factored.solve(right, calibration.coefficients);
    factored.invert(calibration.covariance);
    for (std::size_t j = 0; j < n; ++j) {
        calibration.coefficients[j] /= std::pow(scale, static_cast<double>(j));
        for (std::size_t k = 0; k < n; ++k)
            calibration.covariance[j * n + k] /= std::pow(scale, static_cast<double>(j + k));
    }
    return true;
}

} // namespace

double EnergyCalibration::energyAt(double x) const
{
    if (!isValid())
        return none;
    double sum = 0.0;
    for (std::size_t k = coefficients.size(); k-- > 0;)
        sum = sum * (x - reference) + coefficients[k];
    return sum;
}

double EnergyCalibration::slopeAt(double x) const
{
    if (!isValid())
        return none;
    return coefficients[1] + (coefficients.size() > 2 ? 2.0 * coefficients[2] * (x - reference) : 0.0);
}

CalibratedEnergy EnergyCalibration::calibrated(double x, double error) const
{
    CalibratedEnergy result;
    result.energy = energyAt(x);
    result.errorFromPosition = std::fabs(slopeAt(x)) * error;
    const std::size_t n = coefficients.size();
    double variance = 0.0;
    for (std::size_t j = 0; j < n && covariance.size() == n * n; ++j) {
        for (std::size_t k = 0; k < n; ++k)
            variance += std::pow(x - reference, static_cast<double>(j + k)) * covariance[j * n + k];
    }
    result.errorFromCalibration = std::sqrt(std::max(0.0, variance));
    result.error = std::hypot(result.errorFromPosition, result.errorFromCalibration);
    result.extrapolated = points.empty() || x < points.front().position || x > points.back().position;
    return result;
}

double EnergyCalibration::differenceError(double x1, double error1, double x2, double error2) const
{
    const std::size_t n = coefficients.size();
    std::vector<double> v(n);
    for (std::size_t k = 0; k < n; ++k)
        v[k] = std::pow(x1 - reference, static_cast<double>(k)) - std::pow(x2 - reference, static_cast<double>(k));
    double variance = std::pow(slopeAt(x1) * error1, 2) + std::pow(slopeAt(x2) * error2, 2);
    for (std::size_t j = 0; j < n && covariance.size() == n * n; ++j) {
        for (std::size_t k = 0; k < n; ++k)
            variance += v[j] * v[k] * covariance[j * n + k];
    }
    return std::sqrt(std::max(0.0, variance));
}

double EnergyCalibration::positionOf(double energy) const
{
    if (!isValid())
        return none;
    const double c = coefficients[0] - energy;
    const double b = coefficients[1];
    const double a = coefficients.size() > 2 ? coefficients[2] : 0.0;
    const double discriminant = b * b - 4.0 * a * c;
    if (!(discriminant >= 0.0) || !(b > 0.0))
        return none;
    // The root that stays finite for a = 0 is on the increasing branch.
    return reference - 2.0 * c / (b + std::sqrt(discriminant));
}

std::vector<double> EnergyCalibration::uncentred() const
{
    std::vector<double> result = coefficients;
    if (result.size() == 2)
        result[0] -= coefficients[1] * reference;
    if (result.size() == 3) {
        result[0] += (coefficients[2] * reference - coefficients[1]) * reference;
        result[1] -= 2.0 * coefficients[2] * reference;
    }
    return result;
}

bool EnergyCalibration::risesFrom(double lower, double upper) const
{
    return slopeAt(lower) > 0.0 && slopeAt(upper) > 0.0;
}

CalibrationResult fitEnergyCalibration(std::vector<CalibrationPoint> points, double lower, double upper, int degree)
{
    CalibrationResult result;
    std::sort(points.begin(), points.end(),
        [](const CalibrationPoint& a, const CalibrationPoint& b) { return a.position < b.position; });
    result.error = faultOf(points, lower, upper, degree);
    if (!result.error.isEmpty())
        return result;
    if (degree == 0)
        degree = points.size() > 3 ? 2 : 1;
    const std::size_t n = static_cast<std::size_t>(degree) + 1;
    EnergyCalibration calibration;
    for (const CalibrationPoint& point : points)
        calibration.reference += point.position / static_cast<double>(points.size());
    calibration.points = std::move(points);
    calibration.ndf = static_cast<int>(calibration.points.size() - n);
    const double scale = 0.5 * (calibration.points.back().position - calibration.points.front().position);
    // The first slope is that of the outer points. The fit is repeated until the coefficients converge.
    const CalibrationPoint& first = calibration.points.front();
    const CalibrationPoint& last = calibration.points.back();
    calibration.coefficients = { 0.0, (last.energy - first.energy) / (last.position - first.position) };
    for (int round = 0; round < 50; ++round) {
        const std::vector<double> before = calibration.coefficients;
        if (!solveOnce(calibration, n, scale)) {
            result.error = sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
                "The lines do not determine a calibration. Use lines that are further apart."));
            return result;
        }
        double moved = before.size() == n ? 0.0 : 1.0;
        for (std::size_t k = 0; k < n && before.size() == n; ++k)
            moved = std::max(moved,
                std::fabs(calibration.coefficients[k] - before[k]) / std::sqrt(calibration.covariance[k * n + k]));
        if (moved < 1e-12)
            break;
    }
    for (CalibrationPoint& point : calibration.points) {
        point.residual = point.energy - calibration.energyAt(point.position);
        const double error = std::hypot(point.energyError, calibration.slopeAt(point.position) * point.positionError);
        calibration.chi2 += point.residual * point.residual / (error * error);
    }
    if (!calibration.risesFrom(lower, upper)) {
        result.error = sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
            "The calibration does not increase over the complete axis. Use degree 1, more lines or another "
            "assignment."));
        return result;
    }
    result.calibration = std::move(calibration);
    return result;
}

} // namespace tarnis
