// A plot by keyboard and for screen readers: the menu of the menu key, the way round the boxes, names and values.
#include "support/cases.h"
#include "support/menudriver.h"
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/foundation/translation.h>
#include <tarnis/plots/colorbarwidget.h>
#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotkeyboard.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFocusFrame>
#include <QLineEdit>
#include <QMenu>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

/// A plot in a dialog, as in a host.
template <typename Plot> struct Host {
    Host()
    {
        auto* const layout = new QVBoxLayout(&window);
        plot = new Plot(&window);
        layout->addWidget(plot);
        window.setWindowTitle(QStringLiteral("Counts of Today"));
        window.resize(500, 400);
    }
    void show()
    {
        window.show();
        window.activateWindow();
        plot->setFocus();
        plot->grab(); // the labels are where they were painted
        if (!QTest::qWaitFor([&] { return QApplication::focusWidget() == plot; }, timeoutMs))
            qFatal("the plot does not get the keyboard");
    }

    QDialog window;
    Plot* plot = nullptr;
};

struct CurveHost : Host<VectorGraphWidget> {
    CurveHost()
    {
        plot->init(QStringLiteral("Time"), QStringLiteral("Counts"), 100, 20, false, false);
        plot->initManualX(0, 100);
        plot->setData(QList<double> { 1, 5, 3, 0 });
    }
};

struct MapHost : Host<XY2DGraphWidget> {
    MapHost()
    {
        plot->init(QStringLiteral("X"), QStringLiteral("Y"), 4, 2, false, false);
        plot->setMinMaxX(0, 400);
        plot->setMinMaxY(0, 200);
        plot->setData(0, { 1, 2, 3, 4 }, 4, false);
        plot->setData(1, { 5, 6, 7, 12 }, 12, false);
        plot->enalbeRoiSelect(QRect(0, 0, 400, 200));
    }
};

QMenu* menuOf(XYGraphWidget& plot)
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), plot.mapToGlobal(QPoint()));
    QApplication::sendEvent(&plot, &event);
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

void choose(XYGraphWidget& plot, const QString& text)
{
    chooseByKey(menuOf(plot), plot, text);
}

QString textOf(QObject* object, QAccessible::Text kind)
{
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(object);
    return interface != nullptr ? interface->text(kind) : QString();
}

QAccessible::Role roleOf(QObject* object)
{
    return QAccessible::queryAccessibleInterface(object)->role();
}

