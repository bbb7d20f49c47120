// The covariance from the triangle of the last factorisation: the published routine COVAR of MINPACK-1's authors (More,
// Garbow, Hillstrom, Argonne 1980), which inverts R in place, forms inverse(R) * inverse(R)' and undoes the pivoting.
#include "tarnis/peak/mpfit_p.h"

#include <cmath>

namespace tarnis::fitter {

namespace {

// Inverts R in its upper triangle. Returns the number of columns that are not below the rank tolerance.
int invertTriangle(int n, double* r, int ldr, double tol)
{
    const double tolr = tol * std::fabs(r[0]);
    for (int k = 0; k < n; ++k) {
        double* rk = r + std::ptrdiff_t(ldr) * k;
        if (std::fabs(rk[k]) <= tolr)
            return k;
        rk[k] = 1.0 / rk[k];
        for (int j = 0; j < k; ++j) {
            const double* rj = r + std::ptrdiff_t(ldr) * j;
            const double temp = rk[k] * rk[j];
            rk[j] = 0.0;
            for (int i = 0; i <= j; ++i)
                rk[i] -= temp * rj[i];
        }
    }
    return n;
}

// Upper triangle of inverse(R' * R) from the inverse of R, on the leading block of the given rank.
void multiplyByTranspose(int rank, double* r, int ldr)
{
    for (int k = 0; k < rank; ++k) {
        double* rk = r + std::ptrdiff_t(ldr) * k;
        for (int j = 0; j < k; ++j) {
            double* rj = r + std::ptrdiff_t(ldr) * j;
            const double temp = rk[j];
            for (int i = 0; i <= j; ++i)
                rj[i] += temp * rk[i];
        }
        const double temp = rk[k];
        for (int i = 0; i <= k; ++i)
            rk[i] *= temp;
    }
}

} // namespace

void covar(int n, double* r, int ldr, const int* ipvt, double tol, double* wa)
{
    const auto at = [r, ldr](int i, int j) -> double& { return r[std::ptrdiff_t(ldr) * j + i]; };
    const int rank = invertTriangle(n, r, ldr, tol);
    multiplyByTranspose(rank, r, ldr);

    // Stores the elements in the order of the parameters in the lower triangle, and the diagonal in wa.
    for (int j = 0; j < n; ++j) {
        const int jj = ipvt[j];
        for (int i = 0; i <= j; ++i) {
            if (j >= rank)
                at(i, j) = 0.0;
            const int ii = ipvt[i];
            if (ii > jj)
                at(ii, jj) = at(i, j);
            else if (ii < jj)
                at(jj, ii) = at(i, j);
        }
        wa[jj] = at(j, j);
    }
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < j; ++i)
            at(i, j) = at(j, i);
        at(j, j) = wa[j];
    }
}

} // namespace tarnis::fitter
