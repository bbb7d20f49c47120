// The plot frame without mouse input: initial state, actions, declaration orders, ranges, names and ticks.
#include "plots/countingframe.h"
#include "support/cases.h"
#include "support/frameprobe.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QAction>
#include <QFontMetrics>
#include <QTest>

using namespace tarnis::testing;

class TestXYGraphWidget : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { setNumberFormat('g', 6); }
    void cleanup() { setNumberFormat('g', 6); }

    void startsWithItsDefaults()
    {
        const Plot plot;
        QCOMPARE(XYGraphWidget::m_backGroundColor, QColor(Qt::black));
        for (const double value : { plot.m_minX, plot.m_maxX, plot.m_minY, plot.m_maxY, plot.m_initMinX,
                 plot.m_initMaxX, plot.m_initMinY, plot.m_initMaxY, plot.m_xRangeMin, plot.m_xRangeMax })
            QCOMPARE(value, 0.0);
        QVERIFY(plot.m_autoScaleX && plot.m_autoScaleY);
        QVERIFY(!plot.m_manualX && !plot.m_manualY);
        for (const int value :
            { plot.m_decimalX, plot.m_decimalY, plot.m_tickDecimalX, plot.m_tickDecimalY, plot.m_mode })
            QCOMPARE(value, 0);
        QVERIFY(plot.m_funcUserData == nullptr && plot.m_edit == nullptr && plot.m_xRangeDialog == nullptr);
        QVERIFY(!plot.m_logScaleY && !plot.m_paintGridOnGraph && plot.m_showGrid && !plot.m_selecting);
        for (const QString& text : { plot.m_nameX, plot.m_nameY, plot.m_notes, plot.m_title, plot.m_xRangeName })
            QVERIFY(text.isEmpty());
        for (const QRect& rect : { plot.m_graphRect, plot.m_selectRect, plot.m_labelRectMinX, plot.m_labelRectMaxX,
                 plot.m_labelRectMinY, plot.m_labelRectMaxY })
            QCOMPARE(rect, QRect(QPoint(0, 0), QPoint(-1, -1)));
        QCOMPARE(plot.m_margin, QMargins(0, 0, 0, 0));
        QCOMPARE(plot.m_lastPos, QPoint(0, 0));
        QCOMPARE(plot.m_rubberBand.shape(), QRubberBand::Rectangle);
        QCOMPARE(plot.m_rubberBand.parentWidget(), &plot);
        QVERIFY(plot.m_rubberBand.isHidden());
        QCOMPARE(plot.m_funcX2Tick(3.25, nullptr), 3.25);
        QCOMPARE(plot.m_funcTick2X(3.25, nullptr), 3.25);
    }

    void wearsLightGrey()
    {
        const Plot plot;
        for (const auto group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled })
            QCOMPARE(plot.palette().brush(group, QPalette::Window).color(), QColor(Qt::lightGray));
        QVERIFY(plot.autoFillBackground());
        QVERIFY(!plot.hasMouseTracking());
        QCOMPARE(plot.contextMenuPolicy(), Qt::DefaultContextMenu);
    }

    void hasItsActionsInOrder_data()
    {
        addColumns<int, QString, bool, bool, bool>("place", "text", "checkable", "checked", "visible");
        int place = 0;
        const auto row = [&](const char* text, bool checkable, bool checked, bool visible) {
            QTest::newRow(text) << place++ << QString::fromLatin1(text) << checkable << checked << visible;
        };
        row("Auto Scale X", true, true, true);
        row("Auto Scale Y", true, true, true);
        row("Rectangle", true, false, true);
        row("Zoom In", true, false, true);
        row("Zoom Out", true, false, true);
        row("Move", true, false, true);
        row("Reset", false, false, true);
        row("Show Grid", true, true, true);
        row("Print...", false, false, true);
        row("Save PNG...", false, false, true);
        row("Select X Range", true, false, false);
        row("Clear X Range", false, false, false);
    }
    void hasItsActionsInOrder()
    {
        QFETCH(int, place);
        const Plot plot;
        QCOMPARE(plot.actions().size(), 12);
        const QAction* action = plot.actions().at(place);
        QTEST(action->text(), "text");
        QTEST(action->isCheckable(), "checkable");
        QTEST(action->isChecked(), "checked");
        QTEST(action->isVisible(), "visible");
        QCOMPARE(action->parent(), &plot);
        const QHash<QString, const QAction*> kept { { "Auto Scale X", plot.m_actAutoScaleX },
            { "Auto Scale Y", plot.m_actAutoScaleY }, { "Rectangle", plot.m_actRectangle },
            { "Zoom In", plot.m_actZoomIn }, { "Zoom Out", plot.m_actZoomOut }, { "Move", plot.m_actMove },
            { "Show Grid", plot.m_actShowGrid }, { "Select X Range", plot.m_actSelectXRange },
            { "Clear X Range", plot.m_actClearXRange } };
        QCOMPARE(kept.value(action->text(), action), action);
    }

    void declaresSignalsAndSlotsInOrder()
    {
        const QStringList expected { "signal xRangeSelectBegin()", "signal xRangeSelected(double,double)",
            "signal xRangeSelectEnd()", "signal xRangeSelectClear()", "slot onEditMinY()", "slot onEditMaxY()",
            "slot onParentMoved()", "slot onParentActivate()", "slot onAutoScaleX(bool)", "slot onAutoScaleY(bool)",
            "slot onRectangle()", "slot onZoomIn()", "slot onZoomOut()", "slot onMove()", "slot onReset()",
            "slot onShowGrid()", "slot onSave()", "slot onPrint()", "slot onSelectXRange(bool)", "slot onClearXRange()",
            "slot onMinXEntered()", "slot onMaxXEntered()", "slot onMinYEntered()", "slot onMaxYEntered()",
            "slot onTofRangeEdited(double,double)" };
        QCOMPARE(tarnis::testing::ownMethods(XYGraphWidget::staticMetaObject), expected);
        QCOMPARE(XYGraphWidget::staticMetaObject.propertyCount(), XYGraphWidget::staticMetaObject.propertyOffset());
    }

    void namesTheParametersOfItsSlots()
    {
        const auto names = [](const char* signature) {
            return tarnis::testing::parameterNames(XYGraphWidget::staticMetaObject, signature);
        };
        QCOMPARE(names("onAutoScaleX(bool)"), QList<QByteArray> { "checked" });
        QCOMPARE(names("onAutoScaleY(bool)"), QList<QByteArray> { "checked" });
        QCOMPARE(names("onTofRangeEdited(double,double)"), (QList<QByteArray> { "x_min", "x_max" }));
    }

    void declaresItsVirtualsInOrder()
    {
        using X = XYGraphWidget;
        const QList<std::ptrdiff_t> places { virtualIndex(&X::paint), virtualIndex(&X::setLogScaleY),
            virtualIndex(&X::toPixmap), virtualIndex(&X::onAutoScaleX), virtualIndex(&X::onAutoScaleY),
            virtualIndex(&X::onRectangle), virtualIndex(&X::onZoomIn), virtualIndex(&X::onZoomOut),
            virtualIndex(&X::onMove), virtualIndex(&X::onReset), virtualIndex(&X::onShowGrid), virtualIndex(&X::onSave),
            virtualIndex(&X::onPrint), virtualIndex(&X::onSelectXRange), virtualIndex(&X::onClearXRange),
            virtualIndex(&X::updateModeAndCursor), virtualIndex(&X::paintSelectedRect), virtualIndex(&X::onPaint),
            virtualIndex(&X::onSetRectangle) };
        for (qsizetype i = 0; i < places.size(); ++i)
            QCOMPARE(places.at(i), places.at(0) + i);
        QCOMPARE(virtualIndex(&X::onEditMinY), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&X::onMinXEntered), std::ptrdiff_t(-1));
    }

    void declaresItsMembersInOrder()
    {
        Plot p;
        const QList<const void*> places { &p.m_pixmap, &p.m_doubleBuffered, &p.m_rotation, &p.m_refreshRequired,
            &p.m_minX, &p.m_maxX, &p.m_minY, &p.m_maxY, &p.m_initMinX, &p.m_initMaxX, &p.m_initMinY, &p.m_initMaxY,
            &p.m_xRangeMin, &p.m_xRangeMax, &p.m_autoScaleX, &p.m_autoScaleY, &p.m_initAutoScaleX, &p.m_manualX,
            &p.m_manualY, &p.m_decimalX, &p.m_decimalY, &p.m_tickDecimalX, &p.m_tickDecimalY, &p.m_funcUserData,
            &p.m_logScaleY, &p.m_paintGridOnGraph, &p.m_nameX, &p.m_nameY, &p.m_notes, &p.m_title, &p.m_graphRect,
            &p.m_margin, &p.m_mode, &p.m_selecting, &p.m_selectRect, &p.m_rubberBand, &p.m_lastPos, &p.m_actAutoScaleX,
            &p.m_actAutoScaleY, &p.m_actRectangle, &p.m_actZoomIn, &p.m_actZoomOut, &p.m_actMove, &p.m_actShowGrid,
            &p.m_actSelectXRange, &p.m_actClearXRange, &p.m_labelRectMinX, &p.m_labelRectMaxX, &p.m_labelRectMinY,
            &p.m_labelRectMaxY, &p.m_edit, &p.m_showGrid, &p.m_printer, &p.m_funcX2Tick, &p.m_funcTick2X,
            &p.m_xRangeName, &p.m_xRangeDialog };
        for (qsizetype i = 1; i < places.size(); ++i)
            QVERIFY2(std::less<>()(places.at(i - 1), places.at(i)), qPrintable(QString::number(i)));
    }

    void initSetsNamesRangesAndModes()
    {
        Plot plot;
        plot.setMinMaxX(5, 6);
        plot.setMinMaxY(5, 6);
        plot.wasRefreshed();
        plot.init("Energy", "Counts", 100.0, 8.0, false, true);
        QCOMPARE(plot.getNameX(), QString("Energy"));
        QCOMPARE(plot.getNameY(), QString("Counts"));
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_initMinX, 0.0);
        QCOMPARE(plot.m_initMinY, 0.0);
        QVERIFY(!plot.m_autoScaleX && !plot.m_initAutoScaleX && !plot.m_actAutoScaleX->isChecked());
        QVERIFY(plot.m_autoScaleY && plot.m_actAutoScaleY->isChecked());
        QVERIFY(!plot.wasRefreshed());
    }

    void initRoundsTheVisibleMaximaOnly()
    {
        Plot plot;
        plot.init("x", "y", 1024.0, 101.0, true, true);
        QCOMPARE(plot.m_maxX, 1200.0);
        QCOMPARE(plot.m_initMaxX, 1024.0);
        QCOMPARE(plot.m_maxY, 120.0);
        QCOMPARE(plot.m_initMaxY, 101.0);
        plot.m_logScaleY = true;
        plot.init("x", "y", 0.0, 101.0, true, true);
        QCOMPARE(plot.m_maxX, 0.0);
        QCOMPARE(plot.m_maxY, 1000.0);
    }

    void initEndsAManualRange()
    {
        Plot plot;
        plot.initManualX(3.0, 7.3);
        plot.initManualY(-3.0, 9.1);
        QVERIFY(plot.m_manualX && plot.m_manualY);
        plot.init("x", "y", 7.3, 9.1, true, true);
        QVERIFY(!plot.m_manualX && !plot.m_manualY);
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 8.0);
        QCOMPARE(plot.m_maxY, 10.0);
    }

    void manualRangesStand()
    {
        Plot plot;
        plot.initManualX(3.0, 7.3);
        plot.initManualY(-3.0, 9.1);
        double min = 0.0;
        double max = 0.0;
        plot.getInitMinMaxX(min, max);
        QCOMPARE(min, 3.0);
        QCOMPARE(max, 7.3);
        plot.getInitMinMaxY(min, max);
        QCOMPARE(min, -3.0);
        QCOMPARE(max, 9.1);
        QVERIFY(plot.getMinMaxX(min, max));
        QCOMPARE(min, 3.0);
        QCOMPARE(max, 7.3);
        QVERIFY(plot.getMinMaxY(min, max));
        QCOMPARE(min, -3.0);
        QCOMPARE(max, 9.1);
        QVERIFY(!plot.wasRefreshed());
    }

    void initModeCallsTheVirtuals()
    {
        Plot plot;
        plot.initMode(true, true);
        QCOMPARE(plot.calls, (QStringList { "autoX 1", "autoY 1", "mode" }));
        plot.calls.clear();
        plot.initMode(false, true); // the check mark changes, so the virtual is entered once more by the action
        QCOMPARE(plot.calls, (QStringList { "autoX 0", "autoX 0", "autoY 1", "mode" }));
    }

    void gettersGiveRangesAndFlags()
    {
        Plot plot;
        plot.setMinMaxX(1.0, -2.0);
        plot.setMinMaxY(3.0, 4.0);
        plot.onAutoScaleY(false);
        double min = 0.0;
        double max = 0.0;
        QVERIFY(plot.getMinMaxX(min, max));
        QCOMPARE(min, 1.0);
        QCOMPARE(max, -2.0);
        QVERIFY(!plot.getMinMaxY(min, max));
        QCOMPARE(min, 3.0);
        QCOMPARE(max, 4.0);
    }

    void setInitMaxXRoundsAndRefreshes()
    {
        Plot plot;
        plot.setInitMaxX(1024.0);
        QCOMPARE(plot.m_initMaxX, 1024.0);
        QCOMPARE(plot.m_maxX, 1200.0);
        QVERIFY(plot.wasRefreshed());
        plot.m_maxX = 5.0;
        plot.setInitMaxX(1024.0 * (1 + 1e-16));
        QCOMPARE(plot.m_maxX, 5.0);
        QVERIFY(!plot.wasRefreshed());
    }

    void setInitMaxXOnAManualAxis()
    {
        Plot plot;
        plot.initManualX(0.0, 10.0);
        plot.setInitMaxX(1024.0);
        QCOMPARE(plot.m_maxX, 1024.0);
        QVERIFY(plot.wasRefreshed());
    }

    void settersRefreshOnlyIfDocumented()
    {
        Plot plot;
        plot.setMinMaxX(0, 1);
        plot.setMinMaxY(0, 1);
        plot.initManualX(0, 1);
        plot.initManualY(0, 1);
        plot.setNotes("notes");
        plot.setTitle("title");
        plot.setDecimalX(2);
        plot.setDecimalY(3);
        plot.setFuncX2Tick(nullptr, nullptr, nullptr);
        plot.onAutoScaleX(false);
        plot.onAutoScaleY(false);
        plot.SetEnableSelectXRangeFeature(true, "TOF");
        QVERIFY(!plot.wasRefreshed());
        QCOMPARE(plot.m_notes, QString("notes"));
        QCOMPARE(plot.m_title, QString("title"));
        QCOMPARE(plot.getDecimalX(), 2);
        QCOMPARE(plot.getDecimalY(), 3);

        plot.setNameX("x");
        QVERIFY(plot.wasRefreshed());
        plot.setNameX("x");
        QVERIFY(!plot.wasRefreshed());
        plot.setNameY("y");
        QVERIFY(plot.wasRefreshed());
        plot.setNameY("y");
        QVERIFY(!plot.wasRefreshed());
        plot.setLogScaleY(true);
        QVERIFY(plot.wasRefreshed() && plot.m_logScaleY);
        plot.setLogScaleY(true);
        QVERIFY(plot.wasRefreshed());
        plot.SetPaintGridLineOnGraph(true);
        QVERIFY(plot.wasRefreshed() && plot.m_paintGridOnGraph);
    }

    void autoScaleStoresAndChecks()
    {
        Plot plot;
        plot.onAutoScaleX(false);
        QVERIFY(!plot.m_autoScaleX && !plot.m_actAutoScaleX->isChecked());
        QVERIFY(plot.m_autoScaleY && plot.m_actAutoScaleY->isChecked());
        plot.onAutoScaleY(false);
        QVERIFY(!plot.m_autoScaleY && !plot.m_actAutoScaleY->isChecked());
        plot.onReset();
        QVERIFY(plot.m_autoScaleX && plot.m_actAutoScaleX->isChecked());
        QVERIFY(plot.m_autoScaleY && plot.m_actAutoScaleY->isChecked());
    }

    void autoScaleByItsAction()
    {
        Plot plot;
        plot.m_actAutoScaleX->trigger();
        QVERIFY(!plot.m_autoScaleX);
        QCOMPARE(plot.calls, QStringList { "autoX 0" });
        plot.m_actAutoScaleY->setChecked(false); // by code as well: connected to toggled
        QVERIFY(!plot.m_autoScaleY);
        plot.calls.clear();
        plot.actions().at(6)->trigger(); // Reset
        QCOMPARE(plot.calls, (QStringList { "autoX 1", "autoX 1", "autoY 1", "autoY 1" }));
    }

    void showGridFlips()
    {
        Plot plot;
        plot.m_actShowGrid->trigger();
        QVERIFY(!plot.m_showGrid && !plot.m_actShowGrid->isChecked());
        QVERIFY(plot.wasRefreshed());
        plot.m_actShowGrid->setChecked(true); // not by code: connected to triggered
        QVERIFY(!plot.m_showGrid && !plot.wasRefreshed());
        plot.onShowGrid(); // and the slot does not change the check mark
        QVERIFY(plot.m_showGrid && plot.m_actShowGrid->isChecked());
        plot.onShowGrid();
        QVERIFY(!plot.m_showGrid && plot.m_actShowGrid->isChecked());
    }

    void labelsFollowTheNumberFormat()
    {
        Plot plot;
        QCOMPARE(plot.getLabelX(1500.0), QString("1500"));
        setNumberFormat('n', 6);
        QCOMPARE(plot.getLabelX(1500.0), QString("1.5e+3"));
        QCOMPARE(plot.getLabelY(0.002), QString("2e-3"));
    }

    void charSizeIsThatOfTheWidgetsFont()
    {
        Plot plot;
        QFont font;
        font.setPointSize(31);
        plot.setFont(font);
        int width = 0;
        int height = 0;
        plot.getCharSize(width, height);
        QCOMPARE(width, QFontMetrics(font).averageCharWidth());
        QCOMPARE(height, QFontMetrics(font).height());
    }
};

QTEST_MAIN(TestXYGraphWidget)
#include "tst_xygraphwidget.moc"
