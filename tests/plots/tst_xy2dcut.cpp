// The 1D cut as the user uses it: the tool and its states, edges dragged and typed, the rubber band, the range box.
#include "plots/cutmap.h"

#include <QTest>

using namespace tarnis::testing;

namespace {

using Plot = CutMap;

} // namespace

class TestXY2DCut : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The tool and its states
    void switchingTheCutShowsAndHidesItsParts()
    {
        Plot plot;
        plot.fill();
        const auto state = [&] {
            return QList<bool> { plot.m_act1dCut->isChecked(), plot.m_1dCutMode, plot.m_1dCutActive,
                plot.hasAllWindows(), plot.hasNoWindow(), plot.m_act1dCutInside->isVisible() };
        };
        const QList<bool> off { false, false, false, false, true, false };
        const QList<bool> on { true, true, true, true, false, true };
        QCOMPARE(state(), off);
        plot.m_act1dCut->setChecked(true);
        QCOMPARE(state(), on);
        QCOMPARE(plot.m_mode, 1);
        plot.wasRefreshed();
        plot.m_act1dCut->setChecked(false);
        QCOMPARE(state(), off);
        QCOMPARE(plot.m_mode, 0);
        QVERIFY(plot.wasRefreshed());
        plot.m_act1dCut->setChecked(true);
        plot.clearData();
        QCOMPARE(state(), (QList<bool> { true, true, false, false, true, true }));
        plot.m_act1dCut->setChecked(false);
        plot.show1dCutWithGauss({}, {});
        QCOMPARE(state(), (QList<bool> { false, false, true, true, false, false }));
        plot.close1dCut();
        QCOMPARE(state(), off);
        plot.close1dCut(); // again: nothing
    }

    void switchingOnTakesAllBins()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        QCOMPARE(plot.cut(), rect(0, 10, 0, 8));
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
    }

    void switchingOnUnchecksTheTools_data()
    {
        QTest::addColumn<int>("tool");
        QTest::newRow("Rectangle") << 0;
        QTest::newRow("Zoom In") << 1;
        QTest::newRow("Zoom Out") << 2;
        QTest::newRow("Move") << 3;
        QTest::newRow("regions") << 4;
    }
    void switchingOnUnchecksTheTools()
    {
        QFETCH(int, tool);
        Plot plot;
        plot.fill();
        plot.enalbeRoiSelect(QRect(0, 0, 10, 8));
        const QList<QAction*> others = plot.tools() + QList<QAction*> { plot.m_actRoi };
        QAction* other = others.at(tool);
        if (tool < 4)
            other->trigger();
        else
            other->setChecked(true);
        QVERIFY(other->isChecked());
        plot.switchOn();
        for (const QAction* action : others)
            QVERIFY(!action->isChecked());
        QCOMPARE(plot.m_mode, 1);
        QVERIFY(plot.m_1dCutMode);
    }

    void switchingOnWithoutRows()
    {
        Plot plot;
        plot.switchOn();
        QCOMPARE(plot.cut(), rect(0, 0, 0, 0));
        QVERIFY(plot.hasAllWindows());
        QVERIFY((plot.plotX()->*(&CutView::m_data)).isEmpty());
        QVERIFY((plot.plotY()->*(&CutView::m_data)).isEmpty());
        plot.update1dCutRect(1.0, 2.0, 3.0, 4.0);
        QCOMPARE(plot.cut(), rect(0, 0, 0, 0));
        plot.plotX()->grab();
    }

    void offAndOnAtOnceMakesNewWindows()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        const QPointer<QWidget> oldX = plot.windowX();
        const QPointer<QWidget> oldBox = plot.m_cutRangeDialog;
        plot.m_act1dCut->setChecked(false);
        plot.m_act1dCut->setChecked(true);
        QVERIFY(plot.hasAllWindows());
        QVERIFY(plot.windowX() != oldX && plot.m_cutRangeDialog != oldBox);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(oldX.isNull() && oldBox.isNull());
        QVERIFY(plot.hasAllWindows()); // the end of the old ones does not close new ones
        QVERIFY(plot.windowX()->isVisible() && plot.windowY()->isVisible());
    }

    void clearedCutComesBackWithARubberBand()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.clearData();
        plot.fill();
        QVERIFY(plot.hasNoWindow() && !plot.m_1dCutActive);
        plot.onSetRectangle(2.0, 4.0, 1.0, 3.0);
        QVERIFY(plot.hasAllWindows() && plot.m_1dCutActive);
        QCOMPARE(plot.cut(), rect(2, 4, 1, 3));
    }

    void gaussFromOff()
    {
        Plot plot;
        plot.fill();
        plot.setMinMaxX(1.0, 9.0);
        plot.setMinMaxY(2.0, 6.0);
        PeakSearch::Gaussian peak;
        peak.N = 100.0;
        peak.center = 5.0;
        peak.sigma = 1.0;
        plot.show1dCutWithGauss(peak, peak);
        QVERIFY(plot.hasAllWindows() && plot.m_1dCutActive && !plot.m_1dCutMode);
        QCOMPARE(plot.cut(), rect(1, 9, 2, 6));
        QCOMPARE((plot.plotX()->*(&CutView::m_peaks)).size(), 1);
        QCOMPARE((plot.plotX()->*(&CutView::m_peaks)).constFirst().center, 5.0);
        QCOMPARE((plot.plotY()->*(&CutView::m_peaks)).size(), 1);
    }

    void gaussWithoutAPeak()
    {
        Plot plot;
        plot.fill();
        PeakSearch::Gaussian none;
        none.N = 0.0;
        none.center = 5.0;
        none.sigma = 1.0;
        plot.show1dCutWithGauss(none, none);
        QVERIFY((plot.plotX()->*(&CutView::m_peaks)).isEmpty());
        QVERIFY((plot.plotY()->*(&CutView::m_peaks)).isEmpty());
    }

    void toolsLendTheMouse()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.m_cutDragEdge = 2;
        plot.m_actZoomIn->trigger();
        QCOMPARE(plot.m_mode, 2);
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(plot.m_act1dCut->isChecked()); // a tool does not end the cut
        plot.m_actZoomIn->trigger();
        QCOMPARE(plot.m_mode, 1);
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
    }

    // Rubber band
    void rubberBandCuts()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        PlotMouse(plot).drag(QPoint(95, 75), QPoint(165, 155)); // 2.25 to 5.75, 2.25 to 6.25
        QCOMPARE(plot.cut(), rect(2, 6, 2, 7));
        QCOMPARE(plot.m_minX, 0.0); // no zoom
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_yMin), 2.0);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), oracleCutX(plot.mapState(), plot.cutState(), "y").values);
    }

    void rubberBandBeyondTheData()
    {
        Plot plot;
        plot.fill();
        plot.setMinMaxX(-10.0, 30.0);
        plot.setMinMaxY(-10.0, 30.0);
        plot.switchOn();
        plot.onSetRectangle(-7.0, 25.0, -3.0, 29.0);
        QCOMPARE(plot.cut(), rect(0, 10, 0, 8));
    }

    void rectangleToolZoomsWithTheCutOn()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        plot.m_actRectangle->trigger();
        QVERIFY(plot.m_act1dCut->isChecked());
        PlotMouse(plot).drag(QPoint(110, 80), QPoint(149, 159));
        QCOMPARE(plot.m_minX, 3.0);
        QCOMPARE(plot.m_maxX, 5.0);
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
        QCOMPARE((plot.plotX()->*(&CutView::m_data)).size(), 2); // the cuts show what the plot shows
    }

    void zoomClickRefreshesTheCuts()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.m_actZoomIn->trigger();
        for (int i = 0; i < 30; ++i)
            PlotMouse(plot).click(QPoint(150, 120));
        QVERIFY(plot.m_maxX - plot.m_minX < 8.0);
        const qsizetype shown = (plot.plotX()->*(&CutView::m_data)).size();
        QVERIFY(shown < 10);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), oracleCutX(plot.mapState(), plot.cutState(), "y").values);
    }

    void moveDragRefreshesTheCuts()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.m_actMove->trigger();
        PlotMouse mouse(plot);
        mouse.press(QPoint(150, 120));
        mouse.move(QPoint(110, 120));
        QCOMPARE(plot.m_minX, 2.0);
        QCOMPARE((plot.plotX()->*(&CutView::m_index)).constFirst(), 2.0);
        mouse.release(QPoint(110, 120));
    }

    // Ranges
    void rangeBoxFollows()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(3.0, 1.0, 7.0, 2.0); // in any order
        QCOMPARE(plot.cut(), rect(1, 3, 2, 7));
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_xMin), 1.0);
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_xMax), 3.0);
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_yMin), 2.0);
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_yMax), 7.0);
    }

    void rangeBoxSetsTheCut()
    {
        class Watched : public Plot {
        public:
            QList<double> asked;
            void update1dCutRect(double x1, double x2, double y1, double y2) override
            {
                asked = { x1, x2, y1, y2 };
                Plot::update1dCutRect(x1, x2, y1, y2);
            }
        };
        Watched plot;
        plot.fill();
        plot.switchOn();
        Q_EMIT plot.m_cutRangeDialog->edited(1.6, 3.4, 2.5, 99.0);
        QCOMPARE(plot.asked, (QList<double> { 1.6, 3.4, 2.5, 99.0 }));
        QCOMPARE(plot.cut(), rect(2, 3, 3, 8));
    }

    void rectanglesAreRoundedOrTaken()
    {
        Plot plot;
        plot.fill();
        plot.update1dCutRect(7.5, -0.3, 2.4, 1.5);
        QCOMPARE(plot.cut(), rect(0, 8, 2, 2));
        plot.update1dCutRectSimply(7.5, -0.3, 2.4, 1.5);
        QCOMPARE(plot.cut(), rect(-0.3, 7.5, 1.5, 2.4));
    }

    void initialRectangleIsInBinsOnAnyAxis()
    {
        Plot plot;
        plot.fill();
        plot.initManualX(100.0, 101.0);
        plot.initManualY(-1.0, 1.0);
        plot.init1dCutRect();
        QCOMPARE(plot.cut(), rect(0, 10, 0, 8));
        plot.m_act1dCut->setChecked(true); // the first sums are empty there
        QCOMPARE(plot.plotY()->*(&CutView::m_data), QList<double>(8, 0.0));
    }

    void startsWithTheVisibleRange()
    {
        Plot plot;
        plot.setMinMaxX(1.5, 2.5);
        plot.setMinMaxY(-3.0, 4.0);
        plot.wasRefreshed();
        plot.init1dCutRectWithDrawingRange();
        QCOMPARE(plot.cut(), rect(1.5, 2.5, -3, 4));
        QVERIFY(!plot.wasRefreshed() && plot.hasNoWindow());
    }

    void snapsTheCutRangeToBins()
    {
        Plot plot;
        plot.fill();
        plot.setStepX(0.5);
        plot.switchOn();
        double min = 1.2;
        double max = 2.7;
        plot.update1dCutRangeX(min, max);
        QCOMPARE(min, 1.0);
        QCOMPARE(max, 3.0);
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_xMin), 1.0);
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_xMax), 3.0);
        min = 9.0; // beyond the 10 bins of half a unit: not limited from above
        max = 9.5;
        plot.update1dCutRangeX(min, max);
        QCOMPARE(min, 9.0);
        QCOMPARE(max, 5.0);
        min = -4.5;
        max = 100.0;
        plot.update1dCutRangeY(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 8.0);
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_yMax), 8.0);
    }
};

QTEST_MAIN(TestXY2DCut)
#include "tst_xy2dcut.moc"
