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

/// Closing it asks about a run and unsaved work, then shuts down the server, and closes when the server has ended. GUI
/// thread.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    /// `store` contains the settings; it must outlive the window. `language` applies to this run; empty: the last
    /// chosen one.
    explicit MainWindow(QSettings& store, const QString& language = QString());
    ~MainWindow() override;

    /// Uses the server of the options, else the last one, else the simulator. Called once, after the window is shown.
    void startServer(const Options& options);

    ServerController& controller() { return *m_controller; }
    CommandPanel& commandPanel() { return *m_commandPanel; }
    SettingsPanel& settingsPanel() { return *m_settingsPanel; }

    /// Opens the window of the entry, or raises it if it is open. Null while it cannot be opened.
    QWidget* openWindow(const WindowEntry& entry);
    /// Why the window of the entry cannot be opened now, as a text for users; empty if it can.
    QString refusal(const WindowEntry& entry) const;
    const std::vector<WindowEntry>& entries() const { return m_entries; }
    OpenWindows& windows() { return *m_windows; }
    SaveReports& saves() { return *m_saves; }
    ServerHistograms& histograms() { return *m_histograms; }
    HistogramWindowUpdater& windowUpdater() { return *m_windowUpdater; }
    StatusPoller& statusPoller() { return *m_statusPoller; }

    /// Closes without asking about a run, when the program is terminated from outside.
    void leave();

protected:
    void closeEvent(QCloseEvent* event) override;
    void connectActions();
    void addWindowActions();
    void setTexts();
    void openWindow(const QString& id);
    void updateControls();
    void updateArranging();
    void passLiveTime();
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
    QString lossWithServer() const;
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
    StatusPoller* m_statusPoller;
    RunPanel* m_runPanel;
    std::vector<WindowEntry> m_entries; ///< never grows: open windows refer to their entries
    QList<QAction*> m_windowActions; ///< one for each entry
    QList<QAction*> m_openActions; ///< open windows in the menu at its last update
    OpenWindows* m_windows;
    ServerHistograms* m_histograms;
    HistogramWindowUpdater* m_windowUpdater;
    QStringList m_windowsToReopen; ///< windows of the previous session that could not be opened yet
    bool m_isReopening = false;
    bool m_isServerChosen = false;
    bool m_isStoreFaultReported = false;
    bool m_isRunGivenUp = false; ///< the user has confirmed that closing ends the run
    bool m_isAskingToSave = false; ///< a window with unsaved work was requested to close; this one closes after it
    bool m_isClosing = false; ///< close as soon as the server has ended
};

} // namespace console
