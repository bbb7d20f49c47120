// Fits of one Gaussian with analytic derivatives against cminpack's lmdif on the same model, and all peaks of a
// spectrum.
#include "measure.h"

#include <tarnis/analysis/peaktable.h>
#include <tarnis/analysis/spectrumfit.h>

#include <cminpack.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace {

using namespace tarnis;

constexpr int bins = 100;
constexpr int parameters = 5;

double meanOf(const double* p, int i)
{
    const double scale = 1.0 / (p[2] * std::sqrt(2.0));
    const double low = std::erfc(-(i - 0.5 - p[1]) * scale);
    const double high = std::erfc(-(i + 0.5 - p[1]) * scale);
    return 0.5 * p[0] * (high - low) + p[3] + p[4] * (i - 0.5 * (bins - 1));
}

std::vector<double> peakOnALine()
{
    std::mt19937_64 random(1);
    const std::array truth { 5000.0, 48.7, 4.2, 30.0, 0.05 };
    std::vector<double> counts;
    for (int i = 0; i < bins; ++i)
        counts.push_back(static_cast<double>(std::poisson_distribution<int>(meanOf(truth.data(), i))(random)));
    return counts;
}

// The same signed roots of the deviance as FitStatistic::Cash.
int residuals(void* data, int m, int, const double* p, double* r, int)
{
    const auto& counts = *static_cast<const std::vector<double>*>(data);
    for (int i = 0; i < m; ++i) {
        const double y = counts[static_cast<std::size_t>(i)];
        const double mean = std::fmax(1e-9, meanOf(p, i));
        const double half = y > 0.0 ? mean - y + y * std::log(y / mean) : mean;
        r[i] = std::copysign(std::sqrt(2.0 * std::fmax(0.0, half)), mean - y);
    }
    return 0;
}

double fitWithLmdif(std::vector<double>& counts)
{
    std::array p { 4000.0, 48.0, 3.5, 30.0, 0.0 };
    std::array<double, bins> fvec {}, wa4 {};
    std::array<double, bins * parameters> fjac {};
    std::array<double, parameters> diag {}, qtf {}, wa1 {}, wa2 {}, wa3 {};
    std::array<int, parameters> ipvt {};
    int nfev = 0;
    lmdif(residuals, &counts, bins, parameters, p.data(), fvec.data(), 1e-10, 1e-10, 1e-10, 2000, 0.0, diag.data(), 1,
        100.0, 0, &nfev, fjac.data(), bins, ipvt.data(), qtf.data(), wa1.data(), wa2.data(), wa3.data(), wa4.data());
    return p[1];
}

// With errors, correlations, derived quantities, goodness and verdict.
double fitWithVerdict(std::vector<double>& counts)
{
    BinnedData data;
    data.contents = counts;
    return fitSpectrum(data, 0, bins - 1, {}).valueOf(QStringLiteral("centre"));
}

void gaussianOnALine(benchmark::State& state)
{
    std::vector<double> counts = peakOnALine();
    if (std::fabs(fitWithLmdif(counts) - fitWithVerdict(counts)) > 1e-3)
        return state.SkipWithError("the fits differ");
    std::vector<double> ours, peers, ratios;
    constexpr int fits = 20;
    const auto timeOf = [&](double (*fit)(std::vector<double>&)) {
        return millisecondsOf([&] {
            for (int i = 0; i < fits; ++i)
                benchmark::DoNotOptimize(fit(counts));
        }) * 1000.0
            / fits;
    };
    for (auto _ : state) {
        const double peer = timeOf(fitWithLmdif);
        const double own = timeOf(fitWithVerdict);
        ours.push_back(own);
        peers.push_back(peer);
        ratios.push_back(own / peer);
    }
    state.counters["fit_us"] = median(ours);
    state.counters["lmdif_us"] = median(peers);
    state.counters["to_lmdif"] = median(ratios);
}

void allPeaks(benchmark::State& state)
{
    std::mt19937_64 random(2);
    std::vector<double> counts;
    const WidthCalibration widths { 2.0, 0.002 };
    for (int i = 0; i < 16384; ++i) {
        double mean = 60.0 * std::exp(-i / 3000.0) + 0.3;
        for (int k = 1; k <= 35; ++k) {
            const double centre = 450.0 * k;
            const double z = (i - centre) / widths.sigma(centre);
            mean += std::fabs(z) < 8.0 ? 300.0 * std::exp(-0.5 * z * z) / (1.0 + k % 5) : 0.0;
        }
        counts.push_back(static_cast<double>(std::poisson_distribution<int>(mean)(random)));
    }
    BinnedData data;
    data.contents = counts;
    std::vector<double> times;
    std::size_t peaks = 0;
    for (auto _ : state)
        times.push_back(millisecondsOf([&] { peaks = analysePeaks(data).peaks.size(); }));
    state.counters["ms"] = median(times);
    state.counters["peaks"] = static_cast<double>(peaks);
}

} // namespace

BENCHMARK(gaussianOnALine)->Iterations(100)->Unit(benchmark::kMillisecond);
BENCHMARK(allPeaks)->Iterations(5)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return runBenchmarks(argc, argv);
}
