// The console's main window: the server's status and its buttons, the command line, the settings, the host messages,
// and the menu of all other windows.
#pragma once

#include "app/commandline.h"
#include "notices/alert.h"
#include "windows/window.h"

#include <QMainWindow>

#include <functional>
#include <memory>

class QSettings;

namespace Ui {
class MainWindow;
}

namespace console {

class CommandPanel;
class HistogramWindowUpdater;
class OpenWindows;
class RunPanel;
class ServerController;
class ServerHistograms;
class SaveReports;
class SettingsPanel;
class StatusPoller;

/// Closing it asks about a run and about work that is not saved, then shuts the server down, and goes when the server
/// has ended. GUI thread.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// `store` is what is kept from one run to the next; it must outlive the window. `language` is that of this run;
    /// empty: the one that was chosen last.
    explicit MainWindow(QSettings& store, const QString& language = QString());
    ~MainWindow() override;

    /// Uses the server of the options, else the last one, else the simulator. Called once, after the window is shown.
    void startServer(const Options& options);

    ServerController& controller() { return *m_controller; }
    CommandPanel& commandPanel() { return *m_commandPanel; }
    SettingsPanel& settingsPanel() { return *m_settingsPanel; }

    /// Opens the window of the entry, or brings it forward if it is open. Null while it cannot be opened.
    QWidget* openWindow(const WindowEntry& entry);
    /// Why the window of the entry cannot be opened now, in words; empty if it can.
    QString refusal(const WindowEntry& entry) const;
    const std::vector<WindowEntry>& entries() const { return m_entries; }
    OpenWindows& windows() { return *m_windows; }
    SaveReports& saves() { return *m_saves; }
    ServerHistograms& histograms() { return *m_histograms; }
    HistogramWindowUpdater& follower() { return *m_follower; }
    StatusPoller& stateWatch() { return *m_stateWatch; }

    /// Closes without a question about a run: the program is ended from outside.
    void leave();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void connectActions();
    void addWindowActions();
    void setTexts();
    void openWindow(const QString& id);
    void updateControls();
    void updateArranging();
    void listOpenWindows();
    WindowContext windowContext();
    bool reopenWindow(const QString& id);
    void reopenWindows();
    void rememberWindows();
    void showStatus();
    void onAlert(const Alert& alert);
    void onStatusMessage(const Alert& alert);
    void chooseServer(const ServerChoice& choice, const QByteArray& prompt);
    void checkStore();
    void onAlertAction(AlertAction action);
    void goOnLeaving();
    void unlessRunMatters(const std::function<void()>& action, const std::function<void()>& otherwise = {});
    void chooseServer();
    void startAgain();
    QString runNumber() const;
    void saveRecord();
    void showKeyboard();
    void showAbout();
    void setDark(bool isDark);
    void restore();
    void remember();

    QSettings& m_store;
    std::unique_ptr<Ui::MainWindow> ui;
    ServerController* m_controller;
    SaveReports* m_saves;
    CommandPanel* m_commandPanel;
    SettingsPanel* m_settingsPanel;
    StatusPoller* m_stateWatch;
    RunPanel* m_runPanel;
    std::vector<WindowEntry> m_entries; ///< never grows: open windows refer to their entries
    QList<QAction*> m_windowActions; ///< one for each entry
    QList<QAction*> m_openActions; ///< the open windows as the menu last showed them
    OpenWindows* m_windows;
    ServerHistograms* m_histograms;
    HistogramWindowUpdater* m_follower;
    QStringList m_windowsToReopen; ///< those of the last run that could not be opened yet
    bool m_isReopening = false;
    bool m_isServerChosen = false;
    bool m_isStoreFaultReported = false;
    bool m_isRunGivenUp = false; ///< the user who closes the window knows that a run ends
    bool m_isAskingToSave = false; ///< a window with unsaved work was asked to close; this one closes behind it
    bool m_isClosing = false; ///< close as soon as the server has ended
};

} // namespace console
