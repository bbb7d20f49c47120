// Densities and distribution functions with their derivatives.
#include "tarnis/analysis/peakshape.h"

#include "tarnis/analysis/peakshape_p.h"
#include "tarnis/analysis/special_p.h"

#include <QCoreApplication>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarnis {

namespace {

using namespace analysis;

constexpr double noDensity = std::numeric_limits<double>::quiet_NaN();

struct ShapeText {
    QLatin1StringView name;
    const char* title;
    int widths;
    std::array<QLatin1StringView, maxWidthParameters> widthNames;
};

constexpr std::array<ShapeText, allPeakShapes.size()> shapeTexts { {
    { "gaussian"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Gaussian"), 1, { "sigma"_L1 } },
    { "lorentzian"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Lorentzian"), 1, { "gamma"_L1 } },
    { "pseudo-voigt"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Pseudo-Voigt"), 2, { "fwhm"_L1, "eta"_L1 } },
    { "voigt"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Voigt"), 2, { "sigma"_L1, "gamma"_L1 } },
    { "tail-left"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Gaussian with left tail"), 2, { "sigma"_L1, "tau"_L1 } },
    { "tail-right"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Gaussian with right tail"), 2,
        { "sigma"_L1, "tau"_L1 } },
    { "back-to-back"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Back-to-back exponentials"), 3,
        { "sigma"_L1, "alpha"_L1, "beta"_L1 } },
    { "hypermet"_L1, QT_TRANSLATE_NOOP("tarnis::PeakShape", "Gaussian plus left tail"), 3,
        { "sigma"_L1, "tau"_L1, "ratio"_L1 } },
} };

const ShapeText& textOf(PeakShape shape)
{
    return shapeTexts[static_cast<std::size_t>(shape)];
}

PeakDensity gaussian(double t, double s)
{
    const double z = t / s;
    const double g = normalDensity(z) / s;
    return { g, g * z / s, { g * (z * z - 1.0) / s, 0.0, 0.0 } };
}

PeakDensity gaussianTail(double t, double s)
{
    const double z = t / s;
    const double g = normalDensity(z) / s;
    return { z < 0.0 ? normalDistribution(z) : -normalDistribution(-z), -g, { -z * g, 0.0, 0.0 } };
}

PeakDensity lorentzian(double t, double h)
{
    const double d = t * t + h * h;
    return { h / (pi * d), 2.0 * h * t / (pi * d * d), { (t * t - h * h) / (pi * d * d), 0.0, 0.0 } };
}

// atan(t/h)/pi -+ 1/2 written so that the tails do not cancel.
PeakDensity lorentzianTail(double t, double h)
{
    const double d = t * t + h * h;
    const double tail = std::atan2(h, std::fabs(t)) / pi;
    return { t < 0.0 ? tail : -tail, -h / (pi * d), { -t / (pi * d), 0.0, 0.0 } };
}

// The part eta of a Lorentzian and the rest of a Gaussian, with one full width at half maximum.
PeakDensity mixed(const PeakDensity& g, const PeakDensity& l, double eta)
{
    const double byWidth = (1.0 - eta) * g.byWidth[0] / fwhmPerSigma + 0.5 * eta * l.byWidth[0];
    return { (1.0 - eta) * g.value + eta * l.value, (1.0 - eta) * g.byCentre + eta * l.byCentre,
        { byWidth, l.value - g.value, 0.0 } };
}

PeakDensity voigt(double t, double s, double h)
{
    const double scale = 1.0 / (s * sqrtTwoPi);
    const std::complex<double> u(t / (s * sqrtTwo), h / (s * sqrtTwo));
    const FaddeevaValues w = faddeeva(u);
    // u depends on t by 1/(s sqrt 2) and on h by i/(s sqrt 2); by s the profile obeys the equation of heat,
    // df/ds = s d^2f/dt^2.
    const double slope = scale / (s * sqrtTwo);
    return { w.value.real() * scale, -w.slope.real() * slope,
        { w.curvature.real() * scale / (2.0 * s), -w.slope.imag() * slope, 0.0 } };
}

// Density of the Gaussian with a tail of length T to the right.
double tailDensity(double z, double s, double T, double t)
{
    const double a = (s / T - z) / sqrtTwo;
    if (a < 0.0)
        return std::exp(0.5 * s * s / (T * T) - t / T) * std::erfc(a) / (2.0 * T);
    return std::exp(-0.5 * z * z) * scaledErfc(a) / (2.0 * T);
}

PeakDensity rightTail(double t, double s, double T)
{
    const double z = t / s;
    const double g = normalDensity(z) / s;
    const double f = tailDensity(z, s, T, t);
    const double ratio = s / T;
    const double byTail = (f * (t / T - 1.0 - ratio * ratio) + g * ratio * ratio) / T;
    return { f, -(g - f) / T, { -ratio * (g * z / s + (g - f) / T), byTail, 0.0 } };
}

// F = Phi(z) - T f. The derivative by T is that of -T f.
PeakDensity rightTailTail(double t, double s, double T)
{
    const double z = t / s;
    const double g = normalDensity(z) / s;
    const double f = tailDensity(z, s, T, t);
    const double ratio = s / T;
    const double value = z < 0.0 ? std::fmax(0.0, normalDistribution(z) - T * f) : -(normalDistribution(-z) + T * f);
    return { value, -f, { s * (g - f) / T, f * (ratio * ratio - t / T) - g * ratio * ratio, 0.0 } };
}

// The mirror image: f(-t), and for a distribution function 1 - F(-t), which is -signedTail(-t).
PeakDensity mirroredDensity(const PeakDensity& p)
{
    return { p.value, -p.byCentre, p.byWidth };
}

// At the centre, the convention is the distribution function minus 1.
PeakDensity mirroredTail(const PeakDensity& p, double t)
{
    return { t == 0.0 ? -p.value - 1.0 : -p.value, p.byCentre, { -p.byWidth[0], -p.byWidth[1], -p.byWidth[2] } };
}

// [beta left(1/alpha) + alpha right(1/beta)] / (alpha + beta), for densities and distribution functions alike.
PeakDensity backToBack(const PeakDensity& left, const PeakDensity& right, double alpha, double beta)
{
    const double sum = alpha + beta;
    const double l = beta / sum;
    const double r = alpha / sum;
    const double byAlpha = beta * (right.value - left.value) / (sum * sum) - l * left.byWidth[1] / (alpha * alpha);
    const double byBeta = alpha * (left.value - right.value) / (sum * sum) - r * right.byWidth[1] / (beta * beta);
    return { l * left.value + r * right.value, l * left.byCentre + r * right.byCentre,
        { l * left.byWidth[0] + r * right.byWidth[0], byAlpha, byBeta } };
}

PeakDensity hypermet(const PeakDensity& g, const PeakDensity& tail, double ratio)
{
    const double rest = 1.0 - ratio;
    return { rest * g.value + ratio * tail.value, rest * g.byCentre + ratio * tail.byCentre,
        { rest * g.byWidth[0] + ratio * tail.byWidth[0], ratio * tail.byWidth[1], tail.value - g.value } };
}

} // namespace

namespace analysis {

int widthCount(PeakShape shape)
{
    return textOf(shape).widths;
}

PeakDensity density(PeakShape shape, double x, double centre, const double* w)
{
    const double t = x - centre;
    switch (shape) {
    case PeakShape::Gaussian:
        return gaussian(t, w[0]);
    case PeakShape::Lorentzian:
        return lorentzian(t, w[0]);
    case PeakShape::PseudoVoigt:
        return mixed(gaussian(t, w[0] / fwhmPerSigma), lorentzian(t, 0.5 * w[0]), w[1]);
    case PeakShape::Voigt:
        return voigt(t, w[0], w[1]);
    case PeakShape::TailLeft:
        return mirroredDensity(rightTail(-t, w[0], w[1]));
    case PeakShape::TailRight:
        return rightTail(t, w[0], w[1]);
    case PeakShape::BackToBack:
        return backToBack(mirroredDensity(rightTail(-t, w[0], 1.0 / w[1])), rightTail(t, w[0], 1.0 / w[2]), w[1], w[2]);
    case PeakShape::Hypermet:
        return hypermet(gaussian(t, w[0]), mirroredDensity(rightTail(-t, w[0], w[1])), w[2]);
    }
    return {};
}

PeakDensity signedTail(PeakShape shape, double x, double centre, const double* w)
{
    const double t = x - centre;
    switch (shape) {
    case PeakShape::Gaussian:
        return gaussianTail(t, w[0]);
    case PeakShape::Lorentzian:
        return lorentzianTail(t, w[0]);
    case PeakShape::PseudoVoigt:
        return mixed(gaussianTail(t, w[0] / fwhmPerSigma), lorentzianTail(t, 0.5 * w[0]), w[1]);
    case PeakShape::Voigt:
        break;
    case PeakShape::TailLeft:
        return mirroredTail(rightTailTail(-t, w[0], w[1]), t);
    case PeakShape::TailRight:
        return rightTailTail(t, w[0], w[1]);
    case PeakShape::BackToBack:
        return backToBack(
            mirroredTail(rightTailTail(-t, w[0], 1.0 / w[1]), t), rightTailTail(t, w[0], 1.0 / w[2]), w[1], w[2]);
    case PeakShape::Hypermet:
        return hypermet(gaussianTail(t, w[0]), mirroredTail(rightTailTail(-t, w[0], w[1]), t), w[2]);
    }
    return {};
}

} // namespace analysis

QLatin1StringView nameOf(PeakShape shape)
{
    return textOf(shape).name;
}

std::optional<PeakShape> peakShapeOf(const QString& name)
{
    for (const PeakShape shape : allPeakShapes) {
        if (name == nameOf(shape))
            return shape;
    }
    return std::nullopt;
}

QString titleOf(PeakShape shape)
{
    return QCoreApplication::translate("tarnis::PeakShape", textOf(shape).title);
}

std::span<const QLatin1StringView> widthParameterNames(PeakShape shape)
{
    const ShapeText& text = textOf(shape);
    return { text.widthNames.data(), static_cast<std::size_t>(text.widths) };
}

double peakDensity(PeakShape shape, double x, double centre, std::span<const double> widths)
{
    return peakDensityWithDerivatives(shape, x, centre, widths).value;
}

PeakDensity peakDensityWithDerivatives(PeakShape shape, double x, double centre, std::span<const double> widths)
{
    if (static_cast<int>(widths.size()) < widthCount(shape))
        return { noDensity, noDensity, { noDensity, noDensity, noDensity } };
    return density(shape, x, centre, widths.data());
}

double peakIntegral(PeakShape shape, double lower, double upper, double centre, std::span<const double> widths)
{
    if (static_cast<int>(widths.size()) < widthCount(shape))
        return noDensity;
    const std::array<double, 2> edges { lower, upper };
    double value = 0.0;
    PeakScratch scratch;
    integratePeak(shape, edges, centre, widths.data(), { &value, nullptr, {} }, scratch);
    return value;
}

} // namespace tarnis
