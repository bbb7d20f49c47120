// The cross and its read-out: bins, sums, empty bins, places outside of the data, live data, pin and copy.
#include "support/cases.h"
#include "support/pictures.h"
#include "support/support.h"
#include "support/visibleplot.h"
#include "support/wait.h"
#include "tools/samples.h"

#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

void moveTo(XYGraphWidget& plot, double x, double y)
{
    const QPointF at = PlotMapping::of(plot).pixelOf({ x, y });
    QMouseEvent event(QEvent::MouseMove, at, plot.mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&plot, &event);
}

/// Ten samples from 0 to 9, the third empty, on an axis from 0 to 100.
void fill(VectorGraphWidget& plot)
{
    tarnis::testing::fill(plot, { 4, 1, 0, std::nan(""), 2.5, 5, 6, 7, 1234567, 9 });
}

} // namespace

class TestPlotCrosshair : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTheBinUnderThePointer_data()
    {
        addColumns<double, QString>("x", "text");
        QTest::newRow("count") << 5.0 << "Time [0, 10) bin 0   4 ± 2";
        QTest::newRow("empty") << 29.0 << "Time [20, 30) bin 2   0";
        QTest::newRow("not a number") << 35.0 << "Time [30, 40) bin 3   no data";
        QTest::newRow("real") << 45.0 << "Time [40, 50) bin 4   2.5";
        QTest::newRow("all digits") << 85.0 << QStringLiteral("Time [80, 90) bin 8   1234567 ± 1.11e+03");
    }
    void readsTheBinUnderThePointer()
    {
        QFETCH(double, x);
        QFETCH(QString, text);
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        moveTo(plot, x, 5);
        QCOMPARE(cross->text(), text);
    }

    void edgesAscendOnBinsInFallingOrder()
    {
        VectorGraphWidget plot;
        fill(plot);
        plot.initManualX(100, 0); // as in a cut along Y
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        moveTo(plot, 95, 5);
        QCOMPARE(cross->text(), QStringLiteral("Time [90, 100) bin 0   4 ± 2"));
        QVERIFY(cross->table().endsWith(QStringLiteral("\n0\t90\t100\t4\n")));
    }

    void readsADashOutsideOfTheData()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(-50, 200);
        showActive(plot);
        moveTo(plot, 150, 5);
        QCOMPARE(cross->text(), QStringLiteral("–"));
        QVERIFY(cross->table().isEmpty());
    }

    void endsWhenAResizedPlotLeavesThePointer()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot, { 400, 300 });
        moveTo(plot, 85, 5);
        QVERIFY(!cross->text().isEmpty());
        showActive(plot, { 200, 300 });
        TRY_VERIFY(cross->text().isEmpty());
        moveTo(plot, 85, 5);
        QVERIFY(!cross->text().isEmpty());
    }

    void readsEveryVisibleCurve()
    {
        MultiVectorGraphWidget plot;
        fillGroups(plot, 3);
        plot.m_groupName = QStringLiteral("Detector");
        plot.setEnable(1, false);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        moveTo(plot, 1.5, 5);
        QCOMPARE(cross->text(), QStringLiteral("Channel [1, 2) bin 1   0: 10 ± 3.16   2: 12 ± 3.46"));
        setSeriesName(plot, 2, QStringLiteral("Ge"));
        moveTo(plot, 0.5, 5);
        QCOMPARE(cross->text(), QStringLiteral("Channel [0, 1) bin 0   0: 1 ± 1   Ge: 3 ± 1.73"));
        QCOMPARE(cross->table(), QStringLiteral("bin\tChannel lo\tChannel hi\tDetector 0\tGe\n0\t0\t1\t1\t3\n"));
        moveTo(plot, 1.5, 5);
        plot.setAddType(MultiVectorGraphWidget::AddAll);
        QCOMPARE(cross->table(),
            QStringLiteral("bin\tChannel lo\tChannel hi\tvalue\n1\t1\t2\t22\n")); // of those that are shown
    }

    void replacesTheTipOfThePlot()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotCrosshair cross(&plot);
        cross.setOn(false);
        showActive(plot);
        plot.setAttribute(Qt::WA_UnderMouse); // the pointer rests on it
        constexpr int hour = 3600000;
        QToolTip::showText(plot.mapToGlobal(QPoint(100, 100)), QStringLiteral("i:4"), &plot, {}, hour);
        QVERIFY(QToolTip::isVisible());
        cross.setOn(true);
        TRY_VERIFY(!QToolTip::isVisible());
    }

    void keepsTheTitleVisible_data()
    {
        addColumns<int, int>("curves", "width");
        QTest::newRow("beside the title") << 1 << 900;
        QTest::newRow("in the plot") << 1 << 300;
        QTest::newRow("in lines") << 8 << 600;
        QTest::newRow("in few lines") << 40 << 600;
    }
    void keepsTheTitleVisible()
    {
        QFETCH(const int, curves);
        QFETCH(const int, width);
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        plot.setTitle("Arrival Times");
        plot.m_groupSize = 1;
        for (int i = 0; i < curves; ++i)
            plot.setData(i, { 1001.0 + i, 1010.0 + i }, 1010.0 + i);
        plot.resizeData(curves);
        const PlotStyle style(&plot);
        const PlotLegend legend(&plot);
        PlotRuler ruler(&plot);
        PlotCrosshair cross(&plot);
        showActive(plot, { width, 400 });
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        const QImage before = plot.grab().toImage();
        const QRect rect = PlotMapping::of(plot).frameRect();
        const QColor background = colourAt(before, { 2, 2 });
        for (const double x : { 0.5, 1.5 }) {
            cross.pinAt({ x, 500 });
            const QImage after = plot.grab().toImage();
            QVERIFY(plot.rect().contains(cross.textBox()));
            QVERIFY(!cross.textBox().intersects(ruler.textBox()));
            const int line = qRound(PlotMapping::of(plot).columnOf(x));
            QVERIFY(cross.textBox().bottom() < rect.top() || cross.textBox().right() < line
                || cross.textBox().left() > line);
            for (const QRect& box : legend.overlayBoxes())
                QVERIFY(!cross.textBox().intersects(box));
            QVERIFY(colourAt(after, cross.textBox().center()) != colourAt(before, cross.textBox().center())
                || after.copy(onDevice(after, cross.textBox())) != before.copy(onDevice(before, cross.textBox())));
            for (int row = 0; row < rect.top() - 1; ++row) {
                for (int column = 0; column < width; ++column) {
                    if (colourAt(before, { column, row }) != background)
                        QCOMPARE(colourAt(after, { column, row }), colourAt(before, { column, row }));
                }
            }
            cross.release();
            cross.setOn(false);
        }
    }

    void readsAMap()
    {
        XY2DGraphWidget map;
        map.init("X", "Y", 4, 2, true, true);
        map.initManualX(0, 4);
        map.initManualY(0, 2);
        map.setData(0, { 0, 0, 0, 0 }, 0, false);
        map.setData(1, { 0, 7 }, 7, false); // a short row
        auto* const cross = new PlotCrosshair(&map);
        showActive(map);
        moveTo(map, 1.5, 1.5);
        QCOMPARE(cross->text(), QStringLiteral("X [1, 2) bin 1   Y [1, 2) bin 1   7 ± 2.65"));
        moveTo(map, 0.5, 0.5);
        QVERIFY(cross->text().endsWith(QStringLiteral("bin 0   0")));
        moveTo(map, 3.5, 1.5);
        QVERIFY(cross->text().endsWith(QStringLiteral("–")));
    }

    void followsDataWhileThePointerRests()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        moveTo(plot, 5, 5);
        const QSignalSpy spy(cross, &PlotCrosshair::textChanged);
        plot.setData(QList<double>(10, 9.0));
        plot.refreshPixmap();
        QCoreApplication::processEvents();
        QVERIFY(cross->text().endsWith(QStringLiteral("9 ± 3")));
        QCOMPARE(spy.count(), 1);
    }

    void pinsAndCopies()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        moveTo(plot, 15, 5);
        QTest::keyClick(&plot, Qt::Key_P);
        QVERIFY(cross->isPinned());
        moveTo(plot, 75, 5);
        QVERIFY(cross->text().endsWith(QStringLiteral("bin 1   1 ± 1")));
        QTest::keyClick(&plot, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("bin\tTime lo\tTime hi\tvalue\n1\t10\t20\t1\n"));
        QTest::keyClick(&plot, Qt::Key_Escape);
        QVERIFY(!cross->isPinned());
        QTest::keyClick(&plot, Qt::Key_C);
        QVERIFY(!cross->isOn());
        QVERIFY(cross->text().isEmpty());
    }

    void appearsUnderAPointerAtRest()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        cross->setOn(false);
        showActive(plot);
        const QPoint at = plot.mapToGlobal(PlotMapping::of(plot).pixelOf({ 15, 5 }).toPoint());
        QCursor::setPos(at);
        TRY_VERIFY(plot.underMouse() && QCursor::pos() == at);
        QTest::keyClick(&plot, Qt::Key_C);
        QVERIFY2(cross->text().contains(QStringLiteral("bin 1")), qPrintable(cross->text()));
        QTest::keyClick(&plot, Qt::Key_P);
        QVERIFY(cross->isPinned());
    }

    void escapeSwitchesItOffWhileThePointerIsElsewhere()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        QVERIFY(cross->isOn() && cross->text().isEmpty());
        QKeyEvent claim(QEvent::ShortcutOverride, Qt::Key_Escape, Qt::NoModifier);
        claim.ignore();
        QCoreApplication::sendEvent(&plot, &claim);
        QVERIFY(claim.isAccepted());
        QTest::keyClick(&plot, Qt::Key_Escape);
        QVERIFY(!cross->isOn());
        claim.ignore();
        QCoreApplication::sendEvent(&plot, &claim);
        QVERIFY(!claim.isAccepted()); // the next one is for the window
    }

    void keysMoveItFromBinToBin()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const cross = new PlotCrosshair(&plot);
        showActive(plot);
        const Qt::KeyboardModifiers far = Qt::ControlModifier | Qt::ShiftModifier;
        QTest::keyClick(&plot, Qt::Key_Up, Qt::ControlModifier);
        QVERIFY(!cross->isPinned()); // curves have no bins there
        QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier); // begins in the middle of the view
        QVERIFY(cross->isPinned());
        const QString start = cross->text();
        QVERIFY(start.contains(QStringLiteral("bin 5")));
        QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
        QVERIFY(cross->text().contains(QStringLiteral("bin 4")));
        QTest::keyClick(&plot, Qt::Key_Right, far);
        QCOMPARE(cross->text().right(1), QStringLiteral("–")); // outside of the data
        QTest::keyClick(&plot, Qt::Key_Escape);
        QVERIFY(!cross->isPinned() && cross->isOn());
        moveTo(plot, 15, 5);
        QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier); // begins under the pointer
        QVERIFY(cross->text().contains(QStringLiteral("bin 2")));
        cross->setOn(false);
        QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier);
        QVERIFY(!cross->isOn());
    }

    void drawsOverThePictureOnly()
    {
        VectorGraphWidget plot;
        fill(plot);
        showActive(plot);
        const QImage before = plot.grab().toImage();
        const QSignalSpy painted(&plot, &DoubleBufferedWidget::painted);
        auto* const cross = new PlotCrosshair(&plot);
        moveTo(plot, 55, 5);
        QVERIFY(plot.grab().toImage() != before);
        const std::unique_ptr<QPixmap> saved(plot.toPixmap());
        QCOMPARE(saved->toImage(), before); // a cross that is not pinned stays out of files
        cross->pinAt({ 55, 5 });
        const std::unique_ptr<QPixmap> pinned(plot.toPixmap());
        QVERIFY(pinned->toImage() != before);
        delete cross;
        QCOMPARE(plot.grab().toImage(), before);
        QCOMPARE(painted.count(), 0);
    }

    void survivesPlotsWithoutDataOrSize()
    {
        MultiVectorGraphWidget plot;
        auto* const cross = new PlotCrosshair(&plot);
        plot.resize(0, 0);
        plot.grab();
        cross->pinAt({ 1, 1 });
        cross->pinAt({ std::nan(""), INFINITY });
        plot.resize(300, 200);
        plot.grab();
        QCOMPARE(cross->text(), QStringLiteral("–"));
        cross->copy();
    }
};

QTEST_MAIN(TestPlotCrosshair)
#include "tst_plotcrosshair.moc"
