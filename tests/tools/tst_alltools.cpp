// All tools at once on live plots: random gestures, keys, data, views, attaching and detaching. Also bad data and
// sizes. TARNIS_LIVE_SECONDS=600 makes the live run last ten minutes, at ten updates a second, where it is a few
// hundred steps otherwise. QTEST_FUNCTION_TIMEOUT has to be longer.
#include "plotmonkey.h"
#include "support/cases.h"
#include "support/randomcases.h"
#include "support/support.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/axislink.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotevents.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotregions.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/plotview.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QMouseEvent>
#include <QStyleHints>
#include <QTest>
#include <QTimer>

#include <cmath>
#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr int curveCount = 4;
constexpr int samples = 300;
constexpr int rows = 40; // of a map

template <typename Tool> InteractiveTool* make(XYGraphWidget& plot)
{
    return new Tool(&plot);
}

/// Null for curves.
template <typename Tool> InteractiveTool* makeOnMap(XYGraphWidget& plot)
{
    auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
    return map != nullptr ? new Tool(map) : nullptr;
}

using Make = InteractiveTool* (*)(XYGraphWidget&);
constexpr Make makers[] = { make<PlotNavigator>, make<PlotCrosshair>, make<PlotLegend>, make<PlotMarkers>,
    make<PlotRuler>, make<ErrorBars>, make<ReferenceCurves>, make<BinAggregation>, make<PlotEvents>, make<PlotRegions>,
    make<PlotStyle>, makeOnMap<ColourLevels>, makeOnMap<LineProfile> };
constexpr int kinds = int(std::size(makers)); // of tools

InteractiveTool* attach(XYGraphWidget& plot, int kind)
{
    return makers[kind](plot);
}

enum Values { Counts, Equal, Zero, Wild, NotANumber };

double sampleOf(Generator& random, Values values)
{
    if (values == Equal || values == Zero || values == NotANumber)
        return values == Equal ? 7.0 : values == Zero ? 0.0 : std::numeric_limits<double>::quiet_NaN();
    if (values == Counts || chance(random, 0.9))
        return std::floor(uniform(random, 0.0, 1000.0));
    const double wild[] = { std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), -1e300,
        1e-300, 0.0 };
    return wild[whole(random, 0, 4)];
}

QList<double> row(Generator& random, int count, Values values)
{
    QList<double> row;
    for (int i = 0; i < count; ++i)
        row.append(sampleOf(random, values));
    return row;
}

void feed(XYGraphWidget& plot, Generator& random, int count, Values values = Counts)
{
    if (auto* const curves = qobject_cast<MultiVectorGraphWidget*>(&plot)) {
        for (int i = 0; i < curveCount; ++i)
            curves->setData(i, row(random, count, values), 1000.0);
    } else if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot)) {
        for (int i = 0; i < rows; ++i)
            map->setData(i, row(random, count, values), 1000.0, i == rows - 1);
    } else if (auto* const curve = qobject_cast<VectorGraphWidget*>(&plot)) {
        curve->setData(row(random, count, values));
        curve->setMaxValue(1000.0);
    }
    plot.refreshPixmap();
}

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

enum PlotKind { Curve, Curves, Map };

std::unique_ptr<XYGraphWidget> newPlot(PlotKind kind)
{
    if (kind == Map)
        return std::make_unique<XY2DGraphWidget>();
    if (kind == Curve)
        return std::make_unique<VectorGraphWidget>();
    return std::make_unique<MultiVectorGraphWidget>();
}

std::unique_ptr<XYGraphWidget> makePlot(PlotKind kind)
{
    std::unique_ptr<XYGraphWidget> plot = newPlot(kind);
    plot->m_doubleBuffered = true;
    plot->init(QStringLiteral("X"), QStringLiteral("Y"), samples, kind == Map ? rows : 1000, true, true);
    plot->initManualX(0, samples);
    plot->resize(400, 300);
    plot->show();
    plot->activateWindow();
    if (!QTest::qWaitForWindowActive(plot.get()))
        qFatal("no window");
    plot->setFocus();
    return plot;
}

/// Makes any change to the plot that a host may make at any moment.
void disturb(XYGraphWidget& plot, Generator& random)
{
    switch (whole(random, 0, 9)) {
    case 0:
        plot.initManualX(0, whole(random, 1, 1000)); // as the pair format does
        break;
    case 1:
        PlotView::apply(plot, PlotView::stateOf(plot));
        break;
    case 2:
        plot.setLogScaleY(chance(random, 0.5));
        break;
    case 3:
        plot.m_rotation = 90.0 * whole(random, -1, 1);
        plot.refreshPixmap();
        break;
    case 4:
        plot.resize(whole(random, 0, 900), whole(random, 0, 700));
        break;
    case 5:
        plot.hide();
        plot.show();
        break;
    case 6: {
        QEvent language(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&plot, &language);
        break;
    }
    case 7: {
        QEvent palette(QEvent::ApplicationPaletteChange);
        QCoreApplication::sendEvent(&plot, &palette);
        break;
    }
    case 8:
        plot.onAutoScaleX(true);
        plot.onAutoScaleY(true);
        break;
    default:
        plot.setMinMaxX(uniform(random, -500.0, 1000.0), uniform(random, -500.0, 1000.0)); // reversed as well
        plot.refreshPixmap();
        break;
    }
}

