// Step E: limits for the server, its connections and single requests; a file to the server and back, with progress.
#include <tarnis/client/server.h>

#include <QCoreApplication>
#include <QTextStream>

using namespace std::chrono_literals;
using tarnis::Reply;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QString program = argc > 1 ? application.arguments().at(1) : QStringLiteral("tarnis-simserver");
    QTextStream out(stdout);

    tarnis::ServerOptions options;
    options.process.arguments = QStringList { "--modules", "2" };
    options.process.startTimeout = 10s; // for its line with the port
    options.process.exitGrace = 5s; // may save what it has, then it is killed
    options.connectTimeout = 10s; // from the port to the greeting
    options.statInterval = 1s; // what runState() and statistics() are made of
    options.client.prompt = "> "; // ends every reply of this server
    options.client.keepAlive.interval = 10s; // an idle connection is tried so often
    options.client.reconnect.longest = 5s; // between two attempts after a loss
    options.client.reconnect.maxAttempts = 20; // then the server is Failed
    tarnis::Server server(options);

    tarnis::RequestOptions brief; // for a user who waits
    brief.deadline = 5s; // for all of it, the time in the queue and the start of the server included
    brief.silence = 2s; // without a byte of the reply
    brief.priority = 1; // before the requests of this client that wait
    tarnis::RequestOptions large; // for much data on a slow network
    large.deadline = 0s; // as long as bytes come
    large.silence = 10s;
    large.maxSize = 64 << 20; // bytes; memory is used as they arrive
    large.progress = [&](const tarnis::Progress& progress) {
        out << "received " << progress.received << " of " << progress.expected << " bytes" << Qt::endl;
    };

    const auto report = [&](const QString& what, const Reply& reply) {
        out << what << ": " << (reply.isOk() ? reply.text().simplified() : "not done: " + reply.reason) << Qt::endl;
        return reply.isOk();
    };
    server.startLocal(program);

    // Requests wait for the start and the greeting. If the server cannot be started, they end as Failed with the
    // reason.
    server.client("control")->request("start", brief).then(&application, [&](const Reply& r) { report("start", r); });
    tarnis::Client* const files = server.client("files"); // a connection of its own: no command waits for a file
    files->upload("/notes.txt", "rate: 2000\nmodules: 2\n").then(&application, [&](const Reply& reply) {
        report("upload", reply);
    });
    files->requestBinary("rxfile /notes.txt", large).then(&application, [&](const Reply& reply) {
        const bool isDone = report("download", reply); // the text after the payload
        out << QString::fromUtf8(reply.data);
        server.shutdown().then(
            &application, [isDone](const tarnis::ServerStep&) { QCoreApplication::exit(isDone ? 0 : 1); });
    });
    return application.exec();
}
