// Starting values: a line through the means of the outer eighths of the range, the highest position above it, its area,
// and the width that follows from area and height.
#include "tarnis/analysis/fitstart_p.h"

#include "tarnis/analysis/peakfinder_p.h"
#include "tarnis/analysis/special_p.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tarnis::analysis {

namespace {

// Densities of the contents at the two ends of the range.
struct Ends {
    double left;
    double right;
};

double meanDensity(const FitProblem& problem, std::size_t begin, std::size_t end)
{
    const auto y = problem.contents();
    const double sum = std::accumulate(
        y.begin() + static_cast<std::ptrdiff_t>(begin), y.begin() + static_cast<std::ptrdiff_t>(end), 0.0);
    return sum / (problem.edges()[end] - problem.edges()[begin]);
}

Ends endsOf(const FitProblem& problem)
{
    const std::size_t n = problem.bins();
    const std::size_t eighth = std::max<std::size_t>(1, n / 8);
    return { meanDensity(problem, 0, eighth), meanDensity(problem, n - eighth, n) };
}

// Contents above the line, as densities.
std::vector<double> netDensities(const FitProblem& problem, const Ends& ends)
{
    const auto edges = problem.edges();
    const std::size_t n = problem.bins();
    const std::size_t eighth = std::max<std::size_t>(1, n / 8);
    const double left = 0.5 * (edges[0] + edges[eighth]);
    const double right = 0.5 * (edges[n - eighth] + edges[n]);
    std::vector<double> net(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double x = 0.5 * (edges[i] + edges[i + 1]);
        const double t = right > left ? (x - left) / (right - left) : 0.0;
        const bool background = problem.model().background != FitBackground::None;
        const double below = background ? ends.left + t * (ends.right - ends.left) : 0.0;
        net[i] = problem.contents()[i] / (edges[i + 1] - edges[i]) - below;
    }
    return net;
}

std::vector<double> smoothed(const std::vector<double>& y)
{
    std::vector<double> result = y;
    for (std::size_t i = 1; i + 1 < y.size(); ++i)
        result[i] = 0.25 * (y[i - 1] + 2.0 * y[i] + y[i + 1]);
    return result;
}

std::size_t binOf(const FitProblem& problem, double x)
{
    const auto edges = problem.edges();
    const auto next = std::upper_bound(edges.begin(), edges.end(), x) - edges.begin();
    return static_cast<std::size_t>(
        std::clamp<std::ptrdiff_t>(next - 1, 0, static_cast<std::ptrdiff_t>(problem.bins()) - 1));
}

// Distance from the bin to the nearer position where the contents fall below half of its height.
double halfWidth(const FitProblem& problem, const std::vector<double>& net, std::size_t top)
{
    const double level = 0.5 * net[top];
    const auto edges = problem.edges();
    const double x = 0.5 * (edges[top] + edges[top + 1]);
    double width = edges[problem.bins()] - edges[0];
    for (std::size_t i = top; i-- > 0;) {
        if (net[i] <= level) {
            width = std::min(width, x - edges[i + 1]);
            break;
        }
    }
    for (std::size_t i = top + 1; i < net.size(); ++i) {
        if (net[i] <= level) {
            width = std::min(width, edges[i] - x);
            break;
        }
    }
    return width;
}

// Widths of a shape that has several, in units of sigma; ratios as they are.
struct WidthPattern {
    double first;
    double second;
    double third;
};

WidthPattern patternOf(PeakShape shape, FirstTails tails)
{
    const auto choose = [tails](WidthPattern few, WidthPattern usual, WidthPattern many) {
        return tails == FirstTails::Short ? few : tails == FirstTails::Long ? many : usual;
    };
    constexpr double w = fwhmPerSigma;
    switch (shape) {
    case PeakShape::Gaussian:
        return { 1.0, 0.0, 0.0 };
    case PeakShape::Lorentzian:
        return { 0.5 * w, 0.0, 0.0 };
    case PeakShape::PseudoVoigt:
        return choose({ w, 0.05, 0.0 }, { w, 0.5, 0.0 }, { w, 0.95, 0.0 });
    case PeakShape::Voigt:
        return choose({ 1.0, 0.02, 0.0 }, { 0.7, 0.4, 0.0 }, { 0.15, 1.1, 0.0 });
    case PeakShape::TailLeft:
    case PeakShape::TailRight:
        return choose({ 1.0, 0.1, 0.0 }, { 0.7, 0.7, 0.0 }, { 0.2, 1.5, 0.0 });
    case PeakShape::BackToBack: // the rates
        return choose({ 1.0, 10.0 / w, 10.0 / w }, { 0.5, 4.0 / w, 2.0 / w }, { 0.2, 8.0 / w, 1.5 / w });
    case PeakShape::Hypermet:
        return choose({ 1.0, 0.3, 0.02 }, { 1.0, 1.0, 0.1 }, { 0.7, 3.0, 0.5 });
    }
    return {};
}

void setWidths(const FitProblem& problem, double sigma, FirstTails tails, double* widths)
{
    const PeakShape shape = problem.model().shape;
    const WidthPattern pattern = patternOf(shape, tails);
    const bool hasRates = shape == PeakShape::BackToBack;
    const bool hasRatio = shape == PeakShape::PseudoVoigt;
    widths[0] = pattern.first * sigma;
    widths[1] = hasRates ? pattern.second / sigma : hasRatio ? pattern.second : pattern.second * sigma;
    widths[2] = hasRates ? pattern.third / sigma : pattern.third;
}

// The parameter of the asymmetric shapes is not the top.
double topShift(const FitProblem& problem, double sigma, FirstTails tails)
{
    const double shift = (tails == FirstTails::Short ? 0.1 : tails == FirstTails::Long ? 0.6 : 0.4) * sigma;
    switch (problem.model().shape) {
    case PeakShape::TailLeft:
        return shift;
    case PeakShape::TailRight:
    case PeakShape::BackToBack:
        return -shift;
    default:
        return 0.0;
    }
}

void setBackground(const FitProblem& problem, const Ends& ends, double* b)
{
    const double range = problem.upper() - problem.lower();
    const double small = smallDensity(problem);
    switch (problem.model().background) {
    case FitBackground::None:
        break;
    case FitBackground::Constant:
        b[0] = std::max(small, 0.5 * (ends.left + ends.right));
        break;
    case FitBackground::Quadratic:
        b[2] = 0.0;
        [[fallthrough]];
    case FitBackground::Linear:
        b[0] = 0.5 * (ends.left + ends.right);
        b[1] = (ends.right - ends.left) / range;
        break;
    case FitBackground::Exponential: {
        const double left = std::max(ends.left, small);
        const double right = std::max(ends.right, small);
        b[0] = std::sqrt(left * right);
        b[1] = std::log(left / right) / range;
        break;
    }
    }
}

} // namespace

