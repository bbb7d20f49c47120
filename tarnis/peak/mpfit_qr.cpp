// Orthogonal factorisation and the least-squares solution on its triangle: MINPACK-1, routines QRFAC and QRSOLV (More,
// Garbow, Hillstrom 1980).
#include "tarnis/peak/mpfit_p.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnis::fitter {

namespace {

// Swaps columns j and kmax of a and their associated elements.
void exchangeColumns(int m, double* a, int j, int kmax, int* ipvt, double* rdiag, double* wa)
{
    double* columnJ = a + std::ptrdiff_t(m) * j;
    std::swap_ranges(columnJ, columnJ + m, a + std::ptrdiff_t(m) * kmax);
    rdiag[kmax] = rdiag[j];
    wa[kmax] = wa[j];
    std::swap(ipvt[j], ipvt[kmax]);
}

// Applies the Householder vector v (length from v[0] on, v[0] >= 1) to columns. The sums of one column wait for each
// other, so those of several columns are computed side by side. The order of the additions in each is that of one
// column alone.
template <std::size_t count> void reflect(int length, const double* v, const std::array<double*, count>& columns)
{
    std::array<double, count> sums {};
    for (int i = 0; i < length; ++i) {
        for (std::size_t k = 0; k < count; ++k)
            sums[k] += v[i] * columns[k][i];
    }
    for (std::size_t k = 0; k < count; ++k) {
        const double temp = sums[k] / v[0];
        for (int i = 0; i < length; ++i)
            columns[k][i] -= temp * v[i];
    }
}

// Applies v to the columns `first` to `count` - 1 that columnAt() returns.
template <typename ColumnAt> void reflectAll(int length, const double* v, int first, int count, ColumnAt columnAt)
{
    int k = first;
    for (; k + 3 < count; k += 4)
        reflect<4>(length, v, { columnAt(k), columnAt(k + 1), columnAt(k + 2), columnAt(k + 3) });
    if (k + 2 < count)
        reflect<3>(length, v, { columnAt(k), columnAt(k + 1), columnAt(k + 2) });
    else if (k + 1 < count)
        reflect<2>(length, v, { columnAt(k), columnAt(k + 1) });
    else if (k < count)
        reflect<1>(length, v, { columnAt(k) });
}

// Norm of the remaining part of a column below its new first element; recomputed if cancellation is too large.
void updateNorm(int length, const double* c, double& rdiag, double& wa)
{
    if (rdiag == 0.0)
        return;
    const double temp = c[0] / rdiag;
    rdiag *= std::sqrt(std::max(0.0, 1.0 - temp * temp));
    const double r = rdiag / wa;
    if (0.05 * (r * r) <= machineEpsilon) {
        rdiag = enorm(length - 1, c + 1);
        wa = rdiag;
    }
}

// A Givens rotation.
struct Rotation {
    double cos;
    double sin;
};

// The rotation that turns (diagonal, element) into (r, 0), without overflow.
Rotation rotationToEliminate(double element, double diagonal)
{
    if (std::fabs(diagonal) < std::fabs(element)) {
        const double cotan = diagonal / element;
        const double sin = 0.5 / std::sqrt(0.25 + 0.25 * (cotan * cotan));
        return { sin * cotan, sin };
    }
    const double tan = element / diagonal;
    const double cos = 0.5 / std::sqrt(0.25 + 0.25 * (tan * tan));
    return { cos, cos * tan };
}

// Rotates the row (sdiag[j..n-1], 0) into the triangle in r's lower part, from row j down, together with the right side
// wa.
void eliminateRow(int n, int j, double* r, int ldr, double* sdiag, double* wa)
{
    double qtbpj = 0.0;
    for (int k = j; k < n; ++k) {
        if (sdiag[k] == 0.0)
            continue;
        double* rk = r + std::ptrdiff_t(ldr) * k;
        const auto [cos, sin] = rotationToEliminate(sdiag[k], rk[k]);
        rk[k] = cos * rk[k] + sin * sdiag[k];
        const double temp = cos * wa[k] + sin * qtbpj;
        qtbpj = -sin * wa[k] + cos * qtbpj;
        wa[k] = temp;
        for (int i = k + 1; i < n; ++i) {
            const double t = cos * rk[i] + sin * sdiag[i];
            sdiag[i] = -sin * rk[i] + cos * sdiag[i];
            rk[i] = t;
        }
    }
}

// Back substitution on the triangle in r's lower part with diagonal sdiag; zero from its first zero on.
void solveTriangle(int n, const double* r, int ldr, const double* sdiag, double* wa)
{
    const int nsing = int(std::find(sdiag, sdiag + n, 0.0) - sdiag);
    std::fill(wa + nsing, wa + n, 0.0);
    for (int j = nsing - 1; j >= 0; --j) {
        const double* rj = r + std::ptrdiff_t(ldr) * j;
        double sum = 0.0;
        for (int i = j + 1; i < nsing; ++i)
            sum += rj[i] * wa[i];
        wa[j] = (wa[j] - sum) / sdiag[j];
    }
}

} // namespace

void qrfac(int m, int n, double* a, int* ipvt, double* rdiag, double* acnorm, double* wa, double* rhs)
{
    for (int j = 0; j < n; ++j) {
        acnorm[j] = enorm(m, a + std::ptrdiff_t(m) * j);
        rdiag[j] = acnorm[j];
        wa[j] = rdiag[j];
        ipvt[j] = j;
    }
    for (int j = 0; j < std::min(m, n); ++j) {
        int kmax = j;
        for (int k = j; k < n; ++k) {
            if (rdiag[k] > rdiag[kmax])
                kmax = k;
        }
        if (kmax != j)
            exchangeColumns(m, a, j, kmax, ipvt, rdiag, wa);

        double* v = a + std::ptrdiff_t(m) * j + j;
        double ajnorm = enorm(m - j, v);
        if (ajnorm != 0.0) {
            if (v[0] < 0.0)
                ajnorm = -ajnorm;
            for (int i = 0; i < m - j; ++i)
                v[i] /= ajnorm;
            v[0] += 1.0;
            reflectAll(m - j, v, j + 1, n + (rhs ? 1 : 0),
                [&](int k) { return k < n ? a + std::ptrdiff_t(m) * k + j : rhs + j; });
            for (int k = j + 1; k < n; ++k)
                updateNorm(m - j, a + std::ptrdiff_t(m) * k + j, rdiag[k], wa[k]);
        }
        rdiag[j] = -ajnorm;
    }
}

void qrsolv(int n, double* r, int ldr, const int* ipvt, const double* diag, const double* qtb, double* x, double* sdiag,
    double* wa)
{
    // The triangle is processed in the lower part; x stores the diagonal in the meantime.
    for (int j = 0; j < n; ++j) {
        double* rj = r + std::ptrdiff_t(ldr) * j;
        for (int i = j; i < n; ++i)
            rj[i] = r[std::ptrdiff_t(ldr) * i + j];
        x[j] = rj[j];
        wa[j] = qtb[j];
    }
    for (int j = 0; j < n; ++j) {
        double* rjj = r + std::ptrdiff_t(ldr) * j + j;
        const double d = diag[ipvt[j]];
        if (d != 0.0) {
            std::fill(sdiag + j, sdiag + n, 0.0);
            sdiag[j] = d;
            eliminateRow(n, j, r, ldr, sdiag, wa);
        }
        sdiag[j] = *rjj;
        *rjj = x[j];
    }
    solveTriangle(n, r, ldr, sdiag, wa);
    for (int j = 0; j < n; ++j)
        x[ipvt[j]] = wa[j];
}

} // namespace tarnis::fitter
