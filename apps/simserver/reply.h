// What a command answers, and the bytes of it on the wire: text ends with the prompt; a binary reply is a signed 32-bit
// little-endian length, so many bytes of payload, text, prompt.
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace simserver {

struct Reply {
    enum class Kind { Text, Rows, Pairs, Map, File };

    /// A piece of text that goes out before the rest, after a pause.
    struct Lead {
        int pauseMs = 0;
        QByteArray text;
    };

    Kind kind = Kind::Text;
    std::vector<Lead> leads; ///< of text replies only
    QByteArray payload; ///< of binary replies only
    QByteArray text; ///< UTF-8; ends with a line feed unless it is empty
    bool exempt = false; ///< comes without fault, whatever fault is set

    bool isBinary() const { return kind != Kind::Text; }

    /// "OK:" and a line feed, `body` behind it.
    static Reply ok(const QByteArray& body = {});
    /// "NG:", the reason and a line feed.
    static Reply refusal(const QString& reason);
    /// The same from a command that answers in binary form: no payload.
    static Reply binaryRefusal(const QString& reason);
};

/// The bytes of a reply without its leads.
struct Frame {
    QByteArray length; ///< four bytes, or none for text
    QByteArray payload;
    QByteArray text;
    QByteArray prompt;

    QByteArray whole() const { return length + payload + text + prompt; }
};

/// `payload` is at most 2^31 - 1 bytes long.
Frame frameOf(const Reply& reply, const QByteArray& prompt);

/// A length as it goes on the wire.
QByteArray lengthBytes(qint32 length);

} // namespace simserver
