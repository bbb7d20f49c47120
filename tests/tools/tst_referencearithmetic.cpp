// Comparing bins with their reference: values, errors, gaps, and the axis of the comparison.
#include "support/cases.h"
#include "support/randomcases.h"
#include "support/support.h"

#include "tarnis/tools/curves/referencearithmetic_p.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::numeric_limits<double>::quiet_NaN();

bool isNear(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::abs(a - b) < 1e-9;
}

} // namespace

class TestReferenceArithmetic : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void comparesBins_data()
    {
        addColumns<int, double, double, double, bool, double, double>(
            "comparison", "live", "reference", "norm", "contained", "value", "error");
        const auto row = [](const char* name, Comparison comparison, double live, double reference, double norm,
                             bool contained, double value, double error) {
            addCase(name, static_cast<int>(comparison), live, reference, norm, contained, value, error);
        };
        using enum Comparison;
        row("difference", Difference, 25, 11, 1, false, 14, 6);
        row("scaled difference", Difference, 20, 20, 2, false, -20, 10); // 20 + 4 * 20
        row("difference of what went on", Difference, 25, 16, 1, true, 9, 3);
        row("scaled difference of what went on", Difference, 36, 9, 4, true, 0, std::sqrt(27 + 9 * 9));
        row("significance", Significance, 25, 11, 1, false, 14.0 / 6, 1);
        row("significance of what went on", Significance, 25, 16, 1, true, 3, 1);
        row("significance of nothing", Significance, 0, 0, 1, false, notANumber, 1);
        row("ratio", Ratio, 16, 16, 1, false, 1, std::sqrt(2.0 / 16));
        row("ratio to nothing", Ratio, 5, 0, 1, false, notANumber, notANumber);
        row("ratio of nothing", Ratio, 0, 4, 1, false, 0, 0);
        row("ratio of what went on", Ratio, 16, 16, 1, true, 1, 0);
        row("ratio of added counts", Ratio, 20, 4, 1, true, 5, std::sqrt((16.0 + 16 * 16 / 4.0) / 16));
        row("scaled ratio of added counts", Ratio, 20, 4, 5, true, 1, std::sqrt((16.0 + 16 * 16 / 4.0) / 400));
        row("no counts", Difference, 2.5, 1, 1, false, 1.5, notANumber);
        row("not a number", Difference, notANumber, 1, 1, false, notANumber, notANumber);
    }
    void comparesBins()
    {
        QFETCH(int, comparison);
        QFETCH(double, live);
        QFETCH(double, reference);
        QFETCH(double, norm);
        QFETCH(bool, contained);
        QFETCH(double, value);
        QFETCH(double, error);
        const ComparedBin bin = comparedBin(static_cast<Comparison>(comparison), live, reference, norm, contained);
        QVERIFY2(isNear(bin.value, value), qPrintable(QString::number(bin.value)));
        QVERIFY2(isNear(bin.error, error), qPrintable(QString::number(bin.error)));
    }

    void manyValuesEqualOneByOne()
    {
        auto random = testing::seededGenerator(51);
        for (int round = 0; round < 300; ++round) {
            const auto count = static_cast<std::size_t>(testing::whole(random, 0, 40));
            std::vector<double> live(count);
            std::vector<double> reference(count);
            for (std::size_t i = 0; i < count; ++i) {
                live[i] = testing::chance(random, 0.05) ? notANumber : std::floor(testing::uniform(random, -2, 50));
                reference[i] = testing::chance(random, 0.05) ? infinity : std::floor(testing::uniform(random, -2, 50));
            }
            const double norm = testing::uniform(random, 0.1, 3.0);
            for (const auto comparison : { Comparison::Difference, Comparison::Ratio, Comparison::Significance }) {
                const bool isContained = testing::chance(random, 0.5);
                std::vector<double> values(count);
                comparedValues(comparison, live.data(), reference.data(), static_cast<qsizetype>(count), norm,
                    isContained, values.data());
                for (std::size_t i = 0; i < count; ++i) {
                    const double one = comparedBin(comparison, live[i], reference[i], norm, isContained).value;
                    QVERIFY((std::isnan(one) && std::isnan(values[i])) || one == values[i]);
                }
            }
        }
    }

    void recognisesAContinuation()
    {
        QVERIFY(isContinuation({ 1, 2, 3 }, { 1, 2, 2 }));
        QVERIFY(!isContinuation({ 1, 2, 3 }, { 1, 2, 3 })); // nothing has changed
        QVERIFY(!isContinuation({ 0, 9, 9 }, { 1, 2, 3 })); // cleared since
        QVERIFY(!isContinuation({ 1, 2 }, { 1, 2, 3 }));
        QVERIFY(!isContinuation({ 1, notANumber }, { 1, 2 }));
    }

    void recognisesClearedData()
    {
        QVERIFY(isBelow({ 1, 2, 0 }, { 1, 2, 3 }));
        QVERIFY(!isBelow({ 1, 2, 3 }, { 1, 2, 3 }));
        QVERIFY(!isBelow({ 1, notANumber, 4 }, { 1, 2, 3 }));
        QVERIFY(!isBelow({ 0 }, { 1, 2, 3 }));
    }

    void axisIsRoundAndHoldsTheValues()
    {
        QCOMPARE(comparisonAxis(Comparison::Difference, { -3, 14 }), (AxisRange { -20, 20 }));
        QCOMPARE(comparisonAxis(Comparison::Difference, { 0.03 }), (AxisRange { -0.05, 0.05 }));
        QCOMPARE(comparisonAxis(Comparison::Ratio, { 1.5, 0.8 }), (AxisRange { 0.5, 1.5 }));
        QCOMPARE(comparisonAxis(Comparison::Ratio, { 5 }), (AxisRange { 0, 6 }));
        QCOMPARE(comparisonAxis(Comparison::Significance, { 0.1 }), (AxisRange { -5, 5 }));
        QCOMPARE(comparisonAxis(Comparison::Significance, { 17 }), (AxisRange { -20, 20 }));
        std::vector<double> values(1000, 2.0);
        values.push_back(1e9);
        QCOMPARE(comparisonAxis(Comparison::Ratio, values).max, 2.0);
        for (const Comparison comparison : { Comparison::Difference, Comparison::Significance })
            QCOMPARE(comparisonAxis(comparison, values).max, 1e9); // the peak that differs, among bins that agree
    }

    /// It grows at once and shrinks late; the least axis of a significance stays the least.
    void shownAxisStays()
    {
        const AxisRange ten { -10, 10 };
        QCOMPARE(comparisonAxis(Comparison::Difference, { 4.9 }, ten), ten);
        QCOMPARE(comparisonAxis(Comparison::Difference, { 4.1 }, ten), ten);
        QCOMPARE(comparisonAxis(Comparison::Difference, { 3.9 }, ten), (AxisRange { -5, 5 }));
        QCOMPARE(comparisonAxis(Comparison::Difference, { 0.9 }, ten), (AxisRange { -1, 1 }));
        QCOMPARE(comparisonAxis(Comparison::Difference, { 10.1 }, ten), (AxisRange { -20, 20 }));
        QCOMPARE(comparisonAxis(Comparison::Ratio, { 0.55 }, AxisRange { 0, 2 }), (AxisRange { 0, 2 }));
        QCOMPARE(comparisonAxis(Comparison::Ratio, { 0.85 }, AxisRange { 0, 2 }), (AxisRange { 0.8, 1.2 }));
        QCOMPARE(comparisonAxis(Comparison::Significance, { 0.1 }, ten), (AxisRange { -5, 5 }));
        QCOMPARE(comparisonAxis(Comparison::Significance, { 4.5 }, ten), ten);
    }

    void axisOfNothingIsUsable()
    {
        for (const std::vector<double>& values :
            { std::vector<double> {}, { 0.0 }, { notANumber, infinity }, { 1e308, -1e308 }, { 5e-324 } }) {
            const AxisRange axis = comparisonAxis(Comparison::Difference, values);
            QVERIFY(axis.max > axis.min);
            QVERIFY(!std::isnan(axis.min) && !std::isnan(axis.max));
        }
    }
};

QTEST_GUILESS_MAIN(TestReferenceArithmetic)
#include "tst_referencearithmetic.moc"
