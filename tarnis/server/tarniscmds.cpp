#include "tarnis/server/tarniscmds.h"

#include "tarnis/foundation/log.h"

namespace {

void takeReply(const QByteArray& reply, QMap<QString, QString>& values)
{
    if (reply.isNull())
        return;
    TarnisCmd::makeNameValueMap(QString::fromUtf8(reply).split(QLatin1Char('\n')), values);
}

QString wordBehind(const QString& text, const QString& needle)
{
    const qsizetype found = text.indexOf(needle);
    if (found < 0)
        return QString();
    const qsizetype start = found + needle.size();
    const qsizetype blank = text.indexOf(QLatin1Char(' '), start);
    // "Above 0", not "found": after an empty needle, a leading space does not end the word.
    return blank > 0 ? text.mid(start, blank - start) : text.mid(start);
}

} // namespace

TarnisCmdBroadcast::TarnisCmdBroadcast(const QString& cmd)
    : TarnisCmd(cmd)
{
}

QString TarnisCmdBroadcast::getCmdString() const
{
    return QLatin1String("broadcast ") + m_cmd;
}

TarnisCmdMulticastOrsino::TarnisCmdMulticastOrsino(const QString& cmd)
    : TarnisCmd(cmd)
{
}

QString TarnisCmdMulticastOrsino::getCmdString() const
{
    return QLatin1String("mc orsino ") + m_cmd;
}

TarnisCmdUnicast::TarnisCmdUnicast(const QString& id, const QString& cmd)
    : TarnisCmd(cmd)
    , m_unicastId(id)
{
}

QString TarnisCmdUnicast::getCmdString() const
{
    return QLatin1String("unicast ") + m_unicastId + QLatin1Char(' ') + m_cmd;
}

QString TarnisCmdUnicast::getUnicastId() const
{
    return m_unicastId;
}

void TarnisCmdUnicast::onReply(const QByteArray& /*reply*/, TarnisCmdH* /*handler*/)
{
}

TarnisCmdUnicastWithIndex::TarnisCmdUnicastWithIndex(const QString& id, const QString& cmd, int index)
    : TarnisCmdUnicast(id, cmd)
    , m_index(index)
{
}

int TarnisCmdUnicastWithIndex::getIndex() const
{
    return m_index;
}

TarnisCmdStat::TarnisCmdStat()
    : TarnisCmd(QStringLiteral("stat"))
{
}

void TarnisCmdStat::onReply(const QByteArray& reply)
{
    LOG_BLOCK("onReply");
    takeReply(reply, m_values);
}

QString TarnisCmdStat::GetValue(const QString& name)
{
    LOG_BLOCK("GetValue");
    return m_values.value(name);
}

QString TarnisCmdStat::getValue(const QString& text, const QString& prefix, const QString& suffix)
{
    LOG_BLOCK("getValue");
    return wordBehind(text, prefix + suffix);
}

TarnisCmdSetting::TarnisCmdSetting()
    : TarnisCmd(QStringLiteral("setting"))
{
}

void TarnisCmdSetting::onReply(const QByteArray& reply)
{
    LOG_BLOCK("onReply");
    takeReply(reply, m_values);
}

QString TarnisCmdSetting::GetValue(const QString& name)
{
    return m_values.value(name);
}

QString TarnisCmdSetting::getValue(const QString& text, const QString& prefix, const QString& suffix)
{
    LOG_BLOCK("getValue");
    return wordBehind(text, prefix + suffix);
}
