#include "tarnis/client/histogramreply.h"

#include "tarnis/client/client_p.h"
#include "tarnis/client/histogramwire_p.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <optional>

namespace tarnis {

namespace {

using Error = HistogramReply::Error;
using Kind = HistogramFormat::Kind;

constexpr qsizetype valueSize = qsizetype(sizeof(double));

/// The steps of one parse. Each returns false after fail().
class Parser {
    Q_DECLARE_TR_FUNCTIONS(tarnis::HistogramReply)
public:
    Parser(const QByteArray& payload, const QString& text, const HistogramFormat& format)
        : m_payload(payload)
        , m_format(format)
        , m_count(doubleCount(payload))
    {
        m_reply.kind = format.kind;
        m_reply.text = text;
    }
    HistogramReply parse();

private:
    bool fail(Error error, qsizetype position, const QString& reason);
    bool checkPayload();
    bool parseRows();
    bool countRows(const std::optional<HistogramAxis>& axis, qsizetype& rows);
    bool failWithoutAxis();
    bool parsePairs();
    bool parseMap();
    bool readCounts(qsizetype& x, qsizetype& y);
    bool readAxis(std::optional<HistogramAxis>& axis);
    bool readAxisNumbers(const QStringList& tokens, qsizetype open, HistogramAxis& axis);
    void measure();

