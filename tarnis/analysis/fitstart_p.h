// Starting values and bounds of a fit.
#pragma once

#include "tarnis/analysis/fitsolver_p.h"

#include <QString>

#include <optional>

namespace tarnis::analysis {

/// Default starting values, one for each parameter of the model. centres: positions of the peaks. widthScale: factor of
/// the estimated width, for different starts.
std::vector<double> firstValues(const FitProblem& problem, const std::vector<double>& centres, double widthScale = 1.0);

/// The highest position of the smoothed contents above a line through both ends. If that is within the noise, the
/// position of the most significant peak of a search. Always the centre of a bin.
double highestPosition(const FitProblem& problem);

/// The starting background density if the contents show none: Poisson statistics are undefined at 0.
double smallDensity(const FitProblem& problem);

/// Variables with starts and bounds for the values and the user's constraints. fault: the error in the constraints, for
/// the user; empty if valid.
VariableMap variablesFor(
    const FitProblem& problem, std::vector<double> values, FitStatistic statistic, bool areCounts, QString& fault);

} // namespace tarnis::analysis
