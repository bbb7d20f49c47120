// The saves of plots and tables, from the question for a file name to the report. GUI thread only.
#pragma once

#include "tarnis/foundation/savehooks.h"

#include <QPixmap>

class QPainter;
class QPrinter;

namespace tarnis {

/// True if the host saves the plot itself.
bool isSavedByHost(QWidget* source, SaveKind kind, const QString& caption, const QString& filter);

/// Asks the user for a file name, with the host's dialog if there is one. Empty if the dialog was cancelled or the
/// source was destroyed while it was open.
QString askSavePath(QWidget* source, SaveKind kind, const QString& caption, const QString& filter);

/// True if a host has requested reports. The library then shows nothing, and files are written atomically.
bool isSaveReported();

/// Reports the result to the host, if it has requested reports.
void reportSave(QWidget* source, const QString& path, const QString& error);

/// Asks the user for a file name and writes the result of `text` there; `text` is called after the dialog. A file that
/// cannot be opened is ignored without a message, unless a host has requested reports. The next dialog opens in the
/// file's folder.
void saveTable(QWidget* source, const QString& caption, const QString& filter, const std::function<QString()>& text);

/// Writes the picture atomically, in the format of the file's extension. Returns the same as writeFile().
QString writePicture(const QPixmap& picture, const QString& path);

/// Prints what `paint` draws on the printer; `paint` returns whether it succeeded. Returns the same as writeFile(). A
/// PDF file is written atomically.
QString printDocument(QPrinter& printer, const std::function<bool()>& paint);

/// Lets `paint` paint a page. Does nothing if the printer cannot start. With reports, a PDF file is written atomically.
void printPage(QWidget* source, QPrinter& printer, const std::function<void(QPainter&)>& paint);

} // namespace tarnis
