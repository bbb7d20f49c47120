// tarnis with a server: replies, histograms, files, and all failures of servers and files.
#include "clientprogram.h"
#include "simserver/simprogram.h"
#include "support/cases.h"
#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <tarnis/formats/formats.h>
#include <tarnis/foundation/files.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <csignal>
#include <numeric>

using namespace tarnis::testing;

using clienttest::Run;
using clienttest::runTarnis;
using clienttest::shell;

class TestClientServer : public QObject {
    Q_OBJECT
private:
    QTemporaryDir m_folder;
    QString path(const QString& name) const { return m_folder.filePath(name); }
    QStringList names() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    static QString address(simtest::Program& server) { return QStringLiteral("127.0.0.1:%1").arg(server.port()); }
    /// A command followed by the options of the server.
    static Run with(simtest::Program& server, QStringList words)
    {
        return runTarnis(words << "--server" << address(server));
    }

private Q_SLOTS:
    void init() { m_folder = QTemporaryDir(); }

    void sendsCommands()
    {
        simtest::Program server;
        const Run run = with(server, { "send", "pwd" });
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, QByteArray("OK:\n/\n"));
        QCOMPARE(run.errors, QByteArray());
        QCOMPARE(with(server, { "send", "setting", "rate:500" }).output, QByteArray("OK:\n"));
        QCOMPARE(with(server, { "send", "setting rate:600", "pwd" }).output, QByteArray("OK:\nOK:\n/\n"));
        QCOMPARE(runTarnis({ "send", "--server", address(server), "-" }, "pwd\n\n  pwd\n").output,
            QByteArray("OK:\n/\nOK:\n/\n"));
        QVERIFY(with(server, { "send", "hist1d", "counts" }).output.startsWith("OK: counts rows 0 to 0, run none"));
    }

    void printsRefusalsOnStandardError()
    {
        simtest::Program server;
        const Run run = with(server, { "send", "frobnicate" });
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.errors, QByteArray("tarnis: NG:unknown command 'frobnicate'; help lists the commands\n"));
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(with(server, { "send", "frobnicate now", "pwd" }).output, QByteArray());
        const Run json = with(server, { "send", "frobnicate", "--json" });
        QCOMPARE(QJsonDocument::fromJson(json.output).object().value("exitCode"), 1);
    }

    void printsJson()
    {
        simtest::Program server;
        const Run run = with(server, { "send", "--json", "pwd" });
        const QJsonObject object = QJsonDocument::fromJson(run.output).object();
        QCOMPARE(object.value("command").toString(), "pwd");
        QCOMPARE(object.value("reply").toString(), "OK:\n/\n");
        QVERIFY(object.value("milliseconds").toDouble() > 0.0);
    }

    void findsTheServerInTheEnvironment()
    {
        simtest::Program server;
        const Run run = shell(QStringLiteral("TARNIS_SERVER=%1 $TARNIS send pwd").arg(address(server)));
        QCOMPARE(run.output, QByteArray("OK:\n/\n"));
    }

    void startsAndEndsALocalServer()
    {
        const Run run = runTarnis({ "send", "--local", SIMSERVER_PATH, "pwd" });
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, QByteArray("OK:\n/\n"));
    }

    void reportsALocalServerThatDoesNotStart_data()
    {
        addColumns<QString, QByteArray>("fault", "text");
        QTest::newRow("exits") << "start-exit" << QByteArray("has ended before it named its port: exit code 3");
        QTest::newRow("crashes") << "start-crash" << QByteArray("has ended before it named its port: it crashed");
        QTest::newRow("port 0") << "port-zero" << QByteArray("names no usable port: 'UI port: 0'");
        QTest::newRow("port out of range") << "port-range" << QByteArray("names no usable port: 'UI port: 70000'");
        QTest::newRow("no port") << "port-missing" << QByteArray("did not name its port within 0.5 s");
    }
    void reportsALocalServerThatDoesNotStart()
    {
        QFETCH(QString, fault);
        QFETCH(QByteArray, text);
        const Run run =
            shell(QStringLiteral("TARNIS_SIMSERVER_OPTIONS='--fault %1' $TARNIS send --timeout 0.5 --local %2 pwd")
                      .arg(fault, QStringLiteral(SIMSERVER_PATH)));
        QCOMPARE(run.exitCode, 3);
        QVERIFY2(run.hasOneLineOfError() && run.errors.contains(text), run.errors.constData());
    }

    void reportsServersThatFail_data()
    {
        addColumns<QStringList, QStringList>("options", "words");
        const QStringList send { "send", "pwd" };
        const QStringList hist { "hist", "total", "-o", "FILE" };
        for (const char* const fault : { "silent", "no-prompt", "close-before", "close-in-reply", "reset-in-reply",
                 "exit", "crash", "no-greeting", "close-at-greeting" }) {
            QTest::addRow("send, %s", fault) << QStringList { "--fault", fault } << send;
            QTest::addRow("hist, %s", fault) << QStringList { "--fault", fault } << hist;
        }
        for (const char* const fault : { "wrong-length", "oversized-length", "cut-payload", "empty-payload" })
            QTest::addRow("hist, %s", fault) << QStringList { "--fault", fault } << hist;
    }
    void reportsServersThatFail()
    {
        QFETCH(QStringList, options);
        QFETCH(QStringList, words);
        simtest::Program server(options);
        words.replaceInStrings("FILE", path("a.csv"));
        const Run run = with(server,
            words << "--timeout"
                  << "0.5");
        QCOMPARE(run.exitCode, 3);
        QVERIFY2(run.hasOneLineOfError(), run.errors.constData());
        QCOMPARE(names(), QStringList());
    }

    void refusesRepliesThatBreakTheProtocol_data()
    {
        addColumns<QString, QStringList>("fault", "words");
        const auto row = [](const char* fault, const QStringList& words) {
            QTest::addRow("%s, %s", qPrintable(words.first()), fault) << fault << words;
        };
        const QStringList get { "get", "/README.txt", "FILE" };
        row("garbage", { "send", "pwd" });
        row("garbage", { "watch", "--count", "1" });
        row("garbage", { "hist", "total", "-o", "FILE" });
        row("garbage", get);
        for (const char* const fault :
            { "negative-length", "zero-length", "short-length", "cut-payload", "empty-payload" })
            row(fault, get);
        row("negative-length", { "send", "hist1d", "counts" });
        row("negative-length", { "hist", "total", "-o", "FILE" });
    }
    void refusesRepliesThatBreakTheProtocol()
    {
        QFETCH(QString, fault);
        QFETCH(QStringList, words);
        simtest::Program server({ "--fault", fault });
        words.replaceInStrings("FILE", path("a.csv"));
        const Run run = with(server,
            words << "--timeout"
                  << "0.5");
        QCOMPARE(run.exitCode, 3);
        QVERIFY2(run.hasOneLineOfError(), run.errors.constData());
        QCOMPARE(run.output, QByteArray());
        QCOMPARE(names(), QStringList());
    }

    void readsRefusalsOfBinaryCommandsInText()
    {
        using tarnis::testing::Step;
        tarnis::testing::ScriptedServer server;
        server.answer("rxfile a", { Step::text("NG:unknown command 'rxfile'\n") });
        server.answer("hist1d t", { Step::text("NG:no histograms\n") });
        const QString address = QStringLiteral("127.0.0.1:%1").arg(server.port());
        const Run get = runTarnis({ "get", "a", path("a"), "--server", address });
        QCOMPARE(get.exitCode, 1);
        QCOMPARE(get.errors, QByteArray("tarnis: NG:unknown command 'rxfile'\n"));
        QCOMPARE(names(), QStringList());
        const Run send = runTarnis({ "send", "hist1d", "t", "--server", address, "--json" });
        QCOMPARE(send.exitCode, 1);
        QCOMPARE(send.output, QByteArray("{\"error\":\"NG:no histograms\",\"exitCode\":1}\n"));
    }

    void getsAnEmptyFile()
    {
        simtest::Program server;
        QCOMPARE(runTarnis({ "put", "--server", address(server), "-", "/empty.txt" }, "").exitCode, 0);
        QCOMPARE(with(server, { "get", "/empty.txt", path("empty.txt") }).exitCode, 0);
        QCOMPARE(names(), QStringList { "empty.txt" });
    }

    void warnsOfValuesThatAreNotFinite()
    {
        simtest::Program server({ "--fault", "bad-values" });
        const Run run = with(server, { "hist", "counts", "-o", path("a.csv"), "--json" });
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray("tarnis: warning: 2 of 8 values of 'counts' are not finite\n"));
        QVERIFY(QJsonDocument::fromJson(run.output).isObject());
    }

    void endsALocalServerThatIgnoresItsInput()
    {
        const Run run = shell(QStringLiteral("TARNIS_SIMSERVER_OPTIONS='--fault ignore-exit --log %1' "
                                             "$TARNIS send --local %2 pwd")
                                  .arg(path("log"), QStringLiteral(SIMSERVER_PATH)));
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output, QByteArray("OK:\n/\n"));
    }

    void savesCountsWithErrorsAsNexus()
    {
        simtest::Program server({ "--start", "--rate", "100000", "--maxevents", "500" });
        TRY_VERIFY(with(server, { "send", "stat" }).output.contains("state: STOPPED"));
        QCOMPARE(with(server, { "hist", "counts", "-o", path("a.h5") }).exitCode, 0);
        const tarnis::DatasetResult file = tarnis::readDataset(path("a.h5"));
        QCOMPARE(file.error, QString());
        QCOMPARE(file.data.errors.size(), file.data.values.size());
        QVERIFY(file.data.values.front() > 0.0);
        for (std::size_t i = 0; i < file.data.values.size(); ++i)
            QCOMPARE(file.data.errors[i], std::sqrt(file.data.values[i]));
        QCOMPARE(with(server, { "hist", "counts", "-o", path("a.csv") }).exitCode, 0);
        QVERIFY(tarnis::readDataset(path("a.csv")).data.errors.empty());
    }

    void reportsAnAddressWithoutServer()
    {
        const Run run = runTarnis({ "send", "--server", "127.0.0.1:1", "stat" });
        QCOMPARE(run.exitCode, 3);
        QVERIFY2(run.errors.startsWith("tarnis: no connection to 127.0.0.1:1: "), run.errors.constData());
    }

    void savesAHistogramWithItsAxes()
    {
        simtest::Program server({ "--start", "--rate", "100000", "--maxevents", "2000" });
        TRY_VERIFY(with(server, { "send", "stat" }).output.contains("state: STOPPED"));
        for (const char* const name : { "a.csv", "a.npy" }) {
            const Run run = with(server, { "hist", "total", "-o", path(name) });
            QCOMPARE(run.exitCode, 0);
            const tarnis::DatasetResult file = tarnis::readDataset(path(name));
            QCOMPARE(file.error, QString());
            QCOMPARE(file.data.columns, 16384);
            QCOMPARE(std::accumulate(file.data.values.begin(), file.data.values.end(), 0.0), 2000.0);
        }
        const tarnis::Dataset data = tarnis::readDataset(path("a.csv")).data;
        QCOMPARE(data.title, QString("total"));
        QCOMPARE(data.x.name, QString("Time"));
        QCOMPARE(data.x.unit, QString("us"));
        QCOMPARE(data.x.values, tarnis::uniformEdges(0.0, 40000.0, 16384));
        QCOMPARE(data.source, address(server) + ", run 1");
        QVERIFY(data.time.isValid());
        QVERIFY(data.liveTime > 0.0);
    }

    void savesRowsAndMaps()
    {
        simtest::Program server;
        QCOMPARE(with(server, { "hist", "time", "--rows", "2:5", "-o", path("rows.csv") }).exitCode, 0);
        const tarnis::Dataset rows = tarnis::readDataset(path("rows.csv")).data;
        QCOMPARE(rows.rows, 4);
        QCOMPARE(rows.rowNames, (QStringList { "row 2", "row 3", "row 4", "row 5" }));
        QCOMPARE(with(server, { "hist", "time", "--rows", "7", "-o", path("row.csv") }).exitCode, 0);
        QCOMPARE(tarnis::readDataset(path("row.csv")).data.rows, 1);
        QCOMPARE(with(server, { "hist", "image", "-o", path("map.csv") }).exitCode, 0);
        const tarnis::Dataset map = tarnis::readDataset(path("map.csv")).data;
        QCOMPARE(map.kind, tarnis::Dataset::Kind::Map);
        QCOMPARE(map.rows, 1024);
        QCOMPARE(map.y.unit, QString("mm"));
        QCOMPARE(with(server, { "hist", "image", "--rows", "1:2", "-o", path("x.csv") }).exitCode, 2);
        QCOMPARE(with(server, { "hist", "time", "--rows", "2:9", "-o", path("x.csv") }).exitCode, 1);
        QCOMPARE(with(server, { "hist", "nothing", "-o", path("x.csv") }).exitCode, 1);
        QVERIFY(!names().contains("x.csv"));
    }

    void printsAHistogram()
    {
        simtest::Program server;
        const Run csv = with(server, { "hist", "counts", "-o", "-" });
        QVERIFY(csv.output.startsWith("# Tarnis data 1\n"));
        QVERIFY(csv.output.endsWith("\n7,0\n"));
        const Run npy = with(server, { "hist", "counts", "-o", "-", "--format", "npy" });
        QVERIFY(npy.output.startsWith("\x93NUMPY"));
        const Run json = with(server, { "hist", "counts", "--json" });
        const QJsonObject object = QJsonDocument::fromJson(json.output).object();
        QCOMPARE(object.value("columns").toInt(), 8);
        QVERIFY(object.value("values").isArray());
    }

    void reportsFilesThatCannotBeWritten_data()
    {
        addColumns<QString, QByteArray>("line", "text");
        const QByteArray full = "no space is left on the device";
        addCase("full device", "$TARNIS hist total $S -o /dev/full", full);
        addCase("full standard output", "$TARNIS hist total $S -o - > /dev/full", full);
        addCase("full standard output of a reply", "$TARNIS send stat $S > /dev/full", full);
        addCase("full standard output of help", "$TARNIS --help > /dev/full", full);
        addCase("no folder", "$TARNIS hist total $S -o $D/no/a.csv", QByteArray("/no' does not exist"));
        addCase("folder", "mkdir $D/a.csv; $TARNIS hist total $S -o $D/a.csv; r=$?; rmdir $D/a.csv; exit $r",
            QByteArray("it is a folder"));
        addCase("get to a full device", "$TARNIS get $S README.txt /dev/full", full);
        addCase("put of no file", "$TARNIS put $S $D/none /x.txt", QByteArray("there is no such file"));
        addCase("size limit", "trap '' XFSZ; ulimit -f 8; $TARNIS hist total $S -o $D/a.csv",
            QByteArray("larger than this file system allows"));
        addCase("closed pipe",
            "set -o pipefail; { $TARNIS hist image $S -o -; } | head -1 > /dev/null; exit ${PIPESTATUS[0]}",
            QByteArray("the reader has closed the pipe"));
        addCase("closed standard output", "$TARNIS send stat $S >&-", QByteArray("output: it is closed"));
        addCase("closed standard output of a histogram", "$TARNIS hist counts $S -o - >&-",
            QByteArray("output: it is closed"));
        addCase("closed standard output of a figure", "$TARNIS plot counts $S -o - >&- <&-",
            QByteArray("output: it is closed"));
        addCase("closed standard output of a summary", "$TARNIS put /dev/null /x.txt $S --json >&-",
            QByteArray("output: it is closed"));
        addCase("put of binary data", "printf 'a\\004b' | $TARNIS put $S - /x.txt", QByteArray("byte 1 is 4"));
    }
    void reportsFilesThatCannotBeWritten()
    {
        QFETCH(QString, line);
        QFETCH(QByteArray, text);
        simtest::Program server;
        const Run run = shell(QStringLiteral("S='--server %1' D='%2'; ").arg(address(server), m_folder.path()) + line);
        QCOMPARE(run.exitCode, 4);
        QVERIFY2(run.hasOneLineOfError() && run.errors.contains(text), run.errors.constData());
        QCOMPARE(names(), QStringList());
    }

    void leavesNoFileWhenInterrupted()
    {
        simtest::Program server({ "--fault", "silent" });
        QProcess process;
        process.start(
            CLIENT_PATH, { "hist", "total", "--server", address(server), "-o", path("a.csv"), "--timeout", "60" });
        QVERIFY(process.waitForStarted());
        process.terminate();
        QCOMPARE(clienttest::finish(process).exitCode, 128 + SIGTERM);
        QCOMPARE(names(), QStringList());
    }

    void storesAndGetsTextFiles()
    {
        simtest::Program server;
        const QByteArray text = "first line\n\nlast line without end";
        QCOMPARE(runTarnis({ "put", "--server", address(server), "-", "/new file.txt" }, text).exitCode, 0);
        QCOMPARE(with(server, { "get", "/new file.txt", path("back.txt") }).exitCode, 0);
        QCOMPARE(tarnis::readFile(path("back.txt")).bytes, text);
        QCOMPARE(with(server, { "get", "/new file.txt", "-" }).output, text);
        QCOMPARE(with(server, { "put", path("back.txt"), "/no/such/folder.txt" }).exitCode, 1);
        const Run none = with(server, { "get", "/none.txt", path("none.txt") });
        QCOMPARE(none.exitCode, 1);
        QCOMPARE(none.errors, QByteArray("tarnis: NG:cannot read '/none.txt': No such file or directory\n"));
        QCOMPARE(names(), QStringList { "back.txt" });
    }

    void watchesUntilItIsInterrupted()
    {
        simtest::Program server({ "--start" });
        QProcess process;
        process.start(CLIENT_PATH, { "watch", "--server", address(server), "--every", "0.05", "--json" });
        QByteArray output;
        while (output.count('\n') < 2 && process.waitForReadyRead(clienttest::timeoutMs))
            output += process.readAllStandardOutput();
        process.terminate();
        const Run run = clienttest::finish(process);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
        const QJsonObject object = QJsonDocument::fromJson(output.left(output.indexOf('\n'))).object();
        QCOMPARE(object.value("state").toString(), "RUNNING");
        QCOMPARE(object.value("run").toInt(), 1);
        QVERIFY(object.value("counts").isDouble() && object.value("rate").isDouble());
    }

    void watchEndsAtOnceWhileItConnects()
    {
        tarnis::testing::ScriptedServer server({ tarnis::testing::Step::silence() });
        QProcess process;
        process.start(CLIENT_PATH,
            { "watch", "--timeout", "600", "--server", QStringLiteral("127.0.0.1:%1").arg(server.port()) });
        QVERIFY(server.waitForConnections(1));
        process.terminate();
        const Run run = clienttest::finish(process);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void watchEndsAtOnceWhileALocalServerStarts()
    {
        const tarnis::testing::FakeServer server({ "note started", "await-end" }); // announces no port
        QProcess process;
        process.start(CLIENT_PATH, { "watch", "--timeout", "600", "--local", server.path() });
        TRY_VERIFY(server.hasNoted("started"));
        process.terminate();
        const Run run = clienttest::finish(process);
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.errors, QByteArray());
    }

    void watchesSoManyLines()
    {
        simtest::Program server;
        const Run run = with(server, { "watch", "--count", "2", "--every", "0.01" });
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.output.count('\n'), 2);
        QVERIFY(run.output.contains(" state=STOPPED run=none counts=0 rate=0\n"));
    }

    void watchReportsALostServer()
    {
        simtest::Program server;
        QProcess process;
        process.start(CLIENT_PATH, { "watch", "--server", address(server), "--every", "0.05" });
        QVERIFY(process.waitForReadyRead(clienttest::timeoutMs));
        server.terminate();
        const Run run = clienttest::finish(process);
        QCOMPARE(run.exitCode, 3);
        QVERIFY2(run.hasOneLineOfError(), run.errors.constData());
    }
};

QTEST_GUILESS_MAIN(TestClientServer)
#include "tst_clientserver.moc"
