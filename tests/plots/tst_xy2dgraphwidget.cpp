// The 2D plot without mouse input: initial state, actions, declaration orders, data, steps, axes and layout.
#include "support/cases.h"
#include "support/map2dprobe.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"

#include <QAction>
#include <QMetaMethod>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

class Plot : public tarnis::testing::MapProbe {
public:
    /// Rows of one value each, with that value as their maximum.
    void setRows(const QList<QList<double>>& rows)
    {
        for (qsizetype row = 0; row < rows.size(); ++row)
            setData(
                static_cast<int>(row), rows.at(row), rows.at(row).isEmpty() ? 0.0 : rows.at(row).constFirst(), false);
    }
    using XY2DGraphWidget::resizeEvent;
};

} // namespace

class TestXY2DGraphWidget : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsTheWholeAutoButtonInALargeFont()
    {
        MapProbe plot;
        plot.init(QStringLiteral("X"), QStringLiteral("Y"), 4, 4, false, false);
        QFont font = plot.font();
        font.setPixelSize(40);
        plot.m_autoButton->setFont(font);
        plot.resize(600, 400);
        plot.grab();
        QCOMPARE(plot.m_autoButton->y(), 0);
    }

    void startsWithItsDefaults()
    {
        Plot plot;
        QVERIFY(plot.m_data.isEmpty());
        QVERIFY(plot.m_rowMax.isEmpty());
        QCOMPARE(plot.m_minZ, 0.0);
        QCOMPARE(plot.m_maxZ, 100.0);
        QCOMPARE(plot.m_stepX, 0.0);
        QCOMPARE(plot.m_stepY, 0.0);
        QCOMPARE(plot.m_resolutionX, 1U);
        QCOMPARE(plot.m_resolutionY, 1U);
        QVERIFY(!plot.m_1dCutMode && !plot.m_1dCutActive && !plot.m_1dCutInside && !plot.m_logScale);
        QCOMPARE(plot.m_cutMinX, 0.0);
        QCOMPARE(plot.m_cutMaxX, 0.0);
        QCOMPARE(plot.m_cutMinY, 0.0);
        QCOMPARE(plot.m_cutMaxY, 0.0);
        QCOMPARE(plot.m_cutPixelRect, QRect(QPoint(0, 0), QPoint(-1, -1)));
        QCOMPARE(plot.m_cutDragEdge, 0);
        QVERIFY(plot.m_cutXWindows.map.isEmpty() && plot.m_cutYWindows.map.isEmpty());
        QVERIFY(plot.m_cutRangeDialog == nullptr && plot.m_colorBarMenu == nullptr);
        QVERIFY(plot.m_points.isEmpty());
        QVERIFY(plot.m_actRoi == nullptr && plot.m_roiWindow == nullptr);
        QCOMPARE(plot.m_roiRange, QRect(QPoint(0, 0), QPoint(-1, -1)));
        QCOMPARE(plot.m_pressPos, QPoint(0, 0));
        QVERIFY(!plot.m_display1dCutIntensity && !plot.m_editingColorBar && !plot.m_finishedEditingColorBar);
        QVERIFY(plot.m_paintGridOnGraph);
        QVERIFY(plot.hasMouseTracking());
        QCOMPARE(plot.m_autoButton->text(), QStringLiteral("Auto"));
        QVERIFY(
            plot.m_autoButton->isCheckable() && plot.m_autoButton->isChecked() && !plot.m_autoButton->autoDefault());
        QCOMPARE(plot.m_margin, QMargins(0, 0, plot.m_autoButton->width() + 6, 0));
        QPushButton longer(QStringLiteral("Manual"), &plot);
        longer.adjustSize();
        QCOMPARE(plot.m_autoButton->width(), longer.width());
        QVERIFY(plot.m_colorBar->isAutoScale());
        QCOMPARE(plot.m_colorBar->parent(), &plot);
    }

    void startsWithTheRainbow()
    {
        QCOMPARE(XY2DGraphWidget::colMin, QColor("#000000"));
        QCOMPARE(XY2DGraphWidget::colHalfMin, QColor("#0000ff"));
        QCOMPARE(XY2DGraphWidget::colHalf, QColor("#00ff00"));
        QCOMPARE(XY2DGraphWidget::colHalfMax, QColor("#ffff00"));
        QCOMPARE(XY2DGraphWidget::colMax, QColor("#ff0000"));
    }

    void hasItsActionsInOrder_data()
    {
        addColumns<int, QString, bool, bool>("place", "text", "checkable", "visible");
        QTest::newRow("save CSV") << 12 << QStringLiteral("Save CSV...") << false << true;
        QTest::newRow("cut") << 13 << QStringLiteral("1D Cut") << true << true;
        QTest::newRow("inside only") << 14 << QStringLiteral("Inside Only") << true << false;
        QTest::newRow("log scale") << 15 << QStringLiteral("Log Scale") << true << true;
    }
    void hasItsActionsInOrder()
    {
        QFETCH(int, place);
        const Plot plot;
        QCOMPARE(plot.actions().size(), 16);
        const QAction* action = plot.actions().at(place);
        QTEST(action->text(), "text");
        QTEST(action->isCheckable(), "checkable");
        QTEST(action->isVisible(), "visible");
        QVERIFY(!action->isChecked());
    }

    void declaresSignalsAndSlotsInOrder()
    {
        QCOMPARE(tarnis::testing::ownMethods(XY2DGraphWidget::staticMetaObject),
            (QStringList { "signal onColorBarChanged(XY2DGraphWidget*)", "signal onSelectRoiBegin(QList<QRect>)",
                "signal onSelectRoiChanged(QList<QRect>)", "signal onSelectRoiEnd()", "slot onAutoScaleZToggled(bool)",
                "slot onMaxZChanged(double)", "slot onParentMoved()", "slot onParentActivate()",
                "slot on1dCutEntered()", "slot onColorBarMenuHide()", "slot onAutoScaleX(bool)",
                "slot onAutoScaleY(bool)", "slot onReset()", "slot onSave()", "slot onPrint()", "slot onSaveCsv()",
                "slot on1dCut(bool)", "slot on1dCutInside(bool)", "slot on1dCutEdited(double,double,double,double)",
                "slot onLogScale(bool)", "slot onROI(bool)", "slot onMinZChanged(double)",
                "slot onColorBarSizeChanging(int)", "slot onMinColor()", "slot onHalfMinColor()", "slot onHalfColor()",
                "slot onHalfMaxColor()", "slot onMaxColor()", "slot updatePattern()", "slot onPatternRainbow1()",
                "slot onPatternRainbow2()", "slot onPatternGrays()", "slot onPatternBlueRedGreen()",
                "slot onPatternRedWhiteBlue()", "slot onPatternCyanMagenta()", "slot onPatternYellowHot()",
                "slot onPatternBlue()", "slot onColorReverse()", "slot onBackGroundColor()", "slot onEditingColorBar()",
                "slot onFinishEditingColorBar()", "slot onROIChanged(QList<QRect>,int,bool)" }));
    }

    void namesTheParametersOfItsMethods()
    {
        const auto names = [](const char* signature) {
            return tarnis::testing::parameterNames(XY2DGraphWidget::staticMetaObject, signature);
        };
        QCOMPARE(names("onColorBarChanged(XY2DGraphWidget*)"), QList<QByteArray> { "widget" });
        QCOMPARE(names("onSelectRoiBegin(QList<QRect>)"), QList<QByteArray> { "roiList" });
        QCOMPARE(names("onAutoScaleZToggled(bool)"), QList<QByteArray> { "checked" });
        QCOMPARE(names("onMaxZChanged(double)"), QList<QByteArray> { "max" });
        QCOMPARE(names("on1dCutEdited(double,double,double,double)"),
            (QList<QByteArray> { "x_min", "x_max", "y_min", "y_max" }));
        QCOMPARE(names("onColorBarSizeChanging(int)"), QList<QByteArray> { "width" });
        QCOMPARE(names("onROIChanged(QList<QRect>,int,bool)"),
            (QList<QByteArray> { "roiList", "selectedIndex", "dataChanged" }));
    }

    void declaresItsVirtualsInOrder()
    {
        using X = XY2DGraphWidget;
        const std::ptrdiff_t last = virtualIndex(&XYGraphWidget::onSetRectangle);
        QCOMPARE(virtualIndex(&X::update1dCutRect), last + 1);
        QCOMPARE(virtualIndex(&X::update1dCutRectSimply), last + 2);
        QCOMPARE(virtualIndex(&X::init1dCutRect), last + 3);
        for (const std::ptrdiff_t place : { virtualIndex(&X::refresh1dCut), virtualIndex(&X::close1dCut),
                 virtualIndex(&X::refreshROI), virtualIndex(&X::getColor) })
            QCOMPARE(place, std::ptrdiff_t(-1));
    }

    void declaresItsMembersInOrder()
    {
        Plot p;
        const QList<const void*> places { &p.m_xRangeDialog, &p.m_data, &p.m_rowMax, &p.m_autoButton, &p.m_colorBar,
            &p.m_colorBarMenu, &p.m_minZ, &p.m_maxZ, &p.m_stepX, &p.m_stepY, &p.m_resolutionX, &p.m_resolutionY,
            &p.m_act1dCut, &p.m_1dCutMode, &p.m_1dCutActive, &p.m_act1dCutInside, &p.m_1dCutInside, &p.m_logScale,
            &p.m_cutMinX, &p.m_cutMaxX, &p.m_cutMinY, &p.m_cutMaxY, &p.m_cutPixelRect, &p.m_cutDragEdge,
            &p.m_cutXWindows, &p.m_cutYWindows, &p.m_cutRangeDialog, &p.m_points, &p.m_actRoi, &p.m_roiRange,
            &p.m_roiWindow, &p.m_pressPos, &p.m_display1dCutIntensity, &p.m_editingColorBar,
            &p.m_finishedEditingColorBar };
        for (qsizetype i = 1; i < places.size(); ++i)
            QVERIFY2(std::less<>()(places.at(i - 1), places.at(i)), qPrintable(QString::number(i)));
    }

    void setDataGrowsTheLists()
    {
        Plot plot;
        plot.setData(2, { 1.0, 2.0 }, 7.0, false);
        QCOMPARE(plot.m_data, (QList<QList<double>> { {}, {}, { 1.0, 2.0 } }));
        QCOMPARE(plot.m_rowMax, (QList<double> { 0.0, 0.0, 7.0 }));
        plot.setData(0, { 3.0 }, -1.0, false);
        QCOMPARE(plot.m_data, (QList<QList<double>> { { 3.0 }, {}, { 1.0, 2.0 } }));
        QCOMPARE(plot.m_rowMax, (QList<double> { -1.0, 0.0, 7.0 }));
    }

    void setDataIgnoresANegativeRow()
    {
        Plot plot;
        plot.setData(-1, { 1.0 }, 1.0, true);
        plot.setData(std::numeric_limits<int>::min(), { 1.0 }, 1.0, true);
        QVERIFY(plot.m_data.isEmpty() && plot.m_rowMax.isEmpty());
    }

    void setDataFitsTheAxes()
    {
        Plot plot;
        plot.init(QStringLiteral("x"), QStringLiteral("y"), 10.0, 37.0, true, true);
        plot.setMinMaxX(3.0, 4.0);
        plot.setMinMaxY(3.0, 4.0);
        plot.setData(0, QList<double>(1024, 1.0), 1.0, false);
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 1200.0); // the longest row, rounded
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 40.0); // the initial maximum, not the number of rows
        plot.setResolution(2, 1);
        plot.setData(0, QList<double>(512, 1.0), 1.0, false);
        QCOMPARE(plot.m_maxX, 1200.0);
    }

    void setDataLeavesManualRangesAlone()
    {
        Plot plot;
        plot.initManualX(-5.0, 5.0);
        plot.initManualY(1.0, 2.0);
        plot.setMinMaxX(0.0, 1.0);
        plot.setData(0, QList<double>(100, 1.0), 1.0, false);
        QCOMPARE(plot.m_minX, -5.0); // automatic scaling is on: back to the initial range
        QCOMPARE(plot.m_maxX, 5.0);
        plot.onAutoScaleX(false);
        plot.onAutoScaleY(false);
        plot.setMinMaxX(0.0, 1.0);
        plot.setMinMaxY(1.25, 1.5);
        plot.setData(0, QList<double>(100, 1.0), 1.0, false);
        QCOMPARE(plot.m_maxX, 1.0);
        QCOMPARE(plot.m_maxY, 1.5);
    }

    void setDataDoesNotRefresh()
    {
        Plot plot;
        plot.wasRefreshed();
        plot.setData(0, { 1.0 }, 1.0, true);
        plot.setStepX(2.0);
        plot.setStepY(2.0);
        plot.setColorBarTicks(3);
        QVERIFY(!plot.wasRefreshed());
    }

    void setDataSharesTheRow()
    {
        Plot plot;
        const QList<double> row(100000, 1.0);
        plot.setData(0, row, 1.0, false);
        QCOMPARE(static_cast<const void*>(plot.m_data.at(0).constData()), static_cast<const void*>(row.constData()));
    }

    void getDataSharesTheRows()
    {
        Plot plot;
        plot.setRows({ { 1.0 }, { 2.0 } });
        QList<QList<double>> rows { { 9.0 } };
        plot.getData(rows);
        QCOMPARE(rows, (QList<QList<double>> { { 1.0 }, { 2.0 } }));
        QVERIFY(rows.isSharedWith(plot.m_data));
        plot.setData(0, { 5.0 }, 5.0, false);
        QCOMPARE(rows.at(0), QList<double> { 1.0 });
    }

    void clearDataEmptiesAndPutsZBack()
    {
        Plot plot;
        plot.setRows({ { 1.0 }, { 2.0 } });
        plot.m_autoButton->click();
        QVERIFY(!plot.m_colorBar->isAutoScale());
        QCOMPARE(plot.m_autoButton->text(), QStringLiteral("Manual"));
        plot.m_1dCutActive = true;
        plot.wasRefreshed();
        plot.clearData();
        QVERIFY(plot.m_data.isEmpty() && plot.m_rowMax.isEmpty());
        QVERIFY(plot.m_colorBar->isAutoScale() && plot.m_autoButton->isChecked());
        QCOMPARE(plot.m_autoButton->text(), QStringLiteral("Auto"));
        QVERIFY(!plot.m_1dCutActive);
        QVERIFY(plot.wasRefreshed());
    }

    void autoScaleXFitsToTheLongestRow()
    {
        Plot plot;
        plot.init(QStringLiteral("x"), QStringLiteral("y"), 10.0, 10.0, false, false);
        plot.setRows({ { 1.0 }, QList<double>(250, 1.0), { 1.0, 2.0 } });
        plot.setMinMaxX(3.0, 4.0);
        plot.wasRefreshed();
        plot.onAutoScaleX(false);
        QCOMPARE(plot.m_maxX, 4.0);
        QVERIFY(!plot.wasRefreshed());
        plot.onAutoScaleX(true);
        QVERIFY(plot.m_autoScaleX && plot.m_actAutoScaleX->isChecked());
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 250.0);
        QVERIFY(plot.wasRefreshed());
    }

    void autoScaleYFitsToTheRows()
    {
        Plot plot;
        plot.init(QStringLiteral("x"), QStringLiteral("y"), 10.0, 1000.0, false, false);
        plot.setRows(QList<QList<double>>(30, QList<double> { 1.0 }));
        plot.setMinMaxY(3.0, 4.0);
        plot.onAutoScaleY(true);
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 30.0); // the rows, where setData() uses the initial maximum
        plot.setData(0, { 1.0 }, 1.0, false);
        QCOMPARE(plot.m_maxY, 1000.0);
    }

    void resetFitsBoth()
    {
        Plot plot;
        plot.init(QStringLiteral("x"), QStringLiteral("y"), 10.0, 10.0, false, false);
        plot.setRows(QList<QList<double>>(20, QList<double>(40, 1.0)));
        plot.setMinMaxX(3.0, 4.0);
        plot.setMinMaxY(3.0, 4.0);
        plot.onReset();
        QCOMPARE(plot.m_maxX, 40.0);
        QCOMPARE(plot.m_maxY, 20.0);
        QVERIFY(plot.m_autoScaleX && plot.m_autoScaleY);
    }

    void stepsAreDerivedWhereNoneIsSet()
    {
        Plot plot;
        QCOMPARE(plot.getStepX(), 1e-5);
        QCOMPARE(plot.getStepY(), 1e-5);
        plot.initManualX(10.0, 20.0);
        plot.initManualY(0.0, 1.0);
        plot.setRows({ QList<double>(5, 1.0), QList<double>(50, 1.0) });
        QCOMPARE(plot.getStepX(), 2.0); // by row 0, not by the longest one
        QCOMPARE(plot.getStepY(), 0.5);
        plot.setStepX(-3.0);
        plot.setStepY(0.25);
        QCOMPARE(plot.getStepX(), -3.0);
        QCOMPARE(plot.getStepY(), 0.25);
        plot.setStepX(1e-17); // 0 within the tolerance
        QCOMPARE(plot.getStepX(), 2.0);
    }

    void stepsOfAnEmptyRowAreInfinite()
    {
        Plot plot;
        plot.initManualX(0.0, 20.0);
        plot.setRows({ {}, { 1.0 } });
        QVERIFY(std::isinf(plot.getStepX()));
    }

    void resolutionZeroIsOne()
    {
        Plot plot;
        plot.setResolution(4, 8);
        QVERIFY(plot.wasRefreshed());
        plot.setResolution(4, 8);
        QVERIFY(!plot.wasRefreshed());
        plot.setResolution(0, 0);
        QCOMPARE(plot.m_resolutionX, 1U);
        QCOMPARE(plot.m_resolutionY, 1U);
        QVERIFY(plot.wasRefreshed());
    }

    void maxCountIsThatOfTheLongestRow()
    {
        Plot plot;
        QCOMPARE(plot.getMaxCount(), 0);
        plot.setRows({ { 1.0 }, QList<double>(7, 1.0), {} });
        QCOMPARE(plot.getMaxCount(), 7);
        plot.setResolution(3, 5);
        QCOMPARE(plot.getMaxCount(), 21);
        plot.setResolution(4000000000U, 1);
        QCOMPARE(plot.getMaxCount(), std::numeric_limits<int>::max());
    }

    void maxValueReadsTheRowMaxima()
    {
        Plot plot;
        QCOMPARE(plot.getMaxValue(), 0.0);
        plot.setData(0, { 1000.0 }, -5.0, false);
        QCOMPARE(plot.getMaxValue(), 0.0);
        plot.setData(1, { 1.0 }, 12.0, false);
        plot.setData(2, { 1.0 }, std::numeric_limits<double>::quiet_NaN(), false);
        plot.setData(3, { 1.0 }, 3.0, false);
        QCOMPARE(plot.getMaxValue(), 12.0);
    }

    void pointsAreAddedAndRemovedTogether()
    {
        Plot plot;
        plot.wasRefreshed();
        plot.showPoint(1.0, 2.0);
        QVERIFY(plot.wasRefreshed());
        plot.showPoint(1.0, 2.0);
        QCOMPARE(plot.m_points, (QList<QPointF> { { 1.0, 2.0 }, { 1.0, 2.0 } }));
        plot.wasRefreshed();
        plot.hidePoint();
        QVERIFY(plot.m_points.isEmpty());
        QVERIFY(plot.wasRefreshed());
    }

    void layoutFollowsTheSize()
    {
        Plot plot;
        const int margin = plot.m_margin.right();
        const auto check = [&](QSize size) {
            QCOMPARE(plot.m_autoButton->pos(),
                QPoint(size.width() - plot.m_autoButton->width() - 6, 30 - plot.m_autoButton->sizeHint().height()));
            QCOMPARE(plot.m_colorBar->geometry(), QRect(size.width() - margin, 30, margin, size.height() - 60));
        };
        plot.adjustWidgetPosition({ 500, 400 });
        check({ 500, 400 });
        plot.wasRefreshed();
        QResizeEvent event({ 620, 333 }, { 500, 400 });
        plot.resizeEvent(&event);
        check({ 620, 333 });
        QVERIFY(plot.wasRefreshed());
    }

    void layoutFollowsTheColourBar()
    {
        Plot plot;
        plot.resize(600, 400);
        plot.wasRefreshed();
        plot.onColorBarSizeChanging(150);
        QCOMPARE(plot.m_margin, QMargins(0, 0, 150, 0));
        QCOMPARE(plot.m_colorBar->geometry(), QRect(450, 30, 150, 340));
        QVERIFY(plot.wasRefreshed());
        plot.adjustWidgetPosition({ 700, 400 });
        QCOMPARE(plot.m_colorBar->geometry(), QRect(550, 30, 150, 340));
    }
};

QTEST_MAIN(TestXY2DGraphWidget)
#include "tst_xy2dgraphwidget.moc"
