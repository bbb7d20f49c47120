#include "tarnis/server/tarniscmd.h"

#include "tarnis/foundation/log.h"

#include <QRegularExpression>

namespace {

const QLatin1String sectionMark("--");

void storeSection(const QString& key, const QList<QString>& lines, QMap<QString, QList<QString>>& out)
{
    if (!key.isEmpty() && !lines.isEmpty())
        out[key] += lines;
}

} // namespace

const int TarnisCmd::AFTER_SLEEP_DEFAULT;

TarnisCmd::TarnisCmd(const QString& cmd)
    : m_cmd(cmd)
{
    LOG_DBG("TarnisCmd::TarnisCmd(cmd[%s]), %p", qUtf8Printable(cmd), static_cast<void*>(this));
}

TarnisCmd::~TarnisCmd()
{
    LOG_DBG("TarnisCmd::~TarnisCmd(), %p", static_cast<void*>(this));
}

QString TarnisCmd::getCmdString() const
{
    return m_cmd;
}

QString TarnisCmd::getUnicastId() const
{
    return QString();
}

void TarnisCmd::devideByKey(const QString& text, QMap<QString, QList<QString>>& out)
{
    LOG_BLOCK("devideByKey");
    out.clear();
    QString key;
    QList<QString> lines;
    const QList<QString> all = text.split(QLatin1Char('\n'));
    for (const QString& line : all) {
        if (!line.startsWith(sectionMark)) {
            lines.append(line);
            continue;
        }
        storeSection(key, lines, out);
        // Every "--" is removed, at any position, and nothing is trimmed: "--a--b" is the key "ab", "-- x" the key "
        // x".
        key = line;
        key.remove(sectionMark);
        lines.clear();
    }
    storeSection(key, lines, out);
}

void TarnisCmd::makeNameValueMap(const QList<QString>& lines, QMap<QString, QString>& out)
{
    LOG_BLOCK("makeNameValueMap");
    out.clear();
    // Not trimmed(): the anchored group matches only once, so a second leading space is kept.
    static const QRegularExpression outerSpace(QStringLiteral("(^\\s)+|(\\s+$)"));
    for (const QString& line : lines) {
        const qsizetype colon = line.indexOf(QLatin1Char(':'));
        if (colon < 1)
            continue;
        const QString name = line.left(colon).remove(outerSpace);
        out[name] = line.mid(colon + 1).remove(outerSpace);
    }
}
