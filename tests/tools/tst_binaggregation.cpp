// Peaks kept when zoomed out: maps by maximum, sum and mean in data terms; the envelope of curves.
#include "support/map2dprobe.h"
#include "support/pictures.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/export/plotexporter.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>

#include <QAction>
#include <QJsonObject>
#include <QMenu>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr int side = 2000;

/// Ones everywhere, and one high bin that is not the first of its pixel.
void fill(XY2DGraphWidget& map)
{
    map.init("X", "Y", side, side, true, true);
    map.initManualX(0, side);
    map.initManualY(0, side);
    const QList<double> ones(side, 1.0);
    for (int y = 0; y < side; ++y)
        map.setData(y, ones, 1, false);
}

void setPeak(XY2DGraphWidget& map, int x, int y, double height)
{
    QList<double> row(side, 1.0);
    row[x] = height;
    map.setData(y, row, height, false);
}

void show(XYGraphWidget& plot)
{
    plot.m_doubleBuffered = true;
    plot.resize(500, 400);
    plot.onShowGrid(); // off
    plot.show();
    if (!QTest::qWaitForWindowExposed(&plot))
        qFatal("no window");
    for (int i = 0; i < 3; ++i) {
        plot.refreshPixmap();
        plot.grab();
        QCoreApplication::processEvents();
    }
}

/// Whether a pixel near a place has the colour.
bool hasColour(XYGraphWidget& plot, double x, double y, const QColor& colour)
{
    const QPoint at = PlotMapping::of(plot).pixelOf({ x, y }).toPoint();
    const QImage image = plot.grab().toImage();
    for (int dx = -1; dx <= 1; ++dx) {
        for (int dy = -1; dy <= 1; ++dy) {
            if (colourAt(image, at + QPoint(dx, dy)) == colour)
                return true;
        }
    }
    return false;
}

} // namespace

