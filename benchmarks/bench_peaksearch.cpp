// PeakSearch::exec() on spectra with 50 peaks: time and residual calls, and the time against the series' length.
#include <tarnis/peak/peaksearch.h>

#include "support/peaksearchoracle.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

constexpr int peaks = 50;
constexpr double threshold = 50.0;
constexpr int width = 3;

// 50 peaks of 100 to 1000 counts, three channels wide, on a background of 10 that is empty now and then.
QList<double> spectrum(int channels)
{
    QList<double> mean(channels, 10.0);
    for (int k = 0; k < peaks; ++k) {
        const double center = (k + 0.5) * channels / peaks;
        for (int i = int(center) - 20; i <= int(center) + 20; ++i) {
            const double distance = (i - center) / 3.0;
            mean[i] += (100.0 + 18.0 * k) * std::exp(-0.5 * distance * distance);
        }
    }
    std::mt19937_64 random(1);
    for (double& sample : mean)
        sample = double(std::poisson_distribution<int>(sample)(random));
    return mean;
}

void search(benchmark::State& state)
{
    const QList<double> y = spectrum(int(state.range(0)));
    qsizetype found = 0;
    for (auto _ : state) {
        PeakSearch search(y, 0, int(y.size()), threshold, width, true);
        found = search.exec().size();
        if (search.y.constData() != y.constData())
            state.SkipWithError("the series was copied");
    }
    int calls = 0;
    tarnis::testing::oracleIndexPeaks(y, 0, int(y.size()), threshold, width, true, &calls);
    state.counters["peaks"] = double(found);
    state.counters["calls_per_peak"] = double(calls) / double(found);
}

void searchByAbscissa(benchmark::State& state)
{
    const QList<double> y = spectrum(int(state.range(0)));
    QList<double> x;
    for (qsizetype i = 0; i < y.size(); ++i)
        x.append(0.3 * double(i));
    qsizetype found = 0;
    for (auto _ : state)
        found = PeakSearch(x, y, threshold, width, true).exec().size();
    state.counters["peaks"] = double(found);
}

// Without peaks, only the scan along the series remains.
void searchForNothing(benchmark::State& state)
{
    const QList<double> y = spectrum(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(PeakSearch(y, 0, int(y.size()), 1e9, width, true).exec());
    state.SetComplexityN(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(search)->Arg(16384)->Unit(benchmark::kMicrosecond);
BENCHMARK(searchByAbscissa)->Arg(16384)->Unit(benchmark::kMicrosecond);
BENCHMARK(searchForNothing)->RangeMultiplier(4)->Range(4096, 1 << 20)->Complexity(benchmark::oN);

BENCHMARK_MAIN();
