// What the tour does with the live histogram windows.
#pragma once

#include <QPoint>
#include <QString>

#include <functional>

class QWidget;
class XYGraphWidget;

namespace console {

class UiDriver;

/// A point of a widget by shares of its width and height.
QPoint placeIn(const QWidget& widget, double x, double y);

/// Gives the file dialog that `act` opens a path beside the pictures and presses Save. Returns the path; throws
/// TourFailure if no file comes of it.
QString saveBy(UiDriver& driver, const QString& fileName, const std::function<void()>& act);

/// Chooses the menu entry that opens the export dialog, takes a screenshot of it, enters a path beside the pictures and
/// presses Save. Returns the path; throws TourFailure if no file comes of it.
QString saveAs(UiDriver& driver, XYGraphWidget& plot, const QString& menuText, const QString& fileName);

/// Prints by the menu of the plot, into a PDF beside the pictures.
void printToPdf(UiDriver& driver, XYGraphWidget& plot, const QString& fileName);

/// Number of lines of a text file.
qsizetype linesOf(const QString& path);

} // namespace console
