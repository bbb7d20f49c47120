// Slots that delete the tool or the plot that calls them, and hosts that change the plot in the middle of a gesture.
#include "plotmonkey.h"
#include "support/support.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xy2dgraphwidget.h>
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
#include <tarnis/tools/plotview.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QMenu>
#include <QMetaMethod>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

using Make = InteractiveTool* (*)(XYGraphWidget&);

template <typename Tool> InteractiveTool* make(XYGraphWidget& plot)
{
    return new Tool(&plot);
}

InteractiveTool* makeProfile(XYGraphWidget& plot)
{
    auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
    return map != nullptr ? new LineProfile(map) : nullptr;
}

InteractiveTool* makeLevels(XYGraphWidget& plot)
{
    auto* const map = qobject_cast<XY2DGraphWidget*>(&plot);
    return map != nullptr ? new ColourLevels(map) : nullptr;
}

template <typename Tool> InteractiveTool* makeOn(XYGraphWidget& plot)
{
    auto* const tool = new Tool(&plot);
    tool->setOn(true);
    return tool;
}

constexpr Make makers[] = { make<PlotNavigator>, make<PlotCrosshair>, make<PlotLegend>, make<PlotMarkers>,
    makeOn<PlotRuler>, make<ErrorBars>, make<ReferenceCurves>, make<PlotEvents>, makeProfile };

void feed(XYGraphWidget& plot, double height)
{
    if (auto* const curves = qobject_cast<MultiVectorGraphWidget*>(&plot)) {
        for (int i = 0; i < 3; ++i)
            curves->setData(i, QList<double>(200, height * (i + 1)), 3.0 * height);
    } else if (auto* const map = qobject_cast<XY2DGraphWidget*>(&plot)) {
        for (int row = 0; row < 40; ++row)
            map->setData(row, QList<double>(200, height), height, row == 39);
    }
    plot.refreshPixmap();
}

std::unique_ptr<XYGraphWidget> shownPlot(bool isMap)
{
    std::unique_ptr<XYGraphWidget> plot;
    if (isMap)
        plot = std::make_unique<XY2DGraphWidget>();
    else
        plot = std::make_unique<MultiVectorGraphWidget>();
    plot->m_doubleBuffered = true;
    plot->init(QStringLiteral("X"), QStringLiteral("Y"), 200, isMap ? 40 : 100, true, true);
    plot->initManualX(0, 200);
    feed(*plot, 10.0);
    plot->resize(400, 300);
    plot->show();
    plot->activateWindow();
    if (!QTest::qWaitForWindowActive(plot.get()))
        qFatal("no window");
    plot->setFocus();
    plot->grab();
    return plot;
}

/// Deletes its target at the n-th signal.
class SignalDeleter : public QObject {
    Q_OBJECT

public:
    SignalDeleter(QObject& tool, QObject* target, int signalCount)
        : m_target(target)
        , m_left(signalCount)
    {
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("fire()"));
        const QMetaObject* const type = tool.metaObject();
        for (int i = QObject::staticMetaObject.methodCount(); i < type->methodCount(); ++i) {
            if (type->method(i).methodType() == QMetaMethod::Signal)
                connect(&tool, type->method(i), this, slot);
        }
    }
    bool hasFired() const { return m_left <= 0; }

public Q_SLOTS:
    void fire()
    {
        if (--m_left == 0)
            delete m_target.data();
    }

private:
    QPointer<QObject> m_target;
    int m_left;
};

/// The commands of a tool and of its menus that open no window.
QList<QAction*> entriesOf(const InteractiveTool& tool)
{
    QList<QAction*> entries;
    const QList<QAction*> actions = tool.actions();
    for (QAction* const action : actions) {
        if (QMenu* const menu = action->menu()) {
            Q_EMIT menu->aboutToShow(); // fills it
            entries += menu->actions();
        } else {
            entries += action;
        }
    }
    entries.removeIf([](const QAction* each) {
        return each->isSeparator() || each->menu() != nullptr || each->text().contains(u"...");
    });
    return entries;
}

constexpr Make ofViews[] = { make<PlotStyle>, make<PlotCrosshair>, make<PlotLegend>, make<PlotMarkers>, make<PlotRuler>,
    make<ErrorBars>, make<ReferenceCurves>, make<BinAggregation>, make<PlotRegions>, makeLevels, makeProfile };

