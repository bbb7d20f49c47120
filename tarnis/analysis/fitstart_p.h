// Starting values and bounds of a fit.
#pragma once

#include "tarnis/analysis/fitsolver_p.h"

#include <QString>

#include <optional>

namespace tarnis::analysis {

/// The tails of a shape that has parameters for them, at the start.
enum class FirstTails { Short, Usual, Long };

/// How the widths at the start follow from the contents.
struct FirstWidths {
    double scale = 1.0; ///< factor of the estimated width
    FirstTails tails = FirstTails::Usual;
};

/// Default starting values, one for each parameter of the model. centres: positions of the peaks.
std::vector<double> firstValues(
    const FitProblem& problem, const std::vector<double>& centres, const FirstWidths& first = {});

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
