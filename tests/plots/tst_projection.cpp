// The arithmetic of the cut compared with its reference implementation, and its edge cases.
#include "support/cases.h"
#include "support/cutoracle.h"
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/plots/math/projection_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis::testing;

namespace {

MapState randomMap(Generator& generator)
{
    MapState map;
    const auto rows = generator() % 12;
    const auto columns = generator() % 12;
    const bool ragged = generator() % 3 == 0;
    for (unsigned long long row = 0; row < rows; ++row) {
        QList<double> values(static_cast<qsizetype>(ragged ? generator() % 14 : columns));
        for (double& value : values)
            value = generator() % 4 == 0 ? uniform(generator, -5.0, 5.0) : std::floor(uniform(generator, 0.0, 100.0));
        map.data.append(values);
    }
    map.manualX = generator() % 2 == 0;
    map.manualY = generator() % 2 == 0;
    const auto range = [&](double& min, double& max) {
        min = uniform(generator, -15.0, 15.0);
        max = min + uniform(generator, -1.0, 30.0);
        if (generator() % 2 == 0) {
            min = std::floor(min);
            max = std::floor(max);
        }
    };
    range(map.minX, map.maxX);
    range(map.minY, map.maxY);
    range(map.initMinX, map.initMaxX);
    range(map.initMinY, map.initMaxY);
    map.stepX = generator() % 2 == 0 ? 0.0 : uniform(generator, 0.1, 3.0);
    map.stepY = generator() % 2 == 0 ? 0.0 : uniform(generator, 0.1, 3.0);
    return map;
}

CutState randomCut(Generator& generator)
{
    CutState cut;
    cut.minX = uniform(generator, -5.0, 15.0);
    cut.maxX = cut.minX + uniform(generator, -2.0, 15.0);
    cut.minY = std::floor(uniform(generator, -5.0, 15.0)) + 0.5 * static_cast<double>(generator() % 3);
    cut.maxY = cut.minY + std::floor(uniform(generator, -2.0, 15.0));
    cut.active = generator() % 8 != 0;
    cut.insideOnly = generator() % 3 == 0;
    return cut;
}

tarnis::BinAxis axisX(const MapState& map)
{
    return { map.minX, map.maxX, map.initMinX, map.manualX, oracleStepX(map), map.resolutionX };
}

tarnis::BinAxis axisY(const MapState& map)
{
    return { map.minY, map.maxY, map.initMinY, map.manualY, oracleStepY(map), map.resolutionY };
}

qsizetype columnsOf(const MapState& map)
{
    return map.data.isEmpty() ? 0 : map.data.constFirst().size();
}

tarnis::CutContent contentOf(const CutState& cut)
{
    if (!cut.active)
        return tarnis::CutContent::Nothing;
    return cut.insideOnly ? tarnis::CutContent::InsideOnly : tarnis::CutContent::Everything;
}

bool areEqual(const tarnis::CutSums& sums, const CutResult& expected)
{
    return sums.values == expected.values && sums.index == expected.index && sums.peak == expected.peak
        && sums.inside == expected.inside && sums.total == expected.total;
}

} // namespace

