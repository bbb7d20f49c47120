// Every binding of the navigator, by events as the window system sends them, on every kind of plot: one curve, many, a
// map, turned plots, a logarithmic axis, reversed axes and a second scale.
#include "support/support.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotstyle.h>

#include <QLineEdit>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QPushButton>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <cmath>
#include <memory>

using namespace tarnis;

namespace {

constexpr int notch = 120;

double energy(double channel, void* /*data*/)
{
    return 3.0 + 0.5 * channel;
}

double channelOf(double value, void* /*data*/)
{
    return (value - 3.0) / 0.5;
}

struct View {
    double minX = 0.0;
    double maxX = 0.0;
    double minY = 0.0;
    double maxY = 0.0;
    bool autoX = false;
    bool autoY = false;

    friend bool operator==(const View&, const View&) = default;
    double spanX() const { return maxX - minX; }
    double spanY() const { return maxY - minY; }
};

bool isNear(double a, double b, double scale)
{
    return std::abs(a - b) <= 1e-9 * std::abs(scale);
}

/// How many representable numbers of the size of the larger end lie between two ends.
double ulps(double a, double b, double end)
{
    return std::abs(a - b) / (std::nextafter(std::abs(end), INFINITY) - std::abs(end));
}

/// A plot that is shown, with the keyboard and a navigator.
class GestureDriver {
public:
    explicit GestureDriver(const QString& kind)
    {
        if (kind.contains(QStringLiteral("map")))
            makeMap();
        else
            makeCurves(kind);
        if (kind.contains(QStringLiteral("turned")))
            plot->m_rotation = kind.contains(QStringLiteral("left")) ? -90 : 90;
        if (kind == QStringLiteral("second scale"))
            plot->setFuncX2Tick(energy, channelOf, nullptr);
        plot->m_doubleBuffered = true;
        plot->resize(500, 450);
        plot->show();
        plot->activateWindow();
        if (!QTest::qWaitForWindowActive(plot.get()))
            qFatal("no window");
        plot->setFocus();
        if (kind == QStringLiteral("reversed")) {
            plot->onAutoScaleX(false);
            plot->setMinMaxX(900.0, 100.0);
        }
        plot->refreshPixmap();
        plot->grab();
        plot->grab(); // a map's bar asks for its room while it is painted
        navigator = new PlotNavigator(plot.get());
    }

    bool isMap() const { return qobject_cast<const XY2DGraphWidget*>(plot.get()) != nullptr; }
    View view() const
    {
        View view;
        view.autoX = plot->getMinMaxX(view.minX, view.maxX);
        view.autoY = plot->getMinMaxY(view.minY, view.maxY);
        return view;
    }
    PlotMapping mapping() const { return PlotMapping::of(*plot); }
    /// A pixel of the widget by its share of the plot rectangle along both axes.
    QPointF pixel(double shareX, double shareY) const
    {
        const QRect rect = mapping().frameRect();
        return mapping().fromFrame({ rect.left() + shareX * rect.width(), rect.bottom() - shareY * rect.height() });
    }
    void wheel(QPointF at, int eighths, Qt::KeyboardModifiers modifiers = {}, QPoint pixels = {})
    {
        QWheelEvent event(
            at, plot->mapToGlobal(at), pixels, { 0, eighths }, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        event.setTimestamp(timeMs);
        send(event);
    }
    void pinch(QPointF at, double change)
    {
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, at, at,
            plot->mapToGlobal(at), change, {}, 0);
        send(event);
    }
    void mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, plot->mapToGlobal(at), button, buttons, Qt::NoModifier);
        send(event);
    }
    void click(QPointF at, Qt::MouseButton button)
    {
        mouse(QEvent::MouseButtonPress, at, button, button);
        mouse(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(plot.get(), key, modifiers);
        QCoreApplication::processEvents();
    }

    std::unique_ptr<XYGraphWidget> plot;
    PlotNavigator* navigator = nullptr;
    quint64 timeMs = 0; // of the next wheel events

private:
    void send(QEvent& event)
    {
        QCoreApplication::sendEvent(plot.get(), &event);
        QCoreApplication::processEvents();
    }
    void makeMap()
    {
        auto map = std::make_unique<XY2DGraphWidget>();
        map->init(QStringLiteral("X"), QStringLiteral("Y"), 1000, 100, true, true);
        map->initManualX(0, 1000);
        map->initManualY(0, 100);
        for (int row = 0; row < 100; ++row)
            map->setData(row, QList<double>(1000, row + 1.0), row + 1.0, false);
        plot = std::move(map);
    }
    void makeCurves(const QString& kind)
    {
        QList<double> samples;
        for (int i = 0; i < 1000; ++i)
            samples.append(std::floor(90.0 * std::exp(-0.001 * (i - 300) * (i - 300))) + 1.0);
        if (kind == QStringLiteral("one curve")) {
            auto curve = std::make_unique<VectorGraphWidget>();
            curve->init(QStringLiteral("X"), QStringLiteral("Y"), 1000, 100, true, true);
            curve->initManualX(0, 1000);
            curve->setData(samples);
            curve->setMaxValue(91);
            plot = std::move(curve);
            return;
        }
        auto curves = std::make_unique<MultiVectorGraphWidget>();
        curves->init(QStringLiteral("X"), QStringLiteral("Y"), 1000, 100, true, true);
        curves->initManualX(0, 1000);
        curves->setData(0, samples, 91);
        curves->resizeData(1);
        curves->setLogScaleY(kind == QStringLiteral("logarithmic"));
        plot = std::move(curves);
    }
};

} // namespace