/// Attaches the tools with other states than the initial ones, and returns the view.
QJsonObject changedState(XYGraphWidget& plot)
{
    for (const Make maker : ofViews) {
        InteractiveTool* const tool = maker(plot);
        if (auto* const style = qobject_cast<PlotStyle*>(tool)) {
            style->setTheme(PlotStyle::Theme::Dark);
            style->setCurveForm(PlotStyle::CurveForm::Steps);
        } else if (auto* const cross = qobject_cast<PlotCrosshair*>(tool)) {
            cross->setOn(false);
        } else if (auto* const legend = qobject_cast<PlotLegend*>(tool)) {
            legend->setPlace({ 0.5, 0.5 });
            legend->setVisible(false);
        } else if (auto* const markers = qobject_cast<PlotMarkers*>(tool)) {
            markers->add({ 20, 20 });
            markers->setOn(false);
        } else if (auto* const ruler = qobject_cast<PlotRuler*>(tool)) {
            ruler->setEnds({ 10, 10 }, { 30, 20 });
            ruler->setOn(true);
        } else if (auto* const bars = qobject_cast<ErrorBars*>(tool)) {
            bars->setMethod(ErrorBars::Method::SquareRoot);
            bars->setOn(true);
        } else if (auto* const references = qobject_cast<ReferenceCurves*>(tool)) {
            references->setView(ReferenceCurves::View::Ratio);
            references->setNorm(ReferenceCurves::Norm::TotalCounts);
        } else if (auto* const bins = qobject_cast<BinAggregation*>(tool)) {
            bins->setMethod(BinAggregation::Method::Maximum);
        } else if (auto* const levels = qobject_cast<ColourLevels*>(tool)) {
            levels->setStripVisible(false);
            levels->setScale(ColourLevels::Scale::SquareRoot);
            levels->setPercentiles(5, 95);
        } else if (auto* const profile = qobject_cast<LineProfile*>(tool)) {
            profile->setBandWidth(3);
            profile->setJoin(LineProfile::Join::Maximum);
            profile->setLine({ 10, 10 }, { 30, 20 });
        }
    }
    return PlotView::stateOf(plot);
}

void send(QWidget* plot, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, at, plot->mapToGlobal(at), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(plot, &event);
}

} // namespace

