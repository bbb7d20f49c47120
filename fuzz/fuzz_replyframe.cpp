// ReplyFrame, fed like in the client, compared with the complete bytes. The input:
//
//     byte 0        bit 0: binary reply
//     byte 1        length of the prompt, 1 to 8
//     prompt
//     pieces        one byte of length, then so many bytes
//
// The frame must end after the first piece that completes the reply. Its buffer then holds the payload.
#include "tarnis/server/wire_p.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

using tarnis::ReplyFrame;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// The rules of docs/protocol.md for all bytes after the length.
bool isWhole(const QByteArray& bytes, bool binary, qint32 length, const QByteArray& prompt)
{
    if (!bytes.endsWith(prompt))
        return false;
    return !binary || bytes.size() - prompt.size() >= std::max<qint64>(length, 0);
}

void checkEnd(ReplyFrame& frame, const QByteArray& buffer, const QByteArray& all, bool binary, const QByteArray& prompt)
{
    const qsizetype payload = binary ? std::max(frame.length(), 0) : all.size() - prompt.size();
    const QString text = frame.finish(prompt);
    require(buffer == all.first(payload));
    if (binary)
        require(text == QString::fromUtf8(all.mid(payload).chopped(prompt.size())));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    const auto take = [&input](qsizetype count) {
        const QByteArray taken = input.first(std::min(count, input.size()));
        input = input.sliced(taken.size());
        return taken;
    };
    const auto number = [&] { return input.isEmpty() ? 0 : int(std::uint8_t(take(1).front())); };
    const bool binary = (number() & 1) != 0;
    const QByteArray prompt = take(1 + number() % 8);
    if (prompt.isEmpty())
        return 0;
    QByteArray buffer = "left over";
    ReplyFrame frame(binary ? ReplyFrame::Form::Binary : ReplyFrame::Form::Text, buffer);
    require(buffer.isEmpty() && frame.needsLength() == binary);
    if (binary) {
        const QByteArray field = take(4);
        if (field.size() < 4)
            return 0;
        frame.setLength(field);
    }
    QByteArray all;
    while (!input.isEmpty()) {
        const QByteArray piece = take(number());
        // More space than needed, as when reading from a socket.
        char* const room = frame.room(piece.size() + 7);
        std::memcpy(room, piece.constData(), std::size_t(piece.size()));
        frame.commit(piece.size());
        all += piece;
        require(buffer == all && frame.missing() >= 0);
        // An announced length must not allocate more than 33 MiB before its bytes arrive.
        require(buffer.capacity() <= (qsizetype(34) << 20));
        const bool whole = isWhole(all, binary, frame.length(), prompt);
        require(frame.isComplete(prompt) == whole);
        if (whole) {
            checkEnd(frame, buffer, all, binary, prompt);
            return 0;
        }
    }
    return 0;
}
