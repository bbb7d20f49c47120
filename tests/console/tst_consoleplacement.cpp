// Placement of the console's windows and the boxes of their plots: arithmetic, independence, stored positions.
#include "app/language.h"
#include "console/consolefixture.h"
#include "console/histogramserver.h"
#include "console/windowlists.h"
#include "histograms/histogramchooser.h"
#include "histograms/histogramlist.h"
#include "plots/boxplacer.h"
#include "screen/placement.h"
#include "screen/windowframe.h"
#include "support/cases.h"
#include "support/wait.h"
#include "windows/openwindows.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/dialogs/graph2dfilterdialog.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotstyle.h>

#include <QApplication>
#include <QWindow>

using namespace console;
using namespace tarnis::testing;

namespace {

class MapServer : public ScriptedServer {
public:
    MapServer()
    {
        answer("hist1d time 0 7 bins:1024", { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") });
        answer("hist1d counts 0 0 bins:8", { Step::doubles({ 1, 2, 3, 4, 5, 6, 7, 8 }, "OK:\n") });
        answer("hist2d image bins:256x256",
            { Step::doubles(QList<double>(256 * 256, 1.0), "OK: exported 256 x 256 y\n") });
        answer("stat", { Step::text("OK:\nevents: 12\n") });
        answer("hists",
            { Step::text("OK:\ntime: kind=1d rows=8 bins=1024 min=0 max=40\ncounts: kind=1d bins=8 min=0 max=8\n"
                         "image: kind=2d binsx=256 minx=0 maxx=1 binsy=256 miny=0 maxy=1\n") });
    }
};

struct PlacementConsole {
    PlacementConsole()
    {
        fixture.use(server);
        if (!fixture.reaches(ServerState::Up) || !isListed(fixture, "image"))
            qFatal("no server");
    }
    QRect screen() const { return fixture.window->screen()->availableGeometry(); }

    MapServer server;
    ConsoleFixture fixture;
};

/// The visible boxes of a plot, wherever they are.
QList<QDialog*> boxesOf(const XYGraphWidget& plot)
{
    QList<QDialog*> boxes = plot.window()->findChildren<QDialog*>();
    boxes.removeIf([&](const QDialog* box) { return !box->isVisible() || BoxPlacer::plotOf(*box) != &plot; });
    return boxes;
}

} // namespace

class TestConsolePlacement : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void aFreePlaceIsFound()
    {
        const QRect area(0, 0, 1000, 800);
        const QRect console(0, 0, 600, 800);
        const QRect first = placeOfNewWindow({ 400, 300 }, area, { console });
        QCOMPARE(first, QRect(600, 0, 400, 300));
        const QRect second = placeOfNewWindow({ 400, 300 }, area, { console, first });
        QCOMPARE(second, QRect(600, 300, 400, 300));
    }

    void roomIsAPlaceThatIsFreeForThreeQuarters()
    {
        const QRect area(0, 0, 1000, 800);
        const QRect console(0, 0, 600, 800);
        QVERIFY(hasRoomFor({ 400, 800 }, area, { console }));
        QVERIFY(hasRoomFor({ 533, 800 }, area, { console }));
        QVERIFY(!hasRoomFor({ 540, 800 }, area, { console }));
        QVERIFY(!hasRoomFor({ 300, 300 }, area, { area }));
    }

    void withoutAFreePlaceWindowsAreACascade()
    {
        const QRect area(0, 0, 1000, 800);
        QList<QRect> occupied { area };
        QList<QPoint> corners;
        for (int i = 0; i < 5; ++i) {
            const QRect place = placeOfNewWindow({ 500, 400 }, area, occupied);
            QVERIFY(area.contains(place));
            QVERIFY(!corners.contains(place.topLeft()));
            corners.append(place.topLeft());
            occupied.append(place);
        }
    }

    void aWindowLargerThanTheScreenIsReduced()
    {
        const QRect area(100, 50, 800, 600);
        QCOMPARE(placeOfNewWindow({ 5000, 5000 }, area, {}), area);
        QCOMPARE(inside(QRect(-500, 5000, 300, 200), area), QRect(100, 450, 300, 200));
        QCOMPARE(inside(QRect(0, 0, 3000, 200), area), QRect(100, 50, 800, 200));
    }

