// The manager and its local server: start, port, crash, end, restart.
#include "support/fakeserver.h"
#include "support/logfile.h"
#include "support/managerprobe.h"
#include "support/scriptedserver.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace tarnis::testing;

namespace {

const QByteArray prompt("> ");

// A manager in local mode whose server is one of the test's programs.
struct Host {
    QObject parent;
    OpenTarnis* manager = new OpenTarnis(&prompt, &parent);
    HostRecord record { *manager };

    bool run(const FakeServer& server)
    {
        manager->SetProcessPath(server.path());
        return manager->Run(nullptr);
    }
    bool runUntilConnected(const FakeServer& server)
    {
        return run(server) && eventually([this] { return manager->m_status == Tarnis::SERVER_CONNECTED; });
    }
    // Makes the server execute its next step.
    void tell(const QByteArray& text) { manager->m_process->write(text); }
    QStringList posts() const
    {
        QStringList texts;
        for (const QString& event : record.events) {
            if (event.startsWith(QLatin1String("post ")))
                texts.append(event.mid(5));
        }
        return texts;
    }
    // Waits until the manager was notified of the end of the process.
    bool waitForEnd()
    {
        return eventually([this] { return manager->m_process->state() == QProcess::NotRunning; });
    }
};

QString startedPost(const FakeServer& server)
{
    return QStringLiteral("Local Server[%1] Started").arg(server.path());
}

bool isRunning(qint64 processId)
{
    return QFileInfo::exists(QStringLiteral("/proc/%1").arg(processId));
}

} // namespace

class TestTarnisLocal : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void portBringsTheConnection();
    void givenPathIsStoredAndRun();
    void portThatIsNoneIsPassedOver_data();
    void portThatIsNoneIsPassedOver();
    void pieceWithoutLineFeedResetsThePort();
    void outputAfterThePortIsNotRead();
    void outputIsTraced();
    void unreadOutputIsBounded();

    void missingProgramIsReportedOnce_data();
    void missingProgramIsReportedOnce();
    void pathIsOneProgramName();
    void workingDirectoryIsTheProgramsFolder_data();
    void workingDirectoryIsTheProgramsFolder();

    void serverThatExitsAtOnceLeavesIdle();
    void crashWhileConnectedIsReported();
    void crashWhileIdleIsReportedAsSuch();
    void errorThatIsNoCrashIsReportedAsSuch();
    void sessionsOutliveACrash();

    void shutdownLetsTheServerEndByItself();
    void shutdownLogsTheEnd();
    void shutdownAfterACrashEndsAtOnce();
    void shutdownBeforeThePortIsIdle();
    void portAnnouncedDuringShutdownIsIgnored();
    void secondShutdownChangesNothing();

    void restartTable_data();
    void restartTable();
    void restartsInEveryStatus_data();
    void restartsInEveryStatus();
    void shutsDownInEveryStatus_data();
    void shutsDownInEveryStatus();
    void restartAfterACrashConnectsAgain();
    void secondRunConnectsNothingTwice();
    void replacedServerRunsUntilTheEnd();

    void destructionLetsTheServerEndByItself();
    void destructionAfterShutdownDoesNotWait();
    void destructionAfterTheServersEnd();
    void canBeDestroyedInEveryStatus_data();
    void canBeDestroyedInEveryStatus();

private:
    static void addEveryStatus();
};

void TestTarnisLocal::portBringsTheConnection()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    const LogFile log;
    QVERIFY(host.run(server));
    QCOMPARE(host.manager->m_status, Tarnis::IDLE);
    QTRY_COMPARE(host.record.events,
        (QStringList { "post " + startedPost(server), "status SERVER CONNECTED",
            "post Local Tarnis Server Started on port 5000" }));
    QCOMPARE(int(host.manager->m_port), 5000);
    QCOMPARE(host.manager->m_host, QStringLiteral("localhost"));
    QCOMPARE(host.manager->GetServerAddress(), QStringLiteral("localhost:5000"));
    QCOMPARE(log.messages(),
        (QStringList { "BLCK Run", "BLCK onServerReadyStdOut", "BLCK Tarnis::SetStatus(status[1])",
            "BLCK Tarnis::onStatusChanged(status[1])" }));
}

void TestTarnisLocal::givenPathIsStoredAndRun()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    host.manager->SetProcessPath("another");
    const QString path = server.path();
    QVERIFY(host.manager->Run(&path));
    QCOMPARE(host.manager->m_processPath, path);
    QTRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
}

