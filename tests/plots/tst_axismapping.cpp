// The mapping between pixels and values, the arithmetic of the mouse tools, and the place of an axis editor.
#include "support/support.h"
#include "tarnis/plots/labeleditor_p.h"
#include "tarnis/plots/math/axismapping_p.h"
#include "tarnis/plots/math/floatcomparison_p.h"
#include "tarnis/plots/math/projection_p.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <utility>

using tarnis::AxisMapping;
using tarnis::AxisRange;
using tarnis::AxisScale;
using tarnis::PlotRanges;

namespace {

const QRect graph(50, 20, 200, 100); // columns 50 to 249, rows 20 to 119
const PlotRanges ranges { { 0.0, 400.0 }, { 0.0, 50.0 } };

bool close(double a, double b, double scale)
{
    return std::fabs(a - b) <= 1e-9 * scale;
}

PlotRanges anyRanges(std::mt19937_64& random)
{
    std::uniform_real_distribution<double> end(-1e4, 1e4);
    return { { end(random), end(random) }, { end(random), end(random) } };
}

QRect anyGraph(std::mt19937_64& random)
{
    std::uniform_int_distribution<int> edge(-50, 300);
    std::uniform_int_distribution<int> size(1, 1500);
    return { edge(random), edge(random), size(random), size(random) };
}

/// The axis of the row of axes().
AxisMapping fetchedAxis(const QRect& rect)
{
    QFETCH(bool, isVertical);
    QFETCH(bool, isLog);
    QFETCH(double, min);
    QFETCH(double, max);
    const AxisScale scale = isLog ? AxisScale::Log : AxisScale::Linear;
    return isVertical ? AxisMapping::vertical({ min, max }, rect, scale)
                      : AxisMapping::horizontal({ min, max }, rect, scale);
}

} // namespace

