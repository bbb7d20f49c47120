// The smallest host: starts the server, asks it one thing, stops it.
#include <tarnis/server/tarnis.h>

#include <QApplication>
#include <QDebug>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QByteArray prompt = "> ";
    Tarnis server(&prompt, nullptr);
    const QString program = QStringLiteral("tarnis-simserver");

    QObject::connect(&server, &Tarnis::onCmdReply, [&](const QString& name, const QString&, const QByteArray& reply) {
        qInfo().noquote() << name << reply;
        server.Shutdown();
    });
    QObject::connect(
        &server, &Tarnis::StatusChanged, &application,
        [&](Tarnis::SERVER_STATUS status) {
            if (status == Tarnis::SERVER_CONNECTED)
                server.SendCmd("control", "statistics", "stat", false);
            else if (status == Tarnis::IDLE)
                application.quit();
        },
        Qt::QueuedConnection);
    return server.Run(&program) ? application.exec() : 1;
}
