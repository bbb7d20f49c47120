// Writes texts of panels to files and the clipboard.
#pragma once

#include <QString>

class QWidget;

namespace tarnis {

/// Asks the user for a file and writes the text in UTF-8. Returns the error for the user; empty on success and on
/// Cancel.
QString saveTextFile(QWidget* parent, const QString& title, const QString& filter, const QByteArray& text);

/// Writes a file atomically. Returns the error for the user.
QString writeTextFile(const QString& path, const QByteArray& text);
/// Reads a file, up to 16 MiB. error: for the user; unchanged on success.
QByteArray readTextFile(const QString& path, QString& error);

/// Copies a text to the clipboard.
void copyText(const QString& text);

} // namespace tarnis
