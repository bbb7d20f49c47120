// The arithmetic of an axis: ticks, rounded maxima, tick lists, positions and grid lines.
#include "support/cases.h"
#include "support/frameoracle.h"
#include "support/support.h"
#include "tarnis/plots/math/axisticks_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

using tarnis::AxisRange;
using tarnis::AxisTicks;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using Values = QList<double>;

bool alike(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b)) || tarnis::plotEqual(a, b);
}

bool alike(const Values& a, const Values& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) { return alike(x, y); });
}

QString text(const Values& values)
{
    QString result;
    QDebug(&result) << values;
    return result;
}

/// A double of any magnitude.
double anyNumber(std::mt19937_64& random)
{
    const double mantissa = std::uniform_real_distribution<double>(-10.0, 10.0)(random);
    const int exponent = std::uniform_int_distribution<int>(-310, 307)(random);
    return mantissa * std::pow(10.0, exponent);
}

/// A typical axis value.
double axisNumber(std::mt19937_64& random)
{
    const double mantissa = std::uniform_real_distribution<double>(-10.0, 10.0)(random);
    const int exponent = std::uniform_int_distribution<int>(-2, 7)(random);
    return mantissa * std::pow(10.0, exponent);
}

} // namespace

class TestAxisTicks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void comparesWithTolerance_data()
    {
        addColumns<double, double, bool>("a", "b", "equal");
        QTest::newRow("the same") << 3.0 << 3.0 << true;
        QTest::newRow("one step apart near 1") << 1.0 << 1.0 + DBL_EPSILON << true;
        QTest::newRow("two steps apart near 1") << 1.0 << 1.0 + 2 * DBL_EPSILON << false;
        QTest::newRow("tolerance grows with magnitude") << 1e10 << 1e10 * (1 + DBL_EPSILON) << true;
        QTest::newRow("just beyond at magnitude") << 1e10 << 1e10 + 1e-4 << false;
        QTest::newRow("small ones are equal within epsilon") << 1e-17 << -1e-17 << true;
        QTest::newRow("small but not that small") << 1e-15 << 0.0 << false;
        QTest::newRow("limit below 1") << 0.5 << 0.5 + DBL_EPSILON << true;
        QTest::newRow("zeros of both signs") << 0.0 << -0.0 << true;
        QTest::newRow("opposite signs") << 1.0 << -1.0 << false;
        QTest::newRow("an infinity differs from itself") << infinity << infinity << false;
        QTest::newRow("opposite infinities are as near") << infinity << -infinity << true;
        QTest::newRow("any distance to infinity is within its tolerance") << infinity << 1.0 << true;
        QTest::newRow("not a number equals nothing") << notANumber << notANumber << false;
    }
    void comparesWithTolerance()
    {
        QFETCH(double, a);
        QFETCH(double, b);
        QTEST(tarnis::plotEqual(a, b), "equal");
        QTEST(tarnis::plotEqual(b, a), "equal");
    }

    void cutsPixels_data()
    {
        addColumns<double, int>("value", "pixel");
        QTest::newRow("whole") << 12.0 << 12;
        QTest::newRow("fraction") << 12.999 << 12;
        QTest::newRow("negative, towards zero") << -0.999 << 0;
        QTest::newRow("negative") << -3.5 << -3;
        QTest::newRow("the limit") << 1073741824.0 << 1073741824;
        QTest::newRow("beyond the limit") << 3e9 << 1073741824;
        QTest::newRow("beyond the other limit") << -3e9 << -1073741824;
        QTest::newRow("infinity") << infinity << 1073741824;
        QTest::newRow("minus infinity") << -infinity << -1073741824;
        QTest::newRow("not a number is out of sight") << notANumber << -1073741824;
    }
    void cutsPixels()
    {
        QFETCH(double, value);
        QTEST(tarnis::truncateToPixel(value), "pixel");
    }

    void roundsToInt_data()
    {
        addColumns<double, int>("value", "rounded");
        QTest::newRow("down") << 2.4 << 2;
        QTest::newRow("half up") << 2.5 << 3;
        QTest::newRow("half away from zero") << -2.5 << -3;
        QTest::newRow("largest") << 2147483647.0 << 2147483647;
        QTest::newRow("nearly largest") << 2147483646.6 << 2147483647;
        QTest::newRow("too large") << 1e18 << 2147483647;
        QTest::newRow("smallest") << -2147483648.0 << std::numeric_limits<int>::min();
        QTest::newRow("too small") << -1e300 << std::numeric_limits<int>::min();
        QTest::newRow("not a number") << notANumber << std::numeric_limits<int>::min();
    }
    void roundsToInt()
    {
        QFETCH(double, value);
        QTEST(tarnis::roundToInt(value), "rounded");
    }

    void ticksAreRoundValuesInTheRange_data()
    {
        addColumns<double, double, int, Values, int>("a", "b", "wanted", "expected", "used");
        addCase("0 to 100", 0.0, 100.0, 0, Values { 0, 20, 40, 60, 80, 100 }, 0);
        addCase("0 to 1024", 0.0, 1024.0, 0, Values { 0, 200, 400, 600, 800, 1000 }, 0);
        addCase("half without decimals", 0.0, 0.5, 0, Values { 0 }, 0);
        addCase("half with decimals", 0.0, 0.5, 2, Values { 0, 0.1, 0.2, 0.3, 0.4, 0.5 }, 1);
        addCase("0 to 3 has no halves", 0.0, 3.0, 0, Values { 0, 1, 2, 3 }, 0);
        addCase("negative decimals are none", 0.0, 3.0, -2, Values { 0, 1, 2, 3 }, -2);
        addCase("0 to 3 with a decimal", 0.0, 3.0, 1, Values { 0, 0.5, 1, 1.5, 2, 2.5, 3 }, 1);
        addCase("decimals untouched at whole steps", 0.0, 100.0, 5, Values { 0, 20, 40, 60, 80, 100 }, 5);
        addCase("a quarter of exactly 1", 0.0, 4.0, 3, Values { 0, 1, 2, 3, 4 }, 3);
        addCase("2 is not below a quarter of 8", 0.0, 8.0, 0, Values { 0, 1, 2, 3, 4, 5, 6, 7, 8 }, 0);
        addCase("5 is not below a quarter of 20", 0.0, 20.0, 0, Values { 0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20 }, 0);
        addCase("5 is below a quarter of 21", 0.0, 21.0, 0, Values { 0, 5, 10, 15, 20 }, 0);
        addCase("no tick below a thousandth", 0.0, 0.0031, 3, Values { 0, 0.001, 0.002, 0.003 }, 3);
        addCase("much finer than a thousandth", 0.0, 1e-7, 3, Values { 0 }, 3);
        addCase("zero range without decimals", 0.0, 0.0, 0, Values { 0 }, 0);
        addCase("zero range with decimals", 0.0, 0.0, 1, Values { 0 }, 3);
        addCase("zero range elsewhere", 7.0, 7.0, 0, Values { 7 }, 0);
        addCase("between whole numbers: out of range, downwards", 0.2, 0.8, 0, Values { 1, 0 }, 0);
        addCase("the same reversed", 0.8, 0.2, 0, Values { 0, 1 }, 0);
        addCase("reversed", 100.0, 0.0, 0, Values { 100, 80, 60, 40, 20, 0 }, 0);
        addCase("both sides of zero", -55.0, 45.0, 0, Values { -40, -20, 0, 20, 40 }, 0);
        addCase("negative", -1000.0, -500.0, 0, Values { -1000, -900, -800, -700, -600, -500 }, 0);
        addCase("not a number", notANumber, 1.0, 2, Values { notANumber }, 2);
        addCase("infinite", 0.0, infinity, 0, Values { notANumber }, 0);
        addCase("wider than a double", -1.7e308, 1.7e308, 0, Values { notANumber }, 0);
    }
    void ticksAreRoundValuesInTheRange()
    {
        QFETCH(double, a);
        QFETCH(double, b);
        QFETCH(int, wanted);
        QFETCH(Values, expected);
        int decimal = wanted;
        const Values ticks = tarnis::calcTicks(a, b, decimal);
        QVERIFY2(alike(ticks, expected), qPrintable(text(ticks)));
        QTEST(decimal, "used");
    }

    /// Ticks are in order, equally apart by 1, 2 or 5 times a power of ten, inside the range, and reversed with it.
    void ticksKeepTheirPromises()
    {
        auto random = tarnis::testing::seededGenerator(11);
        for (int i = 0; i < 20000; ++i) {
            double a = axisNumber(random);
            double b = axisNumber(random);
            if (std::fabs(a - b) < 4.0)
                continue; // finer ranges may contain no integer
            int decimal = 0;
            const Values ticks = tarnis::calcTicks(a, b, decimal);
            QVERIFY2(ticks.size() >= 4 && ticks.size() <= 11, qPrintable(text({ a, b })));
            const double step = std::fabs(ticks.at(1) - ticks.at(0));
            const double mantissa = step / std::pow(10.0, std::floor(std::log10(step * 1.0000001)));
            QVERIFY(std::fabs(mantissa - 1.0) < 1e-6 || std::fabs(mantissa - 2.0) < 1e-6
                || std::fabs(mantissa - 5.0) < 1e-6);
            QVERIFY(step <= std::fabs(a - b) * 0.25 * (1 + 1e-9));
            const double slack = std::fabs(a - b) * 1e-9;
            for (const double tick : ticks)
                QVERIFY(tick >= std::min(a, b) - slack && tick <= std::max(a, b) + slack);
            QCOMPARE(std::is_sorted(ticks.begin(), ticks.end()), a < b);

            Values mirrored = tarnis::calcTicks(b, a, decimal);
            std::reverse(mirrored.begin(), mirrored.end());
            QCOMPARE(mirrored, ticks);
        }
    }

    void ticksOfAnyNumbersAreFewAndThere()
    {
        auto random = tarnis::testing::seededGenerator(12);
        const double special[] = { 0.0, -0.0, infinity, -infinity, notANumber, DBL_MAX, -DBL_MAX, 5e-324, DBL_MIN };
        std::uniform_int_distribution<std::size_t> pick(0, std::size(special) - 1);
        for (int i = 0; i < 50000; ++i) {
            double a = i % 7 == 0 ? special[pick(random)] : anyNumber(random);
            double b = i % 5 == 0 ? special[pick(random)] : anyNumber(random);
            if (i % 3 == 0)
                b = std::nextafter(a, b);
            int decimal = i % 6 - 1;
            const Values ticks = tarnis::calcTicks(a, b, decimal);
            QVERIFY2(!ticks.isEmpty() && ticks.size() < 50, qPrintable(text({ a, b })));
            QVERIFY(tarnis::logTicks({ a, b }).values.size() < 1000);
        }
    }

    void ticksAreThoseOfTheOracle()
    {
        auto random = tarnis::testing::seededGenerator(13);
        for (int i = 0; i < 50000; ++i) {
            const double a = i % 2 == 0 ? axisNumber(random) : anyNumber(random);
            const double b = i % 3 == 0 ? axisNumber(random) : a + axisNumber(random) * 0.01;
            int decimal = i % 6 - 1;
            int oracleDecimal = decimal;
            const Values ticks = tarnis::calcTicks(a, b, decimal);
            const Values expected = tarnis::testing::frameTicks(a, b, oracleDecimal);
            QCOMPARE(decimal, oracleDecimal);
            QVERIFY2(std::equal(ticks.begin(), ticks.end(), expected.begin(), expected.end(),
                         [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); }),
                qPrintable(text(ticks) + text(expected)));
        }
    }

    void roundsMaximaUpToATick_data()
    {
        addColumns<double, double, unsigned int>("value", "rounded", "ticks");
        QTest::newRow("1024") << 1024.0 << 1200.0 << 6U;
        QTest::newRow("100") << 100.0 << 100.0 << 5U;
        QTest::newRow("a half stays") << 0.5 << 0.5 << 5U;
        QTest::newRow("3") << 3.0 << 3.0 << 6U;
        QTest::newRow("8 in single steps") << 8.0 << 8.0 << 8U;
        QTest::newRow("16384") << 16384.0 << 18000.0 << 9U;
        QTest::newRow("at least four ticks, the value stays") << 0.0 << 0.0 << 4U;
        QTest::newRow("negative") << -5.0 << notANumber << 4U;
        QTest::newRow("infinite") << infinity << notANumber << 4U;
        QTest::newRow("not a number") << notANumber << notANumber << 4U;
        QTest::newRow("too small for a step of its own") << 5e-324 << 1.0 << 4U;
    }
    void roundsMaximaUpToATick()
    {
        QFETCH(double, value);
        QFETCH(double, rounded);
        unsigned int count = 99;
        const double result = tarnis::adjustAxis(value, count);
        QVERIFY2(alike(result, rounded), qPrintable(QString::number(result)));
        QTEST(count, "ticks");
    }

    /// A rounded maximum is not below the value, less than a quarter above it, and a multiple of the step.
    void maximaKeepTheirPromises()
    {
        auto random = tarnis::testing::seededGenerator(14);
        for (int i = 0; i < 20000; ++i) {
            const double value = std::fabs(axisNumber(random));
            unsigned int count = 0;
            const double rounded = tarnis::adjustAxis(value, count);
            QVERIFY(rounded >= value * (1 - 1e-15) && rounded <= value * 1.25 * (1 + 1e-12));
            QVERIFY(count >= 4 && count <= 11);
            unsigned int again = 0;
            const double twice = tarnis::adjustAxis(rounded, again);
            QVERIFY2(twice >= rounded * (1 - 1e-15), qPrintable(text({ value, rounded, twice })));
        }
    }

    void roundsMaximaOfLogAxes_data()
    {
        addColumns<double, double>("value", "rounded");
        QTest::newRow("a power of ten stays") << 1000.0 << 1000.0;
        QTest::newRow("just above it") << 1001.0 << 10000.0;
        QTest::newRow("below one") << 0.5 << 1.0;
        QTest::newRow("zero") << 0.0 << 1.0;
        QTest::newRow("negative") << -5.0 << 1.0;
        QTest::newRow("beyond the integers") << 1e22 << 1e22;
        QTest::newRow("the largest") << DBL_MAX << infinity;
        QTest::newRow("infinite") << infinity << infinity;
        QTest::newRow("not a number") << notANumber << 1.0;
    }
    void roundsMaximaOfLogAxes()
    {
        QFETCH(double, value);
        QTEST(tarnis::adjustLogAxis(value), "rounded");
    }

    void logarithmHasAFloor()
    {
        QCOMPARE(tarnis::floorLog10(1000.0), 3.0);
        QCOMPARE(tarnis::floorLog10(0.01), -2.0);
        QCOMPARE(tarnis::floorLog10(0.0), 0.0);
        QCOMPARE(tarnis::floorLog10(-7.0), 0.0);
        QCOMPARE(tarnis::floorLog10(notANumber), 0.0);
    }

    void addsTheEndsOfTheAxisToItsTicks_data()
    {
        addColumns<Values, double, double, Values, double>("inner", "min", "max", "expected", "step");
        addCase("both ends added", Values { 20, 40 }, 5.0, 47.0, Values { 5, 20, 40, 47 }, 20.0);
        addCase("ends that are there already", Values { 0, 20, 40 }, 0.0, 40.0, Values { 0, 20, 40 }, 20.0);
        addCase("within the tolerance", Values { 0.1, 0.2 }, 0.1 + 1e-17, 0.2, Values { 0.1, 0.2 }, 0.1);
        addCase("one tick has no step", Values { 0 }, 0.0, 0.5, Values { 0, 0.5 }, 0.0);
        addCase("one tick that is all", Values { 0 }, 0.0, 0.0, Values { 0 }, 0.0);
        addCase("descending", Values { 80, 60 }, 99.0, 60.0, Values { 99, 80, 60 }, -20.0);
        addCase("out of range and backwards", Values { 1, 0 }, 0.2, 0.8, Values { 0.2, 1, 0, 0.8 }, -1.0);
        addCase("not a number", Values { notANumber }, notANumber, 1.0, Values { notANumber, notANumber, 1 }, 0.0);
    }
    void addsTheEndsOfTheAxisToItsTicks()
    {
        QFETCH(Values, inner);
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(Values, expected);
        const AxisTicks list = tarnis::linearTicks(inner, { min, max });
        QVERIFY2(alike(list.values, expected), qPrintable(text(list.values)));
        QTEST(list.step, "step");
    }

    void logTickLists_data()
    {
        addColumns<double, double, Values>("min", "max", "expected");
        QTest::newRow("from zero") << 0.0 << 1000.0 << Values { 0, 1, 10, 100, 1000 };
        QTest::newRow("a power of ten is listed twice") << 1.0 << 100.0 << Values { 1, 1, 10, 100 };
        QTest::newRow("between powers") << 3.0 << 250.0 << Values { 3, 10, 100, 250 };
        QTest::newRow("below one") << 0.005 << 2.0 << Values { 0.005, 0.01, 0.1, 1, 2 };
        QTest::newRow("negative minimum") << -5.0 << 20.0 << Values { -5, 1, 10, 20 };
        QTest::newRow("all zero") << 0.0 << 0.0 << Values { 0, 0 };
        QTest::newRow("reversed") << 100.0 << 1.0 << Values { 100, 1 };
        QTest::newRow("not a number") << notANumber << 10.0 << Values { notANumber, 10 };
        QTest::newRow("infinite minimum") << infinity << 10.0 << Values { infinity, 10 };
    }
    void logTickLists()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(Values, expected);
        const AxisTicks list = tarnis::logTicks({ min, max });
        QVERIFY2(alike(list.values, expected), qPrintable(text(list.values)));
        QCOMPARE(list.step, 0.0);
        QVERIFY(tarnis::logTicks({ 0.0, infinity }).values.size() > 300); // ends, although the maximum does not
    }

    /// A range of n values on n pixels: each value has its own pixel, the maximum the one after the last.
    void columnsFallOnWholePixels()
    {
        for (int width = 1; width <= 2048; width *= 2) {
            const QRect graph(40, 10, width, 100);
            for (int i = 0; i <= width; ++i)
                QCOMPARE(tarnis::columnOf(i, { 0.0, static_cast<double>(width) }, graph), 40 + i);
        }
        QCOMPARE(tarnis::columnOf(75.0, { 100.0, 0.0 }, QRect(0, 0, 100, 1)), 25);
        QCOMPARE(tarnis::columnOf(1.0, { 1.0, 1.0 }, QRect(0, 0, 100, 1)), -(1 << 30)); // 0 / 0: out of sight
        QCOMPARE(tarnis::columnOf(2.0, { 1.0, 1.0 }, QRect(0, 0, 100, 1)), 1 << 30);
    }

    void findsTheRowOfAValue_data()
    {
        addColumns<double, double, double, bool, int>("value", "min", "max", "log", "row");
        // The graph runs from row 20 to row 119.
        QTest::newRow("minimum on the bottom") << 0.0 << 0.0 << 50.0 << false << 119;
        QTest::newRow("maximum just above the top") << 50.0 << 0.0 << 50.0 << false << 19;
        QTest::newRow("middle") << 25.0 << 0.0 << 50.0 << false << 69;
        QTest::newRow("cut, not rounded") << 0.7 << 0.0 << 100.0 << false << 118;
        QTest::newRow("equal ends") << 3.0 << 3.0 << 3.0 << false << 119;
        QTest::newRow("equal ends on a log axis") << 3.0 << 3.0 << 3.0 << true << 119;
        QTest::newRow("decade") << 10.0 << 1.0 << 100.0 << true << 69;
        QTest::newRow("zero is on the floor of a log axis") << 0.0 << 0.0 << 100.0 << true << 119;
        QTest::newRow("one is on the same floor") << 1.0 << 0.0 << 100.0 << true << 119;
        QTest::newRow("below the floor of a log axis") << 0.1 << 1.0 << 10.0 << true << 219;
        QTest::newRow("log axis within one decade of nothing") << 0.5 << 0.0 << 1.0 << true << (1 << 30);
        QTest::newRow("not a number") << notANumber << 0.0 << 1.0 << false << -(1 << 30);
        QTest::newRow("far above") << 1e300 << 0.0 << 1.0 << false << -(1 << 30);
    }
    void findsTheRowOfAValue()
    {
        QFETCH(double, value);
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(bool, log);
        QTEST(tarnis::rowOf(value, { min, max }, log, QRect(10, 20, 100, 100)), "row");
    }

    void gridLinesAreOnTicksAndHalfway()
    {
        const QRect graph(0, 0, 100, 100);
        const AxisRange range { 0.0, 100.0 };
        int decimal = 0;
        const AxisTicks ticks = tarnis::linearTicks(tarnis::calcTicks(0.0, 100.0, decimal), range);
        QCOMPARE(tarnis::gridColumns(ticks, range, graph), (QList<int> { 20, 30, 10, 40, 50, 60, 70, 80, 90 }));
        QCOMPARE(tarnis::gridRows(ticks, range, false, graph), (QList<int> { 79, 69, 89, 59, 49, 39, 29, 19, 9 }));

        const AxisTicks decades = tarnis::logTicks({ 1.0, 1000.0 });
        QCOMPARE(tarnis::gridRows(decades, { 1.0, 1000.0 }, true, QRect(0, 0, 100, 99)),
            (QList<int> { 65, 65, 32, 32 })); // the doubled minimum is the frame's own bottom
        QCOMPARE(tarnis::gridColumns({ { 0.0, 1.0 }, 1.0 }, { 0.0, 1.0 }, graph), QList<int>());
    }

    void gridStaysInside()
    {
        auto random = tarnis::testing::seededGenerator(15);
        for (int i = 0; i < 20000; ++i) {
            const AxisRange range { i % 2 == 0 ? axisNumber(random) : anyNumber(random), anyNumber(random) };
            int decimal = i % 4;
            const AxisTicks ticks = tarnis::linearTicks(tarnis::calcTicks(range.min, range.max, decimal), range);
            const QRect graph(i % 90, i % 70, i % 300 - 20, i % 200 - 20);
            for (const int column : tarnis::gridColumns(ticks, range, graph))
                QVERIFY(column > graph.left() && column < graph.right());
            for (const int row : tarnis::gridRows(ticks, range, i % 3 == 0, graph))
                QVERIFY(row > graph.top() && row < graph.bottom());
        }
    }
};

QTEST_APPLESS_MAIN(TestAxisTicks)
#include "tst_axisticks.moc"
