// Score tests of single additions to a fitted model: do the residuals contain something that the model lacks?
#pragma once

#include "tarnis/analysis/fitproblem_p.h"
#include "tarnis/analysis/spectrumfit.h"

namespace tarnis::analysis {

/// The most significant addition of one kind.
struct AdditionFinding {
    double significance = 0.0; ///< in standard deviations, with the sign of the addition
    double place = 0.0; ///< position on the axis
};

/// Additions that the model may lack.
struct AdditionFindings {
    AdditionFinding peak; ///< a further peak of the fitted width
    AdditionFinding shape; ///< skewness, kurtosis, tails of a peak
    AdditionFinding background; ///< the next orders, or a step below a peak
};

/// Tests a fit of counts; of the statistics of Neyman and of unweighted fits only for a further peak. Rao's score test:
/// an addition d to the model contents m changes half the statistic by S = sum (y - m) d/m, whose variance is that of d
/// minus the part absorbed by the fitted parameters, sum d^2/m - g' V g with g = sum (dm/dp) d/m. S^2 divided by the
/// variance is the expected decrease of the statistic (C. R. Rao, Proc. Camb. Phil. Soc. 44 (1948) 50). Needs the
/// covariance of the result. Evaluates the model at its parameters.
AdditionFindings testAdditions(FitProblem& problem, const FitResult& result);

} // namespace tarnis::analysis
