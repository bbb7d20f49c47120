// The socket of a client: TCP connection, greeting, one exchange at a time. It has no queue and no timeouts. The owner
// may delete it in any of its signals.
#pragma once

#include "tarnis/server/wire_p.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QObject>
#include <QString>
#include <QTcpSocket>

#include <memory>
#include <optional>

namespace tarnis {

class Connection : public QObject {
    Q_OBJECT
public:
    enum class Phase { Closed, Connecting, Greeting, Idle, Exchange };

    explicit Connection(QByteArray prompt, QObject* parent);
    ~Connection() override;

    Phase phase() const { return m_phase; }
    /// Of the latest binary reply; 0 for a text reply.
    qint32 announcedLength() const { return m_announced; }
    /// Starts a new attempt; a previous connection or attempt is dropped. No signal is emitted before it returns.
    void open(const QString& host, quint16 port);
    /// Sends a request. Only when Idle. A reply of more than `maxSize` bytes fails.
    void exchange(const QByteArray& request, ReplyFrame::Form form, qint64 maxSize);
    /// Bytes have arrived that belong to no request. They could not be distinguished from the next reply.
    bool hasStrayBytes() const;
    /// Disconnects without a signal. If `politely`, an idle connection sends the closing message first.
    void close(bool politely);

Q_SIGNALS:
    void opened(); ///< TCP is connected, waiting for the greeting
    void greeted(const QByteArray& text); ///< Idle
    /// Part of a reply has arrived: number of bytes so far, the announced length or -1, the new piece of a text.
    void received(qint64 size, qint64 expected, QByteArrayView piece);
    void sent(); ///< part of a long request has been sent
    void replied(const QByteArray& data, const QString& binaryText); ///< Idle
    void lost(const QString& reason); ///< Closed

protected:
    void makeSocket();
    void onConnected();
    void onReadyRead();
    void onUnasked();
    bool readLength();
    void readAsText();
    qint64 readSome();
    bool reportProgress(qint64 taken, bool complete);
    bool checkSize();
    void onComplete();
    void onSocketError();
    void fail(const QString& reason);
    QString socketReason() const;

    const QByteArray m_prompt;
    std::unique_ptr<QTcpSocket> m_socket;
    quint64 m_socketNumber = 0; ///< identifies queued calls of an earlier socket
    Phase m_phase = Phase::Closed;
    QByteArray m_buffer;
    std::optional<ReplyFrame> m_frame;
    bool m_isText = true;
    qint64 m_maxSize = 0;
    quint64 m_exchangeNumber = 0; ///< a receiver's event loop may end one exchange and begin another
    bool m_isEnding = false; ///< the whole reply is here, and its last progress is being reported
    QByteArray m_lengthField; ///< the received bytes of a binary reply's length
    qint32 m_announced = 0; ///< see announcedLength()
};

} // namespace tarnis
