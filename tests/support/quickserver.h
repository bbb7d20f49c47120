// Options of a server for tests: short times instead of those of a network.
#pragma once

#include <tarnis/client/server.h>

#include <chrono>

namespace tarnis::testing {

/// Reconnects within milliseconds, does not poll and sends nothing while it is idle.
inline ServerOptions quick()
{
    using namespace std::chrono_literals;
    ServerOptions options;
    options.client.reconnect.first = 1ms;
    options.client.reconnect.longest = 20ms;
    options.client.greetingTimeout = 300ms;
    options.client.keepAlive.interval = 0ms;
    options.statInterval = 0ms;
    options.connectTimeout = 3s;
    options.process.startTimeout = 3s;
    options.process.exitGrace = 200ms;
    return options;
}

} // namespace tarnis::testing
