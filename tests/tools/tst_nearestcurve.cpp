// The distance of a place to a curve of joined points, against points that are close together.
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/tools/cursors/nearestcurve_p.h"

#include <QList>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

double distanceTo(const QPointF& place, const QList<QPointF>& points)
{
    return tarnis::distanceToLine(place, 0, points.size() - 1, [&](qsizetype i) { return points.at(i); });
}

} // namespace

class TestNearestCurve : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void distances()
    {
        const double nan = std::nan("");
        QCOMPARE(distanceTo({ 0, 3 }, { { 0, 0 } }), 3.0);
        QCOMPARE(distanceTo({ 5, 3 }, { { 0, 0 }, { 10, 0 } }), 3.0);
        QCOMPARE(distanceTo({ 13, 4 }, { { 0, 0 }, { 10, 0 } }), 5.0);
        QCOMPARE(distanceTo({ 5, 1 }, { { 5, 0 }, { 5, 0 } }), 1.0);
        QCOMPARE(distanceTo({ 5, 1 }, { { 0, 0 }, { nan, nan }, { 10, 1 } }), 5.0); // no segment across the gap
        QVERIFY(std::isinf(distanceTo({ 5, 1 }, {})));
        QVERIFY(std::isinf(distanceTo({ 5, 1 }, { { nan, 0 }, { 0, nan } })));
    }

    void agreesWithClosePoints()
    {
        auto random = tarnis::testing::seededGenerator(1);
        const auto coordinate = [&] { return tarnis::testing::uniform(random, -10, 10); };
        for (int round = 0; round < 200; ++round) {
            QList<QPointF> points;
            for (int i = 0; i < 4; ++i)
                points.append({ coordinate(), coordinate() });
            const QPointF at(coordinate(), coordinate());
            double nearest = std::numeric_limits<double>::infinity();
            for (int i = 0; i + 1 < points.size(); ++i) {
                for (int step = 0; step <= 2000; ++step) {
                    const QPointF apart = at - (points.at(i) + (points.at(i + 1) - points.at(i)) * (step / 2000.0));
                    nearest = std::min(nearest, std::hypot(apart.x(), apart.y()));
                }
            }
            QVERIFY(std::abs(distanceTo(at, points) - nearest) < 0.02);
        }
    }
};

QTEST_APPLESS_MAIN(TestNearestCurve)
#include "tst_nearestcurve.moc"
