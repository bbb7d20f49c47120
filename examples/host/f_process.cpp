// Step F: the parts that Server joins, one by one: a server program and a connection to it.
#include <tarnis/client/client.h>
#include <tarnis/client/serverprocess.h>

#include <QCoreApplication>
#include <QTextStream>

using namespace std::chrono_literals;
using tarnis::Client;
using tarnis::ServerProcess;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString program = argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver");
    QTextStream out(stdout);

    ServerProcess process; // declared first, so that the program is requested to exit after the client was destroyed
    tarnis::ServerProcessOptions start;
    start.arguments = QStringList { "--seed", "1" };
    start.startTimeout = 0s; // no limit; the host may call kill()
    tarnis::ClientOptions options;
    options.reconnect.enabled = false; // a lost connection is Failed at once
    Client client(options);

    QObject::connect(&process, &ServerProcess::started, &application, [&] { out << "started" << Qt::endl; });
    QObject::connect(&process, &ServerProcess::portKnown, &application, [&](quint16 port) {
        out << "its port is known" << Qt::endl;
        client.connectTo("localhost", port);
        // Sent when the server has greeted. Before connectTo() it would have failed at once.
        client.request("stat").then(&application, [&](const tarnis::Reply& reply) {
            out << (reply.isOk() ? reply.text() : reply.reason) << Qt::endl;
            client.close();
            process.stop();
        });
    });
    // Emitted exactly once for each start, even if the program is missing, exits early or crashes.
    QObject::connect(&process, &ServerProcess::ended, &application, [&](ServerProcess::End end, const QString& reason) {
        out << reason << Qt::endl;
        QCoreApplication::exit(end == ServerProcess::End::Stopped ? 0 : 1);
    });
    process.start(program, start);
    return application.exec();
}
