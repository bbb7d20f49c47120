// Visible samples of a curve and their pixel positions.
#include "support/cases.h"
#include "support/support.h"

#include "tarnis/plots/math/curvescale_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

using tarnis::SampleRange;
using tarnis::SampleScale;
using tarnis::ValueScale;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

double twice(double position, void*)
{
    return 2.0 * position;
}

} // namespace

class TestCurveScale : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholeSamples_data()
    {
        addColumns<double, double, int, int>("first", "last", "begin", "end");
        QTest::newRow("all of them") << 0.0 << 100.0 << 0 << 100;
        QTest::newRow("partly seen samples count") << 3.9 << 7.1 << 3 << 8;
        QTest::newRow("beyond both ends") << -50.0 << 1e300 << 0 << 100;
        QTest::newRow("left of the data") << -50.0 << -10.0 << 0 << 0;
        QTest::newRow("right of the data") << 200.0 << 300.0 << 100 << 100;
        QTest::newRow("infinite") << -infinity << infinity << 0 << 100;
        QTest::newRow("no number") << notANumber << 50.0 << 0 << 0;
        QTest::newRow("no number at the end") << 0.0 << notANumber << 0 << 0;
    }
    void wholeSamples()
    {
        QFETCH(double, first);
        QFETCH(double, last);
        const SampleRange range = tarnis::wholeSamples(first, last, 100);
        QTEST(range.begin, "begin");
        QTEST(range.end, "end");
    }

    void viewOfAnIndexAxis()
    {
        const tarnis::SampleView view = tarnis::sampleView({ 10.0, 60.0 }, { 0.0, 1000.0 }, false, 777, 400, 4);
        QCOMPARE(view.first, 10.0);
        QCOMPARE(view.last, 60.0); // in axis units, independent of the resolution
        QCOMPARE(view.pixelsPerSample, 32.0);
    }

    void viewOfAManualAxis()
    {
        const tarnis::SampleView view = tarnis::sampleView({ -5.0, 5.0 }, { -10.0, 10.0 }, true, 200, 400, 4);
        QCOMPARE(view.first, 50.0);
        QCOMPARE(view.last, 150.0);
        QCOMPARE(view.pixelsPerSample, 4.0); // the resolution has no part in it
    }

    void pixelsOfValues_data()
    {
        addColumns<double, double, bool, double>("min", "max", "logScale", "pixels");
        QTest::newRow("linear") << 0.0 << 50.0 << false << 6.0;
        QTest::newRow("linear, below one") << 0.0 << 0.5 << false << 600.0;
        QTest::newRow("linear, empty") << 5.0 << 5.0 << false << 0.0;
        QTest::newRow("linear, reversed") << 5.0 << 4.0 << false << 0.0;
        QTest::newRow("linear, no number") << 0.0 << notANumber << false << 0.0;
        QTest::newRow("log, three decades") << 1.0 << 1000.0 << true << 100.0;
        QTest::newRow("log, from zero as from one") << 0.0 << 1000.0 << true << 100.0;
        QTest::newRow("log, range of one") << 0.0 << 1.0 << true << 0.0;
        QTest::newRow("log, range below one") << 0.1 << 1.0 << true << 0.0;
    }
    void pixelsOfValues()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(bool, logScale);
        QTEST(tarnis::valuePixels({ min, max }, logScale, 300), "pixels");
    }

    void sampleIsAtTheMiddleOfItsBin()
    {
        const SampleScale scale { 0.0, 10.0, 50 };
        QCOMPARE(scale.pixel(0), 55);
        QCOMPARE(scale.pixel(7), 125);
        const SampleScale zoomed { 3.25, 2.0, 50 };
        QCOMPARE(zoomed.pixel(3), 50); // 50.5, cut
        const SampleScale undefined { 0.0, infinity, 50 };
        QCOMPARE(undefined.pixel(2), tarnis::pixelLimit);
    }

    void positionOfAFunction()
    {
        tarnis::FunctionScale scale { twice, 4.0, 8.0, { 0.0, 200.0 }, 400, 30 };
        QCOMPARE(scale.pixel(0), 30 + 32);
        QCOMPARE(scale.pixel(10), 30 + 192);
        QCOMPARE(scale.endOfColumn(3, 10), 4);
        scale.visible = { 0.0, 1e6 };
        QCOMPARE(scale.endOfColumn(0, 10), 10);
    }

    void basePosition_data()
    {
        addColumns<double, unsigned int, double>("position", "resolution", "base");
        QTest::newRow("a multiple") << 12.0 << 4U << 12.0;
        QTest::newRow("rounded down") << 15.9 << 4U << 12.0;
        QTest::newRow("cut first, then rounded down") << -0.5 << 4U << 0.0;
        QTest::newRow("negative") << -5.5 << 4U << -8.0;
        QTest::newRow("no number") << notANumber << 4U << 0.0;
        QTest::newRow("infinite") << infinity << 4U << 0.0;
    }
    void basePosition()
    {
        QFETCH(double, position);
        QFETCH(unsigned int, resolution);
        QTEST(tarnis::basePosition(position, resolution), "base");
    }

    void columnsEndWhereThePixelChanges()
    {
        auto random = tarnis::testing::seededGenerator(3551);
        std::uniform_real_distribution<double> unit(0.0, 1.0);
        for (int number = 0; number < 3000; ++number) {
            const SampleScale scale { (unit(random) - 0.2) * 5000.0,
                std::pow(10.0, 5.0 * unit(random) - 4.0) * (unit(random) < 0.05 ? -1.0 : 1.0),
                static_cast<int>(200.0 * unit(random)) - 100 };
            const int end = 2000 + static_cast<int>(unit(random) * 3000.0);
            for (int begin = static_cast<int>(unit(random) * 2000.0); begin < end;) {
                const int next = scale.endOfColumn(begin, end);
                QVERIFY(next > begin && next <= end);
                QCOMPARE(scale.pixel(next - 1), scale.pixel(begin));
                if (next < end)
                    QVERIFY(scale.pixel(next) != scale.pixel(begin));
                begin = next;
            }
        }
    }

    void pixelsOfALinearAxis()
    {
        const ValueScale scale(ValueScale::Kind::Linear, -10.0, 2.0, 300);
        QCOMPARE(scale.pixel(-10.0), 300);
        QCOMPARE(scale.pixel(0.2), 279); // 279.6, cut
        QCOMPARE(scale.pixel(infinity), -tarnis::pixelLimit);
        QCOMPARE(scale.pixel(-infinity), tarnis::pixelLimit);
        QCOMPARE(scale.pixel(notANumber), -tarnis::pixelLimit);
    }

    void pixelsOfALogAxis()
    {
        const ValueScale scale(ValueScale::Kind::Log, 1.0, 100.0, 300);
        QCOMPARE(scale.pixel(1.0), 300);
        QCOMPARE(scale.pixel(100.0), 100);
        QCOMPARE(scale.pixel(0.0), 300);
        QCOMPARE(scale.pixel(-5.0), 300);
        QCOMPARE(scale.pixel(0.1), 400);
    }

    void logRowsWithAFloor()
    {
        const ValueScale scale(ValueScale::Kind::LogWithFloor, 0.0, 100.0, 300);
        QCOMPARE(scale.pixel(0.5), 300);
        QCOMPARE(scale.pixel(1.0), 300);
        QCOMPARE(scale.pixel(10.0), 200);
        QCOMPARE(scale.pixel(-7.0), 300);
        QCOMPARE(scale.pixel(notANumber), 300);
        const ValueScale raised(ValueScale::Kind::LogWithFloor, 9.5, 100.0, 300);
        QCOMPARE(raised.pixel(10.0), 300);
        QVERIFY(raised.pixel(100.0) < 300);
    }

    void knowsWhichScalesAreMonotone()
    {
        QVERIFY(ValueScale(ValueScale::Kind::Linear, -3.0, 2.0, 300).isMonotone());
        QVERIFY(ValueScale(ValueScale::Kind::Log, 0.0, 2.0, 300).isMonotone());
        QVERIFY(ValueScale(ValueScale::Kind::LogWithFloor, 0.0, 2.0, 300).isMonotone());
        QVERIFY(!ValueScale(ValueScale::Kind::LogWithFloor, -1.0, 2.0, 300).isMonotone());
        QVERIFY(!ValueScale(ValueScale::Kind::Linear, notANumber, 2.0, 300).isMonotone());
        QVERIFY(!ValueScale(ValueScale::Kind::Linear, 0.0, infinity, 300).isMonotone());
        QVERIFY(!ValueScale(ValueScale::Kind::Linear, 0.0, notANumber, 300).isMonotone());
    }

    void zeroesShareARow()
    {
        QVERIFY(ValueScale(ValueScale::Kind::Linear, 0.0, 2.0, 300).zeroesShareARow());
        QVERIFY(!ValueScale(ValueScale::Kind::Linear, 0.0, 1e17, 300).zeroesShareARow());
        QVERIFY(!ValueScale(ValueScale::Kind::Log, 1.0, 100.0, 300).zeroesShareARow());
        QVERIFY(ValueScale(ValueScale::Kind::LogWithFloor, 0.0, 100.0, 300).zeroesShareARow());
    }
};

QTEST_APPLESS_MAIN(TestCurveScale)
#include "tst_curvescale.moc"