void TestTarnisLocal::portThatIsNoneIsPassedOver_data()
{
    QTest::addColumn<QStringList>("first");
    const QString wait("await go\n");
    QTest::newRow("0") << QStringList { "print UI port: 0\\n" };
    QTest::newRow("70000") << QStringList { "print UI port: 70000\\n" };
    QTest::newRow("no number") << QStringList { "print UI port: soon\\n" };
    QTest::newRow("no line feed") << QStringList { "print UI port: 4000" };
    QTest::newRow("in two pieces, before the number") << QStringList { "print UI port:", "await 2", "print  4000\\n" };
    QTest::newRow("in two pieces, in the number") << QStringList { "print UI port: 40", "await 2", "print 00\\n" };
    QTest::newRow("in two pieces, before the line feed")
        << QStringList { "print UI port: 4000", "await 2", "print \\n" };
    QTest::newRow("in two pieces, in the label") << QStringList { "print UI po", "await 2", "print rt: 4000\\n" };
    QTest::newRow("other output") << QStringList { "print ready\\n" };
}

void TestTarnisLocal::portThatIsNoneIsPassedOver()
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
    host.tell("2");
    if (first.size() > 1)
        QVERIFY(seen(2));
    QCOMPARE(int(host.manager->m_port), 0);
    QCOMPARE(host.manager->m_status, Tarnis::IDLE);
    QCOMPARE(host.manager->GetServerAddress(), QString());
    host.tell("3");
    QTRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
    QCOMPARE(int(host.manager->m_port), 5000);
}

void TestTarnisLocal::pieceWithoutLineFeedResetsThePort()
{
    const FakeServer server({ "print UI port: 5000", "await-end" });
    Host host;
    host.manager->m_port = 4000;
    const LogFile log;
    QVERIFY(host.run(server));
    QTRY_COMPARE(int(host.manager->m_port), 0);
    QCOMPARE(host.manager->m_status, Tarnis::IDLE);
}

