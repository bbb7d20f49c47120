// The windows of the 1D cut: actions, positions, contents.
#include "plots/cutmap.h"

#include <QLayout>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

using Plot = CutMap;

QStringList textsOf(const QList<QAction*>& actions)
{
    QStringList texts;
    for (const QAction* action : actions)
        texts << action->text();
    return texts;
}

} // namespace

class TestXY2DCutWindows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Windows
    void cutPlotsOfferSavingAndTheYRange()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        const QStringList expected { "Save PNG...", "Save CSV...", "Auto Scale Y", "Edit Min Y ...", "Edit Max Y ..." };
        QCOMPARE(textsOf(plot.plotX()->actions()), expected);
        QCOMPARE(textsOf(plot.plotY()->actions()), expected);
        for (const QWidget* window : { plot.windowX(), plot.windowY() }) {
            QVERIFY(window->windowFlags().testFlag(Qt::FramelessWindowHint));
            QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose) && window->isVisible());
            QCOMPARE(window->parentWidget(), &plot);
            QCOMPARE(window->layout()->contentsMargins(), QMargins());
        }
    }

    void cutPlotsAreBuffered()
    {
        for (const bool buffered : { false, true }) {
            Plot plot;
            plot.m_doubleBuffered = buffered;
            plot.switchOn();
            QCOMPARE(plot.plotX()->m_doubleBuffered, buffered);
            QCOMPARE(plot.plotX()->m_rotation, 0.0);
            QVERIFY(plot.plotY()->m_doubleBuffered);
            QCOMPARE(plot.plotY()->m_rotation, 90.0);
        }
    }

    void windowClosedByTheUserReopens()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.windowX()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(plot.windowX() == nullptr && plot.windowY() != nullptr);
        plot.refresh1dCut(true);
        QVERIFY(plot.hasAllWindows());
        QCOMPARE(plot.plotX()->*(&CutView::m_data), oracleCutX(plot.mapState(), plot.cutState(), "y").values);
    }

    void windowsCloseWithThePlot()
    {
        QPointer<QWidget> window;
        {
            Plot plot;
            plot.fill();
            plot.switchOn();
            window = plot.windowY();
            QVERIFY(window);
        }
        QVERIFY(window.isNull());
    }

    void placesWithAParent_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small: 150") << QSize(400, 300);
        QTest::newRow("large: a third") << QSize(1000, 900);
    }
    void placesWithAParent()
    {
        QFETCH(QSize, size);
        QWidget owner;
        owner.setGeometry(700, 600, size.width() + 30, size.height() + 40);
        auto* plot = new Plot(&owner);
        plot->setGeometry(QRect(QPoint(10, 20), size));
        owner.show();
        plot->fill();
        plot->switchOn();
        QSize topLeft;
        QSize bottomRight;
        plot->getMargin(topLeft, bottomRight);
        QRect inner;
        inner.setLeft(10 + owner.x() + topLeft.width());
        inner.setTop(20 + owner.y() + topLeft.height());
        inner.setRight(10 + owner.x() + size.width() - plot->m_colorBar->width() - 1 - bottomRight.width());
        inner.setBottom(owner.y() + 20 + size.height() - 1 - bottomRight.height());
        const int right = owner.frameGeometry().right();
        const int top = owner.frameGeometry().top();
        QCOMPARE(plot->m_cutRangeDialog->pos(), QPoint(right, top - plot->m_cutRangeDialog->height()));
        plot->plotX()->getMargin(topLeft, bottomRight);
        const int heightX = inner.height() > 449 ? inner.height() / 3 : 150;
        QCOMPARE(plot->windowX()->pos(), QPoint(inner.left() - topLeft.width(), top - heightX));
        QCOMPARE(plot->windowX()->size(), QSize(topLeft.width() + inner.width() + bottomRight.width(), heightX));
        plot->plotY()->getMargin(topLeft, bottomRight);
        QCOMPARE(plot->windowY()->pos(), QPoint(right, inner.top() - topLeft.width()));
        QCOMPARE(plot->windowY()->size(),
            QSize(
                inner.width() > 449 ? inner.width() / 3 : 150, inner.height() + topLeft.width() + bottomRight.width()));
    }

    void placesWithoutAParent()
    {
        Plot plot;
        plot.move(500, 500);
        plot.show();
        plot.fill();
        plot.switchOn();
        const QRect inner = plot.geometry(); // the complete widget
        QSize topLeft;
        QSize bottomRight;
        plot.plotX()->getMargin(topLeft, bottomRight);
        QCOMPARE(plot.windowX()->pos(), QPoint(inner.left() - topLeft.width(), plot.frameGeometry().top() - 150));
        QCOMPARE(plot.windowX()->width(), topLeft.width() + inner.width() + bottomRight.width());
        QCOMPARE(plot.windowY()->x(), plot.frameGeometry().right());
    }

    void refreshWithoutDataMovesOnly()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        const QList<double> before = plot.plotX()->*(&CutView::m_data);
        plot.fill(8, 4);
        plot.move(33, 44);
        plot.refresh1dCut(false);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), before);
        QCOMPARE(plot.windowY()->x(), plot.frameGeometry().right());
        plot.refresh1dCut(true);
        QCOMPARE((plot.plotX()->*(&CutView::m_data)).size(), 4);
    }

    void parentMoves()
    {
        Plot plot;
        plot.fill();
        plot.onParentMoved(); // no windows are open: none are opened
        QVERIFY(plot.hasNoWindow());
        plot.switchOn();
        plot.move(123, 45);
        plot.onParentMoved();
        QCOMPARE(plot.windowY()->x(), plot.frameGeometry().right());
        plot.m_act1dCut->setChecked(false);
        plot.show1dCutWithGauss({}, {});
        plot.move(321, 54);
        plot.onParentMoved(); // shown without the tool
        QCOMPARE(plot.windowY()->x(), plot.frameGeometry().right());
    }

    void parentBecomesActive()
    {
        Plot plot;
        plot.onParentActivate();
        plot.fill();
        plot.switchOn();
        plot.onParentActivate();
        plot.clearData();
        plot.onParentActivate(); // the tool is on, the windows are closed
        QVERIFY(plot.hasNoWindow());
    }

    // Contents
    void sumsOfTheRectangle()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 6.0, 1.0, 4.0);
        const CutResult x = oracleCutX(plot.mapState(), plot.cutState(), "y");
        QCOMPARE(plot.plotX()->*(&CutView::m_data), x.values);
        QCOMPARE((plot.plotX()->*(&CutView::m_data)).constFirst(), 603.0); // 101 + 201 + 301
        QCOMPARE(plot.plotX()->*(&CutView::m_index), x.index);
        QCOMPARE(plot.plotX()->*(&CutView::m_maxValue), x.peak);
        QCOMPARE(plot.plotX()->getNameX(), QString("x"));
        QCOMPARE(plot.plotX()->getNameY(), QString("y 1-4"));
        const CutResult y = oracleCutY(plot.mapState(), plot.cutState(), "x");
        QCOMPARE(plot.plotY()->*(&CutView::m_data), y.values);
        QCOMPARE(plot.plotY()->*(&CutView::m_index), y.index);
        QCOMPARE((plot.plotY()->*(&CutView::m_index)).constFirst(), 7.0); // from the top down
        QCOMPARE(plot.plotY()->getNameX(), QString("y"));
        QCOMPARE(plot.plotY()->getNameY(), QString("x 2-6"));
        plot.m_1dCutActive = false;
        plot.refresh1dCut(true);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), QList<double>(10, 0.0));
        QCOMPARE(plot.plotX()->getNameY(), QString());
    }

    void sumsOnManualAxes()
    {
        Plot plot;
        plot.fill();
        plot.setData(2, { 1000.0 }, 1000.0, false); // ragged
        plot.initManualX(100.0, 105.0); // half a unit per bin
        plot.initManualY(-8.0, 8.0); // two units per bin
        plot.setMinMaxX(101.0, 104.0);
        plot.setMinMaxY(-4.0, 6.0);
        plot.setDecimalX(1);
        plot.setDecimalY(2);
        plot.switchOn();
        plot.setCut(101.1, 103.4, -6.0, 2.0);
        const CutResult x = oracleCutX(plot.mapState(), plot.cutState(), "y");
        QCOMPARE(plot.plotX()->*(&CutView::m_data), x.values);
        QCOMPARE(plot.plotX()->*(&CutView::m_index), x.index);
        QCOMPARE(plot.plotX()->getNameY(), QString("y -6-2"));
        QCOMPARE(plot.plotX()->getDecimalX(), 1);
        QCOMPARE(plot.plotY()->getDecimalX(), 2);
        QCOMPARE(plot.plotY()->*(&CutView::m_data), oracleCutY(plot.mapState(), plot.cutState(), "x").values);
        QCOMPARE(plot.plotY()->getNameY(), QString("x 101-103.5"));
        double min = 0.0;
        double max = 0.0;
        plot.plotX()->getInitMinMaxX(min, max);
        QCOMPARE(min, 101.0); // the visible part of the initial range
        QCOMPARE(max, 104.0);
        plot.plotY()->getInitMinMaxX(min, max);
        QCOMPARE(min, 6.0);
        QCOMPARE(max, -4.0);
    }

    void insideOnly()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 4.0, 0.0, 1.0);
        QCOMPARE((plot.plotX()->*(&CutView::m_data)).constFirst(), 1.0);
        plot.m_act1dCutInside->setChecked(true);
        QVERIFY(plot.m_1dCutInside);
        QCOMPARE(plot.plotX()->*(&CutView::m_data), (QList<double> { 0, 0, 3, 4, 0, 0, 0, 0, 0, 0 }));
        QCOMPARE(plot.plotX()->*(&CutView::m_maxValue), 10.0);
        QCOMPARE((plot.plotY()->*(&CutView::m_data)).constLast(), 7.0);
        QCOMPARE((plot.plotY()->*(&CutView::m_data)).constFirst(), 0.0);
        plot.m_act1dCutInside->setChecked(false);
        QCOMPARE((plot.plotX()->*(&CutView::m_data)).constFirst(), 1.0);
    }

    void cutWindowsShowIntensitiesOnRequest()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setCut(2.0, 4.0, 0.0, 1.0);
        const auto notes = [](const VectorGraphWidget* cut) { return cut->*(&CutView::m_notes); };
        QCOMPARE(notes(plot.plotX()), QString());
        plot.wasRefreshed();
        plot.setDisplay1dCutIntensity(true);
        QVERIFY(plot.wasRefreshed());
        plot.setDisplay1dCutIntensity(true);
        QVERIFY(!plot.wasRefreshed());
        plot.m_act1dCutInside->setChecked(true);
        QCOMPARE(notes(plot.plotX()), QString("Inside: 7 / Total-X: 55"));
        QCOMPARE(notes(plot.plotX()), oracleCutX(plot.mapState(), plot.cutState(), "y").notes);
        QCOMPARE(notes(plot.plotY()), oracleCutY(plot.mapState(), plot.cutState(), "x").notes);
        QVERIFY(notes(plot.plotY()).startsWith("Inside: 7 / Total-Y: "));
    }

    void manualYRangeIsKept()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.plotX()->onAutoScaleY(false);
        plot.plotX()->setMinMaxY(3.0, 77.0);
        plot.refresh1dCut(true);
        double min = 0.0;
        double max = 0.0;
        QVERIFY(!plot.plotX()->getMinMaxY(min, max));
        QCOMPARE(min, 3.0);
        QCOMPARE(max, 77.0);
        QVERIFY(plot.plotY()->getMinMaxY(min, max)); // the other one scales automatically
    }

    void axisOfTheUprightPlotRunsDown()
    {
        Plot plot;
        plot.fill();
        plot.setMinMaxY(1.0, 6.0);
        plot.switchOn();
        double min = 0.0;
        double max = 0.0;
        plot.plotY()->getMinMaxX(min, max);
        QCOMPARE(min, 6.0);
        QCOMPARE(max, 1.0);
        QCOMPARE(plot.plotY()->*(&CutView::m_index), (QList<double> { 5, 4, 3, 2, 1 }));
        plot.windowY()->grab();
    }

    void logScaleGoesAlong()
    {
        Plot plot;
        plot.fill();
        const auto isLog = [](const VectorGraphWidget* cut) { return cut->*(&CutView::m_logScaleY); };
        plot.switchOn();
        plot.onLogScale(true);
        QVERIFY(isLog(plot.plotX()) && isLog(plot.plotY()));
        plot.m_act1dCut->setChecked(false);
        plot.show1dCutWithGauss({}, {}); // shown without the tool
        plot.onLogScale(false);
        QVERIFY(!isLog(plot.plotX()) && !isLog(plot.plotY()));
        plot.m_act1dCut->setChecked(true);
        plot.clearData();
        plot.onLogScale(true); // the tool is on, but nothing is shown
        QVERIFY(plot.hasNoWindow());
    }

    void setDataRefreshesOnDemand()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        plot.setData(0, QList<double>(10, 1000.0), 1000.0, false);
        QCOMPARE((plot.plotY()->*(&CutView::m_data)).constLast(), 55.0);
        plot.setData(0, QList<double>(10, 1000.0), 1000.0, true);
        QCOMPARE((plot.plotY()->*(&CutView::m_data)).constLast(), 10000.0);
        plot.m_act1dCut->setChecked(false);
        plot.setData(0, QList<double>(10, 1000.0), 1000.0, true);
        QVERIFY(plot.hasNoWindow());
    }

    void sumsTheVisibleBins()
    {
        Plot plot;
        plot.fill();
        plot.setData(1, { 5.0 }, 5.0, false);
        plot.setMinMaxX(0.5, 2.5);
        plot.setMinMaxY(0.0, 2.0);
        QList<double> horizontal { 9.0 };
        QList<double> vertical { 9.0 };
        plot.get1dData(horizontal, vertical);
        QCOMPARE(horizontal, (QList<double> { 6.0, 2.0, 3.0 }));
        QCOMPARE(vertical, (QList<double> { 6.0, 5.0 })); // ascending, unlike the Y cut
    }

    void visibleSumsBeyondTheData()
    {
        Plot plot;
        plot.fill();
        plot.setMinMaxX(50.0, 60.0);
        plot.setMinMaxY(-60.0, -50.0);
        QList<double> horizontal { 9.0 };
        QList<double> vertical { 9.0 };
        plot.get1dData(horizontal, vertical);
        QVERIFY(horizontal.isEmpty() && vertical.isEmpty());
        plot.switchOn();
        QVERIFY((plot.plotX()->*(&CutView::m_data)).isEmpty());
        plot.grab();
    }

    void farAwayViews()
    {
        Plot plot;
        plot.fill();
        plot.switchOn();
        const double infinity = std::numeric_limits<double>::infinity();
        const QList<QPair<double, double>> views { { -5e9, -4e9 }, { 4e9, 5e9 }, { 10.0, -3e9 }, { 5.0, 5.0 },
            { std::nan(""), std::nan("") }, { -infinity, infinity }, { infinity, -infinity } };
        for (const bool manual : { true, false }) {
            plot.m_manualX = plot.m_manualY = manual;
            for (const auto& [min, max] : views) {
                plot.m_minX = plot.m_minY = min;
                plot.m_maxX = plot.m_maxY = max;
                plot.refresh1dCut(true);
                QList<double> horizontal;
                QList<double> vertical;
                plot.get1dData(horizontal, vertical);
                QVERIFY(horizontal.size() <= 10 && vertical.size() <= 8);
                plot.grab();
            }
        }
    }

    void hugeAndOddNumbers()
    {
        Plot plot;
        plot.setData(0, { 1e308, 1e308, std::nan(""), -1.0 }, 1e308, false);
        plot.setData(1, { std::numeric_limits<double>::infinity() }, 1.0, false);
        plot.initManualX(5.0, 5.0); // no step
        plot.initManualY(5.0, 5.0);
        plot.switchOn();
        plot.update1dCutRect(-1e300, 1e300, std::nan(""), 1e300);
        plot.update1dCutRectSimply(-1e300, 1e300, -1e300, 1e300);
        plot.useRoundPixels();
        plot.windowX()->grab();
        plot.windowY()->grab();
        QVERIFY(plot.hasAllWindows());
    }
};

QTEST_MAIN(TestXY2DCutWindows)
#include "tst_xy2dcutwindows.moc"
