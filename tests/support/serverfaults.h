// The faults of the simulated server, set by its command "fault NAME".
#pragma once

#include <QByteArray>
#include <QList>

namespace tarnis::testing {

/// Faults of replies and greetings, without "none".
inline QList<QByteArray> replyFaults()
{
    return { "bytewise", "chunks", "split-prompt", "early-prompt", "trailing", "slow", "silent", "no-prompt", "garbage",
        "refuse", "close-before", "close-in-reply", "close-after", "reset-in-reply", "split-length", "wrong-length",
        "short-length", "zero-length", "negative-length", "oversized-length", "cut-payload", "empty-payload",
        "bad-values", "no-axis", "bad-index", "wrong-counts", "no-greeting", "late-greeting", "split-greeting",
        "close-at-greeting" };
}

/// Faults of the start, with which the server does not come up.
inline QList<QByteArray> startFaults()
{
    return { "port-zero", "port-range", "port-missing", "start-exit", "start-crash", "no-greeting",
        "close-at-greeting" };
}

} // namespace tarnis::testing
