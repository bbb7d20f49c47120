// The read-out under the mouse, without a mouse.
#include "tarnis/plots/readout_p.h"

#include <QTest>

#include <limits>

using tarnis::ReadOutAxis;
using tarnis::Series;

namespace {

/// 100 pixels wide and high, one unit a pixel.
const QRect graph(10, 20, 100, 100);
const tarnis::ReadOutNames names { QStringLiteral("keV"), QStringLiteral("Row"), 3 };

ReadOutAxis axisTo(double max)
{
    ReadOutAxis axis;
    axis.visible = axis.initial = { 0.0, max };
    return axis;
}

QString read(const QList<Series>& series, QPoint pixel, const ReadOutAxis& axis, bool summed = false)
{
    return tarnis::readOut(series, pixel, graph, axis, { 0.0, 100.0 }, summed, names);
}

Series record(const QList<double>& values, bool enable = true)
{
    return { values, Qt::white, enable };
}

double half(double x, void*)
{
    return 0.5 * x;
}

double twice(double x, void*)
{
    return 2.0 * x;
}

} // namespace

class TestReadOut : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void sampleUnderX_data();
    void sampleUnderX();
    void sampleByAFunction();
    void shownX();
    void shownXOfAFunction();
    void oneRecord();
    void nearestOfMany();
    void firstOfEquals();
    void nothingNear();
    void hiddenAndShortRecordsAreNotThere();
    void sumOfTheEnabledOnes();
    void strictlyInside();
    void noData();
};

void TestReadOut::sampleUnderX_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("index");
    QTest::newRow("lower end of a bin") << 30.0 << 3;
    QTest::newRow("within a bin") << 39.9 << 3;
    QTest::newRow("below the range") << -0.1 << 0;
    QTest::newRow("far below") << -1e300 << 0;
    QTest::newRow("upper end") << 100.0 << 9;
    QTest::newRow("far above") << 1e300 << 9;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0;
}

void TestReadOut::sampleUnderX()
{
    QFETCH(double, x);
    QTEST(tarnis::sampleAt(x, axisTo(100.0), 10), "index");
}

void TestReadOut::sampleByAFunction()
{
    ReadOutAxis axis = axisTo(100.0);
    axis.position = twice;
    axis.resolution = 4.0;
    QCOMPARE(tarnis::sampleAt(10.0, axis, 10), 5);
    QCOMPARE(tarnis::sampleAt(9.9, axis, 10), 4); // 19.8, cut to 19, divided by 4
    QCOMPARE(tarnis::sampleAt(-10.0, axis, 10), 0);
    QCOMPARE(tarnis::sampleAt(1e300, axis, 10), 9);
}

void TestReadOut::shownX()
{
    ReadOutAxis axis = axisTo(100.0);
    axis.initial.min = 50.0;
    QCOMPARE(tarnis::shownX(3, axis, 10), 65.0);
    axis.decimals = true;
    QCOMPARE(tarnis::shownX(3, axis, 10), 67.5);
    axis.position = twice; // bins have no width then
    QCOMPARE(tarnis::shownX(3, axis, 10), 50.0);
}

void TestReadOut::shownXOfAFunction()
{
    ReadOutAxis axis = axisTo(100.0);
    axis.plotX = half;
    axis.resolution = 4.0;
    QCOMPARE(tarnis::shownX(3, axis, 10), 6.0);
}

void TestReadOut::oneRecord()
{
    // Column 40 stands for 30, which lies in the bin from 30 on.
    QCOMPARE(read({ record({ 1, 2, 3, 4.5, 5, 6, 7, 8, 9, 10 }) }, { 40, 50 }, axisTo(100.0)),
        QStringLiteral("keV:30 i:4.5"));
    QCOMPARE(read({ record({ 1, 2, 3 }, false) }, { 40, 50 }, axisTo(100.0)), QStringLiteral("keV:0 i:0"));
}

void TestReadOut::nearestOfMany()
{
    const QList<Series> series { record({ 10, 10 }), record({ 60, 60 }), record({ 90, 90 }) };
    QCOMPARE(read(series, { 20, 20 + 35 }, axisTo(100.0)), QStringLiteral("Row:4 keV:0 i:60"));
    QCOMPARE(read(series, { 80, 20 + 20 }, axisTo(100.0)), QStringLiteral("Row:5 keV:50 i:90"));
}

void TestReadOut::firstOfEquals()
{
    QCOMPARE(tarnis::seriesNearest({ record({ 40 }), record({ 60 }) }, 0, 50.0, 100.0), 0);
    QCOMPARE(tarnis::seriesNearest({ record({ 60 }), record({ 60 }) }, 0, 50.0, 100.0), 0);
}

void TestReadOut::nothingNear()
{
    QVERIFY(!tarnis::seriesNearest({ record({ 150 }) }, 0, 50.0, 100.0)); // as far as the reach is too far
    QVERIFY(tarnis::seriesNearest({ record({ 149.9 }) }, 0, 50.0, 100.0));
    QVERIFY(!tarnis::seriesNearest({ record({ std::numeric_limits<double>::quiet_NaN() }) }, 0, 50.0, 100.0));
    QVERIFY(read({ record({ 500 }), record({ 600 }) }, { 40, 50 }, axisTo(100.0)).isEmpty());
}

void TestReadOut::hiddenAndShortRecordsAreNotThere()
{
    const QList<Series> series { record({ 1, 1, 1, 1 }), record({ 50, 50, 50, 50 }, false), record({ 50, 50 }) };
    QCOMPARE(tarnis::seriesNearest(series, 3, 50.0, 100.0), 0);
    QCOMPARE(tarnis::seriesNearest(series, 1, 50.0, 100.0), 2);
}

void TestReadOut::sumOfTheEnabledOnes()
{
    const QList<Series> series { record({ 1, 2 }), record({ 10, 20 }, false), record({ 100 }) };
    QCOMPARE(tarnis::sumAt(series, 0), 101.0);
    QCOMPARE(tarnis::sumAt(series, 1), 2.0);
    QCOMPARE(read(series, { 20, 50 }, axisTo(100.0), true), QStringLiteral("keV:0 i:101"));
}

void TestReadOut::strictlyInside()
{
    const QList<Series> series { record({ 1, 2 }) };
    QVERIFY(read(series, graph.topLeft(), axisTo(100.0)).isEmpty());
    QVERIFY(read(series, graph.bottomRight(), axisTo(100.0)).isEmpty());
    QVERIFY(!read(series, graph.topLeft() + QPoint(1, 1), axisTo(100.0)).isEmpty());
    QVERIFY(!read(series, graph.bottomRight() - QPoint(1, 1), axisTo(100.0)).isEmpty());
}

void TestReadOut::noData()
{
    QVERIFY(read({}, { 50, 50 }, axisTo(100.0)).isEmpty());
    QVERIFY(read({ record({}), record({ 1, 2 }) }, { 50, 50 }, axisTo(100.0)).isEmpty());
}

QTEST_APPLESS_MAIN(TestReadOut)
#include "tst_readout.moc"
