// Bin contents of peaks, and the measures of a shape.
#include "tarnis/analysis/peakshape_p.h"
#include "tarnis/analysis/special_p.h"
#include "tarnis/foundation/avx2_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis {

namespace analysis {

namespace {

// Gauss-Legendre, five points on [-1, 1].
constexpr std::array nodes { -0.906179845938663992797626878299, -0.538469310105683091036314420700, 0.0,
    0.538469310105683091036314420700, 0.906179845938663992797626878299 };
constexpr std::array weights { 0.236926885056189087514264040720, 0.478628670499366468041291514836,
    0.568888888888888888888888888889, 0.478628670499366468041291514836, 0.236926885056189087514264040720 };

void store(const PeakColumns& columns, std::size_t i, const PeakDensity& sum, int widths)
{
    if (columns.value)
        columns.value[i] = sum.value;
    if (!columns.byCentre)
        return;
    columns.byCentre[i] = sum.byCentre;
    for (int k = 0; k < widths; ++k)
        columns.byWidth[static_cast<std::size_t>(k)][i] = sum.byWidth[static_cast<std::size_t>(k)];
}

void integrateByPoints(
    PeakShape shape, std::span<const double> edges, double centre, const double* w, const PeakColumns& columns)
{
    const int widths = widthCount(shape);
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        const double half = 0.5 * (edges[i + 1] - edges[i]);
        const double middle = 0.5 * (edges[i + 1] + edges[i]);
        PeakDensity sum;
        for (std::size_t k = 0; k < nodes.size(); ++k) {
            const PeakDensity at = density(shape, middle + half * nodes[k], centre, w);
            const double weight = half * weights[k];
            sum.value += weight * at.value;
            sum.byCentre += weight * at.byCentre;
            for (std::size_t p = 0; p < at.byWidth.size(); ++p)
                sum.byWidth[p] += weight * at.byWidth[p];
        }
        store(columns, i, sum, widths);
    }
}

// Derivatives are requested after the values and at the same parameters: one exponential for each edge serves both.
void fillGaussian(std::span<const double> edges, double centre, double sigma, PeakScratch& scratch)
{
    if (scratch.density.size() == edges.size() && scratch.centre == centre && scratch.sigma == sigma)
        return;
    scratch.density.resize(edges.size());
    scratch.tail.resize(edges.size());
    scratch.centre = centre;
    scratch.sigma = sigma;
    gaussians(edges.data(), edges.size(), centre, sigma, scratch.density.data(), scratch.tail.data());
}

void integrateGaussian(
    std::span<const double> edges, double centre, double sigma, const PeakColumns& columns, PeakScratch& scratch)
{
    const std::size_t bins = edges.size() - 1;
    fillGaussian(edges, centre, sigma, scratch);
    if (columns.value) {
        runWide([=, values = columns.value, tail = scratch.tail.data()] {
            for (std::size_t i = 0; i < bins; ++i) {
                const double step = edges[i] < centre && edges[i + 1] >= centre ? 1.0 : 0.0;
                values[i] = tail[i + 1] - tail[i] + step;
            }
        });
    }
    if (!columns.byCentre)
        return;
    const double inverse = 1.0 / sigma;
    const double height = inverse / sqrtTwoPi;
    runWide([=, byCentre = columns.byCentre, bySigma = columns.byWidth[0], density = scratch.density.data()] {
        for (std::size_t i = 0; i < bins; ++i) {
            const double low = height * density[i];
            const double high = height * density[i + 1];
            byCentre[i] = low - high;
            bySigma[i] = (low * (edges[i] - centre) - high * (edges[i + 1] - centre)) * inverse;
        }
    });
}

} // namespace

void integratePeak(PeakShape shape, std::span<const double> edges, double centre, const double* w,
    const PeakColumns& columns, PeakScratch& scratch)
{
    if (shape == PeakShape::Voigt)
        return integrateByPoints(shape, edges, centre, w, columns);
    if (shape == PeakShape::Gaussian)
        return integrateGaussian(edges, centre, w[0], columns, scratch);
    const int widths = widthCount(shape);
    PeakDensity low = signedTail(shape, edges[0], centre, w);
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        const PeakDensity high = signedTail(shape, edges[i + 1], centre, w);
        PeakDensity difference;
        const bool straddles = edges[i] < centre && edges[i + 1] >= centre;
        difference.value = std::max(0.0, high.value - low.value + (straddles ? 1.0 : 0.0));
        difference.byCentre = high.byCentre - low.byCentre;
        for (std::size_t p = 0; p < high.byWidth.size(); ++p)
            difference.byWidth[p] = high.byWidth[p] - low.byWidth[p];
        store(columns, i, difference, widths);
        low = high;
    }
}

