// A histogram of the server as a dataset.
#pragma once

#include "arguments.h"
#include "outcome.h"
#include "server.h"

#include <tarnis/formats/dataset.h>

namespace cli {

/// Fetches a histogram with its axes, units, run and live time. `rows` selects rows of a 1D histogram; a map has none.
Result<tarnis::Dataset> fetchHistogram(Server& server, const QString& name, std::optional<Range<int>> rows = {});

/// The value of --rows: "A:B" or "A", numbers of rows from 0.
Result<std::optional<Range<int>>> rowsOption(const Arguments& arguments);

} // namespace cli
