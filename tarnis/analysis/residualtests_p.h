// Do the residuals of a fit hold something that the model lacks? Score tests of single additions to it.
#pragma once

#include "tarnis/analysis/fitproblem_p.h"
#include "tarnis/analysis/spectrumfit.h"

namespace tarnis::analysis {

/// The most significant addition of one kind.
struct AdditionFinding {
    double significance = 0.0; ///< in standard deviations, with the sign of the addition
    double place = 0.0; ///< on the axis
};

/// What the model may lack.
struct AdditionFindings {
    AdditionFinding peak; ///< a further one of the fitted width
    AdditionFinding shape; ///< skewness, kurtosis, tails of a peak
    AdditionFinding background; ///< the next orders, or a step below a peak
};

/// Tests a fit of counts; of the statistics of Neyman and of unweighted fits only for a further peak. Rao's score test:
/// an addition d to the model contents m changes half the statistic by S = sum (y - m) d/m, whose variance is that of d
/// less what the fitted parameters have taken up, sum d^2/m - g' V g with g = sum (dm/dp) d/m. S^2 over it is what the
/// statistic would fall by (C. R. Rao, Proc. Camb. Phil. Soc. 44 (1948) 50). Needs the covariance of the result.
/// Evaluates the model at its parameters.
AdditionFindings testAdditions(FitProblem& problem, const FitResult& result);

} // namespace tarnis::analysis