class TestBinAggregation : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void maximumKeepsAPeak()
    {
        MapProbe map;
        fill(map);
        show(map);
        const double perPixel = side / double(PlotMapping::of(map).plotRect().width());
        QVERIFY(perPixel > 3);
        // Every place among the bins of a pixel, so that most are not the first of theirs.
        BinAggregation aggregation(&map);
        int kept = 0;
        int keptBefore = 0;
        for (int i = 0; i < 8; ++i) {
            setPeak(map, 1001 + i, 903 + i, 50);
            aggregation.setMethod(BinAggregation::Method::None);
            map.refreshPixmap();
            keptBefore += static_cast<int>(hasColour(map, 1001.5 + i, 903.5 + i, map.getColor(50)));
            aggregation.setMethod(BinAggregation::Method::Maximum);
            map.refreshPixmap();
            kept += static_cast<int>(hasColour(map, 1001.5 + i, 903.5 + i, map.getColor(50)));
            setPeak(map, 1001 + i, 903 + i, 1);
        }
        QCOMPARE(kept, 8);
        QVERIFY(keptBefore < 8);
    }

    void sumsAndMeansHaveTheirOwnScale()
    {
        MapProbe map;
        fill(map);
        BinAggregation aggregation(&map);
        show(map);
        aggregation.setMethod(BinAggregation::Method::Sum);
        map.grab();
        const int perX = static_cast<int>(std::ceil(aggregation.binsPerPixelX()));
        const int perY = static_cast<int>(std::ceil(aggregation.binsPerPixelY()));
        QVERIFY(map.m_maxZ > 4 && map.m_maxZ <= perX * perY);
        aggregation.setMethod(BinAggregation::Method::Mean);
        map.grab();
        QCOMPARE(map.m_maxZ, 1.0);
        aggregation.setMethod(BinAggregation::Method::None);
        map.grab();
        QCOMPARE(map.m_maxZ, 1.0);
    }

    void levelsAreThoseOfSumsAndMeans()
    {
        MapProbe map;
        fill(map);
        BinAggregation aggregation(&map);
        ColourLevels levels(&map);
        show(map);
        aggregation.setMethod(BinAggregation::Method::Sum);
        map.grab();
        const double largestSum = map.m_maxZ;
        QVERIFY(largestSum > 4.0);
        levels.setPercentiles(0, 100);
        QCOMPARE(levels.upper(), largestSum);
        map.setMinMaxX(0, side / 8.0); // fewer bins share a pixel
        map.refreshPixmap();
        TRY_VERIFY(levels.upper() < largestSum && levels.upper() > 1.0);
        aggregation.setMethod(BinAggregation::Method::Mean);
        TRY_COMPARE(levels.upper(), 1.0);
    }

    /// Such a file has every bin: neither the label of the sums nor their scale, which the widget keeps.
    void vectorFilesAreThoseOfTheBins()
    {
        MapProbe map;
        fill(map);
        show(map);
        const QByteArray plain = PlotExporter(map).picture(PictureFormat::Svg, {}, nullptr);
        BinAggregation aggregation(&map);
        aggregation.setMethod(BinAggregation::Method::Sum);
        const QImage before = map.grab().toImage();
        const double largest = map.m_maxZ;
        QCOMPARE(PlotExporter(map).picture(PictureFormat::Svg, {}, nullptr), plain);
        QCOMPARE(map.m_maxZ, largest);
        QCoreApplication::processEvents();
        QCOMPARE(map.grab().toImage(), before);
        QVERIFY(largest > 1.0);
    }

    void changesNothingWithoutSharedPixels()
    {
        MapProbe map;
        fill(map);
        show(map);
        map.onAutoScaleX(false);
        map.onAutoScaleY(false);
        map.setMinMaxX(100, 120);
        map.setMinMaxY(100, 120);
        map.refreshPixmap();
        const QImage before = map.grab().toImage();
        auto* const aggregation = new BinAggregation(&map);
        aggregation->setMethod(BinAggregation::Method::Sum);
        QCOMPARE(aggregation->binsPerPixelX(), 1.0);
        QCOMPARE(map.grab().toImage(), before);
        map.onReset();
        map.refreshPixmap();
        map.grab();
        delete aggregation;
        map.setMinMaxX(100, 120);
        map.setMinMaxY(100, 120);
        map.onAutoScaleX(false);
        map.onAutoScaleY(false);
        map.setMinMaxX(100, 120);
        map.setMinMaxY(100, 120);
        map.refreshPixmap();
        QCOMPARE(map.grab().toImage(), before);
    }

    void countsBinsOfAnyWidth_data()
    {
        QTest::addColumn<double>("end");
        QTest::newRow("narrow bins") << 1.0;
        QTest::newRow("bins of one unit") << 8000.0;
        QTest::newRow("wide bins") << 4e6;
    }
    void countsBinsOfAnyWidth()
    {
        QFETCH(const double, end);
        VectorGraphWidget plot;
        plot.init("Time", "Counts", end, 100, true, true);
        plot.initManualX(0, end);
        plot.initManualY(0, 100);
        plot.setData(QList<double>(8000, 50.0));
        const BinAggregation aggregation(&plot);
        show(plot);
        const double expected = 8000.0 / PlotMapping::of(plot).frameRect().width();
        QVERIFY2(std::abs(aggregation.binsPerPixelX() / expected - 1.0) < 0.01,
            qPrintable(QString::number(aggregation.binsPerPixelX())));
    }

    void curvesGetAnEnvelope()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 100, true, true);
        plot.initManualX(0, 8000);
        plot.initManualY(0, 100);
        QList<double> samples;
        for (int i = 0; i < 8000; ++i)
            samples.append(i % 2 == 0 ? 20 : 80);
        plot.setData(samples);
        BinAggregation aggregation(&plot);
        show(plot);
        const QImage before = plot.grab().toImage();
        aggregation.setMethod(BinAggregation::Method::Sum);
        QCOMPARE(plot.grab().toImage(), before); // nothing on curves
        aggregation.setMethod(BinAggregation::Method::Mean);
        QVERIFY(plot.grab().toImage() != before);
        QVERIFY(hasColour(plot, 4000, 50, Qt::white));
        aggregation.setMethod(BinAggregation::Method::Maximum);
        QVERIFY(hasColour(plot, 4000, 80, Qt::white));
    }

    void linesAreNotDrawnWhereSamplesAreMissing()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 100, true, true);
        plot.initManualX(0, 8000);
        plot.initManualY(0, 100);
        QList<double> samples(8000, 50.0);
        std::fill(samples.begin() + 3000, samples.begin() + 5000, std::nan(""));
        plot.setData(samples);
        BinAggregation aggregation(&plot);
        for (const auto method : { BinAggregation::Method::Mean, BinAggregation::Method::Maximum }) {
            aggregation.setMethod(method);
            show(plot);
            QVERIFY(hasColour(plot, 2000, 50, Qt::white));
            QVERIFY(!hasColour(plot, 4000, 50, Qt::white));
        }
    }

    void menuAndStateChooseTheMethod()
    {
        MapProbe map;
        BinAggregation aggregation(&map);
        QMenu* const menu = aggregation.actions().constFirst()->menu();
        Q_EMIT menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 4);
        menu->actions().at(1)->trigger();
        QCOMPARE(aggregation.method(), BinAggregation::Method::Maximum);
        BinAggregation other(&map);
        other.restoreState(aggregation.saveState());
        QCOMPARE(other.method(), BinAggregation::Method::Maximum);
        other.restoreState({ { "method", "median" } });
        QCOMPARE(other.method(), BinAggregation::Method::Maximum);
        BinAggregation unattached(nullptr);
        unattached.setMethod(BinAggregation::Method::Sum);
        QCOMPARE(unattached.binsPerPixelX(), 1.0);
    }

    void survivesOddPlotsAndLiveData()
    {
        MapProbe map;
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        show(map);
        show(plot);
        Generator generator = seededGenerator(10);
        std::unique_ptr<BinAggregation> onMap;
        std::unique_ptr<BinAggregation> onPlot;
        for (int i = 0; i < 200; ++i) {
            QList<double> values(whole(generator, 0, 1500));
            for (double& value : values)
                value = chance(generator, 0.1) ? std::nan("") : uniform(generator, -5, 200);
            map.setData(whole(generator, 0, 900), values, 200, false);
            plot.setData(whole(generator, 0, 2), values, 200);
            switch (whole(generator, 0, 4)) {
            case 0:
                onMap = onMap ? nullptr : std::make_unique<BinAggregation>(&map);
                onPlot = onPlot ? nullptr : std::make_unique<BinAggregation>(&plot);
                break;
            case 1:
                if (onMap)
                    onMap->setMethod(static_cast<BinAggregation::Method>(whole(generator, 0, 3)));
                if (onPlot)
                    onPlot->setMethod(static_cast<BinAggregation::Method>(whole(generator, 0, 3)));
                break;
            case 2:
                map.resize(whole(generator, 0, 400), whole(generator, 0, 400));
                plot.resize(whole(generator, 0, 400), whole(generator, 0, 400));
                break;
            case 3:
                map.onLogScale(chance(generator, 0.5));
                plot.setLogScaleY(chance(generator, 0.5));
                break;
            default:
                QCoreApplication::processEvents();
            }
            map.refreshPixmap();
            plot.refreshPixmap();
            map.grab();
            plot.grab();
        }
    }
};

QTEST_MAIN(TestBinAggregation)
#include "tst_binaggregation.moc"
