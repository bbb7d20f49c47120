// Step 3: a window that shows the arrival times of four modules, once a second.
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QFileInfo>

#include <memory>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString program =
        argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath() : QStringLiteral("tarnis-simserver");
    const QByteArray prompt = "> ";
    Tarnis server(&prompt, nullptr);

    const auto openWindow = [&] {
        // A window creates its own session: this one only provides the address and can be destroyed afterwards.
        const std::unique_ptr<TarnisSession> where(server.NewTarnisSession(nullptr));
        auto* const window = new Graph1DDialog(where.get(), "Arrival times", "Channel", 0.0, 16384.0,
            /*X units a sample*/ 1, /*decimals*/ 0, "Module", /*commands before the polls*/ {}, "hist1d time 0 3",
            /*first row*/ 0, /*last row*/ 3, nullptr);
        window->show(); // deletes itself on close
    };
    QObject::connect(
        &server, &Tarnis::StatusChanged, &application,
        [&](Tarnis::SERVER_STATUS status) {
            if (status != Tarnis::SERVER_CONNECTED)
                return;
            server.SendCmd("control", "run", "start", false);
            openWindow();
        },
        Qt::QueuedConnection);

    if (!server.Run(&program))
        return 1;
    const int result = application.exec();
    server.Shutdown();
    return result;
}
