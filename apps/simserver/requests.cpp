#include "requests.h"

namespace simserver {

namespace {

const QByteArray uploadStart = QByteArrayLiteral("txfile");
const QByteArray farewell = QByteArrayLiteral("close");
constexpr char endOfTransmission = 0x04;

} // namespace

void RequestReader::feed(const QByteArray& bytes)
{
    m_buffer.append(bytes);
}

std::optional<Request> RequestReader::next()
{
    if (m_buffer.isEmpty())
        return std::nullopt;
    if (!m_skipping && m_buffer.size() < uploadStart.size() && uploadStart.startsWith(m_buffer))
        return std::nullopt; // a line may still become an upload
    const bool isUpload = m_skipping ? m_skippingUpload : m_buffer.startsWith(uploadStart);
    const qsizetype end = m_buffer.indexOf(isUpload ? endOfTransmission : '\n', m_scanned);
    if (end >= 0)
        return take(end, isUpload);
    // Nothing follows the closing message, not even a line feed. No command begins with these letters.
    if (!m_skipping && m_buffer == farewell) {
        m_buffer.clear();
        m_scanned = 0;
        return Request { .kind = Request::Kind::Farewell, .bytes = {} };
    }
    m_scanned = m_buffer.size();
    if (m_skipping || m_buffer.size() > (isUpload ? maxUpload : maxLine)) {
        m_skipping = true;
        m_skippingUpload = isUpload;
        m_buffer.clear();
        m_scanned = 0;
    }
    return std::nullopt;
}

std::optional<Request> RequestReader::take(qsizetype end, bool isUpload)
{
    Request request;
    const qsizetype limit = isUpload ? maxUpload : maxLine;
    if (m_skipping || end > limit)
        request.kind = Request::Kind::TooLong;
    else if (!isUpload && m_buffer.first(end).trimmed() == farewell)
        request.kind = Request::Kind::Farewell;
    else
        request = { .kind = isUpload ? Request::Kind::Upload : Request::Kind::Line, .bytes = m_buffer.first(end) };
    m_buffer.remove(0, end + 1);
    m_scanned = 0;
    m_skipping = false;
    return request;
}

} // namespace simserver
