// The live 2D window with a map of 1024 x 1024 bins (8 MiB): what the GUI thread spends on a poll, from the reply to
// the picture on the window (limit: 40 ms), and on steps of the user who cuts and zooms (limit: 30 ms). The counters
// are medians in milliseconds of the thread's processor time, beside them one copy of the reply's bytes.
#include "headless.h"
#include "measure.h"
#include "shownreplies.h"

#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>

#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

namespace {

constexpr int side = 1024;

QByteArray payloadOf(bool fractions)
{
    std::mt19937_64 generator(7);
    std::bernoulli_distribution isEmpty(0.2);
    std::exponential_distribution<double> height(0.01);
    std::vector<double> values;
    values.reserve(std::size_t(side) * side);
    for (int i = 0; i < side * side; ++i) {
        const double value = isEmpty(generator) ? 0.0 : 1.0 + height(generator);
        values.push_back(fractions ? value : std::floor(value));
    }
    return { reinterpret_cast<const char*>(values.data()), qsizetype(values.size() * sizeof(double)) };
}

class Window : public Graph2DDialog {
public:
    explicit Window(bool logScale)
        : Graph2DDialog(nullptr, "Map", "X", side, 0.0, side, 1, 0, "Y", side, 0.0, side, 1, 0, {}, QString(), nullptr)
        , plot(*getGraphWidget())
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        plot.setFixedSize(900, 900);
        show();
        plot.onLogScale(logScale);
        QCoreApplication::processEvents();
    }
    void trigger(const QString& entry)
    {
        for (QAction* action : plot.actions()) {
            if (action->text() == entry)
                action->trigger();
        }
    }
    void click(QPointF point)
    {
        for (const auto type : { QEvent::MouseButtonPress, QEvent::MouseButtonRelease }) {
            QMouseEvent event(type, point, plot.mapToGlobal(point), Qt::LeftButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(&plot, &event);
        }
        plot.repaint();
    }
    XY2DGraphWidget& plot;
};

PTarnisCmd mapReply()
{
    return binaryReply(QStringLiteral("OK: exported 1024 x 1024 y\n"));
}

void replyToPicture(benchmark::State& state, bool fractions, bool logScale)
{
    Window window(logScale);
    showReplies(state, window, window.plot, mapReply(), payloadOf(fractions));
}

/// A step with both cut windows open, and all three plots drawn again.
void step(benchmark::State& state, bool zooms)
{
    Window window(false);
    window.result(mapReply(), payloadOf(false));
    window.trigger(QStringLiteral("1D Cut"));
    if (zooms)
        window.trigger(QStringLiteral("Zoom In"));
    QCoreApplication::processEvents();
    std::vector<double> steps;
    int number = 0;
    for (auto unused : state) {
        ++number;
        steps.push_back(millisecondsOf([&] {
            if (zooms)
                window.click(QPointF(400.0, 400.0));
            else
                window.plot.update1dCutRect(number, side - number, number, side - number);
            QCoreApplication::processEvents();
        }));
        state.SetIterationTime(steps.back() / 1000.0);
        if (zooms && number % 10 == 0)
            window.plot.onReset();
    }
    state.counters["step_ms"] = median(steps);
}

void add(const char* name, const std::function<void(benchmark::State&)>& work)
{
    benchmark::RegisterBenchmark(name, work)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(51);
}

} // namespace

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    add("reply/counts", [](benchmark::State& state) { replyToPicture(state, false, false); });
    add("reply/counts-log", [](benchmark::State& state) { replyToPicture(state, false, true); });
    add("reply/fractions", [](benchmark::State& state) { replyToPicture(state, true, false); });
    add("reply/fractions-log", [](benchmark::State& state) { replyToPicture(state, true, true); });
    add("cut", [](benchmark::State& state) { step(state, false); });
    add("zoom", [](benchmark::State& state) { step(state, true); });
    return runBenchmarks(argc, argv);
}