    HistogramReply m_reply;
    const QByteArray& m_payload;
    const HistogramFormat& m_format;
    const qsizetype m_count; ///< values in the payload
};

/// An axis of `bins` bins over the range of `given`, or over bin indices.
HistogramAxis withBins(const HistogramAxis& given, qsizetype bins)
{
    if (given.min < given.max)
        return { given.min, given.max, bins };
    return { 0.0, static_cast<double>(bins), bins };
}

bool Parser::fail(Error error, qsizetype position, const QString& reason)
{
    m_reply.error = error;
    m_reply.position = position;
    m_reply.reason = reason;
    m_reply.rows.clear();
    m_reply.positions.clear();
    return false;
}

HistogramReply Parser::parse()
{
    if (m_reply.text.startsWith(QLatin1String("NG:")))
        fail(Error::Refused, 0, replyOf({}, m_reply.text).reason);
    else if (checkPayload()) {
        const bool isRead = m_format.kind == Kind::Rows ? parseRows()
            : m_format.kind == Kind::Pairs              ? parsePairs()
                                                        : parseMap();
        if (isRead)
            measure();
    }
    return std::move(m_reply);
}

bool Parser::checkPayload()
{
    if (m_payload.size() % valueSize != 0)
        return fail(Error::Payload, m_count * valueSize,
            tr("%1 bytes are not a whole number of 64-bit values.").arg(m_payload.size()));
    const qsizetype values = m_format.kind == Kind::Pairs ? m_count / 2 : m_count;
    if (values > m_format.maxValues)
        return fail(
            Error::Payload, 0, tr("%1 values are more than the accepted %2.").arg(values).arg(m_format.maxValues));
    return true;
}

bool Parser::parseRows()
{
    std::optional<HistogramAxis> axis;
    // A text may contain parentheses that are not an axis. No axis is needed if the caller knows the number of rows.
    if (!readAxis(axis)) {
        if (m_format.rows <= 0)
            return false;
        m_reply.error = Error::None;
        m_reply.position = 0;
        m_reply.reason.clear();
    }
    qsizetype rows = 0;
    if (!countRows(axis, rows))
        return false;
    const qsizetype bins = rows == 0 ? 0 : m_count / rows;
    if (bins > m_format.maxBins)
        return fail(Error::Payload, 0, tr("%1 bins are more than the accepted %2.").arg(bins).arg(m_format.maxBins));
    m_reply.x = axis ? *axis : withBins(m_format.x, bins);
    m_reply.rows.reserve(rows);
    for (qsizetype row = 0; row < rows; ++row)
        m_reply.rows.append(stridedDoubles(m_payload, row, rows, bins));
    return true;
}

bool Parser::countRows(const std::optional<HistogramAxis>& axis, qsizetype& rows)
{
    rows = m_format.rows;
    if (rows <= 0) {
        if (!axis)
            return failWithoutAxis();
        rows = m_count / axis->bins;
        if (rows == 0)
            return fail(Error::Payload, m_payload.size(),
                tr("%1 values are less than a row of %2 bins.").arg(m_count).arg(axis->bins));
        if (rows > m_format.maxRows)
            return fail(
                Error::Payload, 0, tr("%1 rows are more than the accepted %2.").arg(rows).arg(m_format.maxRows));
    }
    // An axis that does not match is an error; more rows than values would allocate memory without data.
    const qsizetype bins = axis ? axis->bins : m_count / rows;
    if (m_count >= rows && m_count % rows == 0 && m_count / rows == bins)
        return true;
    return fail(Error::Payload, bins * rows <= m_count ? bins * rows * valueSize : m_payload.size(),
        tr("%1 values are not %2 rows of %3 bins.").arg(m_count).arg(rows).arg(bins));
}

bool Parser::failWithoutAxis()
{
    if (exportedCounts(m_reply.text))
        return fail(Error::Text, m_reply.text.indexOf(QLatin1String("exported")),
            tr("The reply is a map, and a 1D histogram was expected."));
    return fail(Error::Text, m_reply.text.size(), tr("The axis \"(min max bins)\" is missing."));
}

bool Parser::parsePairs()
{
    std::optional<HistogramAxis> axis;
    if (!readAxis(axis))
        return false;
    if (!axis)
        return failWithoutAxis();
    if (m_count % 2 != 0)
        return fail(Error::Payload, m_payload.size() - valueSize, tr("The last position has no value."));
    const PairAxis pairAxis { axis->min, axis->max, static_cast<int>(axis->bins) };
    const QList<double> positions = stridedDoubles(m_payload, 0, 2, m_count / 2);
    QList<double> row(axis->bins, 0.0);
    for (qsizetype pair = 0; pair < positions.size(); ++pair) {
        const std::optional<int> bin = binOf(positions.at(pair), pairAxis);
        if (!bin)
            return fail(Error::Payload, 2 * pair * valueSize,
                tr("The position %1 is outside of the axis from %2 to %3.")
                    .arg(positions.at(pair))
                    .arg(axis->min)
                    .arg(axis->max));
        row[*bin] = doubleAt(m_payload, 2 * pair + 1);
    }
    m_reply.x = *axis;
    m_reply.positions = positions;
    m_reply.rows = { row };
    return true;
}

bool Parser::parseMap()
{
    qsizetype x = 0;
    qsizetype y = 0;
    if (!readCounts(x, y))
        return false;
    for (qsizetype row = 0; row < y; ++row)
        m_reply.rows.append(stridedDoubles(m_payload, row * x, 1, x));
    m_reply.x = withBins(m_format.x, x);
    m_reply.y = withBins(m_format.y, y);
    return true;
}

bool Parser::readCounts(qsizetype& x, qsizetype& y)
{
    const std::optional<BinCounts> counts = exportedCounts(m_reply.text);
    const qsizetype position = std::max<qsizetype>(m_reply.text.indexOf(QLatin1String("exported")), 0);
    std::optional<HistogramAxis> axis;
    if (!counts && readAxis(axis) && axis)
        return fail(Error::Text, position, tr("The reply is a 1D histogram with an axis, and a map was expected."));
    if (!counts)
        return fail(Error::Text, position, tr("The numbers of bins, \"exported X x Y y\", are missing."));
    x = counts->x;
    y = counts->y;
    if (x <= 0 || y <= 0)
        return fail(Error::Text, position, tr("The numbers of bins are not positive integers."));
    if (x > m_format.maxBins || y > m_format.maxBins)
        return fail(Error::Text, position,
            tr("%1 bins are more than the accepted %2.").arg(std::max(x, y)).arg(m_format.maxBins));
    if (y > m_format.maxMapRows)
        return fail(
            Error::Text, position, tr("%1 rows are more than the accepted %2.").arg(y).arg(m_format.maxMapRows));
    // Both are 32-bit numbers: the product does not overflow.
    if (x * y != m_count)
        return fail(Error::Payload, std::min(x * y * valueSize, m_payload.size()),
            tr("%1 values are not a map of %2 x %3 bins.").arg(m_count).arg(x).arg(y));
    return true;
}

/// Reads "(min max bins)" at the first parenthesis of the text. True without an axis if there is no parenthesis.
bool Parser::readAxis(std::optional<HistogramAxis>& axis)
{
    const qsizetype open = m_reply.text.indexOf(QLatin1Char('('));
    if (open < 0)
        return true;
    QString inside = m_reply.text.mid(open + 1).trimmed();
    if (!inside.endsWith(QLatin1Char(')')))
        return fail(Error::Text, m_reply.text.size(), tr("The axis does not end with a parenthesis."));
    inside.chop(1);
    HistogramAxis read;
    if (!readAxisNumbers(inside.split(QLatin1Char(' '), Qt::SkipEmptyParts), open, read))
        return false;
    axis = read;
    return true;
}

bool Parser::readAxisNumbers(const QStringList& tokens, qsizetype open, HistogramAxis& axis)
{
    if (tokens.size() != 3)
        return fail(Error::Text, open, tr("The axis must be of the form (min max bins)."));
    bool minIsNumber = false;
    bool maxIsNumber = false;
    bool binsIsNumber = false;
    axis = { tokens.at(0).toDouble(&minIsNumber), tokens.at(1).toDouble(&maxIsNumber),
        tokens.at(2).toLongLong(&binsIsNumber) };
    if (!minIsNumber || !maxIsNumber || !binsIsNumber || !std::isfinite(axis.max - axis.min))
        return fail(Error::Text, open, tr("The axis must be of the form (min max bins)."));
    if (axis.min >= axis.max || axis.bins <= 0)
        return fail(Error::Text, open, tr("The axis has no bins, or ends before it begins."));
    if (axis.bins > m_format.maxBins)
        return fail(
            Error::Text, open, tr("%1 bins are more than the accepted %2.").arg(axis.bins).arg(m_format.maxBins));
    return true;
}

void Parser::measure()
{
    m_reply.rowMaxima.reserve(m_reply.rows.size());
    for (const QList<double>& row : std::as_const(m_reply.rows)) {
        double maximum = 0.0;
        for (const double value : row) {
            if (!std::isfinite(value))
                ++m_reply.nonFinite;
            else if (value > maximum)
                maximum = value;
        }
        m_reply.rowMaxima.append(maximum);
        m_reply.maximum = std::max(m_reply.maximum, maximum);
    }
}

} // namespace

HistogramFormat HistogramFormat::ofCommand(const QString& command)
{
    const QStringList words = command.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    HistogramFormat format;
    if (words.value(0) == QLatin1String("hist2d"))
        format.kind = Kind::Map;
    else if (words.contains(QLatin1String("pairs")))
        format.kind = Kind::Pairs;
    return format;
}

HistogramReply HistogramReply::parse(const QByteArray& payload, const QString& text, const HistogramFormat& format)
{
    return Parser(payload, text, format).parse();
}

} // namespace tarnis
