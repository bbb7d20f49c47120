// The read-out of a map compared with its reference implementation.
#include "support/cases.h"
#include "support/cutoracle.h"
#include "support/support.h"
#include "tarnis/plots/math/mapreadout_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

/// 3 columns of 2 units from 10 on, 2 rows of 5 units from -5 on; 60 x 20 pixels from (100, 50) on.
MapState smallMap()
{
    MapState map;
    map.data = { { 1.0, 2.0, 3.0 }, { 0.0, -4.0, 1234567.0 } };
    map.manualX = true;
    map.manualY = true;
    map.minX = map.initMinX = 10.0;
    map.maxX = map.initMaxX = 16.0;
    map.minY = map.initMinY = -5.0;
    map.maxY = map.initMaxY = 5.0;
    return map;
}

const QRect graph(100, 50, 60, 20);

QString readOut(const MapState& map, QPoint pixel, int decimalX, int decimalY)
{
    const tarnis::MapAxis x = { { map.minX, map.maxX, map.initMinX, map.manualX, oracleStepX(map), 1 }, "x", decimalX };
    const tarnis::MapAxis y = { { map.minY, map.maxY, map.initMinY, map.manualY, oracleStepY(map), 1 }, "y", decimalY };
    return tarnis::readOut(map.data, x, y, pixel, graph);
}

} // namespace

class TestMapReadout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readOuts_data()
    {
        addColumns<QPoint, int, QString>("pixel", "decimals", "text");
        QTest::newRow("row 0 on a whole-number axis") << QPoint(101, 68) << 0 << "x:10 y:-5 i:1";
        QTest::newRow("centres on an axis with decimals") << QPoint(101, 68) << 2 << "x:11 y:-2.5 i:1";
        QTest::newRow("last pixel of a bin") << QPoint(119, 68) << 0 << "x:10 y:-5 i:1";
        QTest::newRow("first pixel of the next") << QPoint(120, 68) << 0 << "x:12 y:-5 i:2";
        QTest::newRow("six digits") << QPoint(150, 55) << 0 << "x:14 y:0 i:1.23457e+06";
        QTest::newRow("0") << QPoint(110, 55) << 0 << "";
        QTest::newRow("negative") << QPoint(130, 55) << 0 << "";
        QTest::newRow("left edge") << QPoint(100, 60) << 0 << "";
        QTest::newRow("right edge") << QPoint(159, 60) << 0 << "";
        QTest::newRow("top edge") << QPoint(150, 50) << 0 << "";
        QTest::newRow("bottom edge") << QPoint(150, 69) << 0 << "";
        QTest::newRow("just inside of the right edge") << QPoint(158, 55) << 0 << "x:14 y:0 i:1.23457e+06";
        QTest::newRow("outside") << QPoint(0, 0) << 0 << "";
    }
    void readOuts()
    {
        QFETCH(QPoint, pixel);
        QFETCH(int, decimals);
        QFETCH(QString, text);
        QCOMPARE(readOut(smallMap(), pixel, decimals, decimals), text);
    }

    void readOutsAsSpeltOut()
    {
        std::mt19937_64 generator = seededGenerator(1);
        const auto real = [&](double low, double high) {
            return std::uniform_real_distribution<>(low, high)(generator);
        };
        for (int i = 0; i < 50000; ++i) {
            MapState map = smallMap();
            map.minX = real(5.0, 15.0);
            map.maxX = map.minX + real(0.0, 10.0);
            map.minY = real(-7.0, 4.0);
            map.maxY = map.minY + real(0.0, 10.0);
            map.stepX = generator() % 2 == 0 ? 0.0 : real(0.1, 5.0);
            if (generator() % 4 == 0)
                map.data[1] = { 5.0 }; // ragged
            if (generator() % 50 == 0)
                map.maxX = map.minX;
            const QPoint pixel(90 + static_cast<int>(generator() % 80), 40 + static_cast<int>(generator() % 40));
            const auto decimalX = static_cast<int>(generator() % 2);
            const auto decimalY = static_cast<int>(generator() % 2);
            QCOMPARE(readOut(map, pixel, decimalX, decimalY),
                oracleReadOut(map, pixel, graph, "x", "y", decimalX, decimalY));
        }
    }
};

QTEST_APPLESS_MAIN(TestMapReadout)
#include "tst_mapreadout.moc"