void TestTarnisLocal::outputAfterThePortIsNotRead()
{
    const FakeServer server(
        { "print UI port: 5000\\n", "await 2", "print UI port: 6000\\n", "note printed", "await-end" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    QSignalSpy output(host.manager->m_process, &QProcess::readyReadStandardOutput);
    host.tell("2");
    QTRY_COMPARE(output.size(), 1);
    QCOMPARE(int(host.manager->m_port), 5000);
    QCOMPARE(host.manager->m_process->readAllStandardOutput(), QByteArray("UI port: 6000\n"));
}

void TestTarnisLocal::outputIsTraced()
{
    const FakeServer server({ "print Größe\\nUI port: 5000\\n", "await-end" });
    Host host;
    QTest::ignoreMessage(
        QtDebugMsg, QRegularExpression("^tarnis_process\\.cpp : \\d+ [0-9a-f]+ \\| STDOUT:Größe\nUI port: 5000\n$"));
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^tarnis_process\\.cpp : \\d+ [0-9a-f]+ \\| PortNo: 5000$"));
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^tarnis\\.cpp : \\d+ [0-9a-f]+ \\| OK:StatusChange message$"));
    QVERIFY(host.runUntilConnected(server));
}

void TestTarnisLocal::unreadOutputIsBounded()
{
    constexpr int megabyte = 1 << 20;
    const FakeServer server({ "print UI port: 5000\\n", "await 2", "flood 8000000", "note flooded", "await-end" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    host.tell("2");
    QTRY_VERIFY_WITH_TIMEOUT(server.hasNoted("flooded"), 20000);
    QVERIFY(host.manager->m_process->bytesAvailable() <= megabyte);
}

void TestTarnisLocal::missingProgramIsReportedOnce_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("does not exist") << "/no such folder/server";
    QTest::newRow("is a folder") << QDir::tempPath();
    QTest::newRow("is empty") << "";
}

void TestTarnisLocal::missingProgramIsReportedOnce()
{
    QFETCH(QString, path);
    Host host;
    QVERIFY(!host.manager->Run(&path));
    QCoreApplication::processEvents();
    QCOMPARE(host.record.events,
        QStringList { QStringLiteral("post Could not Start Local Server[%1] - check velmark.xml localServer element")
                          .arg(path) });
    QCOMPARE(host.manager->m_process, nullptr);
    QCOMPARE(host.manager->m_status, Tarnis::IDLE);
    QVERIFY(!host.manager->Restart());
}

void TestTarnisLocal::pathIsOneProgramName()
{
    const FakeServer blank(FakeServer::wellBehaved(5000), "my server/the server");
    Host host;
    QVERIFY(host.runUntilConnected(blank));
    QCOMPARE(host.manager->m_process->arguments(), QStringList());
    const QString withArgument = blank.path() + " --port 1";
    Host other;
    QVERIFY(!other.manager->Run(&withArgument));
}

void TestTarnisLocal::workingDirectoryIsTheProgramsFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected"); // below the fresh folder
    QTest::newRow("plain") << "bin/server"
                           << "bin/";
    QTest::newRow("blank in the program's name") << "bin/the server"
                                                 << "bin/";
    QTest::newRow("blank in the folder's name") << "my bin/server"
                                                << "";
}

void TestTarnisLocal::workingDirectoryIsTheProgramsFolder()
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

void TestTarnisLocal::serverThatExitsAtOnceLeavesIdle()
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

void TestTarnisLocal::crashWhileConnectedIsReported()
{
    const FakeServer server({ "print UI port: 5000\\n", "await 2", "crash" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    host.record.events.clear();
    const LogFile log;
    host.tell("2");
    QTRY_COMPARE(host.record.events, (QStringList { "post Server process crashed.", "status IDLE" }));
    QVERIFY(log.messages().contains("BLCK Tarnis::onServerError(err[1])"));
}

void TestTarnisLocal::crashWhileIdleIsReportedAsSuch()
{
    const FakeServer server({ "crash" });
    Host host;
    QVERIFY(host.run(server));
    QVERIFY(host.waitForEnd());
    QCOMPARE(host.record.events,
        (QStringList { "post " + startedPost(server), "post ServerError: Crashed but shutting down or idle. err[1]" }));
}

void TestTarnisLocal::errorThatIsNoCrashIsReportedAsSuch()
{
    OpenTarnis manager(&prompt, nullptr);
    manager.SetStatus(Tarnis::RUNNING);
    const HostRecord record(manager);
    manager.onServerError(QProcess::WriteError);
    manager.onServerError(QProcess::Crashed);
    manager.SetStatus(Tarnis::SHUTTING_DOWN);
    manager.onServerError(QProcess::Crashed);
    QCOMPARE(record.events,
        (QStringList { "post ServerError: Crashed but shutting down or idle. err[4]", "post Server process crashed.",
            "status SHUTTING DOWN", "post ServerError: Crashed but shutting down or idle. err[1]" }));
}

void TestTarnisLocal::sessionsOutliveACrash()
{
    ScriptedServer sessions;
    const FakeServer server({ QStringLiteral("print UI port: %1\\n").arg(sessions.port()), "await 2", "crash" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    host.manager->SendCmd("control", "name", "start", false);
    QVERIFY(eventually([&] { return host.record.has("reply name|start|"); }));
    host.tell("2");
    QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
    QVERIFY(host.manager->GetTarnisSession("control")->isRunning());
}

void TestTarnisLocal::shutdownLetsTheServerEndByItself()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    const QPointer<QProcess> process = host.manager->m_process;
    host.record.events.clear();
    QVERIFY(host.manager->Shutdown());
    QCOMPARE(host.manager->m_process, nullptr);
    QCOMPARE(host.record.events, QStringList { "status SHUTTING DOWN" });
    QTRY_VERIFY(process.isNull());
    QCOMPARE(server.noted("end"), QByteArray("exit"));
    QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
}

void TestTarnisLocal::shutdownLogsTheEnd()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    const LogFile log;
    host.manager->Shutdown();
    QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
    QCOMPARE(log.messages(),
        (QStringList { "BLCK Shutdown", "DBG status: 1", "BLCK shutting down", "BLCK Tarnis::SetStatus(status[9])",
            "BLCK Tarnis::onStatusChanged(status[9])", "DBG closing local server", "BLCK onLocalSvrFinished",
            "BLCK Tarnis::SetStatus(status[0])", "BLCK Tarnis::onStatusChanged(status[0])" }));
}

void TestTarnisLocal::shutdownAfterACrashEndsAtOnce()
{
    const FakeServer server({ "print UI port: 5000\\n", "await 2", "crash" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    host.tell("2");
    QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
    host.manager->SetStatus(Tarnis::SERVER_ERROR); // as set by a session's error after the crash
    const QPointer<QProcess> process = host.manager->m_process;
    host.record.events.clear();
    QVERIFY(host.manager->Shutdown());
    QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
    QCOMPARE(host.manager->m_process, nullptr);
    QTRY_VERIFY(process.isNull());
}

void TestTarnisLocal::shutdownBeforeThePortIsIdle()
{
    const FakeServer server({ "await-end", "note end" });
    Host host;
    QVERIFY(host.run(server));
    QVERIFY(host.manager->Shutdown());
    QVERIFY(host.manager->m_process);
    QCOMPARE(host.manager->m_process->state(), QProcess::Running);
}

void TestTarnisLocal::portAnnouncedDuringShutdownIsIgnored()
{
    const FakeServer server({ "await exit", "print UI port: 5000\\n", "await-end" });
    Host host;
    QVERIFY(host.run(server));
    host.manager->SetStatus(Tarnis::RUNNING);
    host.record.events.clear();
    QVERIFY(host.manager->Shutdown());
    QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
    QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
    QCOMPARE(int(host.manager->m_port), 0);
}

void TestTarnisLocal::secondShutdownChangesNothing()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    QVERIFY(host.manager->Shutdown());
    QVERIFY(host.manager->Shutdown());
    QCOMPARE(host.manager->m_status, Tarnis::SHUTTING_DOWN);
    QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
    QVERIFY(host.manager->Shutdown());
    QCOMPARE(server.noted("end"), QByteArray("exit"));
}

void TestTarnisLocal::restartTable_data()
{
    QTest::addColumn<bool>("local");
    QTest::addColumn<bool>("run");
    QTest::addColumn<bool>("expected");
    QTest::newRow("never run") << true << false << false;
    QTest::newRow("remote mode with a process") << false << true << false;
    QTest::newRow("local mode with a process") << true << true << true;
}

void TestTarnisLocal::restartTable()
{
    QFETCH(bool, local);
    QFETCH(bool, run);
    QFETCH(bool, expected);
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    if (run)
        QVERIFY(host.runUntilConnected(server));
    host.manager->SetLocal(local);
    QCOMPARE(host.manager->Restart(), expected);
    host.manager->SetStatus(Tarnis::RUNNING);
    QVERIFY(host.manager->Shutdown());
    host.manager->SetLocal(true);
    QVERIFY(!host.manager->Restart()); // m_process is null
}

void TestTarnisLocal::restartsInEveryStatus()
{
    QFETCH(int, value);
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    const QPointer<QProcess> before = host.manager->m_process;
    host.manager->SetStatus(static_cast<Tarnis::SERVER_STATUS>(value));
    QVERIFY(host.manager->Restart());
    QVERIFY(host.manager->m_process != before);
    QVERIFY(before);
    QCOMPARE(before->state(), QProcess::Running); // Restart stops nothing
    QTRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
}

void TestTarnisLocal::shutsDownInEveryStatus()
{
    QFETCH(int, value);
    const auto status = static_cast<Tarnis::SERVER_STATUS>(value);
    const bool refuses = status == Tarnis::HARDWARE_BUSY || status == Tarnis::STARTING || value > Tarnis::SHUTTING_DOWN;
    const bool closes = !refuses && status != Tarnis::IDLE && status != Tarnis::SHUTTING_DOWN;
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    const QPointer<QProcess> process = host.manager->m_process;
    host.manager->SetStatus(status);
    host.record.events.clear();
    QCOMPARE(host.manager->Shutdown(), !refuses);
    if (closes) {
        QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        QCOMPARE(server.noted("end"), QByteArray("exit"));
        return;
    }
    QCOMPARE(int(host.manager->m_status), value);
    QCOMPARE(host.record.events, QStringList());
    QCOMPARE(host.manager->m_process, process.data());
    QCOMPARE(process->state(), QProcess::Running);
}

void TestTarnisLocal::restartAfterACrashConnectsAgain()
{
    const FakeServer server({ "print UI port: 5000\\n", "await 2", "crash" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    host.tell("2");
    QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
    const QPointer<QProcess> crashed = host.manager->m_process;
    QVERIFY(host.manager->Restart());
    QVERIFY(host.manager->m_process != crashed);
    QTRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
    QTRY_VERIFY(crashed.isNull());
}

void TestTarnisLocal::secondRunConnectsNothingTwice()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    for (int i = 0; i < 3; ++i) {
        const LogFile log;
        QVERIFY(host.runUntilConnected(server));
        QCOMPARE(log.messages().count("BLCK Tarnis::onStatusChanged(status[1])"), 1);
        QCOMPARE(log.messages().count("BLCK onServerReadyStdOut"), 1);
        QVERIFY(host.manager->Shutdown());
        QTRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        QCOMPARE(log.messages().count("BLCK onLocalSvrFinished"), 1);
    }
}

void TestTarnisLocal::replacedServerRunsUntilTheEnd()
{
    const FakeServer first(FakeServer::wellBehaved(5000));
    const FakeServer second(FakeServer::wellBehaved(6000));
    Host host;
    QVERIFY(host.runUntilConnected(first));
    const QPointer<QProcess> replaced = host.manager->m_process;
    QVERIFY(host.run(second));
    QTRY_COMPARE(int(host.manager->m_port), 6000);
    QVERIFY(replaced);
    QCOMPARE(replaced->state(), QProcess::Running);
    delete host.manager;
    QCOMPARE(second.noted("end"), QByteArray("exit"));
    QTRY_VERIFY(replaced.isNull());
    QCOMPARE(first.noted("end"), QByteArray("exit"));
}

void TestTarnisLocal::destructionLetsTheServerEndByItself()
{
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    const QPointer<QProcess> process = host.manager->m_process;
    const qint64 processId = process->processId();
    host.record.events.clear();
    QTest::ignoreMessage(QtDebugMsg,
        QRegularExpression("^tarnis_process\\.cpp : \\d+ [0-9a-f]+ \\| ERROR:Disconnect Server Before delete\\.$"));
    const LogFile log;
    delete host.manager;
    QCOMPARE(server.noted("end"), QByteArray("exit"));
    QVERIFY(!isRunning(processId));
    QCOMPARE(log.messages().mid(0, 2), (QStringList { "BLCK ~Tarnis", "BLCK local server deleting" }));
    QCOMPARE(host.posts(), QStringList());
    QTRY_VERIFY(process.isNull());
}

void TestTarnisLocal::destructionAfterShutdownDoesNotWait()
{
    const FakeServer server({ "print UI port: 5000\\n", "await-end", "note end", "linger" });
    Host host;
    QVERIFY(host.runUntilConnected(server));
    const QPointer<QProcess> process = host.manager->m_process;
    QVERIFY(host.manager->Shutdown());
    delete host.manager;
    QVERIFY(process);
    QTRY_VERIFY(server.hasNoted("end"));
    process->kill();
    QTRY_VERIFY(process.isNull());
}

void TestTarnisLocal::destructionAfterTheServersEnd()
{
    const FakeServer server({ "exit 0" });
    Host host;
    QVERIFY(host.run(server));
    QVERIFY(host.waitForEnd());
    const QPointer<QProcess> process = host.manager->m_process;
    delete host.manager;
    QTRY_VERIFY(process.isNull());
}

void TestTarnisLocal::restartsInEveryStatus_data()
{
    addEveryStatus();
}

void TestTarnisLocal::shutsDownInEveryStatus_data()
{
    addEveryStatus();
}

void TestTarnisLocal::canBeDestroyedInEveryStatus_data()
{
    addEveryStatus();
}

void TestTarnisLocal::addEveryStatus()
{
    QTest::addColumn<int>("value");
    for (int value = 0; value <= 10; ++value)
        QTest::addRow("%s", Tarnis::GetStatusName(static_cast<Tarnis::SERVER_STATUS>(value))) << value;
}

void TestTarnisLocal::canBeDestroyedInEveryStatus()
{
    QFETCH(int, value);
    const FakeServer server(FakeServer::wellBehaved(5000));
    Host host;
    QVERIFY(host.runUntilConnected(server));
    host.manager->SetStatus(static_cast<Tarnis::SERVER_STATUS>(value));
    const QPointer<QProcess> process = host.manager->m_process;
    delete host.manager;
    QCOMPARE(server.noted("end"), QByteArray("exit"));
    QTRY_VERIFY(process.isNull());
}

QTEST_GUILESS_MAIN(TestTarnisLocal)
#include "tst_tarnislocal.moc"
