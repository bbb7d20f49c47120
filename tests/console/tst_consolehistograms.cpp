// The chooser of histograms, and its windows: one for each, tiled, cascaded, closed.
#include "console/consolefixture.h"
#include "console/histogramserver.h"
#include "console/windowlists.h"
#include "histograms/histogramchooser.h"
#include "histograms/histogramlist.h"
#include "support/cases.h"
#include "support/wait.h"
#include "windows/openwindows.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QApplication>
#include <QListWidget>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>

using namespace console;
using namespace tarnis::testing;

namespace {

HistogramInfo one(const char* line)
{
    const QList<HistogramInfo> all = histogramsOf(QString::fromUtf8(line));
    if (all.size() != 1)
        qFatal("%s", line);
    return all.first();
}

} // namespace

class TestConsoleHistograms : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    // The list as text.

    void linesAreRead()
    {
        const QList<HistogramInfo> all = histogramsOf(QString::fromUtf8(twoHistograms));
        QCOMPARE(all.size(), 2);
        QCOMPARE(all.at(0).name, "time");
        QVERIFY(!all.at(0).isMap);
        QCOMPARE(all.at(0).rows, 2);
        QCOMPARE(all.at(0).x.bins, 4);
        QCOMPARE(all.at(0).x.max, 40000.0);
        QCOMPARE(all.at(0).x.text(), "Time [us]");
        QVERIFY(all.at(1).isMap);
        QCOMPARE(all.at(1).y.bins, 3);
        QCOMPARE(all.at(1).y.min, -1.0);
        QCOMPARE(all.at(1).y.text(), "Vertical [mm]");
    }

    void whatCannotBeAHistogramIsLeftOut_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("accepted") << QByteArray("OK:");
        QTest::newRow("refused") << QByteArray("NG:unknown command 'hists'");
        QTest::newRow("no name") << QByteArray(": kind=1d bins=4 min=0 max=1");
        QTest::newRow("blank in the name") << QByteArray("a b: kind=1d bins=4 min=0 max=1");
        QTest::newRow("another kind") << QByteArray("a: kind=3d bins=4 min=0 max=1");
        QTest::newRow("no bins") << QByteArray("a: kind=1d bins=0 min=0 max=1");
        QTest::newRow("bins that are no number") << QByteArray("a: kind=1d bins=many min=0 max=1");
        QTest::newRow("empty range") << QByteArray("a: kind=1d bins=4 min=1 max=1");
        QTest::newRow("no number") << QByteArray("a: kind=1d bins=4 min=nan max=1");
        QTest::newRow("no rows") << QByteArray("a: kind=1d rows=0 bins=4 min=0 max=1");
        QTest::newRow("a map of one axis") << QByteArray("a: kind=2d binsx=4 minx=0 maxx=1");
    }
    void whatCannotBeAHistogramIsLeftOut()
    {
        QFETCH(QByteArray, line);
        QVERIFY(histogramsOf(QString::fromUtf8(line)).isEmpty());
    }

    void binsThatDivide_data()
    {
        addColumns<int, int>("bins", "shown");
        QTest::newRow("fewer than the limit") << 100 << 100;
        QTest::newRow("the limit") << 1024 << 1024;
        QTest::newRow("a power of two") << 16384 << 1024;
        QTest::newRow("the greatest divisor") << 3000 << 1000;
        QTest::newRow("a prime") << 10007 << 10007;
        QTest::newRow("one") << 1 << 1;
    }
    void binsThatDivide()
    {
        QFETCH(int, bins);
        QFETCH(int, shown);
        QCOMPARE(binsToShow(bins, 1024), shown);
        QCOMPARE(bins % shown, 0);
    }

    void limitsTheRowsAndBinsOfARequest()
    {
        QCOMPARE(curvesRequest(one("t: kind=1d rows=8 bins=16384 min=0 max=40 label=Time unit=us")).command,
            "hist1d t 0 7 bins:1024");
        QCOMPARE(curvesRequest(one("t: kind=1d bins=10 min=0 max=1")).command, "hist1d t 0 0 bins:10");
        const CurvesRequest cut = curvesRequest(one("t: kind=1d rows=1000 bins=10 min=0 max=1"));
        QCOMPARE(cut.last, 63);
        QCOMPARE(cut.title, "t, the first 64 of 1000 rows");
        QCOMPARE(mapRequest(one("m: kind=2d binsx=1024 minx=0 maxx=1 binsy=100 miny=0 maxy=1")).command,
            "hist2d m bins:256x100");
    }

    // The chooser.

    void checkedHistogramsOpen()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.isFilled(2));
        QVERIFY(!list.ok().isEnabled());
        QVERIFY(list.ok().toolTip().contains(QStringLiteral("Check a histogram")));
        list.press("buttonCheckAll");
        list.accept();
        TRY_VERIFY(list.chooser.isNull());
        const QList<QWidget*> windows = fixture.window->windows().onScreen();
        QCOMPARE(titlesOf(windows), (QStringList { "Histogram time", "Histogram image" }));
        auto* const curves = qobject_cast<Graph1DDialog*>(windows.at(0));
        auto* const map = qobject_cast<Graph2DDialog*>(windows.at(1));
        QVERIFY(curves && map);
        TRY_VERIFY(curves->getGraphWidget()->hasData());
        TRY_COMPARE(map->getGraphWidget()->getMaxValue(), 6.0);
        double min = 0.0;
        double max = 0.0;
        map->getGraphWidget()->getMinMaxY(min, max);
        QCOMPARE(min, -1.0);
        QCOMPARE(max, 1.0);
    }

    void storesTheChoiceAndOpensEachWindowOnce()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.opensTheMap());
        QWidget* const first = fixture.window->windows().onScreen().value(0);
        list.reopen(fixture);
        QVERIFY(list.isFilled(2));
        QVERIFY(list.ok().isEnabled());
        list.accept();
        TRY_VERIFY(list.chooser.isNull());
        QCOMPARE(fixture.window->windows().onScreen(), QList<QWidget*> { first });
    }

    void cancelOpensNothing()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.isFilled(2));
        list.press("buttonCheckAll");
        QTest::keyClick(list.chooser, Qt::Key_Escape);
        TRY_VERIFY(list.chooser.isNull());
        QVERIFY(fixture.window->windows().onScreen().isEmpty());
    }

    void reportsARejection()
    {
        HistogramServer server("NG:unknown command 'hists'\n");
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.shows(QStringLiteral("NG:unknown command")));
        QVERIFY(!list.ok().isEnabled());
    }

    void reportsAServerWithoutHistograms()
    {
        HistogramServer server("OK:\n");
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.shows(QStringLiteral("no histograms")));
    }

    void reportsALostServerAndReadsTheListAgain()
    {
        HistogramServer server;
        server.answer("hists", { Step::drop() });
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.shows(QStringLiteral("No reply")));
        server.answer("hists", { Step::text(twoHistograms) });
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(list.shows(QStringLiteral("no connection")));
        fixture.choose("startAction");
        QVERIFY(fixture.reaches(ServerState::Up));
        QVERIFY(list.isFilled(2));
    }

    void checksStayThroughEverything()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.isFilled(2));
        list.chooser->setChecked(1, true);
        const auto isChecked = [&](int index) {
            QString text;
            bool is = false;
            list.chooser->getItem(index, text, is);
            return is;
        };
        const qsizetype asked = server.requests().count("hists");
        fixture.window->controller().readReply(QStringLiteral("start"), "OK:\n"); // as when a run begins
        QCOMPARE(fixture.window->controller().status(), Tarnis::RUNNING);
        fixture.window->controller().readReply(QStringLiteral("stop"), "OK:\n");
        QVERIFY(isChecked(1));
        QEvent language(QEvent::LanguageChange);
        QApplication::sendEvent(list.chooser, &language);
        QVERIFY(isChecked(1));
        QCOMPARE(server.requests().count("hists"), asked);
        // A reconnect requests the list again, which has another order and one more entry.
        server.answer("hists",
            { Step::text("OK:\nimage: kind=2d binsx=2 minx=0 maxx=10 binsy=3 miny=-1 maxy=1\n"
                         "a: kind=1d bins=4 min=0 max=1\ntime: kind=1d bins=4 min=0 max=1\n") });
        fixture.choose("shutDownAction");
        QVERIFY(fixture.reaches(ServerState::Off));
        QVERIFY(isChecked(1));
        fixture.choose("startAction");
        QVERIFY(fixture.reaches(ServerState::Up));
        QVERIFY(list.isFilled(3));
        QVERIFY(isChecked(0) && !isChecked(1) && !isChecked(2));
    }

    void theChooserIsWideEnoughForItsTexts()
    {
        HistogramServer server(
            "OK:\nimage: kind=2d binsx=1024 minx=0 maxx=1 labelx=HorizontalPositionOfTheDetector unitx=mm "
            "binsy=1024 miny=0 maxy=1 labely=VerticalPositionOfTheDetector unity=mm\n");
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.isFilled(1));
        const auto* const entries = list.chooser->findChild<QListWidget*>();
        TRY_VERIFY(entries->viewport()->width()
            >= std::min(entries->sizeHintForColumn(0), entries->screen()->availableGeometry().width() * 3 / 4 - 40));
        TRY_VERIFY(!entries->horizontalScrollBar()->isVisible());
    }

    void reportsOmittedRows()
    {
        HistogramServer server("OK:\nbig: kind=1d rows=100 bins=4 min=0 max=1\n");
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.isFilled(1));
        QString text;
        bool isChecked = false;
        list.chooser->getItem(0, text, isChecked);
        QVERIFY2(text.contains(QStringLiteral("only the first 64 are shown")), qPrintable(text));
        list.press("buttonCheckAll");
        list.accept();
        TRY_VERIFY(list.chooser.isNull());
        QCOMPARE(
            titlesOf(fixture.window->windows().onScreen()), QStringList { "Histogram big, the first 64 of 100 rows" });
        const auto* const label =
            fixture.window->windows().onScreen().constFirst()->findChild<QLabel*>(QStringLiteral("descLabel"));
        QCOMPARE(label->text(), "Row 0-63 of 100");
    }

    // Windows of particular histograms.

    void windowsTakeWhatTheServerLists()
    {
        HistogramServer server("OK:\ntime: kind=1d rows=3 bins=2000 min=5 max=500 label=Flight unit=ms\n"
                               "total: kind=1d rows=1 bins=100 min=0 max=1\n");
        server.answer("hist1d time 0 2 bins:1000", { Step::doubles(QList<double>(3000, 1.0), "OK:\n") });
        server.answer("hist1d total pairs bins:100", { Step::doubles({ 0, 1 }, "OK: (0 1 100)\n") });
        ConsoleFixture fixture(server);
        const auto& missing = fixture.widget<QAction>("single-row");
        TRY_VERIFY(!missing.isEnabled());
        QCOMPARE(missing.toolTip(), QString::fromUtf8("The server has no histogram \u201cposition\u201d"));
        QVERIFY(!fixture.find("single-row"));
        QVERIFY(!fixture.widget<QAction>("spectrum").isEnabled());
        QVERIFY(!fixture.widget<QAction>("map").isEnabled());
        auto* const curves = fixture.open<Graph1DDialog>("curves");
        QVERIFY(curves);
        TRY_VERIFY(curves->getGraphWidget()->hasData());
        double min = 0.0;
        double max = 0.0;
        curves->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(min, 5.0);
        QCOMPARE(max, 500.0);
        QVERIFY(fixture.find("pairs"));
        QVERIFY(server.waitForRequest("hist1d total pairs bins:100"));
    }

    void theImageHasTheBinsThatTheServerLists()
    {
        HistogramServer server(
            "OK:\nimage: kind=2d binsx=100 minx=-5.5 maxx=10 labelx=Horizontal unitx=mm binsy=80 miny=2 "
            "maxy=40.5 labely=Vertical unity=mm\n");
        server.answer("hist2d image bins:100x80", { Step::doubles(QList<double>(8000, 3.0), "OK:\n") });
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(isListed(fixture, "image"));
        auto* const map = fixture.open<Graph2DDialog>("map");
        QVERIFY(map);
        XY2DGraphWidget& plot = *map->getGraphWidget();
        TRY_COMPARE(plot.getMaxValue(), 3.0);
        double min = 0.0;
        double max = 0.0;
        plot.getMinMaxX(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 100.0);
        plot.getMinMaxY(min, max);
        QCOMPARE(min, 0.0);
        QCOMPARE(max, 80.0);
        QCOMPARE(map->windowTitle(), "Image");
        plot.SetRoiEnabled(true);
        ViewSelectedROI* const regions = plot.GetViewSelectedROI();
        regions->addRoi(QRect(QPoint(-1000, -1000), QPoint(1000, 1000)));
        QCOMPARE(regions->getRoiList(), QList<QRect> { QRect(0, 0, 100, 80) });
    }

    void aServerWithoutAListKeepsTheDefaultWindows()
    {
        HistogramServer server("NG:unknown command 'hists'\n");
        ConsoleFixture fixture(server);
        QVERIFY(server.waitForRequest("hists"));
        QVERIFY(fixture.find("curves"));
        QVERIFY(fixture.find("single-row"));
        QVERIFY(server.waitForRequest("hist1d time 0 7 bins:1024"));
    }

    void aListThatComesInTheChooserCountsForTheMenu()
    {
        HistogramServer server("OK:\ntotal: kind=1d bins=4 min=0 max=1\n");
        ConsoleFixture fixture(server);
        TRY_VERIFY(!fixture.widget<QAction>("curves").isEnabled());
        server.answer("hists", { Step::text(twoHistograms) });
        QVERIFY(fixture.open<HistogramChooser>("histograms"));
        TRY_VERIFY(fixture.widget<QAction>("curves").isEnabled() && !fixture.widget<QAction>("pairs").isEnabled());
    }

    void requestsAnIncompleteListAgain()
    {
        HistogramServer server;
        server.answer("hists", { Step::drop() });
        ConsoleFixture fixture(server);
        QVERIFY(server.waitForRequest("hists"));
        server.answer("hists", { Step::text(twoHistograms) });
        TRY_VERIFY(!fixture.widget<QAction>("pairs").isEnabled());
        QVERIFY(fixture.widget<QAction>("curves").isEnabled());
        QCOMPARE(server.requests().count("hists"), 2);
    }

    void anotherServerHasItsOwnList()
    {
        HistogramServer server("OK:\ntotal: kind=1d bins=4 min=0 max=1\n");
        HistogramServer other;
        ConsoleFixture fixture(server);
        TRY_VERIFY(!fixture.widget<QAction>("curves").isEnabled());
        fixture.use(other);
        TRY_VERIFY(fixture.widget<QAction>("curves").isEnabled() && !fixture.widget<QAction>("pairs").isEnabled());
    }

    // Replies that cannot be drawn.

    void reportsUndrawnRepliesAndContinuesPolling()
    {
        HistogramServer server("NG:unknown command 'hists'\n");
        server.answer("hist2d image bins:256", { Step::doubles({ 1, 2, 3 }, "OK: exported 2 x 2 y\n") });
        server.answer("hist1d total pairs bins:1024", { Step::doubles({ 0, 5 }, "OK:\n") });
        ConsoleFixture fixture(server);
        for (const char* const id : { "map", "pairs" }) {
            const auto* const label = fixture.find(id)->findChild<QLabel*>(QStringLiteral("infoLabel"));
            TRY_VERIFY(label->isVisible() && label->text().contains(u"is not shown"));
        }
        QVERIFY(!QApplication::activeModalWidget());
        server.answer("hist2d image bins:256", { Step::doubles({ 1, 2, 3, 4 }, "OK: exported 2 x 2 y\n") });
        auto* const map = fixture.open<Graph2DDialog>("map");
        TRY_COMPARE(map->getGraphWidget()->getMaxValue(), 4.0);
        TRY_VERIFY(!map->findChild<QLabel*>(QStringLiteral("infoLabel"))->isVisible());
    }

    void theMenuListsTheOpenWindows()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        auto& menu = fixture.widget<QMenu>("windowsMenu");
        const auto entry = [&menu](const QString& title) -> QAction* {
            Q_EMIT menu.aboutToShow();
            for (QAction* const action : menu.actions()) {
                if (action->text().endsWith(u' ' + title) && action->isCheckable())
                    return action;
            }
            return nullptr;
        };
        const QString title = QStringLiteral("Log File");
        QVERIFY(!entry(title));
        QWidget* const log = fixture.find("log");
        QVERIFY(entry(title));
        log->showMinimized();
        QVERIFY(entry(title));
        entry(title)->trigger();
        QVERIFY(!log->isMinimized() && log->isVisible());
        TRY_VERIFY(entry(title)->isChecked());
        log->close();
        TRY_VERIFY(!entry(title));
    }

    void aKeyLeadsBackToTheConsole()
    {
        ConsoleFixture fixture;
        QWidget* const log = fixture.find("log");
        QVERIFY(QTest::qWaitForWindowActive(log));
        QVERIFY(!fixture.window->isActiveWindow());
        QTest::keyClick(log, Qt::Key_F12);
        TRY_VERIFY(fixture.window->isActiveWindow());
    }

    void openWindowsAreLaidOutAndClosed()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        QVERIFY(!fixture.widget<QAction>("tileAction").isEnabled());
        QVERIFY(fixture.widget<QAction>("tileAction").toolTip().contains(QStringLiteral("No window")));
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up));
        HistogramChooserDriver list(fixture);
        QVERIFY(list.isFilled(2));
        list.press("buttonCheckAll");
        list.accept();
        TRY_VERIFY(list.chooser.isNull());
        fixture.choose("tileAction");
        const QList<QWidget*> windows = fixture.window->windows().onScreen();
        QCOMPARE(windows.size(), 2);
        const QRect screen = fixture.window->screen()->availableGeometry();
        for (const QWidget* window : windows)
            QVERIFY(screen.contains(window->frameGeometry()));
        QVERIFY(!windows.at(0)->frameGeometry().intersects(windows.at(1)->frameGeometry()));
        for (const QWidget* window : windows)
            QVERIFY(!fixture.window->frameGeometry().contains(window->frameGeometry()));
        fixture.choose("cascadeAction");
        QVERIFY(windows.at(0)->frameGeometry().intersects(windows.at(1)->frameGeometry()));
        fixture.choose("closeWindowsAction");
        TRY_VERIFY(!fixture.widget<QAction>("closeWindowsAction").isEnabled());
        QVERIFY(fixture.window->isVisible());
    }
};

QTEST_MAIN(TestConsoleHistograms)
#include "tst_consolehistograms.moc"
