// All tools at once on live plots: random gestures, keys, data, views, attaching and detaching. Also bad data and
// sizes.
#include "support/randomcases.h"
#include "support/support.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/axislink.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/plotview.h>

#include <QAction>
#include <QJsonDocument>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr int curveCount = 4;
constexpr int samples = 300;
constexpr int kinds = 6; // of tools

InteractiveTool* attach(XYGraphWidget& plot, int kind)
{
    switch (kind) {
    case 0:
        return new PlotNavigator(&plot);
    case 1:
        return new PlotCrosshair(&plot);
    case 2:
        return new PlotLegend(&plot);
    case 3:
        return new PlotMarkers(&plot);
    case 4:
        return new PlotRuler(&plot);
    default:
        break;
    }
    auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
    return map ? static_cast<InteractiveTool*>(new ColourLevels(map)) : new PlotMarkers(&plot);
}

double sampleOf(Generator& random, bool isWild)
{
    if (!isWild || chance(random, 0.9))
        return std::floor(uniform(random, 0.0, 1000.0));
    const double wild[] = { std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e300,
        1e-300, 0.0 };
    return wild[whole(random, 0, 4)];
}

QList<double> row(Generator& random, int count, bool isWild)
{
    QList<double> values;
    for (int i = 0; i < count; ++i)
        values.append(sampleOf(random, isWild));
    return values;
}

void feed(XYGraphWidget& plot, Generator& random, int count, bool isWild)
{
    if (auto* const curves = qobject_cast<MultiVectorGraphWidget*>(&plot)) {
        for (int i = 0; i < curveCount; ++i)
            curves->setData(i, row(random, count, isWild), 1000.0);
    } else if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot)) {
        for (int i = 0; i < 40; ++i)
            map->setData(i, row(random, count, isWild), 1000.0, i == 39);
    }
    plot.refreshPixmap();
}

/// A user without a plan.
class Monkey {
public:
    Monkey(XYGraphWidget& plot, Generator& random)
        : m_plot(plot)
        , m_random(random)
    {
    }

    void act()
    {
        switch (whole(m_random, 0, 5)) {
        case 0:
            wheel();
            break;
        case 1:
            drag();
            break;
        case 2:
            send(QEvent::MouseButtonDblClick, point(), Qt::LeftButton, Qt::LeftButton);
            break;
        case 3:
            key();
            break;
        case 4:
            send(QEvent::MouseMove, point(), Qt::NoButton, Qt::NoButton);
            break;
        default:
            action();
            break;
        }
    }

private:
    QPointF point()
    {
        return { uniform(m_random, -20.0, m_plot.width() + 20.0), uniform(m_random, -20.0, m_plot.height() + 20.0) };
    }
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, m_plot.mapToGlobal(at), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_plot, &event);
    }
    void wheel()
    {
        const QPointF at = point();
        const Qt::KeyboardModifiers modifiers[] = { Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier };
        QWheelEvent event(at, m_plot.mapToGlobal(at), {}, { 0, whole(m_random, -2400, 2400) }, Qt::NoButton,
            modifiers[whole(m_random, 0, 2)], Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_plot, &event);
    }
    void drag()
    {
        const Qt::MouseButton button = chance(m_random, 0.5) ? Qt::LeftButton : Qt::MiddleButton;
        send(QEvent::MouseButtonPress, point(), button, button);
        for (int i = whole(m_random, 0, 4); i > 0; --i)
            send(QEvent::MouseMove, point(), Qt::NoButton, button);
        if (chance(m_random, 0.9)) // a release may go elsewhere
            send(QEvent::MouseButtonRelease, point(), button, Qt::NoButton);
    }
    void key()
    {
        const int keys[] = { Qt::Key_Left, Qt::Key_Up, Qt::Key_Plus, Qt::Key_Minus, Qt::Key_PageDown, Qt::Key_PageUp,
            Qt::Key_Home, Qt::Key_L, Qt::Key_G, Qt::Key_C, Qt::Key_P, Qt::Key_M, Qt::Key_R, Qt::Key_Backspace,
            Qt::Key_Escape, Qt::Key_Delete, Qt::Key_Space, Qt::Key_Return };
        const auto modifier = chance(m_random, 0.2) ? Qt::ShiftModifier : Qt::NoModifier;
        QTest::keyClick(&m_plot, Qt::Key(keys[whole(m_random, 0, int(std::size(keys)) - 1)]), modifier);
    }
    void action()
    {
        QList<QAction*> actions;
        for (const InteractiveTool* const tool : InteractiveTool::toolsOf(m_plot))
            actions += tool->actions();
        actions.removeIf([](const QAction* each) { return each->menu() || each->text().contains(u"..."); });
        if (!actions.isEmpty())
            actions.at(whole(m_random, 0, int(actions.size()) - 1))->trigger();
    }

    XYGraphWidget& m_plot;
    Generator& m_random;
};

