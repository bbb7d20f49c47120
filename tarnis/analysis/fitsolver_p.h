// The minimum of a statistic over the free parameters of a model.
#pragma once

#include "tarnis/analysis/factoredmatrix_p.h"
#include "tarnis/analysis/fitproblem_p.h"

#include <vector>

namespace tarnis::analysis {

/// A variable of the solver. Usually a free parameter; but the background is varied by its values at the ends of the
/// range, which can be bounded to be non-negative.
struct SolverVariable {
    int parameter = -1; ///< index of the parameter; -1: a node of the background
    double start = 0.0;
    double lower = 0.0;
    double upper = 0.0;
};

/// Maps variables to parameters: p = constant + sum of factor * variable.
struct VariableMap {
    struct Term {
        int parameter;
        int variable;
        double factor;
    };
    std::vector<SolverVariable> variables;
    std::vector<double> constant; ///< one for each parameter
    std::vector<Term> terms;

    std::vector<double> parameters(const std::vector<double>& variables) const;
};

/// The contribution of one bin to the statistic.
struct BinTerm {
    double residual; ///< its square is the bin's contribution
    double slope; ///< derivative of the residual by the model content
};
/// NaN if the statistic is undefined.
BinTerm binTerm(FitStatistic statistic, double y, double variance, double m, bool hasVariance);

struct Minimum {
    std::vector<double> variables;
    double value = 0.0; ///< NaN: the statistic is undefined at the start
    bool converged = false;
    int calls = 0;
};

/// Information matrix and gradient at a point, for all variables.
struct Information {
    std::vector<double> matrix; ///< sum of w (dm/dv)(dm/dv), row-major
    std::vector<double> gradient; ///< half the derivative of the statistic
    double value = 0.0;
};

class FitSolver {
public:
    FitSolver(FitProblem& problem, FitStatistic statistic, VariableMap map, int maxIterations);

    const VariableMap& map() const { return m_map; }
    FitProblem& problem() { return m_problem; }
    FitStatistic statistic() const { return m_statistic; }

    /// Minimises from a start, with some variables held (empty: none).
    Minimum minimise(std::vector<double> start, const std::vector<char>& held = {});
    /// The statistic at a point; NaN if it is undefined.
    double valueAt(const std::vector<double>& variables);
    /// Evaluates model and derivatives at a point. Valid until the next call; free of charge for the same point again.
    const Information& informationAt(const std::vector<double>& variables);
    /// The inverse of the information at a point, row-major: zero for variables that are on a bound or have no effect,
    /// as the slope of an exponential of height 0. False if the information is singular.
    bool covarianceAt(const std::vector<double>& variables, std::vector<double>& covariance);
    /// Derivatives of the model by each variable at the point of the last informationAt(), one for each bin. Valid
    /// until the next call of any function.
    const std::vector<const double*>& columns();
    /// The model's parameters for these variables. Valid until the next call of any function.
    const std::vector<double>& parametersAt(const double* variables);
    bool isAtLower(const std::vector<double>& variables, std::size_t j) const;
    bool isAtUpper(const std::vector<double>& variables, std::size_t j) const;

private:
    static int residuals(int m, int n, double* x, double* fvec, double** dvec, void* self);
    int writeResiduals(const double* variables, double* fvec, double** dvec);
    void writeTerms(std::span<const double> model, double* fvec);
    void weighBins();
    bool stepWithin(
        const Minimum& at, const Information& information, std::vector<char>& held, std::vector<double>& step);
    double squaredError(double value) const;
    bool approach(Minimum& minimum, const std::vector<char>& held);
    bool moveBy(const std::vector<double>& step, Minimum& minimum);
    void polish(Minimum& minimum, const std::vector<char>& held);

    FitProblem& m_problem;
    FitStatistic m_statistic;
    VariableMap m_map;
    int m_maxIterations;
    std::vector<double> m_p;
    std::vector<double> m_last; ///< variables of the last residuals, whose derivatives the solver requests next
    std::vector<double> m_slopes; ///< derivatives of these residuals by the contents of their bins
    double m_value = 0.0; ///< of the last valueAt()
    std::vector<double> m_valuedAt; ///< its point
    Information m_information; ///< of the last informationAt()
    std::vector<double> m_informedAt; ///< its point
    /// Scratch of informationAt(). @{
    std::vector<double> m_weights; ///< one for each bin
    std::vector<double> m_pulls; ///< likewise: half the derivatives of the statistic by the contents, over the weights
    std::vector<const double*> m_factors; ///< the pulls and the columns of the variables
    std::vector<double> m_products; ///< of these with one column
    /// @}
    FactoredMatrix m_factored; ///< of the last step
    std::vector<const double*> m_columns; ///< of the last columns()
    std::vector<int> m_sumIndex; ///< place in m_sums of each variable's column; -1: it is the column of one parameter
    std::vector<double> m_sums; ///< columns that are sums over parameters
    bool m_areSumsKnown = false; ///< they are computed and never change
};

} // namespace tarnis::analysis
