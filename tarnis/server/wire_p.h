// The wire protocol on plain values: how a request is written and where a reply ends. docs/protocol.md describes it.
#pragma once

#include <QByteArray>
#include <QString>

namespace tarnis {

constexpr char endOfUpload = 0x04; ///< the byte EOT
constexpr qsizetype lengthFieldSize = 4; ///< bytes in front of a binary reply's payload

/// A request that carries a file: its header line, a line feed and the content.
bool isUpload(const QString& request);

/// Why an upload cannot be sent, as the text of a refusal without line feed; empty when it can.
QByteArray uploadRefusal(const QString& request);

/// The bytes of a request, the end mark included: a line feed, or EOT behind an upload. Latin-1.
QByteArray requestBytes(const QString& request);

/// The length that a binary reply announces: signed 32 bit, little-endian. `field` holds four bytes.
qint32 announcedLength(const QByteArray& field);

/// Whether the bytes behind the length field are a whole binary reply: payload, text and prompt. A negative length
/// counts as 0.
bool endsBinaryReply(const QByteArray& received, qint32 length, const QByteArray& prompt);

/// Leaves the payload in `received` and gives the text behind it. Only for a reply that endsBinaryReply().
QString splitBinaryReply(QByteArray& received, qint32 length, qsizetype promptSize);

/// Capacity, in bytes, worth having for a binary reply of which `received` bytes are here. The announced length is a
/// claim: it is believed up to a bound, and beyond it only as far as the bytes bear it out.
qsizetype binaryReplyCapacity(qint32 length, qsizetype received);

} // namespace tarnis
