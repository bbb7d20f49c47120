// Exact intervals and tests of counts against reference numbers and explicit sums.
#include "referencedata.h"
#include "support/cases.h"

#include <tarnis/analysis/countstatistics.h>

#include <QJsonArray>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;
using namespace Qt::StringLiterals;

class TestCountStatistics : public QObject {
    Q_OBJECT

private slots:
    void findsTheReferenceIntervals()
    {
        const QJsonObject file = referenceNumbers(u"synthetic/poisson-intervals.json"_s);
        for (const QJsonValue& row : file["rows"_L1].toArray()) {
            const double counts = row["counts"_L1].toDouble();
            const CountInterval interval = poissonInterval(counts);
            QVERIFY(agreesRelatively(u"lower"_s, interval.lower, row["interval68"_L1][0].toDouble(), 1e-9));
            QVERIFY(agreesRelatively(u"upper"_s, interval.upper, row["interval68"_L1][1].toDouble(), 1e-9));
            QVERIFY(
                agreesRelatively(u"limit"_s, poissonUpperLimit(counts), row["upper95_one_sided"_L1].toDouble(), 1e-9));
        }
    }

    void coversWhatItPromises_data()
    {
        QTest::addColumn<int>("counts");
        for (const int counts : { 1, 3, 10, 50, 300 })
            QTest::addRow("%d", counts) << counts;
    }
    // At the lower end the observed counts or more have the probability of one tail, at the upper end the observed
    // counts or less.
    void coversWhatItPromises()
    {
        QFETCH(int, counts);
        const CountInterval interval = poissonInterval(counts);
        const auto atMost = [](int n, double mean) {
            double sum = 0.0;
            for (int k = 0; k <= n; ++k)
                sum += std::exp(k * std::log(mean) - mean - std::lgamma(k + 1.0));
            return sum;
        };
        const double tail = 0.5 * (1.0 - oneSigmaCoverage);
        QVERIFY(std::fabs(1.0 - atMost(counts - 1, interval.lower) - tail) < 1e-10);
        QVERIFY(std::fabs(atMost(counts, interval.upper) - tail) < 1e-10);
    }

    void addsUpTheBinomialTail_data()
    {
        addColumns<int, int, double>("inside", "outside", "probability");
        QTest::newRow("one of one") << 1 << 0 << 0.3;
        QTest::newRow("few") << 4 << 3 << 0.4;
        QTest::newRow("expected") << 40 << 60 << 0.4;
        QTest::newRow("far above") << 90 << 30 << 0.2;
        QTest::newRow("far below") << 10 << 200 << 0.5;
    }
    void addsUpTheBinomialTail()
    {
        QFETCH(int, inside);
        QFETCH(int, outside);
        QFETCH(double, probability);
        const int all = inside + outside;
        double sum = 0.0;
        for (int k = inside; k <= all; ++k)
            sum += std::exp(std::lgamma(all + 1.0) - std::lgamma(k + 1.0) - std::lgamma(all - k + 1.0)
                + k * std::log(probability) + (all - k) * std::log(1.0 - probability));
        QVERIFY(agreesRelatively(u"tail"_s, excessProbability(inside, outside, probability), sum, 1e-11));
    }

    void keepsItsDigitsAtLargeCounts()
    {
        // The expansion that large counts use joins the exact quantile of smaller ones.
        const CountInterval below = poissonInterval(2000.0);
        const CountInterval above = poissonInterval(2001.0);
        QVERIFY(std::fabs(above.lower - below.lower - 1.0) < 0.02);
        QVERIFY(std::fabs(above.upper - below.upper - 1.0) < 0.02);
        QVERIFY(std::fabs(poissonInterval(1e12).upper - 1e12 - 1e6) < 10.0);
        const double probability = excessProbability(1e9, 1e9, 0.5);
        QVERIFY(std::fabs(probability - 0.5) < 1e-4);
    }

    // Equation 17 of Li and Ma with 50 decimal digits, by Python: decimal.getcontext().prec = 50, then
    // sqrt(2 (s ln((1 + a)/a s/(s + b)) + b ln((1 + a) b/(s + b)))) with a = Decimal(n)/Decimal(m).
    void keepsTheDigitsOfASmallExcess()
    {
        QVERIFY(agreesRelatively(
            u"above"_s, liMaSignificance(103982801.0, 56706121.0, 11.0 / 6.0), 1.2572608785611084, 1e-9));
        QVERIFY(agreesRelatively(
            u"below"_s, liMaSignificance(50000123.0, 150000456.0, 1.0 / 3.0), -0.0035517551575416874, 1e-9));
        QVERIFY(agreesRelatively(u"few"_s, liMaSignificance(1000.0, 3001.0, 1.0 / 3.0), -0.009127821930639244, 1e-9));
    }

    void givesCurriesLevels()
    {
        const CurrieLevels levels = currieLevels(100.0, 0.0);
        QVERIFY(std::fabs(levels.critical - 16.4485) < 1e-3);
        QVERIFY(std::fabs(levels.detection - (2.7055 + 32.897)) < 1e-3);
        QCOMPARE(currieLevels(0.0, 0.0).critical, 0.0);
        QVERIFY(liMaSignificance(5.0, 100.0, 0.2) < 0.0);
        QVERIFY(liMaSignificance(35.0, 100.0, 0.2) > 0.0); // compared with alpha times the counts outside
        QCOMPARE(liMaSignificance(0.0, 0.0, 1.0), 0.0);
    }

    void refusesBadInput()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        for (const double bad : { -1.0, nan, std::numeric_limits<double>::infinity() }) {
            QVERIFY(std::isnan(poissonInterval(bad).lower));
            QVERIFY(std::isnan(poissonUpperLimit(bad)));
            QVERIFY(std::isnan(excessProbability(bad, 1.0, 0.5)));
            QVERIFY(std::isnan(excessProbability(1.0, bad, 0.5)));
            QVERIFY(std::isnan(liMaSignificance(1.0, 1.0, bad)));
        }
        QVERIFY(std::isnan(poissonInterval(1.0, 1.0).lower));
        QVERIFY(std::isnan(excessProbability(1.0, 1.0, 1.5)));
    }
};

QTEST_APPLESS_MAIN(TestCountStatistics)
#include "tst_countstatistics.moc"
