// The console's live windows and path choosers when servers are lost and come back, and the choices in them.
#include "browse/pathwindows.h"
#include "console/consolefixture.h"
#include "histograms/livewindows.h"
#include "settings/settingspanel.h"
#include "support/cases.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/statdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>

#include <climits>
#include <memory>

using namespace console;
using namespace tarnis::testing;

namespace {

const QByteArray curvesRequest("hist1d time 0 7 bins:1024");
const QByteArray pairsRequest("hist1d total pairs bins:1024");
const QByteArray mapRequest("hist2d image bins:256");

/// A server with histograms of one bin, statistics and a folder.
class HistogramServer : public ScriptedServer {
public:
    HistogramServer()
    {
        answer(curvesRequest, { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") });
        answer(pairsRequest, { Step::doubles({ 0, 5 }, "OK: (0 40000 1024)\n") });
        answer(mapRequest, { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") });
        answer("stat", { Step::text("OK:\nevents: 12\n") });
        answer("pwd", { Step::text("OK:\n/data\n") });
        answer("ls-F \"/data\"", { Step::text("OK:\nrun one\nrun\"two\nold/\n") });
    }
};

bool noBoxIsOpen()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible() && qobject_cast<const QMessageBox*>(window))
            return false;
    }
    return QApplication::activeModalWidget() == nullptr;
}

/// The three live windows of a console.
struct LiveWindows {
    explicit LiveWindows(ConsoleFixture& fixture)
        : curves(fixture.open<Graph1DDialog>("curves"))
        , map(fixture.open<Graph2DDialog>("map"))
        , statistics(fixture.open<StatDialog>("statistics"))
    {
    }
    bool areFilled() const
    {
        return eventually([this] {
            return curves->getGraphWidget()->hasData() && map->getGraphWidget()->getMaxValue() > 0.0
                && statistics->table()->rowCount() > 0;
        });
    }
    static QString infoOf(const QWidget& window)
    {
        const auto* label = window.findChild<QLabel*>(QStringLiteral("infoLabel"));
        return label && label->isVisible() ? label->text() : QString();
    }
    bool allShow(const QString& text) const
    {
        return eventually([&] {
            return infoOf(*curves).contains(text) && infoOf(*map).contains(text) && infoOf(*statistics).contains(text);
        });
    }
    bool areQuiet() const
    {
        return eventually(
            [this] { return infoOf(*curves).isEmpty() && infoOf(*map).isEmpty() && infoOf(*statistics).isEmpty(); });
    }
    /// The displayed data and settings are unchanged.
    bool areKept() const
    {
        return curves->isVisible() && map->isVisible() && statistics->isVisible() && curves->getGraphWidget()->hasData()
            && map->getGraphWidget()->getMaxValue() > 0.0 && statistics->table()->rowCount() > 0
            && curves->findChild<QComboBox*>(QStringLiteral("typeComboBox"))->currentText() == u"Sum of All";
    }
    bool canUpdate() const
    {
        return curves->findChild<QPushButton*>(QStringLiteral("updatePushButton"))->isEnabled()
            && map->findChild<QPushButton*>(QStringLiteral("updatePushButton"))->isEnabled();
    }

    QPointer<Graph1DDialog> curves;
    QPointer<Graph2DDialog> map;
    QPointer<StatDialog> statistics;
};

} // namespace

class TestConsoleLive : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // Lost servers.

    void liveWindowsGoOnAfterTheServerWasLost_data()
    {
        QTest::addColumn<QByteArray>("action");
        QTest::newRow("killed") << QByteArray("forceAction");
        QTest::newRow("shut down") << QByteArray("shutDownAction");
    }
    void liveWindowsGoOnAfterTheServerWasLost()
    {
        QFETCH(QByteArray, action);
        HistogramServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        const LiveWindows live(fixture);
        QVERIFY(live.areFilled());
        live.curves->findChild<QComboBox*>(QStringLiteral("typeComboBox"))
            ->setCurrentText(QStringLiteral("Sum of All"));

        fixture.window->statusPoller().noteSaved(); // otherwise the end of the server would be a question
        fixture.choose(action.constData());
        QVERIFY(live.allShow(QStringLiteral("resumes")));
        QVERIFY(noBoxIsOpen());
        QVERIFY(live.areKept());
        QVERIFY(!live.canUpdate());
        if (action == "shutDownAction")
            QVERIFY(server.waitUntilDeserted()); // no session remains
        TRY_VERIFY(!fixture.window->controller().hasProcess());
        fixture.window->controller().restart();
        QVERIFY(fixture.reaches(ServerState::Up));
        const auto polls = server.requests().count(curvesRequest);
        QVERIFY(live.areQuiet());
        TRY_VERIFY(server.requests().count(curvesRequest) > polls);
        QVERIFY(live.areKept());
        QVERIFY(live.canUpdate());
        QVERIFY(noBoxIsOpen());
    }

