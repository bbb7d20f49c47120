// Axes that share a range: no loops, one repaint, plots that come and go.
#include "support/support.h"
#include "support/visibleplot.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/axislink.h>
#include <tarnis/tools/plotnavigator.h>

#include <QSignalSpy>
#include <QTest>

#include <initializer_list>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

bool isAutoX(XYGraphWidget& plot)
{
    AxisRange range;
    return plot.getMinMaxX(range.min, range.max);
}

void fill(VectorGraphWidget& plot, int samples = 100)
{
    plot.m_doubleBuffered = true;
    plot.init(QStringLiteral("X"), QStringLiteral("Y"), samples, 10, true, true);
    plot.setData(QList<double>(samples, 3.0));
    plot.setMaxValue(3.0);
    plot.resize(300, 200);
}

/// Counts the drawings of its data.
class CountingPlot : public VectorGraphWidget {
public:
    void onPaint(QPainter& painter, const QRect& graph) override
    {
        ++drawings;
        VectorGraphWidget::onPaint(painter, graph);
    }
    int drawings = 0;
};

void showBoth(XYGraphWidget& plot)
{
    plot.onAutoScaleX(false);
    plot.onAutoScaleY(false);
    plot.setMinMaxX(10, 20);
    plot.setMinMaxY(1, 2);
    plot.refreshPixmap();
}

void fillAndLinkX(AxisLink& link, std::initializer_list<VectorGraphWidget*> plots)
{
    for (VectorGraphWidget* const plot : plots) {
        fill(*plot);
        link.add(plot, Qt::Horizontal);
    }
}

} // namespace

