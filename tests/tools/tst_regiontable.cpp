// Regions on plots and their table: drawing, dragging, typing, live data, the plot's own selections, lifetimes.
#include "support/support.h"
#include "support/wait.h"

#include <tarnis/plots/multivectorgraphwidget.h>
#include <tarnis/plots/plotmapping.h>
#include <tarnis/plots/vectorgraphwidget.h>
#include <tarnis/plots/viewselectedroi.h>
#include <tarnis/plots/xy2dgraphwidget.h>
#include <tarnis/tools/plotcalibration.h>
#include <tarnis/tools/plotstyle.h>
#include <tarnis/tools/regiontable.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace tarnis;

namespace {

using Kind = PlotRegion::Kind;

void expose(XYGraphWidget& plot)
{
    plot.m_doubleBuffered = true;
    plot.resize(600, 400);
    plot.show();
    if (!QTest::qWaitForWindowExposed(&plot))
        qFatal("no window");
    plot.grab();
}

/// 100 bins of 10 counts.
void fill(VectorGraphWidget& plot, double content = 10.0)
{
    plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 100, 20, true, true);
    plot.setData(QList<double>(100, content));
    plot.setMaxValue(content);
    plot.refreshPixmap();
}

/// 20 by 20 bins of 3 counts.
void fill(XY2DGraphWidget& map)
{
    map.init(QStringLiteral("X"), QStringLiteral("Y"), 20, 20, true, true);
    map.initManualX(0, 20);
    map.initManualY(0, 20);
    for (int row = 0; row < 20; ++row)
        map.setData(row, QList<double>(20, 3.0), 3.0, false);
    map.refreshPixmap();
}

QPoint pixelOf(const XYGraphWidget& plot, double x, double y)
{
    return PlotMapping::of(plot).pixelOf({ x, y }).toPoint();
}

void drag(XYGraphWidget& plot, QPointF from, QPointF to)
{
    QTest::mousePress(&plot, Qt::LeftButton, {}, pixelOf(plot, from.x(), from.y()));
    QTest::mouseMove(&plot, pixelOf(plot, (from.x() + to.x()) / 2, (from.y() + to.y()) / 2));
    QTest::mouseMove(&plot, pixelOf(plot, to.x(), to.y()));
    QTest::mouseRelease(&plot, Qt::LeftButton, {}, pixelOf(plot, to.x(), to.y()));
}

QString cell(const RegionTable& table, int row, int column)
{
    const QAbstractItemModel& model = *table.findChild<QTableView*>()->model();
    return model.index(row, column).data().toString();
}

/// A column of the copied table.
double number(const RegionTable& table, int row, const char* name)
{
    const QStringList lines = table.table().split(u'\n');
    const auto column = lines.first().split(u'\t').indexOf(QLatin1String(name));
    return lines.value(row + 1).split(u'\t').value(column).toDouble();
}

} // namespace

class TestRegionTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drawsARangeOnTheCurve()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->draw(Kind::RangeX);
        QVERIFY(table.regions()->isDrawing());
        drag(plot, { 20, 5 }, { 30, 8 });
        QVERIFY(!table.regions()->isDrawing());
        QCOMPARE(table.regions()->regions().size(), 1);
        QCOMPARE(cell(table, 0, 0), QStringLiteral("Region 1"));
        QCOMPARE(number(table, 0, "sum"), 10.0 * number(table, 0, "bins"));
        QVERIFY(std::fabs(number(table, 0, "bins") - 10.0) <= 1.0);
    }

    void showsEnergiesOfACalibratedPlot()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        QVERIFY(!table.table().contains(QStringLiteral("energy")));
        const auto isHidden = [&table] {
            const QTableView& view = *table.findChild<QTableView*>();
            for (int column = 0; column < view.model()->columnCount(); ++column) {
                if (view.model()->headerData(column, Qt::Horizontal).toString() == QStringLiteral("Energy [keV]"))
                    return view.isColumnHidden(column);
            }
            return true;
        };
        QVERIFY(isHidden());
        std::vector<CalibrationPoint> points;
        for (const double position : { 10.0, 40.0, 80.0 })
            points.push_back({ position, 0.1, 2.0 * position, 0.0, {}, 0.0 });
        const EnergyCalibration doubled = fitEnergyCalibration(points, 0.0, 100.0).calibration;
        QCOMPARE(PlotCalibration::apply(plot, doubled), QString());
        TRY_VERIFY(!isHidden());
        QVERIFY(std::fabs(number(table, 0, "energy") - 2.0 * number(table, 0, "centroid")) < 1e-6);
        QVERIFY(number(table, 0, "energy_error") > 0.0);
        PlotCalibration::remove(plot);
        TRY_VERIFY(isHidden());
    }

    void dragsARangeByItsEnd()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        drag(plot, { 30, 5 }, { 50, 5 });
        QVERIFY(std::fabs(table.regions()->regions().first().bounds().right() - 50.0) < 0.5);
        QCOMPARE(table.regions()->regions().first().bounds().left(), 20.0);
        QCOMPARE(table.regions()->selected(), 0);
        drag(plot, { 35, 5 }, { 45, 5 }); // by its inside
        QVERIFY(std::fabs(table.regions()->regions().first().bounds().left() - 30.0) < 0.5);
    }

    void revertsADragOnEscape()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        QTest::mousePress(&plot, Qt::LeftButton, {}, pixelOf(plot, 25, 5));
        QTest::mouseMove(&plot, pixelOf(plot, 60, 5));
        QVERIFY(table.regions()->regions().first().bounds().left() > 40.0);
        QTest::keyClick(&plot, Qt::Key_Escape);
        QCOMPARE(table.regions()->regions().first().bounds().left(), 20.0);
        QTest::mouseRelease(&plot, Qt::LeftButton, {}, pixelOf(plot, 60, 5));
    }

    void leavesTheMouseToAChosenToolOfThePlot()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        for (QAction* const action : plot.actions()) {
            if (action->isCheckable() && action->text().contains(QStringLiteral("Move")))
                action->trigger();
        }
        drag(plot, { 25, 5 }, { 45, 5 });
        QCOMPARE(table.regions()->regions().first().bounds().left(), 20.0);
    }

    void savedPictureHasNoSelection()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        PlotRegions regions(&plot);
        regions.add(PlotRegion::rangeX(20, 30));
        regions.select(-1);
        const auto saved = [&] { return std::unique_ptr<QPixmap>(plot.toPixmap())->toImage(); };
        const QImage picture = saved();
        const QImage screen = plot.grab().toImage();
        regions.select(0);
        QCOMPARE(saved(), picture);
        QVERIFY(plot.grab().toImage() != screen);
    }

    /// Like those of a map's cut along Y.
    void readsBinsInFallingOrder()
    {
        QList<double> samples;
        for (int i = 0; i < 100; ++i)
            samples.append(10 + (i > 20 && i < 40 ? i : 0));
        QStringList tables;
        for (const bool isFalling : { false, true }) {
            VectorGraphWidget plot;
            fill(plot);
            if (isFalling) {
                plot.initManualX(100, 0);
                std::reverse(samples.begin(), samples.end());
            } else {
                plot.initManualX(0, 100);
            }
            plot.setData(samples);
            expose(plot);
            RegionTable table(&plot);
            table.regions()->add(PlotRegion::rangeX(15, 35));
            tables << table.table();
        }
        QVERIFY(tables.at(0).contains(QStringLiteral("\t20\t"))); // bins
        QCOMPARE(tables.at(1), tables.at(0));
    }

    void readsBinsOfAMapInFallingOrder()
    {
        QStringList tables;
        for (const bool isFalling : { false, true }) {
            const auto axis = [&](int count) {
                return isFalling ? AxisRange { double(count), 0.0 } : AxisRange { 0.0, double(count) };
            };
            XY2DGraphWidget map;
            map.init(QStringLiteral("X"), QStringLiteral("Y"), 20, 10, true, true);
            map.initManualX(axis(20).min, axis(20).max);
            map.initManualY(axis(10).min, axis(10).max);
            for (int i = 0; i < 10; ++i) {
                QList<double> row;
                for (int k = 0; k < 20; ++k)
                    row.append(isFalling ? (9 - i) * 100 + 19 - k : i * 100 + k);
                map.setData(i, row, 1000, i == 9);
            }
            expose(map);
            RegionTable table(&map);
            table.regions()->add({ Kind::Rectangle, {}, { { 5, 2 }, { 8, 4 } } });
            tables << table.table();
        }
        QVERIFY2(tables.at(0).contains(QStringLiteral("\t6\t1536\t")), qPrintable(tables.at(0))); // bins and sum
        QCOMPARE(tables.at(1), tables.at(0));
    }

    void removesTheSelectedRegion()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        table.regions()->add(PlotRegion::rangeX(50, 60));
        QCOMPARE(table.regions()->add({ Kind::Ellipse, {}, { { 1, 1 }, { 2, 2 } } }), -1); // not on curves
        table.regions()->select(0);
        QTest::keyClick(&plot, Qt::Key_Delete);
        QCOMPARE(table.regions()->regions().size(), 1);
        QCOMPARE(cell(table, 0, 0), QStringLiteral("Region 2"));
    }

    void drawsAPolygonOnAMap()
    {
        XY2DGraphWidget map;
        fill(map);
        expose(map);
        RegionTable table(&map);
        table.regions()->draw(Kind::Polygon);
        for (const QPointF corner : { QPointF(2, 2), QPointF(12, 2), QPointF(12, 12) })
            QTest::mouseClick(&map, Qt::LeftButton, {}, pixelOf(map, corner.x(), corner.y()));
        QTest::keyClick(&map, Qt::Key_Return);
        QCOMPARE(table.regions()->regions().size(), 1);
        QCOMPARE(table.regions()->regions().first().points.size(), 3);
        QCOMPARE(number(table, 0, "sum"), 3.0 * number(table, 0, "bins"));
        QVERIFY(number(table, 0, "bins") > 30.0);
    }

    void drawsBoxesOnAMap_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<double>("bins");
        QTest::newRow("rectangle") << static_cast<int>(Kind::Rectangle) << 60.0;
        QTest::newRow("ellipse") << static_cast<int>(Kind::Ellipse) << 60.0 * 3.14159 / 4.0;
        QTest::newRow("columns") << static_cast<int>(Kind::RangeX) << 200.0;
        QTest::newRow("rows") << static_cast<int>(Kind::RangeY) << 120.0;
    }
    void drawsBoxesOnAMap()
    {
        QFETCH(int, kind);
        QFETCH(double, bins);
        XY2DGraphWidget map;
        fill(map);
        expose(map);
        RegionTable table(&map);
        table.regions()->draw(static_cast<Kind>(kind));
        drag(map, { 4, 4 }, { 14, 10 });
        QCOMPARE(table.regions()->regions().size(), 1);
        QVERIFY2(std::fabs(number(table, 0, "bins") - bins) <= 0.1 * bins, qPrintable(table.table()));
    }

    void followsNewData()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        table.freeze();
        fill(plot, 14.0);
        TRY_COMPARE(number(table, 0, "sum"), 140.0);
        QCOMPARE(number(table, 0, "sum_since"), 40.0);
        QVERIFY(std::fabs(number(table, 0, "sum_since_error") - std::sqrt(40.0)) < 1e-8);
        table.release();
        QVERIFY(!table.table().contains(QStringLiteral("since")));
    }

    void announcesOnlyChangedRows()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        for (const double lower : { 10.0, 30.0, 50.0 })
            table.regions()->add(PlotRegion::rangeX(lower, lower + 10.0));
        const QSignalSpy changes(table.findChild<QTableView*>()->model(), &QAbstractItemModel::dataChanged);
        table.refresh();
        QCOMPARE(changes.size(), 0);
        table.regions()->replace(1, PlotRegion::rangeX(30.0, 44.0, table.regions()->regions().at(1).name));
        QVERIFY(!changes.isEmpty());
        for (const QList<QVariant>& change : changes) {
            QCOMPARE(change.at(0).toModelIndex().row(), 1);
            QCOMPARE(change.at(1).toModelIndex().row(), 1);
        }
    }

    void typesLimitsAndNames()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        QAbstractItemModel& model = *table.findChild<QTableView*>()->model();
        QVERIFY(model.setData(model.index(0, 3), QStringLiteral("40")));
        QVERIFY(model.setData(model.index(0, 0), QStringLiteral("Cs-137")));
        QVERIFY(!model.setData(model.index(0, 2), QStringLiteral("left")));
        QVERIFY2(table.message().contains(QStringLiteral("left")), qPrintable(table.message()));
        QVERIFY(!model.setData(model.index(0, 0), QStringLiteral("  ")));
        QCOMPARE(table.regions()->regions().first(), PlotRegion::rangeX(20, 40, QStringLiteral("Cs-137")));
        QCOMPARE(number(table, 0, "bins"), 20.0);
        QVERIFY(model.setData(model.index(0, 2), QStringLiteral("50")));
        QCOMPARE(table.message(), QString());
        QCOMPARE(table.regions()->regions().first().bounds().left(), 50.0);
        QCOMPARE(table.regions()->regions().first().bounds().right(), 70.0);
        QVERIFY(model.setData(model.index(0, 3), QStringLiteral("10")));
        QCOMPARE(table.regions()->regions().first().bounds().right(), 10.0);
    }

    void listsTheSelectedRangeOfThePlot()
    {
        VectorGraphWidget plot;
        fill(plot);
        expose(plot);
        RegionTable table(&plot);
        plot.SetXRange(10, 20);
        QCOMPARE(cell(table, 0, 0), QStringLiteral("Selected range"));
        QCOMPARE(number(table, 0, "sum"), 100.0);
        QAbstractItemModel& model = *table.findChild<QTableView*>()->model();
        QVERIFY(!model.flags(model.index(0, 2)).testFlag(Qt::ItemIsEditable));
        plot.onClearXRange();
        QCOMPARE(model.rowCount(), 0);
    }

    void listsTheRegionsOfAMapsOwnTool()
    {
        XY2DGraphWidget map;
        fill(map);
        map.enalbeRoiSelect(QRect(0, 0, 20, 20));
        expose(map);
        RegionTable table(&map);
        map.SetRoiEnabled(true);
        QVERIFY(map.GetViewSelectedROI() != nullptr);
        map.GetViewSelectedROI()->addRoi(QRect(QPoint(2, 3), QPoint(5, 4)));
        TRY_COMPARE(cell(table, 0, 0), QStringLiteral("ROI 1"));
        QCOMPARE(number(table, 0, "sum"), 3.0 * 4 * 2);
        map.SetRoiEnabled(false);
        TRY_COMPARE(table.findChild<QTableView*>()->model()->rowCount(), 0);
    }

    void savesAndLoadsRegions()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("regions.json"));
        XY2DGraphWidget map;
        fill(map);
        expose(map);
        RegionTable table(&map);
        table.regions()->add(PlotRegion::rangeX(2, 5));
        table.regions()->add({ Kind::Ellipse, QStringLiteral("spot"), { { 1, 1 }, { 8, 9 } } });
        QCOMPARE(table.saveRegions(path), QString());
        VectorGraphWidget plot;
        fill(plot);
        RegionTable other(&plot);
        QVERIFY(other.loadRegions(path).contains(u'1')); // the ellipse is for maps
        QCOMPARE(other.regions()->regions().size(), 1);
        QVERIFY(!other.loadRegions(folder.filePath(QStringLiteral("none.json"))).isEmpty());
        QCOMPARE(other.regions()->regions().size(), 1);
        PlotRegions& regions = *table.regions();
        const QJsonObject state = regions.saveState();
        regions.setRegions({});
        QVERIFY(regions.saveState().isEmpty());
        regions.restoreState(state);
        QCOMPARE(regions.regions().size(), 2);
    }

    void copiesTheTable()
    {
        VectorGraphWidget plot;
        fill(plot);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(20, 30));
        table.copy();
        QCOMPARE(QGuiApplication::clipboard()->text(), table.table());
    }

    void showsTheDrawnColourOfACurve()
    {
        MultiVectorGraphWidget plot;
        plot.init(QStringLiteral("Channel"), QStringLiteral("Counts"), 0, 0, true, true);
        plot.m_groupSize = 1;
        plot.setData(0, QList<double>(100, 10.0), 10.0);
        plot.setData(1, QList<double>(100, 20.0), 20.0);
        plot.resizeData(2);
        PlotStyle style(&plot, PlotStyle::Theme::Dark);
        RegionTable table(&plot);
        table.regions()->add(PlotRegion::rangeX(10, 20));
        const QAbstractItemModel& model = *table.findChild<QTableView*>()->model();
        QCOMPARE(model.rowCount(), 2);
        for (int row = 0; row < 2; ++row)
            QCOMPARE(model.index(row, 1).data(Qt::DecorationRole).value<QColor>(),
                PlotStyle::seriesColour(style.theme(), row));
    }

    void explainsAnEmptyTable()
    {
        VectorGraphWidget plot;
        fill(plot);
        RegionTable table(&plot);
        const QList<QLabel*> labels = table.findChildren<QLabel*>();
        const auto hint = std::find_if(labels.begin(), labels.end(),
            [](const QLabel* label) { return label->text().contains(QStringLiteral("drag on the plot")); });
        QVERIFY(hint != labels.end());
        QVERIFY(!(*hint)->isHidden());
        table.regions()->add(PlotRegion::rangeX(10, 20));
        QVERIFY((*hint)->isHidden());
    }

    void sharesTheToolOfThePlot()
    {
        VectorGraphWidget plot;
        fill(plot);
        auto* const tool = new PlotRegions(&plot);
        const RegionTable table(&plot);
        QCOMPARE(table.regions(), tool);
    }

    void outlivesItsPlot()
    {
        auto plot = std::make_unique<VectorGraphWidget>();
        fill(*plot);
        RegionTable table(plot.get());
        table.regions()->add(PlotRegion::rangeX(20, 30));
        plot.reset();
        QCOMPARE(table.regions(), nullptr);
        table.refresh();
        QVERIFY(!table.saveRegions(QStringLiteral("x")).isEmpty());
        table.grab();
    }
};

QTEST_MAIN(TestRegionTable)
#include "tst_regiontable.moc"
