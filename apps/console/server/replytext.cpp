#include "server/replytext.h"

#include <tarnis/server/tarniscmd.h>

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace console {

namespace {

constexpr qint64 mebibyte = 1048576;

QString number(double value)
{
    return QString::number(value, 'g', 12);
}

struct ReplyText {
    Q_DECLARE_TR_FUNCTIONS(ReplyText)
};

/// A count for tr(), which selects the plural.
int toCount(qint64 count)
{
    return int(qMin(count, qint64 { std::numeric_limits<int>::max() }));
}

} // namespace

ReplyKind replyKind(const QString& reply)
{
    if (reply.startsWith(u"NG:"))
        return ReplyKind::Refused;
    return reply.startsWith(u"OK:") ? ReplyKind::Accepted : ReplyKind::Plain;
}

std::optional<bool> runStateFromReply(const QString& command, const QString& reply)
{
    if (replyKind(reply) == ReplyKind::Refused)
        return std::nullopt;
    const QString word = command.trimmed().section(u' ', 0, 0);
    if (word == u"start" || word == u"stop")
        return word == u"start";
    if (word != u"stat")
        return std::nullopt;
    QMap<QString, QString> values;
    TarnisCmd::makeNameValueMap(reply.split(u'\n'), values);
    const QString state = values.value(QStringLiteral("state"));
    if (state == u"RUNNING")
        return true;
    return state == u"STOPPED" ? std::optional(false) : std::nullopt;
}

bool changesRun(const QString& command)
{
    const QString word = command.trimmed().section(u' ', 0, 0);
    return word == u"start" || word == u"stop" || word == u"clear";
}

BinarySummary summarizeBinary(const QByteArray& payload)
{
    BinarySummary summary;
    summary.count = payload.size() / qsizetype(sizeof(double));
    summary.spareBytes = payload.size() % qsizetype(sizeof(double));
    double lost = 0.0; // compensation of rounding errors (Neumaier, 1974)
    bool isFirstFinite = true;
    for (qsizetype i = 0; i < summary.count; ++i) {
        double value = 0.0;
        std::memcpy(&value, payload.constData() + i * qsizetype(sizeof value), sizeof value);
        if (i < firstCount)
            summary.first.append(value);
        if (!std::isfinite(value)) {
            ++summary.notFinite;
            continue;
        }
        const double sum = summary.sum + value;
        lost += std::abs(summary.sum) >= std::abs(value) ? (summary.sum - sum) + value : (value - sum) + summary.sum;
        summary.sum = sum;
        summary.least = isFirstFinite ? value : std::min(summary.least, value);
        summary.largest = isFirstFinite ? value : std::max(summary.largest, value);
        isFirstFinite = false;
    }
    if (std::isfinite(lost))
        summary.sum += lost;
    return summary;
}

QString binaryText(const BinarySummary& summary)
{
    QString count = ReplyText::tr("%Ln value(s)", nullptr, toCount(summary.count));
    if (summary.spareBytes > 0)
        count += ReplyText::tr(", plus %1 of an incomplete value").arg(byteCountText(summary.spareBytes));
    if (summary.notFinite > 0)
        count += ReplyText::tr(", %Ln of them not finite and omitted below", nullptr, toCount(summary.notFinite));
    if (summary.count == 0)
        return count;

    const QString range = summary.notFinite == summary.count
        ? ReplyText::tr("no finite value")
        : ReplyText::tr("sum %1, minimum %2, maximum %3")
              .arg(number(summary.sum), number(summary.least), number(summary.largest));
    QStringList first;
    for (const double value : summary.first)
        first.append(number(value));
    if (summary.count > summary.first.size())
        first.append(QStringLiteral("..."));
    return QStringList { count, range, ReplyText::tr("first: %1").arg(first.join(u' ')) }.join(u'\n');
}

QString visibleText(const QByteArray& reply, qsizetype limit)
{
    QString text;
    if (reply.size() <= limit) {
        text = QString::fromUtf8(reply);
    } else {
        const qsizetype half = limit / 2;
        const QString gap = ReplyText::tr("[%1 omitted here]").arg(byteCountText(reply.size() - 2 * half));
        text =
            QStringList { QString::fromUtf8(reply.first(half)), gap, QString::fromUtf8(reply.last(half)) }.join(u'\n');
    }
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (text.endsWith(u'\n'))
        text.chop(1);
    for (QChar& c : text) {
        if (c.unicode() < 0x20 && c != u'\n' && c != u'\t')
            c = QChar(char16_t(0x2400 + c.unicode()));
        else if (c.unicode() == 0x7f)
            c = QChar(char16_t(0x2421));
        else if (c.unicode() >= 0x80 && c.unicode() < 0xa0)
            c = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

QString commandProblem(const QString& command)
{
    if (command.trimmed().isEmpty())
        return ReplyText::tr("There is no command.");
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command.at(i);
        if (c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            return ReplyText::tr("A command is one line; send the lines one after the other.");
        if (c.unicode() < 0x20 && c != u'\t')
            return ReplyText::tr("The command contains a control character, which the server cannot accept.");
        if (c.unicode() > 0xff)
            return ReplyText::tr("The character \u201c%1\u201d cannot be sent: commands are Latin-1.")
                .arg(command.mid(i, c.isHighSurrogate() ? 2 : 1));
    }
    return {};
}

QString quotedPath(const QString& path)
{
    QString escaped = path;
    escaped.replace(u'"', QLatin1String("\\\""));
    return u'"' + escaped + u'"';
}

QString byteCountText(qint64 bytes)
{
    if (bytes < mebibyte)
        return ReplyText::tr("%Ln byte(s)", nullptr, toCount(bytes));
    return ReplyText::tr("%L1 MiB").arg(double(bytes) / double(mebibyte), 0, 'f', 1);
}

QString fileText(const QByteArray& bytes)
{
    QString size = byteCountText(bytes.size());
    if (bytes.isEmpty())
        return size;
    if (bytes.contains('\0'))
        return ReplyText::tr("%1, which are not text").arg(size);
    return size + u'\n' + visibleText(bytes.isValidUtf8() ? bytes : QString::fromLatin1(bytes).toUtf8());
}

bool looksBinary(const QString& command)
{
    const QString word = command.trimmed().section(u' ', 0, 0);
    return word == u"hist1d" || word == u"hist2d" || requestsFile(command);
}

bool requestsFile(const QString& command)
{
    return command.trimmed().section(u' ', 0, 0) == u"rxfile";
}

} // namespace console
