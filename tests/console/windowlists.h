// Helpers for the server's list of histograms.
#pragma once

#include "console/consolefixture.h"
#include "histograms/serverhistograms.h"
#include "support/wait.h"

namespace tarnis::testing {

/// Waits until the server's list with this histogram has arrived, so that windows opened now are not replaced.
inline bool isListed(ConsoleFixture& desk, const char* histogram)
{
    return eventually([&] { return desk.window->histograms().find(QLatin1String(histogram)).has_value(); });
}

} // namespace tarnis::testing
