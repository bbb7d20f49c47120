// A small host with the synchronous class Tarnis: starts the simulated server, sends three commands, shows the replies,
// stops the server and quits.
//
// usage: minimal [PROGRAM]        PROGRAM: the local server, tarnis-simserver on the path by default
#include <tarnis/foundation/sysmsg.h>
#include <tarnis/server/tarnis.h>

#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    // An absolute path: the server runs in its own folder.
    const QString program = argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath()
                                     : QStandardPaths::findExecutable("tarnis-simserver");

    const QByteArray prompt = "> "; // must outlive every session
    Tarnis server(&prompt, nullptr);
    const QStringList commands = { "setting rate:2000", "start", "stat" };
    int answered = 0;
    bool failed = false;

    QObject::connect(&_g_sysMsg, &SysMsg::onSysMsg, &application,
        [](const QString& text) { std::fprintf(stderr, "%s\n", qPrintable(text)); });

    QObject::connect(&server, &Tarnis::onCmdReply, &application,
        [&](const QString& name, const QString& command, const QByteArray& reply) {
            std::printf("%s: %s\n%s\n", qPrintable(name), qPrintable(command), reply.constData());
            if (++answered == commands.size())
                server.Shutdown();
        });

    // Queued: the status changes inside the manager's own calls, and a host acts on it afterwards.
    QObject::connect(
        &server, &Tarnis::StatusChanged, &application,
        [&](Tarnis::SERVER_STATUS status) {
            if (status == Tarnis::SERVER_CONNECTED) {
                for (const QString& command : commands)
                    server.SendCmd("control", "reply", command, false);
            } else if (status == Tarnis::SERVER_ERROR) {
                failed = true;
                server.Shutdown();
            } else if (status == Tarnis::IDLE) {
                application.quit();
            }
        },
        Qt::QueuedConnection);

    if (!server.Run(&program))
        return 1;
    application.exec();
    return !failed && answered == commands.size() ? 0 : 1;
}
