// Fits of the peak search: given values, single peaks, refused and degenerate input.
#include "peak/peakcurves.h"
#include "support/cases.h"
#include "support/peaksearchoracle.h"
#include "support/support.h"

#include <tarnis/foundation/log.h>
#include <tarnis/peak/peaksearch.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <climits>
#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

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

class TestPeakSearchFits : public QObject {
    Q_OBJECT

private Q_SLOTS:

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

QTEST_GUILESS_MAIN(TestPeakSearchFits)
#include "tst_peaksearch_fits.moc"
