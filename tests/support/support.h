// What every test may need: where the measured data lies, a seeded generator, a scratch folder.
#pragma once

#include <QString>

#include <optional>
#include <random>

namespace tarnis::testing {

/// Path of a file of the shared data folder, or nothing where the folder is absent: the test then skips.
std::optional<QString> sharedData(const QString& relativePath);

/// A generator of random cases. The seed is fixed, or taken from TARNIS_TEST_SEED to try others; it is printed on
/// failure by whoever uses it.
std::mt19937_64 seededGenerator(unsigned long long salt);

} // namespace tarnis::testing
