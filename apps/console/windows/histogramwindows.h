// Live windows on the histograms of the simulated server, and what the tour does with any of them.
#pragma once

#include "windows/window.h"

#include <QPoint>
#include <QString>

#include <functional>

class QAction;
class XYGraphWidget;

namespace console {

/// The menu entry of a plot by its text; throws TourFailure if there is none or it is disabled.
QAction& plotAction(XYGraphWidget& plot, const QString& text);

/// A point of a widget by shares of its width and height.
QPoint placeIn(const QWidget& widget, double x, double y);

/// Chooses the menu entry that opens a file dialog, gives it `fileName` in a temporary folder and presses Save. Throws
/// TourFailure if no file comes of it.
void saveAs(Person& person, XYGraphWidget& plot, const QString& menuText, const QString& fileName);

/// Prints to a PDF in a temporary folder; `print` opens the printer's dialog.
void printToPdf(Person& person, const std::function<void()>& print);

} // namespace console
