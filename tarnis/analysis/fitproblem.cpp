#include "tarnis/analysis/fitproblem_p.h"

#include "tarnis/analysis/special_p.h"
#include "tarnis/foundation/avx2_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis::analysis {

namespace {

// sinh(x)/x and its derivative, which cancel near 0.
double sinhc(double x)
{
    return std::fabs(x) < 1e-3 ? 1.0 + x * x / 6.0 : std::sinh(x) / x;
}

double sinhcSlope(double x)
{
    return std::fabs(x) < 1e-3 ? x / 3.0 : (std::cosh(x) - std::sinh(x) / x) / x;
}

// Antiderivative of Phi(-z).
double stepIntegral(double z)
{
    return z * normalDistribution(-z) - normalDensity(z);
}

void addTimes(double factor, const double* from, double* to, std::size_t n)
{
    runWide([=] {
        for (std::size_t i = 0; i < n; ++i)
            to[i] += factor * from[i];
    });
}

} // namespace

double backgroundDensity(FitBackground background, const double* b, double u)
{
    switch (background) {
    case FitBackground::None:
        return 0.0;
    case FitBackground::Constant:
        return b[0];
    case FitBackground::Linear:
        return b[0] + b[1] * u;
    case FitBackground::Quadratic:
        return b[0] + (b[1] + b[2] * u) * u;
    case FitBackground::Exponential:
        return b[0] * std::exp(-b[1] * u);
    }
    return 0.0;
}

FitProblem::FitProblem(
    const BinnedData& data, std::size_t first, std::size_t last, const FitModel& model, BinEvaluation evaluation)
    : m_model(model)
    , m_layout(model)
    , m_names(model.parameterNames())
    , m_evaluation(evaluation)
    , m_p(static_cast<std::size_t>(m_layout.count))
{
    const BinnedData part = data.part(first, last);
    m_contents.assign(part.contents.begin(), part.contents.end());
    m_variances.assign(part.variances.begin(), part.variances.end());
    m_edges.reserve(bins() + 1);
    for (std::size_t i = 0; i <= bins(); ++i)
        m_edges.push_back(part.edge(i));
    m_values.resize(bins());
    m_columns.resize(bins() * m_p.size());
    m_unit.resize(bins() * static_cast<std::size_t>(m_layout.peaks));
    m_peakColumns.resize(bins() * (1 + maxWidthParameters));
    m_scratch.resize(static_cast<std::size_t>(m_layout.peaks));
    fillPolynomials();
}

std::span<const double> FitProblem::evaluate(const double* p)
{
    if (m_isEvaluated && std::equal(m_p.begin(), m_p.end(), p))
        return m_values;
    m_isEvaluated = true;
    m_isDifferentiated = false;
    std::copy_n(p, m_p.size(), m_p.begin());
    setBackground();
    for (int peak = 0; peak < m_layout.peaks; ++peak) {
        addPeak(peak);
        if (m_layout.step >= 0)
            addStep(peak);
    }
    return m_values;
}

void FitProblem::differentiate()
{
    if (m_isDifferentiated)
        return;
    m_isDifferentiated = true;
    std::fill_n(m_columns.begin(), bins() * static_cast<std::size_t>(m_layout.background), 0.0);
    differentiateBackground();
    for (int peak = 0; peak < m_layout.peaks; ++peak) {
        differentiatePeak(peak);
        if (m_layout.step >= 0)
            differentiateStep(peak);
    }
}

void FitProblem::widthsOf(int peak, const double* p, double* widths) const
{
    const auto i = static_cast<std::size_t>(peak);
    for (std::size_t w = 0; w < static_cast<std::size_t>(m_layout.widths); ++w)
        widths[w] = p[m_layout.width[i][w]];
    if (m_model.widthMode == WidthMode::Calibrated)
        widths[0] *= m_model.widths.sigma(p[m_layout.centre[i]]);
}

