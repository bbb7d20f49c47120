// Chi-square tests for seeded data.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace chisquare {

/// The significance of a chi-square statistic in standard deviations, for the given degrees of freedom; the cube root
/// transformation of E. B. Wilson and M. M. Hilferty, Proc. Natl. Acad. Sci. 17, 1931.
inline double deviation(double statistic, double degrees)
{
    const double variance = 2.0 / (9.0 * degrees);
    return (std::cbrt(statistic / degrees) - (1.0 - variance)) / std::sqrt(variance);
}

/// The same for counts against expected counts. Adjacent cells are merged until each expects at least 10.
inline double deviation(const std::vector<double>& counts, const std::vector<double>& expected)
{
    double statistic = 0.0;
    double count = 0.0;
    double wanted = 0.0;
    int cells = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        count += counts[i];
        wanted += expected[i];
        if (wanted < 10.0)
            continue;
        statistic += (count - wanted) * (count - wanted) / wanted;
        ++cells;
        count = wanted = 0.0;
    }
    return deviation(statistic, cells - 1);
}

} // namespace chisquare