    void boxesShareThePane()
    {
        const QRect pane(10, 20, 200, 600);
        QCOMPARE(stackInPane(pane, { 100, 100, 100 }, { false, true, true }),
            (QList<QRect> { QRect(10, 20, 200, 100), QRect(10, 120, 200, 250), QRect(10, 370, 200, 250) }));
        const QList<QRect> reduced = stackInPane(pane, { 600, 600 }, { false, true });
        QCOMPARE(reduced.last().bottom(), pane.bottom());
    }

    void windowsAreIndependentOfTheConsole()
    {
        PlacementConsole console;
        QWidget* const window = console.fixture.find("curves");
        QVERIFY(window);
        QVERIFY(window->isVisible());
        QVERIFY(window->windowHandle());
        QVERIFY(!window->windowHandle()->transientParent());
        QCOMPARE(window->windowType(), Qt::Window);
        console.fixture.window->showMinimized();
        QVERIFY(window->isVisible());
    }

    void windowsAreMappedOnce()
    {
        // A window manager may leave a window hidden that is mapped, unmapped and mapped again at once.
        class HideRecorder : public QObject {
        public:
            HideRecorder() { qApp->installEventFilter(this); }
            bool eventFilter(QObject* object, QEvent* event) override
            {
                if (event->type() == QEvent::Hide && qobject_cast<QWindow*>(object))
                    names.append(object->objectName());
                return false;
            }
            QStringList names;
        };
        PlacementConsole console;
        const HideRecorder recorder;
        for (const char* const id : { "curves", "map", "statistics", "rate", "stat-snapshot", "modules" }) {
            const QWidget* const window = console.fixture.find(id);
            QVERIFY2(window, id);
            QVERIFY2(window->isVisible() && window->windowHandle()->isVisible(), id);
            QVERIFY2(!window->testAttribute(Qt::WA_DontShowOnScreen), id);
        }
        QCOMPARE(recorder.names, QStringList());
    }

    void windowsOpenOnTheScreenAtDifferentPlaces()
    {
        PlacementConsole console;
        QList<QPoint> corners;
        for (const char* const id : { "curves", "map", "statistics", "rate" }) {
            QWidget* const window = console.fixture.find(id);
            QVERIFY(window);
            QVERIFY2(console.screen().contains(window->frameGeometry().topLeft()), id);
            QVERIFY2(!corners.contains(window->pos()), id);
            corners.append(window->pos());
        }
    }

    void aNewPlotIsLargeEnoughToBeRead()
    {
        PlacementConsole console;
        const QSize most = console.screen().size() * 3 / 5;
        for (const char* const id : { "curves", "map" }) {
            const QWidget* const window = console.fixture.find(id);
            QVERIFY(window);
            const QFontMetrics metrics = window->fontMetrics();
            const int slack = 2 * metrics.height(); // what frames take of the screen
            QVERIFY2(window->height() >= std::min(32 * metrics.height(), most.height()) - slack, id);
            QVERIFY2(window->width() >= std::min(110 * metrics.averageCharWidth(), most.width()) - slack, id);
            QVERIFY2(console.screen().size().boundedTo(window->size()) == window->size(), id);
        }
    }

    void windowsComeBackAtTheirPlaces()
    {
        PlacementConsole console;
        QWidget* const window = console.fixture.find("statistics");
        QVERIFY(window);
        const QRect place(console.screen().topLeft() + QPoint(40, 60), window->size() + QSize(17, 11));
        window->setGeometry(place);
        QSettings& store = console.fixture.store;
        console.fixture.window->leave();
        QVERIFY(console.fixture.reaches(ServerState::Off));
        TRY_VERIFY(!console.fixture.window->isVisible());

        MainWindow next(store);
        next.statusPoller().setInterval(0);
        next.show();
        Options options;
        options.server = ServerChoice { ServerChoice::Kind::Remote, {}, ScriptedServer::host(), console.server.port() };
        options.prompt = "> ";
        next.startServer(options);
        TRY_VERIFY(next.windows().find(QStringLiteral("statistics")));
        QCOMPARE(next.windows().find(QStringLiteral("statistics"))->geometry(), place);
        next.leave();
        TRY_VERIFY(!next.isVisible());
    }

