// Regions of one axis: the reference numbers, special cases (no counts, one side, widths dominated by noise), bad
// input.
#include "referencedata.h"

#include <tarnis/analysis/regionstatistics.h>

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

namespace {

double numberIn(const QJsonObject& object, QLatin1StringView name)
{
    return object[name].isDouble() ? object[name].toDouble() : noNumber;
}

bool compareGross(const RegionStatistics& found, const QJsonObject& expected)
{
    bool ok = true;
    const auto compare = [&](QLatin1StringView name, double number) {
        ok &= agreesRelatively(name, number, numberIn(expected, name), 1e-9);
    };
    compare("sum"_L1, found.sum);
    compare("sum_error"_L1, found.sumError);
    ok &= agreesRelatively(u"lower"_s, found.sumInterval.lower, expected["sum_interval68"_L1][0].toDouble(), 1e-9);
    ok &= agreesRelatively(u"upper"_s, found.sumInterval.upper, expected["sum_interval68"_L1][1].toDouble(), 1e-9);
    compare("mean"_L1, found.mean);
    compare("maximum"_L1, found.maximum);
    compare("maximum_channel"_L1, found.maximumPosition);
    compare("centroid"_L1, found.centroid);
    compare("centroid_error"_L1, found.centroidError);
    compare("variance"_L1, found.variance);
    compare("variance_sheppard"_L1, found.varianceSheppard);
    compare("rms"_L1, found.rms);
    return ok;
}

bool compareNet(const RegionStatistics& found, const QJsonObject& expected)
{
    bool ok = true;
    const auto compare = [&](QLatin1StringView name, double number) {
        ok &= agreesRelatively(name, number, numberIn(expected, name), 1e-9);
    };
    compare("background_left"_L1, found.backgroundLeft);
    compare("background_right"_L1, found.backgroundRight);
    compare("background_area"_L1, found.background);
    compare("background_area_error"_L1, found.backgroundError);
    compare("net_area"_L1, found.net);
    compare("net_area_error"_L1, found.netError);
    // The reference has six digits of the quantile.
    ok &= agreesRelatively(u"critical_level"_s, found.criticalLevel, numberIn(expected, "critical_level"_L1), 5e-6);
    ok &= agreesRelatively(u"detection_limit"_s, found.detectionLimit, numberIn(expected, "detection_limit"_L1), 5e-6);
    ok &= agrees(u"binomial_p"_s, found.excessProbability, numberIn(expected, "binomial_p"_L1),
        1e-7 * numberIn(expected, "binomial_p"_L1) + 1e-300);
    compare("li_ma"_L1, found.liMa);
    compare("net_centroid"_L1, found.netCentroid);
    compare("net_centroid_error"_L1, found.netCentroidError);
    compare("net_variance"_L1, found.netVariance);
    compare("net_maximum"_L1, found.netMaximum);
    compare("fwhm_left"_L1, found.fwhm.left);
    compare("fwhm_right"_L1, found.fwhm.right);
    compare("fwhm"_L1, found.fwhm.width);
    compare("fwhm_outer"_L1, found.fwhm.outer);
    compare("fwtm"_L1, found.fwtm.width);
    compare("fwtm_outer"_L1, found.fwtm.outer);
    return ok && found.aboveCriticalLevel == expected["significant"_L1].toBool()
        && found.fwhm.unique == expected["fwhm_unique"_L1].toBool()
        && found.fwtm.unique == expected["fwtm_unique"_L1].toBool()
        && found.netMaximumBin == static_cast<std::size_t>(expected["net_maximum_channel"_L1].toInt());
}

void addRegions(const QString& name, const std::vector<double>& counts, const QJsonArray& regions)
{
    for (const QJsonValue& region : regions) {
        const QJsonObject object =
            region.toObject().contains("region"_L1) ? region["region"_L1].toObject() : region.toObject();
        QTest::addRow("%s %d", qPrintable(name), object["lo"_L1].toInt()) << counts << object;
    }
}

BinnedData over(const std::vector<double>& counts)
{
    BinnedData data;
    data.contents = counts;
    return data;
}

} // namespace

Q_DECLARE_METATYPE(std::vector<double>)

