// Step A: start the local server, send commands, stop it. No window, no message box, no thread.
#include <tarnis/client/server.h>

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString program = argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver");
    QTextStream out(stdout);
    int refused = 0;

    tarnis::Server server;
    const auto shutDown = [&] {
        server.shutdown().then(&application, [&](const tarnis::ServerStep&) { QCoreApplication::exit(refused); });
    };
    const auto show = [&](const tarnis::Reply& reply) {
        if (!reply.isOk()) {
            ++refused;
            out << "not done: " << reply.reason << Qt::endl;
            return;
        }
        out << reply.text() << Qt::endl;
    };

    server.startLocal(program).then(&application, [&](const tarnis::ServerStep& step) {
        if (step.outcome != tarnis::ServerStep::Outcome::Done) {
            out << step.reason << Qt::endl;
            QCoreApplication::exit(1);
            return;
        }
        tarnis::Client* const control = server.client("control");
        control->request("setting rate:2000").then(&application, show);
        control->request("start").then(&application, show);
        control->request("stat").then(&application, [&, show](const tarnis::Reply& reply) {
            show(reply);
            shutDown();
        });
    });
    return application.exec();
}
