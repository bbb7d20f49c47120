// What the manager derives about a local server, as pure functions.
#pragma once

#include <QString>

#include <optional>

namespace tarnis {

/// The directory of the program, with a separator at its end. Only the part of the path before the first space counts,
/// because the path is a command line.
QString workingDirectory(const QString& processPath);

/// The port after the first "UI port:" in the server's output; empty without such a line. 0 if the line has no line
/// feed yet, or no unsigned 16-bit number.
std::optional<quint16> announcedPort(const QString& output);

} // namespace tarnis