    void reportsALostRemoteServerWithoutAMessageBox()
    {
        auto server = std::make_unique<HistogramServer>();
        ConsoleFixture fixture(*server);
        const LiveWindows live(fixture);
        QVERIFY(live.areFilled());
        live.curves->findChild<QComboBox*>(QStringLiteral("typeComboBox"))
            ->setCurrentText(QStringLiteral("Sum of All"));
        server.reset();
        QVERIFY(live.allShow(QStringLiteral("resumes")));
        QVERIFY(fixture.reaches(ServerState::Failed));
        QVERIFY(noBoxIsOpen());
        QVERIFY(live.areKept());

        HistogramServer another;
        fixture.use(another);
        QVERIFY(fixture.reaches(ServerState::Up));
        QVERIFY(live.areQuiet());
        QVERIFY(another.waitForRequest(curvesRequest));
        QVERIFY(another.waitForRequest(mapRequest));
        QVERIFY(live.areKept());
    }

    void renewsALostConnectionWhileTheServerIsUp()
    {
        HistogramServer server;
        server.answerInTurn(curvesRequest,
            { { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") }, { Step::raw("half"), Step::drop() },
                { Step::hold("gate"), Step::doubles({ 8, 8, 8, 8, 8, 8, 8, 8 }, "OK:\n") } });
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<Graph1DDialog>("curves");
        TRY_VERIFY(window->getGraphWidget()->hasData());
        TRY_VERIFY(LiveWindows::infoOf(*window).contains(QStringLiteral("connection broke")));
        QVERIFY(noBoxIsOpen());
        QVERIFY(server.waitForHold("gate"));
        QCOMPARE(fixture.window->controller().state(), ServerState::Up);
        server.open("gate");
        TRY_VERIFY(LiveWindows::infoOf(*window).isEmpty());
        QCOMPARE(window->getGraphWidget()->getMaxValue(), 8.0);
    }

    void aRefusedConnectionConcernsItsWindowOnly_data()
    {
        addColumns<QByteArray, bool>("id", "isAuto");
        QTest::newRow("curves") << QByteArray("curves") << true;
        QTest::newRow("curves without polling") << QByteArray("curves") << false;
        QTest::newRow("map") << QByteArray("map") << true;
    }
    void aRefusedConnectionConcernsItsWindowOnly()
    {
        QFETCH(QByteArray, id);
        QFETCH(bool, isAuto);
        HistogramServer server;
        ConsoleFixture fixture(server);
        QVERIFY(server.waitForFarewells(2)); // of the check of the server and of the list of its histograms
        const int used = server.connectionCount();
        for (int i = 0; i < 4; ++i) // two attempts of the window, each followed by a check
            server.setScript(used + i, { Step::raw("NG:too many clients\n"), Step::drop() });
        QSignalSpy answered(&fixture.window->controller(), &ServerController::answered);

        auto* const window = fixture.open<QDialog>(id.constData());
        auto* const curves = qobject_cast<LiveCurves*>(window);
        auto* const map = qobject_cast<LiveMap*>(window);
        (curves ? curves->recovery() : map->recovery()).m_retryMs = INT_MAX; // only the user tries again
        auto& autoUpdate = child<QCheckBox>(*window, "autoUpdateCheckBox");
        autoUpdate.setChecked(isAuto);
        for (int attempt = 1; attempt <= 2; ++attempt) {
            TRY_COMPARE(answered.size(), attempt);
            const QString text = LiveWindows::infoOf(*window);
            QVERIFY2(text.contains(QStringLiteral("too many clients")), qPrintable(text));
            QVERIFY2(text.contains(QStringLiteral("Close another window")), qPrintable(text));
            QVERIFY(!autoUpdate.isEnabled());
            QCOMPARE(fixture.window->controller().state(), ServerState::Up);
            QVERIFY2(fixture.alert().text.isEmpty(), qPrintable(fixture.alert().text));
            press(child<QPushButton>(*window, "updatePushButton"));
        }
        TRY_VERIFY((curves ? curves->getGraphWidget()->hasData() : map->getGraphWidget()->getMaxValue() > 0.0));
        TRY_VERIFY(LiveWindows::infoOf(*window).isEmpty());
        QVERIFY(autoUpdate.isEnabled());
        QVERIFY(noBoxIsOpen());
    }

    void aWindowWithoutPollingOnlyReportsTheReturn()
    {
        HistogramServer server;
        const FakeServer program(FakeServer::wellBehaved(server.port()));
        ConsoleFixture fixture(program);
        auto* const window = fixture.open<Graph1DDialog>("curves");
        TRY_VERIFY(window->getGraphWidget()->hasData());
        window->setAutoUpdate(false);
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(!LiveWindows::infoOf(*window).isEmpty());
        const auto polls = server.requests().count(curvesRequest);
        fixture.choose("startAction");
        TRY_VERIFY(LiveWindows::infoOf(*window).isEmpty());
        QVERIFY(!window->isAutoUpdate());
        QCOMPARE(server.requests().count(curvesRequest), polls);
        press(*window->findChild<QPushButton*>(QStringLiteral("updatePushButton")));
        TRY_COMPARE(server.requests().count(curvesRequest), polls + 1);
    }

    void showsARejectionAndContinuesPolling_data()
    {
        addColumns<QByteArray, QByteArray>("id", "request");
        QTest::newRow("rows") << QByteArray("curves") << curvesRequest;
        QTest::newRow("pairs") << QByteArray("pairs") << pairsRequest;
        QTest::newRow("map") << QByteArray("map") << mapRequest;
    }
    void showsARejectionAndContinuesPolling()
    {
        QFETCH(QByteArray, id);
        QFETCH(QByteArray, request);
        HistogramServer server;
        server.answer(request, { Step::binary("", "NG:no such histogram\n") });
        ConsoleFixture fixture(server);
        const auto* const window = fixture.open<QDialog>(id.constData());
        TRY_VERIFY(LiveWindows::infoOf(*window).contains(QStringLiteral("no such histogram")));
        QVERIFY(noBoxIsOpen());
        TRY_VERIFY(server.requests().count(request) > 1);
    }

    void closingEndsTheSessionOfTheWindowOnly_data()
    {
        QTest::addColumn<QByteArray>("id");
        for (const char* id : { "curves", "map", "statistics", "base-path", "server-files" })
            QTest::newRow(id) << QByteArray(id);
    }
    void closingEndsTheSessionOfTheWindowOnly()
    {
        QFETCH(QByteArray, id);
        HistogramServer server;
        server.answer("here?", { Step::text("yes\n") });
        ConsoleFixture fixture(server);
        fixture.send(QStringLiteral("here?")); // the command line has its connection
        QVERIFY(fixture.shows(QStringLiteral("yes")));
        fixture.choose("clearRecordAction");
        QVERIFY(server.waitForFarewells(2)); // of the check of the server and of the list of its histograms
        const int before = server.connectionCount();
        const QPointer<QWidget> window = fixture.open<QWidget>(id.constData());
        QVERIFY(server.waitForConnections(before + 1));
        const int open = server.openConnections();
        window->close();
        TRY_VERIFY(window.isNull());
        TRY_VERIFY(server.openConnections() < open);
        fixture.send(QStringLiteral("here?"));
        QVERIFY(fixture.shows(QStringLiteral("yes")));
    }

    void leavesNoThreadAfterClosing()
    {
        HistogramServer server;
        {
            ConsoleFixture fixture(server);
            const LiveWindows live(fixture);
            QVERIFY(live.areFilled());
            fixture.window->close();
            TRY_VERIFY(!fixture.window->isVisible());
        }
        QVERIFY(server.waitUntilDeserted());
    }

    // Path choosers.

    void choosersStayWithoutTheServer_data()
    {
        QTest::addColumn<QByteArray>("id");
        QTest::newRow("base path") << QByteArray("base-path");
        QTest::newRow("files") << QByteArray("server-files");
    }
    void choosersStayWithoutTheServer()
    {
        QFETCH(QByteArray, id);
        auto server = std::make_unique<HistogramServer>();
        ConsoleFixture fixture(*server);
        const QPointer<QWidget> chooser = fixture.open<QWidget>(id.constData());
        TRY_VERIFY(chooser->findChild<QListWidget*>(QStringLiteral("curDirListWidget"))->count() > 0);
        server.reset();
        fixture.send(QStringLiteral("anybody?"));
        const auto* const ok = chooser->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
        const auto* const state = chooser->findChild<QLabel*>(QStringLiteral("stateLabel"));
        TRY_VERIFY(state->text().contains(QStringLiteral("no connection")));
        QVERIFY(!ok->isEnabled());
        QVERIFY(ok->toolTip().contains(QStringLiteral("no connection")));
        QVERIFY(chooser->isVisible());
        QVERIFY(noBoxIsOpen());
    }

    void aChooserRepeatsItsRequestAfterALostConnection_data() { choosersStayWithoutTheServer_data(); }
    void aChooserRepeatsItsRequestAfterALostConnection()
    {
        QFETCH(QByteArray, id);
        HistogramServer server;
        server.answerInTurn("ls-F \"/data\"", { { Step::drop() }, { Step::text("OK:\nold/\n") } });
        ConsoleFixture fixture(server);
        const auto* const chooser = fixture.open<QWidget>(id.constData());
        const auto* const list = chooser->findChild<QListWidget*>(QStringLiteral("curDirListWidget"));
        TRY_VERIFY(list->count() == 1 && list->isEnabled());
        QVERIFY(chooser->isVisible());
    }

    void insertsAChosenFileIntoTheCommandLine_data()
    {
        addColumns<QString, int, QString>("typed", "cursor", "line");
        QTest::newRow("empty line") << "" << 0 << "\"/data/run\\\"two\"";
        QTest::newRow("behind a blank") << "show " << 5 << "show \"/data/run\\\"two\"";
        QTest::newRow("behind a word") << "show" << 4 << "show \"/data/run\\\"two\"";
        QTest::newRow("in the middle") << "copy  again" << 5 << "copy \"/data/run\\\"two\" again";
    }
    void insertsAChosenFileIntoTheCommandLine()
    {
        QFETCH(QString, typed);
        QFETCH(int, cursor);
        QFETCH(QString, line);
        HistogramServer server;
        ConsoleFixture fixture(server);
        const QPointer<QWidget> chooser = fixture.open<QWidget>("server-files");
        auto* const list = chooser->findChild<QListWidget*>(QStringLiteral("curDirListWidget"));
        TRY_VERIFY(list->count() > 0);
        fixture.type(typed);
        fixture.edit().setCursorPosition(cursor);
        list->setCurrentItem(list->findItems(QStringLiteral("run\"two"), Qt::MatchExactly).constFirst());
        acceptChoice(*chooser);
        TRY_VERIFY(chooser.isNull());
        QCOMPARE(fixture.edit().text(), line);
        QCOMPARE(fixture.edit().cursorPosition(), int(line.indexOf(u"two\"")) + 4);
    }

    // The base path.

    void theBasePathIsNotForARun()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        Tarnis& tarnis = fixture.window->controller().tarnis();
        auto& action = fixture.widget<QAction>("base-path");
        QVERIFY(action.isEnabled());
        tarnis.SetStatus(Tarnis::RUNNING);
        QVERIFY(!action.isEnabled());
        QVERIFY(action.toolTip().contains(QStringLiteral("Running")));
        QVERIFY(!fixture.find("base-path"));
        tarnis.SetStatus(Tarnis::SERVER_CONNECTED);
        QVERIFY(action.isEnabled());
    }

