// Random numbers of the simulation: a fixed engine, and samplers whose sequence does not depend on the standard
// library. Not thread-safe.
#pragma once

#include <cstdint>
#include <random>

namespace simserver {

class Random {
public:
    /// The sequence only depends on the three numbers: the seed, the run number, and the purpose.
    Random(std::uint64_t seed, std::uint64_t run, std::uint64_t purpose);

    std::uint64_t bits() { return m_engine(); }
    /// Uniform in [0, 1), in steps of 2^-53.
    double uniform() { return static_cast<double>(bits() >> 11U) * 0x1.0p-53; }
    /// Uniform integer in [0, limit); limit is at least 1.
    std::uint64_t below(std::uint64_t limit);
    /// Exponential with mean 1, always finite.
    double exponential();
    /// Normal with mean 0 and standard deviation 1, by the polar method (G. Marsaglia, T. A. Bray, SIAM Review 6,
    /// 1964).
    double normal();

private:
    std::mt19937_64 m_engine;
    double m_spare = 0.0;
    bool m_hasSpare = false;
};

} // namespace simserver
