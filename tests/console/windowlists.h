// Helpers for the server's list of histograms.
#pragma once

#include "console/consolefixture.h"
#include "histograms/serverhistograms.h"
#include "support/wait.h"

namespace tarnis::testing {

/// Waits until the server's list with this histogram has arrived, so that windows opened now are not replaced.
inline bool isListed(ConsoleFixture& fixture, const char* histogram)
{
    return eventually([&] { return fixture.window->histograms().find(QLatin1String(histogram)).has_value(); });
}

} // namespace tarnis::testing
