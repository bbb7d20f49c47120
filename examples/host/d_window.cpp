// Step D: a window with a live plot, its state, and a button that starts a lost server again.
#include <tarnis/client/server.h>
#include <tarnis/live/liveplot.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using tarnis::Server;

namespace {

class MainWindow : public QWidget {
public:
    explicit MainWindow(Server& server)
        : m_text(new QLabel("Starting the server."))
        , m_button(new QPushButton("&Restart"))
    {
        auto* const plot = new tarnis::LivePlot;
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(plot, 1);
        layout->addWidget(m_text);
        layout->addWidget(m_button);
        m_text->setTextFormat(Qt::PlainText); // a reason may quote the server
        m_text->setWordWrap(true);
        m_button->setEnabled(false);
        resize(600, 400);
        connect(m_button, &QPushButton::clicked, &server, [&server] { server.restart(); });
        connect(&server, &Server::stateChanged, this,
            [this, &server](Server::State state, const QString& reason) { showState(server, state, reason); });
        plot->setNameX("Arrival time");
        plot->setInterval(200);
        plot->setCommand("hist1d total bins:1024");
        plot->setClient(server.client("plots"));
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

    QLabel* m_text;
    QPushButton* m_button;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Server server;
    MainWindow window(server);
    window.show();
    server.startLocal(argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver"));
    return application.exec(); // the destructor makes the server exit
}
