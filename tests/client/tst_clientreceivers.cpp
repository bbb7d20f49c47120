// What slots, continuations and callbacks may do to the client that calls them: event loops of their own, other
// connections, other threads.
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/client.h>

#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <memory>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using Outcome = Reply::Outcome;
using State = Client::State;

class TestClientReceivers : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // A message box in a receiver runs such a loop. All other requests must end meanwhile.
    void mayRunAnEventLoop_data()
    {
        QTest::addColumn<QString>("place");
        for (const char* const place :
            { "stateChanged", "connected", "reply", "late in the queue", "silent", "dropped", "connectionLost" })
            QTest::newRow(place) << QString(place);
    }
    void mayRunAnEventLoop()
    {
        QFETCH(QString, place);
        ScriptedServer server;
        server.answer("dropped", { Step::raw("x"), Step::drop() });
        server.answer("silent", { Step::silence() });
        Client client(quickClient());
        QList<QFuture<Reply>> others;
        bool isDone = false;
        const auto enter = [&](const QString& here) {
            if (here != place || isDone)
                return;
            isDone = true;
            for (const QFuture<Reply>& other : others)
                QVERIFY(eventually([&] { return other.isFinished(); }));
        };
        connect(&client, &Client::stateChanged, this, [&](State state) {
            if (state == State::Ready)
                enter("stateChanged");
        });
        connect(&client, &Client::connected, this, [&] { enter("connected"); });
        connect(&client, &Client::connectionLost, this, [&] { enter("connectionLost"); });
        client.connectTo(server.host(), server.port());
        const auto add = [&](const QString& text, const QString& name, const RequestOptions& options = {}) {
            const QFuture<Reply> future = client.request(text, options);
            QFuture<Reply>(future).then([&enter, name](const Reply&) { enter(name); });
            if (name != place)
                others.append(future);
        };
        RequestOptions silence;
        silence.silence = 30ms;
        RequestOptions deadline;
        deadline.deadline = 15ms;
        deadline.priority = -1;
        add("a", "reply");
        add("silent", "silent", silence);
        add("b", "late in the queue", deadline);
        if (place == "dropped" || place == "connectionLost")
            add("dropped", "dropped");
        add("c", "last");
        QVERIFY(eventually([&] { return client.pending() == 0 && isDone; }));
        QCOMPARE(others.last().result().outcome, Outcome::Replied);
    }

    void progressMayRunAnEventLoop_data()
    {
        QTest::addColumn<bool>("isBinary");
        QTest::addColumn<int>("piece");
        for (const bool isBinary : { false, true }) {
            for (const int piece : { 1, 2, 3, 1000 })
                QTest::addRow("%s, piece %d", isBinary ? "binary" : "text", piece) << isBinary << piece;
        }
    }
    void progressMayRunAnEventLoop()
    {
        QFETCH(bool, isBinary);
        QFETCH(int, piece);
        ScriptedServer server;
        const Step answer = isBinary ? Step::binary("abcdef", "OK:") : Step::text("abcdef");
        server.answer("long", { piece < 1000 ? answer.inChunksOf(2) : answer });
        server.answer("next", { Step::text("right") });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        QFuture<Reply> first;
        QFuture<Reply> next;
        int calls = 0;
        RequestOptions options;
        options.progress = [&](const Progress&) {
            // The loop of an early piece sees the end of this reply and of the next one.
            if (++calls == piece)
                QVERIFY(eventually([&] { return first.isFinished() && next.isFinished(); }));
        };
        if (isBinary)
            options.form = RequestOptions::Form::Binary;
        first = client.request("long", options);
        next = client.request("next");
        QCOMPARE(endOf(first).data, QByteArray("abcdef"));
        QCOMPARE(endOf(next).data, QByteArray("right"));
        QCOMPARE(server.connectionCount(), 1);
    }

    void theLastPieceMayRunAnEventLoop()
    {
        ScriptedServer server;
        server.answer("long", { Step::text("abcdef") });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        RequestOptions options;
        options.progress = [&](const Progress&) {
            QTimer::singleShot(0, this, [] {});
            for (int i = 0; i < 10; ++i)
                QCoreApplication::processEvents();
        };
        const auto first = client.request("long", options);
        QCOMPARE(endOf(first).data, QByteArray("abcdef"));
        QCOMPARE(endOf(client.request("next")).outcome, Outcome::Replied);
        QCOMPARE(server.connectionCount(), 1);
    }

    // The last requested connection is made.
    void connectToInAReceiverOfConnectTo()
    {
        ScriptedServer old;
        old.answer("long", { Step::silence() });
        ScriptedServer next;
        next.answer("which", { Step::text("next") });
        Client client(quickClient());
        client.connectTo(old.host(), old.port());
        const auto underWay = client.request("long");
        QVERIFY(old.waitForRequest("long"));
        // Recovery code that knows the old address only.
        QFuture<Reply>(underWay).then([&](const Reply&) {
            client.connectTo(old.host(), old.port());
            eventually([&] { return client.isConnected(); });
            client.request("again");
        });
        client.connectTo(next.host(), next.port());
        QCOMPARE(endOf(client.request("which")).data, QByteArray("next"));
        QCOMPARE(client.port(), next.port());
        QCOMPARE(client.pending(), 0);
    }

    void cancelTheOthersAfterAFailure()
    {
        ScriptedServer server;
        server.answer("bad", { Step::text("NG:no") });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        client.request("bad").then([&](const Reply&) { client.cancelAll(); });
        const auto second = client.request("not sent");
        QCOMPARE(endOf(second).outcome, Outcome::Cancelled);
        QCOMPARE(endOf(client.request("third")).outcome, Outcome::Replied);
        QCOMPARE(server.requests(), QList<QByteArray>({ "bad", "third" }));
    }

    // The arguments of a signal are those of its emission, whatever a receiver does.
    void deleteTheClientAndUseTheReason()
    {
        auto client = std::make_unique<Client>(quickClient());
        QString used;
        connect(client.get(), &Client::stateChanged, this, [&](State, const QString& reason) {
            client.reset();
            used = reason;
        });
        client->connectTo("localhost", 0);
        QVERIFY(!client);
        QCOMPARE(used, QStringLiteral("The port must be from 1 to 65535."));
    }
    void connectAgainAndUseTheReason()
    {
        ScriptedServer server;
        Client client(quickClient());
        QStringList used;
        connect(&client, &Client::stateChanged, this, [&](State state, const QString& reason) {
            if (state != State::Failed)
                return;
            client.connectTo(server.host(), server.port());
            used.append(reason);
        });
        client.connectTo("localhost", 0);
        QCOMPARE(used, QStringList({ "The port must be from 1 to 65535." }));
        QVERIFY(eventually([&] { return client.isConnected(); }));
    }

    void continuationsOfTheDestructorDoNotConnect()
    {
        ScriptedServer server;
        server.answer("long", { Step::silence() });
        auto client = std::make_unique<Client>(quickClient());
        client->connectTo(server.host(), server.port());
        QFuture<Reply> last;
        client->request("long").then([&, raw = client.get()](const Reply&) {
            raw->connectTo(server.host(), server.port());
            last = raw->request("again");
        });
        QVERIFY(server.waitForRequest("long"));
        client.reset();
        QCOMPARE(endOf(last).outcome, Outcome::Failed);
        QCOMPARE(server.connectionCount(), 1);
    }

    void callersCancelWithoutAConnection()
    {
        ScriptedServer server;
        server.setScript(0, { Step::hold("gate"), Step::text("hello"), Step::serve() });
        Client client(quickClient());
        client.connectTo(server.host(), server.port());
        auto cancelled = client.request("cancelled");
        const auto kept = client.request("kept");
        cancelled.cancel();
        QVERIFY(eventually([&] { return cancelled.isFinished(); }));
        QCOMPARE(cancelled.resultCount(), 0);
        server.open("gate");
        QCOMPARE(endOf(kept).outcome, Outcome::Replied);
        QCOMPARE(server.requests(), QList<QByteArray>({ "kept" }));
    }

    void worksInAThreadThatItWasMovedTo()
    {
        ScriptedServer server;
        server.answer("a", { Step::text("yes") });
        QThread thread;
        auto* const client = new Client(quickClient());
        client->moveToThread(&thread);
        connect(&thread, &QThread::finished, client, &QObject::deleteLater);
        thread.start();
        QFuture<Reply> future;
        QMetaObject::invokeMethod(
            client,
            [&] {
                client->connectTo(server.host(), server.port());
                future = client->request("a");
            },
            Qt::BlockingQueuedConnection);
        QCOMPARE(endOf(future).data, QByteArray("yes"));
        thread.quit();
        QVERIFY(thread.wait());
    }
};

QTEST_GUILESS_MAIN(TestClientReceivers)
#include "tst_clientreceivers.moc"
