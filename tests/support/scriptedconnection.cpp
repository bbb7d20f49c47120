#include "support/scriptedconnection_p.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <optional>
#include <sstream>

namespace tarnis::testing {

namespace {

constexpr long apartMicroseconds = 50; ///< time between two checks whether the client has read a piece

quint16 portOf(int socket, decltype(::getsockname)* end)
{
    sockaddr_in address {};
    socklen_t size = sizeof address;
    return end(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 ? ntohs(address.sin_port) : quint16(0);
}

// Bytes that have reached the client's socket but not the client, from the system's table of connections; empty if
// there is no such table or the connection is no longer listed.
std::optional<unsigned> unreadByClient(quint16 clientPort, quint16 serverPort)
{
    std::array<char, 32> ends {};
    std::snprintf(ends.data(), ends.size(), "0100007F:%04X 0100007F:%04X", clientPort, serverPort);
    std::ifstream table("/proc/net/tcp");
    for (std::string line; std::getline(table, line);) {
        if (line.find(ends.data()) == std::string::npos)
            continue;
        // sl local remote st tx_queue:rx_queue ...
        std::istringstream fields(line);
        std::string skipped;
        std::string queues;
        fields >> skipped >> skipped >> skipped >> skipped >> queues;
        const std::size_t colon = queues.find(':');
        if (colon != std::string::npos)
            return unsigned(std::stoul(queues.substr(colon + 1), nullptr, 16));
    }
    return std::nullopt;
}

std::string littleEndian(long long length)
{
    const auto bits = std::uint32_t(std::int32_t(length));
    std::string field;
    for (int shift = 0; shift < 32; shift += 8)
        field += char((bits >> shift) & 0xFF);
    return field;
}

} // namespace

WakeUp::WakeUp()
    : m_event(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

WakeUp::~WakeUp()
{
    ::close(m_event);
}

void WakeUp::signal() const
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(m_event, &one, sizeof one);
}

void WakeUp::waitWith(int socket, bool forWriting, long microseconds) const
{
    std::array<pollfd, 2> fds { pollfd { m_event, POLLIN, 0 },
        pollfd { socket, short(forWriting ? POLLIN | POLLOUT : POLLIN), 0 } };
    const timespec limit { microseconds / 1000000, microseconds % 1000000 * 1000 };
    ::ppoll(fds.data(), fds.size(), microseconds < 0 ? nullptr : &limit, nullptr);
    std::uint64_t count = 0;
    if (fds[0].revents) [[maybe_unused]]
        const auto taken = ::read(m_event, &count, sizeof count);
}

ScriptedConnection::ScriptedConnection(SharedState& shared, int socket, Script script)
    : m_shared(shared)
    , m_socket(socket)
    , m_script(std::move(script))
{
    const int on = 1;
    ::setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    m_thread = std::jthread([this](const std::stop_token& stop) {
        m_stop = stop;
        play();
    });
}

ScriptedConnection::~ScriptedConnection()
{
    m_thread.request_stop();
    m_wakeUp.signal();
}

void ScriptedConnection::play()
{
    if (play(m_script) == Flow::Continue)
        waitUntil([] { return false; });
    pump(); // reads the last bytes of the client; unread bytes would also turn an orderly close into a reset
    ::close(m_socket);
    const std::lock_guard lock(m_shared.mutex);
    isOpen = false;
}

ScriptedConnection::Flow ScriptedConnection::play(const Script& script)
{
    for (const Step& step : script) {
        if (play(step) == Flow::Stop)
            return Flow::Stop;
    }
    return Flow::Continue;
}

ScriptedConnection::Flow ScriptedConnection::play(const Step& step)
{
    switch (step.kind) {
    case Step::Kind::Text:
    case Step::Kind::Binary:
    case Step::Kind::Raw:
        return sendPieces(step);
    case Step::Kind::Expect:
        return expect(step.bytes);
    case Step::Kind::Hold:
        return hold(step.bytes);
    case Step::Kind::Silence:
        return waitUntil([] { return false; });
    case Step::Kind::Reset: {
        const linger abortive { 1, 0 };
        ::setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &abortive, sizeof abortive);
        return Flow::Stop;
    }
    case Step::Kind::Drop:
        return Flow::Stop;
    case Step::Kind::Serve:
        return serve();
    }
    return Flow::Stop;
}

std::string ScriptedConnection::bytesOf(const Step& step) const
{
    switch (step.kind) {
    case Step::Kind::Text:
        return step.bytes + m_shared.prompt;
    case Step::Kind::Binary:
        return littleEndian(step.announced) + step.bytes + step.behind + m_shared.prompt;
    default:
        return step.bytes;
    }
}

ScriptedConnection::Flow ScriptedConnection::sendPieces(const Step& step)
{
    const std::string bytes = bytesOf(step);
    std::vector<std::size_t> ends = step.cuts;
    if (step.chunkSize > 0) {
        for (std::size_t end = step.chunkSize; end < bytes.size(); end += step.chunkSize)
            ends.push_back(end);
    }
    ends.push_back(bytes.size());
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        if (end <= begin)
            continue;
        while (begin > 0 && !m_stop.stop_requested() && !clientHasTaken()) {
            m_wakeUp.waitWith(m_socket, false, apartMicroseconds);
            pump();
            // Otherwise its bytes would be waited for until the server ends.
            const std::lock_guard lock(m_shared.mutex);
            if (clientClosed)
                return Flow::Stop;
        }
        if (sendAll(std::string_view(bytes).substr(begin, end - begin)) == Flow::Stop)
            return Flow::Stop;
        begin = end;
    }
    return Flow::Continue;
}

