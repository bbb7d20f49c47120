// The manager without a local server: order of its interface, status, sessions, remote servers, shutdown.
#include "support/logfile.h"
#include "support/managerprobe.h"
#include "support/scriptedserver.h"
#include "support/virtualorder.h"

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

const QByteArray prompt("> ");

QStringList debugTexts;

void collectDebugText(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type == QtDebugMsg)
        debugTexts.append(text.mid(text.indexOf(QLatin1String(" | ")) + 3));
}

// Debug traces of an action, without location and thread.
template <typename Action> QStringList tracesOf(const Action& action)
{
    debugTexts.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectDebugText);
    action();
    qInstallMessageHandler(previous);
    return debugTexts;
}

// Whether another thread could take the manager's lock now.
bool isFree(OpenTarnis& manager)
{
    bool taken = false;
    std::thread([&] {
        taken = manager.m_mutex.tryLock();
        if (taken)
            manager.m_mutex.unlock();
    }).join();
    return taken;
}

Status status(int value)
{
    return static_cast<Status>(value);
}

// A manager with a parent that owns its sessions, as in hosts.
struct Host {
    QObject parent;
    OpenTarnis* manager = new OpenTarnis(&prompt, &parent);
    HostRecord record { *manager };

    explicit Host(const ScriptedServer* server = nullptr)
    {
        manager->SetLocal(false);
        if (server)
            manager->SetRemoteHost(ScriptedServer::host(), server->port());
    }
    bool run() { return manager->Run(nullptr); }
    bool runUntilConnected()
    {
        return run() && eventually([this] { return record.has("reply statCmd|stat|"); });
    }
    QString waitFor(const QString& event)
    {
        eventually([&] { return record.has(event); });
        return record.has(event) ? QString() : record.events.join('\n');
    }
};

} // namespace

#define EXPECT_EVENT(host, event)                                                                                      \
    do {                                                                                                               \
        const QString otherEvents = (host).waitFor(event);                                                             \
        QVERIFY2((host).record.has(event), qPrintable(otherEvents));                                                   \
    } while (false)

class TestTarnis : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void metaObjectHasTheGivenOrder();
    void virtualsHaveTheGivenOrder();
    void membersHaveTheGivenOrder();
    void startsIdle();
    void registersTheSharedCommand();

    void statusTable_data();
    void statusTable();
    void setStatusSignalsChangesOnly();
    void setStatusHoldsTheLockWhileItSignals();
    void setStatusTracesAnError();

    void remoteHostIsKept();
    void remoteRunSendsStat();
    void remoteRunIgnoresAMissingPath();
    void remoteRunStoresAGivenPath();
    void anyReplyEndsIdleOnce_data();
    void anyReplyEndsIdleOnce();
    void replyIsSignalledWithoutTheLock();
    void silentServerLeavesIdleUntilTheTimeOut();
    void refusedConnectionIsAnError();
    void sendBeforeTheHostIsKnownIsAnError();
    void commandAfterAnErrorIsNotSent();
    void runsAgainAfterShutdown();
    void errorOfAnySessionCounts();

    void newSessionIsTheCallers();
    void unknownSessionLeavesANullEntry();
    void namedSessionsAreMadeOnce();
    void commandsKeepNameAndProgress();
    void sendCmdLogsItsSteps();
    void sendCmdComesFromAnyThread();

    void shutdownTable_data();
    void shutdownTable();
    void shutdownClosesTheSessions();
    void shutdownStepsOverNullEntries();
    void shutdownInIdleLeavesTheSessions();
    void shutdownLogsItsSteps();
    void sessionIsRecreatedAfterShutdown();
    void callsOfAClosedSessionComeToNothing_data();
    void callsOfAClosedSessionComeToNothing();
    void queuedCallWithoutASenderCounts();

    void canBeDestroyedInEveryStatus_data();
    void canBeDestroyedInEveryStatus();
    void leavesItsSessionsToTheParent();
    void canBeDestroyedDuringACommand();

    void callsItsOwnOperationsThroughTheSlots();
};

