/** @file
 * The model of a fit of peaks on a background, and its parameters. Plain values, to be copied to any thread. */
#pragma once

#include <tarnis/analysis/peakshape.h>
#include <tarnis/tarnis_export.h>

#include <QLatin1StringView>
#include <QString>

#include <limits>
#include <optional>
#include <vector>

namespace tarnis {

/// The background below the peaks, in counts per unit of the axis; u is the distance from the middle of the range.
enum class FitBackground {
    None, ///< 0
    Constant, ///< b0
    Linear, ///< b0 + b1 u
    Quadratic, ///< b0 + b1 u + b2 u^2
    Exponential, ///< b0 exp(-b1 u)
};

/// The statistic that is minimised, for model contents m and contents y of the bins.
enum class FitStatistic {
    Cash, ///< Poisson likelihood ratio 2 sum (m - y + y ln(y/m)), the default for counts
    Pearson, ///< sum (m - y)^2 / m
    Neyman, ///< sum (m - y)^2 / max(y, 1); with given variances sum (m - y)^2 / variance
    Unweighted, ///< sum (m - y)^2
};

/// The model content of a bin.
enum class BinEvaluation {
    Integral, ///< the integral over the bin, the default
    Centre, ///< value at the bin's centre times its width; overestimates sigma by 4.1 % at 1 bin, 0.5 % at 3 bins
};

/// How several peaks share widths.
enum class WidthMode {
    Shared, ///< one set of width parameters for all peaks, the default
    Own, ///< each peak has its own
    /// Gaussian peaks whose sigma follows FitModel::widths at their position, times one common factor, the parameter
    /// width_factor. Fix it to 1 to keep the calibrated widths.
    Calibrated,
};

/// @{ Names in files and commands, for example "cash", and back; nothing for another text.
TARNIS_EXPORT QLatin1StringView nameOf(FitBackground background);
TARNIS_EXPORT QLatin1StringView nameOf(FitStatistic statistic);
TARNIS_EXPORT QLatin1StringView nameOf(BinEvaluation evaluation);
TARNIS_EXPORT std::optional<FitBackground> fitBackgroundOf(const QString& name);
TARNIS_EXPORT std::optional<FitStatistic> fitStatisticOf(const QString& name);
TARNIS_EXPORT std::optional<BinEvaluation> binEvaluationOf(const QString& name);
/// @}

/// Width of Gaussian peaks along an axis: sigma^2 = a + b x.
struct WidthCalibration {
    double a = 1.0; ///< sigma^2 at 0, in squared units of the axis
    double b = 0.0; ///< slope of sigma^2, in units of the axis

    /// sigma at x; its square is at least 1e-6.
    TARNIS_EXPORT double sigma(double x) const;
};

/// A constraint of one parameter. Names are those of FitResult::parameters, for example "centre2".
struct FitConstraint {
    QString name; ///< the parameter
    std::optional<double> start; ///< starting value
    bool fixed = false; ///< fixed at start, which must be set
    std::optional<double> lower; ///< smallest allowed value
    std::optional<double> upper; ///< largest allowed value
    /// The parameter that this one follows; empty: none. value = offset + factor * the other's value. The other
    /// parameter must not be tied itself.
    QString tiedTo;
    double factor = 1.0; ///< of a tied parameter
    double offset = 0.0; ///< of a tied parameter
};

/// Up to maxPeaks peaks of one shape on a background.
struct FitModel {
    static constexpr int maxPeaks = 8; ///< largest number of peaks in a window

    PeakShape shape = PeakShape::Gaussian; ///< shape of all peaks
    int peaks = 1; ///< 0 to maxPeaks; 0 fits only the background
    FitBackground background = FitBackground::Linear; ///< background below the peaks
    /// Adds a step below each peak, area * step * (distribution function of the Gaussian falling to the right), with
    /// one parameter "step" in 1/x.
    bool withStep = false;
    WidthMode widthMode = WidthMode::Shared; ///< widths of several peaks
    WidthCalibration widths; ///< for WidthMode::Calibrated
    bool allowDips = false; ///< areas may be negative
    std::vector<double> centres; ///< starting positions, for all peaks or empty; empty: peaks are searched
    std::vector<FitConstraint> constraints; ///< fixed, bounded and tied parameters, and starting values

    /// Names of all parameters, in the order of the results: area, centre and widths of each peak (numbered from 1 if
    /// there are several), shared widths, step, b0, b1, b2.
    TARNIS_EXPORT std::vector<QString> parameterNames() const;
};

} // namespace tarnis