class TestRegionStatistics : public QObject {
    Q_OBJECT

private slots:
    void findsTheReference_data()
    {
        QTest::addColumn<std::vector<double>>("counts");
        QTest::addColumn<QJsonObject>("expected");
        for (const QString& name : { u"csi-ba133-cs137"_s, u"hpge-pottery"_s }) {
            const QJsonObject file = referenceNumbers("given/"_L1 + name + ".json"_L1);
            const std::vector<double> counts = spectrumAt("spectra/"_L1 + name + ".spe"_L1);
            addRegions(name, counts, file["single"_L1].toArray());
            addRegions(name, counts, file["doublet"_L1].toArray());
        }
        const QJsonObject synthetic = referenceNumbers(u"synthetic/synthetic.json"_s);
        for (const QJsonValue& spectrum : synthetic["spectra"_L1].toArray())
            addRegions(spectrum["name"_L1].toString(),
                spectrumAt("analysis/synthetic/"_L1 + spectrum["file"_L1].toString()),
                spectrum["regions"_L1].toArray());
    }
    void findsTheReference()
    {
        QFETCH(std::vector<double>, counts);
        QFETCH(QJsonObject, expected);
        const RegionStatistics found =
            regionStatisticsOfBins(over(counts), expected["lo"_L1].toInt(), expected["hi"_L1].toInt());
        QCOMPARE(found.fault, QString());
        QCOMPARE(found.bins, expected["channels"_L1].toDouble());
        QVERIFY(compareGross(found, expected));
        QVERIFY(compareNet(found, expected));
    }

    void choosesBinsByTheirCentre()
    {
        const std::vector<double> counts { 1, 2, 4, 8, 16, 32, 64 };
        const RegionStatistics found = regionStatistics(over(counts), 2.0, 4.0);
        QCOMPARE(found.first, std::size_t(2));
        QCOMPARE(found.last, std::size_t(3));
        QCOMPARE(found.sum, 12.0);
        QCOMPARE(found.lower, 1.5);
        QCOMPARE(found.upper, 3.5);
    }

    void weighsBinsThatAreCut()
    {
        const std::vector<double> counts { 1, 2, 4, 8, 16, 32, 64 };
        RegionOptions options;
        options.partialBins = true;
        const RegionStatistics found = regionStatistics(over(counts), 1.75, 3.0, options);
        QCOMPARE(found.sum, 0.75 * 4 + 0.5 * 8);
        QCOMPARE(found.sumError, std::sqrt(0.5625 * 4 + 0.25 * 8));
        QCOMPARE(found.bins, 1.25);
        QVERIFY(std::isnan(found.excessProbability));
        QVERIFY(std::isnan(found.sumInterval.lower));
    }

    void hidesWidthsThatNoiseDecides()
    {
        std::vector<double> counts(60, 0.0);
        for (std::size_t i = 10; i < 50; ++i)
            counts[i] = i == 30 ? 200.0 : i % 2 == 0 ? 90.0 : 150.0;
        const RegionStatistics found = regionStatisticsOfBins(over(counts), 5, 54);
        QVERIFY(!found.fwhm.unique);
        QVERIFY(found.fwhm.width > 0.0);
        QVERIFY(std::isnan(found.fwhm.shown));
    }

    void answersWithoutCounts()
    {
        const std::vector<double> counts(20, 0.0);
        const RegionStatistics found = regionStatisticsOfBins(over(counts), 5, 14);
        QCOMPARE(found.fault, QString());
        QCOMPARE(found.sum, 0.0);
        QCOMPARE(found.sumInterval.lower, 0.0);
        QVERIFY(std::fabs(found.sumInterval.upper - 1.8410216) < 1e-6);
        QVERIFY(std::fabs(found.sumUpperLimit - 2.9957323) < 1e-6);
        QVERIFY(std::isnan(found.centroid));
        QVERIFY(std::isnan(found.maximumPosition));
        QVERIFY(std::isnan(found.netCentroid));
        QCOMPARE(found.excessProbability, 1.0);
        QVERIFY(!found.significant);
    }

    void usesTheSideThatIsThere()
    {
        const std::vector<double> counts { 9, 9, 9, 3, 3, 3, 3 };
        const RegionStatistics found = regionStatisticsOfBins(over(counts), 0, 2);
        QVERIFY(found.hasNet);
        QVERIFY(!found.note.isEmpty());
        QCOMPARE(found.leftBins, 0);
        QCOMPARE(found.background, 9.0);
        QCOMPARE(found.net, 18.0);
        const RegionStatistics whole = regionStatisticsOfBins(over(counts), 0, 6);
        QVERIFY(!whole.hasNet);
        QVERIFY(std::isnan(whole.net));
        QVERIFY(!whole.note.isEmpty());
    }

    // Currie's critical level is 0 without a background, and each count "significant".
    void decidesExactlyWhereCurrieCannot()
    {
        std::vector<double> counts(50, 0.0);
        counts[20] = 1.0;
        const RegionStatistics one = regionStatisticsOfBins(over(counts), 10, 40);
        QVERIFY(one.aboveCriticalLevel);
        QVERIFY(!one.significant);
        QVERIFY(std::fabs(one.excessProbability - 31.0 / 37.0) < 1e-12);
    }

