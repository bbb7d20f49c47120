// The fitter's inner routines and the state of one fit. MINPACK-1's names are used where they exist.
#pragma once

#include "tarnis/peak/mpfit.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace tarnis::fitter {

inline constexpr double machineEpsilon = 2.220446e-16;
inline constexpr double smallestDouble = 2.2250739e-308;

// The routines below have MINPACK-1's arguments. Matrices are stored by column; a column has m (or ldr) doubles.

/// Euclidean norm of n doubles without overflow or underflow for components of any finite size.
double enorm(int n, const double* x);

/// Householder QR factorisation of the m x n matrix a with column pivoting, a * P = Q * R. Leaves the strict upper
/// triangle of R above a's diagonal and the Householder vectors from the diagonal on. ipvt: columns of P; rdiag:
/// diagonal of R; acnorm: norms of a's columns; wa: n doubles of scratch; rhs: m doubles that become Q' rhs, or null.
void qrfac(int m, int n, double* a, int* ipvt, double* rdiag, double* acnorm, double* wa, double* rhs = nullptr);

/// Least-squares solution x of R * P'x = qtb, diag * x = 0, for the upper triangle r of qrfac. Restores r's upper
/// triangle and diagonal; sdiag receives the diagonal of the triangle of the whole system.
void qrsolv(int n, double* r, int ldr, const int* ipvt, const double* diag, const double* qtb, double* x, double* sdiag,
    double* wa);

/// Levenberg parameter for which the step x has |diag * x| = delta within a tenth, or 0 if the Gauss-Newton step is
/// shorter. par is the initial estimate. sdiag, wa1, wa2: n doubles of scratch each.
double lmpar(int n, double* r, int ldr, const int* ipvt, const double* diag, const double* qtb, double delta,
    double par, double* x, double* sdiag, double* wa1, double* wa2);

/// Inverse of J'J from the R of qrfac, written over r's leading n x n block in the order of the parameters. Columns of
/// R from the first diagonal element that is not above tol * |R(0,0)| yield zeros.
void covar(int n, double* r, int ldr, const int* ipvt, double tol, double* wa);

/// The caller's arguments, completed with defaults.
struct Problem {
    mp_func funct;
    int m;
    int npar;
    double* xall;
    const mp_par* pars; ///< may be null
    mp_config config;
    void* privateData;
};

/// One fit, from setup to result. Arrays have nfree doubles in the order of m_ifree unless stated otherwise.
class Fit {
public:
    explicit Fit(const Problem& problem);
    /// mpfit() after the checks of its arguments; result may be null.
    int run(mp_result* result);

private:
    // Setup and result - mpfit.cpp
    int setUp();
    bool allocateVectors();
    bool allocateJacobian();
    void listFreeParameters();
    int checkParameters() const;
    bool tolerancesArePositive() const;
    void finish(int status, mp_result* result);
    int countPegged() const;
    void writeErrors(mp_result& result);

    // Main loop - mpfit_iterate.cpp
    int iterate();
    std::optional<int> linearise();
    std::optional<int> tryStep();
    int evaluate(const double* xfree, double* residuals, double** dvec);
    void factorise();
    bool factorIsFinite() const;
    void scaleFirst();
    double scaledGradient() const;
    void predictReduction(double alpha);
    void updateStepBound();
    void accept();
    std::optional<int> stopTest() const;

    // Bounds - mpfit_bounds.cpp
    void holdColumnsAtBounds();
    double keepStepInside();
    void takeStep(double alpha);

    // Jacobian - mpfit_jacobian.cpp
    bool jacobian();
    bool userColumns();
    bool numericalColumn(int j);
    double differenceStep(int j) const;
    void printComparison(int j, const double* user, const double* numerical) const;

    const mp_par& parameter(int j) const; ///< record of free parameter j
    double* column(int j) const { return m_fjac.get() + std::ptrdiff_t(m_problem.m) * j; }

    const Problem m_problem;

    // Storage of the arrays below, allocated in the setup. Not initialised, because unused pages cost nothing.
    std::unique_ptr<double[]> m_vectors;
    std::unique_ptr<int[]> m_indices;
    std::unique_ptr<double[]> m_fjac; ///< m x nfree: Jacobian, then its factors
    std::unique_ptr<double*[]> m_dvec; ///< npar columns for the residual function; null without side 3 and deriv_debug

    int m_nfree = 0;
    bool m_anyLimit = false; ///< a free parameter has a bound
    bool m_anyDebug = false; ///< a free parameter has deriv_debug
    int* m_ifree = nullptr; ///< indices of the free parameters
    int* m_ipvt = nullptr; ///< column order of the factorisation
    double* m_xfull = nullptr; ///< npar: the parameters passed to the residual function
    double* m_x = nullptr; ///< current point
    double* m_xnew = nullptr; ///< trial point
    double* m_step = nullptr; ///< trial step
    double* m_diag = nullptr; ///< scale of the parameters
    double* m_qtf = nullptr; ///< first elements of Q' * fvec
    double* m_acnorm = nullptr; ///< norms of the Jacobian's columns; scratch in tryStep()
    double* m_rdiag = nullptr; ///< diagonal of R; scratch in tryStep()
    double* m_wa3 = nullptr; ///< scratch
    double* m_fvec = nullptr; ///< m: residuals at the current point
    double* m_wa4 = nullptr; ///< m: residuals at the trial point; scratch
    double* m_wa5 = nullptr; ///< m: scratch of two-sided differences

    bool m_abandoned = false; ///< stopped without writing results
    int m_nfev = 0;
    int m_iter = 1;
    double m_orignorm = 0.0; ///< sum of squares at the start
    double m_fnorm = -1.0; ///< norm of fvec
    double m_fnorm1 = -1.0; ///< norm of the last trial's residuals
    double m_par = 0.0; ///< Levenberg parameter
    double m_delta = 0.0; ///< step bound
    double m_xnorm = 0.0; ///< norm of diag * x
    double m_pnorm = 0.0; ///< norm of diag * step
    double m_gnorm = 0.0; ///< norm of the scaled gradient
    double m_actred = 0.0; ///< actual relative reduction
    double m_prered = 0.0; ///< predicted relative reduction
    double m_dirder = 0.0; ///< scaled directional derivative
    double m_ratio = 0.0; ///< actred / prered
};

} // namespace tarnis::fitter
