// The smallest host: starts the server, sends it one command, stops it.
#include <tarnis/client/server.h>

#include <QCoreApplication>
#include <QDebug>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    tarnis::Server server;
    const auto quit = [&] { server.shutdown().then(&application, [](const auto&) { QCoreApplication::quit(); }); };

    server.startLocal("tarnis-simserver").then(&application, [&](const tarnis::ServerStep& step) {
        if (step.outcome != tarnis::ServerStep::Outcome::Done) {
            qWarning().noquote() << step.reason;
            return QCoreApplication::exit(1);
        }
        server.client("control")->request("stat").then(&application, [&](const tarnis::Reply& reply) {
            qInfo().noquote() << (reply.isOk() ? reply.text() : reply.reason);
            quit();
        });
    });
    return application.exec();
}
