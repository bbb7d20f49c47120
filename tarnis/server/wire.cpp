#include "tarnis/server/wire_p.h"

#include <QDataStream>

#include <algorithm>

namespace tarnis {

namespace {

const QLatin1String uploadWord("txfile");

// A larger claim is not believed before a part of it has come.
constexpr qsizetype believedCapacity = qsizetype(8) << 20;
// Room for the text and the prompt behind the payload, so that they do not make the buffer move.
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
    // Both tests: without the second the payload's tail and the text's head could look like the prompt.
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

} // namespace tarnis
