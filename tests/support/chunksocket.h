// A socket without a network: each wait delivers the next piece of a list, so that a reader's iterations are
// deterministic.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QTcpSocket>

#include <algorithm>
#include <cstring>
#include <functional>

namespace tarnis::testing {

class ChunkSocket : public QTcpSocket {
public:
    /// An empty piece is a wait that fails; so is every wait after the last piece.
    explicit ChunkSocket(const QByteArrayList& pieces)
        : m_pieces(pieces)
    {
        setOpenMode(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool waitForReadyRead(int ms) override
    {
        waits.append(ms);
        if (onWait)
            onWait(int(waits.size()));
        if (m_pieces.isEmpty())
            return false;
        const QByteArray piece = m_pieces.takeFirst();
        m_buffered += piece;
        return !piece.isEmpty();
    }
    qint64 bytesAvailable() const override { return m_buffered.size(); }

    QList<int> waits; ///< milliseconds of each wait
    std::function<void(int number)> onWait; ///< called in each wait, counted from 1

protected:
    qint64 readData(char* data, qint64 maximum) override
    {
        const qsizetype count = std::min<qsizetype>(m_buffered.size(), maximum);
        std::memcpy(data, m_buffered.constData(), size_t(count));
        m_buffered.remove(0, count);
        return count;
    }

private:
    QByteArrayList m_pieces;
    QByteArray m_buffered;
};

} // namespace tarnis::testing
