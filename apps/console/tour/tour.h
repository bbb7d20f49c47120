// The tour: opens every window on live data, drives it as a user would, and writes pictures and a report.
#pragma once

#include "tour/uidriver.h"

#include <QDir>
#include <QList>
#include <QString>
#include <QTextStream>

#include <functional>

namespace console {

class MainWindow;

/// One thing that the tour does; a TourFailure that it throws makes the tour fail, and the next step goes on.
struct TourStep {
    QString name;
    std::function<void(UiDriver&, MainWindow&)> act;
    bool isNeeded = false; ///< without it the steps behind it make no sense
};

/// The steps of the main window before and after those of the other windows.
QList<TourStep> openingSteps();
QList<TourStep> closingSteps();

/// Runs all steps on the window and writes report.txt into the directory. Returns the process's exit status: 0 if every
/// step went well.
class Tour {
public:
    /// `directory` is made if need be. What the report of an earlier tour in it names is removed; a folder with
    /// anything else in it and no such report is refused.
    Tour(MainWindow& window, const QString& directory);
    /// Why the tour cannot go there, in words; empty if it can.
    const QString& problem() const { return m_problem; }
    int run();
    /// Lets the step under way fail, and tries none of those behind it.
    void interrupt() { m_isInterrupted = true; }
    /// What went wrong, a line for each step, and where the report is.
    QString summary() const;

protected:
    /// Lets a server end that a failed or interrupted tour has left running.
    void leaveServer();
    bool runStep(const TourStep& step, int number, QTextStream& report);

    MainWindow& m_window;
    QDir m_directory;
    QString m_problem;
    bool m_isInterrupted = false;
    QStringList m_failures;
};

} // namespace console
