// Futures of the asynchronous client, waited for.
#pragma once

#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/client.h>

#include <QTest>

#include <memory>

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

/// Never connects again.
inline ClientOptions once()
{
    ClientOptions options;
    options.reconnect.enabled = false;
    return options;
}

inline RequestOptions binary()
{
    RequestOptions options;
    options.form = RequestOptions::Form::Binary;
    return options;
}

/// A client that is connected to the server; the test fails if it is not.
inline std::unique_ptr<Client> connectedTo(const ScriptedServer& server, const ClientOptions& options = quickClient())
{
    auto client = std::make_unique<Client>(options);
    client->connectTo(server.host(), server.port());
    if (!eventually([&] { return client->state() == Client::State::Ready; }))
        QTest::qFail("not connected", __FILE__, __LINE__);
    return client;
}

/// Runs the event loop until the future has ended; a result that fails the test without one.
template <typename Result> Result endOf(const QFuture<Result>& future)
{
    if (!eventually([&] { return future.isFinished(); }) || future.resultCount() != 1) {
        QTest::qFail("the request has not ended with a result", __FILE__, __LINE__);
        return {};
    }
    return future.result();
}

} // namespace tarnis::testing
