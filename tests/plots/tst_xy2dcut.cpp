// The 1D cut as the user uses it: the tool and its states, edges dragged and typed, the rubber band, the range box.
#include "plots/cutmap.h"
#include "support/cases.h"

#include <QTest>

#include <cmath>

using namespace tarnis::testing;

namespace {

using Plot = CutMap;

} // namespace

class TestXY2DCut : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The tool and its states
    void states()
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

    // Edges
    void edgeTakesThePress_data()
    {
        addColumns<QPoint, int, int>("point", "edge", "cursor");
        // The rectangle from 2 to 6 and from 1 to 5 covers the pixels 90 to 169 and 100 to 179.
        QTest::newRow("left") << QPoint(86, 140) << 1 << int(Qt::SplitHCursor);
        QTest::newRow("right") << QPoint(173, 140) << 2 << int(Qt::SplitHCursor);
        QTest::newRow("top") << QPoint(130, 104) << 3 << int(Qt::SplitVCursor);
        QTest::newRow("bottom") << QPoint(130, 175) << 4 << int(Qt::SplitVCursor);
        QTest::newRow("top left corner: left") << QPoint(92, 98) << 1 << int(Qt::SplitHCursor);
        QTest::newRow("bottom right corner: right") << QPoint(170, 180) << 2 << int(Qt::SplitHCursor);
        QTest::newRow("along the left edge, far below") << QPoint(90, 195) << 1 << int(Qt::SplitHCursor);
    }
    void edgeTakesThePress()
    {
        QFETCH(QPoint, point);
        QFETCH(int, edge);
        QFETCH(int, cursor);
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        QCOMPARE(plot.m_cutPixelRect, QRect(QPoint(90, 100), QPoint(169, 179)));
        PlotHand(plot).press(point);
        QCOMPARE(plot.m_cutDragEdge, edge);
        QCOMPARE(int(plot.cursor().shape()), cursor);
        QVERIFY(!plot.m_selecting && plot.m_edit == nullptr);
        QCOMPARE(plot.m_pressPos, point);
    }

    void pressBesideTheEdgesStartsARubberBand()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand(plot).press(QPoint(130, 140));
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(plot.m_selecting);
    }

    void pressOutsideOfTheGraphTakesNothing()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(0.0, 10.0, 0.0, 8.0); // the left edge is at the graph's
        PlotHand(plot).press(QPoint(48, 140));
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(!plot.m_selecting);
        PlotHand(plot).press(QPoint(52, 140));
        QCOMPARE(plot.m_cutDragEdge, 1);
    }

    void dragsAnEdge_data()
    {
        addColumns<QPoint, QPoint, QRectF>("from", "to", "cut");
        addCase("left to the right, outward to whole bins", QPoint(90, 140), QPoint(119, 10), rect(3, 6, 1, 5));
        addCase("right to the left", QPoint(169, 140), QPoint(140, 140), rect(2, 5, 1, 5));
        addCase("top up", QPoint(130, 100), QPoint(130, 60), rect(2, 6, 1, 7));
        addCase("bottom down", QPoint(130, 179), QPoint(130, 199), rect(2, 6, 0, 5));
        addCase("left beyond right: swapped", QPoint(90, 140), QPoint(215, 140), rect(6, 9, 1, 5));
        addCase("bottom beyond top: swapped", QPoint(130, 179), QPoint(130, 61), rect(2, 6, 5, 7));
        addCase("right out of the graph", QPoint(169, 140), QPoint(390, 140), rect(2, 10, 1, 5));
        addCase("top out of the graph", QPoint(130, 100), QPoint(130, 1), rect(2, 6, 1, 8));
    }
    void dragsAnEdge()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(QRectF, cut);
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand(plot).drag(from, to);
        QCOMPARE(plot.cut(), cut);
        QCOMPARE(plot.m_cutDragEdge, 0);
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), oracleCutX(plot.mapState(), plot.cutState(), "y").values);
    }

    void dragShowsNothingUntilTheRelease()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand hand(plot);
        hand.press(QPoint(90, 140));
        plot.wasRefreshed();
        hand.move(QPoint(120, 140));
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
        QVERIFY(!plot.wasRefreshed());
        hand.release(QPoint(120, 140));
        QVERIFY(plot.wasRefreshed());
    }

    void typesAnEdge_data()
    {
        addColumns<QPoint, QString, QString, QRectF>("point", "shown", "typed", "cut");
        addCase("left", QPoint(90, 140), "2", "3.4", rect(3, 6, 1, 5));
        addCase("right", QPoint(169, 140), "6", "7.2", rect(2, 8, 1, 5));
        addCase("top", QPoint(130, 100), "5", "8", rect(2, 6, 1, 8));
        addCase("bottom", QPoint(130, 179), "1", "0", rect(2, 6, 0, 5));
        addCase("left beyond right: swapped", QPoint(90, 140), "2", "9", rect(6, 9, 1, 5));
        addCase("top below bottom: swapped", QPoint(130, 100), "5", "0.5", rect(2, 6, 0, 1));
        addCase("no number is 0", QPoint(90, 140), "2", "left", rect(0, 6, 1, 5));
        addCase("upper end included", QPoint(169, 140), "6", "10", rect(2, 10, 1, 5));
    }
    void typesAnEdge()
    {
        QFETCH(QPoint, point);
        QFETCH(QString, shown);
        QFETCH(QString, typed);
        QFETCH(QRectF, cut);
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand(plot).press(point, Qt::RightButton);
        const QPointer<QLineEdit> editor = plot.m_edit;
        QVERIFY(editor);
        QCOMPARE(editor->text(), shown);
        QCOMPARE(editor->styleSheet(), QString("color:black; background-color:white;"));
        QCOMPARE(editor->pos(), point);
        QVERIFY(plot.findChild<QMenu*>() == nullptr);
        editor->setText(typed);
        plot.wasRefreshed();
        QTest::keyClick(editor, Qt::Key_Return);
        QCOMPARE(plot.cut(), cut);
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(plot.m_edit == nullptr && plot.wasRefreshed());
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_xMin), cut.left());
        QCOMPARE(plot.m_cutRangeDialog->*(&BoxView::m_yMax), cut.bottom());
        QCOMPARE(plot.plotY()->*(&CutView::m_data), oracleCutY(plot.mapState(), plot.cutState(), "x").values);
        QCoreApplication::sendPostedEvents(editor, QEvent::DeferredDelete);
        QVERIFY(editor.isNull());
    }

    void typedValueOutOfSightIsIgnored()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setMinMaxX(1.0, 9.0);
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        for (const char* text : { "0.99", "9.01", "1e99", "nan" }) {
            plot.lay();
            PlotHand(plot).press(QPoint(plot.m_cutPixelRect.left(), 140), Qt::RightButton);
            QVERIFY(plot.m_edit);
            plot.m_edit->setText(text);
            QTest::keyClick(plot.m_edit, Qt::Key_Return);
            QVERIFY(plot.m_edit == nullptr);
            QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
            QCOMPARE(plot.m_cutDragEdge, 0);
        }
    }

    void editorIsDroppedByAPress()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand hand(plot);
        hand.press(QPoint(90, 140), Qt::RightButton);
        const QPointer<QLineEdit> first = plot.m_edit;
        hand.press(QPoint(169, 140), Qt::RightButton); // another edge, another editor
        QVERIFY(plot.m_edit && plot.m_edit != first);
        QCOMPARE(plot.m_edit->text(), QString("6"));
        hand.press(QPoint(130, 140)); // beside all edges
        QVERIFY(plot.m_edit == nullptr);
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
    }

    void releaseWithAnEditorKeepsTheEdge()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand hand(plot);
        hand.press(QPoint(90, 140), Qt::RightButton);
        hand.release(QPoint(90, 140), Qt::RightButton);
        QVERIFY(plot.m_edit);
        hand.release(QPoint(150, 140)); // of the left button
        QVERIFY(plot.m_edit == nullptr);
        QCOMPARE(plot.m_cutDragEdge, 1);
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
    }

    void enteringWithoutAnEdge()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 5.0);
        PlotHand(plot).press(QPoint(90, 140), Qt::RightButton);
        plot.m_cutDragEdge = 0;
        plot.m_edit->setText("4");
        plot.on1dCutEntered();
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
        plot.on1dCutEntered(); // without an editor
        QCOMPARE(plot.cut(), rect(2, 6, 1, 5));
    }

    // Rubber band
    void rubberBandCuts()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        PlotHand(plot).drag(QPoint(95, 75), QPoint(165, 155)); // 2.25 to 5.75, 2.25 to 6.25
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
        PlotHand(plot).drag(QPoint(110, 80), QPoint(149, 159));
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
            PlotHand(plot).click(QPoint(150, 120));
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
        PlotHand hand(plot);
        hand.press(QPoint(150, 120));
        hand.move(QPoint(110, 120));
        QCOMPARE(plot.m_minX, 2.0);
        QCOMPARE((plot.plotX()->*(&CutView::m_index)).constFirst(), 2.0);
        hand.release(QPoint(110, 120));
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

    void drawingRange()
    {
        Plot plot;
        plot.setMinMaxX(1.5, 2.5);
        plot.setMinMaxY(-3.0, 4.0);
        plot.wasRefreshed();
        plot.init1dCutRectWithDrawingRange();
        QCOMPARE(plot.cut(), rect(1.5, 2.5, -3, 4));
        QVERIFY(!plot.wasRefreshed() && plot.hasNoWindow());
    }

    void snapping()
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
