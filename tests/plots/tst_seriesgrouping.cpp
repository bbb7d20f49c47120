// Which records add up to which curve, in which colour, and the sums.
#include "support/support.h"

#include "tarnis/plots/math/seriesgrouping_p.h"

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <limits>

using tarnis::AddType;
using tarnis::Series;
using tarnis::SummedCurve;

namespace {

/// A record of `count` samples, all of them `value`.
Series record(int count, double value, bool enable = true)
{
    return { QList<double>(count, value), QColor(10, 20, static_cast<int>(value)), enable };
}

/// The records of each curve, as "0+1+2", with a minus sign in front of a hidden one.
QStringList members(const QList<SummedCurve>& curves)
{
    QStringList texts;
    for (const SummedCurve& curve : curves) {
        QStringList numbers;
        for (const int number : curve.records)
            numbers << QString::number(number);
        texts << (curve.enable ? QString() : QStringLiteral("-")) + numbers.join(u'+');
    }
    return texts;
}

} // namespace

class TestSeriesGrouping : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rotationRepeats()
    {
        QCOMPARE(tarnis::rotationColour(0), QColor(255, 51, 0));
        QCOMPARE(tarnis::rotationColour(1), QColor(255, 255, 0));
        QCOMPARE(tarnis::rotationColour(2), QColor(51, 153, 102));
        QCOMPARE(tarnis::rotationColour(3), QColor(0, 65, 255));
        QCOMPARE(tarnis::rotationColour(4), QColor(102, 204, 255));
        QCOMPARE(tarnis::rotationColour(5), QColor(255, 153, 153));
        QCOMPARE(tarnis::rotationColour(6), QColor(255, 153, 0));
        QCOMPARE(tarnis::rotationColour(7), QColor(153, 0, 102));
        QCOMPARE(tarnis::rotationColour(8), tarnis::rotationColour(0));
    }

    void everySeriesByItself()
    {
        const QList<Series> series { record(2, 1), record(2, 2, false), record(2, 3) };
        const auto curves = tarnis::curvesOf(series, AddType::AddNone, 2);
        QCOMPARE(members(curves), (QStringList { "0", "-1", "2" }));
        QCOMPARE(curves.at(2).colour, series.at(0).color); // colours repeat from group to group
    }

    void addsTheSeriesOfEachGroup()
    {
        const QList<Series> series { record(2, 1), record(2, 2, false), record(2, 3), record(2, 4, false),
            record(2, 5) };
        const auto curves = tarnis::curvesOf(series, AddType::AddEachGroup, 3);
        QCOMPARE(members(curves), (QStringList { "0+1+2", "-3+4" })); // hidden members count, the first decides
        QCOMPARE(curves.at(0).colour, tarnis::rotationColour(0));
        QCOMPARE(curves.at(1).colour, tarnis::rotationColour(1));
    }

    void groupOfOne()
    {
        const QList<Series> series(10, record(2, 1));
        const auto curves = tarnis::curvesOf(series, AddType::AddEachGroup, 1);
        QCOMPARE(curves.size(), 10);
        QCOMPARE(curves.at(9).colour, tarnis::rotationColour(1));
        QCOMPARE(curves.at(8).colour, curves.at(0).colour);
    }

    void emptyFirstRecordUsesUpAColour()
    {
        const QList<Series> series { record(0, 1), record(2, 2, false), record(2, 3), record(2, 4), record(2, 5),
            record(2, 6) };
        const auto curves = tarnis::curvesByGroup(series, 3);
        QCOMPARE(members(curves), (QStringList { "-1+2", "3+4+5" }));
        QCOMPARE(curves.at(0).colour, tarnis::rotationColour(1));
        QCOMPARE(curves.at(1).colour, tarnis::rotationColour(2));
    }

    void addsTheSeriesAtEachPosition()
    {
        const QList<Series> series { record(2, 1), record(2, 2, false), record(2, 3, false), record(2, 4),
            record(2, 5) };
        const auto curves = tarnis::curvesOf(series, AddType::AddEachPosition, 2);
        QCOMPARE(members(curves), (QStringList { "0+2+4", "-1+3" }));
        QCOMPARE(curves.at(0).colour, series.at(0).color);
        QCOMPARE(curves.at(1).colour, series.at(1).color);
        // An empty first record is replaced, but still determines colour and `enable`.
        const QList<Series> late { record(0, 1, false), record(2, 2), record(2, 3) };
        QCOMPARE(members(tarnis::curvesByPosition(late, 2)), (QStringList { "-2", "1" }));
    }

    void positionsWithFewRecords()
    {
        const auto curves = tarnis::curvesOf({ record(2, 1) }, AddType::AddEachPosition, 3);
        QCOMPARE(members(curves), (QStringList { "0", "", "" }));
    }

    void addsAllVisibleSeries()
    {
        const QList<Series> series { record(2, 1, false), record(2, 2), record(2, 3) };
        const auto curves = tarnis::curvesOf(series, AddType::AddAll, 8);
        QCOMPARE(members(curves), (QStringList { "1+2" }));
        QCOMPARE(curves.at(0).colour, series.at(1).color);
        QCOMPARE(members({ tarnis::curveOfAll(series, false) }), (QStringList { "0+1+2" }));
    }

    void anUnknownTypeAddsAll()
    {
        const QList<Series> series { record(2, 1), record(2, 2) };
        QCOMPARE(members(tarnis::curvesOf(series, static_cast<AddType>(7), 1)), (QStringList { "0+1" }));
    }

    void groupsWithoutSeriesAreEmpty()
    {
        QVERIFY(tarnis::curvesOf({}, AddType::AddNone, 8).isEmpty());
        QVERIFY(tarnis::curvesOf({}, AddType::AddEachGroup, 8).isEmpty());
        QCOMPARE(members(tarnis::curvesOf({}, AddType::AddEachPosition, 2)), (QStringList { "", "" }));
        const auto all = tarnis::curvesOf({}, AddType::AddAll, 8);
        QCOMPARE(members(all), (QStringList { "" }));
        QCOMPARE(all.at(0).colour, QColor(Qt::white));
        QVERIFY(tarnis::wholeSums({}, all.at(0)).isEmpty());
    }

    void sumsTakeTheCommonLength()
    {
        const QList<Series> series { record(4, 1), record(2, 10), record(6, 100) };
        QCOMPARE(tarnis::wholeSums(series, { { 0, 1, 2 }, {}, true }), (QList<double> { 111, 111, 101, 101 }));
        const auto part = tarnis::sumsOf(series, { { 0, 1, 2 }, {}, true }, { 1, 3 });
        QCOMPARE(part[0], 111.0);
        QCOMPARE(part[1], 101.0);
    }

    void reportsSumsOfDifferentLengths()
    {
        const QList<Series> series { record(4, 1), record(2, 10), record(4, 1) };
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QStringLiteral("Dst Size: 4 Src Size: 2")));
        tarnis::wholeSums(series, { { 0, 1, 2 }, {}, true });
        QTest::failOnWarning(QRegularExpression(QStringLiteral("Size")));
        tarnis::wholeSums(series, { { 0, 2 }, {}, true });
    }

    // Blocks of samples must not change a single bit.
    void sumsAreThoseOfTheGivenOrder()
    {
        auto random = tarnis::testing::seededGenerator(3562);
        std::uniform_real_distribution<double> value(-1.0, 1.0);
        std::uniform_int_distribution<int> length(0, 5000);
        QLoggingCategory::setFilterRules(QStringLiteral("tarnis.*.debug=false"));
        for (int number = 0; number < 60; ++number) {
            QList<Series> series(1 + number % 9);
            SummedCurve curve;
            for (int i = 0; i < series.size(); ++i) {
                series[i].values.resize(number % 3 == 0 ? 3000 : length(random));
                for (double& v : series[i].values)
                    v = value(random) * std::pow(10.0, 12.0 * value(random));
                curve.records << i;
            }
            QList<double> expected = series.constFirst().values;
            for (int i = 1; i < series.size(); ++i) {
                for (qsizetype k = 0; k < std::min(expected.size(), series.at(i).values.size()); ++k)
                    expected[k] += series.at(i).values.at(k);
            }
            QCOMPARE(tarnis::wholeSums(series, curve), expected);
            const int size = static_cast<int>(expected.size());
            const tarnis::SampleRange range { size / 3, size - size / 4 };
            const auto part = tarnis::sumsOf(series, curve, range);
            QVERIFY(std::equal(
                part.get(), part.get() + std::max(range.end - range.begin, 0), expected.cbegin() + range.begin));
        }
        QLoggingCategory::setFilterRules({});
    }

    void sumsBeyondAShorterRecord()
    {
        const QList<Series> series { record(3000, 1), record(0, 10), record(5, 100) };
        const auto sums = tarnis::sumsOf(series, { { 0, 1, 2 }, {}, true }, { 4, 3000 });
        QCOMPARE(sums[0], 101.0);
        QCOMPARE(sums[1], 1.0);
        QCOMPARE(sums[2995], 1.0);
    }

    void sumsOfOneRecordAreShared()
    {
        const QList<Series> series { record(4, 1) };
        QCOMPARE(tarnis::wholeSums(series, { { 0 }, {}, true }).constData(), series.at(0).values.constData());
    }

    void findsTheMaximumOfTheVisibleCurves_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("groupSize");
        QTest::addColumn<QList<double>>("maxValues");
        QTest::addColumn<double>("expected");
        const QList<double> values { 3.0, 10.0, 4.0 };
        QTest::newRow("none: the largest") << 0 << 2 << values << 10.0;
        QTest::newRow("groups: times the size") << 1 << 2 << values << 20.0;
        QTest::newRow("positions: the sum") << 2 << 2 << values << 17.0;
        QTest::newRow("all: times the size, of all") << 3 << 2 << values << 34.0;
        QTest::newRow("all, groups of one: the enabled ones") << 3 << 1 << values << 7.0;
        QTest::newRow("all, more values than records") << 3 << 1 << QList<double> { 3.0, 10.0, 4.0, 100.0 } << 7.0;
        QTest::newRow("nothing below 0") << 0 << 2 << QList<double> { -3.0 } << 0.0;
        QTest::newRow("no values") << 3 << 1 << QList<double>() << 0.0;
    }
    void findsTheMaximumOfTheVisibleCurves()
    {
        QFETCH(int, type);
        QFETCH(int, groupSize);
        QFETCH(QList<double>, maxValues);
        const QList<Series> series { record(2, 1), record(2, 1, false), record(2, 1) };
        QTEST(tarnis::maxOfCurves(series, maxValues, static_cast<AddType>(type), groupSize), "expected");
    }

    void largestIgnoresNaN()
    {
        QCOMPARE(tarnis::largestOf({}), 0.0);
        QCOMPARE(tarnis::largestOf({ -3.0, -1.0 }), -1.0);
        QCOMPARE(tarnis::largestOf({ std::numeric_limits<double>::quiet_NaN(), 2.0 }), 2.0);
        QCOMPARE(tarnis::largestOf({ 2.0, std::numeric_limits<double>::quiet_NaN() }), 2.0);
    }

    void lowestForALogAxis()
    {
        QCOMPARE(tarnis::lowestForLogAxis({}), 1.0);
        QCOMPARE(tarnis::lowestForLogAxis({ record(5, 30.0), record(5, -0.5) }), 1.0);
        QCOMPARE(tarnis::lowestForLogAxis({ record(5, 30.0), record(5, 0.25, false) }), 0.25); // hidden ones count
        QCOMPARE(tarnis::lowestForLogAxis({ record(5, 0.0), record(5, 2e-16), record(5, 3e-16) }), 3e-16);
    }

    void countsSeriesAndTheirSamples()
    {
        const QList<Series> series { record(0, 1), record(7, 1, false), record(3, 1) };
        QCOMPARE(tarnis::longestSeries(series), 7);
        QCOMPARE(tarnis::filledSeries(series), 2);
        QCOMPARE(tarnis::longestSeries({}), 0);
        QCOMPARE(tarnis::lengthOf(series, { { 2, 1 }, {}, true }), 3);
    }
};

QTEST_APPLESS_MAIN(TestSeriesGrouping)
#include "tst_seriesgrouping.moc"
