// A peak of counts in 40 channels, its model, and the fit.
#pragma once

#include <tarnis/peak/mpfit.h>

#include <algorithm>
#include <array>
#include <cmath>

inline constexpr std::array counts { 25.0, 20.0, 17.0, 20.0, 22.0, 30.0, 32.0, 31.0, 13.0, 26.0, 30.0, 31.0, 40.0, 43.0,
    55.0, 70.0, 112.0, 166.0, 180.0, 190.0, 180.0, 172.0, 154.0, 111.0, 85.0, 66.0, 52.0, 27.0, 34.0, 25.0, 32.0, 21.0,
    26.0, 28.0, 25.0, 28.0, 35.0, 24.0, 25.0, 25.0 };

enum { Amplitude, Center, Sigma, Background, ParameterCount };

inline constexpr std::array<double, ParameterCount> startingValues { 150.0, 15.0, 2.0, 0.0 };

inline double model(const double* p, double channel)
{
    const double distance = (channel - p[Center]) / p[Sigma];
    return p[Amplitude] * std::exp(-0.5 * distance * distance) + p[Background];
}

/// Residuals in units of their standard deviation, so that the errors are in units of the parameters.
inline int residuals(int m, int, double* p, double* fvec, double**, void*)
{
    for (int i = 0; i < m; ++i) {
        const double y = counts[static_cast<std::size_t>(i)];
        fvec[i] = (y - model(p, i)) / std::sqrt(std::max(y, 1.0));
    }
    return 0;
}

struct Fit {
    std::array<double, ParameterCount> p = startingValues; ///< receives the result
    std::array<double, ParameterCount> error {};
    mp_result result {};
    int status = 0;

    Fit()
    {
        std::array<mp_par, ParameterCount> pars {};
        pars[Center].limited[0] = pars[Center].limited[1] = 1;
        pars[Center].limits[0] = 10.0;
        pars[Center].limits[1] = 30.0;
        pars[Sigma].limited[0] = 1;
        pars[Sigma].limits[0] = 0.5;
        pars[Background].limited[0] = 1;
        result.xerror = error.data();
        status = mpfit(residuals, static_cast<int>(counts.size()), ParameterCount, p.data(), pars.data(), nullptr,
            nullptr, &result);
    }
};
