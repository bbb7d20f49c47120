// A listener on 127.0.0.1 with a full backlog: the next client keeps trying to connect until one is accepted.
#pragma once

#include <QtGlobal>

#include <thread>
#include <vector>

namespace tarnis::testing {

class FullBacklog {
public:
    FullBacklog();
    ~FullBacklog();
    FullBacklog(const FullBacklog&) = delete;
    FullBacklog& operator=(const FullBacklog&) = delete;

    quint16 port() const;
    bool isFull() const; ///< a connection attempt of this object is left waiting
    /// Waits until the system's table contains a connecting client; false if none appears.
    bool waitForAttempt() const;
    /// Accepts all waiting clients on a separate thread, and sends nothing to them.
    void letInLater();

private:
    int m_listener = -1;
    quint16 m_port = 0;
    std::vector<int> m_fillers;
    std::jthread m_door;
};

} // namespace tarnis::testing
