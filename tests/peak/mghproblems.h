// The least-squares test problems of J. J. More, B. S. Garbow, K. E. Hillstrom, "Testing Unconstrained Optimization
// Software", ACM Transactions on Mathematical Software 7 (1981), 17-41, numbered and named as there.
#pragma once

#include "fitrunners.h"

#include <vector>

namespace tarnis::testing {

struct MghProblem {
    LeastSquaresProblem fit; ///< from the standard starting point
    std::vector<double> minima; ///< the published sums of squares, local ones included
    /// Absolute step for central differences, if the published minimum requires one: for parameters near zero the
    /// automatic step is too small to change the residuals.
    double step = 0.0;
};

std::vector<MghProblem> mghProblems();

} // namespace tarnis::testing
