// Detects requests to end the process: "exit" or the end of standard input, and the signals of a terminal or a service
// manager.
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

#include <optional>

namespace simserver {

class ExitRequests : public QObject {
    Q_OBJECT
public:
    /// Monitors signals, and standard input if `useStandardInput`. One object per process.
    ExitRequests(bool useStandardInput, QObject* parent = nullptr);
    ~ExitRequests() override;
    ExitRequests(const ExitRequests&) = delete;
    ExitRequests& operator=(const ExitRequests&) = delete;

Q_SIGNALS:
    void requested(const QString& reason);

private:
    void readStandardInput();

    std::optional<QSocketNotifier> m_input;
    std::optional<QSocketNotifier> m_signal;
    QByteArray m_line; ///< the incomplete line
};

/// Appends `bytes` to `line`, the incomplete line. True if a line is "exit", with or without line end. `line` keeps the
/// rest.
bool takesExit(QByteArray& line, const QByteArray& bytes);

} // namespace simserver
