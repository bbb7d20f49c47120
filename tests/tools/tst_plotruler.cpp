// The ruler: distances, ratio, sums, ends that stick to the data, drags, keys and tables.
#include "livemapgestures.h"
#include "support/pictures.h"
#include "support/plotmouse.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"
#include "tools/samples.h"

#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

void fill(VectorGraphWidget& plot)
{
    tarnis::testing::fill(plot, { 4, 1, 0, std::nan(""), 2.5, 5, 6, 8, 8, 9 });
}

} // namespace

class TestPlotRuler : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsDistancesRatioAndSum()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 3, 7 }, { 78, 1 });
        QCOMPARE(ruler.from(), QPointF(5, 4)); // on the curve
        QCOMPARE(ruler.to(), QPointF(75, 8));
        QCOMPARE(ruler.text(), QStringLiteral("Δx 70   Δy 4   1/Δx 0.01428571   y₂/y₁ 2   Σ 26.5"));
        QCOMPARE(ruler.table(),
            QStringLiteral("Time at 1\tCounts at 1\tTime at 2\tCounts at 2\tdx\tdy\t1/dx\ty2/y1\tbins\tsum\n"
                           "5\t4\t75\t8\t70\t4\t0.014285714285714285\t2\t8\t26.5\n"));
        ruler.setEnds({ 78, 1 }, { 3, 7 });
        QVERIFY(ruler.text().contains(QStringLiteral("Δx -70")) && ruler.text().endsWith(QStringLiteral("Σ 26.5")));
        ruler.setEnds({ 25, 1 }, { 3, 7 }); // from an empty bin
        QVERIFY(ruler.text().contains(QStringLiteral("y₂/y₁ –")));
        ruler.setEnds({ 25, 1 }, { 25, 7 });
        QVERIFY(ruler.text().contains(QStringLiteral("1/Δx –")));
    }

    void readsDecadesOnALogarithmicAxis()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 100, 10, true, true);
        plot.initManualX(0, 2);
        plot.setData({ 10, 10000 });
        plot.setMaxValue(10000);
        plot.setLogScaleY(true);
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 0.5, 1 }, { 1.5, 1 });
        QVERIFY(ruler.text().contains(QStringLiteral("3.000 dec")));
    }

    void hasNoDistanceToAMissingValue()
    {
        VectorGraphWidget plot;
        fill(plot, { 4, std::nan(""), std::numeric_limits<double>::infinity(), 1 });
        PlotRuler ruler(&plot);
        showActive(plot);
        for (const double x : { 37.0, 62.0 }) {
            ruler.setEnds({ 5, 7 }, { x, 3 });
            QVERIFY2(ruler.text().contains(QStringLiteral("   Δy –   ")), qPrintable(ruler.text()));
        }
        ruler.setEnds({ 5, 7 }, { 95, 3 });
        QVERIFY2(ruler.text().contains(QStringLiteral("   Δy -3   ")), qPrintable(ruler.text()));
        QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ 5")), qPrintable(ruler.text()));
    }

    /// Like those of a map's cut along Y.
    void sumsBinsInFallingOrder()
    {
        VectorGraphWidget plot;
        fill(plot);
        plot.initManualX(100, 0);
        plot.setData({ 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 });
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 95, 1 }, { 65, 1 });
        QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ 10")), qPrintable(ruler.text()));
        ruler.setEnds({ 15, 1 }, { 25, 1 });
        QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ 17")), qPrintable(ruler.text()));
        ruler.setEnds({ -50, 1 }, { 150, 1 }); // beyond both ends
        QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ 55")), qPrintable(ruler.text()));
        for (const double outside : { -50.0, 150.0 }) {
            ruler.setEnds({ outside, 1 }, { outside + 10.0, 1 });
            QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ 0")), qPrintable(ruler.text()));
        }
    }

    void hasNoSumBeyondTheLargestNumber()
    {
        VectorGraphWidget plot;
        fill(plot);
        plot.setData({ 1e308, 1e308, 1e308 });
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 5, 0 }, { 95, 0 });
        QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ –")), qPrintable(ruler.text()));
        QVERIFY2(ruler.table().endsWith(QStringLiteral("\t3\t\n")), qPrintable(ruler.table()));
    }

    void sumsEveryVisibleCurve()
    {
        MultiVectorGraphWidget plot;
        fillGroups(plot, 3);
        plot.setEnable(1, false);
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        QVERIFY(ruler.text().endsWith(QStringLiteral("Σ 0: 11   Σ 2: 15")));
        QVERIFY2(ruler.table().contains(QStringLiteral("\tsum 0\tsum 2\n")), qPrintable(ruler.table()));
        setSeriesNames(plot, { QStringLiteral("Sodium"), QStringLiteral("Cobalt"), QStringLiteral("Caesium") });
        QVERIFY2(ruler.table().contains(QStringLiteral("\tsum Sodium\tsum Caesium\n")), qPrintable(ruler.table()));
        QVERIFY2(ruler.table().startsWith(QStringLiteral("Channel at 1\tSodium at 1\t")), qPrintable(ruler.table()));
    }

    void namesSumsByTheTermOfTheirCurves()
    {
        MultiVectorGraphWidget plot;
        fillGroups(plot, 2);
        plot.m_groupName = QStringLiteral("Module");
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        QVERIFY2(ruler.table().contains(QStringLiteral("\tsum Module 0\tsum Module 1\n")), qPrintable(ruler.table()));
    }

    void aDragThatLeavesThePlotEndsAtItsBorder()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setOn(true);
        PlotMouse(plot).drag(pixelOf(plot, 15, 3), QPoint(plot.width() + 500, 5));
        QCOMPARE(ruler.from().x(), 15.0);
        QCOMPARE(ruler.to().x(), 95.0);
    }

    void keepsTheTextBesideTheLegend()
    {
        MultiVectorGraphWidget plot;
        fillGroups(plot, 4);
        PlotRuler ruler(&plot);
        PlotLegend legend(&plot);
        PlotNavigator navigator(&plot);
        showActive(plot, { 700, 400 });
        QVERIFY(ruler.textBox().isNull());
        const QPointF middle = PlotMapping::of(plot).plotRect().center();
        QWheelEvent wheel(middle, plot.mapToGlobal(middle), {}, { 0, 120 }, Qt::NoButton, Qt::ShiftModifier,
            Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&plot, &wheel); // holds Y, with a mark in the other corner
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        QCOMPARE(legend.overlayBoxes().size(), 1);
        QCOMPARE(navigator.overlayBoxes().size(), 1);
        plot.grab(); // the labels of the held axis change the margins
        const QRect inside = PlotMapping::of(plot).frameRect();
        for (const QPointF& place : { QPointF(1, 0), QPointF(0, 0), QPointF(0.5, 0), QPointF(0, 1) }) {
            legend.setPlace(place);
            const QRect box = ruler.textBox();
            QVERIFY(inside.contains(box) && inside.contains(legend.overlayBoxes().first()));
            QVERIFY(!box.intersects(legend.overlayBoxes().first()));
            QVERIFY(!box.intersects(navigator.overlayBoxes().first()));
            const QImage picture = plot.grab().toImage();
            ruler.clear();
            const QImage without = plot.grab().toImage();
            ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
            QVERIFY(colourAt(picture, box.topLeft() + QPoint(3, 9)) != colourAt(without, box.topLeft() + QPoint(3, 9)));
        }
    }

    void wrapsAReadingOfManyCurves()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        plot.m_groupSize = 1;
        for (int i = 0; i < 8; ++i)
            plot.setData(i, { 12345.0 + i, 123456.0 + i }, 123464);
        plot.resizeData(8);
        PlotRuler ruler(&plot);
        showActive(plot, { 500, 400 });
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        const QFontMetrics metrics(plot.font());
        QVERIFY2(ruler.text().endsWith(QStringLiteral("Σ 7: 135815")), qPrintable(ruler.text()));
        const QRect box = ruler.textBox();
        QVERIFY(metrics.horizontalAdvance(ruler.text()) > box.width());
        QVERIFY(box.height() >= 2 * metrics.lineSpacing());
        // Room for all parts
        QVERIFY(metrics.horizontalAdvance(ruler.text()) <= box.width() * (box.height() / metrics.lineSpacing()));
        QVERIFY(PlotMapping::of(plot).plotRect().contains(box));
        for (int i = 1; i < 8; ++i)
            plot.setEnable(i, false);
        plot.refreshPixmap();
        TRY_VERIFY(ruler.textBox().height() < 2 * metrics.lineSpacing());
    }

    void sumsTheRectangleOfAMap()
    {
        XY2DGraphWidget map;
        map.init("X", "Y", 4, 2, true, true);
        map.initManualX(0, 4);
        map.initManualY(0, 2);
        map.setData(0, { 1, 2, 3, std::nan("") }, 4, false);
        map.setData(1, { 5, 8 }, 8, false); // a short row
        PlotRuler ruler(&map);
        showActive(map);
        ruler.setEnds({ 1.2, 1.7 }, { 3.9, 0.1 });
        QCOMPARE(ruler.from(), QPointF(1.5, 1.5));
        QVERIFY2(ruler.table().endsWith(QStringLiteral("\t6\t13\n")), qPrintable(ruler.table()));
        const QString header = QStringLiteral("X at 1\tY at 1\tX at 2\tY at 2\tdx\tdy\t1/dx\tz2/z1\tbins\tsum\n");
        QVERIFY2(ruler.table().startsWith(header), qPrintable(ruler.table()));
        ruler.setEnds({ 0.5, 0.5 }, { 1.5, 1.5 });
        QVERIFY(ruler.text().contains(QStringLiteral("z₂/z₁ 8   Σ 16")));
    }

    void aDragDrawsIt()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        showActive(plot);
        PlotMouse mouse(plot);
        mouse.drag(pixelOf(plot, 5, 8), pixelOf(plot, 75, 2));
        QVERIFY(!ruler.isSet()); // switched off
        QTest::keyClick(&plot, Qt::Key_R);
        QVERIFY(ruler.isOn());
        mouse.drag(pixelOf(plot, 5, 8), pixelOf(plot, 75, 2));
        QCOMPARE(ruler.from(), QPointF(5, 4));
        QCOMPARE(ruler.to(), QPointF(75, 8));
        mouse.drag(pixelOf(plot, 75, 8), pixelOf(plot, 45, 3)); // its end
        QCOMPARE(ruler.from(), QPointF(5, 4));
        QCOMPARE(ruler.to(), QPointF(45, 2.5));
        QTest::keyClick(&plot, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), ruler.table());
        mouse.press(pixelOf(plot, 45, 2.5));
        mouse.move(pixelOf(plot, 85, 2.5));
        QCOMPARE(ruler.to().x(), 85.0);
        QTest::keyClick(&plot, Qt::Key_Escape);
        QCOMPARE(ruler.to().x(), 45.0);
        mouse.release(pixelOf(plot, 85, 2.5));
        QTest::keyClick(&plot, Qt::Key_Escape);
        QVERIFY(!ruler.isSet() && ruler.isOn());
        QTest::keyClick(&plot, Qt::Key_Escape);
        QVERIFY(!ruler.isOn());
        QCOMPARE(plot.cursor().shape(), Qt::ArrowCursor);
    }

    void isBesideTheNamesOfMarkers()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotMarkers markers(&plot);
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 5, 4 }, { 75, 8 });
        const QRect alone = ruler.textBox();
        markers.add(PlotMapping::of(plot).valueAt(alone.center()));
        QCOMPARE(markers.overlayBoxes().size(), 1);
        QVERIFY(alone.intersects(markers.overlayBoxes().constFirst()));
        QVERIFY(!ruler.textBox().intersects(markers.overlayBoxes().constFirst()));
    }

    void namesAreBesideMarksAndEachOther()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        PlotNavigator navigator(&plot);
        showActive(plot);
        for (int i = 0; i < 4; ++i)
            navigator.zoomIn(); // to the middle half of 0 to 100
        plot.grab();
        const QList<QRect> marks = navigator.overlayBoxes();
        QCOMPARE(marks.size(), 1);
        for (const double from : { 55.0, 5.0, 85.0 }) { // the other end is at the mark
            ruler.setEnds({ from, 0 }, { 95.0, 0 });
            const QList<QRect> names = ruler.overlayBoxes();
            QCOMPARE(names.size(), 2);
            for (const QRect& name : names) {
                QVERIFY(PlotMapping::of(plot).frameRect().contains(name));
                QVERIFY(!name.intersects(marks.constFirst()) && !name.intersects(ruler.textBox()));
            }
            QVERIFY(!names.at(0).intersects(names.at(1)));
        }
    }

    void keysDrawIt()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        showActive(plot);
        QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier);
        QVERIFY(!ruler.isSet()); // switched off
        ruler.setOn(true);
        QTest::keyClick(&plot, Qt::Key_Up, Qt::ControlModifier);
        QVERIFY(!ruler.isSet()); // curves have no bins there
        QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(ruler.from().x(), 55.0); // about the middle of the view
        QCOMPARE(ruler.to(), QPointF(65, 6));
        QTest::keyClick(&plot, Qt::Key_Space);
        QCOMPARE(ruler.from(), QPointF(65, 6));
        for (int i = 0; i < 2; ++i)
            QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier | Qt::KeypadModifier);
        QCOMPARE(ruler.to().x(), 35.0);
        QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(ruler.to().x(), -65.0);
        QCOMPARE(ruler.from(), QPointF(65, 6));
    }

    void keysMoveItsEndOnAMap()
    {
        XY2DGraphWidget map;
        map.init("x", "y", 10, 8, true, true);
        map.initManualX(0, 10);
        map.initManualY(0, 8);
        for (int row = 0; row < 8; ++row)
            map.setData(row, QList<double>(10, row), row, false);
        PlotRuler ruler(&map);
        showActive(map);
        ruler.setOn(true);
        ruler.setEnds({ 2.5, 3.5 }, { 4.5, 5.5 });
        QTest::keyClick(&map, Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(&map, Qt::Key_Left, Qt::ControlModifier);
        QCOMPARE(ruler.from(), QPointF(2.5, 3.5));
        QCOMPARE(ruler.to(), QPointF(3.5, 4.5));
    }

    void followsTheData()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        showActive(plot);
        ruler.setEnds({ 5, 0 }, { 15, 0 });
        const QSignalSpy spy(&ruler, &PlotRuler::textChanged);
        plot.setData(QList<double>(10, 3.0));
        plot.refreshPixmap();
        QCoreApplication::processEvents();
        QCOMPARE(ruler.to().y(), 3.0);
        QCOMPARE(spy.count(), 1);
        QVERIFY(ruler.text().endsWith(QStringLiteral("Σ 6")));
    }

    void drawsOverThePictureOnly()
    {
        VectorGraphWidget plot;
        fill(plot);
        showActive(plot);
        const QImage before = plot.grab().toImage();
        const QSignalSpy painted(&plot, &DoubleBufferedWidget::painted);
        auto* const ruler = new PlotRuler(&plot);
        ruler->setEnds({ 5, 0 }, { 75, 0 });
        const QImage with = plot.grab().toImage();
        const QPoint middle = (pixelOf(plot, 5, 4) + pixelOf(plot, 75, 4)) / 2;
        const QRect foot = onDevice(with, QRect(middle - QPoint(3, 8), QSize(6, 16)));
        QVERIFY(with.copy(foot) != before.copy(foot));
        QVERIFY(hasPixel(with, pixelOf(plot, 5, 4), QSize(0, 0),
            [](const QColor& found) { return found == QColor(120, 230, 255); }));
        delete ruler;
        QCOMPARE(plot.grab().toImage(), before);
        QCOMPARE(painted.count(), 0);
    }

    void restoresItsState()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        ruler.setEnds({ 5.25, 1 }, { 75, -1e300 });
        ruler.setOn(true);
        const QJsonObject state = ruler.saveState();
        PlotRuler other(&plot);
        other.restoreState(state);
        QCOMPARE(other.saveState(), state);
        other.restoreState({ { "ends", QJsonArray { 1, 2, "x", 4 } }, { "on", 3 } });
        QCOMPARE(other.saveState(), state);
    }

    void survivesPlotsWithoutDataOrSize()
    {
        MultiVectorGraphWidget plot;
        PlotRuler ruler(&plot);
        plot.resize(0, 0);
        plot.grab();
        ruler.setEnds({ 1, 1 }, { 2, 2 });
        ruler.setEnds({ std::nan(""), 1 }, { 2, INFINITY });
        QVERIFY(!ruler.text().isEmpty());
        plot.resize(300, 200);
        plot.grab();
        PlotRuler unattached(nullptr);
        unattached.setEnds({ 1, 1 }, { 2, 2 });
        unattached.copy();
        QVERIFY(unattached.text().isEmpty());
    }

    void endsWithItsPlotInMidDrag()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        fill(*plot);
        auto* const ruler = new PlotRuler(plot.get());
        showActive(*plot);
        ruler->setOn(true);
        PlotMouse mouse(*plot);
        mouse.press(pixelOf(*plot, 15, 3));
        mouse.move(pixelOf(*plot, 40, 3));
        plot->hide();
        QVERIFY(!ruler->isSet()); // the drag is reverted
        plot.reset();
    }

    void attachesAndDetachesUnderLiveData()
    {
        XY2DGraphWidget map;
        map.init("X", "Y", 8, 8, true, true);
        showActive(map);
        Generator generator = seededGenerator(6);
        attachUnderLiveRows<PlotRuler>(map, generator);
    }

    void readingIsAboveTheLinesOfTheCross()
    {
        VectorGraphWidget plot;
        fill(plot);
        PlotRuler ruler(&plot);
        PlotCrosshair cross(&plot);
        plot.resize(600, 400);
        showActive(plot);
        ruler.setEnds({ 15, 1 }, { 85, 8 });
        const auto read = [&] { return plot.grab(ruler.textBox()).toImage(); };
        const PlotMapping mapping = PlotMapping::of(plot);
        cross.pinAt({ 0.0, 5.0 });
        const QImage alone = read();
        const QRect box = ruler.textBox();
        cross.pinAt({ mapping.valueAt(QRectF(box).center()).x(), 5.0 });
        QCOMPARE(ruler.textBox(), box);
        const QImage under = read();
        constexpr int seenThrough = 70; // of 255: the box is not quite opaque
        for (int x = 0; x < alone.width(); ++x) {
            const int difference =
                qGray(alone.pixel(x, alone.height() / 2)) - qGray(under.pixel(x, alone.height() / 2));
            QVERIFY2(std::abs(difference) < seenThrough, qPrintable(QString::number(difference)));
        }
    }
};

QTEST_MAIN(TestPlotRuler)
#include "tst_plotruler.moc"