void FitProblem::addPeak(int peak)
{
    std::array<double, maxWidthParameters> widths {};
    widthsOf(peak, m_p.data(), widths.data());
    double* const unit = m_unit.data() + static_cast<std::size_t>(peak) * bins();
    const double centre = m_p[static_cast<std::size_t>(m_layout.centre[static_cast<std::size_t>(peak)])];
    const PeakColumns columns { unit, nullptr, {} };
    if (m_evaluation == BinEvaluation::Integral)
        integratePeak(
            m_model.shape, m_edges, centre, widths.data(), columns, m_scratch[static_cast<std::size_t>(peak)]);
    else
        samplePeak(m_model.shape, m_edges, centre, widths.data(), columns);
    const double area = m_p[static_cast<std::size_t>(m_layout.area[static_cast<std::size_t>(peak)])];
    addTimes(area, unit, m_values.data(), bins());
}

void FitProblem::differentiatePeak(int peak)
{
    const auto k = static_cast<std::size_t>(peak);
    std::array<double, maxWidthParameters> widths {};
    widthsOf(peak, m_p.data(), widths.data());
    const double area = m_p[static_cast<std::size_t>(m_layout.area[k])];
    const double centre = m_p[static_cast<std::size_t>(m_layout.centre[k])];
    const double* const unit = m_unit.data() + k * bins();
    double* const scratch = m_peakColumns.data();
    const PeakColumns columns { nullptr, scratch, { scratch + bins(), scratch + 2 * bins(), scratch + 3 * bins() } };
    if (m_evaluation == BinEvaluation::Integral)
        integratePeak(m_model.shape, m_edges, centre, widths.data(), columns, m_scratch[k]);
    else
        samplePeak(m_model.shape, m_edges, centre, widths.data(), columns);
    double* const byArea = writableColumn(m_layout.area[k]);
    double* const byCentre = writableColumn(m_layout.centre[k]);
    addTimes(1.0, unit, byArea, bins());
    addTimes(area, columns.byCentre, byCentre, bins());
    if (m_model.widthMode == WidthMode::Calibrated) {
        // sigma = factor * calibration(centre), so the width also depends on the centre.
        const double calibrated = m_model.widths.sigma(centre);
        const double factor = m_p[static_cast<std::size_t>(m_layout.width[k][0])];
        const double slope = factor * 0.5 * m_model.widths.b / calibrated;
        addTimes(area * calibrated, columns.byWidth[0], writableColumn(m_layout.width[k][0]), bins());
        addTimes(area * slope, columns.byWidth[0], byCentre, bins());
        return;
    }
    for (std::size_t w = 0; w < static_cast<std::size_t>(m_layout.widths); ++w)
        addTimes(area, columns.byWidth[w], writableColumn(m_layout.width[k][w]), bins());
}

// sigma of the step from the first width parameter of the shape.
double FitProblem::stepSigma(int peak, double& byWidth) const
{
    std::array<double, maxWidthParameters> widths {};
    widthsOf(peak, m_p.data(), widths.data());
    byWidth = m_model.shape == PeakShape::PseudoVoigt ? 1.0 / fwhmPerSigma
        : m_model.shape == PeakShape::Lorentzian      ? 2.0 / fwhmPerSigma
                                                      : 1.0;
    return byWidth * widths[0];
}

// One step of unit height in bin i: the integral of Phi(-z), or its value times the width.
void FitProblem::addStep(int peak)
{
    const auto k = static_cast<std::size_t>(peak);
    double byWidth = 1.0;
    const double s = stepSigma(peak, byWidth);
    const double c = m_p[static_cast<std::size_t>(m_layout.centre[k])];
    const double height =
        m_p[static_cast<std::size_t>(m_layout.area[k])] * m_p[static_cast<std::size_t>(m_layout.step)];
    for (std::size_t i = 0; i < bins(); ++i) {
        if (m_evaluation == BinEvaluation::Integral)
            m_values[i] += height * s * (stepIntegral((m_edges[i + 1] - c) / s) - stepIntegral((m_edges[i] - c) / s));
        else
            m_values[i] += height * (m_edges[i + 1] - m_edges[i])
                * normalDistribution((c - 0.5 * (m_edges[i] + m_edges[i + 1])) / s);
    }
}

