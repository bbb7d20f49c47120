// Fingers on a touch screen, as the window system sends them: one acts as the mouse, two move and zoom.
#include "support/support.h"
#include "support/visibleplot.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotnavigator.h>

#include <QMenu>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QStyleHints>
#include <QTest>
#include <QTouchEvent>

#include <cmath>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

QPointingDevice* screen()
{
    static QPointingDevice* const device = QTest::createTouchDevice();
    return device;
}

/// The mouse events of a widget, as letters: m moves, M drags, P, R and D press, release and double click the left
/// button, p and r the right one.
class MouseLog : public QObject {
public:
    explicit MouseLog(QWidget& widget) { widget.installEventFilter(this); }

    QString text;

protected:
    bool eventFilter(QObject* /*object*/, QEvent* event) override
    {
        const auto* const mouse = dynamic_cast<const QMouseEvent*>(event);
        if (mouse == nullptr)
            return false;
        const bool isRight = mouse->button() == Qt::RightButton;
        if (event->type() == QEvent::MouseMove)
            text += mouse->buttons() == Qt::NoButton ? u'm' : u'M';
        else if (event->type() == QEvent::MouseButtonPress)
            text += isRight ? u'p' : u'P';
        else if (event->type() == QEvent::MouseButtonRelease)
            text += isRight ? u'r' : u'R';
        else if (event->type() == QEvent::MouseButtonDblClick)
            text += u'D';
        return false;
    }
};

struct View {
    AxisRange x;
    AxisRange y;

    friend bool operator==(const View&, const View&) = default;
};

bool isNear(double a, double b)
{
    return std::abs(a - b) <= 1e-6 * std::max(std::abs(a), std::abs(b));
}

/// Whether two values are at the same pixel, except for a plot rectangle that moves with the width of labels.
bool isUnder(double a, double b, AxisRange range)
{
    return std::abs(a - b) <= 0.1 * std::abs(range.max - range.min);
}

/// A plot that is shown, with a navigator, and fingers on it.
class TouchDriver {
public:
    explicit TouchDriver(const QString& kind)
    {
        if (kind == QStringLiteral("curves"))
            makeCurves();
        else
            makeMap();
        if (kind == QStringLiteral("turned map"))
            plot->m_rotation = 90;
        showActive(*plot, { 600, 500 });
        plot->onAutoScaleX(true);
        plot->onAutoScaleY(true);
        plot->grab(); // a map's bar requests its space while it is painted
        navigator = new PlotNavigator(plot.get());
    }

    View view() const
    {
        View view;
        plot->getMinMaxX(view.x.min, view.x.max);
        plot->getMinMaxY(view.y.min, view.y.max);
        return view;
    }
    QPoint middle() const
    {
        const PlotMapping mapping = PlotMapping::of(*plot);
        return mapping.fromFrame(QRectF(mapping.frameRect()).center()).toPoint();
    }
    QPointF valueAt(const QPoint& pixel) const
    {
        const PlotMapping mapping = PlotMapping::of(*plot);
        return mapping.valueAt(pixel);
    }
    void press(int finger, const QPoint& at) { QTest::touchEvent(plot.get(), screen()).press(finger, at); }
    void move(int finger, const QPoint& to) { QTest::touchEvent(plot.get(), screen()).move(finger, to); }
    void release(int finger, const QPoint& at) { QTest::touchEvent(plot.get(), screen()).release(finger, at); }
    void tap(const QPoint& at)
    {
        press(0, at);
        release(0, at);
    }
    void pressBoth(const QPoint& a, const QPoint& b)
    {
        press(0, a);
        QTest::touchEvent(plot.get(), screen()).move(0, a).press(1, b);
    }
    void moveBoth(const QPoint& a, const QPoint& b)
    {
        QTest::touchEvent(plot.get(), screen()).move(0, a).move(1, b);
        QCoreApplication::processEvents();
    }
    void releaseBoth(const QPoint& a, const QPoint& b)
    {
        QTest::touchEvent(plot.get(), screen()).release(0, a).move(1, b);
        QTest::touchEvent(plot.get(), screen()).release(1, b);
        QCoreApplication::processEvents();
    }

