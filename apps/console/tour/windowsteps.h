// The tour's script for each window of the menu, by the window's id.
#pragma once

#include <QHash>
#include <QString>

#include <functional>

class QWidget;

namespace console {

class UiDriver;

/// Operates the open window like a user; throws TourFailure on unexpected behaviour.
using WindowScript = std::function<void(UiDriver&, QWidget&)>;

/// The scripts of the windows, by the ids of their entries.
const QHash<QString, WindowScript>& windowScripts();

void driveBasePath(UiDriver& driver, QWidget& window);
void driveHistograms(UiDriver& driver, QWidget& window);
void driveLog(UiDriver& driver, QWidget& window);
void driveMap(UiDriver& driver, QWidget& window);
void driveModules(UiDriver& driver, QWidget& window);
void drivePairs(UiDriver& driver, QWidget& window);
void driveRate(UiDriver& driver, QWidget& window);
void driveRows(UiDriver& driver, QWidget& window);
void driveRuns(UiDriver& driver, QWidget& window);
void driveServerFiles(UiDriver& driver, QWidget& window);
void driveServerText(UiDriver& driver, QWidget& window);
void driveSingleRow(UiDriver& driver, QWidget& window);
void driveSnapshot(UiDriver& driver, QWidget& window);
void driveSpectrum(UiDriver& driver, QWidget& window);
void driveStatistics(UiDriver& driver, QWidget& window);

} // namespace console
