#include "tarnis/plots/math/binvalues_p.h"

#include <array>
#include <cfloat>
#include <cstddef>

namespace tarnis {

double smallestPositiveBin(const BinRows& rows)
{
    // Eight running minima, because a single one would be limited by latency.
    constexpr qsizetype lanes = 8;
    std::array<double, lanes> least {};
    least.fill(1.0);
    for (const QList<double>& row : rows) {
        const double* values = row.constData();
        const qsizetype count = row.size();
        qsizetype i = 0;
        for (; i + lanes <= count; i += lanes) {
            for (qsizetype lane = 0; lane < lanes; ++lane) {
                const double value = values[i + lane];
                const double candidate = value > DBL_EPSILON ? value : 1.0;
                least[static_cast<std::size_t>(lane)] = candidate < least[static_cast<std::size_t>(lane)]
                    ? candidate
                    : least[static_cast<std::size_t>(lane)];
            }
        }
        for (; i < count; ++i)
            least[0] = values[i] > DBL_EPSILON && values[i] < least[0] ? values[i] : least[0];
    }
    return *std::min_element(least.begin(), least.end());
}

} // namespace tarnis
