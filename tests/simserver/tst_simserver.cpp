// The simulated server as a program, over real sockets.
#include "faults.h"
#include "simserver/simprogram.h"
#include "spectrum.h"
#include "support/cases.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/version.h>

#include <QDir>
#include <QFile>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <csignal>
#include <memory>
#include <numeric>

using namespace tarnis::testing;

using simtest::BinaryReply;
using simtest::Connection;
using simtest::Program;

namespace {

const QByteArray smallHistogram = "hist1d counts";

double sum(const BinaryReply& reply)
{
    const std::vector<double> values = reply.values();
    return std::accumulate(values.begin(), values.end(), 0.0);
}

void waitForState(Connection& connection, const QByteArray& state)
{
    TRY_COMPARE(connection.value("stat", "state"), state);
}

} // namespace

class TestSimServer : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The wire
    void portIsPrintedAndClientsAreGreeted()
    {
        Program program;
        QVERIFY(program.port() != 0);
        QCOMPARE(program.outputUntil("\n"), "UI port: " + QByteArray::number(program.port()) + '\n');
        const Connection connection(program.port());
        QCOMPARE(connection.greeting(),
            QByteArray("tarnis-simserver " TARNIS_VERSION_STRING
                       ", a simulated data-acquisition server; help lists the commands\n"));
    }

    void commandsAnswer_data()
    {
        addColumns<QByteArray, QByteArray>("command", "beginning");
        const auto row = [](const QByteArray& command, const QByteArray& beginning) {
            QTest::newRow(command.constData()) << command << beginning;
        };
        row("help", "OK:\n  help ");
        row("stat", "OK:\n--server\n");
        row("setting", "OK:\ninst: SIM\n");
        row("setting rate:500", "OK:\n");
        row("savesetting", "OK:\nfile: /simserver.settings\n");
        row("start", "OK:\nrun: 1\n");
        row("stop", "NG:no run is under way\n");
        row("clear", "OK:\n");
        row("hists", "OK:\ntime: kind=1d ");
        row("pwd", "OK:\n/\n");
        row("ls-F \"/\"", "OK:\nREADME.txt\ncalibration/\nconfig/\ndata/\n");
        row("ls-F \"/data/M\xfcller\"", "OK:\nnotes.txt\n");
        row("ls-F \"/data/test beam \\\"A\\\"\"", "OK:\n");
        row("ls-F \"/nowhere\"", "NG:cannot list '/nowhere': No such file or directory\n");
        row("broadcast stat", "OK:\n--module 0\n");
        row("unicast 3 stat", "OK:\n--module 3\n");
        row("mc orsino stat", "OK:\n--module 0\n");
        row("sleep 1", "OK:\n");
        row("sleep 20 4", "OK:\nstep 1 of 4\nstep 2 of 4\nstep 3 of 4\nstep 4 of 4\n");
        row("fault", "OK:\nfault: none\n");
        row("", "");
        row("gibberish", "NG:unknown command 'gibberish'; help lists the commands\n");
    }
    void commandsAnswer()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, beginning);
        Program program;
        Connection connection(program.port());
        QCOMPARE(connection.ask(command).left(beginning.size()), beginning);
        QCOMPARE(connection.ask(command + '\r').left(3), command == "start" ? QByteArray("NG:") : beginning.left(3));
    }

    void binaryCommandsAnswer_data()
    {
        addColumns<QByteArray, int, QByteArray>("command", "length", "ending");
        addCase("all rows", QByteArray("hist1d time"), 8 * 16384 * 8, QByteArray(" (0 40000 16384)\n"));
        addCase("a single row", QByteArray("hist1d time 3 3"), 16384 * 8, QByteArray(" (0 40000 16384)\n"));
        addCase("pairs", QByteArray("hist1d position 2 pairs all bins:256"), 256 * 16, QByteArray(" (0 1000 256)\n"));
        addCase("a map", QByteArray("hist2d image bins:128x64"), 128 * 64 * 8, QByteArray(", exported 128 x 64 y\n"));
        addCase("a large map", QByteArray("hist2d timemap"), 1024 * 1024 * 8, QByteArray(", exported 1024 x 1024 y\n"));
        addCase("a refusal", QByteArray("hist1d gibberish"), 0,
            QByteArray("NG:no 1D histogram 'gibberish'; hists lists them\n"));
    }
    void binaryCommandsAnswer()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, ending);
        Program program({ "--start", "--rate", "100000", "--maxevents", "5000" });
        Connection connection(program.port());
        waitForState(connection, "STOPPED");
        const BinaryReply reply = connection.askBinary(command);
        QTEST(reply.length, "length");
        QVERIFY(reply.text.endsWith(ending));
        if (command == "hist1d time" || command.startsWith("hist2d"))
            QCOMPARE(sum(reply), 5000.0);
        QCOMPARE(connection.ask("pwd"), QByteArray("OK:\n/\n")); // nothing is left over
    }

    void ownPromptEndsEveryReply()
    {
        const QByteArray prompt = "tarnis 7 # ";
        Program program({ "--prompt", QString::fromLatin1(prompt) });
        Connection connection(program.port(), prompt);
        QCOMPARE(connection.ask("pwd"), QByteArray("OK:\n/\n"));
        QCOMPARE(connection.askBinary(smallHistogram).length, 64);
    }

    void requestsInOneSegmentAreAnsweredInOrder()
    {
        Program program;
        Connection connection(program.port());
        QByteArray requests;
        QByteArray expected;
        for (int i = 0; i < 2000; ++i) {
            requests += "setting user.n:" + QByteArray::number(i) + "\nunknown" + QByteArray::number(i) + '\n';
            expected += "OK:\n> NG:unknown command 'unknown" + QByteArray::number(i) + "'; help lists the commands\n> ";
        }
        connection.send(requests);
        QCOMPARE(connection.bytes(expected.size()), expected);
        QCOMPARE(connection.value("setting", "user.n"), QByteArray("1999"));
    }

    void requestsByteByByteAreAnswered()
    {
        Program program;
        Connection connection(program.port());
        for (const char byte : QByteArray("pwd\ntxfile /a\nb\x04"))
            connection.send(QByteArray(1, byte));
        const QByteArray expected = "OK:\n/\n> OK:\nfile: /a\nbytes: 1\n> ";
        QCOMPARE(connection.bytes(expected.size()), expected);
    }

    void uploadArrives()
    {
        const QTemporaryDir root;
        Program program({ "--root", root.path() });
        Connection connection(program.port());
        QByteArray content;
        for (int i = 0; i < 3000000; ++i)
            content += static_cast<char>(i % 251 == 4 ? 5 : i % 251);
        connection.send("txfile /large\n" + content + '\x04');
        QCOMPARE(connection.text(), QByteArray("OK:\nfile: /large\nbytes: 3000000\n"));
        QFile file(root.filePath("large"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll() == content);
    }

    void hugeRequestIsRefusedAndTheNextAnswered()
    {
        Program program;
        Connection connection(program.port());
        connection.send(QByteArray(300000, 'x') + "\npwd\n");
        const QByteArray expected = "NG:longer than 65536 bytes, or 16777216 for txfile\n> OK:\n/\n> ";
        QCOMPARE(connection.bytes(expected.size()), expected);
    }

    void farewellEndsTheConnection_data()
    {
        addColumns<QByteArray, QByteArray>("bytes", "answer");
        QTest::newRow("alone") << QByteArray("close") << QByteArray();
        QTest::newRow("as a line") << QByteArray("close\n") << QByteArray();
        QTest::newRow("behind a command") << QByteArray("pwd\nclose") << QByteArray("OK:\n/\n> ");
        QTest::newRow("behind a sleep") << QByteArray("sleep 50\nclose") << QByteArray("OK:\n> ");
    }
    void farewellEndsTheConnection()
    {
        QFETCH(QByteArray, bytes);
        Program program;
        Connection connection(program.port());
        connection.send(bytes);
        QTEST(connection.untilClosed(), "answer");
    }

    // Many clients
    void sleeperDoesNotHoldOthers()
    {
        Program program;
        Connection sleeper(program.port());
        Connection other(program.port());
        sleeper.send("sleep 600000\n");
        TRY_COMPARE(other.value("stat", "clients"), QByteArray("2"));
        for (int i = 0; i < 20; ++i)
            QCOMPARE(other.ask("pwd"), QByteArray("OK:\n/\n"));
    }

    void sleeperThatHangsUpIsForgotten()
    {
        Program program;
        Connection other(program.port());
        {
            Connection sleeper(program.port());
            sleeper.send("sleep 600000\n");
            QCOMPARE(other.value("stat", "clients"), QByteArray("2"));
        }
        TRY_COMPARE(other.value("stat", "clients"), QByteArray("1"));
    }

    void manyClientsAtOnce()
    {
        constexpr int clients = 60;
        Program program({ "--start", "--rate", "100000", "--maxevents", "3000" });
        std::vector<std::unique_ptr<Connection>> connections;
        for (int i = 0; i < clients; ++i)
            connections.push_back(std::make_unique<Connection>(program.port()));
        waitForState(*connections.front(), "STOPPED");
        const QList<QByteArray> commands { "hist1d time", "hist2d image bins:256", "hist1d total pairs" };
        for (int i = 0; i < clients; ++i)
            connections[static_cast<std::size_t>(i)]->send(commands[i % 3] + '\n');
        for (int i = clients - 1; i >= 0; --i) {
            const BinaryReply reply = connections[static_cast<std::size_t>(i)]->binary();
            if (i % 3 != 2)
                QCOMPARE(sum(reply), 3000.0);
            QVERIFY(reply.text.startsWith("OK: "));
        }
        QCOMPARE(connections.front()->value("stat", "clients"), QByteArray::number(clients));
    }

    void clientThatDoesNotReadBlocksNoOther()
    {
        Program program({ "--start" });
        Connection good(program.port());
        good.askBinary("hist2d image");
        const qint64 before = residentBytes(program.processId());
        std::vector<std::unique_ptr<Connection>> stuck;
        for (int i = 0; i < 3; ++i) {
            stuck.push_back(std::make_unique<Connection>(program.port()));
            QByteArray requests;
            for (int k = 0; k < 200; ++k)
                requests += "hist2d image\n"; // 1.6 GiB of replies
            stuck.back()->send(requests);
        }
        for (int i = 0; i < 50; ++i)
            QCOMPARE(good.askBinary("hist2d image bins:128").length, 128 * 128 * 8);
        // One reply of 8 MiB for each of the three, and room for the allocator.
        QVERIFY2(residentBytes(program.processId()) - before < qint64(64) << 20, qPrintable(QString::number(before)));
        // Once they read, they get their replies.
        QCOMPARE(stuck.front()->bytes(4 + 8388608).size(), 4 + 8388608);
    }

    void oneClientTooManyIsTurnedAway()
    {
        Program program({ "--max-clients", "2" });
        Connection one(program.port());
        {
            const Connection other(program.port());
            Connection third(program.port(), "> ", false);
            QCOMPARE(third.untilClosed(), QByteArray("NG:too many clients\n"));
        }
        TRY_COMPARE(one.value("stat", "clients"), QByteArray("1"));
        Connection again(program.port());
        QCOMPARE(again.ask("pwd"), QByteArray("OK:\n/\n"));
    }

    void connectionsComeAndGo()
    {
        Program program;
        for (int i = 0; i < 300; ++i) {
            Connection connection(program.port(), "> ", i % 3 != 0);
            if (i % 3 == 2)
                connection.send("hist2d image\n");
        }
        Connection last(program.port());
        TRY_COMPARE(last.value("stat", "clients"), QByteArray("1"));
    }

    // The simulation
    void sameSeedGivesTheSameHistograms()
    {
        const auto image = [](const QString& seed, const QString& rate) {
            Program program({ "--seed", seed, "--rate", rate, "--maxevents", "20000", "--start" });
            Connection connection(program.port());
            waitForState(connection, "STOPPED");
            return connection.askBinary("hist2d image").payload + connection.askBinary("hist1d time").payload;
        };
        const QByteArray one = image("5", "200000");
        QVERIFY(image("5", "100000") == one); // the rate affects the times of events, not the events
        QVERIFY(image("6", "200000") != one);
    }

    void spectrumIsServedAndSampled()
    {
        const QString path = tarnis::testing::testData("spectra/hpge-pottery.spe");
        Program program({ "--spectrum", path, "--start", "--rate", "100000", "--maxevents", "20000" });
        Connection connection(program.port());
        waitForState(connection, "STOPPED");
        const std::vector<double> measured = simserver::readSpectrum(path).spectrum.counts;
        QCOMPARE(connection.askBinary("hist1d spectrum 0 0").values(), measured);
        const std::vector<double> live = connection.askBinary("hist1d sampled").values();
        QCOMPARE(std::accumulate(live.begin(), live.end(), 0.0), 20000.0);
        for (std::size_t i = 0; i < live.size(); ++i)
            QVERIFY(measured[i] > 0.0 || live[i] == 0.0);
        QVERIFY(
            connection.askBinary("hist1d sampled 0 pairs").text.endsWith(" (-0.035087 2995.0256489999997 16384)\n"));
    }

    void rootAndSettingsFileAreUsed()
    {
        const QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath("runs"));
        const QString file = root.filePath("my.settings");
        {
            Program program({ "--root", root.path(), "--settings", file, "--rate", "5" });
            Connection connection(program.port());
            QCOMPARE(connection.value("setting", "rate"), QByteArray("5"));
            QCOMPARE(connection.ask("setting rate:321 basepath:/runs modules:3"), QByteArray("OK:\n"));
            QCOMPARE(connection.ask("savesetting"), "OK:\nfile: " + file.toUtf8() + '\n');
        }
        Program program({ "--root", root.path(), "--settings", file, "--modules", "4" });
        Connection connection(program.port());
        QCOMPARE(connection.value("setting", "rate"), QByteArray("321"));
        QCOMPARE(connection.value("setting", "modules"), QByteArray("4")); // the command line overrides the file
        QCOMPARE(connection.ask("pwd"), QByteArray("OK:\n/runs\n"));
        QCOMPARE(connection.ask("ls-F \"/\""), QByteArray("OK:\nmy.settings\nruns/\n"));
    }

    void startOptionBeginsARun()
    {
        Program program({ "--start", "--rate", "10000" });
        Connection connection(program.port());
        QCOMPARE(connection.value("stat", "state"), QByteArray("RUNNING"));
        TRY_VERIFY(connection.value("stat", "events").toInt() > 100);
        QCOMPARE(connection.ask("stop").left(11), QByteArray("OK:\nrun: 1\n"));
    }

    void logRecordsEvents()
    {
        const QTemporaryDir folder;
        const QString log = folder.filePath("log");
        Program program({ "--log", log, "--log-level", "0" });
        {
            Connection connection(program.port());
            connection.ask("start");
            connection.ask("gibberish\x1b[2J");
        }
        program.type("exit");
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
        QFile file(log);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        for (const char* const part :
            { "] listening on port ", "] client 1 comes from port ", "[BLCK] client 1: start -> ",
                "[INFO] run 1 starts", "[INFO] refused: NG:the command contains a control character",
                "[BLCK] client 1: gibberish?[2J -> ", "[INFO] ending: exit" })
            QVERIFY2(text.contains(part), part);
    }

    void failuresAreReported_data()
    {
        addColumns<QStringList, QString, QByteArray>("arguments", "end", "error");
        const auto row = [](const char* name, const QStringList& arguments, const char* end, const char* error) {
            QTest::newRow(name) << arguments << QString::fromLatin1(end) << QByteArray(error);
        };
        row("unknown option", { "--colour" }, "exit 2",
            "tarnis-simserver: Unknown option 'colour'.\ntarnis-simserver: --help lists the options\n");
        row("unknown fault", { "--fault", "gremlin" }, "exit 2",
            "tarnis-simserver: unknown fault 'gremlin'; --help lists them\ntarnis-simserver: --help lists the "
            "options\n");
        row("absent root", { "--root", "/nowhere" }, "exit 1",
            "tarnis-simserver: the root '/nowhere' is not a directory\n");
        row("absent spectrum", { "--spectrum", "/nowhere.spe" }, "exit 1",
            "tarnis-simserver: cannot use the spectrum '/nowhere.spe': No such file or directory\n");
        row("log that cannot be written", { "--log", "/nowhere/log" }, "exit 1",
            "tarnis-simserver: cannot write the log '/nowhere/log': No such file or directory\n");
        row("settings that are none", { "--settings", "/proc/self/cmdline" }, "exit 1",
            "tarnis-simserver: cannot use the settings of '/proc/self/cmdline': line 1 is not of the form name: "
            "value\n");
    }
    void failuresAreReported()
    {
        QFETCH(QStringList, arguments);
        Program program(arguments);
        QTEST(program.errors(), "error");
        QTEST(program.end(), "end");
        QCOMPARE(program.port(), quint16 { 0 });
    }

    void usedPortIsReported()
    {
        QTcpServer taken;
        QVERIFY(taken.listen(QHostAddress::LocalHost));
        Program program({ "--port", QString::number(taken.serverPort()) });
        QCOMPARE(program.errors(),
            QByteArray("tarnis-simserver: cannot listen on port " + QByteArray::number(taken.serverPort())
                + ": The bound address is already in use\n"));
        QCOMPARE(program.end(), QStringLiteral("exit 1"));
    }

    void helpAndVersionArePrinted()
    {
        Program help({ "--help" });
        QVERIFY(help.outputUntil("Exit codes").startsWith("Usage: "));
        QCOMPARE(help.end(), QStringLiteral("exit 0"));
        Program version({ "--version" });
        QCOMPARE(version.outputUntil("\n"), QByteArray("tarnis-simserver " TARNIS_VERSION_STRING "\n"));
        QCOMPARE(version.end(), QStringLiteral("exit 0"));
    }
};

QTEST_GUILESS_MAIN(TestSimServer)
#include "tst_simserver.moc"
