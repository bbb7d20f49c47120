// The simulated server with faults, and its end.
#include "faults.h"
#include "simserver/simprogram.h"
#include "spectrum.h"
#include "support/cases.h"
#include "support/wait.h"

#include <tarnis/version.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace tarnis::testing;

using simtest::BinaryReply;
using simtest::Connection;
using simtest::Program;

namespace {

const QByteArray smallHistogram = "hist1d counts";

} // namespace

class TestSimServerFaults : public QObject {
    Q_OBJECT
private Q_SLOTS:

    // Faults
    void faultsOfTextReplies_data()
    {
        QTest::addColumn<QByteArray>("received"); // in answer to "pwd", whose good reply is "OK:\n/\n> "
        QTest::addColumn<QString>("then");
        QTest::newRow("none") << QByteArray("OK:\n/\n> ") << "alive";
        QTest::newRow("bytewise") << QByteArray("OK:\n/\n> ") << "alive";
        QTest::newRow("chunks") << QByteArray("OK:\n/\n> ") << "alive";
        QTest::newRow("split-prompt") << QByteArray("OK:\n/\n> ") << "alive";
        QTest::newRow("early-prompt") << QByteArray("OK:> \n/\n> ") << "alive";
        QTest::newRow("trailing") << QByteArray("OK:\n/\n> left over\n") << "alive";
        QTest::newRow("slow") << QByteArray("OK:\n/\n> ") << "alive";
        QTest::newRow("silent") << QByteArray() << "alive";
        QTest::newRow("no-prompt") << QByteArray("OK:\n/\n") << "alive";
        QTest::newRow("refuse") << QByteArray("NG:refused on demand\n> ") << "alive";
        QTest::newRow("close-before") << QByteArray() << "closed";
        QTest::newRow("close-in-reply") << QByteArray("OK:\n") << "closed";
        QTest::newRow("close-after") << QByteArray("OK:\n/\n> ") << "closed";
        QTest::newRow("reset-in-reply") << QByteArray("OK:\n") << "reset";
        QTest::newRow("wrong-length") << QByteArray("OK:\n/\n> ") << "alive";
    }
    void faultsOfTextReplies()
    {
        QFETCH(QByteArray, received);
        QFETCH(QString, then);
        Program program({ "--fault", QTest::currentDataTag(), "--fault-delay", "10" });
        Connection connection(program.port());
        connection.send("pwd\n");
        if (then != "alive") {
            QCOMPARE(connection.untilClosed(), received);
            QCOMPARE(connection.isReset(), then == "reset");
        } else {
            // The reply to "fault" is intact after the remains of the previous faulty one.
            connection.send("fault none\n");
            const QByteArray whole = received + "OK:\n> ";
            QCOMPARE(connection.bytes(whole.size()), whole);
        }
        QVERIFY(program.isRunning());
    }

    void silentServerGoesOn()
    {
        Program program({ "--fault", "silent" });
        Connection connection(program.port());
        connection.send("start\nsetting rate:77\nfault none\n");
        QCOMPARE(connection.text(), QByteArray("OK:\n"));
        QCOMPARE(connection.value("stat", "state"), QByteArray("RUNNING"));
        QCOMPARE(connection.value("setting", "rate"), QByteArray("77"));
    }

    void faultsOfBinaryReplies_data()
    {
        QTest::addColumn<int>("length"); // announced for a payload of 64 bytes
        QTest::addColumn<int>("payload"); // bytes of it that are sent
        QTest::newRow("none") << 64 << 64;
        QTest::newRow("bytewise") << 64 << 64;
        QTest::newRow("chunks") << 64 << 64;
        QTest::newRow("split-prompt") << 64 << 64;
        QTest::newRow("split-length") << 64 << 64;
        QTest::newRow("wrong-length") << 72 << 64;
        QTest::newRow("short-length") << 56 << 64;
        QTest::newRow("zero-length") << 0 << 64;
        QTest::newRow("negative-length") << -64 << 64;
        QTest::newRow("oversized-length") << 2147483647 << 64;
        QTest::newRow("cut-payload") << 61 << 61;
        QTest::newRow("empty-payload") << 0 << 0;
        QTest::newRow("bad-values") << 64 << 64;
    }
    void faultsOfBinaryReplies()
    {
        QFETCH(int, payload);
        Program program({ "--fault", QTest::currentDataTag() });
        Connection connection(program.port());
        connection.send(smallHistogram + "\nfault none\n");
        const QByteArray text = "OK: counts rows 0 to 0, run none, live 0.000 s, 0 events (0 8 8)\n> OK:\n> ";
        const QByteArray bytes = connection.bytes(4 + payload + text.size());
        QVERIFY2(bytes.endsWith(text), bytes.constData());
        QCOMPARE(bytes.size(), 4 + payload + text.size());
        qint32 length = 0;
        std::memcpy(&length, bytes.constData(), sizeof(length));
        QTEST(length, "length");
    }

