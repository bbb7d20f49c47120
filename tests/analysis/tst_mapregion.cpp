// Regions of a map: the reference numbers, outlines, frames and bad input.
#include "referencedata.h"

#include "support/support.h"

#include <tarnis/analysis/mapregion.h>

#include <QFile>
#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

namespace {

struct OwnedMap {
    std::vector<double> contents;
    MapData data;
};

OwnedMap mapOf(int columns, std::vector<double> contents)
{
    OwnedMap map { std::move(contents), {} };
    map.data.contents = map.contents;
    map.data.columns = columns;
    map.data.rows = static_cast<int>(map.contents.size()) / columns;
    return map;
}

std::optional<OwnedMap> referenceMap()
{
    QFile file(testData(u"analysis/synthetic/map.csv"_s));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    std::vector<double> contents;
    qsizetype columns = 0;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> words = line.split(',');
        if (line.isEmpty())
            continue;
        columns = words.size();
        for (const QByteArray& word : words)
            contents.push_back(word.toDouble());
    }
    return mapOf(static_cast<int>(columns), contents);
}

} // namespace

class TestMapRegion : public QObject {
    Q_OBJECT

private slots:
    void findsTheReference()
    {
        const auto map = referenceMap();
        const QJsonObject file = referenceNumbers(u"synthetic/map.json"_s);
        QVERIFY(map);
        for (const QJsonValue& expected : file["regions"_L1].toArray()) {
            const MapRegion region = MapRegion::bins(map->data, expected["x0"_L1].toInt(), expected["x1"_L1].toInt(),
                expected["y0"_L1].toInt(), expected["y1"_L1].toInt());
            MapRegionOptions options;
            options.frame = expected["frame"_L1].toInt();
            const MapRegionStatistics found = mapRegionStatistics(map->data, region, options);
            QCOMPARE(found.fault, QString());
            QCOMPARE(found.bins, expected["bins"_L1].toInt());
            QCOMPARE(found.frameBins, expected["frame_bins"_L1].toInt());
            QCOMPARE(found.maximumColumn, expected["maximum_x"_L1].toInt());
            QCOMPARE(found.maximumRow, expected["maximum_y"_L1].toInt());
            bool ok = true;
            const auto compare = [&](const QString& name, double number, const QJsonValue& value) {
                ok &= agrees(name, number, value.toDouble(), 1e-9 * std::fabs(value.toDouble()) + 1e-14);
            };
            compare(u"sum"_s, found.sum, expected["sum"_L1]);
            compare(u"sum_error"_s, found.sumError, expected["sum_error"_L1]);
            compare(u"mean"_s, found.mean, expected["mean"_L1]);
            compare(u"maximum"_s, found.maximum, expected["maximum"_L1]);
            compare(u"frame_sum"_s, found.frameSum, expected["frame_sum"_L1]);
            compare(u"background"_s, found.flat.background, expected["background"_L1]);
            compare(u"background_error"_s, found.flat.backgroundError, expected["background_error"_L1]);
            compare(u"net"_s, found.flat.net, expected["net"_L1]);
            compare(u"net_error"_s, found.flat.netError, expected["net_error"_L1]);
            compare(u"binomial_p"_s, found.excessProbability, expected["binomial_p"_L1]);
            const double critical = expected["critical_level"_L1].toDouble();
            ok &= agreesRelatively(u"critical_level"_s, found.criticalLevel, critical, 5e-6);
            compare(u"plane background"_s, found.plane.background, expected["plane"_L1]["background"_L1]);
            compare(u"plane net"_s, found.plane.net, expected["plane"_L1]["net"_L1]);
            compare(u"plane net error"_s, found.plane.netError, expected["plane"_L1]["net_error"_L1]);
            for (int k = 0; k < 3; ++k) {
                const auto i = static_cast<std::size_t>(k);
                compare(u"covariance"_s, found.covariance[i], expected["gross_covariance"_L1][k]);
                compare(u"plane"_s, found.planeCoefficients[i], expected["plane"_L1]["coefficients"_L1][k]);
                if (k == 2)
                    break;
                compare(u"centroid"_s, found.centroid[i], expected["gross_centroid"_L1][k]);
                compare(u"centroid error"_s, found.centroidError[i], expected["gross_centroid_error"_L1][k]);
                compare(u"net centroid"_s, found.netCentroid[i], expected["net_centroid"_L1][k]);
                compare(u"net centroid error"_s, found.netCentroidError[i], expected["net_centroid_error"_L1][k]);
            }
            QVERIFY(ok);
        }
    }

