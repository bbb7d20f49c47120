// From a pointer event to the finished repaint: 8 series of 100,000 samples on 1000 x 600 pixels and a map of
// 1024 x 1024 bins on 1000 x 800, with a navigator and a cross, in the classic look and with a style. The oracle is a
// plain repaint of the same window with nothing stale, its cached picture and no tool. The counters are medians over
// the rounds, in milliseconds of the thread's processor time, and ratios to the oracle of the same rounds.
//
//   wheel, pan   a notch of the wheel, a move of the middle button: the data are drawn again
//   cross        a move of the pointer under a cross: the data are not
//   idle         a repaint with the tools attached and the pointer elsewhere; its ratio is their cost
//   plain        the oracle
//
// The entries with one tool more have it over all curves, or over the whole map. "none" is the wheel without that tool,
// "wheel/none" the ratio to it. The last entries drag a tool that draws over the data: "drag" is a move of the pointer
// with the left button, for a ruler also the sums between its ends, and "rubber band" is the plot's own rectangle. "all
// overlays" is a repaint with cross, markers, ruler and legend attached and the pointer elsewhere.
#include "headless.h"
#include "measure.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotmarkers.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>

namespace {

constexpr int seriesCount = 8;
constexpr int sampleCount = 100000;
constexpr int mapSide = 1024;

using Rows = QList<QList<double>>;

Rows randomCurves()
{
    std::mt19937_64 generator(3);
    Rows rows(seriesCount, QList<double>(sampleCount));
    for (int i = 0; i < seriesCount; ++i) {
        for (int k = 0; k < sampleCount; ++k) {
            const double expected = 200.0 * (i + 1) * (1.0 + std::sin(k * 2e-4 + i));
            rows[i][k] = std::poisson_distribution<int>(expected + 5.0)(generator);
        }
    }
    return rows;
}

Rows randomMap()
{
    std::mt19937_64 generator(4);
    std::exponential_distribution<double> height(0.01);
    Rows rows(mapSide, QList<double>(mapSide));
    for (QList<double>& row : rows) {
        for (double& bin : row)
            bin = std::floor(height(generator));
    }
    return rows;
}

double largestOf(const QList<double>& values)
{
    return *std::max_element(values.begin(), values.end());
}

std::unique_ptr<XYGraphWidget> curves()
{
    static const Rows rows = randomCurves();
    auto plot = std::make_unique<MultiVectorGraphWidget>();
    plot->m_groupSize = 1;
    plot->init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
    plot->initManualX(0, sampleCount);
    for (int i = 0; i < seriesCount; ++i)
        plot->setData(i, rows.at(i), largestOf(rows.at(i)));
    plot->resize(1000, 600);
    return plot;
}

std::unique_ptr<XYGraphWidget> map()
{
    static const Rows rows = randomMap();
    auto plot = std::make_unique<XY2DGraphWidget>();
    plot->init(QStringLiteral("x"), QStringLiteral("y"), mapSide, mapSide, true, true);
    plot->initManualX(0, mapSide);
    plot->initManualY(0, mapSide);
    for (int row = 0; row < mapSide; ++row)
        plot->setData(row, rows.at(row), largestOf(rows.at(row)), false);
    plot->resize(1000, 800);
    return plot;
}

void settle(XYGraphWidget& plot)
{
    for (int i = 0; i < 3; ++i) { // the colour bar requests its width while it is painted
        QCoreApplication::processEvents();
        plot.repaint();
    }
}

/// A visible plot with its tools.
class PlotDriver {
public:
    PlotDriver(std::unique_ptr<XYGraphWidget> plot, bool hasTools, bool hasStyle)
        : m_plot(std::move(plot))
    {
        m_plot->m_doubleBuffered = true;
        if (hasStyle)
            new tarnis::PlotStyle(m_plot.get());
        if (hasTools) {
            new tarnis::PlotNavigator(m_plot.get());
            new tarnis::PlotCrosshair(m_plot.get());
        }
        m_plot->show();
        settle(*m_plot);
        m_middle = QRectF(tarnis::PlotMapping::of(*m_plot).plotRect()).center();
    }

