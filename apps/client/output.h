// Standard output, standard error and files. Nothing is buffered: a failed write is known where it happens.
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QString>

class QJsonObject;

namespace cli {

/// Writes all of it to standard output.
Outcome print(const QByteArray& text);
/// The object on one line.
Outcome print(const QJsonObject& object);

/// Prepares the standard streams: a closed pipe is an error of the write with an exit code of its own, the descriptor
/// of a closed stream is not reused for a file or a connection, and what Qt logs stays out of standard error, where
/// scripts expect one line.
void prepareStreams();

/// "tarnis: ", the text with its line feeds as blanks, and a line feed, on standard error.
void printError(const QString& text);
/// The same with "warning: " in front: the command goes on.
void printWarning(const QString& text);

/// Wrong usage if the value of -o is empty or the end of a name alone, as ".csv" or "data/.png": most likely a variable
/// in a script is empty.
Outcome checkOutputName(const QString& path);

/// Writes a file in one step; "-" is standard output. An interrupt waits until the file is complete.
Outcome writeOutput(const QString& path, const QByteArray& content);

/// Whether the path is "-", or a device or pipe that exists: its name does not tell the format of what is written.
bool isStream(const QString& path);

/// Reads a file; "-" is standard input.
Result<QByteArray> readInput(const QString& path);

} // namespace cli
