// A session with a misbehaving server: wrong lengths, greetings that never come, silence, closed connections, and
// sessions that are destroyed in every state.
#include "sessionclient.h"
#include "support/cases.h"

#include "support/fullbacklog.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTest>
#include <QtEndian>

#include <limits>

using namespace tarnis::testing;

namespace {

constexpr int refused = QAbstractSocket::ConnectionRefusedError;
constexpr int closedByPeer = QAbstractSocket::RemoteHostClosedError;
constexpr int hostNotFound = QAbstractSocket::HostNotFoundError;
constexpr int timedOut = QAbstractSocket::SocketTimeoutError;

// Greets, then does `steps` for the first request.
Script onFirstRequest(const Script& steps)
{
    Script script { Step::text({}), Step::expectLine("ask") };
    script.insert(script.end(), steps.begin(), steps.end());
    return script;
}

QByteArray lengthField(qint32 length)
{
    QByteArray field(4, Qt::Uninitialized);
    qToLittleEndian(length, field.data());
    return field;
}

} // namespace

class TestSessionFaults : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // False lengths

    void readsWrongLengths_data()
    {
        addColumns<int, QByteArray, QString>("length", "payload", "text");
        QTest::newRow("zero") << 0 << QByteArray("") << QStringLiteral("abcdOK");
        QTest::newRow("too short") << 3 << QByteArray("abc") << QStringLiteral("dOK");
        QTest::newRow("too long, within the text") << 5 << QByteArray("abcdO") << QStringLiteral("K");
        QTest::newRow("too long, all the text") << 6 << QByteArray("abcdOK") << QString("");
        QTest::newRow("negative") << -4 << QByteArray("") << QStringLiteral("abcdOK");
        QTest::newRow("least") << std::numeric_limits<int>::min() << QByteArray("") << QStringLiteral("abcdOK");
    }
    void readsWrongLengths()
    {
        QFETCH(int, length);
        ScriptedServer server;
        server.answer("hist", { Step::binary(QByteArray("abcd"), "OK").announcing(length) });
        SessionClient client(server);
        client.start();
        QTEST(client.ask("hist", SessionClient::Binary), "payload");
        QTEST(client.answers[0].cmd->m_replyText, "text");
        QCOMPARE(client.ask("stat"), "");
    }

    void failsOnLengthsThatNeverCome_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("reaching into the prompt") << 7;
        QTest::newRow("longer than the reply") << 1000;
        QTest::newRow("largest accepted") << (1 << 30);
    }
    void failsOnLengthsThatNeverCome()
    {
        QFETCH(int, length);
        ScriptedServer server;
        server.answer("hist", { Step::binary(QByteArray("abcd"), "OK").announcing(length) });
        SessionClient client(server);
        client.send("hist", SessionClient::Binary);
        client.startImpatient();
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.signalled, QStringList({ "connected", "error" }));
        QCOMPARE(client.errorCodes(), QList<int>({ timedOut }));
        QVERIFY(server.waitForFarewells(1));
    }

    // The greeting

    void throwsTheGreetingAway()
    {
        ScriptedServer server({ Step::text("Welcome > to\nthe \xff server").inChunksOf(4), Step::serve() });
        server.answer("stat", { Step::text("a: 1") });
        SessionClient client(server);
        client.start();
        QCOMPARE(client.ask("stat"), "a: 1");
    }

    void waitsForALateGreeting()
    {
        ScriptedServer server({ Step::raw("Wel"), Step::hold("late"), Step::text("come"), Step::serve() });
        SessionClient client(server);
        client.send("stat");
        client.start();
        QVERIFY(server.waitForHold("late"));
        QCOMPARE(client.signalled, QStringList());
        QCOMPARE(server.received(), "");
        server.release("late");
        QVERIFY(client.waitForAnswers(1));
        QCOMPARE(client.signalled, QStringList({ "connected", "result stat" }));
    }

    void failsWithoutGreeting_data()
    {
        addColumns<int, int, int>("kind", "code", "farewells");
        QTest::newRow("silence") << 0 << timedOut << 1;
        QTest::newRow("text without a prompt") << 1 << timedOut << 1;
        QTest::newRow("closed at once") << 2 << closedByPeer << 0;
        QTest::newRow("closed behind half of it") << 3 << closedByPeer << 0;
        QTest::newRow("broken") << 4 << closedByPeer << 0;
    }
    void failsWithoutGreeting()
    {
        QFETCH(int, kind);
        QFETCH(int, code);
        const std::vector<Script> scripts { { Step::silence() }, { Step::raw("welcome"), Step::silence() },
            { Step::drop() }, { Step::raw("welcome>"), Step::drop() }, { Step::raw("welcome>"), Step::reset() } };
        const ScriptedServer server(scripts[size_t(kind)]);
        SessionClient client(server);
        client.send("stat");
        client.startImpatient();
        QVERIFY(client.waitForEnd());
        // One from the reader, one from the worker: two equal errors are intended.
        QCOMPARE(client.errorCodes(), QList<int>({ code, code }));
        QCOMPARE(client.errors[0], client.errors[1]);
        QVERIFY(!client.errors[0].second.isEmpty());
        QCOMPARE(client.signalled, QStringList({ "error", "error" }));
        QCOMPARE(client.session->queued(), QStringList("stat"));
        QVERIFY(server.waitUntilDeserted());
        QTEST(server.farewells(), "farewells");
    }

    void failsToConnect_data()
    {
        addColumns<QString, int>("host", "code");
        QTest::newRow("refused") << QStringLiteral("127.0.0.1") << refused;
        QTest::newRow("unknown host") << QStringLiteral("host.invalid") << hostNotFound;
        QTest::newRow("no host") << QString() << hostNotFound;
    }
    void failsToConnect()
    {
        QFETCH(QString, host);
        QFETCH(int, code);
        const QByteArray prompt("> ");
        SessionClient client(host, ScriptedServer::closedPort(), &prompt);
        client.send("stat");
        client.start();
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.errorCodes(), QList<int>({ code }));
        QVERIFY(!client.errors[0].second.isEmpty());
        QCOMPARE(client.session->queued(), QStringList("stat"));
        // An ended session accepts commands without processing them, until they are cancelled.
        client.send("more");
        QCOMPARE(client.session->queued(), QStringList({ "stat", "more" }));
        client.session->cancel();
        QCOMPARE(client.session->queued(), QStringList());
        QCOMPARE(client.signalled, QStringList("error"));
    }

    // Faults during a reply

    void failsInAReply_data()
    {
        addColumns<int, int, int, int>("kind", "form", "code", "farewells");
        QTest::newRow("closed before it") << 0 << 0 << closedByPeer << 0;
        QTest::newRow("closed before it, binary") << 0 << 1 << closedByPeer << 0;
        QTest::newRow("broken before it") << 1 << 0 << closedByPeer << 0;
        QTest::newRow("closed in it") << 2 << 0 << closedByPeer << 0;
        QTest::newRow("closed in it, binary") << 3 << 1 << closedByPeer << 0;
        QTest::newRow("closed in the length") << 4 << 1 << closedByPeer << 0;
        QTest::newRow("broken in it") << 5 << 0 << closedByPeer << 0;
        QTest::newRow("silence before it") << 6 << 0 << timedOut << 1;
        QTest::newRow("silence before it, binary") << 6 << 1 << timedOut << 1;
        QTest::newRow("silence in it") << 7 << 0 << timedOut << 1;
        QTest::newRow("silence in it, binary") << 8 << 1 << timedOut << 1;
        QTest::newRow("silence in the length") << 9 << 1 << timedOut << 1;
    }
    void failsInAReply()
    {
        QFETCH(int, kind);
        QFETCH(int, form);
        QFETCH(int, code);
        const Step field = Step::raw(lengthField(4) + "ab");
        const Step halfField = Step::raw(lengthField(4).left(3));
        const std::vector<Script> scripts { { Step::drop() }, { Step::reset() }, { Step::raw("one>"), Step::drop() },
            { field, Step::drop() }, { halfField, Step::drop() }, { Step::raw("one>"), Step::reset() }, {},
            { Step::raw("one>") }, { field }, { halfField } };
        const ScriptedServer server(onFirstRequest(scripts[size_t(kind)]));
        SessionClient client(server);
        client.send("ask", SessionClient::Form(form));
        client.send("next");
        client.startImpatient();
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.signalled, QStringList({ "connected", "error" }));
        QCOMPARE(client.errorCodes(), QList<int>({ code }));
        QCOMPARE(client.session->queued(), QStringList("next"));
        QVERIFY(server.waitUntilDeserted());
        QTEST(server.farewells(), "farewells");
        QCOMPARE(server.failures(), QStringList());
    }

    void answersBeforeItNoticesTheClosing()
    {
        const ScriptedServer server(onFirstRequest({ Step::text("one"), Step::drop() }));
        SessionClient client(server);
        client.startImpatient();
        QCOMPARE(client.ask("ask"), "one");
        QCOMPARE(client.ask("next"), "(none)");
        QCOMPARE(client.signalled, QStringList({ "connected", "result ask", "error" }));
        QCOMPARE(client.errorCodes(), QList<int>({ closedByPeer }));
    }

    void allowsSilenceForTheSetTimeout()
    {
        const ScriptedServer server(onFirstRequest({ Step::raw("one"), Step::silence() }));
        SessionClient client(server);
        client.send("ask");
        QElapsedTimer timer;
        timer.start();
        client.startImpatient();
        QVERIFY(client.waitForEnd());
        // 102 waits of 10 ms; no upper limit here, since a busy machine is no fault.
        QVERIFY2(timer.elapsed() >= 1000, qPrintable(QString::number(timer.elapsed())));
    }

    void endsWhenTheServerIsKilled()
    {
        auto server = std::make_unique<ScriptedServer>(onFirstRequest({ Step::hold("never") }));
        SessionClient client(*server);
        const QByteArray itsPrompt = *server->prompt();
        client.session = std::make_unique<SessionProbe>(ScriptedServer::host(), server->port(), &itsPrompt, nullptr);
        connect(client.session.get(), &TarnisSession::error, &client, [&](int code, const QString& text) {
            client.errors.append({ code, text });
        });
        client.send("ask");
        client.start();
        QVERIFY(server->waitForHold("never"));
        server.reset();
        QVERIFY(client.waitForEnd());
        QCOMPARE(client.errorCodes(), QList<int>({ closedByPeer }));
        client.destroy();
    }

    // The end

    void canBeDestroyedInEveryState_data()
    {
        QTest::addColumn<int>("state");
        QTest::newRow("created") << 0;
        QTest::newRow("started") << 1;
        QTest::newRow("greeting") << 2;
        QTest::newRow("idle") << 3;
        QTest::newRow("busy with a text reply") << 4;
        QTest::newRow("busy in a text reply") << 5;
        QTest::newRow("busy with a binary reply") << 6;
        QTest::newRow("busy in a binary reply") << 7;
        QTest::newRow("in a command's pause") << 8;
        QTest::newRow("ended") << 9;
    }
    void canBeDestroyedInEveryState()
    {
        QFETCH(int, state);
        ScriptedServer server(state == 2 ? Script { Step::raw("wel"), Step::hold("gate") } : wellBehaved());
        server.answer("4", { Step::hold("gate") });
        server.answer("5", { Step::raw("part"), Step::hold("gate") });
        server.answer("6", { Step::hold("gate") });
        server.answer("7", { Step::raw(lengthField(9) + "part"), Step::hold("gate") });
        server.answer("9", { Step::drop() });
        SessionClient client(server);
        TarnisCmd* const cmd =
            client.send(QString::number(state), state == 6 || state == 7 ? SessionClient::Binary : SessionClient::Text);
        cmd->m_afterSleep = state == 8 ? 100 : 0;
        client.send("never");
        client.session->send(nullptr);
        if (state == 3 || state == 2)
            client.session->cancel();
        if (state > 0)
            client.startImpatient();
        if (state == 2 || (state >= 4 && state <= 7))
            QVERIFY(server.waitForHold("gate"));
        else if (state == 3)
            QVERIFY(client.waitForConnected());
        else if (state == 8)
            QVERIFY(client.waitForAnswers(1));
        else if (state == 9)
            QVERIFY(client.waitForEnd());
        client.destroy();
        QVERIFY(server.waitUntilDeserted());
        QCoreApplication::processEvents();
        QVERIFY(!client.signalled.contains("result never") || state == 1);
        if (state >= 3 && state != 9)
            QCOMPARE(server.farewells(), 1);
    }

    void canBeDestroyedWhileConnecting()
    {
        FullBacklog listener;
        QVERIFY(listener.isFull());
        const QByteArray itsPrompt("> ");
        SessionClient client(ScriptedServer::host(), listener.port(), &itsPrompt);
        client.startImpatient();
        QVERIFY(listener.waitForAttempt());
        listener.letInLater();
        client.destroy();
        QVERIFY(!client.signalled.contains("connected"));
    }

    void twoHundredComeAndGo()
    {
        const ScriptedServer server;
        for (int i = 0; i < 200; ++i) {
            SessionClient client(server);
            client.send("stat");
            client.start();
            if (i % 4 == 1)
                QVERIFY(client.waitForConnected());
            if (i % 4 == 2)
                QVERIFY(client.waitForAnswers(1));
        }
        // The server may still have to accept the last one.
        QVERIFY(server.waitForConnections(200));
        QVERIFY(server.waitUntilDeserted());
        QCOMPARE(server.connectionCount(), 200);
    }
};

QTEST_GUILESS_MAIN(TestSessionFaults)
#include "tst_sessionfaults.moc"
