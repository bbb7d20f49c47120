#include "tarnis/dialogs/serverpaths_p.h"

#include "tarnis/server/tarniscmd.h"

namespace tarnis {

namespace {

constexpr QLatin1Char slash('/');
constexpr qsizetype maxPathChars = 16384; // four times the limit of common systems

} // namespace

TarnisCmd* browseCommand(const QString& text, const QString& name)
{
    auto* const command = new TarnisCmd(text);
    command->m_cmdName = name;
    command->m_bUser1 = true;
    command->m_bUser2 = true;
    return command;
}

QString listRequest(const QString& dir)
{
    QString escaped = dir;
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    // Not QString::arg: a directory may contain "%1".
    return QLatin1String("ls-F \"") + escaped + QLatin1Char('"');
}

bool isGoodReply(const QString& reply)
{
    return reply.startsWith(QLatin1String("OK:"));
}

QStringList replyLines(const QString& reply)
{
    return reply.split(QLatin1Char('\n')).mid(1);
}

QStringList ancestors(const QString& dir)
{
    if (dir.size() > maxPathChars)
        return {}; // the list would grow with the square of the path
    QStringList result;
    for (qsizetype position = dir.indexOf(slash); position >= 0; position = dir.indexOf(slash, position + 1))
        result.append(position == 0 ? QString(slash) : dir.left(position));
    if (!dir.endsWith(slash))
        result.append(dir);
    return result;
}

QString joinedPath(const QString& dir, const QString& name)
{
    return dir.endsWith(slash) ? dir + name : dir + slash + name;
}

QString withoutTrailingSlashes(const QString& path)
{
    qsizetype length = path.size();
    while (length > 0 && path.at(length - 1) == slash)
        --length;
    return path.left(length);
}

} // namespace tarnis
