// What the soak measures and does beside the console: memory, threads, faults of the server, log lines, fonts.
#pragma once

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontMetrics>
#include <QMap>
#include <QTcpSocket>

#include <algorithm>
#include <malloc.h>
#include <memory>
#include <unistd.h>

namespace soak {

inline double megabytes(std::size_t bytes)
{
    return double(bytes) / (1024.0 * 1024.0);
}

/// Bytes allocated on the heap and not freed.
inline std::size_t heapInUse()
{
    const struct mallinfo2 info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

inline QStringList threadNames()
{
    QStringList names;
    const QStringList tasks = QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& task : tasks) {
        QFile file(QStringLiteral("/proc/self/task/%1/comm").arg(task));
        names.append(file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString());
    }
    return names;
}

/// A separate connection for setting and ending faults: `fault` is always answered.
class FaultSwitch {
public:
    /// Connects again if needed. False if the server does not answer.
    bool set(quint16 port, const QByteArray& fault)
    {
        if (port != m_port || m_socket->state() != QAbstractSocket::ConnectedState) {
            m_socket = std::make_unique<QTcpSocket>();
            m_socket->connectToHost(QStringLiteral("127.0.0.1"), port);
            m_port = port;
            if (!m_socket->waitForConnected(2000) || !prompted())
                return false;
        }
        m_socket->readAll();
        m_socket->write("fault " + fault + '\n');
        return prompted();
    }

private:
    bool prompted()
    {
        QByteArray reply;
        while (!reply.endsWith("> ")) {
            if (!m_socket->waitForReadyRead(2000))
                return false;
            reply += m_socket->readAll();
        }
        return true;
    }

    std::unique_ptr<QTcpSocket> m_socket;
    quint16 m_port = 0;
};

inline const QList<QByteArray>& faults()
{
    static const QList<QByteArray> all { "bytewise", "close-in-reply", "slow", "silent", "exit", "garbage every:3",
        "refuse", "chunks", "close-before", "no-prompt every:2", "wrong-length", "crash", "split-prompt",
        "reset-in-reply", "short-length", "negative-length", "oversized-length", "trailing", "cut-payload",
        "empty-payload", "bad-values", "zero-length", "no-axis", "bad-index", "wrong-counts", "early-prompt",
        "no-greeting", "close-at-greeting", "late-greeting", "split-greeting", "split-length", "close-after" };
    return all;
}

/// The log of another program, which is long and rotated occasionally.
class LogWriter {
public:
    explicit LogWriter(const QString& path)
        : m_path(path)
    {
        write(60000);
    }
    void write(int lines)
    {
        QFile file(m_path);
        if (!file.open(QIODevice::Append))
            return;
        for (int i = 0; i < lines; ++i)
            file.write("12:00:00 line " + QByteArray::number(++m_line) + " of a log that grows all day\n");
    }
    /// Renames the old file; the new one is equally long.
    void rotate()
    {
        const QString old = m_path + QStringLiteral(".1");
        QFile::remove(old);
        QFile::rename(m_path, old);
        write(60000);
    }

private:
    QString m_path;
    int m_line = 1000000;
};

/// The fonts of all open windows, each once.
inline QList<QFont> fontsInUse()
{
    QMap<QString, QFont> fonts;
    const QWidgetList widgets = QApplication::allWidgets();
    for (const QWidget* const widget : widgets)
        fonts.insert(widget->font().key(), widget->font());
    return fonts.values();
}

/// Makes Qt load the glyphs of broken replies, which faults would show later, with the fonts that each script needs.
/// They stay loaded as long as the returned fonts.
inline QList<QFont> loadLetters(const QList<QFont>& fonts)
{
    QList<QFont> loaded;
    for (QFont font : fonts) {
        for (const bool isBold : { false, true }) {
            font.setBold(isBold);
            const QFontMetrics metrics(font);
            const auto load = [&metrics](char32_t from, char32_t to, char32_t step) {
                for (char32_t letter = from; letter < to; letter += step) {
                    if (!QChar::isSurrogate(letter))
                        metrics.boundingRect(QString::fromUcs4(&letter, 1));
                }
            };
            load(U' ', 0x800, 1);
            load(0x800, 0x20000, 0x20); // every script there is a font for
            load(0x2000, 0x2500, 1); // dashes, quotes, pictures of controls
            load(QChar::ReplacementCharacter, QChar::ReplacementCharacter + 1, 1);
            loaded.append(font);
        }
    }
    return loaded;
}

} // namespace soak
