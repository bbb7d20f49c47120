// Wheel, middle drag, double click and keys on plots, by real events, while data arrive.
#include "support/support.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/plotnavigator.h>

#include <QAction>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <memory>

using namespace tarnis;

namespace {

struct Range {
    double min = 0.0;
    double max = 0.0;
    bool automatic = false;
    double span() const { return max - min; }
    bool operator==(const Range& other) const { return min == other.min && max == other.max; }
};

Range rangeX(XYGraphWidget& plot)
{
    Range range;
    range.automatic = plot.getMinMaxX(range.min, range.max);
    return range;
}

Range rangeY(XYGraphWidget& plot)
{
    Range range;
    range.automatic = plot.getMinMaxY(range.min, range.max);
    return range;
}

void feed(MultiVectorGraphWidget& plot, double height = 100.0)
{
    QList<double> samples;
    for (int i = 0; i < 1000; ++i)
        samples.append(height * std::exp(-0.001 * (i - 300) * (i - 300)));
    plot.setData(0, samples, height);
    plot.resizeData(1);
    plot.refreshPixmap();
    plot.grab();
}

/// A plot with the keyboard, and a navigator.
template <typename Plot> struct Fixture {
    explicit Fixture(bool isAutomatic = true)
    {
        plot.m_doubleBuffered = true;
        plot.init("X", "Y", 1000, 1000, isAutomatic, isAutomatic);
        plot.resize(500, 400);
        plot.show();
        plot.activateWindow();
        if (!QTest::qWaitForWindowActive(&plot))
            qFatal("no window");
        navigator = new PlotNavigator(&plot);
        plot.setFocus();
    }
    QPointF pixel(double shareX, double shareY) const
    {
        const QRect rect = PlotMapping::of(plot).plotRect();
        return { rect.left() + shareX * rect.width(), rect.bottom() - shareY * rect.height() };
    }
    void wheel(int eighths, QPointF at, Qt::KeyboardModifiers modifiers = {}, quint64 timeMs = 0)
    {
        QWheelEvent event(
            at, plot.mapToGlobal(at), {}, { 0, eighths }, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        event.setTimestamp(timeMs);
        QCoreApplication::sendEvent(&plot, &event);
        QCoreApplication::processEvents();
    }
    void mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, plot.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&plot, &event);
        QCoreApplication::processEvents();
    }
    void drag(QPointF from, QPointF to)
    {
        mouse(QEvent::MouseButtonPress, from, Qt::MiddleButton, Qt::MiddleButton);
        mouse(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::MiddleButton);
        mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::MiddleButton);
        mouse(QEvent::MouseButtonRelease, to, Qt::MiddleButton, Qt::NoButton);
    }
    void key(int code, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&plot, Qt::Key(code), modifiers);
        QCoreApplication::processEvents();
    }

    Plot plot;
    PlotNavigator* navigator = nullptr;
};

using Curves = Fixture<MultiVectorGraphWidget>;
using Map = Fixture<XY2DGraphWidget>;

void feed(XY2DGraphWidget& map)
{
    map.initManualX(0, 100);
    map.initManualY(0, 100);
    for (int row = 0; row < 100; ++row)
        map.setData(row, QList<double>(100, row + 1.0), row + 1.0, false);
    map.refreshPixmap();
    map.grab();
}

} // namespace

