// A session over a real connection: sent bytes, assembly of replies, and the queue.
#include "sessionclient.h"
#include "support/cases.h"
#include "support/wait.h"

#include <QElapsedTimer>
#include <QTest>
#include <QtEndian>

#include <thread>

using namespace tarnis::testing;

namespace {

const QByteArray longPrompt("\nREADY> ");

} // namespace

class TestSessionWire : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Framing

    void asksAndAnswers()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("a: 1\n") });
        server.answer("hist1d", { Step::doubles({ 1.5, -2.0 }, "OK:\xc2\xb5\n") });
        SessionClient client(server);
        client.start();
        QVERIFY(client.waitForConnected());
        QCOMPARE(client.ask("stat"), "a: 1\n");
        QVERIFY(client.answers[0].cmd->m_replyText.isNull());
        const QByteArray payload = client.ask("hist1d", SessionClient::Binary);
        QCOMPARE(payload.size(), 16);
        QCOMPARE(qFromLittleEndian<double>(payload.constData() + 8), -2.0);
        QCOMPARE(client.answers[1].cmd->m_replyText, QString::fromUtf8("OK:\xc2\xb5\n"));
        QCOMPARE(client.ask("nothing"), QByteArray(""));
        QVERIFY(!client.answers[2].bytes.isNull());
        client.destroy();
        QVERIFY(server.waitForFarewells(1));
        QCOMPARE(server.received(), "stat\nhist1d\nnothing\nclose");
        QCOMPARE(client.signalled, QStringList({ "connected", "result stat", "result hist1d", "result nothing" }));
    }

    void deliversTheSameCommandObject()
    {
        const ScriptedServer server;
        SessionClient client(server);
        const TarnisCmd* const cmd = client.send("stat");
        client.start();
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.answers[0].cmd.data(), cmd);
        QCOMPARE(client.answers[0].cmd->m_cmdName, "name of stat");
    }

    void writesRequests_data()
    {
        addColumns<QString, QByteArray>("request", "bytes");
        addCase("line", QStringLiteral("stat"), QByteArray("stat\n"));
        addCase("Latin-1", QStringLiteral("gr\u00fcn \u20ac"), QByteArray("gr\xfcn ?\n"));
        addCase("upload", QStringLiteral("txfile a\nx\u00e4\n"), QByteArray("txfile a\nx\xe4\n\x04"));
        addCase("upload word further in", QStringLiteral("my txfile a"), QByteArray("my txfile a\n"));
        addCase("end mark in a line", QStringLiteral("a\u0004b"),
            QByteArray("a\x04"
                       "b\n"));
    }
    void writesRequests()
    {
        QFETCH(QString, request);
        QFETCH(QByteArray, bytes);
        ScriptedServer server({ Step::text({}), Step::expect(bytes), Step::text("done") });
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask(request), "done");
        QCOMPARE(server.received(), bytes);
        QCOMPARE(server.failures(), QStringList());
    }

    void refusesUploads_data()
    {
        addColumns<QString, QByteArray>("request", "reply");
        addCase("no line feed", QStringLiteral("txfile a"),
            QByteArray("NG:Command does not contain newline charactor[\\n].\n"));
        addCase(
            "end mark inside", QStringLiteral("txfile a\nx\u0004y"), QByteArray("NG:File contains EOT(0x04) char.\n"));
    }
    void refusesUploads()
    {
        QFETCH(QString, request);
        const ScriptedServer server;
        SessionClient client(server);
        client.start();
        QTEST(client.ask(request), "reply");
        QTEST(client.ask(request, SessionClient::Binary), "reply");
        QCOMPARE(server.received(), "");
        QCOMPARE(client.ask("stat"), "");
        QCOMPARE(server.received(), "stat\n");
    }

    void sendsAnUploadOfManySegments()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.start();
        const QByteArray content = QByteArray("0123456789abcde\n").repeated(1 << 19);
        QCOMPARE(client.ask("txfile big\n" + QString::fromLatin1(content)), "");
        QVERIFY(server.requests().first() == "txfile big\n" + content);
    }

    void answersAnEmptyCommandItself()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask(QString()), QByteArray());
        QVERIFY(client.answers[0].bytes.isNull());
        client.ask("stat");
        QCOMPARE(server.received(), "stat\n");
    }

    void showsProgress()
    {
        ScriptedServer server;
        server.answer("list", { Step::text("one\ntwo\n").cutAt({ 4, 8 }) });
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask("list", SessionClient::Progress), "one\ntwo\n");
        // The piece with the prompt emits no signal.
        QCOMPARE(client.pieces, QByteArrayList({ "one\n", "two\n" }));
        client.pieces.clear();
        QCOMPARE(client.ask("list"), "one\ntwo\n");
        QCOMPARE(client.pieces, QByteArrayList());
    }

    void showsNoProgressOfGreetingAndBinaryReplies()
    {
        ScriptedServer server({ Step::text("welcome"), Step::serve() });
        server.answer("hist", { Step::binary(QByteArray("payload")) });
        SessionClient client(server);
        auto* const cmd = new TarnisCmd("hist");
        cmd->m_bBinary = true;
        cmd->m_bProgress = true;
        client.session->send(cmd);
        client.start();
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.answers[0].bytes, "payload");
        QCOMPARE(client.pieces, QByteArrayList());
    }

    void usesTheDefaultPrompt()
    {
        QByteArray common("$ ");
        TarnisSession::SetDefaultPrompt(&common);
        const ScriptedServer server(wellBehaved(), common);
        {
            SessionClient client(ScriptedServer::host(), server.port(), nullptr);
            client.start();
            QCOMPARE(client.ask("stat"), "");
        }
        TarnisSession::SetDefaultPrompt(nullptr);
    }

    // Pieces

    void assemblesReplies_data()
    {
        QTest::addColumn<int>("chunk");
        QTest::newRow("whole") << 0;
        QTest::newRow("byte by byte") << 1;
        QTest::newRow("two bytes at a time") << 2;
        QTest::newRow("three bytes at a time") << 3;
        QTest::newRow("seven bytes at a time") << 7;
    }
    void assemblesReplies()
    {
        QFETCH(int, chunk);
        ScriptedServer server({ Step::text("welcome > here").inChunksOf(chunk), Step::serve() }, longPrompt);
        server.answer("text", { Step::text("READY> yes\n").inChunksOf(chunk) });
        server.answer("binary", { Step::binary(longPrompt + longPrompt, "READY").inChunksOf(chunk) });
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask("text"), "READY> yes\n");
        QCOMPARE(client.ask("binary", SessionClient::Binary), longPrompt + longPrompt);
        QCOMPARE(client.answers.last().cmd->m_replyText, "READY");
        QCOMPARE(client.ask("text"), "READY> yes\n");
    }

    void splitsTextReplyAnywhere()
    {
        const QByteArray reply = "one" + longPrompt;
        ScriptedServer server(wellBehaved(), longPrompt);
        std::vector<Script> replies;
        for (qsizetype cut = 1; cut < reply.size(); ++cut)
            replies.push_back({ Step::text("one").cutAt({ cut }) });
        server.answerInTurn("text", replies);
        SessionClient client(server);
        client.start();
        for (size_t i = 0; i < replies.size(); ++i)
            QCOMPARE(client.ask("text"), "one");
    }

    void splitsBinaryReplyAnywhere()
    {
        const QByteArray payload = longPrompt + "x";
        const qsizetype size = 4 + payload.size() + 2 + longPrompt.size();
        ScriptedServer server(wellBehaved(), longPrompt);
        std::vector<Script> replies;
        for (qsizetype cut = 1; cut < size; ++cut)
            replies.push_back({ Step::binary(payload, "OK").cutAt({ cut }) });
        server.answerInTurn("binary", replies);
        SessionClient client(server);
        client.start();
        for (size_t i = 0; i < replies.size(); ++i) {
            QCOMPARE(client.ask("binary", SessionClient::Binary), payload);
            QCOMPARE(client.answers.last().cmd->m_replyText, "OK");
        }
    }

    void cutsTheReplyShortAtAPromptThatEndsAChunk()
    {
        ScriptedServer server;
        server.answer("ask", { Step::text("one> two").cutAt({ 5 }) });
        server.answer("next", { Step::text("three") });
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask("ask"), "one");
        // The rest is read as the beginning of the next reply: there is no resynchronisation.
        QVERIFY(client.ask("next").startsWith("two"));
        QVERIFY(client.ask("last") != "(none)");
        QVERIFY(server.waitForRequests(3));
        QCOMPARE(server.received(), "ask\nnext\nlast\n");
    }

    void sendsTheRequestThatAnEarlierReplyAnswers()
    {
        ScriptedServer server;
        server.answer("ask", { Step::raw("one> "), Step::hold("rest"), Step::raw("two> "), Step::hold("sent") });
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask("ask"), "one");
        QVERIFY(server.waitForHold("rest"));
        server.release("rest");
        QVERIFY(server.waitForHold("sent"));
        QCOMPARE(client.ask("next"), "two");
        server.release("sent");
        QVERIFY(server.waitForRequest("next"));
    }

    void continuesAfterBytesThatFollowThePrompt()
    {
        ScriptedServer server;
        server.answer("ask", { Step::raw("one> and"), Step::hold("rest"), Step::text(" more") });
        SessionClient client(server);
        client.start();
        client.send("ask");
        QVERIFY(server.waitForHold("rest"));
        server.release("rest");
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.answers[0].bytes, "one> and more");
    }

    void readsALongSilentReplyWhole()
    {
        ScriptedServer server;
        const QByteArray payload = QByteArray("0123456789abcdef").repeated(1 << 20);
        server.answer("hist", { Step::binary(payload, "OK") });
        SessionClient client(server);
        client.start();
        QVERIFY(client.ask("hist", SessionClient::Binary) == payload);
        QCOMPARE(client.answers[0].cmd->m_replyText, "OK");
    }

    // The queue

    void sendsOneCommandAtATime()
    {
        ScriptedServer server;
        server.answer("first", { Step::hold("gate"), Step::text("1") });
        SessionClient client(server);
        client.send("first");
        client.send("second");
        client.start();
        QVERIFY(server.waitForHold("gate"));
        QCOMPARE(server.received(), "first\n");
        client.session->sendPrevious({ new TarnisCmd("a"), new TarnisCmd("b") });
        server.release("gate");
        QVERIFY(client.waitForAnswers(4));
        QCOMPARE(server.requests(), QList<QByteArray>({ "first", "a", "b", "second" }));
    }

    void cancelLeavesTheCommandInFlight()
    {
        ScriptedServer server;
        server.answer("first", { Step::hold("gate"), Step::text("1") });
        SessionClient client(server);
        client.send("first");
        client.send("second");
        client.start();
        QVERIFY(server.waitForHold("gate"));
        client.session->cancel();
        QCOMPARE(client.session->queued(), QStringList());
        server.release("gate");
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.answers[0].bytes, "1");
        QCOMPARE(client.ask("third"), "");
        QCOMPARE(server.requests(), QList<QByteArray>({ "first", "third" }));
    }

    void stepsOverNullCommands()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.session->send(nullptr);
        client.session->send(nullptr);
        client.send("stat");
        client.start();
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.signalled, QStringList({ "connected", "result stat" }));
    }

    void pausesAfterAnAnswer()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.send("slow")->m_afterSleep = 300;
        client.send(QString());
        QElapsedTimer timer;
        timer.start();
        client.start();
        QVERIFY(client.waitForAnswers(2));
        // From before the pause to after it: a busy machine makes it longer only.
        QVERIFY2(timer.elapsed() >= 300, qPrintable(QString::number(timer.elapsed())));
    }

    void doesNotPauseForANegativeTime()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.send("stat")->m_afterSleep = -1;
        client.start();
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.ask("next"), "");
    }

    void leavesTheReplyToItsReceivers()
    {
        ScriptedServer server;
        server.answer("big", { Step::binary(QByteArray(1 << 20, 'x')) });
        SessionClient client(server);
        client.start();
        client.ask("big", SessionClient::Binary);
        QByteArray mine = client.answers.takeFirst().bytes;
        // The session holds no reference: writing to the bytes does not copy them.
        QVERIFY(eventually([&] { return mine.isDetached(); }));
        QCOMPARE(client.ask("next"), "");
        QCOMPARE(mine, QByteArray(1 << 20, 'x'));
    }

    // Many

    void manySessionsTalkAtOnce()
    {
        ScriptedServer server;
        server.answerOthers([](const std::string& request) {
            return Script { Step::text(QByteArray::fromStdString(request)).inChunksOf(2) };
        });
        std::vector<std::unique_ptr<SessionClient>> clients;
        for (int i = 0; i < 16; ++i) {
            clients.push_back(std::make_unique<SessionClient>(server));
            for (int j = 0; j < 5; ++j)
                clients.back()->send(QString("command %1").arg(100 * i + j));
            clients.back()->start();
        }
        for (size_t i = 0; i < clients.size(); ++i) {
            QVERIFY(clients[i]->waitForAnswers(5));
            for (int j = 0; j < 5; ++j)
                QCOMPARE(clients[i]->answers[j].bytes, QString("command %1").arg(100 * int(i) + j).toLatin1());
        }
    }

    void takesCommandsFromManyThreads()
    {
        const ScriptedServer server;
        SessionClient client(server);
        client.start();
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&] {
                    for (int j = 0; j < 25; ++j) {
                        auto* const cmd = new TarnisCmd("x");
                        cmd->m_afterSleep = 0;
                        if (j % 2)
                            client.session->send(cmd);
                        else
                            client.session->sendPrevious(cmd);
                        client.session->SetId(QString::number(j));
                        client.session->setTimeout(40 + j);
                    }
                });
            }
        }
        QVERIFY(client.waitForAnswers(100));
        QCOMPARE(server.requests().size(), 100);
    }
};

QTEST_GUILESS_MAIN(TestSessionWire)
#include "tst_sessionwire.moc"