    double wheel(int round)
    {
        // In and out again, so that each round zooms about the same view.
        QWheelEvent event(m_middle, m_plot->mapToGlobal(m_middle), QPoint(), QPoint(0, round % 2 == 0 ? 120 : -120),
            Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        return timed(event);
    }
    double pan(int round)
    {
        const QPointF to = m_middle + QPointF(round % 2 == 0 ? 40 : 0, round % 2 == 0 ? 9 : 0);
        QMouseEvent event(
            QEvent::MouseMove, to, m_plot->mapToGlobal(to), Qt::NoButton, Qt::MiddleButton, Qt::NoModifier);
        return timed(event);
    }
    XYGraphWidget& plot() { return *m_plot; }
    /// A move with the left button, near the lower right corner of the plot.
    double drag(int round)
    {
        const QPointF to = QRectF(tarnis::PlotMapping::of(*m_plot).plotRect()).bottomRight()
            - QPointF(3.0 + round * 7 % 40, 3.0 + round * 3 % 20);
        QMouseEvent event(QEvent::MouseMove, to, m_plot->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        return timed(event);
    }
    void press() { button(QEvent::MouseButtonPress, m_middle, Qt::MiddleButton, Qt::MiddleButton); }
    void release() { button(QEvent::MouseButtonRelease, m_middle, Qt::MiddleButton, Qt::NoButton); }
    void pressLeft(const QPointF& at) { button(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton); }
    QPointF middle() const { return m_middle; }
    QPointF corner() const { return QRectF(tarnis::PlotMapping::of(*m_plot).plotRect()).topLeft() + QPointF(3.0, 3.0); }
    double move(int round)
    {
        const QPointF to = m_middle + QPointF((round * 37) % 200 - 100, (round * 13) % 100 - 50);
        QMouseEvent event(QEvent::MouseMove, to, m_plot->mapToGlobal(to), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        return timed(event);
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(m_plot.get(), &event);
        settle(*m_plot);
    }
    double repaint()
    {
        return millisecondsOf([this] { m_plot->repaint(); });
    }

private:
    double timed(QEvent& event)
    {
        return millisecondsOf([&] {
            QCoreApplication::sendEvent(m_plot.get(), &event);
            QCoreApplication::processEvents(); // posted events of tools, and the update
        });
    }
    void button(QEvent::Type type, const QPointF& at, Qt::MouseButton button, Qt::MouseButtons held)
    {
        QMouseEvent event(type, at, m_plot->mapToGlobal(at), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(m_plot.get(), &event);
        settle(*m_plot);
    }

    std::unique_ptr<XYGraphWidget> m_plot;
    QPointF m_middle;
};

void run(benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)(), bool hasStyle)
{
    PlotDriver tools(make(), true, hasStyle);
    PlotDriver none(make(), false, hasStyle);
    std::vector<double> wheel;
    std::vector<double> pan;
    std::vector<double> cross;
    std::vector<double> idle;
    std::vector<double> plain;
    int round = 0;
    for (auto _ : state) {
        wheel.push_back(tools.wheel(round));
        tools.press();
        pan.push_back(tools.pan(0));
        tools.pan(1); // back, so that all rounds have the same view
        tools.release();
        tools.move(round);
        cross.push_back(tools.move(round + 1));
        tools.leave();
        idle.push_back(tools.repaint());
        plain.push_back(none.repaint());
        ++round;
    }
    state.counters["wheel"] = median(wheel);
    state.counters["pan"] = median(pan);
    state.counters["cross"] = median(cross);
    state.counters["idle"] = median(idle);
    state.counters["plain"] = median(plain);
    state.counters["cross/plain"] = median(cross) / median(plain);
    state.counters["idle/plain"] = median(idle) / median(plain);
}

using Attach = void (*)(XYGraphWidget&);

void errorBars(XYGraphWidget& plot)
{
    (new tarnis::ErrorBars(&plot))->setOn(true);
}

void references(XYGraphWidget& plot)
{
    (new tarnis::ReferenceCurves(&plot))->freeze();
}

/// The live curves have other counts than the reference.
void difference(XYGraphWidget& plot)
{
    auto* const references = new tarnis::ReferenceCurves(&plot);
    references->freeze();
    references->setView(tarnis::ReferenceCurves::View::Difference);
    if (auto* const live = qobject_cast<MultiVectorGraphWidget*>(&plot))
        live->setData(0, QList<double>(sampleCount, 300.0), 300.0);
}

void ratio(XYGraphWidget& plot)
{
    difference(plot);
    plot.findChild<tarnis::ReferenceCurves*>()->setView(tarnis::ReferenceCurves::View::Ratio);
}

void significance(XYGraphWidget& plot)
{
    difference(plot);
    plot.findChild<tarnis::ReferenceCurves*>()->setView(tarnis::ReferenceCurves::View::Significance);
}

void legend(XYGraphWidget& plot)
{
    new tarnis::PlotLegend(&plot);
}

void envelope(XYGraphWidget& plot)
{
    (new tarnis::BinAggregation(&plot))->setMethod(tarnis::BinAggregation::Method::Mean);
}

void maximum(XYGraphWidget& plot)
{
    (new tarnis::BinAggregation(&plot))->setMethod(tarnis::BinAggregation::Method::Maximum);
}

/// The wheel and the middle button with one tool more.
void runTool(benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)(), bool hasStyle, Attach attach)
{
    PlotDriver with(make(), true, hasStyle);
    PlotDriver without(make(), true, hasStyle);
    attach(with.plot());
    settle(with.plot());
    std::vector<double> wheel;
    std::vector<double> none;
    std::vector<double> pan;
    std::vector<double> cross;
    int round = 0;
    for (auto _ : state) {
        wheel.push_back(with.wheel(round));
        with.press();
        pan.push_back(with.pan(0));
        with.pan(1);
        with.release();
        none.push_back(without.wheel(round));
        with.move(round);
        cross.push_back(with.move(round + 1));
        with.leave();
        ++round;
    }
    state.counters["wheel"] = median(wheel);
    state.counters["none"] = median(none);
    state.counters["wheel/none"] = median(wheel) / median(none);
    state.counters["pan"] = median(pan);
    state.counters["cross"] = median(cross);
}

void ruler(PlotDriver& driver)
{
    (new tarnis::PlotRuler(&driver.plot()))->setOn(true);
    driver.pressLeft(driver.corner());
}

void markers(PlotDriver& driver)
{
    auto* const markers = new tarnis::PlotMarkers(&driver.plot());
    const tarnis::PlotMapping mapping = tarnis::PlotMapping::of(driver.plot());
    for (const double part : { 0.1, 0.3, 0.5, 0.7, 0.9 }) {
        const QRectF area = mapping.plotRect();
        markers->add(mapping.valueAt({ area.left() + part * area.width(), area.top() + part * area.height() }));
    }
    settle(driver.plot());
    driver.pressLeft(driver.middle());
}

void profileLine(PlotDriver& driver)
{
    auto* const profile = new tarnis::LineProfile(qobject_cast<XY2DGraphWidget*>(&driver.plot()));
    profile->setOn(true);
    settle(driver.plot());
    driver.pressLeft(driver.corner());
}

void rubberBand(PlotDriver& driver)
{
    tarnis::PlotToolBar bar(&driver.plot());
    for (QAction* const action : bar.actions()) {
        if (action->objectName() == QLatin1String("zoomRectangle"))
            action->trigger();
    }
    driver.pressLeft(driver.middle());
}

/// A drag over the data, against a repaint during the drag.
void runDrag(
    benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)(), bool hasStyle, void (*begin)(PlotDriver&))
{
    PlotDriver driver(make(), true, hasStyle);
    begin(driver);
    driver.drag(0); // a ruler adds up the blocks
    std::vector<double> drag;
    std::vector<double> idle;
    int round = 1;
    for (auto _ : state) {
        drag.push_back(driver.drag(round++));
        idle.push_back(driver.repaint());
    }
    state.counters["drag"] = median(drag);
    state.counters["idle"] = median(idle);
    state.counters["drag/idle"] = median(drag) / median(idle);
}

/// The cost of tools that only draw over the data, while nothing happens.
void runIdle(benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)(), bool hasStyle)
{
    PlotDriver tools(make(), true, hasStyle);
    PlotDriver none(make(), false, hasStyle);
    new tarnis::PlotMarkers(&tools.plot());
    new tarnis::PlotRuler(&tools.plot());
    new tarnis::PlotLegend(&tools.plot());
    settle(tools.plot());
    std::vector<double> idle;
    std::vector<double> plain;
    for (auto _ : state) {
        idle.push_back(tools.repaint());
        plain.push_back(none.repaint());
    }
    state.counters["idle"] = median(idle);
    state.counters["plain"] = median(plain);
    state.counters["idle/plain"] = median(idle) / median(plain);
}

std::string nameOf(const char* name, bool hasStyle)
{
    return std::string(name) + (hasStyle ? "/style" : "/classic");
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    using benchmark::RegisterBenchmark;
    for (auto* entry : { RegisterBenchmark("8 x 100k/classic", run, curves, false),
             RegisterBenchmark("8 x 100k/style", run, curves, true),
             RegisterBenchmark("map 1024/classic", run, map, false),
             RegisterBenchmark("map 1024/style", run, map, true) })
        entry->Iterations(60)->Unit(benchmark::kMillisecond);
    struct Tool {
        const char* name;
        std::unique_ptr<XYGraphWidget> (*make)();
        Attach attach;
    };
    for (const Tool& tool :
        { Tool { "8 x 100k + error bars", curves, errorBars }, Tool { "8 x 100k + references", curves, references },
            Tool { "8 x 100k + difference", curves, difference }, Tool { "8 x 100k + ratio", curves, ratio },
            Tool { "8 x 100k + significance", curves, significance }, Tool { "8 x 100k + envelope", curves, envelope },
            Tool { "8 x 100k + legend", curves, legend }, Tool { "map 1024 + maximum", map, maximum } })
        for (const bool hasStyle : { false, true })
            RegisterBenchmark(nameOf(tool.name, hasStyle).c_str(), runTool, tool.make, hasStyle, tool.attach)
                ->Iterations(40)
                ->Unit(benchmark::kMillisecond);
    struct Drag {
        const char* name;
        std::unique_ptr<XYGraphWidget> (*make)();
        void (*begin)(PlotDriver&);
    };
    for (const Drag& drag :
        { Drag { "8 x 100k + ruler", curves, ruler }, Drag { "map 1024 + ruler", map, ruler },
            Drag { "8 x 100k + markers", curves, markers }, Drag { "map 1024 + markers", map, markers },
            Drag { "map 1024 + profile line", map, profileLine }, Drag { "8 x 100k + rubber band", curves, rubberBand },
            Drag { "map 1024 + rubber band", map, rubberBand } })
        for (const bool hasStyle : { false, true })
            RegisterBenchmark(nameOf(drag.name, hasStyle).c_str(), runDrag, drag.make, hasStyle, drag.begin)
                ->Iterations(60)
                ->Unit(benchmark::kMillisecond);
    for (const bool hasStyle : { false, true }) {
        RegisterBenchmark(nameOf("8 x 100k + all overlays", hasStyle).c_str(), runIdle, curves, hasStyle)
            ->Iterations(60)
            ->Unit(benchmark::kMillisecond);
        RegisterBenchmark(nameOf("map 1024 + all overlays", hasStyle).c_str(), runIdle, map, hasStyle)
            ->Iterations(60)
            ->Unit(benchmark::kMillisecond);
    }
    return runBenchmarks(argc, argv);
}
