#include "server/runstatus.h"

#include "server/replytext.h"

#include <tarnis/server/tarniscmd.h>

#include <QLocale>
#include <QMap>

#include <cmath>

namespace console {

namespace {

constexpr double maxSeconds = 1e9; // 31 years
constexpr int rateDigits = 4;

std::optional<double> numberOf(const QMap<QString, QString>& values, const QString& name)
{
    bool isNumber = false;
    const double value = values.value(name).toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<qint64> integerOf(const QMap<QString, QString>& values, const QString& name)
{
    bool isNumber = false;
    const qint64 value = values.value(name).toLongLong(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

} // namespace

RunStatus runStatusOf(const QString& reply)
{
    RunStatus status;
    if (replyKind(reply) == ReplyKind::Refused)
        return status;
    QMap<QString, QString> values;
    TarnisCmd::makeNameValueMap(reply.split(u'\n'), values);
    status.isRunning = runStateFromReply(QStringLiteral("stat"), reply);
    status.run = integerOf(values, QStringLiteral("run"));
    status.realTime = numberOf(values, QStringLiteral("real time"));
    status.liveTime = numberOf(values, QStringLiteral("live time"));
    status.events = integerOf(values, QStringLiteral("events"));
    status.rate = numberOf(values, QStringLiteral("rate"));
    const QString directory = values.value(QStringLiteral("run directory"));
    status.isRecorded = !directory.isEmpty() && directory != u"none";
    return status;
}

QString durationText(double seconds)
{
    const auto whole = std::isfinite(seconds) ? qint64(std::min(std::max(seconds, 0.0), maxSeconds)) : 0;
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QString rateText(double rate)
{
    constexpr double maxWhole = 1e15;
    const double size = std::abs(rate); // false for NaN below
    const bool isWhole = size >= 1000.0 && size < maxWhole;
    return isWhole ? QLocale().toString(qint64(std::llround(rate))) : QLocale().toString(rate, 'g', rateDigits);
}

void UnsavedData::read(const RunStatus& status)
{
    const bool isOther = status.run != m_status.run || status.events.value_or(0) < m_status.events.value_or(0);
    m_isSaved = m_isSaved && !isOther;
    m_status = status;
}

bool UnsavedData::wouldBeLost() const
{
    const bool isRecorded = m_status.isRecorded && m_status.isRunning == false;
    return m_status.events.value_or(0) > 0 && !m_isSaved && !isRecorded;
}

} // namespace console
