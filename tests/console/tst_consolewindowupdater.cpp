// Open histogram windows when the server's list changes: each affected window is replaced.
#include "console/consolefixture.h"
#include "console/histogramserver.h"
#include "console/windowlists.h"
#include "histograms/histogramlist.h"
#include "plots/plotlinks.h"
#include "support/visibleplot.h"
#include "support/wait.h"
#include "windows/openwindows.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcrosshair.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>

using namespace console;
using namespace tarnis::testing;

namespace {

/// Different from those of twoHistograms.
const QByteArray otherTimes("OK:\ntime: kind=1d bins=5 min=0 max=10\n");

/// Connected, with the list read and the arrival times shown.
QWidget* openCurves(ScriptedServer& server, ConsoleFixture& fixture)
{
    fixture.use(server);
    const auto isOnShow = [&] {
        auto* const curves = fixture.open<Graph1DDialog>("curves");
        return curves && curves->getGraphWidget()->hasData();
    };
    if (!isListed(fixture, "time") || !eventually(isOnShow))
        qFatal("no curves");
    return fixture.find("curves");
}

/// The server ends and is back with this list, which has been read.
void comeBackWith(ScriptedServer& server, ConsoleFixture& fixture, const QByteArray& list)
{
    server.answer("hists", { Step::text(list) });
    const qsizetype asked = server.requests().count("hists");
    fixture.choose("shutDownAction");
    if (!fixture.reaches(ServerState::Off))
        qFatal("not off");
    const QList<HistogramInfo> all = histogramsOf(QString::fromUtf8(list));
    fixture.choose("startAction");
    if (!fixture.reaches(ServerState::Up))
        qFatal("not back");
    const auto isRead = [&] {
        return all.isEmpty() ? server.requests().count("hists") > asked
                             : fixture.window->histograms().find(all.first().name).has_value();
    };
    if (!eventually(isRead))
        qFatal("no list");
}

} // namespace

