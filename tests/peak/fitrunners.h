// Runs a least-squares problem with mpfit and with cminpack's lmdif, and reports the same numbers for both.
#pragma once

#include <tarnis/peak/mpfit.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tarnis::testing {

/// Writes the residuals at the parameters x to r.
using Residuals = std::function<void(std::span<const double> x, std::span<double> r)>;

struct LeastSquaresProblem {
    std::string name;
    int m = 0;
    std::vector<double> start;
    Residuals residuals;
};

struct FitSettings {
    double tolerance = 1e-10; ///< ftol, xtol and gtol
    double epsfcn = 0.0; ///< of mpfit; 0: its default. lmdif takes its own machine precision.
    int maxiter = 100000; ///< of mpfit; lmdif has no such limit
    int maxfev = 20000; ///< of both
};

/// With this epsfcn both fitters use the same finite differences. mpfit's default is smaller by 2e-8, which changes the
/// last bits of each difference point.
inline constexpr double lmdifPrecision = 2.220446049250313e-16;

struct FitReport {
    int status = 0;
    int nfev = 0; ///< without mpfit's final call
    std::vector<double> x;
    std::vector<double> error; ///< standard deviations, scaled by that of the residuals
    double sumOfSquares = 0.0; ///< computed again at x
    std::vector<std::vector<double>> calls; ///< the parameters of each call, in order; without mpfit's final one
};

FitReport runMpfit(const LeastSquaresProblem& problem, const FitSettings& settings);
FitReport runLmdif(const LeastSquaresProblem& problem, const FitSettings& settings);

} // namespace tarnis::testing
