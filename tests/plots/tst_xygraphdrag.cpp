// Drags on the plot frame: the rubber band of the rectangle, and the move tool.
#include "plots/toolframe.h"
#include "support/cases.h"

using namespace tarnis::testing;

class TestXYGraphDrag : public ToolTest {
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(open()); }
    void cleanup() { close(); }

    void rectangleZooms()
    {
        plot->m_actRectangle->trigger();
        const QRect graph = plot->m_graphRect;
        const QPoint from = graph.topLeft() + QPoint(40, 30);
        const QPoint to = graph.topLeft() + QPoint(240, 130);
        mouse->drag(from, to);
        const double w = graph.width();
        const double h = graph.height();
        QCOMPARE(plot->rectangles,
            (QList<QList<double>> { { 1000.0 * 40 / w, 1000.0 - (graph.right() - to.x()) * 1000.0 / w,
                (graph.bottom() - to.y()) * 100.0 / h, 100.0 - 30 * 100.0 / h } }));
        QCOMPARE(plot->ranges(), plot->rectangles.first());
        QVERIFY(!plot->m_selecting && !plot->m_autoScaleX && !plot->m_autoScaleY && plot->wasRefreshed());
        QVERIFY(plot->m_rubberBand.isHidden());
    }

    void rectangleDrawnBackwards()
    {
        plot->m_actRectangle->trigger();
        const QPoint a = plot->m_graphRect.topLeft() + QPoint(40, 30);
        const QPoint b = plot->m_graphRect.topLeft() + QPoint(240, 130);
        mouse->drag(b, a);
        const QList<double> backwards = plot->ranges();
        QVERIFY(backwards.at(0) > 0.0 && backwards.at(0) < backwards.at(1) && backwards.at(1) < 1000.0);
        QVERIFY(backwards.at(2) > 0.0 && backwards.at(2) < backwards.at(3) && backwards.at(3) < 100.0);
        // The band's corners are those of a normalised rectangle: one pixel inside on the two sides that it grew to.
        QCOMPARE(backwards.at(0), 1000.0 * 41 / plot->m_graphRect.width());
    }

    void rectangleBeyondTheGraph()
    {
        plot->m_actRectangle->trigger();
        const QPoint from = plot->middle();
        mouse->press(from);
        mouse->move(plot->m_graphRect.bottomRight() + QPoint(20, 10));
        QCOMPARE(plot->m_rubberBand.geometry(), QRect(from, plot->m_graphRect.bottomRight())); // clipped
        mouse->release(plot->m_graphRect.bottomRight() + QPoint(20, 10));
        QCOMPARE(plot->m_maxX, 1000.0 + 20 * 1000.0 / plot->m_graphRect.width()); // not clipped
        QCOMPARE(plot->m_minY, -10 * 100.0 / plot->m_graphRect.height());
    }

    void rectangleTooSmallOnOneAxis()
    {
        plot->m_actRectangle->trigger();
        plot->setMinMaxX(1000.0, 0.0); // reversed: x2 is never above x1
        mouse->drag(plot->middle(), plot->middle() + QPoint(50, 50));
        QCOMPARE(plot->m_minX, 1000.0);
        QCOMPARE(plot->m_maxX, 0.0);
        QVERIFY(plot->m_maxY < 100.0);
        QVERIFY(!plot->m_autoScaleX && !plot->m_autoScaleY);
    }

    void clickInRectangleModeOnlyRefreshes()
    {
        plot->m_actRectangle->trigger();
        mouse->click(plot->middle());
        QVERIFY(plot->rectangles.isEmpty());
        QCOMPARE(plot->ranges(), untouched);
        QVERIFY(plot->m_autoScaleX && plot->wasRefreshed());
    }

    void rectangleUsesTheLastMoveNotTheRelease()
    {
        plot->m_actRectangle->trigger();
        mouse->press(plot->middle());
        mouse->move(plot->middle() + QPoint(20, 10));
        mouse->release(plot->middle() + QPoint(150, 100));
        const double pixels = plot->m_graphRect.right() - (plot->middle().x() + 20);
        QCOMPARE(plot->m_maxX, 1000.0 - pixels * 1000.0 / plot->m_graphRect.width());
    }

    void rubberBandByTool_data()
    {
        addColumns<QString, bool, bool, bool>("tool", "band", "zooms", "selects");
        QTest::newRow("none") << QString() << false << false << false;
        QTest::newRow("Rectangle") << "Rectangle" << true << true << false;
        QTest::newRow("Zoom In") << "Zoom In" << false << false << false;
        QTest::newRow("Zoom Out") << "Zoom Out" << false << false << false;
        QTest::newRow("Move") << "Move" << false << false << false;
        QTest::newRow("Select X Range") << "Select X Range" << true << false << true;
    }
    // Two tools use the rubber band; the tool determines its effect.
    void rubberBandByTool()
    {
        QFETCH(QString, tool);
        QFETCH(bool, band);
        plot->SetEnableSelectXRangeFeature(true, "X");
        if (!tool.isEmpty())
            QVERIFY(mouse->pick(tool));
        const QPoint from = plot->middle();
        mouse->press(from);
        QCOMPARE(plot->m_rubberBand.isVisible(), band);
        const QList<double> pressed = plot->ranges();
        mouse->move(from + QPoint(30, 20));
        QCOMPARE(plot->m_rubberBand.isVisible(), band);
        if (band)
            QCOMPARE(plot->m_rubberBand.geometry(), QRect(from, from + QPoint(30, 20)));
        QTEST(plot->m_selecting && plot->m_mode == 1, "band");
        mouse->release(from + QPoint(30, 20));
        QVERIFY(plot->m_rubberBand.isHidden());
        QVERIFY(!plot->m_selecting);
        QCOMPARE(plot->rectangles.size(), band ? 1 : 0);
        if (tool != QLatin1String("Move"))
            QTEST(plot->ranges() != pressed, "zooms");
        double min = 0.0;
        double max = 0.0;
        QTEST(plot->GetXRange(min, max), "selects");
    }

    void rubberBandIsShownWhileDragging()
    {
        plot->m_actRectangle->trigger();
        const QPoint from = plot->middle();
        mouse->press(from);
        QVERIFY(plot->m_selecting && plot->m_rubberBand.isVisible());
        QCOMPARE(plot->m_selectRect, QRect(from, from - QPoint(1, 1)));
        mouse->move(from + QPoint(30, 20));
        QCOMPARE(plot->m_rubberBand.geometry(), QRect(from, from + QPoint(30, 20)));
        QCOMPARE(plot->m_selectRect, QRect(from, from + QPoint(30, 20)));
        mouse->move(from - QPoint(30, 20));
        QCOMPARE(plot->m_rubberBand.geometry(), QRect(from - QPoint(29, 19), from - QPoint(1, 1)));
        QVERIFY(!plot->wasRefreshed()); // the picture under the band is not drawn again
        mouse->release(from);
        QVERIFY(plot->m_rubberBand.isHidden());
    }

    void otherReleasesHideTheBandAndKeepTheDrag()
    {
        plot->m_actRectangle->trigger();
        mouse->press(plot->middle());
        mouse->move(plot->middle() + QPoint(30, 20));
        for (const auto button : { Qt::RightButton, Qt::MiddleButton }) {
            mouse->release(plot->middle(), button);
            QVERIFY(plot->m_rubberBand.isHidden() && plot->m_selecting);
            mouse->move(plot->middle() + QPoint(31, 20));
            QVERIFY(plot->m_rubberBand.isVisible());
        }
        mouse->release(plot->middle());
        QCOMPARE(plot->rectangles.size(), 1);
        mouse->release(plot->middle()); // no second end of the same drag
        QCOMPARE(plot->rectangles.size(), 1);
    }

    void rectangleOfAnEmptyGraph()
    {
        plot->m_actRectangle->trigger();
        mouse->press(plot->middle());
        mouse->move(plot->middle() + QPoint(30, 20));
        plot->m_graphRect = QRect(); // as after a resize to nothing
        mouse->release(plot->middle());
        QVERIFY(plot->rectangles.isEmpty());
        QCOMPARE(plot->ranges(), untouched);
    }

    void moveFollowsThePointer()
    {
        plot->m_actMove->trigger();
        const double w = plot->m_graphRect.width();
        const double h = plot->m_graphRect.height();
        mouse->press(plot->middle());
        mouse->move(plot->middle() + QPoint(30, -20));
        QCOMPARE(plot->m_minX, -30 * 1000.0 / w);
        QCOMPARE(plot->m_maxX, 1000.0 - 30 * 1000.0 / w);
        QCOMPARE(plot->m_minY, -20 * 100.0 / h);
        QCOMPARE(plot->m_maxY, 100.0 - 20 * 100.0 / h);
        QCOMPARE(plot->m_lastPos, plot->middle() + QPoint(30, -20));
        QVERIFY(!plot->m_autoScaleX && !plot->m_autoScaleY);
        mouse->move(plot->middle());
        QVERIFY(std::abs(plot->m_minX) < 1e-9 && std::abs(plot->m_maxY - 100.0) < 1e-9);
        mouse->release(plot->middle());
        QVERIFY(!plot->m_selecting);
    }

    void moveSidewaysLeavesTheYAxis()
    {
        plot->m_actMove->trigger();
        mouse->press(plot->middle());
        mouse->move(plot->middle() + QPoint(30, 0));
        QCOMPARE(plot->m_minY, 0.0);
        QCOMPARE(plot->m_maxY, 100.0);
        QVERIFY(plot->m_minX < 0.0);
        QVERIFY(!plot->m_autoScaleY); // unchecked nevertheless
    }

    void moveShowsAClosedHand()
    {
        plot->m_actMove->trigger();
        mouse->press(plot->middle());
        QCOMPARE(plot->cursor().shape(), Qt::ClosedHandCursor);
        mouse->release(plot->middle());
        QCOMPARE(plot->cursor().shape(), Qt::OpenHandCursor);
    }

    void moveRedrawsAtEveryStep()
    {
        plot->m_actMove->trigger();
        mouse->press(plot->middle());
        for (int i = 1; i < 5; ++i) {
            mouse->move(plot->middle() + QPoint(i, i));
            QVERIFY(plot->wasRefreshed());
        }
        mouse->move(plot->middle() + QPoint(4, 4)); // the same place
        QVERIFY(!plot->wasRefreshed());
    }

    void moveWithoutAPressDoesNothing()
    {
        plot->m_actMove->trigger();
        mouse->move(plot->middle());
        mouse->move(plot->middle() + QPoint(30, 0));
        QCOMPARE(plot->ranges(), untouched);
        mouse->press(plot->middle());
        mouse->release(plot->middle(), Qt::RightButton);
        QVERIFY(plot->m_selecting); // only the left release ends it
        mouse->release(plot->middle());
        mouse->move(plot->middle() + QPoint(30, 0));
        QCOMPARE(plot->ranges(), untouched);
    }

    void moveAcrossAVanishedGraph()
    {
        plot->m_actMove->trigger();
        mouse->press(plot->middle());
        plot->m_graphRect = QRect(); // as after a resize to nothing
        mouse->move(QPoint(100, 100));
        QCOMPARE(plot->ranges(), untouched);
    }
};

QTEST_MAIN(TestXYGraphDrag)
#include "tst_xygraphdrag.moc"
