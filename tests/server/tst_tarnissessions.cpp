// The manager and its sessions: commands, shutdown, and its own end.
#include "server/remotemanager.h"
#include "support/cases.h"
#include "support/logfile.h"
#include "support/scriptedserver.h"
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

class TestTarnisSessions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newSessionIsTheCallers()
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
        QCOMPARE(messages.last(),
            QStringLiteral("DBG     return %1").arg(quint32(reinterpret_cast<quintptr>(session)), 0, 16));
    }

    void unknownSessionLeavesANullEntry()
    {
        TarnisProbe manager(&prompt, nullptr);
        QCOMPARE(manager.GetTarnisSession("nobody"), nullptr);
        QCOMPARE(manager.m_sessions.keys(), QStringList { "nobody" });
    }

    void namedSessionsAreMadeOnce()
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

    void commandsKeepNameAndProgress()
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

    void sendCmdLogsItsSteps()
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
        QVERIFY(
            messages.contains("BLCK Tarnis::SendCmd(idSession[second], cmdName[name], cmd[stop], bProgress[false])"));
        QVERIFY(messages.contains("DBG     pSession[" + address + "]"));
    }

    void sendCmdComesFromAnyThread()
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
        TRY_COMPARE(host.manager->GetTarnisSession("shared")->parent(), &host.parent);
    }

    void shutdownTable_data()
    {
        addColumns<int, bool, int>("before", "result", "after");
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
    void shutdownTable()
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

    void shutdownClosesTheSessions()
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

    void shutdownStepsOverNullEntries()
    {
        ScriptedServer server;
        Host host(&server);
        QVERIFY(host.runUntilConnected());
        host.manager->GetTarnisSession("a nobody");
        host.manager->GetTarnisSession("z nobody");
        QVERIFY(host.manager->Shutdown());
        QVERIFY(host.manager->m_sessions.isEmpty());
    }

    void shutdownInIdleLeavesTheSessions()
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

    void shutdownLogsItsSteps()
    {
        Host host;
        {
            const LogFile log;
            QCOMPARE(tracesOf([&] { host.manager->Shutdown(); }),
                QStringList { "Tarnis::Shutdown() called in status IDLE" });
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

    void sessionIsRecreatedAfterShutdown()
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
    void callsOfAClosedSessionComeToNothing_data()
    {
        QTest::addColumn<bool>("goesOn");
        QTest::newRow("shut down") << false;
        QTest::newRow("shut down, new sessions at once") << true;
    }
    void callsOfAClosedSessionComeToNothing()
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
        // The workers have emitted, and this thread has not yet run its events.
        QVERIFY(eventuallyWithoutEvents([&] { return queued.try_wait(); }));
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
            TRY_VERIFY(host.manager->IsServerConnected());
        else
            QCOMPARE(host.record.events, afterShutdown);
    }

    void queuedCallWithoutASenderCounts()
    {
        TarnisProbe manager(&prompt, nullptr);
        QVERIFY(QMetaObject::invokeMethod(
            &manager, "onError", Qt::QueuedConnection, Q_ARG(int, 1), Q_ARG(QString, QStringLiteral("x"))));
        QCoreApplication::processEvents();
        QCOMPARE(manager.m_status, Tarnis::SERVER_ERROR);
    }

    void canBeDestroyedInEveryStatus_data()
    {
        QTest::addColumn<int>("value");
        for (int value = 0; value <= 10; ++value)
            QTest::addRow("%s", Tarnis::GetStatusName(status(value))) << value;
    }
    void canBeDestroyedInEveryStatus()
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

    void leavesItsSessionsToTheParent()
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

    void canBeDestroyedDuringACommand()
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
};

QTEST_GUILESS_MAIN(TestTarnisSessions)
#include "tst_tarnissessions.moc"