class TestAxisMapping : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void axisEndsAreTheEdges_data() { axes(); }
    void axisEndsAreTheEdges()
    {
        QFETCH(bool, isVertical);
        QFETCH(double, min);
        QFETCH(double, max);
        const AxisMapping axis = fetchedAxis(graph);
        QCOMPARE(axis.pixelOf(min), isVertical ? 119.0 : 50.0);
        QCOMPARE(axis.pixelOf(max), isVertical ? 19.0 : 250.0);
        QCOMPARE(axis.valueAt(isVertical ? 119.0 : 50.0), min);
        QCOMPARE(axis.valueAt(isVertical ? 19.0 : 250.0), max);
    }

    void axisMapsThereAndBack_data() { axes(); }
    void axisMapsThereAndBack()
    {
        auto random = tarnis::testing::seededGenerator(26);
        for (int i = 0; i < 5000; ++i) {
            const AxisMapping axis = fetchedAxis(anyGraph(random));
            const double pixel = std::uniform_real_distribution<double>(-300, 1800)(random);
            const double value = axis.valueAt(pixel);
            // A value many decades beyond the rectangle is not a number that a plot shows.
            if (std::isfinite(value) && value != 0.0)
                QVERIFY(close(axis.pixelOf(value), pixel, 1e5));
        }
    }

    void decadesAreEqualOnALogAxis()
    {
        const AxisMapping axis = AxisMapping::vertical({ 1.0, 1e4 }, graph, AxisScale::Log);
        const std::pair<double, double> decades[] = { { 1.0, 119.0 }, { 10.0, 94.0 }, { 100.0, 69.0 },
            { 1000.0, 44.0 } };
        for (const auto& [value, row] : decades) {
            QCOMPARE(axis.pixelOf(value), row);
            QCOMPARE(axis.valueAt(row), value);
        }
    }

    void logAxisTakesValuesWithoutALogarithmForOne()
    {
        const AxisMapping axis = AxisMapping::vertical({ 0.0, 1e4 }, graph, AxisScale::Log);
        QCOMPARE(axis.pixelOf(0.0), 119.0);
        QCOMPARE(axis.pixelOf(-5.0), 119.0);
        QCOMPARE(axis.valueAt(119.0), 1.0);
    }

    void wholePixelsFromTheEndsReachTheEndsExactly()
    {
        auto random = tarnis::testing::seededGenerator(27);
        for (int i = 0; i < 5000; ++i) {
            const PlotRanges any = anyRanges(random);
            const AxisMapping axis = AxisMapping::horizontal(any.x, anyGraph(random));
            QVERIFY(axis.valueAfter(0) == any.x.min && axis.valueBefore(0) == any.x.max);
        }
        const AxisMapping axis = AxisMapping::vertical(ranges.y, graph);
        QCOMPARE(axis.valueAfter(10), 5.0);
        QCOMPARE(axis.valueBefore(10), 45.0);
    }

    void axisWithoutExtentIsNotFinite()
    {
        QVERIFY(!std::isfinite(AxisMapping::vertical({ 3, 3 }, graph).pixelOf(1.0)));
        QVERIFY(!std::isfinite(AxisMapping::horizontal({ 0, 1 }, QRect(5, 5, 0, 0)).valueAt(7.0)));
    }

    void pointsOfAMapHaveArms()
    {
        QCOMPARE(
            tarnis::pointPixels({ 200.0, 25.0 }, ranges.x, ranges.y, graph), QRect(QPoint(148, 67), QPoint(152, 71)));
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const QRect nowhere = tarnis::pointPixels({ nan, 1e300 }, ranges.x, ranges.y, graph);
        QVERIFY(nowhere.left() < -100000 && nowhere.top() < -100000);
    }

    void mapsCorners()
    {
        QCOMPARE(tarnis::valueAt({ 50, 119 }, ranges, graph), QPointF(0, 0));
        QCOMPARE(tarnis::valueAt({ 250, 19 }, ranges, graph), QPointF(400, 50));
        QCOMPARE(tarnis::valueAt({ 150, 69 }, ranges, graph), QPointF(200, 25));
        QCOMPARE(tarnis::pixelAt({ 0, 0 }, ranges, graph), QPointF(50, 119));
        QCOMPARE(tarnis::pixelAt({ 400, 50 }, ranges, graph), QPointF(250, 19));
        QVERIFY(!std::isfinite(tarnis::pixelAt({ 1, 1 }, { { 3, 3 }, { 0, 1 } }, graph).x()));
        QVERIFY(!std::isfinite(tarnis::valueAt({ 1, 1 }, ranges, QRect()).x()));
    }

    void mapsThereAndBack()
    {
        auto random = tarnis::testing::seededGenerator(21);
        for (int i = 0; i < 20000; ++i) {
            const PlotRanges any = anyRanges(random);
            const QRect rect = anyGraph(random);
            const QPointF pixel(std::uniform_real_distribution<double>(-100, 1800)(random), i % 1000);
            const QPointF there = tarnis::valueAt(pixel, any, rect);
            const QPointF back = tarnis::pixelAt(there, any, rect);
            const double scaleX = 2000.0 * (1.0 + 1e4 / std::fabs(any.x.max - any.x.min));
            const double scaleY = 2000.0 * (1.0 + 1e4 / std::fabs(any.y.max - any.y.min));
            QVERIFY(close(back.x(), pixel.x(), scaleX) && close(back.y(), pixel.y(), scaleY));
        }
    }

    void rectangleOfTheWholeGraphIsTheRange()
    {
        auto random = tarnis::testing::seededGenerator(22);
        for (int i = 0; i < 5000; ++i) {
            const PlotRanges any = anyRanges(random);
            const QRect rect = anyGraph(random);
            const PlotRanges values = tarnis::valuesOf(rect, any, rect);
            QCOMPARE(values.x.min, any.x.min);
            QCOMPARE(values.x.max, any.x.max);
            QCOMPARE(values.y.min, any.y.min);
            QCOMPARE(values.y.max, any.y.max);
        }
    }

    void rectangleOfAPixel()
    {
        const PlotRanges values = tarnis::valuesOf(QRect(60, 100, 1, 1), ranges, graph);
        QCOMPARE(values.x.min, 20.0);
        QCOMPARE(values.x.max, 22.0); // a pixel is two units wide
        QCOMPARE(values.y.min, 9.5);
        QCOMPARE(values.y.max, 10.0);
    }

    void rectangleOutsideGoesOutside()
    {
        const PlotRanges values = tarnis::valuesOf(QRect(QPoint(40, 10), QPoint(259, 129)), ranges, graph);
        QCOMPARE(values.x.min, -20.0);
        QCOMPARE(values.x.max, 420.0);
        QCOMPARE(values.y.min, -5.0);
        QCOMPARE(values.y.max, 55.0);
    }

    void zoomInKeepsThePointAndMovesByFivePerCent()
    {
        auto random = tarnis::testing::seededGenerator(23);
        for (int i = 0; i < 5000; ++i) {
            const QRect rect = anyGraph(random);
            PlotRanges any = anyRanges(random);
            if (any.x.min > any.x.max)
                std::swap(any.x.min, any.x.max);
            if (any.y.min > any.y.max)
                std::swap(any.y.min, any.y.max);
            const QPoint point(std::uniform_int_distribution<int>(rect.left(), rect.right())(random),
                std::uniform_int_distribution<int>(rect.top(), rect.bottom())(random));
            const PlotRanges zoomed = tarnis::zoomedInAt(point, any, rect);
            const double step = 0.05 * (rect.width() - 1) / rect.width(); // "almost 5 %": the last pixel counts
            QVERIFY(close((zoomed.x.max - zoomed.x.min) / (any.x.max - any.x.min), 1.0 - step, 1e4));
            const double before = (point.x() - rect.left()) / static_cast<double>(rect.width());
            QVERIFY(close(zoomed.x.min, any.x.min + before * 0.05 * (any.x.max - any.x.min), 1e4));
            QVERIFY(zoomed.y.min >= any.y.min && zoomed.y.max <= any.y.max && zoomed.y.min < zoomed.y.max);
        }
    }

    void zoomInAtTheLeftEdge()
    {
        const PlotRanges zoomed = tarnis::zoomedInAt({ 50, 119 }, ranges, graph);
        QCOMPARE(zoomed.x.min, 0.0);
        QCOMPARE(zoomed.x.max, 400.0 - 199 * 20.0 / 200);
        QCOMPARE(zoomed.y.min, 0.0);
        QCOMPARE(zoomed.y.max, 50.0 - 99 * 2.5 / 100);
    }

    void zoomInLeavesReversedAndEmptyRanges()
    {
        const PlotRanges zoomed = tarnis::zoomedInAt({ 100, 60 }, { { 400, 0 }, { 5, 5 } }, graph);
        QCOMPARE(zoomed.x.min, 400.0);
        QCOMPARE(zoomed.x.max, 0.0);
        QCOMPARE(zoomed.y.min, 5.0);
        QCOMPARE(zoomed.y.max, 5.0);
    }

    void zoomOutMovesSlightlyMoreThanZoomIn()
    {
        const PlotRanges in = tarnis::zoomedInAt({ 150, 70 }, ranges, graph);
        const PlotRanges out = tarnis::zoomedOutAt({ 150, 70 }, ranges, graph);
        QVERIFY(out.x.max - out.x.min - 400.0 > 400.0 - (in.x.max - in.x.min));
        QVERIFY(out.y.max - out.y.min - 50.0 > 50.0 - (in.y.max - in.y.min));
        const PlotRanges reversed = tarnis::zoomedOutAt({ 150, 70 }, { { 400, 0 }, { 0, 50 } }, graph);
        QVERIFY(reversed.x.min > 400.0 && reversed.x.max < 0.0);
    }

    void zoomOutUsesTheMinimumAlreadyMoved()
    {
        const AxisRange out = tarnis::zoomedOut({ 0.0, 100.0 }, 100, 100, 200);
        QCOMPARE(out.min, -2.5);
        QCOMPARE(out.max, 100.0 + 100 * 102.5 * 0.05 / 200);
    }

    void moveFollowsThePointer()
    {
        const PlotRanges moved = tarnis::movedAlong({ 100, 100 }, { 110, 95 }, ranges, graph);
        QCOMPARE(moved.x.min, -20.0);
        QCOMPARE(moved.x.max, 380.0);
        QCOMPARE(moved.y.min, -2.5);
        QCOMPARE(moved.y.max, 47.5);
        const PlotRanges still = tarnis::movedAlong({ 100, 100 }, { 100, 100 }, ranges, graph);
        QCOMPARE(still.x.min, 0.0);
        QCOMPARE(still.y.max, 50.0);
    }

    void moveKeepsTheWidths()
    {
        auto random = tarnis::testing::seededGenerator(24);
        std::uniform_int_distribution<int> pixel(-200, 900);
        for (int i = 0; i < 5000; ++i) {
            const PlotRanges any = anyRanges(random);
            const QRect rect = anyGraph(random);
            const QPoint from(pixel(random), pixel(random));
            const QPoint to(pixel(random), pixel(random));
            const PlotRanges moved = tarnis::movedAlong(from, to, any, rect);
            const QPointF before = tarnis::valueAt(from, any, rect);
            const QPointF after = tarnis::valueAt(to, moved, rect);
            const double scale = 1e8; // a graph of one pixel multiplies the range by the distance
            QVERIFY(close(before.x(), after.x(), scale) && close(before.y(), after.y(), scale));
            QVERIFY(close(moved.x.max - moved.x.min, any.x.max - any.x.min, scale));
        }
    }

    void placesTheEditorOverItsLabel_data()
    {
        QTest::addColumn<QRect>("label");
        QTest::addColumn<bool>("upright");
        QTest::addColumn<QRect>("expected");
        // The bounds are a widget of 400 by 300.
        QTest::newRow("half as wide again, centred") << QRect(100, 100, 80, 15) << false << QRect(80, 100, 120, 15);
        QTest::newRow("at least 50 wide") << QRect(200, 100, 20, 15) << false << QRect(185, 100, 50, 15);
        QTest::newRow("cut, not rounded") << QRect(100, 100, 35, 15) << false << QRect(91, 100, 52, 15);
        QTest::newRow("moved in from the left") << QRect(0, 100, 40, 15) << false << QRect(0, 100, 60, 15);
        QTest::newRow("moved in from the corner") << QRect(380, 290, 40, 15) << false << QRect(340, 285, 60, 15);
        QTest::newRow("laid down on an upright label") << QRect(100, 100, 15, 80) << true << QRect(47, 133, 120, 15);
    }
    void placesTheEditorOverItsLabel()
    {
        QFETCH(QRect, label);
        QFETCH(bool, upright);
        QTEST(tarnis::editorRect(label, upright, QRect(0, 0, 400, 300)), "expected");
    }

    void editorStaysInsideWhateverTheLabel()
    {
        auto random = tarnis::testing::seededGenerator(25);
        std::uniform_int_distribution<int> edge(-500, 900);
        std::uniform_int_distribution<int> size(1, 200);
        const QRect bounds(0, 0, 400, 320);
        for (int i = 0; i < 5000; ++i) {
            const QRect label(edge(random), edge(random), size(random), size(random));
            const QRect editor = tarnis::editorRect(label, i % 2 == 0, bounds);
            QVERIFY(bounds.contains(editor));
            QVERIFY(editor.width() >= 50);
        }
    }

private:
    static void axes()
    {
        QTest::addColumn<bool>("isVertical");
        QTest::addColumn<bool>("isLog");
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        for (const bool isVertical : { false, true }) {
            const char* const name = isVertical ? "Y" : "X";
            QTest::addRow("%s", name) << isVertical << false << -20.0 << 400.0;
            QTest::addRow("%s descending", name) << isVertical << false << 400.0 << -20.0;
            QTest::addRow("%s in decades", name) << isVertical << true << 0.01 << 1e5;
            QTest::addRow("%s in decades, descending", name) << isVertical << true << 1e5 << 0.01;
        }
    }
};

QTEST_APPLESS_MAIN(TestAxisMapping)
#include "tst_axismapping.moc"
