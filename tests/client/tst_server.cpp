// A local or remote server with its clients: steps, losses, states.
#include "support/cases.h"
#include "support/fakeserver.h"
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/server.h>

#include <QTest>

#include <memory>
#include <utility>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using Outcome = ServerStep::Outcome;
using State = Server::State;
using RunState = Server::RunState;

namespace {

ServerOptions quick()
{
    ServerOptions options;
    options.client.reconnect.first = 1ms;
    options.client.reconnect.longest = 5ms;
    options.statInterval = 1ms;
    return options;
}

} // namespace

class TestServer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void runsALocalServer()
    {
        ScriptedServer socket;
        const FakeServer program(FakeServer::wellBehaved(socket.port()));
        Server server(quick());
        QList<State> states;
        connect(&server, &Server::stateChanged, this, [&](State state) { states.append(state); });
        Client* const control = server.client("control");
        QCOMPARE(control, server.client("control"));
        QCOMPARE(endOf(control->request("early")).outcome, Reply::Outcome::Failed);
        QCOMPARE(endOf(server.startLocal(program.path())).outcome, Outcome::Done);
        QCOMPARE(server.port(), socket.port());
        QVERIFY(server.isLocal());
        QCOMPARE(endOf(server.client("other")->request("a")).outcome, Reply::Outcome::Replied);
        QCOMPARE(endOf(server.shutdown()).outcome, Outcome::Done);
        QCOMPARE(states,
            QList<State>({ State::Starting, State::Connecting, State::Connected, State::Stopping, State::Idle }));
        QVERIFY(program.hasNoted("end"));
        QCOMPARE(endOf(server.shutdown()).outcome, Outcome::Done);
    }

    void followsTheRunState()
    {
        ScriptedServer socket;
        socket.answerInTurn("stat",
            { { Step::text("OK:\n--run\nstate: STOPPED\n") },
                { Step::text("OK:\n--run\nstate: RUNNING\nrate: 5\n") } });
        Server server(quick());
        QList<RunState> states;
        connect(&server, &Server::runStateChanged, this, [&](RunState state) { states.append(state); });
        server.connectTo(socket.host(), socket.port());
        QVERIFY(eventually([&] { return server.runState() == RunState::Running; }));
        QCOMPARE(server.statistics().value("rate"), QStringLiteral("5"));
        server.shutdown();
        QCOMPARE(states, QList<RunState>({ RunState::Stopped, RunState::Running, RunState::Unknown }));
        QCOMPARE(server.state(), State::Idle);
    }

    void readsNoEndlessStatistics()
    {
        ScriptedServer socket;
        socket.answerInTurn(
            "stat", { { Step::text(QByteArray(2 << 20, '\n')) }, { Step::text("OK:\nstate: STOPPED\n") } });
        Server server(quick());
        QStringList reasons;
        connect(&server, &Server::stateChanged, this, [&](State, const QString& reason) { reasons.append(reason); });
        server.connectTo(socket.host(), socket.port());
        QVERIFY(eventually([&] { return server.runState() == RunState::Stopped; }));
        QVERIFY2(!reasons.filter("larger").isEmpty(), qPrintable(reasons.join("; ")));
    }

    void sessionsComeBack()
    {
        auto socket = std::make_unique<ScriptedServer>();
        const quint16 port = socket->port();
        Server server(quick());
        QCOMPARE(endOf(server.connectTo(socket->host(), port)).outcome, Outcome::Done);
        Client* const worker = server.client("worker");
        QCOMPARE(endOf(worker->request("a")).outcome, Reply::Outcome::Replied);
        socket.reset();
        QVERIFY(eventually([&] { return server.state() == State::Reconnecting; }));
        QVERIFY(!server.reason().isEmpty());
        ScriptedServer next;
        QCOMPARE(endOf(server.connectTo(next.host(), next.port())).outcome, Outcome::Done);
        QVERIFY(eventually([&] { return worker->isConnected(); }));
        QCOMPARE(endOf(worker->request("b")).outcome, Reply::Outcome::Replied);
    }

    void comesBackByItself()
    {
        ScriptedServer socket;
        socket.setScript(0, { Step::text("hello"), Step::hold("loss"), Step::drop() });
        ServerOptions options = quick();
        options.statInterval = 0ms;
        Server server(options);
        QCOMPARE(endOf(server.connectTo(socket.host(), socket.port())).outcome, Outcome::Done);
        QList<State> states;
        connect(&server, &Server::stateChanged, this, [&](State state) { states.append(state); });
        socket.release("loss");
        QVERIFY(eventually([&] { return states.size() == 2; }));
        QCOMPARE(states, QList<State>({ State::Reconnecting, State::Connected }));
    }

    void startThatFails_data()
    {
        addColumns<QStringList, QString>("script", "word");
        addCase("exits", QStringList("exit 3"), "code 3");
        addCase("crashes", QStringList("crash"), "crashed");
        addCase("no port", QStringList("linger"), "port");
        addCase("bad port", QStringList({ "print UI port: 70000\\n", "linger" }), "70000");
        addCase("nobody listens",
            QStringList({ QStringLiteral("print UI port: %1\\n").arg(ScriptedServer::closedPort()), "linger" }),
            "refused");
        addCase("no such program", QStringList(), "could not be started");
    }
    void startThatFails()
    {
        QFETCH(QStringList, script);
        QFETCH(QString, word);
        const FakeServer program(script);
        ServerOptions options = quick();
        options.process.startTimeout = script == QStringList("linger") ? 30ms : 30s;
        options.process.exitGrace = 30ms;
        options.connectTimeout = 300ms;
        Server server(options);
        const ServerStep step = endOf(server.startLocal(script.isEmpty() ? "/nowhere/x" : program.path()));
        QCOMPARE(step.outcome, Outcome::Failed);
        QVERIFY2(step.reason.contains(word), qPrintable(step.reason));
        QCOMPARE(server.state(), State::Failed);
        QCOMPARE(server.reason(), step.reason);
    }

    void restartsAfterACrash()
    {
        ScriptedServer socket;
        const FakeServer program({ QStringLiteral("print UI port: %1\\n").arg(socket.port()), "linger" });
        ServerOptions options = quick();
        options.process.exitGrace = 30ms;
        Server server(options);
        QCOMPARE(endOf(server.startLocal(program.path())).outcome, Outcome::Done);
        Client* const worker = server.client("worker");
        // Two restarts in a row: the first step is replaced.
        const auto first = server.restart();
        const auto second = server.restart();
        QCOMPARE(endOf(first).outcome, Outcome::Cancelled);
        QCOMPARE(endOf(second).outcome, Outcome::Done);
        QVERIFY(eventually([&] { return worker->isConnected(); }));
    }

    void aServerThatEndsIsReported()
    {
        ScriptedServer socket;
        socket.answer("go", { Step::hold("gate"), Step::text("") });
        // It crashes when its standard input ends: the step of the next server makes it do that.
        const FakeServer program({ QStringLiteral("print UI port: %1\\n").arg(socket.port()), "await-end", "crash" });
        Server server(quick());
        QCOMPARE(endOf(server.startLocal(program.path())).outcome, Outcome::Done);
        const auto reply = server.client("worker")->request("go");
        QVERIFY(socket.waitForHold("gate"));
        QCOMPARE(endOf(server.restart()).outcome, Outcome::Done);
        QCOMPARE(endOf(reply).outcome, Reply::Outcome::Cancelled);
    }

    void aServerThatCrashesIsReported()
    {
        ScriptedServer socket;
        const FakeServer program(
            { QStringLiteral("print UI port: %1\\n").arg(socket.port()), "flood 100000", "crash" });
        Server server(quick());
        server.startLocal(program.path());
        QVERIFY(eventually([&] { return server.state() == State::Failed; }));
        QVERIFY2(server.reason().contains("crashed"), qPrintable(server.reason()));
        QCOMPARE(server.port(), 0);
    }

    // While a server starts, a host may already request what it wants of it.
    void requestsWaitForTheStart_data()
    {
        addColumns<QString, Reply::Outcome>("event", "end");
        QTest::newRow("it starts") << "starts" << Reply::Outcome::Replied;
        QTest::newRow("it exits") << "exits" << Reply::Outcome::Failed;
        QTest::newRow("nobody listens") << "nobody listens" << Reply::Outcome::Failed;
        QTest::newRow("it is late") << "is late" << Reply::Outcome::TimedOut;
        QTest::newRow("cancel") << "cancel" << Reply::Outcome::Cancelled;
        QTest::newRow("shutdown") << "shutdown" << Reply::Outcome::Cancelled;
        QTest::newRow("another server") << "another server" << Reply::Outcome::Cancelled;
        QTest::newRow("started again") << "restart" << Reply::Outcome::Cancelled;
        QTest::newRow("deleted") << "delete" << Reply::Outcome::Cancelled;
    }
    void requestsWaitForTheStart()
    {
        QFETCH(QString, event);
        QFETCH(Reply::Outcome, end);
        ScriptedServer socket;
        socket.answerOthers(
            [](const std::string& request) { return Script { Step::text(QByteArray::fromStdString(request)) }; });
        const QString port = QStringLiteral("print UI port: %1\\n");
        const QStringList script = event == "starts" ? FakeServer::wellBehaved(socket.port())
            : event == "exits"                       ? QStringList("exit 3")
            : event == "nobody listens"              ? QStringList({ port.arg(ScriptedServer::closedPort()), "linger" })
                                                     : QStringList("linger");
        const FakeServer program(script);
        ServerOptions options = quick();
        options.process.exitGrace = 30ms;
        options.connectTimeout = event == "nobody listens" ? 300ms : 30s;
        options.statInterval = 0ms;
        auto server = std::make_unique<Server>(options);
        Client* const early = server->client("early");
        const auto step = server->startLocal(program.path());
        QCOMPARE(early->state(), Client::State::Connecting);
        RequestOptions request;
        request.deadline = event == "is late" ? 20ms : 60s;
        const QList<QFuture<Reply>> futures { early->request("a", request), early->request("b", request),
            server->client("made while it starts")->request("c", request) };
        QVERIFY(!futures.first().isFinished());
        if (event == "cancel")
            server->cancel();
        else if (event == "shutdown")
            server->shutdown();
        else if (event == "another server")
            server->connectTo(socket.host(), socket.port());
        else if (event == "restart")
            server->restart();
        else if (event == "delete")
            server.reset();
        for (const QFuture<Reply>& future : futures)
            QCOMPARE(endOf(future).outcome, end);
        if (end == Reply::Outcome::Replied)
            QCOMPARE(futures.at(1).result().text(), QStringLiteral("b"));
        if (end != Reply::Outcome::Failed)
            return;
        // The reason is the server's, then and later.
        QCOMPARE(futures.first().result().reason, endOf(step).reason);
        QCOMPARE(early->state(), Client::State::Disconnected);
        QCOMPARE(endOf(early->request("d")).reason, server->reason());
        QCOMPARE(endOf(server->client("made later")->request("e")).reason, server->reason());
    }

    void requestsWaitForARestart()
    {
        ScriptedServer socket;
        socket.answer("long", { Step::silence() });
        const FakeServer program(FakeServer::wellBehaved(socket.port()));
        Server server(quick());
        QCOMPARE(endOf(server.startLocal(program.path())).outcome, Outcome::Done);
        Client* const worker = server.client("worker");
        const auto before = worker->request("long");
        QVERIFY(socket.waitForRequest("long"));
        server.restart();
        const auto after = worker->request("next");
        QCOMPARE(endOf(before).outcome, Reply::Outcome::Cancelled);
        QCOMPARE(endOf(after).outcome, Reply::Outcome::Replied);
    }

    // A continuation of the first step's requests begins a second step: the second one is not undone by the first.
    void aReceiverBeginsAnotherStep()
    {
        ScriptedServer first;
        first.answerOthers([](const std::string&) { return Script { Step::silence() }; });
        ScriptedServer second;
        ServerOptions options = quick();
        options.statInterval = 0ms;
        Server server(options);
        QCOMPARE(endOf(server.connectTo(first.host(), first.port())).outcome, Outcome::Done);
        QList<Client*> clients;
        QFuture<ServerStep> next;
        bool isBegun = false;
        for (const char* const name : { "a", "b", "c" }) {
            clients.append(server.client(name));
            QVERIFY(eventually([&] { return clients.last()->isConnected(); }));
            clients.last()->request("long").then([&](const Reply&) {
                if (!std::exchange(isBegun, true))
                    next = server.connectTo(second.host(), second.port());
            });
        }
        const auto down = server.shutdown();
        QCOMPARE(endOf(down).outcome, Outcome::Cancelled);
        QCOMPARE(endOf(next).outcome, Outcome::Done);
        for (Client* const client : clients)
            QCOMPARE(endOf(client->request("x")).outcome, Reply::Outcome::Replied);
    }

    void continuationsOfTheDestructorStartNothing()
    {
        ScriptedServer socket({ Step::silence() });
        auto server = std::make_unique<Server>(quick());
        QFuture<ServerStep> next;
        server->connectTo(socket.host(), socket.port()).then([&, raw = server.get()](const ServerStep&) {
            next = raw->restart();
        });
        QVERIFY(socket.waitForConnections(1));
        server.reset();
        QCOMPARE(endOf(next).outcome, Outcome::Cancelled);
        QCOMPARE(socket.connectionCount(), 1);
    }

    void deletedInItsSignals_data()
    {
        QTest::addColumn<QString>("place");
        for (const char* const place : { "Starting", "Connecting", "Connected", "Reconnecting", "Stopping", "Failed",
                 "runState", "statistics", "request" })
            QTest::newRow(place) << QString(place);
    }
    void deletedInItsSignals()
    {
        QFETCH(QString, place);
        auto socket = std::make_unique<ScriptedServer>();
        socket->answer("stat", { Step::text("OK:\nstate: RUNNING\n") });
        const FakeServer program(FakeServer::wellBehaved(socket->port()));
        ServerOptions options = quick();
        options.client.reconnect.maxAttempts = 3;
        auto* server = new Server(options);
        const auto end = [&](const QString& here) {
            if (here == place && server != nullptr)
                delete std::exchange(server, nullptr);
        };
        connect(server, &Server::stateChanged, this, [&](State state) { end(QVariant::fromValue(state).toString()); });
        connect(server, &Server::runStateChanged, this, [&] { end("runState"); });
        connect(server, &Server::statisticsChanged, this, [&] { end("statistics"); });
        const auto step = server->startLocal(program.path());
        if (server != nullptr)
            server->client("a")->request("b").then([&](const Reply&) { end("request"); });
        QVERIFY(eventually([&] { return server == nullptr || server->state() == State::Connected; }));
        if (server != nullptr && place == "Stopping")
            server->shutdown();
        if (place == "Reconnecting" || place == "Failed")
            socket.reset();
        QVERIFY(eventually([&] { return server == nullptr; }));
        QVERIFY(step.isFinished());
    }

    // A receiver restarts first and uses the arguments then.
    void restartedInItsSignal()
    {
        ScriptedServer socket;
        socket.answer("stat", { Step::text("OK:\nstate: RUNNING\n") });
        auto server = std::make_unique<Server>(quick());
        QStringList reasons;
        connect(server.get(), &Server::stateChanged, this, [&](State state, const QString& reason) {
            if (state != State::Failed)
                return;
            server->connectTo(socket.host(), socket.port());
            reasons.append(reason);
        });
        QMap<QString, QString> used;
        connect(server.get(), &Server::statisticsChanged, this, [&](const QMap<QString, QString>& statistics) {
            server.reset();
            used = statistics;
        });
        server->connectTo("localhost", 0);
        QCOMPARE(reasons, QStringList({ "The port must be from 1 to 65535." }));
        QVERIFY(eventually([&] { return !server; }));
        QCOMPARE(used.value("state"), QStringLiteral("RUNNING"));
    }

    void acceptsAnyTimes_data()
    {
        QTest::addColumn<std::chrono::milliseconds>("time");
        QTest::newRow("beyond 32 bits") << std::chrono::milliseconds((qint64(1) << 31) + 5);
        QTest::newRow("largest") << std::chrono::milliseconds::max();
        QTest::newRow("none") << 0ms;
        QTest::newRow("negative") << std::chrono::milliseconds::min();
    }
    void acceptsAnyTimes()
    {
        QFETCH(std::chrono::milliseconds, time);
        ScriptedServer socket;
        const FakeServer program(FakeServer::wellBehaved(socket.port()));
        ServerOptions options = quick();
        options.connectTimeout = time;
        options.statInterval = time;
        options.process.startTimeout = time;
        Server server(options);
        QCOMPARE(endOf(server.startLocal(program.path())).outcome, Outcome::Done);
        QCOMPARE(endOf(server.client("a")->request("b")).outcome, Reply::Outcome::Replied);
        QVERIFY(socket.requests().count("stat") <= 1); // the one at once, of a server with an interval
    }

    void cancelStopsAStart()
    {
        const FakeServer program(QStringList("linger"));
        Server server(quick());
        const auto step = server.startLocal(program.path());
        server.cancel();
        QVERIFY(step.isFinished());
        QCOMPARE(endOf(step).outcome, Outcome::Cancelled);
        QCOMPARE(server.state(), State::Idle);
        server.cancel();
        QCOMPARE(endOf(server.shutdown()).outcome, Outcome::Done);
    }

    void shutdownStopsAConnect()
    {
        ScriptedServer socket({ Step::silence() });
        Server server(quick());
        const auto step = server.connectTo(socket.host(), socket.port());
        QVERIFY(socket.waitForConnections(1));
        const auto down = server.shutdown();
        QCOMPARE(endOf(step).outcome, Outcome::Cancelled);
        QCOMPARE(endOf(down).outcome, Outcome::Done);
        QVERIFY(socket.waitUntilDeserted());
    }

    void shutdownTwiceEndsBoth()
    {
        ScriptedServer socket;
        const FakeServer program({ QStringLiteral("print UI port: %1\\n").arg(socket.port()), "linger" });
        ServerOptions options = quick();
        options.process.exitGrace = 30ms;
        Server server(options);
        QCOMPARE(endOf(server.startLocal(program.path())).outcome, Outcome::Done);
        const auto first = server.shutdown();
        const auto second = server.shutdown();
        QCOMPARE(endOf(first).outcome, Outcome::Done);
        QCOMPARE(endOf(second).outcome, Outcome::Done);
    }

    void deletedInAContinuation()
    {
        ScriptedServer socket;
        auto* server = new Server(quick());
        bool isGone = false;
        server->connectTo(socket.host(), socket.port()).then([&](const ServerStep&) {
            delete server;
            isGone = true;
        });
        QVERIFY(eventually([&] { return isGone; }));
        server = new Server(quick());
        const auto step = server->connectTo(socket.host(), socket.port());
        const auto reply = server->client("a")->request("b");
        delete server;
        QCOMPARE(endOf(step).outcome, Outcome::Cancelled);
        QCOMPARE(endOf(reply).outcome, Reply::Outcome::Cancelled);
    }
};

QTEST_GUILESS_MAIN(TestServer)
#include "tst_server.moc"
