// Read-outs of plots, compared with their reference implementations.
#include "support/cases.h"
#include "support/cutoracle.h"
#include "support/support.h"
#include "tarnis/plots/math/mapreadout_p.h"
#include "tarnis/plots/math/readout_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using tarnis::ReadOutAxis;
using tarnis::Series;
using namespace tarnis::testing;

namespace {

/// 100 pixels wide and high, one unit a pixel.
const QRect graph(10, 20, 100, 100);
const tarnis::ReadOutNames names { QStringLiteral("keV"), QStringLiteral("Row"), 3 };

ReadOutAxis axisTo(double max)
{
    ReadOutAxis axis;
    axis.visible = axis.initial = { 0.0, max };
    return axis;
}

QString read(const QList<Series>& series, QPoint pixel, const ReadOutAxis& axis, bool summed = false)
{
    return tarnis::readOut(series, pixel, graph, axis, { 0.0, 100.0 }, summed, names);
}

Series record(const QList<double>& values, bool enable = true)
{
    return { values, Qt::white, enable };
}

/// The read-out by its written rules, step by step, on a linear index.
QString speltOut(const QList<Series>& series, QPoint pixel, const ReadOutAxis& axis, tarnis::AxisRange y, bool summed)
{
    const double count = double(series[0].values.size());
    const double x =
        (axis.visible.max - axis.visible.min) * (pixel.x() - graph.left()) / graph.width() + axis.visible.min;
    const double bin = (axis.initial.max - axis.initial.min) / count;
    double index = std::floor((x - axis.initial.min) / bin);
    index = index < 0 ? 0 : index > count - 1 ? count - 1 : index;
    const double shown = axis.decimals ? axis.initial.min + (index + 0.5) * bin : axis.initial.min + index * bin;
    const auto text = [](double value) { return QStringLiteral("%1").arg(value, 0, 'g', -1, QLatin1Char(' ')); };
    double sum = 0.0;
    int nearest = -1;
    double distance = y.max - y.min;
    const double under = y.max - (pixel.y() - graph.top()) * (y.max - y.min) / graph.height();
    for (int i = 0; i < series.size(); ++i) {
        if (!series[i].enable || index >= double(series[i].values.size()))
            continue;
        const double sample = series[i].values[int(index)];
        sum += sample;
        if (std::fabs(sample - under) < distance) {
            distance = std::fabs(sample - under);
            nearest = i;
        }
    }
    if (summed || series.size() == 1)
        return names.x + ':' + text(shown) + " i:" + text(sum);
    if (nearest < 0)
        return {};
    return names.group + ':' + QString::number(nearest + names.firstNumber) + ' ' + names.x + ':' + text(shown)
        + " i:" + text(series[nearest].values[int(index)]);
}

double half(double x, void*)
{
    return 0.5 * x;
}

double twice(double x, void*)
{
    return 2.0 * x;
}

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

const QRect mapGraph(100, 50, 60, 20);

QString readOut(const MapState& map, QPoint pixel, int decimalX, int decimalY)
{
    const tarnis::MapAxis x = { { map.minX, map.maxX, map.initMinX, map.manualX, oracleStepX(map), 1 }, "x", decimalX };
    const tarnis::MapAxis y = { { map.minY, map.maxY, map.initMinY, map.manualY, oracleStepY(map), 1 }, "y", decimalY };
    return tarnis::readOut(map.data, x, y, pixel, mapGraph);
}

} // namespace

