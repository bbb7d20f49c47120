/// @file
/// Files as a whole: written so that a reader sees the previous content or all of the new one, read with a limit. Needs
/// no event loop and no widget. Any thread.
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
/// the previous file, and no other one beside it; it keeps its permissions, and a symbolic link is followed. Devices
/// and pipes, for example /dev/stdout, are written directly. A pipe whose reader has gone is an error only if SIGPIPE
/// is ignored: by default that signal ends the process.
[[nodiscard]] TARNIS_EXPORT QString writeFile(const QString& path, QByteArrayView content);

/// Writes to a descriptor that is open for writing, all of it. Returns as writeFile() does. Does not close it.
[[nodiscard]] TARNIS_EXPORT QString writeDescriptor(int descriptor, QByteArrayView content);

/// What readFile() returns: the bytes, or an error.
struct FileContent {
    QByteArray bytes; ///< empty if there is an error
    QString error; ///< empty on success, else the cause and what to do, without the path
};

/// The largest file that readFile() reads unless the caller allows another size: 1 GiB.
constexpr qsizetype maxFileBytes = qsizetype { 1 } << 30;

/// Reads a file, device or pipe to its end. More than `maxBytes` is an error, found before so much is read or reserved.
[[nodiscard]] TARNIS_EXPORT FileContent readFile(const QString& path, qsizetype maxBytes = maxFileBytes);

} // namespace tarnis
