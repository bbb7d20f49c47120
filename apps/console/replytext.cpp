#include "replytext.h"

#include <tarnis/server/tarniscmd.h>

#include <QLocale>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace console {

namespace {

constexpr qint64 mebibyte = 1048576;

QString number(double value)
{
    return QString::number(value, 'g', 12);
}

QString grouped(qint64 value)
{
    QLocale locale(QLocale::English);
    return locale.toString(value);
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

BinarySummary summarizeBinary(const QByteArray& payload)
{
    BinarySummary summary;
    summary.count = payload.size() / qsizetype(sizeof(double));
    summary.spareBytes = payload.size() % qsizetype(sizeof(double));
    double lost = 0.0; // what the running sum has rounded away (Neumaier, 1974)
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
    QString count = counted(summary.count, QStringLiteral("value"), QStringLiteral("values"));
    if (summary.spareBytes > 0)
        count += QStringLiteral(", and %1 that make no whole value").arg(byteCountText(summary.spareBytes));
    if (summary.notFinite > 0)
        count += QStringLiteral(", %1 of them not finite and left out below").arg(grouped(summary.notFinite));
    if (summary.count == 0)
        return count;

    const QString range = summary.notFinite == summary.count
        ? QStringLiteral("no finite value")
        : QStringLiteral("sum %1, least %2, largest %3")
              .arg(number(summary.sum), number(summary.least), number(summary.largest));
    QStringList first;
    for (const double value : summary.first)
        first.append(number(value));
    if (summary.count > summary.first.size())
        first.append(QStringLiteral("..."));
    return QStringLiteral("%1\n%2\nfirst: %3").arg(count, range, first.join(u' '));
}

QString visibleText(const QByteArray& reply, qsizetype limit)
{
    QString text;
    if (reply.size() <= limit) {
        text = QString::fromUtf8(reply);
    } else {
        const qsizetype half = limit / 2;
        text = QStringLiteral("%1\n[%2 left out here]\n%3")
                   .arg(QString::fromUtf8(reply.first(half)), byteCountText(reply.size() - 2 * half),
                       QString::fromUtf8(reply.last(half)));
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
        return QStringLiteral("There is no command.");
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command.at(i);
        if (c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            return QStringLiteral("A command is one line; send the lines one after the other.");
        if (c.unicode() < 0x20 && c != u'\t')
            return QStringLiteral("The command holds a control character, which the server cannot take.");
        if (c.unicode() > 0xff)
            return QStringLiteral("The character \u201c%1\u201d cannot be sent: commands are Latin-1.")
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

QString counted(qint64 count, const QString& one, const QString& many)
{
    return QStringLiteral("%1 %2").arg(grouped(count), count == 1 ? one : many);
}

QString byteCountText(qint64 bytes)
{
    if (bytes < mebibyte)
        return counted(bytes, QStringLiteral("byte"), QStringLiteral("bytes"));
    return QStringLiteral("%1 MiB").arg(double(bytes) / double(mebibyte), 0, 'f', 1);
}

bool looksBinary(const QString& command)
{
    const QString word = command.trimmed().section(u' ', 0, 0);
    return word == u"hist1d" || word == u"hist2d";
}

} // namespace console