class TestPlotGestures : public QObject {
    Q_OBJECT

private:
    static void addKinds()
    {
        QTest::addColumn<QString>("kind");
        for (const char* const kind : { "one curve", "curves", "map", "turned curves", "turned left curves",
                 "turned map", "logarithmic", "reversed", "second scale" })
            QTest::newRow(kind) << kind;
    }

private Q_SLOTS:
    void notchesBackReturnToTheViewAlsoLater()
    {
        GestureDriver driver(QStringLiteral("curves"));
        const PlotStyle style(driver.plot.get()); // its labels have room by their width
        driver.plot->grab();
        const View start = driver.view();
        const QPointF at = driver.pixel(0.3, 0.5);
        driver.wheel(at, 3 * notch);
        const int left = driver.mapping().plotRect().left();
        driver.plot->onAutoScaleY(false);
        driver.plot->setMinMaxY(-123456.0, 654321.0); // longer labels move the plot rectangle
        driver.plot->refreshPixmap();
        driver.plot->grab();
        QVERIFY(driver.mapping().plotRect().left() != left);
        driver.timeMs += 60000;
        driver.wheel(at, -3 * notch);
        QCOMPARE(driver.view().minX, start.minX);
        QCOMPARE(driver.view().maxX, start.maxX);
    }

    void theWheelTakesTheKeyboard()
    {
        QWidget window;
        QPushButton button(&window);
        QLineEdit edit(&window);
        GestureDriver driver(QStringLiteral("curves"));
        driver.plot->setParent(&window);
        window.resize(500, 450);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        driver.plot->show();
        edit.setFocus();
        driver.wheel(driver.pixel(0.5, 0.5), notch);
        QVERIFY(edit.hasFocus()); // the user types
        button.setFocus();
        driver.wheel(driver.pixel(0.5, 0.5), notch);
        QVERIFY(driver.plot->hasFocus());
    }

