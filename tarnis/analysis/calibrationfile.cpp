// The file of a calibration: JSON.
#include "tarnis/analysis/energycalibration.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

constexpr auto formatName = "tarnis-calibration"_L1;

QString sentence(const char* text)
{
    return QCoreApplication::translate("tarnis::EnergyCalibration", text);
}

QJsonArray arrayOf(const std::vector<double>& numbers)
{
    QJsonArray array;
    for (const double number : numbers)
        array.append(number);
    return array;
}

// False unless all are finite numbers.
bool readNumbers(const QJsonValue& value, std::vector<double>& numbers)
{
    if (!value.isArray())
        return false;
    for (const QJsonValue& number : value.toArray()) {
        if (!number.isDouble() || !std::isfinite(number.toDouble()))
            return false;
        numbers.push_back(number.toDouble());
    }
    return true;
}

bool readPoints(const QJsonValue& value, std::vector<CalibrationPoint>& points)
{
    for (const QJsonValue& entry : value.toArray()) {
        const QJsonObject object = entry.toObject();
        if (!object["channel"_L1].isDouble() || !object["energy"_L1].isDouble())
            return false;
        points.push_back(
            { object["channel"_L1].toDouble(), object["channel_error"_L1].toDouble(), object["energy"_L1].toDouble(),
                object["energy_error"_L1].toDouble(), object["name"_L1].toString(), object["residual"_L1].toDouble() });
    }
    return true;
}

} // namespace

QByteArray calibrationToJson(const EnergyCalibration& calibration)
{
    QJsonArray points;
    for (const CalibrationPoint& point : calibration.points)
        points.append(QJsonObject { { "name"_L1, point.name }, { "channel"_L1, point.position },
            { "channel_error"_L1, point.positionError }, { "energy"_L1, point.energy },
            { "energy_error"_L1, point.energyError }, { "residual"_L1, point.residual } });
    const std::size_t n = calibration.coefficients.size();
    QJsonArray covariance;
    for (std::size_t j = 0; j < n && calibration.covariance.size() == n * n; ++j) {
        const auto row = calibration.covariance.begin() + static_cast<std::ptrdiff_t>(j * n);
        covariance.append(arrayOf({ row, row + static_cast<std::ptrdiff_t>(n) }));
    }
    const QJsonObject object { { "format"_L1, formatName }, { "version"_L1, 1 }, { "unit"_L1, calibration.unit },
        { "source"_L1, calibration.source }, { "degree"_L1, calibration.degree() },
        { "reference_channel"_L1, calibration.reference }, { "coefficients"_L1, arrayOf(calibration.coefficients) },
        { "covariance"_L1, covariance }, { "chi2"_L1, calibration.chi2 }, { "ndf"_L1, calibration.ndf },
        { "polynomial"_L1, arrayOf(calibration.uncentred()) }, { "points"_L1, points } };
    return QJsonDocument(object).toJson();
}

CalibrationResult calibrationFromJson(const QByteArray& text)
{
    CalibrationResult result;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (document.isNull()) {
        result.error = sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration", "This is not JSON: %1 at byte %2."))
                           .arg(error.errorString())
                           .arg(error.offset);
        return result;
    }
    const QJsonObject object = document.object();
    if (object["format"_L1].toString() != formatName || object["version"_L1].toInt() != 1) {
        result.error = sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
            "This is not a calibration file of version 1. Create one with \"tarnis calibrate\"."));
        return result;
    }
    EnergyCalibration calibration;
    calibration.unit = object["unit"_L1].toString();
    calibration.source = object["source"_L1].toString();
    calibration.reference = object["reference_channel"_L1].toDouble();
    calibration.chi2 = object["chi2"_L1].toDouble();
    calibration.ndf = object["ndf"_L1].toInt();
    bool ok =
        object["reference_channel"_L1].isDouble() && readNumbers(object["coefficients"_L1], calibration.coefficients);
    for (const QJsonValue& row : object["covariance"_L1].toArray())
        ok = ok && readNumbers(row, calibration.covariance);
    const std::size_t n = calibration.coefficients.size();
    ok = ok && (n == 2 || n == 3) && calibration.covariance.size() == n * n
        && readPoints(object["points"_L1], calibration.points);
    if (!ok) {
        result.error = sentence(QT_TRANSLATE_NOOP("tarnis::EnergyCalibration",
            "The calibration file is damaged: coefficients, covariance or points are missing or no numbers."));
        return result;
    }
    const bool rises = calibration.points.empty()
        ? calibration.coefficients[1] > 0.0
        : calibration.risesFrom(calibration.points.front().position, calibration.points.back().position);
    if (!rises) {
        result.error = sentence(QT_TRANSLATE_NOOP(
            "tarnis::EnergyCalibration", "The energy of this calibration does not increase with the channel."));
        return result;
    }
    result.calibration = std::move(calibration);
    return result;
}

} // namespace tarnis
