// The tour: opens every window on live data, operates it like a user, and writes screenshots and a report.
#pragma once

#include "tour/uidriver.h"

#include <QDir>
#include <QList>
#include <QString>
#include <QTextStream>

#include <functional>

namespace console {

class MainWindow;

/// One step of the tour. If it throws a TourFailure, the tour fails and continues with the next step.
struct TourStep {
    QString name;
    std::function<void(UiDriver&, MainWindow&)> act;
    bool isNeeded = false; ///< the following steps depend on it
};

/// The steps of the main window before and after those of the other windows.
QList<TourStep> openingSteps();
QList<TourStep> closingSteps();

/// Runs all steps on the window and writes report.txt into the directory. Returns the process's exit status: 0 if every
/// step went well.
class Tour {
public:
    /// `directory` is created if needed. Files listed in the report of a previous tour are removed; a non-empty folder
    /// without such a report is refused.
    Tour(MainWindow& window, const QString& directory);
    /// Why the folder cannot be used, as a text for users; empty if it can.
    const QString& problem() const { return m_problem; }
    int run();
    /// Makes the current step fail, and skips the following ones.
    void interrupt() { m_isInterrupted = true; }
    /// The failures, a line for each step, and the path of the report.
    QString summary() const;

protected:
    /// Ends a server that a failed or interrupted tour has left running.
    void leaveServer();
    bool runStep(const TourStep& step, int number, QTextStream& report);

    MainWindow& m_window;
    QDir m_directory;
    QString m_problem;
    bool m_isInterrupted = false;
    QStringList m_failures;
};

} // namespace console
