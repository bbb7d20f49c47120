// The history of views: new entries, merged entries, and going back.
#include "tarnis/tools/navigation/viewhistory_p.h"

#include <QTest>

using namespace tarnis;

namespace {

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
