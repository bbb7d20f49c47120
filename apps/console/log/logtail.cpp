#include "log/logtail.h"

#include <QFileInfo>

#include <sys/stat.h>

namespace console {

namespace {

constexpr qsizetype recognitionBytes = 64;

} // namespace

LogTail::LogTail(const QString& path)
    : m_path(path)
    , m_file(path)
{
}

QList<LogChange> LogTail::poll()
{
    QList<LogChange> changes;
    if (!m_file.isOpen() && !open(changes))
        return changes;
    // Checked before the rest of the old file is read, so that text written to it until then is not lost.
    const bool isOther = isReplaced();
    if (isRewritten()) {
        restart();
        changes.append({ LogChange::Kind::Emptied, {}, 0 });
    }
    read(changes);
    if (!isOther)
        return changes;
    m_file.close();
    restart();
    m_file.setFileName(m_path);
    if (open(changes)) {
        changes.append({ LogChange::Kind::Replaced, {}, 0 });
        read(changes);
    }
    return changes;
}

qint64 LogTail::pending() const
{
    return m_file.isOpen() ? qMax(qint64 { 0 }, m_file.size() - m_position) : 0;
}

bool LogTail::isGone() const
{
    return m_file.isOpen() && !QFileInfo::exists(m_path);
}

bool LogTail::open(QList<LogChange>& changes)
{
    // Some systems can open a folder, and a pipe would block.
    QString problem;
    if (const QFileInfo info(m_path); info.exists() && !info.isFile())
        problem = tr("it is not an ordinary file");
    else if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        problem = m_file.errorString();
    if (!problem.isEmpty() && !m_isMissing)
        changes.append({ LogChange::Kind::Missing, problem, 0 });
    m_isMissing = !problem.isEmpty();
    return !m_isMissing;
}

bool LogTail::isReplaced() const
{
    struct stat opened { };
    struct stat named { };
    return ::fstat(m_file.handle(), &opened) == 0 && ::stat(QFile::encodeName(m_path).constData(), &named) == 0
        && (opened.st_dev != named.st_dev || opened.st_ino != named.st_ino);
}

/// A file that is not shorter may still have been truncated and rewritten between two checks.
bool LogTail::isRewritten()
{
    if (m_file.size() < m_position)
        return true;
    return !m_lastBytes.isEmpty() && m_file.size() > m_position && m_file.seek(m_position - m_lastBytes.size())
        && m_file.read(m_lastBytes.size()) != m_lastBytes;
}

void LogTail::restart()
{
    m_position = 0;
    m_lastBytes.clear();
    m_lineLength = 0;
    m_decoder.resetState();
}

void LogTail::skipTo(qint64 position, QList<LogChange>& changes)
{
    qint64 start = position;
    if (m_file.seek(position - 1)) {
        const QByteArray line = m_file.read(lineLimit);
        if (const qsizetype feed = line.indexOf('\n'); feed >= 0)
            start = position + feed;
    }
    changes.append({ LogChange::Kind::Skipped, {}, start - m_position });
    m_position = start;
    m_lastBytes.clear();
    m_lineLength = 0;
    m_decoder.resetState();
}

void LogTail::read(QList<LogChange>& changes)
{
    const qint64 size = m_file.size();
    if (size - m_position > windowBytes)
        skipTo(size - windowBytes, changes);
    if (size <= m_position || !m_file.seek(m_position))
        return;
    const QByteArray bytes = m_file.read(size - m_position);
    if (bytes.isEmpty())
        return;
    m_position += bytes.size();
    m_lastBytes = (m_lastBytes + bytes).right(recognitionBytes);
    const QString text = m_decoder.decode(bytes);
    if (!text.isEmpty())
        changes.append({ LogChange::Kind::Text, broken(text), 0 });
}

QString LogTail::broken(const QString& text)
{
    QString lines;
    lines.reserve(text.size());
    for (const QChar c : text) {
        if (c == u'\n')
            m_lineLength = 0;
        else if (m_lineLength++ >= lineLimit) {
            lines += u'\n';
            m_lineLength = 1;
        }
        lines += c;
    }
    return lines;
}

} // namespace console
