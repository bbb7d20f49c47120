#include "app/quitsignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace console {

namespace {

constexpr std::array quitSignals { SIGINT, SIGTERM, SIGHUP };
std::array<int, 2> pipeEnds { -1, -1 }; // written by the handler, read in the event loop

extern "C" void onQuitSignal(int /*signal*/)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[0], &byte, 1); // an error cannot be handled here
}

} // namespace

QuitSignals::QuitSignals(QObject& context, const std::function<void()>& quit)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pipeEnds.data()) != 0)
        return;
    auto* notifier = new QSocketNotifier(pipeEnds[1], QSocketNotifier::Read, &context);
    QObject::connect(notifier, &QSocketNotifier::activated, &context, [quit] {
        char byte = 0;
        if (::read(pipeEnds[1], &byte, 1) == 1)
            quit();
    });
    for (const int number : quitSignals)
        std::signal(number, onQuitSignal);
}

QuitSignals::~QuitSignals()
{
    for (const int number : quitSignals)
        std::signal(number, SIG_DFL);
    // The descriptors remain open for the notifier, which its parent deletes; the process ends soon after.
}

} // namespace console
