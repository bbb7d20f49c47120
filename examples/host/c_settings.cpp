// Step C: change settings of the server. Only changed settings are sent, and each refusal is reported with its name.
#include <tarnis/client/server.h>
#include <tarnis/client/settingsmodel.h>

#include <QCoreApplication>
#include <QTextStream>

using tarnis::SettingsModel;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString program = argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver");
    QTextStream out(stdout);

    tarnis::Server server;
    SettingsModel settings(*server.client("control")); // also the model of a QTableView
    const auto shutDown = [&](int result) {
        server.shutdown().then(&application, [result](const tarnis::ServerStep&) { QCoreApplication::exit(result); });
    };
    QObject::connect(&settings, &SettingsModel::refused, &application,
        [&](const QString& name, const QString& reason) { out << name << " was refused: " << reason << Qt::endl; });
    QObject::connect(&settings, &SettingsModel::sent, &application, [&](int accepted, int refused) {
        out << accepted << " accepted, " << refused << " refused, rate " << settings.serverValue("rate") << Qt::endl;
        shutDown(0);
    });
    QObject::connect(&settings, &SettingsModel::failed, &application, [&](const QString& reason) {
        out << reason << Qt::endl;
        shutDown(1);
    });

    server.startLocal(program).then(&application, [&](const tarnis::ServerStep& step) {
        if (step.outcome != tarnis::ServerStep::Outcome::Done) {
            out << step.reason << Qt::endl;
            QCoreApplication::exit(1);
            return;
        }
        settings.setValue("rate", "2000");
        settings.setValue("modules", "none");
        settings.send();
    });
    return application.exec();
}