void TestTarnis::metaObjectHasTheGivenOrder()
{
    const QMetaObject& meta = Tarnis::staticMetaObject;
    QList<QByteArray> own;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        own.append(QByteArray(meta.method(i).methodType() == QMetaMethod::Signal ? "signal " : "slot ")
            + meta.method(i).methodSignature());
    QCOMPARE(own,
        (QList<QByteArray> { "signal StatusChanged(Tarnis::SERVER_STATUS)",
            "signal onCmdReply(QString,QString,QByteArray)", "signal onBasePathChange(QString)",
            "slot onServerReadyStdOut()", "slot onServerError(QProcess::ProcessError)",
            "slot onStatusChanged(Tarnis::SERVER_STATUS)", "slot onReply(PTarnisCmd,QByteArray)",
            "slot onError(int,QString)", "slot onLocalSvrFinished(int,QProcess::ExitStatus)" }));
}

void TestTarnis::virtualsHaveTheGivenOrder()
{
    constexpr std::ptrdiff_t ofQObject = 12; // the last one is disconnectNotify
    const QList<std::ptrdiff_t> indices { virtualIndex(&Tarnis::NewTarnisSession),
        virtualIndex(&Tarnis::GetTarnisSession), virtualIndex(&Tarnis::Restart), virtualIndex(&Tarnis::Run),
        virtualIndex(&Tarnis::SendCmd), virtualIndex(&Tarnis::GetServerAddress),
        virtualIndex(&Tarnis::GetReadoutAddressText), virtualIndex(&Tarnis::GetSettingValue),
        virtualIndex(&Tarnis::SetSettingValue), virtualIndex(&Tarnis::CheckSettingKey), virtualIndex(&Tarnis::Shutdown),
        virtualIndex(&Tarnis::GetSettings), virtualIndex(&Tarnis::CopySettings), virtualIndex(&Tarnis::AddCommand),
        virtualIndex(&Tarnis::DownloadSettings), virtualIndex(&Tarnis::SetBasePath) };
    for (qsizetype i = 0; i < indices.size(); ++i)
        QCOMPARE(indices.at(i), ofQObject + i);
    QCOMPARE(virtualIndex(&Tarnis::SetStatus), std::ptrdiff_t(-1));
    QCOMPARE(virtualIndex(&Tarnis::GetStatValue), std::ptrdiff_t(-1));
}

void TestTarnis::membersHaveTheGivenOrder()
{
    const OpenTarnis manager(&prompt, nullptr);
    const std::vector<const void*> members { &manager.m_mutex, &manager.m_prompt, &manager.m_serverAddress,
        &manager.m_readoutAddress, &manager.m_processPath, &manager.m_remoteHost, &manager.m_remotePort,
        &manager.m_host, &manager.m_port, &manager.m_process, &manager.m_sessions, &manager.m_settings,
        &manager.m_stats, &manager.m_commands, &manager.m_bLocal, &manager.m_status };
    QVERIFY(std::ranges::is_sorted(members));
}