    void ratesAreCountsPerLiveTime()
    {
        RegionOptions options;
        options.liveTime = 20.0;
        const std::vector<double> counts { 2, 2, 2, 100, 2, 2, 2 };
        const RegionStatistics found = regionStatisticsOfBins(over(counts), 3, 3, options);
        QCOMPARE(found.rate, 5.0);
        QCOMPARE(found.rateError, 0.5);
        QCOMPARE(found.netRate, found.net / 20.0);
        QVERIFY(std::isnan(regionStatisticsOfBins(over(counts), 3, 3).rate));
    }

    void handlesUnequalBins()
    {
        // Density 10 everywhere: no net area, and the bin with the highest density is the first, not the one with most
        // counts.
        const std::vector<double> edges { 0, 1, 2, 3, 5, 9, 10, 11, 12 };
        std::vector<double> counts;
        for (std::size_t i = 0; i + 1 < edges.size(); ++i)
            counts.push_back(10.0 * (edges[i + 1] - edges[i]));
        BinnedData data = over(counts);
        data.edges = edges;
        const RegionStatistics found = regionStatisticsOfBins(data, 3, 4);
        QCOMPARE(found.mean, 10.0);
        QCOMPARE(found.maximum, 10.0);
        QCOMPARE(found.maximumBin, std::size_t(3));
        QVERIFY(std::fabs(found.net) < 1e-9);
    }

    void refusesBadInput()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const std::vector<double> counts { 1, 2, nan, 4 };
        QVERIFY(!regionStatisticsOfBins(over({}), 0, 0).fault.isEmpty());
        QVERIFY(!regionStatisticsOfBins(over(counts), -1, 1).fault.isEmpty());
        QVERIFY(!regionStatisticsOfBins(over(counts), 1, 4).fault.isEmpty());
        QVERIFY(!regionStatisticsOfBins(over(counts), 1, 0).fault.isEmpty());
        QVERIFY(!regionStatisticsOfBins(over(counts), 1, 2).fault.isEmpty());
        QVERIFY(!regionStatistics(over(counts), nan, 2.0).fault.isEmpty());
        QVERIFY(!regionStatistics(over(counts), 50.0, 60.0).fault.isEmpty());
        QVERIFY(!regionStatistics(over(counts), 1.1, 1.2).fault.isEmpty());
        QVERIFY(!regionStatisticsOfBins(over(counts), 3, 3).note.isEmpty());
        const std::vector<double> edges { 0, 1, 1, 2, 3 };
        BinnedData data = over(counts);
        data.edges = edges;
        QVERIFY(!regionStatisticsOfBins(data, 0, 1).fault.isEmpty());
        for (const double width : { 0.0, -1.0, nan }) {
            data = over(counts);
            data.width = width;
            QVERIFY(!regionStatisticsOfBins(data, 0, 1).fault.isEmpty());
        }
    }

    void givesNoTestsForContentsThatAreNoCounts()
    {
        const std::vector<double> contents { 1, 1, 1, 8.5, -2, 1, 1, 1 };
        const std::vector<double> variances(contents.size(), 4.0);
        BinnedData data = over(contents);
        data.variances = variances;
        const RegionStatistics found = regionStatisticsOfBins(data, 3, 4);
        QCOMPARE(found.sum, 6.5);
        QCOMPARE(found.sumError, std::sqrt(8.0));
        QVERIFY(std::isnan(found.excessProbability));
        QVERIFY(std::isnan(found.criticalLevel));
        QVERIFY(std::isnan(found.sumInterval.upper));
    }

    void givesNoErrorsForContentsWithoutVariances_data()
    {
        QTest::addColumn<double>("content");
        QTest::newRow("scaled") << 8.5;
        QTest::newRow("subtracted") << -2.0;
    }
    void givesNoErrorsForContentsWithoutVariances()
    {
        QFETCH(double, content);
        const std::vector<double> contents { 1, 1, 1, content, 9, 1, 1, 1 };
        const RegionStatistics found = regionStatisticsOfBins(over(contents), 3, 4);
        QCOMPARE(found.sum, content + 9.0);
        QVERIFY(!std::isnan(found.net));
        for (const double error : { found.sumError, found.meanError, found.maximumError, found.centroidError,
                 found.netError, found.backgroundError, found.netCentroidError })
            QVERIFY(std::isnan(error));
        QVERIFY(!found.note.isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestRegionStatistics)
#include "tst_regionstatistics.moc"