void FitProblem::differentiateStep(int peak)
{
    const auto k = static_cast<std::size_t>(peak);
    double sigmaByWidth = 1.0;
    const double s = stepSigma(peak, sigmaByWidth);
    const double c = m_p[static_cast<std::size_t>(m_layout.centre[k])];
    const double area = m_p[static_cast<std::size_t>(m_layout.area[k])];
    const double q = m_p[static_cast<std::size_t>(m_layout.step)];
    const bool calibrated = m_model.widthMode == WidthMode::Calibrated;
    const double calibration = calibrated ? m_model.widths.sigma(c) : 1.0;
    const double sigmaByCentre = calibrated ? 0.5 * m_model.widths.b * s / (calibration * calibration) : 0.0;
    double* const byArea = writableColumn(m_layout.area[k]);
    double* const byCentre = writableColumn(m_layout.centre[k]);
    double* const byWidth = writableColumn(m_layout.width[k][0]);
    double* const byStep = writableColumn(m_layout.step);
    for (std::size_t i = 0; i < bins(); ++i) {
        const double low = (m_edges[i] - c) / s;
        const double high = (m_edges[i + 1] - c) / s;
        double unit = 0.0;
        double slope = 0.0;
        double stretch = 0.0;
        if (m_evaluation == BinEvaluation::Integral) {
            unit = s * (stepIntegral(high) - stepIntegral(low));
            slope = normalDistribution(high) - normalDistribution(low);
            stretch = normalDensity(low) - normalDensity(high);
        } else {
            const double width = m_edges[i + 1] - m_edges[i];
            const double z = 0.5 * (low + high);
            unit = width * normalDistribution(-z);
            slope = width * normalDensity(z) / s;
            stretch = slope * z;
        }
        byArea[i] += q * unit;
        byStep[i] += area * unit;
        byCentre[i] += area * q * (slope + stretch * sigmaByCentre);
        byWidth[i] += area * q * stretch * sigmaByWidth * calibration;
    }
}

// A polynomial is linear in its parameters: its columns do not change during the fit.
void FitProblem::fillPolynomials()
{
    if (m_model.background == FitBackground::Exponential)
        return;
    const bool integral = m_evaluation == BinEvaluation::Integral;
    for (std::size_t i = 0; i < bins(); ++i) {
        const double width = m_edges[i + 1] - m_edges[i];
        const double u = 0.5 * (m_edges[i] + m_edges[i + 1]) - reference();
        const std::array powers { width, width * u, width * (u * u + (integral ? width * width / 12.0 : 0.0)) };
        for (int k = 0; k < m_layout.backgrounds; ++k)
            writableColumn(m_layout.background + k)[i] = powers[static_cast<std::size_t>(k)];
    }
}

void FitProblem::setBackground()
{
    std::fill(m_values.begin(), m_values.end(), 0.0);
    const double* const b = m_p.data() + m_layout.background;
    if (m_model.background == FitBackground::Exponential) {
        const double x0 = reference();
        const bool integral = m_evaluation == BinEvaluation::Integral;
        for (std::size_t i = 0; i < bins(); ++i) {
            const double width = m_edges[i + 1] - m_edges[i];
            const double u = 0.5 * (m_edges[i] + m_edges[i + 1]) - x0;
            m_values[i] = width * b[0] * std::exp(-b[1] * u) * (integral ? sinhc(0.5 * b[1] * width) : 1.0);
        }
        return;
    }
    for (int k = 0; k < m_layout.backgrounds; ++k)
        addTimes(b[k], writableColumn(m_layout.background + k), m_values.data(), bins());
}

void FitProblem::differentiateBackground()
{
    if (m_model.background != FitBackground::Exponential)
        return;
    const double* const b = m_p.data() + m_layout.background;
    const double x0 = reference();
    const bool integral = m_evaluation == BinEvaluation::Integral;
    double* const first = writableColumn(m_layout.background);
    double* const second = writableColumn(m_layout.background + 1);
    for (std::size_t i = 0; i < bins(); ++i) {
        const double width = m_edges[i + 1] - m_edges[i];
        const double u = 0.5 * (m_edges[i] + m_edges[i + 1]) - x0;
        const double half = 0.5 * width;
        const double fall = width * std::exp(-b[1] * u);
        const double mean = integral ? sinhc(b[1] * half) : 1.0;
        const double slope = integral ? half * sinhcSlope(b[1] * half) : 0.0;
        first[i] = fall * mean;
        second[i] = b[0] * fall * (slope - u * mean);
    }
}

} // namespace tarnis::analysis
