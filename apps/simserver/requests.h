// Splits the bytes from a client into requests, independent of how they are fragmented. Memory is bounded: a request
// that is too long is skipped and reported once.
#pragma once

#include <QByteArray>

#include <optional>

namespace simserver {

struct Request {
    enum class Kind {
        Line, ///< a command, without its line feed
        Upload, ///< begins with "txfile", without the byte 0x04 at its end
        Farewell, ///< the bytes "close"
        TooLong, ///< a line or an upload beyond the limit
    };
    Kind kind = Kind::Line;
    QByteArray bytes; ///< empty for Farewell and TooLong
};

class RequestReader {
public:
    static constexpr qsizetype maxLine = qsizetype { 64 } * 1024;
    static constexpr qsizetype maxUpload = qsizetype { 16 } * 1024 * 1024;

    void feed(const QByteArray& bytes);
    /// The next complete request; empty until more bytes arrive.
    std::optional<Request> next();

private:
    std::optional<Request> take(qsizetype end, bool isUpload);

    QByteArray m_buffer;
    qsizetype m_scanned = 0; ///< scanned bytes of the buffer without an end
    bool m_skipping = false; ///< inside a request that is too long
    bool m_skippingUpload = false;
};

} // namespace simserver
