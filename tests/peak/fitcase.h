// Fixtures for tests of mpfit(): a case is a residual function with starting values, records and options; run() calls
// mpfit() and stores the result.
#pragma once

#include <tarnis/peak/mpfit.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tarnis::testing {

struct FitCase {
    /// Writes the residuals at x; fills the columns of dvec that are not null, if there is one.
    using Function = std::function<int(std::span<const double> x, std::span<double> r, double** dvec)>;

    struct Call {
        std::vector<double> x;
        std::vector<bool> columns; ///< requested derivatives; empty: none
        int answer;
        double norm; ///< Euclidean, of what was written
    };

    int m = 0;
    std::vector<double> x;
    Function function;
    std::vector<mp_par> pars; ///< empty: null is passed
    mp_config config {};
    bool hasConfig = false; ///< null is passed otherwise

    int status = 0;
    mp_result result {};
    std::vector<double> resid;
    std::vector<double> xerror;
    std::vector<double> covar;
    std::vector<Call> calls;

    /// A case with a record for each parameter, all of them zero.
    FitCase(int residuals, std::vector<double> start, Function f);

    FitCase& bound(std::size_t j, double lower, double upper);
    FitCase& boundBelow(std::size_t j, double lower);
    FitCase& boundAbove(std::size_t j, double upper);
    FitCase& hold(std::size_t j);
    FitCase& side(std::size_t j, int side);
    /// Changes the configuration and passes it.
    FitCase& configure(const std::function<void(mp_config&)>& change);

    int run();
    double sumOfSquares() const; ///< at x, computed again
};

/// Residuals y[i] - (x[0] + x[1] * t[i]) for t = 0, 1, 2, ...
FitCase straightLine(std::vector<double> y, std::vector<double> start);

/// The two residuals of H. H. Rosenbrock's function; minimum 0 at (1, 1).
FitCase rosenbrockFrom(double x0, double x1);

/// The output of f on standard output.
std::string standardOutputOf(const std::function<void()>& f);

} // namespace tarnis::testing