double smallDensity(const FitProblem& problem)
{
    const auto y = problem.contents();
    const double sum = std::accumulate(y.begin(), y.end(), 0.0);
    return 1e-3 * std::max(1e-6, sum) / (problem.upper() - problem.lower());
}

// The position of the most significant peak under several kernels. With few counts per bin, the highest bin means
// little.
double mostSignificantPosition(const FitProblem& problem)
{
    const double n = static_cast<double>(problem.bins());
    double best = -1.0;
    std::size_t place = problem.bins() / 2;
    for (double sigma = 1.5; sigma < 0.12 * n || sigma == 1.5; sigma *= 1.6) {
        const std::vector<double> values =
            searchSignificance(problem.contents(), std::vector<double>(problem.bins(), sigma));
        const auto top = std::max_element(values.begin(), values.end());
        if (*top > best) {
            best = *top;
            place = static_cast<std::size_t>(top - values.begin());
        }
    }
    return 0.5 * (problem.edges()[place] + problem.edges()[place + 1]);
}

double highestPosition(const FitProblem& problem)
{
    const std::vector<double> net = smoothed(netDensities(problem, endsOf(problem)));
    const bool dips = problem.model().allowDips;
    const auto heightOf = [&](std::size_t i) { return dips ? std::fabs(net[i]) : net[i]; };
    std::size_t top = 0;
    for (std::size_t i = 1; i < net.size(); ++i) {
        if (heightOf(i) > heightOf(top))
            top = i;
    }
    const double width = problem.edges()[top + 1] - problem.edges()[top];
    const double noise = std::sqrt(std::max(1.0, std::fabs(problem.contents()[top])));
    if (!dips && problem.bins() > 8 && net[top] * width < 5.0 * noise)
        return mostSignificantPosition(problem);
    return 0.5 * (problem.edges()[top] + problem.edges()[top + 1]);
}

std::vector<double> firstValues(const FitProblem& problem, const std::vector<double>& centres, const FirstWidths& first)
{
    const FitLayout& layout = problem.layout();
    std::vector<double> p(static_cast<std::size_t>(layout.count), 0.0);
    const Ends ends = endsOf(problem);
    setBackground(problem, ends, p.data() + layout.background);
    if (layout.peaks == 0)
        return p;
    const std::vector<double> raw = netDensities(problem, ends);
    const std::vector<double> net = smoothed(raw);
    double total = 0.0;
    for (std::size_t i = 0; i < raw.size(); ++i)
        total += raw[i] * (problem.edges()[i + 1] - problem.edges()[i]);
    double heights = 0.0;
    for (const double centre : centres)
        heights += net[binOf(problem, centre)];
    const double bin = problem.meanWidth();
    const double range = problem.upper() - problem.lower();
    const double scale = std::max(1.0, std::accumulate(problem.contents().begin(), problem.contents().end(), 0.0));
    for (int k = 0; k < layout.peaks; ++k) {
        const auto i = static_cast<std::size_t>(k);
        const std::size_t top = binOf(problem, centres[i]);
        double sigma = total / (sqrtTwoPi * heights);
        // Area and height have different signs: the ends are not background, so the flanks give a better estimate.
        if (!(sigma > 0.0))
            sigma = halfWidth(problem, net, top) / (0.5 * fwhmPerSigma);
        sigma = first.scale * std::clamp(sigma, 0.4 * bin, std::max(0.4 * bin, 0.25 * range));
        double area = net[top] * sigma * sqrtTwoPi;
        if (!problem.model().allowDips && !(area > 0.0))
            area = 1e-3 * scale;
        p[static_cast<std::size_t>(layout.area[i])] = area;
        p[static_cast<std::size_t>(layout.centre[i])] = centres[i] + topShift(problem, sigma, first.tails);
        if (problem.model().widthMode == WidthMode::Calibrated) {
            p[static_cast<std::size_t>(layout.width[i][0])] = 1.0;
            continue;
        }
        std::array<double, maxWidthParameters> widths {};
        setWidths(problem, sigma, first.tails, widths.data());
        // Shared widths start at those of the narrowest peak, which is least likely to be a doublet.
        for (std::size_t w = 0; w < static_cast<std::size_t>(layout.widths); ++w) {
            double& value = p[static_cast<std::size_t>(layout.width[i][w])];
            value = value > 0.0 ? std::min(value, widths[w]) : widths[w];
        }
    }
    if (layout.step >= 0)
        p[static_cast<std::size_t>(layout.step)] = 0.01 / range;
    return p;
}

} // namespace tarnis::analysis
