// The reply to a command and its encoding: text ends with the prompt; a binary reply is a signed 32-bit little-endian
// length, the payload, text and prompt.
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace simserver {

struct Reply {
    enum class Kind { Text, Rows, Pairs, Map, File };

    /// A piece of text that is sent before the rest, after a pause.
    struct DelayedText {
        int pauseMs = 0;
        QByteArray text;
    };

    Kind kind = Kind::Text;
    std::vector<DelayedText> delayedTexts; ///< only for text replies
    QByteArray payload; ///< only for binary replies
    QByteArray text; ///< UTF-8; ends with a line feed unless it is empty
    bool exempt = false; ///< not affected by faults

    bool isBinary() const { return kind != Kind::Text; }

    /// "OK:", a line feed and `body`.
    static Reply ok(const QByteArray& body = {});
    /// "NG:", the reason and a line feed.
    static Reply refusal(const QString& reason);
    /// As above for a command with a binary reply: no payload.
    static Reply binaryRefusal(const QString& reason);
};

/// The bytes of a reply without its delayedTexts.
struct Frame {
    QByteArray length; ///< four bytes, or none for text
    QByteArray payload;
    QByteArray text;
    QByteArray prompt;

    QByteArray whole() const { return length + payload + text + prompt; }
};

/// `payload` is at most 2^31 - 1 bytes long.
Frame frameOf(const Reply& reply, const QByteArray& prompt);

/// An encoded length.
QByteArray lengthBytes(qint32 length);

} // namespace simserver
