// Files of data as the commands read them.
#pragma once

#include "outcome.h"

#include <tarnis/formats/dataset.h>

namespace cli {

/// Reads a file in the format of its name; "-" is standard input, whose format is known by its first bytes. Values that
/// are not finite give a warning.
Result<tarnis::Dataset> readDataFile(const QString& path);

/// A line on standard error if values are not finite; `name` is that of the file or histogram.
void warnOfBadValues(const tarnis::Dataset& data, const QString& name);

} // namespace cli
