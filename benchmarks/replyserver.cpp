#include "replyserver.h"

#include <QByteArray>
#include <QtEndian>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <sstream>

namespace tarnis::bench {

namespace {

std::atomic<Clock::rep> firstByteTicks { 0 };

void noteFirstByte()
{
    firstByteTicks = Clock::now().time_since_epoch().count();
}

sockaddr_in loopback(quint16 port)
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// One buffer for all replies, touched once, so that the server's page faults are in no measurement.
const std::string& content()
{
    static const std::string bytes(std::size_t(65) << 20, 'x');
    return bytes;
}

// In one message, like a server that has its reply ready.
void answerBinary(int client, std::size_t size)
{
    const std::string reply = lengthField(size) + content().substr(0, size) + "OK:\n> ";
    noteFirstByte();
    sendAll(client, reply.data(), reply.size());
}

void answerText(int client, std::size_t size, std::size_t chunk)
{
    content();
    noteFirstByte();
    for (std::size_t sent = 0; sent < size; sent += chunk)
        sendAll(client, content().data(), std::min(chunk, size - sent));
    sendAll(client, "> ", 2);
}

} // namespace

bool sendAll(int socket, const char* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t sent = ::send(socket, data, size, MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        data += sent;
        size -= std::size_t(sent);
    }
    return true;
}

int connectTo(quint16 port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        std::abort();
    return fd;
}

std::string lengthField(std::size_t length)
{
    std::string field(4, '\0');
    qToLittleEndian(qint32(length), field.data());
    return field;
}

ReplyServer::ReplyServer()
    : m_listener(::socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), size);
    ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size);
    ::listen(m_listener, SOMAXCONN);
    m_port = ntohs(address.sin_port);
    m_acceptor = std::jthread([this] { accept(); });
}

ReplyServer::~ReplyServer()
{
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    ::close(m_listener);
}

Clock::time_point ReplyServer::firstByte()
{
    return Clock::time_point(Clock::duration(firstByteTicks));
}

void ReplyServer::accept()
{
    std::vector<std::jthread> threads;
    for (;;) {
        const int client = ::accept(m_listener, nullptr, nullptr);
        if (client < 0)
            return;
        threads.emplace_back(serve, client);
    }
}

void ReplyServer::serve(int client)
{
    const int on = 1;
    ::setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sendAll(client, "> ", 2);
    std::string line;
    char byte = 0;
    while (::recv(client, &byte, 1, 0) == 1) {
        if (byte != '\n') {
            line += byte;
            continue;
        }
        std::istringstream words(line);
        line.clear();
        std::string form;
        std::size_t size = 0;
        std::size_t chunk = 0;
        words >> form >> size >> chunk;
        if (form == "binary")
            answerBinary(client, size);
        else
            answerText(client, size, chunk);
    }
    ::close(client);
}

} // namespace tarnis::bench