void TestTarnis::startsIdle()
{
    const LogFile log;
    const OpenTarnis manager(&prompt, nullptr);
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

void TestTarnis::registersTheSharedCommand()
{
    const OpenTarnis manager(&prompt, nullptr);
    QCOMPARE(QMetaType::fromName("PTarnisCmd"), QMetaType::fromType<QSharedPointer<TarnisCmd>>());
}

void TestTarnis::statusTable_data()
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

void TestTarnis::statusTable()
{
    QFETCH(int, value);
    QFETCH(bool, connected);
    QCOMPARE(Tarnis::GetStatusName(status(value)), QTest::currentDataTag());
    OpenTarnis manager(&prompt, nullptr);
    manager.SetStatus(status(value));
    QCOMPARE(manager.IsServerConnected(), connected);
}

void TestTarnis::setStatusSignalsChangesOnly()
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

void TestTarnis::setStatusHoldsTheLockWhileItSignals()
{
    OpenTarnis manager(&prompt, nullptr);
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

void TestTarnis::setStatusTracesAnError()
{
    OpenTarnis manager(&prompt, nullptr);
    QCOMPARE(tracesOf([&] { manager.SetStatus(Tarnis::RUNNING); }), QStringList());
    QCOMPARE(
        tracesOf([&] { manager.SetStatus(Tarnis::SERVER_ERROR); }), QStringList { "Tarnis::SetStatus SERVER_ERROR" });
    QCOMPARE(tracesOf([&] { manager.SetStatus(Tarnis::SERVER_ERROR); }), QStringList());
}

void TestTarnis::remoteHostIsKept()
{
    OpenTarnis manager(&prompt, nullptr);
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

void TestTarnis::remoteRunSendsStat()
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

void TestTarnis::remoteRunIgnoresAMissingPath()
{
    ScriptedServer server;
    Host host(&server);
    host.manager->SetLocal(true);
    QVERIFY(host.run());
    EXPECT_EVENT(host, "reply statCmd|stat|");
}

void TestTarnis::remoteRunStoresAGivenPath()
{
    ScriptedServer server;
    Host host(&server);
    const QString path("/opt/daq/server");
    QVERIFY(host.manager->Run(&path));
    EXPECT_EVENT(host, "reply statCmd|stat|");
    QCOMPARE(host.manager->m_processPath, path);
    QCOMPARE(host.manager->m_process, nullptr);
}

void TestTarnis::anyReplyEndsIdleOnce_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("success") << QByteArray("OK:\n");
    QTest::newRow("failure") << QByteArray("NG:no such command\n");
    QTest::newRow("nothing") << QByteArray();
}

void TestTarnis::anyReplyEndsIdleOnce()
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

void TestTarnis::replyIsSignalledWithoutTheLock()
{
    OpenTarnis manager(&prompt, nullptr);
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

void TestTarnis::silentServerLeavesIdleUntilTheTimeOut()
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

void TestTarnis::refusedConnectionIsAnError()
{
    Host host;
    host.manager->SetRemoteHost(ScriptedServer::host(), ScriptedServer::closedPort());
    const LogFile log;
    QVERIFY(host.run());
    EXPECT_EVENT(host, "status SERVER ERROR");
    QCOMPARE(host.record.events, (QStringList { "post Socket Error 0 Connection refused", "status SERVER ERROR" }));
    QVERIFY(log.messages().contains("BLCK Tarnis::onError(socketError[0], message[Connection refused])"));
}

void TestTarnis::sendBeforeTheHostIsKnownIsAnError()
{
    Host host;
    QVERIFY(host.manager->SendCmd("control", "early", "stat", false));
    EXPECT_EVENT(host, "status SERVER ERROR");
    QVERIFY(host.record.events.at(0).startsWith(QLatin1String("post Socket Error ")));
}

void TestTarnis::commandAfterAnErrorIsNotSent()
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

void TestTarnis::runsAgainAfterShutdown()
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

void TestTarnis::errorOfAnySessionCounts()
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

void TestTarnis::newSessionIsTheCallers()
{
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    QObject owner;
    const LogFile log;
    TarnisSession* const session = host.manager->NewTarnisSession(&owner);
    QCOMPARE(session->parent(), &owner);
    QCOMPARE(session->m_host, ScriptedServer::host());
    QCOMPARE(session->m_port, server.port());
    QCOMPARE(session->GetPrompt(), &prompt);
    QVERIFY(!session->isRunning());
    QVERIFY(!host.manager->m_sessions.values().contains(session));
    const QStringList messages = log.messages();
    QVERIFY(messages.at(1).endsWith(QLatin1String("id[NewTarnisSession]")));
    QCOMPARE(
        messages.last(), QStringLiteral("DBG     return %1").arg(quint32(reinterpret_cast<quintptr>(session)), 0, 16));
}

void TestTarnis::unknownSessionLeavesANullEntry()
{
    OpenTarnis manager(&prompt, nullptr);
    QCOMPARE(manager.GetTarnisSession("nobody"), nullptr);
    QCOMPARE(manager.m_sessions.keys(), QStringList { "nobody" });
}

void TestTarnis::namedSessionsAreMadeOnce()
{
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    host.manager->SendCmd("second", "1", "start", false);
    TarnisSession* const second = host.manager->GetTarnisSession("second");
    host.manager->SendCmd("second", "2", "start", false);
    QCOMPARE(host.manager->GetTarnisSession("second"), second);
    QCOMPARE(second->parent(), &host.parent);
    EXPECT_EVENT(host, "reply 2|start|");
    QCOMPARE(server.connectionCount(), 2);
}

void TestTarnis::commandsKeepNameAndProgress()
{
    ScriptedServer server;
    server.answer("hist", { Step::text("abcd").cutAt({ 2 }) });
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    TarnisSession* const session = host.manager->GetTarnisSession("control");
    QSignalSpy pieces(session, qOverload<const QByteArray&>(&TarnisSession::read));
    host.manager->SendCmd("control", "quiet", "hist", false);
    EXPECT_EVENT(host, "reply quiet|hist|abcd");
    QCOMPARE(pieces.size(), 0);
    host.manager->SendCmd("control", "loud", "hist", true);
    EXPECT_EVENT(host, "reply loud|hist|abcd");
    QVERIFY(pieces.size() >= 1);
}

void TestTarnis::sendCmdLogsItsSteps()
{
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    const LogFile log;
    host.manager->SendCmd("second", "name", "start", true);
    TarnisSession* const session = host.manager->GetTarnisSession("second");
    const QString address = QString::number(quint32(reinterpret_cast<quintptr>(session)), 16);
    const QString start = "BLCK Tarnis::SendCmd(idSession[second], cmdName[name], cmd[start], bProgress[true])";
    QStringList messages = log.messagesOfThreadWith(start);
    QVERIFY2(messages.size() == 12, qPrintable(messages.join('\n')));
    QCOMPARE(messages.at(0), start);
    QCOMPARE(messages.at(1), QStringLiteral("DBG     pSession[0]"));
    QCOMPARE(messages.at(2), QStringLiteral("DBG     creating new session"));
    QVERIFY(messages.at(3).startsWith(QLatin1String("DBG TarnisSession::TarnisSession(), this[")));
    QVERIFY(messages.at(4).startsWith(QLatin1String("BLCK TarnisSession::SetId(), this[")));
    QCOMPARE(messages.at(5), QStringLiteral("DBG     new session start [second]"));
    QCOMPARE(messages.at(6), QStringLiteral("DBG     creaate cmd"));
    QVERIFY(messages.at(7).startsWith(QLatin1String("DBG TarnisCmd::TarnisCmd(cmd[start]), 0x")));
    QVERIFY(messages.at(8).startsWith(QLatin1String("DBG         -> 0x")));
    QCOMPARE(messages.at(9), QStringLiteral("BLCK     sending cmd, session[second] cmdName[name] cmd[start]"));
    QVERIFY(messages.at(10).startsWith(QLatin1String("BLCK TarnisSession::send(), this[")));
    QCOMPARE(messages.at(11), QStringLiteral("DBG     return true"));

    EXPECT_EVENT(host, "reply name|start|");
    host.manager->SendCmd("second", "name", "stop", false);
    messages = log.messages();
    QVERIFY(messages.contains("BLCK Tarnis::SendCmd(idSession[second], cmdName[name], cmd[stop], bProgress[false])"));
    QVERIFY(messages.contains("DBG     pSession[" + address + "]"));
}

void TestTarnis::sendCmdComesFromAnyThread()
{
    constexpr int perThread = 20;
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 3; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < perThread; ++i) {
                    host.manager->SendCmd("shared", QStringLiteral("%1-%2").arg(t).arg(i), "start", false);
                    host.manager->SetSettingValue("inst", QString::number(i));
                }
            });
        }
    }
    QCOMPARE(host.manager->m_sessions.keys(), (QStringList { "control", "shared" }));
    for (int t = 0; t < 3; ++t)
        EXPECT_EVENT(host, QStringLiteral("reply %1-%2|start|").arg(t).arg(perThread - 1));
    QCOMPARE(server.connectionCount(), 2);
    QCOMPARE(host.manager->GetTarnisSession("shared")->thread(), host.manager->thread());
    QTRY_COMPARE(host.manager->GetTarnisSession("shared")->parent(), &host.parent);
}

