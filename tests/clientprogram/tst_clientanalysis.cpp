// tarnis stats, fit, peaks and calibrate: numbers, JSON, and refused arguments.
#include "clientprogram.h"

#include "support/support.h"

#include <tarnis/analysis/calibrationlines.h>
#include <tarnis/analysis/peakshape.h>
#include <tarnis/foundation/files.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <random>

using clienttest::Run;
using clienttest::runTarnis;

namespace {

QJsonObject jsonOf(const Run& run)
{
    return QJsonDocument::fromJson(run.output).object();
}

} // namespace

class TestClientAnalysis : public QObject, private clienttest::ScratchFolder {
    Q_OBJECT
private:
    // Two peaks on a flat background, one count in each line.
    QString twoPeaks() const
    {
        std::mt19937_64 random(4);
        QByteArray text;
        for (int i = 0; i < 200; ++i) {
            double mean = 20.0;
            for (const double centre : { 80.0, 120.0 })
                mean += 3000.0
                    * tarnis::peakIntegral(
                        tarnis::PeakShape::Gaussian, i - 0.5, i + 0.5, centre, std::vector<double> { 3.0 });
            text += QByteArray::number(std::poisson_distribution<int>(mean)(random)) + '\n';
        }
        return write("two.csv", text);
    }
    // The lines of a source at 0.5 keV a channel.
    QString europium() const
    {
        std::mt19937_64 random(5);
        std::vector<double> means(3000, 5.0);
        for (const tarnis::CalibrationLine& line : tarnis::linesOfSource("eu152").lines) {
            for (int i = 0; i < 3000; ++i)
                means[static_cast<std::size_t>(i)] += 300.0 * line.intensity
                    * tarnis::peakIntegral(
                        tarnis::PeakShape::Gaussian, i - 0.5, i + 0.5, 2.0 * line.energy, std::vector<double> { 2.5 });
        }
        QByteArray text;
        for (const double mean : means)
            text += QByteArray::number(std::poisson_distribution<int>(mean)(random)) + '\n';
        return write("eu.csv", text);
    }

private Q_SLOTS:
    void init() { m_folder = QTemporaryDir(); }

    void showsTheMaximumInFullDigits()
    {
        const QString zeros = write("zeros.csv", QByteArray("0\n").repeated(64));
        const QByteArray none = runTarnis({ "stats", zeros, "--region", "3:9" }).output;
        QVERIFY2(none.contains("maximum") && !none.contains("nan"), none);
        const QString many = write("many.csv", QByteArray("1234567\n").repeated(64));
        const QByteArray all = runTarnis({ "stats", many, "--region", "3:9" }).output;
        QVERIFY2(all.contains("1234567 at 3\n"), all);
    }

    void countsARegion()
    {
        const QString file = twoPeaks();
        const Run run = runTarnis({ "stats", file, "--region", "70:90", "--json" });
        QCOMPARE(run.exitCode, 0);
        const QJsonObject numbers = jsonOf(run);
        QCOMPARE(numbers["lo"].toInt(), 70);
        QCOMPARE(numbers["hi"].toInt(), 90);
        QCOMPARE(numbers["channels"].toInt(), 21);
        QVERIFY(std::fabs(numbers["net_area"].toDouble() - 3000.0) < 5.0 * numbers["net_area_error"].toDouble());
        QVERIFY(numbers["significant"].toBool());
        QVERIFY(std::fabs(numbers["net_centroid"].toDouble() - 80.0) < 1.0);
        const QJsonObject empty = jsonOf(runTarnis({ "stats", file, "--region", "150:160", "--json" }));
        QVERIFY(empty["fwhm"].isNull());
        QVERIFY(empty["sum_interval68"].isArray());
        QVERIFY(runTarnis({ "stats", file, "--region", "70:90" }).output.contains("net area"));
        QCOMPARE(jsonOf(runTarnis({ "stats", file, "--region", "70:90", "--sides", "0", "--json" }))["net_area"],
            QJsonValue());
    }

