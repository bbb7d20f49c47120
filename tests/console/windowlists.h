// Helpers for the server's list of histograms.
#pragma once

#include "console/consolefixture.h"
#include "histograms/serverhistograms.h"

namespace tarnis::testing {

/// Waits until the server's list with this histogram has arrived, so that windows opened now are not replaced.
inline bool isListed(ConsoleFixture& desk, const char* histogram)
{
    return QTest::qWaitFor(
        [&] { return desk.window->histograms().find(QLatin1String(histogram)).has_value(); }, timeoutMs);
}

} // namespace tarnis::testing
