// The manager and its local server: start, port, crash.
#include "server/localmanager.h"
#include "support/cases.h"
#include "support/logfile.h"
#include "support/scriptedserver.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tarnis::testing;

namespace {

QString startedPost(const FakeServer& server)
{
    return QStringLiteral("Local Server[%1] Started").arg(server.path());
}

} // namespace

class TestTarnisLocal : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void portBringsTheConnection()
    {
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        const LogFile log;
        QVERIFY(host.run(server));
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
        TRY_COMPARE(host.record.events,
            (QStringList { "post " + startedPost(server), "status SERVER CONNECTED",
                "post Local Tarnis Server Started on port 5000" }));
        QCOMPARE(int(host.manager->m_port), 5000);
        QCOMPARE(host.manager->m_host, QStringLiteral("localhost"));
        QCOMPARE(host.manager->GetServerAddress(), QStringLiteral("localhost:5000"));
        QCOMPARE(log.messages(),
            (QStringList { "BLCK Run", "BLCK onServerReadyStdOut", "BLCK Tarnis::SetStatus(status[1])",
                "BLCK Tarnis::onStatusChanged(status[1])" }));
    }

    void givenPathIsStoredAndRun()
    {
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        host.manager->SetProcessPath("another");
        const QString path = server.path();
        QVERIFY(host.manager->Run(&path));
        QCOMPARE(host.manager->m_processPath, path);
        TRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
    }

    void ignoresAnInvalidPort_data()
    {
        QTest::addColumn<QStringList>("first");
        const QString wait("await go\n");
        addCase("0", QStringList { "print UI port: 0\\n" });
        addCase("70000", QStringList { "print UI port: 70000\\n" });
        addCase("no number", QStringList { "print UI port: soon\\n" });
        addCase("no line feed", QStringList { "print UI port: 4000" });
        addCase("in two pieces, before the number", QStringList { "print UI port:", "await 2", "print  4000\\n" });
        addCase("in two pieces, in the number", QStringList { "print UI port: 40", "await 2", "print 00\\n" });
        addCase("in two pieces, before the line feed", QStringList { "print UI port: 4000", "await 2", "print \\n" });
        addCase("in two pieces, in the label", QStringList { "print UI po", "await 2", "print rt: 4000\\n" });
        addCase("other output", QStringList { "print ready\\n" });
    }
    void ignoresAnInvalidPort()
    {
        QFETCH(QStringList, first);
        // The slot stays connected, and a later complete line is accepted.
        const FakeServer server(first + QStringList { "await 3" } + FakeServer::wellBehaved(5000));
        Host host;
        const LogFile log;
        QVERIFY(host.run(server));
        const auto seen = [&](int times) {
            return eventually([&] { return log.messages().count("BLCK onServerReadyStdOut") >= times; });
        };
        QVERIFY(seen(1));
        host.sendToServer("2");
        if (first.size() > 1)
            QVERIFY(seen(2));
        QCOMPARE(int(host.manager->m_port), 0);
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
        QCOMPARE(host.manager->GetServerAddress(), QString());
        host.sendToServer("3");
        TRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
        QCOMPARE(int(host.manager->m_port), 5000);
    }

    void pieceWithoutLineFeedResetsThePort()
    {
        const FakeServer server({ "print UI port: 5000", "await-end" });
        Host host;
        host.manager->m_port = 4000;
        const LogFile log;
        QVERIFY(host.run(server));
        TRY_COMPARE(int(host.manager->m_port), 0);
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
    }

    void outputAfterThePortIsNotRead()
    {
        const FakeServer server(
            { "print UI port: 5000\\n", "await 2", "print UI port: 6000\\n", "note printed", "await-end" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        QSignalSpy output(host.manager->m_process, &QProcess::readyReadStandardOutput);
        host.sendToServer("2");
        TRY_COMPARE(output.size(), 1);
        QCOMPARE(int(host.manager->m_port), 5000);
        QCOMPARE(host.manager->m_process->readAllStandardOutput(), QByteArray("UI port: 6000\n"));
    }

    void outputIsTraced()
    {
        const FakeServer server({ "print Größe\\nUI port: 5000\\n", "await-end" });
        Host host;
        QTest::ignoreMessage(QtDebugMsg,
            QRegularExpression("^tarnis_process\\.cpp : \\d+ [0-9a-f]+ \\| STDOUT:Größe\nUI port: 5000\n$"));
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression("^tarnis_process\\.cpp : \\d+ [0-9a-f]+ \\| PortNo: 5000$"));
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression("^tarnis\\.cpp : \\d+ [0-9a-f]+ \\| OK:StatusChange message$"));
        QVERIFY(host.runUntilConnected(server));
    }

    void unreadOutputIsBounded()
    {
        constexpr int megabyte = 1 << 20;
        const FakeServer server({ "print UI port: 5000\\n", "await 2", "flood 8000000", "note flooded", "await-end" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        host.sendToServer("2");
        TRY_VERIFY(server.hasNoted("flooded"));
        QVERIFY(host.manager->m_process->bytesAvailable() <= megabyte);
    }

    void missingProgramIsReportedOnce_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("does not exist") << "/no such folder/server";
        QTest::newRow("is a folder") << QDir::tempPath();
        QTest::newRow("is empty") << "";
    }
    void missingProgramIsReportedOnce()
    {
        QFETCH(QString, path);
        Host host;
        QVERIFY(!host.manager->Run(&path));
        QCoreApplication::processEvents();
        QCOMPARE(host.record.events,
            QStringList {
                QStringLiteral("post Could not Start Local Server[%1] - check velmark.xml localServer element")
                    .arg(path) });
        QCOMPARE(host.manager->m_process, nullptr);
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
        QVERIFY(!host.manager->Restart());
    }

    void pathIsOneProgramName()
    {
        const FakeServer blank(FakeServer::wellBehaved(5000), "my server/the server");
        Host host;
        QVERIFY(host.runUntilConnected(blank));
        QCOMPARE(host.manager->m_process->arguments(), QStringList());
        const QString withArgument = blank.path() + " --port 1";
        Host other;
        QVERIFY(!other.manager->Run(&withArgument));
    }

    void workingDirectoryIsTheProgramsFolder_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected"); // below the fresh folder
        addCase("plain", "bin/server", "bin/");
        addCase("blank in the program's name", "bin/the server", "bin/");
        addCase("blank in the folder's name", "my bin/server", "");
    }
    void workingDirectoryIsTheProgramsFolder()
    {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const FakeServer server(FakeServer::wellBehaved(5000), name);
        Host host;
        QVERIFY(host.run(server));
        QCOMPARE(host.manager->m_process->workingDirectory(), server.folder() + '/' + expected);
        const QString link = QStringLiteral("/proc/%1/cwd").arg(host.manager->m_process->processId());
        QCOMPARE(QDir(QFile::symLinkTarget(link)), QDir(server.folder() + '/' + expected));
    }

    void serverThatExitsAtOnceLeavesIdle()
    {
        const FakeServer server({ "exit 3" });
        Host host;
        const LogFile log;
        QVERIFY(host.run(server));
        QVERIFY(host.waitForEnd());
        QVERIFY(log.messages().contains("BLCK onLocalSvrFinished"));
        QCOMPARE(host.record.events, QStringList { "post " + startedPost(server) });
        QVERIFY(host.manager->Shutdown());
    }

    void crashWhileConnectedIsReported()
    {
        const FakeServer server({ "print UI port: 5000\\n", "await 2", "crash" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        host.record.events.clear();
        const LogFile log;
        host.sendToServer("2");
        TRY_COMPARE(host.record.events, (QStringList { "post Server process crashed.", "status IDLE" }));
        QVERIFY(log.messages().contains("BLCK Tarnis::onServerError(err[1])"));
    }

    void crashWhileIdleIsReportedAsSuch()
    {
        const FakeServer server({ "crash" });
        Host host;
        QVERIFY(host.run(server));
        QVERIFY(host.waitForEnd());
        QCOMPARE(host.record.events,
            (QStringList {
                "post " + startedPost(server), "post ServerError: Crashed but shutting down or idle. err[1]" }));
    }

    void errorThatIsNoCrashIsReportedAsSuch()
    {
        TarnisProbe manager(&prompt, nullptr);
        manager.SetStatus(Tarnis::RUNNING);
        const HostRecord record(manager);
        manager.onServerError(QProcess::WriteError);
        manager.onServerError(QProcess::Crashed);
        manager.SetStatus(Tarnis::SHUTTING_DOWN);
        manager.onServerError(QProcess::Crashed);
        QCOMPARE(record.events,
            (QStringList { "post ServerError: Crashed but shutting down or idle. err[4]",
                "post Server process crashed.", "status SHUTTING DOWN",
                "post ServerError: Crashed but shutting down or idle. err[1]" }));
    }

    void sessionsOutliveACrash()
    {
        ScriptedServer sessions;
        const FakeServer server({ QStringLiteral("print UI port: %1\\n").arg(sessions.port()), "await 2", "crash" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        host.manager->SendCmd("control", "name", "start", false);
        QVERIFY(eventually([&] { return host.record.has("reply name|start|"); }));
        host.sendToServer("2");
        TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        QVERIFY(host.manager->GetTarnisSession("control")->isRunning());
    }
};

QTEST_GUILESS_MAIN(TestTarnisLocal)
#include "tst_tarnislocal.moc"
