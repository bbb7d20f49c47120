// What the manager works out about a local server, on plain values.
#pragma once

#include <QString>

#include <optional>

namespace tarnis {

/// The directory of the program, with a separator at its end. Of a path with a blank only the piece before it counts:
/// the path is a command line.
QString workingDirectory(const QString& processPath);

/// The port behind the first "UI port:" of the server's output, nothing where that does not occur. 0 if the line is not
/// yet ended by a line feed, or does not hold an unsigned 16-bit number.
std::optional<quint16> announcedPort(const QString& output);

} // namespace tarnis