    void boxesOfAMaximizedMapAreInItsPane()
    {
        PlacementConsole console;
        auto* const map = console.fixture.open<Graph2DDialog>("map");
        QVERIFY(map);
        map->setGeometry(console.screen());
        XY2DGraphWidget& plot = *map->getGraphWidget();
        TRY_VERIFY(plot.width() > 100);
        const int before = plot.width();
        plot.on1dCut(true);
        TRY_COMPARE(boxesOf(plot).size(), 3);
        TRY_VERIFY(BoxPlacer::of(*map).hasPane());
        TRY_VERIFY(plot.width() < before);
        const QList<QDialog*> boxes = boxesOf(plot);
        const QRect plotOnScreen(plot.mapToGlobal(QPoint(0, 0)), plot.size());
        const auto areInThePane = [&] {
            return std::all_of(boxes.begin(), boxes.end(), [&](const QDialog* box) {
                return map->geometry().contains(box->geometry()) && !plotOnScreen.intersects(box->geometry())
                    && console.screen().contains(box->geometry());
            });
        };
        TRY_VERIFY(areInThePane());
        plot.close1dCut();
        TRY_COMPARE(plot.width(), before);
    }

    void boxesWithRoomAroundTheWindowStayThere()
    {
        PlacementConsole console;
        auto* const curves = console.fixture.open<Graph1DDialog>("curves");
        QVERIFY(curves);
        auto& plot = *curves->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        curves->setGeometry(QRect(console.screen().topLeft() + QPoint(20, 200), QSize(400, 300)));
        plot.SetEnableSelectXRange(true);
        TRY_VERIFY(!boxesOf(plot).isEmpty());
        QCoreApplication::processEvents();
        QVERIFY(!BoxPlacer::of(*curves).hasPane());
        const QDialog& box = *boxesOf(plot).constFirst();
        QVERIFY(!curves->frameGeometry().adjusted(1, 1, -1, -1).intersects(box.geometry())); // they touch
    }

    void aBoxThatIsAPartOfTheWindowIsServedLikeAWindow()
    {
        PlacementConsole console;
        auto* const window = console.fixture.open<Graph2DDialog>("map");
        QVERIFY(window);
        XY2DGraphWidget& plot = *window->getGraphWidget();
        plot.SetRoiEnabled(true);
        auto* const box = qobject_cast<QDialog*>(plot.GetViewSelectedROI()->window());
        QVERIFY(box);
        QVERIFY(!box->isHidden());
        box->hide();
        auto* const profile = new MultiVectorGraphWidget(box);
        BoxPlacer::of(*window).makePart(*box);
        box->show();
        QVERIFY(!box->isWindow());
        QCOMPARE(boxesOf(plot), QList<QDialog*> { box });
        QVERIFY(profile->findChild<tarnis::PlotStyle*>()); // as every plot of the console
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!plot.IsRoiEnabled());
        QVERIFY(window->isVisible());
    }

    void aDialogOpensBesideItsData()
    {
        PlacementConsole console;
        auto* const window = console.fixture.open<Graph2DDialog>("map");
        QVERIFY(window);
        const QRect screen = console.screen();
        window->setGeometry(QRect(screen.bottomRight() - QPoint(419, 299), QSize(400, 280)));
        QVERIFY(QMetaObject::invokeMethod(window, "onFilter"));
        const auto* const dialog = window->findChild<Graph2DFilterDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        const QRect data = window->frameGeometry();
        QVERIFY(screen.contains(dialog->frameGeometry()));
        QVERIFY(!dialog->frameGeometry().intersects(data));
        QVERIFY(dialog->frameGeometry().intersects(data.adjusted(-10, -10, 10, 10))); // not anywhere on the screen
    }

    void theBoxesOfAPlotHaveTheTitleOfItsWindow()
    {
        PlacementConsole console;
        auto* const map = console.fixture.open<Graph2DDialog>("map");
        QVERIFY(map);
        XY2DGraphWidget& plot = *map->getGraphWidget();
        plot.SetRoiEnabled(true);
        QDialog* const box = boxesOf(plot).value(0);
        QVERIFY(box && box->isWindow());
        QCOMPARE(box->windowTitle(), map->windowTitle());
    }

