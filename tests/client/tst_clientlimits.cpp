// Limits of the asynchronous client: time, size, queue, cancelled requests, its end.
#include "support/cases.h"
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/client.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using Outcome = Reply::Outcome;
using State = Client::State;

class TestClientLimits : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void timesOut_data()
    {
        QTest::addColumn<RequestOptions>("options");
        RequestOptions deadline;
        deadline.deadline = 20ms;
        QTest::newRow("deadline") << deadline;
        RequestOptions silence;
        silence.silence = 20ms;
        QTest::newRow("silence") << silence;
        silence.deadline = 0ms;
        silence.form = RequestOptions::Form::Binary;
        QTest::newRow("silence, binary, without deadline") << silence;
    }
    void timesOut()
    {
        QFETCH(RequestOptions, options);
        ScriptedServer server;
        server.answer("silent", { Step::raw("ab"), Step::silence() });
        server.answer("next", { Step::text("yes") });
        const auto client = connectedTo(server);
        const auto silent = client->request("silent", options);
        const auto next = client->request("next");
        QCOMPARE(endOf(silent).outcome, Outcome::TimedOut);
        QVERIFY(!endOf(silent).reason.isEmpty());
        QCOMPARE(endOf(next).data, QByteArray("yes"));
    }

    void timesOutInTheQueue()
    {
        ScriptedServer server;
        server.answer("long", { Step::hold("gate"), Step::text("done") });
        const auto client = connectedTo(server);
        const auto first = client->request("long");
        RequestOptions brief;
        brief.deadline = 5ms;
        QCOMPARE(endOf(client->request("brief", brief)).outcome, Outcome::TimedOut);
        server.release("gate");
        QCOMPARE(endOf(first).data, QByteArray("done"));
        QCOMPARE(server.requests(), QList<QByteArray>({ "long" }));
    }

    void timesOutWithoutAGreeting()
    {
        ClientOptions options = once();
        options.greetingTimeout = 20ms;
        ScriptedServer server({ Step::silence() });
        Client client(options);
        client.connectTo(server.host(), server.port());
        QCOMPARE(endOf(client.request("stat")).outcome, Outcome::Failed);
        QCOMPARE(client.state(), State::Failed);
    }

    void boundsReplies_data()
    {
        addColumns<Script, bool>("answer", "isBinary");
        QTest::newRow("text") << Script { Step::text(QByteArray(200000, 'x')) } << false;
        QTest::newRow("announced") << Script { Step::binary("abc").announcing(1 << 30) } << true;
        QTest::newRow("text behind a payload") << Script { Step::binary("abc", QByteArray(200000, 'x')) } << true;
    }
    void boundsReplies()
    {
        QFETCH(Script, answer);
        QFETCH(bool, isBinary);
        ScriptedServer server;
        server.answer("large", answer);
        const auto client = connectedTo(server);
        RequestOptions options = isBinary ? binary() : RequestOptions();
        options.maxSize = 100000;
        const Reply reply = endOf(client->request("large", options));
        QCOMPARE(reply.outcome, Outcome::Failed);
        QVERIFY(reply.reason.contains("100000"));
        QCOMPARE(endOf(client->request("next")).outcome, Outcome::Replied);
    }

    void boundsRepliesThatComeInOnePiece()
    {
        ScriptedServer server;
        server.answer("short", { Step::text(QByteArray(2000, 'x')) });
        const auto client = connectedTo(server);
        RequestOptions options;
        options.maxSize = 100;
        QCOMPARE(endOf(client->request("short", options)).outcome, Outcome::Failed);
        options.maxSize = 2000;
        QCOMPARE(endOf(client->request("short", options)).outcome, Outcome::Replied);
    }

    void boundsTheQueue()
    {
        ClientOptions options = quickClient();
        options.maxQueued = 3;
        ScriptedServer server({ Step::silence() });
        Client client(options);
        client.connectTo(server.host(), server.port());
        QList<QFuture<Reply>> futures;
        for (int i = 0; i < 4; ++i)
            futures.append(client.request("stat"));
        QVERIFY(!futures.at(2).isFinished());
        QCOMPARE(endOf(futures.at(3)).outcome, Outcome::Failed);
        client.abort();
        for (int i = 0; i < 3; ++i)
            QCOMPARE(endOf(futures.at(i)).outcome, Outcome::Cancelled);
        QCOMPARE(client.state(), State::Disconnected);
    }

    void dropsAConnectionWithStrayBytes()
    {
        ScriptedServer server;
        server.setScript(0,
            { Step::text("hello"), Step::expectLine("a"), Step::text("ok"), Step::hold("stray"), Step::raw("stray"),
                Step::serve() });
        server.answer("b", { Step::text("right") });
        const auto client = connectedTo(server);
        QCOMPARE(endOf(client->request("a")).data, QByteArray("ok"));
        QSignalSpy lost(client.get(), &Client::connectionLost);
        server.release("stray");
        QVERIFY(eventually([&] { return lost.size() == 1; }));
        QCOMPARE(endOf(client->request("b")).data, QByteArray("right"));
    }

    void callerCancels()
    {
        ScriptedServer server;
        server.answer("long", { Step::hold("gate"), Step::text("late") });
        server.answer("next", { Step::text("right") });
        const auto client = connectedTo(server);
        auto underWay = client->request("long");
        auto waiting = client->request("waiting");
        const auto next = client->request("next");
        QVERIFY(server.waitForHold("gate"));
        underWay.cancel();
        waiting.cancel();
        QVERIFY(eventually([&] { return underWay.isFinished() && waiting.isFinished(); }));
        QCOMPARE(underWay.resultCount(), 0);
        QCOMPARE(client->pending(), 1);
        server.release("gate");
        QCOMPARE(endOf(next).data, QByteArray("right"));
        QCOMPARE(server.requests(), QList<QByteArray>({ "long", "next" }));
    }

    void cancelAllLeavesTheOneUnderWay()
    {
        ScriptedServer server;
        server.answer("long", { Step::hold("gate"), Step::text("done") });
        const auto client = connectedTo(server);
        const auto first = client->request("long");
        const auto second = client->request("second");
        client->cancelAll();
        QCOMPARE(endOf(second).outcome, Outcome::Cancelled);
        server.release("gate");
        QCOMPARE(endOf(first).data, QByteArray("done"));
    }

    void keepsAlive()
    {
        ClientOptions options = quickClient();
        options.keepAlive.interval = 5ms;
        options.keepAlive.silence = 20ms;
        options.keepAlive.command = "ping";
        ScriptedServer server;
        server.answerInTurn("ping", { { Step::text("") }, { Step::silence() }, { Step::text("") } });
        const auto client = connectedTo(server, options);
        QSignalSpy lost(client.get(), &Client::connectionLost);
        QVERIFY(server.waitForConnections(2));
        QVERIFY(eventually([&] { return client->isConnected(); }));
        QCOMPARE(lost.size(), 1);
        QVERIFY(lost.first().first().toString().contains("silent"));
    }
};

QTEST_GUILESS_MAIN(TestClientLimits)
#include "tst_clientlimits.moc"
