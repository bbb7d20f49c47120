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
// The entries with one tool more have it over all curves, or over the whole map. "wheel/none" is the ratio to the wheel
// without that tool. "drag" is a move of one end of a ruler over all curves, or of a profile line.
#include "measure.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/plotcrosshair.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plotruler.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/referencecurves.h>

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>
#include <memory>
#include <random>

namespace {

constexpr int seriesCount = 8;
constexpr int sampleCount = 100000;
constexpr int mapSide = 1024;

std::unique_ptr<XYGraphWidget> curves()
{
    auto plot = std::make_unique<MultiVectorGraphWidget>();
    std::mt19937_64 generator(3);
    plot->m_groupSize = 1;
    plot->init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
    plot->initManualX(0, sampleCount);
    for (int i = 0; i < seriesCount; ++i) {
        QList<double> values(sampleCount);
        double largest = 0.0;
        for (int k = 0; k < sampleCount; ++k) {
            const double expected = 200.0 * (i + 1) * (1.0 + std::sin(k * 2e-4 + i));
            values[k] = std::poisson_distribution<int>(expected + 5.0)(generator);
            largest = std::max(largest, values[k]);
        }
        plot->setData(i, values, largest);
    }
    plot->resize(1000, 600);
    return plot;
}

std::unique_ptr<XYGraphWidget> map()
{
    auto plot = std::make_unique<XY2DGraphWidget>();
    std::mt19937_64 generator(4);
    std::exponential_distribution<double> height(0.01);
    plot->init(QStringLiteral("x"), QStringLiteral("y"), mapSide, mapSide, true, true);
    plot->initManualX(0, mapSide);
    plot->initManualY(0, mapSide);
    for (int row = 0; row < mapSide; ++row) {
        QList<double> bins(mapSide);
        double largest = 0.0;
        for (double& bin : bins) {
            bin = std::floor(height(generator));
            largest = std::max(largest, bin);
        }
        plot->setData(row, bins, largest, false);
    }
    plot->resize(1000, 800);
    return plot;
}

void settle(XYGraphWidget& plot)
{
    for (int i = 0; i < 3; ++i) { // the colour bar asks for its width while it is painted
        QCoreApplication::processEvents();
        plot.repaint();
    }
}

/// A visible plot with its tools.
class Hand {
public:
    Hand(std::unique_ptr<XYGraphWidget> plot, bool hasTools, bool hasStyle)
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
    double drag(tarnis::PlotRuler& ruler, int round)
    {
        const tarnis::PlotMapping mapping = tarnis::PlotMapping::of(*m_plot);
        const QPointF from = mapping.valueAt(mapping.plotRect().topLeft() + QPointF(3.0, 3.0));
        const QPointF to = mapping.valueAt(mapping.plotRect().bottomRight() - QPointF(3.0 + round % 40, 3.0));
        return millisecondsOf([&] {
            ruler.setEnds(from, to);
            QCoreApplication::processEvents();
        });
    }
    void press() { button(QEvent::MouseButtonPress, Qt::MiddleButton); }
    void release() { button(QEvent::MouseButtonRelease, Qt::NoButton); }
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
    void button(QEvent::Type type, Qt::MouseButtons held)
    {
        QMouseEvent event(type, m_middle, m_plot->mapToGlobal(m_middle), Qt::MiddleButton, held, Qt::NoModifier);
        QCoreApplication::sendEvent(m_plot.get(), &event);
        settle(*m_plot);
    }

    std::unique_ptr<XYGraphWidget> m_plot;
    QPointF m_middle;
};

void run(benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)(), bool hasStyle)
{
    Hand tools(make(), true, hasStyle);
    Hand none(make(), false, hasStyle);
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

/// The wheel with one tool more.
void runTool(benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)(), bool hasStyle, Attach attach)
{
    Hand with(make(), true, hasStyle);
    Hand without(make(), true, hasStyle);
    attach(with.plot());
    settle(with.plot());
    std::vector<double> wheel;
    std::vector<double> none;
    std::vector<double> cross;
    int round = 0;
    for (auto _ : state) {
        wheel.push_back(with.wheel(round));
        none.push_back(without.wheel(round));
        with.move(round);
        cross.push_back(with.move(round + 1));
        with.leave();
        ++round;
    }
    state.counters["wheel"] = median(wheel);
    state.counters["none"] = median(none);
    state.counters["wheel/none"] = median(wheel) / median(none);
    state.counters["cross"] = median(cross);
}

/// An end of a ruler, against a move of the cross.
void runRuler(benchmark::State& state, std::unique_ptr<XYGraphWidget> (*make)())
{
    Hand hand(make(), true, false);
    auto* const ruler = new tarnis::PlotRuler(&hand.plot());
    hand.drag(*ruler, 0); // adds up the blocks
    std::vector<double> drag;
    std::vector<double> idle;
    int round = 1;
    for (auto _ : state) {
        drag.push_back(hand.drag(*ruler, round++));
        idle.push_back(hand.repaint());
    }
    state.counters["drag"] = median(drag);
    state.counters["idle"] = median(idle);
    state.counters["drag/idle"] = median(drag) / median(idle);
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    using benchmark::RegisterBenchmark;
    for (auto* entry : { RegisterBenchmark("8 x 100k/classic", run, curves, false),
             RegisterBenchmark("8 x 100k/style", run, curves, true),
             RegisterBenchmark("map 1024/classic", run, map, false),
             RegisterBenchmark("map 1024/style", run, map, true) })
        entry->Iterations(60)->Unit(benchmark::kMillisecond);
    for (auto* entry : { RegisterBenchmark("8 x 100k + error bars/classic", runTool, curves, false, errorBars),
             RegisterBenchmark("8 x 100k + error bars/style", runTool, curves, true, errorBars),
             RegisterBenchmark("8 x 100k + references/classic", runTool, curves, false, references),
             RegisterBenchmark("8 x 100k + references/style", runTool, curves, true, references),
             RegisterBenchmark("8 x 100k + difference/classic", runTool, curves, false, difference),
             RegisterBenchmark("8 x 100k + significance/classic", runTool, curves, false, significance),
             RegisterBenchmark("8 x 100k + envelope/classic", runTool, curves, false, envelope),
             RegisterBenchmark("8 x 100k + legend/classic", runTool, curves, false, legend),
             RegisterBenchmark("8 x 100k + ruler", runRuler, curves),
             RegisterBenchmark("map 1024 + ruler", runRuler, map) })
        entry->Iterations(40)->Unit(benchmark::kMillisecond);
    return runBenchmarks(argc, argv);
}
