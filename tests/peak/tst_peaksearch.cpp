// PeakSearch: criteria of peaks, their fits, and the single-peak functions.
#include "support/cases.h"
#include "support/peaksearchoracle.h"
#include "support/support.h"

#include <tarnis/foundation/log.h>
#include <tarnis/peak/peaksearch.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

using namespace tarnis::testing;
using Gaussian = PeakSearch::Gaussian;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// Samples of a curve at 0, 1, ... or at the abscissae x.
QList<double> curve(int n, double N, double center, double sigma, double offset)
{
    QList<double> y;
    for (int i = 0; i < n; ++i)
        y.append(N * std::exp(-0.5 * (i - center) * (i - center) / (sigma * sigma)) + offset);
    return y;
}

QList<double> abscissae(int n, double first, double step)
{
    QList<double> x;
    for (int i = 0; i < n; ++i)
        x.append(first + step * i);
    return x;
}

QList<Gaussian> searchIn(const QList<double>& y, double threshold, int width, bool peak = true)
{
    return PeakSearch(y, 0, int(y.size()), threshold, width, peak).exec();
}

bool isNear(double value, double expected, double tolerance)
{
    return std::fabs(value - expected) <= tolerance;
}

Gaussian gaussian(double N, double center, double sigma, double offset)
{
    Gaussian g;
    g.N = N;
    g.center = center;
    g.sigma = sigma;
    g.offset = offset;
    return g;
}

// A value that no fit writes.
Gaussian untouched()
{
    Gaussian g = gaussian(-1.5, -2.5, -3.5, -4.5);
    g.start = -5;
    g.points = { -6.5 };
    return g;
}

bool isUntouched(const Gaussian& g)
{
    return g.N == -1.5 && g.center == -2.5 && g.sigma == -3.5 && g.offset == -4.5 && g.start == -5
        && g.points == QList<double> { -6.5 };
}

