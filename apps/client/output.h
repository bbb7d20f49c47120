// Standard output, standard error and files. Nothing is buffered, so a failed write is detected at once.
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QString>

class QJsonObject;

namespace cli {

/// Writes all of it to standard output.
Outcome print(const QByteArray& text);
/// Prints the object on one line.
Outcome print(const QJsonObject& object);

/// Prepares the standard streams: writing to a closed pipe is an error with an exit code, the descriptor of a closed
/// stream is not reused for a file or a connection, and Qt's log is kept off standard error, where scripts expect one
/// line.
void prepareStreams();

/// Writes "tarnis: ", the text with its line feeds replaced by spaces, and a line feed to standard error.
void printError(const QString& text);
/// As above, with the prefix "warning: ": the command continues.
void printWarning(const QString& text);

/// Wrong usage if the value of -o is empty or only a suffix, such as ".csv" or "data/.png": probably a variable in a
/// script is empty.
Outcome checkOutputName(const QString& path);

/// Writes a file atomically; "-" is standard output. Signals are blocked until the file is complete.
Outcome writeOutput(const QString& path, const QByteArray& content);

/// Whether the path is "-", or an existing device or pipe, so that its name does not determine the format.
bool isStream(const QString& path);

/// Reads a file; "-" is standard input.
Result<QByteArray> readInput(const QString& path);

} // namespace cli
