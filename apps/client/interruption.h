// SIGINT, SIGTERM and SIGHUP as a signal of the event loop, for a command whose end they are.
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace cli {

/// One at a time: it takes over the process's handlers until it is destroyed.
class Interruption : public QObject {
    Q_OBJECT
public:
    Interruption();
    ~Interruption() override;

    bool isRequested() const { return m_requested; }

Q_SIGNALS:
    void requested(); ///< at the first signal

private:
    QSocketNotifier m_notifier;
    bool m_requested = false;
};

} // namespace cli
