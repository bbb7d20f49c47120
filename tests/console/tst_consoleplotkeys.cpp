// The plots of the console without a mouse: every tool by keys.
#include "app/language.h"
#include "console/fullconsole.h"
#include "support/cases.h"
#include "support/menudriver.h"
#include "support/wait.h"

#include <tarnis/dialogs/graph1ddialog.h>
#include <tarnis/dialogs/graph2ddialog.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QStyle>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>

using namespace console;
using namespace tarnis::testing;

namespace {

/// The menu of the menu key.
QMenu* openTools(XYGraphWidget& plot)
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), plot.mapToGlobal(QPoint()));
    QApplication::sendEvent(&plot, &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu)
        qFatal("no tools");
    return menu;
}

/// As if the user had pressed Tab.
void takeKeyboard(XYGraphWidget& plot)
{
    plot.window()->activateWindow();
    plot.setFocus();
    if (!eventually([&] { return QApplication::focusWidget() == &plot; }))
        qFatal("the plot does not get the keyboard");
}

void chooseTool(XYGraphWidget& plot, const QString& text)
{
    chooseByKey(openTools(plot), plot, text);
}

} // namespace

class TestConsolePlotKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void aLiveWindowIsUpdatedByF5()
    {
        const FullConsoleFixture full;
        for (const QWidget* window : full.windows) {
            if (!window->findChild<QPushButton*>(QStringLiteral("updatePushButton")))
                continue;
            const auto* const shortcut = window->findChild<QShortcut*>(QStringLiteral("updateShortcut"));
            QVERIFY(shortcut);
            QCOMPARE(shortcut->key(), QKeySequence(Qt::Key_F5));
        }
    }

    void aLiveWindowBeginsAtItsPlot()
    {
        FullConsoleFixture full;
        auto* const window = full.fixture.open<Graph1DDialog>("curves");
        window->activateWindow();
        TRY_VERIFY(window->getGraphWidget()->hasFocus());
    }

    void aPlotListsItsKeysAndGestures()
    {
        FullConsoleFixture full;
        auto* const window = full.fixture.open<Graph1DDialog>("curves");
        takeKeyboard(*window->getGraphWidget());
        QTest::keyClick(window->getGraphWidget(), Qt::Key_F1);
        auto* const box = window->findChild<QDialog*>(QStringLiteral("keyboardBox"));
        QVERIFY(box);
        const auto* const table = box->findChild<QTableWidget*>();
        QVERIFY(table->currentItem() && table->currentItem()->row() > 20); // past the keys of the console
        QVERIFY(!table->findItems(QStringLiteral("Ctrl+Wheel"), Qt::MatchExactly).isEmpty());
        box->close();
    }

    void aPlotCopiesItsPictureOrValues()
    {
        FullConsoleFixture full;
        auto& plot = *full.fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        takeKeyboard(plot);
        const QClipboard& clipboard = *QGuiApplication::clipboard();
        QTest::keyClick(&plot, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard.image().size(), plot.size() * 2);
        QTest::keyClick(&plot, Qt::Key_C);
        QTest::keyClick(&plot, Qt::Key_Right, Qt::ControlModifier); // pins the cross
        QTest::keyClick(&plot, Qt::Key_C, Qt::ControlModifier);
        QVERIFY2(clipboard.text().startsWith(QStringLiteral("bin\t")), qPrintable(clipboard.text()));
    }

    void aPlotIsMovedAndZoomedByKeys()
    {
        FullConsoleFixture full;
        auto* const window = full.fixture.open<Graph1DDialog>("curves");
        auto& plot = *window->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        takeKeyboard(plot);
        const auto range = [&] {
            std::pair<double, double> ends;
            plot.getMinMaxX(ends.first, ends.second);
            return ends;
        };
        const auto whole = range();
        QTest::keyClick(&plot, Qt::Key_Plus);
        const auto zoomed = range();
        QVERIFY(zoomed.first > whole.first && zoomed.second < whole.second);
        QTest::keyClick(&plot, Qt::Key_Right);
        QVERIFY(range().first > zoomed.first && range().second > zoomed.second);
        QTest::keyClick(&plot, Qt::Key_Left);
        QVERIFY(std::abs(range().first - zoomed.first) < 1e-6 * whole.second);
        QTest::keyClick(&plot, Qt::Key_Minus);
        QVERIFY(std::abs(range().second - whole.second) < 1e-6 * whole.second);
        double bottom = 0.0;
        double top = 0.0;
        plot.getMinMaxY(bottom, top);
        QTest::keyClick(&plot, Qt::Key_Up);
        double movedBottom = 0.0;
        double movedTop = 0.0;
        plot.getMinMaxY(movedBottom, movedTop);
        QVERIFY(movedTop > top);
        QTest::keyClick(&plot, Qt::Key_Home);
        QCOMPARE(range(), whole);
    }

    void aPlotIsZoomedAlongYByKeys()
    {
        FullConsoleFixture full;
        const auto rangeOf = [](XYGraphWidget& plot) {
            std::pair<double, double> ends;
            plot.getMinMaxY(ends.first, ends.second);
            return ends;
        };
        auto& curves = *full.fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        TRY_VERIFY(curves.hasData());
        takeKeyboard(curves);
        const auto whole = rangeOf(curves);
        QTest::keyClick(&curves, Qt::Key_PageUp);
        QCOMPARE(rangeOf(curves).first, whole.first);
        QVERIFY(rangeOf(curves).second < whole.second);
        QTest::keyClick(&curves, Qt::Key_PageDown);
        QVERIFY(std::abs(rangeOf(curves).second - whole.second) < 1e-6 * whole.second);

        auto& map = *full.fixture.open<Graph2DDialog>("map")->getGraphWidget();
        TRY_VERIFY(map.getMaxValue() > 0.0);
        takeKeyboard(map);
        const auto all = rangeOf(map);
        QTest::keyClick(&map, Qt::Key_PageUp);
        QVERIFY(rangeOf(map).first > all.first && rangeOf(map).second < all.second);
    }

    void theEndsOfTheAxesAreEditedByKeys_data()
    {
        addColumns<QString, QString, int>("entry", "value", "end");
        addCase("left", "Left End of the Axis...", "100", 0);
        addCase("right", "Right End of the Axis...", "9000", 1);
        addCase("bottom", "Bottom End of the Axis...", "1", 2);
        addCase("top", "Top End of the Axis...", "77", 3);
    }
    void theEndsOfTheAxesAreEditedByKeys()
    {
        QFETCH(QString, entry);
        QFETCH(QString, value);
        QFETCH(int, end);
        FullConsoleFixture full;
        auto& plot = *full.fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        plot.grab(); // the labels are where they were painted
        takeKeyboard(plot);
        chooseTool(plot, entry);
        TRY_VERIFY(plot.findChild<QLineEdit*>());
        auto* const edit = plot.findChild<QLineEdit*>();
        TRY_COMPARE(QApplication::focusWidget(), edit);
        QTest::keyClicks(edit, value);
        QTest::keyClick(edit, Qt::Key_Return);
        double ends[4] = {};
        plot.getMinMaxX(ends[0], ends[1]);
        plot.getMinMaxY(ends[2], ends[3]);
        QCOMPARE(ends[end], value.toDouble());
        TRY_COMPARE(QApplication::focusWidget(), &plot);
    }

    void escapeLeavesAnEditorAndNotTheWindow()
    {
        FullConsoleFixture full;
        auto* const window = full.fixture.open<Graph1DDialog>("curves");
        auto& plot = *window->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        plot.grab();
        takeKeyboard(plot);
        chooseTool(plot, QStringLiteral("Right End of the Axis..."));
        TRY_VERIFY(plot.findChild<QLineEdit*>());
        QTest::keyClick(plot.findChild<QLineEdit*>(), Qt::Key_Escape);
        TRY_VERIFY(!plot.findChild<QLineEdit*>());
        QVERIFY(window->isVisible());
        TRY_COMPARE(QApplication::focusWidget(), &plot);
    }

    void showsWhyAnAxisEndCannotBeEditedDuringAMouseTool()
    {
        FullConsoleFixture full;
        auto& plot = *full.fixture.open<Graph1DDialog>("curves")->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        plot.grab();
        plot.SetEnableSelectXRange(true);
        const QMenu* const menu = openTools(plot);
        const QAction* const entry = entryOf(*menu, QStringLiteral("Left End of the Axis..."));
        QVERIFY(entry && !entry->isEnabled() && entry->toolTip().contains(u"tool"));
    }

    void theColoursAreChosenByKeys()
    {
        FullConsoleFixture full;
        auto& map = *full.fixture.open<Graph2DDialog>("map")->getGraphWidget();
        const QColor before = XY2DGraphWidget::colMax;
        takeKeyboard(map);
        MenuDriver driver(QStringLiteral("Pattern - YellowHot"));
        chooseTool(map, QStringLiteral("Colours..."));
        TRY_VERIFY(driver.hasChosen());
        QVERIFY(XY2DGraphWidget::colMax != before);
        map.onPatternRainbow1();
    }

    void theLimitsOfTheColoursAreEditedByKeys()
    {
        FullConsoleFixture full;
        auto& map = *full.fixture.open<Graph2DDialog>("map")->getGraphWidget();
        TRY_VERIFY(map.getMaxValue() > 0.0);
        auto* const bar = map.findChild<ColorBarWidget*>();
        bar->grab();
        takeKeyboard(map);
        // Left without a number, the colours are automatic again.
        chooseTool(map, QStringLiteral("Upper Limit of the Colours..."));
        TRY_VERIFY(bar->findChild<QLineEdit*>());
        QVERIFY(!bar->isAutoScale());
        QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Escape);
        TRY_VERIFY(bar->isAutoScale());
        chooseTool(map, QStringLiteral("Upper Limit of the Colours..."));
        TRY_VERIFY(bar->findChild<QLineEdit*>());
        QTest::keyClicks(bar->findChild<QLineEdit*>(), QStringLiteral("3"));
        QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Return);
        double top = 0.0;
        QVERIFY(!map.getMaxZ(top));
        QCOMPARE(top, 3.0);
        TRY_VERIFY(!bar->findChild<QLineEdit*>());
        chooseTool(map, QStringLiteral("Lower Limit of the Colours..."));
        TRY_VERIFY(bar->findChild<QLineEdit*>());
        QTest::keyClick(bar->findChild<QLineEdit*>(), Qt::Key_Escape);
        TRY_VERIFY(!bar->findChild<QLineEdit*>());
        TRY_COMPARE(QApplication::focusWidget(), &map);
        QVERIFY(!bar->isAutoScale()); // the upper limit was entered
    }

    void aRegionIsAddedByKeys()
    {
        FullConsoleFixture full;
        auto& map = *full.fixture.open<Graph2DDialog>("map")->getGraphWidget();
        map.onAutoScaleX(false);
        map.onAutoScaleY(false);
        map.setMinMaxX(100, 200);
        map.setMinMaxY(0, 80);
        chooseTool(map, QStringLiteral("Add a Region in the Middle"));
        TRY_VERIFY(map.GetViewSelectedROI());
        QCOMPARE(map.GetViewSelectedROI()->getRoiList(), (QList<QRect> { QRect(QPoint(125, 20), QPoint(175, 60)) }));
        chooseTool(map, QStringLiteral("Add a Region in the Middle"));
        TRY_COMPARE(map.GetViewSelectedROI()->getRoiList().size(), 2);
    }

    void theBoxesBesideAPlotAreReachedByF6()
    {
        FullConsoleFixture full;
        auto* const window = full.fixture.open<Graph1DDialog>("curves");
        auto& plot = *window->getGraphWidget();
        TRY_VERIFY(plot.hasData());
        takeKeyboard(plot);
        plot.SetEnableSelectXRange(true);
        plot.onPeakSearch();
        takeKeyboard(plot);
        QTest::keyClick(&plot, Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("XRangeInputDialog"));
        TRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("PeakSearchDialog"));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow(), window);
        QCOMPARE(QApplication::focusWidget(), &plot);
    }

    void theMenuKeyOpensAPlotsTools()
    {
        FullConsoleFixture full;
        for (const char* const id : { "curves", "map" }) {
            QWidget* const window = full.fixture.find(id);
            auto* const plot = window->findChild<XYGraphWidget*>();
            QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), plot->mapToGlobal(QPoint()));
            QApplication::sendEvent(plot, &event);
            auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            const QList<QAction*> offered = menu->actions();
            const QList<QAction*> tools = plot->actions();
            for (QAction* const tool : tools)
                QVERIFY(offered.contains(tool));
            menu->close();
        }
    }
};

QTEST_MAIN(TestConsolePlotKeys)
#include "tst_consoleplotkeys.moc"
