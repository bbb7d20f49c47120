// The ranges of styled plots: head room, live axes, held ranges, logarithmic axes, square bins.
#include "support/colourvision.h"
#include "support/wait.h"
#include "tools/styledplots.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotstyle.h>

#include <QTest>

#include <cmath>

using namespace tarnis;
using namespace tarnis::testing;

class TestPlotStyleRanges : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void automaticRangesLeaveHeadRoom()
    {
        VectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxY(low, high);
        QCOMPARE(low, 0.0);
        QVERIFY(high >= 834 * 1.05 && high <= 834 * 1.1);
        QCOMPARE(high, 880.0);
    }

    void automaticRangesShowWhatIsVisibleAndEnabled()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxX(low, high);
        QCOMPARE(high, 50.0); // ends with the data
        plot.getMinMaxY(low, high);
        QCOMPARE(high, 320.0);
        plot.setEnable(2, false);
        plot.refreshPixmap();
        grabbed(plot);
        plot.getMinMaxY(low, high);
        QCOMPARE(high, 220.0);

        VectorGraphWidget one;
        fill(one);
        const PlotStyle second(&one);
        one.onAutoScaleX(false);
        one.setMinMaxX(1, 59); // without the largest
        one.refreshPixmap();
        grabbed(one);
        one.getMinMaxY(low, high);
        QCOMPARE(high, 54.0);
    }

    void aLiveAxisStaysCalm()
    {
        VectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        grabbed(plot);
        double low = 0.0;
        double first = 0.0;
        plot.getMinMaxY(low, first);
        for (const double largest : { 860.0, 800.0, 700.0, 840.0 }) {
            plot.setData({ 1, 2, largest, 4 });
            plot.setMaxValue(largest);
            plot.refreshPixmap();
            grabbed(plot);
            double high = 0.0;
            plot.getMinMaxY(low, high);
            QCOMPARE(high, first);
        }
    }

    void heldRangesStay()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        plot.onAutoScaleX(false);
        plot.onAutoScaleY(false);
        plot.setMinMaxX(3, 17);
        plot.setMinMaxY(20, 90);
        plot.refreshPixmap();
        grabbed(plot);
        double low = 0.0;
        double high = 0.0;
        plot.getMinMaxX(low, high);
        QCOMPARE(low, 3.0);
        QCOMPARE(high, 17.0);
        plot.getMinMaxY(low, high);
        QCOMPARE(low, 20.0);
        QCOMPARE(high, 90.0);
    }

    void oneCountIsSeenOnALogarithmicAxis()
    {
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 100, 10, true, true);
        plot.setData({ 1, 1, 0, 0, 1000, 1000 });
        plot.setMaxValue(1000);
        plot.setLogScaleY(true);
        PlotStyle style(&plot);
        style.setCurveForm(PlotStyle::CurveForm::Steps);
        const QImage image = grabbed(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        QCOMPARE(mapping.y().min, 0.5);
        QVERIFY(mapping.rowOf(1.0) < mapping.rowOf(0.0) - 10);
        QCOMPARE(mapping.rowOf(0.0), double(mapping.frameRect().bottom()));
        QVERIFY(hasColour(image, plot, 1.0, 1.0, PlotStyle::seriesColour(PlotStyle::Theme::Light, 0)));
    }

    /// The length of such a range in pixels, or its length itself, is infinite.
    void theLongestRangesLeaveSpaceForThePlot()
    {
        for (const double end : { 1e300, 5e306, 1e308, 1.7e308 }) {
            VectorGraphWidget plot;
            fill(plot);
            const PlotStyle style(&plot);
            plot.onAutoScaleX(false);
            plot.setMinMaxX(-end, end);
            plot.refreshPixmap();
            grabbed(plot, { 700, 500 });
            const QRect rect = PlotMapping::of(plot).plotRect();
            QVERIFY2(rect.width() > 350 && rect.right() < 700, qPrintable(QString::number(rect.width())));
        }
    }

    void binsAreSquareWhereUnitsAgree()
    {
        XY2DGraphWidget map;
        fill(map);
        PlotStyle style(&map);
        grabbed(map, { 700, 500 });
        const auto aspect = [&map] {
            const QRect rect = PlotMapping::of(map).plotRect();
            return double(rect.width()) / rect.height();
        };
        QVERIFY(std::abs(aspect() - 2.0) < 0.02);
        style.setBinsSquare(false);
        grabbed(map, { 700, 500 });
        QVERIFY(std::abs(aspect() - 2.0) > 0.1);

        XY2DGraphWidget other;
        fill(other, "X [mm]", "Time [us]");
        const PlotStyle second(&other);
        grabbed(other, { 700, 500 });
        const QRect rect = PlotMapping::of(other).plotRect();
        QVERIFY(std::abs(double(rect.width()) / rect.height() - 2.0) > 0.1);
    }

    void observersSeeTheStyledRange()
    {
        class Watch : public PlotObserver {
        public:
            using PlotObserver::PlotObserver;
            QList<double> seen;

        protected:
            void plotChanged(Changes /*changes*/) override
            {
                double low = 0.0;
                double high = 0.0;
                observedPlot()->getMinMaxY(low, high);
                seen.append(high);
            }
        };
        VectorGraphWidget plot;
        fill(plot);
        const PlotStyle style(&plot);
        Watch watch(&plot);
        plot.setData({ 1, 2, 1000 });
        plot.setMaxValue(1000);
        TRY_VERIFY(!watch.seen.isEmpty());
        for (const double high : std::as_const(watch.seen))
            QVERIFY(high >= 1050.0 && high <= 1100.0);
    }
};

QTEST_MAIN(TestPlotStyleRanges)
#include "tst_plotstyleranges.moc"
