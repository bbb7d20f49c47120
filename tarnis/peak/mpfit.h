/** @file
 * Bounded Levenberg-Marquardt least squares: minimises the sum of squares of m residuals over npar parameters, which
 * may be bounded or held. Plain C interface, C99 or C++. Re-entrant: a call shares nothing with another one, and runs
 * on the caller's thread. Model, options and statuses are described in docs/fitting.md.
 *
 * Sources: J. J. More, "The Levenberg-Marquardt algorithm: implementation and theory", Lecture Notes in Mathematics 630
 * (1978); J. J. More, B. S. Garbow, K. E. Hillstrom, "User Guide for MINPACK-1", ANL-80-74 (1980), routine LMDIF. */
#ifndef TARNIS_PEAK_MPFIT_H
#define TARNIS_PEAK_MPFIT_H

#include <tarnis/tarnis_export.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The residual function: writes the m residuals at the npar parameters x to fvec; a negative result stops the fit.
/// dvec is null unless derivatives are requested (side 3, deriv_debug). Then it has npar entries. The function fills
/// each one that is not null, a column of m doubles, with the derivatives of the residuals with respect to that
/// parameter. private_data is the pointer passed to mpfit().
typedef int (*mp_func)(int m, int npar, double* x, double* fvec, double** dvec, void* private_data);

/// Constraints of one parameter and the computation of its derivatives. All zero: free, unbounded, automatic.
typedef struct mp_par {
    int fixed; ///< non-zero: fixed at its starting value
    int limited[2]; ///< non-zero: lower, upper bound in force
    double limits[2]; ///< lower and upper bound, both inclusive
    char* parname; ///< for the caller; never read
    double step; ///< absolute step of the finite difference, used if > 0
    double relstep; ///< step relative to the parameter, used if > 0; overrides step
    /// 0: one-sided, backward next to the upper bound; 1: (f(x+h) - f(x))/h; -1: (f(x) - f(x-h))/h;
    /// 2: (f(x+h) - f(x-h))/2h; 3: analytic, written by the residual function.
    int side;
    int deriv_debug; ///< non-zero: print the analytic derivative beside the numerical one, which is used, on stdout
    double deriv_reltol; ///< relative tolerance of the printed comparison
    double deriv_abstol; ///< absolute tolerance; if both are 0, every non-zero row is printed
} mp_par;

/// Options. A zeroed record selects the defaults, except for nprint.
typedef struct mp_config {
    double ftol; ///< stop at this relative reduction of the sum of squares; <= 0: 1e-10
    double xtol; ///< stop at this relative change of the parameters; <= 0: 1e-10
    double gtol; ///< stop at this cosine between residuals and Jacobian columns; <= 0: 1e-10
    double epsfcn; ///< relative error of the residuals, for the finite-difference step; <= 0: 2.220446e-16
    double stepfactor; ///< first step bound, in lengths of the scaled start; <= 0: 100
    double covtol; ///< rank tolerance of the covariance; <= 0: 1e-14
    int maxiter; ///< maximum number of iterations; < 1: 200
    int maxfev; ///< stop after a step that reaches this number of calls; <= 0: no limit
    int nprint; ///< > 0: one more call at the result before returning; < 0 or without a record: 1
    int douserscale; ///< non-zero: scale 1 for all parameters instead of the Jacobian's column norms
    int nofinitecheck; ///< the reverse of its name: > 0 stops with MP_NOT_FINITE at a non-finite Jacobian
} mp_config;

/// Results of a fit. The caller must set the three pointers, possibly to null, before the call.
typedef struct mp_result {
    double bestnorm; ///< final sum of squares; that of a last, rejected step if it is larger
    double orignorm; ///< sum of squares at the start
    int niter; ///< iterations, counted from 1
    int nfev; ///< calls of the residual function
    int status; ///< as returned
    int npar; ///< all parameters
    int nfree; ///< parameters that are not fixed
    int npegged; ///< parameters that ended exactly on a bound
    int nfunc; ///< residuals
    double* resid; ///< m doubles: the final residuals
    double* xerror; ///< npar doubles: one-sigma errors for residuals of unit variance, 0 where unknown or fixed
    double* covar; ///< npar x npar doubles, row-major: inverse of J'J, zero rows and columns for fixed parameters
    char version[20]; ///< "1.1"
} mp_result;

/// Status of a fit. From 1 on the parameters are usable; the negative ones are failures.
enum mp_status {
    MP_STOPPED = 0, ///< the residual function returned a negative value at the first call or during a Jacobian
    MP_CONVERGED_FTOL = 1, ///< sum of squares within ftol
    MP_CONVERGED_XTOL = 2, ///< parameters within xtol
    MP_CONVERGED_BOTH = 3, ///< both
    MP_CONVERGED_GTOL = 4, ///< gradient within gtol
    MP_LIMIT_REACHED = 5, ///< maxiter or maxfev reached, or no finite step exists
    MP_FTOL_TOO_SMALL = 6, ///< the sum of squares is at machine precision
    MP_XTOL_TOO_SMALL = 7, ///< the parameters are at machine precision
    MP_GTOL_TOO_SMALL = 8, ///< the gradient is zero to machine precision
    MP_NOT_FINITE = -16, ///< infinity or NaN in the Jacobian, see nofinitecheck
    MP_NO_FUNCTION = -17, ///< no residual function
    MP_NO_DATA = -18, ///< m < 1 or no parameter vector
    MP_NO_FREE_PARAMETER = -19, ///< npar < 1, or all are fixed
    MP_NO_MEMORY = -20, ///< memory allocation failed
    MP_START_OUTSIDE = -21, ///< a starting value is outside its bounds
    MP_BOUNDS_CROSSED = -22, ///< a free parameter's lower bound is not below its upper bound
    MP_BAD_TOLERANCE = -23, ///< a tolerance or stepfactor is not positive
    MP_TOO_FEW_RESIDUALS = -24 ///< fewer residuals than free parameters
};

/// Fits: xall holds the npar starting values and receives the best parameters; fixed ones are not changed. pars (npar
/// entries), config and result may be null. Returns a status of mp_status, or the negative value that the residual
/// function returned for a trial step. After a setup error, MP_STOPPED and MP_NOT_FINITE, xall and result are
/// unchanged. All working storage is freed, also when the residual function throws.
TARNIS_EXPORT int mpfit(mp_func funct, int m, int npar, double* xall, mp_par* pars, mp_config* config,
    void* private_data, mp_result* result);

#ifdef __cplusplus
}
#endif

#endif