void samplePeak(
    PeakShape shape, std::span<const double> edges, double centre, const double* w, const PeakColumns& columns)
{
    const int widths = widthCount(shape);
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        const double width = edges[i + 1] - edges[i];
        PeakDensity at = density(shape, 0.5 * (edges[i] + edges[i + 1]), centre, w);
        at.value *= width;
        at.byCentre *= width;
        for (double& derivative : at.byWidth)
            derivative *= width;
        store(columns, i, at, widths);
    }
}

} // namespace analysis

namespace {

using namespace analysis;

// Distance within which the shape falls to a small fraction of its height on both sides.
double reachOf(PeakShape shape, std::span<const double> w)
{
    switch (shape) {
    case PeakShape::Gaussian:
        return 3.0 * w[0];
    case PeakShape::Lorentzian:
        return 4.0 * w[0];
    case PeakShape::PseudoVoigt:
        return 2.0 * w[0];
    case PeakShape::Voigt:
        return 3.0 * w[0] + 4.0 * w[1];
    case PeakShape::TailLeft:
    case PeakShape::TailRight:
    case PeakShape::Hypermet:
        return 4.0 * w[0] + 4.0 * w[1];
    case PeakShape::BackToBack:
        return 4.0 * w[0] + 4.0 / w[1] + 4.0 / w[2];
    }
    return 0.0;
}

bool isSymmetric(PeakShape shape)
{
    return shape == PeakShape::Gaussian || shape == PeakShape::Lorentzian || shape == PeakShape::PseudoVoigt
        || shape == PeakShape::Voigt;
}

// The slope changes sign at the maximum; all shapes have exactly one.
double topOf(PeakShape shape, double centre, const double* w, double reach)
{
    double low = centre - reach;
    double high = centre + reach;
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (low + high);
        // Moving the centre to the right increases the density to the right of the maximum.
        (density(shape, middle, centre, w).byCentre < 0.0 ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

// Where the density falls to the level: searches from the maximum with doubling steps, then bisects.
double crossingOf(PeakShape shape, double centre, const double* w, double top, double step, double level)
{
    double inside = top;
    double outside = top + step;
    for (int i = 0; i < 60 && density(shape, outside, centre, w).value > level; ++i) {
        inside = outside;
        step *= 2.0;
        outside += step;
    }
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (inside + outside);
        (density(shape, middle, centre, w).value > level ? inside : outside) = middle;
    }
    return 0.5 * (inside + outside);
}

double shiftOfMean(PeakShape shape, std::span<const double> w)
{
    switch (shape) {
    case PeakShape::TailLeft:
        return -w[1];
    case PeakShape::TailRight:
        return w[1];
    case PeakShape::BackToBack:
        return 1.0 / w[2] - 1.0 / w[1];
    case PeakShape::Hypermet:
        return -w[2] * w[1];
    default:
        return 0.0;
    }
}

} // namespace

PeakMeasures peakMeasures(PeakShape shape, double centre, std::span<const double> widths)
{
    if (static_cast<int>(widths.size()) < widthCount(shape)) {
        const double none = peakDensity(shape, 0.0, 0.0, widths);
        return { none, none, none, none, none };
    }
    const double* w = widths.data();
    const double reach = reachOf(shape, widths);
    PeakMeasures result;
    result.top = isSymmetric(shape) ? centre : topOf(shape, centre, w, reach);
    result.mean = centre + shiftOfMean(shape, widths);
    result.height = density(shape, result.top, centre, w).value;
    if (shape == PeakShape::Gaussian) {
        result.fwhm = fwhmPerSigma * w[0];
        result.fwtm = fwtmPerSigma * w[0];
        return result;
    }
    const auto widthAt = [&](double fraction) {
        const double level = fraction * result.height;
        const double step = 0.1 * reach;
        return crossingOf(shape, centre, w, result.top, step, level)
            - crossingOf(shape, centre, w, result.top, -step, level);
    };
    result.fwhm = widthAt(0.5);
    result.fwtm = widthAt(0.1);
    return result;
}

} // namespace tarnis
