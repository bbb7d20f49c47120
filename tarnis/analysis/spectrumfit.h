/** @file
 * Fits of peaks to a spectrum: least squares and maximum likelihood with errors, correlations, goodness of fit and a
 * verdict. One function without side effects, for any thread; bad input is a result with a reason, never an exception.
 * Formulae and sources: docs/analysis.md. */
#pragma once

#include <tarnis/analysis/binneddata.h>
#include <tarnis/analysis/fitmodel.h>
#include <tarnis/tarnis_export.h>

#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

namespace tarnis {

/// Options of a fit.
struct FitOptions {
    FitStatistic statistic = FitStatistic::Cash; ///< the statistic that is minimised
    BinEvaluation evaluation = BinEvaluation::Integral; ///< content of a bin
    bool profileErrors = false; ///< asymmetric errors of all free parameters of the peaks
    /// Computes asymmetric errors even without profileErrors for areas below ten errors, where symmetric ones are
    /// misleading.
    bool profileWeakAreas = true;
    int maxIterations = 100; ///< limit of the solver, for each start
};

/// How a fit ended.
enum class FitStatus {
    Done, ///< the parameters are those of a minimum
    NotConverged, ///< the parameters are the best ones found
    Refused, ///< there is no fit; FitResult::message is the reason
};

/// Asymmetric error. NaN: the statistic does not increase by 1 on that side.
struct ProfileError {
    double lower = 0.0; ///< negative
    double upper = 0.0; ///< positive
    bool lowerAtBound = false; ///< the parameter's bound is reached first; lower is the distance to it
    bool upperAtBound = false; ///< likewise for the upper side
};

/// One parameter of a result. Errors are one standard deviation, or NaN.
struct FitParameter {
    QString name; ///< for example "centre"
    double value = 0.0; ///< at the minimum
    double error = 0.0; ///< from the expected information, absolute: not scaled by the statistic
    double scaledError = 0.0; ///< error times sqrt(value of the statistic / ndf)
    double sandwichError = 0.0; ///< only for unweighted fits: the true error given the variances of the contents
    std::optional<ProfileError> profile; ///< asymmetric error, if it was computed
    bool fixed = false; ///< fixed by the user
    bool tied = false; ///< tied to another parameter
    /// @{ Ended on its lower or upper bound. A background that is 0 at an end of the range bounds its parameters: each
    /// can move only to one side, and still has an error.
    bool atLower = false;
    bool atUpper = false;
    /// @}

    /// The error to show: sandwichError for unweighted counts, scaledError for unweighted values that are not counts,
    /// else error.
    double shownError = 0.0;
};

/// A quantity derived from the parameters, with an error by linear propagation of the full covariance.
struct DerivedQuantity {
    QString name; ///< for example "fwhm" or, with several peaks, "fwhm1"
    double value = 0.0; ///< at the minimum
    double error = 0.0; ///< one standard deviation; scaled for unweighted fits
};

/// One peak of a result.
struct FittedPeak {
    double area = 0.0; ///< counts
    double centre = 0.0; ///< position on the axis
    PeakMeasures measures; ///< maximum, mean, height for unit area and widths
};

/// The result of a fit.
struct TARNIS_EXPORT FitResult {
    FitStatus status = FitStatus::Refused; ///< how it ended
    QString message; ///< why there is no fit or no convergence, for the user; empty on success

    FitModel model; ///< as fitted
    FitOptions options; ///< as fitted
    bool areCounts = false; ///< the contents are counts
    std::size_t first = 0; ///< first bin of the range
    std::size_t last = 0; ///< last bin of the range
    double reference = 0.0; ///< middle of the range, the origin of the background

    double value = noNumber; ///< the statistic at the minimum
    int points = 0; ///< bins
    int free = 0; ///< free parameters
    int ndf = 0; ///< points - free
    int calls = 0; ///< evaluations of the model by the solver
    std::vector<FitParameter> parameters; ///< in the order of FitModel::parameterNames(), peaks by position
    /// Row-major for all parameters, for the absolute errors; rows of fixed parameters and of those at a bound are
    /// zero.
    std::vector<double> covariance;
    std::vector<double> correlation; ///< in the same order; NaN if a parameter has no error
    std::vector<DerivedQuantity> derived; ///< widths, heights, distances, ratios, background at the ends
    std::vector<FittedPeak> peaks; ///< by position

    double dataSum = 0.0; ///< sum of the contents
    double modelSum = 0.0; ///< sum of the model
    double modelMinimum = 0.0; ///< smallest model content
    std::vector<double> modelContents; ///< model content of each bin of the range

    /// @{ Goodness: the value that the Cash statistic has for counts of this model, less the free parameters, its
    /// standard deviation, and the distance of the found one in those. For other statistics than Cash of the same
    /// model.
    double cashExpected = noNumber;
    double cashExpectedSd = noNumber;
    double cashZ = noNumber;
    /// @}
    /// Distance of the minimised statistic from its expectation in standard deviations: cashZ for Cash and for
    /// unweighted counts, (value - ndf)/sqrt(2 ndf) for the others; NaN if the variances are unknown.
    double goodness = noNumber;
    /// Upper tail of chi squared for the value; for Cash not reliable below 10 counts per bin. NaN for unweighted fits.
    double pValue = noNumber;

    bool acceptable = false; ///< whether there is no reason to reject the result
    QStringList reasons; ///< why the result is not acceptable, for the user

    /// Index of a parameter in `parameters`; -1 for an unknown name.
    int indexOf(const QString& name) const;
    /// Value of a parameter or derived quantity; NaN for an unknown name.
    double valueOf(const QString& name) const;
    /// Its error to show; NaN for an unknown name.
    double errorOf(const QString& name) const;
    /// The model at x as a density in counts per unit of the axis, with the step of its background; NaN without a fit.
    double densityAt(double x) const;
    /// The background alone at x.
    double backgroundAt(double x) const;
};

/// The starting values of a fit, in the order of FitModel::parameterNames(), as a result without errors. For an
/// immediate preview; rejected for the same reasons as a fit.
TARNIS_EXPORT FitResult guessSpectrumFit(const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last,
    const FitModel& model, const FitOptions& options = {});

/// Fits the bins first to last, both inclusive.
TARNIS_EXPORT FitResult fitSpectrum(const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last,
    const FitModel& model, const FitOptions& options = {});

/// Fits with as many peaks as the contents justify, up to FitModel::maxPeaks: a further peak is accepted only if the
/// statistic decreases by more than 16, its area exceeds three errors, and its distance to the others exceeds half a
/// full width at half maximum. FitModel::peaks and FitModel::centres are ignored.
TARNIS_EXPORT FitResult fitSpectrumAutomatically(const BinnedData& data, std::ptrdiff_t first, std::ptrdiff_t last,
    const FitModel& model, const FitOptions& options = {});

} // namespace tarnis
