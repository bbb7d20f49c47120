// Step 5: reports a lost server, and starts it again with one click.
#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/server/tarnis.h>
#include <tarnis/server/tarnissession.h>

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace {

/// Reports a lost connection to the host, instead of showing a message box.
class LiveWindow : public Graph1DDialog {
public:
    LiveWindow(TarnisSession* where, QWidget* parent, std::function<void(const QString&)> lost)
        : Graph1DDialog(
            where, "Arrival times", "Channel", 0.0, 16384.0, 1, 0, "Module", {}, "hist1d time 0 3", 0, 3, parent)
        , m_lost(std::move(lost))
    {
    }
    void error(int, const QString& text) override
    {
        if (session) // a closed window has none
            m_lost("The connection broke: " + text + ".");
    }

private:
    std::function<void(const QString&)> m_lost;
};

class MainWindow : public QWidget {
public:
    explicit MainWindow(Tarnis& server)
        : m_server(server)
        , m_text(new QLabel("Starting the server."))
        , m_button(new QPushButton("&Restart"))
    {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(m_text);
        layout->addWidget(m_button);
        m_text->setWordWrap(true);
        m_button->setEnabled(false);
        resize(400, 100);
        connect(m_button, &QPushButton::clicked, this, [this] { restart(); });
        // Queued: the status changes inside the manager's own calls, and a host acts on it afterwards.
        connect(
            &server, &Tarnis::StatusChanged, this, [this](Tarnis::SERVER_STATUS status) { onStatus(status); },
            Qt::QueuedConnection);
    }

    void run()
    {
        if (!m_server.Run(nullptr))
            onLost("The server could not be started.");
    }

private:
    void onStatus(Tarnis::SERVER_STATUS status)
    {
        m_status = status;
        if (status == Tarnis::SERVER_CONNECTED) {
            m_server.SendCmd("control", "run", "start", false);
            openWindow();
        } else if (m_isRestarting) {
            if (status == Tarnis::IDLE) { // the old server has ended
                m_isRestarting = false;
                run();
            }
        } else if (status == Tarnis::IDLE) {
            onLost("The server has ended by itself.");
        } else if (status == Tarnis::SERVER_ERROR) {
            onLost("The server does not answer any more.");
        }
    }

    void openWindow()
    {
        const std::unique_ptr<TarnisSession> where(m_server.NewTarnisSession(nullptr));
        m_window = new LiveWindow(where.get(), this, [this](const QString& text) { onLost(text); });
        m_window->show();
        m_text->setText("The server is running.");
        m_button->setEnabled(false);
    }

    /// The live window stays open with its data.
    void onLost(const QString& text)
    {
        m_text->setText(text + " Press Restart to go on.");
        m_button->setEnabled(true);
    }

    void restart()
    {
        m_isRestarting = true;
        m_button->setEnabled(false);
        m_text->setText("Starting the server again.");
        if (m_window)
            m_window->close(); // its session has ended: a new window gets a new one
        // In IDLE a shutdown does nothing: sessions of the lost server would be used for the next one.
        if (m_status == Tarnis::IDLE)
            m_server.SetStatus(Tarnis::SERVER_ERROR);
        m_server.Shutdown(); // IDLE follows when the server has ended
    }

    Tarnis& m_server;
    Tarnis::SERVER_STATUS m_status = Tarnis::IDLE;
    bool m_isRestarting = false;
    QLabel* m_text;
    QPushButton* m_button;
    QPointer<LiveWindow> m_window;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QString program =
        argc > 1 ? QFileInfo(application.arguments().at(1)).absoluteFilePath() : QStringLiteral("tarnis-simserver");
    const QByteArray prompt = "> ";
    Tarnis server(&prompt, nullptr);
    server.SetProcessPath(program);
    MainWindow window(server);
    window.show();
    window.run();
    const int result = application.exec();
    server.Shutdown();
    return result;
}