bool isRange(double min, double max)
{
    return std::isfinite(min) && std::isfinite(max) && min != max;
}

std::pair<double, double> rangeX(XYGraphWidget& plot)
{
    std::pair<double, double> range;
    plot.getMinMaxX(range.first, range.second);
    return range;
}

std::unique_ptr<XYGraphWidget> makePlot(bool isMap)
{
    std::unique_ptr<XYGraphWidget> plot;
    if (isMap)
        plot = std::make_unique<XY2DGraphWidget>();
    else
        plot = std::make_unique<MultiVectorGraphWidget>();
    plot->m_doubleBuffered = true;
    plot->init(QStringLiteral("X"), QStringLiteral("Y"), samples, isMap ? 40 : 1000, true, true);
    plot->initManualX(0, samples);
    plot->resize(400, 300);
    plot->show();
    plot->activateWindow();
    if (!QTest::qWaitForWindowActive(plot.get()))
        qFatal("no window");
    plot->setFocus();
    return plot;
}

} // namespace

class TestToolsCalm : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void staysSoundUnderRandomGestures_data();
    void staysSoundUnderRandomGestures();
    void linkedPlotsStayTogetherUnderRandomGestures();
    void plotsMayEndInMidDrag_data();
    void plotsMayEndInMidDrag();
    void badDataAndSizes_data();
    void badDataAndSizes();
    void damagedViewsNeverDoHarm();
};

void TestToolsCalm::staysSoundUnderRandomGestures_data()
{
    QTest::addColumn<bool>("isMap");
    QTest::newRow("curves") << false;
    QTest::newRow("map") << true;
}

void TestToolsCalm::staysSoundUnderRandomGestures()
{
    QFETCH(bool, isMap);
    auto random = seededGenerator(14);
    const auto plot = makePlot(isMap);
    PlotToolBar bar(plot.get());
    feed(*plot, random, samples, false);
    Monkey monkey(*plot, random);
    for (int step = 0; step < 700; ++step) {
        monkey.act();
        if (chance(random, 0.3))
            feed(*plot, random, whole(random, 1, 2 * samples), false);
        if (chance(random, 0.1) && InteractiveTool::toolsOf(*plot).size() < 12)
            attach(*plot, whole(random, 0, kinds - 1));
        if (const auto tools = InteractiveTool::toolsOf(*plot); chance(random, 0.08) && !tools.isEmpty())
            delete tools.at(whole(random, 0, int(tools.size()) - 1));
        if (chance(random, 0.05))
            plot->initManualX(0, whole(random, 1, 1000)); // as the pair format does
        if (chance(random, 0.05))
            PlotView::apply(*plot, PlotView::stateOf(*plot));
        if (chance(random, 0.5))
            QCoreApplication::processEvents();
        double min = 0.0;
        double max = 0.0;
        plot->getMinMaxX(min, max);
        QVERIFY2(isRange(min, max), qPrintable(QStringLiteral("step %1: X %2 %3").arg(step).arg(min).arg(max)));
        plot->getMinMaxY(min, max);
        QVERIFY2(isRange(min, max), qPrintable(QStringLiteral("step %1: Y %2 %3").arg(step).arg(min).arg(max)));
    }
    qDeleteAll(InteractiveTool::toolsOf(*plot));
    QCoreApplication::processEvents();
    QCOMPARE(bar.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly).isEmpty(), false);
    QCOMPARE(plot->focusPolicy(), Qt::NoFocus); // as it was before the tools
}

