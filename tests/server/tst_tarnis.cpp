// The manager without a local server: order of its interface, status, remote servers.
#include "server/remotemanager.h"
#include "support/logfile.h"
#include "support/metamethods.h"
#include "support/scriptedserver.h"
#include "support/virtualorder.h"
#include "support/wait.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <latch>
#include <memory>
#include <thread>
#include <vector>

using namespace tarnis::testing;
using Status = Tarnis::SERVER_STATUS;

namespace {

// Whether another thread could take the manager's lock now.
bool isFree(TarnisProbe& manager)
{
    bool taken = false;
    std::thread([&] {
        taken = manager.m_mutex.tryLock();
        if (taken)
            manager.m_mutex.unlock();
    }).join();
    return taken;
}

// Overrides every virtual function, records the call, and calls the base class.
class Replaced : public Tarnis {
public:
    using Tarnis::m_bLocal;
    using Tarnis::m_process;
    using Tarnis::Tarnis;
    mutable QStringList calls;

    QStringList callsOf(const std::function<void()>& action)
    {
        calls.clear();
        action();
        return calls;
    }

    TarnisSession* NewTarnisSession(QObject* parent) override
    {
        calls.append("NewTarnisSession");
        return Tarnis::NewTarnisSession(parent);
    }
    TarnisSession* GetTarnisSession(const QString& id) override
    {
        calls.append("GetTarnisSession");
        return Tarnis::GetTarnisSession(id);
    }
    bool Restart() override
    {
        calls.append("Restart");
        return Tarnis::Restart();
    }
    bool Run(const QString* path) override
    {
        calls.append("Run");
        return Tarnis::Run(path);
    }
    bool SendCmd(const QString& id, const QString& name, const QString& cmd, bool progress) override
    {
        calls.append(QStringLiteral("SendCmd(%1,%2,%3,%4)").arg(id, name, cmd).arg(progress));
        return true;
    }
    QString GetServerAddress() const override
    {
        calls.append("GetServerAddress");
        return Tarnis::GetServerAddress();
    }
    QString GetReadoutAddressText() const override
    {
        calls.append("GetReadoutAddressText");
        return Tarnis::GetReadoutAddressText();
    }
    QString GetSettingValue(const QString& key, const QString& defaultValue) const override
    {
        calls.append(QStringLiteral("GetSettingValue(%1,%2)").arg(key, defaultValue));
        return Tarnis::GetSettingValue(key, defaultValue);
    }
    bool SetSettingValue(const QString& key, const QString& value) override
    {
        calls.append(QStringLiteral("SetSettingValue(%1,%2)").arg(key, value));
        return Tarnis::SetSettingValue(key, value);
    }
    bool CheckSettingKey(const QString& key, const QString& value) const override
    {
        calls.append(QStringLiteral("CheckSettingKey(%1,%2)").arg(key, value));
        return Tarnis::CheckSettingKey(key, value);
    }
    bool Shutdown() override
    {
        calls.append("Shutdown");
        return Tarnis::Shutdown();
    }
    QMap<QString, QString>& GetSettings() override
    {
        calls.append("GetSettings");
        return Tarnis::GetSettings();
    }
    QMap<QString, QString> CopySettings() const override
    {
        calls.append("CopySettings");
        return Tarnis::CopySettings();
    }
    void AddCommand(const QString& line) override
    {
        calls.append("AddCommand");
        Tarnis::AddCommand(line);
    }
    int DownloadSettings(const QString& sessionId, bool save) override
    {
        calls.append("DownloadSettings");
        return Tarnis::DownloadSettings(sessionId, save);
    }
    bool SetBasePath(const QString& path, bool withInst) override
    {
        calls.append("SetBasePath");
        return Tarnis::SetBasePath(path, withInst);
    }
};

} // namespace