void TestTarnis::shutdownTable_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("after");
    QTest::newRow("IDLE") << 0 << true << 0;
    QTest::newRow("SERVER_CONNECTED") << 1 << true << 0;
    QTest::newRow("SERVER_ERROR") << 2 << true << 0;
    QTest::newRow("READOUT_CONNECTED") << 3 << true << 0;
    QTest::newRow("READOUT_ERROR") << 4 << true << 0;
    QTest::newRow("HARDWARE_BUSY") << 5 << false << 5;
    QTest::newRow("STARTING") << 6 << false << 6;
    QTest::newRow("RUNNING") << 7 << true << 0;
    QTest::newRow("LOADING") << 8 << true << 0;
    QTest::newRow("SHUTTING_DOWN") << 9 << true << 9;
    QTest::newRow("10") << 10 << false << 10;
    QTest::newRow("1000") << 1000 << false << 1000;
}

void TestTarnis::shutdownTable()
{
    QFETCH(int, before);
    QFETCH(bool, result);
    QFETCH(int, after);
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    host.manager->SetStatus(status(before));
    host.record.events.clear();
    QCOMPARE(host.manager->Shutdown(), result);
    QCOMPARE(int(host.manager->m_status), after);
    const bool closed = before != after;
    QCOMPARE(host.manager->m_sessions.isEmpty(), closed);
    QCOMPARE(host.record.events, closed ? (QStringList { "status SHUTTING DOWN", "status IDLE" }) : QStringList());
}

