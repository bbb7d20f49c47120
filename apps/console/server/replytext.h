// Formats replies for display: text with visible control characters, and a summary of binary doubles.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace console {

/// The kind of a reply, by the server's convention.
enum class ReplyKind { Accepted, Refused, Plain };

/// Refused for a text that begins with "NG:", Accepted for "OK:", else Plain.
ReplyKind replyKind(const QString& reply);

/// Whether a run is under way according to this reply: from an accepted "start" or "stop", or from the value "state" of
/// a "stat" reply; else empty.
std::optional<bool> runStateFromReply(const QString& command, const QString& reply);

/// Whether the command begins or ends a run, or discards its data.
bool changesRun(const QString& command);

/// Summary of the little-endian doubles of a binary reply. NaN and infinities are counted but not summed.
struct BinarySummary {
    qsizetype count = 0; ///< complete doubles in the payload
    qsizetype spareBytes = 0; ///< bytes after the last complete double
    qsizetype notFinite = 0;
    double sum = 0.0; ///< compensated, so that sums of counts are exact up to 2^53
    double least = 0.0; ///< 0 if there is no finite value
    double largest = 0.0;
    QList<double> first; ///< at most `firstCount` values from the front
};

constexpr int firstCount = 10;

BinarySummary summarizeBinary(const QByteArray& payload);

/// Three lines: count, sum with least and largest, first values. No line feed at the end.
QString binaryText(const BinarySummary& summary);

/// Converts UTF-8 for display: line ends become line feeds, tabs are kept, other control bytes become their symbols
/// (from U+2400 on), a final line feed is dropped. Beyond `limit` bytes the middle is replaced by a line with the
/// number of omitted bytes.
QString visibleText(const QByteArray& reply, qsizetype limit = 65536);

/// A path of the server for a command: in quotation marks, with a backslash before each one inside.
QString quotedPath(const QString& path);

/// Why `command` cannot be sent as one line, as a text for users; empty if it can.
QString commandProblem(const QString& command);

/// "1 byte", "12,345 bytes", "3.1 MiB", in the current language.
QString byteCountText(qint64 bytes);

/// A received file: its size, and below it the text; only the size if it is not text.
QString fileText(const QByteArray& bytes);

/// True for the commands with binary replies: first word hist1d, hist2d (doubles) or rxfile (a file).
bool looksBinary(const QString& command);
/// True for the one whose payload is a file.
bool requestsFile(const QString& command);

} // namespace console
