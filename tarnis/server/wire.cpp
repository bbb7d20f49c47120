#include "tarnis/server/wire_p.h"

#include <QDataStream>

#include <algorithm>

namespace tarnis {

namespace {

const QLatin1String uploadWord("txfile");

// A larger announced length is not trusted until part of it has arrived; untouched pages cost no memory. glibc gives
// allocations above 32 MiB their own pages, which it remaps when the buffer grows. A smaller buffer may be in the heap
// and is then copied: a reply of 64 MiB took an eighth longer.
constexpr qsizetype believedCapacity = qsizetype(33) << 20;
// Space for the text and the prompt after the payload, so that they do not cause a reallocation.
constexpr qsizetype textAllowance = 4096;

qsizetype payloadSize(qint32 length)
{
    return std::max(length, 0);
}

} // namespace

bool isUpload(const QString& request)
{
    return request.startsWith(uploadWord);
}

QByteArray uploadRefusal(const QString& request)
{
    if (request.contains(QLatin1Char(endOfUpload)))
        return "NG:File contains EOT(0x04) char.";
    if (!request.contains(QLatin1Char('\n')))
        return "NG:Command does not contain newline charactor[\\n].";
    return {};
}

QByteArray requestBytes(const QString& request)
{
    return request.toLatin1() + (isUpload(request) ? endOfUpload : '\n');
}

qint32 announcedLength(const QByteArray& field)
{
    QDataStream stream(field);
    stream.setByteOrder(QDataStream::LittleEndian);
    qint32 length = 0;
    stream >> length;
    return length;
}

bool endsBinaryReply(const QByteArray& received, qint32 length, const QByteArray& prompt)
{
    // Both tests are needed: without the second, the end of the payload and the start of the text could look like the
    // prompt.
    return received.size() > length && received.size() - prompt.size() >= payloadSize(length)
        && received.endsWith(prompt);
}

QString splitBinaryReply(QByteArray& received, qint32 length, qsizetype promptSize)
{
    const qsizetype payload = payloadSize(length);
    QString text = QString::fromUtf8(received.constData() + payload, received.size() - payload - promptSize);
    received.truncate(payload);
    return text;
}

qsizetype binaryReplyCapacity(qint32 length, qsizetype received)
{
    const qsizetype whole = payloadSize(length) + textAllowance;
    return std::min(whole, std::max(believedCapacity, 2 * received));
}

ReplyFrame::ReplyFrame(Form form, QByteArray& buffer)
    : m_form(form)
    , m_buffer(buffer)
    , m_needsLength(form == Form::Binary)
{
    m_buffer.clear();
}

void ReplyFrame::setLength(const QByteArray& field)
{
    m_length = announcedLength(field);
    m_needsLength = false;
}

qsizetype ReplyFrame::missing() const
{
    return std::max<qsizetype>(payloadSize(m_length) - m_received, 0);
}

char* ReplyFrame::room(qsizetype size)
{
    const qsizetype wanted = m_received + size;
    if (m_form == Form::Binary) {
        const qsizetype worthHaving = binaryReplyCapacity(m_length, wanted);
        // A text that is longer than expected grows the buffer like any other.
        if (wanted > m_buffer.capacity() && wanted <= worthHaving)
            m_buffer.reserve(worthHaving);
    }
    m_buffer.resize(wanted);
    return m_buffer.data() + m_received;
}

void ReplyFrame::commit(qsizetype taken)
{
    m_received += taken;
    m_buffer.truncate(m_received);
}

bool ReplyFrame::isComplete(const QByteArray& prompt) const
{
    if (m_form == Form::Text)
        return m_buffer.endsWith(prompt);
    return !m_needsLength && endsBinaryReply(m_buffer, m_length, prompt);
}

QString ReplyFrame::finish(const QByteArray& prompt)
{
    if (m_form == Form::Binary)
        return splitBinaryReply(m_buffer, m_length, prompt.size());
    m_buffer.chop(prompt.size());
    return {};
}

} // namespace tarnis
