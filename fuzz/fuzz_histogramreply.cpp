// HistogramReply on any payload and text. The input:
//
//     byte 0        kind, modulo 3
//     byte 1        rows that the caller knows
//     byte 2        length of the text, in UTF-8
//     text, payload
//
// A histogram must fit its axes and the payload, an error must have a reason and a position inside the input.
#include <tarnis/client/histogramreply.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using tarnis::HistogramFormat;
using tarnis::HistogramReply;

namespace {

constexpr qsizetype maxBins = 4096;

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void checkHistogram(const HistogramReply& reply, qsizetype values)
{
    for (const QList<double>& row : reply.rows)
        require(row.size() == reply.x.bins && row.size() <= maxBins);
    require(reply.reason.isEmpty());
    switch (reply.kind) {
    case HistogramFormat::Kind::Rows:
        require(reply.rows.size() * reply.x.bins == values);
        break;
    case HistogramFormat::Kind::Pairs:
        require(reply.rows.size() == 1 && reply.positions.size() * 2 == values);
        break;
    case HistogramFormat::Kind::Map:
        require(reply.rows.size() == reply.y.bins && reply.x.bins * reply.y.bins == values);
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    if (input.size() < 3)
        return 0;
    HistogramFormat format;
    format.kind = HistogramFormat::Kind(data[0] % 3);
    format.rows = data[1];
    format.maxBins = maxBins;
    const qsizetype textSize = qMin<qsizetype>(data[2], input.size() - 3);
    const QString text = QString::fromUtf8(input.mid(3, textSize));
    const QByteArray payload = input.mid(3 + textSize);
    const HistogramReply reply = HistogramReply::parse(payload, text, format);
    if (reply.isOk()) {
        checkHistogram(reply, payload.size() / qsizetype(sizeof(double)));
        return 0;
    }
    require(reply.rows.isEmpty() && reply.positions.isEmpty());
    require(!reply.reason.isEmpty() || reply.error == HistogramReply::Error::Refused);
    const qsizetype end = reply.error == HistogramReply::Error::Payload ? payload.size() : text.size();
    require(reply.position >= 0 && reply.position <= end);
    return 0;
}
