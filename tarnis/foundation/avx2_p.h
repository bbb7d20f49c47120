// Whether loops may use 256-bit vectors (AVX2).
#pragma once

#if defined(__x86_64__) && defined(__GNUC__)
/// Marks a function that is compiled for AVX2. It may only be called if hasAvx2().
#define TARNIS_AVX2 __attribute__((target("avx2")))
#endif

namespace tarnis {

/// False: the plain loops are used on every processor. For tests.
inline bool isAvx2Wanted = true;

/// True if functions compiled for AVX2 may be called: the processor has it, and it is not switched off.
inline bool hasAvx2()
{
#ifdef TARNIS_AVX2
    return isAvx2Wanted && __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

/// Off selects the plain loops. Must not be called during painting or a fit.
inline void setAvx2(bool on)
{
    isAvx2Wanted = on;
}

#ifdef TARNIS_AVX2
template <typename Loop> TARNIS_AVX2 __attribute__((flatten)) void runWithAvx2(const Loop& loop)
{
    loop();
}
#endif

/// Runs a loop over plain arrays, a lambda without parameters, which the compiler vectorises twice: with 256-bit
/// vectors for processors with AVX2. The results are bit-identical, because AVX2 alone has no combined multiply and
/// add.
template <typename Loop> void runWide(const Loop& loop)
{
#ifdef TARNIS_AVX2
    if (hasAvx2())
        return runWithAvx2(loop);
#endif
    loop();
}

} // namespace tarnis
