// From a minimum to a result: errors, derived quantities, goodness, profile errors and verdict.
#pragma once

#include "tarnis/analysis/fitsolver_p.h"
#include "tarnis/analysis/spectrumfit.h"

namespace tarnis::analysis {

/// Parameters, values and covariances of a minimum. Peaks are not yet ordered.
void addErrors(FitSolver& solver, const Minimum& minimum, FitResult& result);
/// Widths, heights, distances, ratios, background.
void addDerived(const FitProblem& problem, FitResult& result);
/// The expected statistic and the deviation from it.
void addGoodness(const FitProblem& problem, FitResult& result);
/// Asymmetric errors. If a lower minimum is found, updates `minimum` and returns true.
bool addProfiles(FitSolver& solver, Minimum& minimum, FitResult& result);
/// Reasons to reject the result.
void addVerdict(FitProblem& problem, FitResult& result);

/// Name without the number of its peak, for example "centre".
QString kindOf(const QString& parameterName);

} // namespace tarnis::analysis
