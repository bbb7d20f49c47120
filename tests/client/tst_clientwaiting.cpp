// The asynchronous client without a connection, and with limits of any size: what waits ends exactly once.
#include "support/cases.h"
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/client.h>

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <limits>
#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using std::chrono::milliseconds;
using Outcome = Reply::Outcome;
using State = Client::State;

namespace {

const Script mute { Step::hold("gate"), Step::drop() };
const Script late { Step::hold("gate"), Step::text("hello"), Step::serve() };

/// A client that stays in `state` until the server's gate is open, and does not try for ever.
std::unique_ptr<Client> clientIn(State state, ScriptedServer& server, const Script& script)
{
    const bool isSecond = state == State::Reconnecting;
    if (isSecond)
        server.setScript(0, { Step::drop() });
    server.setScript(isSecond ? 1 : 0, script);
    ClientOptions options;
    options.reconnect.first = 1h;
    options.reconnect.longest = 1h;
    options.reconnect.maxAttempts = isSecond ? 2 : 1;
    auto client = std::make_unique<Client>(options);
    client->connectTo(server.host(), server.port());
    if (!eventually([&] { return client->state() == state; }))
        QTest::qFail("the state was not reached", __FILE__, __LINE__);
    return client;
}

} // namespace

class TestClientWaiting : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void requestsWaitForTheConnection_data()
    {
        addColumns<State, Outcome>("state", "end");
        for (const State state : { State::Connecting, State::Greeting, State::Reconnecting }) {
            for (const Outcome end : { Outcome::Replied, Outcome::Failed, Outcome::TimedOut, Outcome::Cancelled })
                QTest::addRow("%d, %d", int(state), int(end)) << state << end;
        }
    }
    void requestsWaitForTheConnection()
    {
        QFETCH(State, state);
        QFETCH(Outcome, end);
        ScriptedServer server;
        const auto client = clientIn(state, server, end == Outcome::Failed ? mute : late);
        RequestOptions options;
        if (end == Outcome::TimedOut)
            options.deadline = 20ms;
        int ends = 0;
        const QFuture<Reply> future = client->request("a", options);
        QFuture<Reply>(future).then([&](const Reply&) { ++ends; });
        QVERIFY(!future.isFinished());
        QCOMPARE(client->pending(), 1);
        if (end == Outcome::Cancelled)
            client->abort();
        if (end == Outcome::Replied || end == Outcome::Failed) {
            client->reconnectNow();
            server.open("gate");
        }
        QCOMPARE(endOf(future).outcome, end);
        client->abort();
        QCOMPARE(ends, 1);
        QCOMPARE(server.requests(), end == Outcome::Replied ? QList<QByteArray> { "a" } : QList<QByteArray>());
    }

    void thousandsWaitAndAreAborted()
    {
        constexpr int count = 50000;
        ScriptedServer server;
        server.setScript(0, late);
        Client client;
        client.connectTo(server.host(), server.port());
        int ends = 0;
        int inOrder = 0;
        int further = 0;
        for (int i = 0; i < count; ++i) {
            client.request("a").then([&, i](const Reply& reply) {
                inOrder += ends++ == i && reply.outcome == Outcome::Cancelled ? 1 : 0;
                client.request("b").then(
                    [&](const Reply& next) { further += next.outcome == Outcome::Failed ? 1 : 0; });
            });
        }
        QCOMPARE(client.pending(), count);
        client.abort();
        QCOMPARE(ends, count);
        QCOMPARE(inOrder, count);
        QCOMPARE(further, count);
        QCOMPARE(client.pending(), 0);
    }

    void aStableConnectionEndsTheRowOfFailures_data()
    {
        addColumns<milliseconds, int>("stableAfter", "connections");
        QTest::newRow("any") << milliseconds(0) << 7;
        QTest::newRow("an hour") << milliseconds(1h) << 3;
        QTest::newRow("beyond the clock") << milliseconds::max() << 3;
    }
    void aStableConnectionEndsTheRowOfFailures()
    {
        QFETCH(milliseconds, stableAfter);
        QFETCH(int, connections);
        ClientOptions options = quickClient();
        options.reconnect.maxAttempts = 3;
        options.reconnect.stableAfter = stableAfter;
        ScriptedServer server({ Step::text("hello"), Step::drop() });
        Client client(options);
        client.connectTo(server.host(), server.port());
        QVERIFY(server.waitForConnections(connections));
        const bool givesUp = stableAfter > milliseconds(0);
        QVERIFY(eventually([&] { return (client.state() == State::Failed) == givesUp; }));
        if (givesUp)
            QCOMPARE(server.connectionCount(), connections);
    }

    void acceptsAnyLimits_data()
    {
        QTest::addColumn<qint64>("limit");
        QTest::newRow("none") << qint64(0);
        QTest::newRow("negative") << qint64(-1);
        QTest::newRow("least") << std::numeric_limits<qint64>::min();
        QTest::newRow("beyond 32 bits") << (qint64(1) << 31);
        QTest::newRow("beyond nanoseconds") << (qint64(1) << 44);
        QTest::newRow("largest") << std::numeric_limits<qint64>::max();
    }
    void acceptsAnyLimits()
    {
        QFETCH(qint64, limit);
        const milliseconds time(limit);
        ClientOptions options;
        options.connectTimeout = time;
        options.greetingTimeout = time;
        options.keepAlive.interval = time;
        options.keepAlive.silence = time;
        options.reconnect.stableAfter = time;
        RequestOptions request;
        request.deadline = time;
        request.silence = time;
        request.maxSize = limit > 0 ? std::numeric_limits<qint64>::max() : 100;
        ScriptedServer server;
        server.answer("a", { Step::text("yes").inChunksOf(1) });
        server.answer("b", { Step::binary("payload", "OK:").inChunksOf(1) });
        Client client(options);
        client.connectTo(server.host(), server.port());
        QCOMPARE(endOf(client.request("a", request)).data, QByteArray("yes"));
        QCOMPARE(endOf(client.requestBinary("b", request)).data, QByteArray("payload"));
        request.maxSize = -1;
        QCOMPARE(endOf(client.request("a", request)).outcome, Outcome::Failed);
    }

    void boundsTheWaitBeforeAnAttempt()
    {
        ReconnectPolicy policy;
        policy.first = policy.longest = milliseconds::max();
        QVERIFY(policy.delayAfter(1) > 24h * 200 && policy.delayAfter(1000000) <= 24h * 366);
        policy.longest = 20ms;
        policy.first = 10ms;
        policy.jitter = 0.0;
        QCOMPARE(policy.delayAfter(0), 10ms);
        QCOMPARE(policy.delayAfter(1), 10ms);
        QCOMPARE(policy.delayAfter(5000), 20ms);
        policy.jitter = std::numeric_limits<double>::quiet_NaN();
        policy.factor = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(policy.delayAfter(5000), 10ms);
        policy.jitter = 100.0;
        QVERIFY(policy.delayAfter(1) >= 0ms && policy.delayAfter(1) <= 10ms);
        policy = {};
        policy.first = 0ms;
        QCOMPARE(policy.delayAfter(5000), 0ms);
        policy.first = milliseconds::min();
        QCOMPARE(policy.delayAfter(1), 0ms);
    }

    void waitsForVeryLongBeforeAnAttempt()
    {
        ClientOptions options;
        options.reconnect.first = options.reconnect.longest = milliseconds::max();
        ScriptedServer server({ Step::drop() });
        Client client(options);
        client.connectTo(server.host(), server.port());
        QVERIFY(eventually([&] { return client.state() == State::Reconnecting; }));
        RequestOptions request;
        request.deadline = 30ms; // a time in which a wait that has overflowed would be over
        QCOMPARE(endOf(client.request("a", request)).outcome, Outcome::TimedOut);
        QCOMPARE(server.connectionCount(), 1);
    }

    void sendsExtremePrioritiesInOrder()
    {
        ScriptedServer server;
        server.setScript(0, late);
        Client client;
        client.connectTo(server.host(), server.port());
        RequestOptions options;
        for (const int priority : { std::numeric_limits<int>::min(), 0, std::numeric_limits<int>::max() }) {
            options.priority = priority;
            client.request(QString::number(priority), options);
        }
        server.open("gate");
        QVERIFY(server.waitForRequests(3));
        QCOMPARE(server.requests(), QList<QByteArray>({ "2147483647", "0", "-2147483648" }));
    }

    void queuesAtLeastOneRequest()
    {
        ClientOptions options;
        options.maxQueued = -5;
        ScriptedServer server;
        Client client(options);
        client.connectTo(server.host(), server.port());
        const auto first = client.request("a");
        QCOMPARE(endOf(client.request("b")).outcome, Outcome::Failed);
        QCOMPARE(endOf(first).outcome, Outcome::Replied);
    }

    void refusesKeepAliveCommands_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("empty") << " ";
        QTest::newRow("two lines") << "a\nb";
        QTest::newRow("upload") << "txfile a";
    }
    void refusesKeepAliveCommands()
    {
        QFETCH(QString, command);
        ScriptedServer server;
        ClientOptions options;
        options.keepAlive.command = command;
        Client client(options);
        client.connectTo(server.host(), server.port());
        QCOMPARE(client.state(), State::Failed);
        QVERIFY2(client.reason().contains("keep-alive"), qPrintable(client.reason()));
        options.keepAlive.interval = 0ms; // not sent
        Client another(options);
        another.connectTo(server.host(), server.port());
        QVERIFY(eventually([&] { return another.state() == State::Ready; }));
    }

    // The silence of a server that still reads begins with the end of the upload.
    void aLongUploadIsNoSilence()
    {
        constexpr qint64 size = qint64(32) << 20;
        constexpr qint64 piece = size / 16;
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        QTcpSocket* socket = nullptr;
        qint64 received = 0;
        QTimer reader;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            socket = server.nextPendingConnection();
            socket->setReadBufferSize(piece);
            socket->setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 1 << 16);
            socket->write("hello\n> ");
            reader.start(100);
        });
        connect(&reader, &QTimer::timeout, this, [&] {
            const QByteArray bytes = socket->read(piece);
            received += bytes.size();
            if (bytes.endsWith('\x04'))
                socket->write("OK:\n> ");
        });
        Client client(quickClient());
        client.connectTo("127.0.0.1", server.serverPort());
        RequestOptions options;
        options.silence = 1s; // the upload lasts longer
        const Reply reply = endOf(client.upload("a", QByteArray(size, 'x'), options));
        QVERIFY2(reply.isOk(), qPrintable(reply.reason));
        QCOMPARE(received, size + qint64(sizeof("txfile a\n")));
        QVERIFY(reply.elapsed > options.silence);
    }
};

QTEST_GUILESS_MAIN(TestClientWaiting)
#include "tst_clientwaiting.moc"
