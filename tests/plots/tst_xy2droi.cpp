// The selection of regions on the plot: the tool and its states, rubber bands, the window beside the plot, the signals.
#include "support/map2dprobe.h"
#include "support/plotmouse.h"

#include <tarnis/plots/viewselectedroi.h>

#include <QDialog>
#include <QGridLayout>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

using namespace tarnis::testing;

namespace {

QRect corners(int x1, int y1, int x2, int y2)
{
    return { QPoint(x1, y1), QPoint(x2, y2) };
}

/// A plot of 100 x 80 units on 200 x 160 pixels, which offers regions within 0 to 50.
class Plot : public MapProbe {
public:
    explicit Plot(QWidget* parent = nullptr)
        : MapProbe(parent)
        , begun(this, &XY2DGraphWidget::onSelectRoiBegin)
        , changed(this, &XY2DGraphWidget::onSelectRoiChanged)
        , ended(this, &XY2DGraphWidget::onSelectRoiEnd)
    {
        init("x", "y", 100.0, 80.0, false, false);
        initManualX(0.0, 100.0);
        initManualY(0.0, 80.0);
        resize(400, 300);
        m_graphRect = QRect(50, 40, 200, 160);
    }
    void offer() { enalbeRoiSelect(corners(0, 0, 50, 50)); }
    QList<QRect> regions() { return GetViewSelectedROI()->getRoiList(); }
    bool isWindowShown() const { return m_roiWindow != nullptr && m_roiWindow->isVisible(); }

    using XY2DGraphWidget::onSetRectangle;

    QSignalSpy begun;
    QSignalSpy changed;
    QSignalSpy ended;
};

QList<QRect> listOf(const QSignalSpy& spy, int number)
{
    return spy.at(number).at(0).value<QList<QRect>>();
}

} // namespace

