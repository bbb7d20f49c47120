// Error intervals of counts against the exact ones.
#include "tarnis/tools/curves/counterrors_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;

class TestCountErrors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void agreesWithTheExactInterval()
    {
        for (const double count : { 0.0, 1.0, 2.0, 10.0, 999.0, 1000.0, 1001.0, 5000.0, 1e6 }) {
            const CountInterval exact = poissonInterval(count);
            const CountInterval quick = quickPoissonInterval(count);
            const double width = exact.upper - exact.lower;
            QVERIFY2(std::abs(quick.lower - exact.lower) < 1e-4 * width, qPrintable(QString::number(count)));
            QVERIFY2(std::abs(quick.upper - exact.upper) < 1e-4 * width, qPrintable(QString::number(count)));
        }
        QCOMPARE(quickPoissonInterval(0).lower, 0.0);
        QVERIFY(std::abs(quickPoissonInterval(0).upper - 1.841) < 1e-3);
        QVERIFY(std::abs(quickPoissonInterval(0).upper - 1.841) < 1e-3); // from the table
    }

    void growsWithoutAStep()
    {
        for (double count = 0; count < 2000; ++count) {
            QVERIFY(quickPoissonInterval(count + 1).upper > quickPoissonInterval(count).upper);
            QVERIFY(quickPoissonInterval(count + 1).lower > quickPoissonInterval(count).lower);
        }
    }

    void recognisesNonCounts_data()
    {
        QTest::addColumn<double>("value");
        QTest::newRow("fraction") << 2.5;
        QTest::newRow("negative") << -1.0;
        QTest::newRow("not a number") << std::nan("");
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    }
    void recognisesNonCounts()
    {
        QFETCH(double, value);
        QVERIFY(!isCount(value));
        QVERIFY(std::isnan(quickPoissonInterval(value).lower) && std::isnan(quickPoissonInterval(value).upper));
        QVERIFY(std::isnan(squareRootInterval(value).lower) && std::isnan(squareRootInterval(value).upper));
    }

    void squareRoots()
    {
        QCOMPARE(squareRootInterval(9).lower, 6.0);
        QCOMPARE(squareRootInterval(9).upper, 12.0);
        QCOMPARE(squareRootInterval(0).upper, 0.0);
    }
};

QTEST_GUILESS_MAIN(TestCountErrors)
#include "tst_counterrors.moc"
