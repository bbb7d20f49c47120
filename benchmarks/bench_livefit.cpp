// How long a panel that follows a live plot holds the GUI thread: by the start of a fit and, in one pass of the event
// loop, by taking its result and painting it. The fit itself runs on another thread.
#include "headless.h"
#include "measure.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/tools/fitpanel.h>

#include <QApplication>

#include <cmath>
#include <random>
#include <vector>

namespace {

using namespace tarnis;

constexpr int bins = 8192;
constexpr double centre = 4000.0;

QList<double> spectrum(std::mt19937_64& random)
{
    QList<double> samples;
    for (int i = 0; i < bins; ++i) {
        const double z = (i - centre) / 4.0;
        const double mean = 30.0 + (std::abs(z) < 10.0 ? 400.0 * std::exp(-0.5 * z * z) : 0.0);
        samples << static_cast<double>(std::poisson_distribution<int>(mean)(random));
    }
    return samples;
}

void follow(benchmark::State& state)
{
    MultiVectorGraphWidget plot;
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
    plot.m_groupSize = 1;
    std::mt19937_64 random(1);
    plot.setData(0, spectrum(random), 500.0);
    plot.resizeData(1);
    plot.resize(800, 500);
    plot.show();
    FitPanel panel(&plot);
    panel.resize(500, 700);
    panel.show();
    panel.setRange(centre - 50.0, centre + 50.0);
    panel.setFollowSeconds(3600);
    bool isDone = false;
    QObject::connect(&panel, &FitPanel::fitted, [&] { isDone = true; });
    std::vector<double> starts, passes;
    for (auto _ : state) {
        plot.setData(0, spectrum(random), 500.0);
        QCoreApplication::processEvents();
        isDone = false;
        starts.push_back(millisecondsOf([&] { panel.fit(); }));
        double longest = 0.0;
        for (int pass = 0; pass < 3;) {
            longest = std::max(longest, millisecondsOf([] { QCoreApplication::processEvents(); }));
            pass += isDone ? 1 : 0; // the passes after the result paint it
        }
        passes.push_back(longest);
    }
    state.counters["start_ms"] = median(starts);
    state.counters["longest_pass_ms"] = median(passes);
}

} // namespace

BENCHMARK(follow)->Iterations(100)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