    void faultsOfTheGreeting_data()
    {
        addColumns<bool, bool>("greeted", "closed");
        QTest::newRow("no-greeting") << false << false;
        QTest::newRow("late-greeting") << true << false;
        QTest::newRow("split-greeting") << true << false;
        QTest::newRow("close-at-greeting") << false << true;
    }
    void faultsOfTheGreeting()
    {
        QFETCH(bool, greeted);
        QFETCH(bool, closed);
        Program program({ "--fault", QTest::currentDataTag(), "--fault-delay", "2" });
        Connection connection(program.port(), "> ", false);
        if (closed) {
            QCOMPARE(connection.untilClosed(), QByteArray());
            return;
        }
        connection.send("pwd\n");
        const QByteArray greeting = "tarnis-simserver " TARNIS_VERSION_STRING
                                    ", a simulated data-acquisition server; help lists the commands\n> ";
        const QByteArray expected = (greeted ? greeting : QByteArray()) + "OK:\n/\n> ";
        QCOMPARE(connection.bytes(expected.size()), expected);
    }

    void faultsThatEndTheProcess_data()
    {
        QTest::addColumn<QString>("end");
        QTest::newRow("exit") << "exit 3";
        QTest::newRow("crash") << "crash";
        QTest::newRow("start-exit") << "exit 3";
        QTest::newRow("start-crash") << "crash";
    }
    void faultsThatEndTheProcess()
    {
        const QString name = QTest::currentDataTag();
        Program program({ "--fault", name });
        if (!name.startsWith("start")) {
            Connection connection(program.port());
            QVERIFY(program.isRunning());
            connection.send("pwd\n");
            QCOMPARE(connection.untilClosed(), QByteArray());
        }
        QTEST(program.end(), "end");
    }

    void faultsOfThePort_data()
    {
        QTest::addColumn<QByteArray>("output"); // N is a port from 1 to 65535
        QTest::newRow("port-split") << QByteArray("UI port: N\n");
        QTest::newRow("port-late") << QByteArray("UI port: N\n");
        QTest::newRow("port-zero") << QByteArray("UI port: 0\n");
        QTest::newRow("port-range") << QByteArray("UI port: 70000\n");
    }
    void faultsOfThePort()
    {
        QFETCH(QByteArray, output);
        Program program({ "--fault", QTest::currentDataTag(), "--fault-delay", "100" });
        if (output.contains('N')) {
            Connection connection(program.port());
            QCOMPARE(connection.ask("pwd"), QByteArray("OK:\n/\n"));
            output.replace("N", QByteArray::number(program.port()));
        }
        QCOMPARE(program.outputUntil("\n"), output);
        program.type("exit");
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
    }

    void missingPortIsNeverPrinted()
    {
        Program program({ "--fault", "port-missing" });
        program.type("exit");
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
        QCOMPARE(program.outputUntil("\n"), QByteArray());
    }

    void faultAffectsAllClients()
    {
        Program program;
        Connection one(program.port());
        Connection other(program.port());
        QCOMPARE(one.ask("fault refuse every:2"), QByteArray("OK:\n"));
        QCOMPARE(other.ask("pwd"), QByteArray("OK:\n/\n"));
        QCOMPARE(other.ask("pwd"), QByteArray("NG:refused on demand\n"));
        QCOMPARE(one.ask("pwd"), QByteArray("OK:\n/\n"));
        QCOMPARE(other.ask("fault none"), QByteArray("OK:\n"));
        QCOMPARE(one.ask("pwd"), QByteArray("OK:\n/\n"));
    }

