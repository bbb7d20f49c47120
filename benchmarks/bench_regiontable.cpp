// The update of a table of 32 regions of a plot with 8 curves, against plain sums over the same bins.
#include "headless.h"
#include "measure.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/tools/regiontable.h>

#include <QApplication>

#include <random>
#include <vector>

namespace {

using namespace tarnis;

constexpr int curves = 8;
constexpr int regions = 32;
constexpr int bins = 8192;
constexpr int width = 60; // bins of a region

void update(benchmark::State& state)
{
    MultiVectorGraphWidget plot;
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
    plot.m_groupSize = 1;
    std::mt19937_64 random(1);
    std::vector<QList<double>> data;
    for (int k = 0; k < curves; ++k) {
        QList<double> samples;
        for (int i = 0; i < bins; ++i)
            samples << static_cast<double>(std::poisson_distribution<int>(50.0)(random));
        plot.setData(k, samples, 100.0);
        data.push_back(samples);
    }
    plot.resizeData(curves);
    RegionTable table(&plot);
    for (int r = 0; r < regions; ++r)
        table.regions()->add(PlotRegion::rangeX(100.0 + 240.0 * r, 100.0 + 240.0 * r + width));
    std::vector<double> updates, sums;
    for (auto _ : state) {
        updates.push_back(millisecondsOf([&] { table.refresh(); }));
        sums.push_back(millisecondsOf([&] {
            double total = 0.0;
            for (const QList<double>& samples : data) {
                for (int r = 0; r < regions; ++r) {
                    for (int i = 0; i < width; ++i)
                        total += samples.at(100 + 240 * r + i);
                }
            }
            benchmark::DoNotOptimize(total);
        }));
    }
    state.counters["update_ms"] = median(updates);
    state.counters["plain_sums_ms"] = median(sums);
}

} // namespace

BENCHMARK(update)->Iterations(200)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    prepareHeadless();
    const QApplication application(argc, argv);
    return runBenchmarks(argc, argv);
}
