// The two readers of a session against their reference implementations. The input defines how the bytes arrive:
//
//     byte 0        bit 0: binary reply; bit 1: progress of a text reply
//     byte 1        length of the prompt, 0 to 7 (the byte modulo 8)
//     prompt
//     pieces        one byte of length (0: a wait that brings nothing), then so many bytes
#include "support/chunksocket.h"
#include "support/replyoracle.h"

#include <tarnis/server/tarnissession.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace tarnis::testing;

namespace {

class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_bytes(reinterpret_cast<const char*>(data), qsizetype(size))
    {
    }
    bool isEmpty() const { return m_bytes.isEmpty(); }
    int number() { return isEmpty() ? 0 : int(std::uint8_t(take(1).front())); }
    QByteArray take(qsizetype count)
    {
        const QByteArray taken = m_bytes.first(qMin(count, m_bytes.size()));
        m_bytes = m_bytes.sliced(taken.size());
        return taken;
    }

private:
    QByteArray m_bytes;
};

class Reader : public TarnisSession {
public:
    explicit Reader(const QByteArray& prompt)
        : TarnisSession(QString(), 0, nullptr, nullptr)
        , m_ownPrompt(prompt)
    {
        m_pPrompt = &m_ownPrompt;
        setMaxReplySize(0); // the reference implementation has no limit
        connect(this, &TarnisSession::error, this, [this] { outcome.error = true; });
        connect(this, qOverload<const QByteArray&>(&TarnisSession::read), this,
            [this](const QByteArray& piece) { outcome.pieces.append(piece); });
    }
    ReadOutcome outcome;

private:
    const QByteArray m_ownPrompt;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const int flags = input.number();
    const bool binary = (flags & 1) != 0;
    const bool progress = (flags & 2) != 0;
    const QByteArray prompt = input.take(input.number() % 8);
    QByteArrayList waits;
    while (!input.isEmpty())
        waits.append(input.take(input.number()));

    ChunkSocket socket(waits);
    Reader reader(prompt);
    ReadOutcome& out = reader.outcome;
    out.complete = binary ? reader.readBinary(socket, out.buffer, out.text) : reader.read(socket, out.buffer, progress);
    out.waits = int(socket.waits.size());
    const ReadOutcome expected = binary ? readBinaryReply(waits, prompt) : readTextReply(waits, prompt, progress);
    if (!(out == expected))
        std::abort();
    return 0;
}
