// Observers, mappings and overlays: each change once, pixels and values both ways on every kind of axis, drawings over
// the picture that appear in files and never draw the data.
#include "support/support.h"

#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/plotobserver.h>
#include <tarnis/plots/plotoverlay.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <memory>

using namespace tarnis;

namespace {

class Recorder : public PlotObserver {
public:
    using PlotObserver::PlotObserver;
    QList<Changes> taken()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_changes, {});
    }

protected:
    void plotChanged(Changes changes) override { m_changes.append(changes); }

private:
    QList<Changes> m_changes;
};

/// Fills a rectangle of values.
class RectangleOverlay : public PlotOverlay {
public:
    RectangleOverlay(XYGraphWidget* plot, QColor colour, int zOrder = 0, bool saved = true)
        : PlotOverlay(plot, zOrder)
        , m_colour(colour)
        , m_saved(saved)
    {
    }

protected:
    void paintOverlay(QPainter& painter, const PlotMapping& mapping) override
    {
        const QPointF a(mapping.columnOf(20.0), mapping.rowOf(20.0));
        const QPointF b(mapping.columnOf(40.0), mapping.rowOf(40.0));
        painter.fillRect(QRectF(a, b).normalized(), m_colour);
    }
    bool isSaved() const override { return m_saved; }

private:
    QColor m_colour;
    bool m_saved;
};

void fill(MultiVectorGraphWidget& plot)
{
    plot.m_doubleBuffered = true;
    plot.init("Channel", "Counts", 0, 0, true, true);
    plot.m_groupSize = 1;
    QList<double> samples;
    for (int i = 0; i < 100; ++i)
        samples.append(i);
    plot.setData(0, samples, 99.0);
    plot.resizeData(1);
    plot.resize(400, 300);
}

void fill(XY2DGraphWidget& map)
{
    map.m_doubleBuffered = true;
    map.init("X", "Y", 100, 100, true, true);
    map.initManualX(0, 100);
    map.initManualY(0, 100);
    for (int row = 0; row < 50; ++row)
        map.setData(row, QList<double>(200, row + 1.0), row + 1.0, false);
    map.resize(400, 300);
}

double squareRoot(double x, void*)
{
    return std::sqrt(x);
}

double squared(double x, void*)
{
    return x * x;
}

QColor at(const QPixmap& picture, const QPointF& pixel)
{
    return picture.toImage().pixelColor(pixel.toPoint());
}

} // namespace

