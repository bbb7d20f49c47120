// The manager and its local server: shutdown, restart, and the end of the manager.
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

class TestTarnisRestart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void shutdownLetsTheServerEndByItself()
    {
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        QVERIFY(host.runUntilConnected(server));
        const QPointer<QProcess> process = host.manager->m_process;
        host.record.events.clear();
        QVERIFY(host.manager->Shutdown());
        QCOMPARE(host.manager->m_process, nullptr);
        QCOMPARE(host.record.events, QStringList { "status SHUTTING DOWN" });
        TRY_VERIFY(process.isNull());
        QCOMPARE(server.noted("end"), QByteArray("exit"));
        QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
    }

    void shutdownLogsTheEnd()
    {
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        QVERIFY(host.runUntilConnected(server));
        const LogFile log;
        host.manager->Shutdown();
        TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        QCOMPARE(log.messages(),
            (QStringList { "BLCK Shutdown", "DBG status: 1", "BLCK shutting down", "BLCK Tarnis::SetStatus(status[9])",
                "BLCK Tarnis::onStatusChanged(status[9])", "DBG closing local server", "BLCK onLocalSvrFinished",
                "BLCK Tarnis::SetStatus(status[0])", "BLCK Tarnis::onStatusChanged(status[0])" }));
    }

    void shutdownAfterACrashEndsAtOnce()
    {
        const FakeServer server({ "print UI port: 5000\\n", "await 2", "crash" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        host.sendToServer("2");
        TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        host.manager->SetStatus(Tarnis::SERVER_ERROR); // as set by a session's error after the crash
        const QPointer<QProcess> process = host.manager->m_process;
        host.record.events.clear();
        QVERIFY(host.manager->Shutdown());
        QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
        QCOMPARE(host.manager->m_process, nullptr);
        TRY_VERIFY(process.isNull());
    }

    void shutdownBeforeThePortIsIdle()
    {
        const FakeServer server({ "await-end", "note end" });
        Host host;
        QVERIFY(host.run(server));
        QVERIFY(host.manager->Shutdown());
        QVERIFY(host.manager->m_process);
        QCOMPARE(host.manager->m_process->state(), QProcess::Running);
    }

    void portAnnouncedDuringShutdownIsIgnored()
    {
        const FakeServer server({ "await exit", "print UI port: 5000\\n", "await-end" });
        Host host;
        QVERIFY(host.run(server));
        host.manager->SetStatus(Tarnis::RUNNING);
        host.record.events.clear();
        QVERIFY(host.manager->Shutdown());
        TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
        QCOMPARE(int(host.manager->m_port), 0);
    }

    void secondShutdownChangesNothing()
    {
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        QVERIFY(host.runUntilConnected(server));
        QVERIFY(host.manager->Shutdown());
        QVERIFY(host.manager->Shutdown());
        QCOMPARE(host.manager->m_status, Tarnis::SHUTTING_DOWN);
        TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        QVERIFY(host.manager->Shutdown());
        QCOMPARE(server.noted("end"), QByteArray("exit"));
    }

    void restartTable_data()
    {
        addColumns<bool, bool, bool>("local", "run", "expected");
        QTest::newRow("never run") << true << false << false;
        QTest::newRow("remote mode with a process") << false << true << false;
        QTest::newRow("local mode with a process") << true << true << true;
    }
    void restartTable()
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

    void restartsInEveryStatus_data() { addEveryStatus(); }
    void restartsInEveryStatus()
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
        TRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
    }

    void shutsDownInEveryStatus_data() { addEveryStatus(); }
    void shutsDownInEveryStatus()
    {
        QFETCH(int, value);
        const auto status = static_cast<Tarnis::SERVER_STATUS>(value);
        const bool refuses =
            status == Tarnis::HARDWARE_BUSY || status == Tarnis::STARTING || value > Tarnis::SHUTTING_DOWN;
        const bool closes = !refuses && status != Tarnis::IDLE && status != Tarnis::SHUTTING_DOWN;
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        QVERIFY(host.runUntilConnected(server));
        const QPointer<QProcess> process = host.manager->m_process;
        host.manager->SetStatus(status);
        host.record.events.clear();
        QCOMPARE(host.manager->Shutdown(), !refuses);
        if (closes) {
            TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
            QCOMPARE(server.noted("end"), QByteArray("exit"));
            return;
        }
        QCOMPARE(int(host.manager->m_status), value);
        QCOMPARE(host.record.events, QStringList());
        QCOMPARE(host.manager->m_process, process.data());
        QCOMPARE(process->state(), QProcess::Running);
    }

    void restartAfterACrashConnectsAgain()
    {
        const FakeServer server({ "print UI port: 5000\\n", "await 2", "crash" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        host.sendToServer("2");
        TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
        const QPointer<QProcess> crashed = host.manager->m_process;
        QVERIFY(host.manager->Restart());
        QVERIFY(host.manager->m_process != crashed);
        TRY_COMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
        TRY_VERIFY(crashed.isNull());
    }

    void secondRunConnectsNothingTwice()
    {
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        for (int i = 0; i < 3; ++i) {
            const LogFile log;
            QVERIFY(host.runUntilConnected(server));
            QCOMPARE(log.messages().count("BLCK Tarnis::onStatusChanged(status[1])"), 1);
            QCOMPARE(log.messages().count("BLCK onServerReadyStdOut"), 1);
            QVERIFY(host.manager->Shutdown());
            TRY_COMPARE(host.manager->m_status, Tarnis::IDLE);
            QCOMPARE(log.messages().count("BLCK onLocalSvrFinished"), 1);
        }
    }

    void replacedServerRunsUntilTheEnd()
    {
        const FakeServer first(FakeServer::wellBehaved(5000));
        const FakeServer second(FakeServer::wellBehaved(6000));
        Host host;
        QVERIFY(host.runUntilConnected(first));
        const QPointer<QProcess> replaced = host.manager->m_process;
        QVERIFY(host.run(second));
        TRY_COMPARE(int(host.manager->m_port), 6000);
        QVERIFY(replaced);
        QCOMPARE(replaced->state(), QProcess::Running);
        delete host.manager;
        QCOMPARE(second.noted("end"), QByteArray("exit"));
        TRY_VERIFY(replaced.isNull());
        QCOMPARE(first.noted("end"), QByteArray("exit"));
    }

    void destructionLetsTheServerEndByItself()
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
        TRY_VERIFY(process.isNull());
    }

    void destructionAfterShutdownDoesNotWait()
    {
        const FakeServer server({ "print UI port: 5000\\n", "await-end", "note end", "linger" });
        Host host;
        QVERIFY(host.runUntilConnected(server));
        const QPointer<QProcess> process = host.manager->m_process;
        QVERIFY(host.manager->Shutdown());
        delete host.manager;
        QVERIFY(process);
        TRY_VERIFY(server.hasNoted("end"));
        process->kill();
        TRY_VERIFY(process.isNull());
    }

    void destructionAfterTheServersEnd()
    {
        const FakeServer server({ "exit 0" });
        Host host;
        QVERIFY(host.run(server));
        QVERIFY(host.waitForEnd());
        const QPointer<QProcess> process = host.manager->m_process;
        delete host.manager;
        TRY_VERIFY(process.isNull());
    }

    void canBeDestroyedInEveryStatus_data() { addEveryStatus(); }
    void canBeDestroyedInEveryStatus()
    {
        QFETCH(int, value);
        const FakeServer server(FakeServer::wellBehaved(5000));
        Host host;
        QVERIFY(host.runUntilConnected(server));
        host.manager->SetStatus(static_cast<Tarnis::SERVER_STATUS>(value));
        const QPointer<QProcess> process = host.manager->m_process;
        delete host.manager;
        QCOMPARE(server.noted("end"), QByteArray("exit"));
        TRY_VERIFY(process.isNull());
    }

private:
    static void addEveryStatus()
    {
        QTest::addColumn<int>("value");
        for (int value = 0; value <= 10; ++value)
            QTest::addRow("%s", Tarnis::GetStatusName(static_cast<Tarnis::SERVER_STATUS>(value))) << value;
    }
};

QTEST_GUILESS_MAIN(TestTarnisRestart)
#include "tst_tarnisrestart.moc"