    void countsBinsByTheirCentre()
    {
        const OwnedMap map = mapOf(10, std::vector<double>(100, 1.0));
        QCOMPARE(MapRegion::rectangle(map.data, 2.0, 4.0, 3.0, 3.5).count(), 2);
        const double infinity = std::numeric_limits<double>::infinity();
        QCOMPARE(MapRegion::rectangle(map.data, -infinity, infinity, 3.0, 5.0).count(), 20);
        QCOMPARE(MapRegion::ellipse(map.data, 4.0, 4.0, 1.5, 0.5).count(), 3);
        QCOMPARE(MapRegion::ellipse(map.data, 4.0, 4.0, 1.5, 0.5, 1.5707963267948966).count(), 3);
        const std::vector<QPointF> triangle { { -0.5, -0.5 }, { 2.6, -0.5 }, { -0.5, 2.6 } };
        QCOMPARE(MapRegion::polygon(map.data, triangle).count(), 6);
        // The inside of a star that crosses itself is outside by the even-odd rule.
        const std::vector<QPointF> twice { { 0.5, 0.5 }, { 5.5, 0.5 }, { 5.5, 5.5 }, { 0.5, 5.5 }, { 0.5, 0.5 },
            { 5.5, 0.5 }, { 5.5, 5.5 }, { 0.5, 5.5 } };
        QVERIFY(MapRegion::polygon(map.data, twice).isEmpty());
    }

    void removesAPlaneExactly()
    {
        std::vector<double> contents;
        for (int y = 0; y < 12; ++y) {
            for (int x = 0; x < 12; ++x)
                contents.push_back(100.0 + 3.0 * x - 2.0 * y);
        }
        const OwnedMap map = mapOf(12, contents);
        const MapRegionStatistics whole = mapRegionStatistics(map.data, MapRegion::bins(map.data, 4, 7, 4, 7));
        QVERIFY(!whole.frameClipped);
        QVERIFY(std::fabs(whole.flat.net) < 1e-9);
        const MapRegionStatistics corner = mapRegionStatistics(map.data, MapRegion::bins(map.data, 0, 3, 0, 3));
        QVERIFY(corner.frameClipped);
        QVERIFY(!corner.note.isEmpty());
        QVERIFY(std::fabs(corner.flat.net) > 1.0);
        QVERIFY(std::fabs(corner.chosen.net) < 1e-8);
    }

    void leavesOtherRegionsOutOfTheFrame()
    {
        std::vector<double> contents(100, 1.0);
        contents[5 * 10 + 7] = 1000.0;
        const OwnedMap map = mapOf(10, contents);
        const MapRegion region = MapRegion::bins(map.data, 4, 5, 4, 5);
        const std::vector<MapRegion> others { MapRegion::bins(map.data, 7, 7, 5, 5) };
        QVERIFY(mapRegionStatistics(map.data, region).flat.background > 10.0);
        const MapRegionStatistics found = mapRegionStatistics(map.data, region, {}, others);
        QCOMPARE(found.flat.background, 4.0);
        QVERIFY(found.frameClipped);
    }

    void answersWithoutCounts()
    {
        const OwnedMap map = mapOf(10, std::vector<double>(100, 0.0));
        const MapRegionStatistics found = mapRegionStatistics(map.data, MapRegion::bins(map.data, 4, 5, 4, 5));
        QCOMPARE(found.sum, 0.0);
        QVERIFY(std::isnan(found.centroid[0]));
        QCOMPARE(found.excessProbability, 1.0);
        QVERIFY(std::fabs(found.sumInterval.upper - 1.841) < 1e-3);
    }

    void refusesBadInput()
    {
        OwnedMap map = mapOf(10, std::vector<double>(100, 1.0));
        QVERIFY(!mapRegionStatistics(map.data, {}).fault.isEmpty());
        QVERIFY(!mapRegionStatistics(map.data, MapRegion::bins(map.data, 20, 30, 0, 5)).fault.isEmpty());
        QVERIFY(!mapRegionStatistics({}, MapRegion::bins(map.data, 1, 2, 1, 2)).fault.isEmpty());
        const MapRegion all = MapRegion::bins(map.data, 0, 9, 0, 9);
        const MapRegionStatistics whole = mapRegionStatistics(map.data, all);
        QVERIFY(!whole.hasNet && !whole.note.isEmpty());
        const MapRegion region = MapRegion::bins(map.data, 4, 5, 4, 5);
        map.contents[4 * 10 + 4] = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(!mapRegionStatistics(map.data, region).fault.isEmpty());
        map.contents[4 * 10 + 4] = 0.5;
        QVERIFY(std::isnan(mapRegionStatistics(map.data, region).excessProbability));
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(MapRegion::rectangle(map.data, nan, 5.0, 0.0, 5.0).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestMapRegion)
#include "tst_mapregion.moc"
