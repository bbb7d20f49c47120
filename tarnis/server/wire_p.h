// The wire protocol on plain values: how a request is written and where a reply ends. docs/protocol.md describes it.
// The sessions and the asynchronous client both use this one implementation.
#pragma once

#include <QByteArray>
#include <QString>

namespace tarnis {

constexpr char endOfUpload = 0x04; ///< the byte EOT
constexpr qsizetype lengthFieldSize = 4; ///< bytes in front of a binary reply's payload
constexpr char farewell[] = "close"; ///< what a client sends before it closes, without a line feed

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

/// One reply while it arrives: where its bytes are put and where it ends. Knows no socket: the owner reads into room()
/// and reports the count with commit().
class ReplyFrame {
public:
    /// Which of the two forms the request draws; only the client knows.
    enum class Form { Text, Binary };

    /// Begins a reply. `buffer` is cleared, keeps what arrives, and must outlive the frame.
    ReplyFrame(Form form, QByteArray& buffer);

    /// True until the length field of a binary reply has been read. It is not part of the buffer.
    bool needsLength() const { return m_needsLength; }
    /// `field` holds lengthFieldSize bytes.
    void setLength(const QByteArray& field);
    /// As announced, may be negative; 0 for a text reply.
    qint32 length() const { return m_length; }
    /// Payload bytes that have not arrived; 0 for a text reply.
    qsizetype missing() const;

    /// Space for `size` more bytes behind those received. The buffer's size includes it until commit().
    char* room(qsizetype size);
    /// Keeps the first `taken` of the bytes of the last room().
    void commit(qsizetype taken);

    /// Whether all received bytes end the reply.
    bool isComplete(const QByteArray& prompt) const;
    /// Leaves the text or the payload in the buffer, without the prompt, and returns the text behind a payload. Only
    /// for a complete reply.
    QString finish(const QByteArray& prompt);

private:
    Form m_form;
    QByteArray& m_buffer;
    qint32 m_length = 0;
    bool m_needsLength;
    qsizetype m_received = 0; ///< size of the buffer outside of room() and commit()
};

} // namespace tarnis
