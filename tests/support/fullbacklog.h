// A listener on 127.0.0.1 whose queue is full: the next client keeps trying to connect until a client is let in.
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
    bool isFull() const; ///< a connection attempt of its own has been left waiting
    /// Until a client stands in the system's table as trying to connect; false when none comes.
    bool waitForAttempt() const;
    /// Takes all who wait from the queue, on a thread of its own, and says nothing to them.
    void letInLater();

private:
    int m_listener = -1;
    quint16 m_port = 0;
    std::vector<int> m_fillers;
    std::jthread m_door;
};

} // namespace tarnis::testing