class TestReadOut : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The read-out under the mouse, without a mouse.

    void sampleUnderX_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<int>("index");
        QTest::newRow("lower end of a bin") << 30.0 << 3;
        QTest::newRow("within a bin") << 39.9 << 3;
        QTest::newRow("below the range") << -0.1 << 0;
        QTest::newRow("far below") << -1e300 << 0;
        QTest::newRow("upper end") << 100.0 << 9;
        QTest::newRow("far above") << 1e300 << 9;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0;
    }
    void sampleUnderX()
    {
        QFETCH(double, x);
        QTEST(tarnis::sampleAt(x, axisTo(100.0), 10), "index");
    }

    void sampleByAFunction()
    {
        ReadOutAxis axis = axisTo(100.0);
        axis.position = twice;
        axis.resolution = 4.0;
        QCOMPARE(tarnis::sampleAt(10.0, axis, 10), 5);
        QCOMPARE(tarnis::sampleAt(9.9, axis, 10), 4); // 19.8, cut to 19, divided by 4
        QCOMPARE(tarnis::sampleAt(-10.0, axis, 10), 0);
        QCOMPARE(tarnis::sampleAt(1e300, axis, 10), 9);
    }

    void shownX()
    {
        ReadOutAxis axis = axisTo(100.0);
        axis.initial.min = 50.0;
        QCOMPARE(tarnis::shownX(3, axis, 10), 65.0);
        axis.decimals = true;
        QCOMPARE(tarnis::shownX(3, axis, 10), 67.5);
        axis.position = twice; // bins have no width then
        QCOMPARE(tarnis::shownX(3, axis, 10), 50.0);
    }

    void shownXOfAFunction()
    {
        ReadOutAxis axis = axisTo(100.0);
        axis.plotX = half;
        axis.resolution = 4.0;
        QCOMPARE(tarnis::shownX(3, axis, 10), 6.0);
    }

    void readsTheValueOfTheBin()
    {
        // Column 40 is the value 30, which is in the bin that begins at 30.
        QCOMPARE(read({ record({ 1, 2, 3, 4.5, 5, 6, 7, 8, 9, 10 }) }, { 40, 50 }, axisTo(100.0)),
            QStringLiteral("keV:30 i:4.5"));
        QCOMPARE(read({ record({ 1, 2, 3 }, false) }, { 40, 50 }, axisTo(100.0)), QStringLiteral("keV:0 i:0"));
    }

    void nearestOfMany()
    {
        const QList<Series> series { record({ 10, 10 }), record({ 60, 60 }), record({ 90, 90 }) };
        QCOMPARE(read(series, { 20, 20 + 35 }, axisTo(100.0)), QStringLiteral("Row:4 keV:0 i:60"));
        QCOMPARE(read(series, { 80, 20 + 20 }, axisTo(100.0)), QStringLiteral("Row:5 keV:50 i:90"));
    }

    void firstOfEquals()
    {
        QCOMPARE(tarnis::seriesNearest({ record({ 40 }), record({ 60 }) }, 0, 50.0, 100.0), 0);
        QCOMPARE(tarnis::seriesNearest({ record({ 60 }), record({ 60 }) }, 0, 50.0, 100.0), 0);
    }

    void readsNoSeriesBeyondTheReach()
    {
        QVERIFY(!tarnis::seriesNearest({ record({ 150 }) }, 0, 50.0, 100.0)); // as far as the reach is too far
        QVERIFY(tarnis::seriesNearest({ record({ 149.9 }) }, 0, 50.0, 100.0));
        QVERIFY(!tarnis::seriesNearest({ record({ std::numeric_limits<double>::quiet_NaN() }) }, 0, 50.0, 100.0));
        QVERIFY(read({ record({ 500 }), record({ 600 }) }, { 40, 50 }, axisTo(100.0)).isEmpty());
    }

    void hiddenAndShortRecordsAreNotThere()
    {
        const QList<Series> series { record({ 1, 1, 1, 1 }), record({ 50, 50, 50, 50 }, false), record({ 50, 50 }) };
        QCOMPARE(tarnis::seriesNearest(series, 3, 50.0, 100.0), 0);
        QCOMPARE(tarnis::seriesNearest(series, 1, 50.0, 100.0), 2);
    }

    void sumOfTheEnabledOnes()
    {
        const QList<Series> series { record({ 1, 2 }), record({ 10, 20 }, false), record({ 100 }) };
        QCOMPARE(tarnis::sumAt(series, 0), 101.0);
        QCOMPARE(tarnis::sumAt(series, 1), 2.0);
        QCOMPARE(read(series, { 20, 50 }, axisTo(100.0), true), QStringLiteral("keV:0 i:101"));
    }

    void matchesTheDocumentedRules()
    {
        auto random = tarnis::testing::seededGenerator(3571);
        const auto real = [&](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        const auto whole = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
        for (int number = 0; number < 5000; ++number) {
            QList<Series> series;
            for (int k = whole(1, 6); k > 0; --k) {
                QList<double> values(whole(series.isEmpty() ? 1 : 0, 40));
                for (double& value : values)
                    value = whole(0, 3) == 0 ? whole(0, 5) : real(-20.0, 120.0);
                series.append(record(values, whole(0, 4) != 0));
            }
            ReadOutAxis axis;
            axis.initial.min = whole(0, 1) == 0 ? 0.0 : real(-50.0, 50.0);
            axis.initial.max = axis.initial.min + real(1.0, 100.0);
            axis.visible = whole(0, 1) == 0 ? axis.initial : tarnis::AxisRange { real(-90.0, 50.0), real(60.0, 200.0) };
            axis.decimals = whole(0, 1) == 0;
            const tarnis::AxisRange y { real(-30.0, 0.0), real(10.0, 150.0) };
            const QPoint pixel(whole(graph.left() + 1, graph.right() - 1), whole(graph.top() + 1, graph.bottom() - 1));
            const bool summed = whole(0, 3) == 0;
            QCOMPARE(tarnis::readOut(series, pixel, graph, axis, y, summed, names),
                speltOut(series, pixel, axis, y, summed));
        }
    }

    void anyNumbersAreHarmless()
    {
        const double odd[] = { 0.0, 1.0, -1.0, 1e308, -1e308, 5e-324, std::nan(""), HUGE_VAL, -HUGE_VAL };
        for (const double a : odd) {
            for (const double b : odd) {
                ReadOutAxis axis;
                axis.visible = { a, b };
                axis.initial = { b, a };
                tarnis::readOut({ record({ a, b }), record({ b }) }, { 50, 60 }, graph, axis, { a, b }, false, names);
                axis.initial = axis.visible;
                axis.plotX = half;
                axis.position = twice;
                tarnis::readOut({ record({ a, b }), record({ b }) }, { 50, 60 }, graph, axis, { b, a }, true, names);
            }
        }
    }

    void strictlyInside()
    {
        const QList<Series> series { record({ 1, 2 }) };
        QVERIFY(read(series, graph.topLeft(), axisTo(100.0)).isEmpty());
        QVERIFY(read(series, graph.bottomRight(), axisTo(100.0)).isEmpty());
        QVERIFY(!read(series, graph.topLeft() + QPoint(1, 1), axisTo(100.0)).isEmpty());
        QVERIFY(!read(series, graph.bottomRight() - QPoint(1, 1), axisTo(100.0)).isEmpty());
    }

    void isEmptyWithoutData()
    {
        QVERIFY(read({}, { 50, 50 }, axisTo(100.0)).isEmpty());
        QVERIFY(read({ record({}), record({ 1, 2 }) }, { 50, 50 }, axisTo(100.0)).isEmpty());
    }

    // The read-out of a map compared with its reference implementation.

    void readsTheBinAtAPixel_data()
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
    void readsTheBinAtAPixel()
    {
        QFETCH(QPoint, pixel);
        QFETCH(int, decimals);
        QFETCH(QString, text);
        QCOMPARE(readOut(smallMap(), pixel, decimals, decimals), text);
    }

    void readOutsMatchTheOracle()
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
                oracleReadOut(map, pixel, mapGraph, "x", "y", decimalX, decimalY));
        }
    }
};

QTEST_APPLESS_MAIN(TestReadOut)
#include "tst_readout.moc"