void TestTarnis::shutdownClosesTheSessions()
{
    ScriptedServer server;
    server.answer("hist", { Step::hold("gate") });
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    host.manager->SendCmd("second", "in flight", "hist", false);
    host.manager->SendCmd("second", "queued", "start", false);
    QVERIFY(server.waitForHold("gate"));
    const QPointer<TarnisSession> first = host.manager->GetTarnisSession("control");
    const QPointer<TarnisSession> second = host.manager->GetTarnisSession("second");
    host.record.events.clear();
    QVERIFY(host.manager->Shutdown());
    QVERIFY(first.isNull());
    QVERIFY(second.isNull());
    QVERIFY(host.manager->m_sessions.isEmpty());
    QVERIFY(server.waitUntilDeserted());
    QCOMPARE(server.farewells(), 2);
    QCOMPARE(host.record.events, (QStringList { "status SHUTTING DOWN", "status IDLE" }));
    QVERIFY(!server.requests().contains("start"));
}

void TestTarnis::shutdownStepsOverNullEntries()
{
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    host.manager->GetTarnisSession("a nobody");
    host.manager->GetTarnisSession("z nobody");
    QVERIFY(host.manager->Shutdown());
    QVERIFY(host.manager->m_sessions.isEmpty());
}

void TestTarnis::shutdownInIdleLeavesTheSessions()
{
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    host.manager->SetStatus(Tarnis::IDLE);
    TarnisSession* const session = host.manager->GetTarnisSession("control");
    QVERIFY(host.manager->Shutdown());
    QCOMPARE(host.manager->m_sessions.value("control"), session);
    QVERIFY(session->isRunning());
}

void TestTarnis::shutdownLogsItsSteps()
{
    Host host;
    {
        const LogFile log;
        QCOMPARE(
            tracesOf([&] { host.manager->Shutdown(); }), QStringList { "Tarnis::Shutdown() called in status IDLE" });
        QCOMPARE(log.messages(), (QStringList { "BLCK Shutdown", "DBG status: 0", "DBG IDLE" }));
    }
    host.manager->SetStatus(Tarnis::SHUTTING_DOWN);
    {
        const LogFile log;
        QCOMPARE(tracesOf([&] { host.manager->Shutdown(); }),
            QStringList { "Tarnis::Shutdown() called in status SHUTTING DOWN" });
        QCOMPARE(log.messages(), (QStringList { "BLCK Shutdown", "DBG status: 9", "DBG SHUTTING_DOWN" }));
    }
    host.manager->SetStatus(Tarnis::HARDWARE_BUSY);
    {
        const LogFile log;
        QCOMPARE(tracesOf([&] { host.manager->Shutdown(); }), QStringList());
        QCOMPARE(log.messages(), (QStringList { "BLCK Shutdown", "DBG status: 5" }));
    }
    host.manager->m_sessions["b"] = host.manager->NewTarnisSession(nullptr);
    host.manager->m_sessions["a"] = host.manager->NewTarnisSession(nullptr);
    host.manager->SetStatus(Tarnis::RUNNING);
    const LogFile log;
    host.manager->Shutdown();
    QStringList own;
    const QList<LogEntry> entries = log.entries();
    for (const LogEntry& entry : entries) {
        if (entry.file == QLatin1String("tarnis.cpp") && entry.word != QLatin1String("<"))
            own.append(entry.word + ' ' + entry.message);
    }
    QCOMPARE(own,
        (QStringList { "BLCK Shutdown", "DBG status: 7", "BLCK shutting down", "BLCK Tarnis::SetStatus(status[9])",
            "DBG closing [a]", "DBG closing [b]", "BLCK Tarnis::SetStatus(status[0])" }));
}

void TestTarnis::sessionIsRecreatedAfterShutdown()
{
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    QVERIFY(host.manager->Shutdown());
    QVERIFY(host.manager->SendCmd("control", "again", "start", false));
    EXPECT_EVENT(host, "reply again|start|");
    QCOMPARE(server.connectionCount(), 2);
}

// A new session may get the address of a closed one, and then seems to be the closed one's sender.
void TestTarnis::callsOfAClosedSessionComeToNothing_data()
{
    QTest::addColumn<bool>("goesOn");
    QTest::newRow("shut down") << false;
    QTest::newRow("shut down, new sessions at once") << true;
}

