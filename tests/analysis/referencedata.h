// Measured and synthetic spectra with reference numbers of an independent computation, and functions for comparing
// them.
#pragma once

#include <QJsonObject>
#include <QString>

#include <vector>

namespace tarnis::testing {

/// A JSON file below tests/data/analysis.
QJsonObject referenceNumbers(const QString& relativePath);
/// The contents of an .spe file, or of one with a count in each line, below tests/data.
std::vector<double> spectrumAt(const QString& relativePath);

/// Fails the running test, naming the quantity, unless the numbers are within the tolerance. NaN equals null.
bool agrees(const QString& what, double found, double expected, double tolerance);
/// The same with a relative tolerance.
bool agreesRelatively(const QString& what, double found, double expected, double tolerance);

} // namespace tarnis::testing
