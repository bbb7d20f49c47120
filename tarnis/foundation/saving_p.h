// The saves of plots and tables, from the question for a file name to the report. GUI thread only.
#pragma once

#include "tarnis/foundation/savehooks.h"

#include <QPixmap>

class QPainter;
class QPrinter;

namespace tarnis {

/// True if the host saves by itself.
bool isSavedByHost(QWidget* source, SaveKind kind, const QString& caption, const QString& filter);

/// Asks for the name of a file that is to be saved, with the host's dialog if there is one. Empty if the dialog was
/// cancelled or the source went while it was open.
QString askSavePath(QWidget* source, SaveKind kind, const QString& caption, const QString& filter);

/// True if a host wants reports: nothing is shown by the library then, and files are written in one step.
bool isSaveReported();

/// Hands the result to the host, if it wants reports.
void reportSave(QWidget* source, const QString& path, const QString& error);

/// Asks for the name of a table and writes `text` there, which is called after the question. A file that cannot be
/// opened is not written, silently unless a host wants reports. The next dialog opens in the file's folder.
void saveTable(QWidget* source, const QString& caption, const QString& filter, const std::function<QString()>& text);

/// Writes the picture in the format of the file's extension, in one step. Returns as writeFile() does.
QString writePicture(const QPixmap& picture, const QString& path);

/// Prints what `paint`, which returns whether it could, paints on the printer. Returns as writeFile() does; a PDF file
/// is written in one step.
QString printDocument(QPrinter& printer, const std::function<bool()>& paint);

/// Lets `paint` paint a page. Does nothing if the printer cannot begin. With reports a PDF file is written in one step.
void printPage(QWidget* source, QPrinter& printer, const std::function<void(QPainter&)>& paint);

} // namespace tarnis
