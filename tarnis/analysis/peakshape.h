/** @file
 * Shapes of peaks as densities of unit integral, so that the factor in front of one is its area in counts. Pure
 * functions, re-entrant. Formulae and sources: docs/analysis.md. */
#pragma once

#include <tarnis/tarnis_export.h>

#include <QLatin1StringView>
#include <QString>

#include <array>
#include <optional>
#include <span>

namespace tarnis {

/// Shape of a peak. Each value lists the parameters besides area and centre, in order and in units of the axis.
enum class PeakShape {
    Gaussian, ///< sigma
    Lorentzian, ///< gamma, the half width at half maximum
    PseudoVoigt, ///< fwhm; eta, the part of the Lorentzian, 0..1
    Voigt, ///< sigma of the Gaussian; gamma, the half width at half maximum of the Lorentzian
    TailLeft, ///< a Gaussian folded with an exponential to the left: sigma; tau, the length of the tail
    TailRight, ///< as TailLeft, to the right
    BackToBack, ///< a Gaussian folded with two exponentials: sigma; alpha and beta, the rates of rise and decay in 1/x
    Hypermet, ///< a Gaussian plus one with a tail to the left: sigma; tau; ratio, the part of the tailed one, 0..1
};

/// All shapes, in the order of the enumeration.
inline constexpr std::array allPeakShapes { PeakShape::Gaussian, PeakShape::Lorentzian, PeakShape::PseudoVoigt,
    PeakShape::Voigt, PeakShape::TailLeft, PeakShape::TailRight, PeakShape::BackToBack, PeakShape::Hypermet };

/// The largest number of parameters besides area and centre.
inline constexpr int maxWidthParameters = 3;

/// Name of a shape in files and commands, for example "pseudo-voigt".
TARNIS_EXPORT QLatin1StringView nameOf(PeakShape shape);
/// The shape with that name; empty for an unknown name.
TARNIS_EXPORT std::optional<PeakShape> peakShapeOf(const QString& name);
/// Name of a shape for the user, in the current language.
TARNIS_EXPORT QString titleOf(PeakShape shape);

/// Names of the parameters besides area and centre, as in the enumeration.
TARNIS_EXPORT std::span<const QLatin1StringView> widthParameterNames(PeakShape shape);

/// Density at x. `widths` contains the parameters besides area and centre; returns NaN if there are too few.
TARNIS_EXPORT double peakDensity(PeakShape shape, double x, double centre, std::span<const double> widths);

/// A density with its derivatives.
struct PeakDensity {
    double value = 0.0; ///< the density at x
    double byCentre = 0.0; ///< its derivative with respect to the centre
    std::array<double, maxWidthParameters> byWidth {}; ///< derivatives with respect to the other parameters
};
/// Density at x with its analytic derivatives.
TARNIS_EXPORT PeakDensity peakDensityWithDerivatives(
    PeakShape shape, double x, double centre, std::span<const double> widths);

/// Integral of the density from lower to upper: differences of the distribution function, for a Voigt profile the
/// five-point rule of Gauss and Legendre (error below 3e-7 for a bin of at most half the width at half maximum).
TARNIS_EXPORT double peakIntegral(
    PeakShape shape, double lower, double upper, double centre, std::span<const double> widths);

/// Maximum, mean and widths of a peak. The mean of a Lorentzian, pseudo-Voigt and Voigt shape is its centre of
/// symmetry.
struct PeakMeasures {
    double top = 0.0; ///< position of the highest density
    double mean = 0.0; ///< first moment
    double height = 0.0; ///< highest density for unit area
    double fwhm = 0.0; ///< full width at half maximum, by bisection where there is no formula
    double fwtm = 0.0; ///< full width at a tenth of the maximum
};
/// Measures of a shape.
TARNIS_EXPORT PeakMeasures peakMeasures(PeakShape shape, double centre, std::span<const double> widths);

} // namespace tarnis