    void fitsOnePeak()
    {
        const QString file = twoPeaks();
        const QJsonObject fit = jsonOf(runTarnis({ "fit", file, "--range", "60:100", "--profile", "--json" }));
        QCOMPARE(fit["statistic"].toString(), QString("cash"));
        QCOMPARE(fit["ndf"].toInt(), 36);
        QCOMPARE(fit["parameter_order"].toArray(), (QJsonArray { "area", "centre", "sigma", "b0", "b1" }));
        QVERIFY(
            std::fabs(fit["parameters"]["area"].toDouble() - 3000.0) < 5.0 * fit["standard_error"]["area"].toDouble());
        QCOMPARE(fit["correlation"][2][2].toDouble(), 1.0);
        QVERIFY(fit["profile_errors"]["sigma"][0].toDouble() < 0.0);
        QVERIFY(fit["derived"]["fwhm"][1].toDouble() > 0.0);
        QVERIFY(std::fabs(fit["cash_z"].toDouble()) < 4.0);
        QVERIFY(fit["acceptable"].toBool());
        QCOMPARE(fit["reasons"].toArray(), QJsonArray());
        QVERIFY(runTarnis({ "fit", file, "--range", "60:100" }).output.contains("acceptable"));
    }

    void fitsSeveralPeaks()
    {
        const QString file = twoPeaks();
        for (const QStringList& peaks :
            { QStringList { "--peaks", "2" }, { "--at", "121,79" }, { "--peaks", "auto" } }) {
            const QJsonObject fit =
                jsonOf(runTarnis(QStringList { "fit", file, "--range", "60:140", "--json" } + peaks));
            QCOMPARE(fit["parameter_order"].toArray(),
                (QJsonArray { "area1", "centre1", "area2", "centre2", "sigma", "b0", "b1" }));
            QVERIFY(std::fabs(fit["parameters"]["centre1"].toDouble() - 80.0) < 1.0);
            QVERIFY(fit["acceptable"].toBool());
        }
        const QJsonObject own =
            jsonOf(runTarnis({ "fit", file, "--range", "60:140", "--peaks", "2", "--own-widths", "--json" }));
        QVERIFY(own["parameters"]["sigma2"].toDouble() > 2.0);
        const QJsonObject fixed =
            jsonOf(runTarnis({ "fit", file, "--range", "60:100", "--fix", "sigma=3", "--fix", "b1=0", "--json" }));
        QCOMPARE(fixed["parameters"]["sigma"].toDouble(), 3.0);
        QCOMPARE(fixed["parameters"]["b1"].toDouble(), 0.0);
        QVERIFY(fixed["standard_error"]["sigma"].isNull());
        const QJsonObject wrong = jsonOf(runTarnis({ "fit", file, "--range", "60:140", "--json" }));
        QVERIFY(!wrong["acceptable"].toBool());
        QVERIFY(!wrong["reasons"].toArray().isEmpty());
    }

    void drawsTheFit()
    {
        const Run run = runTarnis({ "fit", twoPeaks(), "--range", "60:100", "--json", "--plot", path("fit.svg") });
        QCOMPARE(run.exitCode, 0);
        QVERIFY(jsonOf(run).contains("value"));
        const QByteArray svg = tarnis::readFile(path("fit.svg")).bytes;
        for (const char* const text : { ">counts<", ">fit<", ">background<", ">Residuals in standard deviations<" })
            QVERIFY2(svg.contains(text), text);
        QCOMPARE(runTarnis({ "fit", twoPeaks(), "--range", "60:100", "--statistic", "unweighted", "--plot",
                               path("unweighted.svg") })
                     .exitCode,
            0);
        QVERIFY(!tarnis::readFile(path("unweighted.svg")).bytes.contains("Residuals"));
        const Run bad = runTarnis({ "fit", twoPeaks(), "--range", "60:100", "--plot", path("fit.bmp") });
        QCOMPARE(bad.exitCode, 2);
        QVERIFY2(bad.hasOneLineOfError() && bad.errors.contains("does not end in .png"), bad.errors);
    }

    void calibratesAndFindsPeaks()
    {
        const QString file = europium();
        const Run run = runTarnis({ "calibrate", file, "--lines", "eu152", "-o", path("cal.json"), "--json" });
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(run.exitCode, 0);
        QVERIFY(jsonOf(run)["points"].toArray().size() >= 10);
        QVERIFY(std::fabs(jsonOf(run)["coefficients"][1].toDouble() - 0.5) < 1e-3);
        const QJsonArray peaks =
            jsonOf(runTarnis({ "peaks", file, "--calibration", path("cal.json"), "--json" }))["peaks"].toArray();
        QVERIFY(peaks.size() >= 10);
        int near = 0;
        for (const QJsonValue& peak : peaks)
            near += std::fabs(peak["energy"].toDouble() - 1408.013) < 0.5 ? 1 : 0;
        QCOMPARE(near, 1);
        QVERIFY(runTarnis({ "peaks", file }).output.startsWith("channel"));
    }

