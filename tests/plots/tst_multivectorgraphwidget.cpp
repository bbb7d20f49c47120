// The plot of many series: members, orders, series, ranges, menu and read-out under the user's mouse.
#include "plots/multiseries.h"
#include "support/cases.h"
#include "support/curveprobe.h"
#include "support/metamethods.h"
#include "support/virtualorder.h"

#include <tarnis/foundation/translation.h>
#include <tarnis/plots/multivectorgraphwidget.h>

#include <limits>

using namespace tarnis::testing;

namespace {

double same(double x, void*)
{
    return x;
}

} // namespace

class TestMultiVectorGraphWidget : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsWithItsDefaults()
    {
        const tarnis::testing::MultiProbe plot;
        QCOMPARE(plot.m_data.size(), 8);
        const QList<QColor> colors { QColor(255, 51, 0), QColor(255, 255, 0), QColor(51, 153, 102), QColor(0, 65, 255),
            QColor(102, 204, 255), QColor(255, 153, 153), QColor(255, 153, 0), QColor(153, 0, 102) };
        for (int i = 0; i < 8; ++i) {
            QCOMPARE(plot.m_data.at(i).color, colors.at(i));
            QVERIFY(plot.m_data.at(i).enable && plot.m_data.at(i).values.isEmpty());
        }
        QCOMPARE(plot.m_groupSize, 8);
        QCOMPARE(plot.m_firstNumber, 0);
        QCOMPARE(plot.m_addType, MultiVectorGraphWidget::AddNone);
        QCOMPARE(plot.m_resolution, 1U);
        QVERIFY(plot.m_maxValues.isEmpty() && plot.m_manualIndex.isEmpty() && plot.m_peaks.isEmpty());
        QVERIFY(plot.m_itemName.isEmpty() && plot.m_groupName.isEmpty());
        QVERIFY(plot.m_visibleDialogs.map.isEmpty() && plot.m_peakDialogs.map.isEmpty());
        QVERIFY(!plot.m_columnChart && plot.m_connectPoints && plot.m_showGrid && !plot.m_peakDisplayPoints);
        QVERIFY(plot.m_funcX2Plot == nullptr && plot.m_funcPlot2X == nullptr);
        QVERIFY(plot.hasMouseTracking());
        QCOMPARE(static_cast<int>(MultiVectorGraphWidget::AddEachGroup), 1);
        QCOMPARE(static_cast<int>(MultiVectorGraphWidget::AddEachPosition), 2);
        QCOMPARE(static_cast<int>(MultiVectorGraphWidget::AddAll), 3);
    }

    void defaultsOfARecord()
    {
        const MultiVectorGraphWidget::Data record;
        QVERIFY(record.values.isEmpty());
        QCOMPARE(record.color, QColor(Qt::white));
        QVERIFY(record.enable);
        QVERIFY(static_cast<const void*>(&record.values) < static_cast<const void*>(&record.color));
        QVERIFY(static_cast<const void*>(&record.color) < static_cast<const void*>(&record.enable));
    }

    void declaresItsMembersInOrder()
    {
        const Plot p;
        const QList<const void*> places { &p.m_xRangeDialog, &p.m_data, &p.m_groupSize, &p.m_firstNumber, &p.m_addType,
            &p.m_maxValues, &p.m_visibleDialogs, &p.m_peakDialogs, &p.m_itemName, &p.m_groupName, &p.m_manualIndex,
            &p.m_peaks, &p.m_peakSelected, &p.m_peakThreshold, &p.m_peakDisplayPoints, &p.m_resolution,
            &p.m_columnChart, &p.m_connectPoints, &p.m_funcX2Plot, &p.m_funcPlot2X };
        QVERIFY(std::is_sorted(places.cbegin(), places.cend()));
    }

    void declaresItsSlotsInOrder()
    {
        const QMetaObject& meta = MultiVectorGraphWidget::staticMetaObject;
        QCOMPARE(tarnis::testing::ownMethods(meta),
            (QStringList { "slot onSelectVisibles()", "slot onPainting()", "slot onAutoScaleX(bool)",
                "slot onAutoScaleY(bool)", "slot onSelectXRange(bool)", "slot onDlgSelectCheckedApply()",
                "slot onSaveCsv()", "slot onPeakSearch()", "slot peakSearch(int,int,bool)", "slot peakSelected(int)",
                "slot peakToggledDisplayPoints(bool)", "slot peakClear()", "slot onConnectPoints(bool)",
                "slot onColumnChart(bool)", "slot onLogScale(bool)" }));
        const auto names = [](const char* signature) {
            return tarnis::testing::parameterNames(MultiVectorGraphWidget::staticMetaObject, signature);
        };
        QCOMPARE(names("peakSearch(int,int,bool)"), (QList<QByteArray> { "threshold", "width", "peak" }));
        QCOMPARE(names("peakSelected(int)"), QList<QByteArray> { "index" });
        QCOMPARE(names("peakToggledDisplayPoints(bool)"), QList<QByteArray> { "checked" });
        QCOMPARE(names("onConnectPoints(bool)"), QList<QByteArray> { "bConnectPoints" });
        QCOMPARE(names("onColumnChart(bool)"), QList<QByteArray> { "bColumnChart" });
    }

    void overridesButAddsNoVirtuals()
    {
        using M = MultiVectorGraphWidget;
        using X = XYGraphWidget;
        QCOMPARE(virtualIndex(&M::onSelectXRange), virtualIndex(&X::onSelectXRange));
        QCOMPARE(virtualIndex(&M::onPaint), virtualIndex(&X::onPaint));
        QCOMPARE(virtualIndex(&M::paintData), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&M::setData), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&M::peakSearch), std::ptrdiff_t(-1));
        QCOMPARE(virtualIndex(&M::onSelectVisibles), std::ptrdiff_t(-1));
    }

    void menuEntries_data()
    {
        addColumns<int, QString, bool, bool>("place", "text", "checkable", "checked");
        QTest::newRow("Save CSV...") << 12 << "Save CSV..." << false << false;
        QTest::newRow("Column Chart") << 13 << "Column Chart" << true << false;
        QTest::newRow("Connect Points") << 14 << "Connect Points" << true << true;
        QTest::newRow("Peak Search") << 15 << "Peak Search" << false << false;
        QTest::newRow("Log Scale") << 16 << "Log Scale" << true << false;
    }
    void menuEntries()
    {
        QFETCH(int, place);
        const Plot plot;
        QCOMPARE(plot.actions().size(), 17);
        const QAction* action = plot.actions().at(place);
        QTEST(action->text(), "text");
        QTEST(action->isCheckable(), "checkable");
        QTEST(action->isChecked(), "checked");
        QCOMPARE(action->parent(), &plot);
    }

    void setDataGrowsAndFits()
    {
        Plot plot;
        plot.m_minX = plot.m_minY = 3.0;
        plot.setData(17, QList<double>(1024, 1.0), 90.0);
        QCOMPARE(plot.m_data.size(), 18);
        QCOMPARE(plot.m_data.at(12).color, QColor(Qt::white));
        QCOMPARE(plot.m_maxValues, (QList<double> { 0.0, 0.0, 90.0 }));
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 1200.0);
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 100.0);
        QVERIFY(!plot.wasRefreshed());
    }

    void setDataUsesTheLastMaximumOfAGroup()
    {
        Plot plot;
        plot.setData(0, { 1.0 }, 90.0);
        plot.setData(1, { 1.0 }, 5.0);
        plot.setData(8, { 1.0 }, 7.0);
        QCOMPARE(plot.m_maxValues, (QList<double> { 5.0, 7.0 }));
        QCOMPARE(plot.getMaxValue(), 7.0);
    }

    void setDataOnFixedAxes()
    {
        Plot plot;
        plot.initMode(false, false);
        plot.setMinMaxX(1.0, 2.0);
        plot.setMinMaxY(3.0, 4.0);
        plot.setData(0, QList<double>(100, 1.0), 90.0);
        QCOMPARE(plot.m_maxX, 2.0);
        QCOMPARE(plot.m_maxY, 4.0);
    }

    void negativeIndicesAreNothing()
    {
        Plot plot;
        plot.setData(-1, { 1.0 }, 1.0);
        plot.setEnable(-1, false);
        plot.setColor(-1, Qt::red);
        plot.resizeData(-4);
        QList<double> values { 5.0 };
        QVERIFY(!plot.getData(-1, values));
        QCOMPARE(values, QList<double> { 5.0 });
        QVERIFY(plot.m_data.isEmpty());
    }

    void groupSizeBelowOneIsOne()
    {
        Plot plot;
        for (const int size : { 0, -3 }) {
            plot.m_groupSize = size;
            plot.setData(3, { 1.0, 2.0 }, 2.0);
            QCOMPARE(plot.m_maxValues.size(), 4);
            for (int type = 0; type < 4; ++type) {
                plot.setAddType(static_cast<MultiVectorGraphWidget::AddType>(type));
                plot.picture();
                plot.peakSearch(20, 3, true);
                plot.onSelectVisibles();
                plot.onDlgSelectCheckedApply();
            }
            plot.clearData();
            QCOMPARE(plot.m_data.size(), 1);
        }
    }

    void resizeDropsFromTheEnd()
    {
        Plot plot;
        plot.setData(1, { 1.0 }, 1.0);
        plot.resizeData(2);
        QCOMPARE(plot.m_data.size(), 2);
        QCOMPARE(plot.m_data.at(1).values, QList<double> { 1.0 });
        plot.resizeData(4);
        QCOMPARE(plot.m_data.at(3).color, QColor(Qt::white));
    }

    void marksAndColoursGrow()
    {
        Plot plot;
        plot.setEnable(9, false);
        QCOMPARE(plot.m_data.size(), 10);
        QVERIFY(!plot.m_data.at(9).enable && plot.m_data.at(8).enable);
        plot.setColor(11, Qt::cyan);
        QCOMPARE(plot.m_data.size(), 12);
        QCOMPARE(plot.m_data.at(11).color, QColor(Qt::cyan));
        QVERIFY(!plot.wasRefreshed());
    }

    void clearKeepsColoursAndMarks()
    {
        Plot plot;
        plot.setData(0, { 1.0 }, 1.0);
        plot.resizeData(3);
        plot.setColor(1, Qt::cyan);
        plot.setEnable(2, false);
        plot.showPeak({});
        plot.clearData();
        QCOMPARE(plot.m_data.size(), 8);
        QVERIFY(!plot.hasData());
        QCOMPARE(plot.m_data.at(1).color, QColor(Qt::cyan));
        QVERIFY(!plot.m_data.at(2).enable);
        QVERIFY(plot.m_maxValues.isEmpty() && plot.m_peaks.isEmpty());
        plot.resizeData(20);
        plot.clearData();
        QCOMPARE(plot.m_data.size(), 8);
    }

    void getDataChecksItsRange()
    {
        Plot plot;
        plot.setData(2, { 1.0, 2.0 }, 2.0);
        QList<double> values;
        QVERIFY(plot.getData(2, values));
        QCOMPARE(values, (QList<double> { 1.0, 2.0 }));
        QVERIFY(plot.getData(0, values));
        QVERIFY(values.isEmpty());
        QVERIFY(!plot.getData(8, values));
    }

    void countsOfSeries()
    {
        Plot plot;
        QVERIFY(!plot.hasData());
        QCOMPARE(plot.getValidDataCount(), 0);
        QCOMPARE(plot.getMaxCount(), 0);
        plot.setData(5, QList<double>(7, 0.0), 0.0);
        plot.setData(9, QList<double>(3, 0.0), 0.0);
        plot.setEnable(5, false);
        QVERIFY(plot.hasData());
        QCOMPARE(plot.getValidDataCount(), 2);
        QCOMPARE(plot.getMaxCount(), 7); // hidden ones count
    }

    void countTimesResolution()
    {
        Plot plot;
        plot.setData(0, QList<double>(7, 0.0), 0.0);
        plot.setResolution(10);
        QCOMPARE(plot.getMaxCount(), 70);
        plot.setResolution(4000000000U);
        QCOMPARE(plot.getMaxCount(), std::numeric_limits<int>::max());
    }

    void resolutionRefreshesOnAChange()
    {
        Plot plot;
        plot.setResolution(1);
        QVERIFY(!plot.wasRefreshed());
        plot.setResolution(5);
        QVERIFY(plot.wasRefreshed());
        QCOMPARE(plot.m_resolution, 5U);
        plot.setResolution(0);
        QCOMPARE(plot.m_resolution, 1U);
    }

    void addTypeRefits()
    {
        Plot plot;
        plot.setData(0, QList<double>(100, 1.0), 90.0);
        plot.setMinMaxX(3.0, 4.0);
        plot.wasRefreshed();
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        QCOMPARE(plot.m_addType, MultiVectorGraphWidget::AddEachGroup);
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 100.0);
        QCOMPARE(plot.m_maxY, 800.0); // eight times the largest value
        QVERIFY(plot.wasRefreshed());
        plot.initMode(false, false);
        plot.setMinMaxX(3.0, 4.0);
        plot.setAddType(MultiVectorGraphWidget::AddAll);
        QCOMPARE(plot.m_maxX, 4.0);
        QVERIFY(!plot.m_autoScaleX && !plot.m_autoScaleY);
    }

    void anUnknownTypeAddsAll()
    {
        Plot all;
        Plot other;
        for (Plot* plot : { &all, &other }) {
            plot->setData(0, { 1.0, 2.0, 3.0 }, 3.0);
            plot->setData(1, { 5.0, 1.0, 2.0 }, 5.0);
        }
        all.setAddType(MultiVectorGraphWidget::AddAll);
        other.setAddType(static_cast<MultiVectorGraphWidget::AddType>(77));
        QCOMPARE(other.getMaxValue(), all.getMaxValue());
        QCOMPARE(other.picture(), all.picture());
    }

    void functionRemovesPeakSearch()
    {
        Plot plot;
        plot.setFuncX2Plot(same, same);
        QVERIFY(plot.entry(QStringLiteral("Peak Search")) == nullptr);
        QCOMPARE(plot.actions().size(), 16);
        plot.setFuncX2Plot(same, same);
        QCOMPARE(plot.actions().size(), 16);
        plot.setData(0, { 1.0, 2.0 }, 2.0);
        plot.picture();
        plot.setFuncX2Plot(same, nullptr); // half a pair does no harm
        plot.picture();
        plot.setFuncX2Plot(nullptr, same);
        plot.picture();
    }

    void functionRemovesPeakSearchInAnyLanguage()
    {
        Plot english;
        QVERIFY(tarnis::setLanguage(QLocale(QLocale::German)));
        Plot german;
        english.setFuncX2Plot(same, same);
        QCOMPARE(english.actions().size(), 16);
        QVERIFY(english.entry(QStringLiteral("Peak Search")) == nullptr);
        tarnis::setLanguage(QLocale(QLocale::English));
        german.setFuncX2Plot(same, same);
        QCOMPARE(german.actions().size(), 16);
    }

    void hugeWholeNumbersDoNotOverflow()
    {
        Plot plot;
        constexpr int largest = std::numeric_limits<int>::max();
        plot.m_peaks = { PeakSearch::Gaussian() };
        plot.m_peaks[0].start = largest;
        plot.m_peaks[0].points = { 1.0, 2.0 };
        plot.m_peakDisplayPoints = true;
        plot.m_peakDialogs.map.insert(&plot, new QWidget);
        plot.setData(0, { 1.0, 2.0 }, 2.0);
        plot.picture();
        plot.m_groupSize = largest;
        plot.setAddType(MultiVectorGraphWidget::AddEachGroup);
        plot.picture();
        plot.peakSearch(20, 3, true);
        QCOMPARE(plot.getMaxValue(), 2.0 * largest);
    }

    void autoScaleX()
    {
        Plot plot;
        plot.setData(0, QList<double>(1024, 1.0), 1.0);
        plot.onAutoScaleX(false);
        plot.setMinMaxX(3.0, 4.0);
        plot.wasRefreshed();
        plot.m_actAutoScaleX->trigger();
        QCOMPARE(plot.m_minX, 0.0);
        QCOMPARE(plot.m_maxX, 1200.0);
        QVERIFY(plot.wasRefreshed());
        plot.m_initAutoScaleX = false;
        plot.onAutoScaleX(true);
        QCOMPARE(plot.m_maxX, 500.0); // the initial maximum, rounded
    }

    void autoScaleY()
    {
        Plot plot;
        plot.setData(0, QList<double>(10, 1.0), 90.0);
        plot.onAutoScaleY(false);
        plot.setMinMaxY(3.0, 4.0);
        plot.wasRefreshed();
        plot.onAutoScaleY(true);
        QCOMPARE(plot.m_minY, 0.0);
        QCOMPARE(plot.m_maxY, 100.0);
        QVERIFY(plot.wasRefreshed());
    }
};

QTEST_MAIN(TestMultiVectorGraphWidget)
#include "tst_multivectorgraphwidget.moc"
