// The plot frame without mouse input: initial state, actions, declaration orders, ranges, names and ticks.
#include "support/cases.h"
#include "support/frameprobe.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"

#include <tarnis/foundation/helpers.h>
#include <tarnis/plots/xygraphwidget.h>

#include <QAction>
#include <QFontMetrics>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

/// Counts the calls that a host's subclass receives.
class Plot : public tarnis::testing::FrameProbe<XYGraphWidget> {
public:
    void onAutoScaleX(bool checked) override
    {
        calls << QStringLiteral("autoX %1").arg(checked);
        XYGraphWidget::onAutoScaleX(checked);
    }
    void onAutoScaleY(bool checked) override
    {
        calls << QStringLiteral("autoY %1").arg(checked);
        XYGraphWidget::onAutoScaleY(checked);
    }
    void updateModeAndCursor() override
    {
        calls << QStringLiteral("mode");
        XYGraphWidget::updateModeAndCursor();
    }
    void onPaint(QPainter& painter, QRect const& graph) override
    {
        ++paints;
        clip = painter.clipBoundingRect();
        pen = painter.pen();
        painted = graph;
    }

    /// True if a refresh was requested since the last call.
    bool wasRefreshed() { return std::exchange(m_refreshRequired, false); }
    void paintNow()
    {
        m_refreshRequired = true;
        m_doubleBuffered = true;
        refreshPixmapIfRequired();
    }

