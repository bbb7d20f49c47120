// What a window of the console is. A new window needs one more entry, in the file of entries of its room, and a place
// in windowentries.cpp.
#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

class QSettings;
class QWidget;

namespace console {

class CommandPanel;
class HistogramWindowUpdater;
class OpenWindows;
class ServerController;
class ServerHistograms;
class StatusPoller;

/// Translation context of the menu Windows and its windows.
struct Windows {
    Q_DECLARE_TR_FUNCTIONS(Windows)
};

/// The console's objects for a window.
struct WindowContext {
    ServerController& controller; ///< the manager and the state of the server
    QWidget* parent;
    CommandPanel& commandPanel; ///< receives texts for the command line
    OpenWindows& windows; ///< for windows that open others
    QSettings& store; ///< the settings
    ServerHistograms& histograms; ///< the server's list of histograms
    HistogramWindowUpdater& windowUpdater; ///< for windows that open those of histograms
    StatusPoller& poller; ///< polls "stat" for all windows
};

struct WindowEntry {
    QString id; ///< also the name of the tour's screenshots: letters and hyphens
    QString menuText; ///< with its mnemonic
    QString title;
    QString help;
    /// Creates the window, which deletes itself when it is closed. The server is connected if the window needs one.
    std::function<QWidget*(const WindowContext&)> open = {};
    /// Why the window cannot be opened although the server is connected, as a text for users; empty if it can.
    std::function<QString(const ServerController&)> refusal = {};
    bool needsServer = true;
    QString shortcut = {}; ///< the first nine have Ctrl and their number by default
    QString histogram = {}; ///< the server's histogram that the window needs
};

} // namespace console
