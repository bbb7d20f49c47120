// Follows a text file that another program writes: returns the text added since the last call, also for large,
// truncated and replaced files. No widget, no timer; one thread at a time.
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringDecoder>

namespace console {

/// New text of the file, or an event.
struct LogChange {
    enum class Kind {
        Text, ///< `text` continues the previous text
        Skipped, ///< `bytes` of the file are skipped here
        Emptied, ///< the file was truncated or rewritten; its beginning follows
        Replaced, ///< the file was replaced by another one, whose beginning follows
        Missing, ///< the file cannot be opened, for the reason in `text`; reported once
    };
    Kind kind = Kind::Text;
    QString text;
    qint64 bytes = 0;
};

class LogTail {
    Q_DECLARE_TR_FUNCTIONS(console::LogTail)
public:
    /// Maximum number of bytes read in one call, from the end of the file.
    static constexpr qint64 windowBytes = qint64 { 1024 } * 1024;
    /// A longer line is split, to keep the view fast.
    static constexpr qsizetype lineLimit = 4096;

    explicit LogTail(const QString& path);

    const QString& path() const { return m_path; }
    /// The changes since the last call, in order. Lines end with a line feed; the last one may be incomplete.
    QList<LogChange> poll();
    /// Number of unread bytes of the file; 0 if unknown.
    qint64 pending() const;
    /// True while the open file has been removed or renamed: it is followed until another file takes its name.
    bool isGone() const;

protected:
    bool open(QList<LogChange>& changes);
    bool isReplaced() const;
    bool isRewritten();
    void restart();
    void read(QList<LogChange>& changes);
    void skipTo(qint64 position, QList<LogChange>& changes);
    QString broken(const QString& text);

    QString m_path;
    QFile m_file;
    QStringDecoder m_decoder { QStringDecoder::Utf8 };
    qint64 m_position = 0; ///< read position in the file
    QByteArray m_lastBytes; ///< bytes before m_position, to identify the file
    qsizetype m_lineLength = 0; ///< characters of the incomplete last line
    bool m_isMissing = false;
};

} // namespace console
