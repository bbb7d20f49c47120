#include "interruption.h"

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace cli {

namespace {

// A handler may only call async-signal-safe functions: it writes a byte, which the event loop reads.
std::array<int, 2> ends { -1, -1 };

constexpr std::array endingSignals { SIGINT, SIGTERM, SIGHUP };

extern "C" void noteSignal(int /*signal*/)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(ends[1], &byte, 1);
}

int makePipe()
{
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        qFatal("no pipe");
    return ends[0];
}

} // namespace

Interruption::Interruption()
    : m_notifier(makePipe(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier.setEnabled(false);
        m_requested = true;
        Q_EMIT requested();
    });
    for (const int signal : endingSignals) {
        const bool isIgnored = std::signal(signal, noteSignal) == SIG_IGN;
        // "nohup tarnis watch" outlives its terminal. A shell ignores SIGINT for background programs, which the user
        // has not requested.
        if (isIgnored && signal == SIGHUP)
            std::signal(signal, SIG_IGN);
    }
}

Interruption::~Interruption()
{
    for (const int signal : endingSignals)
        std::signal(signal, SIG_DFL);
    m_notifier.setEnabled(false);
    for (int& end : ends)
        ::close(end);
}

} // namespace cli