class TestPlotNavigator : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void zoomsCurvesAlongX()
    {
        Curves test;
        feed(test.plot);
        const Range y = rangeY(test.plot);
        const QPointF at = test.pixel(0.25, 0.5);
        const double value = PlotMapping::of(test.plot).valueAt(at).x();
        test.wheel(120, at);
        const Range x = rangeX(test.plot);
        QVERIFY(std::abs(x.span() - 1000.0 / 1.2) < 1e-6);
        QVERIFY(std::abs((value - x.min) / x.span() - value / 1000.0) < 1e-9); // it stays under the pointer
        QVERIFY(!rangeX(test.plot).automatic);
        QVERIFY(rangeY(test.plot) == y);
        QVERIFY(rangeY(test.plot).automatic);
        test.wheel(0, at); // a touchpad that rests
        QVERIFY(std::abs(rangeX(test.plot).span() - 1000.0 / 1.2) < 1e-6);
    }

    void zoomsOtherAxesWithKeysAndOnStrips()
    {
        Curves test;
        feed(test.plot);
        const Range x = rangeX(test.plot);
        const Range y = rangeY(test.plot);
        test.wheel(120, test.pixel(0.5, 0.5), Qt::ShiftModifier);
        QVERIFY(rangeX(test.plot) == x);
        QCOMPARE(rangeY(test.plot).min, 0.0); // counts grow from 0
        QVERIFY(std::abs(rangeY(test.plot).max - y.max / 1.2) < 1e-6);
        test.wheel(-120, test.pixel(0.0, 0.5) - QPointF(10, 0)); // on the axis
        QVERIFY(rangeY(test.plot) == y || std::abs(rangeY(test.plot).max - y.max) < 1e-9);
        test.wheel(120, test.pixel(0.5, 0.0) + QPointF(0, 10));
        QVERIFY(rangeX(test.plot).span() < x.span());
    }

    void zoomsMapsAlongBothAxes()
    {
        Map test;
        feed(test.plot);
        test.wheel(120, test.pixel(0.5, 0.5));
        QVERIFY(std::abs(rangeX(test.plot).span() - 100.0 / 1.2) < 1e-6);
        QVERIFY(std::abs(rangeY(test.plot).span() - 100.0 / 1.2) < 1e-6);
    }

    void zoomsColoursOnTheBarAndItsHistogram()
    {
        Map test;
        new ColourLevels(&test.plot);
        feed(test.plot);
        const auto* const histogram = test.plot.findChild<QWidget*>(QStringLiteral("colourLevelStrip"));
        double before = 0.0;
        test.plot.getMaxZ(before);
        for (const QPointF at : { QPointF(test.plot.width() - 20, 200), QPointF(histogram->geometry().center()) }) {
            test.wheel(120, at);
            double after = 0.0;
            QVERIFY(!test.plot.getMaxZ(after));
            QVERIFY(std::abs(after - before / 1.2) < 1e-9);
            test.key(Qt::Key_Backspace);
            QVERIFY(test.plot.getMaxZ(after));
        }
    }

    void returnsToTheSameBits()
    {
        Map test;
        feed(test.plot);
        test.plot.onAutoScaleX(false);
        test.plot.setMinMaxX(0.1, 77.7);
        QCoreApplication::processEvents();
        const Range start = rangeX(test.plot);
        const QPointF at = test.pixel(0.3, 0.7);
        for (int i = 0; i < 3; ++i)
            test.wheel(120, at);
        for (int i = 0; i < 3; ++i)
            test.wheel(-120, at);
        QVERIFY(rangeX(test.plot) == start);
        test.wheel(120, at, {}, 10000);
        test.drag(at, at + QPointF(30, 20));
        QVERIFY(!(rangeX(test.plot) == start));
        test.navigator->goBack();
        test.navigator->goBack();
        QVERIFY(rangeX(test.plot) == start);
    }

    void movesWithTheMiddleButton()
    {
        Map test;
        feed(test.plot);
        test.wheel(480, test.pixel(0.5, 0.5));
        test.plot.grab();
        const QPointF from = test.pixel(0.5, 0.5);
        const QPointF to = from + QPointF(40, -30);
        const QPointF value = PlotMapping::of(test.plot).valueAt(from);
        const QCursor cursor = test.plot.cursor();
        test.drag(from, to);
        test.plot.grab();
        const QPointF moved = PlotMapping::of(test.plot).valueAt(to);
        QVERIFY(std::abs(moved.x() - value.x()) < 1e-9 && std::abs(moved.y() - value.y()) < 1e-9);
        QCOMPARE(test.plot.cursor().shape(), cursor.shape());
        QVERIFY(!test.plot.IsRoiEnabled());
    }

    void cancelsAMoveWithEscape()
    {
        Map test;
        feed(test.plot);
        test.wheel(480, test.pixel(0.5, 0.5));
        const Range start = rangeX(test.plot);
        test.mouse(QEvent::MouseButtonPress, test.pixel(0.5, 0.5), Qt::MiddleButton, Qt::MiddleButton);
        test.mouse(QEvent::MouseMove, test.pixel(0.7, 0.5), Qt::NoButton, Qt::MiddleButton);
        QVERIFY(!(rangeX(test.plot) == start));
        test.key(Qt::Key_Escape);
        QVERIFY(rangeX(test.plot) == start);
    }

    void fitsByDoubleClick()
    {
        Curves test;
        feed(test.plot);
        test.wheel(240, test.pixel(0.5, 0.5), Qt::ControlModifier);
        test.mouse(QEvent::MouseButtonDblClick, test.pixel(0.5, 0.0) + QPointF(0, 12), Qt::LeftButton, Qt::LeftButton);
        QVERIFY(rangeX(test.plot).automatic);
        QVERIFY(!rangeY(test.plot).automatic);
        test.mouse(QEvent::MouseButtonDblClick, test.pixel(0.5, 0.5), Qt::LeftButton, Qt::LeftButton);
        QVERIFY(rangeY(test.plot).automatic);
    }

    void makesOneEntryForOneGesture()
    {
        Curves test;
        feed(test.plot);
        for (int i = 0; i < 5; ++i)
            test.wheel(120, test.pixel(0.5, 0.5), {}, 1000 + 100 * static_cast<quint64>(i));
        test.wheel(120, test.pixel(0.5, 0.5), {}, 5000);
        test.drag(test.pixel(0.5, 0.5), test.pixel(0.4, 0.5));
        for (int i = 0; i < 4; ++i)
            test.key(Qt::Key_Right);
        int entries = 0;
        while (test.navigator->canGoBack()) {
            test.navigator->goBack();
            ++entries;
        }
        QCOMPARE(entries, 4);
        QVERIFY(rangeX(test.plot).automatic);
        const QSignalSpy message(test.navigator, &PlotNavigator::message);
        test.key(Qt::Key_Backspace);
        QCOMPARE(message.count(), 1);
    }

    void recordsThePlotsOwnTools()
    {
        Curves test;
        feed(test.plot);
        test.plot.onAutoScaleX(false);
        test.plot.setMinMaxX(100, 200);
        test.plot.refreshPixmap();
        QCoreApplication::processEvents();
        QVERIFY(test.navigator->canGoBack());
        test.key(Qt::Key_Left, Qt::AltModifier);
        QVERIFY(rangeX(test.plot).automatic);
        test.key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(rangeX(test.plot).min, 100.0);
    }

    void revertsAMistakenHome()
    {
        Curves test;
        feed(test.plot);
        test.wheel(360, test.pixel(0.5, 0.5));
        const Range zoomed = rangeX(test.plot);
        test.key(Qt::Key_Home);
        QVERIFY(rangeX(test.plot).automatic && !test.navigator->isHeld(Qt::Horizontal));
        test.key(Qt::Key_Backspace);
        QVERIFY(rangeX(test.plot) == zoomed);
        QVERIFY(test.navigator->isHeld(Qt::Horizontal));
        test.key(Qt::Key_Backspace); // to the view of the host
        QVERIFY(!test.navigator->isHeld(Qt::Horizontal));
    }

    void keepsTheViewWhileDataArrive()
    {
        Curves test;
        feed(test.plot);
        test.wheel(360, test.pixel(0.5, 0.5));
        const Range x = rangeX(test.plot);
        for (int i = 1; i <= 5; ++i)
            feed(test.plot, 100.0 + 50.0 * i);
        QCoreApplication::processEvents();
        QVERIFY(rangeX(test.plot) == x);
        QCOMPARE(rangeY(test.plot).max, 350.0); // still automatic
        QVERIFY(test.navigator->isHeld(Qt::Horizontal));
        QVERIFY(!test.navigator->isHeld(Qt::Vertical));
        test.navigator->goBack();
        QVERIFY(rangeX(test.plot).automatic);
        QVERIFY(!test.navigator->canGoBack()); // data made no entry
    }

    void keepsTheViewWhenRepliesSetTheAxisUpAgain()
    {
        Curves test;
        const auto reply = [&](double max) {
            test.plot.initManualX(0, max);
            feed(test.plot);
            QCoreApplication::processEvents();
        };
        reply(400);
        reply(500); // all of it, before the user zooms
        QCOMPARE(rangeX(test.plot).max, 500.0);
        test.wheel(360, test.pixel(0.5, 0.5));
        const Range x = rangeX(test.plot);
        for (int i = 0; i < 4; ++i)
            reply(500);
        reply(600);
        QVERIFY(rangeX(test.plot) == x);
        test.navigator->goBack();
        QCOMPARE(rangeX(test.plot).max, 600.0); // the current axis
        test.wheel(360, test.pixel(0.5, 0.5));
        reply(10); // does not overlap the previous view
        QCOMPARE(rangeX(test.plot).max, 10.0);
    }

    void resumesByTheMark()
    {
        Curves test;
        feed(test.plot);
        test.wheel(360, test.pixel(0.5, 0.5));
        test.plot.grab();
        const QPointF mark = test.pixel(1.0, 0.0) + QPointF(-12, -10);
        test.mouse(QEvent::MouseButtonPress, mark, Qt::LeftButton, Qt::LeftButton);
        QVERIFY(rangeX(test.plot).automatic);
    }

    void endsAtTheLimits()
    {
        Curves test;
        feed(test.plot);
        for (int i = 0; i < 100; ++i)
            test.wheel(1200, test.pixel(0.5, 0.5), Qt::ControlModifier);
        QVERIFY(std::abs(rangeX(test.plot).span() - 4.0) < 1e-6);
        QVERIFY(std::abs(rangeY(test.plot).span() - 1.0) < 1e-6);
        for (int i = 0; i < 100; ++i)
            test.wheel(-1200, test.pixel(0.5, 0.5), Qt::ControlModifier);
        QVERIFY(std::abs(rangeX(test.plot).span() - 1200.0) < 1e-6);
    }

    void switchesLogAndGrid()
    {
        Curves test;
        feed(test.plot);
        test.key(Qt::Key_L);
        test.plot.grab();
        QVERIFY(PlotMapping::of(test.plot).isLogY());
        test.key(Qt::Key_Backspace);
        QVERIFY(!PlotMapping::of(test.plot).isLogY());
    }

    void zoomsALogAxisFromItsFloor()
    {
        Curves test;
        feed(test.plot, 10000.0);
        test.plot.onLogScale(true);
        test.plot.grab();
        QCoreApplication::processEvents();
        const Range before = rangeY(test.plot);
        test.wheel(120, test.pixel(0.5, 0.5), Qt::ShiftModifier);
        QVERIFY(rangeY(test.plot).max < before.max);
        QVERIFY(std::isfinite(rangeY(test.plot).max));
    }

    void restoresWhatItChanged()
    {
        MultiVectorGraphWidget plot;
        plot.setMouseTracking(false);
        plot.setFocusPolicy(Qt::NoFocus);
        const QPixmap before = plot.grab();
        auto* const first = new PlotNavigator(&plot);
        auto* const second = new PlotNavigator(&plot);
        QVERIFY(plot.hasMouseTracking());
        QCOMPARE(plot.focusPolicy(), Qt::StrongFocus);
        delete first;
        QVERIFY(plot.hasMouseTracking());
        delete second;
        QVERIFY(!plot.hasMouseTracking());
        QCOMPARE(plot.focusPolicy(), Qt::NoFocus);
        QCOMPARE(plot.grab().toImage(), before.toImage());
    }

    void leavesTheWheelToAScrollArea()
    {
        QScrollArea area;
        auto* const plot = new MultiVectorGraphWidget;
        plot->m_doubleBuffered = true;
        plot->init("X", "Y", 1000, 1000, true, true);
        feed(*plot);
        plot->resize(800, 800);
        area.setWidget(plot);
        area.resize(300, 300);
        area.show();
        plot->grab();
        const PlotNavigator* const navigator = new PlotNavigator(plot);
        Q_UNUSED(navigator);
        const Range x = rangeX(*plot);
        const QPointF at = PlotMapping::of(*plot).plotRect().center();
        const auto wheel = [&](Qt::KeyboardModifiers modifiers) {
            QWheelEvent event(
                at, plot->mapToGlobal(at), {}, { 0, 120 }, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(plot, &event);
        };
        plot->clearFocus();
        wheel({});
        QVERIFY(rangeX(*plot) == x);
        wheel(Qt::ControlModifier);
        QVERIFY(!(rangeX(*plot) == x));
    }

    void survivesPlotsWithoutData_data()
    {
        QTest::addColumn<QList<double>>("samples");
        QTest::addColumn<QSize>("size");
        const double nan = std::nan("");
        QTest::newRow("none") << QList<double>() << QSize(300, 200);
        QTest::newRow("one") << QList<double> { 5 } << QSize(300, 200);
        QTest::newRow("all equal") << QList<double>(10, 0.0) << QSize(300, 200);
        QTest::newRow("not numbers") << QList<double>(10, nan) << QSize(300, 200);
        QTest::newRow("infinite") << QList<double>(10, INFINITY) << QSize(300, 200);
        QTest::newRow("without size") << QList<double> { 1, 2, 3 } << QSize(0, 0);
        QTest::newRow("smaller than its margins") << QList<double> { 1, 2, 3 } << QSize(10, 10);
    }
    void survivesPlotsWithoutData()
    {
        QFETCH(QList<double>, samples);
        QFETCH(QSize, size);
        Curves test;
        test.plot.setData(0, samples, samples.isEmpty() ? 0.0 : samples.first());
        test.plot.resize(size);
        test.plot.grab();
        for (const int steps : { 120, -120, 100000, -100000, 7 }) {
            for (const QPointF& at : { QPointF(5, 5), QPointF(150, 100), test.pixel(0.5, 0.5) })
                test.wheel(steps, at, Qt::ControlModifier);
            test.drag({ 150, 100 }, { 10, 10 });
            test.key(Qt::Key_Plus);
            test.plot.grab();
        }
        test.key(Qt::Key_Home);
        test.plot.grab();
    }

    void survivesTheEndOfThePlotInMidDrag()
    {
        auto test = std::make_unique<Curves>();
        feed(test->plot);
        test->mouse(QEvent::MouseButtonPress, test->pixel(0.5, 0.5), Qt::MiddleButton, Qt::MiddleButton);
        test->mouse(QEvent::MouseMove, test->pixel(0.6, 0.5), Qt::NoButton, Qt::MiddleButton);
        test.reset();
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(TestPlotNavigator)
#include "tst_plotnavigator.moc"