void TestToolsCalm::linkedPlotsStayTogetherUnderRandomGestures()
{
    auto random = seededGenerator(15);
    const auto curves = makePlot(false);
    const auto map = makePlot(true);
    AxisLink link;
    for (XYGraphWidget* const plot : { curves.get(), map.get() }) {
        feed(*plot, random, samples, false);
        attach(*plot, 0);
        link.add(plot, Qt::Horizontal);
    }
    int apart = 0;
    for (int step = 0; step < 250; ++step) {
        XYGraphWidget& plot = chance(random, 0.5) ? *curves : *map;
        plot.activateWindow();
        plot.setFocus();
        Monkey(plot, random).act();
        feed(chance(random, 0.5) ? *curves : *map, random, samples, false);
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
        double min = 0.0;
        double max = 0.0;
        QCOMPARE(curves->getMinMaxX(min, max), map->getMinMaxX(min, max));
        if (!curves->getMinMaxX(min, max))
            QCOMPARE(rangeX(*map), rangeX(*curves));
        else
            ++apart;
    }
    QVERIFY(apart < 250); // some were held
}

void TestToolsCalm::plotsMayEndInMidDrag_data()
{
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < kinds; ++kind)
        QTest::addRow("tool %d", kind) << kind;
}

void TestToolsCalm::plotsMayEndInMidDrag()
{
    QFETCH(int, kind);
    for (const bool isMap : { false, true }) {
        for (const Qt::MouseButton button : { Qt::LeftButton, Qt::MiddleButton }) {
            auto random = seededGenerator(16);
            auto plot = makePlot(isMap);
            feed(*plot, random, samples, false);
            attach(*plot, kind);
            plot->grab();
            for (const QPointF at : { QPointF(200, 150), QPointF(380, 40) }) {
                QMouseEvent press(QEvent::MouseButtonPress, at, plot->mapToGlobal(at), button, button, Qt::NoModifier);
                QCoreApplication::sendEvent(plot.get(), &press);
                QMouseEvent move(
                    QEvent::MouseMove, at + QPointF(9, 9), plot->mapToGlobal(at), Qt::NoButton, button, Qt::NoModifier);
                QCoreApplication::sendEvent(plot.get(), &move);
            }
            plot.reset();
            QCoreApplication::processEvents();
        }
    }
}

void TestToolsCalm::badDataAndSizes_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isWild");
    QTest::addColumn<QSize>("size");
    QTest::newRow("no data") << 0 << false << QSize(300, 200);
    QTest::newRow("one sample") << 1 << false << QSize(300, 200);
    QTest::newRow("not finite") << 50 << true << QSize(300, 200);
    QTest::newRow("without size") << 50 << false << QSize(0, 0);
    QTest::newRow("smaller than its margins") << 50 << true << QSize(12, 12);
}

void TestToolsCalm::badDataAndSizes()
{
    QFETCH(int, count);
    QFETCH(bool, isWild);
    QFETCH(QSize, size);
    for (const bool isMap : { false, true }) {
        auto random = seededGenerator(17);
        const auto plot = makePlot(isMap);
        for (int kind = 0; kind < kinds; ++kind)
            attach(*plot, kind);
        feed(*plot, random, count, isWild);
        plot->resize(size);
        Monkey monkey(*plot, random);
        for (int step = 0; step < 80; ++step) {
            monkey.act();
            if (chance(random, 0.2))
                feed(*plot, random, count, isWild);
            QCoreApplication::processEvents();
        }
        plot->grab();
        QCOMPARE(PlotView::apply(*plot, PlotView::stateOf(*plot)), QString());
    }
}

/// Stored views with random bytes changed: an error, or a plot with sound ranges.
void TestToolsCalm::damagedViewsNeverDoHarm()
{
    auto random = seededGenerator(18);
    const auto plot = makePlot(true);
    feed(*plot, random, samples, false);
    for (int kind = 0; kind < kinds; ++kind)
        attach(*plot, kind);
    const QByteArray sound = QJsonDocument(PlotView::stateOf(*plot)).toJson(QJsonDocument::Compact);
    int applied = 0;
    for (int step = 0; step < 2000; ++step) {
        QByteArray bytes = sound;
        for (int i = whole(random, 1, 3); i > 0; --i)
            bytes[whole(random, 0, int(bytes.size()) - 1)] = "0123456789.-e[]{}\",:truefalse"[whole(random, 0, 28)];
        const QJsonObject state = QJsonDocument::fromJson(bytes).object();
        applied += PlotView::apply(*plot, state).isEmpty() ? 1 : 0;
        double min = 0.0;
        double max = 0.0;
        plot->getMinMaxX(min, max);
        QVERIFY2(isRange(min, max), bytes.constData());
        plot->getMinMaxY(min, max);
        QVERIFY2(isRange(min, max), bytes.constData());
    }
    QVERIFY(applied > 10 && applied < 2000);
}

QTEST_MAIN(TestToolsCalm)
#include "tst_toolscalm.moc"
