// Reference implementations of reading text and binary replies from lists of chunks, for comparison with the session's
// readers.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace tarnis::testing {

/// The result of a reader. `waits` is the number of actual waits.
struct ReadOutcome {
    bool complete = false;
    bool error = false;
    QByteArray buffer;
    QString text;
    QByteArrayList pieces; ///< pieces emitted as progress
    int waits = 0;

    bool operator==(const ReadOutcome&) const = default;
};

/// `waits[i]` is added to the socket's buffer by the i-th wait; an empty entry, and every wait after the last one, is a
/// wait that fails.
ReadOutcome readTextReply(const QByteArrayList& waits, const QByteArray& prompt, bool progress);
ReadOutcome readBinaryReply(const QByteArrayList& waits, const QByteArray& prompt);

} // namespace tarnis::testing