    QStringList calls;
    int paints = 0;
    QRectF clip;
    QPen pen;
    QRect painted;
};

} // namespace

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

    void margins_data()
    {
        addColumns<double, double, double, QString, int, int, int>(
            "maxX", "minY", "maxY", "nameY", "leftLetters", "topLines", "rightLetters");
        QTest::newRow("no name") << 1000.0 << 0.0 << 50.0 << "" << 2 << 1 << 4;
        QTest::newRow("with a name") << 1000.0 << 0.0 << 50.0 << "Counts" << 2 << 2 << 4;
        QTest::newRow("longer minimum") << 7.0 << -1234.5 << 50.0 << "" << 7 << 1 << 1;
        QTest::newRow("exponent") << 1e9 << 0.0 << 1e9 << "" << 5 << 1 << 5;
    }
    void margins()
    {
        QFETCH(double, maxX);
        QFETCH(double, minY);
        QFETCH(double, maxY);
        QFETCH(QString, nameY);
        QFETCH(int, leftLetters);
        QFETCH(int, topLines);
        QFETCH(int, rightLetters);
        Plot plot;
        plot.setMinMaxX(0.0, maxX);
        plot.setMinMaxY(minY, maxY);
        plot.setNameY(nameY);
        int cw = 0;
        int ch = 0;
        plot.getCharSize(cw, ch);
        QSize topLeft;
        QSize bottomRight;
        plot.getMargin(topLeft, bottomRight);
        QCOMPARE(topLeft, QSize(leftLetters * cw + 10, topLines * ch));
        QCOMPARE(bottomRight, QSize(rightLetters * cw / 2 + 5, 2 * ch + 5));
    }

    void adjustAxisForms()
    {
        Plot plot;
        unsigned int ticks = 0;
        QCOMPARE(plot.adjustAxis(1024.0, ticks), 1200.0);
        QCOMPARE(ticks, 6U);
        QCOMPARE(plot.adjustAxis(100.0, ticks), 100.0);
        QCOMPARE(ticks, 5U);
        QCOMPARE(plot.adjustAxis(0.5), 0.5);
        QVERIFY(std::isnan(plot.adjustAxis(-1.0)));
    }

    void adjustAxisKeepsManualMaxima()
    {
        Plot plot;
        plot.adjustAxisX(1024.0);
        plot.adjustAxisY(1024.0);
        QCOMPARE(plot.m_maxX, 1200.0);
        QCOMPARE(plot.m_maxY, 1200.0);
        plot.initManualX(0.0, 1024.0);
        plot.initManualY(0.0, 1001.0);
        plot.adjustAxisX(7.0);
        plot.adjustAxisY(7.0);
        QCOMPARE(plot.m_maxX, 1024.0);
        QCOMPARE(plot.m_maxY, 1001.0);
        plot.m_logScaleY = true;
        plot.adjustAxisY(7.0);
        QCOMPARE(plot.m_maxY, 1001.0);
    }

    void adjustAxisYByDecades()
    {
        Plot plot;
        plot.m_logScaleY = true;
        plot.adjustAxisY(1000.0);
        QCOMPARE(plot.m_maxY, 1000.0);
        plot.adjustAxisY(1001.0);
        QCOMPARE(plot.m_maxY, 10000.0);
        plot.adjustAxisY(0.5);
        QCOMPARE(plot.m_maxY, 1.0);
    }

    void pixelsAndValues()
    {
        Plot plot;
        plot.m_graphRect = QRect(50, 20, 200, 100);
        plot.setMinMaxX(0.0, 400.0);
        plot.setMinMaxY(0.0, 50.0);
        QCOMPARE(plot.calcGraphPointF({ 150.0, 69.0 }), QPointF(200.0, 25.0));
        QCOMPARE(plot.calcWidgetPointF({ 200.0, 25.0 }), QPointF(150.0, 69.0));
        plot.setMinMaxX(400.0, 0.0); // reversed
        QCOMPARE(plot.calcGraphPointF({ 100.0, 69.0 }).x(), 300.0);
        QCOMPARE(plot.calcWidgetPointF({ 300.0, 25.0 }).x(), 100.0);
    }

    void wholePixelsAndValuesAreRoundedAndCut()
    {
        Plot plot;
        plot.m_graphRect = QRect(0, 0, 100, 100);
        plot.setMinMaxX(0.0, 50.0);
        plot.setMinMaxY(0.0, 33.0);
        QCOMPARE(plot.calcGraphPoint({ 3, 0 }), QPoint(2, 33)); // 1.5 and 32.67
        QCOMPARE(plot.calcWidgetPoint({ 1, 10 }), QPoint(2, 69)); // 2 and 68.7
        plot.setMinMaxX(0.0, 0.0);
        plot.setMinMaxY(0.0, 1e300);
        QCOMPARE(plot.calcGraphPoint({ 3, 0 }), QPoint(0, std::numeric_limits<int>::max()));
        QCOMPARE(plot.calcWidgetPoint({ 1, 0 }), QPoint(std::numeric_limits<int>::max(), 99));
    }

    void mappingIsLinearOnALogAxisToo()
    {
        Plot plot;
        plot.m_graphRect = QRect(0, 0, 100, 100);
        plot.setMinMaxX(0.0, 1.0);
        plot.setMinMaxY(1.0, 1001.0);
        plot.m_logScaleY = true;
        QCOMPARE(plot.calcGraphPointF({ 0.0, 49.0 }).y(), 501.0);
        QCOMPARE(plot.calcWidgetPointF({ 0.0, 501.0 }).y(), 49.0);
    }

    void decimalsReachTheXAxisOnePaintLater()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 0.5);
        plot.setMinMaxY(0.0, 0.5);
        plot.setDecimalX(2);
        plot.setDecimalY(2);
        plot.paintNow();
        QCOMPARE(plot.m_tickDecimalY, 1); // what calcTicks used
        QCOMPARE(plot.m_tickDecimalX, 2); // set back after calcTicks had worked with 0
        const QImage first = plot.m_pixmap.toImage();
        plot.paintNow();
        QCOMPARE(plot.m_tickDecimalX, 2);
        const QImage second = plot.m_pixmap.toImage();
        QVERIFY(first != second); // the X grid came one paint later
        const int row = plot.m_graphRect.top() + 3;
        int columns = 0;
        for (int x = plot.m_graphRect.left() + 1; x < plot.m_graphRect.right(); ++x) {
            QCOMPARE(first.pixelColor(x, row), QColor(Qt::black));
            if (second.pixelColor(x, row) == QColor(64, 64, 64))
                ++columns;
        }
        QCOMPARE(columns, 9); // 4 inner ticks and 5 halves
        plot.paintNow();
        QCOMPARE(plot.m_pixmap.toImage(), second);
    }

    void secondScaleGetsItsData()
    {
        static double factor = 10.0;
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 10.0);
        plot.setMinMaxY(0.0, 10.0);
        plot.setFuncX2Tick([](double x, void* data) { return x * *static_cast<double*>(data); },
            [](double tick, void* data) { return tick / *static_cast<double*>(data); }, &factor);
        plot.paintNow();
        const QImage tenfold = plot.m_pixmap.toImage();
        plot.setFuncX2Tick(nullptr, nullptr, nullptr);
        plot.paintNow();
        QCOMPARE(plot.m_pixmap.toImage(), tenfold); // 0 to 100 by 20 falls on the same values as 0 to 10 by 2
        factor = 3.0; // 0 to 30 by 5: values 0, 1.67 and so on
        plot.setFuncX2Tick([](double x, void* data) { return x * *static_cast<double*>(data); },
            [](double tick, void* data) { return tick / *static_cast<double*>(data); }, &factor);
        plot.paintNow();
        QVERIFY(plot.m_pixmap.toImage() != tenfold);
        QCOMPARE(plot.m_tickDecimalX, 0);
    }

    void nullScaleIsTheIdentity()
    {
        Plot plot;
        int data = 0;
        plot.setFuncX2Tick(nullptr, nullptr, &data);
        QCOMPARE(plot.m_funcX2Tick(2.5, nullptr), 2.5);
        QCOMPARE(plot.m_funcTick2X(2.5, nullptr), 2.5);
        QCOMPARE(plot.m_funcUserData, static_cast<void*>(&data));
    }

    void labelRectanglesOfOneTick()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.m_labelRectMaxX = QRect(1, 2, 3, 4);
        plot.m_labelRectMaxY = QRect(5, 6, 7, 8);
        plot.paintNow(); // 0 to 0 on both axes: one tick each
        QCOMPARE(plot.m_labelRectMaxX, QRect(1, 2, 3, 4));
        QCOMPARE(plot.m_labelRectMaxY, QRect(5, 6, 7, 8));
        QVERIFY(plot.m_labelRectMinX.right() < 0); // 0 / 0: out of sight, no click opens an editor
        QCOMPARE(plot.m_labelRectMinY.left(), 0);
        plot.m_rotation = 90.0;
        plot.paintNow();
        QCOMPARE(plot.m_labelRectMaxX, QRect(1, 2, 3, 4)); // not turned either
    }

    void labelRectanglesTurnWithThePlot()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 1000.0);
        plot.setMinMaxY(0.0, 50.0);
        plot.m_rotation = -90.0;
        plot.paintNow();
        const QRect minX = plot.m_labelRectMinX; // at -90 they stay in the picture's coordinates
        const QRect maxY = plot.m_labelRectMaxY;
        QCOMPARE(minX.bottom() - minX.top(), 14);
        plot.m_rotation = 90.0;
        plot.paintNow();
        QCOMPARE(plot.m_labelRectMinX,
            QRect(QPoint(600 - minX.bottom(), minX.left()), QPoint(600 - minX.top(), minX.right())));
        QCOMPARE(plot.m_labelRectMaxY,
            QRect(QPoint(600 - maxY.bottom(), maxY.left()), QPoint(600 - maxY.top(), maxY.right())));
    }

    void dataIsPaintedIntoTheClippedGraph()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 1000.0);
        plot.setMinMaxY(0.0, 50.0);
        plot.m_margin = QMargins(10, 20, 30, 40);
        plot.paintNow();
        QCOMPARE(plot.paints, 1);
        QCOMPARE(plot.painted, plot.m_graphRect);
        QCOMPARE(plot.clip.toRect(), plot.m_graphRect);
        QCOMPARE(plot.pen.color(), QColor(Qt::black));
        int cw = 0;
        int ch = 0;
        plot.getCharSize(cw, ch);
        QCOMPARE(plot.m_graphRect,
            QRect(QPoint(10 + 2 * cw + 10, 20 + ch), QPoint(599 - 30 - 4 * cw / 2 - 5, 399 - 40 - 2 * ch - 5)));
    }

    void gridGoesUnderOrOverTheData()
    {
        class Filled : public Plot {
        public:
            void onPaint(QPainter& painter, QRect const& graph) override { painter.fillRect(graph, Qt::red); }
        };
        Filled plot;
        plot.resize(600, 400);
        plot.setMinMaxX(0.0, 100.0);
        plot.setMinMaxY(0.0, 100.0);
        const auto gridPixels = [&] {
            plot.paintNow();
            const QImage picture = plot.m_pixmap.toImage();
            int count = 0;
            for (int x = plot.m_graphRect.left() + 1; x < plot.m_graphRect.right(); ++x)
                count += picture.pixelColor(x, plot.m_graphRect.top() + 2) == QColor(64, 64, 64) ? 1 : 0;
            return count;
        };
        QCOMPARE(gridPixels(), 0);
        plot.SetPaintGridLineOnGraph(true);
        QCOMPARE(gridPixels(), 9);
        plot.onShowGrid();
        QCOMPARE(gridPixels(), 0);
    }

    void narrowPlotsKeepTheOuterLabels()
    {
        Plot plot;
        plot.resize(90, 400);
        plot.setMinMaxX(0.0, 1000.0);
        plot.setMinMaxY(0.0, 10.0);
        plot.paintNow();
        const QImage picture = plot.m_pixmap.toImage();
        const auto inkIn = [&](const QRect& rect) {
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x) {
                    if (picture.rect().contains(x, y) && picture.pixelColor(x, y).lightness() < 100)
                        return true;
                }
            }
            return false;
        };
        QVERIFY(inkIn(plot.m_labelRectMinX));
        QVERIFY(inkIn(plot.m_labelRectMaxX));
        int marks = 0; // 0, 200, 400, 600, 800, 1000, labelled or not
        for (int x = 0; x < picture.width(); ++x)
            marks += picture.pixelColor(x, plot.m_graphRect.bottom() + 3) == QColor(Qt::black) ? 1 : 0;
        QCOMPARE(marks, 6);
        const QRect middle(plot.m_labelRectMinX.right() + 1, plot.m_labelRectMinX.top(),
            plot.m_labelRectMaxX.left() - plot.m_labelRectMinX.right() - 1, 15);
        QVERIFY(middle.width() > 0);
        QVERIFY(!inkIn(middle));
    }

    // Both are on the bottom row. On a linear axis there is only the 0.
    void zeroHidesTheLabelOfOneOnALogAxis()
    {
        const auto bottomLabel = [](bool logScale) {
            Plot plot;
            plot.resize(300, 300);
            plot.setMinMaxX(0.0, 100.0);
            plot.setMinMaxY(0.0, 1000.0);
            plot.m_logScaleY = logScale;
            plot.paintNow();
            return plot.m_pixmap.toImage().copy(plot.m_labelRectMinY);
        };
        QCOMPARE(bottomLabel(true), bottomLabel(false));
    }

    void nothingIsLostWithEmptyRanges()
    {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        const double odd[] = { 0.0, 1.0, infinity, -infinity, std::nan(""), 1e308, -1e308, 5e-324 };
        Plot plot;
        plot.resize(300, 200);
        for (const double min : odd) {
            for (const double max : odd) {
                plot.setMinMaxX(min, max);
                plot.setMinMaxY(max, min);
                for (const bool log : { false, true }) {
                    plot.m_logScaleY = log;
                    plot.paintNow();
                    QCOMPARE(
                        plot.m_pixmap.toImage().pixelColor(plot.m_pixmap.rect().bottomRight()), QColor(Qt::lightGray));
                }
            }
        }
        QCOMPARE(plot.paints, 128);
    }
};

QTEST_MAIN(TestXYGraphWidget)
#include "tst_xygraphwidget.moc"
