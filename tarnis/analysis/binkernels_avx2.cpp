// Compiled for AVX2, on processors that can have it.
#include "tarnis/analysis/binkernels_p.h"

#ifdef __AVX2__
#include "tarnis/analysis/binkernels_loops_p.h"

namespace tarnis::analysis {

const BinKernels avx2Kernels = kernels;

} // namespace tarnis::analysis
#endif
