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

/// Bytes of memory that a process occupies, 0 for this one; 0 if unknown.
qint64 residentBytes(qint64 processId = 0);

} // namespace tarnis::testing
