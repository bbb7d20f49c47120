// Fits the peak and prints the result.
#include "peak.h"

#include <cstdio>

int main()
{
    const Fit fit;
    if (fit.status < MP_CONVERGED_FTOL) {
        std::fprintf(stderr, "no fit: status %d\n", fit.status);
        return 1;
    }
    const char* const names[] = { "amplitude", "center", "sigma", "background" };
    for (std::size_t j = 0; j < ParameterCount; ++j)
        std::printf("%-10s %8.2f +- %.2f\n", names[j], fit.p[j], fit.error[j]);
    std::printf("chi squared %.1f for %d degrees of freedom, %.1f at the start\n", fit.result.bestnorm,
        fit.result.nfunc - fit.result.nfree, fit.result.orignorm);
    std::printf("status %d, %d on a bound\n", fit.status, fit.result.npegged);
    return 0;
}
