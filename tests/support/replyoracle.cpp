#include "support/replyoracle.h"

#include <algorithm>

namespace tarnis::testing {

namespace {

// The socket's buffer and the waits that fill it.
class ChunkSource {
public:
    ChunkSource(const QByteArrayList& waits, int& count)
        : m_waits(waits)
        , m_count(count)
    {
    }
    bool wait()
    {
        ++m_count;
        if (m_waits.isEmpty())
            return false;
        const QByteArray brought = m_waits.takeFirst();
        buffered += brought;
        return !brought.isEmpty();
    }
    QByteArray take(qsizetype count)
    {
        const QByteArray taken = buffered.left(count);
        buffered = buffered.mid(count);
        return taken;
    }
    QByteArray buffered;

private:
    QByteArrayList m_waits;
    int& m_count;
};

} // namespace

ReadOutcome readTextReply(const QByteArrayList& waits, const QByteArray& prompt, bool progress)
{
    ReadOutcome out;
    ChunkSource source(waits, out.waits);
    int idle = 0;
    while (true) {
        const bool waited = source.wait();
        if (idle > 100 && !waited) {
            out.error = true;
            return out;
        }
        const QByteArray chunk = source.take(source.buffered.size());
        idle = idle + 1;
        if (chunk.isEmpty())
            continue;
        out.buffer = out.buffer + chunk;
        if (out.buffer.right(prompt.size()) == prompt && out.buffer.size() >= prompt.size()) {
            if (progress && chunk.size() > prompt.size())
                out.pieces.append(chunk.left(chunk.size() - prompt.size()));
            out.buffer = out.buffer.left(out.buffer.size() - prompt.size());
            out.complete = true;
            return out;
        }
        idle = 0;
        if (progress)
            out.pieces.append(chunk);
    }
}

ReadOutcome readBinaryReply(const QByteArrayList& waits, const QByteArray& prompt)
{
    ReadOutcome out;
    ChunkSource source(waits, out.waits);
    int idle = 0;
    qint64 length = 0;
    bool lengthRead = false;
    while (true) {
        // No wait while bytes are available.
        const bool something = lengthRead ? source.buffered.size() > 0 : source.buffered.size() > 3;
        const bool waited = something || source.wait();
        if (!waited && idle > 100) {
            out.error = true;
            return out;
        }
        if (!lengthRead) {
            if (source.buffered.size() > 3) {
                const QByteArray field = source.take(4);
                quint32 bits = 0;
                for (int i = 3; i >= 0; --i)
                    bits = bits * 256 + quint8(field[i]);
                length = bits < 0x80000000U ? qint64(bits) : qint64(bits) - 0x100000000;
                lengthRead = true;
            } else {
                idle = idle + 1;
            }
            continue;
        }
        const QByteArray chunk = source.take(source.buffered.size());
        if (chunk.isEmpty()) {
            idle = idle + 1;
            continue;
        }
        out.buffer = out.buffer + chunk;
        const qint64 payload = std::max<qint64>(length, 0);
        if (out.buffer.size() > payload && out.buffer.size() >= payload + prompt.size()
            && out.buffer.right(prompt.size()) == prompt) {
            out.text = QString::fromUtf8(out.buffer.mid(payload, out.buffer.size() - payload - prompt.size()));
            out.buffer = out.buffer.left(payload);
            out.complete = true;
            return out;
        }
    }
}

} // namespace tarnis::testing