    void refusesBadUse_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<int>("code");
        QTest::newRow("no region") << QStringList { "stats", "FILE" } << 2;
        QTest::newRow("bad region") << QStringList { "stats", "FILE", "--region", "a:b" } << 2;
        QTest::newRow("fraction") << QStringList { "stats", "FILE", "--region", "1.5:7" } << 2;
        QTest::newRow("reversed") << QStringList { "stats", "FILE", "--region", "9:7" } << 2;
        QTest::newRow("outside") << QStringList { "stats", "FILE", "--region", "7:200" } << 2;
        QTest::newRow("negative sides") << QStringList { "stats", "FILE", "--region", "7:20", "--sides", "-1" } << 2;
        QTest::newRow("no file") << QStringList { "stats", "/does/not/exist.csv", "--region", "7:20" } << 4;
        QTest::newRow("no range") << QStringList { "fit", "FILE" } << 2;
        QTest::newRow("too short") << QStringList { "fit", "FILE", "--range", "80:82" } << 2;
        QTest::newRow("shape") << QStringList { "fit", "FILE", "--range", "60:100", "--shape", "square" } << 2;
        QTest::newRow("statistic") << QStringList { "fit", "FILE", "--range", "60:100", "--statistic", "chi" } << 2;
        QTest::newRow("peaks") << QStringList { "fit", "FILE", "--range", "60:100", "--peaks", "9" } << 2;
        QTest::newRow("position outside") << QStringList { "fit", "FILE", "--range", "60:100", "--at", "150" } << 2;
        QTest::newRow("both widths") << QStringList { "fit", "FILE", "--range", "60:100", "--own-widths",
            "--shared-width" } << 2;
        QTest::newRow("unknown parameter")
            << QStringList { "fit", "FILE", "--range", "60:100", "--fix", "width=3" } << 2;
        QTest::newRow("no value") << QStringList { "fit", "FILE", "--range", "60:100", "--fix", "sigma" } << 2;
        QTest::newRow("no calibration") << QStringList { "peaks", "FILE", "--calibration", "/does/not/exist" } << 4;
        QTest::newRow("bad calibration") << QStringList { "peaks", "FILE", "--calibration", "FILE" } << 4;
        QTest::newRow("no lines") << QStringList { "calibrate", "FILE", "-o", "x.json" } << 2;
        QTest::newRow("no output") << QStringList { "calibrate", "FILE", "--lines", "co60" } << 2;
        QTest::newRow("unknown source") << QStringList { "calibrate", "FILE", "--lines", "xy1", "-o", "x.json" } << 2;
        QTest::newRow("too few lines") << QStringList { "calibrate", "FILE", "--lines", "co60", "-o", "x.json" } << 2;
    }
    void refusesBadUse()
    {
        QFETCH(QStringList, words);
        QFETCH(int, code);
        words.replaceInStrings("FILE", twoPeaks());
        const Run run = runTarnis(words);
        QCOMPARE(run.exitCode, code);
        QVERIFY2(run.hasOneLineOfError(), run.errors);
        QCOMPARE(run.output, QByteArray());
    }

    void refusesContentsThatAreNoCounts()
    {
        const QString fraction = write("a.csv", "1\n2.5\n3\n9\n8\n3\n2\n1\n1\n2\n");
        QCOMPARE(runTarnis({ "fit", fraction, "--range", "0:9" }).exitCode, 2);
        QCOMPARE(runTarnis({ "fit", fraction, "--range", "0:9", "--statistic", "unweighted" }).exitCode, 0);
        const QString zero = write("z.csv", QByteArray("0\n").repeated(50));
        const Run run = runTarnis({ "fit", zero, "--range", "0:49", "--json" });
        QCOMPARE(run.exitCode, 2);
        QVERIFY(jsonOf(run)["error"].toString().contains("no fit"));
        QCOMPARE(jsonOf(runTarnis({ "stats", zero, "--region", "10:20", "--json" }))["sum"].toDouble(-1.0), 0.0);
        QCOMPARE(runTarnis({ "peaks", zero }).exitCode, 2);
        QCOMPARE(runTarnis({ "stats", write("e.csv", ""), "--region", "0:1" }).exitCode, 4);
    }
};

QTEST_APPLESS_MAIN(TestClientAnalysis)
#include "tst_clientanalysis.moc"
