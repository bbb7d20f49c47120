#include "tarnis/client/histogramwire_p.h"

#include "tarnis/foundation/helpers.h"
#include "tarnis/foundation/trace_p.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tarnis {

namespace {

constexpr int maxPairBins = 1 << 24;

void dropTrailing(QString& text, QChar character)
{
    if (text.endsWith(character))
        text.chop(1);
}

} // namespace

QStringList replyTextLines(const QString& replyText)
{
    QStringList lines = replyText.trimmed().split(QLatin1Char('\n'));
    trim(lines);
    return lines;
}

qsizetype doubleCount(const QByteArray& payload)
{
    return payload.size() / qsizetype(sizeof(double));
}

double doubleAt(const QByteArray& payload, qsizetype index)
{
    return qFromLittleEndian<double>(payload.constData() + index * qsizetype(sizeof(double)));
}

QList<double> stridedDoubles(const QByteArray& payload, qsizetype first, qsizetype stride, qsizetype count)
{
    QList<double> values(count);
    double* out = values.data();
    if (stride == 1 && QSysInfo::ByteOrder == QSysInfo::LittleEndian) {
        if (count > 0)
            std::memcpy(
                out, payload.constData() + first * qsizetype(sizeof(double)), std::size_t(count) * sizeof(double));
        return values;
    }
    for (qsizetype i = 0; i < count; ++i)
        out[i] = doubleAt(payload, first + i * stride);
    return values;
}

double largest(const QList<double>& values, double start)
{
    double peak = start;
    for (const double value : values) {
        if (value > peak)
            peak = value;
    }
    return peak;
}

std::optional<PairAxis> takePairAxis(QString& replyText)
{
    const qsizetype open = replyText.indexOf(QLatin1Char('('));
    if (open <= 0)
        return std::nullopt;
    dropTrailing(replyText, QLatin1Char('\n'));
    dropTrailing(replyText, QLatin1Char(')'));
    const QStringList tokens = replyText.mid(open + 1).split(QLatin1Char(' '));
    if (tokens.size() != 3)
        return std::nullopt;
    const PairAxis axis { tokens.at(0).toDouble(), tokens.at(1).toDouble(), tokens.at(2).toInt() };
    if (axis.bins > maxPairBins)
        return std::nullopt;
    return axis;
}

double nearestBin(double x, const PairAxis& axis)
{
    return std::round((x - axis.min) * axis.bins / (axis.max - axis.min));
}

std::optional<int> binOf(double x, const PairAxis& axis)
{
    const double position = nearestBin(x, axis);
    // Written so that NaN is refused too.
    if (!(position >= 0.0 && position < axis.bins))
        return std::nullopt;
    return static_cast<int>(position);
}

std::optional<PairSamples> pairSamples(const QByteArray& payload, const PairAxis& axis)
{
    const qsizetype bins = std::max(axis.bins, 0);
    PairSamples samples { QList<double>(bins, 0.0), QList<double>(bins, 0.0) };
    const qsizetype pairs = doubleCount(payload) / 2;
    const bool traced = TARNIS_TRACE_CATEGORY().isDebugEnabled(); // once, not for each of many pairs
    for (qsizetype pair = 0; pair < pairs && (pair < bins || bins == 0); ++pair) {
        const double x = doubleAt(payload, 2 * pair);
        const double y = doubleAt(payload, 2 * pair + 1);
        const std::optional<int> index = binOf(x, axis);
        if (traced)
            TARNIS_TRACE(QStringLiteral("[%1] %2,%3").arg(nearestBin(x, axis) + 0.0, 0, 'f', 0).arg(x).arg(y));
        if (!index)
            return std::nullopt;
        samples.xs[pair] = x;
        samples.ys[*index] = y;
    }
    return samples;
}

std::optional<BinCounts> exportedCounts(const QString& replyText)
{
    const QLatin1String word("exported");
    const qsizetype position = replyText.indexOf(word);
    if (position < 1)
        return std::nullopt;
    QString text = replyText;
    dropTrailing(text, QLatin1Char('\n'));
    const QStringList tokens = text.mid(position + word.size() + 1).split(QLatin1Char(' '));
    if (tokens.size() < 4)
        return std::nullopt;
    return BinCounts { tokens.at(0).toInt(), tokens.at(2).toInt() };
}

} // namespace tarnis
