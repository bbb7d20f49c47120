#include "random.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace simserver {

namespace {

std::mt19937_64 seededEngine(std::uint64_t seed, std::uint64_t run, std::uint64_t purpose)
{
    std::array<std::uint32_t, 6> words {};
    std::size_t word = 0;
    for (const std::uint64_t number : { seed, run, purpose }) {
        words.at(word++) = static_cast<std::uint32_t>(number);
        words.at(word++) = static_cast<std::uint32_t>(number >> 32U);
    }
    std::seed_seq sequence(words.begin(), words.end());
    return std::mt19937_64(sequence);
}

} // namespace

Random::Random(std::uint64_t seed, std::uint64_t run, std::uint64_t purpose)
    : m_engine(seededEngine(seed, run, purpose))
{
}

std::uint64_t Random::below(std::uint64_t limit)
{
    // The product is below the limit for any limit up to 2^53, far beyond every count used here.
    const auto number = static_cast<std::uint64_t>(uniform() * static_cast<double>(limit));
    return std::min(number, limit - 1);
}

double Random::exponential()
{
    return -std::log1p(-uniform());
}

double Random::normal()
{
    if (m_hasSpare) {
        m_hasSpare = false;
        return m_spare;
    }
    double x = 0.0;
    double y = 0.0;
    double square = 0.0;
    do {
        x = 2.0 * uniform() - 1.0;
        y = 2.0 * uniform() - 1.0;
        square = x * x + y * y;
    } while (square >= 1.0 || square == 0.0);
    const double factor = std::sqrt(-2.0 * std::log(square) / square);
    m_spare = y * factor;
    m_hasSpare = true;
    return x * factor;
}

} // namespace simserver
