#include "support/logfile.h"

#include <tarnis/foundation/log.h>

#include <QFile>
#include <QRegularExpression>

namespace tarnis::testing {

namespace {

QString shortForm(const LogEntry& entry)
{
    return entry.word + QLatin1Char(' ') + entry.message;
}

QStringList shortForms(const QList<LogEntry>& entries, const QString& thread)
{
    QStringList all;
    for (const LogEntry& entry : entries) {
        if (entry.word != QLatin1String("<") && !entry.word.isEmpty() && (thread.isNull() || entry.thread == thread))
            all.append(shortForm(entry));
    }
    return all;
}

} // namespace

LogFile::LogFile(int level)
{
    initlog(path().toStdString(), level);
}

LogFile::~LogFile()
{
    closelog();
}

QString LogFile::path() const
{
    return m_folder.filePath(QStringLiteral("test.log"));
}

QList<LogEntry> LogFile::entries() const
{
    return logEntries(path());
}

QStringList LogFile::messages() const
{
    return shortForms(entries(), QString());
}

QStringList LogFile::messagesOfThreadWith(const QString& message) const
{
    const QList<LogEntry> all = entries();
    for (const LogEntry& entry : all) {
        if (shortForm(entry) == message)
            return shortForms(all, entry.thread);
    }
    return {};
}

QList<LogEntry> logEntries(const QString& path)
{
    static const QRegularExpression form(QStringLiteral(
        "^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} +(\\S+): *\\d+ +([0-9a-f]+) \\[ *(\\S+)\\] (.*)$"));
    static const QRegularExpression blockNumber(QStringLiteral(" -> \\d+$"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<LogEntry> entries;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = form.match(line);
        if (!match.hasMatch()) {
            entries.append({ {}, {}, {}, line });
            continue;
        }
        LogEntry entry { match.captured(1), match.captured(2), match.captured(3), match.captured(4) };
        if (entry.word == QLatin1String("BLCK"))
            entry.message.remove(blockNumber);
        entries.append(entry);
    }
    return entries;
}

} // namespace tarnis::testing
