// Problems of the NIST Statistical Reference Datasets for non-linear regression: a file of that collection together
// with its model.
#pragma once

#include "fitrunners.h"

#include <QString>

#include <array>
#include <vector>

namespace tarnis::testing {

struct NistProblem {
    std::string name;
    std::array<std::vector<double>, 2> starts;
    std::vector<double> certified;
    std::vector<double> standardDeviations;
    double residualSumOfSquares = 0.0;
    std::vector<double> y;
    std::vector<double> x;

    /// The fit from one of the two starts.
    LeastSquaresProblem from(std::size_t start) const;
};

/// Reads one file. Ends the test program with a message if the file contradicts its header, or if the model is unknown.
NistProblem readNistProblem(const QString& path);

} // namespace tarnis::testing
