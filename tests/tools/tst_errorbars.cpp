// Error bars: their ends in data terms, bands, sums, logarithmic axes, live data.
#include "support/pictures.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "support/visibleplot.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotstyle.h>

#include <QJsonObject>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

void showWithoutGrid(XYGraphWidget& plot)
{
    plot.onShowGrid(); // off: its lines would be mistaken for bars
    showActive(plot);
}

void fill(VectorGraphWidget& plot, const QList<double>& samples, double top)
{
    plot.init("Time", "Counts", 10, top, true, true);
    plot.initManualX(0, 10);
    plot.initManualY(0, top);
    plot.setData(samples);
}

/// Whether a pixel near a place is not the background.
bool isDrawn(const QImage& image, const PlotMapping& mapping, double x, double y)
{
    const QPoint at = mapping.pixelOf({ x, y }).toPoint();
    return hasPixel(image, at, QSize(1, 0), [](const QColor& found) { return found != QColor(Qt::black); });
}

} // namespace

class TestErrorBars : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void barsReachTheirEnds()
    {
        VectorGraphWidget plot;
        fill(plot, QList<double>(10, 16.0), 40);
        ErrorBars bars(&plot);
        bars.setMethod(ErrorBars::Method::SquareRoot);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        const QImage before = plot.grab().toImage();
        QVERIFY(!isDrawn(before, mapping, 4.5, 18.5));
        bars.setOn(true);
        const QImage after = plot.grab().toImage();
        QVERIFY(isDrawn(after, mapping, 4.5, 19.5) && isDrawn(after, mapping, 4.5, 12.5));
        QVERIFY(!isDrawn(after, mapping, 4.5, 20.5) && !isDrawn(after, mapping, 4.5, 11.5));
        QVERIFY(!isDrawn(after, mapping, 5.0, 18.5)); // between two bars
    }

    /// Like those of a map's cut along Y.
    void binsInFallingOrderHaveBars()
    {
        VectorGraphWidget plot;
        fill(plot, { 0, 0, 16, 0, 0, 0, 0, 0, 0, 0 }, 40);
        plot.initManualX(10, 0);
        ErrorBars bars(&plot);
        bars.setMethod(ErrorBars::Method::SquareRoot);
        bars.setOn(true);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        QVERIFY(isDrawn(plot.grab().toImage(), mapping, 7.5, 19.5));
        QVERIFY(!isDrawn(plot.grab().toImage(), mapping, 2.5, 19.5));
    }

    void emptyBinsHaveExactBars()
    {
        VectorGraphWidget plot;
        fill(plot, QList<double>(10, 0.0), 4);
        ErrorBars bars(&plot);
        bars.setOn(true);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        QVERIFY(isDrawn(plot.grab().toImage(), mapping, 4.5, 1.7));
        QVERIFY(!isDrawn(plot.grab().toImage(), mapping, 4.5, 2.0));
        bars.setMethod(ErrorBars::Method::SquareRoot);
        QVERIFY(!isDrawn(plot.grab().toImage(), mapping, 4.5, 1.7));
        QCOMPARE(ErrorBars::interval(ErrorBars::Method::SquareRoot, 4).second, 6.0);
    }

    void reachesTheLowerEdgeOfALogarithmicAxis()
    {
        VectorGraphWidget plot;
        fill(plot, QList<double>(10, 1.0), 100);
        plot.initManualY(0.1, 100);
        plot.setLogScaleY(true);
        ErrorBars bars(&plot);
        bars.setMethod(ErrorBars::Method::SquareRoot); // from 0 to 2
        bars.setOn(true);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        const QImage picture = plot.grab().toImage();
        QVERIFY(isDrawn(picture, mapping, 4.5, 0.15) && isDrawn(picture, mapping, 4.5, 1.9));
        QVERIFY(!isDrawn(picture, mapping, 4.5, 2.3));
    }

    void reachesTheLowEndOfAReversedLogarithmicAxis_data()
    {
        QTest::addColumn<bool>("isStyled");
        QTest::newRow("classic") << false;
        QTest::newRow("styled") << true;
    }
    void reachesTheLowEndOfAReversedLogarithmicAxis()
    {
        QFETCH(const bool, isStyled);
        VectorGraphWidget plot;
        fill(plot, QList<double>(10, 0.0), 100);
        plot.setLogScaleY(true);
        if (isStyled)
            new PlotStyle(&plot);
        plot.onAutoScaleY(false);
        plot.setMinMaxY(100, 0.1);
        showWithoutGrid(plot);
        const QImage without = plot.grab().toImage();
        ErrorBars bars(&plot);
        bars.setOn(true); // from 0 to 1.84
        plot.grab();
        const QImage with = plot.grab().toImage();
        const PlotMapping mapping = PlotMapping::of(plot);
        const auto isChanged = [&](double y) {
            const QRect around(mapping.pixelOf({ 4.5, y }).toPoint() - QPoint(1, 0), QSize(3, 1));
            return with.copy(onDevice(with, around)) != without.copy(onDevice(without, around));
        };
        QVERIFY(isChanged(0.15) && isChanged(1.5));
        QVERIFY(!isChanged(2.5) && !isChanged(50));
        if (isStyled)
            QCOMPARE(mapping.rowOf(0.0), double(mapping.frameRect().top()));
    }

    void narrowBinsHaveABand()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 200, true, true);
        plot.initManualX(0, 4000);
        plot.initManualY(0, 200);
        plot.setData(QList<double>(4000, 100.0));
        ErrorBars bars(&plot);
        bars.setOn(true);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        const QImage picture = plot.grab().toImage();
        for (const double x : { 500.0, 2000.5, 3333.0 }) {
            QVERIFY(isDrawn(picture, mapping, x, 107.0) && isDrawn(picture, mapping, x, 93.0));
            QVERIFY(!isDrawn(picture, mapping, x, 115.0) && !isDrawn(picture, mapping, x, 85.0));
        }
    }

    void sumsHaveTheErrorOfTheSum()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 10, 40, true, true);
        plot.initManualX(0, 10);
        plot.initManualY(0, 40);
        plot.m_groupSize = 1;
        plot.setData(0, QList<double>(10, 8.0), 8);
        plot.setData(1, QList<double>(10, 8.0), 8);
        plot.setAddType(MultiVectorGraphWidget::AddAll);
        plot.onAutoScaleY(false);
        plot.setMinMaxY(0, 40);
        ErrorBars bars(&plot);
        bars.setMethod(ErrorBars::Method::SquareRoot);
        bars.setOn(true);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        const QImage picture = plot.grab().toImage();
        QVERIFY(isDrawn(picture, mapping, 4.5, 19.5)); // 16 + 4, where the bars of the parts would end at 10.8
        QVERIFY(!isDrawn(picture, mapping, 4.5, 20.8));
    }

    void theAutomaticRangeOfAStyleHasRoomForThem_data()
    {
        QTest::addColumn<bool>("isLog");
        QTest::newRow("linear") << false;
        QTest::newRow("logarithmic") << true;
    }
    void theAutomaticRangeOfAStyleHasRoomForThem()
    {
        QFETCH(const bool, isLog);
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 40, true, true);
        plot.initManualX(0, 10);
        plot.setData(QList<double>(10, 9.0));
        plot.setMaxValue(9);
        plot.setLogScaleY(isLog);
        new PlotStyle(&plot);
        auto* const bars = new ErrorBars(&plot);
        bars->setMethod(ErrorBars::Method::Poisson); // up to 13.1
        showWithoutGrid(plot);
        const auto top = [&plot] {
            QCoreApplication::processEvents();
            plot.grab();
            return PlotMapping::of(plot).y().max;
        };
        const double without = top();
        QVERIFY(isLog || without < 13.1);
        bars->setOn(true);
        QVERIFY(top() > 13.2);
        const PlotMapping mapping = PlotMapping::of(plot);
        const QImage picture = plot.grab().toImage();
        const auto isDrawnAt = [&](double y) {
            return hasPixel(picture, mapping.pixelOf({ 4.5, y }).toPoint(), QSize(1, 0),
                [](const QColor& found) { return found != QColor(Qt::white); });
        };
        QVERIFY(isDrawnAt(12.8) && !isDrawnAt(13.4)); // the whole bar, and the background above it
        bars->setOn(false);
        QCOMPARE(top(), without);
        bars->setOn(true);
        QVERIFY(top() > 13.2);
        delete bars;
        QCOMPARE(top(), without);
    }

    void theAutomaticRangeIgnoresValuesWithoutBars()
    {
        VectorGraphWidget plot;
        plot.init("Time", "Counts", 10, 40, true, true);
        plot.initManualX(0, 10);
        plot.setData({ 8.5, 8.5, 8.5, 2.0, 8.5, NAN, INFINITY, 8.5, 8.5, 8.5 });
        plot.setMaxValue(8.5);
        new PlotStyle(&plot);
        auto* const bars = new ErrorBars(&plot);
        showWithoutGrid(plot);
        const AxisRange without = PlotMapping::of(plot).y();
        bars->setOn(true);
        plot.grab();
        QCOMPARE(PlotMapping::of(plot).y(), without); // the bar of 2 ends at 4.6
    }

    void valuesThatAreNoCountsHaveNoBars()
    {
        VectorGraphWidget plot;
        fill(plot, { 16.5, -3, std::nan(""), INFINITY, 16.5, 16.5, 16.5, 16.5, 16.5, 16.5 }, 40);
        ErrorBars bars(&plot);
        showWithoutGrid(plot);
        const QImage before = plot.grab().toImage();
        bars.setOn(true);
        QCOMPARE(plot.grab().toImage(), before);
    }

    void followsTheDataAndKeepsThePicture()
    {
        VectorGraphWidget plot;
        fill(plot, QList<double>(10, 16.0), 60);
        auto* const bars = new ErrorBars(&plot);
        bars->setOn(true);
        showWithoutGrid(plot);
        const PlotMapping mapping = PlotMapping::of(plot);
        plot.setData(QList<double>(10, 36.0));
        plot.refreshPixmap();
        QVERIFY(isDrawn(plot.grab().toImage(), mapping, 4.5, 41.0)); // in the first picture already
        const QSignalSpy painted(&plot, &DoubleBufferedWidget::painted);
        const std::unique_ptr<QPixmap> saved(plot.toPixmap());
        QVERIFY(isDrawn(saved->toImage(), mapping, 4.5, 41.0));
        QTest::keyClick(&plot, Qt::Key_E);
        QVERIFY(!bars->isOn());
        QVERIFY(!isDrawn(plot.grab().toImage(), mapping, 4.5, 41.0));
        QCOMPARE(painted.count(), 0); // the data were not drawn again
    }

    void restoresItsState()
    {
        VectorGraphWidget plot;
        ErrorBars bars(&plot);
        bars.setOn(true);
        bars.setMethod(ErrorBars::Method::SquareRoot);
        ErrorBars other(&plot);
        other.restoreState(bars.saveState());
        QVERIFY(other.isOn());
        QCOMPARE(other.method(), ErrorBars::Method::SquareRoot);
        other.restoreState({ { "on", "x" }, { "method", "cube" } });
        QCOMPARE(other.saveState(), bars.saveState());
        QCOMPARE(bars.actions().size(), 2);
    }

    void survivesOddPlots()
    {
        XY2DGraphWidget map;
        ErrorBars onMap(&map);
        onMap.setOn(true);
        map.grab();
        MultiVectorGraphWidget plot;
        ErrorBars bars(&plot);
        bars.setOn(true);
        plot.resize(0, 0);
        plot.grab();
        plot.resize(300, 200);
        plot.grab();
        ErrorBars unattached(nullptr);
        unattached.setOn(true);
        unattached.setMethod(ErrorBars::Method::SquareRoot);
    }

    void attachesAndDetachesUnderLiveData()
    {
        MultiVectorGraphWidget plot;
        plot.init("Channel", "Counts", 0, 0, true, true);
        showWithoutGrid(plot);
        Generator generator = seededGenerator(7);
        std::unique_ptr<ErrorBars> bars;
        for (int i = 0; i < 300; ++i) {
            QList<double> samples(whole(generator, 0, 3000));
            for (double& sample : samples)
                sample = chance(generator, 0.1) ? std::nan("") : std::floor(uniform(generator, -5, 2000));
            plot.setData(whole(generator, 0, 2), samples, 2000);
            plot.refreshPixmap();
            switch (whole(generator, 0, 4)) {
            case 0:
                bars = bars ? nullptr : std::make_unique<ErrorBars>(&plot);
                if (bars)
                    bars->setOn(true);
                break;
            case 1:
                plot.setLogScaleY(chance(generator, 0.5));
                break;
            case 2:
                plot.onAutoScaleX(false);
                plot.setMinMaxX(uniform(generator, -100, 3000), uniform(generator, -100, 3000));
                break;
            case 3:
                plot.resize(whole(generator, 0, 600), whole(generator, 0, 400));
                break;
            default:
                QCoreApplication::processEvents();
            }
            plot.grab();
        }
    }
};

QTEST_MAIN(TestErrorBars)
#include "tst_errorbars.moc"
