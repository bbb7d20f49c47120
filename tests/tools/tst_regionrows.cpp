// Regions as values: files, parts that can be dragged, numbers, texts. No widgets but a plot to read.
#include "tarnis/tools/regions/regionhit_p.h"
#include "tarnis/tools/regions/regionrows_p.h"

#include "support/support.h"

#include <QTest>

#include <cmath>

using namespace tarnis;

namespace {

using Kind = PlotRegion::Kind;

PlotRegion box(Kind kind)
{
    return { kind, QStringLiteral("a"), { { 2.0, 3.0 }, { 8.0, 7.0 } } };
}

/// 20 in every bin and 100 more in bins 10 to 14.
PlotSpectrum plateau(const QString& name = {})
{
    PlotSpectrum spectrum;
    spectrum.name = name;
    for (int i = 0; i < 30; ++i)
        spectrum.contents << (i >= 10 && i < 15 ? 120.0 : 20.0);
    spectrum.firstCentre = 0.5;
    return spectrum;
}

/// A map of 10 by 10 bins of 4 counts with 50 more at (5, 5).
MapContents spot()
{
    MapContents map;
    map.contents.assign(100, 4.0);
    map.contents[55] += 50.0;
    map.data = { map.contents, 10, 10, 0.5, 0.5, 1.0, 1.0, true };
    return map;
}

} // namespace

class TestRegionRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void comesBackFromItsFile()
    {
        QList<PlotRegion> regions { PlotRegion::rangeX(-1.5, 1e9, QStringLiteral("Ö \"x\"")), box(Kind::RangeY),
            box(Kind::Rectangle), box(Kind::Ellipse),
            { Kind::Polygon, {}, { { 0, 0 }, { 1, 0.1 }, { 0, 1.0 / 3.0 } } } };
        const PlotRegionsResult read = regionsFromJson(regionsToJson(regions));
        QCOMPARE(read.error, QString());
        QCOMPARE(read.regions, regions);
    }

    void refusesDamagedFiles_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no JSON") << QByteArray("{\"regions\": [");
        QTest::newRow("no list") << QByteArray("{}");
        QTest::newRow("unknown kind") << QByteArray(R"({"regions": [{"kind": "star", "points": [[1,2],[3,4]]}]})");
        QTest::newRow("one point") << QByteArray(R"({"regions": [{"kind": "rectangle", "points": [[1,2]]}]})");
        QTest::newRow("no number") << QByteArray(R"({"regions": [{"kind": "range-x", "points": [[1,2],["3",4]]}]})");
        QTest::newRow("two corners") << QByteArray(R"({"regions": [{"kind": "polygon", "points": [[1,2],[3,4]]}]})");
    }
    void refusesDamagedFiles()
    {
        QFETCH(QByteArray, text);
        const PlotRegionsResult read = regionsFromJson(text);
        QVERIFY(!read.error.isEmpty());
        QVERIFY(read.regions.isEmpty());
    }

    void findsHandles_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QPointF>("place");
        QTest::addColumn<int>("part");
        const auto add = [](const char* name, Kind kind, QPointF place, int part) {
            QTest::newRow(name) << static_cast<int>(kind) << place << part;
        };
        add("body of a range", Kind::RangeX, { 5, 1000 }, RegionHandle::Body);
        add("left end", Kind::RangeX, { 1.9, -5 }, RegionHandle::Left);
        add("right end", Kind::RangeX, { 8.1, 0 }, RegionHandle::Right);
        add("outside", Kind::RangeX, { 9, 5 }, -1);
        add("lower end of a band", Kind::RangeY, { 1000, 3.1 }, RegionHandle::Bottom);
        add("corner", Kind::Rectangle, { 8.1, 7.1 }, RegionHandle::TopRight);
        add("edge", Kind::Rectangle, { 5, 7.1 }, RegionHandle::Top);
        add("beside an edge", Kind::Rectangle, { 5, 7.5 }, -1);
        add("body", Kind::Ellipse, { 5, 5 }, RegionHandle::Body);
    }
    void findsHandles()
    {
        QFETCH(int, kind);
        QFETCH(QPointF, place);
        QFETCH(int, part);
        const std::optional<RegionHandle> handle = handleAt(box(static_cast<Kind>(kind)), place, { 0.2, 0.2 });
        QCOMPARE(handle ? static_cast<int>(handle->part) : -1, part);
    }

    void findsCornersOfPolygons()
    {
        const PlotRegion region { Kind::Polygon, {}, { { 0, 0 }, { 10, 0 }, { 5, 10 } } };
        QCOMPARE(handleAt(region, { 9.9, 0.1 }, { 0.2, 0.2 }), (RegionHandle { RegionHandle::Corner, 1 }));
        QCOMPARE(handleAt(region, { 5, 3 }, { 0.2, 0.2 }), RegionHandle {});
        QVERIFY(!handleAt(region, { 1, 9 }, { 0.2, 0.2 }));
        const PlotRegion moved = dragged(region, { RegionHandle::Corner, 1 }, { 9.9, 0.1 }, { 11.9, 1.1 });
        QCOMPARE(moved.points.at(1), QPointF(12, 1));
    }

    void dragsPartsOfABox()
    {
        const PlotRegion region = box(Kind::Rectangle);
        QCOMPARE(dragged(region, { RegionHandle::Body, 0 }, { 5, 5 }, { 6, 3 }).bounds(), QRectF(3, 1, 6, 4));
        QCOMPARE(dragged(region, { RegionHandle::Left, 0 }, { 2, 5 }, { 1, 9 }).bounds(), QRectF(1, 3, 7, 4));
        QCOMPARE(dragged(region, { RegionHandle::TopRight, 0 }, { 8, 7 }, { 9, 9 }).bounds(), QRectF(2, 3, 7, 6));
        // Beyond the other end the two change places.
        QCOMPARE(dragged(region, { RegionHandle::Left, 0 }, { 2, 5 }, { 12, 5 }).bounds(), QRectF(8, 3, 4, 4));
    }

    void readsANetArea()
    {
        const std::vector<RegionRow> rows = regionRows({ PlotRegion::rangeX(10, 15) }, { plateau() });
        QCOMPARE(rows.size(), std::size_t(1));
        QCOMPARE(rows[0].bins, 5);
        QCOMPARE(rows[0].sum.value, 600.0);
        QCOMPARE(rows[0].net.value, 500.0);
        QVERIFY(rows[0].isSignificant);
        QCOMPARE(rows[0].share, 600.0 / 1100.0);
        QCOMPARE(sumText(rows[0]), QStringLiteral("600(24)"));
        QVERIFY(std::isnan(rows[0].sumInterval.lower)); // costs more than all the rest, and is not shown
    }

    void hasARowForEachRegionAndCurve()
    {
        const std::vector<RegionRow> rows =
            regionRows({ PlotRegion::rangeX(10, 15, QStringLiteral("a")), PlotRegion::rangeX(40, 50) },
                { plateau(QStringLiteral("1")), plateau(QStringLiteral("2")) });
        QCOMPARE(rows.size(), std::size_t(4));
        QCOMPARE(rows[1].curve, QStringLiteral("2"));
        QCOMPARE(rows[2].region, 1);
        QVERIFY(!rows[2].fault.isEmpty()); // outside of the axis
    }

    void showsFewCountsWithTheirInterval()
    {
        PlotSpectrum few;
        few.contents = { 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0 };
        few.firstCentre = 0.5;
        const std::vector<RegionRow> rows = regionRows({ PlotRegion::rangeX(3, 6), PlotRegion::rangeX(6, 9) }, { few });
        QCOMPARE(sumText(rows[0]), QStringLiteral("1.00 +2.30 −0.83"));
        QCOMPARE(sumText(rows[1]), QStringLiteral("0, < 3.00"));
        QVERIFY(netText(rows[1]).startsWith(QStringLiteral("< ")));
    }

    void readsAMap()
    {
        const MapContents map = spot();
        const PlotRegion square { Kind::Rectangle, {}, { { 4, 4 }, { 7, 7 } } };
        const PlotRegion circle { Kind::Ellipse, {}, { { 4, 4 }, { 7, 7 } } };
        const std::vector<RegionRow> rows = regionRows({ square }, map);
        QCOMPARE(rows.size(), std::size_t(1));
        QCOMPARE(rows[0].bins, 9);
        QCOMPARE(rows[0].sum.value, 86.0);
        QCOMPARE(rows[0].net.value, 50.0);
        QVERIFY(rows[0].isSignificant);
        QVERIFY(std::fabs(rows[0].centroid.value - 5.5) < 1e-9);
        QCOMPARE(binsOf(circle, map.data).count(), 9 - 4 + 0 + (binsOf(circle, map.data).contains(4, 4) ? 4 : 0));
        QCOMPARE(binsOf({ Kind::RangeX, {}, { { 2, 0 }, { 4, 0 } } }, map.data).count(), 20);
        QCOMPARE(binsOf({ Kind::RangeY, {}, { { 0, 2 }, { 0, 3 } } }, map.data).count(), 10);
        QCOMPARE(binsOf({ Kind::Polygon, {}, { { 0, 0 }, { 10, 0 }, { 0, 10 } } }, map.data).count(), 45);
    }

    void subtractsWhatWasFrozen()
    {
        const RegionValue came = since({ 130.0, std::sqrt(130.0) }, { 30.0, std::sqrt(30.0) });
        QCOMPARE(came.value, 100.0);
        QCOMPARE(came.error, 10.0);
        QVERIFY(std::isnan(since({ 5.0, std::sqrt(5.0) }, { 30.0, std::sqrt(30.0) }).value));
        QCOMPARE(since({ 30.0, std::sqrt(30.0) }, { 30.0, std::sqrt(30.0) }).error, 0.0);
    }

    void writesATableWithAllDigits()
    {
        const std::vector<RegionRow> rows = regionRows({ PlotRegion::rangeX(10, 14) }, { plateau() });
        const QString text = regionTableText(rows, false, {});
        const QStringList names = text.section(u'\n', 0, 0).split(u'\t');
        const QStringList values = text.section(u'\n', 1, 1).split(u'\t');
        QCOMPARE(names.size(), values.size());
        QCOMPARE(values.at(names.indexOf(QStringLiteral("sum_error"))), QStringLiteral("21.9089023"));
        QVERIFY(regionTableText(rows, true, { { {}, {}, {}, {} } }).contains(QStringLiteral("net_since_error")));
    }
};

QTEST_MAIN(TestRegionRows)
#include "tst_regionrows.moc"
