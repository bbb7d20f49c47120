// Reads data files for the commands.
#pragma once

#include "outcome.h"

#include <tarnis/formats/dataset.h>

namespace cli {

/// Reads a file in the format of its name; "-" is standard input, whose format is detected from its first bytes. Warns
/// about non-finite values.
Result<tarnis::Dataset> readDataFile(const QString& path);

/// Prints a warning if values are not finite; `name` is that of the file or histogram.
void warnOfBadValues(const tarnis::Dataset& data, const QString& name);

} // namespace cli