class TestConsoleWindowUpdater : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void updatesWindowsForANewList()
    {
        HistogramServer server;
        server.answer("hist1d time 0 2 bins:1000", { Step::doubles(QList<double>(3000, 1.0), "OK:\n") });
        server.answer("hist2d image bins:3x2", { Step::doubles({ 1, 2, 3, 4, 5, 9 }, "OK: exported 3 x 2 y\n") });
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.opensTheMap());
        OpenWindows& windows = fixture.window->windows();
        const QPointer<QWidget> curves = fixture.find("curves");
        const QPointer<QWidget> map = windows.find(QStringLiteral("histogram image"));
        QVERIFY(curves && map);
        curves->setGeometry(40, 50, 700, 400);
        curves->findChild<QComboBox*>(QStringLiteral("typeComboBox"))->setCurrentIndex(1);
        map->setGeometry(10, 20, 500, 450);
        map->showMaximized();
        const QStringList titles = titlesOf(windows.all());
        comeBackWith(server, fixture,
            "OK:\ntime: kind=1d rows=3 bins=2000 min=5 max=500 label=Flight unit=ms\n"
            "image: kind=2d binsx=3 minx=-2 maxx=2 binsy=2 miny=0 maxy=7\n");
        TRY_VERIFY(curves.isNull() && map.isNull());
        auto* const freshCurves = qobject_cast<Graph1DDialog*>(windows.find(QStringLiteral("curves")));
        auto* const freshMap = qobject_cast<Graph2DDialog*>(windows.find(QStringLiteral("histogram image")));
        QVERIFY(freshCurves && freshMap);
        QCOMPARE(titlesOf(windows.all()), titles); // in the order in which they were opened
        QVERIFY(server.waitForRequest("hist1d time 0 2 bins:1000"));
        TRY_VERIFY(freshCurves->getGraphWidget()->hasData());
        double min = 0.0;
        double max = 0.0;
        freshCurves->getGraphWidget()->getMinMaxX(min, max);
        QCOMPARE(min, 5.0);
        QCOMPARE(max, 500.0);
        QCOMPARE(freshCurves->getGraphWidget()->getNameX(), "Flight [ms]");
        QCOMPARE(freshCurves->geometry(), QRect(40, 50, 700, 400));
        QCOMPARE(freshCurves->findChild<QComboBox*>(QStringLiteral("typeComboBox"))->currentIndex(), 1);
        TRY_COMPARE(freshMap->getGraphWidget()->getMaxValue(), 9.0);
        freshMap->getGraphWidget()->getMinMaxY(min, max);
        QCOMPARE(max, 7.0);
        QVERIFY(freshMap->isMaximized());
        QCOMPARE(freshMap->normalGeometry(), QRect(10, 20, 500, 450));
    }

    void theKeyboardStaysWhereItIs_data()
    {
        QTest::addColumn<QString>("place");
        QTest::newRow("in the console") << "console";
        QTest::newRow("in the window") << "window";
        QTest::newRow("in a box of the window") << "box";
    }
    void theKeyboardStaysWhereItIs()
    {
        QFETCH(QString, place);
        HistogramServer server;
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        QDialog* const box = new QDialog(curves);
        box->show();
        QWidget& has = place == u"console" ? *fixture.window : place == u"window" ? *curves : *box;
        OpenWindows::bringForward(has);
        TRY_VERIFY(has.isActiveWindow());
        comeBackWith(server, fixture, otherTimes);
        TRY_VERIFY(curves.isNull());
        OpenWindows& windows = fixture.window->windows();
        QWidget* const fresh = windows.find(QStringLiteral("curves"));
        TRY_COMPARE(QApplication::activeWindow(), place == u"console" ? fixture.window.get() : fresh);
        QCOMPARE(windows.front(), fresh);
    }

    void whatTheListDoesNotChangeStays_data()
    {
        QTest::addColumn<QByteArray>("list");
        QTest::newRow("the same") << twoHistograms;
        QTest::newRow("gone from the list") << QByteArray("OK:\ntotal: kind=1d bins=4 min=0 max=1\n");
        QTest::newRow("no list") << QByteArray("NG:unknown command 'hists'\n");
    }
    void whatTheListDoesNotChangeStays()
    {
        QFETCH(QByteArray, list);
        HistogramServer server;
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        const qsizetype polls = server.requests().count("hist1d time 0 1 bins:4");
        comeBackWith(server, fixture, list);
        TRY_VERIFY(server.requests().count("hist1d time 0 1 bins:4") >= polls + 2);
        QVERIFY(curves && curves->isVisible());
        QCOMPARE(fixture.window->windows().find(QStringLiteral("curves")), curves.data());
    }

    void aListThatComesLateCountsForOpenWindows()
    {
        HistogramServer server;
        server.answer("hists", { Step::hold("list"), Step::text(twoHistograms) });
        ConsoleFixture fixture(server);
        QVERIFY(server.waitForHold("list"));
        const QPointer<QWidget> curves = fixture.find("curves");
        QVERIFY(server.waitForRequest("hist1d time 0 7 bins:1024"));
        server.open("list");
        TRY_VERIFY(curves.isNull());
        QVERIFY(server.waitForRequest("hist1d time 0 1 bins:4"));
        const QPointer<QWidget> fresh = fixture.window->windows().find(QStringLiteral("curves"));
        QVERIFY(fresh);
        fixture.window->histograms().read(QString::fromUtf8(twoHistograms)); // the same once more
        QCOMPARE(fixture.find("curves"), fresh.data());
    }

    void aMinimizedWindowStaysMinimized()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        curves->showMinimized();
        comeBackWith(server, fixture, otherTimes);
        TRY_VERIFY(curves.isNull());
        const QWidget* const fresh = fixture.window->windows().find(QStringLiteral("curves"));
        QVERIFY(fresh && fresh->isMinimized());
        QVERIFY(fixture.window->windows().onScreen().isEmpty());
    }

    void aPictureThatIsKeptStaysUntilTheNextUpdate_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<bool>("isLive");
        QTest::newRow("button") << "updatePushButton" << false;
        QTest::newRow("check box") << "autoUpdateCheckBox" << true;
    }
    void aPictureThatIsKeptStaysUntilTheNextUpdate()
    {
        QFETCH(QString, control);
        QFETCH(bool, isLive);
        HistogramServer server;
        server.answer("hist1d time 0 0 bins:5", { Step::doubles({ 1, 2, 3, 4, 5 }, "OK:\n") });
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        curves->findChild<QAbstractButton*>(QStringLiteral("autoUpdateCheckBox"))->setChecked(false);
        comeBackWith(server, fixture, otherTimes);
        QVERIFY(curves);
        QCOMPARE(fixture.find("curves"), curves.data());
        auto* const button = curves->findChild<QAbstractButton*>(control);
        TRY_VERIFY(button->isEnabled());
        QVERIFY(!server.requests().contains("hist1d time 0 0 bins:5"));
        button->click();
        TRY_VERIFY(curves.isNull());
        auto* const fresh = qobject_cast<Graph1DDialog*>(fixture.window->windows().find(QStringLiteral("curves")));
        QVERIFY(fresh);
        TRY_VERIFY(fresh->getGraphWidget()->hasData());
        QCOMPARE(fresh->isAutoUpdate(), isLive);
    }

    void theViewOfThePlotStays_data()
    {
        QTest::addColumn<QByteArray>("time");
        QTest::addColumn<tarnis::AxisRange>("range");
        QTest::addColumn<bool>("isLinked");
        const tarnis::AxisRange zoomed { 10000, 20000 };
        QTest::newRow("other bins") << QByteArray("bins=8 min=0 max=40000 label=Time unit=us") << zoomed << true;
        QTest::newRow("range outside") << QByteArray("bins=4 min=0 max=500 label=Time unit=us")
                                       << tarnis::AxisRange { 0, 500 } << true;
        QTest::newRow("other unit") << QByteArray("bins=4 min=0 max=40000 label=Time unit=ms")
                                    << tarnis::AxisRange { 0, 40000 } << false;
    }
    void theViewOfThePlotStays()
    {
        QFETCH(QByteArray, time);
        QFETCH(tarnis::AxisRange, range);
        QFETCH(bool, isLinked);
        HistogramServer server;
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        auto& before = *curves->findChild<MultiVectorGraphWidget*>();
        VectorGraphWidget other;
        other.init(before.getNameX(), QStringLiteral("Counts"), 40000, 50, true, true);
        auto* const link = new PlotLink(&other); // owned by the plot
        link->join(QStringLiteral("A"));
        curves->findChild<PlotLink*>()->join(QStringLiteral("A"));
        curves->findChild<tarnis::PlotCrosshair*>()->setOn(true);
        showX(before, { 10000, 20000 });
        comeBackWith(server, fixture, "OK:\ntime: kind=1d rows=2 " + time + "\n");
        TRY_VERIFY(curves.isNull());
        const QWidget* const fresh = fixture.window->windows().find(QStringLiteral("curves"));
        QVERIFY(fresh);
        auto& after = *fresh->findChild<MultiVectorGraphWidget*>();
        TRY_COMPARE(rangeX(after), range);
        QVERIFY(fresh->findChild<tarnis::PlotCrosshair*>()->isOn());
        QCOMPARE(fresh->findChild<PlotLink*>()->group(), QStringLiteral("A"));
        showX(other, { 100, 200 });
        TRY_COMPARE(rangeX(after), isLinked ? (tarnis::AxisRange { 100, 200 }) : range);
    }

    void keepsAFilteredMapAfterItsMapCloses()
    {
        HistogramServer server;
        ConsoleFixture fixture(server);
        HistogramChooserDriver list(fixture);
        QVERIFY(list.opensTheMap());
        const QString id = QStringLiteral("histogram image");
        const QPointer<Graph2DDialog> map = qobject_cast<Graph2DDialog*>(fixture.window->windows().find(id));
        QVERIFY(map);
        TRY_COMPARE(map->getGraphWidget()->getMaxValue(), 6.0);
        Graph2DFilter filter;
        map->onFilterAccepted(filter);
        const QPointer<Graph2DDialog> filtered = map->findChild<Graph2DDialog*>();
        QVERIFY(filtered);
        filtered->setGeometry(30, 60, 420, 380);
        comeBackWith(server, fixture, "OK:\nimage: kind=2d binsx=3 minx=-2 maxx=2 binsy=2 miny=0 maxy=7\n");
        TRY_VERIFY(map.isNull());
        QVERIFY(filtered && filtered->isVisible());
        QCOMPARE(filtered->geometry(), QRect(30, 60, 420, 380));
        QCOMPARE(filtered->parentWidget(), fixture.window->windows().find(id));
        QCOMPARE(fixture.window->windows().onScreen().constLast(), filtered.data());
    }

    void aMenuThatIsOpenIsWaitedFor()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        QMenu menu(curves);
        menu.addAction(QStringLiteral("one"));
        menu.popup(QPoint(100, 100));
        QCOMPARE(QApplication::activePopupWidget(), &menu);
        fixture.window->histograms().read(QString::fromUtf8(otherTimes));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(curves && curves->isVisible());
        menu.close();
        menu.setParent(nullptr);
        TRY_VERIFY(curves.isNull());
        QVERIFY(fixture.window->windows().find(QStringLiteral("curves")));
    }

    void aLineThatIsTypedIsWaitedFor()
    {
        HistogramServer server;
        ConsoleFixture fixture;
        const QPointer<QWidget> curves = openCurves(server, fixture);
        auto* const box = new QDialog(curves);
        auto* const line = new QLineEdit(box);
        box->show();
        OpenWindows::bringForward(*box);
        line->setFocus();
        TRY_COMPARE(QApplication::focusWidget(), line);
        fixture.window->histograms().read(QString::fromUtf8(otherTimes));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(curves && curves->isVisible());
        line->clearFocus();
        TRY_VERIFY(curves.isNull());
        QVERIFY(fixture.window->windows().find(QStringLiteral("curves")));
    }
};

QTEST_MAIN(TestConsoleWindowUpdater)
#include "tst_consolewindowupdater.moc"
