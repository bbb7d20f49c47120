// Controlling runs: start, stop and clear in the main window, the displayed run status, and the common poller.
#include "console/consolefixture.h"
#include "run/runpanel.h"
#include "server/runstatus.h"
#include "support/wait.h"
#include "tables/ratewindow.h"
#include "tables/snapshotwindow.h"

#include <QHeaderView>
#include <QTableWidget>
#include <QToolButton>

using namespace console;
using namespace tarnis::testing;

namespace {

Script stat(const QByteArray& state, int run, qint64 events, const QByteArray& directory = "none")
{
    return { Step::text("OK:\n--run\nstate: " + state + "\nrun: " + QByteArray::number(run)
        + "\nrun directory: " + directory
        + "\nreal time: 3723.9\nlive time: 61.5\nevents: " + QByteArray::number(events) + "\nrate: 987.6\n") };
}

constexpr int never = 3600000; // an interval, in ms, that no test reaches

/// A console on a server whose state a test changes.
class RunConsole : public ConsoleFixture {
public:
    using ConsoleFixture::ConsoleFixture;
    bool knowsEvents(qint64 events)
    {
        const auto isKnown = [&] {
            window->statusPoller().request(); // a poll under way may have been sent before
            return window->statusPoller().runStatus().events == events;
        };
        return eventually(isKnown);
    }
    bool has(Tarnis::SERVER_STATUS status)
    {
        return eventually([&] { return window->controller().status() == status; });
    }
    QMessageBox* question() { return window->findChild<QMessageBox*>(QStringLiteral("discardBox")); }
};

bool receives(const ScriptedServer& server, const QByteArray& request, int times = 1)
{
    return eventually([&] { return server.requests().count(request) >= times; });
}

} // namespace

