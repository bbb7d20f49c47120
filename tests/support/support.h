// Common functions of all tests: the stored data and a seeded generator of random cases.
#pragma once

#include <QString>

#include <random>

namespace tarnis::testing {

/// The path of a file or folder in tests/data. The program ends with a message if it is missing.
QString testData(const QString& relativePath);

/// A generator of random cases. The seed is fixed, or taken from TARNIS_TEST_SEED to try others; its users print it on
/// failure.
std::mt19937_64 seededGenerator(unsigned long long salt);

} // namespace tarnis::testing
