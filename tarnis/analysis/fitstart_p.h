// First values and bounds of a fit.
#pragma once

#include "tarnis/analysis/fitsolver_p.h"

#include <QString>

#include <optional>

namespace tarnis::analysis {

/// Where the parameters begin when the user says nothing: one value for each parameter of the model. centres: positions
/// of the peaks. widthScale: factor on the guessed width, to begin from elsewhere.
std::vector<double> firstValues(const FitProblem& problem, const std::vector<double>& centres, double widthScale = 1.0);

/// The highest place of the contents above a line through both ends, smoothed, or where that is within the noise the
/// place where a search sees the most significant peak; the centre of a bin.
double highestPosition(const FitProblem& problem);

/// A background density to begin with where the contents show none: Poisson statistics do not exist at 0.
double smallDensity(const FitProblem& problem);

/// Variables with starts and bounds for the values and the user's constraints. fault: what is wrong with the
/// constraints, for the user; empty if nothing.
VariableMap variablesFor(
    const FitProblem& problem, std::vector<double> values, FitStatistic statistic, bool areCounts, QString& fault);

} // namespace tarnis::analysis
