// The two ways of reading a reply, spelt out step by step on lists of chunks, to hold the session's readers to.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace tarnis::testing {

/// What a reader did. `waits` counts the waits that were really made.
struct ReadOutcome {
    bool complete = false;
    bool error = false;
    QByteArray buffer;
    QString text;
    QByteArrayList pieces; ///< what went out as progress
    int waits = 0;

    bool operator==(const ReadOutcome&) const = default;
};

/// `waits[i]` is what the i-th wait brings into the socket's buffer; an empty entry, and every wait behind the last
/// one, is a wait that fails.
ReadOutcome readTextReply(const QByteArrayList& waits, const QByteArray& prompt, bool progress);
ReadOutcome readBinaryReply(const QByteArrayList& waits, const QByteArray& prompt);

} // namespace tarnis::testing
