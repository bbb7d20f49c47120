// Arithmetic of the map tools, without widgets: colour levels, and profiles along lines.
#include "support/randomcases.h"
#include "support/support.h"
#include "tarnis/tools/maps/levels_p.h"
#include "tarnis/tools/maps/profilearithmetic_p.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

using namespace tarnis;
using namespace tarnis::testing;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::numeric_limits<double>::quiet_NaN();

bool isNear(double a, double b)
{
    return std::abs(a - b) <= 1e-9 * std::max({ 1.0, std::abs(a), std::abs(b) });
}

QList<QList<double>> ramp(int columns, int rows)
{
    QList<QList<double>> bins;
    for (int y = 0; y < rows; ++y) {
        QList<double> row;
        for (int x = 0; x < columns; ++x)
            row.append(x + 100 * y);
        bins.append(row);
    }
    return bins;
}

QList<QList<double>> randomRows(Generator& generator)
{
    QList<QList<double>> rows(whole(generator, 1, 40));
    for (QList<double>& row : rows) {
        row.resize(whole(generator, 0, 40));
        for (double& value : row)
            value = chance(generator, 0.05) ? notANumber : std::floor(uniform(generator, -5, 50));
    }
    return rows;
}

ProfileBand randomBand(Generator& generator)
{
    const auto place = [&] { return QPointF(uniform(generator, -10, 50), uniform(generator, -10, 50)); };
    const QPointF from = place();
    return { from, place(), uniform(generator, 0, 20) };
}

/// Sums and areas of the steps by a grid of points in each bin.
struct ProfileOracle {
    ProfileOracle(const QList<QList<double>>& rows, const ProfileBand& band)
    {
        const ProfileSteps steps = stepsOf(band);
        areas.resize(steps.count);
        sums.resize(steps.count);
        for (int y = 0; y < rows.size() * perBin; ++y) {
            const QList<double>& row = rows.at(y / perBin);
            for (int x = 0; x < row.size() * perBin; ++x) {
                const QPointF at = QPointF(x + 0.5, y + 0.5) / perBin - band.from;
                const double along = QPointF::dotProduct(at, steps.direction) / steps.step + 0.5;
                const double across = steps.direction.x() * at.y() - steps.direction.y() * at.x();
                const double value = row.at(x / perBin);
                if (!std::isfinite(value) || along < 0 || along >= steps.count || std::abs(across) > steps.halfWidth)
                    continue;
                areas[static_cast<int>(along)] += 1.0 / (perBin * perBin);
                sums[static_cast<int>(along)] += value / (perBin * perBin);
            }
        }
    }

    static constexpr int perBin = 20;
    QList<double> areas;
    QList<double> sums;
};

} // namespace