void attachOrDetach(XYGraphWidget& plot, Generator& random)
{
    if (chance(random, 0.1) && InteractiveTool::toolsOf(plot).size() < 2 * kinds)
        attach(plot, whole(random, 0, kinds - 1));
    if (const auto tools = InteractiveTool::toolsOf(plot); chance(random, 0.08) && !tools.isEmpty())
        delete tools.at(whole(random, 0, int(tools.size()) - 1));
}

void detachAll(XYGraphWidget& plot)
{
    qDeleteAll(InteractiveTool::toolsOf(plot));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

/// What exists below the plot and of windows; equal lists before and after mean that nothing remains.
QStringList liveObjects(const XYGraphWidget& plot)
{
    QStringList objects;
    for (const QObject* const object : plot.findChildren<QObject*>())
        objects.append(QString::fromLatin1(object->metaObject()->className()) + object->objectName());
    for (const QWidget* const widget : QApplication::topLevelWidgets())
        objects.append(QStringLiteral("window ") + QString::fromLatin1(widget->metaObject()->className()));
    objects.removeIf([](const QString& each) { // Qt's tool tip, and the plot's editor of the end of an axis
        return each.contains(QStringLiteral("QTipLabel")) || each.contains(QStringLiteral("Line"));
    });
    objects.sort();
    return objects;
}

/// Pages of memory in use; 0 where the system does not say.
} // namespace

class TestAllTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// A finger that rests opens the menu of the plot. Nothing closes it here.
    void initTestCase()
    {
        QGuiApplication::styleHints()->setMousePressAndHoldInterval(std::numeric_limits<int>::max());
    }

    void staysSoundUnderRandomGestures_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("curve") << int(Curve);
        QTest::newRow("curves") << int(Curves);
        QTest::newRow("map") << int(Map);
    }
    void staysSoundUnderRandomGestures()
    {
        QFETCH(int, kind);
        auto random = seededGenerator(14);
        const auto plot = makePlot(PlotKind(kind));
        PlotToolBar bar(plot.get());
        feed(*plot, random, samples);
        Monkey monkey(*plot, random);
        for (int step = 0; step < 700; ++step) {
            monkey.act();
            if (chance(random, 0.3))
                feed(*plot, random, whole(random, 1, 2 * samples));
            attachOrDetach(*plot, random);
            if (chance(random, 0.1))
                disturb(*plot, random);
            if (chance(random, 0.5))
                QCoreApplication::processEvents();
            double min = 0.0;
            double max = 0.0;
            plot->getMinMaxX(min, max);
            QVERIFY2(isRange(min, max), qPrintable(QStringLiteral("step %1: X %2 %3").arg(step).arg(min).arg(max)));
            plot->getMinMaxY(min, max);
            QVERIFY2(isRange(min, max), qPrintable(QStringLiteral("step %1: Y %2 %3").arg(step).arg(min).arg(max)));
        }
        detachAll(*plot);
        QCOMPARE(bar.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly).isEmpty(), false);
        QCOMPARE(plot->focusPolicy(), Qt::NoFocus); // as it was before the tools
    }

    void leavesNothingBehind_data() { staysSoundUnderRandomGestures_data(); }
    /// Rounds of gestures and data; after each one all tools are detached, and as many objects exist as at first.
    void leavesNothingBehind()
    {
        QFETCH(int, kind);
        const qint64 calmMs = qEnvironmentVariableIntValue("TARNIS_LIVE_SECONDS") * 1000LL;
        auto random = seededGenerator(19);
        const auto plot = makePlot(PlotKind(kind));
        feed(*plot, random, samples);
        for (int each = 0; each < kinds; ++each) // what is made once and stays
            attach(*plot, each);
        plot->grab();
        detachAll(*plot);
        const QStringList before = liveObjects(*plot);
        qint64 bytes = 0;
        QTimer data;
        QObject::connect(&data, &QTimer::timeout, plot.get(), [&] { feed(*plot, random, samples); });
        if (calmMs > 0)
            data.start(100);
        QElapsedTimer clock;
        clock.start();
        int round = 0;
        do {
            Monkey monkey(*plot, random);
            for (int step = 0; step < 150; ++step) {
                if (calmMs > 0) // only the live run has a pace
                    QVERIFY(QTest::qWaitFor([&clock, due = clock.elapsed() + 20] { return clock.elapsed() >= due; }));
                else if (chance(random, 0.3))
                    feed(*plot, random, samples);
                monkey.act();
                attachOrDetach(*plot, random);
                if (chance(random, 0.05))
                    disturb(*plot, random);
                QCoreApplication::processEvents();
            }
            detachAll(*plot);
            const QStringList after = liveObjects(*plot);
            QVERIFY2(after == before, qPrintable(after.join(u'\n')));
            if (++round == 10)
                bytes = residentBytes();
        } while (clock.elapsed() < calmMs || (calmMs == 0 && round < 3));
        if (calmMs > 0) {
            qInfo("%d rounds, %.1f MiB more", round, bytes > 0 ? double(residentBytes() - bytes) / (1 << 20) : 0.0);
            QVERIFY(round < 10 || hasGrownLessThan(16, bytes));
        }
    }

    void linkedPlotsStayTogetherUnderRandomGestures()
    {
        auto random = seededGenerator(15);
        const auto curves = makePlot(Curves);
        const auto map = makePlot(Map);
        AxisLink link;
        for (XYGraphWidget* const plot : { curves.get(), map.get() }) {
            feed(*plot, random, samples);
            attach(*plot, 0);
            link.add(plot, Qt::Horizontal);
        }
        int apart = 0;
        for (int step = 0; step < 250; ++step) {
            XYGraphWidget& plot = chance(random, 0.5) ? *curves : *map;
            plot.activateWindow();
            plot.setFocus();
            Monkey(plot, random).act();
            feed(chance(random, 0.5) ? *curves : *map, random, samples);
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

    void plotsMayEndInMidDrag_data()
    {
        QTest::addColumn<int>("kind");
        for (int kind = 0; kind < kinds; ++kind)
            QTest::addRow("tool %d", kind) << kind;
    }
    void plotsMayEndInMidDrag()
    {
        QFETCH(int, kind);
        for (const PlotKind plotKind : { Curve, Curves, Map }) {
            for (const Qt::MouseButton button : { Qt::LeftButton, Qt::MiddleButton }) {
                auto random = seededGenerator(16);
                auto plot = makePlot(plotKind);
                feed(*plot, random, samples);
                attach(*plot, kind);
                plot->grab();
                for (const QPointF at : { QPointF(200, 150), QPointF(380, 40) }) {
                    QMouseEvent press(
                        QEvent::MouseButtonPress, at, plot->mapToGlobal(at), button, button, Qt::NoModifier);
                    QCoreApplication::sendEvent(plot.get(), &press);
                    QMouseEvent move(QEvent::MouseMove, at + QPointF(9, 9), plot->mapToGlobal(at), Qt::NoButton, button,
                        Qt::NoModifier);
                    QCoreApplication::sendEvent(plot.get(), &move);
                }
                plot.reset();
                QCoreApplication::processEvents();
            }
        }
    }

    void badDataAndSizes_data()
    {
        addColumns<int, int, QSize>("count", "values", "size");
        QTest::addColumn<QPointF>("range"); // of X; equal ends: as the data have it
        const QSize size(300, 200);
        const QPointF own(0, 0);
        QTest::newRow("no data") << 0 << int(Counts) << size << own;
        QTest::newRow("one sample") << 1 << int(Counts) << size << own;
        QTest::newRow("all equal") << 50 << int(Equal) << size << own;
        QTest::newRow("all zero") << 50 << int(Zero) << size << own;
        QTest::newRow("not finite") << 50 << int(Wild) << size << own;
        QTest::newRow("nothing finite") << 50 << int(NotANumber) << size << own;
        QTest::newRow("without size") << 50 << int(Counts) << QSize(0, 0) << own;
        QTest::newRow("smaller than its margins") << 50 << int(Wild) << QSize(12, 12) << own;
        QTest::newRow("reversed axis") << 50 << int(Counts) << size << QPointF(40, 3);
        QTest::newRow("empty range") << 50 << int(Counts) << size << QPointF(7, 7.0000000001);
        QTest::newRow("beyond the data") << 50 << int(Counts) << size << QPointF(1e6, 1e7);
        QTest::newRow("at the end of all numbers") << 50 << int(Counts) << size << QPointF(-1e308, 1e308);
    }
    void badDataAndSizes()
    {
        QFETCH(int, count);
        QFETCH(int, values);
        QFETCH(QSize, size);
        QFETCH(QPointF, range);
        for (const PlotKind plotKind : { Curve, Curves, Map }) {
            auto random = seededGenerator(17);
            const auto plot = makePlot(plotKind);
            for (int kind = 0; kind < kinds; ++kind)
                attach(*plot, kind);
            feed(*plot, random, count, Values(values));
            plot->resize(size);
            if (range.x() != range.y()) {
                plot->onAutoScaleX(false);
                plot->setMinMaxX(range.x(), range.y());
            }
            Monkey monkey(*plot, random);
            for (int step = 0; step < 80; ++step) {
                monkey.act();
                if (chance(random, 0.2))
                    feed(*plot, random, count, Values(values));
                QCoreApplication::processEvents();
            }
            plot->grab();
            QCOMPARE(PlotView::apply(*plot, PlotView::stateOf(*plot)), QString());
        }
    }

    /// Stored views with random bytes changed: an error, or a plot with sound ranges.
    void damagedViewsAreRefusedOrGiveValidRanges()
    {
        auto random = seededGenerator(18);
        const auto plot = makePlot(Map);
        feed(*plot, random, samples);
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
};

QTEST_MAIN(TestAllTools)
#include "tst_alltools.moc"
