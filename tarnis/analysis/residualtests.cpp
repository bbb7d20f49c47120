#include "tarnis/analysis/residualtests_p.h"

#include "tarnis/analysis/special_p.h"
#include "tarnis/foundation/avx2_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis::analysis {

namespace {

// Lower limit of model contents: otherwise a single count in an empty bin would deviate by many errors.
constexpr double minContent = 0.3;
// If the parameters absorb an addition almost completely, only rounding errors remain.
constexpr double minRest = 1e-3;
constexpr double reach = 3.0; // of an added peak, in sigmas

// Whether the covariance is the inverse of the information with weights 1/m. For other statistics the parameters absorb
// other residuals; the tests then ignore this and are less sensitive.
bool isEfficient(const FitResult& result)
{
    return result.options.statistic == FitStatistic::Cash || result.options.statistic == FitStatistic::Pearson;
}

class ScoreTest {
public:
    ScoreTest(FitProblem& problem, const FitResult& result);

    /// Tests an addition to the bins from `begin`, and stores it if it is the most significant one.
    void note(AdditionFinding& finding, std::span<const double> addition, std::size_t begin, double place);

private:
    double significanceOf(std::span<const double> addition, std::size_t begin);

    std::vector<double> m_weights; // 1/m
    std::vector<double> m_residuals; // y - m
    std::vector<const double*> m_columns; // the residuals, then the derivatives by the free parameters
    std::vector<double> m_covariance; // of these
    std::vector<const double*> m_shifted; // scratch: the columns from the first bin of the addition, and the addition
    std::vector<double> m_sums; // scratch: its products with these
};

ScoreTest::ScoreTest(FitProblem& problem, const FitResult& result)
{
    std::vector<double> p;
    p.reserve(result.parameters.size());
    for (const FitParameter& parameter : result.parameters)
        p.push_back(parameter.value);
    const std::span<const double> model = problem.evaluate(p.data());
    problem.differentiate();
    const std::size_t n = p.size();
    const std::size_t bins = model.size();
    m_weights.resize(bins);
    m_residuals.resize(bins);
    for (std::size_t i = 0; i < bins; ++i) {
        m_weights[i] = 1.0 / std::max(model[i], minContent);
        m_residuals[i] = problem.contents()[i] - model[i];
    }
    std::vector<std::size_t> free; // those with a variance
    free.reserve(n);
    for (std::size_t k = 0; k < n && isEfficient(result); ++k) {
        if (result.covariance[k * n + k] > 0.0)
            free.push_back(k);
    }
    m_columns.reserve(free.size() + 1);
    m_covariance.reserve(free.size() * free.size());
    m_columns.push_back(m_residuals.data());
    for (const std::size_t k : free) {
        m_columns.push_back(problem.column(static_cast<int>(k)).data());
        for (const std::size_t l : free)
            m_covariance.push_back(result.covariance[k * n + l]);
    }
    m_shifted.resize(m_columns.size() + 1);
    m_sums.resize(m_columns.size() + 1);
}

double ScoreTest::significanceOf(std::span<const double> addition, std::size_t begin)
{
    for (std::size_t k = 0; k < m_columns.size(); ++k)
        m_shifted[k] = m_columns[k] + begin;
    m_shifted.back() = addition.data();
    weightedDots(
        m_weights.data() + begin, addition.data(), m_shifted.data(), m_shifted.size(), addition.size(), m_sums.data());
    const double variance = m_sums.back();
    const double* const shared = m_sums.data() + 1;
    const std::size_t free = m_columns.size() - 1;
    double taken = 0.0;
    for (std::size_t k = 0; k < free; ++k) {
        for (std::size_t l = 0; l < k; ++l)
            taken += 2.0 * m_covariance[k * free + l] * shared[k] * shared[l];
        taken += m_covariance[k * free + k] * shared[k] * shared[k];
    }
    const double rest = variance - taken;
    return rest > minRest * variance ? m_sums[0] / std::sqrt(rest) : 0.0;
}

void ScoreTest::note(AdditionFinding& finding, std::span<const double> addition, std::size_t begin, double place)
{
    const double significance = significanceOf(addition, begin);
    if (std::fabs(significance) > std::fabs(finding.significance))
        finding = { significance, place };
}

/// Centres of the bins.
std::vector<double> centresOf(const FitProblem& problem)
{
    std::vector<double> centres;
    centres.reserve(problem.bins());
    for (std::size_t i = 0; i < problem.bins(); ++i)
        centres.push_back(0.5 * (problem.edges()[i] + problem.edges()[i + 1]));
    return centres;
}

/// Positions three quarters of a sigma apart are enough: a peak between two loses 4 % of its significance.
void testPeaks(
    ScoreTest& test, const FitProblem& problem, const std::vector<double>& x, double sigma, AdditionFinding& finding)
{
    const double width = problem.meanWidth();
    const bool isEven = std::all_of(problem.edges().begin() + 1, problem.edges().end(),
        [&, i = 0](double edge) mutable { return std::fabs(edge - (problem.lower() + ++i * width)) < 1e-9 * width; });
    const auto step = static_cast<std::size_t>(std::max(1.0, std::floor(0.75 * sigma / width)));
    const auto half = static_cast<std::size_t>(std::ceil(reach * sigma / width));
    std::vector<double> kernel;
    kernel.reserve(2 * half + 1);
    for (std::size_t i = 0; i <= 2 * half && isEven; ++i) {
        const double z = (static_cast<double>(i) - static_cast<double>(half)) * width / sigma;
        kernel.push_back(std::exp(-0.5 * z * z));
    }
    std::vector<double> addition;
    for (std::size_t place = 0; place < x.size(); place += step) {
        const std::size_t begin = place - std::min(place, half);
        const std::size_t end = std::min(x.size(), place + half + 1);
        if (isEven) {
            test.note(finding, { kernel.data() + (begin + half - place), end - begin }, begin, x[place]);
            continue;
        }
        addition.clear();
        for (std::size_t i = begin; i < end; ++i) {
            const double z = (x[i] - x[place]) / sigma;
            addition.push_back(std::exp(-0.5 * z * z));
        }
        test.note(finding, addition, begin, x[place]);
    }
}

// The bins as seen from a peak.
struct PeakView {
    PeakView(const std::vector<double>& x, double peakTop, double sigma);