    std::unique_ptr<XYGraphWidget> plot;
    PlotNavigator* navigator = nullptr;

private:
    void makeMap()
    {
        auto map = std::make_unique<XY2DGraphWidget>();
        map->init(QStringLiteral("X"), QStringLiteral("Y"), 1000, 1000, true, true);
        map->initManualX(0, 1000);
        map->initManualY(0, 1000);
        for (int row = 0; row < 1000; ++row)
            map->setData(row, QList<double>(1000, row + 1.0), row + 1.0, false);
        plot = std::move(map);
    }
    void makeCurves()
    {
        auto curves = std::make_unique<MultiVectorGraphWidget>();
        curves->init(QStringLiteral("X"), QStringLiteral("Y"), 1000, 100, true, true);
        curves->initManualX(0, 1000);
        curves->setData(0, QList<double>(1000, 90.0), 90);
        curves->resizeData(1);
        plot = std::move(curves);
    }
};

void addKinds()
{
    QTest::addColumn<QString>("kind");
    for (const char* const kind : { "curves", "map", "turned map" })
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

} // namespace

class TestPlotTouch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // A slow machine must not turn a drag into a press that opens the menu.
        QGuiApplication::styleHints()->setMousePressAndHoldInterval(600000);
    }

    void twoFingersZoomAboutTheirMiddle_data() { addKinds(); }
    void twoFingersZoomAboutTheirMiddle()
    {
        QFETCH(const QString, kind);
        TouchDriver driver(kind);
        MouseLog mouse(*driver.plot);
        const View before = driver.view();
        const QPoint at = driver.middle() + QPoint(30, 20);
        const QPointF value = driver.valueAt(at);
        driver.pressBoth(at - QPoint(50, 0), at + QPoint(50, 0));
        driver.moveBoth(at - QPoint(55, 0), at + QPoint(55, 0)); // a driver that is not steady
        QCOMPARE(driver.view(), before);
        driver.moveBoth(at - QPoint(90, 0), at + QPoint(90, 0));
        driver.moveBoth(at - QPoint(120, 0), at + QPoint(120, 0));
        driver.releaseBoth(at - QPoint(120, 0), at + QPoint(120, 0));
        // 2.4 times as far apart, beyond the 1.2 times from which it is a zoom
        const View after = driver.view();
        QVERIFY(isNear(after.x.max - after.x.min, (before.x.max - before.x.min) / 2.0));
        QVERIFY(isNear(after.y.max - after.y.min, (before.y.max - before.y.min) / 2.0));
        QVERIFY(isUnder(driver.valueAt(at).x(), value.x(), before.x));
        if (kind == QStringLiteral("curves"))
            QCOMPARE(after.y.min, 0.0);
        else
            QVERIFY(isUnder(driver.valueAt(at).y(), value.y(), before.y));
        QCOMPARE(mouse.text, QString());

        QVERIFY(driver.navigator->canGoBack());
        driver.navigator->goBack();
        driver.plot->grab(); // fits the automatic axis
        QCOMPARE(driver.view(), before);
        QVERIFY(!driver.navigator->canGoBack()); // one gesture, one entry
    }

    void fingersThatApproachZoomOut()
    {
        TouchDriver driver(QStringLiteral("map"));
        const QPoint at = driver.middle();
        driver.navigator->zoomIn();
        driver.navigator->zoomIn();
        driver.navigator->zoomIn();
        const View before = driver.view();
        driver.pressBoth(at - QPoint(0, 120), at + QPoint(0, 120));
        driver.moveBoth(at - QPoint(0, 80), at + QPoint(0, 80));
        driver.releaseBoth(at - QPoint(0, 80), at + QPoint(0, 80));
        const View after = driver.view();
        QVERIFY(isNear(after.x.max - after.x.min, (before.x.max - before.x.min) * 1.25)); // 1.5 / 1.2
    }

    void twoFingersMoveThePlot_data() { addKinds(); }
    void twoFingersMoveThePlot()
    {
        QFETCH(const QString, kind);
        TouchDriver driver(kind);
        const View before = driver.view();
        const QPoint at = driver.middle();
        const QPointF value = driver.valueAt(at);
        const QPoint by(40, 25);
        driver.pressBoth(at - QPoint(60, 0), at + QPoint(60, 0));
        driver.moveBoth(at - QPoint(60, 0) + by / 2, at + QPoint(60, 0) + by / 2);
        driver.moveBoth(at - QPoint(60, 0) + by, at + QPoint(60, 0) + by);
        const View moved = driver.view();
        QVERIFY(isNear(moved.x.max - moved.x.min, before.x.max - before.x.min));
        QVERIFY(moved.x != before.x && moved.y != before.y);
        const QPointF under = driver.valueAt(at + by);
        QVERIFY(isUnder(under.x(), value.x(), before.x) && isUnder(under.y(), value.y(), before.y));
        driver.moveBoth(at - QPoint(60, 0), at + QPoint(60, 0));
        QCOMPARE(driver.view(), before); // equal to the last bit
        driver.moveBoth(at - QPoint(60, 0) + by, at + QPoint(60, 0) + by);
        driver.releaseBoth(at - QPoint(60, 0) + by, at + QPoint(60, 0) + by);
        QCOMPARE(driver.view(), moved);
        driver.navigator->goBack();
        driver.plot->grab(); // fits the automatic axis
        QCOMPARE(driver.view(), before);
        QVERIFY(!driver.navigator->canGoBack());
    }

    void twoFingersOnAnAxisKeepTheOther()
    {
        TouchDriver driver(QStringLiteral("curves"));
        const View before = driver.view();
        const QPoint at(driver.middle().x(), PlotMapping::of(*driver.plot).plotRect().bottom() + 8);
        driver.pressBoth(at - QPoint(50, 0), at + QPoint(50, 0));
        driver.moveBoth(at - QPoint(120, 0), at + QPoint(120, 0));
        driver.releaseBoth(at - QPoint(120, 0), at + QPoint(120, 0));
        QVERIFY(isNear(driver.view().x.max - driver.view().x.min, (before.x.max - before.x.min) / 2.0));
        QCOMPARE(driver.view().y, before.y);
    }

    void aCancelledGestureLeavesNothing()
    {
        TouchDriver driver(QStringLiteral("map"));
        const View before = driver.view();
        const QPoint at = driver.middle();
        driver.pressBoth(at - QPoint(50, 0), at + QPoint(50, 0));
        driver.moveBoth(at - QPoint(100, 0), at + QPoint(100, 0));
        QVERIFY(driver.view() != before);
        QTouchEvent cancel(QEvent::TouchCancel, screen());
        QCoreApplication::sendEvent(driver.plot.get(), &cancel);
        QCOMPARE(driver.view(), before);
        QVERIFY(!driver.navigator->canGoBack());
        driver.releaseBoth(at, at);
        QCOMPARE(driver.view(), before);
    }

    void oneFingerIsTheMouse()
    {
        TouchDriver driver(QStringLiteral("curves"));
        MouseLog mouse(*driver.plot);
        const QPoint at = driver.middle();
        driver.press(0, at);
        QCOMPARE(mouse.text, QString()); // a second finger may follow
        driver.move(0, at + QPoint(40, 0));
        driver.move(0, at + QPoint(80, 0));
        driver.release(0, at + QPoint(80, 0));
        QCOMPARE(mouse.text, QStringLiteral("mPMMR"));
        mouse.text.clear();
        driver.tap(at - QPoint(100, 0));
        QCOMPARE(mouse.text, QStringLiteral("mPR"));
        mouse.text.clear();
        driver.tap(at + QPoint(100, 0));
        QCOMPARE(mouse.text, QStringLiteral("mPR")); // too far away for a double click
        mouse.text.clear();
        driver.tap(at + QPoint(100, 0));
        QCOMPARE(mouse.text, QStringLiteral("mDR"));
        QVERIFY(!driver.navigator->canGoBack());
    }

    void aSecondFingerDoesNotDisturbADrag()
    {
        TouchDriver driver(QStringLiteral("curves"));
        const View before = driver.view();
        MouseLog mouse(*driver.plot);
        const QPoint at = driver.middle();
        driver.press(0, at);
        driver.move(0, at + QPoint(40, 0));
        QTest::touchEvent(driver.plot.get(), screen()).move(0, at + QPoint(40, 0)).press(1, at + QPoint(100, 0));
        driver.moveBoth(at + QPoint(60, 0), at + QPoint(200, 0));
        driver.releaseBoth(at + QPoint(60, 0), at + QPoint(200, 0));
        QVERIFY(mouse.text.startsWith(QStringLiteral("mPM")) && mouse.text.endsWith(QStringLiteral("MR")));
        QVERIFY(mouse.text.count(u'P') == 1 && mouse.text.count(u'R') == 1);
        QCOMPARE(driver.view(), before);
        mouse.text.clear();
        driver.tap(at);
        QCOMPARE(mouse.text, QStringLiteral("mPR")); // works again
    }

    void aFingerThatRestsOpensTheMenu()
    {
        TouchDriver driver(QStringLiteral("curves"));
        MouseLog mouse(*driver.plot);
        QGuiApplication::styleHints()->setMousePressAndHoldInterval(1);
        driver.press(0, driver.middle());
        TRY_VERIFY(driver.plot->findChild<QMenu*>() != nullptr && driver.plot->findChild<QMenu*>()->isVisible());
        QVERIFY(mouse.text.startsWith(u'p'));
        driver.plot->findChild<QMenu*>()->close();
        driver.release(0, driver.middle());
        QVERIFY(!mouse.text.contains(u'P'));
    }

    void aTouchpadIsLeftToQt()
    {
        static QPointingDevice* const pad = QTest::createTouchDevice(QInputDevice::DeviceType::TouchPad);
        TouchDriver driver(QStringLiteral("map"));
        const View before = driver.view();
        const QPoint at = driver.middle();
        QTest::touchEvent(driver.plot.get(), pad).press(0, at - QPoint(50, 0)).press(1, at + QPoint(50, 0));
        QTest::touchEvent(driver.plot.get(), pad).move(0, at - QPoint(120, 0)).move(1, at + QPoint(120, 0));
        QTest::touchEvent(driver.plot.get(), pad).release(0, at).release(1, at);
        QCOMPARE(driver.view(), before);
    }

    void attachesAndDetachesInMidGesture()
    {
        TouchDriver driver(QStringLiteral("map"));
        const QPoint at = driver.middle();
        QVERIFY(driver.plot->testAttribute(Qt::WA_AcceptTouchEvents));
        driver.pressBoth(at - QPoint(50, 0), at + QPoint(50, 0));
        driver.moveBoth(at - QPoint(80, 0), at + QPoint(80, 0));
        delete driver.navigator;
        QVERIFY(!driver.plot->testAttribute(Qt::WA_AcceptTouchEvents));
        const View before = driver.view();
        driver.moveBoth(at - QPoint(120, 0), at + QPoint(120, 0));
        driver.navigator = new PlotNavigator(driver.plot.get());
        driver.moveBoth(at - QPoint(150, 0), at + QPoint(150, 0));
        driver.releaseBoth(at - QPoint(150, 0), at + QPoint(150, 0));
        QCOMPARE(driver.view(), before);
    }

    void survivesThePlotInMidGesture()
    {
        TouchDriver driver(QStringLiteral("curves"));
        const QPoint at = driver.middle();
        driver.press(0, at);
        QObject::connect(
            driver.navigator, &PlotNavigator::historyChanged, driver.plot.get(), [&] { driver.plot.reset(); });
        QTest::touchEvent(driver.plot.get(), screen()).move(0, at).press(1, at + QPoint(90, 0));
        driver.moveBoth(at - QPoint(60, 0), at + QPoint(150, 0));
        // The release ends the gesture, whose entry destroys the plot.
        if (driver.plot != nullptr)
            QTest::touchEvent(driver.plot.get(), screen()).release(0, at).move(1, at);
        QVERIFY(driver.plot == nullptr);
    }
};

QTEST_MAIN(TestPlotTouch)
#include "tst_plottouch.moc"
