// What gives way in a small plot: texts become brief, and whatever has no room is hidden.
#include "support/visibleplot.h"
#include "tools/samples.h"

#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotregions.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QTest>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

bool areApart(const QList<QRect>& boxes)
{
    for (qsizetype i = 0; i < boxes.size(); ++i) {
        for (qsizetype j = 0; j < i; ++j) {
            if (boxes.at(i).intersects(boxes.at(j)))
                return false;
        }
    }
    return true;
}

double areaOf(const QRect& rect)
{
    return double(rect.width()) * rect.height();
}

struct Curves : MultiVectorGraphWidget {
    Curves()
    {
        fillGroups(*this, 3);
        setSeriesNames(*this, { QStringLiteral("Sodium"), QStringLiteral("Cobalt"), QStringLiteral("Caesium") });
    }
};

} // namespace

class TestSmallPlots : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void textsAreApart_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("large") << QSize(700, 450);
        QTest::newRow("tile") << QSize(420, 300);
        QTest::newRow("small tile") << QSize(320, 220);
    }
    void textsAreApart()
    {
        QFETCH(const QSize, size);
        Curves plot;
        PlotLegend legend(&plot);
        PlotCrosshair cross(&plot);
        PlotRuler ruler(&plot);
        showActive(plot, size);
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        for (const double x : { 0.5, 1.5 }) {
            cross.pinAt({ x, 5.0 });
            QVERIFY(areApart(legend.overlayBoxes() + QList<QRect> { cross.textBox(), ruler.textBox() }));
            QVERIFY(plot.rect().contains(cross.textBox()) && plot.rect().contains(ruler.textBox()));
            const PlotMapping mapping = PlotMapping::of(plot);
            const QRect line(qRound(mapping.columnOf(x)), mapping.frameRect().top(), 1, mapping.frameRect().height());
            QVERIFY(!cross.textBox().intersects(line));
        }
        QVERIFY(!legend.overlayBoxes().isEmpty());
        QVERIFY(cross.text().contains(QStringLiteral("Channel"))); // in the status bar of a host
    }

    void aReadingWithoutRoomIsElidedBesideTheLegend()
    {
        MultiVectorGraphWidget plot;
        fillGroups(plot, 16);
        PlotLegend legend(&plot);
        PlotRuler ruler(&plot);
        showActive(plot, { 320, 200 });
        ruler.setEnds({ 0.5, 0 }, { 1.5, 0 });
        QVERIFY(!legend.overlayBoxes().isEmpty());
        QVERIFY(areApart(legend.overlayBoxes() + QList<QRect> { ruler.textBox() }));
    }

    void aSmallPlotKeepsItsData()
    {
        VectorGraphWidget plot;
        fill(plot, { 4, 1, 0, 2, 2.5, 5, 6, 7, 8, 9 });
        plot.setTitle(QStringLiteral("Title"));
        const PlotStyle style(&plot);
        PlotCrosshair cross(&plot);
        showActive(plot, { 230, 200 });
        cross.pinAt({ 55.0, 5.0 });
        QVERIFY(cross.textBox().bottom() <= PlotMapping::of(plot).frameRect().top()); // beside the title
        QVERIFY(cross.textBox().width() < plot.fontMetrics().horizontalAdvance(cross.text())); // the brief text
    }

    void namesAtTheBorderAreApart()
    {
        VectorGraphWidget plot;
        fill(plot, QList<double>(5000, 4.0)); // several bins per pixel
        PlotNavigator navigator(&plot);
        ReferenceCurves references(&plot);
        BinAggregation envelope(&plot);
        PlotRuler ruler(&plot);
        showActive(plot, { 600, 300 });
        envelope.setMethod(BinAggregation::Method::Maximum);
        references.freeze(QStringLiteral("before"));
        navigator.zoomIn();
        ruler.setEnds({ 5.0, 0.0 }, { 95.0, 0.0 }); // beyond both borders
        QCOMPARE(references.overlayBoxes().size(), 1);
        QCOMPARE(envelope.overlayBoxes().size(), 1);
        QVERIFY(areApart(
            references.overlayBoxes() + navigator.overlayBoxes() + envelope.overlayBoxes() + ruler.overlayBoxes()));
    }

    void namesOfMarkersAndRegionsAreApart()
    {
        VectorGraphWidget plot;
        fill(plot, { 4, 1, 0, 2, 2.5, 5, 6, 7, 8, 9 });
        PlotMarkers markers(&plot);
        PlotRegions regions(&plot);
        showActive(plot, { 320, 220 });
        regions.add(PlotRegion::rangeX(18, 40, QStringLiteral("Region")));
        for (const double x : { 5.0, 15.0, 25.0, 35.0, 45.0, 55.0 })
            markers.add({ x, 0.0 });
        QCOMPARE(regions.overlayBoxes().size(), 1);
        QVERIFY(areApart(markers.overlayBoxes() + regions.overlayBoxes()));
    }

    void legendLeavesMostOfThePlot()
    {
        Curves plot;
        PlotLegend legend(&plot);
        const auto box = [&] { return legend.overlayBoxes().value(0); };
        for (const QSize& size : { QSize(500, 400), QSize(320, 220), QSize(160, 120) }) {
            showActive(plot, size);
            QVERIFY(areaOf(box()) <= areaOf(PlotMapping::of(plot).frameRect()) / 3.0);
            QCOMPARE(box().isEmpty(), size.width() < 200);
        }
        QTest::keyClick(&plot, Qt::Key_L, Qt::ShiftModifier);
        QTest::keyClick(&plot, Qt::Key_Space); // no entry that cannot be seen has the keys
        QVERIFY(legend.isShown(0) && legend.isVisible());
        showActive(plot, { 500, 400 });
        QVERIFY(!box().isEmpty());
    }

    void histogramLeavesMostOfTheMap()
    {
        XY2DGraphWidget map;
        map.init("X", "Y", 4, 2, true, true);
        map.setData(0, { 1, 2, 3, 4 }, 4, false);
        ColourLevels levels(&map);
        const auto* const strip = map.findChild<QWidget*>(QStringLiteral("colourLevelStrip"));
        QVERIFY(strip != nullptr);
        for (const int width : { 600, 300, 600 }) {
            showActive(map, { width, 300 });
            QCOMPARE(strip->isVisible(), width > 300);
            QCOMPARE(levels.actions().constFirst()->isEnabled(), width > 300);
            QCOMPARE(levels.actions().constFirst()->toolTip().contains("too narrow"), width == 300);
            QVERIFY(PlotMapping::of(map).plotRect().width() > width / 2);
        }
        QVERIFY(levels.isStripVisible());
    }
};

QTEST_MAIN(TestSmallPlots)
#include "tst_smallplots.moc"