    void aFilteredMapOpensBesideItsMap()
    {
        PlacementConsole console;
        auto* const map = console.fixture.open<Graph2DDialog>("map");
        QVERIFY(map);
        TRY_VERIFY(map->getGraphWidget()->getMaxValue() > 0.0);
        map->setGeometry(QRect(console.screen().topLeft() + QPoint(10, 60), QSize(380, 400)));
        QVERIFY(QMetaObject::invokeMethod(map, "onFilter"));
        auto* const filter = map->findChild<Graph2DFilterDialog*>();
        QVERIFY(filter);
        filter->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        const auto filtered = [&] { return map->findChild<Graph2DDialog*>(QString(), Qt::FindDirectChildrenOnly); };
        TRY_VERIFY(filtered() != nullptr && filtered()->isVisible());
        const auto isBeside = [&] { return filtered()->frameGeometry().left() > map->frameGeometry().left() + 100; };
        TRY_VERIFY(isBeside());
    }

    void tiledPlotsKeepARoomToDrawIn()
    {
        PlacementConsole console;
        for (const char* const id : { "curves", "map", "statistics", "rate" })
            QVERIFY(console.fixture.find(id));
        console.fixture.window->windows().tile();
        const auto plots = [&] {
            const QList<QWidget*> windows = console.fixture.window->windows().all();
            return std::all_of(windows.begin(), windows.end(), [&](const QWidget* window) {
                const auto* const plot = window->findChild<XYGraphWidget*>();
                return !plot || plot->height() >= 100;
            });
        };
        TRY_VERIFY(plots());
    }

    void aSmallMapIsReadableBesideItsCut()
    {
        PlacementConsole console;
        auto* const map = console.fixture.open<Graph2DDialog>("map");
        QVERIFY(map);
        XY2DGraphWidget& plot = *map->getGraphWidget();
        map->setGeometry(console.screen());
        plot.on1dCut(true);
        TRY_VERIFY(BoxPlacer::of(*map).hasPane());
        map->resize(1, 1);
        TRY_VERIFY(map->height() < console.screen().height());
        QVERIFY(BoxPlacer::of(*map).hasPane());
        QVERIFY(tarnis::PlotMapping::of(plot).plotRect().width() >= 100);
    }

    void aWindowWithAPaneComesBackAtItsSize()
    {
        PlacementConsole console;
        const auto opened = [&] {
            auto* const map = console.fixture.open<Graph2DDialog>("map");
            if (map)
                map->getGraphWidget()->on1dCut(true);
            return map;
        };
        const auto hasPane = [](QDialog& map) { return BoxPlacer::of(map).hasPane(); };
        QPointer<Graph2DDialog> map = opened();
        QVERIFY(map);
        map->setGeometry(QRect(console.screen().topLeft() + QPoint(200, 100), QSize(500, 400)));
        TRY_VERIFY(hasPane(*map));
        map->resize(620, 420); // by the user, or tiled
        TRY_COMPARE(map->size(), QSize(620, 420));
        for (int i = 0; i < 2; ++i) {
            map->close();
            TRY_VERIFY(map.isNull());
            map = opened();
            QVERIFY(map);
            TRY_VERIFY(hasPane(*map));
            QCOMPARE(map->size(), QSize(620, 420));
        }
    }

    void theConsoleFitsOnASmallScreen()
    {
        const ConsoleFixture fixture; // the screen of this platform has 800 x 600 pixels
        const QSize size = fixture.window->size();
        const QSize screen = fixture.window->screen()->availableSize();
        QVERIFY(size.width() <= screen.width() && size.height() <= screen.height());
        const QSize least = fixture.window->minimumSizeHint();
        QVERIFY2(least.width() <= screen.width() && least.height() <= screen.height(),
            qPrintable(QStringLiteral("%1 x %2").arg(least.width()).arg(least.height())));
    }

