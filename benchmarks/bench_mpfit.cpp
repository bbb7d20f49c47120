// One Gaussian on a constant, fitted by mpfit(), by cminpack's lmdif and by GSL's trust region: the same residuals, the
// same start, the same tolerances. The three run alternately, so that a ratio compares neighbouring times; the medians
// are reported.
#include "measure.h"

#include <tarnis/peak/mpfit.h>

#include <cminpack.h>
#include <gsl/gsl_multifit_nlinear.h>

#include <array>
#include <cmath>
#include <ctime>
#include <random>
#include <vector>

namespace {

constexpr int parameters = 4;
constexpr double tolerance = 1e-10;

struct Series {
    std::vector<double> y;
    std::array<double, parameters> start;
    long calls = 0;
};

// A peak of 1000 counts over a tenth of the samples, with the noise of counting.
Series peakWith(int samples)
{
    Series series { {}, { 800.0, 0.47 * samples, 0.12 * samples, 0.0 } };
    std::mt19937_64 random(samples);
    for (int i = 0; i < samples; ++i) {
        const double distance = (i - 0.5 * samples) / (0.1 * samples);
        const double mean = 1000.0 * std::exp(-0.5 * distance * distance) + 50.0;
        series.y.push_back(double(std::poisson_distribution<int>(mean)(random)));
    }
    return series;
}

// Writes residuals to every stride-th element of r: GSL needs them in a column of a row-major matrix.
inline void residuals(Series& series, const double* p, double* r, std::size_t stride = 1)
{
    ++series.calls;
    const double sigma2 = p[2] * p[2];
    const std::size_t n = series.y.size();
    for (std::size_t i = 0; i < n; ++i) {
        const double distance = double(i) - p[1];
        r[i * stride] = series.y[i] - p[0] * std::exp(distance * distance * -0.5 / sigma2) - p[3];
    }
}

int mpfitResiduals(int, int, double* p, double* r, double**, void* series)
{
    residuals(*static_cast<Series*>(series), p, r);
    return 0;
}

int lmdifResiduals(void* series, int, int, const double* p, double* r, int)
{
    residuals(*static_cast<Series*>(series), p, r);
    return 0;
}

int gslResiduals(const gsl_vector* p, void* series, gsl_vector* r)
{
    residuals(*static_cast<Series*>(series), p->data, r->data, r->stride);
    return GSL_SUCCESS;
}

// Like a normal call, with the last call at the result; the configuration sets lmdif's difference step.
double fitWithMpfit(Series& series)
{
    std::array<double, parameters> p = series.start;
    mp_config config {};
    config.epsfcn = 2.220446049250313e-16;
    config.nprint = 1;
    mp_result result {};
    mpfit(mpfitResiduals, int(series.y.size()), parameters, p.data(), nullptr, &config, &series, &result);
    return p[1];
}

// Its arrays are allocated before the measurement starts.
struct LmdifArrays {
    explicit LmdifArrays(std::size_t m)
        : fvec(m)
        , fjac(m * parameters)
        , wa4(m)
    {
    }
    std::vector<double> fvec, fjac, wa4;
    std::array<double, parameters> diag {}, qtf {}, wa1 {}, wa2 {}, wa3 {};
    std::array<int, parameters> ipvt {};
};

double fitWithLmdif(Series& series)
{
    static LmdifArrays a(1000);
    const int m = int(series.y.size());
    std::array<double, parameters> p = series.start;
    int nfev = 0;
    lmdif(lmdifResiduals, &series, m, parameters, p.data(), a.fvec.data(), tolerance, tolerance, tolerance, 2000, 0.0,
        a.diag.data(), 1, 100.0, 0, &nfev, a.fjac.data(), m, a.ipvt.data(), a.qtf.data(), a.wa1.data(), a.wa2.data(),
        a.wa3.data(), a.wa4.data());
    return p[1];
}

double fitWithGsl(Series& series)
{
    gsl_multifit_nlinear_parameters settings = gsl_multifit_nlinear_default_parameters();
    gsl_multifit_nlinear_fdf problem {};
    problem.f = gslResiduals;
    problem.n = series.y.size();
    problem.p = parameters;
    problem.params = &series;
    gsl_multifit_nlinear_workspace* work =
        gsl_multifit_nlinear_alloc(gsl_multifit_nlinear_trust, &settings, problem.n, problem.p);
    gsl_vector_const_view start = gsl_vector_const_view_array(series.start.data(), parameters);
    gsl_multifit_nlinear_init(&start.vector, &problem, work);
    int info = 0;
    gsl_multifit_nlinear_driver(200, tolerance, tolerance, tolerance, nullptr, nullptr, &info, work);
    const double center = gsl_vector_get(gsl_multifit_nlinear_position(work), 1);
    gsl_multifit_nlinear_free(work);
    return center;
}

// Processor time of this thread in nanoseconds, without other load on the machine.
double processorTime()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return 1e9 * double(now.tv_sec) + double(now.tv_nsec);
}

// Time of some consecutive fits, few enough that the load of the machine does not change in between.
double timeOf(double (*fit)(Series&), Series& series)
{
    constexpr int fits = 20;
    const double begin = processorTime();
    for (int i = 0; i < fits; ++i)
        benchmark::DoNotOptimize(fit(series));
    return (processorTime() - begin) / fits;
}

double callsOf(double (*fit)(Series&), Series& series)
{
    series.calls = 0;
    fit(series);
    return double(series.calls);
}

void gaussianOnAConstant(benchmark::State& state)
{
    Series series = peakWith(int(state.range(0)));
    const double center = fitWithMpfit(series);
    if (std::fabs(fitWithLmdif(series) - center) > 1e-4 || std::fabs(fitWithGsl(series) - center) > 1e-4)
        return state.SkipWithError("the fits differ");
    std::vector<double> mpfitTimes, toLmdif, toGsl, lmdifTimes, gslTimes;
    for (auto _ : state) {
        const double before = timeOf(fitWithLmdif, series);
        const double ours = timeOf(fitWithMpfit, series);
        const double after = timeOf(fitWithLmdif, series);
        const double gsl = timeOf(fitWithGsl, series);
        const double lmdif = 0.5 * (before + after);
        mpfitTimes.push_back(ours);
        lmdifTimes.push_back(lmdif);
        gslTimes.push_back(gsl);
        toLmdif.push_back(ours / lmdif);
        toGsl.push_back(ours / gsl);
    }
    state.counters["mpfit_us"] = median(mpfitTimes) / 1000;
    state.counters["lmdif_us"] = median(lmdifTimes) / 1000;
    state.counters["gsl_us"] = median(gslTimes) / 1000;
    state.counters["to_lmdif"] = median(toLmdif);
    state.counters["to_gsl"] = median(toGsl);
    const double calls = callsOf(fitWithMpfit, series);
    state.counters["calls"] = calls;
    state.counters["lmdif_calls"] = callsOf(fitWithLmdif, series);
    state.counters["gsl_calls"] = callsOf(fitWithGsl, series);
    state.counters["ns_per_sample_and_call"] = median(mpfitTimes) / (calls * double(series.y.size()));
}

} // namespace

BENCHMARK(gaussianOnAConstant)->Arg(30)->Arg(100)->Arg(300)->Iterations(400)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
