// Connecting to the server and losing it: the probe, the command channel and the server controller, with a scripted
// server and with well-behaved and misbehaving local programs.
#include "console/controllerfixture.h"
#include "server/commandchannel.h"
#include "server/servercontroller.h"
#include "server/serverprobe.h"
#include "support/cases.h"

#include "support/fakeserver.h"
#include "support/scriptedserver.h"
#include "support/wait.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace console;
using namespace tarnis::testing;

namespace {

ServerChoice local(const FakeServer& program)
{
    return { ServerChoice::Kind::Local, program.path(), {}, 0 };
}

} // namespace

class TestConsoleServer : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void connectsToARemoteServerAndLeavesIt()
    {
        ScriptedServer server;
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        QCOMPARE(control.controller.status(), Tarnis::SERVER_CONNECTED);
        QVERIFY(!control.controller.hasProcess());
        control.controller.stop();
        QVERIFY(control.reaches(ServerState::Off));
        QVERIFY(server.waitUntilDeserted());
    }

    void detectsACurrentRunAtOnce()
    {
        ScriptedServer server;
        server.answer("stat", { Step::text("OK:\nstate: RUNNING\n") });
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        TRY_COMPARE(control.controller.status(), Tarnis::RUNNING);
        control.controller.readReply(QStringLiteral("stop"), "OK:\n");
        QCOMPARE(control.controller.status(), Tarnis::SERVER_CONNECTED);
    }

    void reportsWhyThereIsNoRemoteServer_data()
    {
        addColumns<QString, QString>("host", "text");
        addCase("nobody listens", "127.0.0.1", "refused");
        addCase("no such host", "no-such-host.invalid", "not found");
    }
    void reportsWhyThereIsNoRemoteServer()
    {
        QFETCH(QString, host);
        QFETCH(QString, text);
        ControllerFixture control;
        control.start(remote(ScriptedServer::closedPort(), host));
        QVERIFY(control.reaches(ServerState::Failed));
        // A server that was never reached may have another address.
        QVERIFY2(control.reports(text, AlertAction::ChooseServer), qPrintable(control.lastText()));
        QVERIFY(control.lastText().contains(host));
        control.controller.stop();
        QVERIFY(control.reaches(ServerState::Off));
    }

    void reportsAWrongPrompt()
    {
        ScriptedServer server({ Step::raw("login: "), Step::silence() });
        ControllerFixture control;
        control.controller.m_probeTimeoutMs = 200;
        control.start(remote(server.port()));
        QVERIFY2(control.reports("prompt", AlertAction::ChooseServer), qPrintable(control.lastText()));
    }

    void reportsAWrongLocalPrompt()
    {
        ScriptedServer server({ Step::raw("login: "), Step::silence() });
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ControllerFixture control;
        control.controller.m_probeTimeoutMs = 200;
        control.start(local(program));
        QVERIFY2(
            control.reports("does not send the prompt", AlertAction::ChooseServer), qPrintable(control.lastText()));
        QVERIFY(!control.lastText().contains(QStringLiteral("port")));
    }

    void aKnownServerThatIsNotThereKeepsItsAddress()
    {
        const ServerChoice choice = remote(ScriptedServer::closedPort());
        ControllerFixture control;
        control.controller.setKnown(choice);
        control.start(choice);
        QVERIFY2(control.reports("connect again", AlertAction::ConnectAgain), qPrintable(control.lastText()));
    }

    void aServerThatGreetsNoMoreHasTheRightPrompt()
    {
        ScriptedServer server;
        ControllerFixture control;
        control.controller.m_probeTimeoutMs = 200;
        QVERIFY(control.startsUp(remote(server.port())));
        server.setScript(server.connectionCount(), { Step::silence() });
        control.controller.checkServer();
        QVERIFY2(
            control.reports("no longer sends its greeting", AlertAction::ConnectAgain), qPrintable(control.lastText()));
    }

    void aServerWithoutRoomStatesItsReason()
    {
        ScriptedServer server({ Step::raw("NG:too many clients\n"), Step::drop() });
        ControllerFixture control;
        control.start(remote(server.port()));
        QVERIFY2(control.reports("refuses the connection: too many clients.", AlertAction::ConnectAgain),
            qPrintable(control.lastText()));
    }

    void aCheckThatIsRefusedKeepsTheConnection()
    {
        ScriptedServer server;
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        QSignalSpy answered(&control.controller, &ServerController::answered);
        server.setScript(server.connectionCount(), { Step::raw("NG:too many clients\n"), Step::drop() });
        control.controller.checkServer();
        TRY_COMPARE(answered.size(), 1);
        QCOMPARE(answered.first().first().toString(), QStringLiteral("too many clients"));
        QCOMPARE(control.controller.state(), ServerState::Up);
        QVERIFY(control.lastText().isEmpty());
        control.controller.checkServer();
        TRY_COMPARE(answered.size(), 2);
        QVERIFY(answered.last().first().toString().isEmpty());
    }

    void aServerThatComesBackWithoutRoomIsTriedAgain()
    {
        ScriptedServer server;
        ControllerFixture control;
        control.controller.m_probeTimeoutMs = 200;
        control.controller.m_againMs = 1;
        QVERIFY(control.startsUp(remote(server.port())));
        const int first = server.connectionCount();
        server.setScript(first, { Step::silence() });
        server.setScript(first + 1, { Step::raw("NG:too many clients\n"), Step::drop() });
        control.controller.checkServer();
        QVERIFY(control.reaches(ServerState::Failed));
        QVERIFY(control.reaches(ServerState::Up));
        QVERIFY(std::any_of(control.alerts.cbegin(), control.alerts.cend(), [](const Alert& alert) {
            return alert.text.contains(QStringLiteral("too many clients"))
                && alert.text.contains(QStringLiteral("connects automatically"));
        }));
    }

    void reportsABrokenControlSessionWithTheSocketError()
    {
        ScriptedServer server;
        server.answer("a", { Step::drop() });
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        control.send();
        QVERIFY2(control.reports("broke: The remote host closed the connection.", AlertAction::ConnectAgain),
            qPrintable(control.lastText()));
        QCOMPARE(control.controller.tarnis().lastError(), QStringLiteral("The remote host closed the connection"));
    }

    void oneAttemptIsGivenUpForAnother()
    {
        ScriptedServer silent({ Step::silence() });
        ScriptedServer server;
        ControllerFixture control;
        control.start(remote(silent.port()));
        QVERIFY(silent.waitForConnections(1));
        QCOMPARE(control.controller.state(), ServerState::Starting);
        QVERIFY(control.startsUp(remote(server.port())));
        QVERIFY(silent.waitUntilDeserted());
        QCOMPARE(control.controller.choice().port, server.port());
    }

    void detectsTheLossOfARemoteServerAndReconnects()
    {
        auto server = std::make_unique<ScriptedServer>();
        const quint16 port = server->port();
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(port)));
        server.reset();
        control.controller.checkServer();
        QVERIFY(control.reaches(ServerState::Failed));
        QVERIFY2(control.reports("again", AlertAction::ConnectAgain), qPrintable(control.lastText()));
        QCOMPARE(control.controller.status(), Tarnis::SERVER_ERROR);

        ScriptedServer next;
        QVERIFY(control.startsUp(remote(next.port())));
        QVERIFY(control.lastText().isEmpty());
    }

    void aCheckOfALivingServerChangesNothing()
    {
        ScriptedServer server;
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        const int farewells = server.farewells();
        control.controller.checkServer();
        QVERIFY(server.waitForFarewells(farewells + 1));
        QCOMPARE(control.controller.state(), ServerState::Up);
    }

    void startsAndEndsALocalServer()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ControllerFixture control;
        QVERIFY(control.startsUp(local(program)));
        const qint64 processId = control.processId();
        QVERIFY(control.controller.hasProcess());
        QCOMPARE(control.controller.tarnis().GetServerAddress(), QStringLiteral("localhost:%1").arg(server.port()));
        control.controller.stop();
        QCOMPARE(control.controller.state(), ServerState::Stopping);
        QVERIFY(control.reaches(ServerState::Off));
        TRY_VERIFY(!isRunning(processId));
    }

    void restartsALocalServer()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ControllerFixture control;
        QVERIFY(control.startsUp(local(program)));
        const qint64 processId = control.processId();
        control.controller.restart();
        QVERIFY(control.reaches(ServerState::Stopping));
        QVERIFY(control.reaches(ServerState::Up));
        QVERIFY(control.processId() != processId);
        TRY_VERIFY(!isRunning(processId));
    }

    void reportsWhyThereIsNoLocalServer_data()
    {
        addColumns<QString, QString>("step", "text");
        addCase("ends at once", "exit 3", "exit code 3");
        addCase("crashes before it is ready", "crash", "crashed");
    }
    void reportsWhyThereIsNoLocalServer()
    {
        QFETCH(QString, step);
        QFETCH(QString, text);
        const FakeServer program({ step });
        ControllerFixture control;
        control.start(local(program));
        QVERIFY(control.reaches(ServerState::Failed));
        QVERIFY2(control.reports(text, AlertAction::StartAgain), qPrintable(control.lastText()));
    }

    void reportsTheNameOfAMissingProgram()
    {
        ControllerFixture control;
        control.start({ ServerChoice::Kind::Local, QStringLiteral("/no/such/server"), {}, 0 });
        QCOMPARE(control.controller.state(), ServerState::Failed);
        QVERIFY(control.reports("/no/such/server", AlertAction::ChooseServer));
    }

    void reportsTheNameOfAProgramThatCannotRun()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("server"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/no/such/interpreter\n") > 0);
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        file.close();
        ControllerFixture control;
        control.start({ ServerChoice::Kind::Local, path, {}, 0 });
        QCOMPARE(control.controller.state(), ServerState::Failed);
        QVERIFY2(control.reports(path, AlertAction::ChooseServer), qPrintable(control.lastText()));
    }

    void aServerWithoutAPortCanBeStopped_data()
    {
        QTest::addColumn<QString>("output");
        QTest::newRow("silent") << "print ";
        QTest::newRow("port 0") << "print UI port: 0\\n";
        QTest::newRow("port too large") << "print UI port: 70000\\n";
    }
    void aServerWithoutAPortCanBeStopped()
    {
        QFETCH(QString, output);
        const FakeServer program({ output, QStringLiteral("await-end") });
        ControllerFixture control;
        control.controller.m_portTimeoutMs = 100;
        control.start(local(program));
        QVERIFY2(control.reports("port", AlertAction::Stop), qPrintable(control.lastText()));
        QCOMPARE(control.controller.state(), ServerState::Starting);
        const qint64 processId = control.processId();
        control.controller.stop();
        QVERIFY(control.reaches(ServerState::Off));
        TRY_VERIFY(!isRunning(processId));
    }

    void aServerThatDoesNotEndIsEndedByForce()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::deaf(server.port()));
        ControllerFixture control;
        QVERIFY(control.startsUp(local(program)));
        const qint64 processId = control.processId();
        control.controller.stop();
        QVERIFY2(control.reports("has not ended yet", AlertAction::EndByForce), qPrintable(control.lastText()));
        QVERIFY(isRunning(processId));
        control.controller.endByForce();
        QVERIFY(control.reaches(ServerState::Off));
        TRY_VERIFY(!isRunning(processId));
        QVERIFY(control.lastText().isEmpty());
    }

    void detectsTheEndOfALocalServerAndRestartsIt()
    {
        ScriptedServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ControllerFixture control;
        QVERIFY(control.startsUp(local(program)));
        control.send();
        QVERIFY(server.waitForRequest("a"));
        control.controller.endByForce();
        QVERIFY(control.reaches(ServerState::Failed));
        QVERIFY2(control.reports("crashed", AlertAction::StartAgain), qPrintable(control.lastText()));
        control.controller.restart();
        QVERIFY(control.reaches(ServerState::Up));
        QSignalSpy replied(&control.controller.tarnis(), &Tarnis::onCmdReply);
        control.send();
        TRY_COMPARE(replied.size(), 1);
    }

    void aBusyServerIsNotShutDown()
    {
        ScriptedServer server;
        ControllerFixture control;
        QVERIFY(control.startsUp(remote(server.port())));
        control.controller.tarnis().SetStatus(Tarnis::HARDWARE_BUSY);
        control.controller.stop();
        QCOMPARE(control.controller.state(), ServerState::Up);
        QVERIFY(control.reports("Hardware busy", AlertAction::None));
        control.controller.tarnis().SetStatus(Tarnis::SERVER_CONNECTED);
        control.controller.stop();
        QVERIFY(control.reaches(ServerState::Off));
    }

    void canBeDestroyedInEveryState_data()
    {
        QTest::addColumn<QString>("script"); // empty: remote
        QTest::addColumn<ServerState>("state");
        QTest::newRow("remote, starting") << "" << ServerState::Starting;
        QTest::newRow("remote, up") << "" << ServerState::Up;
        QTest::newRow("local, starting") << "await-end" << ServerState::Starting;
        QTest::newRow("local, up") << "print UI port: %1\\n;await-end" << ServerState::Up;
        QTest::newRow("local, up, deaf") << "print UI port: %1\\n;linger" << ServerState::Up;
        QTest::newRow("local, stopping") << "print UI port: %1\\n;linger" << ServerState::Stopping;
        QTest::newRow("local, failed") << "exit 1" << ServerState::Failed;
    }
    void canBeDestroyedInEveryState()
    {
        QFETCH(QString, script);
        QFETCH(ServerState, state);
        ScriptedServer server;
        const FakeServer program(script.replace("%1", QString::number(server.port())).split(u';'));
        qint64 processId = 0;
        {
            ControllerFixture control;
            control.start(script.isEmpty() ? remote(server.port()) : local(program));
            if (state == ServerState::Stopping) {
                QVERIFY(control.reaches(ServerState::Up));
                processId = control.processId();
                control.controller.stop();
            }
            QVERIFY(control.reaches(state));
            if (QProcess* process = control.controller.tarnis().process())
                processId = process->processId();
        }
        if (processId > 0)
            TRY_VERIFY(!isRunning(processId));
    }

    void findsPrograms()
    {
        QVERIFY(resolveProgram(QStringLiteral("/no/such/server")).isEmpty());
        QVERIFY(resolveProgram(QStringLiteral("/tmp")).isEmpty());
        QVERIFY(QFileInfo(resolveProgram(QStringLiteral("sh"))).isAbsolute());
        const FakeServer program({ QStringLiteral("exit 0") });
        QCOMPARE(resolveProgram(program.path()), program.path());
        const QString relative = QDir::current().relativeFilePath(program.path());
        QVERIFY(QFileInfo(resolveProgram(relative)).isAbsolute());
    }
};

QTEST_MAIN(TestConsoleServer)
#include "tst_consoleserver.moc"
