// The panels of numbers beside a plot of the console: where they go, that each opens once, and their texts.
#include "plots/plotpanels.h"
#include "screen/placement.h"
#include "screen/windowframe.h"
#include "support/wait.h"

#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/fitpanel.h>
#include <tarnis/tools/plottoolbar.h>
#include <tarnis/tools/regiontable.h>

#include <QDialog>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using namespace console;

namespace {

/// A window with a plot and its bar.
struct PlotWindow {
    explicit PlotWindow(XYGraphWidget* shown)
        : plot(shown)
    {
        auto* const layout = new QVBoxLayout(&dialog);
        auto* const bar = new tarnis::PlotToolBar(plot, &dialog);
        layout->addWidget(bar);
        layout->addWidget(plot, 1);
        addPanels(*bar);
        dialog.setWindowTitle(QStringLiteral("Energies"));
        dialog.resize(300, 250);
        dialog.show();
    }
    QAction* action(const char* name) const { return dialog.findChild<QAction*>(QLatin1StringView(name)); }

    QDialog dialog;
    XYGraphWidget* plot;
};

} // namespace

class TestConsolePanels : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsRoomBesideAWindow_data()
    {
        QTest::addColumn<QRect>("frame");
        QTest::addColumn<QPoint>("place");
        QTest::newRow("right") << QRect(0, 100, 400, 300) << QPoint(407, 100);
        QTest::newRow("left") << QRect(700, 0, 300, 300) << QPoint(392, 0);
        QTest::newRow("below") << QRect(100, 0, 900, 300) << QPoint(100, 307);
        QTest::newRow("above") << QRect(0, 500, 1000, 300) << QPoint(0, 292);
        QTest::newRow("right, slid up") << QRect(0, 700, 400, 100) << QPoint(407, 600);
    }
    void findsRoomBesideAWindow()
    {
        QFETCH(QRect, frame);
        QFETCH(QPoint, place);
        const std::optional<QRect> found = placeBeside({ 300, 200 }, frame, QRect(0, 0, 1000, 800));
        QVERIFY(found);
        QCOMPARE(*found, QRect(place, QSize(300, 200)));
        QVERIFY(!found->intersects(frame));
    }

    void keepsTheTitleBarOnTheScreen()
    {
        const QRect screen(0, 0, 1280, 720);
        const QMargins border(1, 20, 1, 5);
        for (const QRect& frame : { QRect(897, 0, 383, 360), QRect(0, 360, 383, 360), QRect(0, 0, 1280, 180) }) {
            const std::optional<QRect> found = placeBeside({ 576, 494 }, frame, screen, border);
            QVERIFY(found);
            QCOMPARE(found->size(), QSize(576, 494));
            QVERIFY(screen.contains(found->marginsAdded(border)));
            QVERIFY(!found->marginsAdded(border).intersects(frame));
        }
        QVERIFY(placeBeside({ 300, 500 }, QRect(0, 0, 1280, 200), screen));
        QVERIFY(!placeBeside({ 300, 500 }, QRect(0, 0, 1280, 200), screen, border)); // only its title bar is too much
    }

    void findsNoneBesideALargeWindow()
    {
        QVERIFY(!placeBeside({ 300, 200 }, QRect(50, 50, 900, 700), QRect(0, 0, 1000, 800)));
    }

    void opensEachPanelOnce()
    {
        PlotWindow window(new VectorGraphWidget);
        for (const char* const name : { "openRegions", "openFit", "openPeaks", "openCalibration" }) {
            QVERIFY2(window.action(name), name);
            window.action(name)->trigger();
        }
        auto* const fit = window.dialog.findChild<tarnis::FitPanel*>();
        QCOMPARE(fit->plot(), window.plot);
        QVERIFY(fit->isVisible());
        // The screen of the tests may be too small for a separate window.
        if (fit->isWindow()) {
            window.action("openFit")->trigger();
            QVERIFY(fit->windowTitle().contains(QStringLiteral("Energies")));
        }
        QCOMPARE(window.dialog.findChildren<tarnis::FitPanel*>().size(), 1);
    }

    // A narrow bar hides its last buttons, and of those that are no actions even its menu has nothing.
    void comesFirstInTheBar()
    {
        PlotWindow window(new VectorGraphWidget);
        auto* const bar = window.dialog.findChild<tarnis::PlotToolBar*>();
        QVERIFY(bar);
        QAction* const first = bar->actions().value(0);
        QCOMPARE(first->menu() != nullptr ? first->menu()->actions().size() : 0, 4);
        QCOMPARE(bar->widgetForAction(first)->objectName(), QStringLiteral("panelsButton"));
    }

    void staysInAWindowThatFillsTheScreen()
    {
        PlotWindow window(new VectorGraphWidget);
        window.dialog.setGeometry(window.dialog.screen()->availableGeometry());
        window.action("openRegions")->trigger();
        QPointer<QWidget> regions = window.dialog.findChild<tarnis::RegionTable*>();
        QVERIFY(!regions->isWindow());
        window.dialog.layout()->activate();
        QVERIFY(!regions->geometry().intersects(window.plot->geometry()));
        // It has no close button.
        window.action("openRegions")->trigger();
        TRY_VERIFY(regions.isNull());
    }

    void aPlotKeepsItsHeightBesideAPanelInside()
    {
        PlotWindow window(new VectorGraphWidget);
        const QRect screen = window.dialog.screen()->availableGeometry();
        // As wide as the screen, so that there is no room beside it, nor above or below.
        window.dialog.setGeometry(
            QRect(screen.topLeft() + QPoint(0, 200), QSize(screen.width(), screen.height() - 400)));
        const QSize before = window.dialog.size();
        window.action("openFit")->trigger();
        QPointer<QWidget> fit = window.dialog.findChild<tarnis::FitPanel*>();
        QVERIFY(!fit->isWindow());
        const int room = screen.marginsRemoved(frameOf(window.dialog)).height();
        QCOMPARE(window.dialog.height(), qMin(before.height() + fit->sizeHint().height(), room));
        QVERIFY(screen.contains(window.dialog.geometry()));
        window.action("openFit")->trigger();
        TRY_VERIFY(fit.isNull());
        TRY_COMPARE(window.dialog.size(), before);
    }

    void opensAgainAfterItWasClosed()
    {
        PlotWindow window(new VectorGraphWidget);
        window.action("openFit")->trigger();
        QPointer<QWidget> fit = window.dialog.findChild<tarnis::FitPanel*>();
        fit->close();
        TRY_VERIFY(fit.isNull());
        window.action("openFit")->trigger();
        QVERIFY(window.dialog.findChild<tarnis::FitPanel*>());
    }

    void mapsHaveRegionsOnly()
    {
        PlotWindow window(new XY2DGraphWidget);
        QVERIFY(window.action("openRegions"));
        QVERIFY(!window.action("openFit"));
        window.action("openRegions")->trigger();
        QVERIFY(window.dialog.findChild<tarnis::RegionTable*>()->regions());
    }
};

QTEST_MAIN(TestConsolePanels)
#include "tst_consolepanels.moc"
