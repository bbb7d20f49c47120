// The curve of a peak as lines.
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/peakcurve_p.h"

#include <QTest>

#include <cmath>
#include <limits>

class TestPeakCurve : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void extent_data()
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
    void extent()
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

    void emptyExtent()
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

QTEST_APPLESS_MAIN(TestPeakCurve)
#include "tst_peakcurve.moc"
