// Arithmetic of the tools, without widgets: sums, places of labels, distances, error intervals, envelopes.
#include "support/cases.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/plots/math/sampleblocks_p.h"
#include "tarnis/tools/base/blocksums_p.h"
#include "tarnis/tools/base/labelplacement_p.h"
#include "tarnis/tools/cursors/nearestcurve_p.h"
#include "tarnis/tools/curves/counterrors_p.h"
#include "tarnis/tools/curves/envelope_p.h"

#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>

#include <QFont>
#include <QFontMetrics>
#include <QList>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

double distanceTo(const QPointF& place, const QList<QPointF>& points)
{
    return tarnis::distanceToLine(place, 0, points.size() - 1, [&](qsizetype i) { return points.at(i); });
}

QList<ColumnRun> runsOf(qsizetype samples, int perColumn)
{
    QList<ColumnRun> runs;
    for (qsizetype first = 0; first < samples; first += perColumn)
        runs.append({ static_cast<int>(first / perColumn), first, first + perColumn - 1 });
    return runs;
}

/// Every sample in turn.
QList<EnvelopeColumn> oracle(const QList<ColumnRun>& runs, const ShownCurve& curve, EnvelopeOf which)
{
    QList<EnvelopeColumn> columns;
    for (const ColumnRun& run : runs) {
        QList<double> samples;
        for (qsizetype i = run.first; i <= run.last; ++i) {
            const double sample = curve.valueAt(i);
            if (which == EnvelopeOf::Counts ? isCount(sample) : std::isfinite(sample))
                samples.append(sample);
        }
        if (!samples.isEmpty())
            columns.append({ run.column, samples.first(), samples.last(),
                *std::min_element(samples.begin(), samples.end()), *std::max_element(samples.begin(), samples.end()) });
    }
    return columns;
}

double wildSample(Generator& random)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double wild[] = { std::nan(""), infinity, -infinity, -3.0, 0.5, 1e300, 4503599627370497.0, 0.0 };
    return chance(random, 0.02) ? wild[whole(random, 0, 7)] : std::floor(uniform(random, 0.0, 1e6));
}

} // namespace

