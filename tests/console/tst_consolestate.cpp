// The status of the server without user commands: runs that end, lost servers, busy servers that are not polled.
#include "console/consolefixture.h"
#include "histograms/livewindows.h"
#include "support/wait.h"

#include <QPushButton>

using namespace console;
using namespace tarnis::testing;

namespace {

Script told(const QByteArray& state)
{
    return { Step::text("OK:\nstate: " + state + "\n") };
}

/// A console that polls its server's state permanently.
class WatchingConsole : public ConsoleFixture {
public:
    using ConsoleFixture::ConsoleFixture;
    void watch() { window->stateWatch().setInterval(20); }
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
        server.answerInTurn("stat", { told("STOPPED"), told("RUNNING"), told("STOPPED") });
        WatchingConsole desk(server);
        desk.send(QStringLiteral("start"));
        QVERIFY(desk.has(Tarnis::RUNNING));
        QVERIFY(desk.isFree());
        desk.widget<QLineEdit>("pathEdit").setText(QStringLiteral("/data"));
        QVERIFY(!desk.widget<QPushButton>("pathButton").isEnabled());
        const QString record = desk.record();
        desk.watch();
        QVERIFY(desk.has(Tarnis::SERVER_CONNECTED));
        QVERIFY(desk.widget<QPushButton>("pathButton").isEnabled());
        QCOMPARE(desk.record(), record);
    }

    void aRunThatSomebodyElseStartsIsSeen()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { told("STOPPED"), told("RUNNING") });
        WatchingConsole desk(server);
        desk.watch();
        QVERIFY(desk.has(Tarnis::RUNNING));
    }

    void detectsTheLossOfARemoteServerWithoutACommand()
    {
        auto server = std::make_unique<ScriptedServer>();
        WatchingConsole desk(*server);
        desk.watch();
        QVERIFY(desk.asks(*server, 2));
        server.reset();
        QVERIFY(desk.reaches(ServerState::Failed));
        QVERIFY(!desk.alert().text.isEmpty());
    }

    void aBrokenConnectionAloneIsNoNews()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { told("STOPPED"), { Step::drop() }, told("RUNNING") });
        WatchingConsole desk(server);
        const QString record = desk.record();
        desk.watch();
        QVERIFY(desk.has(Tarnis::RUNNING));
        QVERIFY(desk.alert().text.isEmpty());
        QCOMPARE(desk.record(), record);
    }

    void aCommandUnderWayIsNotDisturbed()
    {
        ScriptedServer server;
        server.answer("long", { Step::hold("gate"), Step::text("done\n") });
        server.answer("stat", told("STOPPED"));
        WatchingConsole desk(server);
        desk.send(QStringLiteral("long"));
        QVERIFY(server.waitForHold("gate"));
        const auto before = server.requests().count("stat");
        QVERIFY(!desk.window->stateWatch().ask());
        server.open("gate");
        QVERIFY(desk.isFree());
        QVERIFY(desk.window->stateWatch().ask());
        QVERIFY(!desk.window->stateWatch().ask()); // one at a time
        QVERIFY(desk.asks(server, int(before) + 1));
    }

    void aBusyServerIsLeftAlone()
    {
        ScriptedServer server;
        server.answer("stat", told("RUNNING"));
        WatchingConsole desk(server);
        QVERIFY(desk.has(Tarnis::RUNNING));
        Tarnis& tarnis = desk.window->controller().tarnis();
        for (const auto busy : { Tarnis::HARDWARE_BUSY, Tarnis::STARTING, Tarnis::LOADING }) {
            tarnis.SetStatus(busy);
            QVERIFY(!desk.window->stateWatch().ask());
            desk.window->controller().readState("OK:\nstate: RUNNING\n", 0); // requested before it was busy
            QCOMPARE(desk.window->controller().status(), busy);
        }
        tarnis.SetStatus(Tarnis::SERVER_CONNECTED);
    }

    void ignoresAStateRequestedBeforeACommand()
    {
        ScriptedServer server;
        server.answer("stat", told("STOPPED"));
        WatchingConsole desk(server);
        desk.send(QStringLiteral("start"));
        QVERIFY(desk.has(Tarnis::RUNNING));
        ServerController& controller = desk.window->controller();
        constexpr qint64 longAgo = 1000LL * timeoutMs;
        controller.readState("OK:\nstate: STOPPED\n", longAgo);
        QCOMPARE(controller.status(), Tarnis::RUNNING);
        const auto isBelieved = [&] {
            controller.readState("OK:\nstate: STOPPED\n", 0);
            return controller.status() == Tarnis::SERVER_CONNECTED;
        };
        TRY_VERIFY(isBelieved()); // the same millisecond counts as before
    }

    void usesTheRepliesOfTheStatisticsWindow()
    {
        ScriptedServer server;
        server.answerInTurn("stat", { told("STOPPED"), told("RUNNING") });
        WatchingConsole desk(server);
        auto* const statistics = desk.open<LiveStatistics>("statistics");
        QVERIFY(statistics);
        QVERIFY(desk.has(Tarnis::RUNNING));
        desk.window->stateWatch().setInterval(timeoutMs);
        QVERIFY(!desk.window->stateWatch().ask());
    }

    void doesNotPollAStoppedServer()
    {
        ScriptedServer server;
        WatchingConsole desk(server);
        desk.watch();
        QVERIFY(desk.asks(server, 2));
        desk.choose("shutDownAction");
        QVERIFY(desk.reaches(ServerState::Off));
        QVERIFY(server.waitUntilDeserted());
        QVERIFY(!desk.window->stateWatch().ask());
    }
};

QTEST_MAIN(TestConsoleState)
#include "tst_consolestate.moc"
