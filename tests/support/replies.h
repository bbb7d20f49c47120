// Futures of the asynchronous client, waited for.
#pragma once

#include "support/wait.h"

#include <tarnis/client/client.h>

#include <QTest>

namespace tarnis::testing {

/// Short waits, so that a reconnect takes no time.
inline ClientOptions quickClient()
{
    using namespace std::chrono_literals;
    ClientOptions options;
    options.reconnect.first = 1ms;
    options.reconnect.longest = 5ms;
    return options;
}

/// Runs the event loop until the future has ended; a result that fails the test without one.
inline Reply endOf(const QFuture<Reply>& future)
{
    if (!eventually([&] { return future.isFinished(); }) || future.resultCount() != 1) {
        QTest::qFail("the request has not ended with a result", __FILE__, __LINE__);
        return {};
    }
    return future.result();
}

} // namespace tarnis::testing
