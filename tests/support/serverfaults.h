// The ways in which the simulated server answers wrongly; its command "fault NAME" switches them.
#pragma once

#include <QByteArray>
#include <QList>

namespace tarnis::testing {

/// Those of replies and greetings, without "none".
inline QList<QByteArray> replyFaults()
{
    return { "bytewise", "chunks", "split-prompt", "early-prompt", "trailing", "slow", "silent", "no-prompt", "garbage",
        "refuse", "close-before", "close-in-reply", "close-after", "reset-in-reply", "split-length", "wrong-length",
        "short-length", "zero-length", "negative-length", "oversized-length", "cut-payload", "empty-payload",
        "bad-values", "no-axis", "bad-index", "wrong-counts", "no-greeting", "late-greeting", "split-greeting",
        "close-at-greeting" };
}

/// Those of a server that starts, which do not come up.
inline QList<QByteArray> startFaults()
{
    return { "port-zero", "port-range", "port-missing", "start-exit", "start-crash", "no-greeting",
        "close-at-greeting" };
}

} // namespace tarnis::testing
