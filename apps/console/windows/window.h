// Every window that the console can open, as a list of entries. A new window is one more file with one more entry.
#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <vector>

class QSettings;
class QWidget;

namespace console {

class CommandPanel;
class HistogramWindowUpdater;
class OpenWindows;
class ServerController;
class ServerHistograms;
class CommandChannel;
class StatusPoller;

/// The texts of the menu Windows and of what it opens.
struct Windows {
    Q_DECLARE_TR_FUNCTIONS(Windows)
};

/// What a window gets from the console.
struct WindowContext {
    ServerController& controller; ///< the manager and the state of the server
    CommandChannel& link; ///< the command line's session, for dialogs that clone one
    QWidget* parent;
    CommandPanel& commandPanel; ///< takes what a window offers for the command line
    OpenWindows& windows; ///< for windows that open others
    QSettings& store; ///< what is kept from one run to the next
    ServerHistograms& histograms; ///< what the server has listed
    HistogramWindowUpdater& follower; ///< for windows that open those of histograms
    StatusPoller& poller; ///< asks "stat" for all windows
};

struct WindowEntry {
    QString id; ///< of the tour's pictures: letters and hyphens
    QString menuText; ///< with its mnemonic
    QString title;
    QString help;
    /// Makes the window; it deletes itself when it is closed. The server is connected if the window needs one.
    std::function<QWidget*(const WindowContext&)> open = {};
    /// Why the window cannot be opened now although the server is connected, in words; empty if it can.
    std::function<QString(const ServerController&)> refusal = {};
    bool needsServer = true;
    QString shortcut = {}; ///< the first nine have Ctrl and their number
    QString histogram = {}; ///< of the server, that the window shows: it needs one of this name
};

/// In the order of the menu.
std::vector<WindowEntry> windowEntries();

WindowEntry rowsEntry();
WindowEntry pairsEntry();
WindowEntry singleRowEntry();
WindowEntry spectrumEntry();
WindowEntry mapEntry();
WindowEntry statisticsEntry();
WindowEntry basePathEntry();
WindowEntry serverFilesEntry();
WindowEntry statSnapshotEntry();
WindowEntry settingSnapshotEntry();
WindowEntry modulesEntry();
WindowEntry rateEntry();
WindowEntry histogramsEntry();
WindowEntry runsEntry();
WindowEntry serverTextEntry();
WindowEntry logEntry();

} // namespace console