    void reportsARunThatBeganMeanwhile()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        const QPointer<QWidget> chooser = fixture.open<QWidget>("base-path");
        auto* const list = chooser->findChild<QListWidget*>(QStringLiteral("curDirListWidget"));
        TRY_VERIFY(list->count() > 0);
        fixture.window->controller().tarnis().SetStatus(Tarnis::RUNNING);
        acceptChoice(*chooser);
        QVERIFY(fixture.alert().text.contains(QStringLiteral("Running")));
        QVERIFY(fixture.alert().text.contains(QStringLiteral("/data")));
        for (const QByteArray& request : server.requests())
            QVERIFY2(!request.contains("basepath"), request.constData());
    }

    // Features of the windows.

    void theWindowsOfferTheirToolsInTheMenu()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        const auto offers = [](QWidget* plot, const QString& text) {
            for (const QAction* action : plot->actions()) {
                if (action->text() == text)
                    return action->isVisible() && action->isEnabled();
            }
            return false;
        };
        for (const char* id : { "curves", "pairs" })
            QVERIFY(offers(fixture.open<Graph1DDialog>(id)->getGraphWidget(), QStringLiteral("Select Time Range")));
        QVERIFY(offers(fixture.open<Graph2DDialog>("map")->getGraphWidget(), QStringLiteral("Select ROI...")));
    }
};

QTEST_MAIN(TestConsoleLive)
#include "tst_consolelive.moc"
