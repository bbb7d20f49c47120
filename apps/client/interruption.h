// Delivers SIGINT, SIGTERM and SIGHUP as a Qt signal, for commands that end on them.
#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace cli {

/// Only one instance: it replaces the process's handlers until it is destroyed.
class Interruption : public QObject {
    Q_OBJECT
public:
    Interruption();
    ~Interruption() override;

    bool isRequested() const { return m_requested; }

Q_SIGNALS:
    void requested(); ///< emitted for the first signal

private:
    QSocketNotifier m_notifier;
    bool m_requested = false;
};

} // namespace cli
