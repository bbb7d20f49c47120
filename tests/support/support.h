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

/// Bytes of memory that a process occupies, 0 for this one, whose free memory does not count; 0 if unknown.
qint64 residentBytes(qint64 processId = 0);

/// Whether this program occupies less than so many mebibytes (2^20) more than `before`, a result of residentBytes().
/// The address sanitizer keeps freed memory, so any growth will do there.
bool hasGrownLessThan(qint64 mebibytes, qint64 before);

} // namespace tarnis::testing