class TestMapArithmetic : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Arithmetic of colour levels: quantiles, histogram, the axis and drags of its handles.

    void countsPaintedBinsOnly()
    {
        std::vector<double> values = paintedBins({ { 0, 1, notANumber }, {}, { infinity, -2, 1e-300, 5 } });
        std::sort(values.begin(), values.end());
        QCOMPARE(values, (std::vector<double> { -2, 1, 5 }));
        QVERIFY(paintedBins({}).empty());
    }

    void percentilesAreNearestRanks()
    {
        std::vector<double> values(101);
        std::iota(values.begin(), values.end(), 0.0);
        std::reverse(values.begin(), values.end());
        QCOMPARE(percentileLevels(values, 1, 99), (AxisRange { 1, 99 }));
        QCOMPARE(percentileLevels(values, 99, 1), (AxisRange { 1, 99 }));
        QCOMPARE(percentileLevels(values, -5, 250), (AxisRange { 0, 100 }));
        QCOMPARE(percentileLevels(values, 50, 50), (AxisRange { 50, 50 }));
        QCOMPARE(percentileLevels(values, notANumber, 50), AxisRange());
        std::vector<double> none;
        QCOMPARE(percentileLevels(none, 0, 100), AxisRange());
        std::vector<double> one { 7 };
        QCOMPARE(percentileLevels(one, 1, 99), (AxisRange { 7, 7 }));
    }

    void equalLevelsBeginAtZero()
    {
        QCOMPARE(distinctLevels({ 7, 7 }), (AxisRange { 0, 7 }));
        QCOMPARE(distinctLevels({ -3, -3 }), (AxisRange { -3, 0 }));
        QCOMPARE(distinctLevels({ 1, 2 }), (AxisRange { 1, 2 }));
        QCOMPARE(distinctLevels({ 0, 0 }), (AxisRange { 0, 0 }));
    }

    void axisHoldsAllValuesAndLevels()
    {
        Generator generator = seededGenerator(1);
        for (int i = 0; i < 3000; ++i) {
            const auto curve = static_cast<ScaleCurve>(generator() % 3);
            std::vector<double> values(generator() % 20);
            for (double& value : values)
                value = std::exp(uniform(generator, -20, 20)) * (chance(generator, 0.2) ? -1 : 1);
            const AxisRange levels { uniform(generator, -10, 10), uniform(generator, -10, 1e6) };
            const LevelAxis axis = levelAxis(values, levels, curve);
            QVERIFY(axis.range.max > axis.range.min);
            values.push_back(levels.max);
            for (const double value : values) {
                const double share = axis.shareOf(value);
                QVERIFY2((share >= -1e-9 && share <= 1.0 + 1e-9) || (value <= 0.0 && curve != ScaleCurve::Linear),
                    qPrintable(QString::number(value)));
            }
            const double share = uniform(generator, 0, 1);
            QVERIFY(std::abs(axis.shareOf(axis.valueAt(share)) - share) < 1e-6);
        }
    }

    void levelsEndAtTheValues_data()
    {
        QTest::addColumn<ScaleCurve>("curve");
        QTest::addColumn<double>("least");
        QTest::newRow("linear") << ScaleCurve::Linear << 0.0;
        QTest::newRow("square root") << ScaleCurve::SquareRoot << 0.0;
        QTest::newRow("logarithmic") << ScaleCurve::Log << 0.5;
    }
    void levelsEndAtTheValues()
    {
        QFETCH(const ScaleCurve, curve);
        QFETCH(const double, least);
        const std::vector<double> values { 1, 5, 1000 };
        AxisRange levels { 0, 1000 };
        const auto move = [&](LevelHandle handle, double delta) {
            levels = draggedLevels(levels, levelAxis(values, levels, curve), handle, delta, 0.002);
        };
        for (int i = 0; i < 200; ++i) {
            move(LevelHandle::Upper, 0.01);
            move(LevelHandle::Lower, -0.01);
        }
        QVERIFY2(levels.min >= least && levels.min <= 1.0, qPrintable(QString::number(levels.min)));
        QVERIFY2(levels.max > 1000.0 && levels.max < 1300.0, qPrintable(QString::number(levels.max)));
    }

    void axisOfOddLevelsIsUsable_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::newRow("empty") << 0.0 << 0.0;
        QTest::newRow("equal") << 5.0 << 5.0;
        QTest::newRow("reversed") << 9.0 << 1.0;
        QTest::newRow("negative") << -9.0 << -1.0;
        QTest::newRow("not a number") << notANumber << 1.0;
        QTest::newRow("infinite") << 0.0 << infinity;
        QTest::newRow("huge") << -1e308 << 1e308;
        QTest::newRow("tiny") << 1e-320 << 2e-320;
    }
    void axisOfOddLevelsIsUsable()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        for (const ScaleCurve curve : { ScaleCurve::Linear, ScaleCurve::Log, ScaleCurve::SquareRoot }) {
            const LevelAxis axis = levelAxis({}, { low, high }, curve);
            QVERIFY(axis.range.max > axis.range.min);
            QVERIFY(std::isfinite(axis.range.min) && std::isfinite(axis.range.max));
            const std::vector<qsizetype> steps = levelHistogram({ low, high, 1.0 }, axis, 16);
            QCOMPARE(steps.size(), std::size_t(16));
        }
    }

    void histogramCountsEachValueOnce()
    {
        Generator generator = seededGenerator(2);
        for (const ScaleCurve curve : { ScaleCurve::Linear, ScaleCurve::Log, ScaleCurve::SquareRoot }) {
            std::vector<double> values(5000);
            for (double& value : values)
                value = std::floor(uniform(generator, 1, 1000));
            const LevelAxis axis = levelAxis(values, { 1, 1000 }, curve);
            const std::vector<qsizetype> steps = levelHistogram(values, axis, 64);
            QCOMPARE(std::accumulate(steps.begin(), steps.end(), qsizetype(0)), qsizetype(5000));
            std::vector<qsizetype> expected(64);
            for (const double value : values)
                ++expected[static_cast<std::size_t>(std::clamp(axis.shareOf(value) * 64, 0.0, 63.0))];
            for (std::size_t i = 0; i < steps.size(); ++i)
                QVERIFY(std::abs(steps[i] - expected[i]) <= 6); // of a value on the edge of a step
        }
        QVERIFY(levelHistogram({ 1 }, LevelAxis {}, 0).empty());
    }

    void findsTheHandleUnderAPress()
    {
        QCOMPARE(handleAt(0.21, 0.2, 0.8, 0.02), LevelHandle::Lower);
        QCOMPARE(handleAt(0.79, 0.2, 0.8, 0.02), LevelHandle::Upper);
        QCOMPARE(handleAt(0.5, 0.2, 0.8, 0.02), LevelHandle::Both);
        QCOMPARE(handleAt(0.9, 0.2, 0.8, 0.02), LevelHandle::None);
        QCOMPARE(handleAt(0.51, 0.5, 0.5, 0.02), LevelHandle::Upper);
        QCOMPARE(handleAt(0.49, 0.5, 0.5, 0.02), LevelHandle::Lower);
        QCOMPARE(handleAt(notANumber, 0.2, 0.8, 0.02), LevelHandle::None);
    }

    void dragsKeepOrderAndStayOnTheAxis()
    {
        const LevelAxis axis { { 0, 100 }, ScaleCurve::Linear };
        const AxisRange raised = draggedLevels({ 20, 80 }, axis, LevelHandle::Lower, 0.1, 0.01);
        QVERIFY(isNear(raised.min, 30) && raised.max == 80);
        const AxisRange pushed = draggedLevels({ 20, 80 }, axis, LevelHandle::Lower, 0.9, 0.01);
        QVERIFY(isNear(pushed.min, 79) && pushed.max == 80);
        QCOMPARE(draggedLevels({ 20, 80 }, axis, LevelHandle::Upper, 5.0, 0.01), (AxisRange { 20, 100 }));
        const AxisRange moved = draggedLevels({ 20, 80 }, axis, LevelHandle::Both, 0.5, 0.01);
        QVERIFY(isNear(moved.min, 40) && isNear(moved.max, 100));
        QCOMPARE(draggedLevels({ 20, 80 }, axis, LevelHandle::None, 0.5, 0.01), (AxisRange { 20, 80 }));
        QCOMPARE(draggedLevels({ 20, 80 }, axis, LevelHandle::Lower, notANumber, 0.01), (AxisRange { 20, 80 }));
        const AxisRange log =
            draggedLevels({ 10, 1000 }, { { 1, 10000 }, ScaleCurve::Log }, LevelHandle::Both, 0.25, 0.01);
        QVERIFY(isNear(log.min, 100) && isNear(log.max, 10000));
    }

    // Profiles along lines of a map: against a visit of every bin, and for lines along the axes and the diagonal.

    void alongTheAxesEachStepIsABin()
    {
        const auto bins = ramp(8, 5);
        const Profile right = profileAlong(bins, { { 1.5, 2.5 }, { 5.5, 2.5 }, 1 }, ProfileJoin::Sum);
        QCOMPARE(right.values, (QList<double> { 201, 202, 203, 204, 205 }));
        const Profile left = profileAlong(bins, { { 5.5, 2.5 }, { 1.5, 2.5 }, 1 }, ProfileJoin::Sum);
        QCOMPARE(left.values, (QList<double> { 205, 204, 203, 202, 201 }));
        const Profile up = profileAlong(bins, { { 3.5, 0.5 }, { 3.5, 4.5 }, 3 }, ProfileJoin::Mean);
        QCOMPARE(up.values, (QList<double> { 3, 103, 203, 303, 403 }));
        QCOMPARE(up.areas, (QList<double> { 3, 3, 3, 3, 3 }));
        const Profile largest = profileAlong(bins, { { 3.5, 0.5 }, { 3.5, 4.5 }, 3 }, ProfileJoin::Maximum);
        QCOMPARE(largest.values, (QList<double> { 4, 104, 204, 304, 404 }));
        QCOMPARE(right.step, 1.0);
    }

    void aPointIsOneStep()
    {
        QCOMPARE(profileAlong(ramp(8, 5), { { 2.5, 1.5 }, { 2.5, 1.5 }, 1 }, ProfileJoin::Sum).values,
            (QList<double> { 102 }));
    }

    void maximaTakeEachBinOnce()
    {
        Generator generator = seededGenerator(1);
        for (int i = 0; i < 1500; ++i) {
            const QList<QList<double>> rows = randomRows(generator);
            const ProfileBand band = randomBand(generator);
            const ProfileSteps steps = stepsOf(band);
            double largest = -infinity;
            int count = 0;
            for (int y = 0; y < rows.size(); ++y) {
                for (int x = 0; x < rows.at(y).size(); ++x) {
                    const QPointF at = QPointF(x + 0.5, y + 0.5) - band.from;
                    const double along = QPointF::dotProduct(at, steps.direction);
                    const double across = steps.direction.x() * at.y() - steps.direction.y() * at.x();
                    const double value = rows.at(y).at(x);
                    if (!std::isfinite(value) || along < -steps.step / 2 || along >= (steps.count - 0.5) * steps.step
                        || std::abs(across) > steps.halfWidth)
                        continue;
                    largest = std::max(largest, value);
                    ++count;
                }
            }
            const Profile top = profileAlong(rows, band, ProfileJoin::Maximum);
            QCOMPARE(top.values.size(), steps.count);
            double found = -infinity;
            double bins = 0;
            for (int k = 0; k < steps.count; ++k) {
                QCOMPARE(std::isnan(top.values.at(k)), top.areas.at(k) == 0.0);
                if (top.areas.at(k) > 0.0)
                    found = std::max(found, top.values.at(k));
                bins += top.areas.at(k);
            }
            QCOMPARE(bins, count);
            QCOMPARE(found, largest);
        }
    }

    void sumsTakeTheAreaOfEachBin()
    {
        Generator generator = seededGenerator(3);
        for (int i = 0; i < 60; ++i) {
            const QList<QList<double>> rows = randomRows(generator);
            const ProfileBand band = randomBand(generator);
            const Profile sums = profileAlong(rows, band, ProfileJoin::Sum);
            const Profile means = profileAlong(rows, band, ProfileJoin::Mean);
            const ProfileOracle expected(rows, band);
            QCOMPARE(sums.values.size(), stepsOf(band).count);
            for (int k = 0; k < sums.values.size(); ++k) {
                // The oracle counts points: 400 in a bin, of which those near a border of the step may be on either
                // side.
                const double tolerance = 0.02 * (1.0 + expected.areas.at(k));
                QVERIFY2(std::abs(sums.areas.at(k) - expected.areas.at(k)) < tolerance, qPrintable(QString::number(k)));
                if (std::isnan(sums.values.at(k))) {
                    QVERIFY(sums.areas.at(k) < 1e-9 && std::isnan(means.values.at(k)));
                    continue;
                }
                QVERIFY(std::abs(sums.values.at(k) - expected.sums.at(k)) < 50 * tolerance);
                QVERIFY(isNear(means.values.at(k) * sums.areas.at(k), sums.values.at(k)));
            }
        }
    }

    void aFlatMapHasAFlatProfile()
    {
        const QList<QList<double>> flat(200, QList<double>(200, 7.0));
        Generator generator = seededGenerator(4);
        for (int i = 0; i < 300; ++i) {
            const auto place = [&] { return QPointF(uniform(generator, 60, 140), uniform(generator, 60, 140)); };
            const ProfileBand band { place(), place(), uniform(generator, 0, 30) };
            const ProfileSteps steps = stepsOf(band);
            const Profile sums = profileAlong(flat, band, ProfileJoin::Sum);
            for (const double value : sums.values)
                QVERIFY(isNear(value, 7.0 * steps.step * 2.0 * steps.halfWidth));
            for (const double value : profileAlong(flat, band, ProfileJoin::Mean).values)
                QVERIFY(isNear(value, 7.0));
        }
    }

    void aSpotKeepsItsContents()
    {
        QList<QList<double>> rows(100, QList<double>(100, 0.0));
        rows[50][50] = 1000.0;
        rows[52][49] = 300.0;
        for (int degrees = 0; degrees < 360; degrees += 7) {
            const QPointF way(std::cos(degrees * M_PI / 180), std::sin(degrees * M_PI / 180));
            const QPointF middle(50.5, 50.5);
            const Profile profile = profileAlong(rows, { middle - 30 * way, middle + 30 * way, 9 }, ProfileJoin::Sum);
            const double sum = std::accumulate(profile.values.begin(), profile.values.end(), 0.0);
            QVERIFY2(isNear(sum, 1300.0), qPrintable(QString::number(degrees)));
        }
    }

    void aDiagonalOfTwoBins()
    {
        // The step at a bin's corners has half of each of four bins beside the bins of the diagonal.
        const Profile profile =
            profileAlong({ { 1, 0 }, { 0, 0 } }, { { 0.5, 0.5 }, { 1.5, 1.5 }, 1 }, ProfileJoin::Sum);
        QCOMPARE(profile.values.size(), 2);
        QVERIFY(isNear(profile.values.at(0), 1.0) && isNear(profile.values.at(1), 0.0));
        const Profile beside =
            profileAlong({ { 0, 1 }, { 0, 0 } }, { { 0.5, 0.5 }, { 1.5, 1.5 }, 1 }, ProfileJoin::Sum);
        QVERIFY(isNear(beside.values.at(0), 0.25) && isNear(beside.values.at(1), 0.25));
    }

    void noStepOnTheMapIsEmpty()
    {
        Generator generator = seededGenerator(2);
        const auto bins = ramp(60, 60);
        for (int i = 0; i < 1000; ++i) {
            const auto place = [&] { return QPointF(whole(generator, 2, 57) + 0.5, whole(generator, 2, 57) + 0.5); };
            const Profile profile = profileAlong(bins, { place(), place(), 1 }, ProfileJoin::Maximum);
            for (const double area : profile.areas)
                QVERIFY(area > 0.99);
        }
    }

    void survivesOddBands()
    {
        const auto bins = ramp(4, 4);
        QVERIFY(profileAlong(bins, { { std::nan(""), 0 }, { 1, 1 }, 1 }, ProfileJoin::Sum).values.isEmpty());
        QVERIFY(profileAlong(bins, { { 0, 0 }, { infinity, 1 }, 1 }, ProfileJoin::Sum).values.isEmpty());
        QVERIFY(profileAlong(bins, { { 0, 0 }, { 1e12, 1 }, 1 }, ProfileJoin::Sum).values.isEmpty());
        QVERIFY(profileAlong(bins, { { 0, 0 }, { 1, 1 }, infinity }, ProfileJoin::Sum).values.isEmpty());
        const Profile outside = profileAlong(bins, { { 50, 50 }, { 60, 50 }, -3 }, ProfileJoin::Mean);
        QCOMPARE(outside.values.size(), 11);
        QVERIFY(std::isnan(outside.values.first()));
        QCOMPARE(profileAlong({}, { { 0, 0 }, { 3, 0 }, 1 }, ProfileJoin::Sum).values.size(), 4);
    }
};

QTEST_GUILESS_MAIN(TestMapArithmetic)
#include "tst_maparithmetic.moc"
