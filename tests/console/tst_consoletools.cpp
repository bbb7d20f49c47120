// The tools on the plots of the console's windows, and their stored views.
#include "app/language.h"
#include "console/consolefixture.h"
#include "console/histogramserver.h"
#include "console/livedataserver.h"
#include "console/windowlists.h"
#include "histograms/histogramchooser.h"
#include "histograms/lastdatabar.h"
#include "histograms/livewindows.h"
#include "histograms/serverhistograms.h"
#include "support/cases.h"
#include "support/plotmouse.h"
#include "support/wait.h"
#include "tables/ratewindow.h"
#include "windows/openwindows.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/binaggregation.h>
#include <tarnis/tools/colourlevels.h>
#include <tarnis/tools/errorbars.h>
#include <tarnis/tools/lineprofile.h>
#include <tarnis/tools/plotlegend.h>
#include <tarnis/tools/plotnavigator.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/referencecurves.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QToolTip>

#include <algorithm>

using namespace console;
using namespace tarnis::testing;

namespace {

std::pair<double, double> rangeX(XYGraphWidget& plot)
{
    std::pair<double, double> ends;
    plot.getMinMaxX(ends.first, ends.second);
    return ends;
}

QString viewFile(const ConsoleFixture& fixture, const QString& id)
{
    return QFileInfo(fixture.store.fileName()).path() + QStringLiteral("/views/") + id + QStringLiteral(".json");
}

} // namespace

class TestConsoleTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void liveWindowsHaveABarAboveTheirPlot()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        for (const char* const id : { "curves", "map" }) {
            QWidget* const window = fixture.find(id);
            auto* const bar = window->findChild<tarnis::PlotToolBar*>();
            QVERIFY2(bar, id);
            QVERIFY(bar->plot() != nullptr);
            QCOMPARE(window->findChildren<tarnis::PlotToolBar*>().size(), 1);
            const auto count = [&](auto tool) { // of the plot itself, not of the plots beside it
                const auto tools = tarnis::InteractiveTool::toolsOf(*bar->plot());
                return std::count_if(tools.begin(), tools.end(), [&](tarnis::InteractiveTool* attached) {
                    return qobject_cast<decltype(tool)>(attached) != nullptr;
                });
            };
            const int onMap = qobject_cast<XY2DGraphWidget*>(bar->plot()) != nullptr ? 1 : 0;
            QCOMPARE(count(static_cast<tarnis::PlotNavigator*>(nullptr)), 1);
            QCOMPARE(count(static_cast<tarnis::BinAggregation*>(nullptr)), 1);
            QCOMPARE(count(static_cast<tarnis::ColourLevels*>(nullptr)), onMap);
            QCOMPARE(count(static_cast<tarnis::LineProfile*>(nullptr)), onMap);
            QCOMPARE(count(static_cast<tarnis::ErrorBars*>(nullptr)), 1 - onMap);
            QCOMPARE(count(static_cast<tarnis::ReferenceCurves*>(nullptr)), 1 - onMap);
            TRY_VERIFY(bar->findChild<QAction*>() != nullptr && bar->actions().size() > 8);
        }
    }

    void aWindowOpensWithTheViewThatItHad()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto* window = fixture.open<Graph1DDialog>("curves");
        QPointer<MultiVectorGraphWidget> plot = window->getGraphWidget();
        TRY_VERIFY(plot->hasData());
        const auto whole = rangeX(*plot);
        auto* const navigator = plot->findChild<tarnis::PlotNavigator*>();
        navigator->zoomIn();
        plot->findChild<tarnis::PlotLegend*>()->setPlace({ 0.5, 0.25 });
        const auto zoomed = rangeX(*plot);
        QVERIFY(zoomed.second - zoomed.first < whole.second - whole.first);
        window->close();
        TRY_VERIFY(plot.isNull());
        QVERIFY(QFile::exists(viewFile(fixture, "curves")));

        window = fixture.open<Graph1DDialog>("curves");
        plot = window->getGraphWidget();
        QCOMPARE(rangeX(*plot), zoomed);
        TRY_VERIFY(plot->hasData());
        QCOMPARE(rangeX(*plot), zoomed);
        QCOMPARE(plot->findChild<tarnis::PlotLegend*>()->place(), QPointF(0.5, 0.25));
        plot->findChild<tarnis::PlotNavigator*>()->goHome();
        QCOMPARE(rangeX(*plot), whole);
    }

    void aDragUnderWayIsNotPartOfTheStoredView()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto* window = fixture.open<Graph1DDialog>("curves");
        QPointer<MultiVectorGraphWidget> plot = window->getGraphWidget();
        TRY_VERIFY(plot->hasData());
        plot->findChild<tarnis::PlotNavigator*>()->zoomIn();
        const auto before = rangeX(*plot);
        PlotMouse mouse(*plot);
        const QPoint middle = plot->rect().center();
        mouse.press(middle, Qt::MiddleButton);
        mouse.move(middle + QPoint(40, 0));
        QVERIFY(rangeX(*plot) != before);
        window->close();
        TRY_VERIFY(plot.isNull());
        plot = fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        QCOMPARE(rangeX(*plot), before);
    }

    void referencesAreScaledByTheLiveTimeOfTheRun()
    {
        LiveServer server;
        server.answer("stat", { Step::text("OK:\nevents: 12\nlive time: 40\n") });
        ConsoleFixture fixture(server);
        const auto* const window = fixture.open<LiveCurves>("curves");
        auto* const references = window->findChild<tarnis::ReferenceCurves*>();
        const auto canScale = [references] {
            references->freeze();
            QMenu* const menu = references->actions().constLast()->menu();
            Q_EMIT menu->aboutToShow();
            const QList<QAction*> entries = menu->actions();
            return std::any_of(entries.begin(), entries.end(), [](const QAction* entry) {
                return entry->text() == QStringLiteral("Scaled to the Live Time") && entry->isEnabled();
            });
        };
        TRY_VERIFY(canScale());
    }

    void saysThatThereIsNoEarlierView()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const plot = fixture.open<LiveCurves>("curves")->getGraphWidget();
        plot->findChild<tarnis::PlotNavigator*>()->goBack();
        TRY_VERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), QStringLiteral("There is no earlier view."));
        QToolTip::hideText();
    }

    void viewsComeBackAtTheNextStart()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "image"));
        XY2DGraphWidget& before = *fixture.open<Graph2DDialog>("map")->getGraphWidget();
        TRY_VERIFY(before.getMaxValue() > 0.0);
        before.findChild<tarnis::LineProfile*>()->setOn(true);
        fixture.choose("quitAction");
        TRY_VERIFY(!fixture.window->isVisible());

        fixture.window = nullptr;
        fixture.window = std::make_unique<MainWindow>(fixture.store);
        fixture.window->statusPoller().setInterval(0);
        fixture.window->show();
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "image"));
        const auto* const after = fixture.window->findChild<XY2DGraphWidget*>();
        QVERIFY(after);
        QVERIFY(after->findChild<tarnis::LineProfile*>()->isOn());
    }

    void aViewThatTheAxisDoesNotReachIsNotShown()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QString path = viewFile(fixture, "curves");
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"format":"tarnis-view","version":1,"x":{"auto":false,"min":1e7,"max":2e7}})");
        file.close();
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto& plot = *fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        QVERIFY(rangeX(plot).second < 1e7);
    }

    void aDamagedViewIsReportedAndLeftAlone()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QString path = viewFile(fixture, "curves");
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"format\":");
        file.close();
        fixture.use(server);
        QVERIFY(fixture.reaches(ServerState::Up) && isListed(fixture, "time"));
        auto* const window = fixture.open<Graph1DDialog>("curves");
        QVERIFY2(fixture.alert().text.contains(path), qPrintable(fixture.alert().text));
        QPointer<QWidget> guard = window;
        window->close();
        TRY_VERIFY(guard.isNull());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("{\"format\":"));
    }

    // Tools that end with Escape, filtered maps, one set of tools

    void escapeLeavesTheToolAndCtrlWCloses_data()
    {
        addColumns<QByteArray, QStringList>("id", "tools");
        const QStringList common { "Rectangle", "Zoom In", "Zoom Out", "Move" };
        QTest::newRow("curves") << QByteArray("curves") << common + QStringList { "Select Time Range" };
        QTest::newRow("single row") << QByteArray("single-row") << common;
        QTest::newRow("map") << QByteArray("map") << common + QStringList { "1D Cut", "Select ROI..." };
        QTest::newRow("rate") << QByteArray("rate") << common;
        QTest::newRow("statistics") << QByteArray("statistics") << QStringList();
    }
    void escapeLeavesTheToolAndCtrlWCloses()
    {
        QFETCH(QByteArray, id);
        QFETCH(QStringList, tools);
        LiveServer server;
        ConsoleFixture fixture(server);
        const QPointer<QWidget> window = fixture.find(id.constData());
        window->activateWindow();
        TRY_COMPARE(QApplication::activeWindow(), window.data()); // a shortcut needs it
        if (auto* const curves = qobject_cast<LiveCurves*>(window.data()); curves && id == "curves")
            QVERIFY(isFilled(*curves)); // a range needs data
        auto* const plot = window->findChild<XYGraphWidget*>();
        for (const QString& text : tools) {
            QAction* const tool = entryOf(*plot, text);
            QVERIFY2(tool, qPrintable(text));
            tool->trigger();
            QVERIFY(tool->isChecked());
            QVERIFY(plot->cursor().shape() != Qt::ArrowCursor || text.startsWith(u"1D") || text.contains(u"ROI"));
            QTest::keyClick(window, Qt::Key_Escape);
            QVERIFY2(!tool->isChecked(), qPrintable(text));
            QCOMPARE(plot->cursor().shape(), Qt::ArrowCursor);
            QVERIFY(window->isVisible());
        }
        QTest::keyClick(window, Qt::Key_Escape);
        QVERIFY(window->isVisible());
        window->activateWindow(); // the box of a tool may have been active
        TRY_COMPARE(QApplication::activeWindow(), window.data());
        QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
        TRY_VERIFY(window.isNull() || !window->isVisible());
    }

    void escapeInTheBoxOfAToolLeavesTheTool()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveMap>("map");
        QVERIFY(isFilled(*window));
        XY2DGraphWidget& plot = *window->getGraphWidget();
        plot.SetRoiEnabled(true);
        QWidget* const box = plot.GetViewSelectedROI()->window();
        QVERIFY(box->isVisible());
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!plot.IsRoiEnabled());
        QVERIFY(!box->isVisible());
        QVERIFY(window->isVisible());
    }

    void escapeStillClosesADialog()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        const QPointer<QWidget> window = fixture.find("histograms");
        QTest::keyClick(window, Qt::Key_Escape);
        TRY_VERIFY(window.isNull() || !window->isVisible());
    }

    // Filtered maps.

    void aFilteredMapHasItsOwnTitle()
    {
        LiveServer server;
        ConsoleFixture fixture(server);
        auto* const window = fixture.open<LiveMap>("map");
        QVERIFY(isFilled(*window));
        window->onFilter(); // the filter's dialog finds the slot by its name
        auto* const dialog = window->findChild<Graph2DFilterDialog*>();
        QVERIFY(QMetaObject::invokeMethod(dialog, "accepted", Q_ARG(Graph2DFilter, Graph2DFilter())));
        const auto maps = window->findChildren<Graph2DDialog*>();
        QCOMPARE(maps.size(), 1);
        const QRegularExpression english(QStringLiteral("^Image \\(filtered, \\d\\d:\\d\\d:\\d\\d\\)$"));
        QVERIFY2(english.match(maps.first()->windowTitle()).hasMatch(), qPrintable(maps.first()->windowTitle()));
        QCOMPARE(window->windowTitle(), QStringLiteral("Image"));
        const QString time = maps.first()->windowTitle().right(9);
        setLanguage(QStringLiteral("de"));
        const auto title = [&] { return maps.first()->windowTitle(); };
        TRY_VERIFY2(title().contains(QStringLiteral("gefiltert")), qPrintable(title()));
        QVERIFY(title().endsWith(time));
        setLanguage(QStringLiteral("en"));
        TRY_VERIFY2(english.match(title()).hasMatch(), qPrintable(title()));
    }

    // One set of tools.

    void everyWindowOfTheSameDataHasTheSameTools_data()
    {
        addColumns<QByteArray, QString>("id", "other");
        QTest::newRow("curves") << QByteArray("curves") << "Histogram time";
        QTest::newRow("map") << QByteArray("map") << "Histogram image";
    }
    void everyWindowOfTheSameDataHasTheSameTools()
    {
        QFETCH(QByteArray, id);
        QFETCH(QString, other);
        LiveServer server;
        server.answer("hists",
            { Step::text("OK:\ntime: kind=1d rows=8 bins=1024 min=0 max=40000 label=Time unit=us\n"
                         "image: kind=2d binsx=256 minx=0 maxx=256 binsy=256 miny=0 maxy=256\n") });
        ConsoleFixture fixture(server);
        TRY_VERIFY(fixture.window->histograms().find(QStringLiteral("image")));
        auto* const chooser = fixture.open<HistogramChooser>("histograms");
        TRY_COMPARE(chooser->count(), 2);
        chooser->setChecked(0, true);
        chooser->setChecked(1, true);
        acceptChoice(*chooser);
        const auto toolsOf = [](const QWidget& window) {
            QStringList tools;
            for (const QAction* const action : window.findChild<XYGraphWidget*>()->actions()) {
                if (action->isVisible())
                    tools.append(action->text());
            }
            return tools;
        };
        const QStringList tools = toolsOf(*fixture.find(id.constData()));
        QStringList others;
        TRY_VERIFY([&] {
            for (const QWidget* const window : fixture.window->windows().all()) {
                if (window->windowTitle() == other)
                    others = toolsOf(*window);
            }
            return !others.isEmpty();
        }());
        QCOMPARE(others, tools);
        QVERIFY(tools.contains(QStringLiteral("Select Time Range")) || tools.contains(QStringLiteral("Select ROI...")));
    }
};

QTEST_MAIN(TestConsoleTools)
#include "tst_consoletools.moc"