class TestXY2DRoi : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void notOfferedSurvivesAllCalls()
    {
        Plot plot;
        QVERIFY(plot.m_actRoi == nullptr && plot.m_roiWindow == nullptr);
        plot.SetRoiEnabled(true);
        QVERIFY(!plot.IsRoiEnabled());
        plot.showRoiMenu(true);
        plot.showRoiMenu(false);
        plot.closeROI();
        QVERIFY(plot.GetViewSelectedROI() == nullptr);
        plot.onParentMoved();
        plot.onParentActivate();
        plot.onSetRectangle(1.0, 2.0, 3.0, 4.0);
        plot.clearData();
        plot.onROI(false);
        plot.onROIChanged({}, -1, false);
        plot.grab();
        QVERIFY(plot.m_roiWindow == nullptr);
    }

    void rangeWithoutASideIsRefused_data()
    {
        QTest::addColumn<QRect>("range");
        QTest::newRow("no width") << QRect(5, 5, 0, 10);
        QTest::newRow("no height") << QRect(5, 5, 10, 0);
        QTest::newRow("null") << QRect();
    }
    void rangeWithoutASideIsRefused()
    {
        QFETCH(QRect, range);
        Plot plot;
        const qsizetype actions = plot.actions().size();
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("XY2DGraphWidget::enalbeRoi\\(\\): range is invalid\\.$"));
        plot.enalbeRoiSelect(range);
        QVERIFY(plot.m_actRoi == nullptr);
        QCOMPARE(plot.actions().size(), actions);
        QCOMPARE(plot.m_roiRange, corners(0, 0, -1, -1));
    }

    void offersTheSelectionInTheMenu()
    {
        Plot plot;
        plot.enalbeRoiSelect(corners(50, 60, 10, 20)); // inside out
        QCOMPARE(plot.m_roiRange, corners(50, 60, 10, 20).normalized());
        QCOMPARE(plot.actions().constLast(), plot.m_actRoi);
        QCOMPARE(plot.m_actRoi->text(), QString("Select ROI..."));
        QVERIFY(plot.m_actRoi->isCheckable() && !plot.m_actRoi->isChecked());
        QVERIFY(plot.m_roiWindow == nullptr && plot.GetViewSelectedROI() == nullptr);
    }

    void offeringAgainChangesTheRange()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.onSetRectangle(10.0, 20.0, 10.0, 20.0);
        plot.onSetRectangle(30.0, 90.0, 30.0, 40.0);
        QCOMPARE(plot.regions().at(1), corners(30, 30, 50, 40));
        const qsizetype actions = plot.actions().size();
        plot.enalbeRoiSelect(corners(0, 0, 80, 35));
        QCOMPARE(plot.actions().size(), actions);
        QCOMPARE(plot.regions(), (QList<QRect> { corners(10, 10, 20, 20), corners(30, 30, 50, 35) }));
        QCOMPARE(plot.GetViewSelectedROI()->currentIndex(), 1);
        plot.onSetRectangle(30.0, 90.0, 30.0, 40.0);
        QCOMPARE(plot.regions().at(2), corners(30, 30, 80, 35));
        QVERIFY(plot.isWindowShown());
    }

    void switchingTheSelectionShowsAndHidesItsWindow()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        QVERIFY(plot.IsRoiEnabled() && plot.isWindowShown());
        QCOMPARE(plot.m_mode, 1);
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(plot.begun.size(), 1);
        QVERIFY(listOf(plot.begun, 0).isEmpty() && plot.ended.isEmpty());
        plot.wasRefreshed();
        plot.SetRoiEnabled(false);
        QVERIFY(!plot.IsRoiEnabled() && plot.m_roiWindow != nullptr && !plot.isWindowShown());
        QCOMPARE(plot.m_mode, 0);
        QVERIFY(plot.wasRefreshed());
        QCOMPARE(plot.ended.size(), 1);
        QCOMPARE(plot.begun.size(), 1);
        QVERIFY(plot.changed.isEmpty());
    }

    void toolsAndCutAreExcluded_data()
    {
        QTest::addColumn<int>("tool");
        QTest::newRow("Rectangle") << 0;
        QTest::newRow("Zoom In") << 1;
        QTest::newRow("Zoom Out") << 2;
        QTest::newRow("Move") << 3;
        QTest::newRow("cut") << 4;
    }
    void toolsAndCutAreExcluded()
    {
        QFETCH(int, tool);
        Plot plot;
        plot.offer();
        const QList<QAction*> others { plot.m_actRectangle, plot.m_actZoomIn, plot.m_actZoomOut, plot.m_actMove,
            plot.m_act1dCut };
        if (tool < 4)
            others.at(tool)->trigger();
        else
            others.at(tool)->setChecked(true);
        plot.SetRoiEnabled(true);
        for (const QAction* other : others)
            QVERIFY(!other->isChecked());
        QCOMPARE(plot.m_mode, 1);
        QVERIFY(!plot.m_1dCutMode && !plot.m_1dCutActive && plot.m_cutXWindows.map.isEmpty());
        QVERIFY(plot.isWindowShown());
    }

    void cutEndsTheSelection()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.m_act1dCut->setChecked(true);
        QVERIFY(!plot.IsRoiEnabled() && !plot.isWindowShown());
        QCOMPARE(plot.ended.size(), 1);
        QVERIFY(plot.m_1dCutMode && !plot.m_cutXWindows.map.isEmpty());
    }

    void windowHoldsTheView()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        QVERIFY(plot.m_roiWindow->windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(plot.m_roiWindow->parentWidget(), &plot);
        QCOMPARE(plot.m_roiWindow->layout()->contentsMargins(), QMargins());
        ViewSelectedROI* view = plot.GetViewSelectedROI();
        QVERIFY(view);
        QCOMPARE(view, plot.m_roiWindow->findChild<ViewSelectedROI*>());
        const QDialog* window = plot.m_roiWindow;
        plot.SetRoiEnabled(false);
        plot.SetRoiEnabled(true);
        QCOMPARE(plot.m_roiWindow, window); // kept
    }

    void placesWithAParent()
    {
        for (const QSize size : { QSize(400, 300), QSize(1200, 800) }) {
            QWidget owner;
            owner.setGeometry(300, 200, size.width() + 20, size.height() + 20);
            auto* plot = new Plot(&owner);
            plot->setGeometry(QRect(QPoint(7, 9), size));
            owner.show();
            plot->offer();
            plot->SetRoiEnabled(true);
            QSize topLeft;
            QSize bottomRight;
            plot->getMargin(topLeft, bottomRight);
            QCOMPARE(plot->m_roiWindow->pos(), QPoint(owner.frameGeometry().right(), 9 + owner.y() + topLeft.height()));
            const int width = size.width() - plot->m_colorBar->width() - bottomRight.width() - topLeft.width();
            const int wanted = width > 449 ? width / 3 : 150;
            QCOMPARE(plot->m_roiWindow->width(), qMax(wanted, 200)); // the form holds it wider
            const int height = size.height() - bottomRight.height() - topLeft.height();
            QVERIFY(plot->m_roiWindow->height() >= height);
        }
    }

    void parentMovesAndBecomesActive()
    {
        Plot plot;
        plot.offer();
        plot.onParentMoved();
        QVERIFY(plot.m_roiWindow == nullptr);
        plot.SetRoiEnabled(true);
        plot.move(123, 45);
        plot.onParentMoved();
        QCOMPARE(plot.m_roiWindow->x(), plot.frameGeometry().right());
        plot.onParentActivate();
        QVERIFY(plot.isWindowShown());
    }

    void rubberBandAddsARegion()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        PlotMouse(plot).drag(QPoint(70, 120), QPoint(89, 159)); // 10 to 20, 20 to 40
        QCOMPARE(plot.regions(), QList<QRect> { corners(10, 20, 20, 40) });
        QCOMPARE(plot.GetViewSelectedROI()->currentIndex(), 0);
        QCOMPARE(plot.changed.size(), 1);
        QCOMPARE(listOf(plot.changed, 0), plot.regions());
        QCOMPARE(plot.m_minX, 0.0);
    }

    void rubberBandRoundsToWholeUnits()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.onSetRectangle(1.5, 2.49, 3.4999, 4.5);
        QCOMPARE(plot.regions(), QList<QRect> { corners(2, 3, 2, 5) });
        plot.onSetRectangle(-1e300, 1e300, -5e9, 5e9); // all of the range
        QCOMPARE(plot.regions().at(1), corners(0, 0, 50, 50));
    }

    void rubberBandIsClipped()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.onSetRectangle(40.0, 70.0, 45.0, 80.0);
        QCOMPARE(plot.regions(), QList<QRect> { corners(40, 45, 50, 50) });
        QCOMPARE(plot.GetViewSelectedROI()->findChild<QListWidget*>()->item(0)->text(), QString("ROI (40,45)-(50,50)"));
    }

    void ninthRegionDropsTheFirst()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        for (int i = 0; i < 9; ++i)
            plot.onSetRectangle(i, i + 2.0, i, i + 2.0);
        QCOMPARE(plot.regions().size(), 8);
        QCOMPARE(plot.regions().constFirst(), corners(1, 1, 3, 3));
        QCOMPARE(plot.regions().constLast(), corners(8, 8, 10, 10));
    }

    void rectangleToolZooms()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.m_actRectangle->trigger();
        QVERIFY(plot.IsRoiEnabled());
        PlotMouse(plot).drag(QPoint(70, 120), QPoint(89, 159));
        QCOMPARE(plot.m_minX, 10.0);
        QVERIFY(plot.regions().isEmpty());
    }

    void emitsChanges()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        ViewSelectedROI* view = plot.GetViewSelectedROI();
        view->addRoi(corners(1, 1, 5, 5));
        view->addRoi(corners(2, 2, 6, 6));
        QCOMPARE(plot.changed.size(), 2);
        plot.wasRefreshed();
        view->setRoiList(view->getRoiList(), 0); // another selection
        QCOMPARE(plot.changed.size(), 2);
        QVERIFY(plot.wasRefreshed());
        view->clear();
        QCOMPARE(plot.changed.size(), 3);
        QVERIFY(listOf(plot.changed, 2).isEmpty());
    }

    void regionsOutliveTheTool()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.onSetRectangle(1.0, 5.0, 1.0, 5.0);
        plot.SetRoiEnabled(false);
        plot.SetRoiEnabled(true);
        QCOMPARE(plot.regions(), QList<QRect> { corners(1, 1, 5, 5) });
        QCOMPARE(listOf(plot.begun, 1), plot.regions());
    }

    void hidingTheMenuEntry()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.showRoiMenu(false);
        QVERIFY(!plot.m_actRoi->isVisible() && !plot.IsRoiEnabled() && !plot.isWindowShown());
        plot.showRoiMenu(true);
        QVERIFY(plot.m_actRoi->isVisible() && !plot.IsRoiEnabled());
    }

    void clearDataHidesTheWindow()
    {
        Plot plot;
        plot.offer();
        plot.SetRoiEnabled(true);
        plot.onSetRectangle(1.0, 5.0, 1.0, 5.0);
        plot.wasRefreshed();
        plot.clearData();
        QVERIFY(!plot.isWindowShown() && plot.IsRoiEnabled()); // the check mark stays
        QVERIFY(plot.wasRefreshed());
        QCOMPARE(plot.regions().size(), 1);
        plot.closeROI();
        QVERIFY(plot.IsRoiEnabled());
        plot.onParentMoved(); // brings it back
        QVERIFY(plot.isWindowShown());
    }

    void closesWithThePlot()
    {
        QPointer<QDialog> window;
        {
            Plot plot;
            plot.offer();
            plot.SetRoiEnabled(true);
            window = plot.m_roiWindow;
        }
        QVERIFY(window.isNull());
    }
};

QTEST_MAIN(TestXY2DRoi)
#include "tst_xy2droi.moc"