    double top;
    std::vector<double> z; // distances in sigmas
    // Powers of two exponentials for each bin are all the Gaussians of the tests.
    std::vector<double> quarter; // a Gaussian of four times the width
    std::vector<double> side; // of 2.5 times the width
};

double fourth(double q)
{
    return q * q * (q * q);
}

PeakView::PeakView(const std::vector<double>& x, double peakTop, double sigma)
    : top(peakTop)
    , z(x.size())
    , quarter(x.size())
    , side(x.size())
{
    const double inverse = 1.0 / sigma;
    for (std::size_t i = 0; i < x.size(); ++i) {
        z[i] = (x[i] - top) * inverse;
        quarter[i] = -0.03125 * z[i] * z[i];
        side[i] = -0.08 * z[i] * z[i];
    }
    exponentials(quarter.data(), quarter.size());
    exponentials(side.data(), side.size());
}

void testShapes(ScoreTest& test, const PeakView& view, AdditionFinding& finding)
{
    std::vector<double> addition(view.z.size());
    const auto run = [&](auto shape) {
        runWide([=, n = addition.size(), to = addition.data(), z = view.z.data(), quarter = view.quarter.data(),
                    side = view.side.data()] {
            for (std::size_t i = 0; i < n; ++i)
                to[i] = shape(z[i], quarter[i], side[i]);
        });
        test.note(finding, addition, 0, view.top);
    };
    // Third and fourth term of the Gram-Charlier series, then tails.
    run([](double z, double q, double) { return fourth(fourth(q)) * z * (z * z - 3.0); });
    run([](double z, double q, double) { return fourth(fourth(q)) * ((z * z - 6.0) * z * z + 3.0); });
    run([](double z, double, double) { return 1.0 / (1.0 + 0.7213 * z * z); }); // a Lorentzian of the same FWHM
    run([](double, double q, double) { return fourth(q); });
    run([](double, double q, double) { return q; });
    run([](double z, double, double s) { return z < 0.0 ? -s * z : 0.0; });
    run([](double z, double, double s) { return z > 0.0 ? s * z : 0.0; });
}

void testBackground(ScoreTest& test, const FitProblem& problem, const std::vector<double>& x, AdditionFinding& finding)
{
    const FitBackground background = problem.model().background;
    const double half = 0.5 * (problem.upper() - problem.lower());
    std::vector<double> addition(x.size());
    const int first = background == FitBackground::None ? 0 : background == FitBackground::Constant ? 1 : 2;
    for (int power = first; power <= 3; ++power) {
        for (std::size_t i = 0; i < x.size(); ++i) {
            const double u = (x[i] - problem.reference()) / half;
            addition[i] = power == 0 ? 1.0 : power == 1 ? u : power == 2 ? u * u : u * u * u;
        }
        test.note(finding, addition, 0, problem.reference());
    }
}

void testStep(ScoreTest& test, const std::vector<double>& x, double top, double sigma, AdditionFinding& finding)
{
    std::vector<double> density(x.size());
    std::vector<double> addition(x.size());
    gaussians(x.data(), x.size(), top, sigma, density.data(), addition.data());
    for (std::size_t i = 0; i < x.size(); ++i)
        addition[i] = x[i] < top ? 1.0 - addition[i] : -addition[i];
    test.note(finding, addition, 0, top);
}

} // namespace

AdditionFindings testAdditions(FitProblem& problem, const FitResult& result)
{
    AdditionFindings findings;
    if (result.peaks.empty() || result.covariance.size() != result.parameters.size() * result.parameters.size())
        return findings;
    ScoreTest test(problem, result);
    const std::vector<double> x = centresOf(problem);
    // A fixed width can be of any size.
    const auto sigmaOf = [&problem](double fwhm) {
        const double sigma = fwhm / fwhmPerSigma;
        return sigma > problem.meanWidth() ? std::min(sigma, problem.upper() - problem.lower()) : problem.meanWidth();
    };
    double narrowest = result.peaks.front().measures.fwhm;
    for (const FittedPeak& peak : result.peaks)
        narrowest = std::min(narrowest, peak.measures.fwhm);
    testPeaks(test, problem, x, sigmaOf(narrowest), findings.peak);
    if (!isEfficient(result))
        return findings;
    for (const FittedPeak& peak : result.peaks) {
        const double sigma = sigmaOf(peak.measures.fwhm);
        const PeakView view(x, peak.measures.top, sigma);
        testShapes(test, view, findings.shape);
        if (problem.layout().step < 0)
            testStep(test, x, peak.measures.top, sigma, findings.background);
    }
    testBackground(test, problem, x, findings.background);
    return findings;
}

} // namespace tarnis::analysis
