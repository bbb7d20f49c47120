// Energy calibration: the reference fits, its file, the sources and the assignment of lines, bad input.
#include "referencedata.h"
#include "support/cases.h"

#include <tarnis/analysis/calibrationlines.h>
#include <tarnis/analysis/energycalibration.h>

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

namespace {

// Points on E = -0.5 + 0.2 x + 1e-7 x^2.
std::vector<CalibrationPoint> somePoints(std::size_t count = 6)
{
    std::vector<CalibrationPoint> points;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = 500.0 + 1200.0 * static_cast<double>(i);
        points.push_back({ x, 0.05, -0.5 + 0.2 * x + 1e-7 * x * x, 0.002, u"line %1"_s.arg(i), 0.0 });
    }
    return points;
}

std::vector<MeasuredPeak> peaksOf(const std::vector<CalibrationLine>& lines, double a, double b, double c)
{
    std::vector<MeasuredPeak> peaks;
    for (const CalibrationLine& line : lines) {
        double x = (line.energy - a) / b;
        for (int i = 0; i < 20; ++i)
            x = (line.energy - a - c * x * x) / b;
        peaks.push_back({ x, 0.1, 6.0, 100.0 * line.intensity });
    }
    return peaks;
}

} // namespace

class TestEnergyCalibration : public QObject {
    Q_OBJECT

private slots:
    void findsTheReference()
    {
        const QJsonObject file = referenceNumbers(u"synthetic/calibration.json"_s);
        std::vector<CalibrationPoint> points;
        for (qsizetype i = 0; i < file["channels"_L1].toArray().size(); ++i)
            points.push_back({ file["channels"_L1][i].toDouble(), file["channel_errors"_L1][i].toDouble(),
                file["energies"_L1][i].toDouble(), file["energy_errors"_L1][i].toDouble(), {}, 0.0 });
        bool ok = true;
        const auto compare = [&](const QString& name, double found, const QJsonValue& value, double tolerance = 1e-8) {
            ok &= agrees(name, found, value.toDouble(), tolerance * std::fabs(value.toDouble()) + 1e-300);
        };
        for (const QJsonValue& fit : file["fits"_L1].toArray()) {
            const CalibrationResult result = fitEnergyCalibration(points, 0.0, 8192.0, fit["degree"_L1].toInt());
            QCOMPARE(result.error, QString());
            const EnergyCalibration& found = result.calibration;
            compare(u"reference"_s, found.reference, fit["reference_channel"_L1], 1e-9);
            compare(u"chi2"_s, found.chi2, fit["chi2"_L1], 1e-6);
            QCOMPARE(found.ndf, fit["ndf"_L1].toInt());
            const std::size_t n = found.coefficients.size();
            for (std::size_t j = 0; j < n; ++j) {
                const double error = std::sqrt(found.covariance[j * n + j]);
                ok &= agrees(u"coefficient"_s, found.coefficients[j],
                    fit["coefficients"_L1][static_cast<qsizetype>(j)].toDouble(), 1e-4 * error);
                for (std::size_t k = 0; k < n; ++k)
                    compare(u"covariance"_s, found.covariance[j * n + k],
                        fit["covariance"_L1][static_cast<qsizetype>(j)][static_cast<qsizetype>(k)], 1e-6);
            }
            for (std::size_t i = 0; i < points.size(); ++i)
                ok &= agrees(u"residual"_s, found.points[i].residual,
                    fit["residuals"_L1][static_cast<qsizetype>(i)].toDouble(), 1e-6);
            for (const QJsonValue& prediction : fit["predictions"_L1].toArray()) {
                const double x = prediction["channel"_L1].toDouble();
                const CalibratedEnergy energy = found.calibrated(x, prediction["channel_error"_L1].toDouble());
                compare(u"energy"_s, energy.energy, prediction["energy"_L1], 1e-8);
                compare(u"from position"_s, energy.errorFromPosition, prediction["error_from_position"_L1], 1e-6);
                compare(
                    u"from calibration"_s, energy.errorFromCalibration, prediction["error_from_calibration"_L1], 1e-6);
                compare(u"error"_s, energy.error, prediction["error"_L1], 1e-6);
                compare(u"width factor"_s, found.slopeAt(x), prediction["width_factor"_L1], 1e-7);
                QCOMPARE(energy.extrapolated, x < 333.0 || x > 7699.0);
            }
            compare(u"inverse"_s, found.positionOf(600.0), fit["inverse_of_600_keV"_L1], 1e-8);
        }
        QVERIFY(ok);
    }

