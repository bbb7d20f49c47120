// An instrument's window: a server, its run, its settings, two live plots, a line for commands and a log.
#pragma once

#include <tarnis/client/server.h>
#include <tarnis/client/settingsmodel.h>

#include <QMainWindow>

class QAction;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace tarnis {
class LiveWidget;
}

class Instrument : public QMainWindow {
public:
    explicit Instrument(const tarnis::ServerOptions& options = {}, const tarnis::RequestOptions& request = {});

    /// Starts a server program, or connects to HOST:PORT.
    void open(const QString& target);
    /// Sends a command and logs it with its result.
    void send(const QString& command);

private:
    void addActions();
    void addPlots();
    void addSettings();
    void addLog();
    void follow(tarnis::LiveWidget& widget, const QString& command);
    void showState();
    void log(const QString& text);

    tarnis::RequestOptions m_request; // limits of all requests
    tarnis::Server m_server;
    tarnis::SettingsModel m_settings;
    QLabel* m_state;
    QLabel* m_run;
    QPlainTextEdit* m_log;
    QLineEdit* m_line;
    QList<QAction*> m_commands; // enabled for a connected server
    QAction* m_restart = nullptr;
    QAction* m_cancel = nullptr;
};
