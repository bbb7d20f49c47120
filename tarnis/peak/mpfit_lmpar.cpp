// The Levenberg parameter: MINPACK-1, routine LMPAR (More, Garbow, Hillstrom 1980); the theory is in More (1978),
// section 5. Returns early if a norm is not finite, because no later iteration could improve it.
#include "tarnis/peak/mpfit_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis::fitter {

namespace {

constexpr int maximumRounds = 10;
constexpr double relativeWidth = 0.1; // allowed relative distance of |diag * x| from delta

// Gauss-Newton direction; for a singular R, its least-squares solution on the leading block. Returns the rank.
int gaussNewton(int n, const double* r, int ldr, const int* ipvt, const double* qtb, double* x, double* wa1)
{
    int nsing = n;
    for (int j = 0; j < n; ++j) {
        wa1[j] = qtb[j];
        if (r[std::ptrdiff_t(ldr) * j + j] == 0.0 && nsing == n)
            nsing = j;
        if (nsing < n)
            wa1[j] = 0.0;
    }
    for (int j = nsing - 1; j >= 0; --j) {
        const double* rj = r + std::ptrdiff_t(ldr) * j;
        wa1[j] /= rj[j];
        const double temp = wa1[j];
        for (int i = 0; i < j; ++i)
            wa1[i] -= rj[i] * temp;
    }
    for (int j = 0; j < n; ++j)
        x[ipvt[j]] = wa1[j];
    return nsing;
}

double scaledNorm(int n, const double* diag, const double* x, double* wa2)
{
    for (int j = 0; j < n; ++j)
        wa2[j] = diag[j] * x[j];
    return enorm(n, wa2);
}

// wa1 = P' * D * (D * x / dxnorm), the right side for the derivative of the function whose zero is sought.
void newtonRightSide(int n, const int* ipvt, const double* diag, const double* wa2, double dxnorm, double* wa1)
{
    for (int j = 0; j < n; ++j) {
        const int l = ipvt[j];
        wa1[j] = diag[l] * (wa2[l] / dxnorm);
    }
}

// Newton step from par = 0, a lower bound. For R of full rank; wa1 is the right side.
double lowerBound(int n, const double* r, int ldr, double fp, double delta, double* wa1)
{
    for (int j = 0; j < n; ++j) {
        const double* rj = r + std::ptrdiff_t(ldr) * j;
        double sum = 0.0;
        for (int i = 0; i < j; ++i)
            sum += rj[i] * wa1[i];
        wa1[j] = (wa1[j] - sum) / rj[j];
    }
    const double temp = enorm(n, wa1);
    return ((fp / delta) / temp) / temp;
}

// The norm of the scaled gradient divided by delta, as upper bound; never 0.
double upperBound(
    int n, const double* r, int ldr, const int* ipvt, const double* diag, const double* qtb, double delta, double* wa1)
{
    for (int j = 0; j < n; ++j) {
        const double* rj = r + std::ptrdiff_t(ldr) * j;
        double sum = 0.0;
        for (int i = 0; i <= j; ++i)
            sum += rj[i] * qtb[i];
        wa1[j] = sum / diag[ipvt[j]];
    }
    const double paru = enorm(n, wa1) / delta;
    return paru == 0.0 ? smallestDouble / std::min(delta, 0.1) : paru;
}

// Newton correction to par from the triangle that qrsolv left in r's lower part and sdiag.
double newtonCorrection(int n, const double* r, int ldr, const double* sdiag, double fp, double delta, double* wa1)
{
    for (int j = 0; j < n; ++j) {
        const double* rj = r + std::ptrdiff_t(ldr) * j;
        wa1[j] /= sdiag[j];
        const double temp = wa1[j];
        for (int i = j + 1; i < n; ++i)
            wa1[i] -= rj[i] * temp;
    }
    const double temp = enorm(n, wa1);
    return ((fp / delta) / temp) / temp;
}

} // namespace

double lmpar(int n, double* r, int ldr, const int* ipvt, const double* diag, const double* qtb, double delta,
    double par, double* x, double* sdiag, double* wa1, double* wa2)
{
    const int nsing = gaussNewton(n, r, ldr, ipvt, qtb, x, wa1);
    double dxnorm = scaledNorm(n, diag, x, wa2);
    double fp = dxnorm - delta;
    if (fp <= relativeWidth * delta || !std::isfinite(fp))
        return 0.0;

    double parl = 0.0;
    if (nsing >= n) {
        newtonRightSide(n, ipvt, diag, wa2, dxnorm, wa1);
        parl = lowerBound(n, r, ldr, fp, delta, wa1);
    }
    double paru = upperBound(n, r, ldr, ipvt, diag, qtb, delta, wa1);
    par = std::min(std::max(par, parl), paru);
    if (par == 0.0)
        par = enorm(n, wa1) / dxnorm;

    for (int round = 1;; ++round) {
        if (par == 0.0)
            par = std::max(smallestDouble, 0.001 * paru);
        const double root = std::sqrt(par);
        for (int j = 0; j < n; ++j)
            wa1[j] = root * diag[j];
        qrsolv(n, r, ldr, ipvt, wa1, qtb, x, sdiag, wa2);
        dxnorm = scaledNorm(n, diag, x, wa2);
        const double before = fp;
        fp = dxnorm - delta;
        const bool closeEnough = std::fabs(fp) <= relativeWidth * delta;
        const bool noProgress = parl == 0.0 && fp <= before && before < 0.0;
        if (closeEnough || noProgress || round == maximumRounds || !std::isfinite(fp))
            return par;

        newtonRightSide(n, ipvt, diag, wa2, dxnorm, wa1);
        const double parc = newtonCorrection(n, r, ldr, sdiag, fp, delta, wa1);
        if (fp > 0.0)
            parl = std::max(parl, par);
        if (fp < 0.0)
            paru = std::min(paru, par);
        par = std::max(parl, par + parc);
    }
}

} // namespace tarnis::fitter