class TestProjection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sumsMatchTheOracle()
    {
        Generator generator = seededGenerator(1);
        for (int i = 0; i < 20000; ++i) {
            const MapState map = randomMap(generator);
            const CutState cut = randomCut(generator);
            const tarnis::CutSpan x = tarnis::cutSpan(axisX(map), { cut.minX, cut.maxX }, columnsOf(map));
            const tarnis::CutSpan y = tarnis::cutSpan(axisY(map), { cut.minY, cut.maxY }, map.data.size());
            const CutResult expectedX = oracleCutX(map, cut, "y");
            const CutResult expectedY = oracleCutY(map, cut, "x");
            QVERIFY2(areEqual(tarnis::sumsByColumn(map.data, x, y, contentOf(cut)), expectedX),
                qPrintable(QString::number(i)));
            QVERIFY2(
                areEqual(tarnis::sumsByRow(map.data, x, y, contentOf(cut)), expectedY), qPrintable(QString::number(i)));
            if (cut.active) {
                QCOMPARE(tarnis::cutLabel("y", y.valueOf(y.cutFirst), y.valueOf(y.cutEnd)), expectedX.label);
                QCOMPARE(tarnis::cutLabel("x", x.valueOf(x.cutFirst), x.valueOf(x.cutEnd)), expectedY.label);
            }
        }
    }

    void visibleSumsMatchTheOracle()
    {
        Generator generator = seededGenerator(2);
        for (int i = 0; i < 20000; ++i) {
            const MapState map = randomMap(generator);
            QList<double> horizontal { 1.0 };
            QList<double> vertical { 1.0 };
            tarnis::sumVisible(map.data, tarnis::cutSpan(axisX(map), {}, columnsOf(map)),
                tarnis::cutSpan(axisY(map), {}, map.data.size()), horizontal, vertical);
            QList<double> expectedHorizontal;
            QList<double> expectedVertical;
            oracleVisibleSums(map, expectedHorizontal, expectedVertical);
            QCOMPARE(horizontal, expectedHorizontal);
            QCOMPARE(vertical, expectedVertical);
        }
    }

    void snapsMatchTheOracle()
    {
        Generator generator = seededGenerator(3);
        for (int i = 0; i < 20000; ++i) {
            const MapState map = randomMap(generator);
            const double from = uniform(generator, -100.0, 100.0);
            const double to = uniform(generator, -100.0, 100.0);
            const tarnis::AxisRange x = tarnis::snappedToBins({ from, to }, axisX(map), columnsOf(map));
            double min = from;
            double max = to;
            oracleSnapX(map, min, max);
            if (!std::isnan(min) && !std::isnan(max)) {
                QCOMPARE(x.min, min);
                QCOMPARE(x.max, max);
            }
        }
    }

    void farAwayViewsAreEmpty_data()
    {
        addColumns<double, double, double>("min", "max", "step");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("below all integers") << -5e9 << -4e9 << 1.0;
        QTest::newRow("above all integers") << 4e9 << 5e9 << 1.0;
        QTest::newRow("reversed, far below") << 10.0 << -3e9 << 1.0;
        QTest::newRow("no step") << 5.0 << 5.0 << 0.0;
        QTest::newRow("infinite step") << 5.0 << 6.0 << infinity;
        QTest::newRow("not a number") << std::nan("") << std::nan("") << 1.0;
        QTest::newRow("from infinity") << infinity << infinity << 1.0;
    }
    void farAwayViewsAreEmpty()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(double, step);
        for (const bool manual : { false, true }) {
            const tarnis::BinAxis axis = { min, max, manual && step == 0.0 ? 5.0 : 0.0, manual, step, 1 };
            const tarnis::BinRows rows(3, QList<double>(3, 1.0));
            const tarnis::CutSpan span = tarnis::cutSpan(axis, { 0.0, 3.0 }, 3);
            QVERIFY(span.end >= 0 && span.end <= 3);
            const auto shown = std::max(span.end - span.first, 0); // all three of an infinite step's bins are in bin 0
            QCOMPARE(tarnis::sumsByColumn(rows, span, span, tarnis::CutContent::Everything).values.size(), shown);
            QCOMPARE(tarnis::sumsByRow(rows, span, span, tarnis::CutContent::Everything).values.size(), shown);
            QList<double> horizontal;
            QList<double> vertical;
            tarnis::sumVisible(rows, span, span, horizontal, vertical);
            QCOMPARE(horizontal.size(), shown);
            QCOMPARE(vertical.size(), shown);
            const tarnis::BinSpan bins = tarnis::visibleBins(axis, 100, 3);
            QVERIFY(bins.end >= 0 && bins.end <= 3 && bins.first >= 0);
        }
    }

    void snapsOutward()
    {
        const tarnis::BinAxis axis = { 0.0, 10.0, 2.0, true, 0.5, 1 };
        const tarnis::AxisRange range = tarnis::snappedToBins({ 3.1, 4.2 }, axis, 20);
        QCOMPARE(range.min, 3.0);
        QCOMPARE(range.max, 4.5);
    }

    void snapsToTheDataOnItsOwnSideOnly()
    {
        const tarnis::BinAxis axis = { 0.0, 10.0, 0.0, true, 1.0, 1 };
        tarnis::AxisRange range = tarnis::snappedToBins({ -7.0, 99.0 }, axis, 10);
        QCOMPARE(range.min, 0.0);
        QCOMPARE(range.max, 10.0);
        range = tarnis::snappedToBins({ 15.0, 18.0 }, axis, 10); // the minimum is not limited from above
        QCOMPARE(range.min, 15.0);
        QCOMPARE(range.max, 10.0);
        range = tarnis::snappedToBins({ -5.0, -3.0 }, axis, 10);
        QCOMPARE(range.min, 0.0);
        QCOMPARE(range.max, -3.0);
    }

    void roundsToBins_data()
    {
        addColumns<double, double, double, double>("from", "to", "min", "max");
        QTest::newRow("halves go up") << 1.5 << 2.5 << 2.0 << 3.0;
        QTest::newRow("below half go down") << 1.4999 << 2.4999 << 1.0 << 2.0;
        QTest::newRow("a little below 0") << -0.3 << 2.0 << 0.0 << 2.0;
        QTest::newRow("in either order") << 7.0 << 3.0 << 3.0 << 7.0;
        QTest::newRow("beyond the data") << 3.0 << 99.0 << 3.0 << 10.0;
        QTest::newRow("all beyond") << 50.0 << 99.0 << 50.0 << 10.0;
        QTest::newRow("all below") << -9.0 << -2.5 << 0.0 << -3.0;
    }
    void roundsToBins()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        const tarnis::AxisRange range = tarnis::roundedToBins({ from, to }, 10);
        QTEST(range.min, "min");
        QTEST(range.max, "max");
    }

    void edgesInTheOrderOfTheirNumbers_data()
    {
        addColumns<QPoint, int>("point", "edge");
        QTest::newRow("left") << QPoint(100, 150) << int(tarnis::MinXEdge);
        QTest::newRow("left, 4 pixels off") << QPoint(96, 150) << int(tarnis::MinXEdge);
        QTest::newRow("left, 5 pixels off") << QPoint(95, 150) << int(tarnis::NoEdge);
        QTest::newRow("left, 4 pixels inside") << QPoint(104, 150) << int(tarnis::MinXEdge);
        QTest::newRow("left, 5 pixels inside") << QPoint(105, 150) << int(tarnis::NoEdge);
        QTest::newRow("right") << QPoint(196, 150) << int(tarnis::MaxXEdge);
        QTest::newRow("right, 5 pixels off") << QPoint(205, 150) << int(tarnis::NoEdge);
        QTest::newRow("top") << QPoint(150, 204) << int(tarnis::NoEdge);
        QTest::newRow("top edge") << QPoint(150, 104) << int(tarnis::MaxYEdge);
        QTest::newRow("bottom edge") << QPoint(150, 185) << int(tarnis::MinYEdge);
        QTest::newRow("top left: left wins") << QPoint(102, 102) << int(tarnis::MinXEdge);
        QTest::newRow("bottom right: right wins") << QPoint(198, 188) << int(tarnis::MaxXEdge);
        QTest::newRow("far above, on the line of the left edge") << QPoint(100, 0) << int(tarnis::MinXEdge);
        QTest::newRow("far left, on the line of the top edge") << QPoint(0, 100) << int(tarnis::MaxYEdge);
    }
    void edgesInTheOrderOfTheirNumbers()
    {
        QFETCH(QPoint, point);
        QTEST(int(tarnis::edgeAt(QRect(QPoint(100, 100), QPoint(200, 189)), point)), "edge");
    }

    void findsTheValueOfADraggedEdge_data()
    {
        addColumns<int, QPoint, double>("edge", "point", "value");
        QTest::newRow("left edge") << int(tarnis::MinXEdge) << QPoint(20, 0) << 11.0;
        QTest::newRow("right edge") << int(tarnis::MaxXEdge) << QPoint(100, 0) << 19.1;
        QTest::newRow("top edge") << int(tarnis::MaxYEdge) << QPoint(0, 30) << 4.0;
        QTest::newRow("bottom edge") << int(tarnis::MinYEdge) << QPoint(0, 59) << 1.0;
        QTest::newRow("left edge at the rightmost pixel") << int(tarnis::MinXEdge) << QPoint(109, 0) << 19.9;
        QTest::newRow("right edge at the rightmost pixel") << int(tarnis::MaxXEdge) << QPoint(109, 0) << 20.0;
        QTest::newRow("left of the graph") << int(tarnis::MinXEdge) << QPoint(-500, 0) << 10.0;
        QTest::newRow("right of the graph") << int(tarnis::MaxXEdge) << QPoint(5000, 0) << 20.0;
        QTest::newRow("above the graph") << int(tarnis::MaxYEdge) << QPoint(0, -7) << 5.0;
        QTest::newRow("below the graph") << int(tarnis::MinYEdge) << QPoint(0, 700) << 0.0;
    }
    void findsTheValueOfADraggedEdge()
    {
        QFETCH(int, edge);
        QFETCH(QPoint, point);
        // 100 pixels for 10 units, 50 for 5.
        QTEST(tarnis::edgeValue(
                  static_cast<tarnis::CutEdge>(edge), point, { 10.0, 20.0 }, { 0.0, 5.0 }, QRect(10, 20, 100, 50)),
            "value");
    }

    void pixelsOfTheRectangle()
    {
        const QRect graph(10, 20, 100, 50);
        QCOMPARE(tarnis::cutPixels({ 12.0, 15.0 }, { 1.0, 4.0 }, { 10.0, 20.0 }, { 0.0, 5.0 }, graph),
            QRect(QPoint(30, 30), QPoint(59, 59)));
        // A visible range that does not ascend has no extent.
        QCOMPARE(tarnis::cutPixels({ 12.0, 15.0 }, { 1.0, 4.0 }, { 20.0, 20.0 }, { 5.0, 0.0 }, graph),
            QRect(QPoint(10, 20), QPoint(9, 19)));
    }

    void rectangleOfNoHeightSumsNothing()
    {
        const tarnis::BinRows rows(4, QList<double>(4, 1.0));
        const tarnis::BinAxis axis = { 0.0, 4.0, 0.0, false, 1.0, 1 };
        const tarnis::CutSpan x = tarnis::cutSpan(axis, { 0.0, 4.0 }, 4);
        const tarnis::CutSpan y = tarnis::cutSpan(axis, { 2.0, 2.0 }, 4);
        QCOMPARE(tarnis::sumsByColumn(rows, x, y, tarnis::CutContent::Everything).values, QList<double>(4, 0.0));
        QCOMPARE(tarnis::sumsByRow(rows, x, y, tarnis::CutContent::Everything).values, QList<double>(4, 4.0));
    }

    void insideOnlyKeepsTotals()
    {
        const tarnis::BinRows rows { { 1.0, 2.0, 3.0, 4.0 } };
        const tarnis::BinAxis axis = { 0.0, 4.0, 0.0, false, 1.0, 1 };
        const tarnis::CutSpan x = tarnis::cutSpan(axis, { 1.0, 3.0 }, 4);
        const tarnis::CutSpan y = tarnis::cutSpan(axis, { 0.0, 1.0 }, 1);
        const tarnis::CutSums inside = tarnis::sumsByColumn(rows, x, y, tarnis::CutContent::InsideOnly);
        QCOMPARE(inside.values, (QList<double> { 0.0, 2.0, 3.0, 0.0 }));
        QCOMPARE(inside.inside, 5.0);
        QCOMPARE(inside.total, 10.0);
        QCOMPARE(inside.peak, 4.0); // of a column that is not shown
        QCOMPARE(tarnis::sumsByColumn(rows, x, y, tarnis::CutContent::Everything).values, rows.constFirst());
    }

    void limitBetweenTwoBinsRoundsToTheNearest()
    {
        const tarnis::BinRows rows { { 1.0, 10.0, 100.0, 1000.0 } };
        const tarnis::BinAxis x = { 0.0, 2.0, 0.0, true, 0.5, 1 };
        const tarnis::CutSpan span = tarnis::cutSpan(x, { 0.7, 1.3 }, 4); // bins 1.4 to 2.6
        QCOMPARE(span.cutFirst, 1);
        QCOMPARE(span.cutEnd, 3);
        const tarnis::CutSpan y = tarnis::cutSpan({ 0.0, 1.0, 0.0, false, 1.0, 1 }, { 0.0, 1.0 }, 1);
        QCOMPARE(tarnis::sumsByRow(rows, span, y, tarnis::CutContent::Everything).values, QList<double> { 110.0 });
    }

    void labelsNameTheCutRange()
    {
        QCOMPARE(tarnis::cutLabel("Energy", 0.1, 1234567.0), QString("Energy 0.1-1.23457e+06"));
        QCOMPARE(tarnis::cutLabel("%1 %2", -2.0, 3.0), QString("%1 %2 -2-3"));
        QCOMPARE(tarnis::cutLabel(QString(), 0.0, 0.0), QString(" 0-0"));
    }

    void windowExtents_data()
    {
        QTest::addColumn<int>("extent");
        QTest::newRow("449") << 150;
        QTest::newRow("450") << 150;
        QTest::newRow("600") << 200;
        QTest::newRow("0") << 150;
        QTest::newRow("452") << 150;
        QTest::newRow("453") << 151;
    }
    void windowExtents() { QTEST(tarnis::cutWindowExtent(QByteArray(QTest::currentDataTag()).toInt()), "extent"); }
};

QTEST_APPLESS_MAIN(TestProjection)
#include "tst_projection.moc"