    void positionOfIsTheInverseOfEnergyAt()
    {
        const EnergyCalibration calibration = fitEnergyCalibration(somePoints(), 0.0, 8000.0).calibration;
        QCOMPARE(calibration.degree(), 2);
        for (double x = 0.0; x < 8000.0; x += 777.0)
            QVERIFY(std::fabs(calibration.positionOf(calibration.energyAt(x)) - x) < 1e-7);
        const std::vector<double> c = calibration.uncentred();
        QVERIFY(std::fabs(c[0] + (c[1] + c[2] * 3000.0) * 3000.0 - calibration.energyAt(3000.0)) < 1e-9);
        QVERIFY(std::isnan(EnergyCalibration().energyAt(1.0)));
        QVERIFY(std::isnan(EnergyCalibration().positionOf(1.0)));
    }

    // Two adjacent lines: the calibration's error cancels in the difference.
    void sharesItsPartInDifferences()
    {
        const EnergyCalibration calibration = fitEnergyCalibration(somePoints(), 0.0, 8000.0).calibration;
        const double apart = std::hypot(calibration.calibrated(3000.0).error, calibration.calibrated(3010.0).error);
        QVERIFY(calibration.differenceError(3000.0, 0.0, 3010.0, 0.0) < 0.01 * apart);
    }

    void survivesItsFile()
    {
        EnergyCalibration calibration = fitEnergyCalibration(somePoints(), 0.0, 8000.0).calibration;
        calibration.source = u"run 7"_s;
        const CalibrationResult read = calibrationFromJson(calibrationToJson(calibration));
        QCOMPARE(read.error, QString());
        QCOMPARE(read.calibration.coefficients, calibration.coefficients);
        QCOMPARE(read.calibration.covariance, calibration.covariance);
        QCOMPARE(read.calibration.points.size(), calibration.points.size());
        QCOMPARE(read.calibration.points[2].name, u"line 2"_s);
        QCOMPARE(read.calibration.source, u"run 7"_s);
        QCOMPARE(read.calibration.energyAt(1234.5), calibration.energyAt(1234.5));
    }

