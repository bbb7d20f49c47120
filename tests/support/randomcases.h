// Random numbers for random cases.
#pragma once

#include <random>

namespace tarnis::testing {

using Generator = std::mt19937_64;

/// Both ends inclusive.
inline int whole(Generator& generator, int low, int high)
{
    return std::uniform_int_distribution<int>(low, high)(generator);
}

inline double uniform(Generator& generator, double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(generator);
}

inline bool chance(Generator& generator, double probability)
{
    return uniform(generator, 0.0, 1.0) < probability;
}

} // namespace tarnis::testing
