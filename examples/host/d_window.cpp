// Step D: a window with a live plot, its state, and a button that starts a lost server again.
#include <tarnis/client/histogrampoller.h>
#include <tarnis/client/server.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace std::chrono_literals;
using tarnis::Server;

namespace {

class MainWindow : public QWidget {
public:
    explicit MainWindow(Server& server)
        : m_text(new QLabel("Starting the server."))
        , m_button(new QPushButton("&Restart"))
        , m_plot(new MultiVectorGraphWidget(this))
    {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(m_plot, 1);
        layout->addWidget(m_text);
        layout->addWidget(m_button);
        m_text->setWordWrap(true);
        m_button->setEnabled(false);
        resize(600, 400);
        m_plot->init("Arrival time", "Counts", 0.0, 0.0, true, true);
        connect(m_button, &QPushButton::clicked, &server, [&server] { server.restart(); });
        connect(&server, &Server::stateChanged, this,
            [this, &server](Server::State state, const QString& reason) { showState(server, state, reason); });
        follow(*server.client("plots"));
    }

private:
    void showState(Server& server, Server::State state, const QString& reason)
    {
        const bool isLost = state == Server::State::Failed;
        m_button->setEnabled(isLost);
        if (isLost)
            m_text->setText(reason + " Press Restart to go on.");
        else
            m_text->setText(state == Server::State::Connected ? "The server is running." : "Connecting. " + reason);
        if (state == Server::State::Connected)
            server.client("control")->request("start");
    }

    void follow(tarnis::Client& client)
    {
        const QString command = "hist1d total bins:1024";
        tarnis::PollOptions options;
        options.interval = 200ms;
        m_poller =
            tarnis::HistogramPoller::shared(client, command, tarnis::HistogramFormat::ofCommand(command), options);
        connect(
            m_poller.get(), &tarnis::HistogramPoller::updated, this, [this](const tarnis::HistogramReply& histogram) {
                m_plot->initManualX(histogram.x.min, histogram.x.max);
                m_plot->setResolution(1);
                m_plot->setData(0, histogram.rows.first(), histogram.maximum);
                m_plot->refreshPixmap();
            });
    }

    QLabel* m_text;
    QPushButton* m_button;
    MultiVectorGraphWidget* m_plot;
    std::shared_ptr<tarnis::HistogramPoller> m_poller;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Server server;
    MainWindow window(server);
    window.show();
    server.startLocal(argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver"));
    return application.exec(); // the server is asked to exit when its object goes
}
