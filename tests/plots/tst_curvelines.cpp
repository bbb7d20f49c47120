// Lines, columns and crosses of samples, and the curve of a peak as lines.
#include "support/support.h"
#include "tarnis/plots/math/curvelines_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/peakcurve_p.h"
#include "tarnis/plots/math/sampleextremes_p.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

using tarnis::Merging;
using tarnis::SampleRange;
using tarnis::SampleScale;
using tarnis::ValueScale;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// One pixel a unit of Y, the value 0 on row 100.
const ValueScale rows(ValueScale::Kind::Linear, 0.0, 1.0, 100);
/// Ten pixels a sample, the first at column 5.
const SampleScale wide { 0.0, 10.0, 0 };
/// Ten samples a pixel.
const SampleScale dense { 0.0, 0.1, 0 };
const Merging all { true, true };

QList<QLine> joined(const QList<double>& values, const SampleScale& x = wide, const Merging& merging = {})
{
    return tarnis::joinSamples({ values.constData(), 0 }, { 0, static_cast<int>(values.size()) }, x, rows, merging);
}

QList<QRect> columns(const QList<double>& values, const SampleScale& x, const Merging& merging)
{
    return tarnis::columnsOfSamples({ values.constData(), 0 }, { 0, static_cast<int>(values.size()) }, x, rows,
        { x.pixelsPerSample, 100.0 }, merging);
}

QList<QLine> crosses(const QList<double>& values, const SampleScale& x, const Merging& merging)
{
    return tarnis::crossesOfSamples(
        { values.constData(), 0 }, { 0, static_cast<int>(values.size()) }, x, rows, merging);
}

} // namespace

