// Ctrl+C in the terminal, and the end of the login session, close the console as its window's button does.
#pragma once

class QWidget;

namespace console {

/// While it lives, SIGINT, SIGTERM and SIGHUP close the window, so that the local server is shut down too. One at a
/// time.
class QuitSignals {
public:
    explicit QuitSignals(QWidget& window);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;
};

} // namespace console
