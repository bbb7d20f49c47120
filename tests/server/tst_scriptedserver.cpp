// The scripted server of the other tests, tested with a plain socket.
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QTcpSocket>
#include <QTest>

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>

using namespace tarnis::testing;

namespace {

// A client on the test's thread that records the bytes of each wait separately.
class Client {
public:
    explicit Client(const ScriptedServer& server)
    {
        m_socket.connectToHost(ScriptedServer::host(), server.port());
        m_socket.waitForConnected();
    }
    QByteArrayList readPieces(const QByteArray& end)
    {
        QByteArrayList pieces;
        while (!pieces.join().endsWith(end) && m_socket.waitForReadyRead(10000))
            pieces.append(m_socket.readAll());
        return pieces;
    }
    QByteArray read(const QByteArray& end) { return readPieces(end).join(); }
    void write(const QByteArray& bytes)
    {
        m_socket.write(bytes);
        m_socket.flush();
    }
    // Bypasses Qt, which reports the same error for both cases.
    int systemErrorAtEnd()
    {
        const int fd = int(m_socket.socketDescriptor());
        pollfd readable { fd, POLLIN, 0 };
        char byte = 0;
        errno = 0;
        return ::poll(&readable, 1, 10000) == 1 && ::recv(fd, &byte, 1, 0) == 0 ? 0 : errno;
    }
    void close() { m_socket.close(); }

private:
    QTcpSocket m_socket;
};

} // namespace

class TestScriptedServer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void greetsAndServes()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("a: 1\n") });
        Client client(server);
        QCOMPARE(client.read("> "), "> ");
        client.write("stat\nother\n");
        QCOMPARE(client.read("> > "), "a: 1\n> > ");
        QCOMPARE(server.requests(), QList<QByteArray>({ "stat", "other" }));
        QCOMPARE(server.received(), "stat\nother\n");
        QCOMPARE(server.openConnections(), 1);
    }

    void sendsPiecesApart()
    {
        ScriptedServer server({ Step::raw("abcdef").inChunksOf(2), Step::raw("12345!").cutAt({ 1, 4 }) });
        Client client(server);
        const QByteArrayList pieces = client.readPieces("!");
        QCOMPARE(pieces.mid(0, 2), QByteArrayList({ "ab", "cd" }));
        QCOMPARE(pieces.mid(pieces.size() - 2), QByteArrayList({ "234", "5!" }));
    }

    void framesBinaryReplies()
    {
        ScriptedServer server(
            { Step::binary(QByteArray("xyz"), "text"), Step::binary(QByteArray("xyz")).announcing(-2) });
        Client client(server);
        QCOMPARE(client.read("xyz> "), QByteArray("\3\0\0\0xyztext> \xfe\xff\xff\xffxyz> ", 4 + 7 + 2 + 4 + 5));
    }

    void answersInTurn()
    {
        ScriptedServer server;
        server.answerInTurn("pwd", { { Step::text("one") }, { Step::text("two") } });
        server.answerOthers([](const std::string& request) { return Script { Step::text(request.c_str()) }; });
        Client client(server);
        client.read("> ");
        client.write("pwd\npwd\npwd\nelse\n");
        QCOMPARE(client.read("else> "), "one> two> two> else> ");
    }

    void takesUploadsToTheirEnd()
    {
        ScriptedServer server;
        Client client(server);
        client.write("txfile a\nline\nline\x04stat\n");
        QVERIFY(server.waitForRequests(2));
        QCOMPARE(server.requests(), QList<QByteArray>({ "txfile a\nline\nline", "stat" }));
    }

    void holdsUntilReleased()
    {
        ScriptedServer server({ Step::hold("gate"), Step::raw("1"), Step::hold("gate"), Step::raw("2"),
            Step::hold("other"), Step::raw("3") });
        Client client(server);
        QVERIFY(server.waitForHold("gate"));
        server.release("gate");
        QCOMPARE(client.read("1"), "1");
        QVERIFY(server.waitForHold("gate"));
        server.release("gate");
        QCOMPARE(client.read("2"), "2");
        server.open("other");
        QCOMPARE(client.read("3"), "3");
    }

    void notesUnmetExpectations()
    {
        ScriptedServer server({ Step::expectLine("stat"), Step::raw("yes") });
        Client met(server);
        met.write("stat\n");
        QCOMPARE(met.read("yes"), "yes");
        QVERIFY(server.failures().isEmpty());

        Client unmet(server);
        unmet.write("stop\n");
        QVERIFY(eventually([&] { return !server.failures().isEmpty(); }));
        QCOMPARE(server.failures(), QStringList("expected \"stat\n\", received \"stop\n\""));
    }

    void endsAsScripted_data()
    {
        QTest::addColumn<bool>("breaks");
        QTest::addColumn<int>("systemError");
        QTest::newRow("dropped") << false << 0;
        QTest::newRow("reset") << true << ECONNRESET;
    }
    void endsAsScripted()
    {
        QFETCH(bool, breaks);
        ScriptedServer server({ Step::hold("gate"), breaks ? Step::reset() : Step::drop() });
        Client client(server);
        QVERIFY(server.waitForHold("gate"));
        server.release("gate");
        QTEST(client.systemErrorAtEnd(), "systemError");
    }

    void countsFarewells()
    {
        ScriptedServer server;
        Client polite(server);
        polite.write("close");
        polite.close();
        QVERIFY(server.waitForFarewells(1));
        {
            const Client rude(server);
        }
        QVERIFY(server.waitForConnections(2));
        QVERIFY(server.waitUntilDeserted());
        QCOMPARE(server.farewells(), 1);
    }

    void playsAnotherScriptForOneConnection()
    {
        ScriptedServer server;
        server.setScript(1, { Step::raw("second") });
        Client first(server);
        QCOMPARE(first.read("> "), "> ");
        Client second(server);
        QCOMPARE(second.read("second"), "second");
    }

    void endsWithClientsInEveryStep()
    {
        for (const Step& step : { Step::hold("gate"), Step::serve(), Step::silence(), Step::expect("x"),
                 Step::raw(QByteArray(16 << 20, 'x')), Step::raw("xxxxxxxx").inChunksOf(1) }) {
            ScriptedServer server({ step });
            const Client client(server);
            QVERIFY(server.waitForConnections(1));
        }
        const ScriptedServer unused;
    }
};

QTEST_GUILESS_MAIN(TestScriptedServer)
#include "tst_scriptedserver.moc"