class TestCurveLines : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The rules on small lists, the number of lines where samples are dense, and the extremes of runs.

    void joinsFromTheSecondSampleOn()
    {
        QCOMPARE(joined({ 1.0, 2.0, 5.0 }), (QList<QLine> { { 5, 99, 15, 98 }, { 15, 98, 25, 95 } }));
        QVERIFY(joined({ 7.0 }).isEmpty());
        QVERIFY(joined({}).isEmpty());
    }

    void startsAtTheRange()
    {
        const QList<double> values { 1.0, 2.0, 5.0, 9.0 };
        const auto lines = tarnis::joinSamples({ values.constData(), 0 }, { 1, 3 }, wide, rows, {});
        QCOMPARE(lines, (QList<QLine> { { 15, 98, 25, 95 } }));
        // The same samples as a separate run.
        const auto ofRun = tarnis::joinSamples({ values.constData() + 1, 1 }, { 1, 3 }, wide, rows, {});
        QCOMPARE(ofRun, lines);
        QVERIFY(tarnis::joinSamples({ values.constData(), 0 }, { 3, 1 }, wide, rows, {}).isEmpty());
    }

    void nothingBetweenZeros()
    {
        QVERIFY(joined({ 0.0, 0.0, 0.0 }).isEmpty());
        QVERIFY(joined({ 0.0, 2e-16, -2e-16 }).isEmpty());
        QCOMPARE(joined({ 0.0, 0.0, 3.0, 0.0, 0.0 }), (QList<QLine> { { 15, 100, 25, 97 }, { 25, 97, 35, 100 } }));
        QCOMPARE(joined({ 1.0, 1.0 }), (QList<QLine> { { 5, 99, 15, 99 } }));
    }

    void nothingOnOnePixel() { QVERIFY(joined({ 4.1, 4.2, 4.3 }, { 0.0, 0.1, 0 }).isEmpty()); }

    void oneUprightLineAColumn()
    {
        QList<double> values(1000);
        for (int i = 0; i < values.size(); ++i)
            values[i] = i * 37 % 50;
        const QList<QLine> everySample = joined(values, dense);
        const QList<QLine> merged = joined(values, dense, all);
        QVERIFY(everySample.size() > 900);
        QVERIFY(merged.size() <= 2 * 101);
        for (const QLine& line : merged) {
            if (line.x1() == line.x2())
                QVERIFY(line.y1() < line.y2());
            else
                QCOMPARE(line.x2(), line.x1() + 1);
        }
    }

    void leavesOutHiddenJoins()
    {
        QList<double> values(400);
        for (int i = 0; i < values.size(); ++i)
            values[i] = i % 2 == 0 ? 10.0 : 90.0; // every column spans the same rows
        const QList<QLine> lines = joined(values, dense, all);
        QVERIFY(std::all_of(lines.cbegin(), lines.cend(), [](const QLine& line) { return line.x1() == line.x2(); }));
    }

    // A step of one row from column to column shows its ends alone, which the columns hold.
    void leavesOutStepsOfSmoothCurves()
    {
        QList<double> values(400);
        for (int i = 0; i < values.size(); ++i)
            values[i] = 0.5 * i; // five rows per column; the next one begins at most one row above
        const QList<QLine> lines = joined(values, dense, all);
        QCOMPARE(lines.size(), 40);
        QVERIFY(std::all_of(lines.cbegin(), lines.cend(), [](const QLine& line) { return line.x1() == line.x2(); }));
        for (int i = 0; i < values.size(); ++i)
            values[i] = 0.02 * i; // most columns are one pixel, which the joins draw
        QCOMPARE(joined(values, dense, all).size(), joined(values, dense, { true, false }).size());
    }

    void keepsJoinsOfScaledScreens()
    {
        QList<double> values(400);
        for (int i = 0; i < values.size(); ++i)
            values[i] = i % 2 == 0 ? 10.0 : 90.0;
        const QList<QLine> lines = joined(values, dense, { true, false });
        QVERIFY(std::any_of(lines.cbegin(), lines.cend(), [](const QLine& line) { return line.x1() != line.x2(); }));
    }

    void samplesOutsideOfTheAreaAreNotMerged()
    {
        QList<double> values(400);
        for (int i = 0; i < values.size(); ++i)
            values[i] = i % 2 == 0 ? 10.0 : 90.0;
        QCOMPARE(joined(values, dense, { true, true, QRect(0, 20, 1000, 1000) }), joined(values, dense));
    }

    void aColumnForEachSampleAboveZero()
    {
        QCOMPARE(columns({ 3.0, 0.0, -2.0, 7.5 }, wide, {}), (QList<QRect> { { 0, 97, 10, 3 }, { 30, 92, 10, 8 } }));
    }

    void onlyTheTallestOfAColumn()
    {
        const QList<double> values { 3.0, 8.0, -1.0, 0.0, 5.0, 2.0, 1.0, 7.0, 6.0 };
        QCOMPARE(columns(values, dense, all), (QList<QRect> { { 0, 92, 0, 8 } }));
        QCOMPARE(columns(values, dense, {}).size(), 7);
        QVERIFY(columns({ -1.0, -2.0, 0.0, 0.0, 0.0 }, dense, all).isEmpty());
    }

    void columnsHangingDownStay()
    {
        const QList<double> values { 3.0, 8.0, 5.0, 2.0, 1.0 };
        const auto rects =
            tarnis::columnsOfSamples({ values.constData(), 0 }, { 0, 5 }, dense, rows, { 0.1, 97.0 }, all);
        QCOMPARE(rects.size(), 5);
    }

    void hugeColumnsEndAtTheBase()
    {
        for (const double huge : { 1e12, 1e300, infinity }) {
            const QList<QRect> rects = columns({ huge }, wide, all);
            QCOMPARE(rects.size(), 1);
            QVERIFY(rects.constFirst().top() < -1000000);
            QCOMPARE(rects.constFirst().bottom(), 99);
        }
    }

    void twoLinesACross()
    {
        QCOMPARE(crosses({ 10.0 }, wide, all), (QList<QLine> { { 3, 88, 7, 92 }, { 7, 88, 3, 92 } }));
        QCOMPARE(crosses({ 0.0, 0.0 }, wide, all).size(), 4);
    }

    void crossesOnOnePixelAreOne()
    {
        const QList<double> values { 10.0, 20.0, 10.0, 20.0, 30.0, 10.0 };
        QCOMPARE(crosses(values, dense, {}).size(), 12);
        QCOMPARE(crosses(values, dense, all).size(), 6);
    }

    void extremesAreThoseOfTheSimplestLoop_data()
    {
        QTest::addColumn<QList<double>>("odd");
        QTest::addColumn<bool>("finite");
        QTest::newRow("plain") << QList<double>() << true;
        QTest::newRow("no number") << QList<double> { notANumber } << false;
        QTest::newRow("infinite") << QList<double> { infinity } << false;
        QTest::newRow("negative infinite") << QList<double> { -infinity } << false;
    }
    // The special sample is at every position of runs of every length, to test all vector lanes.
    void extremesAreThoseOfTheSimplestLoop()
    {
        QFETCH(QList<double>, odd);
        QFETCH(bool, finite);
        auto random = tarnis::testing::seededGenerator(3552);
        std::uniform_real_distribution<double> value(-5.0, 50.0);
        for (int count = 1; count <= 40; ++count) {
            for (int place = 0; place < count; ++place) {
                QList<double> values(count);
                std::generate(values.begin(), values.end(), [&] { return value(random); });
                if (!odd.isEmpty())
                    values[place] = odd.constFirst();
                QList<double> floored = values;
                for (double& v : floored)
                    v = v <= 0.0 ? 1.0 : v;
                const auto plain = tarnis::extremesOf(values.constData(), count);
                const auto logScale = tarnis::logExtremesOf(values.constData(), count);
                QCOMPARE(plain.finite, finite);
                QCOMPARE(logScale.finite, finite || (!odd.isEmpty() && odd.constFirst() == -infinity));
                if (!finite)
                    continue;
                QCOMPARE(plain.low, *std::min_element(values.cbegin(), values.cend()));
                QCOMPARE(plain.high, *std::max_element(values.cbegin(), values.cend()));
                QCOMPARE(logScale.low, *std::min_element(floored.cbegin(), floored.cend()));
                QCOMPARE(logScale.high, *std::max_element(floored.cbegin(), floored.cend()));
            }
        }
    }

    void lowestAbove()
    {
        auto random = tarnis::testing::seededGenerator(3553);
        std::uniform_real_distribution<double> value(-1.0, 2.0);
        for (int count = 0; count <= 40; ++count) {
            QList<double> values(count);
            std::generate(values.begin(), values.end(), [&] { return value(random); });
            if (count > 5)
                values[count / 2] = notANumber;
            double expected = 1.5;
            for (const double v : values) {
                if (v > 0.25)
                    expected = std::min(expected, v);
            }
            QCOMPARE(tarnis::lowestAbove(0.25, values.constData(), count, 1.5), expected);
        }
    }

    void drawsIntegerCounts()
    {
        const QList<double> counts { 0.0, 1.0, 4503599627370495.0, 4503599627370497.0, infinity, 7.0, -0.0 };
        for (int count = 1; count <= counts.size(); ++count)
            QVERIFY(tarnis::areIntegerCounts(counts.constData(), count));
        for (const double other : { 0.5, -1.0, 4503599627370495.5, notANumber, -infinity, 1e-300 }) {
            for (int at = 0; at < counts.size(); ++at) {
                QList<double> values = counts;
                values[at] = other;
                QVERIFY(!tarnis::areIntegerCounts(values.constData(), values.size()));
            }
        }
    }

    // The curve of a peak as lines.

    void extentCoversTheVisiblePartOfAPeak_data()
    {
        QTest::addColumn<double>("center");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("stop");
        const double reach = 2.35482 * 2.0 * 1.5;
        QTest::newRow("in the middle") << 50.0 << 50.0 - reach << 50.0 + reach;
        QTest::newRow("at the left end") << 3.0 << 0.0 << 3.0 + reach;
        QTest::newRow("beyond the right end") << 104.0 << 104.0 - reach << 100.0;
        QTest::newRow("out of sight") << 200.0 << 200.0 - reach << 100.0;
    }
    void extentCoversTheVisiblePartOfAPeak()
    {
        QFETCH(double, center);
        const tarnis::PeakExtent extent = tarnis::peakExtent(peakAt(center, 2.0), { 0.0, 100.0 });
        QTEST(extent.start, "start");
        QTEST(extent.stop, "stop");
    }

    void followsTheCurve()
    {
        const auto lines = tarnis::peakLines(peakAt(50.0, 2.0), { 45.0, 55.0 }, 0.5, { 0.0, 2.0, 10, 0.0, 1.0, 300 });
        QCOMPARE(lines.size(), 19);
        for (int i = 1; i < lines.size(); ++i)
            QCOMPARE(lines.at(i).p1(), lines.at(i - 1).p2());
        QCOMPARE(lines.constFirst().p1(), QPoint(100, static_cast<int>(290.0 - 100.0 * std::exp(-3.125))));
        QCOMPARE(lines.at(9).p2(), QPoint(110, 190)); // the top
    }

    void addsStepsUp()
    {
        const double step = 0.1;
        double x = 0.0;
        for (int i = 0; i < 1000; ++i)
            x += step;
        QVERIFY(x != 1000 * step);
        const auto lines = tarnis::peakLines(
            peakAt(50.0, 2.0), { 0.0, std::nextafter(x, 200.0) }, step, { 0.0, 1e6, 0, 0.0, 1.0, 300 });
        QCOMPARE(lines.size(), 1000);
        QCOMPARE(lines.constLast().p2().x(), static_cast<int>(x * 1e6));
    }

    void endsWhereAStepDoesNotMove_data()
    {
        QTest::addColumn<double>("step");
        QTest::newRow("too small") << 1e-30;
        QTest::newRow("zero") << 0.0;
        QTest::newRow("backwards") << -1.0;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    }
    void endsWhereAStepDoesNotMove()
    {
        QFETCH(double, step);
        QVERIFY(tarnis::peakLines(peakAt(50.0, 2.0), { 45.0, 55.0 }, step, { 0.0, 2.0, 10, 0.0, 1.0, 300 }).isEmpty());
    }

    void anEmptyExtentHasNoLines()
    {
        QVERIFY(tarnis::peakLines(peakAt(50.0, 2.0), { 55.0, 45.0 }, 0.5, { 0.0, 2.0, 10, 0.0, 1.0, 300 }).isEmpty());
    }

private:
    static PeakSearch::Gaussian peakAt(double center, double sigma)
    {
        PeakSearch::Gaussian peak;
        peak.N = 100.0;
        peak.center = center;
        peak.sigma = sigma;
        peak.offset = 10.0;
        return peak;
    }
};

QTEST_APPLESS_MAIN(TestCurveLines)
#include "tst_curvelines.moc"
