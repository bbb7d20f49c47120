// A program without windows: starts the server and a run, prints the run's state three times, stops the server. It
// links Qt Core and Network only.
//
// usage: headless [PROGRAM]        PROGRAM: the local server, tarnis-simserver on the path by default
#include <tarnis/foundation/message.h>
#include <tarnis/server/tarnis.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdio>

namespace {

/// The lines of a reply that begin with one of the names.
void printLines(const QByteArray& reply, std::initializer_list<const char*> names)
{
    for (const QByteArray& line : reply.split('\n')) {
        for (const char* const name : names) {
            if (line.startsWith(name))
                std::printf("%s\n", line.constData());
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    // An absolute path: the server runs in its own folder.
    const QString program = argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath()
                                     : QStandardPaths::findExecutable("tarnis-simserver");

    // Replaces the message boxes of a program with windows.
    tarnis::setMessageHandler([](const tarnis::Message& message) {
        std::fprintf(stderr, "headless: %s\n", qPrintable(message.text));
        return tarnis::MessageButton::Ok;
    });

    const QByteArray prompt = "> "; // must outlive every session
    Tarnis server(&prompt, nullptr);
    int looks = 0;

    QObject::connect(&server, &Tarnis::onCmdReply, &application,
        [&](const QString& name, const QString& command, const QByteArray& reply) {
            if (reply.startsWith("NG:"))
                std::fprintf(stderr, "headless: %s: %s\n", qPrintable(command), reply.constData());
            if (name == "look") {
                printLines(reply, { "state:", "events:" });
                ++looks;
            }
            if (looks < 3)
                server.SendCmd("control", "look", "stat", false);
            else
                server.Shutdown();
        });
    // Queued: the status changes inside the manager's own calls, and a host acts on it afterwards.
    QObject::connect(
        &server, &Tarnis::StatusChanged, &application,
        [&](Tarnis::SERVER_STATUS status) {
            if (status == Tarnis::SERVER_CONNECTED)
                server.SendCmd("control", "run", "start", false);
            else if (status == Tarnis::SERVER_ERROR)
                server.Shutdown();
            else if (status == Tarnis::IDLE)
                application.exit(looks == 3 ? 0 : 1);
        },
        Qt::QueuedConnection);

    if (!server.Run(&program)) {
        std::fprintf(stderr, "headless: cannot start '%s'\n", qPrintable(program));
        return 1;
    }
    return application.exec();
}
