// Plots of several series: form, ranges, columns, peaks and tooltips as painted.
#include "plots/multiseries.h"
#include "support/curveprobe.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>

#include <QRegularExpression>
#include <QSignalSpy>
#include <QToolTip>

#include <cmath>

using namespace tarnis::testing;

class TestMultiVectorPainting : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void selectXRangeNeedsData()
    {
        Plot plot;
        plot.SetEnableSelectXRangeFeature(true, QStringLiteral("Channel"));
        plot.show();
        const QSignalSpy begun(&plot, &XYGraphWidget::xRangeSelectBegin);
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Select Channel Range")));
        QVERIFY(!plot.IsEnableSelectXRange());
        QCOMPARE(begun.count(), 0);
        QVERIFY(plot.m_xRangeDialog == nullptr);
        plot.setData(0, QList<double>(10, 1.0), 1.0);
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Select Channel Range")));
        QVERIFY(plot.IsEnableSelectXRange());
        QCOMPARE(begun.count(), 1);
        QVERIFY(plot.m_xRangeDialog != nullptr);
    }

    void formOfTheCurvesFromTheMenu()
    {
        Plot plot;
        plot.show();
        PlotMouse mouse(plot);
        plot.wasRefreshed();
        QVERIFY(mouse.pick(QStringLiteral("Column Chart")));
        QVERIFY(plot.m_columnChart && plot.wasRefreshed());
        QVERIFY(mouse.pick(QStringLiteral("Connect Points")));
        QVERIFY(!plot.m_connectPoints && plot.wasRefreshed());
        QVERIFY(mouse.pick(QStringLiteral("Column Chart")));
        QVERIFY(!plot.m_columnChart);
    }

    void logScaleFromTheMenu()
    {
        Plot plot;
        plot.show();
        plot.wasRefreshed();
        QVERIFY(PlotMouse(plot).pick(QStringLiteral("Log Scale")));
        QVERIFY(plot.m_logScaleY && plot.wasRefreshed());
        plot.entry(QStringLiteral("Log Scale"))->setChecked(false); // set from code: not called
        QVERIFY(plot.m_logScaleY);
    }

    void paintedRangeEndsAtThePeak()
    {
        Plot plot;
        plot.setData(0, { 1.0, 77.0, 3.0 }, 77.0);
        plot.setData(8, { 1.0, 60.0, 3.0 }, 60.0);
        plot.setAddType(MultiVectorGraphWidget::AddEachPosition);
        QCOMPARE(plot.m_maxY, 160.0);
        plot.picture();
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 77.0); // of the groups, also for a sum
        plot.onAutoScaleY(false);
        plot.setMinMaxY(5.0, 10.0);
        plot.picture();
        QCOMPARE(plot.m_maxY, 10.0);
    }

    void paintedRangeOnALogAxis()
    {
        Plot plot;
        plot.setData(0, { 0.0, 1000.0, 3.0 }, 1000.0);
        plot.setData(1, { 0.25, -7.0, 3.0 }, 1000.0);
        plot.setEnable(1, false); // hidden series count
        plot.setLogScaleY(true);
        plot.picture();
        QCOMPARE(plot.m_minY, 0.25);
        QCOMPARE(plot.m_maxY, 1000.0);
        plot.resizeData(1);
        plot.picture();
        QCOMPARE(plot.m_minY, 1.0);
    }

    void directPaintMovesTheLowerEndOnly()
    {
        Plot plot;
        plot.setData(0, { 0.5, 77.0, 3.0 }, 77.0);
        plot.setMinMaxY(-4.0, 90.0);
        QImage screen(plot.size(), QImage::Format_ARGB32_Premultiplied);
        plot.render(&screen); // without a cache
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 90.0);
    }

    void columnsWinOverJoinedPoints()
    {
        Plot plot;
        plot.setData(0, { 40.0, 10.0, 30.0, 20.0 }, 60.0);
        const QColor colour = plot.m_data.at(0).color;
        const int joined = countPixels(plot.picture(), colour);
        plot.onColumnChart(true);
        const QImage columns = plot.picture();
        QVERIFY(countPixels(columns, colour) > 10 * joined);
        plot.onConnectPoints(false);
        QCOMPARE(plot.picture(), columns);
        plot.onColumnChart(false);
        QCOMPARE(countPixels(plot.picture(), colour), 4 * 9); // a cross of nine pixels each
    }

    void peaksAreDrawnOverTheCurves()
    {
        Plot plot;
        plot.setData(0, QList<double>(500, 20.0), 40.0);
        PeakSearch::Gaussian peak;
        peak.N = 30.0;
        peak.center = 250.0;
        peak.sigma = 20.0;
        plot.showPeak(peak);
        QVERIFY(plot.wasRefreshed());
        QVERIFY(countPixels(plot.picture(), QColor(0, 65, 255)) > 50);
        plot.showPeak(peak);
        QCOMPARE(plot.m_peaks.size(), 1);
    }

    void tooltipFollowsTheMouse()
    {
        Plot plot;
        plot.m_groupName = QStringLiteral("Module");
        plot.m_firstNumber = 4;
        plot.setData(0, QList<double>(100, 10.0), 90.0);
        plot.setData(1, QList<double>(100, 80.0), 90.0);
        plot.initManualX(0.0, 100.0);
        plot.initMode(false, false);
        plot.setMinMaxY(0.0, 100.0);
        plot.show();
        plot.picture();
        PlotMouse mouse(plot);
        mouse.move(plot.calcWidgetPoint(QPoint(30, 75)) + QPoint(1, 0));
        TRY_COMPARE(QToolTip::text(), QStringLiteral("Module:5 Channel:30 i:80"));
        mouse.move(plot.calcWidgetPoint(QPoint(60, 15)) + QPoint(1, 0));
        TRY_COMPARE(QToolTip::text(), QStringLiteral("Module:4 Channel:60 i:10"));
        plot.setDecimalX(2);
        mouse.move(plot.calcWidgetPoint(QPoint(61, 15)) + QPoint(1, 0));
        TRY_COMPARE(QToolTip::text(), QStringLiteral("Module:4 Channel:61.5 i:10"));
        mouse.move(QPoint(2, 2));
        TRY_VERIFY(!QToolTip::isVisible() || QToolTip::text().isEmpty());
    }

    void tooltipOverASum_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("sum of all") << int(MultiVectorGraphWidget::AddAll);
        QTest::newRow("type out of the enumeration") << 77;
    }
    void tooltipOverASum()
    {
        QFETCH(int, type);
        Plot plot;
        plot.setData(0, QList<double>(100, 10.0), 90.0);
        plot.setData(1, QList<double>(100, 80.0), 90.0);
        plot.setData(2, QList<double>(100, 500.0), 90.0);
        plot.setEnable(2, false);
        plot.setAddType(static_cast<MultiVectorGraphWidget::AddType>(type));
        plot.initManualX(0.0, 100.0);
        plot.show();
        plot.picture();
        PlotMouse mouse(plot);
        mouse.move(plot.m_graphRect.center());
        TRY_VERIFY(QToolTip::text().endsWith(QStringLiteral(" i:90")));
        mouse.move(QPoint(2, 2));
    }

    void tracesDifferentLengthsOfHiddenSumsToo()
    {
        Plot plot;
        plot.m_groupSize = 2;
        plot.setData(0, { 1.0, 2.0, 3.0, 4.0 }, 4.0);
        plot.setData(1, { 1.0, 2.0 }, 4.0);
        plot.setEnable(0, false);
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("Dst Size: 4 Src Size: 2")));
        plot.picture();
    }

    void survivesExtremeValues()
    {
        Plot plot;
        plot.show();
        PlotMouse mouse(plot);
        for (const double odd : { 0.0, -1.0, 1e308, -1e308, 5e-324, std::nan(""), HUGE_VAL, -HUGE_VAL }) {
            plot.initMode(true, true);
            plot.setData(0, { odd, 1.0, odd, 5.0 }, odd);
            plot.setData(1, { 1.0, odd }, odd);
            for (int form = 0; form < 12; ++form) {
                plot.onColumnChart(form % 3 == 0);
                plot.onConnectPoints(form % 3 == 1);
                plot.setLogScaleY(form % 2 == 0);
                plot.setAddType(static_cast<MultiVectorGraphWidget::AddType>(form / 3));
                plot.picture();
                plot.peakSearch(20, 3, true);
                mouse.move(plot.m_graphRect.center() + QPoint(form, 0));
            }
            plot.setMinMaxX(odd, 5.0);
            plot.setMinMaxY(odd, odd);
            plot.picture();
            plot.initManualX(odd, odd);
            plot.picture();
            plot.peakSearch(20, 3, true);
            mouse.move(plot.m_graphRect.center());
            plot.init(QString(), QString(), 10.0, 10.0, true, true);
        }
        mouse.move(QPoint(2, 2));
    }
};

QTEST_MAIN(TestMultiVectorPainting)
#include "tst_multivectorpainting.moc"
