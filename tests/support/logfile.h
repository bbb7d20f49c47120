// Opens the process's log on a temporary file while the object exists, and parses its lines.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace tarnis::testing {

struct LogEntry {
    QString file; ///< source file
    QString thread; ///< as printed
    QString word; ///< DBG, INFO, ERR, BLCK, "<"
    QString message; ///< without the number of a block
};

class LogFile {
public:
    explicit LogFile(int level = 0);
    /// Closes the log.
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    QString path() const;
    /// All lines so far, in order. A line without the log's format is an entry with only a message.
    QList<LogEntry> entries() const;
    /// "WORD message" of all entries, without block ends and numbers: "BLCK read", "DBG connected".
    QStringList messages() const;
    /// The same of the one thread that has logged `message`.
    QStringList messagesOfThreadWith(const QString& message) const;

private:
    QTemporaryDir m_folder;
};

/// The entries of any log file.
QList<LogEntry> logEntries(const QString& path);

} // namespace tarnis::testing