    void theConsoleFitsOnASmallScreenWithLargeTextsInGerman()
    {
        QSettings settings(QStringLiteral("none.ini"), QSettings::IniFormat);
        MainWindow window(settings, QStringLiteral("de"));
        window.show();
        const QSize least = window.minimumSizeHint();
        const auto restored = qScopeGuard([] { setLanguage(QStringLiteral("en")); });
        // 1024 x 700 pixels at a scale of 2.
        QVERIFY2(least.width() <= 512 && least.height() <= 350,
            qPrintable(QStringLiteral("%1 x %2").arg(least.width()).arg(least.height())));
    }

    // Tiles and cascades

    // Windows on the screen.

    void tilesFillTheArea_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : { 1, 2, 3, 4, 5, 6, 7, 12, 30 })
            QTest::addRow("%d windows", count) << count;
    }
    void tilesFillTheArea()
    {
        QFETCH(int, count);
        const QRect area(100, 30, 1920, 1050);
        const QList<QRect> cells = tileCells(count, area);
        QCOMPARE(cells.size(), count);
        qint64 covered = 0;
        for (qsizetype i = 0; i < cells.size(); ++i) {
            QVERIFY(area.contains(cells.at(i)));
            covered += qint64(cells.at(i).width()) * cells.at(i).height();
            for (qsizetype k = i + 1; k < cells.size(); ++k)
                QVERIFY(!cells.at(i).intersects(cells.at(k)));
        }
        QCOMPARE(covered, qint64(area.width()) * area.height());
    }

    void theConsoleKeepsAPartOfTheScreen_data()
    {
        addColumns<QRect, QSize, bool>("console", "least", "stays");
        QTest::newRow("small, at the left") << QRect(100, 30, 900, 1050) << QSize(800, 600) << true;
        QTest::newRow("small, at the bottom") << QRect(100, 700, 1920, 380) << QSize(800, 300) << true;
        QTest::newRow("in the middle") << QRect(600, 200, 900, 700) << QSize(800, 600) << false;
        QTest::newRow("maximized") << QRect(100, 30, 1920, 1050) << QSize(800, 600) << false;
        QTest::newRow("too wide for a strip") << QRect(100, 30, 1920, 1050) << QSize(1500, 600) << false;
        QTest::newRow("too large for any") << QRect(100, 30, 1920, 1050) << QSize(1500, 900) << false;
        QTest::newRow("on another screen") << QRect(5000, 30, 900, 700) << QSize(800, 600) << false;
    }
    void theConsoleKeepsAPartOfTheScreen()
    {
        QFETCH(QRect, console);
        QFETCH(QSize, least);
        QFETCH(bool, stays);
        const QRect area(100, 30, 1920, 1050);
        const ScreenSplit split = splitScreen(area, console, least);
        QCOMPARE(split.console == console, stays);
        QVERIFY(area.contains(split.console) && area.contains(split.windows));
        QVERIFY(!split.console.intersects(split.windows));
        QVERIFY(split.windows.width() * 5 >= area.width() * 2 - 5);
        QVERIFY(split.windows.height() * 5 >= area.height() * 2 - 5);
        if (least.width() <= area.width() * 3 / 5)
            QVERIFY(split.console.width() >= least.width());
    }

    void noWindowsNoTiles()
    {
        QVERIFY(tileCells(0, QRect(0, 0, 800, 600)).isEmpty());
        QVERIFY(cascadeCells(0, QRect(0, 0, 800, 600)).isEmpty());
        QCOMPARE(tileCells(2, QRect()).size(), 2);
    }

    void cascadedWindowsStayInTheArea()
    {
        const QRect area(100, 30, 1280, 1000);
        const QList<QRect> cells = cascadeCells(40, area);
        QCOMPARE(cells.size(), 40);
        for (const QRect& cell : cells)
            QVERIFY(area.contains(cell));
        QVERIFY(cells.at(1).topLeft() != cells.at(0).topLeft());
    }

    void waylandPlacesWindowsItself()
    {
        QVERIFY(!canPlaceWindows(QStringLiteral("wayland")));
        QVERIFY(!canPlaceWindows(QStringLiteral("wayland-egl")));
        QVERIFY(canPlaceWindows(QStringLiteral("xcb")));
        QVERIFY(canPlaceWindows(QStringLiteral("offscreen")));
    }
};

QTEST_MAIN(TestConsolePlacement)
#include "tst_consoleplacement.moc"
