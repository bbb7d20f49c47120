// Replies as the user reads them: text with everything visible, and a block of doubles in a few numbers.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace console {

/// What a server answered to one command, by its convention.
enum class ReplyKind { Accepted, Refused, Plain };

/// Refused for a text that begins with "NG:", Accepted for "OK:", Plain for anything else.
ReplyKind replyKind(const QString& reply);

/// Whether a run is under way, as far as this reply tells: true and false for an accepted "start" and "stop", the value
/// "state" of a "stat" reply, nothing for anything else.
std::optional<bool> runStateFromReply(const QString& command, const QString& reply);

/// Native little-endian doubles of a binary reply, in numbers. NaN and infinities are counted and left out of the sums.
struct BinarySummary {
    qsizetype count = 0; ///< whole doubles in the payload
    qsizetype spareBytes = 0; ///< bytes behind the last whole double
    qsizetype notFinite = 0;
    double sum = 0.0; ///< with compensation, so that counts stay whole up to 2^53
    double least = 0.0; ///< 0 if there is no finite value
    double largest = 0.0;
    QList<double> first; ///< at most `firstCount` values from the front
};

constexpr int firstCount = 10;

BinarySummary summarizeBinary(const QByteArray& payload);

/// Three lines: count, sum with least and largest, first values. No line feed at the end.
QString binaryText(const BinarySummary& summary);

/// UTF-8 made fit to show: line ends as line feeds, tabs kept, other control bytes as their symbols (U+2400 and on),
/// one line feed at the end dropped. Beyond `limit` bytes the middle is left out and a line says how much.
QString visibleText(const QByteArray& reply, qsizetype limit = 65536);

/// A path of the server as a command takes it: between quotation marks, a backslash before each one inside.
QString quotedPath(const QString& path);

/// Why `command` cannot go on the wire as one line, in words; empty if it can.
QString commandProblem(const QString& command);

/// "1 byte", "12,345 bytes", "3.1 MiB", in the current language.
QString byteCountText(qint64 bytes);

/// A file as it came: its size, and below it the text; the size alone of what is no text.
QString fileText(const QByteArray& bytes);

/// True for the commands with binary replies: first word hist1d, hist2d (doubles) or rxfile (a file).
bool looksBinary(const QString& command);
/// True for the one among them whose payload are the bytes of a file.
bool bringsFile(const QString& command);

} // namespace console
