// What the user at a console knows of the server's histograms.
#pragma once

#include "console/consolefixture.h"
#include "histograms/serverhistograms.h"

namespace tarnis::testing {

/// The server's list has come, with this one: windows that open now are not replaced.
inline bool isListed(ConsoleFixture& desk, const char* histogram)
{
    return QTest::qWaitFor(
        [&] { return desk.window->histograms().find(QLatin1String(histogram)).has_value(); }, timeoutMs);
}

} // namespace tarnis::testing