void TestTarnis::callsOfAClosedSessionComeToNothing()
{
    QFETCH(bool, goesOn);
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    server.setScript(1, { Step::hold("observed"), Step::drop() }); // no failure before its observer is connected
    std::latch queued(2);
    host.manager->SendCmd("second", "fails", "start", false);
    connect(
        host.manager->GetTarnisSession("second"), &TarnisSession::error, this, [&] { queued.count_down(); },
        Qt::DirectConnection);
    connect(
        host.manager->GetTarnisSession("control"), &TarnisSession::result, this, [&] { queued.count_down(); },
        Qt::DirectConnection);
    host.manager->SendCmd("control", "late", "start", false);
    server.release("observed");
    queued.wait(); // the workers have emitted, and this thread has not yet run its events
    host.record.events.clear();
    QVERIFY(host.manager->Shutdown());
    if (goesOn) {
        host.manager->SendCmd("control", "new", "stat", false);
        host.manager->SendCmd("second", "new", "stat", false);
    }
    const QStringList afterShutdown { "status SHUTTING DOWN", "status IDLE" };
    QCoreApplication::sendPostedEvents(host.manager);
    QCOMPARE(host.record.events.mid(0, 2), afterShutdown);
    for (const QString& event : host.record.events) {
        QVERIFY2(!event.contains(QLatin1String("late")), qPrintable(event));
        QVERIFY2(!event.contains(QLatin1String("ERROR")), qPrintable(event));
    }
    if (goesOn)
        QTRY_VERIFY(host.manager->IsServerConnected());
    else
        QCOMPARE(host.record.events, afterShutdown);
}

void TestTarnis::queuedCallWithoutASenderCounts()
{
    OpenTarnis manager(&prompt, nullptr);
    QVERIFY(QMetaObject::invokeMethod(
        &manager, "onError", Qt::QueuedConnection, Q_ARG(int, 1), Q_ARG(QString, QStringLiteral("x"))));
    QCoreApplication::processEvents();
    QCOMPARE(manager.m_status, Tarnis::SERVER_ERROR);
}

void TestTarnis::canBeDestroyedInEveryStatus_data()
{
    QTest::addColumn<int>("value");
    for (int value = 0; value <= 10; ++value)
        QTest::addRow("%s", Tarnis::GetStatusName(status(value))) << value;
}

void TestTarnis::canBeDestroyedInEveryStatus()
{
    QFETCH(int, value);
    ScriptedServer server;
    Host host(&server);
    QVERIFY(host.runUntilConnected());
    host.manager->SetStatus(status(value));
    const LogFile log;
    delete host.manager;
    QVERIFY(log.messages().contains("BLCK ~Tarnis"));
}

void TestTarnis::leavesItsSessionsToTheParent()
{
    ScriptedServer server;
    auto host = std::make_unique<Host>(&server);
    QVERIFY(host->runUntilConnected());
    const QPointer<TarnisSession> session = host->manager->GetTarnisSession("control");
    delete host->manager;
    QVERIFY(session);
    QVERIFY(session->isRunning());
    host.reset();
    QVERIFY(session.isNull());
    QVERIFY(server.waitUntilDeserted());
    QCOMPARE(server.farewells(), 1);
}

void TestTarnis::canBeDestroyedDuringACommand()
{
    ScriptedServer server;
    server.answer("hist", { Step::hold("gate"), Step::text("late") });
    auto host = std::make_unique<Host>(&server);
    QVERIFY(host->runUntilConnected());
    host->manager->SendCmd("control", "name", "hist", false);
    QVERIFY(server.waitForHold("gate"));
    delete host->manager;
    server.open("gate");
    QCoreApplication::processEvents();
    host.reset();
    QVERIFY(server.waitUntilDeserted());
}

namespace {

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

void TestTarnis::callsItsOwnOperationsThroughTheSlots()
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
        (QStringList { "GetSettingValue(inst,)", "SetSettingValue(basepath,/data)", "CheckSettingKey(basepath,/data)",
            "SendCmd(control,settingBasePathCmd,setting inst: basepath:/data,0)" }));
    manager.GetSettings() = { { "a", "1" } };
    QCOMPARE(manager.callsOf([&] { manager.Tarnis::DownloadSettings("control", true); }),
        (QStringList {
            "SendCmd(control,updateSettingCmd0,setting a:1 ,0)", "SendCmd(control,savesettingCmd,savesetting,0)" }));
}

QTEST_GUILESS_MAIN(TestTarnis)
#include "tst_tarnis.moc"