class TestTarnis : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void metaObjectHasTheGivenOrder()
    {
        QCOMPARE(ownMethods(Tarnis::staticMetaObject),
            (QStringList { "signal StatusChanged(Tarnis::SERVER_STATUS)",
                "signal onCmdReply(QString,QString,QByteArray)", "signal onBasePathChange(QString)",
                "slot onServerReadyStdOut()", "slot onServerError(QProcess::ProcessError)",
                "slot onStatusChanged(Tarnis::SERVER_STATUS)", "slot onReply(PTarnisCmd,QByteArray)",
                "slot onError(int,QString)", "slot onLocalSvrFinished(int,QProcess::ExitStatus)" }));
    }

    void virtualsHaveTheGivenOrder()
    {
        constexpr std::ptrdiff_t ofQObject = 12; // the last one is disconnectNotify
        const QList<std::ptrdiff_t> indices { virtualIndex(&Tarnis::NewTarnisSession),
            virtualIndex(&Tarnis::GetTarnisSession), virtualIndex(&Tarnis::Restart), virtualIndex(&Tarnis::Run),
            virtualIndex(&Tarnis::SendCmd), virtualIndex(&Tarnis::GetServerAddress),
            virtualIndex(&Tarnis::GetReadoutAddressText), virtualIndex(&Tarnis::GetSettingValue),
            virtualIndex(&Tarnis::SetSettingValue), virtualIndex(&Tarnis::CheckSettingKey),
            virtualIndex(&Tarnis::Shutdown), virtualIndex(&Tarnis::GetSettings), virtualIndex(&Tarnis::CopySettings),
            virtualIndex(&Tarnis::AddCommand), virtualIndex(&Tarnis::DownloadSettings),
            virtualIndex(&Tarnis::SetBasePath) };
        for (qsizetype i = 0; i < indices.size(); ++i)
            QCOMPARE(indices.at(i), ofQObject + i);
        QCOMPARE(virtualIndex(&Tarnis::SetStatus), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&Tarnis::GetStatValue), std::ptrdiff_t(-1));
    }

    void membersHaveTheGivenOrder()
    {
        const TarnisProbe manager(&prompt, nullptr);
        const std::vector<const void*> members { &manager.m_mutex, &manager.m_prompt, &manager.m_serverAddress,
            &manager.m_readoutAddress, &manager.m_processPath, &manager.m_remoteHost, &manager.m_remotePort,
            &manager.m_host, &manager.m_port, &manager.m_process, &manager.m_sessions, &manager.m_settings,
            &manager.m_stats, &manager.m_commands, &manager.m_bLocal, &manager.m_status };
        QVERIFY(std::ranges::is_sorted(members));
    }

    void startsIdle()
    {
        const LogFile log;
        const TarnisProbe manager(&prompt, nullptr);
        QCOMPARE(log.messages(), QStringList { "DBG Tarnis::Tarnis()" });
        QCOMPARE(manager.m_status, Tarnis::IDLE);
        QCOMPARE(manager.m_prompt, &prompt);
        QVERIFY(manager.m_bLocal);
        QCOMPARE(manager.m_process, nullptr);
        QCOMPARE(int(manager.m_port) + manager.m_remotePort, 0);
        QCOMPARE(manager.m_remoteHost + manager.m_host + manager.m_processPath, QString());
        QVERIFY(manager.m_sessions.isEmpty() && manager.m_settings.isEmpty());
        QVERIFY(manager.m_stats.isEmpty() && manager.m_commands.isEmpty());
        QCOMPARE(manager.GetServerAddress() + manager.GetReadoutAddressText(), QString());
        QVERIFY(!manager.IsServerConnected());
    }

    void registersTheSharedCommand()
    {
        const TarnisProbe manager(&prompt, nullptr);
        QCOMPARE(QMetaType::fromName("PTarnisCmd"), QMetaType::fromType<QSharedPointer<TarnisCmd>>());
    }

    void statusTable_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<bool>("connected");
        QTest::newRow("IDLE") << 0 << false;
        QTest::newRow("SERVER CONNECTED") << 1 << true;
        QTest::newRow("SERVER ERROR") << 2 << false;
        QTest::newRow("READOUT CONNECTED") << 3 << true;
        QTest::newRow("READOUT ERROR") << 4 << true;
        QTest::newRow("HARDWARE BUSY") << 5 << true;
        QTest::newRow("STARTING") << 6 << true;
        QTest::newRow("RUNNING") << 7 << true;
        QTest::newRow("LOADING") << 8 << true;
        QTest::newRow("SHUTTING DOWN") << 9 << false;
        QTest::newRow("UNKNOWN") << 10 << true;
    }
    void statusTable()
    {
        QFETCH(int, value);
        QFETCH(bool, connected);
        QCOMPARE(Tarnis::GetStatusName(status(value)), QTest::currentDataTag());
        TarnisProbe manager(&prompt, nullptr);
        manager.SetStatus(status(value));
        QCOMPARE(manager.IsServerConnected(), connected);
    }

    void setStatusSignalsChangesOnly()
    {
        Host host;
        host.manager->SetStatus(Tarnis::IDLE);
        host.manager->SetStatus(Tarnis::RUNNING);
        host.manager->SetStatus(Tarnis::RUNNING);
        host.manager->SetStatus(Tarnis::SHUTTING_DOWN);
        host.manager->SetStatus(Tarnis::STARTING);
        QCOMPARE(host.record.events, (QStringList { "status RUNNING", "status SHUTTING DOWN", "status STARTING" }));
        const LogFile log;
        host.manager->SetStatus(Tarnis::LOADING);
        QCOMPARE(log.messages(), QStringList { "BLCK Tarnis::SetStatus(status[8])" });
    }

    void setStatusHoldsTheLockWhileItSignals()
    {
        TarnisProbe manager(&prompt, nullptr);
        int signalled = 0;
        connect(&manager, &Tarnis::StatusChanged, &manager, [&](Status now) {
            ++signalled;
            QCOMPARE(manager.m_status, now);
            QVERIFY(!isFree(manager));
            QVERIFY(manager.IsServerConnected()); // the same thread may continue
        });
        manager.SetStatus(Tarnis::RUNNING);
        QCOMPARE(signalled, 1);
        QVERIFY(isFree(manager));
    }

    void setStatusTracesAnError()
    {
        TarnisProbe manager(&prompt, nullptr);
        QCOMPARE(tracesOf([&] { manager.SetStatus(Tarnis::RUNNING); }), QStringList());
        QCOMPARE(tracesOf([&] { manager.SetStatus(Tarnis::SERVER_ERROR); }),
            QStringList { "Tarnis::SetStatus SERVER_ERROR" });
        QCOMPARE(tracesOf([&] { manager.SetStatus(Tarnis::SERVER_ERROR); }), QStringList());
    }

    void remoteHostIsKept()
    {
        TarnisProbe manager(&prompt, nullptr);
        const LogFile log;
        manager.SetRemoteHost("daq", 5000);
        QCOMPARE(log.messages(), QStringList { "BLCK Tarnis::SetRemoteHost(host[daq], port[5000])" });
        QString host;
        quint16 port = 0;
        manager.GetRemoteHost(host, port);
        QCOMPARE(host, QStringLiteral("daq"));
        QCOMPARE(int(port), 5000);
        QCOMPARE(manager.GetServerAddress(), QStringLiteral("daq:5000"));
        QCOMPARE(manager.m_host, QString()); // adopted by Run
    }

    void remoteRunSendsStat()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("a: 1\n") });
        Host host(&server);
        QVERIFY(host.run());
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
        EXPECT_EVENT(host, "reply statCmd|stat|a: 1\n");
        const QString port = QString::number(server.port());
        QCOMPARE(host.record.events,
            (QStringList { "status SERVER CONNECTED", "post Remote Tarnis Server Started on port " + port,
                "reply statCmd|stat|a: 1\n" }));
        QCOMPARE(host.manager->GetServerAddress(), "127.0.0.1:" + port);
        QCOMPARE(host.manager->m_sessions.keys(), QStringList { "control" });
        QCOMPARE(server.requests(), QByteArrayList { "stat" });
    }

    void remoteRunIgnoresAMissingPath()
    {
        ScriptedServer server;
        Host host(&server);
        host.manager->SetLocal(true);
        QVERIFY(host.run());
        EXPECT_EVENT(host, "reply statCmd|stat|");
    }

    void remoteRunStoresAGivenPath()
    {
        ScriptedServer server;
        Host host(&server);
        const QString path("/opt/daq/server");
        QVERIFY(host.manager->Run(&path));
        EXPECT_EVENT(host, "reply statCmd|stat|");
        QCOMPARE(host.manager->m_processPath, path);
        QCOMPARE(host.manager->m_process, nullptr);
    }

    void anyReplyEndsIdleOnce_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("success") << QByteArray("OK:\n");
        QTest::newRow("failure") << QByteArray("NG:no such command\n");
        QTest::newRow("nothing") << QByteArray();
    }
    void anyReplyEndsIdleOnce()
    {
        QFETCH(QByteArray, reply);
        ScriptedServer server;
        server.answer("start", { Step::text(reply) });
        Host host(&server);
        QVERIFY(host.runUntilConnected());
        host.manager->SetStatus(Tarnis::IDLE);
        host.record.events.clear();
        host.manager->SendCmd("second", "startCmd", "start", false);
        host.manager->SendCmd("second", "again", "start", false);
        EXPECT_EVENT(host, "reply again|start|" + QString::fromUtf8(reply));
        QCOMPARE(host.record.events,
            (QStringList { "status SERVER CONNECTED",
                QStringLiteral("post Remote Tarnis Server Started on port %1").arg(server.port()),
                "reply startCmd|start|" + QString::fromUtf8(reply), "reply again|start|" + QString::fromUtf8(reply) }));
    }

    void replyIsSignalledWithoutTheLock()
    {
        TarnisProbe manager(&prompt, nullptr);
        int replies = 0;
        connect(&manager, &Tarnis::onCmdReply, &manager, [&] {
            ++replies;
            QVERIFY(isFree(manager));
        });
        const LogFile log;
        const PTarnisCmd command(new TarnisCmd("stat"));
        command->m_cmdName = "name";
        manager.onReply(command, "reply");
        QCOMPARE(replies, 1);
        QCOMPARE(manager.m_status, Tarnis::SERVER_CONNECTED);
        QVERIFY(log.messages().contains("BLCK Tarnis::onReply([name/stat])"));
        manager.onReply(PTarnisCmd(), "reply of nothing");
        QCOMPARE(replies, 1);
    }

    void silentServerLeavesIdleUntilTheTimeOut()
    {
        ScriptedServer server({ Step::silence() });
        Host host(&server);
        QVERIFY(host.run());
        host.manager->GetTarnisSession("control")->setTimeout(1);
        QVERIFY(server.waitForConnections(1));
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
        EXPECT_EVENT(host, "status SERVER ERROR");
        QVERIFY(host.record.events.at(0).startsWith(QLatin1String("post Socket Error 5 "))); // SocketTimeoutError
        QCOMPARE(host.record.events.at(1), QStringLiteral("status SERVER ERROR"));
    }

    void refusedConnectionIsAnError()
    {
        Host host;
        host.manager->SetRemoteHost(ScriptedServer::host(), ScriptedServer::closedPort());
        const LogFile log;
        QVERIFY(host.run());
        EXPECT_EVENT(host, "status SERVER ERROR");
        QCOMPARE(host.record.events, (QStringList { "post Socket Error 0 Connection refused", "status SERVER ERROR" }));
        QVERIFY(log.messages().contains("BLCK Tarnis::onError(socketError[0], message[Connection refused])"));
    }

    void sendBeforeTheHostIsKnownIsAnError()
    {
        Host host;
        QVERIFY(host.manager->SendCmd("control", "early", "stat", false));
        EXPECT_EVENT(host, "status SERVER ERROR");
        QVERIFY(host.record.events.at(0).startsWith(QLatin1String("post Socket Error ")));
    }

    void commandAfterAnErrorIsNotSent()
    {
        Host host;
        host.manager->SetRemoteHost(ScriptedServer::host(), ScriptedServer::closedPort());
        QVERIFY(host.run());
        EXPECT_EVENT(host, "status SERVER ERROR");
        TarnisSession* const ended = host.manager->GetTarnisSession("control");
        QVERIFY(ended->wait());
        host.record.events.clear();
        QVERIFY(host.manager->SendCmd("control", "late", "stat", false));
        QCOMPARE(host.manager->GetTarnisSession("control"), ended);
        QVERIFY(ended->isFinished());
        QCOMPARE(host.record.events, QStringList());
    }

    void runsAgainAfterShutdown()
    {
        ScriptedServer server({ Step::drop() });
        Host host(&server);
        QVERIFY(host.run());
        EXPECT_EVENT(host, "status SERVER ERROR");
        QVERIFY(host.manager->Shutdown());
        QCOMPARE(host.manager->m_status, Tarnis::IDLE);
        server.setScript(server.connectionCount(), wellBehaved());
        QVERIFY(host.runUntilConnected());
        QCOMPARE(host.manager->m_status, Tarnis::SERVER_CONNECTED);
    }

    void errorOfAnySessionCounts()
    {
        ScriptedServer server;
        server.setScript(1, { Step::text(""), Step::drop() });
        Host host(&server);
        QVERIFY(host.runUntilConnected());
        host.manager->SendCmd("second", "name", "start", false);
        EXPECT_EVENT(host, "status SERVER ERROR");
        QVERIFY(host.record.has("post Socket Error 1 The remote host closed the connection"));
        // A reply on the first one does not bring the status back.
        host.manager->SendCmd("control", "again", "start", false);
        EXPECT_EVENT(host, "reply again|start|");
        QCOMPARE(host.manager->m_status, Tarnis::SERVER_ERROR);
    }

    void callsItsOwnOperationsThroughTheSlots()
    {
        Replaced manager(&prompt, nullptr);
        manager.SetLocal(false);
        manager.SetRemoteHost("daq", 1);
        QCOMPARE(
            manager.callsOf([&] { manager.Run(nullptr); }), (QStringList { "Run", "SendCmd(control,statCmd,stat,0)" }));
        QCOMPARE(manager.callsOf([&] { manager.Tarnis::SetSettingValue("tcp", "1"); }),
            QStringList { "CheckSettingKey(tcp,1)" });
        QString ip("10.0.0.1");
        unsigned int tcp = 0;
        unsigned int bcp = 0;
        QCOMPARE(manager.callsOf([&] { manager.SetReadoutAddress(2, ip, 3, 4); }),
            (QStringList { "SetSettingValue(ip2,10.0.0.1)", "CheckSettingKey(ip2,10.0.0.1)", "SetSettingValue(tcp2,3)",
                "CheckSettingKey(tcp2,3)", "SetSettingValue(bcp2,4)", "CheckSettingKey(bcp2,4)" }));
        QCOMPARE(manager.callsOf([&] { manager.GetReadoutAddress(ip, tcp, bcp); }),
            (QStringList { "GetSettingValue(ip,)", "GetSettingValue(tcp,)", "GetSettingValue(bcp,)" }));
        manager.SetStatus(Tarnis::SERVER_CONNECTED);
        QCOMPARE(manager.callsOf([&] { manager.Tarnis::SetBasePath("/data", true); }),
            (QStringList { "GetSettingValue(inst,)", "SetSettingValue(basepath,/data)",
                "CheckSettingKey(basepath,/data)",
                "SendCmd(control,settingBasePathCmd,setting inst: basepath:/data,0)" }));
        manager.GetSettings() = { { "a", "1" } };
        QCOMPARE(manager.callsOf([&] { manager.Tarnis::DownloadSettings("control", true); }),
            (QStringList { "SendCmd(control,updateSettingCmd0,setting a:1 ,0)",
                "SendCmd(control,savesettingCmd,savesetting,0)" }));
    }
};

QTEST_GUILESS_MAIN(TestTarnis)
#include "tst_tarnis.moc"