class TestPlotObserver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void namesOfSeriesAreData()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        plot.m_groupName = QStringLiteral("Detector");
        QCOMPARE(curveNames(plot), QStringList { "Detector 0" });
        setSeriesName(plot, 2, QStringLiteral("before the observer"));
        Recorder recorder(&plot);
        setSeriesName(plot, 0, QStringLiteral("Ge"));
        QCOMPARE(recorder.taken(), QList<PlotObserver::Changes> { PlotObserver::Data });
        QCOMPARE(curveNames(plot), QStringList { "Ge" });
        setSeriesName(plot, 0, QStringLiteral("Ge"));
        setSeriesName(plot, -1, QStringLiteral("nothing"));
        QVERIFY(recorder.taken().isEmpty());
        plot.resizeData(3);
        QCOMPARE(curveNames(plot), QStringList({ "Ge", "Detector 1", "before the observer" }));
        QCOMPARE(seriesName(plot, 1), QString());
        setSeriesNames(plot, {});
        QCOMPARE(seriesName(plot, 0), QString());
    }

    void reportsEachChangeOnce()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        plot.grab();
        Recorder recorder(&plot);
        recorder.taken();
        plot.onAutoScaleX(false);
        plot.setMinMaxX(110, 190); // with labels as long as before
        plot.refreshPixmap();
        plot.grab();
        const QList<PlotObserver::Changes> changes = recorder.taken();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first(), PlotObserver::RangeX | PlotObserver::AutoScale);
        plot.refreshPixmap();
        plot.grab();
        QVERIFY(recorder.taken().isEmpty());
    }

    void reportsDataScaleAndSize()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        plot.onAutoScaleY(false);
        plot.grab();
        Recorder recorder(&plot);
        plot.setData(0, QList<double>(100, 3.0), 3.0);
        QCOMPARE(recorder.taken(), QList<PlotObserver::Changes> { PlotObserver::Data });
        plot.onLogScale(true);
        QCOMPARE(recorder.taken(), QList<PlotObserver::Changes> { PlotObserver::ScaleType });
        plot.resize(500, 300);
        plot.grab();
        QCOMPARE(recorder.taken(), QList<PlotObserver::Changes> { PlotObserver::PlotRect });
        plot.setMinMaxX(5, 6);
        plot.setMinMaxX(0, 100); // taken back
        QVERIFY(recorder.taken().isEmpty());
    }

    void reportsLevelsOfAMap()
    {
        XY2DGraphWidget map;
        fill(map);
        map.grab();
        Recorder recorder(&map);
        map.onAutoScaleZToggled(false);
        map.onMaxZChanged(7.0);
        QCOMPARE(recorder.taken(), QList<PlotObserver::Changes> { PlotObserver::Levels | PlotObserver::AutoScale });
    }

    void outlivesItsPlot()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        Recorder recorder(plot.get());
        RectangleOverlay patch(plot.get(), Qt::red);
        plot->setMinMaxX(0, 5);
        plot.reset();
        QVERIFY(recorder.observedPlot() == nullptr);
        QVERIFY(recorder.taken().isEmpty());
        patch.updateOverlay();
    }

    void warnsAboutNull()
    {
        QTest::ignoreMessage(QtWarningMsg, "PlotObserver: no plot to observe; pass one that exists");
        Recorder recorder(nullptr);
        QVERIFY(recorder.observedPlot() == nullptr);
    }

    void mapsBothWays_data()
    {
        QTest::addColumn<double>("rotation");
        QTest::addColumn<bool>("log");
        QTest::addColumn<bool>("reversed");
        QTest::newRow("upright") << 0.0 << false << false;
        QTest::newRow("logarithmic") << 0.0 << true << false;
        QTest::newRow("reversed") << 0.0 << false << true;
        QTest::newRow("turned") << 90.0 << false << false;
        QTest::newRow("turned back, logarithmic") << -90.0 << true << false;
    }
    void mapsBothWays()
    {
        QFETCH(double, rotation);
        QFETCH(bool, log);
        QFETCH(bool, reversed);
        VectorGraphWidget plot;
        plot.m_doubleBuffered = true;
        plot.m_rotation = rotation;
        plot.init("X", "Y", 100, 1000, false, false);
        plot.setMinMaxX(reversed ? 90 : 10, reversed ? 10 : 90);
        plot.setMinMaxY(1, 1000);
        plot.setLogScaleY(log);
        plot.resize(400, 300);
        plot.grab();
        const PlotMapping mapping = PlotMapping::of(plot);
        QVERIFY(mapping.isValid());
        QCOMPARE(mapping.isLogY(), log);
        for (const QPointF& value : { QPointF(10, 1), QPointF(33, 250), QPointF(90, 1000) }) {
            const QPointF pixel = mapping.pixelOf(value);
            const QPointF back = mapping.valueAt(pixel);
            QVERIFY(std::abs(back.x() - value.x()) < 1e-9);
            QVERIFY(std::abs(back.y() - value.y()) < 1e-9 * 1000);
            QVERIFY(QRectF(mapping.plotRect()).adjusted(-1, -1, 1, 1).contains(pixel));
        }
        if (rotation == 0.0 && !log)
            QCOMPARE(mapping.pixelOf({ 33, 250 }), plot.calcWidgetPointF({ 33, 250 }));
    }

    void turnsAsThePictureDoes()
    {
        VectorGraphWidget plot;
        plot.m_doubleBuffered = true;
        plot.m_rotation = 90.0;
        plot.init("X", "Y", 100, 100, false, false);
        plot.resize(300, 400);
        plot.grab();
        const QPixmap picture = plot.m_pixmap;
        const QRect rect = PlotMapping::of(plot).plotRect();
        QCOMPARE(at(picture, rect.center() + QPoint(5, 7)), QColor(Qt::black)); // the background of the plot rectangle
        QCOMPARE(at(picture, QPointF(rect.left() - 3, rect.center().y())), QColor(Qt::lightGray));
        QVERIFY(PlotMapping::of(plot).pixelOf({ 0, 0 }).x() < PlotMapping::of(plot).pixelOf({ 0, 100 }).x());
    }

    void findsBins()
    {
        XY2DGraphWidget map;
        fill(map);
        map.grab();
        const PlotMapping mapping = PlotMapping::of(map);
        QCOMPARE(mapping.columns(), 200);
        QCOMPARE(mapping.rows(), 50);
        QCOMPARE(mapping.columnAt(0.0), 0);
        QCOMPARE(mapping.columnAt(99.9), 199);
        QCOMPARE(mapping.columnAt(100.0), -1);
        QCOMPARE(mapping.columnAt(-0.1), -1);
        QCOMPARE(mapping.rowAt(3.0), 1);
        QCOMPARE(mapping.rowEdges(1).min, 2.0);
        QCOMPARE(mapping.rowEdges(1).max, 4.0);
        QCOMPARE(mapping.columnAt(std::nan("")), -1);
    }

    void findsBinsThroughAFunction()
    {
        for (const bool hasInverse : { true, false }) {
            MultiVectorGraphWidget plot;
            fill(plot);
            plot.setFuncX2Plot(squareRoot, hasInverse ? squared : nullptr);
            plot.onAutoScaleX(false);
            plot.setMinMaxX(0, 10);
            plot.grab();
            const PlotMapping mapping = PlotMapping::of(plot);
            QCOMPARE(mapping.columnAt(5.05), 25);
            QCOMPARE(mapping.columnEdges(25).min, 5.0);
        }
    }

    void reportsTheSecondScale()
    {
        VectorGraphWidget plot;
        QVERIFY(!PlotMapping::of(plot).hasTickFunction());
        QVERIFY(!PlotMapping::of(plot).isValid());
        plot.setFuncX2Tick(squared, squareRoot, nullptr);
        QVERIFY(PlotMapping::of(plot).hasTickFunction());
        QCOMPARE(PlotMapping::of(plot).tickOf(3.0), 9.0);
    }

    void paintsOverThePictureAndIntoFiles()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        const QPixmap before = plot.grab();
        const QSignalSpy painted(&plot, &DoubleBufferedWidget::painted);
        {
            RectangleOverlay patch(&plot, Qt::magenta);
            RectangleOverlay below(&plot, Qt::cyan, -1);
            RectangleOverlay screenOnly(&plot, Qt::yellow, 5, false);
            const QPointF middle = PlotMapping::of(plot).pixelOf({ 30, 30 });
            QCOMPARE(at(plot.grab(), middle), QColor(Qt::yellow));
            const std::unique_ptr<QPixmap> saved(plot.toPixmap());
            QCOMPARE(at(*saved, middle), QColor(Qt::magenta));
        }
        QCOMPARE(plot.grab().toImage(), before.toImage());
        QCOMPARE(painted.count(), 0); // the data were never drawn for it
    }

    void paintsIntoFilesOfMapsAndTurnedPlots()
    {
        XY2DGraphWidget map;
        fill(map);
        map.grab();
        RectangleOverlay onMap(&map, Qt::magenta);
        std::unique_ptr<QPixmap> saved(map.toPixmap());
        QCOMPARE(at(*saved, PlotMapping::of(map).pixelOf({ 30, 30 })), QColor(Qt::magenta));

        VectorGraphWidget turned;
        turned.m_doubleBuffered = true;
        turned.m_rotation = 90.0;
        turned.init("X", "Y", 100, 100, false, false);
        turned.resize(300, 400);
        turned.grab();
        RectangleOverlay onTurned(&turned, Qt::magenta);
        saved.reset(turned.toPixmap());
        const QPointF middle = PlotMapping::of(turned).pixelOf({ 30, 30 });
        QCOMPARE(at(*saved, middle), QColor(Qt::magenta));
        QCOMPARE(at(turned.grab(), middle), QColor(Qt::magenta));
    }

    void leavesPicturesAsTheyAreWithoutAny()
    {
        MultiVectorGraphWidget untouched;
        fill(untouched);
        MultiVectorGraphWidget used;
        fill(used);
        {
            const Recorder recorder(&used);
            const RectangleOverlay patch(&used, Qt::red);
            used.grab();
        }
        QCOMPARE(used.grab().toImage(), untouched.grab().toImage());
        const std::unique_ptr<QPixmap> a(used.toPixmap());
        const std::unique_ptr<QPixmap> b(untouched.toPixmap());
        QCOMPARE(a->toImage(), b->toImage());
    }
};

QTEST_MAIN(TestPlotObserver)
#include "tst_plotobserver.moc"
