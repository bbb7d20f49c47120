#include "support/fullbacklog.h"

#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QString>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace tarnis::testing {

namespace {

constexpr int refusalMs = 200; ///< on the loopback interface, a client that is not accepted at once is not accepted at
                               ///< all

// Clients that have sent their first segment and got no answer (state 2, SYN_SENT).
int attempts(quint16 port)
{
    const std::string pattern = QString::asprintf(" 0100007F:%04X 02 ", port).toStdString();
    std::ifstream table("/proc/net/tcp");
    int count = 0;
    for (std::string line; std::getline(table, line);)
        count += line.find(pattern) != std::string::npos ? 1 : 0;
    return count;
}

} // namespace

FullBacklog::FullBacklog()
    : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    ::bind(m_listener, generic, size);
    ::getsockname(m_listener, generic, &size);
    ::listen(m_listener, 0);
    m_port = ntohs(address.sin_port);
    for (bool full = false; !full && m_fillers.size() < 8;) {
        const int client = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        m_fillers.push_back(client);
        ::connect(client, generic, size);
        pollfd writable { client, POLLOUT, 0 };
        full = ::poll(&writable, 1, refusalMs) == 0;
    }
}

FullBacklog::~FullBacklog()
{
    m_door = {};
    for (const int client : m_fillers)
        ::close(client);
    ::close(m_listener);
}

quint16 FullBacklog::port() const
{
    return m_port;
}

bool FullBacklog::isFull() const
{
    return attempts(m_port) == 1;
}

bool FullBacklog::waitForAttempt() const
{
    return eventually([this] { return attempts(m_port) == 2; });
}

void FullBacklog::letInLater()
{
    m_door = std::jthread([this](const std::stop_token& stop) {
        std::vector<int> guests;
        while (!stop.stop_requested()) {
            pollfd readable { m_listener, POLLIN, 0 };
            if (::poll(&readable, 1, 50) == 1)
                guests.push_back(::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC));
        }
        for (const int guest : guests)
            ::close(guest);
    });
}

} // namespace tarnis::testing
