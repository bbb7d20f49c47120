// Step 1: start the local server and show its status.
#include <tarnis/foundation/sysmsg.h>
#include <tarnis/server/tarnis.h>

#include <QApplication>
#include <QDebug>
#include <QFileInfo>
#include <QLabel>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString program =
        argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath() : QStringLiteral("tarnis-simserver");

    const QByteArray prompt = "> "; // outlives every session
    Tarnis server(&prompt, nullptr);

    QLabel status("IDLE");
    status.resize(300, 60);
    QObject::connect(&server, &Tarnis::StatusChanged, &status,
        [&](Tarnis::SERVER_STATUS value) { status.setText(Tarnis::GetStatusName(value)); });
    QObject::connect(&_g_sysMsg, &SysMsg::onSysMsg, &status, [](const QString& text) { qInfo().noquote() << text; });
    status.show();

    if (!server.Run(&program))
        return 1;
    const int result = application.exec();
    server.Shutdown(); // the destructor waits until the server has ended
    return result;
}
