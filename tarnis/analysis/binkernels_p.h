// Arithmetic over many bins. On processors with AVX2 it uses 256-bit vectors. The results are bit-identical to those of
// the plain loops.
#pragma once

#include <cstddef>

namespace tarnis::analysis {

/// Replaces n numbers by their exponentials, with errors of at most 1.5 units of the last digit.
void exponentials(double* x, std::size_t n);
/// A Gaussian at n positions: exp(-z^2/2), and its distribution function below the centre, from there on the
/// distribution function minus 1. Relative errors of both are at most (1 + z^2) 1e-15.
void gaussians(const double* x, std::size_t n, double centre, double sigma, double* densities, double* tails);
/// sums[k] = sum over i of weights[i] a[i] columns[k][i], for `count` columns of n numbers.
void weightedDots(const double* weights, const double* a, const double* const* columns, std::size_t count,
    std::size_t n, double* sums);
/// Sum of the Poisson deviances 2 (m - y + y ln(y/m)) of n bins, y >= 0. NaN if an m is negative, or 0 where y is not.
double sumOfDeviances(const double* y, const double* m, std::size_t n);

/// The loops above, as compiled for one kind of processor.
struct BinKernels {
    void (*exponentials)(double* x, std::size_t n);
    void (*gaussians)(const double* x, std::size_t n, double centre, double sigma, double* densities, double* tails);
    void (*weightedDots)(const double* weights, const double* a, const double* const* columns, std::size_t count,
        std::size_t n, double* sums);
    double (*sumOfDeviances)(const double* y, const double* m, std::size_t n);
};
extern const BinKernels plainKernels;
/// May only be used if hasAvx2().
extern const BinKernels avx2Kernels;

} // namespace tarnis::analysis
