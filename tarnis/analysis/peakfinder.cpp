// Search by a smoothed second difference: M. Mariscotti, NIM 50 (1967) 309; J. Routti, S. Prussin, NIM 72 (1969) 125.
#include "tarnis/analysis/peaktable.h"

#include "tarnis/analysis/peakfinder_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace analysis {

namespace {

// (1 - u^2/s^2) exp(-u^2/2s^2) over +-4 s in bins. Its mean is subtracted, so that a flat background gives 0.
class Kernel {
public:
    explicit Kernel(double sigma)
        : m_reach(std::max(2, static_cast<int>(std::ceil(4.0 * sigma))))
        , m_values(2 * static_cast<std::size_t>(m_reach) + 1)
    {
        double mean = 0.0;
        for (int u = -m_reach; u <= m_reach; ++u) {
            const double z2 = u * u / (sigma * sigma);
            mean += at(u) = (1.0 - z2) * std::exp(-0.5 * z2);
        }
        mean /= static_cast<double>(m_values.size());
        for (double& value : m_values) {
            value -= mean;
            m_squares += value * value;
        }
    }
    int reach() const { return m_reach; }
    double squares() const { return m_squares; }
    double operator[](int u) const { return m_values[static_cast<std::size_t>(u + m_reach)]; }

private:
    double& at(int u) { return m_values[static_cast<std::size_t>(u + m_reach)]; }
    int m_reach;
    std::vector<double> m_values;
    double m_squares = 0.0;
};

double significanceAt(std::span<const double> y, const Kernel& kernel, std::ptrdiff_t centre)
{
    double sum = 0.0;
    double variance = 0.0;
    const auto n = static_cast<std::ptrdiff_t>(y.size());
    for (int u = -kernel.reach(); u <= kernel.reach(); ++u) {
        // Beyond the ends the first and last contents are repeated: zeros would look like a step.
        const std::ptrdiff_t i = std::clamp<std::ptrdiff_t>(centre + u, 0, n - 1);
        const double content = y[static_cast<std::size_t>(i)];
        sum += kernel[u] * content;
        variance += kernel[u] * kernel[u] * std::fabs(content);
    }
    return sum / std::sqrt(std::max(variance, 0.05 * kernel.squares()));
}

} // namespace

std::vector<double> searchSignificance(std::span<const double> y, const std::vector<double>& sigmas)
{
    std::vector<double> result(y.size());
    // The kernel is recomputed when the width has changed by 3 %.
    double last = 0.0;
    Kernel kernel(1.0);
    for (std::size_t i = 0; i < y.size(); ++i) {
        if (std::fabs(sigmas[i] - last) > 0.03 * last) {
            last = sigmas[i];
            kernel = Kernel(last);
        }
        result[i] = significanceAt(y, kernel, static_cast<std::ptrdiff_t>(i));
    }
    return result;
}

std::vector<std::size_t> maximaAbove(const std::vector<double>& values, double threshold)
{
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double before = i > 0 ? values[i - 1] : -1e300;
        const double after = i + 1 < values.size() ? values[i + 1] : -1e300;
        if (values[i] > threshold && values[i] > before && values[i] >= after)
            result.push_back(i);
    }
    return result;
}

bool canBeSearched(const BinnedData& data, std::size_t& first, std::size_t& last)
{
    if (!data.fault().isEmpty())
        return false;
    last = std::min(last, data.size() - 1);
    if (first > last)
        return false;
    const auto part = data.contents.subspan(first, last - first + 1);
    return std::all_of(part.begin(), part.end(), [](double y) { return std::isfinite(y); });
}

double sigmaInBins(const BinnedData& data, const WidthCalibration& widths, std::size_t i)
{
    return std::clamp(
        widths.sigma(data.centre(i)) / data.binWidth(i), 0.5, 0.25 * static_cast<double>(data.size()) + 1.0);
}

} // namespace analysis

std::vector<PeakCandidate> findPeaks(
    const BinnedData& data, const WidthCalibration& widths, double significance, std::size_t first, std::size_t last)
{
    if (!analysis::canBeSearched(data, first, last))
        return {};
    const auto part = data.contents.subspan(first, last - first + 1);
    std::vector<double> sigmas;
    sigmas.reserve(part.size());
    for (std::size_t i = first; i <= last; ++i)
        sigmas.push_back(analysis::sigmaInBins(data, widths, i));
    const std::vector<double> values = analysis::searchSignificance(part, sigmas);
    std::vector<PeakCandidate> result;
    for (const std::size_t i : analysis::maximaAbove(values, significance))
        result.push_back({ data.centre(first + i), first + i, values[i] });
    return result;
}

std::vector<double> clippedBackground(const BinnedData& data, const WidthCalibration& widths)
{
    std::size_t first = 0;
    std::size_t last = static_cast<std::size_t>(-1);
    if (!analysis::canBeSearched(data, first, last))
        return {};
    const std::size_t n = data.size();
    std::vector<double> v(n);
    std::vector<std::size_t> reach(n);
    std::size_t largest = 1;
    for (std::size_t i = 0; i < n; ++i) {
        v[i] = std::log(std::log(std::sqrt(std::max(0.0, data.contents[i]) + 1.0) + 1.0) + 1.0);
        // Twice the full width at half maximum, which grows along the axis.
        reach[i] = static_cast<std::size_t>(std::lround(2.0 * 2.3548 * analysis::sigmaInBins(data, widths, i)));
        largest = std::max(largest, reach[i]);
    }
    std::vector<double> before;
    for (std::size_t k = std::min(largest, n / 2); k > 0; --k) {
        before = v;
        for (std::size_t i = k; i + k < n; ++i) {
            if (reach[i] >= k)
                v[i] = std::min(before[i], 0.5 * (before[i - k] + before[i + k]));
        }
    }
    for (double& value : v) {
        const double root = std::exp(std::exp(value) - 1.0) - 1.0;
        value = root * root - 1.0;
    }
    return v;
}

} // namespace tarnis
