// Events of a plot for its host: ranges, clicks, the place under the pointer, the nearest curve.
#include "support/support.h"

#include <tarnis/plots/curvenames.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotevents.h>

#include <QAction>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;

namespace {

void show(XYGraphWidget& plot)
{
    plot.m_doubleBuffered = true;
    plot.resize(500, 400);
    plot.show();
    plot.grab();
}

QPointF pixelOf(const XYGraphWidget& plot, double x, double y)
{
    return PlotMapping::of(plot).pixelOf({ x, y });
}

void send(XYGraphWidget& plot, QEvent::Type type, const QPointF& at, Qt::MouseButton button = Qt::LeftButton)
{
    const bool isDown = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
    QMouseEvent event(type, at, plot.mapToGlobal(at), type == QEvent::MouseMove ? Qt::NoButton : button,
        isDown ? button : Qt::NoButton, Qt::ControlModifier);
    QCoreApplication::sendEvent(&plot, &event);
}

void click(XYGraphWidget& plot, const QPointF& at, Qt::MouseButton button = Qt::LeftButton)
{
    send(plot, QEvent::MouseButtonPress, at, button);
    send(plot, QEvent::MouseButtonRelease, at, button);
}

/// Three flat curves at 10, 50 and 80 of 100, the second hidden, on ten bins.
void fill(MultiVectorGraphWidget& plot)
{
    plot.init("Channel", "Counts", 10, 100, false, false);
    plot.m_groupSize = 1;
    plot.m_groupName = "Detector";
    int index = 0;
    for (const double value : { 10.0, 50.0, 80.0 })
        plot.setData(index++, QList<double>(10, value), value);
    plot.resizeData(3);
    plot.setEnable(1, false);
    plot.setMinMaxX(0, 10);
    plot.setMinMaxY(0, 100);
}

} // namespace

class TestPlotEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reportsClicksWithTheNearestSeries()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        setSeriesName(plot, 2, "Ge 3");
        auto* const events = new PlotEvents(&plot);
        QSignalSpy clicked(events, &PlotEvents::clicked);
        show(plot);
        click(plot, pixelOf(plot, 3.4, 80.0) + QPointF(0, 5));
        QCOMPARE(clicked.size(), 1);
        const auto point = clicked.first().first().value<PlotPoint>();
        QCOMPARE(point.series, 2);
        QCOMPARE(point.seriesName, QStringLiteral("Ge 3"));
        QCOMPARE(point.column, 3);
        QCOMPARE(point.row, -1);
        QCOMPARE(point.sample, 80.0);
        QVERIFY(std::abs(point.distance - 5.0) < 1.0);
        QVERIFY(std::abs(point.value.x() - 3.4) < 0.1);
        QCOMPARE(clicked.first().at(1).value<Qt::KeyboardModifiers>(), Qt::ControlModifier);

        QCOMPARE(events->at(pixelOf(plot, 3.4, 12)).seriesName, QStringLiteral("Detector 0"));
        const PlotPoint hidden = events->at(pixelOf(plot, 3.4, 50));
        QCOMPARE(hidden.series, -1);
        QVERIFY(std::isnan(hidden.sample));
        const QPointF sample = pixelOf(plot, 3.4, 80.0);
        QCOMPARE(events->at(sample + QPointF(0, events->reach() - 2)).series, 2);
        QCOMPARE(events->at(sample + QPointF(0, events->reach() + 2)).series, -1);
        events->setReach(1000);
        QCOMPARE(events->at(pixelOf(plot, 3.4, 48)).series, 2);
    }

    void reportsNoClickOfAnotherKind()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        auto* const events = new PlotEvents(&plot);
        QSignalSpy clicked(events, &PlotEvents::clicked);
        QSignalSpy doubled(events, &PlotEvents::doubleClicked);
        show(plot);
        const QPointF inside = pixelOf(plot, 5, 50);
        click(plot, QPointF(2, 2)); // beside the axes
        click(plot, inside, Qt::MiddleButton);
        send(plot, QEvent::MouseButtonPress, inside);
        send(plot, QEvent::MouseButtonRelease, inside + QPointF(60, 0)); // a drag
        send(plot, QEvent::MouseButtonRelease, inside); // without a press
        QCOMPARE(clicked.size(), 0);
        click(plot, inside);
        send(plot, QEvent::MouseButtonDblClick, inside);
        send(plot, QEvent::MouseButtonRelease, inside);
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(doubled.size(), 1);
        const QList<QAction*> actions = plot.actions();
        const auto zoomIn = std::find_if(
            actions.begin(), actions.end(), [](const QAction* action) { return action->text() == "Zoom In"; });
        QVERIFY(zoomIn != actions.end());
        (*zoomIn)->trigger(); // a tool of the menu uses the clicks
        click(plot, inside);
        QCOMPARE(clicked.size(), 1);
    }

    void reportsThePlaceUnderThePointer()
    {
        VectorGraphWidget plot;
        plot.init("Channel", "Counts", 4, 10, false, false);
        plot.setData({ 1, std::nan(""), 3, 4 });
        plot.setMinMaxX(0, 4);
        plot.setMinMaxY(0, 10);
        auto* const events = new PlotEvents(&plot);
        show(plot);
        send(plot, QEvent::MouseMove, pixelOf(plot, 2.5, 3)); // without a receiver
        QList<PlotPoint> points;
        connect(events, &PlotEvents::hovered, this, [&](const PlotPoint& point) { points.append(point); });
        QSignalSpy ended(events, &PlotEvents::hoverEnded);
        send(plot, QEvent::MouseMove, pixelOf(plot, 2.5, 3));
        QCOMPARE(points.size(), 1);
        QCOMPARE(points.first().series, 0);
        QCOMPARE(points.first().sample, 3.0);
        send(plot, QEvent::MouseMove, QPointF(1, 1));
        send(plot, QEvent::MouseMove, QPointF(1, 2));
        QCOMPARE(ended.size(), 1);
        QCOMPARE(points.size(), 1);
        QCOMPARE(events->at(pixelOf(plot, 1.5, 9)).series, -1);
        plot.setLogScaleY(true);
        plot.grab();
        QCOMPARE(events->at(pixelOf(plot, 3.4, 4)).sample, 4.0);
    }

    void readsMapsAndEmptyPlots()
    {
        XY2DGraphWidget map;
        map.init("X", "Y", 4, 2, true, true);
        map.initManualX(0, 4);
        map.initManualY(0, 2);
        auto* const events = new PlotEvents(&map);
        QCOMPARE(events->at({ 10, 10 }).column, -1); // never painted
        map.setData(0, { 0, 0, 0, 0 }, 0, false);
        map.setData(1, { 0, 7 }, 7, false); // a short row
        show(map);
        QCOMPARE(events->at(pixelOf(map, 1.5, 1.5)).sample, 7.0);
        QCOMPARE(events->at(pixelOf(map, 1.5, 1.5)).row, 1);
        QCOMPARE(events->at(pixelOf(map, 1.5, 1.5)).series, -1);
        QVERIFY(std::isnan(events->at(pixelOf(map, 3.5, 1.5)).sample));
        MultiVectorGraphWidget empty;
        auto* const none = new PlotEvents(&empty);
        show(empty);
        QCOMPARE(none->at({ 200, 200 }).series, -1);
        PlotEvents nowhere(nullptr);
        QCOMPARE(nowhere.at({ 1, 1 }).column, -1);
    }

    void reportsRangesOnce()
    {
        MultiVectorGraphWidget plot;
        fill(plot);
        auto* const events = new PlotEvents(&plot);
        show(plot);
        QCoreApplication::processEvents();
        QList<AxisRange> xs;
        connect(events, &PlotEvents::rangeChanged, this, [&](const AxisRange& x) { xs.append(x); });
        plot.setMinMaxX(1, 5);
        plot.setMinMaxX(2, 6);
        plot.setMinMaxY(0, 50);
        QVERIFY(xs.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(xs.size(), 1);
        QVERIFY(xs.first() == (AxisRange { 2, 6 }));
        plot.setEnable(0, false);
        QCoreApplication::processEvents();
        QCOMPARE(xs.size(), 1);
    }

    void endsWithThePlot()
    {
        auto plot = std::make_unique<MultiVectorGraphWidget>();
        const QPointer<PlotEvents> events(new PlotEvents(plot.get()));
        plot.reset();
        QVERIFY(!events);
    }
};

QTEST_MAIN(TestPlotEvents)
#include "tst_plotevents.moc"
