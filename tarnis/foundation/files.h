/// @file
/// Reads and writes complete files. Writes are atomic: a reader sees either the previous or the new content. Reads have
/// a size limit. Needs no event loop and no widget. Any thread.
#pragma once

#include <tarnis/tarnis_export.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace tarnis {

/// Writes `content` to `path`. Returns an empty text on success, else the cause and what to do, in the current language
/// and without the path: "no space is left on the device: free some or choose another folder".
///
/// An ordinary file is replaced in one step once all bytes are on the device, so that an error or an interrupt leaves
/// the previous file, and leaves no temporary file; it keeps its permissions, and a symbolic link is followed. Devices
/// and pipes, for example /dev/stdout, are written directly. A pipe that has been closed by its reader is an error only
/// if SIGPIPE is ignored: by default that signal ends the process.
[[nodiscard]] TARNIS_EXPORT QString writeFile(const QString& path, QByteArrayView content);

/// Writes all of the content to a descriptor that is open for writing. Returns the same as writeFile(). Does not close
/// it.
[[nodiscard]] TARNIS_EXPORT QString writeDescriptor(int descriptor, QByteArrayView content);

/// What readFile() returns: the bytes, or an error.
struct FileContent {
    QByteArray bytes; ///< empty if there is an error
    QString error; ///< empty on success, else the cause and what to do, without the path
};

/// The largest file that readFile() reads unless the caller allows another size: 1 GiB.
constexpr qsizetype maxFileBytes = qsizetype { 1 } << 30;

/// Reads a file, device or pipe to its end. More than `maxBytes` is an error, which is detected before that much is
/// read or allocated.
[[nodiscard]] TARNIS_EXPORT FileContent readFile(const QString& path, qsizetype maxBytes = maxFileBytes);

} // namespace tarnis