class TestToolArithmetic : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Sums over parts of lists, against a loop.

    void equalsALoopOverTheNumbers()
    {
        auto random = seededGenerator(31);
        for (int round = 0; round < 200; ++round) {
            QList<double> numbers(whole(random, 0, 1000));
            for (double& number : numbers)
                number = chance(random, 0.02) ? std::nan("")
                    : chance(random, 0.02)    ? std::numeric_limits<double>::infinity()
                                              : std::floor(uniform(random, -1e6, 1e6));
            const BlockSums sums(numbers);
            for (int part = 0; part < 20; ++part) {
                const int first = whole(random, -10, 1010);
                const int last = whole(random, -10, 1010);
                double expected = 0.0;
                for (qsizetype i = std::max(first, 0); i <= std::min<qsizetype>(last, numbers.size() - 1); ++i)
                    expected += std::isfinite(numbers.at(i)) ? numbers.at(i) : 0.0;
                QCOMPARE(sums.between(first, last), expected); // whole numbers: exact
            }
        }
    }

    void keepsSumsOfListsThatStay()
    {
        QList<QList<double>> lists { { 1, 2, 3 }, { 4, 5 } };
        QList<BlockSums> sums;
        updateSums(sums, lists);
        QCOMPARE(sums.at(1).between(0, 1), 9.0);
        lists[0] = { 7, 7 };
        lists.append(QList<double> { 1 });
        updateSums(sums, lists);
        QCOMPARE(sums.size(), 3);
        QCOMPARE(sums.at(0).between(0, 9), 14.0);
        QVERIFY(sums.at(1).areOf(lists.at(1)) && !sums.at(1).areOf(lists.at(0)));
        updateSums(sums, {});
        QVERIFY(sums.isEmpty());
    }

    void addsUpRectangles()
    {
        auto random = seededGenerator(32);
        for (int round = 0; round < 20; ++round) {
            QList<QList<double>> rows(whole(random, 1, 200));
            for (QList<double>& row : rows) {
                row.resize(whole(random, 200, 300)); // of different lengths
                for (double& number : row)
                    number = chance(random, 0.02) ? std::nan("") : std::floor(uniform(random, -1e6, 1e6));
            }
            if (chance(random, 0.3)) // the sum of a column of these is not finite
                rows[rows.size() / 2][5] = rows[0][5] = std::numeric_limits<double>::max();
            RectangleSums sums;
            for (int part = 0; part < 20; ++part) {
                if (chance(random, 0.2))
                    rows[whole(random, 0, int(rows.size()) - 1)][whole(random, 6, 199)] += 1.0;
                sums.update(rows);
                const int first = whole(random, 6, 310);
                const int last = whole(random, 6, 310);
                const int firstRow = whole(random, 0, int(rows.size()) - 1);
                const int lastRow = whole(random, 0, int(rows.size()) - 1);
                double expected = 0.0;
                for (int row = firstRow; row <= lastRow; ++row)
                    expected += BlockSums(rows.at(row)).between(first, last);
                QCOMPARE(sums.between(first, last, firstRow, lastRow), expected); // whole numbers: exact
            }
        }
    }

    void keepsHugeNumbersInRectangles()
    {
        QList<QList<double>> rows(64, QList<double>(10, 1.0));
        rows[3][2] = rows[40][2] = std::numeric_limits<double>::max();
        rows[4][2] = -std::numeric_limits<double>::max();
        rows[5][2] = rows[6][2] = std::numeric_limits<double>::max();
        RectangleSums sums;
        sums.update(rows);
        for (int use = 0; use < 3; ++use)
            QCOMPARE(sums.between(2, 2, 0, 63), std::numeric_limits<double>::infinity());
    }

    // Places for texts beside boxes, and lines of read-outs.

    void prefersTheTopAndAvoidsBoxes_data()
    {
        addColumns<QSize, QList<QRect>, QRect>("text", "boxes", "expected");
        const QRect legend(70, 0, 30, 40);
        QTest::newRow("nothing there") << QSize(50, 10) << QList<QRect>() << QRect(0, 0, 100, 10);
        QTest::newRow("beside") << QSize(50, 10) << QList<QRect> { legend } << QRect(0, 0, 67, 10);
        QTest::newRow("below") << QSize(80, 10) << QList<QRect> { legend } << QRect(0, 43, 100, 10);
        QTest::newRow("between") << QSize(40, 10) << QList<QRect> { legend, { 0, 0, 20, 10 } } << QRect(23, 0, 44, 10);
        QTest::newRow("too wide") << QSize(500, 10) << QList<QRect> { legend } << QRect(0, 43, 100, 10);
        QTest::newRow("too high for below") << QSize(80, 30) << QList<QRect> { legend } << QRect(0, 0, 67, 30);
        QTest::newRow("no space") << QSize(10, 10) << QList<QRect> { { 0, 0, 100, 60 } } << QRect(0, 0, 0, 10);
    }
    void prefersTheTopAndAvoidsBoxes()
    {
        QFETCH(const QSize, text);
        QFETCH(const QList<QRect>, boxes);
        QTEST(freeRow({ 0, 0, 100, 60 }, text, boxes), "expected");
    }

    void neverIntersectsABox()
    {
        auto random = seededGenerator(77);
        for (int round = 0; round < 2000; ++round) {
            const QRect inside(
                whole(random, -50, 50), whole(random, -50, 50), whole(random, 1, 300), whole(random, 1, 200));
            QList<QRect> boxes(whole(random, 0, 5));
            for (QRect& box : boxes)
                box = QRect(
                    whole(random, -80, 300), whole(random, -80, 250), whole(random, 1, 150), whole(random, 1, 100));
            const QSize text(whole(random, 1, 300), whole(random, 1, 40));
            const QRect row = freeRow(inside, text, boxes);
            QCOMPARE(row.height(), text.height());
            QVERIFY(row.left() >= inside.left() && row.left() + row.width() <= inside.left() + inside.width());
            QVERIFY(row.top() >= inside.top());
            QVERIFY(std::none_of(
                boxes.cbegin(), boxes.cend(), [&](const QRect& box) { return row.isValid() && box.intersects(row); }));
        }
    }

    void movesPastBoxes()
    {
        const QRect inside(0, 0, 100, 60);
        const QRect label(10, 0, 20, 10);
        QCOMPARE(movedPast(label, inside, {}, Qt::BottomEdge), label);
        QCOMPARE(movedPast(label, inside, { QRect(40, 0, 20, 10) }, Qt::BottomEdge), label);
        const QList<QRect> column { QRect(0, 14, 50, 10), QRect(0, 0, 50, 8) }; // the second one leads to the first
        QCOMPARE(movedPast(label, inside, column, Qt::BottomEdge).left(), 10);
        QVERIFY(movedPast(label, inside, column, Qt::BottomEdge).top() > 23);
        QCOMPARE(movedPast(label, inside, { QRect(0, 0, 50, 55) }, Qt::BottomEdge), label); // no room
        const QRect right(70, 50, 30, 10);
        QVERIFY(movedPast(right, inside, { QRect(80, 40, 20, 20) }, Qt::LeftEdge).right() < 80);
        QVERIFY(movedPast(right, inside, { QRect(80, 40, 20, 20) }, Qt::TopEdge).bottom() < 40);
        QVERIFY(movedPast(label, inside, { QRect(0, 0, 20, 20) }, Qt::RightEdge).left() > 19);
    }

    void wrapsParts()
    {
        const QFontMetrics metrics { QFont() };
        const int two = metrics.horizontalAdvance(QStringLiteral("one: 1   two: 2"));
        const QString text = QStringLiteral("one: 1   two: 2   six: 6");
        QCOMPARE(wrapped({ text, metrics }, metrics, 10000, 9), text);
        QCOMPARE(wrapped({ text, metrics }, metrics, two, 9), QStringLiteral("one: 1   two: 2\nsix: 6"));
        const int one = metrics.horizontalAdvance(QStringLiteral("two: 2   "));
        QCOMPARE(wrapped({ text, metrics }, metrics, one, 9), QStringLiteral("one: 1\ntwo: 2\nsix: 6"));
        const QString cut = wrapped({ text, metrics }, metrics, two, 1);
        QVERIFY2(cut.endsWith(u'…') && !cut.contains(u'\n'), qPrintable(cut));
    }

    void findsTheFewestFreeLines()
    {
        const QFontMetrics metrics(QApplication::font());
        const ReadOutParts parts(QStringLiteral("aaaa   bbbb   cc   dd"), metrics);
        const QRect inside(0, 0, 1000, 200);
        const auto find = [&](const QRect& area, const QList<QRect>& boxes) {
            return freeLines(parts, area, boxes, 15, { 10, 4 }, 4);
        };
        QCOMPARE(find(inside, {}).count, 1);
        QCOMPARE(find(inside, { QRect(0, 0, 1000, 30) }).row.top(), 33);
        const int narrow = parts.width() + 10; // without the last pixels
        const FreeLines two = find({ 0, 0, narrow, 200 }, {});
        QCOMPARE(two.count, 2);
        QVERIFY(!isElided(parts, two.width, two.count) && two.width < narrow);
        QVERIFY(find({ 0, 0, narrow, 30 }, {}).row.isNull()); // two lines are higher
        QVERIFY(find({ 0, 0, parts.widths.at(0), 200 }, {}).row.isNull()); // a part is wider
        QVERIFY(find(inside, { inside }).row.isNull());
    }

    void widensLinesRatherThanElideParts()
    {
        const QFontMetrics metrics { QFont() };
        const QString text = QStringLiteral("Time [14000, 14002.44) bin 5734   4 ± 2   six: 6");
        const int part = metrics.horizontalAdvance(QStringLiteral("Time [14000, 14002.44) bin 5734"));
        QCOMPARE(widthFor({ text, metrics }, { part + 50, 700, 900 }, 9), part + 50);
        const int width = widthFor({ text, metrics }, { 20, 10, 900 }, 9);
        QVERIFY(width >= part && width <= part + 2);
        QVERIFY(!wrapped({ text, metrics }, metrics, width, 9).contains(u'…'));
        QCOMPARE(widthFor({ text, metrics }, { 20, 700, 900 }, 1), 700); // all in one line
        QCOMPARE(widthFor({ text, metrics }, { 20, 10, 30 }, 9), 30);
    }

    // The distance of a place to a curve of joined points, against points that are close together.

    void distanceIsThatToTheNearestSegment()
    {
        const double nan = std::nan("");
        QCOMPARE(distanceTo({ 0, 3 }, { { 0, 0 } }), 3.0);
        QCOMPARE(distanceTo({ 5, 3 }, { { 0, 0 }, { 10, 0 } }), 3.0);
        QCOMPARE(distanceTo({ 13, 4 }, { { 0, 0 }, { 10, 0 } }), 5.0);
        QCOMPARE(distanceTo({ 5, 1 }, { { 5, 0 }, { 5, 0 } }), 1.0);
        QCOMPARE(distanceTo({ 5, 1 }, { { 0, 0 }, { nan, nan }, { 10, 1 } }), 5.0); // no segment across the gap
        QVERIFY(std::isinf(distanceTo({ 5, 1 }, {})));
        QVERIFY(std::isinf(distanceTo({ 5, 1 }, { { nan, 0 }, { 0, nan } })));
    }

    void agreesWithClosePoints()
    {
        auto random = tarnis::testing::seededGenerator(1);
        const auto coordinate = [&] { return tarnis::testing::uniform(random, -10, 10); };
        for (int round = 0; round < 200; ++round) {
            QList<QPointF> points;
            for (int i = 0; i < 4; ++i)
                points.append({ coordinate(), coordinate() });
            const QPointF at(coordinate(), coordinate());
            double nearest = std::numeric_limits<double>::infinity();
            for (int i = 0; i + 1 < points.size(); ++i) {
                for (int step = 0; step <= 2000; ++step) {
                    const QPointF apart = at - (points.at(i) + (points.at(i + 1) - points.at(i)) * (step / 2000.0));
                    nearest = std::min(nearest, std::hypot(apart.x(), apart.y()));
                }
            }
            QVERIFY(std::abs(distanceTo(at, points) - nearest) < 0.02);
        }
    }

    // Error intervals of counts against the exact ones.

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

    void intervalsAreSquareRootsOfCounts()
    {
        QCOMPARE(squareRootInterval(9).lower, 6.0);
        QCOMPARE(squareRootInterval(9).upper, 12.0);
        QCOMPARE(squareRootInterval(0).upper, 0.0);
    }

    // Samples by pixel columns, against a look at every sample.

    void equalsAScanOfEverySample()
    {
        auto random = seededGenerator(21);
        for (int round = 0; round < 300; ++round) {
            ShownCurve curve;
            const int length = whole(random, 0, 500);
            for (int part = whole(random, 1, 2); part > 0; --part) {
                QList<double> samples(part == 1 ? length : whole(random, 0, 500));
                for (double& sample : samples)
                    sample = wildSample(random);
                curve.parts.prepend(samples);
            }
            const QList<ColumnRun> runs = runsOf(whole(random, 0, 600), whole(random, 1, 60));
            const SampleBlocks blocks(curve.parts.constFirst());
            const SampleBlocks* const usable = curve.parts.size() == 1 ? &blocks : nullptr;
            for (const auto which : { EnvelopeOf::Numbers, EnvelopeOf::Counts }) {
                QCOMPARE(envelopeOf(runs, curve, which), oracle(runs, curve, which));
                QCOMPARE(envelopeOf(runs, curve, which, usable), oracle(runs, curve, which));
            }
            QCOMPARE(meansOf(runs, curve, usable), meansOf(runs, curve));
            QCOMPARE(meansOf(runs, curve).size(), oracle(runs, curve, EnvelopeOf::Numbers).size());
        }
    }

    /// A line has a gap at runs without numbers, not at single ones that are missing.
    void linesEndAtRunsWithoutNumbers()
    {
        const double none = std::nan("");
        const ShownCurve curve { {}, {}, { { none, none, 1, none, 3, 4, none, none, 5, 6 } } };
        const QList<ColumnRun> runs = runsOf(10, 2);
        const QList<EnvelopeColumn> columns = envelopeOf(runs, curve, EnvelopeOf::Numbers);
        QCOMPARE(connectedParts(runs, columns), (QList<ColumnPart> { { 0, 2 }, { 2, 3 } }));
        QVERIFY(connectedParts(runs, {}).isEmpty());
    }

    void meansAreThoseOfTheNumbers()
    {
        const ShownCurve curve { {}, {}, { { 4, -1, 6, 10, std::nan(""), 30, 7 } } };
        QCOMPARE(meansOf(runsOf(7, 3), curve), (QList<double> { 3, 20, 7 }));
        QVERIFY(meansOf(runsOf(7, 3), {}).isEmpty());
    }

    void meansOfCountsAreExact()
    {
        constexpr double odd = 9007199254740991.0; // 2^53 - 1: one more cannot be added exactly
        const ShownCurve curve { {}, {}, { { 1, 2, 3, 4, 5, odd, 3, odd, odd, odd } } };
        QCOMPARE(meansOf(runsOf(10, 5), curve), (QList<double> { 3, (((odd + 3) + odd) + odd + odd) / 5 }));
    }

    /// Blocks know only exact sums: of a run across blocks, inside of one, and none where one is not exact.
    void blocksKnowTheSumsOfCounts()
    {
        QList<double> samples(100);
        std::iota(samples.begin(), samples.end(), 0.0);
        QCOMPARE(SampleBlocks(samples).sumOfCounts(3, 98), std::optional(4750.0));
        QCOMPARE(SampleBlocks(samples).sumOfCounts(17, 30), std::optional(299.0));
        QCOMPARE(SampleBlocks(samples).sumOfCounts(0, 100), std::optional(4950.0));
        for (const double other : { 0.5, -1.0, std::nan(""), std::numeric_limits<double>::infinity() }) {
            QList<double> mixed = samples;
            mixed[40] = other;
            const SampleBlocks blocks(mixed);
            QCOMPARE(blocks.sumOfCounts(3, 98), std::nullopt);
            QCOMPARE(blocks.sumOfCounts(48, 98), std::optional(3625.0));
            QCOMPARE(blocks.sumOfCounts(3, 32), std::optional(493.0));
        }
        samples[40] = 9007199254740991.0;
        QCOMPARE(SampleBlocks(samples).sumOfCounts(35, 45), std::nullopt);
        QCOMPARE(SampleBlocks(samples).sumOfCounts(64, 98), std::nullopt);
    }

    void blocksAreBuiltForRepeatedUse()
    {
        SampleBlockCache cache;
        const QList<double> samples(20000, 3.0);
        QVERIFY(cache.of(samples) == nullptr);
        QVERIFY(cache.of(samples) == nullptr);
        QVERIFY(cache.of(samples) != nullptr);
        QCOMPARE(cache.of(samples)->extremes(5, 19999).high, 3.0);
        QVERIFY(cache.of(QList<double>(20000, 4.0)) == nullptr);
        cache.clear();
        QVERIFY(cache.of(samples) == nullptr);
        const QList<double> few(100, 3.0);
        for (int use = 0; use < 5; ++use)
            QVERIFY(cache.of(few) == nullptr);
    }

    /// On axes in both directions, of any zoom.
    void runsShareTheirPixelColumn()
    {
        auto random = seededGenerator(22);
        for (int round = 0; round < 200; ++round) {
            VectorGraphWidget plot;
            const int count = whole(random, 1, 20000);
            plot.init(QStringLiteral("x"), QStringLiteral("y"), 10, 10, true, true);
            plot.initManualX(uniform(random, -1e3, 1e3), uniform(random, 1.1e3, 1e4));
            plot.setData(QList<double>(count, 1.0));
            plot.resize(whole(random, 100, 600), 200);
            plot.grab();
            plot.onAutoScaleX(false);
            const double a = uniform(random, -2e3, 1.2e4);
            const double width = std::pow(10.0, uniform(random, -2.0, 4.0));
            plot.setMinMaxX(a, chance(random, 0.5) ? a + width : a - width);
            const PlotMapping mapping = PlotMapping::of(plot);
            const BinsInView bins = columnsInView(mapping);
            const BinPositions positionOf(mapping, bins);
            QList<ColumnRun> expected;
            for (qsizetype bin = bins.first; bin <= bins.last; ++bin) {
                const int column = static_cast<int>(std::floor(positionOf(bin)));
                if (expected.isEmpty() || expected.constLast().column != column)
                    expected.append({ column, bin, bin });
                expected.last().last = bin;
            }
            QCOMPARE(columnRuns(positionOf, bins), expected);
        }
    }
};

QTEST_MAIN(TestToolArithmetic)
#include "tst_toolarithmetic.moc"