QStringList logged(const std::function<void()>& f)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("run.log"));
    initlog(path.toStdString(), 0);
    f();
    closelog();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (line.contains(QStringLiteral(" peaksearch.cpp:")))
            lines.append(line.mid(line.indexOf(QStringLiteral("] ")) + 2));
    }
    return lines;
}

} // namespace

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

    void fitsFromGivenValues()
    {
        const QList<double> y = curve(50, 70.0, 23.4, 5.0, 3.0);
        Gaussian g = untouched();
        QVERIFY(PeakSearch(y, 10, 40).exec(gaussian(60.0, 20.0, 4.0, 0.0), g));
        QVERIFY(isNear(g.N, 70.0, 1e-6) && isNear(g.center, 23.4, 1e-6));
        QVERIFY(isNear(g.sigma, 5.0, 1e-6) && isNear(g.offset, 3.0, 1e-6));
        QCOMPARE(g.start, 10);
        QCOMPARE(g.points, y.mid(10, 30));
        // No bounds: a negative amplitude is as good as any.
        const QList<double> dip = curve(50, -70.0, 23.4, 5.0, 3.0);
        QVERIFY(PeakSearch(dip, 0, 50).exec(gaussian(-10.0, 22.0, 4.0, 0.0), g));
        QVERIFY(isNear(g.N, -70.0, 1e-6));
        Gaussian direct;
        QVERIFY(PeakSearch(y, 0, 50).fit(100, y, {}, gaussian(60.0, 120.0, 4.0, 0.0), direct));
        QVERIFY(isNear(direct.center, 123.4, 1e-6));
        QCOMPARE(direct.start, 100);
    }

    void fitsFromGivenValuesByAbscissa()
    {
        const QList<double> y = curve(50, 70.0, 23.4, 5.0, 3.0);
        const QList<double> x = abscissae(50, 100.0, 0.5);
        Gaussian g = untouched();
        QVERIFY(PeakSearch(x, y, 0.0, 0, true).exec(gaussian(60.0, 110.0, 2.0, 0.0), g));
        QVERIFY(isNear(g.N, 70.0, 1e-6) && isNear(g.center, 100 + 23.4 / 2, 1e-6));
        QVERIFY(isNear(g.sigma, 2.5, 1e-6) && isNear(g.offset, 3.0, 1e-6));
        QCOMPARE(g.start, -5);
        QCOMPARE(g.points, x);
    }

    void fitsASinglePeak()
    {
        const QList<double> y = curve(31, 40.0, 14.2, 4.0, 2.0);
        Gaussian g = untouched();
        QVERIFY(PeakSearch::peakSearch(y, g));
        QVERIFY(isNear(g.N, 40.0, 1e-6) && isNear(g.center, 14.2, 1e-6));
        QVERIFY(isNear(std::fabs(g.sigma), 4.0, 1e-6) && isNear(g.offset, 2.0, 1e-6));
        QCOMPARE(g.start, 0);
        QCOMPARE(g.points, y.mid(0, 30));
        // The last sample is ignored.
        QList<double> spoilt = y;
        spoilt.last() = 1e6;
        Gaussian h;
        QVERIFY(PeakSearch::peakSearch(spoilt, h));
        QCOMPARE(h.center, g.center);
        QCOMPARE(h.N, g.N);
    }

    void fitsASinglePeakByAbscissa()
    {
        const QList<double> y = curve(31, 40.0, 14.2, 4.0, 2.0);
        const QList<double> x = abscissae(31, -10.0, 0.1);
        Gaussian g = untouched();
        QVERIFY(PeakSearch::peakSearch(x, y, g));
        QVERIFY(isNear(g.N, 40.0, 1e-6) && isNear(g.center, -10.0 + 1.42, 1e-6));
        QVERIFY(isNear(std::fabs(g.sigma), 0.4, 1e-6) && isNear(g.offset, 2.0, 1e-6));
        QCOMPARE(g.start, -5);
        QCOMPARE(g.points, x);
    }

    void startsFromHalfHeight_data()
    {
        addColumns<QList<double>, QString, QString>("y", "indices", "values");
        const auto row = [](const char* name, const QList<double>& y, const char* indices, const char* values) {
            QTest::newRow(name) << y << QString::fromLatin1(indices) << QString::fromLatin1(values);
        };
        row("a peak", { 1, 2, 6, 10, 6, 2, 1, 0 }, "maxIndex=3 leftIndex=1 rightIndex=5",
            "initGauss.N10 offset=1 sigma=2 center=3");
        row("the first of two largest", { 1, 9, 1, 9, 1, 5 }, "maxIndex=1 leftIndex=0 rightIndex=2",
            "initGauss.N9 offset=1 sigma=1 center=1");
        row("no half height on the left", { 9, 10, 8, 1, 1, 1 }, "maxIndex=1 leftIndex=0 rightIndex=3",
            "initGauss.N10 offset=1 sigma=1.5 center=1.5");
        row("no half height on the right", { 1, 1, 8, 10, 9, 8, 8 }, "maxIndex=3 leftIndex=1 rightIndex=5",
            "initGauss.N10 offset=1 sigma=2 center=3");
        row("all equal", { 4, 4, 4, 4, 4, 4 }, "maxIndex=0 leftIndex=0 rightIndex=4",
            "initGauss.N4 offset=4 sigma=2 center=2");
        row("a sample at half height does not count", { 0, 5, 10, 5, 0, 0 }, "maxIndex=2 leftIndex=0 rightIndex=4",
            "initGauss.N10 offset=0 sigma=2 center=2");
        row("the last sample is the largest", { 1, 2, 6, 2, 1, 90 }, "maxIndex=2 leftIndex=1 rightIndex=3",
            "initGauss.N6 offset=1 sigma=1 center=2");
        row("one sample", { 7 }, "maxIndex=0 leftIndex=0 rightIndex=-1", "initGauss.N7 offset=7 sigma=1 center=-0.5");
    }
    void startsFromHalfHeight()
    {
        QFETCH(QList<double>, y);
        QFETCH(QString, indices);
        QFETCH(QString, values);
        Gaussian g;
        const QStringList lines = logged([&] { PeakSearch::peakSearch(y, g); });
        QVERIFY(lines.size() >= 2);
        QCOMPARE(lines[0], indices);
        QCOMPARE(lines[1], values);
    }

    void logsTheSinglePeak()
    {
        const QList<double> y = curve(31, 40.0, 14.0, 4.0, 2.0);
        Gaussian g;
        QStringList lines = logged([&] { PeakSearch::peakSearch(y, g); });
        QCOMPARE(lines.size(), 3);
        QCOMPARE(lines[2], QStringLiteral("gauss.offset=2 center=14"));
        // Three samples are too few for the fit: no line of success.
        lines = logged([&] { PeakSearch::peakSearch(QList<double> { 1, 2, 1 }, g); });
        QCOMPARE(lines.size(), 2);

        lines = logged([&] { PeakSearch::peakSearch(abscissae(31, 100.0, 0.5), y, g); });
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[0].startsWith(QStringLiteral("initGauss.sigma=2.5 center=107")));
        QCOMPARE(lines[1], QStringLiteral("gauss.offset=2 center=107"));
    }

    void refusesTooFewSamples()
    {
        for (int n = 0; n < 5; ++n) {
            const QList<double> y = curve(n, 10.0, 1.5, 1.0, 1.0);
            Gaussian g = untouched();
            QVERIFY(!PeakSearch::peakSearch(y, g));
            QVERIFY(isUntouched(g));
            const bool enough = PeakSearch::peakSearch(abscissae(n, 0.0, 1.0), y, g);
            QCOMPARE(enough, n == 4);
            if (!enough)
                QVERIFY(isUntouched(g));
        }
        Gaussian g;
        QVERIFY(PeakSearch::peakSearch(curve(5, 10.0, 1.5, 1.0, 1.0), g));
        QVERIFY(!PeakSearch({}, 0, 0, 5.0, 0, true).fit(0, { 1, 9, 1 }, {}, g));
        QVERIFY(!PeakSearch({}, 0, 0, 5.0, 0, true).fit(0, {}, {}, g));
    }

    void refusesEmptyAndCrossedRanges()
    {
        const QList<double> y { 0, 1, 2, 4, 10, 20, 30, 20, 10, 4, 2, 1, 0 };
        const int n = int(y.size());
        const std::pair<int, int> empty[] = { { 0, 0 }, { 5, 5 }, { 8, 3 }, { n, n }, { n + 5, n + 9 },
            { INT_MAX, INT_MIN }, { -9, -3 } };
        for (const auto& [start, end] : empty) {
            QVERIFY(PeakSearch(y, start, end, 10.0, 1, true).exec().isEmpty());
            Gaussian g = untouched();
            QVERIFY(!PeakSearch(y, start, end).exec(gaussian(30, 6, 2, 0), g));
            QVERIFY(isUntouched(g));
        }
        QVERIFY(searchIn({}, 10.0, 1).isEmpty());
        QVERIFY(searchIn({ 50.0 }, 10.0, 0).isEmpty());
        // Indices outside the series are not searched.
        for (const auto& [start, end] : { std::pair { -3, n }, { 0, n + 4 }, { INT_MIN, INT_MAX } }) {
            const QList<Gaussian> found = PeakSearch(y, start, end, 10.0, 1, true).exec();
            QCOMPARE(found.size(), 1);
            QCOMPARE(found.first().start, 1);
            Gaussian g;
            QVERIFY(PeakSearch(y, start, end).exec(gaussian(30, 6, 2, 0), g));
            QCOMPARE(g.start, 0);
            QCOMPARE(g.points, y);
        }
    }

    void survivesDegenerateInput()
    {
        const QList<double> y { 0, 1, 2, 4, 10, 20, 30, 20, 10, 4, 2, 1, 0 };
        Gaussian g;
        // Equal abscissae: sigma 0 to begin with.
        PeakSearch::peakSearch(QList<double>(13, 2.0), y, g);
        QVERIFY(PeakSearch(QList<double>(13, 2.0), y, 10.0, 1, true).exec().size() <= 1);
        PeakSearch(y, 0, 13).exec(gaussian(0, 0, 0, 0), g);
        PeakSearch(y, 0, 13).fit(INT_MAX, y, {}, g);
        PeakSearch(y, 0, 13, 10.0, 0, true).fit(INT_MIN, y, {}, g);
        PeakSearch(y, 0, 13).exec(gaussian(1, infinity, std::nan(""), 0), g);
        QVERIFY(searchIn(y, infinity, 0).isEmpty());
        QVERIFY(searchIn(y, -infinity, 0).isEmpty());
        QVERIFY(searchIn(y, std::nan(""), 0).isEmpty());
        searchIn(QList<double>(1000, 0.0), 0.0, 0, false);
    }

    void survivesNonFiniteSamples()
    {
        std::mt19937_64 random = seededGenerator(72);
        const double values[] = { std::nan(""), infinity, -infinity, 1e308, -1e308, 0.0, 3.0, 9.0, 1e-320 };
        for (int round = 0; round < 3000; ++round) {
            QList<double> y = curve(30, 50.0, 15.0, 4.0, 1.0);
            QList<double> x = abscissae(30, 0.0, 1.0);
            for (int k = 0; k < 4; ++k) {
                y[qsizetype(random() % 30)] = values[random() % std::size(values)];
                if (random() % 4 == 0)
                    x[qsizetype(random() % 30)] = values[random() % std::size(values)];
            }
            searchIn(y, 5.0, 2, random() % 2);
            PeakSearch(x, y, 5.0, 2, random() % 2).exec();
            Gaussian g;
            PeakSearch::peakSearch(y, g);
            PeakSearch::peakSearch(x, y, g);
        }
        // Walks do not cross a NaN: the segments stay short.
        QList<double> comb(20000);
        for (qsizetype i = 0; i < comb.size(); ++i)
            comb[i] = i % 2 ? std::nan("") : 50.0;
        for (const Gaussian& g : searchIn(comb, 10.0, 1))
            QVERIFY(g.points.size() < 5);
    }

    void takesTheShorterListByAbscissa()
    {
        const QList<double> y = curve(60, 50.0, 20.0, 4.0, 1.0);
        const QList<Gaussian> whole = PeakSearch(abscissae(60, 0.0, 1.0), y, 10.0, 1, true).exec();
        QCOMPARE(whole.size(), 1);
        QCOMPARE(PeakSearch(abscissae(22, 0.0, 1.0), y, 10.0, 1, true).exec().size(), 0);
        QCOMPARE(PeakSearch(abscissae(90, 0.0, 1.0), y, 10.0, 1, true).exec().size(), 1);
        Gaussian g;
        QVERIFY(PeakSearch::peakSearch(abscissae(50, 0.0, 1.0), y, g));
        QVERIFY(isNear(g.center, 20.0, 1e-6));
        QVERIFY(PeakSearch::peakSearch(abscissae(90, 0.0, 1.0), y, g));
        QVERIFY(!PeakSearch::peakSearch({}, y, g));
    }
};

QTEST_GUILESS_MAIN(TestPeakSearch)
#include "tst_peaksearch.moc"
