#include "tarnis/analysis/binkernels_loops_p.h"

#include "tarnis/foundation/avx2_p.h"

namespace tarnis::analysis {

const BinKernels plainKernels = kernels;

namespace {

const BinKernels& bestKernels()
{
#ifdef TARNIS_AVX2
    if (hasAvx2())
        return avx2Kernels;
#endif
    return plainKernels;
}

} // namespace

void exponentials(double* x, std::size_t n)
{
    bestKernels().exponentials(x, n);
}

void gaussians(const double* x, std::size_t n, double centre, double sigma, double* densities, double* tails)
{
    bestKernels().gaussians(x, n, centre, sigma, densities, tails);
}

void weightedDots(const double* weights, const double* a, const double* const* columns, std::size_t count,
    std::size_t n, double* sums)
{
    bestKernels().weightedDots(weights, a, columns, count, n, sums);
}

double sumOfDeviances(const double* y, const double* m, std::size_t n)
{
    return bestKernels().sumOfDeviances(y, m, n);
}

} // namespace tarnis::analysis
