// Answers modal windows while exec() blocks a test, and closes those that no step expects.
#pragma once

#include <QList>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

namespace tarnis::testing {

/// Exists around the call that opens modal windows. Each new window gets the next of the answers, which must close it.
/// A window without an answer, and one that its answer left open, is closed and counted as a fault. A window that was
/// open before is ignored.
class ModalWatchdog {
public:
    using Answer = std::function<void(QWidget&)>;

    explicit ModalWatchdog(QList<Answer> answers = {});

    /// Number of answered windows.
    qsizetype answered() const { return m_next; }
    /// True if every answer was used and no window was closed by force.
    bool isContent() const { return m_next == m_answers.size() && m_faults == 0; }

private:
    void check();

    QList<Answer> m_answers;
    QPointer<QWidget> m_openBefore;
    qsizetype m_next = 0;
    int m_faults = 0;
    int m_checks = 0;
    QList<QPointer<QWidget>> m_answeredWindows;
    QTimer m_timer;
};

/// Enters a path in a file dialog and presses its Save or Open button.
ModalWatchdog::Answer acceptFile(const QString& path);
/// Enters the path of the file to print to in a print dialog, and presses Print.
ModalWatchdog::Answer acceptPrint(const QString& path);
/// Presses Yes in a message box.
ModalWatchdog::Answer agree();
/// Closes a dialog like the Escape key.
ModalWatchdog::Answer reject();

} // namespace tarnis::testing