    void refusesBadFiles_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray good = calibrationToJson(fitEnergyCalibration(somePoints(), 0.0, 8000.0).calibration);
        addCase("empty", QByteArray());
        addCase("half", good.left(good.size() / 2));
        addCase("other", QByteArray("{\"format\": \"something\"}"));
        addCase("array", QByteArray("[1, 2]"));
        QByteArray text = good;
        addCase("no coefficients", text.replace("\"coefficients\"", "\"other\""));
        text = good;
        addCase("no covariance", text.replace("\"covariance\"", "\"other\""));
        text = good;
        addCase("words", text.replace("\"coefficients\": [", "\"coefficients\": [\"x\", "));
        addCase("falling",
            QByteArray("{\"format\":\"tarnis-calibration\",\"version\":1,\"reference_channel\":0,"
                       "\"coefficients\":[1,-1],\"covariance\":[[1,0],[0,1]]}"));
    }
    void refusesBadFiles()
    {
        QFETCH(QByteArray, text);
        const CalibrationResult result = calibrationFromJson(text);
        QVERIFY(!result.error.isEmpty());
        QVERIFY(!result.calibration.isValid());
    }

    void refusesBadPoints_data()
    {
        QTest::addColumn<int>("change");
        const char* const names[] = { "two points", "not finite", "no errors", "falling energies", "same position",
            "bends back", "axis reversed", "degree 3" };
        for (int i = 0; i < 8; ++i)
            QTest::newRow(names[i]) << i;
    }
    void refusesBadPoints()
    {
        QFETCH(int, change);
        std::vector<CalibrationPoint> points = somePoints();
        double upper = 8000.0;
        int degree = 0;
        switch (change) {
        case 0:
            points.resize(2);
            break;
        case 1:
            points[1].energy = std::numeric_limits<double>::quiet_NaN();
            break;
        case 2:
            points[1].energyError = points[1].positionError = 0.0;
            break;
        case 3:
            std::swap(points[1].energy, points[2].energy);
            break;
        case 4:
            points[1].position = points[2].position;
            break;
        case 5:
            for (CalibrationPoint& point : points)
                point.energy = 0.2 * point.position - 1.4e-5 * point.position * point.position;
            upper = 1e5;
            break;
        case 6:
            upper = -1.0;
            break;
        default:
            degree = 3;
            break;
        }
        const CalibrationResult result = fitEnergyCalibration(points, 0.0, upper, degree);
        QVERIFY(!result.error.isEmpty());
        QVERIFY(!result.calibration.isValid());
    }

    void knowsItsSources()
    {
        for (const QString& source : calibrationSources()) {
            const CalibrationLines lines = linesOfSource(source);
            QVERIFY(lines.error.isEmpty());
            QVERIFY(!lines.lines.empty());
            for (const CalibrationLine& line : lines.lines)
                QVERIFY(
                    line.energy > 10.0 && line.energyError > 0.0 && line.energyError < 0.05 && line.intensity > 0.1);
        }
        QCOMPARE(linesOfSource(u"Ba-133 + cs137"_s).lines.size(), std::size_t(9));
        QVERIFY(linesOfSource(u"ba133+xy1"_s).error.contains(u"xy1"));
        QVERIFY(!linesOfSource(QString()).error.isEmpty());
    }

    void readsLines()
    {
        const CalibrationLines read = linesFromText(
            "energy, error, channel, name\n# comment\n1332.5; 0.01; 700; Co-60\n661.66\t0.02\n 59.54 0.001 # Am\n");
        QCOMPARE(read.error, QString());
        QCOMPARE(read.lines.size(), std::size_t(3));
        QCOMPARE(read.lines[0].energy, 59.54);
        QCOMPARE(read.lines[1].energyError, 0.02);
        QCOMPARE(read.lines[2].position, 700.0);
        QCOMPARE(read.lines[2].name, u"Co-60"_s);
        QVERIFY(read.lines[0].position < 0.0);
    }

    void refusesBadLines_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray("\n# nothing\n");
        QTest::newRow("word") << QByteArray("100, 0.1\nabc, 0.1\n");
        QTest::newRow("negative") << QByteArray("-100, 0.1\n");
        QTest::newRow("negative error") << QByteArray("100, -0.1\n");
        QTest::newRow("not finite") << QByteArray("100, 0.1\ninf, 0.1\n");
        QTest::newRow("bytes") << QByteArray("\x00\xff\x80\n100, x", 11);
    }
    void refusesBadLines()
    {
        QFETCH(QByteArray, text);
        const CalibrationLines read = linesFromText(text);
        QVERIFY(!read.error.isEmpty());
        QVERIFY(read.lines.empty());
    }

    void assignsLines_data()
    {
        addColumns<QString, double, double>("source", "slope", "curvature");
        QTest::newRow("europium") << u"eu152"_s << 0.18 << -7e-10;
        QTest::newRow("barium and caesium, bent") << u"ba133+cs137"_s << 0.6 << 2e-5;
        QTest::newRow("natural") << u"k40+ra226+th232"_s << 0.2 << 1e-8;
    }
    // All lines as peaks among peaks without a line.
    void assignsLines()
    {
        QFETCH(QString, source);
        QFETCH(double, slope);
        QFETCH(double, curvature);
        const std::vector<CalibrationLine> lines = linesOfSource(source).lines;
        std::vector<MeasuredPeak> peaks = peaksOf(lines, 0.3, slope, curvature);
        const double upper = 1.1 * peaks.back().position;
        for (const double part : { 0.11, 0.37, 0.83 })
            peaks.push_back({ part * upper, 0.1, 6.0, 300.0 });
        const std::vector<CalibrationPoint> points = assignLines(lines, peaks, 0.0, upper);
        QVERIFY2(points.size() + 2 >= lines.size(), qPrintable(QString::number(points.size())));
        const CalibrationResult fit = fitEnergyCalibration(points, 0.0, upper);
        QCOMPARE(fit.error, QString());
        QVERIFY(
            std::fabs(fit.calibration.energyAt(0.5 * upper) - (0.3 + (slope + curvature * 0.5 * upper) * 0.5 * upper))
            < 0.1);
    }

    void followsTheUsersPositions()
    {
        std::vector<CalibrationLine> lines { { 100.0, 0.1, 0.0, {}, 502.0 }, { 200.0, 0.1, 0.0, {}, 999.0 },
            { 300.0, 0.1, 0.0, {}, 1700.0 } };
        const std::vector<MeasuredPeak> peaks { { 500.0, 0.1, 5.0, 10.0 }, { 1000.0, 0.1, 5.0, 10.0 },
            { 1500.0, 0.1, 5.0, 10.0 } };
        const std::vector<CalibrationPoint> points = assignLines(lines, peaks, 0.0, 2000.0);
        QCOMPARE(points.size(), std::size_t(2));
        QCOMPARE(points[0].position, 500.0);
    }

    void assignsNothingWithoutLinesOrPeaks()
    {
        QVERIFY(assignLines({}, {}, 0.0, 100.0).empty());
        const std::vector<CalibrationLine> lines = linesOfSource(u"cs137"_s).lines;
        QVERIFY(assignLines(lines, {}, 0.0, 100.0).empty());
        const std::vector<MeasuredPeak> peaks { { 50.0, 0.1, 5.0, 10.0 } };
        QVERIFY(assignLines(lines, peaks, 0.0, 100.0).empty());
    }
};

QTEST_APPLESS_MAIN(TestEnergyCalibration)
#include "tst_energycalibration.moc"