QLineEdit* editorIn(const QWidget& widget)
{
    return widget.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

class TestPlotKeyboard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }
    void cleanup() { setLanguage(QLocale(QLocale::English)); }
    void plotWithoutItIsAsBefore()
    {
        CurveHost host;
        host.plot->setFocusPolicy(Qt::StrongFocus); // to receive the keys at all
        host.show();
        const QImage before = host.plot->grab().toImage();
        QVERIFY(menuOf(*host.plot) == nullptr);
        QTest::keyClick(host.plot, Qt::Key_F6);
        QCOMPARE(QApplication::focusWidget(), host.plot);
        QVERIFY(host.window.findChildren<QFocusFrame*>().isEmpty());
        QVERIFY(roleOf(host.plot) != QAccessible::Chart);
        QCOMPARE(textOf(host.plot, QAccessible::Name), QString());
        QCOMPARE(textOf(host.plot, QAccessible::Value), QString());
        QCOMPARE(host.plot->grab().toImage(), before);
        const CurveHost untouched;
        QCOMPARE(untouched.plot->focusPolicy(), Qt::NoFocus);
    }

    void deletedToolLeavesNothing()
    {
        CurveHost host;
        auto* const tool = new PlotKeyboard(host.plot);
        host.show();
        const QImage before = host.plot->grab().toImage();
        QCOMPARE(roleOf(host.plot), QAccessible::Chart);
        delete tool;
        QCOMPARE(host.plot->focusPolicy(), Qt::NoFocus);
        QVERIFY(roleOf(host.plot) != QAccessible::Chart);
        QVERIFY(menuOf(*host.plot) == nullptr);
        QVERIFY(host.window.findChildren<QFocusFrame*>().isEmpty());
        QCOMPARE(host.plot->grab().toImage(), before);
    }

    void menuHasActionsAndEnds()
    {
        CurveHost host;
        new PlotKeyboard(host.plot);
        host.show();
        QMenu* const menu = menuOf(*host.plot);
        QVERIFY(menu);
        for (QAction* const action : host.plot->actions())
            QVERIFY(menu->actions().contains(action));
        for (const char* const end : { "Left", "Right", "Bottom", "Top" })
            QVERIFY(entryOf(*menu, QStringLiteral("%1 End of the Axis...").arg(QLatin1String(end)))->isEnabled());
        QVERIFY(entryOf(*menu, QStringLiteral("Colours...")) == nullptr);
        QVERIFY(entryOf(*menu, QStringLiteral("To the Box Beside")) == nullptr); // there is none
        menu->close();
        QContextMenuEvent byMouse(QContextMenuEvent::Mouse, QPoint(5, 5), host.plot->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(host.plot, &byMouse);
        QVERIFY(QApplication::activePopupWidget() == nullptr);
        QTest::keyClick(host.plot, Qt::Key_F10, Qt::ShiftModifier); // the system sends the menu key's event only
        QVERIFY(QApplication::activePopupWidget() != nullptr);
        QApplication::activePopupWidget()->close();
    }

    void endsAreEdited_data()
    {
        addColumns<QString, QString, int>("end", "value", "index");
        addCase("left", "Left", "10", 0);
        addCase("right", "Right", "90", 1);
        addCase("bottom", "Bottom", "1", 2);
        addCase("top", "Top", "77", 3);
    }
    void endsAreEdited()
    {
        QFETCH(QString, end);
        QFETCH(QString, value);
        QFETCH(int, index);
        CurveHost host;
        new PlotKeyboard(host.plot);
        host.show();
        choose(*host.plot, QStringLiteral("%1 End of the Axis...").arg(end));
        TRY_VERIFY(editorIn(*host.plot));
        QLineEdit* const edit = editorIn(*host.plot);
        TRY_COMPARE(QApplication::focusWidget(), edit);
        QCOMPARE(edit->accessibleName(), QStringLiteral("%1 end of the axis").arg(end));
        QTest::keyClicks(edit, value);
        QTest::keyClick(edit, Qt::Key_Return);
        double ends[4] = {};
        host.plot->getMinMaxX(ends[0], ends[1]);
        host.plot->getMinMaxY(ends[2], ends[3]);
        QCOMPARE(ends[index], value.toDouble());
        TRY_COMPARE(QApplication::focusWidget(), host.plot);
    }

    void escapeLeavesTheEditorAndNotTheWindow()
    {
        CurveHost host;
        new PlotKeyboard(host.plot);
        host.show();
        choose(*host.plot, QStringLiteral("Right End of the Axis..."));
        TRY_VERIFY(editorIn(*host.plot));
        QTest::keyClick(editorIn(*host.plot), Qt::Key_Escape);
        TRY_VERIFY(!editorIn(*host.plot));
        QVERIFY(host.window.isVisible());
        TRY_COMPARE(QApplication::focusWidget(), host.plot);
    }

    void toolOfTheMouseDisablesTheEnds()
    {
        CurveHost host;
        new PlotKeyboard(host.plot);
        host.show();
        host.plot->SetEnableSelectXRange(true);
        const QMenu* const menu = menuOf(*host.plot);
        const QAction* const entry = entryOf(*menu, QStringLiteral("Left End of the Axis..."));
        QVERIFY(entry && !entry->isEnabled());
        QCOMPARE(entry->toolTip(), QStringLiteral("Switch the tool of the mouse off first"));
    }

    void coloursOpenTheirMenu()
    {
        MapHost host;
        new PlotKeyboard(host.plot);
        host.show();
        const MenuDriver driver(QStringLiteral("Pattern - YellowHot"));
        choose(*host.plot, QStringLiteral("Colours..."));
        TRY_VERIFY(driver.hasChosen());
        QCOMPARE(XY2DGraphWidget::colMax, QColor("#ffffff"));
        host.plot->onPatternRainbow1();
    }

    void limitsOfTheColoursAreEdited()
    {
        MapHost host;
        new PlotKeyboard(host.plot);
        host.show();
        auto* const bar = host.plot->findChild<ColorBarWidget*>();
        choose(*host.plot, QStringLiteral("Upper Limit of the Colours..."));
        TRY_VERIFY(editorIn(*bar));
        QCOMPARE(editorIn(*bar)->accessibleName(), QStringLiteral("Upper limit of the colours"));
        QTest::keyClicks(editorIn(*bar), QStringLiteral("3"));
        QTest::keyClick(editorIn(*bar), Qt::Key_Return);
        double top = 0.0;
        QVERIFY(!host.plot->getMaxZ(top));
        QCOMPARE(top, 3.0);
        TRY_VERIFY(!editorIn(*bar));
        choose(*host.plot, QStringLiteral("Lower Limit of the Colours..."));
        TRY_VERIFY(editorIn(*bar));
        QTest::keyClick(editorIn(*bar), Qt::Key_Escape);
        TRY_VERIFY(!editorIn(*bar));
        TRY_COMPARE(QApplication::focusWidget(), host.plot);
    }

    void regionIsAddedInTheMiddle()
    {
        MapHost host;
        new PlotKeyboard(host.plot);
        host.show();
        choose(*host.plot, QStringLiteral("Add a Region in the Middle"));
        TRY_VERIFY(host.plot->GetViewSelectedROI());
        QCOMPARE(
            host.plot->GetViewSelectedROI()->getRoiList(), (QList<QRect> { QRect(QPoint(100, 50), QPoint(300, 150)) }));
    }

    void invalidRangeMakesAnEmptyRegion()
    {
        MapHost host;
        new PlotKeyboard(host.plot);
        host.show();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        host.plot->setMinMaxX(nan, nan);
        choose(*host.plot, QStringLiteral("Add a Region in the Middle"));
        TRY_VERIFY(host.plot->GetViewSelectedROI());
        QCOMPARE(host.plot->GetViewSelectedROI()->getRoiList().size(), 1);
        QCOMPARE(host.plot->GetViewSelectedROI()->getRoiList().constFirst().left(), 0);
    }

    void boxesAreReachedByF6()
    {
        CurveHost host;
        new PlotKeyboard(host.plot);
        host.show();
        host.plot->SetEnableSelectXRange(true);
        host.plot->onPeakSearch();
        host.window.activateWindow();
        host.plot->setFocus();
        TRY_COMPARE(QApplication::focusWidget(), host.plot);
        QTest::keyClick(host.plot, Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("XRangeInputDialog"));
        TRY_VERIFY(qobject_cast<QLineEdit*>(QApplication::focusWidget()));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("PeakSearchDialog"));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow(), &host.window);
        QCOMPARE(QApplication::focusWidget(), host.plot);
        const QMenu* const menu = menuOf(*host.plot);
        QVERIFY(entryOf(*menu, QStringLiteral("To the Box Beside")));
    }

    void boxesAreReachedByASecondTool()
    {
        CurveHost host;
        auto* const first = new PlotKeyboard(host.plot);
        host.show();
        host.plot->SetEnableSelectXRange(true);
        first->goToBox();
        TRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("XRangeInputDialog"));
        delete first;
        PlotKeyboard second(host.plot);
        second.goToBox();
        TRY_COMPARE(QApplication::activeWindow()->objectName(), QStringLiteral("XRangeInputDialog"));
        QTest::keyClick(QApplication::activeWindow(), Qt::Key_F6);
        TRY_COMPARE(QApplication::activeWindow(), &host.window);
    }

    void movedBoxIsStillReached()
    {
        CurveHost host;
        auto* const tool = new PlotKeyboard(host.plot);
        host.show();
        auto* const box = new QDialog(host.plot);
        auto* const spin = new QSpinBox(box);
        QVERIFY(spin->focusPolicy() & Qt::TabFocus);
        box->setParent(&host.window, Qt::Widget); // as a host that keeps boxes in a pane
        box->show();
        tool->goToBox();
        TRY_VERIFY(box->isAncestorOf(QApplication::focusWidget()));
        delete box;
        host.plot->setFocus();
        tool->goToBox(); // there is none
        QCOMPARE(QApplication::focusWidget(), host.plot);
    }

    void frameFollowsTheKeyboard()
    {
        CurveHost host;
        auto* const other = new QLineEdit(&host.window);
        host.window.layout()->addWidget(other);
        new PlotKeyboard(host.plot);
        host.show();
        TRY_COMPARE(host.window.findChildren<QFocusFrame*>().size(), 1);
        QCOMPARE(host.window.findChild<QFocusFrame*>()->widget(), host.plot);
        other->setFocus();
        TRY_VERIFY(host.window.findChildren<QFocusFrame*>().isEmpty());
    }

    void curveIsDescribed()
    {
        CurveHost host;
        new PlotKeyboard(host.plot);
        QCOMPARE(roleOf(host.plot), QAccessible::Chart);
        QCOMPARE(textOf(host.plot, QAccessible::Name), QStringLiteral("Plot: Counts of Today"));
        QCOMPARE(textOf(host.plot, QAccessible::Value), QStringLiteral("Time from 0 to 100, Counts from 0 to 20"));
        QCOMPARE(textOf(host.plot, QAccessible::Description), QStringLiteral("Curve, number of bins: 4"));
        QVERIFY(textOf(host.plot, QAccessible::Help).contains(QLatin1String("F6")));
        host.plot->setTitle(QStringLiteral("Run 7"));
        host.plot->setLogScaleY(true);
        QCOMPARE(textOf(host.plot, QAccessible::Name), QStringLiteral("Plot: Run 7"));
        QVERIFY(textOf(host.plot, QAccessible::Value).endsWith(QLatin1String("logarithmic")));
        host.window.setWindowTitle(QString());
        host.plot->setTitle(QString());
        host.plot->setNameX(QString());
        QCOMPARE(textOf(host.plot, QAccessible::Name), QStringLiteral("Plot"));
        QVERIFY(textOf(host.plot, QAccessible::Value).startsWith(QLatin1String("X from 0 to 100")));
    }

    void seriesAreDescribed()
    {
        Host<MultiVectorGraphWidget> host;
        host.plot->setData(0, { 1, 2, 3 }, 3);
        host.plot->setData(1, { 1, 2 }, 2);
        host.plot->setEnable(1, false);
        new PlotKeyboard(host.plot);
        QCOMPARE(textOf(host.plot, QAccessible::Description), QStringLiteral("1 of 2 curves with 3 bins"));
    }

    void mapAndColourBarAreDescribed()
    {
        MapHost host;
        auto* const bar = host.plot->findChild<ColorBarWidget*>();
        QCOMPARE(textOf(bar, QAccessible::Name), QString());
        new PlotKeyboard(host.plot);
        host.plot->grab(); // fits the colours to the data
        QCOMPARE(textOf(host.plot, QAccessible::Value),
            QStringLiteral("X from 0 to 400, Y from 0 to 200, colours from 0 to 12"));
        QCOMPARE(textOf(host.plot, QAccessible::Description), QStringLiteral("Map of 4 by 2 bins"));
        QCOMPARE(textOf(bar, QAccessible::Name), QStringLiteral("Colour scale"));
        QCOMPARE(textOf(bar, QAccessible::Value), QStringLiteral("0 to 12"));
    }

    void textsOfTheHostGoFirst()
    {
        CurveHost host;
        host.plot->setAccessibleName(QStringLiteral("Spectrum"));
        host.plot->setAccessibleDescription(QStringLiteral("Of the first detector"));
        new PlotKeyboard(host.plot);
        QCOMPARE(textOf(host.plot, QAccessible::Name), QStringLiteral("Spectrum"));
        QCOMPARE(textOf(host.plot, QAccessible::Description), QStringLiteral("Of the first detector"));
    }

    void textsFollowTheLanguage()
    {
        CurveHost host;
        new PlotKeyboard(host.plot);
        QVERIFY(setLanguage(QLocale(QLocale::German)));
        QCOMPARE(textOf(host.plot, QAccessible::Name), QStringLiteral("Diagramm: Counts of Today"));
        QCOMPARE(textOf(host.plot, QAccessible::Value), QStringLiteral("Time von 0 bis 100, Counts von 0 bis 20"));
    }

    void toolReplacesAnObjectThatWasMadeBefore()
    {
        CurveHost host;
        QVERIFY(roleOf(host.plot) != QAccessible::Chart);
        new PlotKeyboard(host.plot);
        QCOMPARE(roleOf(host.plot), QAccessible::Chart);
    }

    void plotCanBeDeletedWithMenuAndEditorOpen()
    {
        auto host = std::make_unique<CurveHost>();
        new PlotKeyboard(host->plot);
        host->show();
        choose(*host->plot, QStringLiteral("Right End of the Axis..."));
        TRY_VERIFY(editorIn(*host->plot));
        QVERIFY(menuOf(*host->plot));
        host.reset();
        QCoreApplication::processEvents();

        host = std::make_unique<CurveHost>();
        auto* const tool = new PlotKeyboard(host->plot);
        host->show();
        choose(*host->plot, QStringLiteral("Right End of the Axis..."));
        TRY_VERIFY(editorIn(*host->plot));
        delete tool;
        QTest::keyClick(editorIn(*host->plot), Qt::Key_Return);
        TRY_VERIFY(!editorIn(*host->plot));
    }

    void everyPlotOfTheApplicationGetsOne()
    {
        const auto countOf = [](const QWidget* plot) {
            return plot->findChildren<PlotKeyboard*>(QString(), Qt::FindDirectChildrenOnly).size();
        };
        MapHost open;
        open.show();
        const VectorGraphWidget hidden;
        PlotKeyboard::attachToAll();
        PlotKeyboard::attachToAll();
        QCOMPARE(countOf(open.plot), 1);
        QCOMPARE(countOf(&hidden), 0);
        open.plot->on1dCut(true); // the library opens two plots beside the map
        const auto cuts = open.plot->findChildren<VectorGraphWidget*>();
        QCOMPARE(cuts.size(), 2);
        for (const VectorGraphWidget* const cut : cuts)
            QCOMPARE(countOf(cut), 1);
        open.window.hide();
        open.window.show();
        QCOMPARE(countOf(open.plot), 1);
    }
};

QTEST_MAIN(TestPlotKeyboard)
#include "tst_plotkeyboard.moc"