ScriptedConnection::Flow ScriptedConnection::sendAll(std::string_view bytes)
{
    while (!bytes.empty()) {
        if (m_stop.stop_requested())
            return Flow::Stop;
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0) {
            bytes.remove_prefix(std::size_t(sent));
        } else if (errno == EAGAIN || errno == EINTR) {
            m_wakeUp.waitWith(m_socket, true);
            pump();
        } else {
            return Flow::Stop;
        }
    }
    return Flow::Continue;
}

bool ScriptedConnection::clientHasTaken() const
{
    int unacknowledged = 0;
    if (::ioctl(m_socket, SIOCOUTQ, &unacknowledged) != 0)
        return true;
    if (unacknowledged > 0)
        return false;
    return unreadByClient(portOf(m_socket, ::getpeername), portOf(m_socket, ::getsockname)).value_or(0) == 0;
}

ScriptedConnection::Flow ScriptedConnection::expect(const std::string& bytes)
{
    if (waitUntil([&] { return received.size() - m_used >= bytes.size(); }) == Flow::Stop)
        return Flow::Stop;
    const std::lock_guard lock(m_shared.mutex);
    if (received.compare(m_used, bytes.size(), bytes) != 0) {
        m_shared.failures.push_back("expected \"" + bytes + "\", received \"" + received.substr(m_used) + '"');
        return Flow::Stop;
    }
    m_used += bytes.size();
    return Flow::Continue;
}

ScriptedConnection::Flow ScriptedConnection::hold(const std::string& name)
{
    {
        const std::lock_guard lock(m_shared.mutex);
        ++m_shared.gates[name].waiting;
    }
    const Flow going = waitUntil([&] {
        Gate& gate = m_shared.gates[name];
        return gate.open || (gate.permits > 0 && gate.permits-- > 0);
    });
    const std::lock_guard lock(m_shared.mutex);
    --m_shared.gates[name].waiting;
    return going;
}

ScriptedConnection::Flow ScriptedConnection::serve()
{
    for (;;) {
        std::string request;
        const Flow going = waitUntil([&] {
            const bool upload = received.compare(m_used, 6, "txfile") == 0;
            const std::size_t end = received.find(upload ? '\x04' : '\n', m_used);
            if (end == std::string::npos)
                return false;
            request = received.substr(m_used, end - m_used);
            m_used = end + 1;
            return true;
        });
        if (going == Flow::Stop || play(answerTo(request)) == Flow::Stop)
            return Flow::Stop;
    }
}

Script ScriptedConnection::answerTo(const std::string& request)
{
    std::function<Script(const std::string&)> responder;
    {
        const std::lock_guard lock(m_shared.mutex);
        const auto known = m_shared.answers.find(request);
        if (known != m_shared.answers.end() && !known->second.empty()) {
            const Script script = known->second.front();
            if (known->second.size() > 1)
                known->second.pop_front();
            return script;
        }
        responder = m_shared.responder;
    }
    return responder ? responder(request) : Script { Step::text({}) };
}

// Returns Over if the client has disconnected or the server ends before the condition holds.
ScriptedConnection::Flow ScriptedConnection::waitUntil(const Condition& condition)
{
    for (;;) {
        pump();
        {
            const std::lock_guard lock(m_shared.mutex);
            if (condition())
                return Flow::Continue;
            if (clientClosed || m_stop.stop_requested())
                return Flow::Stop;
        }
        m_wakeUp.waitWith(m_socket);
    }
}

void ScriptedConnection::pump()
{
    std::array<char, 65536> bytes; // NOLINT: filled by recv
    for (;;) {
        const ssize_t count = ::recv(m_socket, bytes.data(), bytes.size(), 0);
        const std::lock_guard lock(m_shared.mutex);
        if (count > 0) {
            received.append(bytes.data(), std::size_t(count));
            noteRequests();
            continue;
        }
        if (count == 0 || (errno != EAGAIN && errno != EINTR))
            clientClosed = true;
        return;
    }
}

void ScriptedConnection::noteRequests()
{
    for (;;) {
        const bool upload = received.compare(m_noted, 6, "txfile") == 0;
        const std::size_t end = received.find(upload ? '\x04' : '\n', m_noted);
        if (end == std::string::npos)
            return;
        m_shared.requests.push_back(received.substr(m_noted, end - m_noted));
        m_noted = end + 1;
    }
}

} // namespace tarnis::testing
