// PeakSearch: criteria of peaks, their fits, and the single-peak functions.
#include "peak/peakcurves.h"
#include "support/cases.h"
#include "support/peaksearchoracle.h"
#include "support/support.h"

#include <tarnis/peak/peaksearch.h>

#include <QTest>

#include <algorithm>
#include <climits>

using namespace tarnis::testing;

class TestPeakSearch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void constructsInEitherMode()
    {
        const QList<double> y { 1.0, 2.0, 3.0 };
        const PeakSearch whole(y, 1, 3, 2.5, 4, false);
        QVERIFY(whole.x.isEmpty());
        QCOMPARE(whole.y, y);
        QCOMPARE(whole.start, 1);
        QCOMPARE(whole.end, 3);
        QCOMPARE(whole.threshold, 2.5);
        QCOMPARE(whole.width, 4);
        QCOMPARE(whole.peak, false);
        QVERIFY(whole.y.constData() == y.constData());

        const PeakSearch plain(y, 0, 2);
        QCOMPARE(plain.end, 2);
        QCOMPARE(plain.threshold, 0.0);
        QCOMPARE(plain.width, 0);
        QCOMPARE(plain.peak, true);

        const QList<double> x { 5.0, 6.0, 7.0 };
        const PeakSearch pairs(x, y, 1.5, 2, true);
        QCOMPARE(pairs.x, x);
        QCOMPARE(pairs.y, y);
        QCOMPARE(pairs.threshold, 1.5);
        QCOMPARE(pairs.width, 2);
        QVERIFY(pairs.x.constData() == x.constData());

        const Gaussian none;
        QCOMPARE(none.start, 0);
        QVERIFY(none.points.isEmpty() && none.N == 0.0 && none.sigma == 0.0);
    }

    void describesAPeak()
    {
        // sigma of the segment's quarter and below: the segment reaches two sigma to either side.
        const QList<double> y = curve(60, 100.0, 30.2, 8.0, 0.0).mid(14, 33);
        QList<double> series(20, 0.0);
        series += y;
        series += QList<double>(20, 0.0);
        const QList<Gaussian> found = searchIn(series, 50.0, 3);
        QCOMPARE(found.size(), 1);
        const Gaussian& g = found.first();
        QVERIFY(isNear(g.N, 100.0, 1e-1));
        QVERIFY(isNear(g.center, 20 + 16.2, 0.05));
        QVERIFY(isNear(g.sigma, 8.0, 0.5));
        QCOMPARE(g.start, 20);
        // All samples above zero; the walks end at the zeros.
        QCOMPARE(g.points, y);
    }

    void countsTheSamplesPastTheThreshold_data()
    {
        addColumns<int, int>("width", "peaks");
        // Five samples are at or past the level.
        QTest::newRow("width 0") << 0 << 1;
        QTest::newRow("negative width") << -7 << 1;
        QTest::newRow("one less") << 4 << 1;
        QTest::newRow("just as many") << 5 << 1;
        QTest::newRow("one more") << 6 << 0;
        QTest::newRow("largest") << INT_MAX << 0;
    }
    void countsTheSamplesPastTheThreshold()
    {
        QFETCH(int, width);
        QFETCH(int, peaks);
        const QList<double> y { 0, 1, 2, 4, 10, 20, 30, 20, 10, 4, 2, 1, 0 };
        QCOMPARE(searchIn(y, 10.0, width).size(), peaks);
        QCOMPARE(PeakSearch(abscissae(13, 0.0, 0.5), y, 10.0, width, true).exec().size(), peaks);
    }

    void wantsTheRunToEnd()
    {
        const QList<double> whole = curve(40, 1000.0, 25.0, 4.0, 1.0);
        QCOMPARE(searchIn(whole, 50.0, 3).size(), 1);
        const QList<double> y = whole.mid(0, 33);
        QCOMPARE(searchIn(y, 50.0, 3).size(), 0);
        QCOMPARE(PeakSearch(abscissae(33, 0.0, 1.0), y, 50.0, 3, true).exec().size(), 0);
        // The range ends inside the run.
        QCOMPARE(PeakSearch(whole, 0, 33, 50.0, 3, true).exec().size(), 0);
    }

    void cutsSegments_data()
    {
        addColumns<QList<double>, int, int>("y", "first", "last");
        addCase("falling on both sides", QList<double> { 9, 3, 5, 8, 20, 20, 20, 7, 4, 2, 6 }, 1, 9);
        addCase("the sample after the run, though the curve rises behind it",
            QList<double> { 1, 2, 3, 20, 20, 20, 5, 6, 9 }, 0, 6);
        addCase("a zero after the run is taken, and ends the walk only behind it",
            QList<double> { 0, 1, 2, 20, 20, 20, 0, 0, 0 }, 1, 6);
        addCase("a negative sample after the run is taken", QList<double> { 0, 1, 2, 20, 20, 20, -3, -4, 1 }, 1, 6);
        addCase("plateaus are walked over", QList<double> { 7, 4, 4, 4, 20, 20, 20, 4, 4, 3, 3, 5 }, 1, 10);
        addCase("a zero ends the left walk", QList<double> { 5, 0, 4, 5, 20, 20, 20, 3, 0, 2 }, 2, 7);
        addCase("a negative ends the left walk", QList<double> { -5, -1, 4, 5, 20, 20, 20, 3, -1, -2 }, 2, 7);
    }
    void cutsSegments()
    {
        QFETCH(QList<double>, y);
        QFETCH(int, first);
        QFETCH(int, last);
        const QList<double> segment = y.mid(first, last - first + 1);
        const QList<Gaussian> byIndex = searchIn(y, 10.0, 1);
        QCOMPARE(byIndex.size(), 1);
        QCOMPARE(byIndex.first().points, segment);

        const QList<double> x = abscissae(int(y.size()), 3.0, 0.25);
        const QList<Gaussian> byAbscissa = PeakSearch(x, y, 10.0, 1, true).exec();
        QCOMPARE(byAbscissa.size(), 1);
        QCOMPARE(byAbscissa.first().points, x.mid(first, last - first + 1));
        QCOMPARE(byAbscissa.first().start, 0);
    }

    void startsLateIfTheWalkRunsOut()
    {
        // The extension stops by a rule: position is the segment's first sample.
        const QList<double> stopped { 9, 3, 5, 8, 20, 30, 20, 7, 4, 2, 6 };
        QCOMPARE(searchIn(stopped, 10.0, 1).first().start, 1);
        // It reaches the start of the range: position is the run's first sample, although the segment begins earlier.
        const QList<double> ranOut { 3, 5, 8, 20, 30, 20, 7, 4, 2, 6 };
        const Gaussian late = searchIn(ranOut, 10.0, 1).first();
        QCOMPARE(late.start, 3);
        QCOMPARE(late.points, ranOut.mid(0, 9));
        // The run begins with the range: no extension.
        const QList<double> noWalk { 20, 30, 20, 7, 4, 2, 6 };
        QCOMPARE(searchIn(noWalk, 10.0, 1).first().start, 0);
        // The same peak twice: the fit that starts late has its centre farther right by as much.
        const Gaussian within = PeakSearch(QList<double> { 2, 0 } + ranOut, 1, 12, 10.0, 1, true).exec().first();
        QCOMPARE(within.start, 2);
        QCOMPARE(within.points, late.points);
        QVERIFY(isNear(late.center - within.center, 3.0 - 2.0, 1e-6));
    }

    void staysInsideTheRange()
    {
        const QList<double> y { 1, 2, 3, 4, 20, 30, 20, 9, 8, 7, 6, 5 };
        const Gaussian g = PeakSearch(y, 2, 10, 10.0, 1, true).exec().first();
        QCOMPARE(g.points, y.mid(2, 8));
        QCOMPARE(g.start, 4);
        QCOMPARE(PeakSearch(y, 4, 10, 10.0, 1, true).exec().first().points, y.mid(4, 6));
        QCOMPARE(PeakSearch(y, 0, 7, 10.0, 1, true).exec().size(), 0);
    }

    void boundsTheFit()
    {
        std::mt19937_64 random = seededGenerator(71);
        std::uniform_real_distribution<double> uniform(0.0, 1.0);
        int fits = 0;
        for (int i = 0; i < 500; ++i) {
            QList<double> y = curve(40, 100 * uniform(random), 40 * uniform(random), 10 * uniform(random), 0.0);
            for (double& sample : y)
                sample += 10 * uniform(random);
            const double threshold = 30 * uniform(random);
            const double maxY = *std::max_element(y.begin(), y.end());
            Gaussian g;
            PeakSearch search(y, 0, 40, threshold, 0, true);
            if (!search.fit(7, y, {}, g))
                continue;
            ++fits;
            QVERIFY(g.center >= 7 + 10 && g.center <= 7 + 30);
            QVERIFY(g.sigma >= 10.0);
            QVERIFY(g.offset >= 0.0 && g.offset <= threshold);
            QVERIFY(g.N >= maxY - threshold);
            QCOMPARE(g.start, 7);
            QCOMPARE(g.points, y);
        }
        QVERIFY(fits > 400);
        // Integer divisions: 7 / 4 is 1, 3 * 7 / 4 is 5.
        Gaussian g;
        QVERIFY(PeakSearch({}, 0, 0, 30.0, 0, true).fit(0, { 0, 0, 0, 0, 0, 0, 100 }, {}, g));
        QCOMPARE(g.center, 5.0);
        QVERIFY(PeakSearch({}, 0, 0, 30.0, 0, true).fit(0, { 100, 0, 0, 0, 0, 0, 0 }, {}, g));
        QCOMPARE(g.center, 1.0);
        QCOMPARE(g.sigma, 1.0);
    }

    void repeatsAFitUnderTheData()
    {
        // A narrow top on a broad foot without background: the first pass settles at a low top.
        const QList<double> y { 2, 4, 6, 8, 10, 12, 40, 90, 40, 12, 10, 8, 6, 4, 2 };
        Gaussian g;
        QVERIFY(PeakSearch({}, 0, 0, 60.0, 0, true).fit(0, y, {}, g));
        QCOMPARE(g.offset, 0.0);
        QCOMPARE(g.N, 0.95 * 90);
        // With a threshold that leaves the top no room below it there is no second pass.
        QVERIFY(PeakSearch({}, 0, 0, 2.0, 0, true).fit(0, y, {}, g));
        QVERIFY(g.N >= 88.0);
    }

    void givesTheFirstPassAwayWhenTheSecondFails()
    {
        // A negative threshold leaves the offset no room: the first pass fails at once and nothing is written.
        Gaussian g = untouched();
        const QList<double> y { 1, 2, 5, 9, 5, 2, 1 };
        QVERIFY(!PeakSearch({}, 0, 0, -1.0, 0, true).fit(0, y, {}, g));
        QVERIFY(isUntouched(g));
        QVERIFY(!PeakSearch({}, 0, 0, 0.0, 0, true).fit(0, y, {}, g));
        QVERIFY(isUntouched(g));
    }

    void findsNothingWithoutAThreshold()
    {
        const QList<double> y { 1, 2, 5, 9, 5, 2, -1, 4, 5, 6, 5, 4, -1 };
        QCOMPARE(oracleIndexSegments(y, 0, 13, 0.0, 0, true).size(), 2);
        QCOMPARE(searchIn(y, 0.0, 0).size(), 0);
        QCOMPARE(PeakSearch(y, 0, 13).exec().size(), 0);
        QCOMPARE(searchIn(y, -0.5, 0).size(), 0);
        // With abscissae the threshold does not affect the fit.
        QCOMPARE(PeakSearch(abscissae(13, 0.0, 1.0), y, 0.0, 0, true).exec().size(), 2);
    }

    void searchesDips()
    {
        QList<double> y = curve(40, -80.0, 20.0, 3.0, 100.0);
        const QList<double> x = abscissae(40, 0.0, 1.0);
        const auto segments = oracleXSegments(x, y, 50.0, 1, false);
        QCOMPARE(segments.size(), 1);
        const QList<Gaussian> found = PeakSearch(x, y, 50.0, 1, false).exec();
        QVERIFY(found.size() <= 1);
        QCOMPARE(PeakSearch(x, y, 50.0, 1, true).exec().size(), 1);
        for (const Gaussian& g : searchIn(y, 50.0, 1, false))
            QVERIFY(g.N >= 0.0 && g.offset >= 0.0);
    }

    void ordersPeaksByTheirRuns()
    {
        QList<double> y(300, 1.0);
        for (const double center : { 40.0, 110.0, 200.0, 260.0 }) {
            const QList<double> one = curve(300, 50.0 + center, center, 4.0, 0.0);
            for (int i = 0; i < 300; ++i)
                y[i] += one[i];
        }
        const QList<Gaussian> found = searchIn(y, 20.0, 3);
        QCOMPARE(found.size(), 4);
        for (qsizetype i = 1; i < found.size(); ++i)
            QVERIFY(found[i].center > found[i - 1].center);
    }
};

QTEST_GUILESS_MAIN(TestPeakSearch)
#include "tst_peaksearch.moc"
