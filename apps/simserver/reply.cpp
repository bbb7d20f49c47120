#include "reply.h"

#include <QtEndian>

#include <array>

namespace simserver {

Reply Reply::ok(const QByteArray& body)
{
    Reply reply;
    reply.text = "OK:\n" + body;
    return reply;
}

Reply Reply::refusal(const QString& reason)
{
    Reply reply;
    reply.text = "NG:" + reason.toUtf8() + '\n';
    return reply;
}

Reply Reply::binaryRefusal(const QString& reason)
{
    Reply reply = refusal(reason);
    reply.kind = Kind::Rows;
    return reply;
}

QByteArray lengthBytes(qint32 length)
{
    std::array<char, sizeof(qint32)> bytes {};
    qToLittleEndian(length, bytes.data());
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

Frame frameOf(const Reply& reply, const QByteArray& prompt)
{
    Frame frame { .length = {}, .payload = reply.payload, .text = reply.text, .prompt = prompt };
    if (reply.isBinary())
        frame.length = lengthBytes(static_cast<qint32>(reply.payload.size()));
    return frame;
}

} // namespace simserver