class TestToolSlots : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aSlotMayDeleteTheTool()
    {
        auto random = seededGenerator(61);
        int fired = 0;
        for (int round = 0; round < 120; ++round) {
            const bool isMap = round % 2 != 0;
            const auto plot = shownPlot(isMap);
            InteractiveTool* const tool = makers[round / 2 % int(std::size(makers))](*plot);
            if (tool == nullptr)
                continue;
            const SignalDeleter deleter(*tool, tool, whole(random, 1, 4));
            Monkey monkey(*plot, random);
            for (int step = 0; step < 60 && !deleter.hasFired(); ++step) {
                monkey.act();
                if (chance(random, 0.3))
                    feed(*plot, uniform(random, 1.0, 50.0));
                QCoreApplication::processEvents();
            }
            fired += deleter.hasFired() ? 1 : 0;
        }
        QVERIFY(fired > 60);
    }

    void aSlotMayDeleteThePlot_data()
    {
        QTest::addColumn<int>("tool");
        for (int i = 0; i < int(std::size(makers)); ++i)
            QTest::addRow("tool %d", i) << i;
    }
    void aSlotMayDeleteThePlot()
    {
        QFETCH(int, tool);
        for (const bool isMap : { false, true }) {
            QPointer<XYGraphWidget> plot(shownPlot(isMap).release());
            InteractiveTool* const made = makers[tool](*plot);
            const std::unique_ptr<SignalDeleter> deleter =
                made != nullptr ? std::make_unique<SignalDeleter>(*made, plot, 1) : nullptr;
            for (const QPointF at : { QPointF(200, 150), QPointF(350, 60), QPointF(100, 200) }) {
                if (plot != nullptr)
                    send(plot, QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
                if (plot != nullptr)
                    send(plot, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
                if (plot != nullptr)
                    send(plot, QEvent::MouseMove, at + QPointF(20, 20), Qt::NoButton, Qt::LeftButton);
                if (plot != nullptr)
                    send(plot, QEvent::MouseButtonRelease, at + QPointF(20, 20), Qt::LeftButton, Qt::NoButton);
                if (plot != nullptr) {
                    QWheelEvent event(at, plot->mapToGlobal(at), {}, { 0, 120 }, Qt::NoButton, Qt::NoModifier,
                        Qt::NoScrollPhase, false);
                    QCoreApplication::sendEvent(plot, &event);
                }
                QCoreApplication::processEvents();
            }
            delete plot.data();
        }
    }

    void aSlotMayDeleteTheToolOfAMenu()
    {
        constexpr Make ofMenus[] = { make<PlotStyle>, make<BinAggregation>, make<ReferenceCurves>, make<PlotRegions>,
            makeProfile, makeLevels };
        int fired = 0;
        for (const Make maker : ofMenus) {
            for (const bool isMap : { false, true }) {
                qsizetype count = 1;
                for (qsizetype entry = 0; entry < count; ++entry) {
                    const auto plot = shownPlot(isMap);
                    InteractiveTool* const tool = maker(*plot);
                    if (tool == nullptr)
                        break;
                    if (auto* const references = qobject_cast<ReferenceCurves*>(tool))
                        references->freeze();
                    const QList<QAction*> entries = entriesOf(*tool);
                    count = entries.size();
                    if (count == 0)
                        break;
                    const SignalDeleter deleter(*tool, tool, 1);
                    entries.at(entry)->trigger();
                    QCoreApplication::processEvents();
                    fired += deleter.hasFired() ? 1 : 0;
                }
            }
        }
        QVERIFY2(fired > 20, qPrintable(QString::number(fired)));
    }

    void aSlotMayDeleteToolsWhileAViewIsRestored()
    {
        int fired = 0;
        for (const bool isMap : { false, true }) {
            const std::unique_ptr<XYGraphWidget> other = shownPlot(isMap);
            const QJsonObject state = changedState(*other);
            for (int target = 0; target < int(std::size(ofViews)); ++target) {
                for (int signalCount = 1; signalCount < 4; ++signalCount) {
                    const auto plot = shownPlot(isMap);
                    QList<InteractiveTool*> tools;
                    for (const Make maker : ofViews)
                        tools.append(maker(*plot));
                    if (tools.at(target) == nullptr)
                        continue;
                    const SignalDeleter itself(*tools.at(target), tools.at(target), signalCount);
                    InteractiveTool* const next = tools.value(target + 1);
                    const SignalDeleter another(*tools.at(target), next, 1);
                    QCOMPARE(PlotView::apply(*plot, state), QString());
                    fired += itself.hasFired() ? 1 : 0;
                }
            }
        }
        QVERIFY2(fired > 10, qPrintable(QString::number(fired)));
    }

    void aToolThatIsDeletedEmitsNothing()
    {
        for (const bool isMap : { false, true }) {
            const auto plot = shownPlot(isMap);
            changedState(*plot);
            for (InteractiveTool* const tool : InteractiveTool::toolsOf(*plot)) {
                const SignalDeleter deleter(*tool, nullptr, 1);
                delete tool;
                QVERIFY2(!deleter.hasFired(), "a slot would get a half deleted object");
            }
        }
    }

    void theHostMaySetTheAxisInASlotOfTheView()
    {
        const auto plot = shownPlot(false);
        auto* const events = new PlotEvents(plot.get());
        auto* const navigator = new PlotNavigator(plot.get());
        int calls = 0;
        connect(events, &PlotEvents::rangeChanged, plot.get(), [&] {
            ++calls;
            plot->initManualX(0, 200); // as a host that always wants its own axis
            plot->refreshPixmap();
        });
        for (int i = 0; i < 20; ++i) {
            navigator->zoomIn();
            feed(*plot, 10.0 + i);
            QCoreApplication::processEvents();
        }
        for (int i = 0; i < 50; ++i)
            QCoreApplication::processEvents();
        QVERIFY2(calls > 0 && calls < 100, qPrintable(QString::number(calls))); // it comes to rest
        double min = 0.0;
        double max = 0.0;
        plot->getMinMaxX(min, max);
        QVERIFY(min < max);
    }

    void dataMayBeReplacedInTheMiddleOfADrag()
    {
        for (const bool isMap : { false, true }) {
            const auto plot = shownPlot(isMap);
            for (const Make maker : makers)
                maker(*plot);
            for (const Qt::MouseButton button : { Qt::LeftButton, Qt::MiddleButton }) {
                send(plot.get(), QEvent::MouseButtonPress, QPointF(200, 150), button, button);
                for (int i = 0; i < 5; ++i) {
                    if (auto* const curves = qobject_cast<MultiVectorGraphWidget*>(plot.get()))
                        curves->clearData();
                    feed(*plot, 5.0 * (i + 1));
                    plot->initManualX(0, 100 + i);
                    send(plot.get(), QEvent::MouseMove, QPointF(210 + 5 * i, 140), Qt::NoButton, button);
                    QCoreApplication::processEvents();
                }
                send(plot.get(), QEvent::MouseButtonRelease, QPointF(230, 140), button, Qt::NoButton);
            }
            QVERIFY(PlotMapping::of(*plot).isValid());
        }
    }

    void toolsStayWithAPlotThatMovesToAnotherWindow()
    {
        auto plot = shownPlot(false);
        auto* const cross = new PlotCrosshair(plot.get());
        cross->pinAt({ 50, 20 });
        const QString text = cross->text();
        QWidget window;
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(plot.get());
        window.resize(500, 400);
        window.show();
        QCoreApplication::processEvents();
        plot->hide();
        plot->show();
        plot->grab();
        QCOMPARE(cross->text(), text);
        QVERIFY(plot->hasMouseTracking());
        plot->setParent(nullptr);
        QCOMPARE(InteractiveTool::toolsOf(*plot).size(), 1);
    }
};

QTEST_MAIN(TestToolSlots)
#include "tst_toolslots.moc"
