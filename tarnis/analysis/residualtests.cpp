#include "tarnis/analysis/residualtests_p.h"

#include "tarnis/analysis/special_p.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace tarnis::analysis {

namespace {

// Lower limit of model contents: otherwise a single count in an empty bin would deviate by many errors.
constexpr double leastContent = 0.3;
// If the parameters absorb an addition almost completely, only rounding errors remain.
constexpr double leastRest = 1e-3;
constexpr double reach = 3.0; // of an added peak, in sigmas
constexpr std::size_t maxParameters = FitModel::maxPeaks * (2 + maxWidthParameters) + 4; // and step, background

// Whether the covariance is the inverse of the information with weights 1/m. For other statistics the parameters absorb
// other residuals; the tests then ignore this and are less sensitive.
bool isEfficient(const FitResult& result)
{
    return result.options.statistic == FitStatistic::Cash || result.options.statistic == FitStatistic::Pearson;
}

// Two numbers in one register. By itself the compiler vectorises over the bins, with many exchanges.
using Pair = double __attribute__((vector_size(16)));

class ScoreTest {
public:
    ScoreTest(FitProblem& problem, const FitResult& result);

    /// Tests an addition to the bins from `begin`, and stores it if it is the most significant one.
    void note(AdditionFinding& finding, std::span<const double> addition, std::size_t begin, double place);

private:
    double significanceOf(std::span<const double> addition, std::size_t begin) const;
    double& factor(std::size_t sum, std::size_t bin)
    {
        return m_factors[(sum / lanes * m_weights.size() + bin) * lanes + sum % lanes];
    }

    // Each addition is multiplied with all columns at once: the sums of one bin do not wait for each other.
    static constexpr std::size_t lanes = 6; // as many as one Gaussian on a line has
    std::vector<double> m_weights; // 1/m
    // Of each bin, in blocks of `lanes` for all bins: (y - m)/m, then the weighted derivatives by the free parameters.
    std::vector<double> m_factors;
    std::size_t m_free = 0; // parameters with a variance
    std::vector<double> m_covariance; // of these
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
    std::vector<std::size_t> free;
    for (std::size_t k = 0; k < n && isEfficient(result); ++k) {
        if (result.covariance[k * n + k] > 0.0)
            free.push_back(k);
    }
    m_free = free.size();
    for (const std::size_t k : free)
        for (const std::size_t l : free)
            m_covariance.push_back(result.covariance[k * n + l]);
    const std::size_t bins = model.size();
    m_weights.resize(bins);
    m_factors.resize((m_free / lanes + 1) * lanes * bins);
    for (std::size_t i = 0; i < bins; ++i) {
        m_weights[i] = 1.0 / std::max(model[i], leastContent);
        factor(0, i) = (problem.contents()[i] - model[i]) * m_weights[i];
    }
    for (std::size_t k = 0; k < m_free; ++k) {
        const std::span<const double> column = problem.column(static_cast<int>(free[k]));
        for (std::size_t i = 0; i < bins; ++i)
            factor(k + 1, i) = column[i] * m_weights[i];
    }
}

double ScoreTest::significanceOf(std::span<const double> addition, std::size_t begin) const
{
    std::array<double, (maxParameters / lanes + 1) * lanes> sums {};
    double variance = 0.0;
    for (std::size_t i = 0; i < addition.size(); ++i)
        variance += m_weights[begin + i] * addition[i] * addition[i];
    for (std::size_t first = 0; first <= m_free; first += lanes) {
        const double* const factors = m_factors.data() + (first / lanes * m_weights.size() + begin) * lanes;
        std::array<Pair, lanes / 2> block {};
        for (std::size_t i = 0; i < addition.size(); ++i) {
            const Pair both { addition[i], addition[i] };
            for (std::size_t k = 0; k < block.size(); ++k) {
                Pair pair;
                std::memcpy(&pair, factors + i * lanes + 2 * k, sizeof(pair));
                block[k] += both * pair;
            }
        }
        std::memcpy(sums.data() + first, block.data(), sizeof(block));
    }
    const double* const shared = sums.data() + 1;
    double taken = 0.0;
    for (std::size_t k = 0; k < m_free; ++k)
        taken += shared[k] * dot(m_covariance.data() + k * m_free, shared, m_free);
    const double rest = variance - taken;
    return rest > leastRest * variance ? sums[0] / std::sqrt(rest) : 0.0;
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
        for (std::size_t i = 0; i < addition.size(); ++i)
            addition[i] = shape(view.z[i], view.quarter[i], view.side[i]);
        test.note(finding, addition, 0, view.top);
    };
    // Third and fourth term of the Gram-Charlier series, then tails.
    run([&](double z, double q, double) { return fourth(fourth(q)) * z * (z * z - 3.0); });
    run([&](double z, double q, double) { return fourth(fourth(q)) * ((z * z - 6.0) * z * z + 3.0); });
    run([](double z, double, double) { return 1.0 / (1.0 + 0.7213 * z * z); }); // a Lorentzian of the same FWHM
    run([&](double, double q, double) { return fourth(q); });
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

void testStep(ScoreTest& test, const PeakView& view, AdditionFinding& finding)
{
    std::vector<double> addition(view.z.size());
    // The smaller tail of the distribution, exp(-z^2/2) exp(z^2/2) erfc(|z|/sqrt 2) / 2.
    for (std::size_t i = 0; i < addition.size(); ++i)
        addition[i] = std::fabs(view.z[i]) / sqrtTwo;
    scaledErfcs(addition.data(), addition.size());
    for (std::size_t i = 0; i < addition.size(); ++i) {
        const double tail = 0.5 * fourth(fourth(view.quarter[i])) * addition[i];
        addition[i] = view.z[i] > 0.0 ? tail : 1.0 - tail;
    }
    test.note(finding, addition, 0, view.top);
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
        const PeakView view(x, peak.measures.top, sigmaOf(peak.measures.fwhm));
        testShapes(test, view, findings.shape);
        if (problem.layout().step < 0)
            testStep(test, view, findings.background);
    }
    testBackground(test, problem, x, findings.background);
    return findings;
}

} // namespace tarnis::analysis
