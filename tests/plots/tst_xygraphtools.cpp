// The mouse tools of the plot frame, driven through the widget as a user does.
#include "plots/toolframe.h"
#include "support/cases.h"
#include "support/wait.h"

#include <QMouseEvent>
#include <QPointer>

using namespace tarnis::testing;

class TestXYGraphTools : public ToolTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(open()); }
    void cleanup() { close(); }

    void toolsSetModeAndCursor_data()
    {
        addColumns<QString, int, int>("tool", "mode", "cursor");
        QTest::newRow("rectangle") << "Rectangle" << 1 << int(Qt::CrossCursor);
        QTest::newRow("zoom in") << "Zoom In" << 2 << int(Qt::SizeAllCursor);
        QTest::newRow("zoom out") << "Zoom Out" << 3 << int(Qt::SizeAllCursor);
        QTest::newRow("move") << "Move" << 4 << int(Qt::OpenHandCursor);
        QTest::newRow("select") << "Select X Range" << 1 << int(Qt::CrossCursor);
    }
    void toolsSetModeAndCursor()
    {
        QFETCH(QString, tool);
        plot->SetEnableSelectXRangeFeature(true, "X");
        QVERIFY(mouse->pick(tool));
        QTEST(plot->m_mode, "mode");
        QTEST(int(plot->cursor().shape()), "cursor");
        QVERIFY(mouse->pick(tool));
        QCOMPARE(plot->m_mode, 0);
        QCOMPARE(plot->cursor().shape(), Qt::ArrowCursor);
    }

    void toolsExcludeEachOther()
    {
        plot->SetEnableSelectXRangeFeature(true, "X");
        const QList<QAction*> tools { plot->m_actRectangle, plot->m_actZoomIn, plot->m_actZoomOut, plot->m_actMove,
            plot->m_actSelectXRange };
        for (QAction* first : tools) {
            for (QAction* second : tools) {
                if (first == second)
                    continue;
                if (!first->isChecked())
                    first->trigger();
                second->trigger();
                for (QAction* tool : tools)
                    QCOMPARE(tool->isChecked(), tool == second);
            }
        }
    }

    void uncheckingAToolLeavesTheOthersAlone()
    {
        plot->m_actZoomIn->setChecked(true);
        plot->m_actMove->setChecked(true);
        plot->m_actMove->trigger();
        QVERIFY(plot->m_actZoomIn->isChecked());
        QCOMPARE(plot->m_mode, 2);
    }

    void checkingByCodeChangesNothing()
    {
        plot->m_actZoomIn->setChecked(true);
        plot->m_actMove->setChecked(true);
        QVERIFY(plot->m_actZoomIn->isChecked());
        QCOMPARE(plot->m_mode, 0);
        plot->updateModeAndCursor();
        QCOMPARE(plot->m_mode, 2);
    }

    void theFirstCheckedToolCounts()
    {
        const QList<QAction*> tools { plot->m_actSelectXRange, plot->m_actMove, plot->m_actZoomOut, plot->m_actZoomIn,
            plot->m_actRectangle };
        QList<int> modes;
        for (QAction* tool : tools) {
            const QSignalBlocker quiet(tool);
            tool->setChecked(true);
            plot->updateModeAndCursor();
            modes << plot->m_mode;
        }
        QCOMPARE(modes, (QList<int> { 1, 4, 3, 2, 1 }));
    }

    void menuListsTheActions()
    {
        mouse->press(plot->middle(), Qt::RightButton);
        auto* menu = plot->findChild<QMenu*>();
        QVERIFY(menu != nullptr && menu->isVisible());
        QCOMPARE(menu->actions(), plot->actions());
        QCOMPARE(menu->pos(), plot->mapToGlobal(plot->middle()));
        QVERIFY(menu->testAttribute(Qt::WA_DeleteOnClose));
        const QPointer<QMenu> closed = menu;
        menu->close();
        TRY_VERIFY(closed.isNull());
    }

    void everyRightPressOpensTheMenu()
    {
        QVERIFY(mouse->pick("Show Grid", QPoint(2, 2))); // outside of the graph as well
        QVERIFY(!plot->m_showGrid);
        plot->m_actZoomIn->trigger();
        QVERIFY(mouse->pick("Show Grid", plot->middle()));
        QCOMPARE(plot->ranges(), untouched);
        QVERIFY(!mouse->pick("Select X Range")); // hidden
        plot->addAction("Host's own");
        QVERIFY(mouse->pick("Host's own"));
    }

    void aPlotWithoutActionsHasNoMenu()
    {
        for (QAction* action : plot->actions())
            plot->removeAction(action);
        mouse->press(plot->middle(), Qt::RightButton);
        QVERIFY(plot->findChild<QMenu*>() == nullptr);
    }

    void menuPicksATool()
    {
        QVERIFY(mouse->pick("Zoom In"));
        mouse->click(plot->middle());
        QVERIFY(plot->m_maxX < 1000.0);
        QVERIFY(mouse->pick("Reset"));
        QVERIFY(plot->m_autoScaleX && plot->m_autoScaleY);
        QVERIFY(plot->m_actZoomIn->isChecked()); // nothing else changes
    }

    void noToolDoesNothing()
    {
        mouse->drag(plot->middle(), plot->middle() + QPoint(40, 30));
        QCOMPARE(plot->ranges(), untouched);
        QVERIFY(!plot->wasRefreshed() && !plot->m_selecting && plot->rectangles.isEmpty());
    }

    void toolsWorkInsideTheGraphOnly()
    {
        for (QAction* tool : { plot->m_actRectangle, plot->m_actZoomIn, plot->m_actZoomOut, plot->m_actMove }) {
            tool->trigger();
            const QPoint outside = plot->m_graphRect.bottomRight() + QPoint(1, 0);
            mouse->press(outside);
            QVERIFY(!plot->m_selecting && plot->m_rubberBand.isHidden());
            mouse->move(plot->middle());
            QCOMPARE(plot->ranges(), untouched);
            mouse->release(outside);
        }
        QVERIFY(!plot->m_edit);
    }

    void toolsWorkOnItsEdges()
    {
        plot->m_actMove->trigger();
        for (const QPoint& corner : { plot->m_graphRect.topLeft(), plot->m_graphRect.bottomRight() }) {
            mouse->press(corner);
            QVERIFY(plot->m_selecting);
            mouse->release(corner);
        }
    }

    void otherButtonsDoNothing()
    {
        for (QAction* tool : { plot->m_actRectangle, plot->m_actZoomIn, plot->m_actZoomOut, plot->m_actMove }) {
            tool->trigger();
            mouse->press(plot->middle(), Qt::MiddleButton);
            mouse->release(plot->middle(), Qt::MiddleButton);
            QVERIFY(!plot->m_selecting);
        }
        QCOMPARE(plot->ranges(), untouched);
    }

    void pressesGoOnToTheParent()
    {
        plot->m_actZoomIn->trigger();
        mouse->press(plot->middle());
        QVERIFY(!plot->accepted); // QWidget's own handler ignores it
    }

    void zoomInOneStepAClick()
    {
        plot->m_actZoomIn->trigger();
        const QRect graph = plot->m_graphRect;
        const QPoint point = plot->middle() + QPoint(31, -17);
        const double w = graph.width();
        const double h = graph.height();
        mouse->click(point);
        QCOMPARE(plot->m_minX, (point.x() - graph.left()) * 50.0 / w);
        QCOMPARE(plot->m_maxX, 1000.0 - (graph.right() - point.x()) * 50.0 / w);
        QCOMPARE(plot->m_minY, (graph.bottom() - point.y()) * 5.0 / h);
        QCOMPARE(plot->m_maxY, 100.0 - (point.y() - graph.top()) * 5.0 / h);
        QVERIFY(plot->wasRefreshed());
        QVERIFY(!plot->m_edit);
    }

    void zoomInAtTheLeftEdgeKeepsTheMinimum()
    {
        plot->m_actZoomIn->trigger();
        mouse->click(QPoint(plot->m_graphRect.left(), plot->m_graphRect.bottom()));
        QCOMPARE(plot->m_minX, 0.0);
        QCOMPARE(plot->m_minY, 0.0);
        QVERIFY(plot->m_maxX > 950.0 && plot->m_maxX < 950.0 + 50.0 * 2 / plot->m_graphRect.width());
    }

    void zoomInOnAReversedAxis()
    {
        plot->setMinMaxX(1000.0, 0.0);
        plot->m_actZoomIn->trigger();
        mouse->click(plot->middle());
        QCOMPARE(plot->m_minX, 1000.0);
        QCOMPARE(plot->m_maxX, 0.0);
        QVERIFY(plot->m_maxY < 100.0);
        QVERIFY(!plot->m_autoScaleX && !plot->m_autoScaleY && plot->wasRefreshed());
    }

    void zoomOutOneStepAClick()
    {
        plot->m_actZoomOut->trigger();
        const QRect graph = plot->m_graphRect;
        const QPoint point = plot->middle() + QPoint(31, -17);
        const double w = graph.width();
        const double h = graph.height();
        mouse->click(point);
        const double minX = -1000.0 * 0.05 * (point.x() - graph.left()) / w;
        const double minY = -100.0 * 0.05 * (graph.bottom() - point.y()) / h;
        QCOMPARE(plot->m_minX, minX);
        QCOMPARE(plot->m_maxX, 1000.0 + (graph.right() - point.x()) * (1000.0 - minX) * 0.05 / w);
        QCOMPARE(plot->m_minY, minY);
        QCOMPARE(plot->m_maxY, 100.0 + (point.y() - graph.top()) * (100.0 - minY) * 0.05 / h);
        QVERIFY(plot->wasRefreshed());
    }

    void zoomEndsAutoScale()
    {
        for (QAction* tool : { plot->m_actZoomIn, plot->m_actZoomOut }) {
            plot->onReset();
            plot->autoScaleCalls = 0;
            tool->trigger();
            mouse->click(plot->middle());
            QVERIFY(!plot->m_autoScaleX && !plot->m_autoScaleY);
            QVERIFY(!plot->m_actAutoScaleX->isChecked() && !plot->m_actAutoScaleY->isChecked());
            QCOMPARE(plot->autoScaleCalls, 1); // through the action
        }
    }

    void zoomOutHasNoLimit()
    {
        plot->m_actZoomOut->trigger();
        for (int i = 0; i < 20000; ++i)
            mouse->press(plot->middle());
        QVERIFY(plot->m_minX < -1e300);
        plot->paintNow();
        plot->m_actZoomIn->trigger();
        mouse->click(plot->middle()); // for any remaining range
        plot->paintNow();
    }

    void toolsOnAPlotNarrowerThanItsMargins()
    {
        const QRect narrow(QPoint(28, 28), QPoint(22, 166)); // -5 wide
        const QPoint from(25, 100);
        plot->m_graphRect = narrow;
        plot->m_actMove->trigger();
        mouse->press(from);
        mouse->move(from + QPoint(0, 20));
        mouse->release(from + QPoint(0, 20));
        QCOMPARE(plot->m_minY, 20 * 100.0 / 139);
        QVERIFY(!plot->m_autoScaleY);

        plot->setMinMaxY(0.0, 100.0);
        plot->m_graphRect = narrow;
        plot->m_actRectangle->trigger();
        mouse->drag(from, from + QPoint(2, 20));
        QCOMPARE(plot->rectangles.size(), 1);
    }

    void halfPixelsAreRounded()
    {
        plot->m_actMove->trigger();
        const QPointF at = QPointF(plot->middle()) + QPointF(0.5, -0.4);
        QMouseEvent press(QEvent::MouseButtonPress, at, plot->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(plot.get(), &press);
        QCOMPARE(plot->m_lastPos, plot->middle() + QPoint(1, 0));
    }
};

QTEST_MAIN(TestXYGraphTools)
#include "tst_xygraphtools.moc"