class TestConsoleRun : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void readsTheRunFromStat()
    {
        const RunStatus run = runStatusOf(QStringLiteral(
            "OK:\nstate: RUNNING\nrun: 12\nrun directory: /data/SIM12\nreal time: 1.5\nlive time: 1.25\nevents: 7\n"));
        QCOMPARE(run.isRunning, std::optional(true));
        QCOMPARE(run.run, std::optional<qint64>(12));
        QCOMPARE(run.realTime, std::optional(1.5));
        QCOMPARE(run.liveTime, std::optional(1.25));
        QCOMPARE(run.events, std::optional<qint64>(7));
        QVERIFY(!run.rate);
        QVERIFY(run.isRecorded);
        QCOMPARE(runStatusOf(QStringLiteral("NG:busy\nevents: 7")), RunStatus());
        QVERIFY(!runStatusOf(QStringLiteral("OK:\nrun: none\nrate: nan\n")).run);
        QVERIFY(!runStatusOf(QStringLiteral("OK:\nrate: nan\n")).rate);
    }

    void writesRatesWithoutPowersOfTen()
    {
        QCOMPARE(rateText(0.0), QStringLiteral("0"));
        QCOMPARE(rateText(987.649), QStringLiteral("987.6"));
        QCOMPARE(rateText(999.96), QStringLiteral("1,000"));
        QCOMPARE(rateText(20223.6), QStringLiteral("20,224"));
        QCOMPARE(rateText(1e17), QStringLiteral("1e+17"));
    }

    void writesDurations()
    {
        QCOMPARE(durationText(3723.9), QStringLiteral("1:02:03"));
        QCOMPARE(durationText(360000.0), QStringLiteral("100:00:00"));
        QCOMPARE(durationText(-1.0), QStringLiteral("0:00:00"));
        QCOMPARE(durationText(std::numeric_limits<double>::infinity()), QStringLiteral("0:00:00"));
    }

    void findsWhichDataWouldBeLost()
    {
        UnsavedData data;
        QVERIFY(!data.wouldBeLost());
        RunStatus run;
        run.run = 1;
        run.events = 5;
        run.isRunning = true;
        data.read(run);
        QVERIFY(data.wouldBeLost());
        data.noteSaved();
        QVERIFY(!data.wouldBeLost());
        run.events = 9;
        data.read(run);
        QVERIFY(!data.wouldBeLost()); // more of the same run
        run.events = 2;
        data.read(run);
        QVERIFY(data.wouldBeLost()); // cleared since
        run.isRecorded = true;
        data.read(run);
        QVERIFY(data.wouldBeLost()); // recorded at its end only
        run.isRunning = false;
        data.read(run);
        QVERIFY(!data.wouldBeLost());
    }

    void startsAndStopsARunByMouse()
    {
        ScriptedServer server;
        server.answer("stat", stat("STOPPED", 1, 0));
        server.answer("start", { Step::text("OK:\nrun: 1\n") });
        server.answer("stop", { Step::text("OK:\nrun: 1\n") });
        RunConsole console(server);
        QVERIFY(console.knowsEvents(0));
        QVERIFY(!console.widget<QAbstractButton>("stopRunButton").isEnabled());
        QVERIFY(!console.widget<QAbstractButton>("stopRunButton").toolTip().isEmpty());
        server.answer("stat", stat("RUNNING", 1, 0));
        console.press("startRunButton");
        QVERIFY(console.has(Tarnis::RUNNING));
        QVERIFY(console.shows(QStringLiteral("> start\nOK:")));
        QVERIFY(!console.widget<QAbstractButton>("startRunButton").isEnabled());
        console.press("stopRunButton");
        QVERIFY(receives(server, "stop"));
        QVERIFY(console.shows(QStringLiteral("> stop\nOK:")));
        QVERIFY(!console.question());
    }

    void pollsAtOnceAfterATypedClear()
    {
        ScriptedServer server;
        server.answer("stat", stat("STOPPED", 1, 50));
        server.answer("clear", { Step::text("OK:\n") });
        RunConsole console(server);
        QVERIFY(console.knowsEvents(50));
        console.window->statusPoller().setInterval(never);
        TRY_VERIFY(!console.window->statusPoller().isAsking());
        server.answer("stat", stat("STOPPED", 1, 0));
        console.send(QStringLiteral("clear"));
        TRY_COMPARE(console.window->statusPoller().runStatus().events, std::optional<qint64>(0));
    }

    void pollsAgainIfAStopOvertakesAPoll()
    {
        ScriptedServer server;
        server.answer("stat", stat("RUNNING", 1, 26));
        server.answer("stop", { Step::text("OK:\nrun: 1\nevents: 3073\n") });
        RunConsole console(server);
        QVERIFY(console.knowsEvents(26));
        Script slow = stat("RUNNING", 1, 30);
        slow.insert(slow.begin(), Step::hold("gate"));
        server.answerInTurn("stat", { slow, stat("STOPPED", 1, 3073) });
        console.window->statusPoller().request();
        QVERIFY(server.waitForHold("gate"));
        console.window->statusPoller().setInterval(never);
        console.send(QStringLiteral("stop"));
        QVERIFY(console.has(Tarnis::SERVER_CONNECTED));
        server.open("gate");
        TRY_COMPARE(console.window->statusPoller().runStatus().events, std::optional<qint64>(3073));
        QCOMPARE(console.window->statusPoller().runStatus().isRunning, std::optional(false));
    }

    void showsWhatTheServerReportsOfTheRun()
    {
        ScriptedServer server;
        server.answer("stat", stat("RUNNING", 12, 1234567));
        RunConsole console(server);
        QVERIFY(console.knowsEvents(1234567));
        const auto text = [&](const char* name) { return console.widget<QLabel>(name).text(); };
        QCOMPARE(text("runLabel"), QStringLiteral("Run 12"));
        QCOMPARE(text("runStateLabel"), QStringLiteral("running"));
        QCOMPARE(text("realTimeLabel"), QStringLiteral("Elapsed 1:02:03"));
        QCOMPARE(text("liveTimeLabel"), QStringLiteral("Live 0:01:01"));
        QCOMPARE(text("eventsLabel"), QStringLiteral("Events %1").arg(QLocale().toString(1234567)));
        QCOMPARE(text("rateLabel"), QStringLiteral("Rate 987.6 /s"));
        console.choose("shutDownAction");
        QVERIFY(console.reaches(ServerState::Off));
        QVERIFY(text("eventsLabel").isEmpty());
    }

    void clearAsksUnlessSomethingWasSaved()
    {
        ScriptedServer server;
        server.answer("stat", stat("STOPPED", 3, 50));
        server.answer("clear", { Step::text("OK:\n") });
        RunConsole console(server);
        QVERIFY(console.knowsEvents(50));
        console.press("clearRunButton");
        answer(*console.window, "discardBox", QMessageBox::Cancel);
        TRY_VERIFY(!console.question());
        QVERIFY(!server.requests().contains("clear"));
        console.press("clearRunButton");
        TRY_VERIFY(console.question());
        const QList<QAbstractButton*> buttons = console.question()->buttons();
        for (QAbstractButton* const button : buttons) {
            if (console.question()->buttonRole(button) == QMessageBox::AcceptRole)
                press(*button);
        }
        QVERIFY(receives(server, "clear"));
        TRY_VERIFY(console.widget<QAbstractButton>("clearRunButton").isEnabled());
        console.window->statusPoller().noteSaved();
        console.press("clearRunButton");
        QVERIFY(receives(server, "clear", 2));
        QVERIFY(!console.question());
    }

    void aStartThatDiscardsDataAsks()
    {
        ScriptedServer server;
        server.answer("stat", stat("STOPPED", 3, 50));
        server.answer("start", { Step::text("OK:\n") });
        RunConsole console(server);
        QVERIFY(console.knowsEvents(50));
        console.choose("startRunAction");
        answer(*console.window, "discardBox", QMessageBox::Cancel);
        QVERIFY(!server.requests().contains("start"));
        server.answer("stat", stat("STOPPED", 3, 60, "/data/SIM3"));
        QVERIFY(console.knowsEvents(60));
        console.choose("startRunAction"); // this run is recorded on the server
        QVERIFY(receives(server, "start"));
    }

    void stopsWhileTheCommandLineWaits()
    {
        ScriptedServer server;
        server.answer("long", { Step::hold("gate"), Step::text("done\n") });
        server.answer("stat", stat("RUNNING", 1, 5));
        server.answer("stop", { Step::text("OK:\n") });
        RunConsole console(server);
        QVERIFY(console.has(Tarnis::RUNNING));
        console.send(QStringLiteral("long"));
        QVERIFY(server.waitForHold("gate"));
        console.press("stopRunButton");
        QVERIFY(receives(server, "stop"));
        QVERIFY(console.shows(QStringLiteral("-- stop: OK:")));
        server.open("gate");
        QVERIFY(console.isFree());
    }

    void aRefusalIsReported()
    {
        ScriptedServer server;
        server.answer("stat", stat("STOPPED", 1, 0));
        server.answer("start", { Step::text("NG:the disk is full\n") });
        RunConsole console(server);
        QVERIFY(console.knowsEvents(0));
        console.press("startRunButton");
        TRY_VERIFY(console.alert().text.contains(QStringLiteral("the disk is full")));
        QVERIFY(console.window->controller().status() != Tarnis::RUNNING);
    }

    void pollsEverythingOnOneConnection()
    {
        ScriptedServer server;
        server.answer("stat", stat("RUNNING", 1, 5));
        RunConsole console(server);
        int replies = 0;
        connect(&console.window->statusPoller(), &StatusPoller::replied, this, [&replies] { ++replies; });
        const auto others = server.requests().count("stat");
        const auto* const rate = console.open<RateWindow>("rate");
        const auto* const snapshot = console.open<SnapshotWindow>("stat-snapshot");
        QVERIFY(rate && snapshot);
        TRY_VERIFY(rate->count() >= 2);
        TRY_VERIFY(snapshot->findChild<QTableWidget*>()->rowCount() > 0);
        console.window->controller().stop();
        QVERIFY(console.reaches(ServerState::Off));
        const auto asked = server.requests().count("stat") - others;
        QVERIFY2(asked <= replies + 1, qPrintable(QStringLiteral("%1 for %2 replies").arg(asked).arg(replies)));
    }

    void namesOfANarrowSnapshotAreReadable()
    {
        ScriptedServer server;
        server.answer("stat", stat("RUNNING", 1, 5));
        RunConsole console(server);
        auto* const snapshot = console.open<SnapshotWindow>("stat-snapshot");
        QVERIFY(snapshot);
        auto& table = *snapshot->findChild<QTableWidget*>();
        TRY_VERIFY(table.rowCount() > 0);
        table.item(0, 0)->setText(QStringLiteral("histogram position"));
        const int wanted = static_cast<const QAbstractItemView&>(table).sizeHintForColumn(0);
        for (const int width : { 3 * wanted, 900, 3 * wanted }) {
            snapshot->resize(width, 400);
            QVERIFY2(table.columnWidth(0) >= wanted, qPrintable(QString::number(table.columnWidth(0))));
            QVERIFY(table.columnWidth(0) <= table.viewport()->width() / 2 + 1);
            QCOMPARE(table.horizontalHeader()->length(), table.viewport()->width());
        }
    }

    void theServersButtonsSayThatTheyAreTheServers()
    {
        const ConsoleFixture console;
        for (const char* const name : { "startAction", "restartAction", "shutDownAction" }) {
            const auto* const action = console.window->findChild<QAction*>(QLatin1String(name));
            QVERIFY2(action->text().contains(QStringLiteral("Server")), name);
        }
    }
};

QTEST_MAIN(TestConsoleRun)
#include "tst_consolerun.moc"
