// Views of a plot: ranges after zooms and pans, and the history of views.
#include "support/support.h"
#include "tarnis/plots/math/viewarithmetic_p.h"
#include "tarnis/tools/navigation/viewhistory_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Distance in units of the last place of the larger end.
double ulps(double a, double b, AxisRange scale)
{
    const double largest = std::max(std::abs(scale.min), std::abs(scale.max));
    return std::abs(a - b) / (std::nextafter(largest, infinity) - largest);
}

bool isOrdered(AxisRange range, AxisRange like)
{
    return (range.max > range.min) == (like.max > like.min);
}

AxisRange anyRange(std::mt19937_64& random)
{
    std::uniform_real_distribution<double> exponent(-3.0, 9.0);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    const double low = unit(random) * std::pow(10.0, exponent(random));
    const double span = std::pow(10.0, exponent(random));
    return unit(random) > 0.0 ? AxisRange { low, low + span } : AxisRange { low + span, low };
}

constexpr int wheel = 1;
constexpr int pan = 2;

/// A view with a manually set X range.
ViewState showing(double min, double max)
{
    ViewState view;
    view.x = { min, max };
    view.autoX = false;
    return view;
}

} // namespace

class TestViewHistory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Zooming and moving as arithmetic: the anchor stays, limits hold, the way back is exact, bad numbers do no harm.

    void keepsTheValueUnderThePointer_data()
    {
        QTest::addColumn<bool>("log");
        QTest::newRow("linear") << false;
        QTest::newRow("logarithmic") << true;
    }
    void keepsTheValueUnderThePointer()
    {
        QFETCH(bool, log);
        const AxisScale scale = log ? AxisScale::Log : AxisScale::Linear;
        const AxisRange range { 2.0, 2000.0 };
        for (const double share : { 0.0, 0.2, 0.5, 1.0 }) {
            const double low = toAxis(range.min, scale);
            const double value = fromAxis(low + share * (toAxis(range.max, scale) - low), scale);
            for (const double notches : { -7.5, -1.0, 0.25, 3.0 }) {
                const AxisRange zoomed = zoomedView(range, scale, { share, false }, notches, {});
                QVERIFY(std::abs(shareOf(value, zoomed, scale) - share) < 1e-9);
                const double factor =
                    (toAxis(range.max, scale) - low) / (toAxis(zoomed.max, scale) - toAxis(zoomed.min, scale));
                QVERIFY(std::abs(factor - std::pow(1.2, notches)) < 1e-9 * factor);
            }
        }
    }

    void keepsZeroOfCounts()
    {
        const AxisRange log = zoomedView({ 0.0, 1000.0 }, AxisScale::Log, { 0.7, true }, 1.0, {});
        QCOMPARE(log.min, 0.0); // not 1, which is its position on the axis
        QVERIFY(log.max < 1000.0);
        const AxisRange linear = zoomedView({ 0.0, 1200.0 }, AxisScale::Linear, { 0.7, true }, 1.0, {});
        QCOMPARE(linear.min, 0.0);
        QVERIFY(std::abs(linear.max - 1000.0) < 1e-9);
    }

    void returnsWithinFourUlps()
    {
        auto random = tarnis::testing::seededGenerator(41);
        std::uniform_real_distribution<double> share(0.0, 1.0);
        std::uniform_int_distribution<int> notches(1, 4);
        for (int i = 0; i < 20000; ++i) {
            const AxisRange range = anyRange(random);
            const ZoomAnchor anchor { share(random), false };
            const int n = notches(random);
            const AxisRange in = zoomedView(range, AxisScale::Linear, anchor, n, {});
            const AxisRange back = zoomedView(in, AxisScale::Linear, anchor, -n, {});
            QVERIFY(ulps(back.min, range.min, range) <= 4.0);
            QVERIFY(ulps(back.max, range.max, range) <= 4.0);
        }
    }

    void stepsForwardAndBackEndAtTheSameBits()
    {
        auto random = tarnis::testing::seededGenerator(41);
        std::uniform_int_distribution<int> eighths(-240, 240);
        for (int i = 0; i < 2000; ++i) {
            const AxisRange range = anyRange(random);
            ZoomSteps steps(range, AxisScale::Linear, { 0.3, false });
            int sum = 0;
            for (int k = 0; k < 10; ++k) {
                const int step = eighths(random);
                steps.add(step, {});
                sum += step;
            }
            QVERIFY(steps.add(-sum, {}) == range);
        }
    }

    void endsExactlyAtTheLimits()
    {
        const ViewLimits limits { 4.0, AxisRange { 0.0, 1000.0 } };
        const AxisRange in = zoomedView({ 0.0, 1000.0 }, AxisScale::Linear, { 0.25, false }, 500.0, limits);
        QVERIFY(std::abs((in.max - in.min) - 4.0) < 1e-9);
        QVERIFY(std::abs(shareOf(250.0, in, AxisScale::Linear) - 0.25) < 1e-9);
        const AxisRange out = zoomedView(in, AxisScale::Linear, { 0.25, false }, -500.0, limits);
        QVERIFY(std::abs((out.max - out.min) - 1200.0) < 1e-9);
    }

    void doesNotStickAtALimit()
    {
        const ViewLimits limits { 4.0, AxisRange { 0.0, 1000.0 } };
        ZoomSteps steps({ 0.0, 1000.0 }, AxisScale::Linear, { 0.5, false });
        for (int i = 0; i < 100; ++i)
            steps.add(120, limits);
        const AxisRange limited = steps.add(120, limits);
        const AxisRange out = steps.add(-120, limits);
        QVERIFY(std::abs((out.max - out.min) - 1.2 * (limited.max - limited.min)) < 1e-9);
    }

    void doesNotJumpWhereARangeIsBeyondALimit()
    {
        const ViewLimits limits { 4.0, AxisRange { 0.0, 1000.0 } };
        const AxisRange narrow { 10.0, 11.0 };
        QVERIFY(zoomedView(narrow, AxisScale::Linear, {}, 1.0, limits) == narrow);
        QVERIFY(zoomedView(narrow, AxisScale::Linear, {}, -1.0, limits) != narrow);
        const AxisRange wide { -5000.0, 5000.0 };
        QVERIFY(zoomedView(wide, AxisScale::Linear, {}, -1.0, limits) == wide);
        QVERIFY(zoomedView(wide, AxisScale::Linear, {}, 1.0, limits) != wide);
    }

    void neverOverflowsOrInverts()
    {
        auto random = tarnis::testing::seededGenerator(41);
        std::uniform_real_distribution<double> share(-1.0, 2.0);
        std::uniform_real_distribution<double> notches(-1e4, 1e4);
        for (int i = 0; i < 20000; ++i) {
            const AxisRange start = anyRange(random);
            const AxisScale scale = i % 2 == 0 ? AxisScale::Linear : AxisScale::Log;
            if (scale == AxisScale::Log && !(std::min(start.min, start.max) > 0.0))
                continue; // 0 and below have one place on a log axis
            AxisRange range = start;
            for (int k = 0; k < 8; ++k) {
                range = zoomedView(range, scale, { share(random), false }, notches(random), {});
                range = pannedView(range, scale, share(random), {});
                QVERIFY(std::isfinite(range.min) && std::isfinite(range.max));
                QVERIFY(isOrdered(range, start));
            }
        }
    }

    void returnsBadNumbersAsTheyAre_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::newRow("not a number") << notANumber << 1.0;
        QTest::newRow("infinite") << 0.0 << infinity;
        QTest::newRow("without extent") << 5.0 << 5.0;
        QTest::newRow("too large") << -1.7e308 << 1.7e308;
    }
    void returnsBadNumbersAsTheyAre()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        for (const AxisRange& range : { zoomedView({ min, max }, AxisScale::Linear, {}, 1.0, {}),
                 pannedView({ min, max }, AxisScale::Linear, 0.1, {}) }) {
            QVERIFY(range.min == min || (std::isnan(range.min) && std::isnan(min)));
            QCOMPARE(range.max, max);
        }
        const AxisRange good { 0.0, 1.0 };
        QVERIFY(zoomedView(good, AxisScale::Linear, {}, notANumber, {}) == good);
        QVERIFY(zoomedView(good, AxisScale::Linear, { infinity, false }, 1.0, {}) == good);
        QVERIFY(pannedView(good, AxisScale::Linear, infinity, {}) == good);
    }

    void keepsTheMiddleOfAMovedViewInTheData()
    {
        const ViewLimits limits { 4.0, AxisRange { 0.0, 1000.0 } };
        QVERIFY(pannedView({ 0.0, 100.0 }, AxisScale::Linear, -5.0, limits) == (AxisRange { -50.0, 50.0 }));
        QVERIFY(pannedView({ 0.0, 100.0 }, AxisScale::Linear, 50.0, limits) == (AxisRange { 950.0, 1050.0 }));
        QVERIFY(pannedView({ 100.0, 0.0 }, AxisScale::Linear, 5.0, limits) == (AxisRange { 50.0, -50.0 }));
        const AxisRange outside { 2000.0, 2100.0 };
        QVERIFY(pannedView(outside, AxisScale::Linear, 0.1, limits) == outside);
        QVERIFY(pannedView(outside, AxisScale::Linear, -0.1, limits).min < 2000.0);
    }

    // The history of views: new entries, merged entries, and going back.

    void startsWithoutAWayBack()
    {
        ViewHistory history { ViewState() };
        QVERIFY(!history.canGoBack());
        QVERIFY(!history.canGoForward());
        QVERIFY(isSameView(history.goBack(), ViewState()));
    }

    void returnsTheSameBits()
    {
        ViewHistory history(showing(0.1, 0.3));
        history.commit(showing(0.1 + 1e-12, 0.2), { pan, 1 }, 0);
        QVERIFY(history.goBack().x == (AxisRange { 0.1, 0.3 }));
        QVERIFY(history.goForward().x == (AxisRange { 0.1 + 1e-12, 0.2 }));
    }

    void joinsStepsOfOneGesture()
    {
        ViewHistory history(showing(0, 100));
        history.commit(showing(10, 90), { wheel, 1 }, 1000);
        history.commit(showing(20, 80), { wheel, 1 }, 1700);
        history.commit(showing(30, 70), { wheel, 1 }, 2401); // a moment too late
        QCOMPARE(history.goBack().x.min, 20.0);
        QCOMPARE(history.goBack().x.min, 0.0);
        QVERIFY(!history.canGoBack());
    }

    void keepsOtherKindsAndSerialsApart()
    {
        ViewHistory history(showing(0, 100));
        history.commit(showing(10, 90), { wheel, 1 }, 0);
        history.commit(showing(20, 80), { wheel, 2 }, 0);
        history.commit(showing(30, 70), { pan, 2 }, 0);
        QCOMPARE(history.goBack().x.min, 20.0);
        QCOMPARE(history.goBack().x.min, 10.0);
        QCOMPARE(history.goBack().x.min, 0.0);
    }

    void dropsAGestureThatRevertsItself()
    {
        ViewHistory history(showing(0, 100));
        history.commit(showing(10, 90), { wheel, 1 }, 0);
        history.commit(showing(0, 100), { wheel, 1 }, 10);
        QVERIFY(!history.canGoBack());
    }

    void dropsLaterViewsAfterAChange()
    {
        ViewHistory history(showing(0, 100));
        history.commit(showing(10, 90), { pan, 1 }, 0);
        history.goBack();
        history.commit(showing(5, 50), { pan, 2 }, 0);
        QVERIFY(!history.canGoForward());
        QCOMPARE(history.goBack().x.max, 100.0);
    }

    void ignoresRangesThatFollowTheData()
    {
        ViewState before;
        before.x = { 0, 100 };
        ViewState after = before;
        after.x = { 0, 2000 };
        ViewHistory history(before);
        QVERIFY(!history.commit(after, { pan, 1 }, 0));
        QVERIFY(!history.canGoBack());
        after.autoX = false;
        QVERIFY(history.commit(after, { pan, 1 }, 0));
    }

    void ignoresDifferencesThatCannotBeSeen()
    {
        ViewHistory history(showing(0, 100));
        QVERIFY(!history.commit(showing(1e-8, 100), { pan, 1 }, 0));
        QVERIFY(history.commit(showing(1e-6, 100), { pan, 1 }, 0));
    }

    void keepsFiftyViews()
    {
        ViewHistory history(showing(0, 1));
        for (int i = 1; i <= 80; ++i)
            history.commit(showing(i, i + 1), { pan, i }, 0);
        int steps = 0;
        while (history.canGoBack()) {
            history.goBack();
            ++steps;
        }
        QCOMPARE(steps, 49);
        QCOMPARE(history.current().x.min, 31.0);
    }
};

QTEST_MAIN(TestViewHistory)
#include "tst_viewhistory.moc"