    void wheelKeepsTheValueUnderThePointer_data() { addKinds(); }
    void wheelKeepsTheValueUnderThePointer()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        const QPointF at = driver.pixel(0.3, 0.6);
        const QPointF value = driver.mapping().valueAt(at);
        const View before = driver.view();
        driver.wheel(at, notch);
        const View after = driver.view();
        QVERIFY(isNear(after.spanX(), before.spanX() / 1.2, before.spanX()));
        QVERIFY(isNear(after.minX + 0.3 * after.spanX(), value.x(), before.spanX()));
        QVERIFY(!after.autoX);
        if (driver.isMap())
            QVERIFY(isNear(after.spanY(), before.spanY() / 1.2, before.spanY()));
        else
            QVERIFY(after.minY == before.minY && after.maxY == before.maxY);
        driver.wheel(at, -notch);
        QCOMPARE(driver.view().minX, before.minX); // to the bit
        QCOMPARE(driver.view().maxX, before.maxX);
    }

    void modifiersAndStripsChooseTheAxis_data() { addKinds(); }
    void modifiersAndStripsChooseTheAxis()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        const View start = driver.view();
        driver.wheel(driver.pixel(0.5, 0.5), notch, Qt::ShiftModifier);
        View now = driver.view();
        QCOMPARE(now.minX, start.minX);
        QVERIFY(std::abs(now.spanY()) < std::abs(start.spanY()));
        driver.key(Qt::Key_Backspace);
        driver.wheel(driver.pixel(0.5, 0.5), notch, Qt::ControlModifier);
        now = driver.view();
        QVERIFY(std::abs(now.spanY()) < std::abs(start.spanY()) && std::abs(now.spanX()) < std::abs(start.spanX()));
        driver.key(Qt::Key_Backspace);
        driver.wheel(driver.pixel(0.5, -0.03), notch); // below the plot
        now = driver.view();
        QVERIFY(std::abs(now.spanX()) < std::abs(start.spanX()));
        QCOMPARE(now.spanY(), start.spanY());
        driver.key(Qt::Key_Backspace);
        driver.wheel(driver.pixel(-0.03, 0.5), notch); // left of it
        now = driver.view();
        QCOMPARE(now.spanX(), start.spanX());
        QVERIFY(std::abs(now.spanY()) < std::abs(start.spanY()));
    }

    void touchpadsZoomByTheWay_data() { addKinds(); }
    void touchpadsZoomByTheWay()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        const View start = driver.view();
        const QPointF at = driver.pixel(0.4, 0.4);
        for (int i = 0; i < 12; ++i) // parts of a notch, with pixels beside them
            driver.wheel(at, notch / 12, {}, { 0, 3 });
        QVERIFY(isNear(driver.view().spanX(), start.spanX() / 1.2, start.spanX()));
        for (int i = 0; i < 12; ++i)
            driver.wheel(at, -notch / 12, {}, { 0, -3 });
        QCOMPARE(driver.view().minX, start.minX);
        driver.wheel(at, 0, {}, { 0, 10 }); // a device that counts pixels only: ten are a notch
        QVERIFY(isNear(driver.view().spanX(), start.spanX() / 1.2, start.spanX()));
        const View zoomed = driver.view();
        driver.wheel(at, 0);
        QCOMPARE(driver.view(), zoomed); // at rest
    }

    void pinchZoomsBothAxes_data() { addKinds(); }
    void pinchZoomsBothAxes()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        const View start = driver.view();
        driver.pinch(driver.pixel(0.5, 0.5), 0.2);
        const View now = driver.view();
        QVERIFY(isNear(now.spanX(), start.spanX() / 1.2, start.spanX()));
        QVERIFY(std::abs(now.spanY()) < std::abs(start.spanY()));
        for (const double odd : { -1.0, -7.0, std::nan(""), static_cast<double>(INFINITY) })
            driver.pinch(driver.pixel(0.5, 0.5), odd);
        QCOMPARE(driver.view(), now);
        driver.key(Qt::Key_Backspace);
        QCOMPARE(driver.view().spanX(), start.spanX());
    }

    void middleDragMovesTheValue_data() { addKinds(); }
    void middleDragMovesTheValue()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        driver.wheel(driver.pixel(0.5, 0.5), 4 * notch, Qt::ControlModifier);
        driver.plot->grab();
        const QPointF from = driver.pixel(0.5, 0.5);
        const QPointF to = driver.pixel(0.6, 0.4);
        const View before = driver.view();
        const QPointF value = driver.mapping().valueAt(from);
        driver.mouse(QEvent::MouseButtonPress, from, Qt::MiddleButton, Qt::MiddleButton);
        driver.mouse(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::MiddleButton);
        driver.mouse(QEvent::MouseMove, to, Qt::NoButton, Qt::MiddleButton);
        driver.mouse(QEvent::MouseButtonRelease, to, Qt::MiddleButton, Qt::NoButton);
        // The plot rectangle may move by a few pixels, with the width of the labels.
        QVERIFY(
            std::abs(driver.view().minX + 0.6 * driver.view().spanX() - value.x()) < 0.02 * std::abs(before.spanX()));
        driver.click(to, Qt::BackButton); // the drag was one step
        QCOMPARE(driver.view(), before);
        driver.click(to, Qt::ForwardButton);
        QVERIFY(driver.view() != before);
    }

    void keysMoveAndZoom_data() { addKinds(); }
    void keysMoveAndZoom()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        driver.wheel(driver.pixel(0.5, 0.5), 4 * notch, Qt::ControlModifier);
        const View start = driver.view();
        driver.key(Qt::Key_Right);
        QVERIFY(isNear(driver.view().minX - start.minX, 0.1 * start.spanX(), start.spanX()));
        driver.key(Qt::Key_Left);
        QVERIFY(ulps(driver.view().minX, start.minX, start.maxX) <= 4.0);
        driver.key(Qt::Key_Up);
        QVERIFY(driver.view().minY != start.minY || driver.view().maxY != start.maxY);
        driver.key(Qt::Key_Down);
        QVERIFY(isNear(driver.view().maxY, start.maxY, start.maxY));
        for (int i = 0; i < 3; ++i)
            driver.key(Qt::Key_Plus);
        QVERIFY(isNear(driver.view().spanX(), start.spanX() / std::pow(1.25, 3), start.spanX()));
        for (int i = 0; i < 3; ++i)
            driver.key(Qt::Key_Minus);
        QVERIFY(ulps(driver.view().minX, start.minX, std::max(start.maxX, start.minX)) <= 12.0); // of three steps
        QVERIFY(ulps(driver.view().maxX, start.maxX, std::max(start.maxX, start.minX)) <= 12.0);
        driver.key(Qt::Key_PageUp);
        QVERIFY(std::abs(driver.view().spanY()) < std::abs(start.spanY()));
        driver.key(Qt::Key_PageDown);
        QVERIFY(isNear(driver.view().maxY, start.maxY, start.maxY));
    }

    void backForwardAndHome_data() { addKinds(); }
    void backForwardAndHome()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        const View start = driver.view();
        driver.wheel(driver.pixel(0.2, 0.5), 3 * notch);
        const View zoomed = driver.view();
        driver.key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(driver.view(), start);
        driver.key(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(driver.view(), zoomed);
        driver.key(Qt::Key_Backspace);
        QCOMPARE(driver.view(), start);
        driver.click(driver.pixel(0.5, 0.5), Qt::ForwardButton);
        QCOMPARE(driver.view(), zoomed);
        driver.key(Qt::Key_Home);
        QVERIFY(driver.view().autoX && driver.view().autoY);
        driver.click(driver.pixel(0.5, 0.5), Qt::BackButton);
        QCOMPARE(driver.view(), zoomed);
    }

    void doubleClickShowsAll_data() { addKinds(); }
    void doubleClickShowsAll()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        driver.wheel(driver.pixel(0.5, 0.5), 3 * notch, Qt::ControlModifier);
        driver.mouse(QEvent::MouseButtonDblClick, driver.pixel(0.5, -0.03), Qt::LeftButton, Qt::LeftButton);
        QVERIFY(driver.view().autoX && !driver.view().autoY);
        driver.mouse(QEvent::MouseButtonDblClick, driver.pixel(0.5, 0.5), Qt::LeftButton, Qt::LeftButton);
        QVERIFY(driver.view().autoX && driver.view().autoY);
    }

    void extremeZoomsKeepTheAxisSound_data() { addKinds(); }
    void extremeZoomsKeepTheAxisSound()
    {
        QFETCH(QString, kind);
        GestureDriver driver(kind);
        const View start = driver.view();
        const auto isSound = [&] {
            const View now = driver.view();
            return std::isfinite(now.spanX()) && std::isfinite(now.spanY()) && now.spanX() * start.spanX() > 0.0
                && now.spanY() * start.spanY() > 0.0;
        };
        for (const double share : { 0.1, 0.37, 0.7 }) { // the bar of a turned map stays where it was
            for (const int eighths : { 1200, 120000, -120000, 2000000000, -2000000000 }) {
                for (int i = 0; i < 20; ++i)
                    driver.wheel(driver.pixel(share, share), eighths, Qt::ControlModifier);
                QVERIFY(isSound());
                const View end = driver.view();
                driver.wheel(driver.pixel(share, share), eighths > 0 ? -notch : notch, Qt::ControlModifier);
                QVERIFY(isSound());
                QVERIFY2(driver.view() != end, // it does not stick
                    qPrintable(QStringLiteral("%1 %2: X %3 %4, Y %5 %6")
                                   .arg(share)
                                   .arg(eighths)
                                   .arg(end.minX)
                                   .arg(end.maxX)
                                   .arg(end.minY)
                                   .arg(end.maxY)));
            }
        }
    }
};

QTEST_MAIN(TestPlotGestures)
#include "tst_plotgestures.moc"
