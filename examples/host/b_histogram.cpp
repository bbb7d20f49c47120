// Step B: follow a histogram without a window. A server that ends is started again, after waits that grow.
#include <tarnis/client/histogrampoller.h>
#include <tarnis/client/server.h>

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

#include <numeric>

using namespace std::chrono_literals;
using tarnis::Server;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString program = argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver");
    QTextStream out(stdout);

    tarnis::ReconnectPolicy starts; // the client's policy for connections, here for the program
    starts.first = 100ms;
    starts.maxAttempts = 5;
    int failures = 0; // in a row, without a histogram in between

    Server server;
    QObject::connect(&server, &Server::stateChanged, &application, [&](Server::State state, const QString& reason) {
        if (state == Server::State::Connected)
            server.client("control")->request("start");
        if (state != Server::State::Failed)
            return;
        if (++failures == starts.maxAttempts) {
            out << reason << " Given up after " << failures << " failures." << Qt::endl;
            QCoreApplication::exit(1);
            return;
        }
        const auto wait = starts.delayAfter(failures);
        out << reason << " The next start is in " << wait.count() << " ms." << Qt::endl;
        QTimer::singleShot(wait, &server, [&] { server.restart(); });
    });

    const QString command = "hist1d total bins:1024";
    tarnis::PollOptions options;
    options.interval = 100ms;
    const auto poller = tarnis::HistogramPoller::shared(
        *server.client("plots"), command, tarnis::HistogramFormat::ofCommand(command), options);
    int updates = 0;
    QObject::connect(
        poller.get(), &tarnis::HistogramPoller::updated, &application, [&](const tarnis::HistogramReply& histogram) {
            failures = 0;
            const QList<double>& counts = histogram.rows.first();
            out << std::accumulate(counts.begin(), counts.end(), 0.0) << " events from " << histogram.x.min << " to "
                << histogram.x.max << Qt::endl;
            if (++updates == 10)
                server.shutdown().then(&application, [](const tarnis::ServerStep&) { QCoreApplication::quit(); });
        });
    QObject::connect(poller.get(), &tarnis::HistogramPoller::failed, &application,
        [&](const QString& reason) { out << "no histogram: " << reason << Qt::endl; });

    server.startLocal(program);
    return application.exec();
}
