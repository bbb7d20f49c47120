// The status of the server without user commands: runs that end, lost servers, busy servers that are not polled.
#include "console/consolefixture.h"
#include "histograms/livewindows.h"
#include "support/wait.h"

#include <QPushButton>

using namespace console;
using namespace tarnis::testing;

namespace {

Script statReply(const QByteArray& state)
{
    return { Step::text("OK:\nstate: " + state + "\n") };
}

/// A console that polls its server's state permanently.
class WatchingConsole : public ConsoleFixture {
public:
    using ConsoleFixture::ConsoleFixture;
    void watch() { window->statusPoller().setInterval(20); }
    bool has(Tarnis::SERVER_STATUS status)
    {
        return eventually([&] { return window->controller().status() == status; });
    }
    bool asks(const ScriptedServer& server, int times)
    {
        return eventually([&] { return server.requests().count("stat") >= times; });
    }
};

} // namespace

class TestConsoleState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void aRunThatEndsByItselfIsSeen()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { statReply("STOPPED"), statReply("RUNNING"), statReply("STOPPED") });
        WatchingConsole fixture(server);
        fixture.send(QStringLiteral("start"));
        QVERIFY(fixture.has(Tarnis::RUNNING));
        QVERIFY(fixture.isFree());
        fixture.widget<QLineEdit>("pathEdit").setText(QStringLiteral("/data"));
        QVERIFY(!fixture.widget<QPushButton>("pathButton").isEnabled());
        const QString record = fixture.record();
        fixture.watch();
        QVERIFY(fixture.has(Tarnis::SERVER_CONNECTED));
        QVERIFY(fixture.widget<QPushButton>("pathButton").isEnabled());
        QCOMPARE(fixture.record(), record);
    }

    void aRunThatAnotherClientStartsIsShown()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { statReply("STOPPED"), statReply("RUNNING") });
        WatchingConsole fixture(server);
        fixture.watch();
        QVERIFY(fixture.has(Tarnis::RUNNING));
    }

    void detectsTheLossOfARemoteServerWithoutACommand()
    {
        auto server = std::make_unique<ScriptedServer>();
        WatchingConsole fixture(*server);
        fixture.watch();
        QVERIFY(fixture.asks(*server, 2));
        server.reset();
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY(!fixture.alert().text.isEmpty());
    }

    void aBrokenConnectionAloneIsNoNews()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { statReply("STOPPED"), { Step::drop() }, statReply("RUNNING") });
        WatchingConsole fixture(server);
        const QString record = fixture.record();
        fixture.watch();
        QVERIFY(fixture.has(Tarnis::RUNNING));
        QVERIFY(fixture.alert().text.isEmpty());
        QCOMPARE(fixture.record(), record);
    }

    void aCommandUnderWayIsNotDisturbed()
    {
        ScriptedServer server;
        server.answer("long", { Step::hold("gate"), Step::text("done\n") });
        server.answer("stat", statReply("STOPPED"));
        WatchingConsole fixture(server);
        fixture.send(QStringLiteral("long"));
        QVERIFY(server.waitForHold("gate"));
        const auto before = server.requests().count("stat");
        QVERIFY(!fixture.window->statusPoller().ask());
        server.open("gate");
        QVERIFY(fixture.isFree());
        QVERIFY(fixture.window->statusPoller().ask());
        QVERIFY(!fixture.window->statusPoller().ask()); // one at a time
        QVERIFY(fixture.asks(server, int(before) + 1));
    }

    void aBusyServerIsLeftAlone()
    {
        ScriptedServer server;
        server.answer("stat", statReply("RUNNING"));
        WatchingConsole fixture(server);
        QVERIFY(fixture.has(Tarnis::RUNNING));
        Tarnis& tarnis = fixture.window->controller().tarnis();
        for (const auto busy : { Tarnis::HARDWARE_BUSY, Tarnis::STARTING, Tarnis::LOADING }) {
            tarnis.SetStatus(busy);
            QVERIFY(!fixture.window->statusPoller().ask());
            fixture.window->controller().readState("OK:\nstate: RUNNING\n", 0); // requested before it was busy
            QCOMPARE(fixture.window->controller().status(), busy);
        }
        tarnis.SetStatus(Tarnis::SERVER_CONNECTED);
    }

    void ignoresAStateRequestedBeforeACommand()
    {
        ScriptedServer server;
        server.answer("stat", statReply("STOPPED"));
        WatchingConsole fixture(server);
        fixture.send(QStringLiteral("start"));
        QVERIFY(fixture.has(Tarnis::RUNNING));
        ServerController& controller = fixture.window->controller();
        constexpr qint64 longAgo = 1'000'000'000LL * timeoutMs;
        controller.readState("OK:\nstate: STOPPED\n", longAgo);
        QCOMPARE(controller.status(), Tarnis::RUNNING);
        const auto isBelieved = [&] {
            controller.readState("OK:\nstate: STOPPED\n", 0);
            return controller.status() == Tarnis::SERVER_CONNECTED;
        };
        TRY_VERIFY(isBelieved());
    }

    void usesTheRepliesOfTheStatisticsWindow()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { statReply("STOPPED"), statReply("RUNNING") });
        WatchingConsole fixture(server);
        auto* const statistics = fixture.open<LiveStatistics>("statistics");
        QVERIFY(statistics);
        QVERIFY(fixture.has(Tarnis::RUNNING));
        fixture.window->statusPoller().setInterval(timeoutMs);
        QVERIFY(!fixture.window->statusPoller().ask());
    }

    void doesNotPollAStoppedServer()
    {
        ScriptedServer server;
        WatchingConsole fixture(server);
        fixture.watch();
        QVERIFY(fixture.asks(server, 2));
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(!fixture.window->statusPoller().ask());
    }
};

QTEST_MAIN(TestConsoleState)
#include "tst_consolestate.moc"
