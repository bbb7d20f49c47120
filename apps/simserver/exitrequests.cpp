#include "exitrequests.h"

#include <array>
#include <cerrno>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace simserver {

namespace {

constexpr qsizetype longestLine = 4096;

// A signal handler may only write; the event loop monitors the other end of the pair.
std::array<int, 2> signalPair { -1, -1 };

extern "C" void onSignal(int number)
{
    const int saved = errno;
    const char byte = static_cast<char>(number);
    // A full pair means that the end was already requested.
    [[maybe_unused]] const ssize_t written = write(signalPair[0], &byte, 1);
    errno = saved;
}

void catchSignals()
{
    struct sigaction action { };
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : { SIGINT, SIGTERM, SIGHUP })
        sigaction(number, &action, nullptr);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, nullptr);
}

} // namespace

ExitRequests::ExitRequests(bool useStandardInput, QObject* parent)
    : QObject(parent)
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, signalPair.data()) == 0) {
        m_signal.emplace(signalPair[1], QSocketNotifier::Read);
        connect(&*m_signal, &QSocketNotifier::activated, this, [this] {
            m_signal->setEnabled(false);
            Q_EMIT requested(QStringLiteral("signal"));
        });
        catchSignals();
    }
    if (useStandardInput) {
        m_input.emplace(STDIN_FILENO, QSocketNotifier::Read);
        connect(&*m_input, &QSocketNotifier::activated, this, &ExitRequests::readStandardInput);
    }
}

ExitRequests::~ExitRequests()
{
    for (const int number : { SIGINT, SIGTERM, SIGHUP })
        std::signal(number, SIG_DFL);
    m_signal.reset();
    for (const int descriptor : signalPair)
        close(descriptor);
}

void ExitRequests::readStandardInput()
{
    std::array<char, 4096> buffer {};
    const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    const bool ended = count <= 0;
    if (!ended && !takesExit(m_line, QByteArray(buffer.data(), static_cast<qsizetype>(count))))
        return;
    m_input->setEnabled(false);
    Q_EMIT requested(ended ? QStringLiteral("end of standard input") : QStringLiteral("exit"));
}

bool takesExit(QByteArray& line, const QByteArray& bytes)
{
    line += bytes;
    qsizetype feed = line.indexOf('\n');
    while (feed >= 0) {
        if (line.first(feed).trimmed() == "exit")
            return true;
        line.remove(0, feed + 1);
        feed = line.indexOf('\n');
    }
    if (line.size() > longestLine)
        line.truncate(longestLine); // such a line cannot become "exit"
    return line.trimmed() == "exit";
}

} // namespace simserver
