/// @file
/// Options and results of the requests of tarnis::Client. Plain values, for any thread.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <chrono>
#include <functional>

namespace tarnis {

/// How a request ended. Each request ends exactly once.
struct TARNIS_EXPORT Reply {
    /// The possible results of a request.
    enum class Outcome {
        Replied, ///< the server has answered
        Refused, ///< the server has answered "NG:", or the request cannot be sent in this form
        Failed, ///< no connection, or the connection was lost or dropped before the reply was complete
        TimedOut, ///< the deadline or the silence limit has passed
        Cancelled, ///< by the client: cancelAll(), abort(), close(), connectTo(), or its destruction
    };

    Outcome outcome = Outcome::Failed; ///< how the request ended
    QByteArray data; ///< the text as the server sent it, without the prompt; or the payload of a binary reply
    QString binaryText; ///< the text after a binary reply's payload; null for a text reply
    /// Why it was not Replied, as a plain text for users, never empty then; empty for Replied. That of a refusal is the
    /// server's own text, of any length and with any characters: show it as plain text.
    QString reason;
    qint64 announced = 0; ///< payload bytes that a binary reply announced; a negative number counted as 0
    std::chrono::nanoseconds elapsed {}; ///< from the call of request() to the end, including the time in the queue

    /// True for Replied.
    bool isOk() const { return outcome == Outcome::Replied; }
    /// The readable part: data as UTF-8, or the text after a payload.
    QString text() const { return binaryText.isNull() ? QString::fromUtf8(data) : binaryText; }
};

/// How far a reply has arrived.
struct TARNIS_EXPORT Progress {
    qint64 received = 0; ///< bytes of the payload so far; of a text reply possibly the prompt included
    qint64 expected = -1; ///< bytes of the payload as announced; -1 for a text reply
    QByteArrayView piece; ///< the new piece of a text reply, valid during the call; empty for a binary reply
};

/// Form, limits and priority of one request. The defaults suit a short text command.
struct TARNIS_EXPORT RequestOptions {
    /// The form of the reply. Only the caller knows which one the server will send.
    enum class Form {
        Text, ///< bytes up to the prompt
        Binary, ///< a length, that many bytes, a text, the prompt; or "NG:", a reason, the prompt (docs/protocol.md)
    };

    Form form = Form::Text; ///< form of the reply
    /// From request() to the complete reply, including the time in the queue. 0: no limit.
    std::chrono::milliseconds deadline = std::chrono::seconds(60);
    /// The longest time without a byte from the server while waiting for this reply. While a long upload is being sent,
    /// the bytes that are sent count, too. 0: no limit.
    std::chrono::milliseconds silence = std::chrono::seconds(30);
    /// Largest accepted reply, bytes; for a binary one of its payload, and of the text after it. A larger one fails as
    /// soon as that is known, and the connection is made again.
    qint64 maxSize = qint64(256) << 20;
    /// Waiting requests are sent by descending priority, those of equal priority in order.
    int priority = 0;
    /// Called on the client's thread for each piece of the text or payload that arrives. May call and delete the
    /// client.
    std::function<void(const Progress&)> progress = {};
};

} // namespace tarnis
