// Navigation in the plots of a map's 1D cut, whose X axes are those of the map, by real events.
#include "support/visibleplot.h"
#include "support/wait.h"

#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotnavigator.h>

#include <QPointer>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <memory>

using namespace tarnis;
using tarnis::testing::rangeX;
using tarnis::testing::rangeY;

namespace {

/// A map with its cut: each of the three plots has a navigator.
struct CutFixture {
    CutFixture()
    {
        map.m_doubleBuffered = true;
        map.init("X", "Y", 1000, 1000, true, true);
        map.resize(500, 400);
        map.show();
        navigator = new PlotNavigator(&map);
        map.initManualX(0, 100);
        map.initManualY(0, 50);
        feed();
        map.on1dCut(true);
        for (VectorGraphWidget* const plot : map.findChildren<VectorGraphWidget*>()) {
            (plot->getNameX() == u"X" ? cutX : cutY) = plot;
            new PlotNavigator(plot);
            plot->grab();
        }
    }
    void feed(double height = 1.0)
    {
        for (int row = 0; row < 50; ++row)
            map.setData(row, QList<double>(100, height * (row + 1)), height * (row + 1), false);
        map.refreshPixmap();
        map.refresh1dCut(true);
        QCoreApplication::processEvents();
    }
    static PlotNavigator& navigatorOf(const VectorGraphWidget& plot) { return *plot.findChild<PlotNavigator*>(); }
    static QPoint middleOf(const XYGraphWidget& plot) { return PlotMapping::of(plot).plotRect().center(); }
    static void wheel(XYGraphWidget& plot, int eighths)
    {
        const QPointF at = middleOf(plot);
        QWheelEvent event(at, plot.mapToGlobal(at), {}, { 0, eighths }, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&plot, &event);
        QCoreApplication::processEvents();
    }
    static void key(XYGraphWidget& plot, int code)
    {
        plot.activateWindow();
        plot.setFocus();
        TRY_VERIFY(plot.hasFocus());
        QTest::keyClick(&plot, static_cast<Qt::Key>(code));
        QCoreApplication::processEvents();
    }

    XY2DGraphWidget map;
    PlotNavigator* navigator = nullptr;
    VectorGraphWidget* cutX = nullptr;
    VectorGraphWidget* cutY = nullptr;
};

} // namespace

class TestCutNavigation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void zoomsTheMapFromTheCutAlongX()
    {
        CutFixture open;
        QVERIFY(open.cutX && open.cutY);
        const AxisRange before = rangeX(open.map);
        const AxisRange beforeY = rangeY(open.map);
        CutFixture::wheel(*open.cutX, 240);
        const AxisRange zoomed = rangeX(open.map);
        QVERIFY(zoomed.min > before.min && zoomed.max < before.max);
        QCOMPARE(rangeX(*open.cutX), zoomed);
        QCOMPARE(rangeY(open.map), beforeY);
        open.feed(7.0); // each update of the map sets up the axis again
        QCOMPARE(rangeX(*open.cutX), zoomed);
        QCOMPARE(rangeX(open.map), zoomed);
    }

    void zoomsTheMapFromTheTurnedCutAlongY()
    {
        CutFixture open;
        const AxisRange before = rangeY(open.map);
        const AxisRange beforeX = rangeX(open.map);
        CutFixture::wheel(*open.cutY, 240);
        const AxisRange zoomed = rangeY(open.map);
        QVERIFY(zoomed.min > before.min && zoomed.max < before.max && zoomed.min < zoomed.max);
        QCOMPARE(rangeX(*open.cutY), (AxisRange { zoomed.max, zoomed.min }));
        QCOMPARE(rangeX(open.map), beforeX);
    }

    void holdsAnAxisIfTheMapDoes()
    {
        CutFixture open;
        PlotNavigator& cutX = CutFixture::navigatorOf(*open.cutX);
        PlotNavigator& cutY = CutFixture::navigatorOf(*open.cutY);
        QVERIFY(!cutX.isHeld(Qt::Horizontal) && !cutY.isHeld(Qt::Horizontal));
        CutFixture::wheel(*open.cutX, 120);
        QVERIFY(cutX.isHeld(Qt::Horizontal) && !cutY.isHeld(Qt::Horizontal));
        QVERIFY(open.navigator->isHeld(Qt::Horizontal) && !open.navigator->isHeld(Qt::Vertical));
        open.navigator->goHome();
        QCoreApplication::processEvents();
        QVERIFY(!cutX.isHeld(Qt::Horizontal));
        CutFixture::wheel(open.map, 120);
        QVERIFY(cutX.isHeld(Qt::Horizontal) && cutY.isHeld(Qt::Horizontal));
    }

    void fitsTheMapsAxis_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("double click") << 0;
        QTest::newRow("key Home") << 1;
        QTest::newRow("back") << 2;
        QTest::newRow("fitX") << 3;
    }

    void fitsTheMapsAxis()
    {
        QFETCH(const int, way);
        CutFixture open;
        const AxisRange before = rangeX(open.map);
        CutFixture::wheel(*open.cutX, 360);
        QVERIFY(!(rangeX(open.map) == before));
        PlotNavigator& navigator = CutFixture::navigatorOf(*open.cutX);
        if (way == 0)
            QTest::mouseDClick(open.cutX, Qt::LeftButton, Qt::NoModifier, CutFixture::middleOf(*open.cutX));
        else if (way == 1)
            navigator.goHome();
        else if (way == 2)
            navigator.goBack();
        else
            navigator.fitX();
        QCoreApplication::processEvents();
        QCOMPARE(rangeX(open.map), before);
        QCOMPARE(rangeX(*open.cutX), before);
    }

    void keepsItsOwnYAxis()
    {
        CutFixture open;
        const AxisRange beforeX = rangeX(open.map);
        const AxisRange beforeY = rangeY(open.map);
        const AxisRange counts = rangeY(*open.cutX);
        CutFixture::key(*open.cutX, Qt::Key_PageUp);
        QVERIFY(!(rangeY(*open.cutX) == counts));
        QVERIFY(CutFixture::navigatorOf(*open.cutX).isHeld(Qt::Vertical));
        QCOMPARE(rangeX(open.map), beforeX);
        QCOMPARE(rangeY(open.map), beforeY);
    }

    void zoomsOutNoFurtherThanTheMap()
    {
        CutFixture open;
        CutFixture::wheel(*open.cutX, -12000);
        const AxisRange cut = rangeX(open.map);
        CutFixture other;
        CutFixture::wheel(other.map, -12000);
        const AxisRange direct = rangeX(other.map);
        QVERIFY(std::abs((cut.max - cut.min) - (direct.max - direct.min)) < 1e-9);
    }

    void survivesTheEndOfTheMapAfterTheWindowMoved()
    {
        auto open = std::make_unique<CutFixture>();
        QWidget host; // as a program does that docks the windows of the cut
        open->cutX->window()->setParent(&host);
        host.show();
        CutFixture::wheel(*open->cutX, 120);
        const QPointer<VectorGraphWidget> cut = open->cutX;
        open.reset();
        QVERIFY(!cut.isNull());
        const AxisRange before = rangeX(*cut);
        CutFixture::key(*cut, Qt::Key_Right); // the axis is the plot's own now
        QVERIFY(!(rangeX(*cut) == before));
    }
};

QTEST_MAIN(TestCutNavigation)
#include "tst_cutnavigation.moc"