    void everyFaultLeavesTheServerAlive()
    {
        // All faults in turn on one server, with a client for each: no resources leak.
        Program program({ "--start" });
        Connection control(program.port());
        for (const simserver::FaultInfo& info : simserver::allFaults()) {
            const bool ends = info.fault == simserver::Fault::Exit || info.fault == simserver::Fault::Crash;
            if (ends || info.where == simserver::FaultInfo::Where::Process)
                continue;
            QCOMPARE(control.ask("fault " + QByteArray(info.name) + " delay:0"), QByteArray("OK:\n"));
            Connection connection(program.port(), "> ", false);
            connection.send("stat\nhist1d time 0 3 bins:64\nhist1d time 1 pairs bins:64\nhist2d image bins:16\nclose");
            connection.untilClosed();
            QCOMPARE(control.ask("fault none"), QByteArray("OK:\n"));
        }
        TRY_COMPARE(control.value("stat", "clients"), QByteArray("1"));
    }

    // The end
    void endsOnEachRequestDuringACommand_data()
    {
        QTest::addColumn<QByteArray>("typed");
        QTest::newRow("exit without a line feed") << QByteArray("exit");
        QTest::newRow("exit with a line feed") << QByteArray("exit\n");
        QTest::newRow("exit behind other lines") << QByteArray("hello\n\nexit\n");
        QTest::newRow("end of standard input") << QByteArray("end");
        QTest::newRow("end of standard input inside a line") << QByteArray("hello");
        QTest::newRow("signal") << QByteArray("signal");
    }
    void endsOnEachRequestDuringACommand()
    {
        QFETCH(QByteArray, typed);
        Program program;
        Connection connection(program.port());
        connection.send("sleep 600000\n");
        if (typed == "signal")
            program.terminate();
        else if (typed == "end")
            program.closeInput();
        else
            program.type(typed);
        if (typed == "hello")
            program.closeInput();
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
        QCOMPARE(connection.untilClosed(), QByteArray());
    }

    void withoutStandardInputOnlyASignalEndsIt()
    {
        Program program({ "--no-stdin" });
        QVERIFY(program.port() != 0);
        program.type("exit\n");
        program.closeInput();
        Connection connection(program.port());
        QCOMPARE(connection.ask("pwd"), QByteArray("OK:\n/\n"));
        program.terminate();
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
    }

    void endIsIgnoredOnDemand()
    {
        Program program({ "--fault", "ignore-exit" });
        QVERIFY(program.port() != 0);
        program.type("exit\n");
        program.closeInput();
        Connection connection(program.port());
        QCOMPARE(connection.ask("pwd"), QByteArray("OK:\n/\n"));
        QVERIFY(program.isRunning());
    }

    void endRecordsTheRun()
    {
        const QTemporaryDir root;
        Program program({ "--root", root.path() });
        Connection connection(program.port());
        QCOMPARE(connection.ask("setting record:on inst:END rate:10000"), QByteArray("OK:\n"));
        QCOMPARE(connection.ask("start"), QByteArray("OK:\nrun: 1\n"));
        const QByteArray directory = connection.value("stat", "run directory");
        QVERIFY(directory.startsWith("/END000001_"));
        TRY_VERIFY(connection.value("stat", "events").toInt() > 10);
        program.type("exit");
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
        const QDir run(root.path() + QString::fromLatin1(directory));
        QCOMPARE(run.entryList(QDir::Files), (QStringList { "run.txt", "total.spe" }));
        QVERIFY(simserver::readSpectrum(run.filePath("total.spe")).error.isEmpty());
    }

    void samplesGoWithTheProcess()
    {
        const QTemporaryDir folder;
        const QString log = folder.filePath("log");
        Program program({ "--log", log });
        QVERIFY(program.port() != 0);
        QFile file(log);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        const QByteArray root = text.mid(text.indexOf("] root ") + 7).split('\n').front();
        QVERIFY2(QDir(root).exists("data"), root.constData());
        program.type("exit");
        QCOMPARE(program.end(), QStringLiteral("exit 0"));
        QVERIFY(!QDir(root).exists());
    }
};

QTEST_GUILESS_MAIN(TestSimServerFaults)
#include "tst_simserverfaults.moc"
