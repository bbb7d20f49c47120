// The 5 by 5 filter on a 1024 x 1024 map against explicit loops, in one run.
#include "measure.h"
#include "tarnis/dialogs/graph2dfilterdialog.h"
#include "tarnis/dialogs/graph2dkernel_p.h"

#include <malloc.h>

#include <random>

namespace {

using Rows = QList<QList<double>>;

Rows randomMap(int side)
{
    std::mt19937_64 generator(1);
    std::poisson_distribution<int> counts(20.0);
    Rows rows;
    for (int r = 0; r < side; ++r) {
        QList<double> row(side);
        for (double& value : row)
            value = counts(generator);
        rows.append(row);
    }
    return rows;
}

Graph2DFilter smoothing()
{
    Graph2DFilter filter;
    for (auto& row : filter.matrix) {
        for (int& weight : row)
            weight = 1;
    }
    filter.divisor = 25;
    return filter;
}

Rows speltOut(const Rows& source, const Graph2DFilter& filter)
{
    Rows target = source;
    const qsizetype rows = source.size();
    const qsizetype columns = source.first().size();
    for (qsizetype y = rows - 3; y >= 2; --y) {
        for (qsizetype x = 2; x <= columns - 3; ++x) {
            double sum = 0.0;
            for (int i = 0; i < 5; ++i) {
                for (int j = 0; j < 5; ++j)
                    sum += filter.matrix[i][j] * source.at(y + 2 - i).at(x - 2 + j);
            }
            if (filter.divisor != 0)
                sum /= filter.divisor;
            target[y][x] = sum;
        }
    }
    return target;
}

void filterSpeltOut(benchmark::State& state)
{
    const Rows source = randomMap(1024);
    for (auto _ : state)
        benchmark::DoNotOptimize(speltOut(source, smoothing()));
}
BENCHMARK(filterSpeltOut)->Unit(benchmark::kMillisecond);

void filterProduct(benchmark::State& state)
{
    const Rows source = randomMap(1024);
    for (auto _ : state)
        benchmark::DoNotOptimize(tarnis::filtered(source, smoothing()));
}
BENCHMARK(filterProduct)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    // Freed maps are kept by the process: otherwise both times would be dominated by the kernel's zeroing of pages.
    mallopt(M_TRIM_THRESHOLD, 1 << 28);
    return runBenchmarks(argc, argv);
}
