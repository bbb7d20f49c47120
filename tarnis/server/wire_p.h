// The wire protocol as pure functions: how a request is encoded and where a reply ends. docs/protocol.md describes it.
// The sessions and the asynchronous client both use this one implementation.
#pragma once

#include <QByteArray>
#include <QString>

namespace tarnis {

constexpr char endOfUpload = 0x04; ///< the byte EOT
constexpr qsizetype lengthFieldSize = 4; ///< bytes before a binary reply's payload
constexpr char farewell[] = "close"; ///< sent by a client before it closes the connection, without a line feed

/// A request that carries a file: its header line, a line feed and the content.
bool isUpload(const QString& request);

/// The refusal text (without line feed) of an upload that cannot be sent; empty if it can.
QByteArray uploadRefusal(const QString& request);

/// The bytes of a request, the end mark included: a line feed, or EOT after an upload. Latin-1.
QByteArray requestBytes(const QString& request);

/// The length that a binary reply announces: signed 32 bit, little-endian. `field` holds four bytes.
qint32 announcedLength(const QByteArray& field);

/// Whether the bytes after the length field are a complete binary reply: payload, text and prompt. A negative length
/// counts as 0.
bool endsBinaryReply(const QByteArray& received, qint32 length, const QByteArray& prompt);

/// Leaves the payload in `received` and returns the text after it. Requires endsBinaryReply().
QString splitBinaryReply(QByteArray& received, qint32 length, qsizetype promptSize);

/// The buffer capacity, in bytes, for a binary reply of which `received` bytes have arrived. The announced length is
/// untrusted: it is used up to a bound, and beyond it only in proportion to the bytes received.
qsizetype binaryReplyCapacity(qint32 length, qsizetype received);

/// One reply while it arrives: stores its bytes and finds its end. Independent of the socket: the owner reads into
/// room() and reports the count with commit().
class ReplyFrame {
public:
    /// The form of the reply, which only the client knows.
    enum class Form { Text, Binary };

    /// Starts a reply. `buffer` is cleared, collects the bytes, and must outlive the frame.
    ReplyFrame(Form form, QByteArray& buffer);

    /// True until the length field of a binary reply has been read. It is not part of the buffer.
    bool needsLength() const { return m_needsLength; }
    /// `field` holds lengthFieldSize bytes.
    void setLength(const QByteArray& field);
    /// The announced length, may be negative; 0 for a text reply.
    qint32 length() const { return m_length; }
    /// Payload bytes that have not arrived; 0 for a text reply.
    qsizetype missing() const;

    /// Space for `size` more bytes after those received. The buffer's size includes it until commit().
    char* room(qsizetype size);
    /// Keeps the first `taken` of the bytes of the last room().
    void commit(qsizetype taken);

    /// Whether all received bytes end the reply.
    bool isComplete(const QByteArray& prompt) const;
    /// Leaves the text or the payload in the buffer, without the prompt, and returns the text after a payload. Requires
    /// a complete reply.
    QString finish(const QByteArray& prompt);

private:
    Form m_form;
    QByteArray& m_buffer;
    qint32 m_length = 0;
    bool m_needsLength;
    qsizetype m_received = 0; ///< size of the buffer outside of room() and commit()
};

} // namespace tarnis