class TestAxisLink : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void allPlotsTakeARange()
    {
        VectorGraphWidget a, b, c;
        AxisLink link;
        fillAndLinkX(link, { &a, &b, &c });
        QSignalSpy changed(&link, &AxisLink::rangeChanged);
        showX(b, { 12.3, 45.6 });
        TRY_COMPARE(rangeX(c), (AxisRange { 12.3, 45.6 }));
        QCOMPARE(rangeX(a), (AxisRange { 12.3, 45.6 }));
        QVERIFY(!isAutoX(a));
        QCoreApplication::processEvents();
        QCOMPARE(changed.size(), 1);
        showX(c, { 80, 20 }); // reversed
        TRY_COMPARE(rangeX(a), (AxisRange { 80, 20 }));
        QCoreApplication::processEvents();
        QCOMPARE(changed.size(), 2);
    }

    void automaticScalingIsSwitchedForAll()
    {
        VectorGraphWidget a, b;
        fill(a, 100);
        fill(b, 200);
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        showX(a, { 5, 6 });
        TRY_COMPARE(rangeX(b), (AxisRange { 5, 6 }));
        b.onAutoScaleX(true);
        TRY_VERIFY(isAutoX(a));
        QCOMPARE(rangeX(a), (AxisRange { 0, 100 }));
        QCOMPARE(rangeX(b), (AxisRange { 0, 200 })); // each its own data
    }

    void automaticPlotsWithTheSameAxisShowTheSameRange()
    {
        VectorGraphWidget a, b;
        AxisLink link;
        for (VectorGraphWidget* const plot : { &a, &b }) {
            fill(*plot, plot == &a ? 100 : 200);
            plot->initManualX(0, 200);
            link.add(plot, Qt::Horizontal);
        }
        showX(a, { 5, 6 });
        TRY_COMPARE(rangeX(b), (AxisRange { 5, 6 }));
        b.onAutoScaleX(true);
        TRY_VERIFY(isAutoX(a));
        for (VectorGraphWidget* const plot : { &a, &b }) {
            plot->setData(QList<double>(50, 3.0)); // fits the plot again
            QCOMPARE(rangeX(*plot), (AxisRange { 0, 200 }));
        }
    }

    void newMembersTakeTheRangeOfTheGroup()
    {
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        AxisLink link;
        showX(a, { 5, 6 });
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        QCOMPARE(rangeX(b), (AxisRange { 5, 6 }));
        QCOMPARE(link.count(), 2);
        link.remove(&b, Qt::Horizontal);
        showX(a, { 7, 8 });
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(b), (AxisRange { 5, 6 }));
    }

    void aNewMemberTakesARangeThatIsNotYetReported()
    {
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        QSignalSpy changed(&link, &AxisLink::rangeChanged);
        showX(a, { 5, 6 });
        link.add(&b, Qt::Horizontal); // in the same pass of the event loop
        QCOMPARE(rangeX(b), (AxisRange { 5, 6 }));
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(a), (AxisRange { 5, 6 }));
        QCOMPARE(rangeX(b), (AxisRange { 5, 6 }));
        QCOMPARE(changed.size(), 1);
    }

    void aChangeThatUndoesTheJoiningIsFollowed_data()
    {
        QTest::addColumn<bool>("isAuto");
        QTest::newRow("back to automatic scaling") << true;
        QTest::newRow("back to a range") << false;
    }
    void aChangeThatUndoesTheJoiningIsFollowed()
    {
        QFETCH(bool, isAuto);
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        const PlotNavigator observer(&b); // the plot compares its views from now on
        if (isAuto)
            showX(a, { 5, 6 });
        else
            showX(b, { 5, 6 });
        QCoreApplication::processEvents();
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        if (isAuto)
            b.onAutoScaleX(true);
        else
            showX(b, { 5, 6 });
        QCoreApplication::processEvents();
        QCOMPARE(isAutoX(a), isAuto);
        QCOMPARE(rangeX(a), rangeX(b));
    }

    void theLastOfSeveralChangesIsFollowed()
    {
        VectorGraphWidget a, b, c;
        AxisLink link;
        fillAndLinkX(link, { &a, &b, &c });
        showX(a, { 1, 2 });
        QCoreApplication::processEvents();
        a.onAutoScaleX(true);
        showX(b, { 3, 4 });
        QCoreApplication::processEvents();
        for (VectorGraphWidget* const plot : { &a, &b, &c })
            QCOMPARE(rangeX(*plot), (AxisRange { 3, 4 }));
        showX(c, { 5, 6 });
        showX(a, { 7, 8 });
        link.remove(&a, Qt::Horizontal);
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(b), (AxisRange { 5, 6 }));
        QCOMPARE(rangeX(a), (AxisRange { 7, 8 }));
    }

    void aChangeIsFollowedAfterOneThatIsNone()
    {
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        showX(a, { 1, 2 });
        QCoreApplication::processEvents();
        showX(b, { 3, 4 });
        showX(a, { 5, 5 }); // not a range
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(a), (AxisRange { 3, 4 }));
    }

    void mapAndCurveShareAxesOfDifferentDirection()
    {
        XY2DGraphWidget map;
        map.m_doubleBuffered = true;
        map.init(QStringLiteral("X"), QStringLiteral("Y"), 100, 100, true, true);
        map.resize(300, 300);
        VectorGraphWidget curve;
        fill(curve);
        AxisLink link;
        link.add(&map, Qt::Vertical);
        link.add(&curve, Qt::Horizontal);
        showX(curve, { 10, 20 });
        TRY_COMPARE(rangeY(map), (AxisRange { 10, 20 }));
        showY(map, { 30, 50 });
        TRY_COMPARE(rangeX(curve), (AxisRange { 30, 50 }));
    }

    void bothAxesByTwoGroups()
    {
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        AxisLink linkX, linkY;
        for (VectorGraphWidget* const plot : { &a, &b }) {
            linkX.add(plot, Qt::Horizontal);
            linkY.add(plot, Qt::Vertical);
        }
        showBoth(a);
        TRY_COMPARE(rangeY(b), (AxisRange { 1, 2 }));
        QCOMPARE(rangeX(b), (AxisRange { 10, 20 }));
    }

    void eachPlotIsDrawnOncePerChange()
    {
        CountingPlot a, b;
        AxisLink linkX, linkY;
        for (CountingPlot* const plot : { &a, &b }) {
            fill(*plot);
            linkX.add(plot, Qt::Horizontal);
            linkY.add(plot, Qt::Vertical);
            plot->show();
            QVERIFY(QTest::qWaitForWindowExposed(plot));
        }
        TRY_VERIFY(a.drawings > 0 && b.drawings > 0);
        QCoreApplication::processEvents();
        a.drawings = b.drawings = 0;
        showBoth(a);
        TRY_COMPARE(rangeX(b), (AxisRange { 10, 20 }));
        for (int i = 0; i < 10; ++i)
            QCoreApplication::processEvents();
        QCOMPARE(b.drawings, 1);
        QVERIFY2(a.drawings <= 1, qPrintable(QString::number(a.drawings)));
    }

    void groupsThatOverlapComeToRest()
    {
        // A ring: a.x - b.x, b.x - c.x, c.x - a.x
        VectorGraphWidget a, b, c;
        fill(a);
        fill(b);
        fill(c);
        AxisLink first, second, third;
        first.add(&a, Qt::Horizontal);
        first.add(&b, Qt::Horizontal);
        second.add(&b, Qt::Horizontal);
        second.add(&c, Qt::Horizontal);
        third.add(&c, Qt::Horizontal);
        third.add(&a, Qt::Horizontal);
        QSignalSpy changed(&first, &AxisLink::rangeChanged);
        showX(a, { 1, 2 });
        TRY_COMPARE(rangeX(c), (AxisRange { 1, 2 }));
        for (int i = 0; i < 50; ++i)
            QCoreApplication::processEvents();
        QCOMPARE(changed.size(), 1);
        QCOMPARE(rangeX(a), (AxisRange { 1, 2 }));
        showX(b, { 3, 4 });
        showX(c, { 5, 6 });
        showX(a, { 7, 8 });
        for (int i = 0; i < 50; ++i)
            QCoreApplication::processEvents();
        QVERIFY2(changed.size() < 5, "the ranges run round the ring");
        QCOMPARE(rangeX(a), rangeX(b));
        QCOMPARE(rangeX(a), rangeX(c));
    }

    void aPlotOfAnotherGroupTakesTheRangeOfItsNewOne()
    {
        VectorGraphWidget a, b, c;
        fill(a);
        fill(b);
        fill(c);
        AxisLink first, second;
        showX(c, { 1, 2 });
        second.add(&c, Qt::Horizontal);
        first.add(&a, Qt::Horizontal);
        first.add(&b, Qt::Horizontal);
        showX(a, { 3, 4 }); // later than the range of the second group
        QCoreApplication::processEvents();
        second.add(&b, Qt::Horizontal);
        QCOMPARE(rangeX(b), (AxisRange { 1, 2 }));
        TRY_COMPARE(rangeX(a), (AxisRange { 1, 2 }));
        QCOMPARE(rangeX(c), (AxisRange { 1, 2 }));
    }

    void plotsMayGoAtAnyTime()
    {
        AxisLink link;
        auto a = std::make_unique<VectorGraphWidget>();
        auto b = std::make_unique<VectorGraphWidget>();
        VectorGraphWidget c;
        fill(*a);
        fill(*b);
        fill(c);
        link.add(a.get(), Qt::Horizontal);
        link.add(b.get(), Qt::Horizontal);
        link.add(&c, Qt::Horizontal);
        connect(&link, &AxisLink::rangeChanged, this, [&b] { b.reset(); });
        showX(*a, { 1, 2 });
        TRY_VERIFY(b == nullptr);
        QCOMPARE(link.count(), 2);
        QCOMPARE(rangeX(c), (AxisRange { 1, 2 }));
        a.reset();
        QCOMPARE(link.count(), 1);
        showX(c, { 3, 4 });
        QCoreApplication::processEvents();
        VectorGraphWidget d;
        fill(d);
        link.add(&d, Qt::Horizontal);
        QCOMPARE(rangeX(d), (AxisRange { 3, 4 }));
    }

    void rangesThatAreNoneStayAlone()
    {
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        showX(a, { 1, 2 });
        TRY_COMPARE(rangeX(b), (AxisRange { 1, 2 }));
        showX(a, { 5, 5 });
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(b), (AxisRange { 1, 2 }));
        showX(a, { 5, std::numeric_limits<double>::quiet_NaN() });
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(b), (AxisRange { 1, 2 }));
        showX(a, { 5, std::numeric_limits<double>::infinity() });
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(b), (AxisRange { 1, 2 }));
        showX(a, { 3, 4 });
        TRY_COMPARE(rangeX(b), (AxisRange { 3, 4 }));
    }

    void heldRangeSurvivesSetUpByTheHost()
    {
        VectorGraphWidget a, b;
        fill(a);
        fill(b);
        AxisLink link;
        link.add(&a, Qt::Horizontal);
        link.add(&b, Qt::Horizontal);
        showX(a, { 10, 20 });
        TRY_COMPARE(rangeX(b), (AxisRange { 10, 20 }));
        b.initManualX(0, 500); // as the pair format does with each reply
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(b), (AxisRange { 10, 20 }));
        QCOMPARE(rangeX(a), (AxisRange { 10, 20 }));
    }

    void nullAndDoubleMembersChangeNothing()
    {
        AxisLink link;
        QTest::ignoreMessage(QtWarningMsg, "AxisLink: a null plot cannot be linked");
        link.add(nullptr, Qt::Horizontal);
        VectorGraphWidget a;
        fill(a);
        link.add(&a, Qt::Horizontal);
        link.add(&a, Qt::Horizontal);
        QCOMPARE(link.count(), 1);
        link.remove(&a, Qt::Vertical);
        link.remove(nullptr, Qt::Horizontal);
        QCOMPARE(link.count(), 1);
        QVERIFY(!link.contains(nullptr, Qt::Horizontal));
    }
};

QTEST_MAIN(TestAxisLink)
#include "tst_axislink.moc"
