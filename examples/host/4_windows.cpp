// Step 4: a menu that opens windows on the server: curves, a map, statistics, the server's folders.
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/selectpathdialog.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/foundation/translation.h>
#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <memory>

namespace {

class MainWindow : public QMainWindow {
public:
    explicit MainWindow(Tarnis& server)
        : m_server(server)
    {
        setCentralWidget(new QLabel("Open a window from the menu."));
        resize(400, 200);
        m_windows = menuBar()->addMenu("&Windows");
        m_windows->addAction("&Curves", this, [this] { openCurves(); });
        m_windows->addAction("&Map", this, [this] { openMap(); });
        m_windows->addAction("&Statistics", this, [this] { openStatistics(); });
        m_windows->addAction("&Folder", this, [this] { chooseFolder(); });
        m_windows->setEnabled(false);
        connect(&server, &Tarnis::StatusChanged, this, [this] { m_windows->setEnabled(m_server.IsServerConnected()); });
    }

private:
    /// Host, port and prompt for a window that creates its own session.
    std::unique_ptr<TarnisSession> where()
    {
        return std::unique_ptr<TarnisSession>(m_server.NewTarnisSession(nullptr));
    }

    void openCurves()
    {
        (new Graph1DDialog(where().get(), "Arrival times", "Channel", 0.0, 16384.0, 1, 0, "Module", {},
             "hist1d time 0 3", 0, 3, this))
            ->show();
    }
    void openMap()
    {
        (new Graph2DDialog(where().get(), "Image", "X", 256, 0.0, 256.0, 1, 0, "Y", 256, 0.0, 256.0, 1, 0, {},
             "hist2d image bins:256", this))
            ->show();
    }
    void openStatistics()
    {
        // The only window that takes ownership of the session. It shows itself.
        auto* const window = new StatDialog(m_server.NewTarnisSession(nullptr), "Statistics", "stat", this);
        window->setAttribute(Qt::WA_DeleteOnClose);
    }
    void chooseFolder()
    {
        SelectPathDialog dialog(QString(), where().get(), this);
        connect(&dialog, qOverload<const QString&>(&SelectPathDialog::accepted), this,
            [this](const QString& path) { m_server.SetBasePath(path, false); });
        dialog.exec();
    }

    Tarnis& m_server;
    QMenu* m_windows;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    tarnis::setLanguage(); // the library's texts in the user's language, if there is a catalogue
    const QString program =
        argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath() : QStringLiteral("tarnis-simserver");
    const QByteArray prompt = "> ";
    Tarnis server(&prompt, nullptr);
    MainWindow window(server);
    window.show();
    if (!server.Run(&program))
        return 1;
    const int result = application.exec();
    server.Shutdown();
    return result;
}
