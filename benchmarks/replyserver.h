// A server thread that sends replies as fast as the socket accepts them and records the time of the first byte.
#pragma once

#include <QtGlobal>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace tarnis::bench {

using Clock = std::chrono::steady_clock;

/// Sends all bytes on a blocking socket; false if the peer has closed the connection.
bool sendAll(int socket, const char* data, std::size_t size);
/// A blocking connection to 127.0.0.1.
int connectTo(quint16 port);
std::string lengthField(std::size_t length);

/// Answers "binary BYTES" and "text BYTES CHUNK" to any number of clients; greets with the prompt "> ".
class ReplyServer {
public:
    ReplyServer();
    ~ReplyServer();
    ReplyServer(const ReplyServer&) = delete;
    ReplyServer& operator=(const ReplyServer&) = delete;

    quint16 port() const { return m_port; }
    /// Time at which the first byte of the last reply was passed to the system.
    static Clock::time_point firstByte();

private:
    void accept();
    static void serve(int client);

    int m_listener = -1;
    quint16 m_port = 0;
    std::jthread m_acceptor;
};

} // namespace tarnis::bench
