// Follows a text file that another program writes: what has come since the last look, however large the file is and
// whatever becomes of it. No widget, no timer; one thread at a time.
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QList>
#include <QString>
#include <QStringDecoder>

namespace console {

/// A piece of the file, or something that happened to it.
struct LogNews {
    enum class Kind {
        Text, ///< `text` follows on the text before
        Skipped, ///< `bytes` of the file are left out here
        Emptied, ///< the file was cut short or written again: what follows is its beginning
        Replaced, ///< another file has taken its name: what follows is the beginning of that one
        Missing, ///< the file cannot be opened, for the reason in `text`; said once
    };
    Kind kind = Kind::Text;
    QString text;
    qint64 bytes = 0;
};

class LogTail {
    Q_DECLARE_TR_FUNCTIONS(console::LogTail)
public:
    /// At most so much of the file is read in one look, of its end.
    static constexpr qint64 windowBytes = qint64 { 1024 } * 1024;
    /// A longer line is broken, for the view's sake.
    static constexpr qsizetype lineLimit = 4096;

    explicit LogTail(const QString& path);

    const QString& path() const { return m_path; }
    /// What has come since the last look, in order. Lines end with a line feed; the last one may be half written.
    QList<LogNews> look();
    /// Bytes of the file that no look has reached yet; 0 if that cannot be told.
    qint64 pending() const;
    /// True while a file that was open has lost its name: it is followed all the same until another one takes it.
    bool isGone() const;

protected:
    bool open(QList<LogNews>& news);
    bool isReplaced() const;
    bool isRewritten();
    void startAnew();
    void read(QList<LogNews>& news);
    void skipTo(qint64 position, QList<LogNews>& news);
    QString broken(const QString& text);

    QString m_path;
    QFile m_file;
    QStringDecoder m_decoder { QStringDecoder::Utf8 };
    qint64 m_position = 0; ///< behind what was read
    QByteArray m_lastBytes; ///< in front of m_position, to recognise the file by
    qsizetype m_lineLength = 0; ///< characters of the line that is coming
    bool m_isMissing = false;
};

} // namespace console
