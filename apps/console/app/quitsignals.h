// Ctrl+C in the terminal, and the end of the login session, close the console as its window's button does.
#pragma once

#include <QObject>

#include <functional>

namespace console {

/// While it exists, SIGINT, SIGTERM and SIGHUP call `quit` in the event loop, so that the local server is shut down
/// too. Only one instance at a time.
class QuitSignals {
public:
    /// `quit` is no longer called after `context` was destroyed.
    QuitSignals(QObject& context, const std::function<void()>& quit);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;
};

} // namespace console
