// The asynchronous client: states, futures, limits, recovery.
#include "support/cases.h"
#include "support/replies.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/client/client.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <thread>

using namespace tarnis;
using namespace tarnis::testing;
using namespace std::chrono_literals;

using Outcome = Reply::Outcome;
using State = Client::State;

class TestClient : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void passesThroughItsStates()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("a: 1\n") });
        Client client(quickClient());
        QList<State> states;
        QList<bool> connected;
        connect(&client, &Client::stateChanged, this, [&](State state) {
            states.append(state);
            connected.append(client.isConnected());
        });
        QCOMPARE(client.state(), State::Disconnected);
        client.connectTo(server.host(), server.port());
        QCOMPARE(client.state(), State::Connecting);
        QCOMPARE(endOf(client.request("stat")).data, QByteArray("a: 1\n"));
        client.close();
        QCOMPARE(states,
            QList<State>(
                { State::Connecting, State::Greeting, State::Ready, State::Busy, State::Ready, State::Disconnected }));
        QCOMPARE(connected, QList<bool>({ false, false, true, true, true, false }));
        QVERIFY(server.waitForFarewells(1));
    }

    void answersInOrder()
    {
        ScriptedServer server;
        server.answerOthers(
            [](const std::string& request) { return Script { Step::text(QByteArray::fromStdString(request)) }; });
        const auto client = connectedTo(server);
        QStringList ends;
        for (int i = 0; i < 100; ++i)
            client->request(QString::number(i)).then([&](const Reply& reply) { ends.append(reply.text()); });
        QVERIFY(eventually([&] { return ends.size() == 100; }));
        for (int i = 0; i < 100; ++i)
            QCOMPARE(ends.at(i), QString::number(i));
    }

    void sendsHigherPrioritiesFirst()
    {
        ScriptedServer server;
        server.answer("first", { Step::hold("gate"), Step::text("") });
        const auto client = connectedTo(server);
        client->request("first");
        RequestOptions urgent;
        urgent.priority = 1;
        client->request("second");
        client->request("third");
        client->request("urgent", urgent);
        QVERIFY(server.waitForHold("gate"));
        server.release("gate");
        QVERIFY(server.waitForRequests(4));
        QCOMPARE(server.requests(), QList<QByteArray>({ "first", "urgent", "second", "third" }));
    }

    // A server that does not know the command cannot know that its reply should have a length.
    void readsARefusalInTextInPlaceOfABinaryReply_data()
    {
        addColumns<QByteArray, int>("text", "chunk");
        QTest::newRow("whole") << QByteArray("NG:unknown command\n") << 0;
        QTest::newRow("byte by byte") << QByteArray("NG:unknown command\n") << 1;
        QTest::newRow("short") << QByteArray("NG:x") << 0;
        QTest::newRow("a negative length") << QByteArray("NG:\xc3\xbc") << 0;
    }
    void readsARefusalInTextInPlaceOfABinaryReply()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, chunk);
        ScriptedServer server;
        server.answer("rxfile a", { chunk == 0 ? Step::text(text) : Step::text(text).inChunksOf(chunk) });
        const auto client = connectedTo(server);
        const Reply reply = endOf(client->requestBinary("rxfile a"));
        QCOMPARE(reply.outcome, Outcome::Refused);
        QCOMPARE(reply.data, text);
        QCOMPARE(reply.announced, 0);
        QCOMPARE(client->state(), State::Ready);
    }

    // As a length, the first four bytes are 515 MiB.
    void readsARefusalInTextAtAnyMaximumSize()
    {
        ScriptedServer server;
        server.answer("rxfile a", { Step::text("NG: no such file\n") });
        const auto client = connectedTo(server);
        RequestOptions options;
        options.maxSize = qint64(1) << 31;
        const Reply reply = endOf(client->requestBinary("rxfile a", options));
        QCOMPARE(reply.outcome, Outcome::Refused);
        QCOMPARE(reply.reason, "no such file");
    }

    void reportsTheAnnouncedLength()
    {
        ScriptedServer server;
        server.answer("less", { Step::binary("abcd", "OK").announcing(-4) });
        server.answer("exact", { Step::binary("abcd", "OK") });
        const auto client = connectedTo(server);
        QCOMPARE(endOf(client->requestBinary("less")).announced, -4);
        QCOMPARE(endOf(client->requestBinary("exact")).announced, 4);
        QCOMPARE(endOf(client->request("text")).announced, 0);
    }

    void readsBothForms_data()
    {
        QTest::addColumn<int>("chunk");
        QTest::newRow("whole") << 0;
        QTest::newRow("byte by byte") << 1;
        QTest::newRow("three bytes") << 3;
    }
    void readsBothForms()
    {
        QFETCH(int, chunk);
        const auto cut = [chunk](const Step& step) { return chunk == 0 ? step : step.inChunksOf(chunk); };
        ScriptedServer server;
        server.answer("text", { cut(Step::text("a >b\n")) });
        server.answer("hist", { cut(Step::binary("> 12345> ", "OK:\u00b5\n")) });
        server.answer("none", { cut(Step::binary("", "")) });
        const auto client = connectedTo(server);
        const auto text = client->request("text");
        const auto hist = client->requestBinary("hist");
        const auto none = client->requestBinary("none");
        QCOMPARE(endOf(text).data, QByteArray("a >b\n"));
        QVERIFY(endOf(text).binaryText.isNull());
        QCOMPARE(endOf(hist).data, QByteArray("> 12345> "));
        QCOMPARE(endOf(hist).binaryText, QStringLiteral("OK:\u00b5\n"));
        QCOMPARE(endOf(none).outcome, Outcome::Replied);
        QVERIFY(!endOf(none).binaryText.isNull());
    }

    void readsLargeReplies()
    {
        const QByteArray payload(48 << 20, 'x');
        ScriptedServer server;
        server.answer("hist", { Step::binary(payload, "OK:\n") });
        const auto client = connectedTo(server);
        qint64 last = 0;
        RequestOptions options = binary();
        options.progress = [&](const Progress& progress) {
            QVERIFY(progress.received > last);
            QCOMPARE(progress.expected, payload.size());
            last = progress.received;
        };
        const Reply reply = endOf(client->request("hist", options));
        QVERIFY(reply.data == payload);
        QCOMPARE(last, payload.size());
    }

    void reportsPiecesOfText()
    {
        ScriptedServer server;
        server.answer("long", { Step::text("abcdef").inChunksOf(2) });
        const auto client = connectedTo(server);
        QByteArray pieces;
        RequestOptions options;
        options.progress = [&](const Progress& progress) { pieces += progress.piece.toByteArray(); };
        QCOMPARE(endOf(client->request("long", options)).data, QByteArray("abcdef"));
        QCOMPARE(pieces, QByteArray("abcdef"));
    }

    void sendsAFileByteForByte()
    {
        ScriptedServer server;
        const auto client = connectedTo(server);
        const QByteArray content("a\nb\xff\0c", 6);
        QCOMPARE(endOf(client->upload("name", content)).outcome, Outcome::Replied);
        QCOMPARE(server.received(), QByteArray("txfile name\n") + content + '\x04');
    }

    void refusesWhatCannotBeSent_data()
    {
        addColumns<QString, QByteArray>("text", "data");
        addCase("line feed", "a\nb", QByteArray());
        addCase("upload without header", "txfile", QByteArray("NG:Command does not contain newline charactor[\\n].\n"));
        addCase("upload with the end mark", "txfile a\n\x04", QByteArray("NG:File contains EOT(0x04) char.\n"));
    }
    void refusesWhatCannotBeSent()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, data);
        ScriptedServer server;
        const auto client = connectedTo(server);
        const Reply reply = endOf(client->request(text));
        QCOMPARE(reply.outcome, Outcome::Refused);
        QCOMPARE(reply.data, data);
        QVERIFY(!reply.reason.isEmpty());
        QCOMPARE(endOf(client->upload("a\nb", "x")).outcome, Outcome::Refused);
        QCOMPARE(endOf(client->request("")).outcome, Outcome::Replied);
        client->close();
        QVERIFY(server.waitForFarewells(1));
        QCOMPARE(server.received(), QByteArray("close"));
    }

    void reportsRefusals()
    {
        ScriptedServer server;
        server.answer("bad", { Step::text("NG:no such thing\n") });
        server.answer("badhist", { Step::binary("", "NG:no histogram\n") });
        const auto client = connectedTo(server);
        const Reply text = endOf(client->request("bad"));
        QCOMPARE(text.outcome, Outcome::Refused);
        QCOMPARE(text.reason, QStringLiteral("no such thing"));
        QCOMPARE(endOf(client->requestBinary("badhist")).reason, QStringLiteral("no histogram"));
    }

    // Every outcome but Replied has a text for users.
    void refusalsHaveAReason_data()
    {
        QTest::addColumn<Step>("reply");
        QTest::newRow("text") << Step::text("NG: \n");
        QTest::newRow("binary") << Step::binary("", "NG:\n");
        QTest::newRow("text for a binary reply") << Step::text("NG:");
    }
    void refusalsHaveAReason()
    {
        QFETCH(Step, reply);
        ScriptedServer server;
        server.answer("bad", { reply });
        const auto client = connectedTo(server);
        const bool isText = QByteArray(QTest::currentDataTag()) == "text";
        const Reply end = endOf(client->request("bad", isText ? RequestOptions() : binary()));
        QCOMPARE(end.outcome, Outcome::Refused);
        QCOMPARE(end.reason, QStringLiteral("The server refused the request without a reason."));
    }

    void failsWithoutConnection()
    {
        Client client(once());
        QCOMPARE(endOf(client.request("stat")).outcome, Outcome::Failed);
        client.connectTo("127.0.0.1", ScriptedServer::closedPort());
        const Reply reply = endOf(client.request("stat"));
        QCOMPARE(reply.outcome, Outcome::Failed);
        QVERIFY(reply.reason.contains("refused"));
        QCOMPARE(client.state(), State::Failed);
        QCOMPARE(client.reason(), reply.reason);
        QCOMPARE(endOf(client.request("stat")).reason, reply.reason);
    }

    void refusesAddresses_data()
    {
        addColumns<QString, int, QByteArray>("host", "port", "prompt");
        QTest::newRow("no host") << " " << 5000 << QByteArray("> ");
        QTest::newRow("no port") << "localhost" << 0 << QByteArray("> ");
        QTest::newRow("no prompt") << "localhost" << 5000 << QByteArray();
    }
    void refusesAddresses()
    {
        QFETCH(QString, host);
        QFETCH(int, port);
        QFETCH(QByteArray, prompt);
        ClientOptions options;
        options.prompt = prompt;
        Client client(options);
        client.connectTo(host, quint16(port));
        QCOMPARE(client.state(), State::Failed);
        QVERIFY(!client.reason().isEmpty());
        client.reconnectNow();
        QCOMPARE(client.state(), State::Failed);
    }

    void comesBackAfterALoss()
    {
        ScriptedServer server;
        server.setScript(0, { Step::text("hello\n"), Step::expectLine("a"), Step::drop() });
        server.answer("b", { Step::text("yes") });
        Client client(quickClient());
        QSignalSpy lost(&client, &Client::connectionLost);
        QSignalSpy up(&client, &Client::connected);
        client.connectTo(server.host(), server.port());
        const auto first = client.request("a");
        const auto second = client.request("b");
        QCOMPARE(endOf(first).outcome, Outcome::Failed);
        QVERIFY(!endOf(first).reason.isEmpty());
        QCOMPARE(endOf(second).data, QByteArray("yes"));
        QCOMPARE(lost.size(), 1);
        QCOMPARE(up.size(), 2);
        QVERIFY(client.reason().isEmpty());
    }

    void stopsAfterTheMaximumNumberOfAttempts()
    {
        ClientOptions options = quickClient();
        options.reconnect.maxAttempts = 3;
        ScriptedServer server({ Step::drop() });
        Client client(options);
        client.connectTo(server.host(), server.port());
        QCOMPARE(endOf(client.request("stat")).outcome, Outcome::Failed);
        QCOMPARE(client.state(), State::Failed);
        QVERIFY(server.waitForConnections(3));
        client.reconnectNow();
        QCOMPARE(client.state(), State::Connecting);
    }

    void refusedGreetingIsAReason()
    {
        ScriptedServer server({ Step::text("NG:too many clients\n") });
        Client client(once());
        client.connectTo(server.host(), server.port());
        QVERIFY(eventually([&] { return client.state() == State::Failed; }));
        QCOMPARE(client.reason(), QStringLiteral("too many clients"));
    }

    void theDestructorIsSilent()
    {
        ScriptedServer server;
        server.answer("long", { Step::silence() });
        auto client = connectedTo(server);
        const QFuture<Reply> future = client->request("long");
        int emitted = 0;
        connect(client.get(), &Client::stateChanged, this, [&] { ++emitted; });
        client.reset();
        QCOMPARE(emitted, 0);
        QCOMPARE(endOf(future).outcome, Outcome::Cancelled);
    }

    void deletedAnywhere_data()
    {
        QTest::addColumn<int>("place");
        QTest::newRow("stateChanged to Greeting") << 0;
        QTest::newRow("connected") << 1;
        QTest::newRow("stateChanged to Busy") << 2;
        QTest::newRow("continuation") << 3;
        QTest::newRow("progress") << 4;
        QTest::newRow("connectionLost") << 5;
        QTest::newRow("continuation of a failed request") << 6;
        QTest::newRow("continuation of a timed-out request") << 7;
    }
    void deletedAnywhere()
    {
        QFETCH(int, place);
        ScriptedServer server;
        server.answer("ok", { Step::text("fine") });
        server.answer("drop", { Step::raw("a"), Step::drop() });
        server.answer("silent", { Step::silence() });
        auto* client = new Client(quickClient());
        const auto end = [&](bool now) {
            if (now && client)
                delete std::exchange(client, nullptr);
        };
        connect(client, &Client::stateChanged, this, [&](State state) {
            end(place == 0 && state == State::Greeting);
            end(place == 2 && state == State::Busy);
        });
        connect(client, &Client::connected, this, [&] { end(place == 1); });
        connect(client, &Client::connectionLost, this, [&] { end(place == 5); });
        client->connectTo(server.host(), server.port());
        QList<QFuture<Reply>> futures;
        RequestOptions options;
        options.progress = [&](const Progress&) { end(place == 4); };
        futures.append(client->request("ok", options));
        futures.last().then([&](const Reply&) { end(place == 3); });
        futures.append(client->request("drop"));
        futures.last().then([&](const Reply&) { end(place == 6); });
        options.silence = 10ms;
        futures.append(client->request("silent", options));
        futures.last().then([&](const Reply&) { end(place == 7); });
        futures.append(client->request("ok"));
        QVERIFY(eventually([&] { return !client; }));
        for (const QFuture<Reply>& future : futures) {
            QVERIFY(future.isFinished());
            QCOMPARE(future.resultCount(), 1);
        }
    }

    void continuationsMayDoAnything()
    {
        ScriptedServer server;
        const auto client = connectedTo(server);
        int ends = 0;
        client->request("a").then([&](const Reply&) {
            ++ends;
            client->request("b").then([&](const Reply&) {
                ++ends;
                client->connectTo(server.host(), server.port());
                client->request("c").then([&](const Reply&) {
                    ++ends;
                    client->abort();
                });
            });
        });
        QVERIFY(eventually([&] { return ends == 3; }));
        QCOMPARE(client->state(), State::Disconnected);
        QCOMPARE(server.requests(), QList<QByteArray>({ "a", "b", "c" }));
    }

    void refusesOtherThreads()
    {
        ScriptedServer server;
        const auto client = connectedTo(server);
        QFuture<Reply> future;
        std::thread([&] { future = client->request("stat"); }).join();
        QCOMPARE(endOf(future).outcome, Outcome::Failed);
    }
};

QTEST_GUILESS_MAIN(TestClient)
#include "tst_client.moc"
