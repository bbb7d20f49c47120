// The tour's steps for the live histogram windows.
#pragma once

#include <QPoint>
#include <QString>

#include <functional>

class QWidget;
class XYGraphWidget;

namespace console {

class UiDriver;

/// A point of a widget, as fractions of its width and height.
QPoint placeIn(const QWidget& widget, double x, double y);

/// Enters a path beside the screenshots in the file dialog that `act` opens, and presses Save. Returns the path; throws
/// TourFailure if no file is written.
QString saveBy(UiDriver& driver, const QString& fileName, const std::function<void()>& act);

/// Chooses the menu entry that opens the export dialog, takes a screenshot of it, enters a path beside the screenshots
/// and presses Save. Returns the path; throws TourFailure if no file is written.
QString saveAs(UiDriver& driver, XYGraphWidget& plot, const QString& menuText, const QString& fileName);

/// Prints by the menu of the plot, into a PDF beside the screenshots.
void printToPdf(UiDriver& driver, XYGraphWidget& plot, const QString& fileName);

/// Number of lines of a text file.
qsizetype linesOf(const QString& path);

} // namespace console
