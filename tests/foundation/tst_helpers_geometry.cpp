// Rectangles of the helpers: centres, stretching, moving.
#include "support/cases.h"
#include "tarnis/foundation/helpers.h"

#include "support/helpersoracle.h"
#include "support/support.h"

#include <QTest>

#include <climits>
#include <limits>

using namespace tarnis::testing;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

oracle::Rect plain(const QRect& rect)
{
    return { rect.left(), rect.top(), rect.right(), rect.bottom() };
}

QRect qRect(const oracle::Rect& rect)
{
    return { QPoint(rect.left, rect.top), QPoint(rect.right, rect.bottom) };
}

} // namespace

class TestHelpersGeometry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void findsTheCenterOfARectangle_data()
    {
        addColumns<QRect, QPoint>("rect", "expected");
        QTest::newRow("odd size") << QRect(0, 0, 3, 5) << QPoint(1, 2);
        QTest::newRow("even size goes right and down") << QRect(0, 0, 4, 6) << QPoint(2, 3);
        QTest::newRow("one pixel") << QRect(7, 8, 1, 1) << QPoint(7, 8);
        QTest::newRow("negative place") << QRect(-10, -20, 4, 4) << QPoint(-8, -18);
        QTest::newRow("empty") << QRect() << QPoint(0, 0);
        QTest::newRow("inverted, towards zero") << QRect(QPoint(0, 0), QPoint(-4, -2)) << QPoint(-1, 0);
    }
    void findsTheCenterOfARectangle()
    {
        QFETCH(QRect, rect);
        QFETCH(QPoint, expected);
        QCOMPARE(center(rect), expected);
    }

    void setsACenter_data()
    {
        addColumns<QRect, QPoint, QRect>("rect", "point", "expected");
        QTest::newRow("odd size") << QRect(50, 60, 3, 5) << QPoint(1, 2) << QRect(0, 0, 3, 5);
        QTest::newRow("even size") << QRect(50, 60, 4, 6) << QPoint(2, 3) << QRect(0, 0, 4, 6);
        QTest::newRow("negative") << QRect(50, 60, 4, 6) << QPoint(-2, -3) << QRect(-4, -6, 4, 6);
    }
    void setsACenter()
    {
        QFETCH(QRect, rect);
        QFETCH(QPoint, point);
        QFETCH(QRect, expected);
        QCOMPARE(&setCenter(rect, point), &rect);
        QCOMPARE(rect, expected);
        QCOMPARE(center(rect), point);
    }

    void stretchesARectangleAroundItsCenter_data()
    {
        addColumns<QRect, double, double, QRect>("rect", "xFactor", "yFactor", "expected");
        QTest::newRow("unchanged") << QRect(3, 4, 10, 20) << 1.0 << 1.0 << QRect(3, 4, 10, 20);
        QTest::newRow("doubled") << QRect(0, 0, 10, 20) << 2.0 << 2.0 << QRect(-5, -10, 20, 40);
        QTest::newRow("halves go up") << QRect(0, 0, 3, 5) << 0.5 << 0.5 << QRect(0, 1, 2, 3);
        QTest::newRow("one axis") << QRect(0, 0, 10, 20) << 0.5 << 1.0 << QRect(3, 0, 5, 20);
        QTest::newRow("negative halves go down") << QRect(0, 0, 3, 2) << -0.5 << 1.0 << QRect(2, 0, -2, 2);
        QTest::newRow("nothing left") << QRect(0, 0, 10, 10) << 0.0 << 0.0 << QRect(5, 5, 0, 0);
        QTest::newRow("not a number counts as 0") << QRect(0, 0, 10, 10) << notANumber << 1.0 << QRect(5, 0, 0, 10);
    }
    void stretchesARectangleAroundItsCenter()
    {
        QFETCH(QRect, rect);
        QFETCH(double, xFactor);
        QFETCH(double, yFactor);
        QFETCH(QRect, expected);
        stretchRect(rect, xFactor, yFactor);
        QCOMPARE(rect, expected);
    }

    void movesInside_data()
    {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QRect>("expected"); // in 0, 0, 100 x 50
        QTest::newRow("inside") << QRect(10, 20, 5, 5) << QRect(10, 20, 5, 5);
        QTest::newRow("touches the edges") << QRect(95, 45, 5, 5) << QRect(95, 45, 5, 5);
        QTest::newRow("beyond right and bottom") << QRect(97, 49, 5, 5) << QRect(95, 45, 5, 5);
        QTest::newRow("beyond left and top") << QRect(-3, -4, 5, 5) << QRect(0, 0, 5, 5);
        QTest::newRow("larger: left and top win") << QRect(-30, 70, 200, 60) << QRect(0, 0, 200, 60);
    }
    void movesInside()
    {
        QFETCH(QRect, rect);
        QFETCH(QRect, expected);
        QCOMPARE(&moveIn(rect, QRect(0, 0, 100, 50)), &rect);
        QCOMPARE(rect, expected);
    }

    void survivesAnyRectangle()
    {
        const QRect all(QPoint(INT_MIN, INT_MIN), QPoint(INT_MAX, INT_MAX));
        QCOMPARE(center(all), QPoint(0, 0));
        QRect rect = all;
        setCenter(rect, QPoint(INT_MAX, INT_MIN));
        rect = all;
        moveIn(rect, QRect(0, 0, 1, 1));
        rect = all;
        stretchRect(rect, infinity, -infinity);
        QCOMPARE(rect.right(), INT_MAX / 2); // INT_MAX wide about the middle
        rect = QRect(0, 0, 10, 10);
        stretchRect(rect, 1e300, 1.0);
        QCOMPARE(rect.top(), 0);
        QCOMPARE(rect.bottom(), 9);
    }

    void rectanglesAgreeWithTheOracle()
    {
        auto generator = seededGenerator(4);
        std::uniform_int_distribution<int> place(-200, 200);
        std::uniform_int_distribution<int> quarter(-12, 12);
        const auto anyRect = [&] {
            const QPoint corner(place(generator), place(generator));
            return QRect(corner, QPoint(place(generator), place(generator)));
        };
        for (int i = 0; i < 20000; ++i) {
            const QRect start = anyRect();
            const QRect bounds = anyRect();
            const QPoint point(place(generator), place(generator));
            const double xFactor = quarter(generator) / 4.0;
            const double yFactor = quarter(generator) / 8.0;
            QRect rect = start;
            QCOMPARE(setCenter(rect, point), qRect(oracle::withCenter(plain(start), point.x(), point.y())));
            rect = start;
            stretchRect(rect, xFactor, yFactor);
            QCOMPARE(rect, qRect(oracle::stretched(plain(start), xFactor, yFactor)));
            rect = start;
            QCOMPARE(moveIn(rect, bounds), qRect(oracle::movedIn(plain(start), plain(bounds))));
        }
    }
};

QTEST_MAIN(TestHelpersGeometry)
#include "tst_helpers_geometry.moc"
